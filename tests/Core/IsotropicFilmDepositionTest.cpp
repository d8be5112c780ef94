#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"

#include "DistanceFrontRule.h"
#include "DistanceFrontRuns.h"

#include "Support/Volumes.h"

#include <QString>
#include <QThreadPool>
#include <QtGlobal>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <vector>

using namespace DistanceFrontRule;
using Support::Grid;

namespace {

/// The film of all tests that need but one.
constexpr std::uint32_t film = 7;

Process deposition(float thickness, std::uint32_t material = film)
{
    return {false, material, thickness};
}

Case flatFloor(const Grid &grid, float thickness, int floorLayers)
{
    return caseOf(grid, deposition(thickness),
                  [floorLayers](int, int, int z) { return z < floorLayers ? 2U : 0U; });
}

/// One cell of silicon at (x, y, z), and nothing else.
Case loneCell(const Grid &grid, float thickness, const Place &source)
{
    return caseOf(grid, deposition(thickness), [source](int x, int y, int z) {
        return x == source.x && y == source.y && z == source.z ? 1U : 0U;
    });
}

/// Expects the film of loneCell() in cells of one unit: the ball around it as far as the volume
/// goes, without what takes more steps from face to face than there are.
void expectBall(const Grid &grid, float thickness, const Place &source)
{
    const Case given = loneCell(grid, thickness, source);
    const int steps = int(stepCountOf(grid, given.process));
    for (const int threads : {1, int(grid.sizeX) / 2 + 1}) {
        Sample sample(given);
        sample.run(threads);
        const Materials expected = Support::materialsBy(grid, [&](int x, int y, int z) {
            const Place offset = Place{x, y, z} - source;
            const int faces = std::abs(offset.x) + std::abs(offset.y) + std::abs(offset.z);
            if (faces == 0)
                return 1U;
            const float squared =
                float(offset.x * offset.x + offset.y * offset.y + offset.z * offset.z);
            return squared <= thickness * thickness && faces <= steps ? film : 0U;
        });
        EXPECT_EQ(sample.materials(), expected) << given;
    }
}

void expectUnchanged(const Case &given)
{
    for (const int threads : {1, 2, int(given.grid.sizeX) / 2 + 1}) {
        Sample sample(given);
        sample.run(threads);
        EXPECT_EQ(sample.materials(), given.materials) << given;
        EXPECT_EQ(sample.nextMaterials(), given.materials) << given;
    }
    expectRule(given);
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
Support::MaterialRule sphere(int center, int radius)
{
    return [=](int x, int y, int z) {
        const int squared =
            (x - center) * (x - center) + (y - center) * (y - center) + (z - center) * (z - center);
        return squared <= radius * radius ? 3U : 0U;
    };
}
/// A block that stands free, and an edge and a corner seen from inside.
Support::MaterialRule cornersAndEdges()
{
    return [](int x, int y, int z) {
        const bool block = x >= 6 && x < 9 && y >= 6 && y < 10 && z >= 5 && z < 8;
        return block || x == 0 || y == 0 || z == 0 ? 1U : 0U;
    };
}
/// Walls of one cell with gaps of one cell in them, and cells that meet at edges only.
Support::MaterialRule thinWalls()
{
    return [](int x, int y, int z) {
        const bool wall = (x == 4 && (y != 5 || z != 5)) || (y == 8 && (x != 9 || z != 3));
        return wall || (x > 8 && y < 4 && x - 8 == z) ? 1U : 0U;
    };
}
/// A wall that the film leaves along x, from strip to strip.
Support::MaterialRule wallAcrossX(int wall)
{
    return [wall](int x, int y, int z) { return x == wall && (y + z) % 5 != 0 ? 1U : 0U; };
}

/// Single filled cells in so many rooms of `width` layers along x, as far from the walls of their
/// room as can be.
Support::MaterialRule islands(int width)
{
    return [width](int x, int y, int z) {
        return x % width == width / 2 && (y + 2 * z) % 3 == 0 ? 1U + std::uint32_t(y % 2) : 0U;
    };
}

const std::vector<float> &thicknesses()
{
    static const std::vector<float> values = {0.5f, 1.0f, 1.4142135f, 2.0f, 2.5f,
                                              3.0f, 3.3f, 5.0f,       7.25f};
    return values;
}

std::atomic<int> s_logLines = 0;
void countLogLine(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++s_logLines;
}

} // namespace

TEST(IsotropicFilmDepositionTest, FlatFloorGetsExactlyTenLayers)
{
    const Grid grid = {6, 5, 16};
    const Case given = flatFloor(grid, 10.0f, 3);
    for (const int threads : {1, 4}) {
        Sample sample(given);
        sample.run(threads);
        EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [](int, int, int z) {
                      return z < 3 ? 2U : z < 13 ? film : 0U;
                  }));
        for (int layer = 1; layer <= 10; ++layer) {
            const Cell &cell = sample.at(3, 2, 2 + layer);
            EXPECT_FALSE(cell.reached);
            EXPECT_EQ(cell.distance, (Vector{0.0f, 0.0f, -float(layer)}));
        }
        EXPECT_EQ(sample.at(3, 2, 13).distance, (Vector{10.0f, 10.0f, 10.0f}));
    }
    expectRule(given);
}

