// Recorded sensors bound to a trial's channels, and places of electrodes.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/records/catalogues.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <array>
#include <climits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial0SensorInfoBind_test {

namespace {

using ::testing::ElementsAre;

// A sensor as a recording brings it: with a place in the head, and another one at work.
CMEGSensorzk recorded(int type)
{
    CMEGSensorzk sensor;
    sensor.m_strSensorName = "recorded";
    sensor.m_nChannelType = type;
    sensor.setSnsPos(1, 0, 10.0, 20.0, 30.0);
    sensor.setSnsOrn(1, 0, 0.0, 0.0, 1.0);
    sensor.setSnsPos(-1, 0, 1.0, 2.0, 3.0);
    for (std::size_t i = 0; i < sensor.m_dSnsGeom.size(); ++i)
        sensor.m_dSnsGeom[i] = 100.0 + static_cast<double>(i);
    return sensor;
}

class TrialBinding : public ::testing::Test
{
protected:
    TrialBinding() { EXPECT_EQ(trial.allocateChannels(3), 1); }
    CMDChannelzk& at(int i) { return *trial.getChannel(i); }

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(TrialBinding, AMegSensorIsAssignedAndMovedToTheHeadFrame)
{
    for (const int type : {10, 13, 100, 103, 140, 200}) {
        const CMEGSensorzk sensor = recorded(type);
        ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 1), 1);
        EXPECT_EQ(at(1).m_nChannelType, type);
        EXPECT_EQ(at(1).m_nGeomType, 1);
        ASSERT_NE(at(1).getMEGSensorzk(), nullptr);
        CMEGSensorzk expected = sensor;
        expected.setCoilsHead2work();
        EXPECT_EQ(*at(1).getMEGSensorzk(), expected);
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        at(1).getMEGSensorzk()->getSnsPos(-1, 0, x, y, z);
        EXPECT_THAT((std::array{x, y, z}), ElementsAre(10.0, 20.0, 30.0));
    }
    EXPECT_EQ(at(0).m_nChannelType, -1);
    EXPECT_EQ(at(2).m_nChannelType, -1);
}

TEST_F(TrialBinding, AMegSensorThatIsThereIsUsedAgain)
{
    at(0)._initGeomHw(1);
    const CMEGSensorzk* present = at(0).getMEGSensorzk();
    const CMEGSensorzk sensor = recorded(101);
    ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 0), 1);
    EXPECT_EQ(at(0).getMEGSensorzk(), present);
    EXPECT_EQ(present->m_strSensorName, CString("recorded"));
}

TEST_F(TrialBinding, AnElectrodeTakesTheFirstEightNumbersOfTheSensor)
{
    for (const int type : {300, 302, 310, 354}) {
        at(2)._cleanGeomHw();
        const CMEGSensorzk sensor = recorded(type);
        ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 2), 1);
        EXPECT_EQ(at(2).m_nChannelType, type);
        EXPECT_EQ(at(2).m_nGeomType, 2);
        const CEEGelectrodezk* electrode = at(2).getEegElectrode(0);
        ASSERT_NE(electrode, nullptr);
        EXPECT_THAT(electrode->m_dElectrodePos, ElementsAre(100.0, 101.0, 102.0, 103.0));
        EXPECT_THAT(electrode->m_dElectrodeDir, ElementsAre(104.0, 105.0, 106.0, 107.0));
        EXPECT_TRUE(electrode->m_strElectrodeName.IsEmpty());
    }
}

TEST_F(TrialBinding, AnElectrodeThatIsThereKeepsTheRest)
{
    at(0)._initGeomHw(2);
    at(0).setChannelType(302);
    CEEGelectrodezk* present = at(0).getEegElectrode(0);
    present->m_strElectrodeName = "CZ";
    const CMEGSensorzk sensor = recorded(303);
    ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 0), 1);
    EXPECT_EQ(at(0).getEegElectrode(0), present);
    EXPECT_EQ(present->m_strElectrodeName, CString("CZ"));
    EXPECT_EQ(present->m_dElectrodePos[0], 100.0);
}

