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
    Vector4D() : m_components{0.0, 0.0, 0.0, 0.0} {}
    /// All four components set to `value`.
    explicit Vector4D(double value) : m_components{value, value, value, value} {}
    Vector4D(double x, double y, double z, double w) : m_components{x, y, z, w} {}
    Vector4D(const Vector4D &other) = default;
    virtual ~Vector4D() = default;

    Vector4D &operator=(const Vector4D &other) = default;

    /// Component 0 x, 1 y, 2 z, anything else w.
    double &operator[](unsigned index) { return m_components[index < 3 ? index : 3]; }
    double operator[](unsigned index) const { return m_components[index < 3 ? index : 3]; }

    Vector4D &operator+=(const Vector4D &other)
    {
        for (unsigned i = 0; i < 4; ++i)
            m_components[i] += other.m_components[i];
        return *this;
    }

    /// The four components in order, for the OpenGL calls that take `double *`.
    double *data() { return m_components.data(); }
    const double *data() const { return m_components.data(); }

private:
    std::array<double, 4> m_components;
};

inline Vector4D operator+(const Vector4D &left, const Vector4D &right)
{
    return {left[0] + right[0], left[1] + right[1], left[2] + right[2], left[3] + right[3]};
}

inline Vector4D operator-(const Vector4D &left, const Vector4D &right)
{
    return {left[0] - right[0], left[1] - right[1], left[2] - right[2], left[3] - right[3]};
}

inline Vector4D operator*(double factor, const Vector4D &vector)
{
    return {factor * vector[0], factor * vector[1], factor * vector[2], factor * vector[3]};
}

} // namespace Util
