#include "Model/Automaton/CutPlanes.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

using Model::Automaton::CutPlanes;
using Support::Grid;

namespace {

using Planes = std::vector<CutPlanes::Plane>;

Planes planesOf(const CutPlanes &cut)
{
    return {cut.planes().begin(), cut.planes().end()};
}

void expectPlanes(const CutPlanes &cut, const Planes &expected)
{
    const Planes actual = planesOf(cut);
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t plane = 0; plane < expected.size(); ++plane)
        for (unsigned i = 0; i < 4; ++i)
            EXPECT_NEAR(actual[plane][i], expected[plane][i], 1e-7)
                << "value " << i << " of plane " << plane;
}

} // namespace

TEST(CutPlanesTest, NoPlanesKeepEveryPoint)
{
    const CutPlanes cut;
    EXPECT_TRUE(cut.contains(0, 0, 0));
    EXPECT_TRUE(cut.contains(-1e30f, 1e30f, 5));
}

TEST(CutPlanesTest, PlaneIsDividedByTheLengthOfAllFourValues)
{
    CutPlanes cut;
    cut.add(1, 2, 4, 2); // 1 + 4 + 16 + 4
    expectPlanes(cut, {{0.2f, 0.4f, 0.8f, 0.4f}});
}

TEST(CutPlanesTest, PlaneThroughTheOriginIsDividedByTheLengthOfItsNormal)
{
    CutPlanes cut;
    cut.add(0, -3, 4, 0);
    expectPlanes(cut, {{0.0f, -0.6f, 0.8f, 0.0f}});
}

TEST(CutPlanesTest, PlaneWithoutADirectionIsDropped)
{
    CutPlanes cut;
    cut.add(0, 0, 0, 5);
    cut.add(0.0009f, 0, 0, 0); // its square is 8.1e-7
    cut.add(std::nanf(""), 0, 0, 1);
    EXPECT_TRUE(cut.planes().empty());
    cut.add(0.0011f, 0, 0, 0); // its square is 1.21e-6
    EXPECT_EQ(cut.planes().size(), 1U);
}

TEST(CutPlanesTest, EqualPlanesAreKeptOnce)
{
    CutPlanes cut;
    cut.add(1, 0, 0, 0);
    cut.add(1, 0, 0, 0);
    cut.add(7, 0, 0, 0); // the same when divided
    EXPECT_EQ(cut.planes().size(), 1U);
    cut.add(-1, 0, 0, 0);
    cut.add(0, 1, 0, 0);
    EXPECT_EQ(cut.planes().size(), 3U);
}

TEST(CutPlanesTest, EqualMeansThatNoValueDiffersByMoreThanAMillionth)
{
    for (unsigned value = 1; value < 4; ++value) {
        SCOPED_TRACE(value);
        CutPlanes cut;
        cut.add(1, 0, 0, 0);
        CutPlanes::Plane plane{1, 0, 0, 0};
        plane[value] = 0.9e-6f;
        cut.add(plane[0], plane[1], plane[2], plane[3]);
        EXPECT_EQ(cut.planes().size(), 1U);
        plane[value] = 1.1e-6f;
        cut.add(plane[0], plane[1], plane[2], plane[3]);
        EXPECT_EQ(cut.planes().size(), 2U);
    }
}

TEST(CutPlanesTest, PlanesStandInTheOrderOfTheirAdding)
{
    CutPlanes cut;
    cut.add(0, 0, 1, 0);
    cut.add(1, 0, 0, 0);
    cut.add(0, -1, 0, 0);
    expectPlanes(cut, {{0, 0, 1, 0}, {1, 0, 0, 0}, {0, -1, 0, 0}});
}

TEST(CutPlanesTest, ClearingDropsAllPlanes)
{
    CutPlanes cut;
    cut.add(1, 0, 0, 0);
    EXPECT_FALSE(cut.contains(1, 0, 0));
    cut.clear();
    EXPECT_TRUE(cut.planes().empty());
    EXPECT_TRUE(cut.contains(1, 0, 0));
}

TEST(CutPlanesTest, PointOnAPlaneIsKeptWithinAMillionth)
{
    CutPlanes cut;
    cut.add(1, 0, 0, 0);
    EXPECT_TRUE(cut.contains(-5, 0, 0));
    EXPECT_TRUE(cut.contains(0, 0, 0));
    EXPECT_TRUE(cut.contains(0.9e-6f, 0, 0));
    EXPECT_FALSE(cut.contains(1.1e-6f, 0, 0));
    EXPECT_FALSE(cut.contains(5, 0, 0));
    EXPECT_TRUE(cut.contains(0, 100, -100));
    EXPECT_FALSE(cut.contains(std::nanf(""), 0, 0));
}

TEST(CutPlanesTest, ToleranceIsMeasuredAfterTheDivision)
{
    CutPlanes cut;
    cut.add(1, 0, 0, -3); // divided by the root of 10
    EXPECT_TRUE(cut.contains(3.000002f, 0, 0));
    EXPECT_FALSE(cut.contains(3.000005f, 0, 0));
}