TEST_F(TrialBinding, AStimulusIsMadeForTypes600To904)
{
    for (const int type : {600, 601, 902, 904}) {
        at(1)._cleanGeomHw();
        const CMEGSensorzk sensor = recorded(type);
        ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 1), 1);
        EXPECT_EQ(at(1).m_nChannelType, type);
        EXPECT_EQ(at(1).m_nGeomType, 3);
        EXPECT_NE(dynamic_cast<CStimTrigzk*>(at(1).m_pGeomHw.get()), nullptr);
    }
    const CGeomzk* present = at(1).m_pGeomHw.get();
    const CMEGSensorzk sensor = recorded(600);
    ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 1), 1);
    EXPECT_EQ(at(1).m_pGeomHw.get(), present);
}

TEST_F(TrialBinding, AllOtherTypesGetAMiscellaneousObjectWithTheSensorsName)
{
    for (const int type : {-1, 0, 9, 201, 299, 355, 599, 905, INT_MIN, INT_MAX}) {
        at(1)._cleanGeomHw();
        const CMEGSensorzk sensor = recorded(type);
        ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 1), 1);
        EXPECT_EQ(at(1).m_nChannelType, type);
        EXPECT_EQ(at(1).m_nGeomType, 4);
        const auto* object = dynamic_cast<CMisceSnsrzk*>(at(1).m_pGeomHw.get());
        ASSERT_NE(object, nullptr);
        EXPECT_EQ(object->m_strSnsName, CString("recorded"));
    }
}

TEST_F(TrialBinding, AnObjectOfAnotherClassIsReplaced)
{
    const int types[] = {100, 302, 600, 0};
    for (const int from : types) {
        for (const int to : types) {
            const CMEGSensorzk first = recorded(from);
            const CMEGSensorzk second = recorded(to);
            ASSERT_EQ(trial.setMEGSensorParameter(&first, 0), 1);
            ASSERT_EQ(trial.setMEGSensorParameter(&second, 0), 1);
            const int expected = to == 100 ? 1 : to == 302 ? 2 : to == 600 ? 3 : 4;
            EXPECT_EQ(at(0).m_nGeomType, expected);
            EXPECT_EQ(at(0).getMEGSensorzk() != nullptr, to == 100);
            EXPECT_EQ(at(0).getEegElectrode(0) != nullptr, to == 302);
        }
    }
}

TEST_F(TrialBinding, TheChannelsOwnSensorMayBeBoundAsAnotherKind)
{
    for (const int type : {100, 302, 600, 0}) {
        const CMEGSensorzk sensor = recorded(100);
        ASSERT_EQ(trial.setMEGSensorParameter(&sensor, 0), 1);
        CMEGSensorzk* own = at(0).getMEGSensorzk();
        own->m_nChannelType = type;
        own->m_dSnsGeom[0] = 55.0;
        ASSERT_EQ(trial.setMEGSensorParameter(own, 0), 1);
        EXPECT_EQ(at(0).m_nChannelType, type);
        const CGeomzk* geometry = at(0).m_pGeomHw.get();
        if (const auto* electrode = dynamic_cast<const CEEGelectrodezk*>(geometry)) {
            EXPECT_EQ(type, 302);
            EXPECT_EQ(electrode->m_dElectrodePos[0], 55.0);
        } else if (const auto* other = dynamic_cast<const CMisceSnsrzk*>(geometry)) {
            EXPECT_EQ(type, 0);
            EXPECT_EQ(other->m_strSnsName, CString("recorded"));
        } else {
            EXPECT_TRUE(type == 100 || type == 600);
        }
    }
}

TEST_F(TrialBinding, BindingNeedsASensorAndAChannel)
{
    const CMEGSensorzk sensor = recorded(100);
    EXPECT_EQ(trial.setMEGSensorParameter(nullptr, 0), 0);
    EXPECT_EQ(at(0).m_nChannelType, -1);
    for (const int index : {3, -2, INT_MAX, INT_MIN})
        EXPECT_EQ(trial.setMEGSensorParameter(&sensor, index), 0);
    trial.setCurrentChannel(2);
    EXPECT_EQ(trial.setMEGSensorParameter(&sensor, -1), 1);
    EXPECT_EQ(at(2).m_nGeomType, 1);
    EXPECT_EQ(CMDTrialzk().setMEGSensorParameter(&sensor, 0), 0);
}

