#include "Model/Geometry/UnitSphere.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

using Floats = std::vector<float>;
using Point = std::array<float, 3>;

} // namespace

TEST(UnitSphereTest, Has320TrianglesThatLookOutward)
{
    const Floats sphere = Model::Geometry::unitSphere();
    ASSERT_EQ(sphere.size(), 320U * 9);
    double volume = 0;
    for (std::size_t first = 0; first < sphere.size(); first += 9) {
        double corners[3][3];
        for (std::size_t i = 0; i < 9; ++i)
            corners[i / 3][i % 3] = sphere[first + i];
        for (const double(&corner)[3] : corners)
            EXPECT_NEAR(corner[0] * corner[0] + corner[1] * corner[1] + corner[2] * corner[2], 1.0,
                        1e-6);
        const auto cross = [&](unsigned i, unsigned j) {
            return corners[1][i] * corners[2][j] - corners[1][j] * corners[2][i];
        };
        const double six =
            corners[0][0] * cross(1, 2) + corners[0][1] * cross(2, 0) + corners[0][2] * cross(0, 1);
        EXPECT_GT(six, 0.0) << "triangle " << first / 9;
        volume += six / 6;
    }
    // A little less than the ball's 4.18879.
    EXPECT_GT(volume, 4.0);
    EXPECT_LT(volume, 4.18879);
}

TEST(UnitSphereTest, HasTheCornersOfATwiceDividedIcosahedron)
{
    const Floats sphere = Model::Geometry::unitSphere();
    std::vector<Point> corners;
    for (std::size_t i = 0; i < sphere.size(); i += 3) {
        const Point point{sphere[i], sphere[i + 1], sphere[i + 2]};
        const auto isSame = [&](const Point &other) {
            return std::abs(point[0] - other[0]) + std::abs(point[1] - other[1]) +
                       std::abs(point[2] - other[2]) <
                   1e-4f;
        };
        if (std::none_of(corners.begin(), corners.end(), isSame))
            corners.push_back(point);
    }
    // 12 corners, 30 edges and 20 triangles: 12 + 30, and once more 42 + 120.
    EXPECT_EQ(corners.size(), 162U);
}
