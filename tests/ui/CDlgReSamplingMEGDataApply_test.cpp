#include "tests/ui/resampleDialog.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CDlgReSamplingMEGDataApply_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ---- in place

TEST(ApplyInPlace, ResamplesOnAWorkerThread)
{
    const ScriptedHost host;
    RecordedDataset filed(2, 2, 100);
    CWnd shown;
    CWnd hidden;
    hidden.ShowWindow(false);
    filed.data.m_aViewer.Add(&shown);
    filed.data.m_aViewer.Add(&hidden);
    RecordingDialog dialog(filed.data);
    dialog.ShowWindow(true);
    dialog.m_bMakeNewDataset = false;
    dialog.m_bAverage = true;
    dialog.m_typedFactor = 4;
    EXPECT_EQ(dialog.apply(), 1);
    dialog.waitForWorker();
    EXPECT_THAT(dialog.calls(),
                ElementsAre("open", "read", "title: Preparing for Re-sampling MEG data...", "disable",
                            "title: Re-sampling MEG data...", "title: Re-sampling MEG data has been done!", "enable"));
    EXPECT_TRUE(dialog.IsWindowVisible()) << "the dialog stays open";
    EXPECT_EQ(filed.data.m_bViewRedraw, 1);
    EXPECT_THAT(host.invalidated(), ElementsAre(&shown));
    EXPECT_EQ(host.waitDepth(), 0);
    EXPECT_THAT(host.calls(), ElementsAre("wait begin", "invalidate erase", "wait end"));
    EXPECT_EQ(filed.data.m_recordInfo.m_nRecTotalSample, 25);
    for (int trial = 0; trial < 2; ++trial)
        EXPECT_EQ(filed.waveOf(trial, 1), resampled(channelValues(trial, 1, 100), true, 4, 26));
}

TEST(ApplyInPlace, CanBeDoneAgain)
{
    RecordedDataset filed(1, 1, 100);
    RecordingDialog dialog(filed.data);
    dialog.m_bMakeNewDataset = false;
    for (const std::int64_t factor : {4, 5, 1}) {
        dialog.m_nFactor = factor;
        EXPECT_EQ(dialog.apply(), 1);
        dialog.waitForWorker();
        EXPECT_EQ(filed.waveOf(0, 0), resampled(channelValues(0, 0, 100), false, factor, 100 / factor + 1));
    }
}

TEST(ApplyInPlace, OfTheCurrentTrialAlone)
{
    RecordedDataset filed(2, 1, 100);
    RecordingDialog dialog(filed.data);
    dialog.m_bMakeNewDataset = false;
    dialog.m_bAllTrials = false;
    dialog.m_nFactor = 2;
    EXPECT_EQ(dialog.apply(), 1);
    dialog.waitForWorker();
    EXPECT_EQ(filed.data.m_nCurrentTrial, 0);
    EXPECT_EQ(wave(*filed.readTrial(1)->getChannel(0)), channelValues(1, 0, 100));
}

TEST(ApplyInPlace, ARejectedFactorStaysInTheDataset)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 100);
    RecordingDialog dialog(filed.data);
    dialog.m_bMakeNewDataset = false;
    dialog.m_bAverage = true;
    dialog.m_nFactor = 50;
    EXPECT_EQ(dialog.apply(), 1);
    dialog.waitForWorker();
    EXPECT_THAT(host.messages(),
                ElementsAre("Re-sampling factor (50) cannot be larger than half of the sampling rate (50)"));
    const CMEGRecordInfozkProzk& record = filed.data.m_recordInfo;
    EXPECT_EQ(record.m_nResampleFactor, 50);
    EXPECT_EQ(record.m_bResampleAverage, 1);
    EXPECT_EQ(record.m_nRecTotalSample, 100);
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 100));
    dialog.update();
    EXPECT_EQ(dialog.m_nFactor, 50);
    EXPECT_EQ(dialog.GetWindowText(), "Re-sampling MEG data has been done!");
}

TEST(ApplyInPlace, FieldsMayBeEditedWhileTheWorkerRuns)
{
    RecordedDataset filed(3, 1, 200);
    RecordingDialog dialog(filed.data);
    dialog.m_bMakeNewDataset = false;
    dialog.m_nFactor = 4;
    EXPECT_EQ(dialog.apply(), 1);
    dialog.m_nFactor = 7;
    dialog.m_bAverage = true;
    dialog.waitForWorker();
    EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, 4);
    EXPECT_EQ(filed.data.m_recordInfo.m_bResampleAverage, 0);
}

/// A host on which the worker waits in its wait cursor until it is let go.
class HoldingHost : public ScriptedHost
{
public:
    void beginWaitCursor() override
    {
        ScriptedHost::beginWaitCursor();
        m_begun.SetEvent();
        m_release.Lock();
    }
    CEvent m_begun{false, true};
    CEvent m_release{false, true};
};

