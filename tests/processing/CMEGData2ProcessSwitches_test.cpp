// Filter state of a dataset, flags of channels, and electrodes that go to the trials.

#include "megset/processing/CMEGData2Process.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData2ProcessSwitches_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

using Range = std::pair<double, double>;

Range filterRange(const CMEGDatazk& data)
{
    Range range{-1.0, -1.0};
    EXPECT_EQ(data.getFilterRange(range.first, range.second), 1);
    return range;
}

CMEGDatazk& at1200Hz(CMEGDatazk& data)
{
    data.m_recordInfo.m_dRecSampleRate = 1200.0;
    return data;
}

TEST(FilterState, WithNoSettingEverAppliedTheRangeIsUpToHalfTheRate)
{
    CMEGDatazk data;
    at1200Hz(data);
    EXPECT_EQ(filterRange(data), Range(0.0, 600.0));
    data.m_recordInfo.m_dRawSampleRate = 1200.0;
    data.m_recordInfo.m_nRawTotalSample = 1000;
    ASSERT_EQ(data.reSampleData(false, 2, true), 1);
    EXPECT_EQ(filterRange(data), Range(0.0, 300.0));
}

TEST(FilterState, ASettingThatWasNeverCountedIsNotRead)
{
    CMEGDatazk data;
    at1200Hz(data);
    data.getFilterDcLtSettingzk()->m_bFiltHighPass = 1;
    EXPECT_EQ(filterRange(data), Range(0.0, 600.0));
}

// Which of the three filters limits which end, for all eight states.
TEST(FilterState, TheRangeIsThatOfHighAndLowPassBeforeTheBand)
{
    for (int state = 0; state < 8; ++state) {
        const bool low = (state & 1) != 0;
        const bool high = (state & 2) != 0;
        const bool band = (state & 4) != 0;
        CFilterDcLtSettingzk setting;
        setting.m_bFiltLowPass = low ? 1 : 0;
        setting.m_bFiltHighPass = high ? -3 : 0; // any number but 0 is set
        setting.m_bFiltBand = band ? 1 : 0;
        setting.m_dFiltLowPassHz = 40.0;
        setting.m_dFiltHighPassHz = 0.5;
        setting.m_dFiltBandLowHz = 8.0;
        setting.m_dFiltBandHighHz = 12.0;
        CMEGDatazk data;
        at1200Hz(data).setFilterDcLtSettingzk(&setting);
        EXPECT_EQ(filterRange(data), Range(high ? 0.5 : band ? 8.0 : 0.0, low ? 40.0 : band ? 12.0 : 600.0)) << state;
    }
}

TEST(FilterState, HighPassAndBandGiveTheLowOfTheOneAndTheHighOfTheOther)
{
    CFilterDcLtSettingzk setting;
    setting.m_bFiltHighPass = setting.m_bFiltBand = 1;
    setting.m_dFiltHighPassHz = 3.0;
    setting.m_dFiltBandLowHz = 10.0;
    setting.m_dFiltBandHighHz = 45.0;
    setting.m_dFiltLowPassHz = 99.0;
    CMEGDatazk data;
    at1200Hz(data).setFilterDcLtSettingzk(&setting);
    EXPECT_EQ(filterRange(data), Range(3.0, 45.0));
}

TEST(FilterState, TheSettingIsTakenOverAndCountedAlsoWhenItIsTheSame)
{
    CFilterDcLtSettingzk setting;
    setting.m_bFiltLowPass = 1;
    setting.m_dFiltLowPassHz = 33.0;
    setting.m_bDcOffset = 1;
    CMEGDatazk data;
    EXPECT_EQ(data.setFilterDcLtSettingzk(&setting), 1);
    EXPECT_EQ(data.setFilterDcLtSettingzk(&setting), 1);
    EXPECT_EQ(data.m_nFilterSettingCount, 2);
    EXPECT_EQ(*data.getFilterDcLtSettingzk(), setting);
    EXPECT_EQ(data.setFilterDcLtSettingzk(data.getFilterDcLtSettingzk()), 1);
    EXPECT_EQ(data.m_nFilterSettingCount, 3);
    EXPECT_EQ(*data.getFilterDcLtSettingzk(), setting);
}

