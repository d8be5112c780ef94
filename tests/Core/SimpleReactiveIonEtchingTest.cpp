#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"

#include "LayerFrontRule.h"
#include "LayerFrontSample.h"
#include "PassRuns.h"
#include "ReactiveIonEtchingRule.h"

#include "Support/Volumes.h"

#include <QThreadPool>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

using namespace LayerFrontRule;
using namespace ReactiveIonEtchingRule;
using Support::Grid;

namespace {

/// Any other material.
constexpr std::uint32_t other = 2;

Sample::Engine engineOf(const Etching &process)
{
    return [process](TotalVolume *volume, const std::function<void()> &inBetween) {
        Core::Operations::SimpleReactiveIonEtching engine(volume, process.material, process.steps,
                                                          process.directions);
        inBetween();
        engine.runEtching();
    };
}

/// The lines of each step, `strips` of them, from strip to strip: no strip waits for another within
/// a step, but each step for the one before.
std::vector<std::string> sortedByStep(std::vector<std::string> lines, std::size_t strips)
{
    for (std::size_t first = 0; first + strips <= lines.size(); first += strips)
        std::sort(lines.begin() + std::ptrdiff_t(first),
                  lines.begin() + std::ptrdiff_t(first + strips));
    return lines;
}

/// Every cell, field and log line is that of the rule.
void expectSample(const EtchingCase &given, const Sample &sample, const EtchingRule &rule)
{
    EXPECT_TRUE(agree(given.grid, sample.voxels(), rule.voxels())) << given;
    EXPECT_TRUE(agree(given.grid, sample.nextVoxels(), rule.nextVoxels())) << given;
    EXPECT_EQ(sortedByStep(sample.logLines(), rule.strips()),
              sortedByStep(rule.log(), rule.strips()))
        << given;
}

void expectRule(const EtchingCase &given, const std::vector<int> &threadCounts = {1, 2, 3, 4, 7})
{
    for (const int threads : threadCounts) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        Sample sample(given.grid, given.materials);
        sample.run(threads, engineOf(given.process));
        expectSample(given, sample, EtchingRule(given, threads));
    }
}

void expectMaterials(const EtchingCase &given, const Support::MaterialRule &expected)
{
    for (const int threads : {1, 3}) {
        Sample sample(given.grid, given.materials);
        sample.run(threads, engineOf(given.process));
        const Materials materials = Support::materialsBy(given.grid, expected);
        EXPECT_EQ(sample.materials(), materials) << given;
        EXPECT_EQ(sample.nextMaterials(), materials) << given;
    }
    expectRule(given);
}

void expectUnchanged(const EtchingCase &given)
{
    expectMaterials(given, [&](int x, int y, int z) {
        return given.materials[indexOf(given.grid, {x, y, z})];
    });
}

/// Film from `bottom` to below `top`, and void around it.
Support::MaterialRule plate(int bottom, int top)
{
    return [=](int, int, int z) { return z >= bottom && z < top ? film : 0U; };
}
/// A film on a floor of two layers, up to the height `top`.
Support::MaterialRule flatFilm(int top)
{
    return [top](int, int, int z) { return z < 2 ? other : z < top ? film : 0U; };
}
/// The same with a mask of one layer on it, where x and y are odd together or even together.
Support::MaterialRule maskedFilm(int top)
{
    return [top](int x, int y, int z) -> std::uint32_t {
        if (z == top && (x + y) % 2 == 0)
            return 3;
        return flatFilm(top)(x, y, z);
    };
}

TEST(SimpleReactiveIonEtchingTest, OneStripRunsOnThePoolToo)
{
    // Other processes leave the pool alone with one strip.
    const auto volume =
        Support::makeVolume({3, 3, 8}, [](auto, auto, auto z) { return z < 6 ? 2u : 0u; });
    EXPECT_GE(
        PassRuns::poolThreadsOf(
            1,
            [&] {
                Core::Operations::SimpleReactiveIonEtching(volume.get(), 2, 400, 1).runEtching();
            }),
        1);
}

} // namespace

TEST(SimpleReactiveIonEtchingTest, EachStepRemovesOneCellOfAnOpenColumn)
{
    for (const std::uint32_t steps : {0U, 1U, 2U, 5U, 8U}) {
        expectMaterials(etchingOf({5, 4, 13}, {steps}, flatFilm(10)), [steps](int, int, int z) {
            return z < 2 ? other : z < 10 - int(steps) ? film : 0U;
        });
    }
}

