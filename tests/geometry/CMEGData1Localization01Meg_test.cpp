// Frames of the MEG sensors, and the fiducials that go with them.
#include "megset/geometry/CMEGData1Localization01Meg.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <filesystem>

namespace megset::CMEGData1Localization01Meg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Point = std::vector<double>;

// Makes a channel one of a sensor with two coils: the first 1, 2, 3 in the dewar and 4, 5, 6 in the head, the second a
// baseline of 50 above, both shifted by `shift` along x. A new sensor works in the head.
void giveSensor(CMDChannelzk& channel, int type, double shift)
{
    ASSERT_NE(channel.ensureMEGSensor(), nullptr);
    channel.m_nChannelType = type;
    const double dewar[] = {1.0 + shift, 2.0, 3.0, 1.0 + shift, 52.0, 3.0};
    const double dewarDir[] = {0.0, 1.0, 0.0, 0.0, 1.0, 0.0};
    const double head[] = {4.0 + shift, 5.0, 6.0, 4.0 + shift, 5.0, 56.0};
    const double headDir[] = {0.0, 0.0, 1.0, 0.0, 0.0, 1.0};
    ASSERT_EQ(
        channel.getMEGSensorzk()->initSensorBasic(1, "SQ", "Gradiometer", 6, nullptr, dewar, dewarDir, head, headDir),
        1);
}

Point workPlace(const CMDChannelzk& channel, int coil)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    channel.getMEGSensorzk()->getSnsPos(-1, coil, x, y, z);
    return {x, y, z};
}

// Fiducials that differ in their first point alone.
CFiducialzk fiducials(double x)
{
    CFiducialzk set;
    set.m_aFidPt[0].setFidPos(x, 0.0, 0.0);
    return set;
}

constexpr double dewarStandard = 10.0;
constexpr double dewarMeasured = 20.0;
constexpr double headMeasured = 30.0;
constexpr double formerWork = 40.0;

void giveFiducials(CMEGDatazk& data)
{
    *data.getFidDewarStd() = fiducials(dewarStandard);
    *data.getFidDewarMsr() = fiducials(dewarMeasured);
    *data.getFidHeadMsr() = fiducials(headMeasured);
    *data.getFidWorkMeg() = fiducials(formerWork);
}

// Which of the sets the working one is, by its first point.
double working(CMEGDatazk& data)
{
    return data.getFidWorkMeg()->m_aFidPt[0].m_dFidPos[0];
}

TEST(HeadFiducials, LieInTheHeadLocalization)
{
    CMEGDatazk data;
    CHeadLocalizationzk* place = data.getHeadLocationDataset();
    EXPECT_EQ(place, &data.m_headLocalization);
    EXPECT_EQ(data.getFidDewarStd(), &place->m_fidDewarStd);
    EXPECT_EQ(data.getFidDewarMsr(), &place->m_fidDewarMsr);
    EXPECT_EQ(data.getFidHeadMsr(), &place->m_fidHeadMsr);
    EXPECT_EQ(data.getFidWorkMeg(), &place->m_fidWorkMeg);
    EXPECT_EQ(data.headCoilChannelName(), "Unknown");
}

TEST(HeadFiducials, AreTakenToWorkFromEachSet)
{
    CMEGDatazk data;
    giveFiducials(data);
    EXPECT_EQ(data.setFidDewarMeasure2work(), 1);
    EXPECT_EQ(*data.getFidWorkMeg(), *data.getFidDewarMsr());
    EXPECT_EQ(data.setFidDewarStandard2work(), 1);
    EXPECT_EQ(*data.getFidWorkMeg(), *data.getFidDewarStd());
    EXPECT_EQ(data.setFidHeadMeasure2work(), 1);
    EXPECT_EQ(*data.getFidWorkMeg(), *data.getFidHeadMsr());
    EXPECT_EQ(working(data), headMeasured);
}