TEST_F(TrialBinding, BindingWithoutMemoryGivesZeroAndLeavesAUsableChannel)
{
    for (const int type : {100, 302, 600, 0}) {
        const CMEGSensorzk sensor = recorded(type);
        at(0)._cleanGeomHw();
        {
            const FailingAllocator none(1);
            EXPECT_EQ(trial.setMEGSensorParameter(&sensor, 0), 0);
        }
        EXPECT_EQ(at(0).m_nChannelType, type);
        EXPECT_EQ(at(0).m_nGeomType, 0);
        EXPECT_EQ(at(0).m_pGeomHw, nullptr);
        EXPECT_EQ(trial.setMEGSensorParameter(&sensor, 0), 1);
    }
    host.expectNoMessages();
}

TEST_F(TrialBinding, AWholeSensorIsSetOnMegChannelsAndTheirTypeStays)
{
    const CMEGSensorzk sensor = recorded(302);
    at(1).setChannelType(102);
    EXPECT_EQ(trial.setMEGSensorAll(&sensor, 1), 1);
    EXPECT_EQ(at(1).m_nChannelType, 102);
    EXPECT_EQ(at(1).m_nGeomType, 1);
    ASSERT_NE(at(1).getMEGSensorzk(), nullptr);
    EXPECT_EQ(*at(1).getMEGSensorzk(), sensor);
    CMEGSensorzk* present = at(1).getMEGSensorzk();
    const CMEGSensorzk other = recorded(10);
    EXPECT_EQ(trial.setMEGSensorAll(&other, 1), 1);
    EXPECT_EQ(at(1).getMEGSensorzk(), present);
    EXPECT_EQ(*present, other);
}

TEST_F(TrialBinding, AWholeSensorIsRefusedElsewhere)
{
    const CMEGSensorzk sensor = recorded(100);
    for (const int type : {-1, 302, 600}) {
        at(1).m_nChannelType = type;
        EXPECT_EQ(trial.setMEGSensorAll(&sensor, 1), 0);
        EXPECT_EQ(at(1).m_pGeomHw, nullptr);
    }
    at(1).setChannelType(100);
    EXPECT_EQ(trial.setMEGSensorAll(nullptr, 1), 0);
    for (const int index : {3, -2, INT_MAX, INT_MIN})
        EXPECT_EQ(trial.setMEGSensorAll(&sensor, index), 0);
    const FailingAllocator none(1);
    EXPECT_EQ(trial.setMEGSensorAll(&sensor, 1), 0);
    EXPECT_EQ(at(1).m_pGeomHw, nullptr);
}

class StandardPositions : public ::testing::Test
{
protected:
    // EEG channels with electrodes under these working names.
    void makeElectrodes(const std::vector<CString>& names)
    {
        ASSERT_EQ(trial.allocateChannels(static_cast<int>(names.size())), 1);
        for (int i = 0; i < trial.getTotalChannel(); ++i) {
            at(i)._initGeomHw(2);
            at(i).setChannelType(310);
            at(i).setChannelName(names[static_cast<std::size_t>(i)], false);
        }
    }
    CMDChannelzk& at(int i) { return *trial.getChannel(i); }
    CEEGelectrodezk& electrode(int i) { return *at(i).getEegElectrode(0); }

    static const EEG_STD_POS& row(std::span<const EEG_STD_POS> table, std::u16string_view name)
    {
        return table[findEegStdRow(table, name)];
    }
    void expectPlace(int i, const EEG_STD_POS& place)
    {
        EXPECT_EQ(electrode(i).m_dElectrodePos[0], place.m_dPosX);
        EXPECT_EQ(electrode(i).m_dElectrodePos[1], place.m_dPosY);
        EXPECT_EQ(electrode(i).m_dElectrodePos[2], place.m_dPosZ);
        EXPECT_EQ(electrode(i).m_nPosFound, 1);
        EXPECT_EQ(at(i).m_nChannelType, place.m_nChannelType);
    }

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(StandardPositions, ComeFromThePlainTableOrTheLargerOne)
{
    makeElectrodes({"P3", "CZ"});
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 0), 2);
    expectPlace(0, row(g_aEegStd21, u"P3"));
    expectPlace(1, row(g_aEegStd21, u"CZ"));
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 1), 2);
    expectPlace(0, row(g_aEegStd32, u"P3")); // 10 mm higher in this table
    EXPECT_NE(row(g_aEegStd32, u"P3").m_dPosZ, row(g_aEegStd21, u"P3").m_dPosZ);
    host.expectNoMessages();
}

