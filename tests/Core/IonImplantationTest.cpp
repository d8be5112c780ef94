#include "Core/Operations/IonImplantation/IonImplantation.h"

#include "CompatibleFrontRule.h"
#include "CompatibleRuns.h"
#include "DopingRules.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

using namespace CompatibleFrontRule;
using Support::Grid;

namespace {

constexpr std::uint32_t silicon = 1;
/// What cells become: one that is compatible too, and one that is not.
constexpr std::uint32_t doped = 15;
constexpr std::uint32_t foreign = 20;
/// Filled, but not compatible.
constexpr std::uint32_t mask = 5;

const MaterialSet builtIn = {1, 14, 15, 16};

Case<Implantation> caseOf(const Grid &grid, float depth, float annealing,
                          const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), {doped, depth, annealing}, builtIn};
}

Support::MaterialRule floorOf(int layers)
{
    return [layers](int, int, int z) { return z < layers ? silicon : 0U; };
}

/// A floor of eight layers with a mask of three on it that leaves one column open.
Support::MaterialRule windowIn(int openX, int openY)
{
    return [=](int x, int y, int z) {
        const bool open = x == openX && y == openY;
        return z < 12 ? silicon : z < 15 && !open ? mask : 0U;
    };
}

/// A floor with a trench, a mask on it, a bridge over the trench and a pillar up to the top.
Support::MaterialRule device()
{
    return [](int x, int y, int z) {
        const bool trench = x >= 3 && x < 6 && z >= 2;
        const bool bridge = z == 7 && y < 2 && x >= 2 && x < 8;
        const bool sheet = (z == 6 || z == 7) && x >= 7 && y >= 3;
        if (x == 1 && y == 3)
            return silicon;
        return bridge || sheet ? mask : z < 6 && !trench ? silicon : 0U;
    };
}

/// Where each column without annealing and above the lowest layer is implanted, in cells of height
/// 1: the depth counts from above the highest filled cell.
Support::MaterialRule implantedBy(const Case<Implantation> &given)
{
    return [given](int x, int y, int z) {
        const auto at = [&](int height) { return given.materials[given.grid.index(x, y, height)]; };
        int top = int(given.grid.sizeZ);
        while (top > 0 && at(top - 1) == 0)
            --top;
        const float off = std::abs(float(top - z) - given.process.depth);
        const bool isCompatible = given.compatible.count(at(z)) != 0;
        return z > 0 && isCompatible && off <= 0.5f ? given.process.material : at(z);
    };
}

void expectImplanted(const Case<Implantation> &given)
{
    expectMaterials(given, implantedBy(given));
}

Case<Implantation> randomCase(const Grid &grid, std::uint32_t seed, std::uint32_t percent,
                              float depth, float annealing)
{
    return {grid,
            randomOf(grid, seed, percent, {silicon, silicon, silicon, mask, doped, 14, 7}),
            {doped, depth, annealing},
            builtIn};
}

} // namespace

TEST(IonImplantationTest, DepthOfOneCellImplantsTheTopmostFilledCells)
{
    const Case<Implantation> given = caseOf({6, 5, 9}, 1.0f, 0.0f, floorOf(6));
    expectMaterials(given, [](int, int, int z) { return z == 5 ? doped : z < 6 ? silicon : 0U; });
    expectImplanted(caseOf({10, 6, 9}, 1.0f, 0.0f, device()));
    expectImplanted(caseOf({6, 5, 9, 0.25f, 0.5f, 1.0f}, 1.0f, 0.0f, floorOf(6)));
}

TEST(IonImplantationTest, DepthIsMeasuredFromOneCellAboveTheTop)
{
    for (int depth = 1; depth <= 7; ++depth) {
        const Case<Implantation> given = caseOf({4, 3, 12}, float(depth), 0.0f, floorOf(8));
        expectMaterials(given, [=](int, int, int z) {
            return z == 8 - depth ? doped : z < 8 ? silicon : 0U;
        });
    }
}

