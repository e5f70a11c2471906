// Deleting, moving and renaming.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CArchiveException.h"
#include "megset/platform/CFileException.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/persistence/trialFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicFiles_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// ---- deleting

using DeletedTrial = TrialFiles;

TEST_F(DeletedTrial, LeavesTheDatasetButNotTheDisk)
{
    EXPECT_EQ(data.deleteTrial4Dataset(1), 1);
    EXPECT_EQ(data.getTotalTrial(), 2);
    EXPECT_THAT(paths(), ElementsAre(path("Trial0.trl"), path("Trial2.trl")));
    EXPECT_TRUE(filed.folder.has("Trial1.trl"));
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_EQ(waveOf(0, 1), channelValues(0, 1, 5));
    EXPECT_EQ(waveOf(1, 1), channelValues(2, 1, 5));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(DeletedTrial, LeavesTheIndexThatWasCurrentOpen)
{
    data.openTrial(1);
    EXPECT_EQ(data.deleteTrial4Dataset(0), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1); // which is the next trial now
    ASSERT_NE(data.getMDTrial(1), nullptr);
    EXPECT_EQ(wave(*data.getMDTrial(1)->getChannel(0)), channelValues(2, 0, 5));
    EXPECT_EQ(data.deleteTrial4Dataset(0), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0); // the last one
    EXPECT_NE(data.getMDTrial(0), nullptr);
}

TEST_F(DeletedTrial, LeavesTheFirstOpenWhereNoneWasCurrent)
{
    data.m_nCurrentTrial = -1;
    EXPECT_EQ(data.deleteTrial4Dataset(2), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_NE(data.getMDTrial(0), nullptr);
}

TEST_F(DeletedTrial, ThatWasTheOnlyOneLeavesNeitherIndexNorArray)
{
    data.deleteTrial4Dataset(2);
    data.deleteTrial4Dataset(0);
    EXPECT_EQ(data.deleteTrial4Dataset(0), 1);
    EXPECT_EQ(data.getTotalTrial(), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), -1);
    EXPECT_FALSE(data.m_ppTrial);
    EXPECT_TRUE(data.m_aTrialFilePath.IsEmpty());
    EXPECT_EQ(data.deleteTrial4Dataset(0), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Delete Trial ID error!"));
}

TEST_F(DeletedTrial, OutsideTheListIsAnErrorAndSoIsMinusOne)
{
    for (const int outside : {-1, -2, 3})
        EXPECT_EQ(data.deleteTrial4Dataset(outside), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Delete Trial ID error!", "Delete Trial ID error!", "Delete Trial ID error!"));
    EXPECT_EQ(data.getTotalTrial(), 3);
}

TEST_F(DeletedTrial, IsSavedOnceMore)
{
    data.openTrial(1);
    data.getMDTrial(1)->getChannel(0)->getDataWave()[0] = -3.0;
    data.deleteTrial4Dataset(1);
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -3.0);
}

TEST_F(DeletedTrial, ThatCannotBeSavedIsKept)
{
    editAndLoseFile(1, -3.0);
    host.willAnswerNo();
    EXPECT_EQ(data.deleteTrial4Dataset(1), 1);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    // Its file is its own, not that of the trial that took its place.
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile("Trial1.trl", 0)[0], -3.0);
    EXPECT_EQ(waveOf(1, 0), channelValues(2, 0, 5));
}

TEST_F(DeletedTrial, ThatCannotBeSavedKeepsItsFileFromTrialsThatComeLater)
{
    data.m_strSessionName = "";
    data.m_strTrialFolder = path("");
    editAndLoseFile(2, -3.0);
    host.willAnswerNo();
    EXPECT_EQ(data.deleteTrial4Dataset(2), 1);
    EXPECT_EQ(data.addTrial(newTrial(7), 0), 1);
    EXPECT_EQ(listed(2), path("Trial2_1.trl")); // the plain name is that of the deleted one
    EXPECT_EQ(data.openTrial(0), 1);
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile("Trial2.trl", 0)[0], -3.0);
    EXPECT_EQ(waveOf(2, 0), channelValues(7, 0, 5));
}

TEST_F(DeletedTrial, LetsTheUnsavedOnesFollowTheList)
{
    editAndLoseFile(2, -3.0);
    host.willAnswerNo();
    data.saveAllTrials();
    data.m_aTrialFilePath.SetAt(2, path("mended.trl"));
    data.m_nCurrentTrial = 0;
    EXPECT_EQ(data.deleteTrial4Dataset(0), 1);
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile("mended.trl", 0)[0], -3.0);
    EXPECT_EQ(waveOf(1, 0)[0], -3.0);
}

