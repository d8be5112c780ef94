#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"

#include "AnisotropicDepositionRule.h"
#include "AnisotropicDepositionRuns.h"
#include "AnisotropicDepositionShapes.h"
#include "DistanceFrontRuns.h"

#include "Support/Volumes.h"

#include <QString>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <limits>
#include <random>
#include <vector>

using namespace AnisotropicDepositionRule;
using Core::Operations::AnisotropicFilmDeposition;
using DistanceFrontRule::hasSameAtoms;
using DistanceFrontRule::hasSameMaterialAndFront;
using DistanceFrontRule::nextLeftovers;
using DistanceFrontRule::randomMaterials;
using Support::Grid;

namespace {

/// Expects these materials in both arrays, and all else by the rule.
void expectMaterials(const Case &given, const Materials &expected)
{
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
        const Sample sample = deposited(given, threads);
        EXPECT_EQ(sample.materials(), expected);
        EXPECT_EQ(sample.nextMaterials(), expected);
    }
    expectRule(given);
}
void expectMaterials(const Case &given, const Support::MaterialRule &expected)
{
    expectMaterials(given, Support::materialsBy(given.grid, expected));
}

/// Expects no material to change, with several strips too.
void expectUnchanged(const Case &given)
{
    for (const int threads : {2, 3}) {
        const Sample sample = deposited(given, threads);
        EXPECT_EQ(sample.materials(), given.materials) << given;
        EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), sample.voxels(), hasSameFields));
    }
    expectMaterials(given, given.materials);
}

/// Expects sheet() with a film of those layers and no other.
void expectFilmOfSheet(const Case &given, int from, int to)
{
    expectMaterials(given, [&](int x, int y, int z) {
        const std::uint32_t before = given.materials[indexOf(given.grid, {x, y, z})];
        return z >= from && z < to ? film : before;
    });
}

/// Expects layers on the floor and on the tops of the walls, and in the trench what goes round the
/// upper edges of the walls: an ellipse about each that is `ratio` times as wide as high.
void expectTrenchFilm(float thickness, float ratio)
{
    expectMaterials(trench(thickness, ratio), [=](int x, int, int z) {
        const bool isWall = x <= leftWall || x >= rightWall;
        if (z <= (isWall ? wallTop : trenchFloor))
            return solid;
        const auto isNear = [=](int aside, int up) {
            const double wide = double(aside) / double(ratio);
            return wide * wide + double(up * up) <= double(thickness * thickness) + 1e-3;
        };
        if (isWall)
            return isNear(0, z - wallTop) ? film : 0U;
        return isNear(0, z - trenchFloor) || isNear(x - leftWall, z - wallTop) ||
                       isNear(rightWall - x, z - wallTop)
                   ? film
                   : 0U;
    });
}

const std::vector<float> &ratios()
{
    static const std::vector<float> values = {0.01f, 0.3f, 0.5f, 1.0f, 1.7f, 3.0f};
    return values;
}
const std::vector<float> &thicknesses()
{
    static const std::vector<float> values = {0.5f, 1.0f, 1.4142135f, 2.0f, 2.5f, 3.3f, 5.0f};
    return values;
}

} // namespace

TEST(AnisotropicFilmDepositionTest, TextsOfTheModes)
{
    EXPECT_EQ(AnisotropicFilmDeposition::depositionModeText(1), "On Top");
    EXPECT_EQ(AnisotropicFilmDeposition::depositionModeText(2), "On Bottom");
    EXPECT_EQ(AnisotropicFilmDeposition::depositionModeText(3), "On Top and Bottom");
    for (const std::uint32_t mode : {0U, 4U, 5U, 7U, 0xFFFFFFFFU})
        EXPECT_EQ(AnisotropicFilmDeposition::depositionModeText(mode), "") << mode;
}

