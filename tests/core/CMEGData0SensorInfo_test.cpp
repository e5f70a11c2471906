// Sensors of a dataset's trials: what is passed on to which trial, and what comes back.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <array>
#include <climits>
#include <set>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData0SensorInfo_test {

namespace {

using ::testing::Each;
using ::testing::ElementsAre;

CMEGSensorzk sensorOf(int type, double x = 0.0)
{
    CMEGSensorzk sensor;
    sensor.m_strSensorName = "S";
    sensor.m_nChannelType = type;
    sensor.setSnsPos(1, 0, x, 0.0, 0.0);
    sensor.setSnsPos(-1, 0, x, 0.0, 0.0);
    return sensor;
}

class DatasetSensors : public ::testing::Test
{
protected:
    // Three trials of two channels; the second is on disk.
    DatasetSensors()
    {
        EXPECT_EQ(data.initMEGData(3, 2, 4), 1);
        data.m_ppTrial.release(1);
        data.m_nCurrentTrial = 2;
    }
    CMDChannelzk& at(int trial, int channel) { return *data.getMDTrial(trial)->getChannel(channel); }

    ScriptedHost host;
    CMEGDatazk data;
};

TEST_F(DatasetSensors, LookUpByNameGoesToTheTrial)
{
    at(0, 1).setChannelName("MLA1", false);
    at(0, 0).setChannelName("other", false);
    at(2, 0).setChannelName("MLA1", false);
    EXPECT_EQ(data.findChannel4SensorName("MLA1-4503", 0), 1);
    EXPECT_EQ(data.findChannel4SensorName("MLA1-4503", -1), 0);
    for (const int trial : {1, 3, -2, INT_MAX})
        EXPECT_EQ(data.findChannel4SensorName("MLA1", trial), -1);
}

TEST_F(DatasetSensors, GradientOrderByNameIsMinusOne)
{
    at(0, 0)._initGeomHw(1);
    at(0, 0).getMEGSensorzk()->setGradOrderNo(2);
    at(0, 0).setChannelName("A", false);
    for (const int trial : {0, 1, 2, 3, -1, -2})
        EXPECT_EQ(data.findSensorGradOrderNo("A", trial), -1);
}

TEST_F(DatasetSensors, SensorOfATrialsChannel)
{
    at(0, 1)._initGeomHw(1);
    EXPECT_EQ(data.getMEGSensorzk(1, 0), at(0, 1).getMEGSensorzk());
    EXPECT_NE(data.getMEGSensorzk(1, 0), nullptr);
    EXPECT_EQ(data.getMEGSensorzk(0, 0), nullptr);
    EXPECT_EQ(data.getMEGSensorzk(2, 0), nullptr);
    EXPECT_EQ(data.getMEGSensorzk(1, 1), nullptr);
    EXPECT_EQ(data.getMEGSensorzk(1, 3), nullptr);
}

TEST_F(DatasetSensors, ExtentsOfTheCurrentTrialAreTakenAnewOnRequest)
{
    for (const int channel : {0, 1}) {
        const CMEGSensorzk sensor = sensorOf(100, channel == 0 ? -5.0 : 8.0);
        ASSERT_EQ(data.setMEGSensorParameter(&sensor, channel, 2, false), 1);
    }
    std::array<double, 6> e{9.0, 9.0, 9.0, 9.0, 9.0, 9.0};
    EXPECT_EQ(data.getSnsDimension(e[0], e[1], e[2], e[3], e[4], e[5], false), 1);
    EXPECT_THAT(e, Each(0.0));
    EXPECT_EQ(data.getSnsDimension(e[0], e[1], e[2], e[3], e[4], e[5], true), 1);
    EXPECT_THAT(e, ElementsAre(-5.0, 8.0, 0.0, 0.0, 0.0, 0.0));
    e.fill(9.0);
    EXPECT_EQ(data.getSnsDimension(e[0], e[1], e[2], e[3], e[4], e[5], false), 1);
    EXPECT_EQ(e[1], 8.0);
    data.m_nCurrentTrial = 1;
    EXPECT_EQ(data.getSnsDimension(e[0], e[1], e[2], e[3], e[4], e[5], true), 0);
    EXPECT_THAT(e, Each(0.0));
}

TEST_F(DatasetSensors, ExtentsAreUpdatedInTheTrialThatIsNamed)
{
    for (const int channel : {0, 1}) {
        const CMEGSensorzk sensor = sensorOf(100, 7.0);
        ASSERT_EQ(data.setMEGSensorParameter(&sensor, channel, 0, false), 1);
    }
    EXPECT_EQ(data.updateCoilADimension(0), 2);
    EXPECT_EQ(data.getMDTrial(0)->m_megContour.m_dXmax, 7.0);
    EXPECT_EQ(data.updateCoilADimension(-1), 0); // the current trial has no sensors
    EXPECT_EQ(data.updateCoilADimension(1), 0);
    EXPECT_EQ(data.updateCoilADimension(99), 0);
}

TEST_F(DatasetSensors, WithoutAllTheTrialsResultComesBack)
{
    const CMEGSensorzk sensor = sensorOf(100);
    at(0, 0).setChannelName("a-b-c", false);
    EXPECT_EQ(data.replaceDataChannlName("-", "+", 0, false, 0, false), 2);
    EXPECT_EQ(data.replaceDataChannlName("-", "+", 7, false, 0, false), -1);
    EXPECT_EQ(data.setMEGSensorParameter(&sensor, 1, 0, false), 1);
    EXPECT_EQ(data.setMEGSensorAll(&sensor, 1, 0, false), 1);
    EXPECT_EQ(data.setMEGSensorAll(&sensor, 0, 0, false), 0);
    EXPECT_EQ(data.setMEGSensorName("raw", "work", 1, -1, false), 1);
    EXPECT_EQ(at(2, 1).m_strChannelNameRaw, CString("raw"));
    EXPECT_EQ(at(2, 1).m_strChannelName, CString("work"));
    EXPECT_TRUE(at(0, 1).m_strChannelName.IsEmpty());
}

TEST_F(DatasetSensors, WithoutAllAnEmptyPlaceGivesZero)
{
    const CMEGSensorzk sensor = sensorOf(100);
    for (const int trial : {1, 3, -2, INT_MAX}) {
        EXPECT_EQ(data.replaceDataChannlName("-", "+", 0, false, trial, false), 0);
        EXPECT_EQ(data.setMEGSensorParameter(&sensor, 1, trial, false), 0);
        EXPECT_EQ(data.setMEGSensorAll(&sensor, 1, trial, false), 0);
        EXPECT_EQ(data.setMEGSensorName("raw", "work", 1, trial, false), 0);
    }
}

TEST_F(DatasetSensors, WithAllTheTrialsInMemoryAreDoneAndTheResultIsZero)
{
    const CMEGSensorzk sensor = sensorOf(100);
    for (const int trial : {0, 2})
        at(trial, 0).setChannelName("a-b", false);
    EXPECT_EQ(data.replaceDataChannlName("-", "+", 0, false, 0, true), 0);
    EXPECT_EQ(data.setMEGSensorParameter(&sensor, 1, 0, true), 0);
    EXPECT_EQ(data.setMEGSensorName("raw", "work", 1, 99, true), 0);
    const CMEGSensorzk other = sensorOf(100, 33.0);
    EXPECT_EQ(data.setMEGSensorAll(&other, 1, 0, true), 0);
    for (const int trial : {0, 2}) {
        EXPECT_EQ(at(trial, 0).m_strChannelName, CString("a+b"));
        EXPECT_EQ(at(trial, 1).m_strChannelName, CString("work"));
        EXPECT_EQ(at(trial, 1).m_nChannelType, 100);
        ASSERT_NE(at(trial, 1).getMEGSensorzk(), nullptr);
        EXPECT_EQ(*at(trial, 1).getMEGSensorzk(), other);
    }
    EXPECT_EQ(data.getMDTrial(1), nullptr);
}

TEST_F(DatasetSensors, NamesOfTheCurrentTrialAreTrimmed)
{
    at(0, 0).setChannelName("  A ", false);
    at(2, 0).setChannelName(" \tA B\t ", false);
    at(2, 1).setChannelName("   ", false);
    at(2, 0).setChannelName(" raw ", true);
    EXPECT_EQ(data.removeSpaceInChannelName(0), 1);
    EXPECT_EQ(at(2, 0).m_strChannelName, CString("A B"));
    EXPECT_TRUE(at(2, 1).m_strChannelName.IsEmpty());
    EXPECT_EQ(at(2, 0).m_strChannelNameRaw, CString(" raw "));
    EXPECT_EQ(at(0, 0).m_strChannelName, CString("  A "));
}

TEST_F(DatasetSensors, TrimmingStopsAtAnEmptyPlace)
{
    at(0, 0).setChannelName(" A ", false);
    at(2, 0).setChannelName(" B ", false);
    EXPECT_EQ(data.removeSpaceInChannelName(1), 0);
    EXPECT_EQ(at(0, 0).m_strChannelName, CString("A"));
    EXPECT_EQ(at(2, 0).m_strChannelName, CString(" B "));
    data.m_nCurrentTrial = 1;
    EXPECT_EQ(data.removeSpaceInChannelName(0), 0);
}

TEST_F(DatasetSensors, TrimmingBringsTheCurrentTrialIntoRange)
{
    at(0, 0).setChannelName(" A ", false);
    at(2, 0).setChannelName(" B ", false);
    data.m_nCurrentTrial = -5;
    EXPECT_EQ(data.removeSpaceInChannelName(0), 1);
    EXPECT_EQ(data.m_nCurrentTrial, 0);
    EXPECT_EQ(at(0, 0).m_strChannelName, CString("A"));
    data.m_nCurrentTrial = 7;
    EXPECT_EQ(data.removeSpaceInChannelName(0), 1);
    EXPECT_EQ(data.m_nCurrentTrial, 2);
    EXPECT_EQ(at(2, 0).m_strChannelName, CString("B"));
    EXPECT_EQ(CMEGDatazk().removeSpaceInChannelName(0), 0);
    EXPECT_EQ(CMEGDatazk().removeSpaceInChannelName(1), 0);
}

TEST_F(DatasetSensors, AllTrialsAreTrimmedWhereAllAreInMemory)
{
    ASSERT_EQ(data.initMEGData(3, 1, 1), 1);
    for (const int trial : {0, 1, 2})
        at(trial, 0).setChannelName(" A ", false);
    EXPECT_EQ(data.removeSpaceInChannelName(1), 1);
    for (const int trial : {0, 1, 2})
        EXPECT_EQ(at(trial, 0).m_strChannelName, CString("A"));
}

TEST_F(DatasetSensors, ShowStateIsGivenAsStored)
{
    EXPECT_EQ(data.getShowMEGSensor(), 1);
    EXPECT_EQ(data.getShowMEGSensorActive(), 1);
    EXPECT_EQ(data.getShowSensor2DOverlap(), 1);
    EXPECT_EQ(data.getSensorSize2D(), 4);
    data.m_bShowMEGSensor = 0;
    data.m_bShowMEGSensorActive = 0;
    data.m_nSensorSize2D = 9;
    EXPECT_EQ(data.getShowMEGSensor(), 0);
    EXPECT_EQ(data.getShowMEGSensorActive(), 0);
    EXPECT_EQ(data.getSensorSize2D(), 9);
    data.setShowSensor2DOverlap(false);
    EXPECT_EQ(data.getShowSensor2DOverlap(), 0);
    data.setShowSensor2DOverlap(true);
    EXPECT_EQ(data.getShowSensor2DOverlap(), 1);
}

TEST_F(DatasetSensors, TypesThatAreDrawnAreThoseOfTheChannel)
{
    const std::set<int> drawn = {100, 101, 102, 103, 300, 302, 303, 600};
    for (int type = -1; type <= 1000; ++type)
        ASSERT_EQ(CMEGDatazk::getShow4SensorType01(type), drawn.contains(type)) << type;
}

class RecordedGeometry : public ::testing::Test
{
protected:
    CPtrArray listOf(const std::vector<const CMEGSensorzk*>& sensors)
    {
        CPtrArray list;
        for (const CMEGSensorzk* sensor : sensors)
            list.Add(const_cast<CMEGSensorzk*>(sensor));
        return list;
    }
    CMDChannelzk& at(int trial, int channel) { return *data.getMDTrial(trial)->getChannel(channel); }

