#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Core::Operations::DistanceFront;
using Support::Grid;

std::uint64_t stepCount(float distance, float cellSizeZ = 1.0f)
{
    const Grid grid{1, 1, 1, 1.0f, 1.0f, cellSizeZ};
    const auto volume =
        Support::makeVolume(grid, [](std::uint32_t, std::uint32_t, std::uint32_t) { return 0u; });
    return DistanceFront(volume.get()).stepCount(distance);
}

TEST(DistanceFrontTest, TenUnitsOnCellsOfOneTakeSeventeenSteps)
{
    EXPECT_EQ(stepCount(10.0f), 17u);
}

TEST(DistanceFrontTest, TenUnitsOnCellsOfThirtyFiveHundredthsTakeFortyNineSteps)
{
    EXPECT_EQ(stepCount(10.0f, 0.35f), 49u);
}

TEST(DistanceFrontTest, ADistanceIsRoundedUpToWholeCellsFirst)
{
    EXPECT_EQ(stepCount(0.01f), 1u);
    EXPECT_EQ(stepCount(1.0f), 1u);
    EXPECT_EQ(stepCount(1.01f), 3u);
    EXPECT_EQ(stepCount(3.0f), 5u);
}

TEST(DistanceFrontTest, ADistanceThatIsZeroNegativeOrNotANumberTakesNoStep)
{
    EXPECT_EQ(stepCount(0.0f), 0u);
    EXPECT_EQ(stepCount(-5.0f), 0u);
    EXPECT_EQ(stepCount(std::numeric_limits<float>::quiet_NaN()), 0u);
}

TEST(DistanceFrontTest, AStepCountBeyondThirtyTwoBitsIsNotCut)
{
    // The dialogs' largest distance on flat cells; the smallest edge is 0.25, which divides
    // exactly.
    EXPECT_EQ(stepCount(1e9f, 0.25f), 6828427124u);
}

TEST(DistanceFrontTest, TheStepFactorIsItsExpressionInDouble)
{
    // The decimal value is that of the expression to the last place but one.
    const volatile double two = 2.0;
    EXPECT_EQ(Core::Operations::stepFactor, (std::sqrt(two) + 1.0) / std::sqrt(two));
    EXPECT_DOUBLE_EQ(Core::Operations::stepFactor, 1.7071067811865475);
}

TEST(DistanceFrontTest, BothLocksAreGivenBackAtTheEndOfARun)
{
    const auto volume = Support::makeVolume(
        Grid{2, 2, 2}, [](std::uint32_t, std::uint32_t, std::uint32_t) { return 0u; });
    DistanceFront front(volume.get());
    {
        const Core::Operations::TakenVoxels taken = front.takeVoxels();
    }
    EXPECT_NE(volume->voxels(), nullptr);
    volume->releaseVoxels();
    EXPECT_NE(volume->nextVoxels(), nullptr);
    volume->releaseNextVoxels();
}

} // namespace
