#include "megset/records/results/SourceGrid.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace megset::SourceGrid_test {
namespace {

SourceGrid smallGrid()
{
    SourceGrid grid;
    grid.m_nX = 3;
    grid.m_nY = 2;
    grid.m_nZ = 4;
    grid.m_dOrigin = {-10, 20, 30};
    grid.m_dStep = {5, 4, 2};
    return grid;
}

TEST(SourceGrid, XRunsFastest)
{
    const SourceGrid grid = smallGrid();
    EXPECT_EQ(grid.totalPoint(), 24);
    EXPECT_EQ(grid.pointIndex(1, 0, 0), 1);
    EXPECT_EQ(grid.pointIndex(0, 1, 0), 3);
    EXPECT_EQ(grid.pointIndex(0, 0, 1), 6);
    EXPECT_EQ(grid.pointIndex(2, 1, 3), 23);
}

TEST(SourceGrid, PointsOutsideHaveNoIndex)
{
    const SourceGrid grid = smallGrid();
    EXPECT_EQ(grid.pointIndex(3, 0, 0), -1);
    EXPECT_EQ(grid.pointIndex(0, -1, 0), -1);
    EXPECT_EQ(grid.pointIndex(0, 0, 4), -1);
    EXPECT_EQ(SourceGrid().pointIndex(0, 0, 0), -1);
}

TEST(SourceGrid, PositionsAreOriginPlusSteps)
{
    double x = 0;
    double y = 0;
    double z = 0;
    EXPECT_EQ(smallGrid().pointPosition(23, x, y, z), 1);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 24);
    EXPECT_EQ(z, 36);
    EXPECT_EQ(smallGrid().pointPosition(24, x, y, z), 0);
    EXPECT_EQ(smallGrid().pointPosition(-1, x, y, z), 0);
    EXPECT_EQ(SourceGrid().pointPosition(0, x, y, z), 0);
}

TEST(SourceGrid, PositionBelongsToTheNearestPoint)
{
    const SourceGrid grid = smallGrid();
    EXPECT_EQ(grid.pointAt(0.9, 24.1, 36.9), 23);
    EXPECT_EQ(grid.pointAt(-10, 20, 30), 0);
    EXPECT_EQ(grid.pointAt(-12.6, 20, 30), -1);
    EXPECT_EQ(grid.pointAt(2.5, 20, 30), -1);
}

TEST(SourceGrid, StrangePositionsAndStepsHaveNoPoint)
{
    SourceGrid grid = smallGrid();
    EXPECT_EQ(grid.pointAt(std::nan(""), 20, 30), -1);
    EXPECT_EQ(grid.pointAt(std::numeric_limits<double>::infinity(), 20, 30), -1);
    EXPECT_EQ(grid.pointAt(1e300, 20, 30), -1);
    grid.m_dStep = {0, 0, 0};
    EXPECT_EQ(grid.pointAt(-10, 20, 30), -1);
}

TEST(SourceGrid, NegativeAndHugeGridsHaveNoPoints)
{
    SourceGrid grid = smallGrid();
    grid.m_nY = -2;
    EXPECT_EQ(grid.totalPoint(), -1);
    EXPECT_EQ(grid.pointIndex(0, 0, 0), -1);
    grid.m_nX = grid.m_nY = grid.m_nZ = INT32_MAX;
    EXPECT_EQ(grid.totalPoint(), -1);
    EXPECT_EQ(grid.pointIndex(1, 1, 1), -1);
}

} // namespace
} // namespace megset::SourceGrid_test
