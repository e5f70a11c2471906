#include "megset/core/CMEGData.h"

#include "megset/core/CMDChannelzk.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <array>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData_test {
namespace {

using ::testing::ElementsAre;

// ---- a new dataset

TEST(NewDataset, HasNoTrialsAndNoCurrentOne)
{
    CMEGDatazk data;
    EXPECT_EQ(data.getCurrentTrialIndx(), -1);
    EXPECT_EQ(data.getTotalTrial(), 0);
    EXPECT_EQ(data.getCurrentTrialPt(), nullptr);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getTrialzk(-1), nullptr);
    EXPECT_EQ(data.openTrial(0), 0);
    EXPECT_EQ(data.saveAllTrials(), 0);
    EXPECT_EQ(data.getTotalChannel(-1), 0);
    EXPECT_EQ(data.getTotalSample(), 0);
    EXPECT_EQ(data.getChannMEGData(0, -1), nullptr);
    EXPECT_EQ(data.getCurntTrialCurntChannDataWave(), nullptr);
    EXPECT_EQ(data.getCurrentTrialChannelName(0), "No Data");
    EXPECT_EQ(data.hasData2Draw(), 0);
    EXPECT_EQ(data.getTotalChnl_Visible(false), 0);
    EXPECT_EQ(data.getTotalChnl_Visible(true), 0);
    EXPECT_EQ(data.getTotalTrigs(), 0);
    EXPECT_EQ(data.getTrialComments(0), 0);
    EXPECT_EQ(data.applyMEGSnsrGainDirTrial(0, true), 0);
    EXPECT_EQ(data.setCurrentChannel(0, 0), 0);
    EXPECT_EQ(data.setChannelName("A", 0, -1, false), 0);
    EXPECT_EQ(data.setChannelPos(-1, 0, 1.0, 2.0, 3.0), 0);
    EXPECT_EQ(data.setChannelType(100, true, 0, -1), 0);
    EXPECT_TRUE(data.getUnsavedTrials().IsEmpty());
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
}

TEST(NewDataset, HoldsTheDefaultsOfItsFields)
{
    const CMEGDatazk data;
    EXPECT_EQ(data.m_nRealTrial, 0);
    EXPECT_EQ(data.m_nVirtualTrial, 0);
    EXPECT_FALSE(data.m_ppTrial);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 0);
    EXPECT_EQ(data.m_strTrialFolder, "");
    EXPECT_EQ(data.m_strDatasetPath, "");
    EXPECT_EQ(data.m_strDatasetFileName, "");
    EXPECT_EQ(data.m_strSessionName, "Unknown");
    EXPECT_EQ(data.m_nDatasetFlagA, 1);
    EXPECT_EQ(data.m_nDatasetFlagB, 0);
    EXPECT_EQ(data.m_nSegmentCutState, 0);
    EXPECT_EQ(data.m_nSegmentCutNext, 1);
    EXPECT_EQ(data.m_strProcessInfo, "");
    EXPECT_EQ(data.m_aViewer.GetSize(), 0);
    EXPECT_EQ(data.m_pDocument, nullptr);
    EXPECT_EQ(data.m_nFilterSettingCount, 0);
    EXPECT_EQ(data.m_nFilterSettingCount2, 0);
    EXPECT_EQ(data.m_nChnlParamCount, 0);
    EXPECT_EQ(data.m_pChnlGood, nullptr);
    EXPECT_EQ(data.m_pChnlShow, nullptr);
    EXPECT_EQ(data.m_pChnlSelect, nullptr);
    EXPECT_EQ(data.m_pChnlParam4, nullptr);
    EXPECT_EQ(data.m_nSelectStart, 1);
    EXPECT_EQ(data.m_nSelectEnd, 1);
}

TEST(NewDataset, ShowsSensorsAndVirtualChannels)
{
    const CMEGDatazk data;
    EXPECT_EQ(data.getShowMEGSensor(), 1);
    EXPECT_EQ(data.getShowMEGSensorActive(), 1);
    EXPECT_EQ(data.getShowSensor2DOverlap(), 1);
    EXPECT_EQ(data.getSensorSize2D(), 4);
    EXPECT_EQ(data.m_dSensorSize2D, 4.0);
    EXPECT_EQ(data.m_bShowVirtChnl, 1);
    EXPECT_THAT(
        (std::array{data.m_nShowWordA, data.m_nShowWordB, data.m_nShowWordC, data.m_nShowWordD, data.m_nShowWordE}),
        ElementsAre(1, 1, 0, 512, 1));
    EXPECT_THAT((std::array{data.m_dShowScaleA, data.m_dShowScaleB, data.m_dShowRangeMegLow, data.m_dShowRangeMegHigh}),
                ElementsAre(1.0, 1.0, 0.0, 100.0));
}

