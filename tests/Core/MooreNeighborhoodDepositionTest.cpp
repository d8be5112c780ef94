#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"

#include "LayerFrontRule.h"
#include "LayerFrontRuns.h"
#include "LayerFrontSample.h"

#include "Support/Volumes.h"

#include <QThreadPool>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

using namespace LayerFrontRule;
using Support::Grid;

namespace {

/// The film of all tests that need but one.
constexpr std::uint32_t film = 7;

Process deposition(std::int32_t steps, std::uint32_t material = film)
{
    return {false, material, steps};
}

Case flatFloor(const Grid &grid, std::int32_t steps, int floorLayers)
{
    return caseOf(grid, deposition(steps),
                  [floorLayers](int, int, int z) { return z < floorLayers ? 2U : 0U; });
}

/// One cell of silicon at (x, y, z), and nothing else.
Case loneCell(const Grid &grid, std::int32_t steps, const Place &source)
{
    return caseOf(grid, deposition(steps), [source](int x, int y, int z) {
        return x == source.x && y == source.y && z == source.z ? 1U : 0U;
    });
}

/// Expects the film of loneCell(): the cube around it as far as the volume goes.
void expectCube(const Grid &grid, std::int32_t steps, const Place &source)
{
    expectMaterials(loneCell(grid, steps, source), [=](int x, int y, int z) {
        const int away =
            std::max({std::abs(x - source.x), std::abs(y - source.y), std::abs(z - source.z)});
        return away == 0 ? 1U : away <= steps ? film : 0U;
    });
}

/// The film, said once more: every void cell with a filled one within `steps` cells along each axis
/// holds it.
Materials filmAround(const Case &given)
{
    const Grid &grid = given.grid;
    const int steps = given.process.steps;
    return Support::materialsBy(grid, [&](int x, int y, int z) {
        const std::uint32_t before = given.materials[indexOf(grid, {x, y, z})];
        for (int i = x - steps; i <= x + steps; ++i)
            for (int j = y - steps; j <= y + steps; ++j)
                for (int k = z - steps; k <= z + steps; ++k)
                    if (before == 0 && isInside(grid, {i, j, k}) &&
                        given.materials[indexOf(grid, {i, j, k})] != 0)
                        return given.process.material;
        return before;
    });
}

Support::MaterialRule trench()
{
    return [](int x, int, int z) { return z < 3 || (z < 10 && (x < 4 || x > 9)) ? 2U : 0U; };
}
/// The same, along x.
Support::MaterialRule trenchAcrossStrips()
{
    return [](int, int y, int z) { return z < 2 || (z < 7 && (y < 3 || y > 6)) ? 2U : 0U; };
}
/// A shell around a cavity, in a room that is closed as well.
Support::MaterialRule shell(int center)
{
    return [center](int x, int y, int z) {
        const int away =
            std::max({std::abs(x - center), std::abs(y - center), std::abs(z - center)});
        return away == center || away == 3 ? 3U : 0U;
    };
}
/// Cells that meet at edges and corners only, far from all others.
Support::MaterialRule diagonal()
{
    return [](int x, int y, int z) { return x == y && (x == z || x == z + 1) && x < 4 ? 1U : 0U; };
}
Support::MaterialRule wallAcrossX(int wall)
{
    return [wall](int x, int y, int z) { return x == wall && (y + z) % 5 != 0 ? 1U : 0U; };
}
/// A filled cell in the middle of each room of `width` layers along x.
Support::MaterialRule islands(int width)
{
    return [width](int x, int y, int z) {
        return x % width == width / 2 && (y + 2 * z) % 7 == 0 ? 1U + std::uint32_t(y % 2) : 0U;
    };
}

} // namespace

TEST(MooreNeighborhoodDepositionTest, OneStepDepositsOneLayerAllRoundWithSquareCorners)
{
    const Grid grid = {9, 10, 11};
    const Case given = caseOf(grid, deposition(1), [](int x, int y, int z) {
        return x >= 3 && x < 6 && y >= 3 && y < 7 && z >= 4 && z < 8 ? 1U : 0U;
    });
    expectMaterials(given, [&](int x, int y, int z) {
        const std::uint32_t before = given.materials[indexOf(grid, {x, y, z})];
        const bool inBox = x >= 2 && x < 7 && y >= 2 && y < 8 && z >= 3 && z < 9;
        return before != 0 ? before : inBox ? film : 0U;
    });
    expectCube({3, 3, 3}, 1, {1, 1, 1});
}

