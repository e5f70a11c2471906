#include "megset/core/CMDTrialzk.h"

#include "tests/core/filedDataset.h"

#include <limits>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial_test {
namespace {

using ::testing::ElementsAre;

// Three channels of 4 samples named "MLC11-100", "MRO22-100", "EEG001".
class Trial : public ::testing::Test
{
protected:
    Trial() : trial(makeTrial(0, 3, 4))
    {
        trial->getChannel(0)->m_strChannelName = "MLC11-100";
        trial->getChannel(1)->m_strChannelName = "MRO22-100";
        trial->getChannel(2)->m_strChannelName = "EEG001";
    }

    std::unique_ptr<CMDTrialzk> trial;
    CMDTrialzk empty;
};

// ---- a new trial

TEST(NewTrial, HoldsTheDefaultsOfItsFields)
{
    const CMDTrialzk trial;
    EXPECT_EQ(trial.m_nCurrentChannel, 0);
    EXPECT_EQ(trial.m_nTotalChannel, 0);
    EXPECT_FALSE(trial.m_ppChannel);
    EXPECT_EQ(trial.m_nTrigMarkFirst, -1);
    EXPECT_EQ(trial.m_nTrigMarkLast, 0);
    EXPECT_EQ(trial.m_nTrigMarkPoint, 0);
    EXPECT_EQ(trial.m_dTrigMarkValue, 0.0);
    EXPECT_EQ(trial.m_nTrigMarkCode, 0);
    EXPECT_EQ(trial.m_strTrigMarkName, "");
    EXPECT_TRUE(trial.m_aSeegProbe.IsEmpty());
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 0);
    EXPECT_EQ(trial.m_bTrialResampled, 0);
    EXPECT_EQ(trial.m_nTrialResampleStep, 1);
    EXPECT_EQ(trial.m_nGoodTrial, 1);
    EXPECT_EQ(trial.m_nMegPlaneDone, 0);
    EXPECT_EQ(trial.m_nEegPlaneDone, 0);
    EXPECT_EQ(trial.m_nVirtualTrial, 0);
    EXPECT_EQ(trial.m_nTrialKind, 0);
    EXPECT_EQ(trial.m_nTrialIndex, 0);
    EXPECT_EQ(trial.m_bMontageCrDone, 0);
    EXPECT_EQ(trial.m_bMontageIrDone, 0);
    EXPECT_EQ(trial.m_strTrialName, "");
    EXPECT_EQ(trial.m_strTrialFilePath, "");
}

TEST(NewTrial, HasNoObjectsOfAnalyses)
{
    const CMDTrialzk trial;
    EXPECT_EQ(trial.m_pVolumeSrc, nullptr);
    EXPECT_EQ(trial.m_pVolumeSrcCoh, nullptr);
    EXPECT_EQ(trial.m_pSpctmTrialA, nullptr);
    EXPECT_EQ(trial.m_pSpctmTrialC, nullptr);
    EXPECT_EQ(trial.m_pSpctmTrialR, nullptr);
    EXPECT_EQ(trial.m_pCohFaceTime, nullptr);
    EXPECT_EQ(trial.m_pSpctmCCFace, nullptr);
    EXPECT_EQ(trial.m_pVirtSpctm, nullptr);
    EXPECT_EQ(trial.m_pSrcCohFace, nullptr);
    EXPECT_EQ(trial.m_pFaceIca, nullptr);
    EXPECT_EQ(trial.m_pMontageCr, nullptr);
    EXPECT_TRUE(trial.m_aMontageIr.IsEmpty());
}

