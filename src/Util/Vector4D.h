#pragma once

#include <array>

namespace Util {

/// Four 64-bit floats x, y, z, w, in whatever unit or space the owner says. The program's one
/// vector pair is this class and Vector3D, which derives from it so that both flow through the same
/// operations. Equality of vectors is not defined.
class Vector4D
{
public:
    /// All four components 0.
    Vector4D();
    /// All four components set to `value`.
    explicit Vector4D(double value);
    Vector4D(double x, double y, double z, double w);
    Vector4D(const Vector4D &other) = default;
    virtual ~Vector4D() = default;

    Vector4D &operator=(const Vector4D &other) = default;

    /// Component 0 x, 1 y, 2 z, anything else w.
    double &operator[](unsigned index);
    double operator[](unsigned index) const;

    Vector4D &operator+=(const Vector4D &other);

    /// The four components in order, for the OpenGL calls that take `double *`.
    double *data();
    const double *data() const;

private:
    std::array<double, 4> m_components;
};

Vector4D operator+(const Vector4D &left, const Vector4D &right);
Vector4D operator-(const Vector4D &left, const Vector4D &right);
Vector4D operator*(double factor, const Vector4D &vector);

} // namespace Util
