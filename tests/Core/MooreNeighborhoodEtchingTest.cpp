#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"

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

/// The etched film of all tests that need but one.
constexpr std::uint32_t film = 7;
/// Any other material.
constexpr std::uint32_t other = 2;

Process etching(std::int32_t steps, std::uint32_t material = film)
{
    return {true, material, steps};
}

/// A film on a floor of two layers, up to the height `top`.
Case flatFilm(const Grid &grid, std::int32_t steps, int top)
{
    return caseOf(grid, etching(steps), [top](int, int, int z) {
        return z < 2 ? other : z < top ? film : 0U;
    });
}

/// A volume full of film but for one void cell.
Case loneVoid(const Grid &grid, std::int32_t steps, const Place &source)
{
    return caseOf(grid, etching(steps), [source](int x, int y, int z) {
        return x == source.x && y == source.y && z == source.z ? 0U : film;
    });
}

/// Expects the hole of loneVoid(): the cube around it as far as the volume goes.
void expectCube(const Grid &grid, std::int32_t steps, const Place &source)
{
    expectMaterials(loneVoid(grid, steps, source), [=](int x, int y, int z) {
        const int away =
            std::max({std::abs(x - source.x), std::abs(y - source.y), std::abs(z - source.z)});
        return away <= steps ? 0U : film;
    });
}

/// A block of film that stands free.
Support::MaterialRule block()
{
    return [](int x, int y, int z) {
        return x >= 2 && x < 11 && y >= 1 && y < 8 && z >= 2 && z < 12 ? film : 0U;
    };
}
/// A film between floor and mask, open through a slit that is two cells wide.
Support::MaterialRule maskWithSlit()
{
    return [](int x, int, int z) {
        if (z < 2)
            return other;
        if (z < 7)
            return film;
        return z < 9 && (x < 6 || x > 7) ? other : 0U;
    };
}
/// The same, the slit along x.
Support::MaterialRule maskWithSlitAcrossStrips()
{
    return [](int, int y, int z) {
        if (z < 2)
            return other;
        if (z < 7)
            return film;
        return z < 9 && y != 4 ? other : 0U;
    };
}
/// A wall between void and film with a hole in a corner: what is near is far for the front.
Support::MaterialRule wallWithHole()
{
    return [](int x, int y, int z) {
        if (x < 3)
            return 0U;
        return x == 3 && (y > 0 || z > 0) ? other : film;
    };
}
/// Film all through, with void planes of a cell across x.
Support::MaterialRule gapAcrossX(int gap)
{
    return [gap](int x, int y, int z) { return x == gap && (y + z) % 5 != 0 ? 0U : film; };
}
/// A void cell in the middle of each room of `width` layers along x.
Support::MaterialRule holes(int width)
{
    return [width](int x, int y, int z) {
        return x % width == width / 2 && (y + 2 * z) % 7 == 0 ? 0U : film;
    };
}

} // namespace

TEST(MooreNeighborhoodEtchingTest, OneStepRemovesOneLayerAllRoundWithSquareCorners)
{
    const Grid grid = {13, 9, 14};
    expectMaterials(caseOf(grid, etching(1), block()), [](int x, int y, int z) {
        return x >= 3 && x < 10 && y >= 2 && y < 7 && z >= 3 && z < 11 ? film : 0U;
    });
    expectCube({3, 3, 3}, 1, {1, 1, 1});
}

TEST(MooreNeighborhoodEtchingTest, EachStepWidensTheCubeAroundALoneVoidCellByOneLayer)
{
    for (std::int32_t steps = 0; steps <= 12; ++steps)
        expectCube({15, 13, 14}, steps, {7, 6, 7});
}

TEST(MooreNeighborhoodEtchingTest, FlatFilmLosesOneLayerAStep)
{
    for (std::int32_t steps = 0; steps <= 12; ++steps) {
        expectMaterials(flatFilm({5, 4, 16}, steps, 13), [steps](int, int, int z) {
            return z < 2 ? other : z < 13 - steps ? film : 0U;
        });
    }
}

