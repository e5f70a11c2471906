// Paths that follow files which were moved.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "tests/persistence/trialFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicMending_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MendedPaths : public TrialFiles
{
protected:
    MendedPaths()
    {
        for (const char* name : {"doc", "far", "farther"})
            filed.folder.makeFolder(name);
        document.SetPathName(path("doc\\study.meg"));
        for (int i = 0; i < 3; ++i)
            data.m_aTrialFilePath.SetAt(i, CString::formatted("D:\\data\\run1\\Trial%d.trl", i));
    }
    void moveFile(int trial, const CString& folder) const
    {
        std::filesystem::rename(native(trial), filed.folder.native(folder + "\\" + FiledDataset::name(trial)));
    }
    int mend() { return data.updateTrlPath4Doc(&document); }
};

TEST_F(MendedPaths, AreThoseOfFilesBesideTheDocument)
{
    for (const int trial : {0, 1, 2})
        moveFile(trial, "doc");
    EXPECT_EQ(mend(), 1);
    EXPECT_THAT(paths(), ElementsAre(path("doc\\Trial0.trl"), path("doc\\Trial1.trl"), path("doc\\Trial2.trl")));
    EXPECT_EQ(filed.trialsInMemory(), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(MendedPaths, StayWhereTheFileIsThoughAnotherIsBesideTheDocument)
{
    data.m_aTrialFilePath.SetAt(1, path("Trial1.trl"));
    filed.folder.write("doc\\Trial1.trl", "another");
    for (const int trial : {0, 2})
        moveFile(trial, "doc");
    EXPECT_EQ(mend(), 1);
    EXPECT_EQ(listed(1), path("Trial1.trl"));
}

TEST_F(MendedPaths, AreFullPathsOfFilesAndNeverFolders)
{
    filed.folder.makeFolder("doc\\Trial0.trl");   // no file
    data.m_aTrialFilePath.SetAt(1, "study1.trl"); // from the document's folder, as it stands
    filed.folder.write("doc\\study1.trl", "");
    moveFile(2, "doc");
    host.willChooseFile(path("Trial0.trl"));
    EXPECT_EQ(mend(), 1);
    EXPECT_THAT(paths(), ElementsAre(path("Trial0.trl"), path("doc\\study1.trl"), path("doc\\Trial2.trl")));
}

TEST_F(MendedPaths, NeedTheUserOnceForAFolder)
{
    for (const int trial : {0, 1})
        moveFile(trial, "far");
    moveFile(2, "farther");
    host.willChooseFile(path("far\\Trial0.trl"));
    host.willChooseFile(path("farther\\Trial2.trl"));
    EXPECT_EQ(mend(), 1);
    EXPECT_THAT(paths(), ElementsAre(path("far\\Trial0.trl"), path("far\\Trial1.trl"), path("farther\\Trial2.trl")));
    const auto requests = host.fileRequests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_FALSE(requests.front().open);
    EXPECT_TRUE(requests.front().confirmOverwrite);
    EXPECT_EQ(requests.front().filter, "MEG Trial Data(*.trl)|*.trl|All Files(*.*)|*.*||");
    EXPECT_EQ(requests.front().fileName, "Trial0.trl"); // tells which file is missing
    host.expectNoMessages();
}

TEST_F(MendedPaths, AreTakenFromTheUserAsTheyAre)
{
    for (const int trial : {0, 1, 2})
        host.willChooseFile(CString::formatted("X:\\nowhere\\%d.trl", trial));
    EXPECT_EQ(mend(), 1);
    EXPECT_EQ(listed(2), "X:\\nowhere\\2.trl");
}

TEST_F(MendedPaths, StayMendedAsFarAsTheyAreWhenTheUserCancels)
{
    for (const int trial : {0, 2})
        moveFile(trial, "doc");
    host.willCancelFile();
    EXPECT_EQ(mend(), 0);
    EXPECT_THAT(paths(),
                ElementsAre(path("doc\\Trial0.trl"), "D:\\data\\run1\\Trial1.trl", "D:\\data\\run1\\Trial2.trl"));
}

TEST_F(MendedPaths, MayBeNone)
{
    data.m_aTrialFilePath.RemoveAll();
    EXPECT_EQ(mend(), 1);
    host.willCancelFile();
    EXPECT_EQ(CMEGDatazk().updateTrlPath4Doc(nullptr), 0); // there is no folder either
}

TEST_F(MendedPaths, AreAskedForOnTheKindOfFileThatWasUsedLast)
{
    data.m_aTrialFilePath.RemoveAt(2);
    data.m_aTrialFilePath.RemoveAt(1);
    for (const int index : {2, 1}) {
        data.m_aTrialFilePath.SetAt(0, "D:\\gone\\a.trl");
        host.willChooseFile("X:\\a.trl", index);
        mend();
        host.clearRecord();
        host.willCancelFile();
        mend();
        ASSERT_EQ(host.fileRequests().size(), 1U);
        EXPECT_EQ(host.fileRequests().front().filterIndex, index);
    }
}

// ---- a dataset that was copied

TEST_F(MendedPaths, AreMendedTrialByTrialAsEachIsOpened)
{
    for (const int trial : {0, 1, 2})
        moveFile(trial, "doc");
    data.setDocument(&document, false);
    EXPECT_EQ(data.openTrial(1), 1);
    EXPECT_THAT(paths(),
                ElementsAre("D:\\data\\run1\\Trial0.trl", path("doc\\Trial1.trl"), "D:\\data\\run1\\Trial2.trl"));
    EXPECT_EQ(waveOf(2, 0), channelValues(2, 0, 5));
    EXPECT_EQ(listed(2), path("doc\\Trial2.trl"));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(MendedPaths, WithoutABackslashAreFoundOnlyAsTheyStand)
{
    data.setDocument(&document, false);
    data.m_aTrialFilePath.SetAt(0, "Trial0.trl");
    filed.folder.makeFolder("empty");
    std::filesystem::copy_file(native(0), filed.folder.native("doc\\Trial0.trl"));
    std::filesystem::current_path(filed.folder.native("empty"));
    host.willAnswerNo("Would like to find the fileTrial0.trl");
    EXPECT_EQ(data.openTrial(0), 0);
    filed.folder.enter();
    EXPECT_EQ(data.openTrial(0), 1);
    EXPECT_EQ(listed(0), path("Trial0.trl"));
}

TEST_F(MendedPaths, OfAVanishedFileOfferANewName)
{
    data.m_aTrialFilePath.SetAt(0, path("Trial0.trl"));
    editAndLoseFile(0, -3.0);
    host.willAnswerYes("File save error: 3, would you like to save as a new file?");
    host.willChooseFile(path("doc\\saved.trl"));
    EXPECT_EQ(data.saveAllTrials(), 1);
    EXPECT_EQ(listed(0), path("doc\\saved.trl"));
    EXPECT_EQ(waveOf(0, 0)[0], -3.0);
    host.clearRecord();
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicMending_test
