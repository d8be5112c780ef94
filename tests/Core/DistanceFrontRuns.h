#pragma once

#include "DistanceFrontRule.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"
#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <QFuture>
#include <QSemaphore>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <ostream>
#include <random>
#include <set>
#include <vector>

/// Runs of the two engines beside the rule, for the tests of either.
namespace DistanceFrontRule {

using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;
using Materials = std::vector<std::uint32_t>;

/// What a run gets. Printed by tests that fail.
struct Case
{
    Support::Grid grid;
    Materials materials;
    Process process;
};

inline std::ostream &operator<<(std::ostream &stream, const Case &given)
{
    const Support::Grid &grid = given.grid;
    return stream << (given.process.etching ? "etching of " : "deposition of ")
                  << given.process.material << ", thickness " << given.process.thickness << ", "
                  << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ << " cells of "
                  << grid.cellSizeX << " x " << grid.cellSizeY << " x " << grid.cellSizeZ;
}

inline std::ostream &operator<<(std::ostream &stream, const Cell &cell)
{
    return stream << "material " << cell.material << (cell.reached ? ", reached" : "") << " ("
                  << cell.distance[0] << ", " << cell.distance[1] << ", " << cell.distance[2]
                  << ") atoms " << cell.atoms;
}

inline Case caseOf(const Support::Grid &grid, const Process &process,
                   const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), process};
}

/// Cells that earlier processes left behind: nothing of it but the material may matter. The atoms
/// tell every cell of every array from all others.
inline Cells leftoversIn(const Materials &materials, std::int32_t firstAtoms,
                         std::uint32_t seed = 7)
{
    std::mt19937 random(seed);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::array<float, 5> distances = {0.0f, -1.0f, 0.5f, 1e30f, nan};
    const auto draw = [&] { return distances[random() % distances.size()]; };
    Cells cells(materials.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        cells[i].material = materials[i];
        cells[i].reached = random() % 2 == 0;
        cells[i].distance = {draw(), draw(), draw()};
        cells[i].atoms = firstAtoms + std::int32_t(i);
    }
    return cells;
}

inline Cells leftovers(const Case &given)
{
    return leftoversIn(given.materials, 1);
}
inline Cells nextLeftovers(const Case &given)
{
    return leftoversIn(given.materials, 1000000, 8);
}

inline void write(Voxel *voxels, const Cells &cells)
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const Vector &distance = cells[i].distance;
        voxels[i].setMaterial(cells[i].material);
        voxels[i].setReached(cells[i].reached);
        voxels[i].setDistance(distance[0], distance[1], distance[2]);
        voxels[i].setAtoms(cells[i].atoms);
    }
}

inline Cells read(const Voxel *voxels, std::size_t count)
{
    Cells cells(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Voxel &voxel = voxels[i];
        cells[i] = {voxel.material(),
                    voxel.reached(),
                    {voxel.distanceX(), voxel.distanceY(), voxel.distanceZ()},
                    voxel.atoms()};
    }
    return cells;
}

/// A volume full of leftovers, and what it holds after a run.
class Sample final
{
public:
    explicit Sample(const Case &given) : Sample(given, leftovers(given), nextLeftovers(given)) {}
    /// With other cells in the two arrays.
    Sample(const Case &given, const Cells &voxels, const Cells &nextVoxels)
        : m_given(given),
          m_volume(Support::makeVolume(given.grid, given.materials))
    {
        m_voxelsArray = m_volume->voxels();
        m_nextVoxelsArray = m_volume->nextVoxels();
        write(m_voxelsArray, voxels);
        write(m_nextVoxelsArray, nextVoxels);
        release();
    }

    /// Builds the engine for so many threads, does what is to be done in between, and runs it.
    /// Both arrays can be taken afterwards, or this would never return.
    void run(
        int threads, const std::function<void()> &inBetween = [] {})
    {
        const Support::PoolThreads pool(threads);
        const Process &process = m_given.process;
        if (process.etching) {
            Core::Operations::IsotropicFilmEtching engine(m_volume.get(), process.material,
                                                          process.thickness);
            inBetween();
            engine.runEtching();
        } else {
            Core::Operations::IsotropicFilmDeposition engine(m_volume.get(), process.material,
                                                             process.thickness);
            inBetween();
            engine.runDeposition();
        }
        readBack();
    }