TEST(ApplyInPlace, OnlyOneRunsAtATime)
{
    HoldingHost host;
    RecordedDataset filed(1, 1, 100);
    RecordedDataset other(1, 1, 100);
    RecordingDialog dialog(filed.data);
    RecordingDialog second(other.data);
    dialog.m_bMakeNewDataset = second.m_bMakeNewDataset = false;
    dialog.m_nFactor = 4;
    second.m_nFactor = 5;
    EXPECT_EQ(dialog.apply(), 1);
    host.m_begun.Lock();
    EXPECT_EQ(dialog.apply(), 0);
    EXPECT_EQ(second.apply(), 0);
    const CDlgReSamplingMEGData third;
    EXPECT_EQ(CDlgReSamplingMEGData::latest(), &dialog) << "the worker finds its own dialog";
    host.m_release.SetEvent();
    dialog.waitForWorker();
    EXPECT_EQ(filed.data.m_recordInfo.m_nRecTotalSample, 25);
    EXPECT_EQ(other.data.m_recordInfo.m_nResampleFactor, 1);
    EXPECT_EQ(second.apply(), 1);
    second.waitForWorker();
    EXPECT_EQ(other.data.m_recordInfo.m_nRecTotalSample, 20);
}

TEST(ApplyInPlace, ButtonsAreDisabledWhileTheWorkerRuns)
{
    class Host : public ScriptedHost
    {
    public:
        void invalidate(CWnd& view, bool erase) override
        {
            m_bEnabled = CDlgReSamplingMEGData::latest()->areButtonsEnabled();
            m_title = CDlgReSamplingMEGData::latest()->GetWindowText();
            ScriptedHost::invalidate(view, erase);
        }
        bool m_bEnabled = true;
        CString m_title;
    };
    Host host;
    RecordedDataset filed(1, 1, 100);
    CWnd view;
    filed.data.m_aViewer.Add(&view);
    CDlgReSamplingMEGData dialog;
    dialog.m_pDataset = &filed.data;
    dialog.m_bMakeNewDataset = false;
    EXPECT_EQ(dialog.apply(), 1);
    dialog.waitForWorker();
    EXPECT_FALSE(host.m_bEnabled);
    EXPECT_EQ(host.m_title, "Re-sampling MEG data...");
    EXPECT_TRUE(dialog.areButtonsEnabled());
}

TEST(ApplyInPlace, AnExceptionEnablesTheButtonsAndReachesWhoWaits)
{
    class Host : public ScriptedHost
    {
    public:
        void invalidate(CWnd&, bool) override { throw std::runtime_error("no view"); }
    };
    const Host host;
    RecordedDataset filed(1, 1, 100);
    CWnd view;
    filed.data.m_aViewer.Add(&view);
    RecordingDialog dialog(filed.data);
    dialog.m_bMakeNewDataset = false;
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_THROW(dialog.waitForWorker(), std::runtime_error);
    EXPECT_TRUE(dialog.areButtonsEnabled());
    EXPECT_EQ(host.waitDepth(), 0);
    filed.data.m_aViewer.RemoveAll();
    EXPECT_EQ(dialog.apply(), 1) << "and leaves the way free";
}

TEST(ApplyInPlace, TheEndOfTheDatasetWaitsForTheWorker)
{
    RecordedDataset filed(1, 1, 1000);
    auto data = std::make_unique<CMEGDatazk>();
    ASSERT_EQ(data->initMEGData(1, 20, 10000), 1);
    recordAs(*data, 10000);
    ASSERT_EQ(data->showDlgResampleData(nullptr), 1);
    data->m_pDlgResampling->m_bMakeNewDataset = false;
    data->m_pDlgResampling->m_nFactor = 2;
    EXPECT_EQ(data->m_pDlgResampling->apply(), 1);
    data.reset();
    EXPECT_EQ(CDlgReSamplingMEGData::latest(), nullptr);
}

// ---- to a new dataset

TEST(ApplyToNewDataset, MakesADatasetAndCloses)
{
    const ScriptedHost host;
    Application application;
    RecordedDataset filed(2, 1, 10);
    RecordingDialog dialog(filed.data);
    dialog.m_createDocument = Application::createDocument;
    dialog.m_attachDatasets = Application::attach;
    dialog.changeFactor(3);
    filed.data.getTrialzk(0)->getChannel(0)->setChannelType(100);
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_THAT(dialog.calls(),
                ElementsAre("show", "read", "disable", "title: Re-sampling to a New MEG dataset...",
                            "title: New Resampled dataset has been created successfully!",
                            "title: Re-sampling to a New MEG dataset has been done!", "enable", "close"));
    EXPECT_EQ(host.calls().front(), "wait begin");
    EXPECT_EQ(host.calls().back(), "wait end");
    ASSERT_NE(application.made, nullptr);
    EXPECT_EQ(application.made->getTotalTrial(), 2);
    EXPECT_EQ(application.made->getDocument(), &application.document);
    EXPECT_EQ(application.made->m_recordInfo.m_dRawSampleRate, 1000.0 / 3.0);
    EXPECT_EQ(application.made->m_recordInfo.m_nResampleFactor, 1);
    EXPECT_TRUE(dialog.m_aNewDataset.IsEmpty());
    EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, 3) << "Apply writes the settings to the source";
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 10)) << "whose samples stay";
}

