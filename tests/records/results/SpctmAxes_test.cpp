#include "megset/records/results/SpctmAxes.h"

#include <gtest/gtest.h>

namespace megset::SpctmAxes_test {
namespace {

TEST(SpctmAxes, TimePointIsStepTimesIndexBehindBeginAndEdge)
{
    SpctmAxes axes;
    axes.m_nTimePt = 4;
    axes.m_nTimeStep = 10;
    axes.m_nEdgePt = 5;
    axes.m_nDataBegin = 100;
    EXPECT_EQ(axes.getSpctmTimePt(0), 105);
    EXPECT_EQ(axes.getSpctmTimePt(3), 135);
    EXPECT_EQ(axes.getSpctmTimePt(4), 135);
    EXPECT_EQ(axes.getSpctmTimePt(-1), 105);
}

TEST(SpctmAxes, WithoutPointsTheIndexIsZero)
{
    SpctmAxes axes;
    axes.m_nDataBegin = 7;
    axes.m_dFreqBegin = 2;
    EXPECT_EQ(axes.getSpctmTimePt(9), 7);
    EXPECT_EQ(axes.getSpctmFreqHz(9), 2.0);
}

TEST(SpctmAxes, NegativeNumbersOfPointsAreLikeNone)
{
    SpctmAxes axes;
    axes.m_nTimePt = INT64_MIN;
    axes.m_nFreqPt = INT64_MIN;
    axes.m_nDataBegin = 7;
    axes.m_dFreqBegin = 2;
    EXPECT_EQ(axes.getSpctmTimePt(9), 7);
    EXPECT_EQ(axes.getSpctmFreqHz(9), 2.0);
}

TEST(SpctmAxes, FrequencyRisesLinearly)
{
    SpctmAxes axes;
    axes.m_nFreqPt = 3;
    axes.m_dFreqBegin = 4;
    axes.m_dFreqLinearStep = 0.5;
    EXPECT_EQ(axes.getSpctmFreqHz(0), 4.0);
    EXPECT_EQ(axes.getSpctmFreqHz(2), 5.0);
    EXPECT_EQ(axes.getSpctmFreqHz(3), 5.0);
}

TEST(SpctmAxes, ExtremeValuesWrapAround)
{
    SpctmAxes axes;
    axes.m_nTimePt = INT64_MAX;
    axes.m_nTimeStep = INT64_MAX;
    axes.m_nEdgePt = INT64_MAX;
    axes.m_nDataBegin = INT64_MIN;
    EXPECT_EQ(axes.getSpctmTimePt(1), INT64_MAX - 1);
}

} // namespace
} // namespace megset::SpctmAxes_test