TEST(HeadFiducials, OfADatasetCanBeSetToTheirDefaults)
{
    CMEGDatazk data;
    giveFiducials(data);
    data.m_headLocalization.m_nWorkCoordinate = 2;
    EXPECT_EQ(data.initDefaultHeadLocalizationParams(), 1);
    EXPECT_EQ(data.m_headLocalization, CHeadLocalizationzk());
}

class SensorFrames : public ::testing::Test
{
protected:
    void SetUp() override
    {
        giveFiducials(data);
        ASSERT_EQ(data.initMEGData(1, 4, 2), 1);
        giveSensor(channel(0), 100, 0.0);
        giveSensor(channel(1), 11, 100.0);
        channel(2).m_nChannelType = 302;
        ASSERT_NE(channel(2).ensureEegElectrode(), nullptr);
    }
    CMDChannelzk& channel(int i) { return *data.getMDTrial(0)->m_ppChannel[i]; }

    const ScriptedHost host;
    CMEGDatazk data;
};

TEST_F(SensorFrames, TheDewarSwitchMovesAllCoilsAndTakesTheStandardFiducials)
{
    EXPECT_EQ(data.setSnsFidDewar2work(-1, false), 1);
    EXPECT_EQ(workPlace(channel(0), 0), (Point{1.0, 2.0, 3.0}));
    EXPECT_EQ(workPlace(channel(0), 1), (Point{1.0, 52.0, 3.0}));
    EXPECT_EQ(workPlace(channel(1), 0), (Point{101.0, 2.0, 3.0}));
    EXPECT_EQ(working(data), dewarStandard);
}

TEST_F(SensorFrames, TheStandardDewarSwitchMovesThemTooAndTakesTheMeasuredFiducials)
{
    EXPECT_EQ(data.setSnsFidDewarStd2work(-1, false), 1);
    EXPECT_EQ(workPlace(channel(0), 0), (Point{1.0, 2.0, 3.0}));
    EXPECT_EQ(workPlace(channel(1), 1), (Point{101.0, 52.0, 3.0}));
    EXPECT_EQ(working(data), dewarMeasured);
}

TEST_F(SensorFrames, TheHeadSwitchMovesThemToTheHead)
{
    ASSERT_EQ(data.setSnsFidDewar2work(-1, false), 1);
    EXPECT_EQ(data.setSnsFidHead2work(0, false), 1);
    EXPECT_EQ(workPlace(channel(0), 0), (Point{4.0, 5.0, 6.0}));
    EXPECT_EQ(workPlace(channel(0), 1), (Point{4.0, 5.0, 56.0}));
    EXPECT_EQ(workPlace(channel(1), 0), (Point{104.0, 5.0, 6.0}));
    EXPECT_EQ(working(data), headMeasured);
}

TEST_F(SensorFrames, ThereAndBackRestoresTheSameSensors)
{
    const CMEGSensorzk before = *channel(0).getMEGSensorzk();
    ASSERT_EQ(data.setSnsFidDewar2work(-1, true), 1);
    EXPECT_FALSE(*channel(0).getMEGSensorzk() == before);
    ASSERT_EQ(data.setSnsFidHead2work(-1, true), 1);
    EXPECT_TRUE(*channel(0).getMEGSensorzk() == before);
}

TEST_F(SensorFrames, ASensorWithoutAPlaceInTheFrameStaysWhereItIs)
{
    CMEGSensorzk& sensor = *channel(0).getMEGSensorzk();
    const double head[] = {7.0, 8.0, 9.0};
    const double up[] = {0.0, 1.0, 0.0};
    ASSERT_EQ(sensor.initSensorBasic(1, "", "", 3, nullptr, nullptr, nullptr, head, up), 1);
    EXPECT_EQ(data.setSnsFidDewar2work(-1, false), 1);
    EXPECT_EQ(workPlace(channel(0), 0), (Point{7.0, 8.0, 9.0}));
    EXPECT_EQ(working(data), dewarStandard);
}