TEST(MooreNeighborhoodDepositionTest, EachStepGrowsTheCubeAroundALoneCellByOneLayer)
{
    for (std::int32_t steps = 0; steps <= 12; ++steps)
        expectCube({15, 13, 14}, steps, {7, 6, 7});
}

TEST(MooreNeighborhoodDepositionTest, FlatFloorGetsOneLayerAStep)
{
    for (std::int32_t steps = 0; steps <= 12; ++steps) {
        expectMaterials(flatFloor({5, 4, 14}, steps, 3), [steps](int, int, int z) {
            return z < 3 ? 2U : z < 3 + steps ? film : 0U;
        });
    }
}

TEST(MooreNeighborhoodDepositionTest, CellSizesPlayNoPart)
{
    // As many cells along each axis, however thin they are.
    expectCube({9, 10, 11, 1.0f, 1.0f, 0.35f}, 3, {4, 5, 5});
    expectCube({9, 10, 11, 0.1f, 2.5f, 1.0f}, 3, {4, 5, 5});
    expectRule(caseOf({14, 4, 14, 1.0f, 1.0f, 0.35f}, deposition(2), trench()));
}

TEST(MooreNeighborhoodDepositionTest, FilmIsTheDilationOfTheFilledCellsByAsManyCubes)
{
    for (std::int32_t steps = 0; steps <= 12; ++steps) {
        const Process process = deposition(steps);
        for (const Case &given :
             {caseOf({14, 4, 14}, process, trench()),
              caseOf({5, 10, 12}, process, trenchAcrossStrips()),
              caseOf({13, 13, 13}, process, shell(6)), caseOf({16, 8, 9}, process, diagonal()),
              Case{{8, 9, 15}, randomMaterials({8, 9, 15}, 17, 1), process}})
            expectRule(given);
    }
}

TEST(MooreNeighborhoodDepositionTest, EveryVoidCellWithinTheStepsOfAFilledOneIsFilled)
{
    for (std::int32_t steps = 0; steps <= 3; ++steps) {
        for (std::uint32_t seed = 1; seed <= 8; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {7, 6 + seed, 12, 1.0f, 1.0f, seed % 2 == 0 ? 0.35f : 1.0f};
            const Case given = {grid, randomMaterials(grid, seed, seed), deposition(steps)};
            expectMaterials(given, filmAround(given));
        }
    }
}

TEST(MooreNeighborhoodDepositionTest, ClosedCavitiesAreFilledFromTheirWalls)
{
    // The cavity is five cells wide, and the room around the shell two.
    const Case given = caseOf({13, 13, 13}, deposition(2), shell(6));
    expectMaterials(given, [&](int x, int y, int z) {
        const std::uint32_t before = given.materials[indexOf(given.grid, {x, y, z})];
        const bool inMiddle = x == 6 && y == 6 && z == 6;
        return before != 0 || inMiddle ? before : film;
    });
}

TEST(MooreNeighborhoodDepositionTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        expectRule(randomCase(seed, false));
    }
}

TEST(MooreNeighborhoodDepositionTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const Grid &grid :
         {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{9, 12, 1}, Grid{1, 1, 14}, Grid{1, 14, 1},
          Grid{14, 1, 1}, Grid{1, 9, 70}, Grid{2, 1, 3}, Grid{2, 2, 2}}) {
        for (const std::int32_t steps : {1, 2, 5}) {
            expectRule({grid, randomMaterials(grid, 11, 4), deposition(steps)});
            expectCube(grid, steps, {0, 0, 0});
            expectCube(grid, steps,
                       {int(grid.sizeX) / 2, int(grid.sizeY) / 2, int(grid.sizeZ) / 2});
        }
    }
    for (const std::uint32_t material : {0U, 1U})
        expectUnchanged({{1, 1, 1}, {material}, deposition(3)});
}

TEST(MooreNeighborhoodDepositionTest, VolumeOfOneLayerSkipsTheNeighborsAboveAndBelow)
{
    expectCube({9, 11, 1}, 3, {4, 5, 0});
}

