#include "Core/Operations/Planarization/Planarization.h"

#include "DebugLog.h"
#include "DistanceFrontRuns.h"
#include "PassRuns.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

using Core::Operations::Planarization;
using DistanceFrontRule::randomMaterials;
using Model::Automaton::TotalVolume;
using PassRuns::Materials;
using Support::Grid;

namespace {

constexpr std::uint32_t farBeyond = 0xFFFFFFFFU;

PassRuns::Run cut(std::uint32_t maximum, std::uint32_t minimum)
{
    return [=](TotalVolume &volume) {
        Planarization engine(&volume, maximum, minimum);
        engine.runPlanarization();
    };
}

/// Cells from the maximum on are emptied, and those below the minimum.
PassRuns::Rule isCut(std::uint32_t maximum, std::uint32_t minimum)
{
    return [=](std::uint32_t before, std::uint32_t z) {
        return z >= maximum || z < minimum ? 0U : before;
    };
}

/// Runs on a full volume and expects that these layers are left, from `first` to before `end`.
void expectLayersLeft(const Grid &grid, std::uint32_t maximum, std::uint32_t minimum,
                      std::uint32_t first, std::uint32_t end)
{
    for (const int threads : {1, 2, 4, 20})
        PassRuns::expectRule(
            grid, Materials(grid.cells(), 2), threads, cut(maximum, minimum),
            [=](std::uint32_t, std::uint32_t z) { return z >= first && z < end ? 2U : 0U; });
}

} // namespace

TEST(PlanarizationTest, CutsRandomVolumesBetweenTheHeights)
{
    std::uint32_t seed = 0;
    for (const Grid &grid : PassRuns::grids())
        for (const std::uint32_t filled : {0U, 50U, 100U}) {
            SCOPED_TRACE(::testing::Message() << "seed " << ++seed);
            const Materials materials = randomMaterials(grid, seed, filled);
            const std::uint32_t top = grid.sizeZ;
            for (const std::uint32_t maximum : {0U, 1U, top / 2, top - 1, top, top + 1, farBeyond})
                for (const std::uint32_t minimum : {0U, 1U, top / 2, top - 1, top})
                    for (const int threads : {1, 2, 3, 4, 20})
                        PassRuns::expectRule(grid, materials, threads, cut(maximum, minimum),
                                             isCut(maximum, minimum));
        }
}

TEST(PlanarizationTest, MaximumOfThirtyLeavesTheLayersBelowItOfEighty)
{
    expectLayersLeft({4, 3, 80}, 30, 0, 0, 30);
    expectLayersLeft({12, 3, 80}, 30, 0, 0, 30);
}

TEST(PlanarizationTest, HeightOfTheVolumeAndNothingChangeNothing)
{
    const Grid grid{13, 4, 7};
    const Materials materials = randomMaterials(grid, 1, 50);
    for (const int threads : {1, 4})
        PassRuns::expectRule(grid, materials, threads, cut(7, 0),
                             [](std::uint32_t before, std::uint32_t) { return before; });
}

TEST(PlanarizationTest, CellAtTheMaximumGoesAndTheOneAtTheMinimumStays)
{
    expectLayersLeft({6, 4, 9}, 6, 2, 2, 6);
    expectLayersLeft({6, 4, 9}, 3, 2, 2, 3);
    expectLayersLeft({6, 4, 9}, 1, 0, 0, 1);
    expectLayersLeft({6, 4, 9}, 9, 8, 8, 9);
}

TEST(PlanarizationTest, EqualHeightsEmptyTheVolume)
{
    for (const std::uint32_t height : {0U, 1U, 5U, 8U, 9U})
        expectLayersLeft({6, 4, 9}, height, height, 0, 0);
}

TEST(PlanarizationTest, MinimumAboveTheMaximumEmptiesTheVolume)
{
    expectLayersLeft({6, 4, 9}, 3, 4, 0, 0);
    expectLayersLeft({6, 4, 9}, 0, 9, 0, 0);
    expectLayersLeft({6, 4, 9}, 2, 7, 0, 0);
}

