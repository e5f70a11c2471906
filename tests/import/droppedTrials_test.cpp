// Trials that come into a dataset ready-made: imported, dropped, and dropped on an empty one.

#include "megset/platform/CArchiveException.h"

#include "tests/import/importSession.h"
#include "tests/kit/FailingAllocator.h"

#include <climits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::droppedTrials_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString unequalChannels = "The droped trial and existing trial have unequal channels, which may be troublesome!  "
                                "would you like to continue?";
const CString unequalSample = "The droped trial and existing trial have unequal sample, which may be troublesome!  "
                              "would you like to continue?";
const CString tooSmall = "Selected sample is too small!?, please select at least 2 samples";
constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

/// A session with its folder, and trials of two MEG channels.
class ReadySession : public ImportSession
{
protected:
    ReadySession()
    {
        EXPECT_EQ(data.setDocument(&doc, true), 1);
        data.m_recordInfo.m_nRecTotalSample = 4;
        data.m_recordInfo.m_nRawTotalSample = 4;
    }
    static std::unique_ptr<CMDTrialzk> megTrial(int number, int channels = 2, std::int64_t samples = 4)
    {
        auto made = makeTrial(number, channels, samples);
        for (int c = 0; c < channels; ++c) {
            made->getChannel(c)->m_nChannelType = 100;
            made->getChannel(c)->m_strChannelNameRaw = CString::formatted("MEG%d", c);
            made->getChannel(c)->ensureMEGSensor()->setSnsPos(-1, 0, c == 0 ? -50.0 : 50.0, 60.0, 0.0);
        }
        return made;
    }
    /// Imports a trial, and forgets what was shown.
    void import(int number, std::int64_t samples = 4)
    {
        EXPECT_EQ(data.addImportNeuromagTrial(megTrial(number, 2, samples).release(), 0), 1);
        host.clearRecord();
    }
    std::int64_t recorded() const
    {
        EXPECT_EQ(data.m_recordInfo.m_nRawTotalSample, data.m_recordInfo.m_nRecTotalSample);
        return data.m_recordInfo.m_nRecTotalSample;
    }
};

// ---- imported

TEST_F(ReadySession, AnImportedTrialIsNamedSavedAndCurrent)
{
    CMDTrialzk* given = megTrial(1).release();
    EXPECT_EQ(data.addImportNeuromagTrial(given, 0), 1);
    EXPECT_EQ(data.getMDTrial(0), given);
    EXPECT_EQ(given->m_strTrialName, "ImportTrial0");
    EXPECT_EQ(given->m_nTrialIndex, 0);
    EXPECT_EQ(given->m_nTrialKind, 1);
    EXPECT_EQ(data.m_nCurrentTrial, 0);
    EXPECT_THAT(folder.names(), ElementsAre("runTrial0.trl"));
    ASSERT_EQ(data.m_aTrialFilePath.GetSize(), 1);
    EXPECT_EQ(data.m_aTrialFilePath[0], folder.path("runTrial0.trl"));
    EXPECT_EQ(data.m_nChnlParamCount, 2);
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 1);
    host.expectNoMessages();
}

TEST_F(ReadySession, AnImportedTrialsSensorsAreNamedAfterTheirPlaceAndTheFileHasTheNamesLater)
{
    CMDTrialzk* given = megTrial(1).release();
    EXPECT_EQ(data.addImportNeuromagTrial(given, 0), 1);
    const CString named = given->getChannel(0)->m_strChannelName;
    EXPECT_EQ(named.Left(1), "M");
    EXPECT_EQ(named.Find("MEG"), -1);
    EXPECT_TRUE(read("runTrial0.trl")->getChannel(0)->m_strChannelName.IsEmpty());
    EXPECT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(read("runTrial0.trl")->getChannel(0)->m_strChannelName, named);
}

