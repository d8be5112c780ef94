#pragma once

#include "DistanceFrontRuns.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <QDir>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <vector>

/// Runs of the engines that look at each cell once, beside a rule of one cell.
namespace PassRuns {

using DistanceFrontRule::Cell;
using DistanceFrontRule::Cells;
using Materials = std::vector<std::uint32_t>;

/// What becomes of a cell of a material at the height z.
using Rule = std::function<std::uint32_t(std::uint32_t material, std::uint32_t z)>;
/// Builds an engine and runs it.
using Run = std::function<void(Model::Automaton::TotalVolume &)>;

inline Cells after(const Cells &before, const Support::Grid &grid, const Rule &rule)
{
    Cells cells = before;
    for (std::uint32_t x = 0; x < grid.sizeX; ++x)
        for (std::uint32_t y = 0; y < grid.sizeY; ++y)
            for (std::uint32_t z = 0; z < grid.sizeZ; ++z) {
                Cell &cell = cells[grid.index(x, y, z)];
                cell.material = rule(cell.material, z);
            }
    return cells;
}

inline ::testing::AssertionResult areSame(const Cells &actual, const Cells &expected)
{
    for (std::size_t i = 0; i < expected.size(); ++i)
        if (!DistanceFrontRule::hasSameMaterialAndFront(actual[i], expected[i]) ||
            !DistanceFrontRule::hasSameAtoms(actual[i], expected[i]))
            return ::testing::AssertionFailure()
                   << "cell " << i << ": " << actual[i] << "; by the rule " << expected[i];
    return ::testing::AssertionSuccess();
}

/// Runs with so many threads in the pool, and expects the rule in both arrays: the materials alone
/// change. The arrays keep their names and can be taken afterwards, or this would never return.
inline void expectRule(const Support::Grid &grid, const Materials &materials, int threads,
                       const Run &run, const Rule &rule)
{
    SCOPED_TRACE(::testing::Message() << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ
                                      << " cells, " << threads << " threads");
    const Cells voxels = DistanceFrontRule::leftoversIn(materials, 1);
    const Cells nextVoxels = DistanceFrontRule::leftoversIn(materials, 1000000);
    const auto volume = Support::makeVolume(grid, materials);
    Model::Automaton::Voxel *const array = volume->voxels();
    Model::Automaton::Voxel *const nextArray = volume->nextVoxels();
    DistanceFrontRule::write(array, voxels);
    DistanceFrontRule::write(nextArray, nextVoxels);
    volume->releaseVoxels();
    volume->releaseNextVoxels();
    {
        const Support::PoolThreads pool(threads);
        run(*volume);
    }
    EXPECT_EQ(volume->voxels(), array);
    EXPECT_EQ(volume->nextVoxels(), nextArray);
    const std::size_t count = grid.cells();
    EXPECT_TRUE(areSame(DistanceFrontRule::read(array, count), after(voxels, grid, rule)));
    EXPECT_TRUE(areSame(DistanceFrontRule::read(nextArray, count), after(nextVoxels, grid, rule)));
    volume->releaseVoxels();
    volume->releaseNextVoxels();
}

/// Sizes of one cell along each axis, of strips with and without a remainder, of flat cells.
inline std::vector<Support::Grid> grids()
{
    return {{1, 1, 1}, {1, 7, 9}, {7, 1, 9},  {7, 9, 1},
            {2, 3, 4}, {9, 4, 6}, {13, 5, 7}, {6, 4, 12, 1.0f, 1.0f, 0.35f}};
}

/// Threads that the pool starts for a run.
inline int poolThreadsOf(int threads, const std::function<void()> &run)
{
    const auto threadsOfTheProcess = [] {
        return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    };
    const Support::PoolThreads pool(threads);
    // Those that have nothing to do end here.
    QThreadPool::globalInstance()->waitForDone();
    const QStringList before = threadsOfTheProcess();
    run();
    int started = 0;
    for (const QString &thread : threadsOfTheProcess())
        started += before.contains(thread) ? 0 : 1;
    return started;
}

/// Expects that a run waits while somebody else has either array.
inline void expectToWaitForBothArrays(const Run &run)
{
    for (const bool next : {false, true}) {
        const auto volume = Support::makeVolume({4, 3, 5}, [](auto, auto, auto) { return 2U; });
        if (next)
            volume->nextVoxels();
        else
            volume->voxels();
        auto running = std::async(std::launch::async, [&] { run(*volume); });
        EXPECT_EQ(running.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
        if (next)
            volume->releaseNextVoxels();
        else
            volume->releaseVoxels();
        running.get();
    }
}

} // namespace PassRuns
