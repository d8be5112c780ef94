#include "Core/Operations/GlueSubstrate/GlueSubstrate.h"

#include "GlueSubstrateRule.h"
#include "GlueSubstrateRuns.h"
#include "PassRuns.h"
#include "ProcessSuite.h"
#include "SourceVolume.h"

#include "Core/Operations/GlueSubstrate/GlueSubstrateOperation.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <future>
#include <random>
#include <utility>
#include <vector>

using Core::Operations::GlueSubstrateOperation;
using Model::Automaton::TotalVolume;
using Support::Grid;
using Util::Vector3D;
using namespace GlueSubstrateRule;

namespace {

/// Threads that the pool starts for the cells, without the measures.
int poolThreadsOf(const Wafer &base, const Wafer &top, int threads)
{
    const SourceVolume first = sourceOf(base);
    const SourceVolume second = sourceOf(top);
    GlueSubstrate engine(first.volume().get(), second.volume().get(), measuresOf(base, top),
                         smallest(base, top));
    return PassRuns::poolThreadsOf(threads, [&] { engine.glue(); });
}

class GlueSubstrateTest : public Fakes::ProcessSuite<GlueSubstrateOperation>
{
protected:
    /// Plays the whole operation and returns the one volume that the document has then.
    Volume played(const SourceVolume &base, const SourceVolume &top, const GlueChoices &choices)
    {
        workspace().document().reset();
        workspace().document().addObject(base.volume());
        workspace().document().addObject(top.volume());
        activateOn(base.volume(), [&](GlueSubstrateOperation &operation) {
            operation.setFinalSize(choices.finalX, choices.finalY, choices.finalZ);
            operation.setDisplacement(choices.displacementX, choices.displacementY);
            operation.setInvertTop(choices.invertTop);
            operation.end();
        });
        select({top.volume()});
        type("");
        const auto objects = workspace().document().objects();
        EXPECT_EQ(objects.size(), 1U);
        const Volume result = boost::dynamic_pointer_cast<TotalVolume>(objects.front());
        EXPECT_NE(result, base.volume());
        EXPECT_NE(result, top.volume());
        return result;
    }
};

TEST_F(GlueSubstrateTest, EqualSubstratesTouchAtTheFirstLayerAboveTheBase)
{
    const Grid grid{100, 100, 80};
    const Wafer base = layered(grid, 0, 30, 1);
    const Wafer top = layered(grid, 0, 30, 2);
    const GlueMeasures measures = measuresOf(base, top);
    ASSERT_EQ(measures.minimumZ, 60U);
    const Grid result{100, 100, 61};
    const Materials ids = glue(base, top, {100, 100, 61, 0, 0, false}, 2);
    EXPECT_EQ(ids, Support::materialsBy(result, [](auto, auto, std::uint32_t z) {
                  return z < 30 ? 1U : z < 60 ? 2U : 0U;
              }));
}

TEST_F(GlueSubstrateTest, HighestLayerOfAnInvertedTopLandsOnTheBase)
{
    const Wafer base = layered({5, 4, 6}, 1, 2, 1);
    const Wafer top = waferOf(
        {5, 4, 7}, [](auto, auto, std::uint32_t z) { return z >= 2 && z <= 4 ? 10 + z : 0U; });
    expectGlued(base, top, true, [](auto, auto, std::uint32_t z) -> std::uint32_t {
        return z == 0 ? 0 : z < 3 ? 1 : 14 - (z - 3);
    });
    expectGlued(base, top, false, [](auto, auto, std::uint32_t z) -> std::uint32_t {
        return z == 0 ? 0 : z < 3 ? 1 : 12 + (z - 3);
    });
}

TEST_F(GlueSubstrateTest, InversionReversesXAndZAndLeavesY)
{
    const Wafer base = layered({4, 3, 2}, 0, 1, 1);
    const Wafer top = waferOf({4, 3, 5}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return 100 + 100 * x + 10 * y + z;
    });
    expectGlued(base, top, true, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return z == 0 ? 1U : 100 + 100 * (3 - x) + 10 * y + (4 - (z - 1));
    });
}