TEST(ApplyToNewDataset, OfTheCurrentTrialAloneAndWithAveraging)
{
    Application application;
    RecordedDataset filed(3, 1, 10);
    filed.data.getTrialzk(1);
    RecordingDialog dialog(filed.data);
    dialog.m_createDocument = Application::createDocument;
    dialog.m_attachDatasets = Application::attach;
    dialog.m_bAllTrials = false;
    dialog.m_bAverage = true;
    dialog.m_nFactor = 3;
    EXPECT_EQ(dialog.apply(), 1);
    ASSERT_NE(application.made, nullptr);
    ASSERT_EQ(application.made->getTotalTrial(), 1);
    EXPECT_EQ(application.made->m_recordInfo.m_bResampleAverage, 1);
    EXPECT_EQ(wave(*application.made->getTrialzk(0)->getChannel(0)), resampled(channelValues(1, 0, 10), true, 3, 4));
    EXPECT_EQ(filed.data.m_recordInfo.m_bResampleAverage, 1) << "Apply writes it to the source, too";
}

TEST(ApplyToNewDataset, SetsAFactorBelowOneToOneInTheDialog)
{
    Application application;
    RecordedDataset filed(1, 1, 10);
    RecordingDialog dialog(filed.data);
    dialog.m_createDocument = Application::createDocument;
    dialog.m_attachDatasets = Application::attach;
    dialog.m_nFactor = -4;
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_EQ(dialog.m_nFactor, 1);
    EXPECT_EQ(filed.data.m_recordInfo.m_nResampleFactor, -4);
}

TEST(ApplyToNewDataset, StopsAtAFactorOfHalfTheSamples)
{
    const ScriptedHost host;
    Application application;
    RecordedDataset filed(1, 1, 10);
    RecordingDialog dialog(filed.data);
    dialog.m_createDocument = Application::createDocument;
    dialog.m_attachDatasets = Application::attach;
    dialog.m_nFactor = 5;
    EXPECT_EQ(dialog.apply(), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Re-sampling factor (5) cannot be larger than half of the sampling rate (5)"));
    EXPECT_EQ(application.attached, 0);
    EXPECT_EQ(dialog.GetWindowText(), "Re-sampling to a New MEG dataset has been done!");
    EXPECT_TRUE(dialog.areButtonsEnabled());
}

TEST(ApplyToNewDataset, StopsSilentlyWithoutCallbacksOrDocument)
{
    const ScriptedHost host;
    Application application;
    RecordedDataset filed(1, 1, 10);
    RecordingDialog dialog(filed.data);
    EXPECT_EQ(dialog.apply(), 0);
    dialog.m_attachDatasets = Application::attach;
    EXPECT_EQ(dialog.apply(), 0);
    dialog.m_createDocument = Application::createDocument;
    dialog.m_attachDatasets = nullptr;
    EXPECT_EQ(dialog.apply(), 0);
    dialog.m_attachDatasets = Application::attach;
    application.givesDocument = false;
    EXPECT_EQ(dialog.apply(), 0);
    EXPECT_EQ(application.attached, 0);
    host.expectNoMessages();
}

TEST(ApplyToNewDataset, EndsADatasetThatTheApplicationRefuses)
{
    Application application;
    application.accepts = false;
    RecordedDataset filed(1, 1, 10);
    RecordingDialog dialog(filed.data);
    dialog.m_createDocument = Application::createDocument;
    dialog.m_attachDatasets = Application::attach;
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_EQ(application.attached, 1);
    EXPECT_TRUE(dialog.m_aNewDataset.IsEmpty());
    EXPECT_THAT(dialog.calls(), ::testing::Contains("title: New Resampled dataset has been created successfully!"));
}

TEST(ApplyToNewDataset, EveryRefusedAllocationLeavesTheDialogUsable)
{
    RecordedDataset filed(2, 1, 10);
    filed.data.getTrialzk(0);
    const std::int64_t failures = forEachAllocationFailure([&filed] {
        const ScriptedHost host;
        Application application;
        RecordingDialog dialog(filed.data);
        dialog.m_createDocument = Application::createDocument;
        dialog.m_attachDatasets = Application::attach;
        dialog.m_bAllTrials = false;
        dialog.m_nFactor = 2;
        if (!dialog.apply()) {
            EXPECT_FALSE(host.messages().empty());
            EXPECT_EQ(application.attached, 0);
        }
        EXPECT_TRUE(dialog.areButtonsEnabled());
        EXPECT_EQ(filed.data.m_bBusy, 0);
    });
    EXPECT_GT(failures, 5);
}

} // namespace
} // namespace megset::CDlgReSamplingMEGDataApply_test
