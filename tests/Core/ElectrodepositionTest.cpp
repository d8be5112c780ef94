#include "Core/Operations/Electrodeposition/Electrodeposition.h"

#include "DistanceFrontRuns.h"
#include "ElectrodepositionRule.h"
#include "ElectrodepositionRuns.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

using namespace ElectrodepositionRule;
using DistanceFrontRule::hasSameAtoms;
using DistanceFrontRule::hasSameFields;
using DistanceFrontRule::hasSameFront;
using DistanceFrontRule::randomMaterials;
using Support::Grid;

namespace {

constexpr std::uint32_t film = 7;
constexpr std::uint32_t conductor = 2;
/// Filled, but not conducting.
constexpr std::uint32_t mask = 5;

Case caseOf(const Grid &grid, float thickness, const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), {film, conductor, thickness}};
}

Case flatFloor(const Grid &grid, float thickness, int floorLayers)
{
    return caseOf(grid, thickness,
                  [floorLayers](int, int, int z) { return z < floorLayers ? conductor : 0U; });
}

/// One conducting cell, and nothing else.
Case loneCell(const Grid &grid, float thickness, const Place &source)
{
    return caseOf(grid, thickness, [source](int x, int y, int z) {
        return x == source.x && y == source.y && z == source.z ? conductor : 0U;
    });
}

/// Expects these materials in both arrays, and all else by the rule.
void expectMaterials(const Case &given, const Materials &expected)
{
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
        const Sample sample = plated(given, threads);
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
        const Sample sample = plated(given, threads);
        EXPECT_EQ(sample.materials(), given.materials) << given;
        EXPECT_EQ(sample.nextMaterials(), given.materials) << given;
    }
    expectMaterials(given, given.materials);
}

/// Expects the film of loneCell() in cells of one unit: the ball around it as far as the volume
/// goes.
void expectBall(const Grid &grid, float thickness, const Place &source)
{
    expectMaterials(loneCell(grid, thickness, source), [=](int x, int y, int z) {
        const Place offset = Place{x, y, z} - source;
        const int squared = offset.x * offset.x + offset.y * offset.y + offset.z * offset.z;
        if (squared == 0)
            return conductor;
        return float(squared) <= thickness * thickness ? film : 0U;
    });
}

/// Random cells of four materials, a half of the filled ones conducting.
Case randomCase(const Grid &grid, std::uint32_t seed, std::uint32_t percent, float thickness)
{
    return {grid, randomMaterials(grid, seed, percent), {film, 1, thickness}};
}

/// A pad under a roof of the mask: the film comes out at both ends and back over the roof.
Case padUnderARoof(float thickness)
{
    return caseOf({13, 1, 8}, thickness, [](int x, int, int z) {
        if (x == 6 && z == 1)
            return conductor;
        return z == 0 || (z == 3 && x >= 5 && x <= 7) ? mask : 0U;
    });
}

/// A conducting floor with a sheet of the mask on it and one above, a pillar of either material.
Support::MaterialRule maskedDevice()
{
    return [](int x, int y, int z) {
        const bool sheet = z == 2 && x >= 3 && x < 8 && y >= 2 && y < 7;
        const bool roof = z == 5 && x >= 5 && x < 10 && y < 6;
        const bool pillar = x == 1 && y == 1 && z < 6;
        return z < 2 || pillar ? conductor : sheet || roof ? mask : 0U;
    };
}

const std::vector<float> &thicknesses()
{
    static const std::vector<float> values = {0.5f, 1.0f, 1.4142135f, 2.0f, 2.5f,
                                              3.0f, 3.3f, 5.0f,       7.25f};
    return values;
}

} // namespace

TEST(ElectrodepositionTest, FlatFloorGetsExactlyTenLayers)
{
    const Case given = flatFloor({6, 5, 16}, 10.0f, 3);
    expectMaterials(given, [](int, int, int z) { return z < 3 ? conductor : z < 13 ? film : 0U; });
    const Sample sample = plated(given, 1);
    for (int layer = 1; layer <= 10; ++layer) {
        EXPECT_FALSE(sample.at(3, 2, 2 + layer).reached);
        EXPECT_EQ(sample.at(3, 2, 2 + layer).distance, (Vector{0.0f, 0.0f, float(layer)}));
    }
    EXPECT_EQ(sample.at(3, 2, 13).distance, (Vector{10.0f, 10.0f, 10.0f}));
}