TEST(AnisotropicFilmDepositionTest, FlatFloorGetsExactlyTenLayersAtAnyRatio)
{
    for (const float ratio : ratios()) {
        const Case given = flatFloor({5, 4, 16}, 10.0f, ratio, 3);
        expectFilmOfSheet(given, 3, 13);
        const Sample sample = deposited(given, 1);
        for (int layer = 1; layer <= 10; ++layer) {
            EXPECT_FALSE(sample.at(3, 2, 2 + layer).reached);
            EXPECT_EQ(sample.at(3, 2, 2 + layer).distance, (Vector{0.0f, 0.0f, float(layer)}));
        }
        EXPECT_EQ(sample.at(3, 2, 13).distance, (Vector{10.0f, 10.0f, 10.0f}));
    }
}

TEST(AnisotropicFilmDepositionTest, StepsAreCountedInTheScaledSizes)
{
    const Grid grid = {1, 1, 1, 1.0f, 1.0f, 0.35f};
    EXPECT_EQ(stepCountOf(grid, {film, 10.0f, 0.5f, onTop}), 49U);
    EXPECT_EQ(stepCountOf(grid, {film, 10.0f, 4.0f, onTop}), 68U);
    // At four the film goes ten cells sideways in seventeen steps of a quarter, and no step more.
    for (const float thickness : {2.4f, 2.5f}) {
        const Case given = loneCell({24, 3, 2}, thickness, 4.0f, onTop, {0, 0, 0});
        expectRule(given);
        EXPECT_EQ(deposited(given, 1).at(9, 0, 0).material, film);
        EXPECT_EQ(deposited(given, 1).at(10, 0, 0).material, thickness < 2.5f ? 0U : film);
    }
}

TEST(AnisotropicFilmDepositionTest, TrenchAtHalfTheRateGetsTenLayersBelowAndOnTop)
{
    expectTrenchFilm(10.0f, 0.5f);
    const Sample sample = deposited(trench(10.0f, 0.5f), 1);
    EXPECT_EQ(sample.at(10, 1, trenchFloor + 10).material, film);
    EXPECT_EQ(sample.at(10, 1, trenchFloor + 11).material, 0U);
    EXPECT_EQ(sample.at(0, 1, wallTop + 10).material, film);
    EXPECT_EQ(sample.at(0, 1, wallTop + 11).material, 0U);
    // Five cells aside of the edge, and none beyond.
    EXPECT_EQ(sample.at(leftWall + 5, 1, wallTop).material, film);
    EXPECT_EQ(sample.at(leftWall + 5, 1, wallTop).distance, (Vector{10.0f, 0.0f, 0.0f}));
    EXPECT_EQ(sample.at(rightWall - 5, 1, wallTop).distance, (Vector{-10.0f, 0.0f, 0.0f}));
    EXPECT_EQ(sample.at(leftWall + 6, 1, wallTop).material, 0U);
}

TEST(AnisotropicFilmDepositionTest, WallsAloneStartNothing)
{
    // Between the film of the floor and that of the edges.
    const Sample sample = deposited(trench(3.0f, 1.0f), 1);
    const Vector far = {3.0f, 3.0f, 3.0f};
    for (int z = trenchFloor + 4; z < wallTop - 2; ++z) {
        for (const int x : {leftWall + 1, rightWall - 1}) {
            EXPECT_EQ(sample.at(x, 1, z).material, 0U);
            EXPECT_EQ(sample.at(x, 1, z).distance, far);
        }
        EXPECT_TRUE(sample.at(leftWall, 1, z).reached);
        EXPECT_EQ(sample.at(leftWall, 1, z).distance, far);
    }
}

TEST(AnisotropicFilmDepositionTest, TrenchAtTheFullRateGetsCirclesAboutItsEdges)
{
    for (const float thickness : {1.0f, 2.5f, 5.0f, 10.0f})
        expectTrenchFilm(thickness, 1.0f);
}

TEST(AnisotropicFilmDepositionTest, TrenchAtThreeTimesTheRateGrowsFurtherAsideThanUp)
{
    for (const float thickness : {1.5f, 2.5f})
        expectTrenchFilm(thickness, 3.0f);
    const Sample sample = deposited(trench(2.5f, 3.0f), 1);
    EXPECT_EQ(sample.at(leftWall + 7, 1, wallTop).material, film);
    EXPECT_EQ(sample.at(0, 1, wallTop + 3).material, 0U);
    expectRule(trench(10.0f, 3.0f));
}