TEST(FilterState, NullChangesNothing)
{
    CMEGDatazk data;
    const CFilterDcLtSettingzk before = *data.getFilterDcLtSettingzk();
    EXPECT_EQ(data.setFilterDcLtSettingzk(nullptr), 1);
    EXPECT_EQ(data.m_nFilterSettingCount, 0);
    EXPECT_EQ(*data.getFilterDcLtSettingzk(), before);
    EXPECT_EQ(data.getFilterDcLtSettingzk(), &data.m_filterDcLt);
}

class ChannelSwitches : public ::testing::Test
{
protected:
    ChannelSwitches() { EXPECT_EQ(data.checkInitChnlParam(makeTrial(0, 3, 1).get()), 1); }
    ~ChannelSwitches() override { host.expectNoMessages(); }
    std::vector<int> selected() const
    {
        return std::vector<int>(data.m_pChnlSelect.get(), data.m_pChnlSelect.get() + data.m_nChnlParamCount);
    }

    ScriptedHost host;
    CMEGDatazk data;
};

TEST_F(ChannelSwitches, EachStandsForItself)
{
    EXPECT_EQ(data.setGoodChnl4Alltrials(0, 0), 1);
    EXPECT_EQ(data.setShowChnl4Alltrials(1, 0), 1);
    EXPECT_EQ(data.setSelectChnl4Alltrials(2, 1, false), 1);
    for (int channel = 0; channel < 3; ++channel) {
        EXPECT_EQ(data.isGoodChnl4Alltrials(channel), channel == 0 ? 0 : 1);
        EXPECT_EQ(data.isShowChnl4Alltrials(channel), channel == 1 ? 0 : 1);
        EXPECT_EQ(data.isSelectChnl4Alltrials(channel), channel == 2 ? 1 : 0);
        EXPECT_EQ(data.m_pChnlParam4[static_cast<std::size_t>(channel)], 0);
    }
}

TEST_F(ChannelSwitches, AnyNumberButZeroIsOnAndIsStoredAsItIs)
{
    data.setGoodChnl4Alltrials(1, -7);
    data.setShowChnl4Alltrials(1, INT_MIN);
    data.setSelectChnl4Alltrials(1, 256, false);
    EXPECT_EQ(data.isGoodChnl4Alltrials(1), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 1);
    EXPECT_EQ(data.isSelectChnl4Alltrials(1), 1);
    EXPECT_EQ(data.m_pChnlGood[1], -7);
    EXPECT_EQ(data.m_pChnlShow[1], INT_MIN);
    EXPECT_EQ(data.m_pChnlSelect[1], 256);
}

TEST_F(ChannelSwitches, OutOfRangeGivesZero)
{
    for (const int channel : {-1, 3, -5, INT_MIN, INT_MAX}) {
        EXPECT_EQ(data.setGoodChnl4Alltrials(channel, 0), 0);
        EXPECT_EQ(data.setShowChnl4Alltrials(channel, 0), 0);
        EXPECT_EQ(data.setSelectChnl4Alltrials(channel, 1, false), 0);
        EXPECT_EQ(data.isGoodChnl4Alltrials(channel), 0);
        EXPECT_EQ(data.isShowChnl4Alltrials(channel), 0);
        EXPECT_EQ(data.isSelectChnl4Alltrials(channel), 0);
        EXPECT_EQ(data.setMEGSensorShow(false, channel, 0, true), 0);
    }
    EXPECT_EQ(data.getTotalChnl_Visible(true), 0); // there is no trial
    EXPECT_THAT(selected(), Each(0));
}

TEST_F(ChannelSwitches, WithoutFlagsEverythingIsOutOfRange)
{
    const CMEGDatazk empty;
    EXPECT_EQ(empty.isGoodChnl4Alltrials(0), 0);
    EXPECT_EQ(empty.isShowChnl4Alltrials(0), 0);
    EXPECT_EQ(empty.isSelectChnl4Alltrials(0), 0);
    CMEGDatazk other;
    EXPECT_EQ(other.setShowChnl4Alltrials(0, 1), 0);
    EXPECT_EQ(other.setSelectChnl4Alltrials(0, 1, false), 0);
    EXPECT_EQ(other.setSelectChnl4Alltrials(0, 1, true), 1); // all of none
}

