// What the dialog's controls do; "Apply" is tested beside this.
#include "tests/ui/resampleDialog.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace megset::CDlgReSamplingMEGData_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* askPermanently = "Set Pre-trigger sample permanently? ";

CMEGDatazk& recorded(CMEGDatazk& data, std::int64_t samples)
{
    recordAs(data, samples);
    return data;
}

TEST(ResampleDialog, StartsWithItsDefaults)
{
    const CDlgReSamplingMEGData dialog;
    EXPECT_EQ(dialog.GetWindowText(), "Re-sampling All Data");
    EXPECT_TRUE(dialog.m_bAllTrials);
    EXPECT_FALSE(dialog.m_bAverage);
    EXPECT_EQ(dialog.m_nFactor, 1);
    EXPECT_EQ(dialog.m_dNewRate, 1.0);
    EXPECT_EQ(dialog.m_nPreTrigPts, 0);
    EXPECT_TRUE(dialog.m_bMakeNewDataset);
    EXPECT_EQ(dialog.m_strNewRateLabel, "New Sampling Rate (must < Recording SR)");
    EXPECT_FALSE(dialog.IsWindowVisible());
    EXPECT_TRUE(dialog.areButtonsEnabled());
}

TEST(ResampleDialog, RemindsOfTheBandsWithTheThirdSelected)
{
    EXPECT_THAT(CDlgReSamplingMEGData::analysisFrequencies,
                ElementsAre("Delta:1-4 Hz", "Theta:4-8 Hz", "Alpha:8-12 Hz", "Beta: 13-30Hz", "Low-gamma: 30-60Hz",
                            "High-gamma: 60-90Hz", "Ripple: 80-250Hz", "Fast Ripple: 250-600Hz", "HFOs: 600-1000Hz",
                            "VHFOs:1000-3000Hz"));
    EXPECT_EQ(CDlgReSamplingMEGData::analysisSelected, 2);
    EXPECT_EQ(CDlgReSamplingMEGData::analysisWidest, "Fast Ripple: 250-600Hz");
}

TEST(ResampleDialog, LabelsItsControls)
{
    using Dialog = CDlgReSamplingMEGData;
    EXPECT_EQ(Dialog::allTrialsLabel, "All Trials");
    EXPECT_EQ(Dialog::averageLabel, "Averaging Sample (low-pass filter)");
    EXPECT_EQ(Dialog::makeNewDatasetLabel, "Make a New Dataset");
    EXPECT_EQ(Dialog::factorLabel, "Re-sampling Ratio");
    EXPECT_EQ(Dialog::analysisLabel, "Analysis Frequency");
    EXPECT_EQ(Dialog::preTriggerLabel, "Pre-Trigger Points");
    EXPECT_EQ(Dialog::setNewLabel, "Set New");
    EXPECT_EQ(Dialog::loadOldLabel, "Load Old");
    EXPECT_EQ(Dialog::updateLabel, "Update");
    EXPECT_EQ(Dialog::applyLabel, "Apply");
    EXPECT_EQ(Dialog::exitLabel, "Exit");
}

TEST(ResampleDialog, TakesThePreTriggerPointsWhenItOpens)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    EXPECT_EQ(dialog.open(), 1);
    EXPECT_EQ(dialog.m_nPreTrigPts, 100);
    data.m_recordInfo.m_nRecTotalSample = 50;
    EXPECT_EQ(dialog.open(), 1);
    EXPECT_EQ(dialog.m_nPreTrigPts, 49);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 49);
    for (const std::int64_t total : {std::int64_t{0}, std::numeric_limits<std::int64_t>::min()}) {
        data.m_recordInfo.m_nRecTotalSample = total;
        EXPECT_EQ(dialog.open(), 1);
        EXPECT_EQ(dialog.m_nPreTrigPts, 0);
        EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 0);
    }
    EXPECT_EQ(data.m_recordInfo.m_nRawPreTrigPts, 100);
}

TEST(ResampleDialog, UpdateLoadsTheFieldsFromTheDataset)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    data.setResampleParameter(true, 3);
    EXPECT_EQ(dialog.update(), 1);
    EXPECT_TRUE(dialog.m_bAverage);
    EXPECT_EQ(dialog.m_nFactor, 3);
    EXPECT_EQ(dialog.m_dNewRate, 1000.0 / 3.0);
    EXPECT_EQ(dialog.m_strNewRateLabel, "New SR(<1000.0");
    EXPECT_EQ(dialog.m_strSize, "Size:1000->334");
    EXPECT_EQ(dialog.m_strSampleRate, "SR:1000.000000->333.333333");
    EXPECT_EQ(dialog.m_nPreTrigPts, 100);
    EXPECT_THAT(dialog.calls(), ElementsAre("show"));
}

