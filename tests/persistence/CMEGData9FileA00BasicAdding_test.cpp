// Trials that come into a dataset: from an importer, and as empty places.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CFileException.h"
#include "megset/platform/paths.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/persistence/trialFiles.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicAdding_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AddedTrials : public TrialFiles
{
protected:
    AddedTrials() { data.m_strTrialFolder = filed.folder.path(); }
};

// ---- addTrial

TEST_F(AddedTrials, ComeLastAndAreCurrentAndInMemoryAndInTheirFile)
{
    CMDTrialzk* trial = newTrial(7);
    EXPECT_EQ(data.addTrial(trial, 0), 1);
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(data.getCurrentTrialIndx(), 3);
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    EXPECT_EQ(listed(3), path("UnknownTrial3.trl"));
    EXPECT_EQ(trial->m_strTrialFilePath, path("UnknownTrial3.trl"));
    EXPECT_EQ(waveInFile("UnknownTrial3.trl", 1), channelValues(7, 1, 5));
    for (const int old : {0, 1, 2})
        EXPECT_EQ(waveOf(old, 0), channelValues(old, 0, 5));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(AddedTrials, AreNamedAndMarkedAsImported)
{
    for (const int isVirtual : {0, 1, 5}) {
        const int place = data.getTotalTrial();
        CMDTrialzk* trial = newTrial(7);
        data.addTrial(trial, isVirtual);
        EXPECT_EQ(trial->m_nVirtualTrial, isVirtual);
        EXPECT_EQ(trial->m_nTrialKind, isVirtual ? 2 : 1);
        EXPECT_EQ(trial->m_nTrialIndex, place);
        EXPECT_EQ(trial->m_strTrialName, CString::formatted("ImportTrial%d", place));
        const auto written = read(listed(place));
        EXPECT_EQ(written->m_nVirtualTrial, isVirtual);
        EXPECT_EQ(written->m_nTrialIndex, place);
        EXPECT_EQ(written->m_strTrialName, trial->m_strTrialName);
    }
}

TEST_F(AddedTrials, GoToTheFolderAndNameOfTheDocument)
{
    filed.folder.makeFolder("doc");
    document.SetPathName(path("doc\\study.meg"));
    data.setDocument(&document, false);
    EXPECT_EQ(data.addTrial(newTrial(7), 0), 1);
    EXPECT_EQ(listed(3), path("doc\\studyTrial3.trl"));
    EXPECT_EQ(currentDirectory(), path("doc"));
}

TEST_F(AddedTrials, LeaveTheFormerOneSaved)
{
    data.openTrial(1);
    data.getMDTrial(1)->getChannel(0)->getDataWave()[0] = -3.0;
    data.addTrial(newTrial(7), 0);
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -3.0);
}

