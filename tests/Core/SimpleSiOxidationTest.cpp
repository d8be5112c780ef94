#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"

#include "CompatibleFrontRule.h"
#include "CompatibleRuns.h"
#include "DebugLog.h"
#include "OxidationRule.h"
#include "OxideGrowthRule.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <future>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace CompatibleFrontRule;
using Core::Operations::SimpleSiOxidation;
using OxideGrowthRule::Furnace;
using OxideGrowthRule::linesOf;
using Support::Grid;

namespace {

constexpr std::uint32_t silicon = 1;
constexpr std::uint32_t oxide = 3;
/// Filled, but neither oxidizable nor oxide.
constexpr std::uint32_t mask = 5;

const MaterialSet builtIn = {1, 14, 15, 16};
const double notANumber = std::numeric_limits<double>::quiet_NaN();

Case<Oxidation> caseOf(const Grid &grid, double thickness, const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), {thickness}, builtIn};
}

Support::MaterialRule waferOf(int layers)
{
    return [layers](int, int, int z) { return z < layers ? silicon : 0U; };
}

/// A wafer with a trench, old oxide in a corner, a mask that leaves a window, and a bridge.
Support::MaterialRule device()
{
    return [](int x, int y, int z) {
        const bool trench = x >= 3 && x < 6 && y >= 2 && z >= 3;
        const bool old = z == 6 && x < 2;
        const bool cover = z == 6 && x >= 8;
        const bool bridge = z == 9 && y < 3;
        if (old)
            return oxide;
        return cover || bridge ? mask : z < 6 && !trench ? silicon : 0U;
    };
}

Case<Oxidation> randomCase(const Grid &grid, std::uint32_t seed, std::uint32_t percent,
                           double thickness)
{
    return {grid,
            randomOf(grid, seed, percent, {silicon, silicon, silicon, mask, oxide, 14, 7}),
            {thickness},
            builtIn};
}

/// Runs with several strips and with one on the pool, and expects these materials; the rest by the
/// rule.
void expectOxide(const Case<Oxidation> &given, const Support::MaterialRule &rule)
{
    expectMaterials(given, rule);
    for (const int threads : {2, 3, 4}) {
        if (int(given.grid.sizeX) / threads < 2)
            continue;
        const Sample sample = after(given, threads);
        EXPECT_EQ(sample.materials(), Support::materialsBy(given.grid, rule)) << given;
        EXPECT_EQ(sample.nextMaterials(), Support::materialsBy(given.grid, rule)) << given;
    }
}

/// Expects that a run has touched nothing at all.
void expectUntouched(const Case<Oxidation> &given)
{
    const Start start = leftOver(given);
    for (const int threads : {1, 3, 8}) {
        const Sample sample = after(given, threads, start);
        EXPECT_TRUE(agree(given.base(), sample.voxels(), start.voxels, hasSameFields));
        EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), start.nextVoxels, hasSameFields));
    }
}

/// Runs for furnace conditions in place of a thickness.
Sample afterFurnace(const Case<Oxidation> &given, const Furnace &furnace, double unitsPerMicron)
{
    Sample sample(given.base());
    sample.runWith(1, [&](TotalVolume &volume) {
        SimpleSiOxidation engine(&volume, unitsPerMicron);
        engine.oxidateFor(furnace.time, furnace.temperature, furnace.pressure);
    });
    return sample;
}

} // namespace

TEST(SimpleSiOxidationTest, FlatWaferGetsOxideAboveAndBelowTheOldSurface)
{
    struct Flat
    {
        double thickness;
        /// Up to 0.56 of the thickness, and less than 0.3 from the uppermost layer on.
        int above;
        int below;
    };
    for (const Flat &flat :
         {Flat{1.5, 0, 1}, Flat{2.0, 1, 1}, Flat{3.0, 1, 1}, Flat{5.0, 2, 2}, Flat{7.5, 4, 3},
          Flat{10.0, 5, 3}, Flat{16.0, 8, 5}, Flat{20.0, 11, 6}}) {
        const Case<Oxidation> given = caseOf({9, 4, 24}, flat.thickness, waferOf(10));
        expectOxide(given, [=](int, int, int z) {
            return z < 10 - flat.below ? silicon : z < 10 + flat.above ? oxide : 0U;
        });
    }
}