TEST(ElectrodepositionTest, TenUnitsOnThinCellsAreTwentyEightLayersInFortyNineSteps)
{
    const Case given = flatFloor({4, 3, 34, 1.0f, 1.0f, 0.35f}, 10.0f, 2);
    EXPECT_EQ(stepCountOf(given.grid, given.process), 49U);
    expectMaterials(given, [](int, int, int z) { return z < 2 ? conductor : z < 30 ? film : 0U; });
}

TEST(ElectrodepositionTest, LoneConductingCellGrowsTheBallOfItsThickness)
{
    for (const float thickness : {1.0f, 1.5f, 2.5f, 3.0f, 5.0f})
        expectBall({13, 12, 13}, thickness, {6, 5, 6});
}

TEST(ElectrodepositionTest, FilmStopsAtTheBordersOfTheVolume)
{
    for (const int x : {0, 8})
        for (const int y : {0, 4, 7})
            for (const int z : {0, 9})
                expectBall({9, 8, 10}, 3.0f, {x, y, z});
}

TEST(ElectrodepositionTest, VectorsAddUpWithoutSignOnEverySideOfTheSource)
{
    const Sample sample = plated(loneCell({5, 5, 5, 1.0f, 0.5f, 0.25f}, 1.5f, {2, 2, 2}), 1);
    for (const Place &offset : mooreNeighbors) {
        const Cell &cell = sample.at(2 + offset.x, 2 + offset.y, 2 + offset.z);
        EXPECT_EQ(cell.material, film);
        EXPECT_EQ(cell.distance,
                  (Vector{float(std::abs(offset.x)), 0.5f * float(std::abs(offset.y)),
                          0.25f * float(std::abs(offset.z))}));
    }
}

TEST(ElectrodepositionTest, WayBackOverAnObstacleCountsAsFarAsTheWayOut)
{
    // With signs the middle of the roof would be three units from the pad, straight below it.
    const Case given = padUnderARoof(4.0f);
    const Sample sample = plated(given, 1);
    const Rule withSigns = ruleOf(given, 1, Steps::Signed);
    for (const int x : {5, 7}) {
        ASSERT_EQ(withSigns.voxels()[indexOf(given.grid, {x, 0, 4})].material, film);
        EXPECT_EQ(sample.at(x, 0, 4).material, 0U);
        EXPECT_EQ(sample.at(x, 0, 4).distance, (Vector{4.0f, 4.0f, 4.0f}));
    }
    for (const int x : {4, 8}) {
        EXPECT_EQ(sample.at(x, 0, 4).material, film);
        EXPECT_EQ(sample.at(x, 0, 4).distance, (Vector{2.0f, 0.0f, 3.0f}));
    }
    expectRule(given);
}

TEST(ElectrodepositionTest, FilmMeetsOverTheRoofWhereTheWholeWayIsTheThickness)
{
    // Two out, three up, two back: 4 * 4 + 3 * 3.
    const Sample at = plated(padUnderARoof(5.0f), 1);
    const Sample below = plated(padUnderARoof(std::nextafter(5.0f, 0.0f)), 1);
    EXPECT_EQ(at.at(6, 0, 4).material, film);
    EXPECT_EQ(at.at(6, 0, 4).distance, (Vector{4.0f, 0.0f, 3.0f}));
    EXPECT_EQ(below.at(6, 0, 4).material, 0U);
    EXPECT_EQ(below.at(5, 0, 4).material, film);
    for (const float thickness : thicknesses())
        expectRule(padUnderARoof(thickness));
}

TEST(ElectrodepositionTest, FirstFaceInOrderStandsAmongEqualCandidates)
{
    // Of two faces of the same row length the vectors are equal; of two axes the first is taken.
    for (std::size_t first = 0; first < faceNeighbors.size(); ++first) {
        Materials materials(27, 0);
        for (std::size_t k = first; k < faceNeighbors.size(); ++k)
            materials[indexOf({3, 3, 3}, Place{1, 1, 1} + faceNeighbors[k])] = conductor;
        const Case given = {{3, 3, 3}, materials, {film, conductor, 1.0f}};
        const Place &face = faceNeighbors[first];
        EXPECT_EQ(
            plated(given, 1).at(1, 1, 1).distance,
            (Vector{float(std::abs(face.x)), float(std::abs(face.y)), float(std::abs(face.z))}));
        expectRule(given);
    }
}

