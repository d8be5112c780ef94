#include "UI/ViewGrid.h"

#include <gtest/gtest.h>

namespace {

using Ui::ViewGrid;
using Util::Vector3D;

void expectSnapped(const ViewGrid &grid, const Vector3D &from, double x, double y)
{
    const Vector3D snapped = grid.snapped(from);
    EXPECT_EQ(snapped[0], x);
    EXPECT_EQ(snapped[1], y);
    EXPECT_EQ(snapped[2], static_cast<double>(grid.z));
}

TEST(ViewGridTest, SnapsToTheNearerMultipleAndToTheHeightOfTheGrid)
{
    ViewGrid grid;
    grid.z = 3.0f;
    expectSnapped(grid, Vector3D(14.9, -14.9, 50.0), 10.0, -10.0);
    expectSnapped(grid, Vector3D(15.1, -15.1, -50.0), 20.0, -20.0);
}

TEST(ViewGridTest, SnapsUpwardOnATie)
{
    expectSnapped(ViewGrid(), Vector3D(15.0, -15.0, 0.0), 20.0, -10.0);
}

TEST(ViewGridTest, LeavesAGridPointWhereItIs)
{
    expectSnapped(ViewGrid(), Vector3D(30.0, -40.0, 0.0), 30.0, -40.0);
}

TEST(ViewGridTest, ASpacingOfZeroLeavesThePositionInThePlane)
{
    ViewGrid grid;
    grid.spacing = 0.0f;
    expectSnapped(grid, Vector3D(1.25, -7.5, 9.0), 1.25, -7.5);
}

TEST(ViewGridTest, StartsWithASpacingOfTenInLightGrey)
{
    const ViewGrid grid;
    EXPECT_EQ(grid.spacing, 10.0f);
    EXPECT_EQ(grid.z, 0.0f);
    EXPECT_EQ(grid.color[0], 0.7);
    EXPECT_EQ(grid.color[1], 0.7);
    EXPECT_EQ(grid.color[2], 0.7);
}

} // namespace