TEST(MooreNeighborhoodEtchingTest, CellSizesPlayNoPart)
{
    // As many cells along each axis, however thin they are.
    expectCube({9, 10, 11, 1.0f, 1.0f, 0.35f}, 3, {4, 5, 5});
    expectCube({9, 10, 11, 0.1f, 2.5f, 1.0f}, 3, {4, 5, 5});
    expectRule(caseOf({14, 4, 10, 1.0f, 1.0f, 0.35f}, etching(2), maskWithSlit()));
}

TEST(MooreNeighborhoodEtchingTest, FilmIsErodedByAsManyCubesThroughItself)
{
    for (std::int32_t steps = 0; steps <= 12; ++steps) {
        const Process process = etching(steps);
        for (const Case &given :
             {caseOf({13, 9, 14}, process, block()), caseOf({14, 4, 10}, process, maskWithSlit()),
              caseOf({4, 9, 10}, process, maskWithSlitAcrossStrips()),
              caseOf({8, 9, 9}, process, wallWithHole()),
              caseOf({12, 6, 7}, process, gapAcrossX(2)),
              Case{{8, 9, 15}, randomMaterials({8, 9, 15}, 17, 99), etching(steps, 1)}})
            expectRule(given);
    }
}

TEST(MooreNeighborhoodEtchingTest, MaskIsEtchedUnderSidewaysFromItsSlit)
{
    for (const std::int32_t steps : {1, 2, 4, 5}) {
        const Case given = caseOf({14, 4, 10}, etching(steps), maskWithSlit());
        // The highest film under the slit is open to it, at its edges as well: so the first step
        // takes one cell under the mask on either side.
        expectMaterials(given, [&](int x, int y, int z) {
            const std::uint32_t before = given.materials[indexOf(given.grid, {x, y, z})];
            const bool inReach = x >= 6 - steps && x <= 7 + steps && z >= 7 - steps;
            return before == film && inReach ? 0U : before;
        });
    }
}

TEST(MooreNeighborhoodEtchingTest, FrontGoesRoundAWallAndNotThroughIt)
{
    // The hole is at y = 0, z = 0; behind it film that is further from the hole than from the void.
    const Grid grid = {8, 9, 9};
    for (const std::int32_t steps : {1, 2, 3, 5, 12}) {
        const Case given = caseOf(grid, etching(steps), wallWithHole());
        expectMaterials(given, [&](int x, int y, int z) {
            const std::uint32_t before = given.materials[indexOf(grid, {x, y, z})];
            const int fromHole = std::max({x - 3, y, z});
            return before == film && fromHole <= steps - 1 ? 0U : before;
        });
    }
}

TEST(MooreNeighborhoodEtchingTest, EtchingStopsAtOtherMaterials)
{
    // Film, another material, film again: the second film has no surface towards void.
    for (const std::int32_t steps : {3, 4, 12}) {
        const Grid grid = {6, 5, 14};
        const auto layers = [](int, int, int z) -> std::uint32_t {
            return z < 5 ? film : z < 6 ? other : z < 9 ? film : 0U;
        };
        expectMaterials(caseOf(grid, etching(steps), layers), [](int, int, int z) {
            return z < 5 ? film : z < 6 ? other : 0U;
        });
    }
}

TEST(MooreNeighborhoodEtchingTest, BuriedFilmStaysAsItIs)
{
    for (const std::int32_t steps : {1, 5, 12}) {
        expectUnchanged(caseOf({9, 8, 10}, etching(steps), [](int, int, int z) {
            return z >= 2 && z < 6 ? film : z < 7 ? other : 0U;
        }));
        // Up to the borders of the volume, but for a cover of one layer.
        expectUnchanged(caseOf({9, 8, 10}, etching(steps), [](int, int, int z) {
            return z < 6 ? film : z < 7 ? other : 0U;
        }));
    }
}

TEST(MooreNeighborhoodEtchingTest, FilmWithoutAnyVoidStaysAsItIs)
{
    for (const std::int32_t steps : {1, 12}) {
        expectUnchanged(caseOf({8, 5, 7}, etching(steps), [](int, int, int) { return film; }));
        expectUnchanged({{8, 5, 7}, randomMaterials({8, 5, 7}, 5, 100), etching(steps, 1)});
    }
}

TEST(MooreNeighborhoodEtchingTest, EmptyVolumeStaysEmpty)
{
    expectUnchanged(caseOf({8, 5, 7}, etching(5), [](int, int, int) { return 0U; }));
}

