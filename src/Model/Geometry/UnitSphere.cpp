#include "Model/Geometry/UnitSphere.h"

#include <array>
#include <cmath>

namespace Model::Geometry {

namespace {

using Point = std::array<double, 3>;

constexpr unsigned Subdivisions = 2;

/// The edges of three golden rectangles that stand upright on each other.
constexpr double A = 0.525731112119133606;
constexpr double B = 0.850650808352039932;
constexpr Point Corners[12] = {
    {-A, 0, B}, {A, 0, B},   {-A, 0, -B}, {A, 0, -B}, {0, B, A},  {0, B, -A},
    {0, -B, A}, {0, -B, -A}, {B, A, 0},   {-B, A, 0}, {B, -A, 0}, {-B, -A, 0},
};
/// Clockwise seen from outside.
constexpr unsigned Triangles[20][3] = {
    {0, 4, 1}, {0, 9, 4},  {9, 5, 4},  {4, 5, 8},  {4, 8, 1},  {8, 10, 1}, {8, 3, 10},
    {5, 3, 8}, {5, 2, 3},  {2, 7, 3},  {7, 10, 3}, {7, 6, 10}, {7, 11, 6}, {11, 0, 6},
    {0, 1, 6}, {6, 1, 10}, {9, 0, 11}, {9, 11, 2}, {9, 2, 5},  {7, 2, 11},
};

Point middle(const Point &left, const Point &right)
{
    Point sum{};
    double square = 0.0;
    for (unsigned axis = 0; axis < 3; ++axis) {
        sum[axis] = left[axis] + right[axis];
        square += sum[axis] * sum[axis];
    }
    for (double &coordinate : sum)
        coordinate /= std::sqrt(square);
    return sum;
}

void appendTriangle(std::vector<float> &floats, const Point &first, const Point &second,
                    const Point &third, unsigned subdivisions)
{
    if (subdivisions == 0) {
        // The other way round, which is how the front comes outside.
        for (const Point *point : {&third, &second, &first})
            for (const double coordinate : *point)
                floats.push_back(static_cast<float>(coordinate));
        return;
    }
    const Point a = middle(first, second);
    const Point b = middle(second, third);
    const Point c = middle(third, first);
    appendTriangle(floats, first, a, c, subdivisions - 1);
    appendTriangle(floats, second, b, a, subdivisions - 1);
    appendTriangle(floats, third, c, b, subdivisions - 1);
    appendTriangle(floats, a, b, c, subdivisions - 1);
}

} // namespace

std::vector<float> unitSphere()
{
    std::vector<float> floats;
    for (const unsigned(&corners)[3] : Triangles)
        appendTriangle(floats, Corners[corners[0]], Corners[corners[1]], Corners[corners[2]],
                       Subdivisions);
    return floats;
}

} // namespace Model::Geometry