TEST(IsotropicFilmDepositionTest, TenUnitsOnThinCellsAreTwentyEightLayersInFortyNineSteps)
{
    const Grid grid = {5, 4, 36, 1.0f, 1.0f, 0.35f};
    const Case given = flatFloor(grid, 10.0f, 2);
    EXPECT_EQ(stepCountOf(grid, given.process), 49U);
    Sample sample(given);
    sample.run(1);
    EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [](int, int, int z) {
                  return z < 2 ? 2U : z < 30 ? film : 0U;
              }));
    expectRule(given);
    expectRule(caseOf({9, 8, 40, 1.0f, 1.0f, 0.35f}, deposition(10.0f), [](int x, int y, int z) {
        return z < 4 || (x == 4 && y == 4 && z < 12) ? 1U : 0U;
    }));
}

TEST(IsotropicFilmDepositionTest, LoneCellGrowsTheBallOfItsThickness)
{
    for (const float thickness : {1.0f, 1.5f, 2.0f, 2.5f, 3.0f, 3.3f, 4.0f, 5.0f, 6.0f})
        expectBall({15, 13, 14}, thickness, {7, 6, 7});
    expectRule(loneCell({13, 13, 13}, 5.0f, {6, 6, 6}));
}

TEST(IsotropicFilmDepositionTest, BallLacksTheCornerThatTakesOneStepMoreThanThereAre)
{
    // (15, 15, 15) is 25.98 units away, and 45 faces.
    const Grid grid = {28, 28, 28};
    ASSERT_EQ(stepCountOf(grid, deposition(26.0f)), 44U);
    expectBall(grid, 26.0f, {0, 0, 0});
    Sample sample(loneCell(grid, 26.0f, {0, 0, 0}));
    sample.run(1);
    EXPECT_EQ(sample.at(15, 15, 14).material, film);
    EXPECT_EQ(sample.at(15, 15, 15).material, 0U);
}

TEST(IsotropicFilmDepositionTest, CellAtExactlyTheThicknessIsFilled)
{
    const Grid grid = {7, 7, 7};
    Sample at(loneCell(grid, 5.0f, {0, 0, 0}));
    at.run(1);
    Sample below(loneCell(grid, std::nextafter(5.0f, 0.0f), {0, 0, 0}));
    below.run(1);
    for (const Place &place : {Place{5, 0, 0}, Place{0, 5, 0}, Place{0, 0, 5}, Place{3, 4, 0},
                               Place{0, 3, 4}, Place{4, 0, 3}}) {
        EXPECT_EQ(at.at(place.x, place.y, place.z).material, film);
        EXPECT_EQ(below.at(place.x, place.y, place.z).material, 0U);
    }
    EXPECT_EQ(below.at(2, 4, 2).material, film);
}

TEST(IsotropicFilmDepositionTest, FirstFaceInOrderStandsAmongEqualCandidates)
{
    const Grid grid = {3, 3, 3};
    const Place middle = {1, 1, 1};
    for (std::size_t first = 0; first < faceNeighbors.size(); ++first) {
        Materials materials(grid.cells(), 0);
        for (std::size_t k = first; k < faceNeighbors.size(); ++k)
            materials[indexOf(grid, middle + faceNeighbors[k])] = 1;
        Sample sample({grid, materials, deposition(1.0f)});
        sample.run(1);
        const Place &face = faceNeighbors[first];
        EXPECT_EQ(sample.at(1, 1, 1).material, film);
        EXPECT_EQ(sample.at(1, 1, 1).distance,
                  (Vector{float(face.x), float(face.y), float(face.z)}));
    }
}