TEST(SimpleReactiveIonEtchingTest, CellSizesPlayNoPart)
{
    expectMaterials(etchingOf({5, 4, 13, 1.0f, 1.0f, 0.35f}, {3}, flatFilm(10)), flatFilm(7));
}

TEST(SimpleReactiveIonEtchingTest, StepsBeyondTheFilmChangeNothingMore)
{
    for (const std::uint32_t steps : {8U, 9U, 60U})
        expectMaterials(etchingOf({5, 4, 13}, {steps}, flatFilm(10)), flatFilm(2));
}

TEST(SimpleReactiveIonEtchingTest, ColumnsUnderAMaskStay)
{
    for (const std::uint32_t steps : {1U, 4U, 20U}) {
        expectMaterials(etchingOf({5, 4, 13}, {steps}, maskedFilm(10)), [=](int x, int y, int z) {
            const std::uint32_t before = maskedFilm(10)(x, y, z);
            const bool masked = (x + y) % 2 == 0;
            return before == film && !masked && z >= 10 - int(steps) ? 0U : before;
        });
    }
}

TEST(SimpleReactiveIonEtchingTest, WallsThatEtchingBaresAreNotEtchedSideways)
{
    // After all steps the masked columns stand free on all four sides.
    expectMaterials(etchingOf({7, 7, 20}, {18}, maskedFilm(12)), [](int x, int y, int z) {
        return z < 2 || (x + y) % 2 == 0 ? maskedFilm(12)(x, y, z) : 0U;
    });
}

TEST(SimpleReactiveIonEtchingTest, FilmIsEtchedDownToAnotherMaterialAndNeverThroughIt)
{
    // Film below the other material, and void below that.
    const auto layers = [](int, int, int z) -> std::uint32_t {
        return z < 2 ? 0 : z < 5 ? film : z < 6 ? other : z < 9 ? film : 0;
    };
    for (const std::uint32_t steps : {3U, 4U, 20U}) {
        expectMaterials(etchingOf({5, 4, 12}, {steps}, layers),
                        [&](int x, int y, int z) { return z < 6 ? layers(x, y, z) : 0U; });
    }
}

TEST(SimpleReactiveIonEtchingTest, TopLayerOfTheVolumeIsNotOpenFromAbove)
{
    for (const std::uint8_t directions : {fromTop, std::uint8_t(fromTop | fromBelow)})
        expectUnchanged(etchingOf({5, 4, 9}, {4, directions}, flatFilm(9)));
    // A cell of void is enough.
    expectMaterials(etchingOf({5, 4, 9}, {4}, flatFilm(8)), flatFilm(4));
}

TEST(SimpleReactiveIonEtchingTest, BottomLayerOfTheVolumeIsNotOpenFromBelow)
{
    // Nor by the last cell of the column before, which is void.
    expectUnchanged(etchingOf({5, 4, 9}, {4, fromBelow}, plate(0, 6)));
    expectMaterials(etchingOf({5, 4, 9}, {4, fromBelow}, plate(1, 6)), plate(5, 6));
}

TEST(SimpleReactiveIonEtchingTest, LastCellsOfAColumnAreEtchedAndNoNeighborColumns)
{
    const Grid grid = {3, 3, 6};
    const auto shafts = [](int x, int y, int z) { return x != 1 || y != 1 || z == 5 ? 0U : film; };
    expectMaterials(etchingOf(grid, {9}, shafts), [](int, int, int) { return 0U; });
    const auto hanging = [](int x, int y, int z) { return x != 1 || y != 1 || z == 0 ? 0U : film; };
    expectMaterials(etchingOf(grid, {9, fromBelow}, hanging), [](int, int, int) { return 0U; });
    // The column on either side is film up to where this one ends.
    const auto pair = [](int, int y, int z) { return y == 1 && z > 3 ? 0U : film; };
    expectMaterials(etchingOf(grid, {9}, pair), [](int, int y, int) { return y == 1 ? 0U : film; });
    const auto upper = [](int, int y, int z) { return y == 1 && z < 3 ? 0U : film; };
    expectMaterials(etchingOf(grid, {9, fromBelow}, upper),
                    [](int, int y, int) { return y == 1 ? 0U : film; });
}

