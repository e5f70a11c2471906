// Where a dataset's folder and names come from.
#include "megset/persistence/CMEGData9FileA00Basic.h"

#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"

#include "tests/persistence/trialFiles.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileA00BasicFolder_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString selectFolder = "Please select a direcotry to store the  data!";
const CString trialFilter = "MEG Trial Data(*.trl)|*.trl|All Files(*.*)|*.*||";

class DatasetFolder : public TrialFiles
{
protected:
    DatasetFolder() { filed.folder.makeFolder("other"); }
    /// Folder, names and current directory are those of "<folder>other\\study.meg".
    void expectOther() const
    {
        EXPECT_EQ(data.m_strTrialFolder, path("other\\"));
        EXPECT_EQ(data.m_strDatasetFileName, "study");
        EXPECT_EQ(data.m_strSessionName, "study");
        EXPECT_EQ(data.m_strDatasetPath, path("other\\study"));
        EXPECT_EQ(currentDirectory() + "\\", path("other\\"));
    }
    void expectUntouched() const
    {
        EXPECT_EQ(data.m_strTrialFolder, "");
        EXPECT_EQ(data.m_strDatasetFileName, "");
        EXPECT_EQ(data.m_strSessionName, "Unknown");
        EXPECT_EQ(data.m_strDatasetPath, "");
    }
};

