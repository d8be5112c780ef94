#include "Core/Operations/SpinCoating/SpinCoating.h"

#include "DebugLog.h"
#include "DistanceFrontRuns.h"
#include "PassRuns.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using Core::Operations::SpinCoating;
using DistanceFrontRule::randomMaterials;
using Model::Automaton::TotalVolume;
using PassRuns::Materials;
using Support::Grid;

namespace {

constexpr std::uint32_t liquid = 7;

PassRuns::Run pour(std::uint32_t height, std::uint32_t material = liquid)
{
    return [=](TotalVolume &volume) {
        SpinCoating engine(&volume, material, height);
        engine.runDeposition();
    };
}

/// Void cells below the height become the liquid.
PassRuns::Rule poured(std::uint32_t height, std::uint32_t material = liquid)
{
    return [=](std::uint32_t before, std::uint32_t z) {
        return before == 0 && z < height ? material : before;
    };
}

/// Runs on a volume with these cells, and expects those.
void expectPoured(const Grid &grid, std::uint32_t height, const Support::MaterialRule &before,
                  const Support::MaterialRule &expected)
{
    for (const int threads : {1, 2, 4}) {
        const Support::PoolThreads pool(threads);
        const auto volume = Support::makeVolume(grid, before);
        pour(height)(*volume);
        EXPECT_EQ(Support::materialsOf(*volume), Support::materialsBy(grid, expected));
        EXPECT_EQ(Support::nextMaterialsOf(*volume), Support::materialsBy(grid, expected));
    }
}

} // namespace

TEST(SpinCoatingTest, FillsTheVoidBelowTheHeightOfRandomVolumes)
{
    std::uint32_t seed = 0;
    for (const Grid &grid : PassRuns::grids())
        for (const std::uint32_t filled : {0U, 10U, 60U, 100U}) {
            SCOPED_TRACE(::testing::Message() << "seed " << ++seed);
            const Materials materials = randomMaterials(grid, seed, filled);
            for (std::uint32_t height = 0; height <= grid.sizeZ; ++height)
                for (const int threads : {1, 2, 3, 4, 20})
                    PassRuns::expectRule(grid, materials, threads, pour(height), poured(height));
        }
}

TEST(SpinCoatingTest, AnyMaterialCanBePoured)
{
    const Grid grid{9, 4, 6};
    const Materials materials = randomMaterials(grid, 1, 40);
    for (const std::uint32_t material : {0U, 1U, 2U, 99U, 0xFFFFFFFFU})
        for (const int threads : {1, 3})
            PassRuns::expectRule(grid, materials, threads, pour(4, material), poured(4, material));
}

TEST(SpinCoatingTest, HeightOfNothingChangesNothing)
{
    const Grid grid{7, 4, 6};
    for (const int threads : {1, 2})
        PassRuns::expectRule(grid, randomMaterials(grid, 2, 30), threads, pour(0),
                             [](std::uint32_t before, std::uint32_t) { return before; });
}

