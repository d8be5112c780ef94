#pragma once

#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"
#include "Core/Operations/SiEtching/ContinuosWetEtching.h"
#include "DebugLog.h"
#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"
#include "SiEtchingRule.h"

#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

/// Runs of both silicon etchings, compared with their rule atom by atom.
namespace SiEtchingRuns {

using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using Model::Automaton::SiLattice;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;
using SiEtchingRule::AtomName;
using SiEtchingRule::Process;
using SiEtchingRule::Wafer;
using Support::Grid;
using Util::Vector3D;

using Ids = std::vector<std::uint32_t>;

constexpr std::uint32_t silicon = 1;
constexpr std::uint32_t resist = 5;

inline void etch(TotalVolume &volume, Process process, double depth)
{
    if (process == Process::Bonds)
        Core::Operations::AtomicStructureSimpleSiWetEtch(&volume, depth).runEtching();
    else
        Core::Operations::ContinuosWetEtching(&volume, depth).runEtching();
}

inline boost::shared_ptr<TotalVolume> volumeAt(const Grid &grid, const Vector3D &position,
                                               const Ids &ids)
{
    return boost::make_shared<TotalVolume>(grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX,
                                           grid.cellSizeY, grid.cellSizeZ, position, ids);
}

inline boost::shared_ptr<TotalVolume> latticed(const Grid &grid, const Support::MaterialRule &rule)
{
    auto volume = volumeAt(grid, Vector3D(0, 0, 0), Support::materialsBy(grid, rule));
    volume->rebuildSiLattice();
    return volume;
}

/// What is done to a wafer: a run of an etch, or cells that are set by hand.
struct Act
{
    enum Kind
    {
        Etch,
        SetMaterials,
        SetAtoms
    };
    Kind kind = Etch;
    Process process = Process::Bonds;
    double depth = 0.0;
    std::map<std::size_t, std::uint32_t> materials;
    /// Of both arrays.
    std::map<std::size_t, std::pair<std::int32_t, std::int32_t>> atoms;
};

inline Act etching(Process process, double depth)
{
    Act act;
    act.process = process;
    act.depth = depth;
    return act;
}

struct Case
{
    Grid grid;
    Vector3D position{0, 0, 0};
    Ids materials;
    std::vector<Act> acts;

    /// The columns of cells are those of the world, so that strips may be handed their atoms.
    bool mayBeCut() const { return position[0] == 0.0 && grid.cellSizeX == 1.0f; }
};

/// A heap whose free pieces for unit cells and mask atoms lie in random order, as long as it lives.
class ShuffledHeap final
{
public:
    ShuffledHeap(unsigned seed, std::size_t cells)
    {
        std::mt19937 random(seed);
        std::vector<boost::shared_ptr<SiCell>> unitCells;
        std::vector<boost::shared_ptr<SiAtom>> atoms;
        for (std::size_t i = 0; i < cells; ++i) {
            unitCells.push_back(boost::make_shared<SiCell>(Vector3D(0, 0, 0)));
            m_fences.emplace_back(new char[24 + random() % 200]);
            atoms.push_back(boost::make_shared<SiAtom>());
            m_fences.emplace_back(new char[24 + random() % 200]);
        }
        std::shuffle(unitCells.begin(), unitCells.end(), random);
        std::shuffle(atoms.begin(), atoms.end(), random);
        for (std::size_t i = 0; i < cells; ++i) {
            unitCells[i].reset();
            atoms[i].reset();
        }
    }

private:
    /// Keep free pieces from being joined.
    std::vector<std::unique_ptr<char[]>> m_fences;
};

/// The keys of the unit cells by their addresses.
inline Ids addressOrder(const SiLattice &lattice)
{
    std::vector<std::pair<const SiCell *, std::uint32_t>> cells;
    for (const SiLattice::Entry &entry : lattice.cells())
        cells.emplace_back(entry.second.get(), entry.first);
    std::sort(cells.begin(), cells.end(), [](const auto &one, const auto &other) {
        return std::less<const SiCell *>()(one.first, other.first);
    });
    Ids keys;
    for (const auto &cell : cells)
        keys.push_back(cell.second);
    return keys;
}

inline bool isSameBits(float one, float other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}

/// A volume with its crystal that the acts are played on.
class Sample final
{
public:
    /// Seed 0 leaves the heap as it is.
    explicit Sample(const Case &given, unsigned heapSeed = 0)
        : m_volume(volumeAt(given.grid, given.position, given.materials)),
          m_cells(given.grid.cells())
    {
        std::unique_ptr<ShuffledHeap> heap;
        if (heapSeed != 0)
            heap = std::make_unique<ShuffledHeap>(heapSeed, 2 * given.grid.cells() + 100);
        m_volume->rebuildSiLattice();
        for (const SiLattice::Entry &entry : m_volume->siLattice()->cells())
            for (unsigned rank = 0; rank < 8; ++rank)
                m_names[&entry.second->atom(rank)] = {entry.first, rank};
    }