TEST(NewDataset, HasTheZoomFactorsOfEachKindOfChannel)
{
    const CMEGDatazk data;
    EXPECT_THAT((std::array{data.m_dZoomMEGSensor, data.m_dZoomMEGRef, data.m_dZoomEEGSensor, data.m_dZoomEEGRef}),
                ElementsAre(0.005, 0.001, 0.001, 0.001));
    EXPECT_THAT((std::array{data.m_dZoomType903, data.m_dZoomType902, data.m_dZoomType904}),
                ElementsAre(0.005, 0.005, 0.005));
    EXPECT_THAT((std::array{data.m_dZoomTrig, data.m_dZoomOthers, data.m_dShowTimeScaleX}),
                ElementsAre(180.0, 0.001, 1.0));
}

TEST(NewDataset, HasTheColourScaleOfElectrodes)
{
    const CMEGDatazk data;
    EXPECT_EQ(data.m_nEegShowWord, 1);
    EXPECT_EQ(data.m_dElectrodeSize2D, 3.0);
    EXPECT_EQ(data.m_nElectrodeSize2D, 2);
    EXPECT_THAT((std::array{data.m_d2DElectrodeColorStepLow, data.m_d2DElectrodeColorStepHigh,
                            data.m_d2DElectrodeColorHigh, data.m_d2DElectrodeColorLow}),
                ElementsAre(-1.0, 1.0, 1.0, -1.0));
    EXPECT_THAT((std::array{data.m_dShowRangeEegLow, data.m_dShowRangeEegHigh}), ElementsAre(0.0, 100.0));
}

TEST(NewDataset, HasTheRegionOfInterestOfTheDewar)
{
    const CMEGDatazk data;
    EXPECT_THAT((std::array{data.m_dRoiXMin, data.m_dRoiXMax, data.m_dRoiYMin, data.m_dRoiYMax, data.m_dRoiZMin,
                            data.m_dRoiZMax}),
                ElementsAre(-90.0, 90.0, 20.0, 120.0, -100.0, 100.0));
    EXPECT_THAT((std::array{data.m_dRoiXDim, data.m_dRoiYDim, data.m_dRoiZDim}), ElementsAre(180.0, 100.0, 200.0));
    EXPECT_EQ(data.m_nRoiWord, 0);
    EXPECT_EQ(data.m_nRoiWord2, 0);
    EXPECT_EQ(data.m_clrRoiA, 65280U);
    EXPECT_EQ(static_cast<std::int32_t>(data.m_clrRoiB), -16711936);
}

TEST(NewDataset, HasTheDefaultsOfMarkLinesAndCarriedWords)
{
    const CMEGDatazk data;
    EXPECT_EQ(data.m_nShowMarkLineType, 1);
    EXPECT_EQ(data.m_nTailWordC, 1);
    EXPECT_EQ(data.m_nTailWordD, 10);
    EXPECT_EQ(data.m_nTailWordE, 0);
    EXPECT_EQ(data.m_nTailWordA, 1);
    EXPECT_EQ(data.m_nTailWordB, 1);
    EXPECT_EQ(data.m_dTailValueA, 2.0);
    EXPECT_THAT((std::array{data.m_nTailWordF, data.m_nTailWordG, data.m_nTailWordI, data.m_nTailWordJ,
                            data.m_nTailWordK, data.m_nTailWordL}),
                ElementsAre(1, 1, 0, 0, 0, 1));
}

// ---- trials in memory

TEST(MemoryDataset, HoldsTrialsOfZerosWithTheFirstCurrent)
{
    CMEGDatazk data;
    EXPECT_EQ(data.initMEGData(2, 3, 4), 1);
    EXPECT_EQ(data.getTotalTrial(), 2);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_EQ(data.getTotalChannel(1), 3);
    EXPECT_EQ(data.getTotalSample(), 4);
    for (int t = 0; t < 2; ++t) {
        for (int c = 0; c < 3; ++c) {
            EXPECT_THAT(wave(*data.getMDTrial(t)->getChannel(c)), ElementsAre(0, 0, 0, 0));
            EXPECT_THAT(backup(*data.getMDTrial(t)->getChannel(c)), ElementsAre(0, 0, 0, 0));
        }
    }
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 0);
}

