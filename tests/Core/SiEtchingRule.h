#pragma once

#include "Model/SiLatticeRule.h"
#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// Both etchings of the silicon crystal as the rule has them, by one strip, on a crystal of its own.
namespace SiEtchingRule {

using SiLatticeRule::AtomName;
using SiLatticeRule::Point;

enum class Process
{
    Bonds,
    Rates
};

struct Configuration
{
    unsigned ns1;
    unsigned nb1;
    unsigned ns2;
    unsigned nb2;
    double rate;
};

constexpr std::array<Configuration, 33> configurations = {
    {{0, 3, 4, 7, 0.00867}, {0, 3, 6, 5, 0.00867}, {0, 3, 3, 7, 0.00867}, {0, 3, 5, 5, 0.00867},
     {0, 3, 2, 7, 0.00867}, {0, 3, 4, 5, 0.00867}, {0, 3, 6, 3, 0.00867}, {1, 2, 3, 6, 4.115},
     {1, 2, 2, 6, 4.208},   {1, 2, 3, 5, 6.449},   {1, 2, 2, 5, 3.932},   {1, 2, 4, 3, 6.449},
     {2, 1, 4, 5, 5.223},   {2, 1, 1, 6, 4.115},   {2, 1, 2, 5, 4.115},   {2, 1, 4, 3, 5.223},
     {2, 1, 0, 6, 4.847},   {2, 1, 1, 5, 4.847},   {0, 2, 5, 5, 3.188},   {0, 2, 2, 6, 3.188},
     {0, 2, 3, 5, 3.188},   {0, 2, 4, 4, 3.188},   {0, 2, 3, 4, 7},       {0, 2, 5, 2, 7},
     {1, 1, 4, 5, 6.5},     {1, 1, 2, 5, 6.5},     {1, 1, 3, 4, 5.49},    {1, 1, 2, 4, 5},
     {1, 1, 3, 3, 5},       {0, 1, 6, 3, 6},       {0, 1, 4, 3, 6},       {0, 1, 5, 2, 6},
     {0, 1, 6, 1, 4.115}}};

/// 33 if it is not in the table.
inline unsigned configurationOf(unsigned ns1, unsigned nb1, unsigned ns2, unsigned nb2)
{
    for (unsigned i = 0; i < configurations.size(); ++i) {
        const Configuration &row = configurations[i];
        if (row.ns1 == ns1 && row.nb1 == nb1 && row.ns2 == ns2 && row.nb2 == nb2)
            return i;
    }
    return 33;
}

inline std::string unexpectedLine(unsigned ns1, unsigned nb1, unsigned ns2, unsigned nb2)
{
    return "debug: Unexpected configuration found (ns1, nb1, ns2, nb2): (" + std::to_string(ns1) +
           "," + std::to_string(nb1) + "," + std::to_string(ns2) + "," + std::to_string(nb2) + ")";
}

inline std::uint64_t stepsOf(double depth)
{
    const double quarters = depth * 4;
    if (!(quarters > 0))
        return 0;
    const double whole = std::floor(quarters);
    return static_cast<std::uint64_t>(quarters - whole >= 0.5 ? whole + 1 : whole);
}

struct Atom
{
    Point position{};
    std::uint32_t state = 1;
    std::int32_t cellIndex = -1;
    float mass = 0.0f;
    /// By position of the bond.
    std::map<unsigned, AtomName> links;
    /// The same for bonds to mask atoms that a run has made: where these are.
    std::map<unsigned, Point> masks;
};

struct Cell
{
    std::uint32_t material = 0;
    std::int32_t atoms = 0;