    TotalVolume &volume() { return *m_volume; }
    const SiLattice &lattice() const { return *m_volume->siLattice(); }

    void play(const Act &act)
    {
        if (act.kind == Act::Etch) {
            etch(*m_volume, act.process, act.depth);
            return;
        }
        Voxel *voxels = m_volume->voxels();
        Voxel *nextVoxels = m_volume->nextVoxels();
        for (const auto &change : act.materials) {
            voxels[change.first].setMaterial(change.second);
            nextVoxels[change.first].setMaterial(change.second);
        }
        for (const auto &change : act.atoms) {
            voxels[change.first].setAtoms(change.second.first);
            nextVoxels[change.first].setAtoms(change.second.second);
        }
        m_volume->releaseNextVoxels();
        m_volume->releaseVoxels();
    }

    testing::AssertionResult agreesWith(const Wafer &wafer)
    {
        if (!cellsAgree(m_volume->voxels(), wafer.voxels(), "voxels")) {
            m_volume->releaseVoxels();
            return testing::AssertionFailure() << m_difference;
        }
        m_volume->releaseVoxels();
        if (!cellsAgree(m_volume->nextVoxels(), wafer.nextVoxels(), "nextVoxels")) {
            m_volume->releaseNextVoxels();
            return testing::AssertionFailure() << m_difference;
        }
        m_volume->releaseNextVoxels();
        if (m_names.size() != wafer.atoms().size())
            return testing::AssertionFailure()
                   << m_names.size() << " atoms for " << wafer.atoms().size();
        const std::unordered_set<const SiAtom *> masks = maskAtoms();
        if (masks.size() != wafer.maskAtoms() ||
            lattice().cells().size() * 8 != wafer.atoms().size() ||
            m_volume->siLattice()->maskAtoms().size() != masks.size())
            return testing::AssertionFailure()
                   << masks.size() << " mask atoms for " << wafer.maskAtoms();
        for (const SiLattice::Entry &entry : lattice().cells())
            for (unsigned rank = 0; rank < 8; ++rank) {
                const AtomName name = {entry.first, rank};
                if (!atomAgrees(entry.second->atom(rank), wafer.atoms().at(name), masks))
                    return testing::AssertionFailure() << "unit cell " << entry.first << ", rank "
                                                       << rank << ": " << m_difference;
            }
        return testing::AssertionSuccess();
    }

private:
    bool cellsAgree(const Voxel *cells, const std::vector<SiEtchingRule::Cell> &expected,
                    const std::string &array)
    {
        for (std::size_t i = 0; i < m_cells; ++i)
            if (cells[i].material() != expected[i].material ||
                cells[i].atoms() != expected[i].atoms)
                return differs(array + " at " + std::to_string(i) + ": material " +
                               std::to_string(cells[i].material()) + " for " +
                               std::to_string(expected[i].material) + ", atoms " +
                               std::to_string(cells[i].atoms()) + " for " +
                               std::to_string(expected[i].atoms));
        return true;
    }

    std::unordered_set<const SiAtom *> maskAtoms() const
    {
        std::unordered_set<const SiAtom *> masks;
        for (const boost::shared_ptr<SiAtom> &mask : m_volume->siLattice()->maskAtoms())
            masks.insert(mask.get());
        return masks;
    }