TEST(AnisotropicFilmDepositionTest, RunWaitsForTheOtherArray)
{
    const auto volume =
        Support::makeVolume({5, 5, 8}, [](auto, auto, auto z) { return z == 0 ? 1u : 0u; });
    const std::size_t top = Support::Grid{5, 5, 8}.index(2, 2, 3);
    volume->nextVoxels();
    auto running = std::async(std::launch::async, [&] {
        Core::Operations::AnisotropicFilmDeposition(volume.get(), 7, 3.0f, 0.5f, 1).runDeposition();
    });
    EXPECT_EQ(running.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
    volume->releaseNextVoxels();
    running.get();
    EXPECT_EQ(Support::materialsOf(*volume)[top], 7u);
    EXPECT_EQ(Support::nextMaterialsOf(*volume)[top], 7u);
}

TEST(AnisotropicFilmDepositionTest, RatioOfZeroGrowsUpwardAlone)
{
    // Steps aside are infinitely long then, as they are with a ratio that is almost 0.
    for (const float ratio : {0.0f, 1e-39f}) {
        const auto volume = Support::makeVolume({5, 5, 8}, [](auto x, auto y, auto z) {
            return z == 0 || (z == 1 && x == 2 && y == 2) ? 1u : 0u;
        });
        Core::Operations::AnisotropicFilmDeposition(volume.get(), 7, 3.0f, ratio, 1)
            .runDeposition();
        EXPECT_EQ(Support::materialsOf(*volume),
                  Support::materialsBy({5, 5, 8},
                                       [](auto x, auto y, auto z) -> std::uint32_t {
                                           const bool bump = x == 2 && y == 2;
                                           const auto floor = bump ? 2u : 1u;
                                           return z < floor ? 1u : z < floor + 3 ? 7u : 0u;
                                       }))
            << ratio;
    }
}

TEST(AnisotropicFilmDepositionTest, SmallestRatioGrowsNothingAsideBelowAHundredUnits)
{
    expectTrenchFilm(10.0f, 0.01f);
    const Grid grid = {9, 2, 3};
    for (const float thickness : {99.0f, std::nextafter(100.0f, 0.0f), 100.0f}) {
        // Around a block that reaches to the layer below the top.
        const Case given = caseOf(grid, thickness, 0.01f, onTop,
                                  [](int x, int, int z) { return x < 3 && z < 2 ? solid : 0U; });
        expectMaterials(given, [&](int x, int, int z) {
            if (x < 3)
                return z < 2 ? solid : film;
            return x == 3 && z == 1 && thickness == 100.0f ? film : 0U;
        });
    }
}

TEST(AnisotropicFilmDepositionTest, LoneCellGrowsAnEllipsoidAllAround)
{
    const Place source = {7, 6, 7};
    for (const float ratio : {0.5f, 1.0f, 2.0f}) {
        for (const float thickness : {1.0f, 2.0f, 3.0f}) {
            expectMaterials(
                loneCell({15, 13, 15}, thickness, ratio, onTop, source), [&](int x, int y, int z) {
                    const Place offset = Place{x, y, z} - source;
                    const float aside = float(offset.x * offset.x + offset.y * offset.y);
                    const float up = float(offset.z * offset.z);
                    if (aside + up == 0.0f)
                        return solid;
                    return aside / (ratio * ratio) + up <= thickness * thickness ? film : 0U;
                });
        }
    }
}

TEST(AnisotropicFilmDepositionTest, VectorsPointAwayFromTheSourceInScaledUnits)
{
    const Case given = loneCell({5, 5, 5, 1.0f, 0.5f, 0.25f}, 2.5f, 0.5f, onTop, {2, 2, 2});
    const Sample sample = deposited(given, 1);
    for (const Place &offset : DistanceFrontRule::mooreNeighbors) {
        const Cell &cell = sample.at(2 + offset.x, 2 + offset.y, 2 + offset.z);
        EXPECT_EQ(cell.material, film);
        EXPECT_EQ(cell.distance, (Vector{2.0f * float(offset.x), 1.0f * float(offset.y),
                                         0.25f * float(offset.z)}));
    }
}

TEST(AnisotropicFilmDepositionTest, FirstFaceInOrderStandsAmongEqualCandidates)
{
    // Cells around an empty one, each with void above: of the faces below, left and so on the first
    // in order names the source. What is above the empty one is no source of its own in mode 2.
    for (const std::uint32_t mode : {onTop, onBottom, onBoth}) {
        for (std::size_t first = 0; first < faceNeighbors.size(); ++first) {
            const Grid grid = {5, 5, 5};
            Materials materials(grid.cells(), 0);
            for (std::size_t k = first; k < faceNeighbors.size(); ++k)
                materials[indexOf(grid, Place{2, 2, 2} + faceNeighbors[k])] = solid;
            const Case given = {grid, materials, {film, 1.0f, 1.0f, mode}};
            const Place &face = faceNeighbors[first];
            EXPECT_EQ(deposited(given, 1).at(2, 2, 2).distance,
                      (Vector{-float(face.x), -float(face.y), -float(face.z)}));
            expectRule(given);
        }
    }
}

TEST(AnisotropicFilmDepositionTest, OnBottomTheFilmGrowsDownwardFromCellsWithVoidBelow)
{
    expectFilmOfSheet(sheet({5, 4, 14}, 3.0f, onBottom, 7, 10), 4, 7);
    expectFilmOfSheet(sheet({5, 4, 14}, 3.0f, onBottom, 11, 14), 8, 11);
    const Sample sample = deposited(sheet({5, 4, 14}, 3.0f, onBottom, 7, 10), 1);
    EXPECT_EQ(sample.at(2, 2, 5).distance, (Vector{0.0f, 0.0f, -2.0f}));
    EXPECT_EQ(sample.at(2, 2, 10).distance, (Vector{3.0f, 3.0f, 3.0f}));
    // Nothing lies below the lowest layer, so that a floor has no lower face.
    expectUnchanged(sheet({5, 4, 14}, 3.0f, onBottom, 0, 3));
    expectUnchanged(trench(5.0f, 1.0f, onBottom));
}

TEST(AnisotropicFilmDepositionTest, FreeMembraneIsCoveredOnItsUpperFaceAloneOnTopAndBottom)
{
    for (const int layers : {2, 3})
        expectFilmOfSheet(sheet({5, 4, 16}, 3.0f, onBoth, 5, 5 + layers), 5 + layers, 8 + layers);
    expectFilmOfSheet(sheet({5, 4, 16}, 3.0f, onTop, 5, 7), 7, 10);
    const Sample sample = deposited(sheet({5, 4, 16}, 3.0f, onBoth, 5, 7), 1);
    EXPECT_EQ(sample.at(2, 2, 5).distance, (Vector{3.0f, 3.0f, 3.0f}));
    EXPECT_EQ(sample.at(2, 2, 6).distance, (Vector{0.0f, 0.0f, 0.0f}));
}

TEST(AnisotropicFilmDepositionTest, MembraneOfOneLayerIsASourceForTheCellsBelowItToo)
{
    // The cell with void above is also the one that the void below touches.
    for (const std::uint32_t mode : {onTop, onBottom, onBoth}) {
        expectMaterials(sheet({5, 4, 14}, 3.0f, mode, 6, 7), [](int, int, int z) {
            return z == 6 ? solid : std::abs(z - 6) <= 3 ? film : 0U;
        });
    }
}

TEST(AnisotropicFilmDepositionTest, MembraneInTheTopLayerIsCoveredOnItsLowerFace)
{
    const Grid grid = {5, 4, 9};
    expectFilmOfSheet(sheet(grid, 3.0f, onBoth, 8, 9), 5, 8);
    expectFilmOfSheet(sheet(grid, 3.0f, onBottom, 8, 9), 5, 8);
    // The upper face of the top layer is none.
    expectUnchanged(sheet(grid, 3.0f, onTop, 8, 9));
    expectUnchanged(sheet(grid, 3.0f, onTop, 0, 9));
    // The lower of two layers is not in the top one, and has no void above.
    expectUnchanged(sheet(grid, 3.0f, onBoth, 7, 9));
    expectFilmOfSheet(sheet(grid, 3.0f, onBottom, 7, 9), 4, 7);
}

TEST(AnisotropicFilmDepositionTest, OtherModesHaveNoSources)
{
    for (const std::uint32_t mode : {0U, 4U, 5U, 0xFFFFFFFFU}) {
        expectUnchanged(sheet({5, 4, 12}, 3.0f, mode, 5, 7));
        expectUnchanged(sheet({5, 4, 12}, 3.0f, mode, 11, 12));
    }
}

TEST(AnisotropicFilmDepositionTest, FilledCellsAreReachedAndHoldZeroOrTheFarValue)
{
    for (const std::uint32_t mode : {onTop, onBottom, onBoth}) {
        const Case given = caseOf(deviceGrid, 2.5f, 0.5f, mode, device());
        const Sample sample = deposited(given, 1);
        for (int cell = 0; cell < int(given.grid.cells()); ++cell) {
            const Place at = placeOf(given.grid, cell);
            const auto isVoid = [&](int z) {
                return given.materials[indexOf(given.grid, {at.x, at.y, z})] == 0;
            };
            EXPECT_EQ(sample.voxels()[cell].reached, !isVoid(at.z));
            if (isVoid(at.z))
                continue;
            const bool isInTopLayer = at.z == 11;
            const bool isSource = mode == onBottom || (mode == onBoth && isInTopLayer)
                                      ? at.z > 0 && isVoid(at.z - 1)
                                      : !isInTopLayer && isVoid(at.z + 1);
            EXPECT_EQ(sample.voxels()[cell].distance,
                      isSource ? (Vector{0.0f, 0.0f, 0.0f}) : (Vector{2.5f, 2.5f, 2.5f}));
            EXPECT_EQ(sample.voxels()[cell].material, given.materials[cell]);
        }
    }
}

TEST(AnisotropicFilmDepositionTest, ShapesFollowTheRule)
{
    for (const std::uint32_t mode : {onTop, onBottom, onBoth}) {
        for (const float ratio : ratios()) {
            for (const float thickness : {1.0f, 2.5f, 5.0f})
                expectRule(caseOf(deviceGrid, thickness, ratio, mode, device()));
            expectRule(caseOf({12, 8, 12, 1.0f, 1.0f, 0.35f}, 2.5f, ratio, mode, device()));
            expectRule(caseOf({12, 8, 12, 0.7f, 0.3f, 1.1f}, 2.5f, ratio, mode, device()));
        }
    }
}

TEST(AnisotropicFilmDepositionTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const std::uint32_t mode : {onTop, onBottom, onBoth}) {
        for (const Grid &grid : {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{9, 12, 1}, Grid{1, 1, 14},
                                 Grid{1, 14, 1}, Grid{14, 1, 1}, Grid{1, 9, 70}, Grid{2, 2, 2}}) {
            for (const std::uint32_t percent : {10U, 40U, 90U})
                expectRule({grid, randomMaterials(grid, percent, percent), {film, 3, 0.5f, mode}});
            // A volume of one layer has neither an above nor a below.
            if (grid.sizeZ == 1)
                expectUnchanged({grid, randomMaterials(grid, 5, 30), {film, 3, 0.5f, mode}});
        }
        for (const std::uint32_t material : {0U, solid})
            expectUnchanged({{1, 1, 1}, {material}, {film, 3, 0.5f, mode}});
    }
}

TEST(AnisotropicFilmDepositionTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const std::vector<Grid> cells = {
            {0, 0, 0}, {0, 0, 0, 1.0f, 1.0f, 0.35f}, {0, 0, 0, 0.3f, 0.7f, 0.1f}};
        Grid grid = cells[random() % cells.size()];
        grid.sizeX = 1 + random() % 12;
        grid.sizeY = 1 + random() % 12;
        grid.sizeZ = random() % 4 == 0 ? 60 + random() % 10 : 1 + random() % 14;
        const std::vector<std::uint32_t> percents = {1, 3, 10, 30, 60, 90, 98};
        const std::uint32_t percent = percents[random() % percents.size()];
        const float thickness = thicknesses()[random() % thicknesses().size()] * grid.cellSizeX;
        const float ratio = ratios()[random() % ratios().size()];
        const std::uint32_t material = 1 + random() % 6;
        const std::uint32_t mode = 1 + random() % 3;
        expectRule(
            {grid, randomMaterials(grid, seed, percent), {material, thickness, ratio, mode}});
    }
}

TEST(AnisotropicFilmDepositionTest, ThicknessZeroChangesNoMaterial)
{
    EXPECT_EQ(stepCountOf({4, 4, 4}, {film, 0.0f, 0.5f, onTop}), 0U);
    expectUnchanged(flatFloor({5, 4, 6}, 0.0f, 0.5f, 2));
    expectUnchanged({{6, 6, 6}, randomMaterials({6, 6, 6}, 3, 30), {film, 0.0f, 3.0f, onBoth}});
}