    bool operator==(const Cell &other) const
    {
        return material == other.material && atoms == other.atoms;
    }
};

class Wafer final
{
public:
    Wafer(const Support::Grid &grid, const Util::Vector3D &position,
          const std::vector<std::uint32_t> &materials)
        : m_grid(grid)
    {
        const SiLatticeRule::Lattice lattice =
            SiLatticeRule::latticeOver(grid, position, materials);
        for (std::size_t i = 0; i < materials.size(); ++i)
            m_voxels.push_back({materials[i], lattice.atoms[i]});
        m_nextVoxels = m_voxels;
        for (const auto &cell : lattice.cells)
            for (unsigned rank = 0; rank < 8; ++rank) {
                const SiLatticeRule::Atom &from = cell.second.atoms[rank];
                Atom &atom = m_atoms[{cell.first, rank}];
                atom.position = from.position;
                atom.state = from.state;
                atom.cellIndex = from.cellIndex;
                atom.links = from.links;
            }
    }

    /// By hand, between two runs.
    void setMaterial(std::size_t index, std::uint32_t material)
    {
        m_voxels[index].material = material;
        m_nextVoxels[index].material = material;
    }
    void setAtoms(std::size_t index, std::int32_t atoms, std::int32_t nextAtoms)
    {
        m_voxels[index].atoms = atoms;
        m_nextVoxels[index].atoms = nextAtoms;
    }

    void etch(Process process, double depth)
    {
        m_process = process;
        m_lines.clear();
        m_sizeLines.clear();
        m_lines.push_back("debug: Running etching");
        for (auto &entry : m_atoms)
            entry.second.masks.clear();
        initialize();
        for (std::uint64_t left = stepsOf(depth); left > 0; --left)
            step();
    }

    const std::map<AtomName, Atom> &atoms() const { return m_atoms; }
    const std::vector<Cell> &voxels() const { return m_voxels; }
    const std::vector<Cell> &nextVoxels() const { return m_nextVoxels; }
    std::size_t maskAtoms() const
    {
        std::size_t count = 0;
        for (const auto &entry : m_atoms)
            count += entry.second.masks.size();
        return count;
    }
    /// What the last run has logged but the sizes of lists, and these.
    const std::vector<std::string> &lines() const { return m_lines; }
    const std::vector<std::string> &sizeLines() const { return m_sizeLines; }

private:
    /// The atom itself at -1, else its mask atom at this position.
    using Member = std::pair<AtomName, int>;

    std::uint32_t stateAt(const Atom &atom, unsigned d) const
    {
        if (atom.masks.count(d) != 0)
            return 3;
        return m_atoms.at(atom.links.at(d)).state;
    }

    static bool isLinked(const Atom &atom, unsigned d)
    {
        return atom.masks.count(d) != 0 || atom.links.count(d) != 0;
    }

    unsigned goodLinks(const Atom &atom) const
    {
        unsigned count = 0;
        for (unsigned d = 0; d < 4; ++d)
            if (isLinked(atom, d) && stateAt(atom, d) != 0)
                ++count;
        return count;
    }

    unsigned bondCount(const Atom &atom) const { return atom.state == 3 ? 4 : goodLinks(atom); }

    unsigned secondNeighbourCount(const Atom &atom) const
    {
        unsigned sum = 0;
        for (unsigned d = 0; d < 4; ++d) {
            if (!isLinked(atom, d))
                continue;
            if (stateAt(atom, d) == 3)
                sum += 3;
            else if (stateAt(atom, d) == 1)
                sum += bondCount(m_atoms.at(atom.links.at(d))) - 1;
        }
        return sum;
    }

    void firstNeighbours(const Atom &atom, unsigned &surface, unsigned &bulk) const
    {
        for (unsigned d = 0; d < 4; ++d) {
            if (!isLinked(atom, d))
                continue;
            if (stateAt(atom, d) == 3 || goodLinks(m_atoms.at(atom.links.at(d))) == 4)
                ++bulk;
            else
                ++surface;
        }
    }

