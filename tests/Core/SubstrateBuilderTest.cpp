#include "Core/Operations/SubstrateBuilder.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

using Core::Operations::SubstrateBuilder;
using Model::Automaton::TotalVolume;
using Util::Vector3D;

namespace {

using Triple = std::array<std::uint32_t, 3>;
using Cells = std::vector<std::uint32_t>;

Support::Grid gridOf(const Triple &total)
{
    return {total[0], total[1], total[2]};
}

boost::shared_ptr<TotalVolume> box(std::uint32_t material, const Triple &total,
                                   const Triple &displacement, const Triple &size)
{
    return SubstrateBuilder(material, total[0], total[1], total[2], Vector3D(), displacement[0],
                            displacement[1], displacement[2], size[0], size[1], size[2])
        .build();
}

boost::shared_ptr<TotalVolume> sphere(std::uint32_t material, const Triple &total,
                                      const Triple &center, std::uint32_t radius)
{
    return SubstrateBuilder(material, total[0], total[1], total[2], Vector3D(), center[0],
                            center[1], center[2], radius)
        .build();
}

/// The rule for boxes, cell by cell.
Cells boxCells(std::uint32_t material, const Triple &total, const Triple &displacement,
               const Triple &size)
{
    return Support::materialsBy(
        gridOf(total), [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            const Triple cell{x, y, z};
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const std::uint64_t end = std::uint64_t{displacement[axis]} + size[axis];
                if (cell[axis] < displacement[axis] || cell[axis] >= end)
                    return 0U;
            }
            return material;
        });
}

/// The rule for spheres in whole numbers: exact where no square leaves 24 bits.
Cells smallSphereCells(std::uint32_t material, const Triple &total, const Triple &center,
                       std::int64_t squaredRadius)
{
    return Support::materialsBy(
        gridOf(total), [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            const std::int64_t dx = std::int64_t{x} - std::int64_t{center[0]};
            const std::int64_t dy = std::int64_t{y} - std::int64_t{center[1]};
            const std::int64_t dz = std::int64_t{z} - std::int64_t{center[2]};
            return dx * dx + dy * dy + dz * dz <= squaredRadius ? material : 0U;
        });
}

float difference(std::uint32_t cell, std::uint32_t center)
{
    return static_cast<float>(static_cast<std::int32_t>(cell - center)) * 1.0F;
}

/// The rule for spheres in its own arithmetic: unsigned, then signed 32-bit, then 32-bit float.
Cells sphereCells(std::uint32_t material, const Triple &total, const Triple &center,
                  std::uint32_t radius)
{
    const float limit = static_cast<float>(static_cast<std::int32_t>(radius * radius)) * 1.0F;
    return Support::materialsBy(gridOf(total),
                                [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                                    const float dx = difference(x, center[0]);
                                    const float dy = difference(y, center[1]);
                                    const float dz = difference(z, center[2]);
                                    const float squaredX = dx * dx;
                                    const float squaredY = dy * dy;
                                    const float squaredZ = dz * dz;
                                    const float inPlane = squaredX + squaredY;
                                    const float sum = inPlane + squaredZ;
                                    return limit >= sum ? material : 0U;
                                });
}

std::size_t filled(const Cells &cells)
{
    return cells.size() -
           static_cast<std::size_t>(std::count(cells.begin(), cells.end(), std::uint32_t{0}));
}

/// Both arrays of the volume; where they differ from the expectation, says where first.
::testing::AssertionResult holds(TotalVolume &volume, const Cells &expected)
{
    for (const Cells &cells : {Support::materialsOf(volume), Support::nextMaterialsOf(volume)}) {
        if (cells == expected)
            continue;
        if (cells.size() != expected.size())
            return ::testing::AssertionFailure() << cells.size() << " cells";
        const auto index = static_cast<std::size_t>(
            std::mismatch(cells.begin(), cells.end(), expected.begin()).first - cells.begin());
        return ::testing::AssertionFailure()
               << "cell (" << index / volume.sizeZ() / volume.sizeY() << ", "
               << index / volume.sizeZ() % volume.sizeY() << ", " << index % volume.sizeZ()
               << ") holds " << cells[index] << " and not " << expected[index];
    }
    return ::testing::AssertionSuccess();
}