    bool atomAgrees(const SiAtom &atom, const SiEtchingRule::Atom &expected,
                    const std::unordered_set<const SiAtom *> &masks)
    {
        if (atom.state() != expected.state)
            return differs("state " + std::to_string(atom.state()) + " for " +
                           std::to_string(expected.state));
        if (atom.cellIndex() != expected.cellIndex)
            return differs("in another cell");
        if (!isSameBits(atom.mass(), expected.mass))
            return differs("mass " + std::to_string(atom.mass()) + " for " +
                           std::to_string(expected.mass));
        for (unsigned d = 0; d < 4; ++d) {
            const SiAtom *other = atom.link(d);
            const auto mask = expected.masks.find(d);
            const auto link = expected.links.find(d);
            if (mask != expected.masks.end()) {
                if (masks.count(other) == 0)
                    return differs("no mask atom at " + std::to_string(d));
                if (!maskAgrees(*other, atom, d, mask->second))
                    return false;
            } else if (link != expected.links.end()) {
                const auto name = m_names.find(other);
                if (name == m_names.end() || name->second != link->second)
                    return differs("another bond at " + std::to_string(d));
            } else if (other != nullptr) {
                return differs("a bond at " + std::to_string(d));
            }
        }
        return true;
    }

    bool maskAgrees(const SiAtom &mask, const SiAtom &atom, unsigned d,
                    const SiEtchingRule::Point &place)
    {
        if (mask.state() != 3 || mask.cellIndex() != -1 || mask.owner() != nullptr)
            return differs("no free mask atom at " + std::to_string(d));
        for (unsigned back = 0; back < 4; ++back)
            if (mask.link(back) != (back == 3 - d ? &atom : nullptr))
                return differs("mask atom is not bonded back at " + std::to_string(d));
        for (unsigned axis = 0; axis < 3; ++axis)
            if (!(std::abs(mask.position()[axis] - place[axis]) <= 1e-9))
                return differs("mask atom lies elsewhere at " + std::to_string(d));
        return true;
    }

    bool differs(const std::string &difference)
    {
        m_difference = difference;
        return false;
    }

    boost::shared_ptr<TotalVolume> m_volume;
    std::size_t m_cells;
    std::unordered_map<const SiAtom *, AtomName> m_names;
    std::string m_difference;
};

inline Wafer waferOf(const Case &given)
{
    return Wafer(given.grid, given.position, given.materials);
}

inline void play(Wafer &wafer, const Act &act)
{
    if (act.kind == Act::Etch)
        wafer.etch(act.process, act.depth);
    for (const auto &change : act.materials)
        wafer.setMaterial(change.first, change.second);
    for (const auto &change : act.atoms)
        wafer.setAtoms(change.first, change.second.first, change.second.second);
}

/// The wafer after each act.
inline std::vector<Wafer> played(const Case &given)
{
    std::vector<Wafer> wafers;
    Wafer wafer = waferOf(given);
    for (const Act &act : given.acts) {
        play(wafer, act);
        wafers.push_back(wafer);
    }
    return wafers;
}

inline unsigned stripsOf(const Grid &grid, int threads)
{
    return grid.sizeX / unsigned(threads) == 0 ? 1 : unsigned(threads);
}

inline std::vector<std::string> sorted(std::vector<std::string> lines)
{
    std::sort(lines.begin(), lines.end());
    return lines;
}

/// Lines of one run, in any order but for the sizes of one strip.
inline void expectLog(const std::vector<std::string> &lines, const Wafer &wafer, const Act &act,
                      const Grid &grid, int threads)
{
    const std::string label = "debug: Surface list size for thread ";
    const unsigned strips = stripsOf(grid, threads);
    std::vector<std::string> sizes;
    std::vector<std::string> others;
    for (const std::string &line : lines)
        (line.rfind(label, 0) == 0 ? sizes : others).push_back(line);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "debug: Running etching");
    EXPECT_EQ(sorted(others), sorted(wafer.lines()));
    if (strips == 1) {
        EXPECT_EQ(sizes, wafer.sizeLines());
        return;
    }
    const std::uint64_t each = SiEtchingRule::stepsOf(act.depth) + 1;
    EXPECT_EQ(sizes.size(), strips * each);
    for (unsigned t = 0; t < strips; ++t) {
        const std::string start = label + std::to_string(t) + ": ";
        const auto count =
            std::count_if(sizes.begin(), sizes.end(),
                          [&start](const std::string &line) { return line.rfind(start, 0) == 0; });
        EXPECT_EQ(std::uint64_t(count), each) << "thread " << t;
    }
}

