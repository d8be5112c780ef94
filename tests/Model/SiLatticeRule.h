#pragma once

#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

/// The crystal over a volume as the rule has it, one unit cell after the other in a plain map.
namespace SiLatticeRule {

using Point = std::array<double, 3>;
/// Key of a unit cell and rank in it.
using AtomName = std::pair<std::uint32_t, unsigned>;

constexpr std::array<Point, 8> basis = {{{0, 0, 0},
                                         {0.5, 0.5, 0},
                                         {0.25, 0.25, 0.25},
                                         {0.75, 0.75, 0.25},
                                         {0.5, 0, 0.5},
                                         {0, 0.5, 0.5},
                                         {0.75, 0.25, 0.75},
                                         {0.25, 0.75, 0.75}}};

struct InnerLink
{
    unsigned from;
    unsigned to;
    unsigned position;
};

constexpr std::array<InnerLink, 7> innerLinks = {
    {{0, 2, 3}, {1, 2, 2}, {1, 3, 3}, {2, 4, 2}, {2, 5, 3}, {4, 6, 3}, {5, 7, 3}}};

struct OuterLink
{
    std::uint32_t stepX;
    std::uint32_t stepY;
    std::uint32_t stepZ;
    unsigned here;
    unsigned there;
    unsigned position;
};

constexpr std::array<OuterLink, 9> outerLinks = {{{0, 1, 0, 3, 4, 3},
                                                  {0, 1, 0, 7, 4, 1},
                                                  {1, 0, 0, 3, 5, 2},
                                                  {1, 0, 0, 6, 5, 1},
                                                  {0, 0, 1, 6, 1, 3},
                                                  {0, 0, 1, 7, 1, 2},
                                                  {1, 1, 0, 3, 0, 1},
                                                  {1, 0, 1, 6, 0, 2},
                                                  {0, 1, 1, 7, 0, 3}}};

/// Directions of the bonds at positions 0 to 3 in the frame of the unit cell, in quarters.
inline std::array<int, 3> bondDirection(unsigned rank, unsigned position)
{
    static constexpr int even[4][3] = {{1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}, {1, 1, 1}};
    static constexpr int odd[4][3] = {{-1, -1, -1}, {1, 1, -1}, {1, -1, 1}, {-1, 1, 1}};
    const bool isEven = rank == 0 || rank == 1 || rank == 4 || rank == 5;
    const auto &row = isEven ? even[position] : odd[position];
    return {row[0], row[1], row[2]};
}

/// Degrees to radians, in single precision.
inline double radians(double degrees)
{
    static const auto factor = static_cast<float>(std::acos(0.0) / 90.0);
    return degrees * double(factor);
}

inline Point turnedAboutX(const Point &p, double degrees)
{
    const double c = std::cos(radians(degrees));
    const double s = std::sin(radians(degrees));
    return {p[0], c * p[1] - s * p[2], s * p[1] + c * p[2]};
}

inline Point turnedAboutY(const Point &p, double degrees)
{
    const double c = std::cos(radians(degrees));
    const double s = std::sin(radians(degrees));
    return {c * p[0] + s * p[2], p[1], c * p[2] - s * p[0]};
}

inline Point turnedAboutZ(const Point &p, double degrees)
{
    const double c = std::cos(radians(degrees));
    const double s = std::sin(radians(degrees));
    return {c * p[0] - s * p[1], s * p[0] + c * p[1], p[2]};
}

struct Atom
{
    Point position{};
    std::uint32_t state = 1;
    std::int32_t cellIndex = -1;
    /// By position of the bond.
    std::map<unsigned, AtomName> links;
};

struct Cell
{
    std::array<std::uint32_t, 3> place{};
    Point position{};
    std::array<Atom, 8> atoms;
};

struct Lattice
{
    std::uint32_t cellsX = 0;
    std::uint32_t cellsY = 0;
    std::uint32_t cellsZ = 0;
    std::map<std::uint32_t, Cell> cells;
    /// What one build adds to the atoms of each grid cell.
    std::vector<std::int32_t> atoms;