TEST(MooreNeighborhoodEtchingTest, MaterialThatIsNotThereChangesNoCell)
{
    expectUnchanged({{9, 8, 7}, randomMaterials({9, 8, 7}, 5, 60), etching(5, 77)});
    expectUnchanged({{9, 8, 7}, randomMaterials({9, 8, 7}, 5, 60), etching(5, 0)});
}

TEST(MooreNeighborhoodEtchingTest, EdgesAndCornersAreEnoughToBeOpen)
{
    // Void at a corner, or an edge, of the film; all else is another material.
    for (const Place &open : {Place{0, 0, 0}, Place{2, 2, 2}, Place{0, 2, 0}, Place{1, 0, 2},
                              Place{0, 1, 2}, Place{2, 0, 1}}) {
        const auto materials = [open](int x, int y, int z) -> std::uint32_t {
            if (x == 1 && y == 1 && z == 1)
                return film;
            return x == open.x && y == open.y && z == open.z ? 0 : other;
        };
        const Case given = caseOf({3, 3, 3}, etching(1), materials);
        expectMaterials(given, [&](int x, int y, int z) {
            return x == 1 && y == 1 && z == 1 ? 0U : materials(x, y, z);
        });
    }
}

TEST(MooreNeighborhoodEtchingTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        expectRule(randomCase(seed, true));
    }
}

TEST(MooreNeighborhoodEtchingTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const Grid &grid :
         {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{9, 12, 1}, Grid{1, 1, 14}, Grid{1, 14, 1},
          Grid{14, 1, 1}, Grid{1, 9, 70}, Grid{2, 1, 3}, Grid{2, 2, 2}}) {
        for (const std::int32_t steps : {1, 2, 5}) {
            expectRule({grid, randomMaterials(grid, 11, 95), etching(steps, 1)});
            expectCube(grid, steps, {0, 0, 0});
            expectCube(grid, steps,
                       {int(grid.sizeX) / 2, int(grid.sizeY) / 2, int(grid.sizeZ) / 2});
        }
    }
    for (const std::uint32_t material : {0U, film, other})
        expectUnchanged({{1, 1, 1}, {material}, etching(3)});
}

TEST(MooreNeighborhoodEtchingTest, VolumeOfOneLayerSkipsTheNeighborsAboveAndBelow)
{
    expectCube({9, 11, 1}, 3, {4, 5, 0});
}

TEST(MooreNeighborhoodEtchingTest, TallVolumesFollowTheRule)
{
    for (const std::uint32_t sizeZ : {63U, 64U, 65U, 127U, 128U, 130U}) {
        const Grid grid = {3, 4, sizeZ};
        for (const int z : {0, 31, 62, 63, 64, 65, 126, 127, 128, int(sizeZ) - 1}) {
            if (z < int(sizeZ)) {
                expectCube(grid, 1, {1, 2, z});
                expectCube(grid, 3, {0, 3, z});
            }
        }
        expectRule({grid, randomMaterials(grid, sizeZ, 99), etching(2, 1)});
        expectRule({grid, randomMaterials(grid, sizeZ, 40), etching(1, 1)});
    }
}

TEST(MooreNeighborhoodEtchingTest, BordersOfTheVolumeAreNeitherSolidNorVoid)
{
    // At corners, edges and sides; the next cell in the arrays lies at the opposite side.
    const Grid grid = {9, 8, 10};
    for (const int x : {0, 4, 8})
        for (const int y : {0, 4, 7})
            for (const int z : {0, 5, 9})
                expectCube(grid, 3, {x, y, z});
}

TEST(MooreNeighborhoodEtchingTest, NoStepsChangeNoCell)
{
    for (const std::int32_t steps : {0, -1, -12, std::numeric_limits<std::int32_t>::min()}) {
        expectUnchanged(flatFilm({8, 4, 9}, steps, 6));
        expectUnchanged({{6, 6, 6}, randomMaterials({6, 6, 6}, 3, 70), etching(steps, 1)});
    }
}