TEST_F(Trial, WithoutChannelsAnswersEveryQuestionWithNone)
{
    EXPECT_EQ(empty.getChannel(0), nullptr);
    EXPECT_EQ(empty.getChannel(-1), nullptr);
    EXPECT_FALSE(empty.getAllChannelPt());
    EXPECT_EQ(empty.getTotalChannel(), 0);
    EXPECT_EQ(empty.getCurntChnlIndx(), -1);
    EXPECT_EQ(empty.setCurrentChannel(0), 0);
    EXPECT_EQ(empty.setCurrentChannel2Name(""), -1);
    EXPECT_EQ(empty.setCurntChannel2MegListID(1), 0);
    EXPECT_EQ(empty.setCurntChannel2EegListID(1), 0);
    EXPECT_EQ(empty.setSensorListID(0, 1), 0);
    EXPECT_EQ(empty.getChannType(0), -1);
    EXPECT_EQ(empty.getChannelName(-1), "Unknown");
    EXPECT_EQ(empty.setChannelName("A", 0, false), 0);
    EXPECT_EQ(empty.setChannelPos(0, 1.0, 2.0, 3.0), 0);
    EXPECT_EQ(empty.getChannMEGData4Name(""), nullptr);
    EXPECT_EQ(empty.backupAllChnlData(), 0);
    EXPECT_EQ(empty.isSameTrig(0), 0);
}

TEST_F(Trial, CountsNoChannelsWhereItHasNoArray)
{
    empty.m_nTotalChannel = 5;
    EXPECT_EQ(empty.getTotalChannel(), 0);
    EXPECT_EQ(empty.getChannel(2), nullptr);
    EXPECT_EQ(empty.getCurntChnlIndx(), -1);
}

TEST_F(Trial, CountsNoVirtualChannelsAndKeepsThatToItself)
{
    const auto isPublic = []<class T>(const T&) {
        return requires(const T& t)
        {
            t.getTotalVirtChannel();
        };
    };
    EXPECT_FALSE(isPublic(empty));
}

// ---- channels by index

TEST_F(Trial, GivesAChannelByIndexAndTheCurrentOneForMinusOne)
{
    EXPECT_EQ(trial->getChannel(1), trial->getAllChannelPt()[1]);
    trial->m_nCurrentChannel = 2;
    EXPECT_EQ(trial->getChannel(-1), trial->getAllChannelPt()[2]);
    EXPECT_EQ(trial->getChannel(3), nullptr);
    EXPECT_EQ(trial->getChannel(-2), nullptr);
    EXPECT_EQ(trial->getTotalChannel(), 3);
}

TEST_F(Trial, GivesNullForAnEmptyPlace)
{
    trial->m_ppChannel.release(1);
    EXPECT_EQ(trial->getChannel(1), nullptr);
    EXPECT_EQ(trial->getChannelName(1), "Unknown");
    EXPECT_EQ(trial->getChannType(1), -1);
}

TEST_F(Trial, BringsTheCurrentIndexIntoRangeWhenAskedForIt)
{
    for (const auto& [stored, expected] : {std::pair{-4, 0}, {-1, 0}, {0, 0}, {2, 2}, {3, 2}, {99, 2}}) {
        trial->m_nCurrentChannel = stored;
        EXPECT_EQ(trial->getCurntChnlIndx(), expected) << stored;
        EXPECT_EQ(trial->m_nCurrentChannel, expected) << stored;
    }
}

TEST_F(Trial, SetsTheCurrentChannelInRangeOnlyAndNotByMinusOne)
{
    EXPECT_EQ(trial->setCurrentChannel(2), 1);
    EXPECT_EQ(trial->m_nCurrentChannel, 2);
    for (const int outside : {-1, -2, 3}) {
        EXPECT_EQ(trial->setCurrentChannel(outside), 0) << outside;
        EXPECT_EQ(trial->m_nCurrentChannel, 2) << outside;
    }
}

TEST_F(Trial, SetsThePlaceInTheMegList)
{
    EXPECT_EQ(trial->setSensorListID(1, 17), 1);
    EXPECT_EQ(trial->getChannel(1)->m_nMegListID, 17);
    EXPECT_EQ(trial->setSensorListID(3, 17), 0);
}

