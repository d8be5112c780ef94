#include "Core/Operations/SimpleDoping/SimpleDoping.h"

#include "CompatibleFrontRule.h"
#include "CompatibleRuns.h"
#include "DopingRules.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

using namespace CompatibleFrontRule;
using Support::Grid;

namespace {

constexpr std::uint32_t silicon = 1;
/// What cells become, which is compatible too.
constexpr std::uint32_t doped = 15;
/// Filled, but not compatible.
constexpr std::uint32_t mask = 5;

const MaterialSet builtIn = {1, 14, 15, 16};

Case<Doping> caseOf(const Grid &grid, float depth, const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), {doped, depth}, builtIn};
}

Case<Doping> flatFloor(const Grid &grid, float depth, int floorLayers)
{
    return caseOf(grid, depth,
                  [floorLayers](int, int, int z) { return z < floorLayers ? silicon : 0U; });
}

/// A floor of silicon with a step in it, a buried mask, a mask on it and a roof of it above.
Support::MaterialRule maskedDevice()
{
    return [](int x, int y, int z) {
        const bool buried = z == 2 && x >= 2 && x < 7 && y >= 1 && y < 6;
        const bool sheet = z == 5 && x >= 4 && x < 9 && y >= 2 && y < 7;
        const bool roof = z == 7 && x < 5 && y < 6;
        return buried || sheet || roof ? mask : z < (y < 2 ? 4 : 5) ? silicon : 0U;
    };
}

Case<Doping> randomCase(const Grid &grid, std::uint32_t seed, std::uint32_t percent, float depth)
{
    return {grid,
            randomOf(grid, seed, percent, {silicon, silicon, silicon, mask, doped, 14, 7}),
            {doped, depth},
            builtIn};
}

const std::vector<float> &depths()
{
    static const std::vector<float> values = {0.5f, 1.0f, 1.4142135f, 2.0f, 2.5f,
                                              3.0f, 3.3f, 5.0f,       7.25f};
    return values;
}

} // namespace

TEST(SimpleDopingTest, FlatFloorIsDopedExactlyTenLayersDeep)
{
    const Case<Doping> given = flatFloor({6, 5, 16}, 10.0f, 13);
    expectMaterials(given, [](int, int, int z) { return z < 3 ? silicon : z < 13 ? doped : 0U; });
    const Sample sample = after(given, 1);
    for (int layer = 1; layer <= 10; ++layer) {
        EXPECT_FALSE(sample.at(3, 2, 13 - layer).reached);
        EXPECT_EQ(sample.at(3, 2, 13 - layer).distance, (Vector{0.0f, 0.0f, float(layer)}));
    }
    EXPECT_FALSE(sample.at(3, 2, 2).reached);
    EXPECT_EQ(sample.at(3, 2, 2).distance, (Vector{10.0f, 10.0f, 10.0f}));
}

TEST(SimpleDopingTest, TenUnitsOnThinCellsAreTwentyEightLayersInFortyNineSteps)
{
    const Case<Doping> given = flatFloor({4, 3, 34, 1.0f, 1.0f, 0.35f}, 10.0f, 32);
    EXPECT_EQ(ruleOf(given, 1, fresh(given)).stepCount(), 49U);
    expectMaterials(given, [](int, int, int z) { return z < 4 ? silicon : z < 32 ? doped : 0U; });
}

TEST(SimpleDopingTest, EachStepGoesOneCellFurther)
{
    // Of twenty cells of depth come 34 steps.
    for (const float cell : {1.0f, 0.25f}) {
        const Case<Doping> given = {
            windingGrid(cell), windingMaterials(mask, silicon, 0), {doped, 20.0f * cell}, builtIn};
        EXPECT_EQ(filledFromTheSource(after(given, 1).materials(), doped), 34);
        expectRule(given);
    }
}

TEST(SimpleDopingTest, StepsAreCountedInSinglePrecision)
{
    // In double precision 7 / 0.35f is above 20.
    const Case<Doping> given = {
        windingGrid(0.35f), windingMaterials(mask, silicon, 0), {doped, 7.0f}, builtIn};
    EXPECT_EQ(filledFromTheSource(after(given, 1).materials(), doped), 34);
}