TEST(ResampleDialog, UpdateShowsARejectedFactor)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    for (const std::int64_t factor : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        data.m_recordInfo.m_nResampleFactor = factor;
        EXPECT_EQ(dialog.update(), 1);
        EXPECT_EQ(dialog.m_nFactor, factor);
        EXPECT_EQ(dialog.m_strSize, "Size:1000->1001") << "one below 1 divides as 1";
        EXPECT_EQ(dialog.m_strSampleRate, "SR:1000.000000->1000.000000");
    }
}

TEST(ResampleDialog, ATypedFactorSetsRateAndTexts)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    EXPECT_EQ(dialog.changeFactor(4), 1);
    EXPECT_EQ(dialog.m_nFactor, 4);
    EXPECT_EQ(dialog.m_dNewRate, 250.0);
    EXPECT_EQ(dialog.m_strSize, "Size:1000->251");
    EXPECT_EQ(dialog.m_strSampleRate, "SR:1000.000000->250.000000");
    EXPECT_EQ(data.m_recordInfo.m_nResampleFactor, 1) << "the dataset is left alone";
}

TEST(ResampleDialog, FactorTypedAsZeroChangesNeitherText)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    dialog.changeFactor(4);
    for (const std::int64_t factor : {0, -2}) {
        EXPECT_EQ(dialog.changeFactor(factor), 0);
        EXPECT_EQ(dialog.m_nFactor, factor);
        EXPECT_EQ(dialog.m_strSize, "Size:1000->251");
        EXPECT_EQ(dialog.m_strSampleRate, "SR:1000.000000->250.000000");
        EXPECT_EQ(dialog.m_dNewRate, 250.0);
    }
}

TEST(ResampleDialog, TheSameFactorAgainDoesNothing)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    EXPECT_EQ(dialog.changeFactor(1), 0);
    EXPECT_EQ(dialog.m_strSize, "");
}

TEST(ResampleDialog, ATypedRateSetsFactorAndTextsWithTheTypedRate)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    EXPECT_EQ(dialog.changeNewRate(300.0), 1);
    EXPECT_EQ(dialog.m_nFactor, 3);
    EXPECT_EQ(dialog.m_strSize, "Size:1000->334");
    EXPECT_EQ(dialog.m_strSampleRate, "SR:1000.000000->300.000000");
}

TEST(ResampleDialog, ARateAboveTheRecordedOneGivesFactorZeroAndNoTexts)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    dialog.changeNewRate(300.0);
    EXPECT_EQ(dialog.changeNewRate(2000.0), 0);
    EXPECT_EQ(dialog.m_nFactor, 0);
    EXPECT_EQ(dialog.m_dNewRate, 2000.0);
    EXPECT_EQ(dialog.m_strSize, "Size:1000->334");
    EXPECT_EQ(dialog.m_strSampleRate, "SR:1000.000000->300.000000");
}

TEST(ResampleDialog, RatesThatAreNoneDoNothing)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    for (const double rate : {1.0, 0.0, -5.0, std::nan("")}) {
        EXPECT_EQ(dialog.changeNewRate(rate), 0);
        EXPECT_EQ(dialog.m_nFactor, 1);
        EXPECT_EQ(dialog.m_strSize, "");
    }
    EXPECT_EQ(dialog.changeNewRate(1e-300), 1);
    EXPECT_EQ(dialog.m_nFactor, std::numeric_limits<std::int64_t>::max());
    data.m_recordInfo.m_dRawSampleRate = std::nan("");
    EXPECT_EQ(dialog.changeNewRate(10.0), 0);
    EXPECT_EQ(dialog.m_nFactor, 0);
}

TEST(ResampleDialog, SetNewTakesThePointsAndAsksWhetherForGood)
{
    for (const bool permanently : {true, false}) {
        ScriptedHost host;
        permanently ? host.willAnswerYes(askPermanently) : host.willAnswerNo(askPermanently);
        CMEGDatazk data;
        RecordingDialog dialog(recorded(data, 1000));
        dialog.changePreTrigPts(250);
        EXPECT_EQ(dialog.setNewPreTrigPts(), 1);
        EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 250);
        EXPECT_EQ(data.m_recordInfo.m_nRawPreTrigPts, permanently ? 250 : 100);
        EXPECT_THAT(dialog.calls(), IsEmpty()) << "the edit isn't read again";
    }
}