TEST_F(GlueSubstrateTest, CavityOnTheUndersideOfTheTopStaysOpenAtTheJoint)
{
    const Wafer base = layered({6, 6, 4}, 0, 2, 1);
    const auto cavity = [](std::uint32_t x, std::uint32_t y) {
        return x > 1 && x < 4 && y > 0 && y < 5;
    };
    const Wafer top = waferOf({6, 6, 5}, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return z == 0 || (z < 3 && cavity(x, y)) ? 0U : 2U;
    });
    expectGlued(base, top, false, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        if (z < 2)
            return 1U;
        return z < 4 && cavity(x, y) ? 0U : 2U;
    });
    expectGlued(base, top, true, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        if (z < 2)
            return 1U;
        return z >= 4 && cavity(5 - x, y) ? 0U : 2U;
    });
}

TEST_F(GlueSubstrateTest, TopRestsOnTheHighestLayerOfTheBaseAboveEmptyColumns)
{
    const Wafer base = waferOf({4, 3, 9}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return z == 0 || (x == 3 && y == 2 && z < 6) ? 1U : 0U;
    });
    const Wafer top = layered({4, 3, 3}, 0, 2, 2);
    expectGlued(base, top, false, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return z >= 6 ? 2U : base.at(x, y, z);
    });
}

TEST_F(GlueSubstrateTest, SmallerTopWithoutDisplacementSitsAtTheLowCorner)
{
    const Wafer base = layered({8, 7, 3}, 0, 2, 1);
    const Wafer top = layered({3, 2, 4}, 1, 2, 2);
    for (const bool invert : {false, true})
        expectGlued(base, top, invert, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            if (z < 2)
                return 1U;
            return x < 3 && y < 2 ? 2U : 0U;
        });
}

TEST_F(GlueSubstrateTest, SmallerTopAtTheEndOfItsRoomSitsAtTheHighCorner)
{
    const Wafer base = layered({8, 7, 3}, 0, 2, 1);
    const Wafer top = layered({3, 2, 4}, 1, 2, 2);
    const GlueMeasures measures = measuresOf(base, top);
    EXPECT_EQ(measures.maximumDisplacementX, 5U);
    EXPECT_EQ(measures.maximumDisplacementY, 5U);
    for (const bool invert : {false, true})
        for (const int threads : threadCounts)
            EXPECT_EQ(glue(base, top, {8, 7, 4, 5, 5, invert}, threads),
                      Support::materialsBy({8, 7, 4},
                                           [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                                               if (z < 2)
                                                   return 1U;
                                               return x >= 5 && y >= 5 ? 2U : 0U;
                                           }));
}

TEST_F(GlueSubstrateTest, SmallerBaseStaysAtTheLowCornerBelowTheTop)
{
    const Wafer base = layered({2, 3, 5}, 0, 4, 1);
    const Wafer top = layered({6, 5, 2}, 0, 1, 2);
    expectGlued(base, top, false, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        if (z == 4)
            return 2U;
        return x < 2 && y < 3 ? 1U : 0U;
    });
}

TEST_F(GlueSubstrateTest, EachIsTheLargerOneAlongItsOwnAxis)
{
    const Wafer base = layered({9, 3, 4}, 0, 2, 1);
    const Wafer top = layered({4, 8, 3}, 0, 3, 2);
    const GlueMeasures measures = measuresOf(base, top);
    EXPECT_EQ(measures.minimumX, 9U);
    EXPECT_EQ(measures.minimumY, 8U);
    EXPECT_EQ(measures.maximumDisplacementX, 5U);
    EXPECT_EQ(measures.maximumDisplacementY, 0U);
    for (std::uint32_t displacement = 0; displacement <= 5; ++displacement)
        for (const bool invert : {false, true})
            expectRule(base, top, {9, 8, 5, displacement, 0, invert});
}

TEST_F(GlueSubstrateTest, EmptyBaseCountsAsOneLayer)
{
    const Wafer base = layered({4, 3, 6}, 0, 0, 1);
    const Wafer top = layered({4, 3, 6}, 2, 3, 2);
    EXPECT_EQ(measuresOf(base, top).baseHeight, 1U);
    for (const bool invert : {false, true})
        expectGlued(base, top, invert,
                    [](auto, auto, std::uint32_t z) { return z == 0 ? 0U : 2U; });
}