    ScriptedHost host;
    CMEGSensorzk meg = sensorOf(100, 4.0);
    CMEGSensorzk eeg = sensorOf(302);
    CMEGSensorzk trigger = sensorOf(600);
    CMEGDatazk data;
};

TEST_F(RecordedGeometry, SensorsAreBoundChannelByChannel)
{
    ASSERT_EQ(data.initMEGData(1, 3, 2), 1);
    CPtrArray list = listOf({&meg, &eeg, &trigger});
    EXPECT_EQ(data.setRecordGeom2Trials(&list), 1);
    EXPECT_EQ(at(0, 0).m_nGeomType, 1);
    EXPECT_EQ(at(0, 0).m_nChannelType, 100);
    EXPECT_EQ(at(0, 1).m_nGeomType, 2);
    EXPECT_EQ(at(0, 2).m_nGeomType, 3);
    host.expectNoMessages();
}

TEST_F(RecordedGeometry, ANullEntryIsToldAndTheWalkGoesOn)
{
    ASSERT_EQ(data.initMEGData(1, 3, 2), 1);
    CPtrArray list = listOf({nullptr, &eeg, nullptr});
    EXPECT_EQ(data.setRecordGeom2Trials(&list), 1);
    EXPECT_EQ(at(0, 0).m_nChannelType, -1);
    EXPECT_EQ(at(0, 1).m_nChannelType, 302);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Finding recorded MEG sensor error!"),
                                             CString("Finding recorded MEG sensor error!")));
}