TEST_F(DeletedTrial, OfTwoOrOneThatCannotBeSavedIsKeptToo)
{
    data.openTrial(0);
    CMDTrialzk* resident = data.getMDTrial(0);
    data.m_aTrialFilePath.Add(path("more.trl")); // so nothing is saved
    EXPECT_EQ(data.deleteTrial4Dataset(0), 1);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.getUnsavedTrials().GetAt(0), resident);
    CMEGDatazk one;
    one.initMEGData(1, 1, 3);
    one.m_aTrialFilePath.Add(path("a.trl"));
    one.m_aTrialFilePath.Add(path("b.trl"));
    EXPECT_EQ(one.deleteTrial4Dataset(1), 1);
    EXPECT_EQ(one.getUnsavedTrials().GetSize(), 1);
}

TEST_F(DeletedTrial, WithoutAPlaceTakesItsPathAlone)
{
    data.m_aTrialFilePath.Add(path("more.trl"));
    EXPECT_EQ(data.deleteTrial4Dataset(3), 1);
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(waveOf(2, 0), channelValues(2, 0, 5));
}

TEST_F(DeletedTrial, StaysWithoutMemory)
{
    const FailingAllocator failing(1);
    EXPECT_EQ(data.deleteTrial4Dataset(1), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory?!"));
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_EQ(data.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(waveOf(2, 0), channelValues(2, 0, 5));
}

// ---- moving

class MovedTrials : public TrialFiles
{
protected:
    MovedTrials()
    {
        filed.folder.makeFolder("new");
        document.SetPathName(path("new\\study.meg"));
    }
    int move() { return data.moveTrlFile2DocFold(&document); }
    void rename(int place, const CString& name)
    {
        auto trial = makeTrial(place, 2, 5);
        trial->m_strTrialName = name;
        filed.writeTrial(place, *trial);
    }
};

TEST_F(MovedTrials, AreAllInTheFolderOfTheDocumentUnderItsName)
{
    data.openTrial(1);
    data.getMDTrial(1)->getChannel(0)->getDataWave()[0] = -3.0;
    EXPECT_EQ(move(), 1);
    EXPECT_THAT(paths(),
                ElementsAre(path("new\\studyTrial0.trl"), path("new\\studyTrial1.trl"), path("new\\studyTrial2.trl")));
    EXPECT_EQ(data.getDocument(), &document);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    EXPECT_EQ(waveOf(1, 0)[0], -3.0);
    EXPECT_EQ(waveOf(2, 1), channelValues(2, 1, 5));
    for (const int place : {0, 1, 2})
        EXPECT_TRUE(filed.folder.has(FiledDataset::name(place))); // the old files stay
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(MovedTrials, OfTheCurrentDocumentGoThereForNull)
{
    data.setDocument(&document, false);
    EXPECT_EQ(data.moveTrlFile2DocFold(nullptr), 1);
    EXPECT_EQ(listed(0), path("new\\studyTrial0.trl"));
}

TEST_F(MovedTrials, WithoutANameAreNumbered)
{
    rename(1, "");
    EXPECT_EQ(move(), 1);
    EXPECT_EQ(listed(1), path("new\\studyTrial1.trl"));
    EXPECT_EQ(data.getTrialzk(1)->m_strTrialName, "Trial1");
}

TEST_F(MovedTrials, OfANameThatWouldLeaveTheFolderStayInIt)
{
    rename(1, "\\..\\..\\out");
    EXPECT_EQ(move(), 1);
    EXPECT_EQ(listed(1), path("new\\study_.._.._out.trl"));
    EXPECT_TRUE(filed.folder.has("new\\study_.._.._out.trl"));
    EXPECT_EQ(data.getTrialzk(1)->m_strTrialName, CString("\\..\\..\\out"));
}

TEST_F(MovedTrials, StayWhenTheQuestionForAFolderIsCancelled)
{
    host.willCancelFile();
    EXPECT_EQ(data.moveTrlFile2DocFold(nullptr), 0);
    EXPECT_EQ(listed(0), path("Trial0.trl"));
}

TEST_F(MovedTrials, AreListedAsTheyWereWhenOneCannotBeOpened)
{
    std::filesystem::remove(native(1));
    host.willAnswerNo();
    EXPECT_EQ(move(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial data failed ", "Open trial for synchronization error!"));
    for (const int place : {0, 1, 2})
        EXPECT_EQ(listed(place), path(FiledDataset::name(place)));
    EXPECT_EQ(waveOf(2, 0), channelValues(2, 0, 5));
}

TEST_F(MovedTrials, GoOnWhereThereAreMoreOfThemThanPaths)
{
    CMEGDatazk inMemory;
    inMemory.initMEGData(1, 1, 3);
    EXPECT_EQ(inMemory.moveTrlFile2DocFold(&document), 1);
    ASSERT_EQ(inMemory.m_aTrialFilePath.GetSize(), 1);
    EXPECT_EQ(inMemory.m_aTrialFilePath[0], path("new\\studyTrial0.trl"));
    EXPECT_NE(inMemory.getTrialzk(0), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(MovedTrials, ThatCannotBeWrittenHaveNoPath)
{
    filed.folder.makeFolder("new\\studyTrial1.trl");
    host.willAnswerNo();
    EXPECT_EQ(move(), 1);
    EXPECT_THAT(paths(), ElementsAre(path("new\\studyTrial0.trl"), path("new\\studyTrial2.trl")));
    EXPECT_EQ(data.getTotalTrial(), 3);
    EXPECT_EQ(host.messages().back(), "File path and trial error!"); // from opening the current one
    EXPECT_TRUE(data.getUnsavedTrials().IsEmpty());                  // the old file has it
    EXPECT_EQ(waveInFile("Trial1.trl", 0), channelValues(1, 0, 5));
}

TEST_F(MovedTrials, ThatWereInMemoryAndCannotBeWrittenAreKept)
{
    editAndLoseFile(0, -3.0);
    filed.folder.makeFolder("new\\studyTrial0.trl");
    host.willAnswerNo();
    EXPECT_EQ(move(), 1);
    ASSERT_EQ(data.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(data.getUnsavedTrials().GetAt(0)->m_strTrialFilePath, path("Trial0.trl"));
    EXPECT_EQ(data.saveUnsavedTrials(), 0);
    EXPECT_EQ(waveInFile("Trial0.trl", 0)[0], -3.0);
}

TEST_F(MovedTrials, StayAsTheyAreOnAFullDisk)
{
    data.openTrial(0);
    data.getMDTrial(0)->getChannel(0)->getDataWave()[0] = -3.0;
    std::filesystem::create_symlink("/dev/full", filed.folder.native("new\\studyTrial0.trl"));
    EXPECT_THROW(move(), CFileException);
    EXPECT_EQ(listed(0), path("Trial0.trl"));
    ASSERT_NE(data.getMDTrial(0), nullptr);
    EXPECT_EQ(data.getMDTrial(0)->m_strTrialFilePath, path("Trial0.trl"));
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_EQ(waveInFile("Trial0.trl", 0)[0], -3.0);
}

TEST_F(MovedTrials, OfOneNameAreNotWrittenOverEachOther)
{
    for (const int place : {0, 1, 2})
        rename(place, "average");
    EXPECT_EQ(move(), 1);
    EXPECT_THAT(paths(), ElementsAre(path("new\\studyaverage.trl"), path("new\\studyaverage_1.trl"),
                                     path("new\\studyaverage_2.trl")));
    for (const int place : {0, 1, 2})
        EXPECT_EQ(waveOf(place, 0), channelValues(place, 0, 5));
    EXPECT_EQ(move(), 1); // and once more, over themselves
    for (const int place : {0, 1, 2})
        EXPECT_EQ(waveOf(place, 0), channelValues(place, 0, 5));
}

TEST_F(MovedTrials, AreNotWrittenOverOthersThatAreStillToMove)
{
    document.SetPathName(
        path(".meg")); // no session name: the files are "<trial name>.trl" in the folder of the old ones
    rename(0, "Trial1");
    rename(1, "Trial2");
    rename(2, "Trial0");
    EXPECT_EQ(move(), 1);
    for (const int place : {0, 1, 2})
        EXPECT_EQ(waveOf(place, 0), channelValues(place, 0, 5));
}

TEST_F(MovedTrials, MayBeNone)
{
    CMEGDatazk empty;
    EXPECT_EQ(empty.moveTrlFile2DocFold(&document), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(MovedTrials, AreToldWithTheirPathsWhereTheFolderCannotBeWrittenTo)
{
    std::filesystem::permissions(filed.folder.native(), std::filesystem::perms(0755));
    std::filesystem::permissions(filed.folder.native("new"), std::filesystem::perms(0555));
    const WithoutPrivileges others;
    if (!others)
        GTEST_SKIP() << "permission bits do not hold here";
    for (int i = 0; i < 3; ++i)
        host.willAnswerNo();
    EXPECT_EQ(move(), 1);
    const auto questions = host.questions();
    ASSERT_EQ(questions.size(), 3U);
    for (int i = 0; i < 3; ++i)
        EXPECT_GT(questions[static_cast<std::size_t>(i)].Find(path(CString::formatted("new\\studyTrial%d.trl", i))), 0);
    EXPECT_TRUE(paths().empty());
    EXPECT_EQ(waveInFile("Trial2.trl", 0), channelValues(2, 0, 5));
}

// ---- renaming

class RenamedTrial : public TrialFiles
{
protected:
    RenamedTrial() { data.m_strTrialFolder = filed.folder.path(); }
};

TEST_F(RenamedTrial, HasItsNewNameAndFileAndTheOldFileStays)
{
    EXPECT_EQ(data.saveTrlFile2NewName(nullptr, "average", 1), 1);
    EXPECT_EQ(listed(1), path("average.trl"));
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(data.getMDTrial(1)->m_strTrialName, "average");
    EXPECT_EQ(read(path("average.trl"))->m_strTrialName, "average");
    EXPECT_TRUE(filed.folder.has("Trial1.trl"));
    EXPECT_EQ(waveOf(1, 1), channelValues(1, 1, 5));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(RenamedTrial, IsTheCurrentOneForMinusOneAndNumberedWithoutAName)
{
    data.m_nCurrentTrial = 2;
    EXPECT_EQ(data.saveTrlFile2NewName(nullptr, "", -1), 1);
    EXPECT_EQ(listed(2), path("UnknownTrial2.trl"));
    EXPECT_EQ(data.getMDTrial(2)->m_strTrialName, "UnknownTrial2");
}

TEST_F(RenamedTrial, GoesToTheFolderOfADocument)
{
    filed.folder.makeFolder("new");
    document.SetPathName(path("new\\study.meg"));
    EXPECT_EQ(data.saveTrlFile2NewName(&document, "", 0), 1);
    EXPECT_EQ(listed(0), path("new\\studyTrial0.trl"));
}

TEST_F(RenamedTrial, StaysWhenTheQuestionForAFolderIsCancelled)
{
    host.willCancelFile();
    EXPECT_EQ(data.saveTrlFile2NewName(&document, "average", 0), 0); // the document has no file
    EXPECT_EQ(listed(0), path("Trial0.trl"));
    EXPECT_EQ(data.getMDTrial(0), nullptr);
}

TEST_F(RenamedTrial, IsNoneWhenItCannotBeOpened)
{
    EXPECT_EQ(data.saveTrlFile2NewName(nullptr, "average", 3), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Open trial error for saving trial to new name!"));
}

TEST_F(RenamedTrial, KeepsNameAndFileWhenItCannotBeWritten)
{
    for (const char* name : {"average", "no/folder", "no\\folder"}) {
        if (!filed.folder.has("average.trl"))
            filed.folder.makeFolder("average.trl");
        host.willAnswerNo();
        EXPECT_EQ(data.saveTrlFile2NewName(nullptr, name, 1), 0);
        EXPECT_EQ(host.messages().back(), "Save trial to new name error!");
        EXPECT_EQ(listed(1), path("Trial1.trl"));
        EXPECT_EQ(data.getMDTrial(1)->m_strTrialName, "Trial1");
        EXPECT_EQ(data.getMDTrial(1)->m_strTrialFilePath, path("Trial1.trl"));
    }
    fillDiskFor("full.trl");
    EXPECT_THROW(data.saveTrlFile2NewName(nullptr, "full", 1), CFileException);
    EXPECT_EQ(data.getMDTrial(1)->m_strTrialName, "Trial1");
    EXPECT_EQ(waveOf(1, 0), channelValues(1, 0, 5));
}

TEST_F(RenamedTrial, GoesWhereTheUserPointsWhenItCannotBeWritten)
{
    filed.folder.makeFolder("average.trl");
    host.willAnswerYes();
    host.willChooseFile(path("elsewhere.trl"));
    EXPECT_EQ(data.saveTrlFile2NewName(nullptr, "average", 1), 1);
    EXPECT_EQ(listed(1), path("elsewhere.trl"));
}

TEST_F(RenamedTrial, IsNotWrittenOverAnotherOne)
{
    EXPECT_EQ(data.saveTrlFile2NewName(nullptr, "Trial2", 1), 1);
    EXPECT_EQ(listed(1), path("Trial2_1.trl"));
    EXPECT_EQ(waveOf(2, 0), channelValues(2, 0, 5));
    EXPECT_EQ(data.saveTrlFile2NewName(nullptr, "Trial0", 0), 1); // but over itself
    EXPECT_EQ(listed(0), path("Trial0.trl"));
}

TEST_F(RenamedTrial, IsWholeWhereverMemoryEnds)
{
    forEachAllocationFailure([&] {
        host.clearRecord();
        {
            const FailingAllocator none(0);
            data.openTrial(0);
        }
        try {
            data.saveTrlFile2NewName(nullptr, "average", 1);
        } catch (const CArchiveException&) {
            // A channel without memory leaves the reader in the middle of the record.
        }
        const FailingAllocator none(0);
        data.m_ppTrial.set(1, nullptr);
        EXPECT_EQ(waveOf(1, 1), channelValues(1, 1, 5));
        data.openTrial(0);
        data.m_aTrialFilePath.SetAt(1, path("Trial1.trl"));
        filed.writeTrial(1, *makeTrial(1, 2, 5));
    });
    host.clearRecord();
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicFiles_test
