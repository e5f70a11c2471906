// Finding, opening and saving the file of an acquisition's trial.

#include "tests/persistence/acquisitionRecord.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <filesystem>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial9FileBRecordFiles_test {

namespace {

using namespace megset::acquisitionRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AcquiredTrialOnDisk : public ::testing::Test
{
protected:
    CString put(const CString& name, const CString& trialName) const
    {
        return folder.write(name, trial(namedTrial(trialName, {{1.0, 2.0}})).bytes());
    }
    int open(const CString& path, const CString& megaPath = "") { return read.openTrialAcq(path, megaPath, docPath); }
    static CString question(const CString& path, int cause)
    {
        return CString::formatted("File save error:%s %d, would you like to save as a new file?", path, cause);
    }

    TemporaryFolder folder;
    ScriptedHost host;
    CMDTrialzk read;
    CString docPath;
};

// ---- the search

TEST_F(AcquiredTrialOnDisk, IsFoundAsItsPathStandsFirst)
{
    folder.makeFolder("moved");
    const CString asStored = put("a.trla", "stored");
    put("moved\\a.trla", "moved");
    ASSERT_EQ(open(asStored, folder.path("moved\\s.mega")), 1);
    EXPECT_EQ(read.m_strTrialName, CString("stored"));
    EXPECT_EQ(read.m_strTrialFilePath, asStored);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(AcquiredTrialOnDisk, IsFoundBesideTheDatasetFile)
{
    const CString moved = put("a.trla", "moved");
    ASSERT_EQ(open("X:\\gone\\a.trla", folder.path("s.mega")), 1);
    EXPECT_EQ(read.m_strTrialFilePath, moved);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(AcquiredTrialOnDisk, WithoutADatasetFileIsNotLookedForInTheCurrentDirectory)
{
    put("a.trla", "here");
    folder.enter();
    host.willAnswerNo("Find trial filea.trla ?");
    EXPECT_EQ(open("X:\\gone\\a.trla", ""), 0);
}

TEST_F(AcquiredTrialOnDisk, IsFoundAtTheCurrentDirectoryWithoutABackslashBetween)
{
    folder.makeFolder("here");
    const CString beside = put("herea.trla", "beside");
    put("here\\a.trla", "inside");
    std::filesystem::current_path(folder.native("here"));
    ASSERT_EQ(open("X:\\gone\\a.trla", "Y:\\gone\\s.mega"), 1);
    EXPECT_EQ(read.m_strTrialFilePath, beside);
    EXPECT_EQ(read.m_strTrialName, CString("beside"));
}

TEST_F(AcquiredTrialOnDisk, IsNotLookedForBesideTheDocument)
{
    put("a.trla", "beside");
    docPath = folder.path("session.meg");
    host.willAnswerNo("Find trial filea.trla ?");
    EXPECT_EQ(open("X:\\gone\\a.trla"), 0);
    host.expectNoMessages();
}

// Without a backslash a path has no file name: it is found as it stands or by the user.
TEST_F(AcquiredTrialOnDisk, APathWithoutABackslashHasNoName)
{
    put("a.trla", "here");
    host.willAnswerNo("Find trial file ?");
    EXPECT_EQ(open("a.trla", folder.path("s.mega")), 0);
    folder.enter();
    EXPECT_EQ(open("a.trla", folder.path("s.mega")), 1);
    EXPECT_EQ(read.m_strTrialFilePath, folder.path("a.trla"));
}

TEST_F(AcquiredTrialOnDisk, AnEmptyPathIsAskedFor)
{
    host.willAnswerNo("Find trial file ?");
    EXPECT_EQ(open("", folder.path("s.mega")), 0);
}

TEST_F(AcquiredTrialOnDisk, IsReadWhereTheUserPoints)
{
    const CString other = put("other.trla", "other");
    host.willAnswerYes("Find trial filea.trla ?");
    host.willChooseFile(other);
    ASSERT_EQ(open("X:\\gone\\a.trla"), 1);
    EXPECT_EQ(read.m_strTrialFilePath, other);
    EXPECT_THAT(host.calls(),
                ElementsAre("question: Find trial filea.trla ? -> yes",
                            "open file [Acq trial files (*.trla)|*.trla|All Files (*.*)|*.*||] -> " + other.toUtf8()));
}

TEST_F(AcquiredTrialOnDisk, GivesZeroSilentlyWhenTheChoiceIsCancelledOrCannotBeOpened)
{
    host.willAnswerYes();
    host.willCancelFile();
    EXPECT_EQ(open("X:\\gone\\a.trla"), 0);
    host.willAnswerYes();
    host.willChooseFile("X:\\gone\\b.trla");
    EXPECT_EQ(open("X:\\gone\\a.trla"), 0);
    const CString used = put("a.trla", "used");
    CFile other;
    ASSERT_TRUE(other.Open(used, CFile::modeRead | CFile::shareExclusive));
    EXPECT_EQ(open(used), 0);
    host.expectNoMessages();
    EXPECT_EQ(read.m_strTrialFilePath, CString());
}

TEST_F(AcquiredTrialOnDisk, TheKindOfFileIsRememberedUntilTheNextQuestion)
{
    const CString other = put("other.trla", "other");
    for (const int index : {2, 1}) {
        host.willAnswerYes();
        host.willChooseFile(other, index);
        ASSERT_EQ(open("X:\\gone\\a.trla"), 1);
    }
    EXPECT_EQ(host.fileRequests().back().filterIndex, 2);
}

// ---- reading

TEST_F(AcquiredTrialOnDisk, AFileThatIsNoneIsToldWithTheTextOfSaving)
{
    read.m_strTrialFilePath = "before";
    EXPECT_EQ(open(folder.write("a.trla", ByteBuilder().wide("MEGTRIALZK").bytes())), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("The opened file is not trial or corrupted!"), CString("Save trail data error!")));
    EXPECT_EQ(open(folder.write("b.trla", trialHeader(20200728).bytes())), 0);
    EXPECT_THAT(host.messages(), ::testing::Contains(CString("Wrong MeAcqTrial file format!!?")));
    EXPECT_EQ(read.m_strTrialFilePath, CString("before"));
}

TEST_F(AcquiredTrialOnDisk, AFileCutShortRaisesTheEndOfFileAndIsLetGo)
{
    const std::vector<std::byte> whole = trial(namedTrial("a", {{1.0}})).bytes();
    const CString path = folder.write("a.trla", std::span(whole).first(whole.size() - 1));
    EXPECT_THROW(open(path), CArchiveException);
    host.expectNoMessages();
    CFile file;
    EXPECT_TRUE(file.Open(path, CFile::modeRead | CFile::shareExclusive));
}

// ---- saving

class SavingAnAcquiredTrial : public AcquiredTrialOnDisk
{
protected:
    void SetUp() override { trialRecord::fill(read, 1); }
    int save(CString path)
    {
        newFolder = "former";
        const int result = read.saveTrialAcq(path, newFolder);
        usedPath = path;
        return result;
    }
    // What is in the file of an ordinary trial.
    static ByteBuilder savedAs(const CString& path)
    {
        CMDTrialzk expected;
        trialRecord::fill(expected, 1);
        expected.m_strTrialFilePath = path;
        return ByteBuilder().raw(trialRecord::stored(expected));
    }

    CString newFolder;
    CString usedPath;
};

TEST_F(SavingAnAcquiredTrial, WritesAnOrdinaryTrialThatCannotBeReadAsAnAcquiredOne)
{
    const CString path = folder.path("a.trla");
    ASSERT_EQ(save(path), 1);
    EXPECT_EQ(newFolder, CString());
    EXPECT_EQ(usedPath, path);
    EXPECT_EQ(read.m_strTrialFilePath, path);
    EXPECT_TRUE(sameBytes(folder.read("a.trla"), savedAs(path)));
    host.expectNoMessages();
    EXPECT_EQ(open(path), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("The opened file is not trial or corrupted!"), CString("Save trail data error!")));
}

TEST_F(SavingAnAcquiredTrial, AFileThatCannotBeOpenedIsToldAndNoEndsIt)
{
    const CString path = folder.path("nowhere\\a.trla");
    host.willAnswerNo(question(path, CFileException::badPath));
    EXPECT_EQ(save(path), 0);
    EXPECT_EQ(host.messages().size(), 1U);
    EXPECT_EQ(read.m_strTrialFilePath, CString("C:\\old\\trial.trl1"));
    EXPECT_EQ(newFolder, CString());
    EXPECT_EQ(usedPath, path);
}

TEST_F(SavingAnAcquiredTrial, AtAPlaceThatTheUserChoosesGivesTwoWithPathAndFolder)
{
    const CString path = folder.path("nowhere\\a.trla");
    const CString other = folder.makeFolder("there") + "b.trla";
    host.willAnswerYes(question(path, CFileException::badPath));
    host.willChooseFile(other);
    ASSERT_EQ(save(path), 2);
    EXPECT_EQ(usedPath, other);
    EXPECT_EQ(newFolder, folder.path("there\\")); // with its closing backslash
    EXPECT_EQ(read.m_strTrialFilePath, other);
    EXPECT_TRUE(sameBytes(folder.read("there\\b.trla"), savedAs(other)));
    const FileRequest request = host.fileRequests().back();
    EXPECT_EQ(request.fileName, CString("a"));
    EXPECT_EQ(host.calls().back(),
              "save file [Trial acquired files (*.trla)|*.trla|All Files (*.*)|*.*||] -> " + other.toUtf8());
}

TEST_F(SavingAnAcquiredTrial, GivesZeroWhenTheChoiceIsCancelledOrCannotBeOpenedEither)
{
    const CString path = folder.path("nowhere\\a.trla");
    host.willAnswerYes();
    host.willCancelFile();
    EXPECT_EQ(save(path), 0);
    host.willAnswerYes();
    host.willChooseFile(folder.path("nowhere\\b.trla"));
    EXPECT_EQ(save(path), 0);
    EXPECT_EQ(usedPath, path);
    EXPECT_EQ(newFolder, CString());
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(SavingAnAcquiredTrial, TheDialogOpensOnTheKindOfFileThatWasUsedLast)
{
    const CString path = folder.path("nowhere\\a.trla");
    for (const int index : {2, 1}) {
        host.willAnswerYes();
        host.willChooseFile(folder.path("b.trla"), index);
        EXPECT_EQ(save(path), 2);
        host.willAnswerYes();
        host.willCancelFile();
        EXPECT_EQ(save(path), 0);
        EXPECT_EQ(host.fileRequests().back().filterIndex, index);
    }
}

TEST_F(SavingAnAcquiredTrial, ASectionThatFailsIsTold)
{
    read.m_pSpctmCCFace->getCCSpctmTrlData4Class(1)->m_aPlane[0] = {1.0}; // a plane for no channel
    EXPECT_EQ(save(folder.path("a.trla")), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Trial file format!!?"), CString("Save trail data error!")));
}

TEST_F(SavingAnAcquiredTrial, AFullDiskRaisesTheFileException)
{
    std::filesystem::create_symlink("/dev/full", folder.native("full.trla"));
    EXPECT_THROW(save(folder.path("full.trla")), CFileException);
}

} // namespace

} // namespace megset::CMDTrial9FileBRecordFiles_test