TEST_F(AddedTrials, MakeADatasetOfAnEmptyOne)
{
    CMEGDatazk fresh;
    fresh.m_strTrialFolder = path("");
    fresh.m_strSessionName = "fresh";
    EXPECT_EQ(fresh.addTrial(newTrial(0), 0), 1);
    EXPECT_EQ(fresh.addTrial(newTrial(1), 0), 1);
    EXPECT_EQ(fresh.getTotalTrial(), 2);
    EXPECT_EQ(fresh.m_aTrialFilePath.GetAt(1), path("freshTrial1.trl"));
    EXPECT_EQ(fresh.openTrial(0), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(AddedTrials, AreNoneForNullOrATrialThatIsThereAlready)
{
    EXPECT_EQ(data.addTrial(nullptr, 0), 0);
    EXPECT_EQ(data.addTrialSave(nullptr, "", 1), 0);
    CMDTrialzk* own = data.getTrialzk(0);
    EXPECT_EQ(data.addTrial(own, 0), 0);
    EXPECT_EQ(data.addTrialSave(own, "", 1), 0);
    EXPECT_EQ(data.getMDTrial(0), own);
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_TRUE(data.getUnsavedTrials().IsEmpty());
}

TEST_F(AddedTrials, StayWithoutAPathWhenTheirFileCannotBeWritten)
{
    data.m_strTrialFolder = path("missing\\");
    CMDTrialzk* trial = newTrial(7);
    host.willAnswerNo();
    EXPECT_EQ(data.addTrial(trial, 0), 1);
    EXPECT_EQ(host.messages().size(), 1U); // the fault itself
    ASSERT_EQ(host.questions().size(), 1U);
    EXPECT_GT(host.questions().front().Find(path("missing\\UnknownTrial3.trl")), 0);
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_EQ(trial->m_strTrialFilePath, "");
    host.clearRecord();
    EXPECT_EQ(data.openTrial(0), 0);
    EXPECT_EQ(data.saveAllTrials(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File path and trial error!", "File path and trial error!"));
    EXPECT_EQ(data.getMDTrial(3), trial);
    // With its path supplied the dataset is whole again.
    data.m_aTrialFilePath.Add(filed.folder.write("late.trl", ""));
    EXPECT_EQ(waveOf(0, 1), channelValues(0, 1, 5));
    EXPECT_EQ(waveOf(3, 1), channelValues(7, 1, 5));
}

TEST_F(AddedTrials, AllStayWhenTwoCannotBeWritten)
{
    data.m_strTrialFolder = path("missing\\");
    CMDTrialzk* first = newTrial(7);
    CMDTrialzk* second = newTrial(8);
    for (CMDTrialzk* each : {first, second}) {
        host.willAnswerNo();
        EXPECT_EQ(data.addTrial(each, 0), 1);
    }
    EXPECT_EQ(data.getMDTrial(3), first);
    EXPECT_EQ(data.getMDTrial(4), second);
}

TEST_F(AddedTrials, GoWhereTheUserPointsWhenTheirFileCannotBeWritten)
{
    data.m_strTrialFolder = path("missing\\");
    host.willAnswerYes();
    host.willChooseFile(path("elsewhere.trl"));
    EXPECT_EQ(data.addTrial(newTrial(7), 0), 1);
    EXPECT_EQ(listed(3), path("elsewhere.trl"));
    EXPECT_EQ(waveInFile("elsewhere.trl", 0), channelValues(7, 0, 5));
}

TEST_F(AddedTrials, StayInMemoryOnAFullDisk)
{
    fillDiskFor("UnknownTrial3.trl");
    CMDTrialzk* trial = newTrial(7);
    EXPECT_THROW(data.addTrial(trial, 0), CFileException);
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(wave(*trial->getChannel(0)), channelValues(7, 0, 5));
}

TEST_F(AddedTrials, AreKeptWhenTheFormerOneMeetsAFullDisk)
{
    data.openTrial(0);
    fillDiskFor("Trial0.trl");
    CMDTrialzk* trial = newTrial(7);
    EXPECT_THROW(data.addTrial(trial, 0), CFileException);
    EXPECT_EQ(data.getTotalTrial(), 3);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 2);
    EXPECT_EQ(data.getUnsavedTrials().GetAt(1), trial);
}

TEST_F(AddedTrials, LeaveTheFormerOneUnsavedWhenItsFileHasVanished)
{
    editAndLoseFile(0, -5.0);
    host.willAnswerNo();
    EXPECT_EQ(data.addTrial(newTrial(7), 0), 1);
    EXPECT_EQ(host.messages().back(), "Save trial data error!");
    EXPECT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveOf(0, 0)[0], -5.0);
    EXPECT_EQ(waveOf(3, 1), channelValues(7, 1, 5));
}

TEST_F(AddedTrials, GoToTheUnsavedOnesWithoutMemory)
{
    for (const bool complete : {false, true}) {
        CMDTrialzk* trial = newTrial(7);
        const FailingAllocator failing(1);
        EXPECT_EQ(complete ? data.addTrialSave(trial, "", 1) : data.addTrial(trial, 0), 0);
        const int last = data.getUnsavedTrials().GetSize() - 1;
        ASSERT_GE(last, 0);
        EXPECT_EQ(data.getUnsavedTrials().GetAt(last), trial);
    }
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?!", "Not enough memory?!"));
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_EQ(waveOf(2, 0), channelValues(2, 0, 5));
}

TEST_F(AddedTrials, AreNeverWrittenOverAnotherTrial)
{
    data.addTrial(newTrial(7), 0); // UnknownTrial3.trl
    data.deleteTrial4Dataset(0);
    EXPECT_EQ(data.addTrial(newTrial(8), 0), 1);
    EXPECT_EQ(listed(3), path("UnknownTrial3_1.trl"));
    EXPECT_EQ(waveOf(2, 0), channelValues(7, 0, 5));
    EXPECT_EQ(waveOf(3, 0), channelValues(8, 0, 5));
}

TEST_F(AddedTrials, ComeBehindAsManyAsHavePathsWhereAFileToldOfMore)
{
    data.m_ppTrial.reset();
    data.m_nTotalTrial = 2147483647;
    EXPECT_EQ(data.addTrial(newTrial(7), 0), 1);
    EXPECT_EQ(data.getTotalTrial(), 4);
    EXPECT_EQ(waveOf(2, 0), channelValues(2, 0, 5));
    CMEGDatazk negative;
    negative.m_nTotalTrial = -5;
    EXPECT_EQ(negative.addTrialSave(newTrial(7), "", 0), 1);
    EXPECT_EQ(negative.getTotalTrial(), 1);
}

TEST_F(AddedTrials, TakeNamesOfAnyLanguageAndOf250Characters)
{
    const CString name = "данные 脑磁图 ünï 🧠";
    filed.folder.makeFolder(name);
    for (const CString& session : {name, CString(std::string(240, 's'))}) {
        data.m_strTrialFolder = path(name + "\\");
        data.m_strSessionName = session;
        const int place = data.getTotalTrial();
        EXPECT_EQ(data.addTrial(newTrial(7), 0), 1);
        EXPECT_EQ(listed(place), path(name + "\\" + session + CString::formatted("Trial%d.trl", place)));
        EXPECT_EQ(data.openTrial(0), 1);
        EXPECT_EQ(waveOf(place, 1), channelValues(7, 1, 5));
    }
    EXPECT_THAT(host.calls(), IsEmpty());
}

// ---- addTrialSave

TEST_F(AddedTrials, KeepNameAndKindWhenTheyAreComplete)
{
    CMDTrialzk* trial = newTrial(7);
    trial->m_strTrialName = "average";
    trial->m_nTrialKind = 42;
    trial->m_nVirtualTrial = 1;
    trial->m_nTrialIndex = 99;
    EXPECT_EQ(data.addTrialSave(trial, path("average.trl"), 1), 1);
    EXPECT_EQ(listed(3), path("average.trl"));
    EXPECT_EQ(trial->m_strTrialName, "average");
    EXPECT_EQ(trial->m_nTrialKind, 42);
    EXPECT_EQ(trial->m_nVirtualTrial, 1);
    EXPECT_EQ(trial->m_nTrialIndex, 99);
    EXPECT_EQ(data.getCurrentTrialIndx(), 3);
    EXPECT_EQ(waveInFile("average.trl", 0), channelValues(7, 0, 5));
}

TEST_F(AddedTrials, GetNeitherFileNorPathWithoutSaving)
{
    const auto before = filed.folder.names();
    CMDTrialzk* trial = newTrial(7);
    EXPECT_EQ(data.addTrialSave(trial, path("average.trl"), 0), 1);
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(filed.folder.names(), before);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(AddedTrials, OfACallerDoNotTouchTheFolderWhenTheirPathIsGiven)
{
    document.SetPathName(path("study.meg"));
    data.setDocument(&document, false);
    data.addTrialSave(newTrial(7), path("average.trl"), 1);
    EXPECT_EQ(data.m_strSessionName, "Unknown");
    data.addTrialSave(newTrial(8), "", 1); // with an empty path the document counts
    EXPECT_EQ(data.m_strSessionName, "study");
    EXPECT_EQ(listed(4), path("studyTrial4.trl"));
}

TEST_F(AddedTrials, AskForAFolderWhenTheyHaveNoPathAndThereIsNoDocument)
{
    filed.folder.makeFolder("chosen");
    host.willChooseFile(path("chosen\\mine.trl"));
    EXPECT_EQ(data.addTrialSave(newTrial(7), "", 1), 1);
    EXPECT_EQ(listed(3), path("chosen\\mineTrial3.trl"));
    EXPECT_THAT(host.messages(), ElementsAre("Please select a direcotry to store the  data!"));
}

TEST_F(AddedTrials, StayWithoutAFileWhenTheQuestionForAFolderIsCancelled)
{
    host.willCancelFile();
    CMDTrialzk* trial = newTrial(7);
    EXPECT_EQ(data.addTrialSave(trial, "", 1), 1);
    EXPECT_EQ(data.getMDTrial(3), trial);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
}

// ---- samples

TEST_F(AddedTrials, TakeSamplesFromABlock)
{
    const std::vector<std::int32_t> integers = {1, 2, 3, 4, 5, -4, -5, -6, -7, -8};
    EXPECT_EQ(data.addTrialDataL2F(1, 2, 5, integers.data()), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_THAT(waveOf(1, 0), ElementsAre(1.0, 2.0, 3.0, 4.0, 5.0));
    EXPECT_THAT(backup(*data.getMDTrial(1)->getChannel(1)), ElementsAre(-4.0, -5.0, -6.0, -7.0, -8.0));
}

TEST_F(AddedTrials, TakeSamplesOfDoublesInPlaceOfWhatWasThere)
{
    const std::vector<double> doubles = {0.5, 1.5, 2.5, 3.5};
    for (const int repeat : {1, 2}) { // nothing is appended
        EXPECT_EQ(data.setTrialDataF(-1, 2, 2, doubles.data()), 1) << repeat;
        EXPECT_THAT(waveOf(0, 0), ElementsAre(0.5, 1.5));
        EXPECT_THAT(waveOf(0, 1), ElementsAre(2.5, 3.5));
        EXPECT_THAT(backup(*data.getMDTrial(0)->getChannel(1)), ElementsAre(2.5, 3.5));
    }
    EXPECT_EQ(data.setTrialDataF(0, 1, 3, doubles.data()), 1); // fewer channels than there are
    EXPECT_THAT(waveOf(0, 0), ElementsAre(0.5, 1.5, 2.5));
    EXPECT_THAT(waveOf(0, 1), ElementsAre(2.5, 3.5));
}

TEST_F(AddedTrials, TakeNoSamplesThatDoNotFit)
{
    const std::vector<double> doubles(20, 1.0);
    EXPECT_EQ(data.setTrialDataF(0, 3, 5, doubles.data()), 0);
    EXPECT_EQ(data.setTrialDataF(0, 0, 5, doubles.data()), 0);
    EXPECT_EQ(data.setTrialDataF(0, 2, 0, doubles.data()), 0);
    EXPECT_EQ(data.setTrialDataF(0, 2, 5, nullptr), 0);
    EXPECT_EQ(data.addTrialDataL2F(0, 2, 5, nullptr), 0);
    EXPECT_EQ(waveOf(0, 1), channelValues(0, 1, 5));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(AddedTrials, TakeNoSamplesWhenTheyCannotBeOpened)
{
    const std::vector<double> doubles(20, 1.0);
    EXPECT_EQ(data.setTrialDataF(3, 2, 5, doubles.data()), 0);
    EXPECT_EQ(data.addTrialDataL2F(-2, 2, 5, nullptr), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data error?", "Open trial data error?"));
}

TEST_F(AddedTrials, TakeNoSamplesWithoutChannels)
{
    const std::vector<double> doubles(20, 1.0);
    filed.writeTrial(1, *makeTrial(1, 0, 0));
    EXPECT_EQ(data.setTrialDataF(1, 2, 5, doubles.data()), 0); // opening it tells no
    EXPECT_EQ(data.setTrialDataF(1, 2, 5, doubles.data()), 0); // now it is current
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data error?", "Channels have not been initialized!?"));
}

TEST_F(AddedTrials, TakeNoSamplesWithoutMemory)
{
    ASSERT_EQ(data.openTrial(0), 1);
    const std::vector<double> doubles(20, 1.0);
    forEachAllocationFailure([&] {
        host.clearRecord();
        const int done = data.setTrialDataF(0, 2, 7, doubles.data());
        EXPECT_EQ(done, host.messages().empty() ? 1 : 0);
        const FailingAllocator none(0);
        data.m_ppTrial.set(0, makeTrial(0, 2, 5));
    });
    host.clearRecord();
}

// ---- empty places

TEST_F(AddedTrials, MayBeEmptyPlacesForTheCallerToFill)
{
    data.openTrial(1);
    data.getMDTrial(1)->getChannel(0)->getDataWave()[0] = -3.0;
    EXPECT_EQ(data.expandTrialSpace(5), 1);
    EXPECT_EQ(data.getTotalTrial(), 5);
    EXPECT_EQ(data.getCurrentTrialIndx(), 4);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    for (const int place : {3, 4}) {
        ASSERT_NE(data.getMDTrial(place), nullptr);
        EXPECT_EQ(data.getMDTrial(place)->getTotalChannel(), 0);
    }
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -3.0);
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(data.openTrial(0), 0);
    EXPECT_THAT(host.messages(), ElementsAre("File path and trial error!"));
    for (const char* name : {"a.trl", "b.trl"})
        data.m_aTrialFilePath.Add(filed.folder.write(name, ""));
    EXPECT_EQ(data.openTrial(0), 1);
}

TEST_F(AddedTrials, AreNoEmptyPlacesUnlessTheDatasetGrows)
{
    for (const int total : {-1, 0, 1, 3})
        EXPECT_EQ(data.expandTrialSpace(total), 0) << total;
    EXPECT_EQ(data.getTotalTrial(), 3);
    CMEGDatazk fresh;
    EXPECT_EQ(fresh.expandTrialSpace(0), 0);
    EXPECT_EQ(fresh.expandTrialSpace(2), 1);
    EXPECT_EQ(fresh.getCurrentTrialIndx(), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(AddedTrials, AreNoEmptyPlacesWithoutMemory)
{
    const auto failures = forEachAllocationFailure([this] {
        host.clearRecord();
        const int done = data.expandTrialSpace(6);
        if (!done) {
            EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?!"));
            EXPECT_EQ(data.getTotalTrial(), 3);
            EXPECT_EQ(data.getCurrentTrialIndx(), 0);
        }
    });
    EXPECT_EQ(failures, 4);
    EXPECT_EQ(data.getTotalTrial(), 6);
    host.clearRecord();
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicAdding_test
