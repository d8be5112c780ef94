#pragma once

#include "Util/Vector3D.h"

#include <array>

namespace Model::Automaton {

/// Turns places about the axes of the world, x first, then y, then z.
class LatticeRotation final
{
public:
    /// Degrees; what is within 1e-6 of 0 does not turn.
    LatticeRotation(double aboutX, double aboutY, double aboutZ);

    Util::Vector3D apply(const Util::Vector3D &place) const;

private:
    struct Turn
    {
        bool turns;
        double cosine;
        double sine;
    };

    std::array<Turn, 3> m_turns;
};

} // namespace Model::Automaton