TEST(MemoryDataset, DropsTheFormerTrials)
{
    CMEGDatazk data;
    data.initMEGData(4, 1, 1);
    data.m_nCurrentTrial = 3;
    EXPECT_EQ(data.initMEGData(1, 2, 3), 1);
    EXPECT_EQ(data.getTotalTrial(), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_EQ(data.getTotalChannel(-1), 2);
}

TEST(MemoryDataset, StoresACountBelowOneAsItIs)
{
    for (const int count : {0, -3}) {
        CMEGDatazk data;
        data.initMEGData(2, 1, 1);
        EXPECT_EQ(data.initMEGData(count, 2, 2), 1);
        EXPECT_EQ(data.getTotalTrial(), count);
        EXPECT_EQ(data.getCurrentTrialIndx(), -1);
        EXPECT_FALSE(data.m_ppTrial);
    }
}

TEST(MemoryDataset, SurvivesANegativeCountInEveryOperation)
{
    CMEGDatazk data;
    data.initMEGData(-3, 2, 2);
    std::int64_t from = 0;
    std::int64_t to = 0;
    int real = 0;
    int virt = 0;
    EXPECT_EQ(data.openTrial(-1), 0);
    EXPECT_EQ(data.openTrial(0), 0);
    EXPECT_EQ(data.getMDTrial(-2), nullptr);
    EXPECT_EQ(data.saveAllTrials(), 0);
    EXPECT_EQ(data.getSelect(from, to), 0);
    EXPECT_EQ(data.setSelect(1, 2), 0);
    EXPECT_EQ(data.nextSelect(1, true), 0);
    EXPECT_EQ(data.getTrialRecordVirtual(real, virt, 2), 0);
    EXPECT_EQ(data.getTrialFilePath(0), "Error > total");
    EXPECT_EQ(data.setChannelName("A", 0, -1, false), 0);
    EXPECT_EQ(data.removeSpaceInChannelName(1), 0);
    EXPECT_EQ(data.initMEGData(1, 1, 1), 1);
}

TEST(MemoryDataset, HasChannelsWithoutSamplesWhereNoneAreAskedFor)
{
    CMEGDatazk data;
    EXPECT_EQ(data.initMEGData(1, 2, 0), 1);
    EXPECT_EQ(data.getTotalChannel(-1), 2);
    EXPECT_EQ(data.getTotalSample(), 0);
    EXPECT_EQ(data.hasData2Draw(), 0);
}

TEST(MemoryDataset, CannotBeMadeWithoutChannels)
{
    const ScriptedHost host;
    CMEGDatazk data;
    EXPECT_EQ(data.initMEGData(2, 0, 4), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?"));
    EXPECT_EQ(data.getTotalTrial(), 0);
}

TEST(MemoryDataset, OpensNoOtherTrialBecauseItHasNoFiles)
{
    const ScriptedHost host;
    CMEGDatazk data;
    data.initMEGData(2, 1, 1);
    EXPECT_EQ(data.openTrial(0), 1);
    host.expectNoMessages();
    EXPECT_EQ(data.openTrial(1), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File path and trial error!"));
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_NE(data.getMDTrial(0), nullptr);
    EXPECT_NE(data.getMDTrial(1), nullptr);
}

TEST(MemoryDataset, IsEmptyWhereMemoryEndsWhileItIsMade)
{
    const std::int64_t failures = forEachAllocationFailure([] {
        const ScriptedHost host;
        CMEGDatazk data;
        data.initMEGData(1, 1, 1);
        if (data.initMEGData(2, 2, 2)) {
            EXPECT_EQ(data.getTotalTrial(), 2);
            return;
        }
        ASSERT_FALSE(host.messages().empty());
        const CString last = host.messages().back();
        EXPECT_TRUE(last == "Not enough memory?!" || last == "Not enough memory?") << last;
        EXPECT_EQ(data.initMEGData(2, 2, 2), 1);
        EXPECT_EQ(data.getTotalChannel(1), 2);
    });
    // Each of the first call, which this test does not look at, and of the second.
    EXPECT_EQ(failures, 6 + 1 + 2 * (1 + 1 + 2 + 4));
}

TEST(MemoryDataset, TellsOfTheArrayAndOfTrialsInTwoTexts)
{
    std::vector<CString> lastMessages;
    forEachAllocationFailure([&lastMessages] {
        const ScriptedHost host;
        CMEGDatazk data;
        if (!data.initMEGData(1, 1, 1))
            lastMessages.push_back(host.messages().back());
    });
    // The array; the trial, its array of channels, the channel and its two sample arrays.
    EXPECT_THAT(lastMessages, ElementsAre("Not enough memory?!", "Not enough memory?", "Not enough memory?",
                                          "Not enough memory?", "Not enough memory?", "Not enough memory?"));
}

TEST(MemoryDataset, TakesTrialsFromABlock)
{
    CMEGDatazk data;
    EXPECT_EQ(data.setDataL2F(2, 3, 4, blockOf(2, 3, 4).data()), 1);
    EXPECT_EQ(data.getTotalTrial(), 2);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    for (int t = 0; t < 2; ++t) {
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(wave(*data.getMDTrial(t)->getChannel(c)), channelValues(t, c, 4));
            EXPECT_EQ(backup(*data.getMDTrial(t)->getChannel(c)), channelValues(t, c, 4));
        }
    }
}

TEST(MemoryDataset, TakesNothingFromANullBlock)
{
    CMEGDatazk data;
    data.initMEGData(2, 1, 1);
    EXPECT_EQ(data.setDataL2F(1, 1, 1, nullptr), 0);
    EXPECT_EQ(data.getTotalTrial(), 2);
}

TEST(MemoryDataset, StoresACountBelowOneOfABlockAsItIs)
{
    CMEGDatazk data;
    const std::int32_t value = 1;
    EXPECT_EQ(data.setDataL2F(-1, 1, 1, &value), 1);
    EXPECT_EQ(data.getTotalTrial(), -1);
    EXPECT_EQ(data.getCurrentTrialIndx(), -1);
}

TEST(MemoryDataset, KeepsTheTrialsOfABlockThatWereMadeWhenMemoryEnds)
{
    const auto block = blockOf(2, 2, 2);
    std::vector<int> kept;
    forEachAllocationFailure([&] {
        const ScriptedHost host;
        CMEGDatazk data;
        if (data.setDataL2F(2, 2, 2, block.data()))
            return;
        EXPECT_FALSE(host.messages().empty());
        kept.push_back(data.getTotalTrial());
        EXPECT_EQ(data.getCurrentTrialIndx(), data.getTotalTrial() > 0 ? 0 : -1);
        for (int t = 0; t < data.getTotalTrial(); ++t)
            EXPECT_EQ(wave(*data.getMDTrial(t)->getChannel(1)), channelValues(t, 1, 2));
        EXPECT_EQ(data.getMDTrial(data.getTotalTrial()), nullptr);
    });
    // The array and the 8 allocations of the first trial, then those of the second.
    EXPECT_THAT(kept, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1));
}

TEST(MemoryDataset, KeepsItsPathsWhenItsTrialsGo)
{
    CMEGDatazk data;
    data.initMEGData(2, 1, 1);
    data.m_aTrialFilePath.Add("C:\\a.trl");
    EXPECT_EQ(data._cleanDatasetTrials(), 1);
    EXPECT_EQ(data.getTotalTrial(), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), -1);
    EXPECT_FALSE(data.m_ppTrial);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 1);
}

