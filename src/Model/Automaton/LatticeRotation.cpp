#include "Model/Automaton/LatticeRotation.h"

#include <cmath>
#include <cstddef>

namespace Model::Automaton {

namespace {

/// Degrees to radians, in 32-bit float on purpose: where atoms lie depends on it.
const float RadiansPerDegree = static_cast<float>(std::acos(0.0) / 90.0);

} // namespace

LatticeRotation::LatticeRotation(double aboutX, double aboutY, double aboutZ)
{
    const std::array<double, 3> angles = {aboutX, aboutY, aboutZ};
    for (std::size_t axis = 0; axis < angles.size(); ++axis) {
        const double angle = angles[axis] * static_cast<double>(RadiansPerDegree);
        m_turns[axis] = {std::abs(angles[axis]) > 1e-6, std::cos(angle), std::sin(angle)};
    }
}

Util::Vector3D LatticeRotation::apply(const Util::Vector3D &place) const
{
    double x = place[0];
    double y = place[1];
    double z = place[2];
    if (m_turns[0].turns) {
        const double c = m_turns[0].cosine;
        const double s = m_turns[0].sine;
        const double turned = c * y - s * z;
        z = s * y + c * z;
        y = turned;
    }
    if (m_turns[1].turns) {
        const double c = m_turns[1].cosine;
        const double s = m_turns[1].sine;
        const double turned = c * x + s * z;
        z = c * z - s * x;
        x = turned;
    }
    if (m_turns[2].turns) {
        const double c = m_turns[2].cosine;
        const double s = m_turns[2].sine;
        const double turned = c * x - s * y;
        y = s * x + c * y;
        x = turned;
    }
    return {x, y, z};
}

} // namespace Model::Automaton