TEST(SimpleReactiveIonEtchingTest, EachDirectionHasItsBit)
{
    const Grid grid = {5, 4, 14};
    for (const std::uint32_t steps : {1U, 3U, 4U}) {
        const int away = int(steps);
        expectMaterials(etchingOf(grid, {steps, fromTop}, plate(2, 11)), plate(2, 11 - away));
        expectMaterials(etchingOf(grid, {steps, fromBelow}, plate(2, 11)), plate(2 + away, 11));
        expectMaterials(etchingOf(grid, {steps, fromTop | fromBelow}, plate(2, 11)),
                        plate(2 + away, 11 - away));
    }
}

TEST(SimpleReactiveIonEtchingTest, NoDirectionChangesNoCell)
{
    expectUnchanged(etchingOf({5, 4, 14}, {4, 0}, plate(2, 11)));
}

TEST(SimpleReactiveIonEtchingTest, OtherBitsAreNoDirections)
{
    const Grid grid = {5, 4, 14};
    expectUnchanged(etchingOf(grid, {4, 0xFC}, plate(2, 11)));
    expectMaterials(etchingOf(grid, {4, 0xFD}, plate(2, 11)), plate(2, 7));
    expectMaterials(etchingOf(grid, {4, 0xFE}, plate(2, 11)), plate(6, 11));
    expectMaterials(etchingOf(grid, {4, 0xFF}, plate(2, 11)), plate(6, 7));
}

TEST(SimpleReactiveIonEtchingTest, FrontsFromBothSidesMeet)
{
    // An odd and an even number of cells; where they meet, each front lists a cell of the other.
    for (const int top : {4, 5, 6, 7, 8})
        for (const std::uint32_t steps : {1U, 2U, 3U, 4U, 9U})
            expectMaterials(etchingOf({4, 3, 11}, {steps, fromTop | fromBelow}, plate(3, top)),
                            plate(3 + int(steps), top - int(steps)));
}

TEST(SimpleReactiveIonEtchingTest, EveryOpenSurfaceOfAColumnIsEtchedAtOnce)
{
    // Three plates above one another, all open to the gaps above them.
    const auto plates = [](int, int, int z) -> std::uint32_t {
        return z < 4 || (z >= 7 && z < 12) || (z >= 13 && z < 15) ? film : 0;
    };
    expectMaterials(etchingOf({5, 4, 17}, {3}, plates), [](int, int, int z) -> std::uint32_t {
        return z < 1 || (z >= 7 && z < 9) ? film : 0;
    });
    expectMaterials(
        etchingOf({5, 4, 17}, {2, fromBelow}, plates),
        [](int, int, int z) -> std::uint32_t { return z < 4 || (z >= 9 && z < 12) ? film : 0; });
}

TEST(SimpleReactiveIonEtchingTest, OtherMaterialsStayWhereTheyLoseTheirHold)
{
    // A piece of another material within the film: what is above it goes, the rest stays.
    const auto piece = [](int x, int, int z) -> std::uint32_t {
        return z == 5 && x > 1 ? other : z < 9 ? film : 0;
    };
    expectMaterials(etchingOf({5, 4, 12}, {9}, piece),
                    [&](int x, int y, int z) { return x > 1 && z < 6 ? piece(x, y, z) : 0U; });
}

TEST(SimpleReactiveIonEtchingTest, MaterialThatIsNotThereChangesNoCell)
{
    expectUnchanged({{9, 8, 7}, randomMaterials({9, 8, 7}, 5, 60), {5, 3, 77}});
    expectUnchanged(etchingOf({5, 4, 6}, {4, 3}, [](int, int, int) { return 0U; }));
    Sample sample({9, 8, 7}, randomMaterials({9, 8, 7}, 5, 60));
    sample.run(2, engineOf({5, 3, 0}));
    EXPECT_EQ(sample.materials(), randomMaterials({9, 8, 7}, 5, 60));
    EXPECT_EQ(sample.nextMaterials(), randomMaterials({9, 8, 7}, 5, 60));
}