TEST(SimpleDopingTest, DepthZeroChangesNoMaterial)
{
    expectUnchanged(flatFloor({5, 4, 6}, 0.0f, 4));
    expectUnchanged(caseOf({10, 8, 9}, 0.0f, maskedDevice()));
    expectUnchanged(randomCase({6, 6, 6}, 3, 60, 0.0f));
}

TEST(SimpleDopingTest, DepthBelowTheSmallestCellChangesNoMaterial)
{
    expectUnchanged(flatFloor({5, 4, 6}, std::nextafter(1.0f, 0.0f), 4));
    expectUnchanged(flatFloor({5, 4, 6, 1.0f, 1.0f, 0.35f}, 0.34f, 4));
    expectUnchanged(flatFloor({5, 4, 6}, 1e-30f, 4));
}

TEST(SimpleDopingTest, DepthThatIsNegativeOrNotANumberChangesNoMaterial)
{
    for (const float depth : {-0.5f, -10.0f, std::numeric_limits<float>::quiet_NaN()})
        expectUnchanged(flatFloor({5, 4, 6}, depth, 4));
}

TEST(SimpleDopingTest, CellExactlyAtTheDepthIsDoped)
{
    expectMaterials(flatFloor({4, 3, 9}, 3.0f, 7), [](int, int, int z) {
        return z < 4 ? silicon : z < 7 ? doped : 0U;
    });
    expectMaterials(flatFloor({4, 3, 9}, std::nextafter(3.0f, 0.0f), 7), [](int, int, int z) {
        return z < 5 ? silicon : z < 7 ? doped : 0U;
    });
}

TEST(SimpleDopingTest, BlockInVoidIsDopedOnAllSixFaces)
{
    for (const int layers : {1, 2, 3}) {
        const Case<Doping> given = caseOf({13, 12, 14}, float(layers), [](int x, int y, int z) {
            return x >= 2 && x < 11 && y >= 2 && y < 10 && z >= 2 && z < 12 ? silicon : 0U;
        });
        expectMaterials(given, [=](int x, int y, int z) {
            const int depth = std::min({x - 1, 11 - x, y - 1, 10 - y, z - 1, 12 - z});
            return depth < 1 ? 0U : depth <= layers ? doped : silicon;
        });
    }
}

TEST(SimpleDopingTest, FaceOnAnotherMaterialStaysUndoped)
{
    for (const int layers : {1, 2, 3}) {
        const Case<Doping> given = caseOf({13, 12, 12}, float(layers), [](int x, int y, int z) {
            const bool block = x >= 2 && x < 11 && y >= 2 && y < 10 && z < 10;
            return z < 2 ? mask : block ? silicon : 0U;
        });
        expectMaterials(given, [=](int x, int y, int z) {
            const int depth = std::min({x - 1, 11 - x, y - 1, 10 - y, 10 - z});
            return z < 2 ? mask : depth < 1 ? 0U : depth <= layers ? doped : silicon;
        });
    }
}

TEST(SimpleDopingTest, BordersOfTheVolumeAreNoSurface)
{
    expectUnchanged(caseOf({7, 6, 8}, 4.0f, [](int, int, int) { return silicon; }));
    expectUnchanged(
        caseOf({7, 6, 8}, 4.0f, [](int x, int, int) { return x < 3 ? silicon : mask; }));
}

TEST(SimpleDopingTest, DopingReachesSidewaysUnderAMaskToTheDepth)
{
    for (const float depth : {1.0f, 2.0f, 2.5f, 3.0f, 4.0f, 5.0f}) {
        const auto isMask = [](int x, int z) { return x >= 6 && (z == 7 || z == 8); };
        const Case<Doping> given = caseOf({15, 3, 11}, depth, [=](int x, int, int z) {
            return isMask(x, z) ? mask : z < 7 ? silicon : 0U;
        });
        expectMaterials(given, [=](int x, int, int z) {
            if (z >= 7)
                return isMask(x, z) ? mask : 0U;
            const int aside = std::max(0, x - 5);
            const int squared = aside * aside + (7 - z) * (7 - z);
            return float(squared) <= depth * depth ? doped : silicon;
        });
    }
}