TEST(ElectrodepositionTest, CellsHoldWhatTheyAreToTheFrontWhenTheRunBegins)
{
    // Without a step nothing else can have written them.
    const Case given = caseOf({4, 3, 5}, 0.0f, maskedDevice());
    const Sample none = plated(given, 1);
    for (std::size_t i = 0; i < given.materials.size(); ++i)
        EXPECT_EQ(none.voxels()[i].reached, given.materials[i] != 0);
    const Vector far = {0.5f, 0.5f, 0.5f};
    const Case thin = caseOf({10, 8, 9}, 0.5f, maskedDevice());
    const Sample sample = plated(thin, 1);
    for (const Cells *cells : {&sample.voxels(), &sample.nextVoxels()}) {
        for (std::size_t i = 0; i < thin.materials.size(); ++i) {
            const bool conducts = thin.materials[i] == conductor;
            EXPECT_EQ((*cells)[i].reached, thin.materials[i] != 0);
            EXPECT_EQ((*cells)[i].distance, conducts ? (Vector{0.0f, 0.0f, 0.0f}) : far);
        }
    }
}

TEST(ElectrodepositionTest, OtherMaterialsNeitherStartTheFilmNorCarryIt)
{
    // The conductor under the mask is two units from there, the open one the root of 29.
    const Case covered = caseOf({9, 4, 10}, 5.0f, [](int x, int, int z) {
        return z < 2 ? conductor : z == 2 && x < 5 ? mask : 0U;
    });
    const Sample sample = plated(covered, 1);
    EXPECT_EQ(sample.at(0, 2, 3).material, 0U);
    EXPECT_EQ(sample.at(0, 2, 2).material, mask);
    EXPECT_TRUE(sample.at(0, 2, 2).reached);
    EXPECT_EQ(sample.at(0, 2, 2).distance, (Vector{5.0f, 5.0f, 5.0f}));
    expectRule(covered);
    expectUnchanged(caseOf({6, 5, 9}, 6.0f, [](int, int, int z) {
        return z < 2 ? conductor : z == 2 ? mask : 0U;
    }));
}

TEST(ElectrodepositionTest, FilmWrapsOverAMaskOnTheConductorThroughTheVoidBesideIt)
{
    for (const float thickness : {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 5.5f}) {
        const auto isMask = [](int x, int z) { return x >= 5 && x <= 11 && (z == 2 || z == 3); };
        const Case given = caseOf({17, 3, 10}, thickness, [=](int x, int, int z) {
            return z < 2 ? conductor : isMask(x, z) ? mask : 0U;
        });
        // The nearest conductor that is not below the mask is at its left or right end.
        expectMaterials(given, [=](int x, int, int z) {
            if (z < 2 || isMask(x, z))
                return z < 2 ? conductor : mask;
            const int aside = std::max(0, std::min(x - 4, 12 - x));
            const int squared = aside * aside + (z - 1) * (z - 1);
            return float(squared) <= thickness * thickness ? film : 0U;
        });
    }
}

TEST(ElectrodepositionTest, MaskOverAGapOfVoidIsPlatedUnderFromItsEnds)
{
    for (const float thickness : thicknesses())
        expectRule(caseOf({11, 9, 10}, thickness, maskedDevice()));
}

TEST(ElectrodepositionTest, AbsentConductingMaterialDepositsNothing)
{
    expectUnchanged(caseOf({6, 5, 8}, 5.0f, [](int, int, int z) { return z < 3 ? mask : 0U; }));
    expectUnchanged(caseOf({6, 5, 8}, 5.0f, [](int, int, int) { return 0U; }));
    expectUnchanged({{7, 6, 8}, randomMaterials({7, 6, 8}, 3, 20), {film, 9, 5.0f}});
}

TEST(ElectrodepositionTest, FirstStepVisitsEveryVoidCellWithANeighborThatDoesNotConduct)
{
    // A step leaves the atoms of the working buffer in what it visits. The thickness of one half
    // has one step, and no cell takes a candidate in it.
    for (const std::uint32_t conducting : {1U, conductor, 9U}) {
        const Grid grid = {7, 6, 8};
        const Case given = {grid, randomMaterials(grid, 13, 70), {film, conducting, 0.5f}};
        const Cells before = leftovers(given.base());
        const Cells nextBefore = nextLeftovers(given.base());
        for (const int threads : {1, 4}) {
            const Sample sample = plated(given, threads);
            for (int cell = 0; cell < int(grid.cells()); ++cell) {
                bool visited = false;
                for (const Place &offset : mooreNeighbors) {
                    const Place other = placeOf(grid, cell) + offset;
                    if (given.materials[cell] == 0 && isInside(grid, other))
                        visited |= given.materials[indexOf(grid, other)] != conducting;
                }
                EXPECT_EQ(sample.voxels()[cell].atoms, (visited ? nextBefore : before)[cell].atoms);
                EXPECT_EQ(sample.nextVoxels()[cell].atoms, nextBefore[cell].atoms);
            }
        }
    }
}