    std::uint32_t key(std::uint32_t i, std::uint32_t j, std::uint32_t k) const
    {
        return (cellsY * i + j) * cellsZ + k;
    }
};

/// Puts the atom into its grid cell; true if that is silicon.
inline bool placeAtom(Atom &atom, const Support::Grid &grid, const Util::Vector3D &position,
                      const std::vector<std::uint32_t> &materials,
                      std::vector<std::int32_t> &counts)
{
    const std::array<std::uint32_t, 3> sizes = {grid.sizeX, grid.sizeY, grid.sizeZ};
    const std::array<float, 3> edges = {grid.cellSizeX, grid.cellSizeY, grid.cellSizeZ};
    std::array<std::uint32_t, 3> place{};
    for (unsigned axis = 0; axis < 3; ++axis) {
        const auto f =
            static_cast<float>((atom.position[axis] - position[axis]) / double(edges[axis]));
        if (f < 0.0f || !(f < static_cast<float>(sizes[axis]))) {
            atom.state = 3;
            return false;
        }
        place[axis] = static_cast<std::uint32_t>(f);
    }
    const std::size_t index = grid.index(place[0], place[1], place[2]);
    atom.cellIndex = static_cast<std::int32_t>(index);
    if (materials[index] == 1) {
        ++counts[index];
        return true;
    }
    atom.state = materials[index] == 0 ? 0 : 3;
    return false;
}

inline void link(Lattice &lattice, const AtomName &from, const AtomName &to, unsigned position)
{
    lattice.cells.at(from.first).atoms[from.second].links[position] = to;
    lattice.cells.at(to.first).atoms[to.second].links[3 - position] = from;
}

inline void linkCell(Lattice &lattice, std::uint32_t key)
{
    for (const InnerLink &inner : innerLinks)
        link(lattice, {key, inner.from}, {key, inner.to}, inner.position);
    const std::array<std::uint32_t, 3> place = lattice.cells.at(key).place;
    for (const OuterLink &outer : outerLinks) {
        const std::uint32_t i = place[0] + outer.stepX;
        const std::uint32_t j = place[1] + outer.stepY;
        const std::uint32_t k = place[2] + outer.stepZ;
        if (i >= lattice.cellsX || j >= lattice.cellsY || k >= lattice.cellsZ)
            continue;
        const std::uint32_t other = lattice.key(i, j, k);
        if (lattice.cells.count(other) != 0)
            link(lattice, {key, outer.here}, {other, outer.there}, outer.position);
    }
}

inline Lattice latticeOver(const Support::Grid &grid, const Util::Vector3D &position,
                           const std::vector<std::uint32_t> &materials)
{
    Lattice lattice;
    lattice.cellsX = static_cast<std::uint32_t>(
        std::ceil((double(grid.sizeX) + double(grid.sizeY)) / std::sqrt(2.0)));
    lattice.cellsY = lattice.cellsX;
    lattice.cellsZ = grid.sizeZ;
    lattice.atoms.assign(grid.cells(), 0);
    // Both by the size along x.
    const Point origin = {position[0] + grid.sizeX * 0.5, position[1] - grid.sizeX * 0.5,
                          position[2]};
    const auto placed = [&origin](const Point &inCrystal) {
        Point p = turnedAboutZ(inCrystal, 45);
        for (unsigned axis = 0; axis < 3; ++axis)
            p[axis] += origin[axis];
        return p;
    };
    for (std::uint32_t i = 0; i < lattice.cellsX; ++i)
        for (std::uint32_t j = 0; j < lattice.cellsY; ++j)
            for (std::uint32_t k = 0; k < lattice.cellsZ; ++k) {
                Cell cell;
                cell.place = {i, j, k};
                cell.position = placed({double(i), double(j), double(k)});
                bool hasSilicon = false;
                for (unsigned rank = 0; rank < 8; ++rank) {
                    Atom &atom = cell.atoms[rank];
                    atom.position =
                        placed({i + basis[rank][0], j + basis[rank][1], k + basis[rank][2]});
                    if (placeAtom(atom, grid, position, materials, lattice.atoms))
                        hasSilicon = true;
                }
                if (hasSilicon)
                    lattice.cells[lattice.key(i, j, k)] = cell;
            }
    for (const auto &entry : lattice.cells)
        linkCell(lattice, entry.first);
    return lattice;
}

} // namespace SiLatticeRule
