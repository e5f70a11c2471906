// Where the files of trials are: the paths of the list, and finding one for the application.
#include "megset/core/CMEGDatazk.h"

#include "megset/platform/CDocument.h"
#include "megset/platform/paths.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGDataPaths_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TrialFileCheck : public ::testing::Test
{
protected:
    TrialFileCheck()
    {
        for (const char* name : {"stored", "work", "doc"})
            folder.makeFolder(name);
        std::filesystem::current_path(folder.native("work"));
    }
    void expectFolder(const CString& expected) const { EXPECT_EQ(data.m_strTrialFolder, folder.path(expected)); }
    void expectCurrent(const CString& expected) const { EXPECT_EQ(currentDirectory() + "\\", folder.path(expected)); }
    static CString question(const CString& path) { return "Would like to find the file" + path + " "; }

    TemporaryFolder folder;
    ScriptedHost host;
    CDocument document;
    CMEGDatazk data;
};

TEST_F(TrialFileCheck, FindsTheFileAsItStands)
{
    const CString stored = folder.write("stored\\a.trl", "x");
    CString path = stored;
    EXPECT_EQ(data._checkFindFile(path), 1);
    EXPECT_EQ(path, stored);
    expectFolder("stored\\");
    expectCurrent("stored\\");
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(TrialFileCheck, GivesTheFullPathOfAFileThatIsNamedAlone)
{
    const CString inside = folder.write("work\\a.trl", "x");
    CString path = "a.trl";
    EXPECT_EQ(data._checkFindFile(path), 1);
    EXPECT_EQ(path, inside);
    expectFolder("work\\");
}

TEST_F(TrialFileCheck, FindsTheFileInTheCurrentDirectory)
{
    const CString inside = folder.write("work\\sess_3.trl", "x");
    CString path = "D:\\data\\run1\\sess_3.trl";
    EXPECT_EQ(data._checkFindFile(path), 1);
    EXPECT_EQ(path, inside);
    expectFolder("work\\");
    expectCurrent("work\\");
}

TEST_F(TrialFileCheck, DoesNotTakeAFolderForAFile)
{
    folder.makeFolder("stored\\a.trl");
    folder.makeFolder("work\\a.trl");
    host.willAnswerNo(question(folder.path("stored\\a.trl")));
    CString path = folder.path("stored\\a.trl");
    EXPECT_EQ(data._checkFindFile(path), 0);
    CString nothing; // nor the current directory itself
    host.willAnswerNo(question(""));
    EXPECT_EQ(data._checkFindFile(nothing), 0);
    EXPECT_EQ(data.m_strTrialFolder, "");
}

TEST_F(TrialFileCheck, DoesNotLookInACurrentDirectoryThatIsTooLong)
{
    CString deep = "work\\";
    for (int i = 0; i < 5; ++i)
        deep += CString(std::string(120, 'd')) + "\\";
    folder.makeFolder(deep);
    folder.write(deep + "a.trl", "x");
    std::filesystem::current_path(folder.native(deep));
    host.willAnswerNo();
    CString path = "D:\\a.trl";
    EXPECT_EQ(data._checkFindFile(path), 0);
}

TEST_F(TrialFileCheck, EndsWithNo)
{
    host.willAnswerNo(question("D:\\gone\\a.trl"));
    CString path = "D:\\gone\\a.trl";
    EXPECT_EQ(data._checkFindFile(path), 0);
    EXPECT_EQ(path, "D:\\gone\\a.trl");
    EXPECT_EQ(data.m_strTrialFolder, "");
    expectCurrent("work\\");
    EXPECT_THAT(host.fileRequests(), IsEmpty());
}

TEST_F(TrialFileCheck, EndsWithACancelledDialog)
{
    host.willAnswerYes(question("D:\\gone\\a.trl"));
    host.willCancelFile();
    CString path = "D:\\gone\\a.trl";
    EXPECT_EQ(data._checkFindFile(path), 0);
    EXPECT_EQ(path, "D:\\gone\\a.trl");
    EXPECT_EQ(data.m_strTrialFolder, "");
}

TEST_F(TrialFileCheck, TakesTheFileThatTheUserChoosesAndStaysInItsDirectory)
{
    host.willAnswerYes(question("D:\\gone\\a.trl"));
    host.willChooseFile(folder.path("stored\\b.trl"));
    CString path = "D:\\gone\\a.trl";
    EXPECT_EQ(data._checkFindFile(path), 2);
    EXPECT_EQ(path, folder.path("stored\\b.trl"));
    expectFolder("stored\\");
    expectCurrent("work\\");
    ASSERT_EQ(host.fileRequests().size(), 1U);
    const FileRequest request = host.fileRequests().front();
    EXPECT_TRUE(request.open);
    EXPECT_TRUE(request.fileMustExist);
    EXPECT_EQ(request.filter, "MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||");
}

TEST_F(TrialFileCheck, AsksOnTheKindOfFileThatWasUsedLast)
{
    for (const int index : {2, 1}) {
        CString path = "D:\\gone\\a.trl";
        host.willAnswerYes();
        host.willChooseFile("X:\\b.trl", index);
        data._checkFindFile(path);
        host.clearRecord();
        host.willAnswerYes();
        host.willCancelFile();
        data._checkFindFile(path);
        ASSERT_EQ(host.fileRequests().size(), 1U);
        EXPECT_EQ(host.fileRequests().front().filterIndex, index);
    }
}

TEST_F(TrialFileCheck, LooksInTheDocumentsFolderFirst)
{
    const CString beside = folder.write("doc\\a.trl", "x");
    CString path = folder.write("stored\\a.trl", "x");
    document.SetPathName(folder.path("doc\\session.meg"));
    data.m_pDocument = &document;
    EXPECT_EQ(data._checkGetFileSameFold4Path(path), beside);
    EXPECT_EQ(path, beside);
    expectFolder("doc\\");
    expectCurrent("doc\\");
}

TEST_F(TrialFileCheck, GoesOnWithoutADocumentOrWithOneThatHasNoFile)
{
    const CString stored = folder.write("stored\\a.trl", "x");
    for (CDocument* each : {static_cast<CDocument*>(nullptr), &document}) {
        data.m_pDocument = each;
        CString path = stored;
        EXPECT_EQ(data._checkGetFileSameFold4Path(path), stored);
    }
    document.SetPathName(folder.path("doc\\session.meg"));
    CString path = stored;
    EXPECT_EQ(data._checkGetFileSameFold4Path(path), stored);
    expectFolder("stored\\");
}

TEST_F(TrialFileCheck, GivesTheChosenPathOrAnEmptyOne)
{
    document.SetPathName(folder.path("doc\\session.meg"));
    data.m_pDocument = &document;
    CString path = "D:\\gone\\a.trl";
    host.willAnswerNo();
    EXPECT_EQ(data._checkGetFileSameFold4Path(path), "");
    host.willAnswerYes();
    host.willCancelFile();
    EXPECT_EQ(data._checkGetFileSameFold4Path(path), "");
    EXPECT_EQ(path, "D:\\gone\\a.trl");
    host.willAnswerYes();
    host.willChooseFile("X:\\b.trl");
    EXPECT_EQ(data._checkGetFileSameFold4Path(path), "X:\\b.trl");
}

// ---- paths of the list

TEST(TrialPaths, AreGivenWholeAndByTitle)
{
    CMEGDatazk data;
    data.initMEGData(2, 1, 1);
    data.m_aTrialFilePath.Add("C:\\data\\run.1Trial0.trl");
    data.m_aTrialFilePath.Add("C:\\data\\Trial1");
    EXPECT_EQ(data.getTrialFilePath(0), "C:\\data\\run.1Trial0.trl");
    EXPECT_EQ(data.getTrialFileName(0), "run.1Trial0");
    EXPECT_EQ(data.getTrialFileName(-1), "run.1Trial0");
    EXPECT_EQ(data.getTrialFileName(1), "Trial1");
}

TEST(TrialPaths, AreTextsOnTrouble)
{
    CMEGDatazk data;
    data.initMEGData(2, 1, 1);
    data.m_aTrialFilePath.Add("C:\\data\\Trial0.trl");
    EXPECT_EQ(data.getTrialFilePath(2), "Error > total");
    EXPECT_EQ(data.getTrialFileName(2), "Error > total");
    EXPECT_EQ(data.getTrialFilePath(-2), "Error < 0");
    EXPECT_EQ(data.getTrialFileName(-2), "Error < 0");
    EXPECT_EQ(data.getTrialFilePath(0), "Error Path Array");
    EXPECT_EQ(data.getTrialFileName(0), "Error Path Array");
    data.m_ppTrial.reset();
    EXPECT_EQ(data.getTrialFilePath(0), "Error No Trials");
    EXPECT_EQ(data.getTrialFileName(1), "Error No Trials");
    EXPECT_EQ(CMEGDatazk().getTrialFileName(-1), "Error < 0");
}

} // namespace
} // namespace megset::CMEGDataPaths_test