TEST(ElectrodepositionTest, VoidAmongConductingNeighborsAloneIsNeverPlated)
{
    // A pore of one cell stays, one of two is filled.
    const Case pores = caseOf({9, 5, 5}, 4.0f, [](int x, int y, int z) {
        return y == 2 && z == 2 && (x == 2 || x == 5 || x == 6) ? 0U : conductor;
    });
    expectMaterials(pores, [](int x, int y, int z) {
        const bool isPore = y == 2 && z == 2 && (x == 2 || x == 5 || x == 6);
        return isPore ? (x == 2 ? 0U : film) : conductor;
    });
    expectUnchanged({{2, 1, 1}, {conductor, 0}, {film, conductor, 4.0f}});
    expectUnchanged({{1, 1, 3}, {0, conductor, 0}, {film, conductor, 4.0f}});
    expectMaterials({{1, 1, 4}, {0, conductor, 0, 0}, {film, conductor, 4.0f}},
                    Materials{0, conductor, film, film});
    // Beside a conductor, and the corner of another material.
    Materials corner(27, conductor);
    corner[13] = 0;
    expectUnchanged({{3, 3, 3}, corner, {film, conductor, 2.0f}});
    corner[26] = mask;
    Materials filled = corner;
    filled[13] = film;
    expectMaterials({{3, 3, 3}, corner, {film, conductor, 2.0f}}, filled);
}

TEST(ElectrodepositionTest, DepositedMaterialThatConductsGivesTheSameFilm)
{
    for (const Case &other : {caseOf({11, 9, 10}, 3.3f, maskedDevice()),
                              flatFloor({5, 4, 9}, 4.0f, 2), padUnderARoof(5.0f)}) {
        Case given = other;
        given.process.material = conductor;
        expectRule(given);
        const Sample sample = plated(given, 1);
        Cells expected = plated(other, 1).voxels();
        for (Cell &cell : expected) {
            if (cell.material == film)
                cell.material = conductor;
        }
        EXPECT_TRUE(agree(given.base(), sample.voxels(), expected, hasSameMaterialAndFront));
    }
}

TEST(ElectrodepositionTest, ConductingMaterialZeroDepositsNothing)
{
    for (const int threads : {1, 3, 5}) {
        const Grid grid = {8, 5, 9};
        for (const std::uint32_t percent : {0U, 20U, 80U, 100U}) {
            const Case given = {grid, randomMaterials(grid, 17, percent), {film, 0, 4.0f}};
            const Sample sample = plated(given, threads);
            EXPECT_EQ(sample.materials(), given.materials);
            EXPECT_EQ(sample.nextMaterials(), given.materials);
        }
    }
}

TEST(ElectrodepositionTest, DepositedMaterialZeroLeavesEveryCellAsItIs)
{
    Case given = caseOf({11, 9, 10}, 3.0f, maskedDevice());
    given.process.material = 0;
    expectUnchanged(given);
}

TEST(ElectrodepositionTest, ThicknessZeroChangesNoCell)
{
    EXPECT_EQ(stepCountOf({4, 4, 4}, {film, conductor, 0.0f}), 0U);
    expectUnchanged(flatFloor({5, 4, 6}, 0.0f, 2));
    expectUnchanged(randomCase({6, 6, 6}, 3, 30, 0.0f));
}

TEST(ElectrodepositionTest, ThicknessBelowTheSmallestCellDepositsNothing)
{
    expectUnchanged(flatFloor({5, 4, 6}, std::nextafter(1.0f, 0.0f), 2));
    expectUnchanged(flatFloor({5, 4, 6, 1.0f, 1.0f, 0.35f}, 0.34f, 2));
    expectUnchanged(flatFloor({5, 4, 6}, 1e-30f, 2));
}

TEST(ElectrodepositionTest, ThicknessThatIsNegativeOrNotANumberDepositsNothing)
{
    for (const float thickness : {-0.5f, -10.0f, std::numeric_limits<float>::quiet_NaN()})
        expectUnchanged(flatFloor({5, 4, 6}, thickness, 2));
}

TEST(ElectrodepositionTest, ThicknessBeyondTheVolumeFillsAllThatTheFrontGetsTo)
{
    const Case given = caseOf({8, 5, 6}, 100.0f, [](int x, int y, int z) {
        if (x == 1 && y == 2 && z == 3)
            return conductor;
        return x == 5 ? mask : 0U;
    });
    expectMaterials(given, [&](int x, int y, int z) {
        const std::uint32_t before = given.materials[indexOf(given.grid, {x, y, z})];
        return before != 0 ? before : x < 5 ? film : 0U;
    });
}