TEST(IsotropicFilmDepositionTest, NearerSourceReplacesTheFirstOneInLaterSteps)
{
    // Two sources; the cells in between are handed from the far one to the near one.
    for (const float thickness : {4.0f, 8.0f, 12.0f}) {
        expectRule(
            caseOf({5, 14, 9, 1.0f, 0.5f, 2.0f}, deposition(thickness), [](int x, int y, int z) {
                const bool first = x == 0 && y == 1 && z == 2;
                const bool second = x == 4 && y == 11 && z == 5;
                return first || second ? 1U : 0U;
            }));
    }
}

TEST(IsotropicFilmDepositionTest, CornerContactAloneTakesNoCandidateInTheFirstStep)
{
    // A thickness of one unit has one step.
    Sample sample(loneCell({3, 3, 3}, 1.0f, {1, 1, 1}));
    sample.run(1);
    for (const Place &offset : mooreNeighbors) {
        const bool face = std::abs(offset.x) + std::abs(offset.y) + std::abs(offset.z) == 1;
        EXPECT_EQ(sample.at(1 + offset.x, 1 + offset.y, 1 + offset.z).material, face ? film : 0U);
    }
}

TEST(IsotropicFilmDepositionTest, EveryFilledCellIsASourceHoweverDeepItLies)
{
    const Grid grid = {7, 7, 9};
    const Case given = caseOf(grid, deposition(2.0f), [](int x, int, int z) {
        return z < 5 ? 1U + std::uint32_t(x) % 4 : 0U;
    });
    Sample sample(given);
    sample.run(1);
    for (int cell = 0; cell < int(grid.cells()); ++cell) {
        if (given.materials[cell] != 0) {
            EXPECT_TRUE(sample.voxels()[cell].reached);
            EXPECT_EQ(sample.voxels()[cell].distance, (Vector{0.0f, 0.0f, 0.0f}));
            EXPECT_EQ(sample.voxels()[cell].material, given.materials[cell]);
        }
    }
}

TEST(IsotropicFilmDepositionTest, ShapesFollowTheRule)
{
    for (const float thickness : thicknesses()) {
        SCOPED_TRACE(thickness);
        const Process process = deposition(thickness);
        expectRule(caseOf({14, 4, 14}, process, trench()));
        expectRule(caseOf({5, 10, 12}, process, trenchAcrossStrips()));
        expectRule(caseOf({15, 15, 15}, process, sphere(7, 3)));
        expectRule(caseOf({12, 13, 11}, process, cornersAndEdges()));
        expectRule(caseOf({12, 12, 10}, process, thinWalls()));
        expectRule(caseOf({9, 10, 10}, process, wallAcrossX(4)));
    }
}

TEST(IsotropicFilmDepositionTest, CellsOfThreeDifferentSizesFollowTheRule)
{
    for (const float thickness : {0.35f, 0.7f, 1.0f, 2.5f, 3.3f}) {
        SCOPED_TRACE(thickness);
        const Process process = deposition(thickness);
        expectRule(caseOf({9, 8, 12, 1.0f, 1.0f, 0.35f}, process, cornersAndEdges()));
        expectRule(caseOf({10, 12, 10, 0.7f, 0.3f, 1.1f}, process, thinWalls()));
        expectRule(caseOf({14, 4, 14, 0.1f, 2.0f, 0.3f}, process, trench()));
    }
}

TEST(IsotropicFilmDepositionTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const float thickness : {1.0f, 2.5f, 6.0f}) {
        for (const Grid &grid :
             {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{9, 12, 1}, Grid{1, 1, 14}, Grid{1, 14, 1},
              Grid{14, 1, 1}, Grid{1, 9, 70}, Grid{2, 1, 3}, Grid{2, 2, 2}}) {
            expectRule({grid, randomMaterials(grid, 11, 10), deposition(thickness)});
            expectRule(loneCell(grid, thickness, {0, 0, 0}));
        }
    }
    for (const std::uint32_t material : {0U, 1U}) {
        Sample sample({{1, 1, 1}, {material}, deposition(3.0f)});
        sample.run(1);
        EXPECT_EQ(sample.materials(), (Materials{material}));
    }
}