TEST(SimpleDopingTest, MasksStayAndBlockTheFront)
{
    // Nothing gets through a closed mask, whatever the depth.
    const Case<Doping> closed = caseOf({6, 5, 10}, 20.0f, [](int, int, int z) {
        return z < 4 ? silicon : z < 5 ? mask : z < 8 ? silicon : 0U;
    });
    expectMaterials(closed, [](int, int, int z) {
        return z < 4 ? silicon : z < 5 ? mask : z < 8 ? doped : 0U;
    });
    const Sample sample = after(closed, 1);
    EXPECT_TRUE(sample.at(3, 2, 4).reached);
    EXPECT_EQ(sample.at(3, 2, 4).distance, (Vector{20.0f, 20.0f, 20.0f}));
    for (const float depth : depths())
        expectRule(caseOf({10, 8, 9}, depth, maskedDevice()));
}

TEST(SimpleDopingTest, DepthBeyondTheVolumeDopesAllThatTheFrontGetsTo)
{
    expectMaterials(caseOf({8, 5, 6}, 100.0f,
                           [](int x, int y, int z) {
                               return x == 1 && y == 2 && z == 3 ? 0U : x == 5 ? mask : silicon;
                           }),
                    [](int x, int y, int z) {
                        if (x == 1 && y == 2 && z == 3)
                            return 0U;
                        return x == 5 ? mask : x < 5 ? doped : silicon;
                    });
}

TEST(SimpleDopingTest, VolumesWithoutSurfaceStayAsTheyAre)
{
    expectUnchanged(caseOf({6, 5, 8}, 5.0f, [](int, int, int) { return 0U; }));
    expectUnchanged(caseOf({6, 5, 8}, 5.0f, [](int, int, int z) { return z < 3 ? mask : 0U; }));
    for (const std::uint32_t material : {0U, silicon, mask})
        expectUnchanged(Case<Doping>{{1, 1, 1}, {material}, {doped, 3.0f}, builtIn});
}

TEST(SimpleDopingTest, CellsHoldWhatTheyAreToTheFrontWhenTheRunBegins)
{
    // Of the depth of one half comes one step, in which no cell is taken.
    for (const float depth : {0.0f, 0.5f}) {
        const Case<Doping> given = randomCase({7, 6, 8}, 5, 70, depth);
        const Sample sample = after(given, 1);
        for (const Cells *cells : {&sample.voxels(), &sample.nextVoxels()}) {
            for (std::size_t i = 0; i < given.materials.size(); ++i) {
                const bool isVoid = given.materials[i] == 0;
                const bool isOpen = builtIn.count(given.materials[i]) != 0;
                EXPECT_EQ((*cells)[i].reached, !isOpen);
                EXPECT_EQ((*cells)[i].distance,
                          isVoid ? (Vector{0.0f, 0.0f, 0.0f}) : (Vector{depth, depth, depth}));
            }
        }
    }
}

TEST(SimpleDopingTest, FirstStepVisitsEveryCompatibleCellThatTouchesVoid)
{
    // By a face, an edge or a corner. A step leaves the atoms of the working buffer in what it
    // visits.
    const Case<Doping> given = randomCase({7, 6, 8}, 13, 93, 0.5f);
    const Start start = leftOver(given);
    for (const int threads : {1, 4}) {
        const Sample sample = after(given, threads, start);
        for (int cell = 0; cell < int(given.grid.cells()); ++cell) {
            bool visited = false;
            for (const Place &offset : mooreNeighbors) {
                const Place other = placeOf(given.grid, cell) + offset;
                if (builtIn.count(given.materials[cell]) != 0 && isInside(given.grid, other))
                    visited |= given.materials[indexOf(given.grid, other)] == 0;
            }
            EXPECT_EQ(sample.voxels()[cell].atoms,
                      (visited ? start.nextVoxels : start.voxels)[cell].atoms);
            EXPECT_EQ(sample.nextVoxels()[cell].atoms, start.nextVoxels[cell].atoms);
        }
    }
}

TEST(SimpleDopingTest, FirstFaceInOrderStandsAmongEqualCandidates)
{
    for (std::size_t first = 0; first < faceNeighbors.size(); ++first) {
        Materials materials(27, mask);
        materials[13] = silicon;
        for (std::size_t k = first; k < faceNeighbors.size(); ++k)
            materials[indexOf({3, 3, 3}, Place{1, 1, 1} + faceNeighbors[k])] = 0;
        const Case<Doping> given = {{3, 3, 3}, materials, {doped, 1.0f}, builtIn};
        const Place &face = faceNeighbors[first];
        EXPECT_EQ(after(given, 1).at(1, 1, 1).material, doped);
        EXPECT_EQ(after(given, 1).at(1, 1, 1).distance,
                  (Vector{float(face.x), float(face.y), float(face.z)}));
        expectRule(given);
    }
}