TEST_F(ReadySession, AnImportedTrialIsVirtualAsItIsToldAndTheDatasetCountsItAsRecorded)
{
    import(1);
    EXPECT_EQ(data.addImportNeuromagTrial(megTrial(2).release(), 5), 1);
    EXPECT_EQ(trial(1).m_nVirtualTrial, 5);
    EXPECT_EQ(trial(1).m_nTrialKind, 1);
    EXPECT_EQ(trial(1).m_strTrialName, "ImportTrial1");
    EXPECT_EQ(data.m_nTotalTrial, 2);
    EXPECT_EQ(data.m_nRealTrial, 2);
    EXPECT_EQ(data.m_nVirtualTrial, 0);
    EXPECT_EQ(data.getMDTrial(0), nullptr); // was saved
}

TEST_F(ReadySession, AnImportedTrialWhoseFileCantBeWrittenHasNoPath)
{
    block("runTrial0.trl");
    host.willAnswerNo();
    EXPECT_EQ(data.addImportNeuromagTrial(megTrial(1).release(), 0), 1);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 0);
    EXPECT_NE(data.getMDTrial(0), nullptr);
}

TEST_F(ReadySession, AnImportedTrialIsNeverWrittenOverAnothersFile)
{
    import(1);
    import(2);
    data.m_aTrialFilePath.SetAt(0, folder.path("runTrial2.trl"));
    EXPECT_EQ(data.addImportNeuromagTrial(megTrial(3).release(), 0), 1);
    EXPECT_EQ(data.m_aTrialFilePath[2], folder.path("runTrial2_1.trl"));
}

TEST_F(ReadySession, NullAndATrialOfTheDatasetAreNotImported)
{
    import(1);
    EXPECT_EQ(data.addImportNeuromagTrial(nullptr, 0), 0);
    EXPECT_EQ(data.addImportNeuromagTrial(data.getMDTrial(0), 0), 0);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    host.expectNoMessages();
}

TEST_F(ReadySession, WithoutMemoryForItsPlaceAnImportedTrialIsUnsavedAndNotLost)
{
    CMDTrialzk* given = megTrial(1).release();
    {
        const FailingAllocator failing(1);
        EXPECT_EQ(data.addImportNeuromagTrial(given, 0), 0);
    }
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?!"));
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.getUnsavedTrials()[0], given);
    EXPECT_EQ(data.m_nTotalTrial, 0);
}

// ---- dropped whole

TEST_F(ReadySession, ADroppedTrialIsCopiedByWayOfItsFile)
{
    import(1);
    const auto given = megTrial(2);
    given->m_strTrialFilePath = "C:\\elsewhere\\a.trl";
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, -1, -1), 1);
    EXPECT_EQ(given->m_strTrialFilePath, "C:\\elsewhere\\a.trl");
    EXPECT_EQ(given->m_nTrialKind, 0);
    ASSERT_EQ(data.m_nTotalTrial, 2);
    EXPECT_EQ(data.m_nCurrentTrial, 1);
    ASSERT_NE(data.getMDTrial(1), nullptr);
    EXPECT_NE(data.getMDTrial(1), given.get());
    EXPECT_EQ(trial(1).m_nTrialKind, 7);
    EXPECT_EQ(trial(1).m_nTrialIndex, 1);
    EXPECT_EQ(trial(1).m_strTrialName, "Trial2");
    EXPECT_EQ(wave(channel(1, 1)), channelValues(2, 1, 4));
    EXPECT_EQ(data.m_aTrialFilePath[1], folder.path("runDragDropTrial1.trl"));
    EXPECT_TRUE(folder.has("runDragDropTrial1.trl"));
    EXPECT_EQ(data.getMDTrial(0), nullptr); // was saved
    EXPECT_EQ(recorded(), 4);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ReadySession, ADropOnAnEmptyDatasetSetsTheRecordingsSampleCounts)
{
    const auto given = megTrial(2, 2, 9);
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, 3, 4), 1);
    EXPECT_EQ(recorded(), 9);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    EXPECT_EQ(wave(channel(0, 0)), channelValues(2, 0, 9));
}

TEST_F(ReadySession, ADropOfTheThirdModeOnAnEmptyDatasetTakesTheSampleCountOfWhatIsAdded)
{
    EXPECT_EQ(data.dropNewTrial(megTrial(2, 2, 9).get(), 3, 0, 1), 1);
    EXPECT_EQ(recorded(), 9);
    EXPECT_EQ(wave(channel(0, 0)), channelValues(2, 0, 9));
}

