#pragma once

#include "Util/Vector3D.h"

#include <cstdint>
#include <optional>

namespace Model::Automaton {
class SiAtom;
class TotalVolume;
} // namespace Model::Automaton

namespace Core::Operations {

/// Where a neighbour of an atom would lie that the lattice does not have.
struct MissingNeighbor
{
    /// In cells: the place in the world, divided by the cell sizes truncated to integers; not
    /// divided along an axis where that gives 0.
    Util::Vector3D place;
    /// Index of the cell at that place; empty outside the volume, and with a cell size that
    /// truncates to 0.
    std::optional<std::uint32_t> cell;
};

/// `position` is that of the bond, from 0 to 3; the atom belongs to a unit cell. Neither the place
/// of the volume nor fractions of its cell sizes enter: the look-up fits volumes at the origin
/// whose cells have whole sizes.
MissingNeighbor missingNeighbor(const Model::Automaton::TotalVolume &volume,
                                const Model::Automaton::SiAtom &atom, unsigned position);

} // namespace Core::Operations