TEST_F(StandardPositions, ANameMissingInOneTableIsLookedUpInAll)
{
    makeElectrodes({"T7", "T3"});
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 0), 2);
    expectPlace(0, row(g_aEegStd32, u"T7"));
    makeElectrodes({"T7", "T3"});
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 1), 2);
    expectPlace(1, row(g_aEegStd21, u"T3"));
    host.expectNoMessages();
}

TEST_F(StandardPositions, TheElectrodesNameIsTheWorkingNameUnlessItWasSet)
{
    makeElectrodes({"CZ", "CZ"});
    electrode(1).m_strElectrodeName = "FZ";
    electrode(1).m_nNameSet = 1;
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 0), 2);
    EXPECT_EQ(electrode(0).m_strElectrodeName, CString("CZ"));
    EXPECT_EQ(electrode(0).m_nNameSet, 1);
    expectPlace(0, row(g_aEegStd21, u"CZ"));
    EXPECT_EQ(electrode(1).m_strElectrodeName, CString("FZ"));
    expectPlace(1, row(g_aEegStd21, u"FZ"));
}

TEST_F(StandardPositions, AMissIsToldAndPassedOver)
{
    makeElectrodes({"CZ", "nowhere", "", "FZ"});
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 0), 2);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Find standard position for nowhere error"),
                                             CString("Find standard position for  error")));
    EXPECT_EQ(at(1).m_nChannelType, 310);
    EXPECT_EQ(electrode(1).m_nPosFound, 0);
    EXPECT_EQ(electrode(1).m_strElectrodeName, CString("nowhere"));
    EXPECT_EQ(electrode(1).m_nNameSet, 1);
    expectPlace(3, row(g_aEegStd21, u"FZ"));
}

TEST_F(StandardPositions, AMissIsSilentWithQuiet)
{
    makeElectrodes({"nowhere", "CZ"});
    EXPECT_EQ(trial.setEegElectrodePosStd(1, 0), 1);
    EXPECT_EQ(trial.setEegElectrodePosStd(2, 1), 1);
    host.expectNoMessages();
}

TEST_F(StandardPositions, OtherChannelsAreLeftAlone)
{
    makeElectrodes({"CZ", "FZ"});
    at(0).setChannelType(600);
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 0), 1);
    EXPECT_EQ(at(0).m_nChannelType, 600);
    EXPECT_EQ(CMDTrialzk().setEegElectrodePosStd(0, 0), 0);
}

TEST_F(StandardPositions, AMissingChannelEndsTheWalkWithZero)
{
    makeElectrodes({"CZ", "FZ", "PZ"});
    trial.m_ppChannel.release(1);
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 0), 0);
    expectPlace(0, row(g_aEegStd21, u"CZ"));
    EXPECT_EQ(electrode(2).m_nPosFound, 0);
}

TEST_F(StandardPositions, AnEegChannelWithoutElectrodeEndsTheWalkWithZero)
{
    makeElectrodes({"CZ", "FZ", "PZ"});
    at(1)._cleanGeomHw();
    at(1).setChannelType(302);
    EXPECT_EQ(trial.setEegElectrodePosStd(0, 0), 0);
    expectPlace(0, row(g_aEegStd21, u"CZ"));
    EXPECT_EQ(electrode(2).m_nPosFound, 0);
    host.expectNoMessages();
}

class ElectrodesOfATrial : public StandardPositions
{
protected:
    void rawName(int i, const CString& text) { at(i).setChannelName(text, true); }
};

TEST_F(ElectrodesOfATrial, TheFirstOfTheRawNameIsAssigned)
{
    makeElectrodes({"A", "B", "C", "D"});
    rawName(0, "fz");
    rawName(1, "FZ");
    rawName(2, "FZ");
    CEEGelectrodezk given;
    given.m_strElectrodeName = "FZ";
    given.m_nElectrodeID = 12;
    given.setElectrodePositionD(1.0, 2.0, 3.0);
    EXPECT_EQ(trial.setEEG_electrodes(&given), 1);
    EXPECT_EQ(electrode(1), given);
    EXPECT_EQ(electrode(0), CEEGelectrodezk()); // the case differs
    EXPECT_EQ(electrode(2), CEEGelectrodezk()); // not the first
    EXPECT_EQ(at(1).m_nChannelType, 310);
}