TEST_F(ReadySession, ADropOfOtherLengthAsksAndOnYesTheTrialIsAddedWhole)
{
    import(1);
    const auto given = megTrial(2, 2, 9);
    host.willAnswerNo(unequalSample);
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, -1, -1), 0);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    EXPECT_FALSE(folder.has("runDragDropTrial1.trl"));
    host.willAnswerYes(unequalSample);
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, -1, -1), 1);
    EXPECT_EQ(wave(channel(1, 0)), channelValues(2, 0, 9));
    EXPECT_EQ(recorded(), 4);
}

TEST_F(ReadySession, ADropOfOtherChannelsAsksFirst)
{
    import(1);
    const auto given = megTrial(2, 3, 9);
    host.willAnswerNo(unequalChannels);
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, -1, -1), 0);
    host.willAnswerYes(unequalChannels);
    host.willAnswerNo(unequalSample);
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, -1, -1), 0);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    host.willAnswerYes(unequalChannels);
    host.willAnswerYes(unequalSample);
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, -1, -1), 1);
    EXPECT_THAT(host.questions(),
                ElementsAre(unequalChannels, unequalChannels, unequalSample, unequalChannels, unequalSample));
    EXPECT_EQ(trial(1).getTotalChannel(), 3);
}

TEST_F(ReadySession, ADropOfOtherChannelsAsksInEveryMode)
{
    import(1);
    const auto given = megTrial(2, 3);
    for (const int mode : {-1, 0, 1, 2, 3, 4}) {
        host.willAnswerNo(unequalChannels);
        EXPECT_EQ(data.dropNewTrial(given.get(), mode, 0, 2), 0) << mode;
    }
    EXPECT_EQ(data.m_nTotalTrial, 1);
}

TEST_F(ReadySession, ADropOfOtherLengthInAnotherModeDoesntAsk)
{
    import(1);
    const auto given = megTrial(2, 2, 9);
    for (const int mode : {3, 4, -1})
        EXPECT_EQ(data.dropNewTrial(given.get(), mode, 0, 1), 1) << mode;
    for (const int t : {1, 2, 3}) { // each whole
        ASSERT_NE(data.getTrialzk(t), nullptr);
        EXPECT_EQ(wave(channel(t, 0)), channelValues(2, 0, 9));
    }
    EXPECT_EQ(recorded(), 4);
}

TEST_F(ReadySession, ADropComparesWithTheCurrentTrialAlsoWhereThatIsOnDisk)
{
    import(1);
    ASSERT_EQ(data.saveAllTrials(), 1);
    ASSERT_EQ(data.getMDTrial(0), nullptr);
    host.willAnswerNo(unequalSample);
    EXPECT_EQ(data.dropNewTrial(megTrial(2, 2, 9).get(), 0, -1, -1), 0);
}

TEST_F(ReadySession, ADropBesideACurrentTrialThatCantBeOpenedGivesZero)
{
    import(1);
    ASSERT_EQ(data.saveAllTrials(), 1);
    std::filesystem::remove(folder.native("runTrial0.trl"));
    host.willAnswerNo();
    EXPECT_EQ(data.dropNewTrial(megTrial(2).get(), 0, -1, -1), 0);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed "));
}

TEST_F(ReadySession, ATrialOfTheDatasetItselfMayBeDropped)
{
    import(1);
    EXPECT_EQ(data.dropNewTrial(data.getMDTrial(0), 1, 1, 2), 1);
    EXPECT_EQ(data.m_nTotalTrial, 2);
    ASSERT_NE(data.getTrialzk(1), nullptr);
    EXPECT_THAT(wave(channel(1, 0)), ElementsAre(valueAt(1, 0, 1), valueAt(1, 0, 2)));
    ASSERT_NE(data.getTrialzk(0), nullptr);
    EXPECT_EQ(wave(channel(0, 0)), channelValues(1, 0, 4));
    EXPECT_EQ(data.m_aTrialFilePath[0], folder.path("runTrial0.trl"));
}