TEST(MooreNeighborhoodEtchingTest, StepsBeyondTheVolumeRemoveAllOfTheFilm)
{
    for (const std::int32_t steps : {6, 7, 100}) {
        expectMaterials(flatFilm({6, 5, 12}, steps, 8),
                        [](int, int, int z) { return z < 2 ? other : 0U; });
        expectMaterials(loneVoid({6, 5, 7}, steps, {5, 0, 2}), [](int, int, int) { return 0U; });
    }
}

TEST(MooreNeighborhoodEtchingTest, AnyNumberOfAMaterialIsEtchedAlike)
{
    for (const std::uint32_t material : {1U, 0x80000000U, 0xFFFFFFFFU}) {
        const Case given = caseOf({6, 4, 9}, etching(2, material), [&](int x, int, int z) {
            return z >= 7 ? 0U : x == 3 ? material - 1 + (material == 1 ? 3 : 0) : material;
        });
        expectMaterials(given, [&](int x, int y, int z) {
            return x != 3 && z >= 5 ? 0U : given.materials[indexOf(given.grid, {x, y, z})];
        });
    }
}

TEST(MooreNeighborhoodEtchingTest, SecondEtchingGoesOnWhereTheFirstEnded)
{
    const Grid grid = {5, 4, 14};
    const auto volume = Support::makeVolume(grid, flatFilm(grid, 0, 12).materials);
    for (const std::int32_t steps : {3, 4})
        engineOf(etching(steps))(volume.get(), [] {});
    const Materials expected = flatFilm(grid, 0, 5).materials;
    EXPECT_EQ(Support::materialsOf(*volume), expected);
    EXPECT_EQ(Support::nextMaterialsOf(*volume), expected);
}

TEST(MooreNeighborhoodEtchingTest, ConstructionLeavesTheVolumeAlone)
{
    const Case given = flatFilm({5, 4, 9}, 3, 6);
    expectConstructionLeavesTheVolumeAlone(
        given.grid, given.materials,
        [](TotalVolume *volume, const std::function<void()> &whileItLives) {
            const Core::Operations::MooreNeighborhoodEtching engine(volume, film, 3);
            whileItLives();
        });
}

TEST(MooreNeighborhoodEtchingTest, ArraysKeepTheirNames)
{
    for (const std::int32_t steps : {0, 1, 2, 3})
        for (const int threads : {1, 2, 3, 4, 20})
            EXPECT_TRUE(sampleAfter(flatFilm({8, 3, 12}, steps, 9), threads).isInPlace());
}

TEST(MooreNeighborhoodEtchingTest, RunWritesNothingToTheLog)
{
    for (const int threads : {1, 4, 8})
        for (const std::int32_t steps : {0, 4})
            EXPECT_EQ(sampleAfter(flatFilm({8, 3, 12}, steps, 9), threads).logLines(),
                      std::vector<std::string>());
}

TEST(MooreNeighborhoodEtchingTest, FewerThanTwoLayersAThreadAreOneStrip)
{
    for (const int threads : {2, 3, 4, 8}) {
        for (const std::uint32_t sizeX : {1U, 2U, std::uint32_t(2 * threads - 1)}) {
            const Grid grid = {sizeX, 9, 10};
            const Case given = {grid, randomMaterials(grid, sizeX, 98), etching(3, 1)};
            expectOneStripsResult(given, threads);
        }
    }
}

TEST(MooreNeighborhoodEtchingTest, OneThreadIsOneStripOverAllLayers)
{
    for (const std::uint32_t sizeX : {1U, 2U, 3U, 20U})
        expectOneStripsResult(caseOf({sizeX, 8, 9}, etching(4), gapAcrossX(1)), 1);
}

TEST(MooreNeighborhoodEtchingTest, PoolWithoutThreadsRunsAllTheSame)
{
    for (const std::uint32_t sizeX : {1U, 6U}) {
        const Case given = flatFilm({sizeX, 4, 9}, 3, 7);
        expectCells(given, sampleAfter(given, 0),
                    movedByCubes(given.grid, given.materials, given.process));
    }
}

