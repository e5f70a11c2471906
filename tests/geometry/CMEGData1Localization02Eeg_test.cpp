// EEG fiducials from a list of named points.
#include "megset/geometry/CMEGData1Localization02Eeg.h"

#include "megset/core/CMEGDatazk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData1Localization02Eeg_test {
namespace {

using ::testing::ElementsAre;

class EegFiducials : public ::testing::Test
{
protected:
    void SetUp() override { data.m_fidEegMeasure.m_nCurrentFid = 77; } // to be told apart from the working set

    int take(std::vector<NamedPoint> points)
    {
        CPtrArray list;
        for (NamedPoint& point : points)
            list.Add(&point);
        return data.setEegFiducialPts(&list);
    }
    std::vector<double> place(int point) const
    {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        data.m_fidWorkEeg.getFiducialPt(point)->getFidPos(x, y, z);
        return {x, y, z};
    }
    bool isMeasured() const { return data.m_fidEegMeasure == data.m_fidWorkEeg; }

    CMEGDatazk data;
    const std::vector<double> nowhere{0.0, 0.0, 0.0};
};

TEST_F(EegFiducials, AreTakenFromPointsWhoseNamesOccurInTheirs)
{
    EXPECT_EQ(data.getFidWorkEeg(), &data.m_fidWorkEeg);
    EXPECT_EQ(take({{"Cz", 1, 2, 3}, {"Nasion", 4, 5, 6}, {"LPA", 7, 8, 9}, {"RPA", 10, 11, 12}, {"Oz", 9, 9, 9}}), 4);
    EXPECT_EQ(place(CFiducial::nasion), (std::vector<double>{4, 5, 6}));
    EXPECT_EQ(place(CFiducial::leftEar), (std::vector<double>{7, 8, 9}));
    EXPECT_EQ(place(CFiducial::rightEar), (std::vector<double>{10, 11, 12}));
    EXPECT_EQ(place(CFiducial::inion), nowhere);
    EXPECT_EQ(place(CFiducial::vertex), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(data.m_fidWorkEeg.getTotalFound(), 4);
    EXPECT_TRUE(isMeasured());
}

TEST_F(EegFiducials, CaseDoesNotCountAndTheNameOnlyHasToOccurInside)
{
    data.m_fidWorkEeg.m_aFidPt[0].m_strFidName = "The Nasion of the head";
    EXPECT_EQ(take({{"nASIOn", 4, 5, 6}}), 1);
    EXPECT_EQ(place(CFiducial::nasion), (std::vector<double>{4, 5, 6}));
}

TEST_F(EegFiducials, ALongerNameThanTheirsDoesNotFit)
{
    data.m_fidWorkEeg.m_aFidPt[0].m_strFidName = "Nasion";
    EXPECT_EQ(take({{"Nasion point", 4, 5, 6}}), 0);
    EXPECT_EQ(place(CFiducial::nasion), nowhere);
}

TEST_F(EegFiducials, TheFirstPointThatFitsWins)
{
    EXPECT_EQ(take({{"ear", 1, 1, 1}, {"left", 2, 2, 2}, {"right", 3, 3, 3}}), 2);
    EXPECT_EQ(place(CFiducial::leftEar), (std::vector<double>{1, 1, 1}));
    EXPECT_EQ(place(CFiducial::rightEar), (std::vector<double>{1, 1, 1}));
}

TEST_F(EegFiducials, AnEmptyNameFitsEach)
{
    EXPECT_EQ(take({{"nasion", 1, 1, 1}, {"", 2, 2, 2}, {"cz", 3, 3, 3}}), 6);
    EXPECT_EQ(place(CFiducial::nasion), (std::vector<double>{1, 1, 1}));
    for (int i = 1; i < CFiducial::pointCount; ++i)
        EXPECT_EQ(place(i), (std::vector<double>{2, 2, 2})) << i;
    EXPECT_TRUE(isMeasured());
}

TEST_F(EegFiducials, TwoFoundStayInTheWorkingSetAlone)
{
    EXPECT_EQ(take({{"nasion", 1, 1, 1}, {"inion", 2, 2, 2}}), 2);
    EXPECT_EQ(place(CFiducial::nasion), (std::vector<double>{1, 1, 1}));
    EXPECT_EQ(place(CFiducial::inion), (std::vector<double>{2, 2, 2}));
    EXPECT_EQ(data.m_fidEegMeasure.m_nCurrentFid, 77);
    EXPECT_EQ(data.m_fidEegMeasure.getTotalFound(), 0);
}

TEST_F(EegFiducials, ThreeFoundMakeTheMeasuredSet)
{
    EXPECT_EQ(take({{"nasion", 1, 1, 1}, {"inion", 2, 2, 2}, {"vertex", 3, 3, 3}}), 3);
    EXPECT_TRUE(isMeasured());
    EXPECT_EQ(data.m_fidEegMeasure.getTotalFound(), 3);
}

TEST_F(EegFiducials, WithoutNamesFitAnEmptyNameAlone)
{
    for (CFiduciaryPtzk& point : data.m_fidWorkEeg.m_aFidPt)
        point.m_strFidName.Empty();
    EXPECT_EQ(take({{"nasion", 1, 1, 1}, {"n", 2, 2, 2}}), 0);
    EXPECT_EQ(take({{"nasion", 1, 1, 1}, {"", 2, 2, 2}}), 6);
}

TEST_F(EegFiducials, NullListsAndNullPointsAreNone)
{
    EXPECT_EQ(data.setEegFiducialPts(nullptr), 0);
    EXPECT_EQ(take({}), 0);
    NamedPoint nasion{"nasion", 1, 2, 3};
    CPtrArray list;
    list.Add(nullptr);
    list.Add(&nasion);
    list.Add(nullptr);
    EXPECT_EQ(data.setEegFiducialPts(&list), 1);
    EXPECT_EQ(place(CFiducial::nasion), (std::vector<double>{1, 2, 3}));
}

TEST_F(EegFiducials, AreSetUpOneByOneOrAllAtOnce)
{
    CFiducialzk expected;
    expected.setUpFiducialPoint(CFiducial::vertex);
    EXPECT_EQ(data.setupFiducialPtsEeg(CFiducial::vertex), 1);
    EXPECT_EQ(data.m_fidWorkEeg, expected);
    expected.setUpFiducialPoint(-1);
    EXPECT_EQ(data.setupFiducialPtsEeg(-1), 1);
    EXPECT_EQ(data.m_fidWorkEeg, expected);
    EXPECT_EQ(data.setupFiducialPtsEeg(6), 0);
    EXPECT_EQ(data.setupFiducialPtsEeg(-2), 0);
    EXPECT_EQ(data.m_fidWorkEeg, expected);
}

} // namespace
} // namespace megset::CMEGData1Localization02Eeg_test