class SubstrateBuilderTest : public ::testing::Test
{
protected:
    std::uint32_t pick(std::uint32_t first, std::uint32_t last)
    {
        return std::uniform_int_distribution<std::uint32_t>(first, last)(m_random);
    }
    Triple pickTriple(std::uint32_t first, std::uint32_t last)
    {
        const std::uint32_t x = pick(first, last);
        const std::uint32_t y = pick(first, last);
        return {x, y, pick(first, last)};
    }
    static std::string text(const Triple &triple)
    {
        return "(" + std::to_string(triple[0]) + ", " + std::to_string(triple[1]) + ", " +
               std::to_string(triple[2]) + ")";
    }

    std::mt19937 m_random;
};

} // namespace

TEST_F(SubstrateBuilderTest, VolumeHasTheSizesThePositionAndCellsOfOneUnit)
{
    const auto expect = [](TotalVolume &volume) {
        EXPECT_EQ(volume.objectType(), static_cast<std::uint32_t>(Model::Object::TotalVolumeType));
        EXPECT_EQ(volume.sizeX(), 4U);
        EXPECT_EQ(volume.sizeY(), 5U);
        EXPECT_EQ(volume.sizeZ(), 6U);
        EXPECT_EQ(volume.cellSizeX(), 1.0F);
        EXPECT_EQ(volume.cellSizeY(), 1.0F);
        EXPECT_EQ(volume.cellSizeZ(), 1.0F);
        EXPECT_EQ(volume.position()[0], -1.5);
        EXPECT_EQ(volume.position()[1], 1e9);
        EXPECT_EQ(volume.position()[2], 0.125);
    };
    const Vector3D position(-1.5, 1e9, 0.125);
    expect(*SubstrateBuilder(1, 4, 5, 6, position, 0, 0, 0, 1, 1, 1).build());
    expect(*SubstrateBuilder(1, 4, 5, 6, position, 0, 0, 0, 1).build());
}

TEST_F(SubstrateBuilderTest, BoxFillsItsCellsAndNoOthers)
{
    const auto volume = box(7, {3, 4, 5}, {1, 0, 2}, {1, 3, 2});
    Cells expected(60, 0);
    for (const std::uint32_t y : {0U, 1U, 2U}) {
        for (const std::uint32_t z : {2U, 3U})
            expected[(4 * 1 + y) * 5 + z] = 7;
    }
    EXPECT_TRUE(holds(*volume, expected));
}

TEST_F(SubstrateBuilderTest, DefaultDialogValuesFillTheThirtyLowestLayers)
{
    const auto volume = box(1, {100, 100, 80}, {0, 0, 0}, {100, 100, 30});
    EXPECT_TRUE(holds(*volume, Support::materialsBy({100, 100, 80}, [](auto, auto, auto z) {
        return z < 30 ? 1U : 0U;
    })));
}

TEST_F(SubstrateBuilderTest, SizeBeyondTheVolumeIsClipped)
{
    const std::uint32_t most = 999999999;
    EXPECT_TRUE(holds(*box(1, {4, 5, 6}, {0, 0, 0}, {most, most, most}), Cells(120, 1)));
    EXPECT_TRUE(holds(*box(1, {4, 5, 6}, {1, 2, 3}, {most, most, most}),
                      boxCells(1, {4, 5, 6}, {1, 2, 3}, {4, 5, 6})));
}

TEST_F(SubstrateBuilderTest, DisplacementBeyondTheVolumeLeavesItEmpty)
{
    const std::uint32_t most = 999999999;
    for (const Triple &displacement :
         {Triple{4, 0, 0}, Triple{0, 5, 0}, Triple{0, 0, 6}, Triple{most, most, most}}) {
        SCOPED_TRACE(text(displacement));
        EXPECT_TRUE(holds(*box(1, {4, 5, 6}, displacement, {10, 10, 10}), Cells(120, 0)));
    }
    EXPECT_TRUE(holds(*box(1, {4, 5, 6}, {most, most, most}, {most, most, most}), Cells(120, 0)));
}