TEST(IonImplantationTest, DepthBelowHalfACellImplantsNothing)
{
    for (const float annealing : {0.0f, 2.0f}) {
        expectUnchanged(caseOf({6, 5, 9}, 0.0f, annealing, floorOf(6)));
        expectUnchanged(caseOf({6, 5, 9}, 0.25f, annealing, floorOf(6)));
        expectUnchanged(caseOf({6, 5, 9}, 0.4999f, annealing, floorOf(6)));
        expectUnchanged(caseOf({6, 5, 9, 1.0f, 1.0f, 0.35f}, 0.17f, annealing, floorOf(6)));
    }
}

TEST(IonImplantationTest, DepthOfHalfACellImplantsTheTopmostFilledCells)
{
    expectMaterials(caseOf({6, 5, 9}, 0.5f, 0.0f, floorOf(6)), [](int, int, int z) {
        return z == 5 ? doped : z < 6 ? silicon : 0U;
    });
}

TEST(IonImplantationTest, DistanceFromTheDepthIsRoundedToSinglePrecision)
{
    // 1 - 0.49999997 is above the half, and the half as a float.
    const float below = std::nextafter(0.5f, 0.0f);
    ASSERT_GT(1.0 - double(below), 0.5);
    expectMaterials(caseOf({6, 5, 9}, below, 0.0f, floorOf(6)), [](int, int, int z) {
        return z == 5 ? doped : z < 6 ? silicon : 0U;
    });
}

TEST(IonImplantationTest, DepthHalfwayBetweenTwoCellsImplantsBoth)
{
    for (const float cell : {1.0f, 0.25f}) {
        const Grid grid = {6, 5, 12, 1.0f, 1.0f, cell};
        const auto layers = [](int lowest, int highest) -> Support::MaterialRule {
            return [=](int, int, int z) {
                return z >= lowest && z <= highest ? doped : z < 9 ? silicon : 0U;
            };
        };
        const float half = 2.5f * cell;
        expectMaterials(caseOf(grid, half, 0.0f, floorOf(9)), layers(6, 7));
        expectMaterials(caseOf(grid, std::nextafter(half, 0.0f), 0.0f, floorOf(9)), layers(7, 7));
        expectMaterials(caseOf(grid, std::nextafter(half, 9.0f), 0.0f, floorOf(9)), layers(6, 6));
    }
    for (int steps = 0; steps < 60; ++steps) {
        const Grid grid = {3, 2, 12, 1.0f, 1.0f, 0.35f};
        expectRule(caseOf(grid, 0.175f * float(steps) / 2.0f, 0.0f, floorOf(9)));
    }
}

TEST(IonImplantationTest, DepthBelowTheColumnsImplantsNothing)
{
    for (const float annealing : {0.0f, 3.0f}) {
        // The lowest cell of a column is six below.
        for (const float depth : {6.0f, 6.4f, 7.0f, 100.0f, 1e30f})
            expectUnchanged(caseOf({6, 5, 9}, depth, annealing, floorOf(6)));
        expectUnchanged(caseOf({6, 5, 1}, 1.0f, annealing, floorOf(1)));
    }
}

TEST(IonImplantationTest, LowestLayerIsNotImplanted)
{
    expectMaterials(caseOf({6, 5, 9}, 5.5f, 0.0f, floorOf(6)), [](int, int, int z) {
        return z == 1 ? doped : z < 6 ? silicon : 0U;
    });
    expectUnchanged(caseOf({6, 5, 9}, std::nextafter(5.5f, 6.0f), 0.0f, floorOf(6)));
}

TEST(IonImplantationTest, LowestLayerKeepsItsFields)
{
    // No column is full or empty here.
    for (const Grid &grid : {Grid{6, 5, 9}, Grid{7, 1, 9}, Grid{1, 1, 9}}) {
        const Case<Implantation> given = caseOf(grid, 2.0f, 0.0f, floorOf(6));
        for (const Start &start : {leftOver(given), fresh(given)}) {
            const Sample sample = after(given, 1, start);
            for (std::size_t base = 0; base < grid.cells(); base += grid.sizeZ) {
                EXPECT_TRUE(hasSameFields(sample.voxels()[base], start.voxels[base]));
                EXPECT_TRUE(hasSameFields(sample.nextVoxels()[base], start.nextVoxels[base]));
            }
        }
    }
}