TEST(IsotropicFilmDepositionTest, VolumeOfOneLayerSkipsTheFacesAboveAndBelow)
{
    expectBall({9, 11, 1}, 3.0f, {4, 5, 0});
}

TEST(IsotropicFilmDepositionTest, TallVolumesFollowTheRule)
{
    for (const std::uint32_t sizeZ : {63U, 64U, 65U, 127U, 128U, 130U}) {
        for (const std::uint32_t percent : {0U, 2U, 60U}) {
            const Grid grid = {4, 5, sizeZ};
            Materials materials = randomMaterials(grid, sizeZ + percent, percent);
            // Single cells at both ends and at the lengths of machine words.
            for (const int z : {0, 31, 63, 64, 127, 128, int(sizeZ) - 1})
                if (z < int(sizeZ))
                    materials[indexOf(grid, {z % 4, z % 5, z})] = 3;
            expectRule({grid, materials, deposition(3.3f)});
            expectRule({grid, materials, deposition(20.0f)});
        }
    }
}

TEST(IsotropicFilmDepositionTest, RandomVolumesFollowTheRule)
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
        const std::uint32_t material = 1 + random() % 6;
        expectRule({grid, randomMaterials(grid, seed, percent), deposition(thickness, material)});
    }
}

TEST(IsotropicFilmDepositionTest, ThicknessZeroChangesNoCell)
{
    EXPECT_EQ(stepCountOf({4, 4, 4}, deposition(0.0f)), 0U);
    expectUnchanged(flatFloor({5, 4, 6}, 0.0f, 2));
    expectUnchanged({{6, 6, 6}, randomMaterials({6, 6, 6}, 3, 30), deposition(0.0f)});
}

TEST(IsotropicFilmDepositionTest, ThicknessBelowTheSmallestCellFillsNothing)
{
    expectUnchanged(flatFloor({5, 4, 6}, 0.99f, 2));
    expectUnchanged(flatFloor({5, 4, 6, 1.0f, 1.0f, 0.35f}, 0.34f, 2));
    expectUnchanged(flatFloor({5, 4, 6}, std::nextafter(1.0f, 0.0f), 2));
    expectUnchanged(flatFloor({5, 4, 6}, 1e-30f, 2));
}

TEST(IsotropicFilmDepositionTest, ThicknessOfOneCellFillsTheFacesAlongThatAxisOnly)
{
    const Grid grid = {5, 5, 5, 1.0f, 0.75f, 0.5f};
    Sample sample(loneCell(grid, 0.5f, {2, 2, 2}));
    sample.run(1);
    EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [](int x, int y, int z) {
                  if (x != 2 || y != 2 || std::abs(z - 2) > 1)
                      return 0U;
                  return z == 2 ? 1U : film;
              }));
}

TEST(IsotropicFilmDepositionTest, NegativeThicknessChangesNoCell)
{
    expectUnchanged(flatFloor({5, 4, 6}, -0.5f, 2));
    expectUnchanged(flatFloor({5, 4, 6}, -10.0f, 2));
}

TEST(IsotropicFilmDepositionTest, ThicknessThatIsNotANumberChangesNoCell)
{
    expectUnchanged(flatFloor({5, 4, 6}, std::numeric_limits<float>::quiet_NaN(), 2));
}

TEST(IsotropicFilmDepositionTest, SquaresOutsideTheRangeOfAFloatFollowTheRule)
{
    // Too large to be compared, or too small to differ.
    expectUnchanged(flatFloor({4, 3, 9, 1e20f, 1e20f, 1e20f}, 5e20f, 2));
    expectUnchanged(flatFloor({4, 3, 9, 1e-25f, 1e-25f, 1e-25f}, 5e-25f, 2));
    expectRule(flatFloor({4, 3, 9, 1e-21f, 1e-21f, 1e-21f}, 5e-21f, 2));
}

TEST(IsotropicFilmDepositionTest, ThicknessBeyondTheVolumeFillsAllOfIt)
{
    const Grid grid = {6, 5, 4};
    const Case given = loneCell(grid, 100.0f, {4, 0, 2});
    Sample sample(given);
    sample.run(1);
    EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [](int x, int y, int z) {
                  return x == 4 && y == 0 && z == 2 ? 1U : film;
              }));
    expectRule(given);
}