TEST_F(RecordedGeometry, AShortListLeavesTheOtherChannelsAndALongOneIsNotReadToItsEnd)
{
    ASSERT_EQ(data.initMEGData(1, 2, 2), 1);
    CPtrArray one = listOf({&meg});
    EXPECT_EQ(data.setRecordGeom2Trials(&one), 1);
    EXPECT_EQ(at(0, 0).m_nChannelType, 100);
    EXPECT_EQ(at(0, 1).m_nChannelType, -1);
    CPtrArray three = listOf({&eeg, &eeg, &trigger});
    EXPECT_EQ(data.setRecordGeom2Trials(&three), 1);
    EXPECT_EQ(at(0, 1).m_nChannelType, 302);
    CPtrArray none;
    EXPECT_EQ(data.setRecordGeom2Trials(&none), 1);
    host.expectNoMessages();
}

TEST_F(RecordedGeometry, WithoutTrialsOrListTheResultIsZero)
{
    CPtrArray list = listOf({&meg});
    EXPECT_EQ(data.setRecordGeom2Trials(&list), 0);
    ASSERT_EQ(data.initMEGData(1, 1, 1), 1);
    EXPECT_EQ(data.setRecordGeom2Trials(nullptr), 0);
}

TEST_F(RecordedGeometry, ATrialThatCantBeOpenedEndsTheWalkWithZero)
{
    ASSERT_EQ(data.initMEGData(2, 1, 1), 1);
    data.m_ppTrial.release(1);
    CPtrArray list = listOf({&meg});
    EXPECT_EQ(data.setRecordGeom2Trials(&list), 0); // there are no paths
    EXPECT_EQ(at(0, 0).m_nChannelType, 100);
    EXPECT_THAT(host.messages(), ElementsAre(CString("File path and trial error!")));
}