TEST_F(ChannelSwitches, AFlagWhoseArrayIsMissingIsOutOfRange)
{
    data.m_pChnlGood.reset(); // a file may bring some of them
    EXPECT_EQ(data.setGoodChnl4Alltrials(0, 1), 0);
    EXPECT_EQ(data.isGoodChnl4Alltrials(0), 0);
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 1);
}

TEST_F(ChannelSwitches, SelectingAllIgnoresTheChannel)
{
    EXPECT_EQ(data.setSelectChnl4Alltrials(-5, 1, true), 1);
    EXPECT_THAT(selected(), ElementsAre(1, 1, 1));
    EXPECT_EQ(data.setSelectChnl4Alltrials(1, 0, true), 1);
    EXPECT_THAT(selected(), ElementsAre(0, 0, 0));
}

TEST_F(ChannelSwitches, FallBackToTheirDefaultsForATrialWithMoreChannels)
{
    data.setGoodChnl4Alltrials(0, 0);
    data.setShowChnl4Alltrials(1, 0);
    data.setSelectChnl4Alltrials(2, 1, false);
    EXPECT_EQ(data.checkInitChnlParam(makeTrial(1, 5, 1).get()), 1);
    for (int channel = 0; channel < 5; ++channel) {
        EXPECT_EQ(data.isGoodChnl4Alltrials(channel), 1);
        EXPECT_EQ(data.isShowChnl4Alltrials(channel), 1);
        EXPECT_EQ(data.isSelectChnl4Alltrials(channel), 0);
    }
}

TEST_F(ChannelSwitches, ShowingASensorDoesNotReadTheLastArguments)
{
    EXPECT_EQ(data.setMEGSensorShow(false, 1, 99, false), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 0);
    EXPECT_EQ(data.setMEGSensorShow(true, 1, -3, true), 1);
    EXPECT_EQ(data.isShowChnl4Alltrials(1), 1);
}

// Three trials in files; the second calls its channels otherwise.
class NamedChannels : public ::testing::Test
{
protected:
    NamedChannels()
    {
        writeNames(0, {"MLC11", "MLC12", "MRC11"});
        writeNames(1, {"A1", "A2", "A3"});
        writeNames(2, {"MLC11", "MLC12", "MRC11"});
    }
    void writeNames(int trial, const std::vector<CString>& names)
    {
        const auto made = makeTrial(trial, 3, 2);
        for (int i = 0; i < 3; ++i)
            made->getChannel(i)->setChannelName(names[static_cast<std::size_t>(i)], false);
        filed.writeTrial(trial, *made);
    }
    std::vector<int> good() const
    {
        std::vector<int> flags;
        for (int i = 0; i < 3; ++i)
            flags.push_back(filed.data.isGoodChnl4Alltrials(i));
        return flags;
    }

    ScriptedHost host;
    FiledDataset filed{3, 3, 2};
};

TEST_F(NamedChannels, TheFirstThatContainsTheTextGetsTheFlagInAllTrials)
{
    EXPECT_EQ(filed.data.setChannelGood4Name("C1", false, 0), 1);
    EXPECT_THAT(good(), ElementsAre(0, 1, 1));
    EXPECT_EQ(filed.data.setChannelGood4Name("A3", false, 1), 1);
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 1);
    EXPECT_THAT(good(), ElementsAre(0, 1, 0));
    EXPECT_EQ(filed.data.setChannelGood4Name("MLC11", true, 2), 1);
    EXPECT_THAT(good(), ElementsAre(1, 1, 0));
}

TEST_F(NamedChannels, MinusOneSearchesTheCurrentTrial)
{
    ASSERT_NE(filed.data.getTrialzk(1), nullptr);
    EXPECT_EQ(filed.data.setChannelGood4Name("A2", false, -1), 1);
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 1);
    EXPECT_THAT(good(), ElementsAre(1, 0, 1));
}

TEST_F(NamedChannels, ANameOfNoChannelGivesZeroWithTheFlagsMade)
{
    EXPECT_EQ(filed.data.setChannelGood4Name("MLC119", false, 0), 0);
    EXPECT_EQ(filed.data.setChannelGood4Name("mlc11", false, 0), 0); // with its case
    EXPECT_THAT(good(), ElementsAre(1, 1, 1));
}