TEST(IonImplantationTest, LowestLayerTakesPartInTheAnnealingWithWhatItHolds)
{
    // The front comes down to the second layer, the lowest has every kind of vector and of flag.
    for (const float annealing : {1.0f, 2.0f, 3.0f})
        for (const std::uint32_t material : {doped, foreign})
            for (const float depth : {4.0f, 5.0f}) {
                Case<Implantation> given = caseOf({8, 7, 8}, depth, annealing, floorOf(6));
                given.process.material = material;
                expectRule(given);
            }
    // A fresh cell holds the vector of a source, and none is shorter.
    const Case<Implantation> given = caseOf({3, 3, 8}, 4.0f, 2.0f, floorOf(6));
    const Sample sample = after(given, 1, fresh(given));
    EXPECT_EQ(sample.at(1, 1, 0).material, silicon);
    EXPECT_EQ(sample.at(1, 1, 1).material, doped);
    EXPECT_EQ(sample.at(1, 1, 2).material, doped);
    // One that is not reached and holds a far vector is taken.
    Start far = fresh(given);
    for (Cells *cells : {&far.voxels, &far.nextVoxels})
        for (std::size_t base = 0; base < cells->size(); base += given.grid.sizeZ)
            (*cells)[base].distance = {9.0f, 9.0f, 9.0f};
    EXPECT_EQ(after(given, 1, far).at(1, 1, 0).material, doped);
    // One that is reached is not.
    for (Cells *cells : {&far.voxels, &far.nextVoxels})
        for (std::size_t base = 0; base < cells->size(); base += given.grid.sizeZ)
            (*cells)[base].reached = true;
    EXPECT_EQ(after(given, 1, far).at(1, 1, 0).material, silicon);
}

TEST(IonImplantationTest, WalkOfAFullColumnBeginsInTheLowestCellOfTheNext)
{
    // It is the cell of depth 0 there, and the one below the top that of depth 1.
    const Case<Implantation> given =
        caseOf({3, 2, 5}, 0.5f, 0.0f, [](int, int, int) { return silicon; });
    expectMaterials(given, [](int x, int y, int z) {
        return z == 4 || (z == 0 && (x > 0 || y > 0)) ? doped : silicon;
    });
    // Not implanted, it is a cell as any other that is walked over.
    for (const bool isMask : {false, true}) {
        const Case<Implantation> deeper = caseOf({3, 2, 5}, 2.0f, 1.5f, [=](int, int, int z) {
            return z == 0 && isMask ? mask : silicon;
        });
        Case<Implantation> notAnnealed = deeper;
        notAnnealed.process.annealing = 0.0f;
        const Start start = leftOver(deeper);
        const Sample sample = after(notAnnealed, 1, start);
        EXPECT_TRUE(hasSameFields(sample.at(0, 0, 0), start.voxels[0]));
        for (const Place &at : {Place{0, 1, 0}, Place{1, 0, 0}, Place{2, 1, 0}}) {
            EXPECT_EQ(sample.at(at.x, at.y, at.z).reached, isMask);
            EXPECT_EQ(sample.at(at.x, at.y, at.z).distance, (Vector{0.0f, 0.0f, 0.0f}));
        }
        expectRule(deeper);
    }
}

TEST(IonImplantationTest, WalkOfAVoidColumnBeginsInTheLowestCellOfTheNext)
{
    // Whatever is there, and with nothing there behind the last column.
    for (const std::uint32_t material : {silicon, mask, 0U}) {
        for (const float depth : {0.25f, 1.0f, 3.0f}) {
            const auto withVoid = [=](int voidX, int voidY) {
                return caseOf({4, 3, 7}, depth, 2.0f, [=](int x, int y, int z) {
                    if (x == voidX && y == voidY)
                        return 0U;
                    return z == 0 ? material : z < 5 ? silicon : 0U;
                });
            };
            for (const Place &at : {Place{0, 0, 0}, Place{1, 1, 0}, Place{1, 2, 0}, Place{3, 2, 0}})
                expectRule(withVoid(at.x, at.y));
        }
    }
    const Case<Implantation> given = caseOf(
        {4, 1, 7}, 0.25f, 0.0f, [](int x, int, int z) { return x != 1 && z < 5 ? silicon : 0U; });
    expectMaterials(given, [](int x, int, int z) {
        return x == 2 && z == 0 ? doped : x != 1 && z < 5 ? silicon : 0U;
    });
}