TEST_F(Trial, GivesTheTypeOfAChannel)
{
    EXPECT_EQ(trial->getChannType(0), -1);
    trial->getChannel(0)->m_nChannelType = 302;
    EXPECT_EQ(trial->getChannType(0), 302);
    EXPECT_EQ(trial->getChannType(-1), 302);
    EXPECT_EQ(trial->getChannType(3), -1);
}

TEST_F(Trial, NamesAChannelByItsWorkingName)
{
    EXPECT_EQ(trial->getChannelName(2), "EEG001");
    EXPECT_EQ(trial->getChannelName(-1), "MLC11-100");
}

TEST_F(Trial, CallsAChannelUnknownThatHasNoNameOrIsNotThere)
{
    trial->getChannel(0)->m_strChannelName = "";
    EXPECT_EQ(trial->getChannelName(0), "Unknown");
    EXPECT_EQ(trial->getChannelName(3), "Unknown");
    EXPECT_EQ(trial->getChannelName(-2), "Unknown");
}

TEST_F(Trial, SetsAChannelName)
{
    EXPECT_EQ(trial->setChannelName("Fz", 2, false), 1);
    EXPECT_EQ(trial->getChannelName(2), "Fz");
    EXPECT_EQ(trial->setChannelName("Fz", 3, false), 0);
}

TEST_F(Trial, SetsThePositionOfAMegSensorAndAcceptsAChannelWithoutOne)
{
    CMDChannelzk& channel = *trial->getChannel(0);
    channel.m_nChannelType = 100;
    ASSERT_NE(channel.ensureMEGSensor(), nullptr);
    EXPECT_EQ(trial->setChannelPos(0, 1.5, -2.5, 3.5), 1);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    EXPECT_EQ(channel.getMEGSensorzk()->getSnsPos(-1, 0, x, y, z), 1);
    EXPECT_THAT((std::vector{x, y, z}), ElementsAre(1.5, -2.5, 3.5));
    EXPECT_EQ(trial->setChannelPos(1, 1.5, -2.5, 3.5), 1);
    EXPECT_EQ(trial->setChannelPos(3, 1.5, -2.5, 3.5), 0);
}

TEST_F(Trial, AdoptsAnArrayForAChannel)
{
    auto* array = new double[2]{7.0, 8.0};
    EXPECT_EQ(trial->setChannelSizeData(2, array, 1), 2);
    EXPECT_EQ(trial->getChannel(1)->getDataWave(), array);
    EXPECT_THAT(backup(*trial->getChannel(1)), ElementsAre(7.0, 8.0));
}

TEST_F(Trial, LeavesAnArrayWithTheCallerWhenTheChannelIsNotThere)
{
    double array[] = {1.0};
    EXPECT_EQ(trial->setChannelSizeData(1, array, 3), 0);
    EXPECT_EQ(array[0], 1.0);
}

TEST_F(Trial, GivesTheWorkingArrayOfAChannel)
{
    double* out = nullptr;
    EXPECT_EQ(trial->getChannMEGDataS(&out, 1), 1);
    EXPECT_EQ(out, trial->getChannel(1)->getDataWave());
    EXPECT_EQ(trial->getChannMEGDataS(&out, 3), 0);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Trial, GivesNothingWhereNoPlaceForTheArrayIsNamed)
{
    EXPECT_EQ(trial->getChannMEGDataS(nullptr, 1), 0);
}