TEST(ElectrodepositionTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const float thickness : {1.0f, 2.5f, 6.0f}) {
        for (const Grid &grid : {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{9, 12, 1}, Grid{1, 1, 14},
                                 Grid{1, 14, 1}, Grid{14, 1, 1}, Grid{1, 9, 70}, Grid{2, 2, 2}}) {
            for (const std::uint32_t percent : {10U, 40U, 90U})
                expectRule(randomCase(grid, percent, percent, thickness));
            expectRule(loneCell(grid, thickness, {0, 0, 0}));
        }
    }
    for (const std::uint32_t material : {0U, conductor, mask})
        expectUnchanged({{1, 1, 1}, {material}, {film, conductor, 3.0f}});
}

TEST(ElectrodepositionTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 120; ++seed) {
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
        const std::uint32_t conducting = 1 + random() % 4;
        expectRule({grid, randomMaterials(grid, seed, percent), {material, conducting, thickness}});
    }
}

TEST(ElectrodepositionTest, WorkingBufferHoldsTheSameFrontsAndAtoms)
{
    for (const std::uint32_t percent : {5U, 40U}) {
        const Case given = randomCase({9, 8, 10}, 21, percent, 2.5f);
        const Rule rule = ruleOf(given, 1);
        for (const int threads : {1, 5}) {
            const Sample sample = plated(given, threads);
            const auto base = given.base();
            EXPECT_TRUE(agree(base, sample.nextVoxels(), rule.nextVoxels(), hasSameFront));
            EXPECT_TRUE(agree(base, sample.nextVoxels(), rule.nextVoxels(), hasSameAtoms));
            EXPECT_TRUE(agree(base, sample.voxels(), rule.voxels(), hasSameAtoms));
        }
    }
}

TEST(ElectrodepositionTest, ConstructionLeavesTheVolumeAlone)
{
    const Case given = flatFloor({5, 4, 6}, 3.0f, 2);
    Sample sample(given.base());
    // The arrays are taken again after it, or this would never return.
    sample.runWith(2, [&](TotalVolume &volume) {
        const Core::Operations::Electrodeposition engine(&volume, film, conductor, 3.0f);
    });
    EXPECT_TRUE(agree(given.base(), sample.voxels(), leftovers(given.base()), hasSameFields));
    EXPECT_TRUE(
        agree(given.base(), sample.nextVoxels(), nextLeftovers(given.base()), hasSameFields));
}

TEST(ElectrodepositionTest, StripsInAscendingOrderFollowTheRule)
{
    // The threads are counted at construction: those of the pool are fewer when it runs.
    const Case given = randomCase({12, 7, 9}, 1, 8, 3.0f);
    ASSERT_FALSE(agree(given.base(), ruleOf(given, 1).voxels(), ruleOf(given, 4).voxels(),
                       hasSameMaterialAndFront));
    for (const int threads : {1, 2, 3, 4, 6, 7}) {
        expectRuleOfStrips(given, threads);
        expectRuleOfStrips(caseOf({13, 9, 10}, 3.3f, maskedDevice()), threads);
        for (std::uint32_t seed = 1; seed <= 6; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {9 + seed, 6, 8, 1.0f, 0.5f, 0.35f};
            expectRuleOfStrips(randomCase(grid, seed, 5 * seed, 2.5f), threads);
        }
    }
}

TEST(ElectrodepositionTest, FlatFloorGetsExactlyTenLayersFromAnyNumberOfStrips)
{
    const Case given = flatFloor({17, 6, 16}, 10.0f, 3);
    const Rule rule = ruleOf(given, 1);
    for (const int threads : {2, 3, 4, 8}) {
        const Sample sample = plated(given, threads);
        EXPECT_TRUE(agree(given.base(), sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
    }
}

TEST(ElectrodepositionTest, StripsKeepWithinTheThicknessWhateverTheirOrder)
{
    for (const int threads : {2, 3, 4}) {
        for (const float thickness : {1.0f, 2.5f, 3.0f}) {
            expectGuarantees(padUnderARoof(thickness), threads);
            expectGuarantees(caseOf({13, 8, 9}, thickness, maskedDevice()), threads);
        }
        expectGuarantees(flatFloor({std::uint32_t(2 * threads), 8, 8}, 4.0f, 2), threads);
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {std::uint32_t(8 * threads) + seed, 6, 8, 1.0f, 0.5f, 1.0f};
            expectGuarantees(randomCase(grid, seed, seed % 2 == 0 ? 5 : 30, 2.0f), threads);
        }
    }
}