TEST(IonImplantationTest, VoidVolumesStayAsTheyAre)
{
    for (const Grid &grid : {Grid{1, 1, 1}, Grid{1, 1, 6}, Grid{5, 4, 6}, Grid{5, 4, 1}})
        for (const float depth : {0.0f, 0.5f, 1.0f, 3.0f})
            expectUnchanged(caseOf(grid, depth, 2.0f, floorOf(0)));
}

TEST(IonImplantationTest, MaskOnTopShiftsTheLayerUpWithIt)
{
    for (int thickness = 0; thickness <= 4; ++thickness) {
        const Case<Implantation> given = caseOf({8, 4, 15}, 4.0f, 0.0f, [=](int x, int, int z) {
            return z < 9 ? silicon : z < 9 + thickness && x >= 4 ? mask : 0U;
        });
        expectMaterials(given, [=](int x, int, int z) {
            if (z >= 9)
                return z < 9 + thickness && x >= 4 ? mask : 0U;
            const int layer = x >= 4 ? 9 + thickness - 4 : 9 - 4;
            return z == layer ? doped : silicon;
        });
    }
}

TEST(IonImplantationTest, LayerLandsInAMaskThatIsThickerThanTheDepth)
{
    for (const float annealing : {0.0f, 2.0f})
        expectUnchanged(caseOf({6, 5, 12}, 3.0f, annealing, [](int, int, int z) {
            return z < 6 ? silicon : z < 10 ? mask : 0U;
        }));
}

TEST(IonImplantationTest, TopOfAColumnIsItsHighestFilledCellOfAnyMaterial)
{
    // A void below a bridge counts as depth.
    for (const float depth : {1.0f, 2.0f, 3.0f, 4.0f, 5.5f, 6.0f})
        expectImplanted(caseOf({10, 6, 9}, depth, 0.0f, device()));
    expectMaterials(caseOf({4, 3, 10}, 5.0f, 0.0f,
                           [](int, int, int z) { return z < 5    ? silicon
                                                        : z == 8 ? mask
                                                                 : 0U; }),
                    [](int, int, int z) {
                        return z == 4 ? doped : z < 5 ? silicon : z == 8 ? mask : 0U;
                    });
}

TEST(IonImplantationTest, WallOfATrenchIsNotImplantedSideways)
{
    const auto trench = [](int x, int z) { return x >= 4 && x < 8 && z >= 4; };
    const Case<Implantation> given = caseOf({12, 3, 13}, 2.0f, 0.0f, [=](int x, int, int z) {
        return z < 10 && !trench(x, z) ? silicon : 0U;
    });
    expectMaterials(given, [=](int x, int, int z) {
        const int top = x >= 4 && x < 8 ? 4 : 10;
        return z == top - 2 ? doped : z < top ? silicon : 0U;
    });
}

TEST(IonImplantationTest, AnnealingSpreadsAFlatLayerUpAndDown)
{
    for (const float annealing : {0.0f, 0.5f, 1.0f, 2.0f, 2.5f, 3.0f}) {
        for (const std::uint32_t material : {doped, foreign}) {
            Case<Implantation> given = caseOf({7, 6, 16}, 5.0f, annealing, floorOf(13));
            given.process.material = material;
            expectMaterials(given, [=](int, int, int z) {
                const bool isNear = float(std::abs(z - 8)) <= annealing;
                return z >= 13 ? 0U : isNear ? material : silicon;
            });
        }
    }
}

TEST(IonImplantationTest, AnnealingSpreadsOneCellToABall)
{
    for (const float annealing : {1.0f, 1.5f, 2.5f, 3.0f, 4.0f}) {
        for (const std::uint32_t material : {doped, foreign}) {
            Case<Implantation> given = caseOf({11, 10, 16}, 3.0f, annealing, windowIn(5, 4));
            given.process.material = material;
            const auto before = windowIn(5, 4);
            expectMaterials(given, [=](int x, int y, int z) {
                const Place off = {x - 5, y - 4, z - 9};
                const int squared = off.x * off.x + off.y * off.y + off.z * off.z;
                const std::uint32_t was = before(x, y, z);
                return was == silicon && float(squared) <= annealing * annealing ? material : was;
            });
        }
    }
}

