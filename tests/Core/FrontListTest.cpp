#include "Core/Operations/CellularProcess/FrontList.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <tuple>

namespace {

using Core::Operations::FrontList;
using Core::Operations::FrontWord;
using Core::Operations::PlaneCell;

using Cell = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;

void add(FrontList &list, const Cell &cell)
{
    const auto &[x, y, z] = cell;
    list.add(x, y, z / 64, FrontWord{1} << z % 64);
}

/// All cells in the order in which the list gives them.
std::vector<Cell> cellsOf(const FrontList &list)
{
    std::vector<Cell> all;
    for (std::uint32_t x = list.firstX(); x < list.endX(); ++x) {
        std::vector<PlaneCell> plane;
        list.appendCells(x, plane);
        for (const PlaneCell &cell : plane)
            all.emplace_back(x, cell.y, cell.z);
    }
    return all;
}

TEST(FrontListTest, CellsComeOutAscendingAndOnceHoweverTheyWereAdded)
{
    const unsigned seed = 20;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (const std::uint32_t sizeZ : {1u, 63u, 64u, 65u, 130u}) {
        FrontList list(3, 5, 90, sizeZ);
        std::set<Cell> wanted;
        for (int i = 0; i < 400; ++i) {
            const Cell cell(3 + random() % 5, random() % 90, random() % sizeZ);
            wanted.insert(cell);
            add(list, cell);
            add(list, cell);
        }
        EXPECT_EQ(cellsOf(list), std::vector<Cell>(wanted.begin(), wanted.end()));
        list.clear();
        EXPECT_TRUE(cellsOf(list).empty());
        add(list, {4, 2, 0});
        EXPECT_EQ(cellsOf(list), (std::vector<Cell>{{4, 2, 0}}));
    }
}

TEST(FrontListTest, TakingMovesTheCellsAndLeavesNothing)
{
    FrontList list(0, 6, 10, 70);
    FrontList outbound(5, 1, 10, 70);
    add(list, {5, 1, 1});
    add(outbound, {5, 1, 1});
    add(outbound, {5, 9, 69});
    list.take(outbound);
    EXPECT_EQ(cellsOf(list), (std::vector<Cell>{{5, 1, 1}, {5, 9, 69}}));
    EXPECT_TRUE(cellsOf(outbound).empty());
}

TEST(FrontListTest, AnEmptyWordAddsNothing)
{
    FrontList list(0, 1, 1, 64);
    list.add(0, 0, 0, 0);
    EXPECT_TRUE(cellsOf(list).empty());
}

} // namespace