TEST(AnisotropicFilmDepositionTest, ThicknessBelowTheSmallestScaledCellDepositsNothing)
{
    expectUnchanged(trench(std::nextafter(1.0f, 0.0f), 1.0f));
    expectUnchanged(trench(std::nextafter(1.0f, 0.0f), 0.5f));
    expectUnchanged(trench(std::nextafter(0.25f, 0.0f), 4.0f));
    expectUnchanged(flatFloor({5, 4, 6, 1.0f, 1.0f, 0.35f}, 0.34f, 0.5f, 2));
    // Sideways alone.
    const Sample sample = deposited(trench(0.25f, 4.0f), 1);
    EXPECT_EQ(sample.at(leftWall + 1, 1, wallTop).material, film);
    EXPECT_EQ(sample.at(leftWall, 1, wallTop + 1).material, 0U);
}

TEST(AnisotropicFilmDepositionTest, ThicknessThatIsNegativeOrNotANumberDepositsNothing)
{
    for (const float thickness : {-0.5f, -10.0f, std::numeric_limits<float>::quiet_NaN()})
        expectUnchanged(flatFloor({5, 4, 6}, thickness, 0.5f, 2));
}

TEST(AnisotropicFilmDepositionTest, ThicknessBeyondTheVolumeFillsAllThatTheFrontGetsTo)
{
    // A wall of the height of the volume cuts off the other side, which has no source.
    const Case given = caseOf({8, 5, 6}, 100.0f, 0.5f, onTop, [](int x, int y, int z) {
        return x == 5 || (x == 1 && y == 2 && z == 3) ? solid : 0U;
    });
    expectMaterials(given, [&](int x, int y, int z) {
        const std::uint32_t before = given.materials[indexOf(given.grid, {x, y, z})];
        return before != 0 ? before : x < 5 ? film : 0U;
    });
}