TEST(SimpleReactiveIonEtchingTest, AnyNumberOfAMaterialIsEtchedAlike)
{
    for (const std::uint32_t material : {1U, 0x80000000U, 0xFFFFFFFFU}) {
        expectMaterials(etchingOf({5, 4, 9}, {3, fromTop, material},
                                  [&](int, int, int z) {
                                      return z < 2 ? other : z < 7 ? material : 0U;
                                  }),
                        [&](int, int, int z) { return z < 2   ? other
                                                      : z < 4 ? material
                                                              : 0U; });
    }
}

TEST(SimpleReactiveIonEtchingTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto below = [&](std::uint32_t limit) { return std::uint32_t(random() % limit); };
        Grid grid;
        grid.sizeX = 1 + below(12);
        grid.sizeY = 1 + below(8);
        grid.sizeZ = below(5) == 0 ? 60 + below(80) : 1 + below(14);
        grid.cellSizeZ = below(3) == 0 ? 0.35f : 1.0f;
        const std::vector<std::uint32_t> percents = {3, 30, 70, 95, 100};
        Materials materials = randomMaterials(grid, seed, percents[below(5)]);
        const std::uint32_t material = 1 + below(5);
        // Columns of one material, which an etching takes many steps to go through.
        if (below(2) == 0)
            for (std::uint32_t &id : materials)
                if (id != 0 && random() % 8 != 0)
                    id = material;
        expectRule({grid, materials, {below(14), std::uint8_t(below(4)), material}});
    }
}

TEST(SimpleReactiveIonEtchingTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const std::uint8_t directions : {1, 2, 3}) {
        for (const Grid &grid :
             {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{1, 1, 14}, Grid{1, 9, 70}, Grid{2, 1, 3}})
            expectRule({grid, randomMaterials(grid, 11, 80), {3, directions, 1}});
        for (const Grid &grid : {Grid{1, 1, 1}, Grid{9, 12, 1}, Grid{1, 14, 1}, Grid{14, 1, 1}})
            expectUnchanged({grid, randomMaterials(grid, 11, 60), {3, directions, 1}});
    }
}

TEST(SimpleReactiveIonEtchingTest, FewerLayersThanThreadsAreOneStrip)
{
    const EtchingCase given = etchingOf({3, 4, 12}, {2}, flatFilm(10));
    for (const int threads : {4, 8, 100}) {
        Sample sample(given.grid, given.materials);
        sample.run(threads, engineOf(given.process));
        EXPECT_EQ(sample.logLines(),
                  (std::vector<std::string>{"Surface list size for thread 0: 12",
                                            "Surface list size for thread 0: 12"}));
    }
    expectRule(given, {4, 8, 100});
    // Just enough of them: a layer a strip.
    Sample sample(given.grid, given.materials);
    sample.run(3, engineOf(given.process));
    EXPECT_EQ(sample.logLines().size(), 6U);
    expectRule(given, {2, 3});
}

TEST(SimpleReactiveIonEtchingTest, LastStripTakesTheRemainder)
{
    // One open cell a column: lists are as long as strips are wide.
    const EtchingCase given = etchingOf({11, 1, 12}, {1}, flatFilm(10));
    const auto linesOf = [&](int threads) {
        Sample sample(given.grid, given.materials);
        sample.run(threads, engineOf(given.process));
        return sortedByStep(sample.logLines(), std::size_t(threads));
    };
    using Lines = std::vector<std::string>;
    EXPECT_EQ(linesOf(1), (Lines{"Surface list size for thread 0: 11"}));
    EXPECT_EQ(linesOf(3),
              (Lines{"Surface list size for thread 0: 3", "Surface list size for thread 1: 3",
                     "Surface list size for thread 2: 5"}));
    EXPECT_EQ(linesOf(4),
              (Lines{"Surface list size for thread 0: 2", "Surface list size for thread 1: 2",
                     "Surface list size for thread 2: 2", "Surface list size for thread 3: 5"}));
    expectRule(given, {1, 2, 3, 4, 5, 6, 10, 11});
}