TEST_F(ReadySession, ADropWhoseFileCantBeWrittenGivesThePathBack)
{
    import(1);
    block("runDragDropTrial1.trl");
    host.willAnswerNo();
    const auto given = megTrial(2);
    given->m_strTrialFilePath = "C:\\elsewhere\\a.trl";
    EXPECT_EQ(data.dropNewTrial(given.get(), 0, -1, -1), 0);
    EXPECT_EQ(given->m_strTrialFilePath, "C:\\elsewhere\\a.trl");
    EXPECT_EQ(data.m_nTotalTrial, 1);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 1);
}

TEST_F(ReadySession, ADropIsNeverWrittenOverAnothersFile)
{
    import(1);
    ASSERT_EQ(data.saveAllTrials(), 1);
    std::filesystem::rename(folder.native("runTrial0.trl"), folder.native("runDragDropTrial1.trl"));
    data.m_aTrialFilePath.SetAt(0, folder.path("runDragDropTrial1.trl"));
    EXPECT_EQ(data.dropNewTrial(megTrial(2).get(), 0, -1, -1), 1);
    EXPECT_EQ(data.m_aTrialFilePath[1], folder.path("runDragDropTrial1_1.trl"));
    ASSERT_NE(data.getTrialzk(0), nullptr);
    EXPECT_EQ(wave(channel(0, 0)), channelValues(1, 0, 4));
}

TEST_F(ReadySession, NothingIsDroppedForNull)
{
    EXPECT_EQ(data.dropNewTrial(nullptr, 0, 0, 5), 0);
    EXPECT_EQ(data.m_nTotalTrial, 0);
    host.expectNoMessages();
}

TEST_F(ReadySession, WithoutMemoryADropLeavesTheTrialsAsTheyWere)
{
    const auto given = megTrial(2);
    given->m_strTrialFilePath = "C:\\elsewhere\\a.trl";
    bool sawCopy = false;
    bool sawSlots = false;
    forEachAllocationFailure([&] {
        CMEGDatazk target;
        ASSERT_EQ(target.setDocument(&doc, true), 1);
        host.clearRecord();
        int done = 0;
        try {
            done = target.dropNewTrial(given.get(), 1, 0, 2);
        } catch (const CArchiveException&) {
            // of the copy's file, in which something could not be held
        }
        EXPECT_EQ(given->m_strTrialFilePath, "C:\\elsewhere\\a.trl");
        EXPECT_EQ(wave(*given->getChannel(0)), channelValues(2, 0, 4));
        EXPECT_EQ(target.m_nTotalTrial, done);
        EXPECT_EQ(target.m_aTrialFilePath.GetSize(), done);
        for (const CString& message : host.messages()) {
            sawCopy = sawCopy || message == "Open New Drag-Drop trial error! is Memory enough?";
            sawSlots = sawSlots || message == "Not enough memory?!";
        }
    });
    EXPECT_TRUE(sawCopy);
    EXPECT_TRUE(sawSlots);
}

// ---- dropped selections

TEST_F(ReadySession, ASelectionIsCutOutAndItsFileHoldsIt)
{
    import(1, 10);
    const auto given = megTrial(2, 2, 10);
    EXPECT_EQ(data.dropNewTrial(given.get(), 1, 3, 6), 1);
    EXPECT_EQ(recorded(), 4);
    EXPECT_EQ(data.m_nCurrentTrial, 1);
    EXPECT_EQ(data.getMDTrial(1), nullptr); // is on disk
    const auto saved = read("runDragDropTrial1.trl");
    for (const int c : {0, 1}) {
        EXPECT_THAT(wave(*saved->getChannel(c)),
                    ElementsAre(valueAt(2, c, 3), valueAt(2, c, 4), valueAt(2, c, 5), valueAt(2, c, 6)));
        EXPECT_EQ(backup(*saved->getChannel(c)), wave(*saved->getChannel(c)));
    }
    EXPECT_EQ(saved->m_nTrialKind, 7);
    EXPECT_EQ(saved->m_nTrialIndex, 1);
    EXPECT_EQ(wave(*given->getChannel(0)), channelValues(2, 0, 10));
    host.expectNoMessages();
}