TEST(IonImplantationTest, AnnealingStopsAtMasksAndVoid)
{
    for (const float annealing : {0.5f, 1.0f, 2.0f, 3.3f, 5.0f})
        for (const float depth : {1.0f, 2.5f, 3.0f, 6.0f})
            expectRule(caseOf({10, 6, 9}, depth, annealing, device()));
}

TEST(IonImplantationTest, EachStepGoesOneCellFurther)
{
    // Of twenty cells of annealing come 34 steps. In single precision 7 / 0.35f is 20 as well.
    for (const float cell : {1.0f, 0.25f, 0.35f}) {
        const Grid grid = windingGrid(cell);
        Materials materials = windingMaterials(mask, silicon, silicon);
        for (int x = 0; x < int(grid.sizeX); ++x)
            for (int y = 0; y < int(grid.sizeY); ++y)
                if (x != 1 || y != 1)
                    materials[indexOf(grid, {x, y, int(grid.sizeZ) - 1})] = 0;
        // The column of the source is one cell higher than all others.
        const float annealing = cell == 0.35f ? 7.0f : 20.0f * cell;
        const Case<Implantation> given = {
            grid, materials, {doped, 11.0f * cell, annealing}, builtIn};
        EXPECT_EQ(filledFromTheSource(after(given, 1).materials(), doped), 34);
        EXPECT_EQ(filledFromTheSource(after(given, 1, fresh(given)).materials(), doped), 34);
        expectRule(given);
    }
}

TEST(IonImplantationTest, ImplantedCellsHaveAFarVectorInTheWorkingBuffer)
{
    // Those that were listed before it was their turn get it from there in the first step.
    Case<Implantation> given = caseOf({4, 3, 9}, 2.0f, 0.0f, floorOf(6));
    given.process.material = foreign;
    for (const float annealing : {0.0f, 1.0f}) {
        given.process.annealing = annealing;
        const Sample sample = after(given, 1);
        const Vector zero = {0.0f, 0.0f, 0.0f};
        const Vector far = {annealing, annealing, annealing};
        for (int x = 0; x < 4; ++x) {
            for (int y = 0; y < 3; ++y) {
                const std::size_t cell = given.grid.index(x, y, 4);
                EXPECT_EQ(sample.voxels()[cell].distance, x > 0 || y > 0 ? far : zero);
                EXPECT_EQ(sample.nextVoxels()[cell].distance, far);
                EXPECT_TRUE(sample.voxels()[cell].reached);
                EXPECT_TRUE(sample.nextVoxels()[cell].reached);
            }
        }
    }
}

TEST(IonImplantationTest, CellsHoldWhatTheyAreToTheFrontWhenTheRunBegins)
{
    // Of the distance of one half comes one step, in which no cell is taken; above the lowest layer
    // the cells of the working buffer are not as they were.
    const Case<Implantation> given = caseOf({6, 5, 9}, 2.0f, 0.5f, [](int x, int, int z) {
        return z < 6 ? silicon : z < 8 && x < 3 ? mask : 0U;
    });
    const Sample sample = after(given, 1);
    for (int z = 1; z < 9; ++z) {
        for (const int x : {0, 5}) {
            const Cell &next = sample.nextVoxels()[given.grid.index(x, 2, z)];
            const bool isImplanted = x == 5 && z == 4;
            EXPECT_EQ(next.reached, isImplanted || z >= 6);
            EXPECT_EQ(next.distance, (Vector{0.5f, 0.5f, 0.5f}));
            EXPECT_EQ(next.material == doped, isImplanted);
        }
    }
    expectRule(given);
}

TEST(IonImplantationTest, DopedMaterialNeedsNotBeCompatible)
{
    for (const std::uint32_t material : {silicon, doped, foreign, mask, 0U}) {
        for (const float depth : {1.0f, 2.5f}) {
            for (const float annealing : {0.0f, 1.0f, 2.5f, 4.0f}) {
                Case<Implantation> given = caseOf({10, 6, 9}, depth, annealing, device());
                given.process.material = material;
                expectRule(given);
            }
        }
        Case<Implantation> flat = caseOf({5, 4, 9}, 2.0f, 0.0f, floorOf(7));
        flat.process.material = material;
        expectImplanted(flat);
    }
}