TEST(SimpleSiOxidationTest, CellsThatAreNoCubesAreOxidizedByDrawingUnits)
{
    // 5.656 above are sixteen layers of 0.35, 3.03 below are the surface and eight.
    expectOxide(caseOf({8, 3, 40, 1.0f, 1.0f, 0.35f}, 10.1, waferOf(15)), [](int, int, int z) {
        return z < 15 - 9 ? silicon : z < 15 + 16 ? oxide : 0U;
    });
    expectOxide(caseOf({8, 3, 16, 0.5f, 0.25f, 2.0f}, 10.0, waferOf(6)), [](int, int, int z) {
        return z < 4 ? silicon : z < 8 ? oxide : 0U;
    });
}

TEST(SimpleSiOxidationTest, LimitInVoidIsNotStrict)
{
    // 0.56 of them is 7.
    expectOxide(caseOf({8, 3, 20}, 12.5, waferOf(10)), [](int, int, int z) {
        return z < 6 ? silicon : z < 17 ? oxide : 0U;
    });
    expectOxide(caseOf({8, 3, 20}, 12.4999, waferOf(10)), [](int, int, int z) {
        return z < 6 ? silicon : z < 16 ? oxide : 0U;
    });
}

TEST(SimpleSiOxidationTest, LimitOfTheConversionIsStrict)
{
    // 0.3 of them is 3.
    expectOxide(caseOf({8, 3, 20}, 10.0, waferOf(10)), [](int, int, int z) {
        return z < 7 ? silicon : z < 15 ? oxide : 0U;
    });
    expectOxide(caseOf({8, 3, 20}, 10.0001, waferOf(10)), [](int, int, int z) {
        return z < 6 ? silicon : z < 15 ? oxide : 0U;
    });
}

TEST(SimpleSiOxidationTest, FrontGoesFurtherIntoTheSiliconThanTheOxide)
{
    // 0.44 of 25 is 11, and 0.3 is 7.5.
    const Case<Oxidation> given = caseOf({6, 3, 34}, 25.0, waferOf(16));
    const Sample sample = after(given, 1);
    for (int below = 0; below < 16; ++below) {
        const Cell &cell = sample.at(3, 1, 15 - below);
        EXPECT_EQ(cell.distance,
                  below <= 11 ? (Vector{0.0f, 0.0f, float(below)}) : (Vector{25.0f, 25.0f, 25.0f}));
        EXPECT_EQ(cell.reached, below == 0);
        EXPECT_EQ(cell.material, below <= 7 ? oxide : silicon);
    }
    for (int above = 1; above <= 14; ++above) {
        const Cell &cell = sample.at(3, 1, 15 + above);
        EXPECT_EQ(cell.distance, (Vector{0.0f, 0.0f, -float(above)}));
        EXPECT_FALSE(cell.reached);
        EXPECT_EQ(cell.material, oxide);
    }
    EXPECT_EQ(sample.at(3, 1, 30).distance, (Vector{25.0f, 25.0f, 25.0f}));
    EXPECT_EQ(sample.at(3, 1, 30).material, 0U);
    expectRule(given);
    expectRule(caseOf({6, 3, 34}, 24.99, waferOf(16)));
}

TEST(SimpleSiOxidationTest, ThicknessNotAboveTheSmallestCellTouchesNothing)
{
    for (const double thickness :
         {1.0, 0.5, 0.0, -0.0, -3.0, notANumber, -std::numeric_limits<double>::infinity()})
        expectUntouched(caseOf({9, 4, 12}, thickness, waferOf(7)));
    const Grid thin = {9, 4, 12, 1.0f, 1.0f, 0.35f};
    // Widened from single precision the cell is below 0.35.
    expectUntouched(caseOf(thin, double(0.35f), waferOf(7)));
    const auto surfaceAlone = [](int, int, int z) { return z < 6 ? silicon : z < 7 ? oxide : 0U; };
    expectOxide(caseOf(thin, 0.35, waferOf(7)), surfaceAlone);
    expectOxide(caseOf({9, 4, 12}, std::nextafter(1.0, 2.0), waferOf(7)), surfaceAlone);
}