// ---- the session

TEST(Session, HasANameAndARecordingThatIsCopied)
{
    CMEGDatazk data;
    EXPECT_EQ(data.getSessionName(), "Unknown");
    EXPECT_EQ(data.setSessionName("S01"), 1);
    EXPECT_EQ(data.getSessionName(), "S01");
    CMEGRecordInfozkProzk info;
    info.m_nAverageCount = 12;
    EXPECT_EQ(data.setMEGRecordInfozk(&info), 1);
    info.m_nAverageCount = 13;
    EXPECT_EQ(data.getMEGRecordInfozk(), &data.m_recordInfo);
    EXPECT_EQ(data.getAverageTrigValue(), 12);
    EXPECT_EQ(data.setMEGRecordInfozk(nullptr), 0);
    EXPECT_EQ(data.getAverageTrigValue(), 12);
}

TEST(Session, CountsTheMarkersOfItsTriggersAlone)
{
    CMEGDatazk data;
    for (CMarkerManagerzk* others : {&data.m_mkTrigRecord, &data.m_mkMarker, &data.m_mkSegment, &data.m_mkClass})
        others->addMarker(std::make_unique<CMarkerDatazk>());
    EXPECT_EQ(data.getTotalTrigs(), 0);
    data.m_mkTrig.addMarker(std::make_unique<CMarkerDatazk>());
    data.m_mkTrig.addMarker(std::make_unique<CMarkerDatazk>());
    EXPECT_EQ(data.getTotalTrigs(), 2);
}

} // namespace
} // namespace megset::CMEGData_test