TEST(IsotropicFilmDepositionTest, EmptyVolumeStaysEmpty)
{
    expectUnchanged(caseOf({6, 5, 7}, deposition(5.0f), [](int, int, int) { return 0U; }));
}

TEST(IsotropicFilmDepositionTest, FullVolumeStaysAsItIs)
{
    expectUnchanged({{6, 5, 7}, randomMaterials({6, 5, 7}, 5, 100), deposition(5.0f)});
}

TEST(IsotropicFilmDepositionTest, FilmStopsAtTheBordersOfTheVolume)
{
    // At corners, edges and sides; the next cell in the arrays lies at the opposite side.
    const Grid grid = {9, 8, 10};
    for (const int x : {0, 4, 8})
        for (const int y : {0, 4, 7})
            for (const int z : {0, 5, 9})
                expectBall(grid, 3.0f, {x, y, z});
}

TEST(IsotropicFilmDepositionTest, DepositedMaterialZeroLeavesEveryCellAsItIs)
{
    Case given = flatFloor({5, 4, 9}, 4.0f, 2);
    given.process.material = 0;
    expectUnchanged(given);
    expectUnchanged({{7, 7, 7}, randomMaterials({7, 7, 7}, 9, 10), deposition(3.0f, 0)});
}

TEST(IsotropicFilmDepositionTest, FilmGrowsAlikeOnEveryMaterialAndReplacesNone)
{
    const Grid grid = {8, 4, 9};
    const Case given = caseOf(grid, deposition(3.0f, 4), [](int x, int, int z) {
        return z < 3 ? std::vector<std::uint32_t>{1, 4, 0xFFFFFFFF, 9}[x % 4] : 0U;
    });
    Sample sample(given);
    sample.run(1);
    EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [&](int x, int y, int z) {
                  return z < 3 ? given.materials[indexOf(grid, {x, y, z})] : z < 6 ? 4U : 0U;
              }));
    expectRule(given);
}

TEST(IsotropicFilmDepositionTest, SecondFilmLiesOnTheFirst)
{
    const Grid grid = {5, 4, 12};
    const auto volume = Support::makeVolume(grid, flatFloor(grid, 0.0f, 2).materials);
    for (const std::uint32_t material : {5U, 6U}) {
        Core::Operations::IsotropicFilmDeposition engine(volume.get(), material, 3.0f);
        engine.runDeposition();
    }
    const Materials expected = Support::materialsBy(grid, [](int, int, int z) {
        return z < 2 ? 2U : z < 5 ? 5U : z < 8 ? 6U : 0U;
    });
    EXPECT_EQ(Support::materialsOf(*volume), expected);
    EXPECT_EQ(Support::nextMaterialsOf(*volume), expected);
}

TEST(IsotropicFilmDepositionTest, WorkingBufferHoldsTheSameFronts)
{
    for (const std::uint32_t percent : {5U, 40U}) {
        const Grid grid = {9, 8, 10};
        const Case given = {grid, randomMaterials(grid, 21, percent), deposition(2.5f)};
        const Rule rule = ruleOf(given, stripsOf(grid, 1));
        for (const int threads : {1, 5}) {
            Sample sample(given);
            sample.run(threads);
            EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameFront));
        }
    }
}

TEST(IsotropicFilmDepositionTest, VisitedCellsTakeTheAtomsOfTheWorkingBuffer)
{
    const Grid grid = {8, 7, 12};
    for (const Case &given :
         {flatFloor(grid, 3.0f, 2), Case{grid, randomMaterials(grid, 31, 5), deposition(3.0f)}}) {
        const Rule rule = ruleOf(given, stripsOf(grid, 1));
        for (const int threads : {1, 5}) {
            Sample sample(given);
            sample.run(threads);
            EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameAtoms));
            EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameAtoms));
        }
    }
}

TEST(IsotropicFilmDepositionTest, ConstructionLeavesTheVolumeAlone)
{
    const Case given = flatFloor({5, 4, 6}, 3.0f, 2);
    const auto volume = Support::makeVolume(given.grid, given.materials);
    const std::size_t count = given.grid.cells();
    write(volume->voxels(), leftovers(given));
    volume->releaseVoxels();
    write(volume->nextVoxels(), nextLeftovers(given));
    volume->releaseNextVoxels();
    {
        const Core::Operations::IsotropicFilmDeposition engine(volume.get(), film, 3.0f);
        // Taken here, or this would never return.
        const Cells voxels = read(volume->voxels(), count);
        const Cells nextVoxels = read(volume->nextVoxels(), count);
        volume->releaseVoxels();
        volume->releaseNextVoxels();
        EXPECT_TRUE(agree(given, voxels, leftovers(given), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given, nextVoxels, nextLeftovers(given), hasSameMaterialAndFront));
    }
    EXPECT_EQ(Support::materialsOf(*volume), given.materials);
}