TEST(SpinCoatingTest, HeightAboveTheVolumeFillsAllOfTheVoid)
{
    const Grid grid{7, 4, 6};
    for (const std::uint32_t height : {6U, 7U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        for (const int threads : {1, 2})
            PassRuns::expectRule(
                grid, randomMaterials(grid, 3, 30), threads, pour(height),
                [](std::uint32_t before, std::uint32_t) { return before == 0 ? liquid : before; });
}

TEST(SpinCoatingTest, EmptyVolumeGetsAFlatFilm)
{
    expectPoured(
        {6, 5, 9}, 4, [](auto, auto, auto) { return 0U; },
        [](auto, auto, auto z) { return z < 4 ? liquid : 0U; });
}

TEST(SpinCoatingTest, StructureTallerThanTheHeightKeepsItsTopAboveTheFilm)
{
    const auto isTower = [](auto x, auto y) { return x == 2 && y >= 1 && y <= 3; };
    expectPoured(
        {6, 5, 9}, 4, [&](auto x, auto y, auto z) { return isTower(x, y) && z < 7 ? 2U : 0U; },
        [&](auto x, auto y, auto z) { return isTower(x, y) && z < 7 ? 2U
                                             : z < 4                ? liquid
                                                                    : 0U; });
}

TEST(SpinCoatingTest, ClosedCavityBelowTheHeightIsFilledAndOneAboveItStaysEmpty)
{
    const auto isCavity = [](auto x, auto y, auto z) {
        return x == 2 && y == 2 && (z == 1 || z == 2 || z == 6);
    };
    expectPoured(
        {5, 5, 8}, 4, [&](auto x, auto y, auto z) { return isCavity(x, y, z) ? 0U : 2U; },
        [&](auto x, auto y, auto z) { return !isCavity(x, y, z) ? 2U
                                             : z < 4            ? liquid
                                                                : 0U; });
}

TEST(SpinCoatingTest, CavityAcrossTheHeightIsFilledUpToIt)
{
    expectPoured(
        {4, 3, 8}, 4, [](auto x, auto, auto z) { return x == 1 && z < 6 ? 0U : 2U; },
        [](auto x, auto, auto z) { return x != 1 || z >= 6 ? 2U
                                          : z < 4          ? liquid
                                                           : 0U; });
}

TEST(SpinCoatingTest, SizeOfACellPlaysNoPart)
{
    expectPoured(
        {4, 3, 8, 2.0f, 0.5f, 0.35f}, 3, [](auto, auto, auto) { return 0U; },
        [](auto, auto, auto z) { return z < 3 ? liquid : 0U; });
}

TEST(SpinCoatingTest, LastStripTakesTheRemainder)
{
    // Strips of three layers and more; up to three layers remain.
    for (const std::uint32_t sizeX : {12U, 13U, 14U, 15U, 16U}) {
        const Grid grid{sizeX, 3, 4};
        PassRuns::expectRule(grid, Materials(grid.cells(), 0), 4, pour(4), poured(4));
    }
}

TEST(SpinCoatingTest, FewerThanThreeLayersAThreadAreFilledByTheCallingThread)
{
    for (const int threads : {1, 2, 4}) {
        for (const int sizeX : {1, 2, 3 * threads - 1}) {
            const auto volume = Support::makeVolume({std::uint32_t(sizeX), 3, 4},
                                                    [](auto, auto, auto) { return 0U; });
            const int started = PassRuns::poolThreadsOf(threads, [&] { pour(4)(*volume); });
            EXPECT_EQ(started, 0) << sizeX << " layers, " << threads << " threads";
        }
    }
}

TEST(SpinCoatingTest, ThreeLayersAThreadAreFilledByThePool)
{
    for (const int threads : {1, 2, 4}) {
        const auto volume = Support::makeVolume({std::uint32_t(3 * threads), 3, 4},
                                                [](auto, auto, auto) { return 0U; });
        EXPECT_GT(PassRuns::poolThreadsOf(threads, [&] { pour(4)(*volume); }), 0) << threads;
    }
}

TEST(SpinCoatingTest, ConstructionLeavesTheVolumeAlone)
{
    const auto volume = Support::makeVolume({6, 4, 5}, [](auto, auto, auto z) { return z % 2U; });
    const Materials before = Support::materialsOf(*volume);
    {
        const SpinCoating engine(volume.get(), liquid, 5);
        // Taken here, or this would never return.
        EXPECT_EQ(Support::materialsOf(*volume), before);
        EXPECT_EQ(Support::nextMaterialsOf(*volume), before);
    }
    EXPECT_EQ(Support::materialsOf(*volume), before);
}

TEST(SpinCoatingTest, RunWaitsForBothArrays)
{
    PassRuns::expectToWaitForBothArrays(pour(3));
}

TEST(SpinCoatingTest, RunWritesNothingToTheLog)
{
    for (const int threads : {1, 2, 4}) {
        const Support::PoolThreads pool(threads);
        const auto volume = Support::makeVolume({12, 3, 4}, [](auto, auto, auto) { return 0U; });
        const Fakes::DebugLog log;
        pour(4)(*volume);
        EXPECT_TRUE(log.lines().empty());
    }
}