TEST_F(ElectrodesOfATrial, AnUnknownRawNameChangesNothingAndGivesOne)
{
    makeElectrodes({"FZ", "B"});
    rawName(1, "FZ1");
    CEEGelectrodezk given;
    given.m_strElectrodeName = "FZ";
    EXPECT_EQ(trial.setEEG_electrodes(&given), 1);
    EXPECT_EQ(electrode(0), CEEGelectrodezk());
    EXPECT_EQ(electrode(1), CEEGelectrodezk());
}

TEST_F(ElectrodesOfATrial, OnlyEegChannelsWithAnElectrodeAreAsked)
{
    makeElectrodes({"A", "B", "C"});
    for (const int i : {0, 1, 2})
        rawName(i, "FZ");
    at(0)._cleanGeomHw();
    at(0).setChannelType(302);
    at(1).setChannelType(600);
    CEEGelectrodezk given;
    given.m_strElectrodeName = "FZ";
    given.m_nElectrodeID = 5;
    EXPECT_EQ(trial.setEEG_electrodes(&given), 1);
    EXPECT_EQ(electrode(2).m_nElectrodeID, 5);
    at(1).setChannelType(302);
    EXPECT_EQ(electrode(1).m_nElectrodeID, -1);
}

TEST_F(ElectrodesOfATrial, WithoutChannelsOrElectrodeTheResultIsZero)
{
    CPtrArray list;
    const CEEGelectrodezk given;
    EXPECT_EQ(trial.setEEG_electrodes(&given), 0);
    EXPECT_EQ(trial.setEEG_electrodesPositionMe(&list), 0);
    EXPECT_EQ(trial.setEEG_electrodesPositionPohemus(1, 0.0, 0.0, 0.0), 0);
    makeElectrodes({"A"});
    EXPECT_EQ(trial.setEEG_electrodes(nullptr), 0);
    EXPECT_EQ(trial.setEEG_electrodesPositionMe(nullptr), 0);
    EXPECT_EQ(trial.setEEG_electrodesPositionMe(&list), 1);
}

TEST_F(ElectrodesOfATrial, AllPositionsComeFromAList)
{
    makeElectrodes({"A", "B", "C"});
    trial.m_ppChannel.release(1);
    electrode(0).m_strElectrodeName = "X1";
    electrode(2).m_strElectrodeName = "X2";
    CEEGelectrodezk first;
    first.m_strElectrodeName = "X2";
    first.setElectrodePositionD(7.0, 8.0, 9.0);
    CEEGelectrodezk second;
    second.m_strElectrodeName = "X1";
    second.setElectrodePositionD(4.0, 5.0, 6.0);
    CPtrArray list;
    list.Add(&first);
    list.Add(nullptr);
    list.Add(&second);
    EXPECT_EQ(trial.setEEG_electrodesPositionMe(&list), 1);
    EXPECT_EQ(electrode(0).m_dElectrodePos[0], 4.0);
    EXPECT_EQ(electrode(2).m_dElectrodePos[0], 7.0);
}

TEST_F(ElectrodesOfATrial, APositionGoesToTheFirstElectrodeOfItsNumber)
{
    makeElectrodes({"A", "B", "C"});
    electrode(1).m_nElectrodeID = 17;
    electrode(2).m_nElectrodeID = 17;
    electrode(1).m_dElectrodePos[3] = 0.5;
    EXPECT_EQ(trial.setEEG_electrodesPositionPohemus(17, 1.0, 2.0, 3.0), 1);
    EXPECT_THAT(electrode(1).m_dElectrodePos, ElementsAre(1.0, 2.0, 3.0, 0.5));
    EXPECT_EQ(electrode(2).m_dElectrodePos[0], 0.0);
    EXPECT_EQ(electrode(0).m_dElectrodePos[0], 0.0);
    EXPECT_EQ(trial.setEEG_electrodesPositionPohemus(99, 4.0, 5.0, 6.0), 1);
    EXPECT_EQ(electrode(0).m_dElectrodePos[0], 0.0);
}

} // namespace

} // namespace megset::CMDTrial0SensorInfoBind_test