TEST_F(DatasetFolder, StaysAsItIsWhenTheDocumentAloneIsSet)
{
    document.SetPathName(path("other\\study.meg"));
    const CString before = currentDirectory();
    EXPECT_EQ(data.setDocument(&document, false), 1);
    EXPECT_EQ(data.getDocument(), &document);
    expectUntouched();
    EXPECT_EQ(currentDirectory(), before);
    EXPECT_EQ(data.setDocument(nullptr, false), 1);
    EXPECT_EQ(data.getDocument(), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(DatasetFolder, ComesWithTheNamesFromTheDocument)
{
    document.SetPathName(path("other\\study.meg"));
    EXPECT_EQ(data.setDocument(&document, true), 1);
    EXPECT_EQ(data.getDocument(), &document);
    expectOther();
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(DatasetFolder, ComesFromTheFormerDocumentForNull)
{
    document.SetPathName(path("other\\study.meg"));
    data.m_pDocument = &document;
    EXPECT_EQ(data.setDocument(nullptr, true), 1);
    EXPECT_EQ(data.getDocument(), &document);
    expectOther();
}

TEST_F(DatasetFolder, OfADocumentOnAnotherSystemIsTakenThoughItCannotBeEntered)
{
    const CString before = currentDirectory();
    document.SetPathName("D:\\data\\run1\\sess.meg");
    EXPECT_EQ(data.setDocument(&document, true), 1);
    EXPECT_EQ(data.m_strTrialFolder, "D:\\data\\run1\\");
    EXPECT_EQ(data.m_strDatasetPath, "D:\\data\\run1\\sess");
    EXPECT_EQ(currentDirectory(), before);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(DatasetFolder, AlwaysEndsWithABackslash)
{
    document.SetPathName("D:sess.meg");
    data.setDocument(&document, true);
    EXPECT_EQ(data.m_strTrialFolder, "D:\\");
    CString slashes = path("other\\study.meg");
    slashes.Replace("\\", "/");
    document.SetPathName(slashes);
    data.setDocument(&document, true);
    expectOther();
}

TEST_F(DatasetFolder, AloneComesFromTheCurrentTrialWithoutADocument)
{
    data.openTrial(1);
    EXPECT_EQ(data.setDocument(nullptr, true), 1);
    EXPECT_EQ(data.m_strTrialFolder, filed.folder.path());
    EXPECT_EQ(data.m_strSessionName, "Unknown");
    EXPECT_EQ(data.m_strDatasetFileName, "");
    EXPECT_EQ(data.m_strDatasetPath, "");
    EXPECT_EQ(currentDirectory() + "\\", filed.folder.path());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(DatasetFolder, AloneComesFromTheCurrentTrialWhenTheDocumentHasNoFile)
{
    data.openTrial(1);
    EXPECT_EQ(data.setDocument(&document, true), 1);
    EXPECT_EQ(data.getDocument(), &document);
    EXPECT_EQ(data.m_strTrialFolder, filed.folder.path());
}

TEST_F(DatasetFolder, ComesFromTheUserWhereATrialIsCurrentButOnDisk)
{
    host.willChooseFile(path("other\\study.trl"));
    EXPECT_EQ(data.setDocument(nullptr, true), 1);
    expectOther();
    EXPECT_THAT(host.messages(), ElementsAre(selectFolder));
    ASSERT_EQ(host.fileRequests().size(), 1U);
    const FileRequest request = host.fileRequests().front();
    EXPECT_FALSE(request.open);
    EXPECT_TRUE(request.confirmOverwrite);
    EXPECT_EQ(request.filter, trialFilter);
}

TEST_F(DatasetFolder, ComesFromTheUserWhereTheCurrentTrialHasNoFile)
{
    data.openTrial(0);
    data.getMDTrial(0)->m_strTrialFilePath.Empty();
    host.willChooseFile(path("other\\study.trl"));
    EXPECT_EQ(data.setDocument(&document, true), 1);
    expectOther();
}

TEST_F(DatasetFolder, StaysAsItIsWhenTheUserCancels)
{
    host.willCancelFile();
    EXPECT_EQ(data.setDocument(&document, true), 0);
    EXPECT_EQ(data.getDocument(), &document);
    expectUntouched();
    EXPECT_THAT(host.messages(), ElementsAre(selectFolder));
}

TEST_F(DatasetFolder, IsAskedForOnTheKindOfFileThatWasUsedLast)
{
    for (const int index : {2, 1}) {
        host.willChooseFile(path("other\\study.trl"), index);
        data.setDocument(nullptr, true);
        host.clearRecord();
        host.willCancelFile();
        data.setDocument(nullptr, true);
        ASSERT_EQ(host.fileRequests().size(), 1U);
        EXPECT_EQ(host.fileRequests().front().filterIndex, index);
    }
}

TEST_F(DatasetFolder, OfPartsThatAreTooLongGivesWayToTheNextPlace)
{
    const std::string longest(255, 'n');
    document.SetPathName("\\" + CString(longest) + ".meg");
    EXPECT_EQ(data.setDocument(&document, true), 1);
    EXPECT_EQ(data.m_strSessionName, CString(longest));
    for (const CString& tooLong : {CString("\\" + longest + "n.meg"), CString("\\" + longest + "\\a.meg")}) {
        document.SetPathName(tooLong);
        data.m_ppTrial.set(0, nullptr);
        ASSERT_EQ(data.openTrial(0), 1);
        EXPECT_EQ(data.setDocument(&document, true), 1);
        EXPECT_EQ(data.m_strTrialFolder, filed.folder.path());
        // A trial's path of that kind gives way to the user, whose choice must fit.
        data.getMDTrial(0)->m_strTrialFilePath = tooLong;
        host.willChooseFile(tooLong);
        EXPECT_EQ(data.setDocument(&document, true), 0);
        EXPECT_EQ(data.m_strTrialFolder, filed.folder.path());
    }
    EXPECT_THAT(host.messages(), ElementsAre(selectFolder, selectFolder));
}

TEST_F(DatasetFolder, TakesNamesOfAnyLanguage)
{
    const CString name = "данные 脑磁图 ünï 🧠";
    filed.folder.makeFolder(name);
    document.SetPathName(path(name + "\\" + name + ".meg"));
    EXPECT_EQ(data.setDocument(&document, true), 1);
    EXPECT_EQ(data.m_strSessionName, name);
    EXPECT_EQ(currentDirectory(), path(name));
}

// ---- from an existing file

TEST_F(DatasetFolder, IsThatOfAnExistingFile)
{
    filed.folder.write("other\\a.trl", "x");
    EXPECT_EQ(data.setFilePathDirectory(path("other\\a.trl")), 1);
    EXPECT_EQ(data.m_strTrialFolder, path("other\\"));
    EXPECT_EQ(currentDirectory() + "\\", path("other\\"));
    EXPECT_EQ(data.m_strSessionName, "Unknown");
    EXPECT_EQ(data.setFilePathDirectory("a.trl"), 1);
    EXPECT_EQ(data.m_strTrialFolder, path("other\\"));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(DatasetFolder, IsNotThatOfAMissingFileOrAFolder)
{
    const CString before = currentDirectory();
    EXPECT_EQ(data.setFilePathDirectory(path("gone.trl")), 0);
    EXPECT_EQ(data.setFilePathDirectory(path("other")), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Find file:" + path("gone.trl") + " error \n", "Find file:" + path("other") + " error \n"));
    expectUntouched();
    EXPECT_EQ(currentDirectory(), before);
}

TEST_F(DatasetFolder, ThatCannotBeEnteredIsTold)
{
    // A folder with a path longer than the system takes: its file is found by a short path from inside.
    const std::string part(200, 'd');
    filed.folder.enter();
    for (int i = 0; i < 21; ++i) {
        std::filesystem::create_directory(part);
        std::filesystem::current_path(part);
    }
    {
        CFile made("a.trl", CFile::modeCreate | CFile::modeWrite);
    }
    EXPECT_EQ(data.setFilePathDirectory("a.trl"), 0);
    ASSERT_EQ(host.messages().size(), 1U);
    EXPECT_EQ(host.messages().front(), "Set directory error:" + data.m_strTrialFolder + " error \n");
    EXPECT_GT(data.m_strTrialFolder.GetLength(), 4096);
    for (int i = 0; i < 21; ++i)
        std::filesystem::current_path("..");
}

} // namespace
} // namespace megset::CMEGData9FileA00BasicFolder_test