TEST_F(GlueSubstrateTest, OneFilledCellIsABodyWhereverItIs)
{
    const Grid grid{3, 2, 4};
    for (std::size_t inBase = 0; inBase < grid.cells(); ++inBase)
        for (std::size_t inTop = 0; inTop < grid.cells(); ++inTop) {
            Wafer base{grid, Materials(grid.cells(), 0)};
            Wafer top = base;
            base.materials[inBase] = 1;
            top.materials[inTop] = 2;
            for (const bool invert : {false, true}) {
                const GlueChoices choices = smallest(base, top, invert);
                const Materials ids = glue(base, top, choices, 1);
                EXPECT_EQ(ids, glued(base, top, choices));
                EXPECT_EQ(std::count(ids.begin(), ids.end(), 0U), std::ptrdiff_t(ids.size()) - 2);
            }
        }
}

TEST_F(GlueSubstrateTest, EmptyTopIsToldAndItsMeasuresWrap)
{
    const Wafer base = layered({4, 3, 6}, 0, 2, 1);
    SourceVolume first = sourceOf(base);
    for (const std::uint32_t height : {1U, 2U, 3U, 4U, 50U}) {
        SourceVolume second = sourceOf(layered({4, 3, height}, 0, 0, 1));
        const GlueMeasures measures = GlueSubstrate::measure(*first.volume(), *second.volume());
        EXPECT_TRUE(measures.topEmpty);
        EXPECT_EQ(measures.baseHeight, 2U);
        EXPECT_EQ(measures.topLowest, height);
        EXPECT_EQ(measures.topHeight, 1U);
        EXPECT_EQ(measures.minimumZ, std::uint32_t(3 - std::int64_t(height)));
    }
}

TEST_F(GlueSubstrateTest, OneVolumeCanBeMeasuredAsBoth)
{
    const Wafer wafer = layered({4, 3, 6}, 1, 3, 1);
    SourceVolume source = sourceOf(wafer);
    expectMeasures(GlueSubstrate::measure(*source.volume(), *source.volume()),
                   measuresOf(wafer, wafer));
    source.expectUnchanged();
}

TEST_F(GlueSubstrateTest, VolumesWithASizeOfZeroAreEmpty)
{
    const Wafer filled = layered({4, 3, 6}, 1, 3, 1);
    for (const Grid &grid : {Grid{0, 3, 5}, Grid{4, 0, 5}, Grid{4, 3, 0}, Grid{0, 0, 0}}) {
        const Wafer nothing{grid, {}};
        SourceVolume source = sourceOf(filled);
        SourceVolume empty = sourceOf(nothing);
        expectMeasures(GlueSubstrate::measure(*empty.volume(), *source.volume()),
                       measuresOf(nothing, filled));
        expectMeasures(GlueSubstrate::measure(*source.volume(), *empty.volume()),
                       measuresOf(filled, nothing));
        for (const bool invert : {false, true})
            expectRule(nothing, filled, smallest(nothing, filled, invert));
    }
}

TEST_F(GlueSubstrateTest, VolumesWithTooManyCellsToCountAreEmpty)
{
    SourceVolume filled = sourceOf(layered({4, 3, 6}, 1, 3, 1));
    // 2^33 cells, which is 0 in 32 bits.
    const Wafer huge{{65536, 65536, 2}, {}};
    SourceVolume source = sourceOf(huge);
    const GlueMeasures asTop = GlueSubstrate::measure(*filled.volume(), *source.volume());
    EXPECT_TRUE(asTop.topEmpty);
    EXPECT_EQ(asTop.topLowest, 2U);
    EXPECT_EQ(asTop.topHeight, 1U);
    const GlueMeasures asBase = GlueSubstrate::measure(*source.volume(), *filled.volume());
    EXPECT_FALSE(asBase.topEmpty);
    EXPECT_EQ(asBase.baseHeight, 1U);
    EXPECT_EQ(asBase.minimumX, 65536U);
}