TEST(IsotropicFilmDepositionTest, ArraysKeepTheirNames)
{
    // Ten units take an odd number of steps, six an even one.
    for (const float thickness : {6.0f, 10.0f}) {
        for (const int threads : {1, 2, 3, 4, 20}) {
            Sample sample(flatFloor({8, 3, 12}, thickness, 1));
            sample.run(threads);
            EXPECT_TRUE(sample.isInPlace());
        }
    }
}

TEST(IsotropicFilmDepositionTest, RunWritesNothingToTheLog)
{
    for (const int threads : {1, 4, 8}) {
        Sample sample(flatFloor({8, 3, 9}, 4.0f, 2));
        s_logLines = 0;
        const QtMessageHandler before = qInstallMessageHandler(countLogLine);
        sample.run(threads);
        qInstallMessageHandler(before);
        EXPECT_EQ(s_logLines, 0);
    }
}

TEST(IsotropicFilmDepositionTest, FewerThanTwoLayersAThreadAreOneStrip)
{
    for (const int threads : {2, 3, 4, 8}) {
        for (const std::uint32_t sizeX : {1U, 2U, std::uint32_t(2 * threads - 1)}) {
            const Grid grid = {sizeX, 9, 10};
            const Case given = {grid, randomMaterials(grid, sizeX, 8), deposition(3.3f)};
            const Rule rule = ruleOf(given, {{0, int(grid.sizeX)}});
            Sample sample(given);
            sample.run(threads);
            EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront))
                << threads << " threads";
        }
    }
}

TEST(IsotropicFilmDepositionTest, OneThreadIsOneStripOverAllLayers)
{
    for (const std::uint32_t sizeX : {1U, 2U, 3U, 20U}) {
        const Case given = caseOf({sizeX, 8, 9}, deposition(4.0f), wallAcrossX(1));
        const Rule rule = ruleOf(given, {{0, int(sizeX)}});
        Sample sample(given);
        sample.run(1);
        EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
    }
}

TEST(IsotropicFilmDepositionTest, StripsInAscendingOrderFollowTheRuleOfStrips)
{
    for (const int threads : {2, 3, 4}) {
        for (const float thickness : {1.0f, 2.5f, 4.0f, 6.0f}) {
            const Process process = deposition(thickness);
            expectRuleOfStrips(caseOf({14, 4, 14}, process, trench()), threads);
            expectRuleOfStrips(caseOf({13, 10, 12}, process, trenchAcrossStrips()), threads);
            expectRuleOfStrips(caseOf({11, 11, 11}, process, sphere(5, 2)), threads);
            expectRuleOfStrips(caseOf({17, 8, 8}, process, wallAcrossX(7)), threads);
            expectRuleOfStrips(caseOf({9, 6, 8, 1.0f, 1.0f, 0.35f}, process, wallAcrossX(3)),
                               threads);
        }
    }
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Grid grid = {8 + seed, 7, seed % 3 == 0 ? 66U : 9U};
        const Materials materials = randomMaterials(grid, seed, seed % 2 == 0 ? 2 : 15);
        for (const int threads : {2, 3, 4})
            expectRuleOfStrips({grid, materials, deposition(3.3f)}, threads);
    }
}

TEST(IsotropicFilmDepositionTest, ThreadsAreCountedAtConstruction)
{
    // Cells that are handed on a step late get another of two sources that are as near.
    const Grid grid = {12, 7, 9};
    const Case given = {grid, randomMaterials(grid, 1, 5), deposition(3.0f)};
    const Rule one = ruleOf(given, stripsOf(grid, 1));
    const Rule four = ruleOf(given, stripsOf(grid, 4));
    ASSERT_FALSE(agree(given, one.voxels(), four.voxels(), hasSameMaterialAndFront));
    {
        std::optional<BusyPool> pool;
        Sample sample(given);
        sample.run(4, [&] { pool.emplace(); });
        EXPECT_TRUE(agree(given, sample.voxels(), four.voxels(), hasSameMaterialAndFront));
    }
    {
        Sample sample(given);
        sample.run(1, [] { QThreadPool::globalInstance()->setMaxThreadCount(4); });
        EXPECT_TRUE(agree(given, sample.voxels(), one.voxels(), hasSameMaterialAndFront));
    }
}