TEST_F(SensorFrames, FrameZeroLeavesTheMeasuredDewarFiducialsAndFrameOneTheStandardOnes)
{
    data.m_headLocalization.m_nWorkCoordinate = 0;
    EXPECT_EQ(data.resetSnsFidCoordinate2work(-1, false), 1);
    EXPECT_EQ(working(data), dewarMeasured);
    EXPECT_EQ(workPlace(channel(0), 0), (Point{1.0, 2.0, 3.0}));
    data.m_headLocalization.m_nWorkCoordinate = 1;
    EXPECT_EQ(data.resetSnsFidCoordinate2work(-1, false), 1);
    EXPECT_EQ(working(data), dewarStandard);
    data.m_headLocalization.m_nWorkCoordinate = 2;
    EXPECT_EQ(data.resetSnsFidCoordinate2work(-1, false), 1);
    EXPECT_EQ(working(data), headMeasured);
    EXPECT_EQ(workPlace(channel(0), 0), (Point{4.0, 5.0, 6.0}));
}

TEST_F(SensorFrames, AnUnknownFrameChangesNothing)
{
    for (const int frame : {-1, 3, INT_MIN, INT_MAX}) {
        data.m_headLocalization.m_nWorkCoordinate = frame;
        EXPECT_EQ(data.resetSnsFidCoordinate2work(-1, true), 0) << frame;
    }
    EXPECT_EQ(working(data), formerWork);
    EXPECT_EQ(workPlace(channel(0), 0), (Point{4.0, 5.0, 6.0}));
}

TEST_F(SensorFrames, TheFrameInUseIsLeftToItsOwner)
{
    for (const int frame : {0, 1, 2, 77}) {
        data.m_headLocalization.m_nWorkCoordinate = frame;
        data.setSnsFidDewar2work(-1, false);
        data.setSnsFidDewarStd2work(-1, true);
        data.setSnsFidHead2work(-1, true);
        data.resetSnsFidCoordinate2work(-1, false);
        EXPECT_EQ(data.m_headLocalization.m_nWorkCoordinate, frame);
    }
}

TEST_F(SensorFrames, PlacesWithoutChannelAndChannelsWithoutSensorArePassedOver)
{
    data.getMDTrial(0)->m_ppChannel.release(0);
    channel(3).m_nChannelType = 100;
    EXPECT_EQ(data.setSnsFidDewar2work(-1, false), 1);
    EXPECT_EQ(workPlace(channel(1), 0), (Point{101.0, 2.0, 3.0}));
    EXPECT_EQ(channel(3).m_pGeomHw, nullptr);
}

TEST_F(SensorFrames, AnEmptyDatasetGivesZeroAndKeepsItsFiducials)
{
    CMEGDatazk empty;
    giveFiducials(empty);
    for (const bool allTrials : {false, true}) {
        EXPECT_EQ(empty.setSnsFidDewar2work(-1, allTrials), 0);
        EXPECT_EQ(empty.setSnsFidDewarStd2work(0, allTrials), 0);
        EXPECT_EQ(empty.setSnsFidHead2work(-1, allTrials), 0);
        EXPECT_EQ(empty.resetSnsFidCoordinate2work(-1, allTrials), 0);
    }
    EXPECT_EQ(working(empty), formerWork);
}

TEST_F(SensorFrames, ATrialThatIsNotThereGivesZero)
{
    EXPECT_EQ(data.setSnsFidDewar2work(1, false), 0);
    EXPECT_EQ(data.setSnsFidHead2work(-2, false), 0);
    EXPECT_EQ(working(data), formerWork);
}

class FramesOfTrials : public ::testing::Test
{
protected:
    void SetUp() override
    {
        giveFiducials(data);
        for (int i = 0; i < 3; ++i) {
            const auto trial = makeTrial(i, 1, 4);
            giveSensor(*trial->getChannel(0), 100, 0.0);
            filed.writeTrial(i, *trial);
        }
    }
    Point filedPlace(int trial) { return workPlace(*filed.readTrial(trial)->getChannel(0), 0); }

