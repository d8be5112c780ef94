#include "Model/Automaton/CellCount.h"

#include "Model/Automaton/Voxel.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

using Model::Automaton::countCells;
using Model::Automaton::fitIntoMemory;

constexpr std::uint32_t Most = 4294967295;

TEST(CellCountTest, TheSizesAreMultipliedAsLongAsTheNumberHas32Bits)
{
    EXPECT_EQ(countCells(3, 4, 5), 60u);
    EXPECT_EQ(countCells(Most, 1, 1), Most);
    EXPECT_EQ(countCells(65535, 65537, 1), Most);
    EXPECT_EQ(countCells(1, 65537, 65535), Most);
    EXPECT_EQ(countCells(65536, 65536, 1), std::nullopt);
    EXPECT_EQ(countCells(2, 1, 2147483648u), std::nullopt);
    EXPECT_EQ(countCells(Most, Most, Most), std::nullopt);
}

TEST(CellCountTest, ASizeOfZeroMakesNoCellsHoweverLargeTheOthersAre)
{
    EXPECT_EQ(countCells(0, Most, Most), 0u);
    EXPECT_EQ(countCells(Most, 0, Most), 0u);
    EXPECT_EQ(countCells(Most, Most, 0), 0u);
}

TEST(CellCountTest, TwoArraysAndTheIdsMustFitIntoWhatTheMachineHas)
{
    const auto bytes = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) *
                       static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    EXPECT_TRUE(fitIntoMemory(0));
    EXPECT_TRUE(fitIntoMemory(bytes / 52));
    EXPECT_FALSE(fitIntoMemory(bytes / 52 + 1));
    EXPECT_FALSE(fitIntoMemory(std::uint64_t{3} * Most * Most));
}

} // namespace
