// Virtual trials in a dataset, and the work trial that is lent.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CException.h"
#include "megset/platform/CFileException.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/persistence/trialFiles.h"

#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicVirtual_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class VirtualTrials : public TrialFiles
{
protected:
    CMDTrialzk* init(CMDTrialzk* source = nullptr) { return data.virtualTrialInit(source, 42, "avg", false); }
    std::unique_ptr<CMDTrialzk> initDetached()
    {
        data.openTrial(0);
        return std::unique_ptr<CMDTrialzk>(data.virtualTrialInit(nullptr, 42, "avg", true));
    }
    int update(CMDTrialzk* trial) { return data.virtualTrialUpdate(trial, 2, 3, block.data()); }

    const std::vector<double> block = {0.5, 1.5, 2.5, -0.5, -1.5, -2.5};
};

// ---- adding

TEST_F(VirtualTrials, ComeLastWithTheChannelsOfTheirSourceAndNoSamples)
{
    data.openTrial(1);
    data.getMDTrial(1)->getChannel(1)->m_nMegListID = 12;
    CMDTrialzk* trial = init();
    ASSERT_NE(trial, nullptr);
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(data.getCurrentTrialIndx(), 3);
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_NE(data.getMDTrial(1), nullptr); // the source stays in memory
    EXPECT_EQ(trial->getTotalChannel(), 2);
    EXPECT_EQ(trial->getChannel(1)->m_nMegListID, 12);
    EXPECT_EQ(trial->getTotalSample(0), 0);
    EXPECT_EQ(trial->m_nVirtualTrial, 1);
    EXPECT_EQ(trial->m_nTrialKind, 42);
    EXPECT_EQ(trial->m_nTrialIndex, 3);
    EXPECT_EQ(trial->m_strTrialName, "VirtualTrial3avg.trl");
    EXPECT_EQ(listed(3), path("UnknownVirtualTrial3avg.trl"));
    EXPECT_EQ(read(listed(3))->m_nTrialKind, 42);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(VirtualTrials, GoBesideTheFileOfTheirSource)
{
    filed.folder.makeFolder("elsewhere");
    auto source = makeTrial(7, 2, 5);
    CString file = path("elsewhere\\source.trl");
    ASSERT_EQ(source->saveTrialData(file, nullptr, "", true), 1);
    ASSERT_NE(init(source.get()), nullptr);
    EXPECT_EQ(listed(3), path("elsewhere\\UnknownVirtualTrial3avg.trl"));
}

TEST_F(VirtualTrials, GoToTheDocumentsFolderWhenTheirSourceHasNoFile)
{
    filed.folder.makeFolder("doc");
    document.SetPathName(path("doc\\study.meg"));
    data.setDocument(&document, false);
    const auto source = makeTrial(7, 2, 5);
    ASSERT_NE(init(source.get()), nullptr);
    EXPECT_EQ(listed(3), path("doc\\studyVirtualTrial3avg.trl"));
}

TEST_F(VirtualTrials, StayWithoutAFileWhereThereIsNoPlaceForIt)
{
    const auto source = makeTrial(7, 2, 5);
    EXPECT_EQ(init(source.get()), nullptr); // neither a file nor a document
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(data.getCurrentTrialIndx(), 3);
    EXPECT_NE(data.getMDTrial(3), nullptr);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    source->m_strTrialFilePath = path("vanished.trl");
    EXPECT_EQ(init(source.get()), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre("file path and trial number does not match in MEGData9FileA!?"));
}

TEST_F(VirtualTrials, StayWithoutAFileWhenTheQuestionForAFolderIsCancelled)
{
    data.setDocument(&document, false);
    host.willCancelFile();
    const auto source = makeTrial(7, 2, 5);
    EXPECT_EQ(init(source.get()), nullptr);
    EXPECT_NE(data.getMDTrial(3), nullptr);
}

TEST_F(VirtualTrials, GoOnWhereThePathsAreOfAnotherNumber)
{
    data.openTrial(0);
    data.m_aTrialFilePath.RemoveAt(2);
    EXPECT_NE(init(), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre("file path and trial number does not match in MEGData9FileA!?"));
    EXPECT_EQ(listed(2), path("UnknownVirtualTrial3avg.trl"));
}

TEST_F(VirtualTrials, AreNoneWithoutASource)
{
    EXPECT_EQ(init(), nullptr); // the current one is on disk
    EXPECT_THAT(host.messages(), ElementsAre("There is no data for making virtual trial!"));
    EXPECT_EQ(data.getTotalTrial(), 3);
}

TEST_F(VirtualTrials, AreNoneForASourceWithoutChannelsOrSamples)
{
    EXPECT_EQ(init(makeTrial(7, 0, 0).get()), nullptr);
    EXPECT_EQ(init(makeTrial(7, 2, 0).get()), nullptr);
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(VirtualTrials, StayWithoutAPathWhenTheirFileCannotBeWritten)
{
    for (const bool detach : {false, true}) {
        data.m_ppTrial.set(0, makeTrial(0, 2, 5));
        const auto source = makeTrial(0, 2, 5);
        source->m_strTrialFilePath = path("Trial0.trl");
        const int place = data.getTotalTrial();
        filed.folder.makeFolder(CString::formatted("UnknownVirtualTrial%davg.trl", place));
        host.willAnswerNo();
        CMDTrialzk* trial = data.virtualTrialInit(source.get(), 42, "avg", detach);
        ASSERT_NE(trial, nullptr);
        EXPECT_EQ(data.getMDTrial(place), detach ? nullptr : trial);
        EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
        if (detach)
            delete trial;
    }
}

TEST_F(VirtualTrials, StayInMemoryOnAFullDisk)
{
    data.openTrial(0);
    fillDiskFor("UnknownVirtualTrial3avg.trl");
    EXPECT_THROW(initDetached(), CFileException);
    EXPECT_NE(data.getMDTrial(3), nullptr);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
}

TEST_F(VirtualTrials, AreNeverWrittenOverAnotherTrial)
{
    data.openTrial(0);
    init();
    data.deleteTrial4Dataset(0);
    ASSERT_EQ(data.openTrial(0), 1);
    const auto trial = std::unique_ptr<CMDTrialzk>(data.virtualTrialInit(nullptr, 43, "avg", true));
    EXPECT_EQ(listed(2), path("UnknownVirtualTrial3avg.trl"));
    EXPECT_EQ(listed(3), path("UnknownVirtualTrial3avg_1.trl"));
}

TEST_F(VirtualTrials, LeaveTheDatasetWholeWhereverMemoryEnds)
{
    bool array = false;
    bool channels = false;
    const auto failures = forEachAllocationFailure([&] {
        ScriptedHost inner;
        const int before = data.getTotalTrial();
        const auto source = [] {
            const FailingAllocator none(0);
            return makeTrial(0, 2, 5);
        }();
        source->m_strTrialFilePath = path("Trial0.trl");
        const CMDTrialzk* trial = init(source.get());
        const FailingAllocator none(0);
        if (trial == nullptr) {
            ASSERT_FALSE(inner.messages().empty());
            array = array || inner.messages().front() == "Not enough memory?!";
            channels = channels || inner.messages().front() == "Not enough memory?";
        }
        // One that got a place keeps it.
        EXPECT_EQ(data.getTotalTrial() - before, trial != nullptr || inner.messages().front() != "Not enough memory?!");
        data.m_ppTrial.resize(3);
        data.m_nTotalTrial = 3;
        while (data.m_aTrialFilePath.GetSize() > 3)
            data.m_aTrialFilePath.RemoveAt(3);
    });
    EXPECT_GE(failures, 4);
    EXPECT_TRUE(array);
    EXPECT_TRUE(channels);
}

// ---- updating

TEST_F(VirtualTrials, ThatAreDetachedBelongToTheCallerAndGrow)
{
    const auto trial = initDetached();
    ASSERT_NE(trial, nullptr);
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(data.getMDTrial(3), nullptr);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 4);
    for (const int repeat : {1, 2}) { // nothing is appended
        EXPECT_EQ(update(trial.get()), 1) << repeat;
        EXPECT_THAT(waveInFile("UnknownVirtualTrial3avg.trl", 1), ElementsAre(-0.5, -1.5, -2.5));
    }
    EXPECT_THAT(waveOf(3, 0), ElementsAre(0.5, 1.5, 2.5));
    EXPECT_EQ(data.getMDTrial(3)->m_nTrialKind, 42);
    host.clearRecord();
}

TEST_F(VirtualTrials, AreUpdatedInTheirPlaceToo)
{
    data.openTrial(0);
    CMDTrialzk* trial = init();
    EXPECT_EQ(update(trial), 1);
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_EQ(data.getMDTrial(0), nullptr); // the others are saved
    EXPECT_THAT(waveInFile("UnknownVirtualTrial3avg.trl", 0), ElementsAre(0.5, 1.5, 2.5));
}

TEST_F(VirtualTrials, AreNotUpdatedWithNothing)
{
    const auto trial = initDetached();
    data.m_ppTrial.set(0, makeTrial(9, 2, 5));
    EXPECT_EQ(update(nullptr), 0);
    EXPECT_EQ(waveInFile("Trial0.trl", 0), channelValues(9, 0, 5)); // but all trials are saved
    EXPECT_EQ(data.virtualTrialUpdate(trial.get(), 2, 3, nullptr), 0);
    EXPECT_EQ(data.virtualTrialUpdate(trial.get(), 0, 3, block.data()), 0);
    EXPECT_EQ(data.virtualTrialUpdate(trial.get(), 2, 0, block.data()), 0);
    EXPECT_EQ(data.virtualTrialUpdate(trial.get(), 3, 2, block.data()), 0);
    EXPECT_EQ(trial->getTotalSample(0), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(VirtualTrials, AreNotUpdatedOutsideTheDataset)
{
    const auto trial = initDetached();
    for (const std::int64_t outside : {std::int64_t{-1}, std::int64_t{4}, std::int64_t{1} << 32}) {
        trial->m_nTrialIndex = outside;
        host.clearRecord();
        EXPECT_EQ(update(trial.get()), 0);
        EXPECT_THAT(host.messages(), ElementsAre("Virtual trial ID is out of range!"));
    }
    trial->m_nTrialIndex = 3;
    data.m_aTrialFilePath.RemoveAt(3);
    EXPECT_THROW(update(trial.get()), CInvalidArgException);
    host.clearRecord();
}

TEST_F(VirtualTrials, AreNotUpdatedWhereTheListHasAnotherPath)
{
    const auto trial = initDetached();
    trial->m_strTrialFilePath = path("other.trl");
    EXPECT_EQ(update(trial.get()), 0);
    EXPECT_THAT(host.messages(), ElementsAre("The updated virtual trial file path does not match!"));
    EXPECT_EQ(trial->getTotalSample(0), 0);
}

TEST_F(VirtualTrials, TellWhenTheirUpdateCannotBeSaved)
{
    const auto trial = initDetached();
    std::filesystem::remove(filed.folder.native("UnknownVirtualTrial3avg.trl"));
    host.willAnswerNo();
    EXPECT_EQ(update(trial.get()), 0);
    EXPECT_EQ(host.messages().back(), "Save updated virtual trial error!");
    EXPECT_EQ(trial->getTotalSample(0), 3); // it stays the caller's, with its samples
}

TEST_F(VirtualTrials, ThatTheUserSavesElsewhereAreListedThere)
{
    const auto trial = initDetached();
    std::filesystem::remove(filed.folder.native("UnknownVirtualTrial3avg.trl"));
    host.willAnswerYes();
    host.willChooseFile(path("elsewhere.trl"));
    EXPECT_EQ(update(trial.get()), 1);
    EXPECT_EQ(listed(3), path("elsewhere.trl"));
    EXPECT_EQ(update(trial.get()), 1);
}

// ---- the work trial

class WorkTrial : public TrialFiles
{
protected:
    std::unique_ptr<CMDTrialzk> rent(int trial, bool virtualOnly = false)
    {
        return std::unique_ptr<CMDTrialzk>(data.wkVtTrialRent(trial, virtualOnly));
    }
    int giveBack(std::unique_ptr<CMDTrialzk>& trial)
    {
        const int done = data.wkVtTrialReturn(trial.get());
        if (done)
            static_cast<void>(trial.release());
        return done;
    }

    const CString corrupted = "The work trial has been changed  or corrupted! continue?";
};

TEST_F(WorkTrial, IsLentAndItsPlaceReadsAsOnDisk)
{
    data.openTrial(1);
    data.getMDTrial(1)->getChannel(0)->getDataWave()[0] = -3.0;
    const auto rented = rent(-1);
    ASSERT_NE(rented, nullptr);
    EXPECT_EQ(rented->m_nTrialIndex, 1);
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -3.0);
    // Opening it again loads a second copy.
    EXPECT_NE(data.getTrialzk(1), rented.get());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(WorkTrial, ComesBackToItsPlaceAndIsCurrent)
{
    auto rented = rent(1);
    CMDTrialzk* trial = rented.get();
    trial->getChannel(0)->getDataWave()[0] = -4.0;
    data.openTrial(2);
    EXPECT_EQ(giveBack(rented), 1);
    EXPECT_EQ(data.getMDTrial(1), trial);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -4.0);
    EXPECT_EQ(data.wkVtTrialReturn(trial), 1); // once more changes nothing
    EXPECT_EQ(data.getMDTrial(1), trial);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(WorkTrial, ReplacesACopyThatWasOpenedMeanwhile)
{
    auto rented = rent(1);
    rented->getChannel(0)->getDataWave()[0] = -4.0;
    data.getTrialzk(1)->getChannel(0)->getDataWave()[0] = -5.0;
    EXPECT_EQ(giveBack(rented), 1);
    EXPECT_EQ(waveOf(1, 0)[0], -4.0);
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -4.0);
}

TEST_F(WorkTrial, IsNotLentWhenItCannotBeOpened)
{
    EXPECT_EQ(rent(3), nullptr);
    EXPECT_EQ(rent(-2), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
    std::filesystem::remove(native(1));
    host.willAnswerNo();
    EXPECT_EQ(rent(1), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed "));
}

TEST_F(WorkTrial, IsVirtualWhereOnlySuchAreAskedFor)
{
    EXPECT_EQ(rent(1, true), nullptr);
    EXPECT_NE(data.getMDTrial(1), nullptr); // opened all the same
    data.getMDTrial(1)->m_nVirtualTrial = 1;
    EXPECT_NE(rent(1, true), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(WorkTrial, WithoutChannelsIsNotLent)
{
    filed.writeTrial(1, *makeTrial(1, 0, 0));
    EXPECT_EQ(rent(1), nullptr); // opening it tells no, but it is there
    EXPECT_NE(data.getMDTrial(1), nullptr);
    EXPECT_NE(rent(1), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(WorkTrial, StaysInItsPlaceWhenItCannotBeSaved)
{
    editAndLoseFile(1, -3.0);
    host.willAnswerNo();
    EXPECT_EQ(rent(1), nullptr);
    EXPECT_EQ(host.messages().back(), "Save trial data error!");
    ASSERT_NE(data.getMDTrial(1), nullptr);
    EXPECT_EQ(waveOf(1, 0)[0], -3.0);
    fillDiskFor("Trial1.trl");
    EXPECT_THROW(rent(1), CFileException);
    ASSERT_NE(data.getMDTrial(1), nullptr);
}

TEST_F(WorkTrial, ThatTheUserSavesElsewhereIsListedThere)
{
    editAndLoseFile(1, -3.0);
    host.willAnswerYes();
    host.willChooseFile(path("elsewhere.trl"));
    auto rented = rent(1);
    ASSERT_NE(rented, nullptr);
    EXPECT_EQ(listed(1), path("elsewhere.trl"));
    EXPECT_EQ(giveBack(rented), 1);
}

TEST_F(WorkTrial, OfADatasetWithoutPathsRaises)
{
    CMEGDatazk inMemory;
    inMemory.initMEGData(1, 1, 3);
    EXPECT_THROW(inMemory.wkVtTrialRent(0, false), CInvalidArgException);
    EXPECT_NE(inMemory.getMDTrial(0), nullptr);
}

TEST_F(WorkTrial, WithAnotherPathComesBackWithYes)
{
    auto rented = rent(1);
    CMDTrialzk* trial = rented.get();
    trial->m_strTrialFilePath = path("other.trl");
    host.willAnswerYes(corrupted);
    EXPECT_EQ(giveBack(rented), 1);
    EXPECT_EQ(data.getMDTrial(1), trial);
    EXPECT_EQ(trial->m_strTrialFilePath, path("Trial1.trl")); // the path of the list
    EXPECT_FALSE(filed.folder.has("other.trl"));
}

TEST_F(WorkTrial, WithAnotherPathStaysTheCallersWithNo)
{
    auto rented = rent(1);
    rented->m_strTrialFilePath = path("other.trl");
    host.willAnswerNo(corrupted);
    EXPECT_EQ(giveBack(rented), 0);
    EXPECT_NE(rented, nullptr);
    EXPECT_EQ(data.getMDTrial(1), nullptr);
}

TEST_F(WorkTrial, StaysTheCallersWhenItCannotBeSaved)
{
    auto rented = rent(1);
    std::filesystem::remove(native(1));
    host.willAnswerNo();
    EXPECT_EQ(giveBack(rented), 0);
    EXPECT_EQ(host.messages().back(), "Save wkVtTrial trial data error!");
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    fillDiskFor("Trial1.trl");
    EXPECT_THROW(giveBack(rented), CFileException);
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    EXPECT_EQ(wave(*rented->getChannel(0)), channelValues(1, 0, 5));
    std::filesystem::remove(native(1));
    filed.folder.write("Trial1.trl", "");
    EXPECT_EQ(giveBack(rented), 1);
    EXPECT_EQ(waveOf(1, 0), channelValues(1, 0, 5));
}

TEST_F(WorkTrial, InUseElsewhereStaysTheCallers)
{
    auto rented = rent(1);
    CFile other;
    ASSERT_TRUE(other.Open(path("Trial1.trl"), CFile::modeRead | CFile::shareExclusive));
    host.willAnswerNo();
    EXPECT_EQ(giveBack(rented), 0);
    ASSERT_EQ(host.questions().size(), 1U);
    EXPECT_GE(host.questions().front().Find(path("Trial1.trl")), 0);
    other.Close();
    EXPECT_EQ(giveBack(rented), 1);
}

TEST_F(WorkTrial, OutsideTheListRaisesAndStaysTheCallers)
{
    auto rented = rent(1);
    for (const std::int64_t outside : {std::int64_t{-1}, std::int64_t{3}, (std::int64_t{1} << 32) + 1}) {
        rented->m_nTrialIndex = outside;
        EXPECT_THROW(giveBack(rented), CInvalidArgException);
    }
    EXPECT_EQ(data.wkVtTrialReturn(nullptr), 0);
    rented->m_nTrialIndex = 3;
    data.m_aTrialFilePath.Add(path("fourth.trl"));
    EXPECT_EQ(giveBack(rented), 0); // a path, but no place
    EXPECT_THAT(host.messages(), ::testing::Each(CString("File path and trial error!")));
}

TEST_F(WorkTrial, StaysTheCallersWhereTheDatasetHasNoPlaces)
{
    auto rented = rent(1);
    data.m_ppTrial.reset();
    EXPECT_EQ(giveBack(rented), 0);
    ASSERT_NE(rented, nullptr);
    EXPECT_EQ(wave(*rented->getChannel(0)), channelValues(1, 0, 5));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(WorkTrial, DoesNotEndACopyThatCannotBeSaved)
{
    auto rented = rent(1);
    data.getTrialzk(1)->getChannel(0)->getDataWave()[0] = -5.0;
    CMDTrialzk* copy = data.getMDTrial(1);
    data.m_aTrialFilePath.Add(path("fourth.trl")); // so nothing is saved
    EXPECT_EQ(giveBack(rented), 1);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.getUnsavedTrials().GetAt(0), copy);
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicVirtual_test