TEST(SimpleDopingTest, ListOfTheProcessDecidesWhatIsDoped)
{
    // Columns of five materials, those of large ids among them.
    const std::array<std::uint32_t, 5> ids = {1, 2, 65535, 65536, 4294967295U};
    for (std::uint32_t chosen = 0; chosen < 32; ++chosen) {
        Case<Doping> given = caseOf(
            {5, 3, 6}, 2.0f, [&](int x, int, int z) { return z < 5 ? ids[std::size_t(x)] : 0U; });
        given.compatible.clear();
        for (std::size_t i = 0; i < ids.size(); ++i)
            if ((chosen >> i & 1) != 0)
                given.compatible.insert(ids[i]);
        expectMaterials(given, [&](int x, int, int z) {
            const bool isIn = given.compatible.count(ids[std::size_t(x)]) != 0;
            return z == 5 ? 0U : isIn && z >= 3 ? doped : ids[std::size_t(x)];
        });
    }
}

TEST(SimpleDopingTest, BuiltInListHasSiliconAndItsDopedAndPolycrystallineKinds)
{
    for (std::uint32_t material = 1; material <= 17; ++material) {
        const auto volume = Support::makeVolume(
            {3, 3, 4}, [=](auto, auto, std::uint32_t z) { return z < 3 ? material : 0U; });
        Core::Operations::SimpleDoping(volume.get(), 20, 1.0f).runDoping();
        const bool isDoped = Support::materialsOf(*volume)[2] == 20;
        EXPECT_EQ(isDoped, material == 1 || (material >= 14 && material <= 16)) << material;
    }
}

TEST(SimpleDopingTest, RenamedProcessGivesAnEmptyListAndNoChange)
{
    expectUnchangedWhenRenamed(caseOf({10, 8, 9}, 3.0f, maskedDevice()));
}

TEST(SimpleDopingTest, ListIsReadAtConstruction)
{
    expectListOfConstruction(caseOf({10, 8, 9}, 3.0f, maskedDevice()), {mask});
}

TEST(SimpleDopingTest, ListsOfOtherProcessesPlayNoPart)
{
    ChangedRegistry registry;
    registry.setCompatible("Ion Implantation", {mask});
    registry.setCompatible("Simple Si Oxidation", {});
    const Case<Doping> given = caseOf({10, 8, 9}, 3.0f, maskedDevice());
    Sample sample(given.base());
    sample.runWith(1, [&](TotalVolume &volume) { buildAndRun(volume, given.process, [] {}); });
    expectSame(given, sample, ruleOf(given, 1, leftOver(given)));
}

TEST(SimpleDopingTest, DopedMaterialNeedsNotBeCompatible)
{
    for (const std::uint32_t material : {silicon, doped, 20U, mask}) {
        Case<Doping> given = flatFloor({6, 5, 9}, 4.0f, 7);
        given.process.material = material;
        expectMaterials(given, [=](int, int, int z) {
            return z < 3 ? silicon : z < 7 ? material : 0U;
        });
        for (const float depth : depths()) {
            given = caseOf({10, 8, 9}, depth, maskedDevice());
            given.process.material = material;
            expectRule(given);
        }
    }
}

TEST(SimpleDopingTest, CellsOfAMaterialThatIsNotCompatibleKeepTheirFirstVector)
{
    // A cell that is taken from one side in the first step and could come nearer later, if it still
    // took part: cells three times as wide as they are high.
    const Grid grid = {4, 1, 4, 3.0f, 1.0f, 1.0f};
    const auto isVoid = [](int x, int z) { return x == 0 || z == 3; };
    Case<Doping> given =
        caseOf(grid, 6.0f, [=](int x, int, int z) { return isVoid(x, z) ? 0U : silicon; });
    EXPECT_EQ(after(given, 1).at(1, 0, 1).distance, (Vector{0.0f, 0.0f, 2.0f}));
    given.process.material = 20;
    EXPECT_EQ(after(given, 1).at(1, 0, 1).distance, (Vector{-3.0f, 0.0f, 0.0f}));
    expectRule(given);
}

