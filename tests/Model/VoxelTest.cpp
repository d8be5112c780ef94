#include "Model/Automaton/Voxel.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <type_traits>

using Model::Automaton::Voxel;

namespace {

/// All fields, in declared order.
std::array<double, 6> fields(const Voxel &voxel)
{
    return {double(voxel.material()),  double(voxel.reached()),   double(voxel.distanceX()),
            double(voxel.distanceY()), double(voxel.distanceZ()), double(voxel.atoms())};
}

using Fields = std::array<double, 6>;

} // namespace

TEST(VoxelTest, StartsEmptyAndAtRest)
{
    EXPECT_EQ(fields(Voxel()), (Fields{0, 0, 0, 0, 0, 0}));
}

TEST(VoxelTest, StartsWithItsMaterialWithoutAtoms)
{
    EXPECT_EQ(fields(Voxel(7)), (Fields{7, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Voxel(std::numeric_limits<std::uint32_t>::max()).material(), 4294967295U);
}

TEST(VoxelTest, EachSetterWritesItsFieldOnly)
{
    struct Step
    {
        std::function<void(Voxel &)> set;
        Fields expected;
    };
    const std::array<Step, 6> steps{{
        {[](Voxel &voxel) { voxel.setMaterial(9); }, {9, 0, 0, 0, 0, 0}},
        {[](Voxel &voxel) { voxel.setReached(true); }, {3, 1, 0, 0, 0, 0}},
        {[](Voxel &voxel) { voxel.setDistanceX(1.5f); }, {3, 0, 1.5, 0, 0, 0}},
        {[](Voxel &voxel) { voxel.setDistanceY(-2.5f); }, {3, 0, 0, -2.5, 0, 0}},
        {[](Voxel &voxel) { voxel.setDistanceZ(3.5f); }, {3, 0, 0, 0, 3.5, 0}},
        {[](Voxel &voxel) { voxel.setAtoms(8); }, {3, 0, 0, 0, 0, 8}},
    }};
    for (std::size_t i = 0; i < steps.size(); ++i) {
        SCOPED_TRACE(i);
        Voxel voxel(3);
        steps[i].set(voxel);
        EXPECT_EQ(fields(voxel), steps[i].expected);
    }
}

TEST(VoxelTest, OneSetterWritesTheThreeDistances)
{
    Voxel voxel(3);
    voxel.setDistance(1.5f, 2.5f, -3.5f);
    EXPECT_EQ(fields(voxel), (Fields{3, 0, 1.5, 2.5, -3.5, 0}));
}

TEST(VoxelTest, FrontValuesAreReadAndWrittenAsAWhole)
{
    Voxel voxel(3);
    voxel.setAtoms(8);
    voxel.setFront({true, 1.5f, 2.5f, -3.5f});
    EXPECT_EQ(fields(voxel), (Fields{3, 1, 1.5, 2.5, -3.5, 8}));

    voxel.setReached(false);
    voxel.setDistance(4.5f, 5.5f, 6.5f);
    EXPECT_FALSE(voxel.front().reached);
    EXPECT_EQ(voxel.front().distanceX, 4.5f);
    EXPECT_EQ(voxel.front().distanceY, 5.5f);
    EXPECT_EQ(voxel.front().distanceZ, 6.5f);
}

TEST(VoxelTest, ReachedCanBeTakenBack)
{
    Voxel voxel;
    voxel.setReached(true);
    EXPECT_TRUE(voxel.reached());
    voxel.setReached(false);
    EXPECT_FALSE(voxel.reached());
}

TEST(VoxelTest, SettersCheckNothing)
{
    Voxel voxel;
    voxel.setMaterial(std::numeric_limits<std::uint32_t>::max());
    voxel.setAtoms(std::numeric_limits<std::int32_t>::min());
    voxel.setDistance(std::numeric_limits<float>::max(), std::numeric_limits<float>::infinity(),
                      -std::numeric_limits<float>::denorm_min());
    EXPECT_EQ(voxel.material(), 4294967295U);
    EXPECT_EQ(voxel.atoms(), -2147483647 - 1);
    EXPECT_EQ(voxel.distanceX(), std::numeric_limits<float>::max());
    EXPECT_EQ(voxel.distanceY(), std::numeric_limits<float>::infinity());
    EXPECT_EQ(voxel.distanceZ(), -std::numeric_limits<float>::denorm_min());
}

TEST(VoxelTest, IsAPlainValueOfTwentyFourBytes)
{
    // Four bytes of id, one mark rounded up to four, three floats and a count.
    EXPECT_EQ(sizeof(Voxel), 24U);
    EXPECT_FALSE(std::is_polymorphic_v<Voxel>);
    EXPECT_TRUE(std::is_standard_layout_v<Voxel>);
    EXPECT_TRUE(std::is_trivially_copyable_v<Voxel>);
    EXPECT_TRUE(std::is_trivially_destructible_v<Voxel>);
}