TEST_F(NamedChannels, ATrialOutOfRangeGivesZeroWithoutFlags)
{
    for (const int trial : {-2, 3, INT_MIN, INT_MAX})
        EXPECT_EQ(filed.data.setChannelGood4Name("MLC11", false, trial), 0);
    EXPECT_EQ(filed.data.m_nChnlParamCount, 0);
    EXPECT_EQ(CMEGDatazk().setChannelGood4Name("MLC11", false, -1), 0);
    host.expectNoMessages();
}

TEST_F(NamedChannels, ATrialThatCantBeOpenedGivesZero)
{
    filed.data.m_aTrialFilePath.RemoveAll();
    EXPECT_EQ(filed.data.setChannelGood4Name("A1", false, 1), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("File path and trial error!")));
}

TEST_F(NamedChannels, ATrialWithoutChannelsGivesZero)
{
    CMEGDatazk data;
    ASSERT_EQ(data.m_ppTrial.allocate(1), 1);
    data.m_ppTrial.set(0, std::make_unique<CMDTrialzk>());
    data.m_nTotalTrial = 1;
    data.m_nCurrentTrial = 0;
    EXPECT_EQ(data.setChannelGood4Name("", false, 0), 0);
    EXPECT_EQ(data.m_nChnlParamCount, 0);
}

// Three trials in files with an electrode on channel 1; the second trial's file can be taken away.
class ElectrodesOfTrials : public ::testing::Test
{
protected:
    ElectrodesOfTrials()
    {
        for (int i = 0; i < 3; ++i) {
            const auto made = makeTrial(i, 2, 2);
            CMDChannelzk& channel = *made->getChannel(1);
            channel.setChannelName("FZ", true);
            CEEGelectrodezk& electrode = *channel.ensureEegElectrode();
            channel.m_nChannelType = 302;
            electrode.m_nElectrodeID = 7;
            electrode.m_strElectrodeName = "FZ";
            filed.writeTrial(i, *made);
        }
        given.m_strElectrodeName = "FZ";
        given.m_nElectrodeID = 7;
        given.setElectrodePositionD(1.0, 2.0, 3.0);
    }
    /// x of the electrode in each trial's file, after everything was written out.
    std::vector<double> positions()
    {
        EXPECT_EQ(filed.data.saveAllTrials(), 1);
        std::vector<double> all;
        for (int i = 0; i < 3; ++i)
            all.push_back(filed.readTrial(i)->getChannel(1)->getEegElectrode(0)->m_dElectrodePos[0]);
        return all;
    }

    ScriptedHost host;
    FiledDataset filed{3, 2, 2};
    CEEGelectrodezk given;
};

TEST_F(ElectrodesOfTrials, GoToAllTrialsInTheirFiles)
{
    EXPECT_EQ(filed.data.setEEG_electrodes(&given, 1, true), 1);
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 2);
    EXPECT_THAT(positions(), ElementsAre(1.0, 1.0, 1.0));
    CPtrArray list;
    given.m_dElectrodePos[0] = 5.0;
    list.Add(&given);
    EXPECT_EQ(filed.data.setEEG_electrodesPositionMeg(&list, 9, true), 1);
    EXPECT_THAT(positions(), ElementsAre(5.0, 5.0, 5.0));
    EXPECT_EQ(filed.data.setEEG_electrodesPositionPohemus(7, 8.0, 0.0, 0.0, -4, true), 1);
    EXPECT_THAT(positions(), ElementsAre(8.0, 8.0, 8.0));
    host.expectNoMessages();
}

TEST_F(ElectrodesOfTrials, GoToTheNamedTrialAlone)
{
    CPtrArray list;
    list.Add(&given);
    EXPECT_EQ(filed.data.setEEG_electrodes(&given, 1, false), 1);
    EXPECT_THAT(positions(), ElementsAre(0.0, 1.0, 0.0));
    EXPECT_EQ(filed.data.setEEG_electrodesPositionMeg(&list, 2, false), 1);
    EXPECT_THAT(positions(), ElementsAre(0.0, 1.0, 1.0));
    EXPECT_EQ(filed.data.setEEG_electrodesPositionPohemus(7, 4.0, 0.0, 0.0, 0, false), 1);
    EXPECT_THAT(positions(), ElementsAre(4.0, 1.0, 1.0));
}