    ScriptedHost host;
    FiledDataset filed{3, 1, 4};
    CMEGDatazk& data = filed.data;
    const Point inDewar{1.0, 2.0, 3.0};
    const Point inHead{4.0, 5.0, 6.0};
};

TEST_F(FramesOfTrials, OneTrialIsOpenedForIt)
{
    EXPECT_EQ(data.setSnsFidDewar2work(1, false), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    ASSERT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(filedPlace(0), inHead);
    EXPECT_EQ(filedPlace(1), inDewar);
    EXPECT_EQ(filedPlace(2), inHead);
}

TEST_F(FramesOfTrials, AllTrialsAreOpenedWhateverTrialIsGiven)
{
    EXPECT_EQ(data.setSnsFidDewar2work(77, true), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    ASSERT_EQ(data.saveAllTrials(), 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(filedPlace(i), inDewar) << i;
}

TEST_F(FramesOfTrials, OneOfAllThatDoesNotOpenIsPassedOver)
{
    std::filesystem::remove(filed.folder.native(FiledDataset::name(1)));
    host.willAnswerNo();
    EXPECT_EQ(data.setSnsFidDewar2work(-1, true), 1);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed "));
    ASSERT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(filedPlace(0), inDewar);
    EXPECT_EQ(filedPlace(2), inDewar);
    EXPECT_EQ(working(data), dewarStandard);
}

TEST_F(FramesOfTrials, TheOneThatDoesNotOpenGivesZeroAndKeepsTheFiducials)
{
    std::filesystem::remove(filed.folder.native(FiledDataset::name(1)));
    host.willAnswerNo();
    EXPECT_EQ(data.setSnsFidHead2work(1, false), 0);
    EXPECT_EQ(working(data), formerWork);
}

TEST(DewarRegion, OfANewDatasetHasItsDefaults)
{
    const CMEGDatazk data;
    std::vector<double> roi(6);
    EXPECT_EQ(data.getROIDewar(roi[0], roi[1], roi[2], roi[3], roi[4], roi[5]), 1);
    EXPECT_THAT(roi, ElementsAre(-90.0, 90.0, 20.0, 120.0, -100.0, 100.0));
    EXPECT_EQ(data.m_dRoiXDim, 180.0);
    EXPECT_EQ(data.m_dRoiYDim, 100.0);
    EXPECT_EQ(data.m_dRoiZDim, 200.0);
}

TEST(DewarRegion, IsSetWithItsDimensions)
{
    CMEGDatazk data;
    EXPECT_EQ(data.setROIDewar(-1.0, 2.0, -10.0, 20.0, 300.0, 100.0), 1);
    std::vector<double> roi(6);
    data.getROIDewar(roi[0], roi[1], roi[2], roi[3], roi[4], roi[5]);
    EXPECT_THAT(roi, ElementsAre(-1.0, 2.0, -10.0, 20.0, 300.0, 100.0));
    EXPECT_EQ(data.m_dRoiXDim, 3.0);
    EXPECT_EQ(data.m_dRoiYDim, 30.0);
    EXPECT_EQ(data.m_dRoiZDim, -200.0) << "limits the wrong way round are taken";
}

TEST(DewarRegion, ResetBringsTheLimitsBackAndLeavesTheDimensions)
{
    CMEGDatazk data;
    data.setROIDewar(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
    EXPECT_EQ(data.resetROIDewar(), 1);
    std::vector<double> roi(6);
    data.getROIDewar(roi[0], roi[1], roi[2], roi[3], roi[4], roi[5]);
    EXPECT_THAT(roi, ElementsAre(-90.0, 90.0, 20.0, 120.0, -100.0, 100.0));
    EXPECT_EQ(data.m_dRoiXDim, 1.0);
    EXPECT_EQ(data.m_dRoiYDim, 1.0);
    EXPECT_EQ(data.m_dRoiZDim, 1.0);
}

} // namespace
} // namespace megset::CMEGData1Localization01Meg_test