TEST(MooreNeighborhoodDepositionTest, TallVolumesFollowTheRule)
{
    for (const std::uint32_t sizeZ : {63U, 64U, 65U, 127U, 128U, 130U}) {
        const Grid grid = {3, 4, sizeZ};
        for (const int z : {0, 31, 62, 63, 64, 65, 126, 127, 128, int(sizeZ) - 1}) {
            if (z < int(sizeZ)) {
                expectCube(grid, 1, {1, 2, z});
                expectCube(grid, 3, {0, 3, z});
            }
        }
        expectRule({grid, randomMaterials(grid, sizeZ, 1), deposition(2)});
        expectRule({grid, randomMaterials(grid, sizeZ, 60), deposition(1)});
    }
}

TEST(MooreNeighborhoodDepositionTest, BordersOfTheVolumeAreNeitherSolidNorVoid)
{
    // At corners, edges and sides; the next cell in the arrays lies at the opposite side.
    const Grid grid = {9, 8, 10};
    for (const int x : {0, 4, 8})
        for (const int y : {0, 4, 7})
            for (const int z : {0, 5, 9})
                expectCube(grid, 3, {x, y, z});
}

TEST(MooreNeighborhoodDepositionTest, EmptyVolumeStaysEmpty)
{
    for (const std::int32_t steps : {1, 5, 12})
        expectUnchanged(caseOf({8, 5, 7}, deposition(steps), [](int, int, int) { return 0U; }));
}

TEST(MooreNeighborhoodDepositionTest, FullVolumeStaysAsItIs)
{
    expectUnchanged({{8, 5, 7}, randomMaterials({8, 5, 7}, 5, 100), deposition(5)});
}

TEST(MooreNeighborhoodDepositionTest, NoStepsChangeNoCell)
{
    for (const std::int32_t steps : {0, -1, -12, std::numeric_limits<std::int32_t>::min()}) {
        expectUnchanged(flatFloor({8, 4, 6}, steps, 2));
        expectUnchanged({{6, 6, 6}, randomMaterials({6, 6, 6}, 3, 30), deposition(steps)});
    }
}

TEST(MooreNeighborhoodDepositionTest, StepsBeyondTheVolumeFillAllOfIt)
{
    const Grid grid = {6, 5, 4};
    for (const std::int32_t steps : {4, 5, 100})
        expectCube(grid, steps, {4, 0, 2});
    expectMaterials(loneCell(grid, 100, {4, 0, 2}),
                    [](int x, int y, int z) { return x == 4 && y == 0 && z == 2 ? 1U : film; });
}

TEST(MooreNeighborhoodDepositionTest, DepositedMaterialZeroLeavesEveryCellAsItIs)
{
    Case given = flatFloor({8, 4, 9}, 4, 2);
    given.process.material = 0;
    expectUnchanged(given);
    expectUnchanged({{7, 7, 7}, randomMaterials({7, 7, 7}, 9, 10), deposition(3, 0)});
}

TEST(MooreNeighborhoodDepositionTest, FilmGrowsAlikeOnEveryMaterialAndReplacesNone)
{
    const Grid grid = {8, 4, 9};
    for (const std::uint32_t material : {4U, 0xFFFFFFFFU}) {
        const Case given = caseOf(grid, deposition(3, material), [](int x, int, int z) {
            return z < 3 ? std::vector<std::uint32_t>{1, 4, 0xFFFFFFFF, 9}[x % 4] : 0U;
        });
        expectMaterials(given, [&](int x, int y, int z) {
            return z < 3 ? given.materials[indexOf(grid, {x, y, z})] : z < 6 ? material : 0U;
        });
    }
}

TEST(MooreNeighborhoodDepositionTest, SecondFilmLiesOnTheFirst)
{
    const Grid grid = {5, 4, 12};
    const auto volume = Support::makeVolume(grid, flatFloor(grid, 0, 2).materials);
    const LogLines log;
    for (const std::uint32_t material : {5U, 6U})
        engineOf(deposition(3, material))(volume.get(), [] {});
    const Materials expected = Support::materialsBy(grid, [](int, int, int z) {
        return z < 2 ? 2U : z < 5 ? 5U : z < 8 ? 6U : 0U;
    });
    EXPECT_EQ(Support::materialsOf(*volume), expected);
    EXPECT_EQ(Support::nextMaterialsOf(*volume), expected);
}

