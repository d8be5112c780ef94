#include "Util/Vector4D.h"

namespace Util {

Vector4D::Vector4D() : m_components{0.0, 0.0, 0.0, 0.0} {}

Vector4D::Vector4D(double value) : m_components{value, value, value, value} {}

Vector4D::Vector4D(double x, double y, double z, double w) : m_components{x, y, z, w} {}

double &Vector4D::operator[](unsigned index)
{
    return m_components[index < 3 ? index : 3];
}

double Vector4D::operator[](unsigned index) const
{
    return m_components[index < 3 ? index : 3];
}

Vector4D &Vector4D::operator+=(const Vector4D &other)
{
    for (unsigned i = 0; i < 4; ++i)
        m_components[i] += other.m_components[i];
    return *this;
}

double *Vector4D::data()
{
    return m_components.data();
}

const double *Vector4D::data() const
{
    return m_components.data();
}

Vector4D operator+(const Vector4D &left, const Vector4D &right)
{
    return {left[0] + right[0], left[1] + right[1], left[2] + right[2], left[3] + right[3]};
}

Vector4D operator-(const Vector4D &left, const Vector4D &right)
{
    return {left[0] - right[0], left[1] - right[1], left[2] - right[2], left[3] - right[3]};
}

Vector4D operator*(double factor, const Vector4D &vector)
{
    return {factor * vector[0], factor * vector[1], factor * vector[2], factor * vector[3]};
}

} // namespace Util