TEST(SimpleDopingTest, VoidAsDopedMaterialEmptiesTheCells)
{
    Case<Doping> given = flatFloor({5, 4, 8}, 2.0f, 6);
    given.process.material = 0;
    expectMaterials(given, [](int, int, int z) { return z < 4 ? silicon : 0U; });
}

TEST(SimpleDopingTest, VoidInTheListIsStillASource)
{
    Case<Doping> given = caseOf({10, 8, 9}, 2.5f, maskedDevice());
    given.compatible.insert(0);
    const Sample sample = after(given, 1);
    const DopingRule rule = ruleOf(given, 1, leftOver(given));
    EXPECT_TRUE(agree(given.base(), sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
}

TEST(SimpleDopingTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const float depth : {1.0f, 2.5f, 6.0f})
        for (const Grid &grid : thinGrids())
            for (const std::uint32_t percent : {40U, 80U, 97U})
                expectRule(randomCase(grid, percent, percent, depth));
}

TEST(SimpleDopingTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const Grid grid = randomGrid(random);
        const std::vector<std::uint32_t> percents = {5, 30, 60, 90, 98};
        const std::vector<std::uint32_t> materials = {doped, 14, silicon, mask, 20, 0};
        const std::vector<MaterialSet> sets = {builtIn,           {1},     {1, 5},
                                               {1, 5, 7, 14, 15}, {5, 20}, {}};
        Case<Doping> given = randomCase(grid, seed, percents[random() % percents.size()],
                                        depths()[random() % depths().size()] * grid.cellSizeX);
        given.process.material = materials[random() % materials.size()];
        given.compatible = sets[random() % sets.size()];
        expectRule(given);
    }
}

TEST(SimpleDopingTest, ConstructionLeavesTheVolumeAlone)
{
    expectConstructionLeavesTheVolumeAlone(flatFloor({5, 4, 6}, 3.0f, 4), [](TotalVolume &volume) {
        const Core::Operations::SimpleDoping engine(&volume, doped, 3.0f);
    });
}

TEST(SimpleDopingTest, StripsInAscendingOrderFollowTheRule)
{
    // The threads are counted at construction: those of the pool are fewer when it runs.
    const Case<Doping> given = randomCase({12, 7, 9}, 1, 95, 3.0f);
    ASSERT_FALSE(agree(given.base(), ruleOf(given, 1, leftOver(given)).voxels(),
                       ruleOf(given, 4, leftOver(given)).voxels(), hasSameMaterialAndFront));
    for (const int threads : {1, 2, 3, 4, 6, 7}) {
        expectRuleOfStrips(given, threads);
        expectRuleOfStrips(caseOf({13, 9, 10}, 3.3f, maskedDevice()), threads);
        for (std::uint32_t seed = 1; seed <= 5; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {9 + seed, 6, 8, 1.0f, 0.5f, 0.35f};
            Case<Doping> random = randomCase(grid, seed, 98 - 8 * seed, 2.5f);
            random.process.material = seed % 2 == 0 ? doped : 20;
            expectRuleOfStrips(random, threads);
        }
    }
}

TEST(SimpleDopingTest, FlatFloorIsDopedTenLayersDeepByAnyNumberOfStrips)
{
    const Case<Doping> given = flatFloor({17, 6, 16}, 10.0f, 13);
    const DopingRule rule = ruleOf(given, 1, leftOver(given));
    for (const int threads : {2, 3, 4, 8}) {
        const Sample sample = after(given, threads);
        EXPECT_TRUE(agree(given.base(), sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
    }
}

TEST(SimpleDopingTest, StripsKeepWithinTheDepthWhateverTheirOrder)
{
    for (const int threads : {2, 3, 4}) {
        for (const float depth : {1.0f, 2.5f, 3.0f})
            expectGuarantees(caseOf({13, 8, 9}, depth, maskedDevice()), threads, depth, false);
        expectGuarantees(flatFloor({std::uint32_t(2 * threads), 8, 8}, 4.0f, 6), threads, 4.0f,
                         false);
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {std::uint32_t(8 * threads) + seed, 6, 8, 1.0f, 0.5f, 1.0f};
            Case<Doping> given = randomCase(grid, seed, seed % 2 == 0 ? 95 : 70, 2.0f);
            given.process.material = seed < 3 ? doped : 20;
            expectGuarantees(given, threads, 2.0f, false);
        }
    }
}