TEST(MooreNeighborhoodDepositionTest, ConstructionLeavesTheVolumeAlone)
{
    const Case given = flatFloor({5, 4, 6}, 3, 2);
    expectConstructionLeavesTheVolumeAlone(
        given.grid, given.materials,
        [](TotalVolume *volume, const std::function<void()> &whileItLives) {
            const Core::Operations::MooreNeighborhoodDeposition engine(volume, film, 3);
            whileItLives();
        });
}

TEST(MooreNeighborhoodDepositionTest, ArraysKeepTheirNames)
{
    for (const std::int32_t steps : {0, 1, 2, 3})
        for (const int threads : {1, 2, 3, 4, 20})
            EXPECT_TRUE(sampleAfter(flatFloor({8, 3, 12}, steps, 1), threads).isInPlace());
}

TEST(MooreNeighborhoodDepositionTest, LogTellsStepsThreadsLayersAndMaterial)
{
    using Lines = std::vector<std::string>;
    const auto linesOf = [](std::uint32_t sizeX, std::int32_t steps, std::uint32_t material,
                            int threads) {
        Case given = flatFloor({sizeX, 3, 9}, steps, 2);
        given.process.material = material;
        return sampleAfter(given, threads).logLines();
    };
    EXPECT_EQ(linesOf(12, 5, 7, 1), (Lines{"Steps to run 5", "Threads 1", "Strips per thread 12",
                                           "Deposited material id 7"}));
    EXPECT_EQ(linesOf(14, 2, 1, 4), (Lines{"Steps to run 2", "Threads 4", "Strips per thread 3",
                                           "Deposited material id 1"}));
    // One strip, but as many threads as there are.
    EXPECT_EQ(linesOf(7, 0, 4000000000U, 4),
              (Lines{"Steps to run 0", "Threads 4", "Strips per thread 1",
                     "Deposited material id 4000000000"}));
    EXPECT_EQ(linesOf(3, 12, 0, 8), (Lines{"Steps to run 12", "Threads 8", "Strips per thread 0",
                                           "Deposited material id 0"}));
}

TEST(MooreNeighborhoodDepositionTest, FewerThanTwoLayersAThreadAreOneStrip)
{
    for (const int threads : {2, 3, 4, 8}) {
        for (const std::uint32_t sizeX : {1U, 2U, std::uint32_t(2 * threads - 1)}) {
            const Grid grid = {sizeX, 9, 10};
            const Case given = {grid, randomMaterials(grid, sizeX, 2), deposition(3)};
            expectOneStripsResult(given, threads);
        }
    }
}

TEST(MooreNeighborhoodDepositionTest, OneThreadIsOneStripOverAllLayers)
{
    for (const std::uint32_t sizeX : {1U, 2U, 3U, 20U})
        expectOneStripsResult(caseOf({sizeX, 8, 9}, deposition(4), wallAcrossX(1)), 1);
}

TEST(MooreNeighborhoodDepositionTest, PoolWithoutThreadsRunsAllTheSame)
{
    for (const std::uint32_t sizeX : {1U, 6U}) {
        const Case given = flatFloor({sizeX, 4, 9}, 3, 2);
        expectCells(given, sampleAfter(given, 0),
                    movedByCubes(given.grid, given.materials, given.process));
    }
}

TEST(MooreNeighborhoodDepositionTest, StripsInAscendingOrderFollowTheRuleOfStrips)
{
    for (const int threads : {2, 3, 4}) {
        for (const std::int32_t steps : {1, 2, 3, 6}) {
            const Process process = deposition(steps);
            expectRuleOfStrips(caseOf({14, 4, 14}, process, trench()), threads);
            expectRuleOfStrips(caseOf({13, 10, 12}, process, trenchAcrossStrips()), threads);
            expectRuleOfStrips(caseOf({13, 13, 13}, process, shell(6)), threads);
            expectRuleOfStrips(caseOf({16, 8, 9}, process, diagonal()), threads);
            for (const int wall : {0, 7, 16})
                expectRuleOfStrips(caseOf({17, 8, 8}, process, wallAcrossX(wall)), threads);
        }
    }
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Grid grid = {8 + seed, 7, seed % 3 == 0 ? 66U : 9U};
        const Materials materials = randomMaterials(grid, seed, seed % 2 == 0 ? 1 : 3);
        for (const int threads : {2, 3, 4})
            expectRuleOfStrips({grid, materials, deposition(4)}, threads);
    }
}