TEST(ResampleDialog, SetNewRefusesPointsOutsideTheTrial)
{
    const ScriptedHost host;
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    dialog.changePreTrigPts(1000);
    EXPECT_EQ(dialog.setNewPreTrigPts(), 0);
    dialog.changePreTrigPts(-16);
    EXPECT_EQ(dialog.setNewPreTrigPts(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Pre-Trigger points (%I64d) should be smaller than sample (%I64d)",
                                             "Pre-Trigger points (%I64d) should be larger than 0"));
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 100);
    EXPECT_EQ(data.m_recordInfo.m_nRawPreTrigPts, 100);
}

TEST(ResampleDialog, SetNewRefusesTheNearestPointBelowZero)
{
    const ScriptedHost host;
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    dialog.changePreTrigPts(-1);
    EXPECT_EQ(dialog.setNewPreTrigPts(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Pre-Trigger points (%I64d) should be larger than 0"));
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 100);
}

TEST(ResampleDialog, TheRefusedNumberIsTheKindOfBox)
{
    ScriptedHost host;
    host.willAnswerNo("Pre-Trigger points (%I64d) should be smaller than sample (%I64d)");
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    dialog.changePreTrigPts(1028); // its low bits are those of a yes-no box
    EXPECT_EQ(dialog.setNewPreTrigPts(), 0);
    EXPECT_THAT(host.messages(), IsEmpty());
}

TEST(ResampleDialog, TheBoundsOfSetNewAreZeroAndTheLastSample)
{
    ScriptedHost host;
    host.willAnswerNo();
    host.willAnswerNo();
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    for (const std::int64_t points : {0, 999}) {
        dialog.changePreTrigPts(points);
        EXPECT_EQ(dialog.setNewPreTrigPts(), 1);
        EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, points);
    }
}

TEST(ResampleDialog, LoadOldTakesTheRecordedPointsBack)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    data.m_recordInfo.m_nRecPreTrigPts = 7;
    EXPECT_EQ(dialog.loadOldPreTrigPts(), 1);
    EXPECT_EQ(dialog.m_nPreTrigPts, 100);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 100);
    EXPECT_THAT(dialog.calls(), ElementsAre("read", "show"));
    data.m_recordInfo.m_nRecTotalSample = 40;
    EXPECT_EQ(dialog.loadOldPreTrigPts(), 1);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 39);
}

TEST(ResampleDialog, LoadOldTakesZeroPoints)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    data.m_recordInfo.m_nRawPreTrigPts = 0;
    EXPECT_EQ(dialog.loadOldPreTrigPts(), 1);
    EXPECT_EQ(dialog.m_nPreTrigPts, 0);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 0);
    EXPECT_THAT(dialog.calls(), ElementsAre("read", "show"));
}

TEST(ResampleDialog, LoadOldStopsAtANegativeNumber)
{
    CMEGDatazk data;
    RecordingDialog dialog(recorded(data, 1000));
    data.m_recordInfo.m_nRecPreTrigPts = 7;
    data.m_recordInfo.m_nRawPreTrigPts = -1;
    dialog.m_nPreTrigPts = 5;
    EXPECT_EQ(dialog.loadOldPreTrigPts(), 0);
    EXPECT_EQ(dialog.m_nPreTrigPts, 0);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 7);
    EXPECT_THAT(dialog.calls(), ElementsAre("read")) << "the screen is not refreshed";
    data.m_recordInfo.m_nRawPreTrigPts = 100;
    data.m_recordInfo.m_nRecTotalSample = 0;
    EXPECT_EQ(dialog.loadOldPreTrigPts(), 0);
}

TEST(ResampleDialog, ExitStoresTheFieldsAndCloses)
{
    CMEGDatazk data;
    RecordingDialog dialog(data);
    dialog.ShowWindow(true);
    dialog.exit();
    EXPECT_FALSE(dialog.IsWindowVisible());
    EXPECT_THAT(dialog.calls(), ElementsAre("open", "read", "close"));
}

TEST(ResampleDialog, DoesNothingWithoutADataset)
{
    CDlgReSamplingMEGData dialog;
    EXPECT_EQ(dialog.open(), 0);
    EXPECT_EQ(dialog.update(), 0);
    EXPECT_EQ(dialog.changeFactor(2), 0);
    EXPECT_EQ(dialog.changeNewRate(2.0), 0);
    EXPECT_EQ(dialog.setNewPreTrigPts(), 0);
    EXPECT_EQ(dialog.loadOldPreTrigPts(), 0);
    EXPECT_EQ(dialog.apply(), 0);
    dialog.waitForWorker();
}

// ---- showing

