#pragma once

#include "Util/Vector4D.h"

namespace Util {

/// A Vector4D that is built with w = 0 and whose assignment leaves w alone. Sums of two of them,
/// and a number times one, are Vector4D and convert back.
class Vector3D final : public Vector4D
{
public:
    Vector3D() = default;
    /// x, y and z set to `value`.
    explicit Vector3D(double value) : Vector4D(value, value, value, 0.0) {}
    Vector3D(double x, double y, double z) : Vector4D(x, y, z, 0.0) {}
    /// Takes x, y and z.
    Vector3D(const Vector4D &other) : Vector4D(other[0], other[1], other[2], 0.0) {}
    Vector3D(const Vector3D &other) : Vector3D(static_cast<const Vector4D &>(other)) {}

    /// Copies x, y and z and leaves w as it is.
    Vector3D &operator=(const Vector4D &other)
    {
        for (unsigned i = 0; i < 3; ++i)
            (*this)[i] = other[i];
        return *this;
    }
    Vector3D &operator=(const Vector3D &other)
    {
        return *this = static_cast<const Vector4D &>(other);
    }
};

} // namespace Util