TEST(PlanarizationTest, MaximumBeyondTheVolumeIsCutOff)
{
    for (const std::uint32_t beyond : {10U, 1000U, 0x80000000U, farBeyond})
        expectLayersLeft({6, 4, 9}, beyond, 3, 3, 9);
}

// All cells go, and nothing outside the arrays is written: that ends the program, or is found by
// the sanitizers.
TEST(PlanarizationTest, MinimumBeyondTheVolumeEmptiesItAndNothingElse)
{
    for (const std::uint32_t beyond : {10U, 1000U, 0x80000000U, farBeyond})
        for (const std::uint32_t maximum : {0U, 5U, 9U, farBeyond}) {
            expectLayersLeft({6, 4, 9}, maximum, beyond, 0, 0);
            expectLayersLeft({1, 1, 9}, maximum, beyond, 0, 0);
            expectLayersLeft({6, 4, 1}, maximum, beyond, 0, 0);
        }
}

TEST(PlanarizationTest, EveryLayerOfXIsCutWhateverTheStrips)
{
    for (std::uint32_t sizeX = 1; sizeX <= 26; ++sizeX)
        expectLayersLeft({sizeX, 2, 5}, 4, 1, 1, 4);
}

TEST(PlanarizationTest, FewerThanThreeLayersAThreadAreCutByTheCallingThread)
{
    for (const int threads : {1, 2, 4}) {
        for (const int sizeX : {1, 2, 3 * threads - 1}) {
            const auto volume = Support::makeVolume({std::uint32_t(sizeX), 3, 4},
                                                    [](auto, auto, auto) { return 2U; });
            const int started = PassRuns::poolThreadsOf(threads, [&] { cut(3, 1)(*volume); });
            EXPECT_EQ(started, 0) << sizeX << " layers, " << threads << " threads";
        }
    }
}

TEST(PlanarizationTest, ThreeLayersAThreadAreCutByThePool)
{
    for (const int threads : {1, 2, 4}) {
        const auto volume = Support::makeVolume({std::uint32_t(3 * threads), 3, 4},
                                                [](auto, auto, auto) { return 2U; });
        EXPECT_GT(PassRuns::poolThreadsOf(threads, [&] { cut(3, 1)(*volume); }), 0) << threads;
    }
}

TEST(PlanarizationTest, ConstructionLeavesTheVolumeAlone)
{
    const auto volume = Support::makeVolume({6, 4, 5}, [](auto, auto, auto) { return 2U; });
    const Materials before = Support::materialsOf(*volume);
    {
        const Planarization engine(volume.get(), 2, 1);
        // Taken here, or this would never return.
        EXPECT_EQ(Support::materialsOf(*volume), before);
        EXPECT_EQ(Support::nextMaterialsOf(*volume), before);
    }
    EXPECT_EQ(Support::materialsOf(*volume), before);
}

TEST(PlanarizationTest, RunWaitsForBothArrays)
{
    PassRuns::expectToWaitForBothArrays(cut(3, 1));
}

TEST(PlanarizationTest, LogTellsThreadsThenCellsOfAThreadThenTheTime)
{
    const Grid grid{13, 3, 5};
    // Layers of x for each thread, without the remainder, times the cells of a layer.
    const struct
    {
        int threads;
        std::uint32_t cells;
    } cases[] = {{1, 195}, {2, 90}, {4, 45}, {5, 30}, {13, 15}, {14, 0}};
    for (const auto &given : cases) {
        const Support::PoolThreads pool(given.threads);
        const auto volume = Support::makeVolume(grid, [](auto, auto, auto) { return 2U; });
        const Fakes::DebugLog log;
        cut(3, 1)(*volume);
        const std::string threads = "debug: Threads +" + std::to_string(given.threads) + " *";
        const std::string cells = "debug: Cells per thread +" + std::to_string(given.cells) + " *";
        using ::testing::MatchesRegex;
        EXPECT_THAT(log.lines(),
                    ::testing::ElementsAre(MatchesRegex(threads), MatchesRegex(cells),
                                           MatchesRegex("debug: Elapsed time +[0-9]+ *")));
    }
}
