#include "megset/processing/resampledCopy.h"

#include "tests/processing/resampledDataset.h"

#include "megset/platform/CArchiveException.h"
#include "megset/platform/CDocument.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::resampledCopy_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A new dataset with its folder.
struct NewDataset
{
    NewDataset()
    {
        document.SetPathName(folder.path("Made.meg"));
        EXPECT_EQ(data.setDocument(&document, true), 1);
    }
    std::vector<double> waveOf(int trial) { return wave(*data.getTrialzk(trial)->getChannel(0)); }
    std::vector<double> backupOf(int trial) { return backup(*data.getTrialzk(trial)->getChannel(0)); }

    TemporaryFolder folder;
    CDocument document;
    CMEGDatazk data;
};

/// Makes the channels MEG measure channels, and saves them so.
void makeMeg(FiledDataset& filed, int trials)
{
    for (int i = 0; i < trials; ++i) {
        const CMDTrialzk& trial = *filed.data.getTrialzk(i);
        for (int k = 0; k < trial.getTotalChannel(); ++k)
            trial.getChannel(k)->m_nChannelType = 100;
    }
    filed.data.getTrialzk(0);
}

std::vector<double> withZero(std::vector<double> x)
{
    x.push_back(0.0);
    return x;
}

TEST(ResampledCopyMaking, CopiesAllTrialsWithTheirInformation)
{
    const ScriptedHost host;
    RecordedDataset filed(2, 3, 10);
    makeMeg(filed, 2);
    filed.data.getTrialzk(1)->getChannel(2)->m_strChannelName = "MLC21";
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, false, 3, 333.0}), 1);
    ASSERT_EQ(made.data.getTotalTrial(), 2);
    for (int i = 0; i < 2; ++i) {
        const CMDTrialzk& trial = *made.data.getTrialzk(i);
        EXPECT_EQ(trial.m_strTrialName, CString::formatted("Trial%dReSampl", i));
        EXPECT_EQ(made.data.m_aTrialFilePath.GetAt(i), made.folder.path(CString::formatted("Trial%dReSampl.trl", i)));
        for (int k = 0; k < 3; ++k) {
            const auto expected = resampled(channelValues(i, k, 10), false, 3, 4);
            EXPECT_EQ(wave(*trial.getChannel(k)), expected);
            EXPECT_EQ(backup(*trial.getChannel(k)), expected);
        }
    }
    EXPECT_EQ(made.data.getTrialzk(1)->getChannel(2)->m_strChannelName, "MLC21");
    EXPECT_EQ(made.data.isShowChnl4Alltrials(2), 1);
    EXPECT_EQ(filed.data.m_bBusy, 0);
    EXPECT_EQ(made.data.m_bBusy, 0);
    host.expectNoMessages();
}

TEST(ResampledCopyMaking, TakesTheDataForItsRecording)
{
    RecordedDataset filed(1, 2, 1000);
    makeMeg(filed, 1);
    filed.data.m_recordInfo.m_nRecPreTrigPts = 50;
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, true, 3, 321.0}), 1);
    const CMEGRecordInfozkProzk& record = made.data.m_recordInfo;
    EXPECT_EQ(record.m_bResampleAverage, 1);
    EXPECT_EQ(record.m_nResampleFactor, 1);
    EXPECT_EQ(record.m_dRecSampleRate, 321.0) << "the rate is the one that was given";
    EXPECT_EQ(record.m_dRawSampleRate, 321.0);
    EXPECT_EQ(record.m_nRecTotalSample, 334);
    EXPECT_EQ(record.m_nRawTotalSample, 334);
    EXPECT_EQ(record.m_nRecPreTrigPts, 16);
    EXPECT_EQ(record.m_nRawPreTrigPts, 33);
}

TEST(ResampledCopyMaking, LeavesTheLastSampleZeroWhereTheCountDividesByTheFactor)
{
    RecordedDataset filed(1, 1, 10);
    const ScriptedHost host;
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, false, 5, 200.0}), 1);
    EXPECT_EQ(made.waveOf(0), withZero(resampled(channelValues(0, 0, 10), false, 5, 2)));
    EXPECT_EQ(made.backupOf(0), made.waveOf(0));
}