TEST(IsotropicFilmDepositionTest, FlatFloorGetsExactlyTenLayersFromAnyNumberOfStrips)
{
    // A column of a strip needs nothing of its neighbors, and nothing of theirs is nearer.
    const Case given = flatFloor({17, 6, 16}, 10.0f, 3);
    const Rule rule = ruleOf(given, stripsOf(given.grid, 1));
    for (const int threads : {2, 3, 4, 8}) {
        Sample sample(given);
        sample.run(threads);
        EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
    }
}

TEST(IsotropicFilmDepositionTest, FilmThatKeepsOffTheBordersOfStripsIsThatOfOneStrip)
{
    // Rooms of nine layers, as the strips are; the last cells of a film of three are one layer away
    // from their ends.
    for (const int threads : {2, 3, 4}) {
        const Grid grid = {std::uint32_t(9 * threads), 8, 9};
        for (const float thickness : {1.0f, 2.5f, 3.0f}) {
            const Case given = caseOf(grid, deposition(thickness), islands(9));
            const Rule rule = ruleOf(given, stripsOf(grid, 1));
            Sample sample(given);
            sample.run(threads);
            EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
            EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
        }
    }
}

TEST(IsotropicFilmDepositionTest, CellsThatNoNewsOfAStripBorderReachAreThoseOfOneStrip)
{
    // Two units take three steps, so each strip of ten layers has four of them at least.
    for (const int threads : {2, 3, 4}) {
        const Grid grid = {std::uint32_t(10 * threads), 6, 7};
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << threads << " threads");
            const Case given = {grid, randomMaterials(grid, seed, 4), deposition(2.0f)};
            const Guarantees guarantees(given, threads);
            const Rule rule = ruleOf(given, stripsOf(grid, 1));
            Sample sample(given);
            sample.run(threads);
            int compared = 0;
            for (int cell = 0; cell < int(grid.cells()); ++cell) {
                if (guarantees.isBeyondNews(cell)) {
                    ++compared;
                    EXPECT_TRUE(
                        hasSameMaterialAndFront(sample.voxels()[cell], rule.voxels()[cell]));
                }
            }
            EXPECT_GE(compared, 4 * threads * 6 * 7);
        }
    }
}

TEST(IsotropicFilmDepositionTest, StripsKeepWithinTheThicknessOnShapes)
{
    for (const int threads : {2, 3, 4}) {
        for (const float thickness : {1.0f, 2.5f, 4.0f}) {
            const Process process = deposition(thickness);
            expectGuarantees(caseOf({14, 4, 14}, process, trench()), threads);
            expectGuarantees(caseOf({13, 10, 10}, process, trenchAcrossStrips()), threads);
            expectGuarantees(caseOf({11, 11, 11}, process, sphere(5, 2)), threads);
            expectGuarantees(caseOf({12, 12, 10}, process, thinWalls()), threads);
            expectGuarantees(caseOf({17, 8, 8}, process, wallAcrossX(7)), threads);
        }
    }
}

TEST(IsotropicFilmDepositionTest, StripsKeepWithinTheThicknessOnRandomVolumes)
{
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Grid grid = {8 + seed, 7, seed % 3 == 0 ? 66U : 9U, 1.0f, 0.5f, 1.0f};
        const Materials materials = randomMaterials(grid, seed, seed % 2 == 0 ? 2 : 15);
        for (const int threads : {2, 3, 4})
            expectGuarantees({grid, materials, deposition(2.5f)}, threads);
    }
}

TEST(IsotropicFilmDepositionTest, NarrowestStripsKeepWithinTheThickness)
{
    // Every layer of a strip is next to another strip.
    for (const int threads : {2, 3, 4}) {
        const Grid grid = {std::uint32_t(2 * threads), 12, 12};
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            expectGuarantees({grid, randomMaterials(grid, seed, 3), deposition(3.0f)}, threads);
        }
        expectGuarantees(flatFloor(grid, 5.0f, 2), threads);
    }
}