    /// Has another engine built and run on the volume; the values of the process are not used.
    void runWith(int threads, const std::function<void(TotalVolume &)> &buildAndRun)
    {
        const Support::PoolThreads pool(threads);
        buildAndRun(*m_volume);
        readBack();
    }

    void readBack()
    {
        const Voxel *voxels = m_volume->voxels();
        const Voxel *nextVoxels = m_volume->nextVoxels();
        m_isSwapped = voxels == m_nextVoxelsArray && nextVoxels == m_voxelsArray;
        m_isInPlace = voxels == m_voxelsArray && nextVoxels == m_nextVoxelsArray;
        m_voxels = read(voxels, m_given.grid.cells());
        m_nextVoxels = read(nextVoxels, m_given.grid.cells());
        release();
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }
    const Cell &at(int x, int y, int z) const { return m_voxels[indexOf(m_given.grid, {x, y, z})]; }
    /// The volume names its two arrays the other way round than at the start, or as then.
    bool isSwapped() const { return m_isSwapped; }
    bool isInPlace() const { return m_isInPlace; }

    Materials materials() const { return materialsOf(m_voxels); }
    Materials nextMaterials() const { return materialsOf(m_nextVoxels); }

private:
    static Materials materialsOf(const Cells &cells)
    {
        Materials materials;
        for (const Cell &cell : cells)
            materials.push_back(cell.material);
        return materials;
    }

    void release()
    {
        m_volume->releaseVoxels();
        m_volume->releaseNextVoxels();
    }

    Case m_given;
    boost::shared_ptr<TotalVolume> m_volume;
    Voxel *m_voxelsArray = nullptr;
    Voxel *m_nextVoxelsArray = nullptr;
    bool m_isSwapped = false;
    bool m_isInPlace = false;
    Cells m_voxels;
    Cells m_nextVoxels;
};

inline Rule ruleOf(const Case &given, const std::vector<Strip> &strips)
{
    Rule rule(given.grid, given.process, strips, leftovers(given), nextLeftovers(given));
    rule.run();
    return rule;
}

inline bool isSameNumber(float a, float b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}
inline bool hasSameMaterial(const Cell &a, const Cell &b)
{
    return a.material == b.material;
}
inline bool hasSameFront(const Cell &a, const Cell &b)
{
    return a.reached == b.reached && isSameNumber(a.distance[0], b.distance[0]) &&
           isSameNumber(a.distance[1], b.distance[1]) && isSameNumber(a.distance[2], b.distance[2]);
}
inline bool hasSameMaterialAndFront(const Cell &a, const Cell &b)
{
    return hasSameMaterial(a, b) && hasSameFront(a, b);
}
inline bool hasSameAtoms(const Cell &a, const Cell &b)
{
    return a.atoms == b.atoms;
}
inline bool hasSameFields(const Cell &a, const Cell &b)
{
    return hasSameMaterialAndFront(a, b) && hasSameAtoms(a, b);
}

/// Whether the cells agree one by one in what `same` compares; tells the first that does not.
inline testing::AssertionResult agree(const Case &given, const Cells &actual, const Cells &expected,
                                      bool (*same)(const Cell &, const Cell &))
{
    std::size_t count = 0;
    std::size_t first = 0;
    for (std::size_t i = expected.size(); i-- > 0;) {
        if (!same(actual[i], expected[i])) {
            ++count;
            first = i;
        }
    }
    if (count == 0)
        return testing::AssertionSuccess();
    const Place at = placeOf(given.grid, int(first));
    return testing::AssertionFailure()
           << count << " cells differ in " << given << "; first (" << at.x << ", " << at.y << ", "
           << at.z << "): " << actual[first] << "; by the rule " << expected[first];
}

/// Runs with one strip, on the pool and on the calling thread, and compares with the rule.
inline void expectRule(const Case &given)
{
    const Rule rule = ruleOf(given, stripsOf(given.grid, 1));
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        Sample sample(given);
        sample.run(threads);
        EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
    }
}

