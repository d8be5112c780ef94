#include "Core/Operations/SiEtching/MissingNeighbor.h"

#include "Model/Automaton/SiCell.h"
#include "Model/Automaton/TotalVolume.h"

#include <array>
#include <cmath>

namespace Core::Operations {

namespace {

using Model::Automaton::SiAtom;

/// From an atom of either group to what is bonded at each position. The second group points upward
/// at all four on purpose.
Util::Vector3D bondVector(unsigned group, unsigned position)
{
    static const double a = std::sqrt(2.0) * 0.25;
    static const std::array<std::array<Util::Vector3D, SiAtom::Bonds>, 2> Vectors = {
        {{Util::Vector3D(a, 0.0, -0.25), Util::Vector3D(-a, 0.0, -0.25),
          Util::Vector3D(0.0, -a, 0.25), Util::Vector3D(0.0, a, 0.25)},
         {Util::Vector3D(0.0, -a, 0.25), Util::Vector3D(0.0, a, 0.25), Util::Vector3D(a, 0.0, 0.25),
          Util::Vector3D(-a, 0.0, 0.25)}}};
    return Vectors[group][position];
}

} // namespace

MissingNeighbor missingNeighbor(const Model::Automaton::TotalVolume &volume, const SiAtom &atom,
                                unsigned position)
{
    const unsigned group = atom.owner()->rankOf(atom) / 2 % 2;
    const Util::Vector3D world = atom.position() + bondVector(group, position);
    const std::array<double, 3> edges = {std::trunc(static_cast<double>(volume.cellSizeX())),
                                         std::trunc(static_cast<double>(volume.cellSizeY())),
                                         std::trunc(static_cast<double>(volume.cellSizeZ()))};
    const std::array<std::uint32_t, 3> sizes = {volume.sizeX(), volume.sizeY(), volume.sizeZ()};
    std::array<double, 3> place{};
    std::uint32_t index = 0;
    bool isInside = true;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const bool hasEdge = edges[axis] > 0.0;
        place[axis] = hasEdge ? world[axis] / edges[axis] : world[axis];
        isInside = isInside && hasEdge && place[axis] >= 0.0 &&
                   place[axis] < static_cast<double>(sizes[axis]);
        if (isInside)
            index = index * sizes[axis] + static_cast<std::uint32_t>(place[axis]);
    }
    MissingNeighbor neighbor{Util::Vector3D(place[0], place[1], place[2]), {}};
    if (isInside)
        neighbor.cell = index;
    return neighbor;
}

} // namespace Core::Operations