TEST_F(GlueSubstrateTest, ResultThatCannotBeCountedOrHeldDoesNotFit)
{
    const Wafer wafer = layered({4, 3, 6}, 0, 2, 1);
    SourceVolume base = sourceOf(wafer);
    SourceVolume top = sourceOf(wafer);
    const GlueMeasures measures = GlueSubstrate::measure(*base.volume(), *top.volume());
    const auto fits = [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return GlueSubstrate(base.volume().get(), top.volume().get(), measures,
                             {x, y, z, 0, 0, false})
            .fits();
    };
    EXPECT_TRUE(fits(4, 3, 4));
    EXPECT_TRUE(fits(4, 3, 5));
    EXPECT_FALSE(fits(65536, 65536, 1));
    EXPECT_FALSE(fits(65536, 65536, 65536));
    EXPECT_FALSE(fits(65537, 65537, 4));
    EXPECT_FALSE(fits(100, 100, 999999999));
    EXPECT_FALSE(fits(4294967295, 4294967295, 4294967295));
}

TEST_F(GlueSubstrateTest, RoomAboveTheMinimumStaysEmpty)
{
    const Wafer base = layered({4, 3, 6}, 0, 2, 1);
    const Wafer top = layered({3, 3, 6}, 1, 4, 2);
    const Grid result{7, 6, 11};
    for (const bool invert : {false, true})
        for (const int threads : threadCounts)
            EXPECT_EQ(
                glue(base, top, {7, 6, 11, 1, 0, invert}, threads),
                Support::materialsBy(result, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    if (z < 2)
                        return x < 4 && y < 3 ? 1U : 0U;
                    return z < 6 && x >= 1 && x < 4 && y < 3 ? 2U : 0U;
                }));
}

TEST_F(GlueSubstrateTest, WhatLiesBeyondTheFinalSizesIsCutOff)
{
    const Wafer base = layered({5, 4, 6}, 0, 3, 1);
    const Wafer top = waferOf({4, 3, 5}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return 100 + 100 * x + 10 * y + z;
    });
    for (const bool invert : {false, true}) {
        expectRule(base, top, {5, 4, 6, 0, 0, invert});
        expectRule(base, top, {5, 4, 3, 0, 0, invert});
        expectRule(base, top, {5, 4, 1, 0, 0, invert});
        expectRule(base, top, {5, 4, 8, 3, 2, invert});
        expectRule(base, top, {5, 4, 8, 50, 0, invert});
        expectRule(base, top, {5, 4, 8, 0, 50, invert});
        expectRule(base, top, {2, 2, 8, 1, 1, invert});
        expectRule(base, top, {1, 1, 1, 0, 0, invert});
    }
}

TEST_F(GlueSubstrateTest, PositionOfTheTopPlaysNoPart)
{
    const Wafer base = layered({4, 3, 5}, 0, 2, 1);
    const Wafer top = waferOf({3, 3, 4}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return (x + 2 * y + z) % 3;
    });
    const GlueChoices choices{4, 3, 7, 1, 0, true};
    for (const Vector3D &place : {Vector3D(0, 0, 0), Vector3D(-500, 20, 33.5)}) {
        SourceVolume first = sourceOf(base, Vector3D(3, -4, 5));
        SourceVolume second = sourceOf(top, place);
        const Volume result = played(first, second, choices);
        ASSERT_NE(result, nullptr);
        EXPECT_EQ(cornerOf(*result), (Corner{3, -4, 5}));
        Fakes::expectMaterials(*result, glued(base, top, choices));
    }
}