TEST(SimpleSiOxidationTest, ThicknessNotAboveTheSmallestCellLocksNothing)
{
    for (const double thickness : {1.0, 0.0, notANumber}) {
        const auto volume = Support::makeVolume({6, 3, 8}, waferOf(4));
        volume->voxels();
        volume->nextVoxels();
        auto running = std::async(
            std::launch::async, [&] { SimpleSiOxidation(volume.get(), 1.0).oxidateTo(thickness); });
        EXPECT_EQ(running.wait_for(std::chrono::seconds(30)), std::future_status::ready);
        volume->releaseVoxels();
        volume->releaseNextVoxels();
        running.get();
    }
}

TEST(SimpleSiOxidationTest, VolumeWithFewerThanTwoLayersAThreadGetsNoOxide)
{
    const Case<Oxidation> given = caseOf({7, 4, 16}, 6.0, waferOf(8));
    for (const int threads : {4, 5, 7, 50}) {
        const Sample sample = after(given, threads);
        EXPECT_EQ(sample.materials(), given.materials);
        EXPECT_EQ(sample.nextMaterials(), given.materials);
        // But the front has run.
        EXPECT_EQ(sample.at(3, 2, 10).distance, (Vector{0.0f, 0.0f, -3.0f}));
        EXPECT_EQ(sample.at(3, 2, 5).distance, (Vector{0.0f, 0.0f, 2.0f}));
        expectSame(given, sample, ruleOf(given, threads, leftOver(given)));
    }
    for (const int threads : {1, 2, 3})
        EXPECT_NE(after(given, threads).materials(), given.materials);
    for (const Grid &grid : {Grid{1, 6, 12}, Grid{1, 1, 12}})
        expectUnchanged(caseOf(grid, 4.0, waferOf(6)));
}

TEST(SimpleSiOxidationTest, VolumesWithoutOxidizableMaterialStayAsTheyAre)
{
    for (const std::uint32_t material : {0U, mask, oxide})
        expectUnchanged(
            caseOf({8, 4, 9}, 4.0, [=](int, int, int z) { return z < 4 ? material : 0U; }));
    Case<Oxidation> given = caseOf({10, 6, 12}, 4.0, device());
    given.compatible = {};
    expectUnchanged(given);
    given.compatible = {2, 15};
    expectUnchanged(given);
}

TEST(SimpleSiOxidationTest, BordersOfTheVolumeAreNotVoid)
{
    // A wafer that fills the volume, and one that another material covers.
    expectUnchanged(caseOf({8, 5, 7}, 4.0, waferOf(7)));
    expectUnchanged(caseOf({8, 5, 7}, 4.0, [](int, int, int z) { return z < 5 ? silicon : mask; }));
    // The sides of a wafer are not oxidized, nor its bottom.
    expectOxide(caseOf({8, 5, 12}, 4.0, waferOf(6)), [](int, int, int z) {
        return z < 4 ? silicon : z < 8 ? oxide : 0U;
    });
}

TEST(SimpleSiOxidationTest, OnlyFacesOnVoidAreSources)
{
    // The void touches the corner and the edges of other cells as well.
    const Case<Oxidation> given = caseOf({5, 5, 5}, 2.0, [](int x, int y, int z) {
        return x == 2 && y == 2 && z == 2 ? 0U : silicon;
    });
    expectOxide(given, [](int x, int y, int z) {
        const int steps = std::abs(x - 2) + std::abs(y - 2) + std::abs(z - 2);
        return steps <= 1 ? oxide : silicon;
    });
}