/// Plays all acts by this many threads and compares after each.
inline void expectWafers(const Case &given, const std::vector<Wafer> &wafers, int threads,
                         unsigned heapSeed)
{
    SCOPED_TRACE(testing::Message() << threads << " threads, heap of seed " << heapSeed);
    const Support::PoolThreads pool(threads);
    Sample sample(given, heapSeed);
    for (std::size_t i = 0; i < given.acts.size(); ++i) {
        SCOPED_TRACE(testing::Message() << "act " << i);
        const Fakes::DebugLog log;
        sample.play(given.acts[i]);
        ASSERT_TRUE(sample.agreesWith(wafers[i]));
        if (given.acts[i].kind == Act::Etch)
            expectLog(log.lines(), wafers[i], given.acts[i], given.grid, threads);
        if (testing::Test::HasFailure())
            return;
    }
}

/// One strip wherever the atoms lie in memory, and as many as the volume may be cut into.
inline void expectRule(const Case &given)
{
    const std::vector<Wafer> wafers = played(given);
    for (const unsigned heapSeed : {0U, 71U, 72U}) {
        expectWafers(given, wafers, 1, heapSeed);
        if (testing::Test::HasFailure())
            return;
    }
    // Of fewer columns than threads comes one strip, wherever it lies.
    std::vector<int> threads = {int(given.grid.sizeX) + 1};
    if (given.mayBeCut())
        threads.insert(threads.end(), {2, 3, 5, int(given.grid.sizeX)});
    for (const int count : threads) {
        expectWafers(given, wafers, count, 73U);
        if (testing::Test::HasFailure())
            return;
    }
}

inline Ids randomIds(const Grid &grid, std::mt19937 &random)
{
    const std::uint32_t others[] = {0, 0, 0, resist, 3, 4000000000U};
    const unsigned siliconIn = 2 + random() % 7;
    if (random() % 3 == 0) {
        // A wafer under a film with openings.
        const std::uint32_t height = 1 + random() % grid.sizeZ;
        const std::uint32_t film = random() % 2 == 0 ? resist : 0;
        return Support::materialsBy(grid, [&](auto, auto, std::uint32_t z) {
            return z < height ? silicon : z == height && random() % 3 != 0 ? film : 0U;
        });
    }
    Ids ids;
    for (std::size_t i = 0; i < grid.cells(); ++i)
        ids.push_back(random() % 8 < siliconIn ? silicon : others[random() % 6]);
    return ids;
}

inline double randomDepth(std::mt19937 &random)
{
    const double depths[] = {0.125, 0.25, 0.25, 0.3749, 0.5,  0.75, 1.0,
                             1.5,   2.5,  3.0,  5.0,    10.0, 40.0};
    return depths[random() % (sizeof depths / sizeof depths[0])];
}

/// Fills, strips, empties or covers some cells of a wafer.
inline Act randomChange(const Wafer &wafer, std::mt19937 &random)
{
    const std::vector<SiEtchingRule::Cell> &cells = wafer.voxels();
    const unsigned kind = random() % 4;
    const unsigned percent = 20 + random() % 80;
    Act act;
    act.kind = Act::SetMaterials;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (random() % 100 >= percent)
            continue;
        const std::uint32_t material = cells[i].material;
        if (kind == 0 && material == 0)
            act.materials[i] = silicon;
        else if (kind == 1 && material > 1)
            act.materials[i] = 0;
        else if (kind == 2 && material == silicon && random() % 3 == 0)
            act.materials[i] = 0;
        else if (kind == 3 && material == 0)
            act.materials[i] = resist;
    }
    return act;
}

/// Three runs on one lattice, with cells set by hand between the later ones.
inline Case randomCase(const Grid &grid, const Vector3D &position, Process process,
                       std::mt19937 &random)
{
    Case given{grid, position, randomIds(grid, random), {}};
    Wafer wafer = waferOf(given);
    const auto add = [&given, &wafer](const Act &act) {
        given.acts.push_back(act);
        play(wafer, act);
    };
    add(etching(process, randomDepth(random)));
    if (random() % 2 == 0)
        add(randomChange(wafer, random));
    add(etching(process, randomDepth(random)));
    add(randomChange(wafer, random));
    given.acts.push_back(etching(process, randomDepth(random)));
    return given;
}

