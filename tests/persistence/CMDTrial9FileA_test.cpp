// Path operations on texts, and the search for a trial's file.

#include "megset/core/CMDTrialzk.h"
#include "megset/platform/CDocument.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial9FileA_test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString trialFilter = "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||";

// ---- texts

TEST(TrialPathTexts, DirectoryEndsWithTheLastBackslash)
{
    EXPECT_EQ(CMDTrial9FileA::filePath2FileDirectory("C:\\data\\run\\a.trl"), CString("C:\\data\\run\\"));
    EXPECT_EQ(CMDTrial9FileA::filePath2FileDirectory("C:\\data\\run\\"), CString("C:\\data\\run\\"));
    EXPECT_EQ(CMDTrial9FileA::filePath2FileDirectory("\\"), CString("\\"));
}

TEST(TrialPathTexts, DirectoryIsEmptyWithoutABackslash)
{
    EXPECT_EQ(CMDTrial9FileA::filePath2FileDirectory("a.trl"), CString());
    EXPECT_EQ(CMDTrial9FileA::filePath2FileDirectory("/data/a.trl"), CString());
    EXPECT_EQ(CMDTrial9FileA::filePath2FileDirectory(""), CString());
}

TEST(TrialPathTexts, FileNameIsWhatFollowsTheLastBackslash)
{
    EXPECT_EQ(CMDTrial9FileA::filePath2FileName("C:\\data\\a.b.trl"), CString("a.b.trl"));
    EXPECT_EQ(CMDTrial9FileA::filePath2FileName("\\a"), CString("a"));
    EXPECT_EQ(CMDTrial9FileA::filePath2FileName("C:\\data\\"), CString());
}

TEST(TrialPathTexts, FileNameIsEmptyAndNotTheWholeTextWithoutABackslash)
{
    EXPECT_EQ(CMDTrial9FileA::filePath2FileName("a.trl"), CString());
    EXPECT_EQ(CMDTrial9FileA::filePath2FileName("data/a.trl"), CString());
    EXPECT_EQ(CMDTrial9FileA::filePath2FileName(""), CString());
}

TEST(TrialPathTexts, TitleEndsBeforeTheLastDotOrIsTheWholeText)
{
    EXPECT_EQ(CMDTrial9FileA::fileName2FileTitle("a.b.trl"), CString("a.b"));
    EXPECT_EQ(CMDTrial9FileA::fileName2FileTitle("a"), CString("a"));
    EXPECT_EQ(CMDTrial9FileA::fileName2FileTitle(".trl"), CString());
    EXPECT_EQ(CMDTrial9FileA::fileName2FileTitle(""), CString());
}

TEST(TrialPathTexts, BasicPathEndsBeforeTheLastDotOrIsEmpty)
{
    EXPECT_EQ(CMDTrial9FileA::filePath2PathBasic("C:\\data\\a.b.trl"), CString("C:\\data\\a.b"));
    EXPECT_EQ(CMDTrial9FileA::filePath2PathBasic("C:\\data\\a"), CString());
    // The last dot counts wherever it stands.
    EXPECT_EQ(CMDTrial9FileA::filePath2PathBasic("C:\\data.1\\a"), CString("C:\\data"));
    EXPECT_EQ(CMDTrial9FileA::filePath2PathBasic(""), CString());
}

// ---- the search

class TrialFileSearch : public ::testing::Test
{
protected:
    CString find(const CString& path, bool ask = false)
    {
        return CMDTrial9FileA::findFile4FilePath(path, &document, datasetPath, ask);
    }
    CString findWithoutDocument(const CString& path)
    {
        return CMDTrial9FileA::findFile4FilePath(path, nullptr, datasetPath, false);
    }
    CString put(const CString& name) { return folder.write(name, "x"); }

    TemporaryFolder folder;
    ScriptedHost host;
    CDocument document;
    CString datasetPath;
};

TEST_F(TrialFileSearch, FindFileGivesTheFullPathOrLeavesTheTextAlone)
{
    const CString path = put("a.trl");
    folder.enter();
    CString found = "before";
    EXPECT_EQ(CMDTrial9FileA::findFile("b.trl", found), 0);
    EXPECT_EQ(CMDTrial9FileA::findFile("", found), 0);
    EXPECT_EQ(CMDTrial9FileA::findFile(folder.path(), found), 0);
    EXPECT_EQ(found, CString("before"));
    EXPECT_EQ(CMDTrial9FileA::findFile("a.trl", found), 1);
    EXPECT_EQ(found, path);
}

TEST_F(TrialFileSearch, AFolderIsNoHitAtAnyPlace)
{
    folder.makeFolder("doc\\a.trl");
    folder.makeFolder("data\\a.trl");
    folder.makeFolder("stored\\a.trl");
    folder.makeFolder("worka.trl");
    folder.makeFolder("work");
    std::filesystem::current_path(folder.native("work"));
    document.SetPathName(folder.path("doc\\session.meg"));
    datasetPath = folder.path("data\\session.meg");
    EXPECT_EQ(find(folder.path("stored\\a.trl")), CString());
    const CString file = put("data\\a.trl\\inside.trl");
    EXPECT_EQ(find(file), file);
}

TEST_F(TrialFileSearch, PathsOfAnotherSystemAreFoundBesideTheDatasetByTheirName)
{
    datasetPath = folder.path("session.meg");
    const CString here = put("sess_3.trl");
    EXPECT_EQ(findWithoutDocument("D:\\data\\run1\\sess_3.trl"), here);
    EXPECT_EQ(findWithoutDocument("\\\\server\\share\\sess_3.trl"), here);
    EXPECT_EQ(findWithoutDocument("D:\\data\\run1\\sess_4.trl"), CString());
}