TEST(SimpleSiOxidationTest, OldOxideBlocksTheFront)
{
    expectUnchanged(caseOf({8, 4, 14}, 5.0, [](int, int, int z) {
        return z < 6 ? silicon : z < 8 ? oxide : 0U;
    }));
    const Case<Oxidation> half = caseOf({13, 3, 14}, 5.0, [](int x, int, int z) {
        return z < 6 ? silicon : z < 7 && x < 6 ? oxide : 0U;
    });
    const Sample sample = after(half, 1);
    EXPECT_EQ(sample.at(0, 1, 5).material, silicon);
    EXPECT_EQ(sample.at(0, 1, 7).material, 0U);
    EXPECT_EQ(sample.at(10, 1, 7).material, oxide);
    EXPECT_TRUE(sample.at(0, 1, 6).reached);
    EXPECT_EQ(sample.at(0, 1, 6).distance, (Vector{5.0f, 5.0f, 5.0f}));
    expectRule(half);
}

TEST(SimpleSiOxidationTest, OldOxideThatIsMadeCompatibleOxidizesToo)
{
    Case<Oxidation> given = caseOf({8, 4, 16}, 10.0, [](int, int, int z) {
        return z < 8 ? silicon : z < 9 ? oxide : 0U;
    });
    given.compatible.insert(oxide);
    // The source is the top of the oxide: three layers from there on, two of them of silicon.
    expectOxide(given, [](int, int, int z) { return z < 6 ? silicon : z < 14 ? oxide : 0U; });
}

TEST(SimpleSiOxidationTest, MasksStayAndBlockTheFront)
{
    const auto isMask = [](int x, int z) { return x >= 6 && z >= 8 && z < 10; };
    const Case<Oxidation> given = caseOf({15, 3, 18}, 10.0, [=](int x, int, int z) {
        return z < 8 ? silicon : isMask(x, z) ? mask : 0U;
    });
    // Under the mask the sources are the cells beside it; above it the way leads around.
    const Materials materials = after(given, 1).materials();
    for (int x = 0; x < 15; ++x) {
        for (int z = 0; z < 10; ++z) {
            const int aside = std::max(0, x - 5);
            const int squared = aside * aside + (7 - z) * (7 - z);
            const std::uint32_t below = squared < 9 ? oxide : silicon;
            const std::uint32_t expected = z < 8 ? below : isMask(x, z) ? mask : oxide;
            EXPECT_EQ(materials[given.grid.index(x, 1, z)], expected) << x << ", " << z;
        }
    }
    expectRule(given);
    for (const double thickness : {1.5, 2.0, 3.3, 5.0, 10.0, 13.7})
        expectRule(caseOf({10, 6, 14}, thickness, device()));
}

TEST(SimpleSiOxidationTest, FrontsMeetInANarrowRidge)
{
    // Each cell keeps the shorter vector: the ridge is seven cells wide.
    const auto ridge = [](int x, int z) { return x >= 8 && x < 15 && z >= 4; };
    const Case<Oxidation> given = caseOf(
        {23, 2, 22}, 15.0, [=](int x, int, int z) { return z < 4 || ridge(x, z) ? silicon : 0U; });
    const Sample sample = after(given, 1);
    for (int x = 8; x < 15; ++x) {
        const float fromLeft = float(x - 8);
        const float fromRight = float(14 - x);
        const Vector &distance = sample.at(x, 0, 18).distance;
        EXPECT_EQ(std::abs(distance[0]), std::min(fromLeft, fromRight)) << x;
        EXPECT_EQ(distance[1], 0.0f);
        EXPECT_EQ(distance[2], 0.0f);
        // 0.3 of 15 is 4.5: nothing is left of the silicon.
        EXPECT_EQ(sample.at(x, 0, 18).material, oxide);
    }
    for (const double thickness : {3.0, 7.0, 10.0, 15.0, 30.0})
        expectRule(caseOf({23, 2, 22}, thickness,
                          [=](int x, int, int z) { return z < 4 || ridge(x, z) ? silicon : 0U; }));
}