inline void expectRuleOfRandomVolumes(Process process, std::array<float, 3> cell, bool isAtOrigin,
                                      unsigned firstSeed, unsigned count)
{
    for (unsigned seed = firstSeed; seed < firstSeed + count; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        Grid grid{1 + std::uint32_t(random() % 8),
                  1 + std::uint32_t(random() % 7),
                  1 + std::uint32_t(random() % 6),
                  cell[0],
                  cell[1],
                  cell[2]};
        // One cell thick along each axis in turn.
        if (seed % 8 == 0)
            grid.sizeX = 1;
        if (seed % 8 == 1)
            grid.sizeY = 1;
        if (seed % 8 == 2)
            grid.sizeZ = 1;
        Vector3D position(0, 0, 0);
        if (!isAtOrigin) {
            const auto coordinate = [&random] { return (double(random() % 401) - 200.0) / 32.0; };
            for (unsigned axis = 0; axis < 3; ++axis)
                position[axis] = coordinate();
        }
        expectRule(randomCase(grid, position, process, random));
        if (testing::Test::HasFailure())
            return;
    }
}

/// An atom on top of a wafer, facing void where it has no bond, whose bonds lead to atoms that are
/// made for it alone and that no run examines before it is gone.
class LoneAtom final
{
public:
    struct Bond
    {
        bool isMask = false;
        /// The neighbour is bonded back to the atom.
        bool holdsBack = true;
        /// Of the neighbour's other bonds, whether each leads to an atom with four bonds.
        std::vector<bool> seconds;
    };

    explicit LoneAtom(const std::vector<Bond> &bonds)
        : m_volume(
              latticed({4, 4, 2}, [](auto, auto, unsigned z) { return z == 0 ? silicon : 0U; }))
    {
        for (const SiLattice::Entry &entry : m_volume->siLattice()->cells()) {
            SiAtom &atom = entry.second->atom(7);
            if (atom.state() == 1 && isInTheMiddle(atom))
                m_atom = &atom;
        }
        for (unsigned d = 0; d < 4; ++d)
            m_atom->setLink(d, nullptr);
        for (unsigned d = 0; d < bonds.size(); ++d)
            bond(d, bonds[d]);
    }

    SiAtom &atom() { return *m_atom; }
    SiAtom &neighbour(unsigned d) { return *m_neighbours[d]; }
    void etch(Process process, double depth) { SiEtchingRuns::etch(*m_volume, process, depth); }

private:
    static bool isInTheMiddle(const SiAtom &atom)
    {
        return atom.position()[0] > 1 && atom.position()[0] < 3 && atom.position()[1] > 1 &&
               atom.position()[1] < 3;
    }

    SiAtom &newAtom()
    {
        const unsigned rank = m_atoms++ % 8;
        if (rank == 0)
            m_spare.push_back(boost::make_shared<SiCell>(Vector3D(0, 0, 0)));
        SiAtom &atom = m_spare.back()->atom(rank);
        for (unsigned d = 0; d < 4; ++d)
            atom.setLink(d, nullptr);
        atom.setPosition(m_atom->position());
        atom.setCellIndex(m_atom->cellIndex());
        return atom;
    }

    void bond(unsigned d, const Bond &given)
    {
        SiAtom &first = newAtom();
        m_neighbours.push_back(&first);
        m_atom->linkTo(first, d);
        if (!given.holdsBack)
            first.setLink(3 - d, nullptr);
        if (given.isMask)
            first.setState(3);
        unsigned at = 0;
        for (const bool isBulk : given.seconds) {
            if (at == 3 - d)
                ++at;
            SiAtom &second = newAtom();
            first.linkTo(second, at);
            if (isBulk)
                for (unsigned other = 0; other < 4; ++other)
                    if (other != 3 - at)
                        second.linkTo(newAtom(), other);
            ++at;
        }
    }

    boost::shared_ptr<TotalVolume> m_volume;
    SiAtom *m_atom = nullptr;
    std::vector<SiAtom *> m_neighbours;
    std::vector<boost::shared_ptr<SiCell>> m_spare;
    unsigned m_atoms = 0;
};

} // namespace SiEtchingRuns