TEST(MooreNeighborhoodDepositionTest, FrontReachesTheStripBelowOneStepLate)
{
    // In ascending order; upwards the next strip takes its cells in the same step.
    const Grid grid = {12, 3, 3};
    for (const int wall : {0, 11}) {
        for (const std::int32_t steps : {1, 4, 6, 7, 9, 10}) {
            std::optional<BusyPool> pool;
            const Case given = caseOf(grid, deposition(steps),
                                      [wall](int x, int, int) { return x == wall ? 1U : 0U; });
            Sample sample(grid, given.materials);
            sample.run(2, engineOf(given.process), [&] { pool.emplace(); });
            // The strip below begins at the sixth layer from the wall.
            const int layers = wall == 11 && steps >= 6 ? steps - 1 : steps;
            expectCells(given, sample, Support::materialsBy(grid, [&](int x, int, int) {
                            const int away = std::abs(x - wall);
                            return away == 0 ? 1U : away <= layers ? film : 0U;
                        }));
        }
    }
}

TEST(MooreNeighborhoodDepositionTest, ThreadsAreCountedAtConstruction)
{
    // A wall at the far end tells strips from one strip: the front comes late.
    const Case given = caseOf({12, 5, 5}, deposition(8), wallAcrossX(11));
    const Rule one = ruleOf(given, stripsOf(given.grid, 1));
    const Rule four = ruleOf(given, stripsOf(given.grid, 4));
    ASSERT_FALSE(agree(given.grid, one.voxels(), four.voxels()));
    {
        std::optional<BusyPool> pool;
        Sample sample(given.grid, given.materials);
        sample.run(4, engineOf(given.process), [&] { pool.emplace(); });
        EXPECT_TRUE(agree(given.grid, sample.voxels(), four.voxels()));
        ASSERT_EQ(sample.logLines().size(), 4U);
        EXPECT_EQ(sample.logLines()[1], "Threads 4");
        EXPECT_EQ(sample.logLines()[2], "Strips per thread 3");
    }
    {
        Sample sample(given.grid, given.materials);
        sample.run(1, engineOf(given.process),
                   [] { QThreadPool::globalInstance()->setMaxThreadCount(4); });
        EXPECT_TRUE(agree(given.grid, sample.voxels(), one.voxels()));
    }
}

TEST(MooreNeighborhoodDepositionTest, FlatFloorGetsOneLayerAStepFromAnyNumberOfStrips)
{
    // A column of a strip needs nothing of its neighbors.
    for (const int threads : {2, 3, 4, 8})
        expectOneStripsResult(flatFloor({17, 6, 16}, 10, 3), threads);
}

TEST(MooreNeighborhoodDepositionTest, FilmThatKeepsWithinItsStripIsThatOfOneStrip)
{
    // Rooms of nine layers, as the strips are; four layers to either side of the middle.
    for (const int threads : {2, 3, 4})
        for (const std::int32_t steps : {1, 2, 3, 4})
            expectOneStripsResult(
                caseOf({std::uint32_t(9 * threads), 8, 9}, deposition(steps), islands(9)), threads);
}

TEST(MooreNeighborhoodDepositionTest, StripsAreNeverAheadAndNeverBehindWhatTheySeeThemselves)
{
    for (const int threads : {2, 3, 4}) {
        for (const std::int32_t steps : {1, 3, 6}) {
            const Process process = deposition(steps);
            expectGuarantees(caseOf({14, 4, 14}, process, trench()), threads);
            expectGuarantees(caseOf({13, 10, 10}, process, trenchAcrossStrips()), threads);
            expectGuarantees(caseOf({13, 13, 13}, process, shell(6)), threads);
            expectGuarantees(caseOf({16, 8, 9}, process, diagonal()), threads);
            expectGuarantees(caseOf({17, 8, 8}, process, wallAcrossX(7)), threads);
        }
    }
}

TEST(MooreNeighborhoodDepositionTest, RandomVolumesKeepTheGuaranteesOfStrips)
{
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        for (const int threads : {2, 3, 4}) {
            // Every layer of the narrowest strips is next to another strip.
            for (const std::uint32_t sizeX : {std::uint32_t(2 * threads), 8 + seed}) {
                const Grid grid = {sizeX, 7, seed % 3 == 0 ? 66U : 9U};
                expectGuarantees(
                    {grid, randomMaterials(grid, seed, seed % 4), deposition(1 + seed % 5)},
                    threads);
            }
        }
    }
}