/// Fills the one thread of the pool, so that whoever waits for another task has to run it himself:
/// the strips of a run then follow one another as they are waited for, in ascending order. Made
/// after the engine, which by then has read how many threads there are.
class BusyPool final
{
public:
    BusyPool()
    {
        QThreadPool::globalInstance()->waitForDone();
        QThreadPool::globalInstance()->setMaxThreadCount(1);
        m_task = QtConcurrent::run([this] {
            m_started.release();
            // Only a run that needs the pool all the same waits so long.
            m_end.tryAcquire(1, 60000);
        });
        m_started.acquire();
    }
    ~BusyPool()
    {
        m_end.release();
        m_task.waitForFinished();
    }
    BusyPool(const BusyPool &) = delete;
    BusyPool &operator=(const BusyPool &) = delete;

    bool isBusy() const { return !m_task.isFinished(); }

private:
    QSemaphore m_started;
    QSemaphore m_end;
    QFuture<void> m_task;
};

/// Runs the strips one after the other and compares with the rule for those strips.
inline void expectRuleOfStrips(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << threads << " threads");
    const Rule rule = ruleOf(given, stripsOf(given.grid, threads));
    std::optional<BusyPool> pool;
    Sample sample(given);
    sample.run(threads, [&] { pool.emplace(); });
    EXPECT_TRUE(pool->isBusy());
    EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
    EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
}

/// What holds for every order in which threads may run the strips. A cell at the border of a strip
/// may be listed late or never, and may be read before or after its strip has written it, so that
/// the cells around it can come out otherwise than with one strip, in either direction. But:
/// - Only cells that the process is meant to change do change, and both arrays tell the same.
/// - The front goes from face to face with a vector that keeps naming one source. So a changed cell
///   names a source cell within the thickness, and is connected to it by cells that could change
///   and are as near to that source.
/// - What has a source at a face, within the thickness, changes in the first step.
/// - News go one cell a step, so that a cell further from every border than there are steps is that
///   of one strip.
/// Cell sizes have to be powers of two, for sums of steps to be exact.
class Guarantees final
{
public:
    Guarantees(const Case &given, int threads)
        : m_given(given),
          m_steps(int(stepCountOf(given.grid, given.process))),
          m_strips(stripsOf(given.grid, threads)),
          m_oneStrip(ruleOf(given, stripsOf(given.grid, 1)).voxels())
    {}

    void expectFor(const Sample &sample)
    {
        EXPECT_TRUE(agree(m_given, sample.nextVoxels(), sample.voxels(), hasSameMaterial));
        for (int cell = 0; cell < int(m_given.materials.size()); ++cell) {
            const testing::AssertionResult kept = isKept(cell, sample.voxels()[cell]);
            const Place at = placeOf(m_given.grid, cell);
            ASSERT_TRUE(kept) << m_given << ", " << m_strips.size() << " strips, cell (" << at.x
                              << ", " << at.y << ", " << at.z << "): " << sample.voxels()[cell];
        }
    }

    bool isBeyondNews(int cell) const
    {
        const int x = placeOf(m_given.grid, cell).x;
        for (std::size_t i = 1; i < m_strips.size(); ++i) {
            const int border = m_strips[i].start;
            const int layersBetween = x < border ? border - 1 - x : x - border;
            if (layersBetween < m_steps)
                return false;
        }
        return true;
    }

private:
    bool isSource(int cell) const { return m_given.process.isSource(m_given.materials[cell]); }
    bool isTarget(int cell) const
    {
        const std::uint32_t id = m_given.materials[cell];
        return m_given.process.changed(id) != id;
    }
    bool isWithinThickness(const Place &offset) const
    {
        const Support::Grid &grid = m_given.grid;
        const float thickness = m_given.process.thickness;
        return squaredLength({float(offset.x) * grid.cellSizeX, float(offset.y) * grid.cellSizeY,
                              float(offset.z) * grid.cellSizeZ}) <= thickness * thickness;
    }