TEST(AnisotropicFilmDepositionTest, EmptyAndFullVolumesAndMaterialZeroStayAsTheyAre)
{
    for (const std::uint32_t mode : {onTop, onBottom, onBoth}) {
        expectUnchanged(caseOf({6, 5, 7}, 5, 0.5f, mode, [](int, int, int) { return 0U; }));
        expectUnchanged({{6, 5, 7}, randomMaterials({6, 5, 7}, 5, 100), {film, 5, 1.0f, mode}});
        Case given = caseOf(deviceGrid, 2.5f, 1.0f, mode, device());
        given.process.material = 0;
        expectUnchanged(given);
    }
}

TEST(AnisotropicFilmDepositionTest, BothArraysAreEqualInEveryFieldAndKeepTheAtomsOfTheCells)
{
    for (const float thickness : {0.0f, 2.5f}) {
        const Case given = caseOf(deviceGrid, thickness, 0.5f, onTop, device());
        const auto base = given.base();
        ASSERT_FALSE(agree(base, nextLeftovers(base), leftovers(base), hasSameAtoms));
        ASSERT_FALSE(agree(base, nextLeftovers(base), ruleOf(given, 1).voxels(), hasSameFields));
        for (const int threads : {1, 2, 3, 4, 7}) {
            const Sample sample = deposited(given, threads);
            EXPECT_TRUE(agree(base, sample.nextVoxels(), sample.voxels(), hasSameFields));
            EXPECT_TRUE(agree(base, sample.voxels(), leftovers(base), hasSameAtoms));
            EXPECT_TRUE(sample.isInPlace());
        }
    }
}