TEST_F(RecordedGeometry, EveryTrialIsOpenedInItsTurnAndWrittenBack)
{
    const TemporaryFolder folder;
    ASSERT_EQ(data.initMEGData(3, 2, 2), 1);
    const std::array<CString, 3> paths = {folder.path("1.trl"), folder.path("2.trl"), folder.path("3.trl")};
    for (int trial = 0; trial < 3; ++trial) {
        CString path = paths.at(static_cast<std::size_t>(trial));
        ASSERT_EQ(data.getMDTrial(trial)->saveTrialData(path, nullptr, "", true), 1);
        data.m_aTrialFilePath.Add(path);
    }
    CPtrArray list = listOf({&meg, &eeg});
    EXPECT_EQ(data.setRecordGeom2Trials(&list), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    for (int trial = 0; trial < 3; ++trial) {
        const CMDTrialzk* opened = data.getTrialzk(trial);
        ASSERT_NE(opened, nullptr);
        EXPECT_EQ(opened->getChannType(0), 100);
        EXPECT_EQ(opened->getChannType(1), 302);
        ASSERT_NE(opened->getMEGTrialSensorzk(0), nullptr);
        EXPECT_EQ(opened->getMEGTrialSensorzk(0)->m_strSensorName, CString("S"));
    }
    host.expectNoMessages();
}

} // namespace

} // namespace megset::CMEGData0SensorInfo_test