TEST_F(ElectrodesOfTrials, MinusOneIsTheCurrentTrial)
{
    CPtrArray list;
    list.Add(&given);
    ASSERT_EQ(filed.data.openTrial(1), 1);
    EXPECT_EQ(filed.data.setEEG_electrodesPositionMeg(&list, -1, false), 1);
    EXPECT_THAT(positions(), ElementsAre(0.0, 1.0, 0.0));
    EXPECT_EQ(filed.data.setEEG_electrodesPositionPohemus(7, 6.0, 0.0, 0.0, -1, false), 1);
    EXPECT_THAT(positions(), ElementsAre(0.0, 6.0, 0.0));
    EXPECT_EQ(filed.data.setEEG_electrodes(&given, -1, false), 1);
    EXPECT_THAT(positions(), ElementsAre(0.0, 1.0, 0.0));
}

TEST_F(ElectrodesOfTrials, OfOneTrialItsResultComesBack)
{
    EXPECT_EQ(filed.data.setEEG_electrodes(nullptr, 0, false), 0);
    EXPECT_EQ(filed.data.setEEG_electrodesPositionMeg(nullptr, 0, false), 0);
    EXPECT_EQ(filed.data.setEEG_electrodesPositionPohemus(99, 1.0, 1.0, 1.0, 0, false), 1); // nobody has that number
}

TEST_F(ElectrodesOfTrials, ATrialThatCantBeOpenedGivesZero)
{
    CPtrArray list;
    for (const int trial : {-2, 3, INT_MAX}) {
        EXPECT_EQ(filed.data.setEEG_electrodes(&given, trial, false), 0);
        EXPECT_EQ(filed.data.setEEG_electrodesPositionMeg(&list, trial, false), 0);
        EXPECT_EQ(filed.data.setEEG_electrodesPositionPohemus(7, 1.0, 1.0, 1.0, trial, false), 0);
    }
    host.expectNoMessages();
    CMDTrialzk none;
    filed.writeTrial(1, none); // a trial without channels counts as one that doesn't open
    EXPECT_EQ(filed.data.setEEG_electrodesPositionPohemus(7, 1.0, 1.0, 1.0, 1, false), 0);
}

TEST_F(ElectrodesOfTrials, ATrialThatGivesZeroEndsTheWalk)
{
    ASSERT_EQ(filed.data.openTrial(2), 1);
    EXPECT_EQ(filed.data.setEEG_electrodes(nullptr, 2, true), 0);
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 0);
    ASSERT_EQ(filed.data.openTrial(2), 1);
    EXPECT_EQ(filed.data.setEEG_electrodesPositionMeg(nullptr, 2, true), 0);
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 0);
}

TEST_F(ElectrodesOfTrials, ATrialThatDoesNotOpenIsPassedOver)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(3, 2, 2), 1); // no files: the first trial alone can be opened
    for (const int trial : {0, 2}) {
        data.getMDTrial(trial)->getChannel(1)->ensureEegElectrode()->m_nElectrodeID = 7;
        data.getMDTrial(trial)->getChannel(1)->m_nChannelType = 302;
    }
    EXPECT_EQ(data.setEEG_electrodesPositionPohemus(7, 9.0, 0.0, 0.0, 0, true), 1);
    EXPECT_EQ(data.getMDTrial(0)->getChannel(1)->getEegElectrode(0)->m_dElectrodePos[0], 9.0);
    EXPECT_EQ(data.getMDTrial(2)->getChannel(1)->getEegElectrode(0)->m_dElectrodePos[0], 0.0);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("File path and trial error!"), CString("File path and trial error!")));
}

TEST_F(ElectrodesOfTrials, WithNoTrialsAllOfThemAreDone)
{
    CMEGDatazk data;
    EXPECT_EQ(data.setEEG_electrodes(nullptr, 0, true), 1);
    EXPECT_EQ(data.setEEG_electrodesPositionMeg(nullptr, 0, true), 1);
    EXPECT_EQ(data.setEEG_electrodesPositionPohemus(7, 1.0, 1.0, 1.0, 0, true), 1);
    EXPECT_EQ(data.setEEG_electrodes(&given, -1, false), 0);
}

} // namespace
} // namespace megset::CMEGData2ProcessSwitches_test
