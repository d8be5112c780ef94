#include "Core/Operations/CellularProcess/CellFront.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>
#include <thread>
#include <tuple>
#include <vector>

namespace {

using Core::Operations::CellFront;
using Core::Operations::FrontList;
using Core::Operations::FrontWord;
using Core::Operations::Neighborhood;
using Core::Operations::PlaneCell;
using Core::Operations::StripRun;
using Support::Grid;
using Support::PoolThreads;

using Cell = std::tuple<int, int, int>;
using Cells = std::set<Cell>;

Cells cellsOf(const FrontList &list)
{
    Cells all;
    for (std::uint32_t x = list.firstX(); x < list.endX(); ++x) {
        std::vector<PlaneCell> plane;
        list.appendCells(x, plane);
        for (const PlaneCell &cell : plane)
            all.emplace(x, cell.y, cell.z);
    }
    return all;
}

/// A front whose cells are passable at random, opened on all strips.
class CellFrontTest : public testing::TestWithParam<Neighborhood>
{
protected:
    void fill(CellFront &front, const StripRun &strips, const Grid &grid, std::mt19937 &random)
    {
        m_passable.clear();
        for (std::uint32_t strip = 0; strip < strips.strips(); ++strip)
            front.openStrip(strips.start(strip), strips.end(strip), strip);
        for (std::uint32_t x = 0; x < grid.sizeX; ++x)
            for (std::uint32_t y = 0; y < grid.sizeY; ++y)
                for (std::uint32_t z = 0; z < grid.sizeZ; ++z) {
                    const bool passable = random() % 3 != 0;
                    front.setPassable(x, PlaneCell{y, z}, passable);
                    if (passable)
                        m_passable.emplace(x, y, z);
                }
    }

    /// The passable neighbours of the cells, from the rule.
    Cells neighborsOf(const Cells &cells) const
    {
        Cells found;
        for (const auto &[x, y, z] : cells)
            for (int dx = -1; dx <= 1; ++dx)
                for (int dy = -1; dy <= 1; ++dy)
                    for (int dz = -1; dz <= 1; ++dz) {
                        const int distance = std::abs(dx) + std::abs(dy) + std::abs(dz);
                        if (distance == 0 || (GetParam() == Neighborhood::Face && distance > 1))
                            continue;
                        const Cell neighbor(x + dx, y + dy, z + dz);
                        if (m_passable.count(neighbor))
                            found.insert(neighbor);
                    }
        return found;
    }

    Cells m_passable;
};

TEST_P(CellFrontTest, TheNeighboursOfAPlaneAreListedAcrossWordsStripsAndBorders)
{
    const PoolThreads threads(3);
    const unsigned seed = 7;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (const Grid &grid : {Grid{9, 5, 70}, Grid{6, 1, 1}, Grid{7, 4, 64}, Grid{8, 2, 129}}) {
        const StripRun strips(grid.sizeX);
        const std::uint32_t words = (grid.sizeZ + 63) / 64;
        for (std::uint32_t strip = 0; strip < strips.strips(); ++strip) {
            CellFront front(strips, grid.sizeX, grid.sizeY, grid.sizeZ);
            fill(front, strips, grid, random);
            Cells taken;
            {
                const CellFront::Pass pass(front, strip);
                for (std::int32_t x = strips.start(strip); x < strips.end(strip); ++x) {
                    std::vector<FrontWord> plane(std::size_t{grid.sizeY} * words, 0);
                    std::uint32_t firstY = grid.sizeY;
                    std::uint32_t lastY = 0;
                    for (std::uint32_t y = 0; y < grid.sizeY; ++y)
                        for (std::uint32_t z = 0; z < grid.sizeZ; ++z)
                            if (random() % 20 == 0) {
                                taken.emplace(x, y, z);
                                plane[y * words + z / 64] |= FrontWord{1} << z % 64;
                                firstY = std::min(firstY, y);
                                lastY = y;
                            }
                    if (firstY <= lastY)
                        front.enqueueNeighbors(GetParam(), static_cast<std::uint32_t>(x), plane,
                                               firstY, lastY, strip);
                }
            }
            // Each strip takes what its neighbour found for it.
            Cells listed;
            for (std::uint32_t other = 0; other < strips.strips(); ++other) {
                front.takeFromNeighbors(other);
                front.replaceSurfaceCells(other);
                const Cells own = cellsOf(front.surfaceCells(other));
                for (const Cell &cell : own) {
                    EXPECT_GE(std::get<0>(cell), strips.start(other));
                    EXPECT_LT(std::get<0>(cell), strips.end(other));
                }
                listed.insert(own.begin(), own.end());
            }
            EXPECT_EQ(listed, neighborsOf(taken));
        }
    }
}

TEST_P(CellFrontTest, APassClearsWhatNobodyTook)
{
    const PoolThreads threads(2);
    const StripRun strips(4);
    CellFront front(strips, 4, 1, 1);
    for (std::uint32_t strip = 0; strip < 2; ++strip)
        front.openStrip(strips.start(strip), strips.end(strip), strip);
    for (std::uint32_t x = 0; x < 4; ++x)
        front.setPassable(x, PlaneCell{0, 0}, true);
    {
        const CellFront::Pass pass(front, 0);
        front.enqueueNeighbors(GetParam(), 1, {1}, 0, 0, 0);
    }
    {
        const CellFront::Pass pass(front, 0);
    }
    front.takeFromNeighbors(1);
    front.replaceSurfaceCells(1);
    EXPECT_TRUE(cellsOf(front.surfaceCells(1)).empty());
}

TEST_P(CellFrontTest, ANeighbourWaitsUntilThePassIsOver)
{
    const PoolThreads threads(2);
    const StripRun strips(4);
    CellFront front(strips, 4, 1, 1);
    for (std::uint32_t strip = 0; strip < 2; ++strip)
        front.openStrip(strips.start(strip), strips.end(strip), strip);
    front.setPassable(2, PlaneCell{0, 0}, true);
    std::thread neighbor;
    {
        const CellFront::Pass pass(front, 0);
        neighbor = std::thread([&front] { front.takeFromNeighbors(1); });
        std::this_thread::yield();
        front.enqueueNeighbors(GetParam(), 1, {1}, 0, 0, 0);
    }
    neighbor.join();
    front.replaceSurfaceCells(1);
    // Whenever the neighbour asked, it got the complete list.
    EXPECT_EQ(cellsOf(front.surfaceCells(1)), (Cells{{2, 0, 0}}));
}

INSTANTIATE_TEST_SUITE_P(BothNeighborhoods, CellFrontTest,
                         testing::Values(Neighborhood::Face, Neighborhood::Moore));

} // namespace