TEST(IonImplantationTest, ListIsThatOfSimpleDoping)
{
    ChangedRegistry registry;
    const auto doubledFloor = [](int x, int, int z) {
        return z >= 6 ? 0U : x < 3 ? mask : silicon;
    };
    const Case<Implantation> given = caseOf({6, 4, 9}, 2.0f, 1.0f, doubledFloor);
    const auto materialsAfterIt = [&] {
        Sample sample(given.base());
        sample.runWith(1, [&](TotalVolume &volume) { buildAndRun(volume, given.process, [] {}); });
        return sample.materials();
    };
    const auto expected = [&](bool first, bool second) {
        return Support::materialsBy(given.grid, [&](int x, int, int z) {
            const bool isNear = z >= 3 && z <= 5;
            return isNear && (x < 3 ? first : second) ? doped : doubledFloor(x, 0, z);
        });
    };
    registry.setCompatible("Ion Implantation", {mask});
    EXPECT_EQ(materialsAfterIt(), expected(false, true));
    registry.setCompatible("Simple Doping", {mask});
    registry.setCompatible("Ion Implantation", {silicon});
    EXPECT_EQ(materialsAfterIt(), expected(true, false));
    registry.setCompatible("Simple Doping", {silicon, mask});
    EXPECT_EQ(materialsAfterIt(), expected(true, true));
}

TEST(IonImplantationTest, RenamedProcessGivesAnEmptyListAndNoChange)
{
    expectUnchangedWhenRenamed(caseOf({10, 6, 9}, 2.0f, 2.0f, device()));
}

TEST(IonImplantationTest, ListIsReadAtConstruction)
{
    expectListOfConstruction(caseOf({10, 6, 9}, 2.0f, 2.0f, device()), {mask});
}

TEST(IonImplantationTest, ListWithoutTheMaterialsPresentChangesNothing)
{
    Case<Implantation> given = caseOf({10, 6, 9}, 2.0f, 2.0f, device());
    given.compatible = {2, 16};
    expectUnchanged(given);
}

TEST(IonImplantationTest, VoidInTheListIsImplantedBelowTheTop)
{
    Case<Implantation> given = caseOf({4, 3, 10}, 2.0f, 0.0f, [](int x, int, int z) {
        return z < 5 ? silicon : z == 8 && x != 2 ? mask : 0U;
    });
    given.compatible.insert(0);
    expectMaterials(given, [](int x, int, int z) {
        if (z == (x == 2 ? 3 : 7))
            return doped;
        return z < 5 ? silicon : z == 8 && x != 2 ? mask : 0U;
    });
}

TEST(IonImplantationTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const float annealing : {0.0f, 1.0f, 2.5f, 6.0f})
        for (const Grid &grid : thinGrids())
            for (const float depth : {0.25f, 1.0f, 2.5f})
                for (const std::uint32_t percent : {30U, 97U})
                    expectRule(randomCase(grid, percent, percent, depth, annealing));
}

TEST(IonImplantationTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const Grid grid = randomGrid(random);
        const std::vector<std::uint32_t> percents = {5, 30, 60, 90, 100};
        const std::vector<float> depths = {0.0f, 0.5f, 1.0f, 1.5f, 2.0f, 2.7f, 4.0f};
        const std::vector<float> annealings = {0.0f, 0.5f, 1.0f, 1.4142135f, 2.0f, 2.5f, 3.3f};
        const std::vector<std::uint32_t> materials = {doped, 14, silicon, mask, foreign, 0};
        const std::vector<MaterialSet> sets = {builtIn,           {1},     {1, 5},
                                               {1, 5, 7, 14, 15}, {5, 20}, {}};
        Case<Implantation> given =
            randomCase(grid, seed, percents[random() % percents.size()],
                       depths[random() % depths.size()] * grid.cellSizeZ,
                       annealings[random() % annealings.size()] * grid.cellSizeX);
        given.process.material = materials[random() % materials.size()];
        given.compatible = sets[random() % sets.size()];
        if (random() % 2 == 0) {
            // Void above, as over a wafer.
            for (std::size_t i = 0; i < given.materials.size(); ++i)
                if (i % grid.sizeZ > grid.sizeZ * 2 / 3)
                    given.materials[i] = 0;
        }
        expectRule(given);
    }
}