TEST_F(ReadySession, ACentredSelectionIsCutAsTheChannelDoesIt)
{
    const auto given = megTrial(2, 1, 10);
    EXPECT_EQ(data.dropNewTrial(given.get(), 2, 4, 9), 1);
    EXPECT_EQ(recorded(), 6);
    const auto expected = makeTrial(2, 1, 10);
    ASSERT_EQ(expected->getChannel(0)->chopSize4Select(6, 2, 4, 9), 1);
    EXPECT_EQ(wave(*read("runDragDropTrial0.trl")->getChannel(0)), wave(*expected->getChannel(0)));
}

TEST_F(ReadySession, ASelectionOfFewerThanTwoSamplesIsRefused)
{
    const auto given = megTrial(2);
    for (const int mode : {1, 2, 3}) {
        host.clearRecord();
        EXPECT_EQ(data.dropNewTrial(given.get(), mode, 1, 1), 0);
        EXPECT_EQ(data.dropNewTrial(given.get(), mode, 3, 1), 0);
        EXPECT_EQ(data.dropNewTrial(given.get(), mode, highest, lowest), 0);
        EXPECT_EQ(data.dropNewTrial(given.get(), mode, lowest, highest), 0);
        EXPECT_EQ(data.dropNewTrial(given.get(), mode, 0, highest), 0);
        EXPECT_THAT(host.messages(), ElementsAre(tooSmall, tooSmall, tooSmall, tooSmall, tooSmall));
    }
    EXPECT_EQ(recorded(), 4);
    EXPECT_THAT(folder.names(), IsEmpty());
    host.clearRecord();
    EXPECT_EQ(data.dropNewTrial(given.get(), 1, 1, 2), 1);
    host.expectNoMessages();
}

TEST_F(ReadySession, ASelectionOfATrialWithoutChannelsCantBeCut)
{
    CMDTrialzk given;
    EXPECT_EQ(data.dropNewTrial(&given, 1, 0, 5), 0);
    EXPECT_EQ(data.m_nTotalTrial, 0);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 0);
}

// ---- cut in place

TEST_F(ReadySession, CuttingATrialSetsTheRecordingAndSaves)
{
    import(1, 10);
    EXPECT_EQ(data.chopSize4Select(data.getMDTrial(0), 3, 1, 2, 4), 1);
    EXPECT_EQ(recorded(), 3);
    EXPECT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_THAT(wave(*read("runTrial0.trl")->getChannel(0)),
                ElementsAre(valueAt(1, 0, 2), valueAt(1, 0, 3), valueAt(1, 0, 4)));
}

TEST_F(ReadySession, CuttingLeavesAChannelOfRawSamplesAlone)
{
    const auto given = megTrial(2);
    given->getChannel(0)->_cleanTimeDataC(false);
    given->m_ppChannel.release(1);
    EXPECT_EQ(data.chopSize4Select(given.get(), 3, 1, 0, 2), 1);
    EXPECT_EQ(backup(*given->getChannel(0)), channelValues(2, 0, 4));
    EXPECT_EQ(recorded(), 3);
}