TEST(ResampledCopyMaking, TakesWorkingSamplesFromTheWorkingOnes)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 12);
    ASSERT_EQ(filed.data.reSampleData(false, 2, true), 1); // 7 working samples of 12
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, true, 2, 250.0}), 1);
    const auto working = resampled(channelValues(0, 0, 12), false, 2, 7);
    EXPECT_EQ(made.waveOf(0), resampled(working, true, 2, 4));
    EXPECT_EQ(made.backupOf(0), withZero(resampled(channelValues(0, 0, 12), true, 2, 6)));
    EXPECT_EQ(made.data.getTrialzk(0)->m_nTrialResampleStep, 2) << "the trial's words come along";
}

TEST(ResampledCopyMaking, ARunOverTheEndCountsTheLastSampleAgainInBothArrays)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 11);
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, true, 4, 250.0}), 1);
    EXPECT_EQ(made.waveOf(0), resampled(channelValues(0, 0, 11), true, 4, 3));
    EXPECT_EQ(made.waveOf(0)[2], (8.0 + 9.0 + 10.0 + 10.0) / 4.0);
    EXPECT_EQ(made.backupOf(0), made.waveOf(0));
}

TEST(ResampledCopyMaking, OfTheCurrentTrialAlone)
{
    const ScriptedHost host;
    RecordedDataset filed(3, 1, 10);
    filed.data.getTrialzk(1);
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {false, false, 2, 500.0}), 1);
    ASSERT_EQ(made.data.getTotalTrial(), 1);
    EXPECT_EQ(made.waveOf(0)[1], valueAt(1, 0, 2));
    EXPECT_EQ(filed.data.m_nCurrentTrial, 1) << "which stays current";
}

TEST(ResampledCopyMaking, OfAllTrialsWalksOverTheirPlacesAlone)
{
    ScriptedHost host;
    RecordedDataset filed(1, 1, 10);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    filed.data.m_nTotalTrial = 5;
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, false, 2, 500.0}), 1);
    EXPECT_EQ(made.data.getTotalTrial(), 1);
    host.expectNoMessages();
}

TEST(ResampledCopyMaking, BringsTriggersWithTheirSampleNumbersAsTheyAre)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 1, 10);
    addMarker(filed.data.m_mkTrig, {3, 8});
    addMarker(filed.data.m_mkTrigRecord, {4});
    addMarker(filed.data.m_mkMarker, {5});
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, false, 2, 500.0}), 1);
    ASSERT_EQ(made.data.m_mkTrig.getTotalMarkers(), 1);
    EXPECT_THAT(beginsOf(*made.data.m_mkTrig.getMarker(0, false)), ElementsAre(3, 8));
    EXPECT_EQ(made.data.m_mkTrigRecord.getTotalMarkers(), 1);
    EXPECT_EQ(made.data.m_mkMarker.getTotalMarkers(), 0) << "other marks don't";
}

TEST(ResampledCopyMaking, PassesOverTrialsThatCantBeOpenedOrHaveNoChannels)
{
    ScriptedHost host;
    RecordedDataset filed(4, 1, 10);
    filed.data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    host.willAnswerNo();
    CMDTrialzk empty;
    filed.writeTrial(2, empty);
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, false, 2, 500.0}), 1);
    ASSERT_EQ(made.data.getTotalTrial(), 2);
    EXPECT_EQ(made.waveOf(1)[0], valueAt(3, 0, 0));
}

TEST(ResampledCopyMaking, LeavesChannelsWithoutWorkingOrRawSamplesEmpty)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 4, 10);
    CMDTrialzk& trial = *filed.data.getTrialzk(0);
    trial.getChannel(0)->_cleanTimeDataC(false);
    trial.getChannel(1)->m_pBkData.reset();
    trial.getChannel(1)->m_nBkDataSample = 0;
    trial.m_ppChannel.set(2, nullptr);
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {false, false, 2, 500.0}), 1);
    const CMDTrialzk& copy = *made.data.getTrialzk(0);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(wave(*copy.getChannel(i)).empty() && backup(*copy.getChannel(i)).empty()) << i;
    EXPECT_EQ(wave(*copy.getChannel(3)).size(), 6U);
}