TEST(SimpleSiOxidationTest, MaterialsOfTheListOxidizeAlike)
{
    for (const std::uint32_t material : {1U, 14U, 15U, 16U})
        expectOxide(caseOf({8, 3, 12}, 5.0, [=](int, int, int z) { return z < 6 ? material : 0U; }),
                    [=](int, int, int z) { return z < 4   ? material
                                                  : z < 8 ? oxide
                                                          : 0U; });
    // Side by side they are one wafer.
    expectOxide(
        caseOf({8, 3, 12}, 5.0, [](int x, int, int z) { return z >= 6  ? 0U
                                                               : x < 4 ? 14U
                                                                       : 16U; }),
        [](int x, int, int z) {
            return z >= 8 ? 0U : z >= 4 ? oxide : x < 4 ? 14U : 16U;
        });
}

TEST(SimpleSiOxidationTest, ListOfTheProcessDecidesWhatIsOxidized)
{
    for (const std::uint32_t chosen : {2U, 65535U, 65536U, 4294967295U}) {
        Case<Oxidation> given =
            caseOf({8, 3, 12}, 5.0, [=](int, int, int z) { return z < 6 ? chosen : 0U; });
        expectUnchanged(given);
        given.compatible = {chosen};
        expectOxide(given, [=](int, int, int z) { return z < 4 ? chosen : z < 8 ? oxide : 0U; });
    }
    ChangedRegistry registry;
    registry.setCompatible("Simple Doping", {mask});
    registry.setCompatible("Ion Implantation", {mask});
    const Case<Oxidation> given = caseOf({10, 6, 14}, 5.0, device());
    Sample sample(given.base());
    sample.runWith(1, [&](TotalVolume &volume) { buildAndRun(volume, given.process, [] {}); });
    expectSame(given, sample, ruleOf(given, 1, leftOver(given)));
}

TEST(SimpleSiOxidationTest, RenamedProcessGivesAnEmptyListAndNoChange)
{
    expectUnchangedWhenRenamed(caseOf({10, 6, 14}, 5.0, device()));
}

TEST(SimpleSiOxidationTest, ListIsReadAtConstruction)
{
    expectListOfConstruction(caseOf({10, 6, 14}, 5.0, device()), {mask});
}

TEST(SimpleSiOxidationTest, StepsAreCountedInDoublePrecision)
{
    // Twenty cells give 34 steps, 21 give 35, and a step goes one cell along the passage.
    struct Passage
    {
        float cell;
        double thickness;
        int steps;
    };
    for (const Passage &passage : {Passage{1.0f, 20.0, 34}, Passage{1.0f, 20.0000000001, 35},
                                   Passage{0.25f, 5.0, 34}, Passage{0.35f, 7.0, 35}}) {
        const Case<Oxidation> given = {windingGrid(passage.cell),
                                       windingMaterials(mask, 0, silicon),
                                       {passage.thickness},
                                       builtIn};
        EXPECT_EQ(filledFromTheSource(after(given, 1).materials(), oxide), passage.steps);
        expectRule(given);
    }
}

TEST(SimpleSiOxidationTest, ThicknessBeyondTheVolumeOxidizesAllThatTheFrontGetsTo)
{
    expectOxide(caseOf({8, 4, 9}, 500.0,
                       [](int x, int, int z) { return x == 5  ? mask
                                                      : z < 4 ? silicon
                                                              : 0U; }),
                [](int x, int, int) { return x == 5 ? mask : oxide; });
}

TEST(SimpleSiOxidationTest, FirstFaceInOrderStandsAmongEqualCandidates)
{
    for (std::size_t first = 0; first < faceNeighbors.size(); ++first) {
        Materials materials(27, mask);
        materials[13] = 0;
        for (std::size_t k = first; k < faceNeighbors.size(); ++k)
            materials[indexOf({3, 3, 3}, Place{1, 1, 1} + faceNeighbors[k])] = silicon;
        const Case<Oxidation> given = {{3, 3, 3}, materials, {2.0}, builtIn};
        const Place &face = faceNeighbors[first];
        EXPECT_EQ(after(given, 1).at(1, 1, 1).material, oxide);
        EXPECT_EQ(after(given, 1).at(1, 1, 1).distance,
                  (Vector{float(face.x), float(face.y), float(face.z)}));
        expectRule(given);
    }
}