TEST(SimpleReactiveIonEtchingTest, LogTellsTheLengthOfEveryListAfterEveryStep)
{
    // Four columns of three cells, two of them under a mask; then four of one cell, all open.
    const EtchingCase given = etchingOf({4, 2, 6}, {4}, [](int x, int y, int z) -> std::uint32_t {
        if (x < 2)
            return z < 3 ? film : z == 3 && y == 0 ? other : 0;
        return z == 0 ? film : 0;
    });
    using Lines = std::vector<std::string>;
    Sample sample(given.grid, given.materials);
    sample.run(1, engineOf(given.process));
    EXPECT_EQ(sample.logLines(),
              (Lines{"Surface list size for thread 0: 2", "Surface list size for thread 0: 2",
                     "Surface list size for thread 0: 0", "Surface list size for thread 0: 0"}));
    sample = Sample(given.grid, given.materials);
    sample.run(2, engineOf(given.process));
    EXPECT_EQ(sortedByStep(sample.logLines(), 2),
              (Lines{"Surface list size for thread 0: 2", "Surface list size for thread 1: 0",
                     "Surface list size for thread 0: 2", "Surface list size for thread 1: 0",
                     "Surface list size for thread 0: 0", "Surface list size for thread 1: 0",
                     "Surface list size for thread 0: 0", "Surface list size for thread 1: 0"}));
}

TEST(SimpleReactiveIonEtchingTest, NoStepsWriteNothingToTheLog)
{
    const EtchingCase given = etchingOf({8, 4, 12}, {0}, flatFilm(10));
    Sample sample(given.grid, given.materials);
    sample.run(4, engineOf(given.process));
    EXPECT_EQ(sample.logLines(), std::vector<std::string>());
    EXPECT_EQ(sample.materials(), given.materials);
}

TEST(SimpleReactiveIonEtchingTest, ThreadsAreCountedAtConstruction)
{
    const EtchingCase given = etchingOf({9, 4, 12}, {3}, maskedFilm(10));
    for (const int threads : {1, 2, 4}) {
        Sample sample(given.grid, given.materials);
        sample.run(threads, engineOf(given.process),
                   [] { QThreadPool::globalInstance()->setMaxThreadCount(3); });
        expectSample(given, sample, EtchingRule(given, threads));
    }
}

TEST(SimpleReactiveIonEtchingTest, PoolWithoutThreadsRunsAllTheSame)
{
    const EtchingCase given = etchingOf({9, 4, 12}, {3}, maskedFilm(10));
    Sample sample(given.grid, given.materials);
    sample.run(0, engineOf(given.process));
    EXPECT_EQ(sample.materials(), materialsOf(EtchingRule(given, 1).voxels()));
    EXPECT_EQ(sample.nextMaterials(), sample.materials());
}

TEST(SimpleReactiveIonEtchingTest, ManyStripsAreNoOtherThanOneOnLargerVolumes)
{
    const Grid grid = {40, 20, 30};
    Materials materials = randomMaterials(grid, 23, 97);
    std::replace(materials.begin(), materials.end(), 3U, 1U);
    expectRule({grid, materials, {6, fromTop | fromBelow, 1}}, {1, 4, 8, 40});
}

TEST(SimpleReactiveIonEtchingTest, SecondEtchingGoesOnWhereTheFirstEnded)
{
    const Grid grid = {5, 4, 14};
    const auto volume = Support::makeVolume(grid, Support::materialsBy(grid, flatFilm(12)));
    const LogLines log;
    for (const std::uint32_t steps : {3U, 4U})
        engineOf({steps})(volume.get(), [] {});
    const Materials expected = Support::materialsBy(grid, flatFilm(5));
    EXPECT_EQ(Support::materialsOf(*volume), expected);
    EXPECT_EQ(Support::nextMaterialsOf(*volume), expected);
}

TEST(SimpleReactiveIonEtchingTest, ConstructionLeavesTheVolumeAlone)
{
    const EtchingCase given = etchingOf({5, 4, 9}, {3}, flatFilm(6));
    expectConstructionLeavesTheVolumeAlone(
        given.grid, given.materials,
        [](TotalVolume *volume, const std::function<void()> &whileItLives) {
            const Core::Operations::SimpleReactiveIonEtching engine(volume, film, 3, fromTop);
            whileItLives();
        });
}

TEST(SimpleReactiveIonEtchingTest, ArraysKeepTheirNames)
{
    const Grid grid = {8, 3, 12};
    for (const std::uint32_t steps : {0U, 1U, 2U, 3U}) {
        for (const int threads : {1, 2, 3, 4, 20}) {
            Sample sample(grid, Support::materialsBy(grid, flatFilm(9)));
            sample.run(threads, engineOf({steps}));
            EXPECT_TRUE(sample.isInPlace());
        }
    }
}