TEST(IonImplantationTest, ConstructionLeavesTheVolumeAlone)
{
    expectConstructionLeavesTheVolumeAlone(
        caseOf({5, 4, 6}, 2.0f, 2.0f, floorOf(4)), [](TotalVolume &volume) {
            const Core::Operations::IonImplantation engine(&volume, doped, 2.0f, 2.0f);
        });
}

TEST(IonImplantationTest, StripsInAscendingOrderFollowTheRule)
{
    // The threads are counted at construction: those of the pool are fewer when it runs.
    const Case<Implantation> given = randomCase({12, 7, 9}, 1, 80, 2.0f, 3.0f);
    ASSERT_FALSE(agree(given.base(), ruleOf(given, 1, leftOver(given)).voxels(),
                       ruleOf(given, 4, leftOver(given)).voxels(), hasSameMaterialAndFront));
    for (const int threads : {1, 2, 3, 4, 6, 7}) {
        expectRuleOfStrips(given, threads);
        expectRuleOfStrips(caseOf({13, 6, 9}, 2.0f, 3.3f, device()), threads);
        for (std::uint32_t seed = 1; seed <= 6; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {9 + seed, 6, 8, 1.0f, 0.5f, 0.35f};
            Case<Implantation> random =
                randomCase(grid, seed, 100 - 8 * seed, 0.3f * float(seed), 1.5f);
            random.process.material = seed % 2 == 0 ? doped : foreign;
            expectRuleOfStrips(random, threads);
        }
    }
}

TEST(IonImplantationTest, LayerWithoutAnnealingIsThatOfAnyNumberOfStrips)
{
    const Case<Implantation> given = caseOf({17, 6, 9}, 2.0f, 0.0f, device());
    const ImplantationRule rule = ruleOf(given, 1, leftOver(given));
    for (const int threads : {2, 3, 4, 8}) {
        const Sample sample = after(given, threads);
        EXPECT_EQ(sample.materials(), Support::materialsBy(given.grid, implantedBy(given)));
        expectSame(given, sample, rule);
    }
}

TEST(IonImplantationTest, FlatLayerIsAnnealedAlikeByAnyNumberOfStrips)
{
    for (const std::uint32_t material : {doped, foreign}) {
        Case<Implantation> given = caseOf({17, 6, 16}, 5.0f, 3.0f, floorOf(13));
        given.process.material = material;
        for (const int threads : {2, 3, 4, 8}) {
            const Sample sample = after(given, threads);
            const Materials expected = Support::materialsBy(given.grid, [=](int, int, int z) {
                return z >= 13 ? 0U : z >= 5 && z <= 11 ? material : silicon;
            });
            EXPECT_EQ(sample.materials(), expected);
            EXPECT_EQ(sample.nextMaterials(), expected);
        }
    }
}

TEST(IonImplantationTest, StripsKeepWithinTheAnnealingWhateverTheirOrder)
{
    for (const int threads : {2, 3, 4}) {
        for (const float annealing : {0.0f, 1.0f, 2.0f})
            for (const float depth : {1.0f, 2.0f})
                expectGuarantees(caseOf({13, 6, 9}, depth, annealing, device()), threads, annealing,
                                 true);
        expectGuarantees(caseOf({std::uint32_t(2 * threads), 8, 12}, 4.0f, 2.0f, floorOf(10)),
                         threads, 2.0f, true);
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            const Grid grid = {std::uint32_t(8 * threads) + seed, 6, 8, 1.0f, 0.5f, 1.0f};
            Case<Implantation> given = randomCase(grid, seed, seed % 2 == 0 ? 95 : 60, 2.0f, 1.5f);
            given.process.material = seed < 3 ? doped : foreign;
            expectGuarantees(given, threads, 1.5f, true);
        }
    }
}