TEST(SimpleSiOxidationTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const double thickness : {1.5, 4.0, 10.0})
        for (const Grid &grid : thinGrids())
            for (const std::uint32_t percent : {10U, 50U, 90U})
                expectRule(randomCase(grid, percent, percent, thickness));
}

TEST(SimpleSiOxidationTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const Grid grid = randomGrid(random);
        const std::vector<std::uint32_t> percents = {3, 10, 30, 60, 90, 98};
        const std::vector<double> thicknesses = {0.5, 1.1, 2.0, 3.3, 5.0, 7.25, 10.0};
        const std::vector<MaterialSet> sets = {builtIn, {1}, {1, 5}, {1, 3, 7, 14, 15}, {3, 5}, {}};
        Case<Oxidation> given =
            randomCase(grid, seed, percents[random() % percents.size()],
                       thicknesses[random() % thicknesses.size()] * double(grid.cellSizeX));
        given.compatible = sets[random() % sets.size()];
        expectRule(given);
    }
}

TEST(SimpleSiOxidationTest, FurnaceWritesItsNumbersToTheLog)
{
    const Case<Oxidation> given = caseOf({6, 3, 14}, 0.0, waferOf(6));
    for (const Furnace &furnace : {Furnace{2.0, 1273.0, 1.0}, Furnace{0.0, 1173.0, 5.0},
                                   Furnace{12.5, 1373.15, 0.5}, Furnace{100.0, 1073.0, 1.0}}) {
        for (const double unitsPerMicron : {1.0, 3.5, 100.0}) {
            const Fakes::DebugLog log;
            afterFurnace(given, furnace, unitsPerMicron);
            EXPECT_EQ(log.lines(), linesOf(furnace, unitsPerMicron));
        }
    }
    const std::vector<std::string> lines = linesOf({2.0, 1273.0, 1.0}, 100.0);
    EXPECT_EQ(lines[4], "debug: B 0.0105097");
    EXPECT_EQ(lines[6], "debug: A 0.130795");
    EXPECT_EQ(lines[7], "debug: tau 0.370595");
    EXPECT_EQ(lines[8], "debug: Oxide thickness in microns 0.105457");
}

TEST(SimpleSiOxidationTest, ThicknessAloneWritesNothingToTheLog)
{
    const Fakes::DebugLog log;
    after(caseOf({6, 3, 14}, 5.0, waferOf(6)), 1);
    EXPECT_TRUE(log.lines().empty());
}

TEST(SimpleSiOxidationTest, FurnaceOxidizesToItsThicknessInCellUnits)
{
    const Fakes::DebugLog log;
    // 0.105457 microns.
    const Case<Oxidation> given = caseOf({9, 4, 24}, 10.5457, waferOf(10));
    const Sample sample = afterFurnace(given, {2.0, 1273.0, 1.0}, 100.0);
    EXPECT_EQ(sample.materials(), after(given, 1).materials());
    EXPECT_EQ(sample.materials(), Support::materialsBy(given.grid, [](int, int, int z) {
                  return z < 6 ? silicon : z < 15 ? oxide : 0U;
              }));
    // No time leaves the initial oxide of 0.025 microns.
    const Sample initial = afterFurnace(given, {0.0, 1273.0, 1.0}, 270.0);
    EXPECT_EQ(initial.materials(), after(caseOf(given.grid, 6.75, waferOf(10)), 1).materials());
    // Too thin for a cell.
    const Sample thin = afterFurnace(given, {2.0, 1273.0, 1.0}, 1.0);
    EXPECT_EQ(thin.materials(), given.materials);
}