TEST_F(TrialFileSearch, PlacesAreAskedInTheirOrder)
{
    folder.makeFolder("doc");
    folder.makeFolder("data");
    folder.makeFolder("work");
    std::filesystem::current_path(folder.native("work"));
    document.SetPathName(folder.path("doc\\session.meg"));
    datasetPath = folder.path("data\\session.meg");
    const CString besideDocument = put("doc\\a.trl");
    const CString besideDataset = put("data\\a.trl");
    const CString asStored = put("a.trl");
    const CString besideWork = put("worka.trl");
    for (const CString& next : {besideDocument, besideDataset, asStored, besideWork}) {
        EXPECT_EQ(find(asStored), next);
        std::filesystem::remove(folder.native(next.Mid(folder.path().GetLength())));
    }
    EXPECT_EQ(find(asStored), CString());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(TrialFileSearch, NoDocumentAndNoDatasetPathAreSkipped)
{
    const CString stored = put("a.trl");
    EXPECT_EQ(CMDTrial9FileA::findFile4FilePath(stored, nullptr, "", false), stored);
    EXPECT_EQ(CMDTrial9FileA::findFile4FilePath(folder.path("b.trl"), nullptr, "", false), CString());
}

TEST_F(TrialFileSearch, TheCurrentDirectoryTakesTheNameWithoutABackslash)
{
    // A file inside the current directory is not looked for; one beside it, with the directory's name in front, is.
    folder.makeFolder("work");
    put("work\\a.trl");
    std::filesystem::current_path(folder.native("work"));
    EXPECT_EQ(findWithoutDocument("X:\\gone\\a.trl"), CString());
    const CString beside = put("worka.trl");
    EXPECT_EQ(findWithoutDocument("X:\\gone\\a.trl"), beside);
}

TEST_F(TrialFileSearch, ADocumentWithoutAFileStandsForTheCurrentDirectory)
{
    const CString inside = put("a.trl");
    folder.enter();
    EXPECT_EQ(findWithoutDocument("X:\\gone\\a.trl"), CString());
    EXPECT_EQ(find("X:\\gone\\a.trl"), inside);
}

TEST_F(TrialFileSearch, ACurrentDirectoryTooLongForTheBufferIsSkipped)
{
    const CString part = CString(std::string(120, 'd'));
    CString deep;
    for (int i = 0; i < 5; ++i)
        deep = deep + part + "\\";
    folder.makeFolder(deep);
    put(deep.Left(deep.GetLength() - 1) + "a.trl");
    std::filesystem::current_path(folder.native(deep));
    EXPECT_EQ(findWithoutDocument("X:\\gone\\a.trl"), CString());
}

TEST_F(TrialFileSearch, APathWithoutABackslashHasNoNameToLookFor)
{
    datasetPath = folder.path("session.meg");
    put("a.trl");
    EXPECT_EQ(find("a.trl"), CString());
    folder.enter();
    EXPECT_EQ(find("a.trl"), folder.path("a.trl")); // as it stands, from the current directory
    EXPECT_EQ(find(""), CString());
    EXPECT_EQ(find(folder.path()), CString());
}

TEST_F(TrialFileSearch, NothingIsAskedWhereTheFileIsFound)
{
    const CString stored = put("a.trl");
    EXPECT_EQ(find(stored, true), stored);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(TrialFileSearch, NoGivesAnEmptyPath)
{
    host.willAnswerNo("Would like to find the fileX:\\gone\\a.trl");
    EXPECT_EQ(find("X:\\gone\\a.trl", true), CString());
    EXPECT_THAT(host.fileRequests(), IsEmpty());
}

TEST_F(TrialFileSearch, ACancelledDialogGivesAnEmptyPath)
{
    host.willAnswerYes("Would like to find the fileX:\\gone\\a.trl");
    host.willCancelFile();
    EXPECT_EQ(find("X:\\gone\\a.trl", true), CString());
    host.expectNoMessages();
}

TEST_F(TrialFileSearch, TheChosenFileIsNotLookedAtFurther)
{
    host.willAnswerYes();
    host.willChooseFile("X:\\nowhere\\b.trl");
    EXPECT_EQ(find("X:\\gone\\a.trl", true), CString("X:\\nowhere\\b.trl"));
    ASSERT_EQ(host.fileRequests().size(), 1U);
    const auto request = host.fileRequests().front();
    EXPECT_TRUE(request.open);
    EXPECT_TRUE(request.fileMustExist);
    EXPECT_EQ(request.filter, trialFilter);
    EXPECT_EQ(request.fileName, CString());
}

TEST_F(TrialFileSearch, TheDialogOpensOnTheKindOfFileThatWasUsedLast)
{
    for (const int index : {2, 1}) {
        host.willAnswerYes();
        host.willChooseFile("X:\\b.trl", index);
        find("X:\\gone\\a.trl", true);
        host.clearRecord();
        host.willAnswerYes();
        host.willCancelFile();
        find("X:\\gone\\a.trl", true);
        ASSERT_EQ(host.fileRequests().size(), 1U);
        EXPECT_EQ(host.fileRequests().front().filterIndex, index);
    }
}

} // namespace

} // namespace megset::CMDTrial9FileA_test