TEST(MooreNeighborhoodEtchingTest, StripsInAscendingOrderFollowTheRuleOfStrips)
{
    for (const int threads : {2, 3, 4}) {
        for (const std::int32_t steps : {1, 2, 3, 6}) {
            const Process process = etching(steps);
            expectRuleOfStrips(caseOf({13, 9, 14}, process, block()), threads);
            expectRuleOfStrips(caseOf({14, 4, 10}, process, maskWithSlit()), threads);
            expectRuleOfStrips(caseOf({13, 9, 10}, process, maskWithSlitAcrossStrips()), threads);
            expectRuleOfStrips(caseOf({16, 9, 9}, process, wallWithHole()), threads);
            for (const int gap : {0, 7, 16})
                expectRuleOfStrips(caseOf({17, 8, 8}, process, gapAcrossX(gap)), threads);
        }
    }
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Grid grid = {8 + seed, 7, seed % 3 == 0 ? 66U : 9U};
        Materials materials = randomMaterials(grid, seed, 98);
        for (std::size_t i = 0; i < materials.size(); ++i)
            if (materials[i] != 0 && i % 5 != 0)
                materials[i] = 1;
        for (const int threads : {2, 3, 4})
            expectRuleOfStrips({grid, materials, etching(4, 1)}, threads);
    }
}

TEST(MooreNeighborhoodEtchingTest, ThreadsAreCountedAtConstruction)
{
    // A gap at the far end tells strips from one strip: the front comes late.
    const Case given = caseOf({12, 5, 5}, etching(8), gapAcrossX(11));
    const Rule one = ruleOf(given, stripsOf(given.grid, 1));
    const Rule four = ruleOf(given, stripsOf(given.grid, 4));
    ASSERT_FALSE(agree(given.grid, one.voxels(), four.voxels()));
    {
        std::optional<BusyPool> pool;
        Sample sample(given.grid, given.materials);
        sample.run(4, engineOf(given.process), [&] { pool.emplace(); });
        EXPECT_TRUE(agree(given.grid, sample.voxels(), four.voxels()));
    }
    {
        Sample sample(given.grid, given.materials);
        sample.run(1, engineOf(given.process),
                   [] { QThreadPool::globalInstance()->setMaxThreadCount(4); });
        EXPECT_TRUE(agree(given.grid, sample.voxels(), one.voxels()));
    }
}

TEST(MooreNeighborhoodEtchingTest, FlatFilmLosesOneLayerAStepInAnyNumberOfStrips)
{
    // A column of a strip needs nothing of its neighbors.
    for (const int threads : {2, 3, 4, 8})
        expectOneStripsResult(flatFilm({17, 6, 16}, 10, 14), threads);
}

TEST(MooreNeighborhoodEtchingTest, EtchingThatKeepsWithinItsStripIsThatOfOneStrip)
{
    // Rooms of nine layers, as the strips are; four layers to either side of the middle.
    for (const int threads : {2, 3, 4})
        for (const std::int32_t steps : {1, 2, 3, 4})
            expectOneStripsResult(
                caseOf({std::uint32_t(9 * threads), 8, 9}, etching(steps), holes(9)), threads);
}

TEST(MooreNeighborhoodEtchingTest, StripsAreNeverAheadAndNeverBehindWhatTheySeeThemselves)
{
    for (const int threads : {2, 3, 4}) {
        for (const std::int32_t steps : {1, 3, 6}) {
            const Process process = etching(steps);
            expectGuarantees(caseOf({13, 9, 14}, process, block()), threads);
            expectGuarantees(caseOf({14, 4, 10}, process, maskWithSlit()), threads);
            expectGuarantees(caseOf({13, 9, 10}, process, maskWithSlitAcrossStrips()), threads);
            expectGuarantees(caseOf({16, 9, 9}, process, wallWithHole()), threads);
            expectGuarantees(caseOf({17, 8, 8}, process, gapAcrossX(7)), threads);
        }
    }
}

TEST(MooreNeighborhoodEtchingTest, RandomVolumesKeepTheGuaranteesOfStrips)
{
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        for (const int threads : {2, 3, 4}) {
            // Every layer of the narrowest strips is next to another strip.
            for (const std::uint32_t sizeX : {std::uint32_t(2 * threads), 8 + seed}) {
                const Grid grid = {sizeX, 7, seed % 3 == 0 ? 66U : 9U};
                expectGuarantees({grid, randomMaterials(grid, seed, 100 - seed % 4),
                                  etching(std::int32_t(1 + seed % 5), 1)},
                                 threads);
            }
        }
    }
}