TEST_F(GlueSubstrateTest, ResultHasTheBodiesInBothArraysAndTheLargerCells)
{
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        const Wafer base = randomWafer(random, randomGrid(random, 7));
        const Wafer top = randomWafer(random, randomGrid(random, 7));
        if (isEmpty(top))
            continue;
        GlueChoices choices = smallest(base, top, random() % 2 == 0);
        const GlueMeasures measures = measuresOf(base, top);
        choices.finalZ += random() % 4;
        choices.displacementX = random() % (measures.maximumDisplacementX + 1);
        choices.displacementY = random() % (measures.maximumDisplacementY + 1);
        const int threads = threadCounts[random() % 4];
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << base << " and " << top << ", "
                                        << textOf(choices) << ", " << threads << " threads");
        const Support::PoolThreads pool(threads);
        SourceVolume first = sourceOf(base, Vector3D(seed, 2, -7));
        SourceVolume second = sourceOf(top);
        const Volume result = played(first, second, choices);
        ASSERT_NE(result, nullptr);
        EXPECT_EQ(result->sizeX(), choices.finalX);
        EXPECT_EQ(result->sizeY(), choices.finalY);
        EXPECT_EQ(result->sizeZ(), choices.finalZ);
        EXPECT_EQ(result->cellSizeX(), std::max(base.grid.cellSizeX, top.grid.cellSizeX));
        EXPECT_EQ(result->cellSizeY(), std::max(base.grid.cellSizeY, top.grid.cellSizeY));
        EXPECT_EQ(result->cellSizeZ(), std::max(base.grid.cellSizeZ, top.grid.cellSizeZ));
        EXPECT_EQ(cornerOf(*result), (Corner{double(seed), 2, -7}));
        Fakes::expectMaterials(*result, glued(base, top, choices));
        first.expectUnchanged();
        second.expectUnchanged();
    }
}

TEST_F(GlueSubstrateTest, FinalSizeOfTheOperationStartsOneLayerAboveTheMinimum)
{
    const Wafer base = layered({4, 3, 5}, 0, 2, 1);
    const Wafer top = layered({3, 5, 4}, 1, 2, 2);
    SourceVolume first = sourceOf(base);
    SourceVolume second = sourceOf(top);
    workspace().document().addObject(first.volume());
    workspace().document().addObject(second.volume());
    bool asked = false;
    activateOn(first.volume(), [&](GlueSubstrateOperation &operation) {
        asked = true;
        EXPECT_EQ(operation.minimumX(), 4U);
        EXPECT_EQ(operation.minimumY(), 5U);
        EXPECT_EQ(operation.minimumZ(), 4U);
        EXPECT_EQ(operation.maximumDisplacementX(), 1U);
        EXPECT_EQ(operation.maximumDisplacementY(), 0U);
        operation.end();
    });
    select({second.volume()});
    type("");
    EXPECT_TRUE(asked);
    const auto objects = workspace().document().objects();
    ASSERT_EQ(objects.size(), 1U);
    const Volume result = boost::dynamic_pointer_cast<TotalVolume>(objects.front());
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->sizeZ(), 5U);
    Fakes::expectMaterials(*result, glued(base, top, {4, 5, 5, 0, 0, false}));
}

TEST_F(GlueSubstrateTest, RandomVolumesGlueByTheRule)
{
    for (std::uint32_t seed = 1; seed <= 250; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const Wafer base = randomWafer(random, randomGrid(random, 12));
        const Wafer top = randomWafer(random, randomGrid(random, 12));
        if (isEmpty(top))
            continue;
        const GlueMeasures measures = measuresOf(base, top);
        for (const bool invert : {false, true}) {
            GlueChoices choices = smallest(base, top, invert);
            if (random() % 2 == 0) {
                choices.finalX += random() % 3;
                choices.finalY += random() % 3;
                choices.finalZ += random() % 5;
            }
            const auto displacement = [&](std::uint32_t limit) {
                const std::uint32_t any = random() % (limit + 1);
                return std::vector<std::uint32_t>{0, limit, any}[random() % 3];
            };
            choices.displacementX = displacement(measures.maximumDisplacementX);
            choices.displacementY = displacement(measures.maximumDisplacementY);
            expectRule(base, top, choices);
        }
    }
}

TEST_F(GlueSubstrateTest, NarrowVolumesGlueByTheRuleWithAnyNumberOfThreads)
{
    std::mt19937 random(11);
    for (std::uint32_t baseX = 1; baseX <= 6; ++baseX)
        for (std::uint32_t topX = 1; topX <= 6; ++topX) {
            const Wafer base = randomWafer(random, {baseX, 5, 4});
            Wafer top = randomWafer(random, {topX, 3, 6});
            top.materials.front() = 3;
            for (const bool invert : {false, true})
                expectRule(base, top, smallest(base, top, invert));
        }
}