TEST(ResampleDialogShowing, NeedsTrials)
{
    const ScriptedHost host;
    CMEGDatazk data;
    EXPECT_EQ(data.showDlgResampleData(nullptr), 0);
    EXPECT_THAT(host.messages(), ElementsAre("There is no data!"));
    EXPECT_EQ(data.m_pDlgResampling, nullptr);
    std::unique_ptr<CDlgReSamplingMEGData> slot;
    EXPECT_EQ(CDlgReSamplingMEGData::show(slot, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(host.messages().size(), 1U);
}

TEST(ResampleDialogShowing, MakesTheDialogOnceAndLoadsItEachTime)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(1, 1, 10), 1);
    recordAs(data, 1000);
    data.m_recordInfo.m_nRecTotalSample = 50;
    CWnd parent;
    EXPECT_EQ(data.showDlgResampleData(&parent), 1);
    CDlgReSamplingMEGData* dialog = data.m_pDlgResampling.get();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 49) << "opening limits the points";
    EXPECT_EQ(dialog->m_nPreTrigPts, 100) << "loading shows the recorded ones";
    EXPECT_EQ(dialog->m_pDataset, &data);
    EXPECT_EQ(dialog->m_pParent, &parent);
    EXPECT_TRUE(dialog->IsWindowVisible());
    dialog->exit();
    data.m_recordInfo.m_nRecPreTrigPts = 3;
    data.m_recordInfo.m_nResampleFactor = 5;
    EXPECT_EQ(data.showDlgResampleData(nullptr), 1);
    EXPECT_EQ(data.m_pDlgResampling.get(), dialog);
    EXPECT_EQ(dialog->m_pParent, &parent);
    EXPECT_EQ(dialog->m_nFactor, 5);
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 3);
    EXPECT_TRUE(dialog->IsWindowVisible());
}

TEST(ResampleDialogShowing, OpensThenLoadsAndThenComesToTheFront)
{
    class Dialog : public RecordingDialog
    {
    public:
        using RecordingDialog::RecordingDialog;
        std::vector<std::string> m_before; ///< calls when it came to the front
        int m_fronts = 0;

    protected:
        void bringToFront() override
        {
            m_before = calls();
            ++m_fronts;
        }
    };
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(1, 1, 10), 1);
    recordAs(data, 1000);
    auto owned = std::make_unique<Dialog>(data);
    const Dialog& dialog = *owned;
    std::unique_ptr<CDlgReSamplingMEGData> slot = std::move(owned);
    EXPECT_EQ(CDlgReSamplingMEGData::show(slot, &data, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(dialog.m_fronts, 1);
    EXPECT_THAT(dialog.m_before, ElementsAre("open", "show"));
}

TEST(ResampleDialogShowing, StoresCallbacksAndDataset)
{
    CMEGDatazk first;
    CMEGDatazk second;
    ASSERT_EQ(first.initMEGData(1, 1, 10), 1);
    ASSERT_EQ(second.initMEGData(1, 1, 10), 1);
    std::unique_ptr<CDlgReSamplingMEGData> slot;
    EXPECT_EQ(CDlgReSamplingMEGData::show(slot, &first, nullptr, Application::createDocument, Application::attach), 1);
    EXPECT_EQ(CDlgReSamplingMEGData::show(slot, &second, nullptr, Application::createDocument, nullptr), 1);
    EXPECT_EQ(slot->m_pDataset, &second);
    EXPECT_EQ(slot->m_createDocument, Application::createDocument);
    EXPECT_EQ(slot->m_attachDatasets, nullptr);
}

TEST(ResampleDialogShowing, GivesZeroWithoutMemory)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(1, 1, 10), 1);
    const FailingAllocator first(1);
    EXPECT_EQ(data.showDlgResampleData(nullptr), 0);
    EXPECT_EQ(data.showDlgResampleData(nullptr), 1);
}

TEST(ResampleDialogShowing, TheLatestDialogIsTheOneLastShown)
{
    CMEGDatazk first;
    ASSERT_EQ(first.initMEGData(1, 1, 10), 1);
    {
        CMEGDatazk second;
        ASSERT_EQ(second.initMEGData(1, 1, 10), 1);
        first.showDlgResampleData(nullptr);
        second.showDlgResampleData(nullptr);
        EXPECT_EQ(CDlgReSamplingMEGData::latest(), second.m_pDlgResampling.get());
        first.showDlgResampleData(nullptr);
        EXPECT_EQ(CDlgReSamplingMEGData::latest(), first.m_pDlgResampling.get());
        second.showDlgResampleData(nullptr);
    }
    EXPECT_EQ(CDlgReSamplingMEGData::latest(), nullptr);
}

} // namespace
} // namespace megset::CDlgReSamplingMEGData_test