TEST(AnisotropicFilmDepositionTest, ConstructionLeavesTheVolumeAlone)
{
    const Case given = flatFloor({5, 4, 6}, 3.0f, 0.5f, 2);
    Sample sample(given.base());
    // The arrays are taken again after it, or this would never return.
    sample.runWith(2, [&](TotalVolume &volume) {
        const AnisotropicFilmDeposition engine(&volume, film, 3.0f, 0.5f, onTop);
    });
    EXPECT_TRUE(agree(given.base(), sample.voxels(), leftovers(given.base()), hasSameFields));
    EXPECT_TRUE(
        agree(given.base(), sample.nextVoxels(), nextLeftovers(given.base()), hasSameFields));
}

TEST(AnisotropicFilmDepositionTest, StripsInAscendingOrderFollowTheRule)
{
    // The threads are counted at construction: those of the pool are fewer when it runs.
    const Case given = {{12, 7, 9}, randomMaterials({12, 7, 9}, 1, 8), {film, 3.0f, 1.0f, onTop}};
    ASSERT_FALSE(agree(given.base(), ruleOf(given, 1).voxels(), ruleOf(given, 4).voxels(),
                       hasSameMaterialAndFront));
    for (const int threads : {1, 2, 3, 4, 6, 7}) {
        expectRuleOfStrips(given, threads);
        expectRuleOfStrips(caseOf(deviceGrid, 3.3f, 1.7f, onTop, device()), threads);
        for (std::uint32_t seed = 1; seed <= 6; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {9 + seed, 6, 8, 1.0f, 0.5f, 0.35f};
            expectRuleOfStrips({grid,
                                randomMaterials(grid, seed, 5 * seed),
                                {film, 2.5f, seed % 2 == 0 ? 0.5f : 3.0f, 1 + seed % 3}},
                               threads);
        }
    }
}

TEST(AnisotropicFilmDepositionTest, FlatFloorGetsExactlyTenLayersFromAnyNumberOfStrips)
{
    const Case given = flatFloor({17, 6, 16}, 10.0f, 0.5f, 3);
    const Rule rule = ruleOf(given, 1);
    for (const int threads : {2, 3, 4, 8})
        expectAgrees(given, deposited(given, threads), rule);
}

TEST(AnisotropicFilmDepositionTest, StripsKeepWithinTheThicknessWhateverTheirOrder)
{
    for (const int threads : {2, 3, 4}) {
        for (const std::uint32_t mode : {onTop, onBottom, onBoth}) {
            expectGuarantees(caseOf(deviceGrid, 2.5f, 1.0f, mode, device()), threads);
            expectGuarantees(caseOf(deviceGrid, 1.0f, 2.0f, mode, device()), threads);
        }
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {std::uint32_t(8 * threads) + seed, 6, 8, 1.0f, 0.5f, 1.0f};
            expectGuarantees({grid,
                              randomMaterials(grid, seed, seed % 2 == 0 ? 5 : 30),
                              {film, 2.0f, seed % 2 == 0 ? 0.5f : 1.0f, onTop}},
                             threads);
        }
    }
}
