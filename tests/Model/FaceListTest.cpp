#include "Model/Geometry/FaceList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

using Model::Geometry::FaceList;
using Model::Geometry::QuadFace;

void append(FaceList &list, int first, int end)
{
    for (int i = first; i < end; ++i)
        list.append().color[0] = static_cast<float>(i);
}

std::vector<int> valuesOf(const FaceList &list)
{
    std::vector<int> values;
    list.forEach([&](const QuadFace &face) { values.push_back(static_cast<int>(face.color[0])); });
    return values;
}

std::vector<int> range(int first, int end)
{
    std::vector<int> values;
    for (int i = first; i < end; ++i)
        values.push_back(i);
    return values;
}

TEST(FaceListTest, QuadsStandInTheOrderOfAppending)
{
    FaceList list;
    EXPECT_TRUE(list.empty());
    append(list, 0, 5000);
    EXPECT_EQ(list.size(), 5000u);
    EXPECT_EQ(valuesOf(list), range(0, 5000));
}

TEST(FaceListTest, SplicingPutsTheOtherListBehindAndEmptiesIt)
{
    FaceList first;
    FaceList second;
    append(first, 0, 1500);
    append(second, 1500, 4000);
    first.splice(second);
    EXPECT_EQ(valuesOf(first), range(0, 4000));
    EXPECT_EQ(first.size(), 4000u);
    EXPECT_TRUE(second.empty());
    append(second, 7, 9);
    append(first, 4000, 4002);
    EXPECT_EQ(valuesOf(first), range(0, 4002));
    EXPECT_EQ(valuesOf(second), range(7, 9));
}

TEST(FaceListTest, AClearedListStartsAnewInItsOldBlocks)
{
    FaceList list;
    append(list, 0, 3000);
    std::vector<const QuadFace *> before;
    list.forEach([&](const QuadFace &face) { before.push_back(&face); });
    list.clear();
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(valuesOf(list).empty());
    append(list, 5, 7);
    EXPECT_EQ(valuesOf(list), range(5, 7));
    bool reused = false;
    list.forEach([&](const QuadFace &face) {
        reused |= std::find(before.begin(), before.end(), &face) != before.end();
    });
    EXPECT_TRUE(reused);
}

TEST(FaceListTest, SpareBlocksAreSharedOutAndComeBackBySplicing)
{
    FaceList list;
    append(list, 0, 10000);
    list.clear();
    FaceList parts[3];
    for (std::size_t part = 0; part < 3; ++part) {
        list.lendSpareBlocks(parts[part], part, 3);
        append(parts[part], static_cast<int>(part) * 2000, static_cast<int>(part + 1) * 2000);
    }
    for (FaceList &part : parts)
        list.splice(part);
    EXPECT_EQ(valuesOf(list), range(0, 6000));
}

} // namespace