TEST(SimpleSiOxidationTest, FurnaceAtTemperatureZeroChangesNothing)
{
    const Case<Oxidation> given = caseOf({9, 4, 12}, 0.0, waferOf(7));
    for (const double time : {0.0, 2.0}) {
        const Fakes::DebugLog log;
        const Sample sample = afterFurnace(given, {time, 0.0, 1.0}, 100.0);
        expectSame(given, sample, ruleOf(given, 1, leftOver(given)));
        ASSERT_EQ(log.lines().size(), 10U);
        EXPECT_EQ(log.lines()[1], "debug: Temperature: 0");
        EXPECT_EQ(log.lines()[3], "debug: B (1 atm) 0");
        EXPECT_EQ(log.lines()[5], "debug: B/A 0");
    }
}

TEST(SimpleSiOxidationTest, FurnaceAtPressureZeroChangesNothing)
{
    const Case<Oxidation> given = caseOf({9, 4, 12}, 0.0, waferOf(7));
    for (const double time : {0.0, 2.0}) {
        const Fakes::DebugLog log;
        const Sample sample = afterFurnace(given, {time, 1273.0, 0.0}, 100.0);
        expectSame(given, sample, ruleOf(given, 1, leftOver(given)));
        ASSERT_EQ(log.lines().size(), 10U);
        EXPECT_EQ(log.lines()[2], "debug: Pressure: 0");
        EXPECT_EQ(log.lines()[4], "debug: B 0");
    }
}

TEST(SimpleSiOxidationTest, ConstructionLeavesTheVolumeAlone)
{
    expectConstructionLeavesTheVolumeAlone(
        caseOf({5, 4, 6}, 3.0, waferOf(4)),
        [](TotalVolume &volume) { const SimpleSiOxidation engine(&volume, 2.0); });
}

TEST(SimpleSiOxidationTest, StripsInAscendingOrderFollowTheRule)
{
    // The threads are counted at construction: those of the pool are fewer when it runs.
    const Case<Oxidation> given = randomCase({12, 7, 9}, 23, 5, 4.0);
    ASSERT_FALSE(agree(given.base(), ruleOf(given, 1, leftOver(given)).voxels(),
                       ruleOf(given, 4, leftOver(given)).voxels(), hasSameMaterialAndFront));
    for (const int threads : {1, 2, 3, 4, 6, 7}) {
        expectRuleOfStrips(given, threads);
        expectRuleOfStrips(caseOf({13, 6, 14}, 5.5, device()), threads);
        for (std::uint32_t seed = 1; seed <= 5; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {9 + seed, 6, 8, 1.0f, 0.5f, 0.35f};
            expectRuleOfStrips(randomCase(grid, seed, 15 * seed, 4.0), threads);
        }
    }
}

TEST(SimpleSiOxidationTest, StripsKeepWithinTheThicknessWhateverTheirOrder)
{
    const auto expect = [](const Case<Oxidation> &given, int threads) {
        // Every material is told by the vector that the steps have left; without the conversion the
        // cells are those of the steps.
        expectGuarantees(given, threads, float(given.process.thickness), false,
                         [&](const auto &rule, Cells &cells) {
                             for (std::size_t i = 0; i < cells.size(); ++i) {
                                 Cell before = cells[i];
                                 before.material = given.materials[i];
                                 EXPECT_EQ(cells[i].material, rule.converted(before));
                                 cells[i] = before;
                             }
                         });
    };
    for (const int threads : {2, 3, 4}) {
        for (const double thickness : {1.5, 4.0, 5.5})
            expect(caseOf({13, 6, 14}, thickness, device()), threads);
        expect(caseOf({std::uint32_t(2 * threads), 6, 14}, 6.0, waferOf(7)), threads);
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {std::uint32_t(8 * threads) + seed, 6, 8, 1.0f, 0.5f, 1.0f};
            expect(randomCase(grid, seed, seed % 2 == 0 ? 20 : 80, 4.0), threads);
        }
    }
}