TEST(ResampledCopyMaking, BothDatasetsAreBusyWhileItRuns)
{
    class Host : public ScriptedHost
    {
    public:
        int messageBox(const CString& text, unsigned type) override
        {
            m_sourceBusy = m_source->m_bBusy;
            m_madeBusy = m_made->m_bBusy;
            return ScriptedHost::messageBox(text, type);
        }
        const CMEGDatazk* m_source = nullptr;
        const CMEGDatazk* m_made = nullptr;
        int m_sourceBusy = 0;
        int m_madeBusy = 0;
    };
    Host host;
    RecordedDataset filed(2, 1, 10);
    NewDataset made;
    host.m_source = &filed.data;
    host.m_made = &made.data;
    filed.data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    host.willAnswerNo();
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, false, 2, 500.0}), 1);
    EXPECT_EQ(host.m_sourceBusy, 1);
    EXPECT_EQ(host.m_madeBusy, 1);
    EXPECT_EQ(filed.data.m_bBusy, 0);
    EXPECT_EQ(made.data.m_bBusy, 0);
}

TEST(ResampledCopyMaking, GivesTrialsOfOneNameFilesOfTheirOwn)
{
    const ScriptedHost host;
    RecordedDataset filed(3, 1, 10);
    for (int i = 0; i < 3; ++i)
        filed.data.getTrialzk(i)->m_strTrialName = "Same";
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {true, false, 2, 500.0}), 1);
    EXPECT_EQ(made.data.m_aTrialFilePath.GetAt(0), made.folder.path("SameReSampl.trl"));
    EXPECT_EQ(made.data.m_aTrialFilePath.GetAt(1), made.folder.path("SameReSampl_1.trl"));
    EXPECT_EQ(made.data.m_aTrialFilePath.GetAt(2), made.folder.path("SameReSampl_2.trl"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(made.waveOf(i)[0], valueAt(i, 0, 0));
}

TEST(ResampledCopyMaking, NeverWritesOverAFileOfTheSource)
{
    const ScriptedHost host;
    NewDataset made;
    CMEGDatazk source;
    ASSERT_EQ(source.initMEGData(1, 1, 10), 1);
    recordAs(source, 10);
    source.m_aTrialFilePath.Add(made.folder.path("AReSampl.trl"));
    source.getTrialzk(0)->m_strTrialName = "A";
    EXPECT_EQ(copyResampled(source, made.data, {true, false, 2, 500.0}), 1);
    EXPECT_EQ(made.data.m_aTrialFilePath.GetAt(0), made.folder.path("AReSampl_1.trl"));
}

TEST(ResampledCopyMaking, ShowsTheMegMeasureChannelsWhereThereAreTwo)
{
    const ScriptedHost host;
    RecordedDataset filed(1, 3, 10);
    makeMeg(filed, 1);
    filed.data.getTrialzk(0)->getChannel(1)->m_nChannelType = 302;
    NewDataset made;
    EXPECT_EQ(copyResampled(filed.data, made.data, {false, false, 2, 500.0}), 1);
    EXPECT_EQ(made.data.isShowChnl4Alltrials(0), 1);
    EXPECT_EQ(made.data.isShowChnl4Alltrials(1), 0);
    filed.data.getTrialzk(0)->getChannel(2)->m_nChannelType = 302;
    NewDataset other;
    EXPECT_EQ(copyResampled(filed.data, other.data, {false, false, 2, 500.0}), 1);
    EXPECT_EQ(other.data.isShowChnl4Alltrials(1), 1) << "one alone does not count";
    host.expectNoMessages();
}

TEST(ResampledCopyMaking, WhereMemoryEndsInALaterTrialKeepsTheOneBefore)
{
    int keptOne = 0;
    for (std::int64_t n = 1;; ++n) {
        const ScriptedHost host;
        RecordedDataset filed(2, 1, 10);
        NewDataset made;
        int done = 0;
        std::int64_t failures = 0;
        {
            const FailingAllocator failing(n);
            try {
                done = copyResampled(filed.data, made.data, {true, false, 2, 500.0});
            } catch (const CArchiveException&) {
                continue; // of a trial's file, which could not be held
            }
            failures = failing.failures();
        }
        if (failures == 0)
            break;
        if (done)
            continue;
        ASSERT_LT(made.data.getTotalTrial(), 2);
        keptOne += made.data.getTotalTrial();
        for (int i = 0; i < made.data.getTotalTrial(); ++i)
            EXPECT_EQ(made.waveOf(i), withZero(resampled(channelValues(i, 0, 10), false, 2, 5)));
        EXPECT_EQ(made.data.m_recordInfo.m_dRawSampleRate, 1000.0) << "nothing more is done";
    }
    EXPECT_GT(keptOne, 1);
}

TEST(ResampledCopyMaking, WhereMemoryEndsTheSourceStaysAsItWas)
{
    RecordedDataset filed(1, 2, 10);
    makeMeg(filed, 1);
    const std::int64_t failures = forEachAllocationFailure([&filed] {
        const ScriptedHost host;
        NewDataset made;
        const int done = copyResampled(filed.data, made.data, {false, false, 2, 500.0});
        if (!done) {
            EXPECT_FALSE(host.messages().empty());
        }
        EXPECT_EQ(filed.data.m_bBusy, 0);
        EXPECT_EQ(made.data.m_bBusy, 0);
    });
    EXPECT_GT(failures, 5);
    EXPECT_EQ(filed.waveOf(0, 0), channelValues(0, 0, 10));
}

TEST(ResampledCopyMaking, ChecksTheFactorLikeResamplingInPlace)
{
    const ScriptedHost host;
    CMEGDatazk data;
    recordAs(data, 1000);
    EXPECT_EQ(checkResampledCopy(data, 499), 1);
    EXPECT_EQ(checkResampledCopy(data, 500), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Re-sampling factor (500) cannot be larger than half of the sampling rate (500)"));
    for (const std::int64_t factor : {std::int64_t{0}, std::int64_t{-7}, std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(checkResampledCopy(data, factor), 1) << "as 1";
}

// ---- what a session is

TEST(SessionCopy, TakesRecordTriggersHeadAndFiducials)
{
    CMEGDatazk source;
    recordAs(source, 77);
    addMarker(source.m_mkTrig, {1});
    addMarker(source.m_mkTrigRecord, {2, 3});
    source.m_headLocalization.m_nWorkCoordinate = 2;
    source.m_headLocalization.m_fidDewarMsr.getFiducialPt(CFiducial::nasion)->setFidPos(1.0, 2.0, -90.0);
    source.m_fidEegMeasure.getFiducialPt(CFiducial::leftEar)->setFidPos(70.0, 0.0, 1.0);
    source.m_fidWorkEeg.getFiducialPt(CFiducial::leftEar)->setFidPos(71.0, 0.0, 2.0);
    CMEGDatazk data;
    EXPECT_EQ(data.copyMegInfo(&source), 1);
    EXPECT_TRUE(data.m_headLocalization == source.m_headLocalization);
    EXPECT_TRUE(data.m_fidEegMeasure == source.m_fidEegMeasure);
    EXPECT_TRUE(data.m_fidWorkEeg == source.m_fidWorkEeg);
    EXPECT_FALSE(data.m_fidEegMeasure == data.m_fidWorkEeg);
    EXPECT_EQ(data.m_recordInfo.m_nRawTotalSample, 77);
    EXPECT_EQ(data.m_mkTrig, source.m_mkTrig);
    EXPECT_EQ(data.m_mkTrigRecord, source.m_mkTrigRecord);
    EXPECT_EQ(data.copyMegInfo(nullptr), 0);
}

TEST(SessionCopy, TakesTheFirstTrialsChannelsWhereBothHaveThem)
{
    CMEGDatazk source;
    CMEGDatazk data;
    ASSERT_EQ(source.initMEGData(1, 1, 2), 1);
    ASSERT_EQ(data.initMEGData(1, 1, 2), 1);
    source.getTrialzk(0)->getChannel(0)->m_strChannelName = "Cz";
    EXPECT_EQ(data.copyMegInfo(&source), 1);
    EXPECT_EQ(data.getTrialzk(0)->getChannel(0)->m_strChannelName, "Cz");
}

TEST(SessionCopy, LeavesTheSourcesCurrentTrial)
{
    FiledDataset filed(2, 1, 3);
    filed.data.getTrialzk(1);
    CMEGDatazk data;
    EXPECT_EQ(data.copyMegInfo(&filed.data), 1);
    EXPECT_EQ(filed.data.m_nCurrentTrial, 1);
}

} // namespace
} // namespace megset::resampledCopy_test