TEST_F(GlueSubstrateTest, LessThanTwoLayersAThreadOfEitherAreGluedByTheCallingThread)
{
    for (const int threads : {1, 2, 4}) {
        const auto narrow = std::uint32_t(2 * threads - 1);
        const std::uint32_t enough = narrow + 1;
        for (const auto &[baseX, topX] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{
                 {narrow, narrow}, {narrow, enough}, {enough, narrow}, {1, 50}, {50, 1}}) {
            const Wafer base = layered({baseX, 3, 4}, 0, 2, 1);
            const Wafer top = layered({topX, 3, 4}, 0, 2, 2);
            EXPECT_EQ(poolThreadsOf(base, top, threads), 0)
                << base << " and " << top << ", " << threads << " threads";
        }
    }
}

TEST_F(GlueSubstrateTest, TwoLayersAThreadOfBothAreGluedByThePool)
{
    for (const std::uint32_t threads : {2, 4}) {
        const Wafer base = layered({2 * threads, 3, 4}, 0, 2, 1);
        const Wafer top = layered({2 * threads + 1, 3, 4}, 0, 2, 2);
        EXPECT_GT(poolThreadsOf(base, top, int(threads)), 0) << threads;
    }
}

TEST_F(GlueSubstrateTest, WaitsWhileSomebodyElseHasTheCellsOfEither)
{
    const Wafer base = layered({4, 3, 5}, 0, 2, 1);
    const Wafer top = layered({4, 3, 4}, 0, 2, 2);
    for (const bool holdBase : {false, true}) {
        SourceVolume first = sourceOf(base);
        SourceVolume second = sourceOf(top);
        TotalVolume &held = *(holdBase ? first : second).volume();
        GlueSubstrate engine(first.volume().get(), second.volume().get(), measuresOf(base, top),
                             smallest(base, top));
        held.voxels();
        auto ids = std::async(std::launch::async, [&] { return engine.glue(); });
        EXPECT_EQ(ids.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
        held.releaseVoxels();
        EXPECT_EQ(ids.get(), glued(base, top, smallest(base, top)));
    }
}

TEST_F(GlueSubstrateTest, WorkingArraysMayBeInUse)
{
    const Wafer base = layered({4, 3, 5}, 0, 2, 1);
    const Wafer top = layered({4, 3, 4}, 0, 2, 2);
    SourceVolume first = sourceOf(base);
    SourceVolume second = sourceOf(top);
    first.volume()->nextVoxels();
    second.volume()->nextVoxels();
    auto ids = std::async(std::launch::async, [&] {
        const GlueMeasures measures = GlueSubstrate::measure(*first.volume(), *second.volume());
        return GlueSubstrate(first.volume().get(), second.volume().get(), measures,
                             smallest(base, top))
            .glue();
    });
    EXPECT_EQ(ids.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    first.volume()->releaseNextVoxels();
    second.volume()->releaseNextVoxels();
    EXPECT_EQ(ids.get(), glued(base, top, smallest(base, top)));
}

TEST_F(GlueSubstrateTest, TallVolumesGlueByTheRule)
{
    std::mt19937 random(12);
    for (const std::uint32_t height : {63U, 64U, 65U, 70U, 130U}) {
        const Wafer base = randomWafer(random, {11, 6, height});
        Wafer top = randomWafer(random, {8, 7, 133 - height});
        top.materials.back() = 3;
        for (const bool invert : {false, true})
            expectRule(base, top, smallest(base, top, invert));
    }
}

TEST_F(GlueSubstrateTest, LoneCellsAreMeasuredInEveryStripOfWideVolumes)
{
    const Grid grid{37, 5, 70};
    std::mt19937 random(13);
    for (std::uint32_t x = 0; x < grid.sizeX; ++x) {
        Wafer base{grid, Materials(grid.cells(), 0)};
        Wafer top = base;
        base.materials[grid.index(x, random() % 5, random() % 70)] = 1;
        top.materials[grid.index(grid.sizeX - 1 - x, random() % 5, random() % 70)] = 2;
        SourceVolume first = sourceOf(base);
        SourceVolume second = sourceOf(top);
        for (const int threads : threadCounts) {
            SCOPED_TRACE(testing::Message() << "x " << x << ", " << threads << " threads");
            const Support::PoolThreads pool(threads);
            expectMeasures(GlueSubstrate::measure(*first.volume(), *second.volume()),
                           measuresOf(base, top));
        }
    }
}

} // namespace
