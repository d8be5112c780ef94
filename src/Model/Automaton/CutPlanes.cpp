#include "Model/Automaton/CutPlanes.h"

#include <QMutexLocker>

#include <algorithm>
#include <cmath>

namespace Model::Automaton {

namespace {

constexpr double Tolerance = 1e-6;

bool areEqual(const CutPlanes::Plane &left, const CutPlanes::Plane &right)
{
    for (unsigned i = 0; i < left.size(); ++i)
        if (std::abs(static_cast<double>(left[i]) - static_cast<double>(right[i])) > Tolerance)
            return false;
    return true;
}

} // namespace

void CutPlanes::add(float a, float b, float c, float d)
{
    const float square = a * a + b * b + c * c;
    if (!(static_cast<double>(square) > Tolerance))
        return;
    // The distance counts in, which only scales the plane: it stays where it is.
    const float length = std::sqrt(square + d * d);
    const Plane plane = {a / length, b / length, c / length, d / length};
    const QMutexLocker lock(&m_mutex);
    const bool isThere = std::any_of(m_planes.begin(), m_planes.end(),
                                     [&](const Plane &other) { return areEqual(plane, other); });
    if (!isThere)
        m_planes.push_back(plane);
}

bool CutPlanes::contains(float x, float y, float z) const
{
    return std::all_of(m_planes.begin(), m_planes.end(), [&](const Plane &plane) {
        const float sum = plane[0] * x + plane[1] * y + plane[2] * z + plane[3];
        return static_cast<double>(sum) < Tolerance;
    });
}

} // namespace Model::Automaton