    void secondNeighbours(const Atom &atom, unsigned &surface, unsigned &bulk) const
    {
        for (unsigned i = 0; i < 4; ++i) {
            // Of a mask atom that a run has made no bond but that back is made.
            if (atom.links.count(i) == 0)
                continue;
            const Atom &first = m_atoms.at(atom.links.at(i));
            for (unsigned j = 0; j < 4; ++j) {
                if (j == 3 - i || !isLinked(first, j) || stateAt(first, j) == 0)
                    continue;
                if (stateAt(first, j) == 3 || goodLinks(m_atoms.at(first.links.at(j))) == 4)
                    ++bulk;
                else
                    ++surface;
            }
        }
    }

    void initialize()
    {
        m_surface.clear();
        std::vector<AtomName> picked;
        for (auto &entry : m_atoms) {
            Atom &atom = entry.second;
            if (atom.cellIndex < 0 || m_voxels[std::size_t(atom.cellIndex)].material != 1)
                continue;
            picked.push_back(entry.first);
            if (atom.state != 1) {
                atom.state = 1;
                const std::size_t index = std::size_t(atom.cellIndex);
                const std::int32_t count = m_voxels[index].atoms + 1;
                m_voxels[index].atoms = count;
                m_nextVoxels[index].atoms = count;
            }
            if (m_process == Process::Rates)
                atom.mass = 1.0f;
        }
        for (const AtomName &name : picked)
            if (bondCount(m_atoms.at(name)) < 4)
                treatMissingNeighbors(name);
        logSize();
    }

    void treatMissingNeighbors(const AtomName &name)
    {
        Atom &atom = m_atoms.at(name);
        bool isOnSurface = false;
        for (unsigned d = 0; d < 4; ++d) {
            if (atom.links.count(d) != 0) {
                Atom &neighbour = m_atoms.at(atom.links.at(d));
                if (neighbour.cellIndex < 0) {
                    m_lines.push_back("debug: This wasn't suppose to happen.");
                    continue;
                }
                const std::uint32_t material = m_voxels[std::size_t(neighbour.cellIndex)].material;
                if (material == 0) {
                    neighbour.state = 0;
                    isOnSurface = true;
                } else if (material != 1) {
                    neighbour.state = 3;
                }
                continue;
            }
            Point place{};
            const std::int64_t index = missingNeighbour(name, d, place);
            const std::uint32_t material = index < 0 ? 5 : m_voxels[std::size_t(index)].material;
            if (material == 0)
                isOnSurface = true;
            else if (material != 1)
                atom.masks[d] = place;
        }
        if (isOnSurface)
            m_surface.insert({name, -1});
    }

    /// The index of the cell where it would lie, -1 if there is none, and its place in cells.
    std::int64_t missingNeighbour(const AtomName &name, unsigned d, Point &place) const
    {
        const double a = std::sqrt(2.0) * 0.25;
        const double vectors[2][4][3] = {
            {{a, 0, -0.25}, {-a, 0, -0.25}, {0, -a, 0.25}, {0, a, 0.25}},
            {{0, -a, 0.25}, {0, a, 0.25}, {a, 0, 0.25}, {-a, 0, 0.25}}};
        const std::array<float, 3> edges = {m_grid.cellSizeX, m_grid.cellSizeY, m_grid.cellSizeZ};
        const std::array<std::uint32_t, 3> sizes = {m_grid.sizeX, m_grid.sizeY, m_grid.sizeZ};
        const Atom &atom = m_atoms.at(name);
        bool isInside = true;
        for (unsigned axis = 0; axis < 3; ++axis) {
            const auto edge = static_cast<std::uint32_t>(edges[axis]);
            place[axis] = atom.position[axis] + vectors[name.second / 2 % 2][d][axis];
            if (edge == 0)
                isInside = false;
            else
                place[axis] /= double(edge);
        }
        for (unsigned axis = 0; axis < 3; ++axis)
            if (place[axis] < 0 || !(place[axis] < double(sizes[axis])))
                isInside = false;
        if (!isInside)
            return -1;
        return std::int64_t(m_grid.index(std::uint32_t(place[0]), std::uint32_t(place[1]),
                                         std::uint32_t(place[2])));
    }