TEST(CutPlanesTest, PointHasToBeKeptByEveryPlane)
{
    CutPlanes cut;
    cut.add(-1, 0, 0, 2);
    cut.add(1, 0, 0, -5);
    cut.add(0, 0, 1, -1);
    EXPECT_TRUE(cut.contains(2, 9, 1));
    EXPECT_TRUE(cut.contains(5, 9, 1));
    EXPECT_FALSE(cut.contains(1.9f, 9, 1));
    EXPECT_FALSE(cut.contains(5.1f, 9, 1));
    EXPECT_FALSE(cut.contains(3, 9, 1.1f));
}

TEST(CutPlanesTest, LimitsOfAVolumeBecomeSixPlanes)
{
    const auto volume = Support::makeVolume(Grid{10, 20, 30}, std::vector<std::uint32_t>(6000));
    volume->painter().setCutLimits({3, 0, 4}, {4, 20, 5});
    const auto divided = [](const CutPlanes::Plane &plane) {
        CutPlanes::Plane result{};
        const float length = std::sqrt(1.0f + plane[3] * plane[3]);
        for (unsigned i = 0; i < 4; ++i)
            result[i] = plane[i] / length;
        return result;
    };
    Planes expected;
    for (const CutPlanes::Plane &plane : Planes{{-1, 0, 0, 3},
                                                {1, 0, 0, -4},
                                                {0, -1, 0, 0},
                                                {0, 1, 0, -20},
                                                {0, 0, -1, 4},
                                                {0, 0, 1, -5}})
        expected.push_back(divided(plane));
    expectPlanes(volume->painter().cutPlanes(), expected);
}

TEST(CutPlanesTest, NewVolumeHasThePlanesOfItsSizes)
{
    const auto volume = Support::makeVolume(Grid{10, 20, 30}, std::vector<std::uint32_t>(6000));
    const CutPlanes &cut = volume->painter().cutPlanes();
    ASSERT_EQ(cut.planes().size(), 6U);
    EXPECT_EQ(cut.planes().front(), (CutPlanes::Plane{-1, 0, 0, 0}));
    EXPECT_TRUE(cut.contains(0, 0, 0));
    EXPECT_TRUE(cut.contains(10, 20, 30));
    EXPECT_FALSE(cut.contains(10.01f, 20, 30));
    EXPECT_FALSE(cut.contains(10, 20.01f, 30));
    EXPECT_FALSE(cut.contains(10, 20, 30.01f));
    for (unsigned axis = 0; axis < 3; ++axis) {
        std::array<float, 3> point{};
        point[axis] = -0.01f;
        EXPECT_FALSE(cut.contains(point[0], point[1], point[2]));
    }
}

TEST(CutPlanesTest, SettingLimitsAgainStartsFromNoPlanes)
{
    const auto volume = Support::makeVolume(Grid{10, 20, 30}, std::vector<std::uint32_t>(6000));
    volume->painter().setCutLimits({3, 0, 4}, {4, 20, 5});
    const Planes before = planesOf(volume->painter().cutPlanes());
    volume->painter().setCutLimits({1, 2, 3}, {9, 19, 29});
    EXPECT_EQ(planesOf(volume->painter().cutPlanes()).size(), 6U);
    volume->painter().setCutLimits({3, 0, 4}, {4, 20, 5});
    EXPECT_EQ(planesOf(volume->painter().cutPlanes()), before);
    EXPECT_EQ(before.size(), 6U);
}

TEST(CutPlanesTest, LimitsOfOneCellKeepThatCellAndItsSides)
{
    const auto volume = Support::makeVolume(Grid{10, 20, 30}, std::vector<std::uint32_t>(6000));
    volume->painter().setCutLimits({9, 19, 29}, {10, 20, 30});
    const CutPlanes &cut = volume->painter().cutPlanes();
    EXPECT_TRUE(cut.contains(9, 19, 29));
    EXPECT_TRUE(cut.contains(9.5f, 19.5f, 29.5f));
    EXPECT_TRUE(cut.contains(10, 20, 30));
    EXPECT_FALSE(cut.contains(8.9f, 19.5f, 29.5f));
}

TEST(CutPlanesTest, PlanesTakeCellNumbersWhateverPositionAndCellSize)
{
    Model::Automaton::TotalVolume volume(4, 4, 4, 0.5f, 2.0f, 0.25f, Util::Vector3D(100, 0, 0),
                                         std::vector<std::uint32_t>(64));
    EXPECT_TRUE(volume.painter().cutPlanes().contains(4, 4, 4));
    EXPECT_FALSE(volume.painter().cutPlanes().contains(4, 8, 1));
    EXPECT_FALSE(volume.painter().cutPlanes().contains(101, 1, 1));
}