TEST_F(Trial, BacksUpEveryChannelAndCountsThem)
{
    for (int i = 0; i < 3; ++i)
        trial->getChannel(i)->getDataWave()[0] = -5.0 - i;
    EXPECT_EQ(trial->backupAllChnlData(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(trial->getChannel(i)->getBkData()[0], -5.0 - i);
}

TEST_F(Trial, BacksUpWhatThereIsAroundEmptyPlaces)
{
    trial->m_ppChannel.release(1);
    EXPECT_EQ(trial->backupAllChnlData(), 2);
}

// ---- channels by name and list

TEST_F(Trial, MakesTheFirstChannelCurrentWhoseNameContainsTheText)
{
    EXPECT_EQ(trial->setCurrentChannel2Name("-100"), 0);
    EXPECT_EQ(trial->setCurrentChannel2Name("O22"), 1);
    EXPECT_EQ(trial->m_nCurrentChannel, 1);
    EXPECT_EQ(trial->setCurrentChannel2Name("EEG001 and more"), -1);
    EXPECT_EQ(trial->m_nCurrentChannel, 1);
}

TEST_F(Trial, FindsAnArrayByATextThatTheNameContains)
{
    EXPECT_EQ(trial->getChannMEGData4Name("MRO"), trial->getChannel(1)->getDataWave());
    EXPECT_EQ(trial->getChannMEGData4Name("100"), trial->getChannel(0)->getDataWave());
    EXPECT_EQ(trial->getChannMEGData4Name("MRO22-1000"), nullptr);
}

TEST_F(Trial, LooksUpNamesInTwoSensesThatAreNotTheSame)
{
    EXPECT_EQ(trial->setCurrentChannel2Name("EEG001, left"), -1);
    EXPECT_EQ(trial->findChnlID4NameS("EEG001, left"), -1);
    EXPECT_EQ(trial->getChannelID4Name("EEG001, left"), 2);
    EXPECT_EQ(trial->getChannelPt4Name("EEG001, left"), trial->getChannel(2));
    EXPECT_EQ(trial->findChannel4SensorName("EEG001, left"), 2);
    EXPECT_EQ(trial->findChnlID4NameS("EEG"), 2);
    EXPECT_EQ(trial->getChannelID4Name("EEG"), -1);
}

TEST_F(Trial, TakesAChannelWithoutANameAtOnceWhereTheTextIsSearched)
{
    trial->getChannel(1)->m_strChannelName = "";
    EXPECT_EQ(trial->getChannelID4Name("EEG001"), 1);
    EXPECT_EQ(trial->findChnlID4NameS("EEG001"), 2);
}

TEST_F(Trial, GivesNoGradientOrderWhateverTheSensor)
{
    trial->getChannel(0)->m_nChannelType = 100;
    trial->getChannel(0)->ensureMEGSensor();
    EXPECT_EQ(trial->findSensorGradOrderNo("MLC11-100"), -1);
}

TEST_F(Trial, MakesTheChannelCurrentThatHasAPlaceInAList)
{
    trial->getChannel(1)->m_nMegListID = 40;
    trial->getChannel(2)->m_nMegListID = 40;
    trial->getChannel(2)->m_nEegListID = 7;
    EXPECT_EQ(trial->setCurntChannel2MegListID(40), 1);
    EXPECT_EQ(trial->m_nCurrentChannel, 1);
    EXPECT_EQ(trial->setCurntChannel2EegListID(7), 2);
    EXPECT_EQ(trial->m_nCurrentChannel, 2);
    EXPECT_EQ(trial->setCurntChannel2MegListID(41), -1);
    EXPECT_EQ(trial->setCurntChannel2EegListID(8), -1);
    EXPECT_EQ(trial->m_nCurrentChannel, 2);
}

// ---- flags of the trial

TEST_F(Trial, IsGoodUntilToldOtherwise)
{
    EXPECT_EQ(empty.isGoodTrial(), 1);
    EXPECT_EQ(empty.setTrialGood(false), 0);
    EXPECT_EQ(empty.isGoodTrial(), 0);
    EXPECT_EQ(empty.setTrialGood(true), 1);
    EXPECT_EQ(empty.isGoodTrial(), 1);
}

TEST_F(Trial, IsVirtualByItsFlag)
{
    EXPECT_EQ(empty.isVirtualTrial(), 0);
    empty.m_nVirtualTrial = 1;
    EXPECT_NE(empty.isVirtualTrial(), 0);
}

TEST_F(Trial, GivesItsOwnHeadPosition)
{
    EXPECT_EQ(empty.getTrialHeadLocat(), &empty.m_headLocalization);
}

// ---- triggers

class Triggers : public Trial
{
protected:
    void setTrigger(int channel, const std::vector<double>& values)
    {
        trial->getChannel(channel)->m_nChannelType = 600;
        trial->getChannel(channel)->addData(std::ssize(values), values.data());
    }

    int pos = -7;
    int rest = -7;
};

TEST_F(Triggers, AreFoundByTheValueCutToAnInt)
{
    setTrigger(1, {0.0, 0.99, 3.75, 3.0, -0.5});
    EXPECT_EQ(trial->find1stTrig(3, pos, rest), 1);
    EXPECT_EQ(pos, 2);
    EXPECT_EQ(rest, 3);
    EXPECT_EQ(trial->find1stTrig(0, pos, rest), 1);
    EXPECT_EQ(pos, 0);
    EXPECT_EQ(rest, 5);
}

TEST_F(Triggers, CutNegativeValuesTowardsZero)
{
    setTrigger(1, {5.0, -1.9});
    EXPECT_EQ(trial->find1stTrig(-1, pos, rest), 1);
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(trial->find1stTrig(-2, pos, rest), 0);
}

TEST_F(Triggers, LeaveTheResultsAloneWhereThereIsNone)
{
    setTrigger(1, {1.0, 2.0});
    EXPECT_EQ(trial->find1stTrig(3, pos, rest), 0);
    EXPECT_EQ(pos, -7);
    EXPECT_EQ(rest, -7);
}

TEST_F(Triggers, AreSearchedInTriggerChannelsOnlyAndChannelByChannel)
{
    // Sample 0 of channel 0 has the value 0, and that channel is none of triggers.
    setTrigger(1, {9.0, 9.0, 4.0});
    setTrigger(2, {4.0});
    EXPECT_EQ(trial->find1stTrig(4, pos, rest), 1);
    EXPECT_EQ(pos, 2);
    EXPECT_EQ(rest, 1);
    EXPECT_EQ(trial->find1stTrig(0, pos, rest), 0);
}

TEST_F(Triggers, AreNotFoundInValuesThatNoIntHolds)
{
    setTrigger(1, {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                   2147483648.0, -2147483648.0});
    EXPECT_EQ(trial->find1stTrig(std::numeric_limits<int>::min(), pos, rest), 1);
    EXPECT_EQ(pos, 5);
    EXPECT_EQ(trial->find1stTrig(std::numeric_limits<int>::max(), pos, rest), 0);
    EXPECT_EQ(trial->find1stTrig(0, pos, rest), 0);
}

TEST_F(Triggers, AreTestedForWithoutAPosition)
{
    setTrigger(2, {0.0, 12.0});
    EXPECT_EQ(trial->isSameTrig(12), 1);
    EXPECT_EQ(trial->isSameTrig(13), 0);
}

TEST_F(Triggers, AreFoundInABlockWhereEachChannelBeginsByItsOwnCount)
{
    // Channel 1 has 5 samples and begins at 1 x 5; channel 2 has 2 and begins at 2 x 2.
    setTrigger(1, {0.0, 0.0, 0.0, 0.0, 0.0});
    setTrigger(2, {0.0, 0.0});
    const std::int32_t block[] = {50, 51, 52, 53, 54, 55, 56, 57, 58, 59};
    EXPECT_EQ(trial->find1stTrigHD(57, pos, rest, block), 1);
    EXPECT_EQ(pos, 2);
    EXPECT_EQ(rest, 3);
    EXPECT_EQ(trial->find1stTrigHD(54, pos, rest, block), 1);
    EXPECT_EQ(pos, 0);
    EXPECT_EQ(rest, 2);
    EXPECT_EQ(trial->find1stTrigHD(53, pos, rest, block), 0);
    EXPECT_EQ(trial->find1stTrigHD(57, pos, rest, nullptr), 0);
}

} // namespace
} // namespace megset::CMDTrial_test