    void step()
    {
        std::set<Member> kept;
        std::vector<AtomName> gone;
        std::set<std::size_t> changed;
        for (const Member &member : m_surface) {
            // A mask atom.
            if (member.second >= 0)
                continue;
            Atom &atom = m_atoms.at(member.first);
            if (atom.state != 1)
                continue;
            if (m_process == Process::Bonds ? staysByBonds(atom) : staysByRate(atom)) {
                kept.insert(member);
                continue;
            }
            gone.push_back(member.first);
            takeFromCell(atom, changed);
            handOn(member.first, kept);
        }
        for (const AtomName &name : gone)
            m_atoms.at(name).state = 0;
        for (const std::size_t index : changed)
            m_voxels[index] = m_nextVoxels[index];
        m_surface = kept;
        logSize();
    }

    bool staysByBonds(const Atom &atom) const
    {
        const unsigned bonds = bondCount(atom);
        return bonds >= 4 || (bonds == 3 && secondNeighbourCount(atom) >= 9);
    }

    bool staysByRate(Atom &atom)
    {
        unsigned ns1 = 0;
        unsigned nb1 = 0;
        firstNeighbours(atom, ns1, nb1);
        if (ns1 + nb1 >= 4)
            return true;
        unsigned ns2 = 0;
        unsigned nb2 = 0;
        secondNeighbours(atom, ns2, nb2);
        const unsigned configuration = configurationOf(ns1, nb1, ns2, nb2);
        if (configuration == 33)
            m_lines.push_back(unexpectedLine(ns1, nb1, ns2, nb2));
        const double rate = configuration == 33 ? 0.0 : configurations[configuration].rate;
        const double remaining = double(atom.mass) - rate * 0.1;
        if (remaining < 1e-6) {
            atom.mass = 0.0f;
            return false;
        }
        atom.mass = static_cast<float>(remaining);
        return true;
    }

    void takeFromCell(const Atom &atom, std::set<std::size_t> &changed)
    {
        if (atom.cellIndex < 0)
            return;
        const std::size_t index = std::size_t(atom.cellIndex);
        Cell &cell = m_nextVoxels[index];
        const std::int32_t before = cell.atoms;
        cell.atoms = before - 1;
        if (before < 2)
            cell.material = 0;
        if (before < 1)
            m_lines.push_back("debug: Negative atom count reached for index: " +
                              std::to_string(index) + " count is: " + std::to_string(before - 1));
        changed.insert(index);
    }

    void handOn(const AtomName &name, std::set<Member> &kept) const
    {
        const Atom &atom = m_atoms.at(name);
        for (unsigned d = 0; d < 4; ++d) {
            if (!isLinked(atom, d) || stateAt(atom, d) == 0)
                continue;
            const bool isMask = atom.masks.count(d) != 0;
            const double x =
                isMask ? atom.masks.at(d)[0] : m_atoms.at(atom.links.at(d)).position[0];
            const auto column = static_cast<std::int64_t>(x);
            // Beyond its sides there is no strip to hand it to.
            if (column < 0 || column >= std::int64_t(m_grid.sizeX))
                continue;
            kept.insert(isMask ? Member{name, int(d)} : Member{atom.links.at(d), -1});
        }
    }

    void logSize()
    {
        m_sizeLines.push_back("debug: Surface list size for thread 0: " +
                              std::to_string(m_surface.size()));
    }

    Support::Grid m_grid;
    Process m_process = Process::Bonds;
    std::map<AtomName, Atom> m_atoms;
    std::vector<Cell> m_voxels;
    std::vector<Cell> m_nextVoxels;
    std::set<Member> m_surface;
    std::vector<std::string> m_lines;
    std::vector<std::string> m_sizeLines;
};

} // namespace SiEtchingRule