    testing::AssertionResult isKept(int cell, const Cell &now)
    {
        const float far = m_given.process.thickness;
        const Cell before = {m_given.materials[cell], isSource(cell), {far, far, far}, now.atoms};
        if (isBeyondNews(cell) && !hasSameMaterialAndFront(now, m_oneStrip[cell]))
            return testing::AssertionFailure() << "is not that of one strip";
        if (isSource(cell)) {
            return now.material == before.material && now.reached &&
                           squaredLength(now.distance) == 0.0f
                       ? testing::AssertionSuccess()
                       : testing::AssertionFailure() << "was a source";
        }
        if (!isTarget(cell) || now.material == before.material) {
            if (!hasSameMaterialAndFront(now, before))
                return testing::AssertionFailure() << "neither as before nor changed";
            return isTarget(cell) && m_steps > 0 && hasSourceAtFace(cell)
                       ? testing::AssertionFailure() << "has a source at a face"
                       : testing::AssertionSuccess();
        }
        if (now.material != m_given.process.changed(before.material) || now.reached)
            return testing::AssertionFailure() << "is not what the process makes of it";
        return namesItsSource(cell, now.distance);
    }

    bool hasSourceAtFace(int cell) const
    {
        const Place at = placeOf(m_given.grid, cell);
        return std::any_of(faceNeighbors.begin(), faceNeighbors.end(), [&](const Place &face) {
            const Place other = at + face;
            return isInside(m_given.grid, other) && isSource(indexOf(m_given.grid, other)) &&
                   isWithinThickness(face);
        });
    }

    testing::AssertionResult namesItsSource(int cell, const Vector &distance)
    {
        const Support::Grid &grid = m_given.grid;
        const Vector cells = {distance[0] / grid.cellSizeX, distance[1] / grid.cellSizeY,
                              distance[2] / grid.cellSizeZ};
        for (const float along : cells)
            if (!(std::abs(along) < 1000.0f) || std::trunc(along) != along)
                return testing::AssertionFailure() << "names no whole cell";
        const Place offset = {int(cells[0]), int(cells[1]), int(cells[2])};
        const Place source = placeOf(grid, cell) + offset;
        if (!isInside(grid, source) || !isSource(indexOf(grid, source)))
            return testing::AssertionFailure() << "names no source";
        const std::vector<int> &reach = reachOf(indexOf(grid, source));
        return std::binary_search(reach.begin(), reach.end(), cell)
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "is out of reach of the source it names";
    }

    /// The cells that are connected to a source through cells within the thickness of it.
    const std::vector<int> &reachOf(int source)
    {
        const auto known = m_reach.find(source);
        if (known != m_reach.end())
            return known->second;
        const Place from = placeOf(m_given.grid, source);
        std::set<int> reach;
        std::vector<int> open = {source};
        while (!open.empty()) {
            const Place at = placeOf(m_given.grid, open.back());
            open.pop_back();
            for (const Place &face : faceNeighbors) {
                const Place other = at + face;
                if (!isInside(m_given.grid, other))
                    continue;
                const int cell = indexOf(m_given.grid, other);
                if (isTarget(cell) && isWithinThickness(other - from) && reach.insert(cell).second)
                    open.push_back(cell);
            }
        }
        return m_reach.emplace(source, std::vector<int>(reach.begin(), reach.end())).first->second;
    }

    Case m_given;
    int m_steps;
    std::vector<Strip> m_strips;
    Cells m_oneStrip;
    std::map<int, std::vector<int>> m_reach;
};

/// Runs on as many threads as told and expects what holds for every order of the strips.
inline void expectGuarantees(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << threads << " threads");
    Sample sample(given);
    sample.run(threads);
    Guarantees(given, threads).expectFor(sample);
}

/// A volume of random cells: `filledPercent` of them hold ids 1 to 4, half of these the id 1.
inline Materials randomMaterials(const Support::Grid &grid, std::uint32_t seed,
                                 std::uint32_t filledPercent)
{
    std::mt19937 random(seed);
    return Support::materialsBy(grid, [&](auto, auto, auto) -> std::uint32_t {
        if (random() % 100 >= filledPercent)
            return 0;
        return random() % 2 == 0 ? 1 : 1 + random() % 4;
    });
}

} // namespace DistanceFrontRule