TEST_F(ReadySession, CuttingWithoutTrialChannelsOrSizeGivesZero)
{
    CMDTrialzk empty;
    const auto given = megTrial(2);
    EXPECT_EQ(data.chopSize4Select(nullptr, 3, 1, 0, 2), 0);
    EXPECT_EQ(data.chopSize4Select(&empty, 3, 1, 0, 2), 0);
    for (const std::int64_t size : {std::int64_t{0}, std::int64_t{-1}, lowest})
        EXPECT_EQ(data.chopSize4Select(given.get(), size, 1, 0, 2), 0);
    EXPECT_EQ(recorded(), 4);
    host.expectNoMessages();
    EXPECT_EQ(data.chopSize4Select(given.get(), highest, 1, 0, 2), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!?"));
    EXPECT_EQ(recorded(), 4);
}

// ---- dropped on an empty dataset

class DropOnEmpty : public ReadySession
{
protected:
    DropOnEmpty()
    {
        source.m_recordInfo.m_nRecPreTrigPts = 600;
        source.m_recordInfo.m_dRecSampleRate = 1200.0;
        source.m_recordInfo.m_strAcqTextA = "site";
        source.m_headLocalization.m_nWorkCoordinate = 1;
        source.m_headLocalization.m_fidDewarMsr.getFiducialPt(CFiducial::nasion)->setFidPos(1.0, 2.0, -90.0);
        double value = 10.0;
        for (double* factor : factors(source))
            *factor = value += 1.0;
        EXPECT_EQ(source.checkInitChnlParam(given.get()), 1);
        source.m_pChnlGood[1] = 0;
        source.m_pChnlShow[0] = 0;
        source.m_pChnlSelect[1] = 1;
        source.m_pChnlParam4[0] = 9;
    }
    static std::vector<double*> factors(CMEGData& of)
    {
        return {&of.m_dZoomMEGSensor, &of.m_dZoomMEGRef,    &of.m_dZoomEEGSensor, &of.m_dZoomEEGRef,
                &of.m_dZoomType903,   &of.m_dZoomType902,   &of.m_dZoomType904,   &of.m_dZoomTrig,
                &of.m_dZoomOthers,    &of.m_dShowTimeScaleX};
    }

    std::unique_ptr<CMDTrialzk> given = megTrial(2, 2, 9);
    CMEGDatazk source;
};

TEST_F(DropOnEmpty, TakesOverWhatTheSourceKnows)
{
    EXPECT_EQ(data.dropNewMeg(&source, given.get(), 1, 2, 6), 1);
    EXPECT_EQ(data.m_recordInfo.m_dRecSampleRate, 1200.0);
    EXPECT_EQ(data.m_recordInfo.m_strAcqTextA, "site");
    EXPECT_EQ(data.m_recordInfo.m_nRecPreTrigPts, 0);
    EXPECT_EQ(source.m_recordInfo.m_nRecPreTrigPts, 600);
    EXPECT_TRUE(data.m_headLocalization == source.m_headLocalization);
    const auto ours = factors(data);
    for (std::size_t i = 0; i < ours.size(); ++i)
        EXPECT_EQ(*ours[i], 11.0 + static_cast<double>(i));
    EXPECT_EQ(data.isGoodChnl4Alltrials(0), 1);
    EXPECT_EQ(data.isGoodChnl4Alltrials(1), 0);
    EXPECT_EQ(data.isShowChnl4Alltrials(0), 0);
    EXPECT_EQ(data.isSelectChnl4Alltrials(1), 1);
    EXPECT_EQ(data.m_pChnlParam4[0], 9);
    EXPECT_EQ(data.m_nTotalTrial, 1);
    EXPECT_EQ(recorded(), 5);
}

TEST_F(DropOnEmpty, GivesOneAlsoWhereNothingWasDropped)
{
    EXPECT_EQ(data.dropNewMeg(&source, given.get(), 1, 5, 5), 1);
    EXPECT_THAT(host.messages(), ElementsAre(tooSmall));
    EXPECT_EQ(data.m_nTotalTrial, 0);
    EXPECT_EQ(data.dropNewMeg(&source, nullptr, 0, 0, 0), 1);
    EXPECT_EQ(data.m_nTotalTrial, 0);
}

TEST_F(DropOnEmpty, GivesZeroForANullSource)
{
    EXPECT_EQ(data.dropNewMeg(nullptr, given.get(), 0, 0, 0), 0);
    EXPECT_EQ(data.m_nTotalTrial, 0);
}

TEST_F(DropOnEmpty, CopiesTheFlagsThatThereAre)
{
    const auto larger = megTrial(3, 4, 9);
    source.m_pChnlSelect.reset();
    EXPECT_EQ(data.dropNewMeg(&source, larger.get(), 0, 0, 0), 1);
    EXPECT_EQ(data.m_nChnlParamCount, 4);
    EXPECT_EQ(data.isGoodChnl4Alltrials(1), 0);
    EXPECT_EQ(data.isGoodChnl4Alltrials(3), 1);
    EXPECT_EQ(data.isSelectChnl4Alltrials(1), 0);
    source._cleanChnlParam();
    CMEGDatazk other;
    ASSERT_EQ(other.setDocument(&doc, true), 1);
    EXPECT_EQ(other.dropNewMeg(&source, larger.get(), 0, 0, 0), 1);
    EXPECT_EQ(other.isGoodChnl4Alltrials(1), 1);
}

} // namespace
} // namespace megset::droppedTrials_test