TEST_F(SubstrateBuilderTest, BoxWithoutExtentLeavesTheVolumeEmpty)
{
    for (const Triple &size : {Triple{0, 5, 6}, Triple{4, 0, 6}, Triple{4, 5, 0}})
        EXPECT_TRUE(holds(*box(1, {4, 5, 6}, {0, 0, 0}, size), Cells(120, 0))) << text(size);
}

TEST_F(SubstrateBuilderTest, AnyMaterialIdIsStoredAsItStands)
{
    for (const std::uint32_t material : {0U, 2U, 4711U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(holds(*box(material, {2, 2, 2}, {0, 0, 0}, {2, 2, 1}),
                          boxCells(material, {2, 2, 2}, {0, 0, 0}, {2, 2, 1})));
        EXPECT_TRUE(holds(*sphere(material, {2, 2, 2}, {0, 0, 0}, 1),
                          smallSphereCells(material, {2, 2, 2}, {0, 0, 0}, 1)));
    }
}

TEST_F(SubstrateBuilderTest, RandomBoxesFollowTheRule)
{
    for (unsigned seed = 1; seed <= 300; ++seed) {
        m_random.seed(seed);
        const Triple total = pickTriple(1, 12);
        const Triple displacement = pickTriple(0, 14);
        const Triple size = pickTriple(0, 16);
        const std::uint32_t material = pick(1, 20);
        SCOPED_TRACE("seed " + std::to_string(seed) + ": total " + text(total) + ", displacement " +
                     text(displacement) + ", size " + text(size));
        ASSERT_TRUE(holds(*box(material, total, displacement, size),
                          boxCells(material, total, displacement, size)));
    }
}

TEST_F(SubstrateBuilderTest, SphereWithItsCentreOnTheOriginYieldsOneOctant)
{
    const auto volume = sphere(1, {100, 100, 80}, {0, 0, 0}, 50);
    EXPECT_TRUE(holds(*volume, smallSphereCells(1, {100, 100, 80}, {0, 0, 0}, 2500)));
}

TEST_F(SubstrateBuilderTest, SphereReachesExactlyItsRadiusAlongEachAxis)
{
    const std::uint32_t radius = 5;
    const Triple total{13, 13, 13};
    const Triple center{6, 6, 6};
    const Cells cells = Support::materialsOf(*sphere(3, total, center, radius));
    const Support::Grid grid = gridOf(total);
    for (std::uint32_t i = 0; i < 13; ++i) {
        const std::uint32_t expected = i >= 1 && i <= 11 ? 3 : 0;
        EXPECT_EQ(cells[grid.index(i, 6, 6)], expected) << i;
        EXPECT_EQ(cells[grid.index(6, i, 6)], expected) << i;
        EXPECT_EQ(cells[grid.index(6, 6, i)], expected) << i;
    }
    // 3, 4, 0 is as far away as the poles.
    EXPECT_EQ(cells[grid.index(9, 10, 6)], 3U);
    EXPECT_EQ(cells[grid.index(9, 10, 7)], 0U);
}

TEST_F(SubstrateBuilderTest, SphereOfRadiusZeroIsItsCentreCell)
{
    Cells expected(27, 0);
    expected[gridOf({3, 3, 3}).index(1, 2, 0)] = 4;
    EXPECT_TRUE(holds(*sphere(4, {3, 3, 3}, {1, 2, 0}, 0), expected));
}

TEST_F(SubstrateBuilderTest, RandomSpheresFollowTheRule)
{
    for (unsigned seed = 1; seed <= 120; ++seed) {
        m_random.seed(seed);
        const Triple total = pickTriple(1, 30);
        const Triple center = seed % 10 == 0 ? Triple{0, 0, 0} : pickTriple(0, 45);
        const std::uint32_t radius = pick(1, 40);
        const std::uint32_t material = pick(1, 20);
        SCOPED_TRACE("seed " + std::to_string(seed) + ": total " + text(total) + ", centre " +
                     text(center) + ", radius " + std::to_string(radius));
        const auto volume = sphere(material, total, center, radius);
        ASSERT_TRUE(holds(
            *volume, smallSphereCells(material, total, center, std::int64_t{radius} * radius)));
        ASSERT_TRUE(holds(*volume, sphereCells(material, total, center, radius)));
    }
}

TEST_F(SubstrateBuilderTest, SquareOfTheRadiusWrapsInUnsignedThirtyTwoBits)
{
    const Triple total{9, 8, 7};
    const Triple center{4, 3, 3};
    // 65536 squared is 2^32: what is left is 0, the centre cell.
    Cells expected(504, 0);
    expected[gridOf(total).index(4, 3, 3)] = 2;
    EXPECT_TRUE(holds(*sphere(2, total, center, 65536), expected));
    // (2^32 - 3) squared leaves 9, (2^31 + 2) squared leaves 4.
    EXPECT_TRUE(
        holds(*sphere(2, total, center, 4294967293U), smallSphereCells(2, total, center, 9)));
    EXPECT_TRUE(
        holds(*sphere(2, total, center, 2147483650U), smallSphereCells(2, total, center, 4)));
    // 65537 squared leaves 131073, which is all of this volume.
    EXPECT_TRUE(holds(*sphere(2, total, center, 65537), Cells(504, 2)));
}

TEST_F(SubstrateBuilderTest, SquareOfTheRadiusBeyondThirtyOneBitsIsNegativeAndFillsNothing)
{
    const Triple total{9, 8, 7};
    const Triple center{4, 3, 3};
    EXPECT_TRUE(holds(*sphere(2, total, center, 46340), Cells(504, 2)));
    for (const std::uint32_t radius : {46341U, 50000U, 65535U})
        EXPECT_TRUE(holds(*sphere(2, total, center, radius), Cells(504, 0))) << radius;
}

TEST_F(SubstrateBuilderTest, CentreBeyondThirtyOneBitsIsANegativePlace)
{
    const Triple total{6, 6, 6};
    const std::uint32_t minusTwo = 0xFFFFFFFEU;
    Cells expected = Support::materialsBy(gridOf(total), [](auto x, auto y, auto z) {
        const std::uint32_t fromX = x + 2;
        return fromX * fromX + y * y + z * z <= 16 ? 5U : 0U;
    });
    EXPECT_TRUE(holds(*sphere(5, total, {minusTwo, 0, 0}, 4), expected));
}

TEST_F(SubstrateBuilderTest, FarCentresAreMeasuredInThirtyTwoBitFloat)
{
    std::size_t rounded = 0;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        m_random.seed(seed);
        const Triple total = pickTriple(10, 20);
        const Triple center = pickTriple(3000, 20000);
        // A radius whose surface passes through the volume.
        const double x = center[0] - total[0] / 2.0;
        const double y = center[1] - total[1] / 2.0;
        const double z = center[2] - total[2] / 2.0;
        const auto radius = static_cast<std::uint32_t>(std::sqrt(x * x + y * y + z * z));
        SCOPED_TRACE("seed " + std::to_string(seed) + ": total " + text(total) + ", centre " +
                     text(center) + ", radius " + std::to_string(radius));
        const Cells expected = sphereCells(1, total, center, radius);
        ASSERT_TRUE(holds(*sphere(1, total, center, radius), expected));
        ASSERT_GT(filled(expected), 0U);
        ASSERT_LT(filled(expected), expected.size());
        rounded += expected != smallSphereCells(1, total, center, std::int64_t{radius} * radius);
    }
    // Without cases where whole numbers decide otherwise, this would say nothing.
    EXPECT_GT(rounded, 0U);
}

TEST_F(SubstrateBuilderTest, EachVolumeIsAnObjectOfItsOwn)
{
    SubstrateBuilder builder(1, 3, 3, 3, Vector3D(), 0, 0, 0, 3, 3, 1);
    const auto first = builder.build();
    const auto second = builder.build();
    EXPECT_NE(first, second);
    EXPECT_NE(first->id(), second->id());
    EXPECT_EQ(Support::materialsOf(*first), Support::materialsOf(*second));
}
