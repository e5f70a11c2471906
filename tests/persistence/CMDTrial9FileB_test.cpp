// The sections of a trial's file that do more than hold a field, and opening and saving of trials.

#include "tests/persistence/trialRecord.h"

#include "megset/platform/CDocument.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial9FileB_test {

namespace {

using namespace megset::trialRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TrialSections : public ::testing::Test
{
protected:
    void expectBytes(const Parts& parts) { EXPECT_TRUE(sameBytes(stored(trial), record(newest, parts))); }

    ScriptedHost host;
    CMDTrialzk trial;
};

// ---- channels

TEST_F(TrialSections, ATrialWithoutChannelsWritesTheirNumberAndZero)
{
    trial.m_nCurrentChannel = 4;
    trial.m_nTotalChannel = 7;
    Parts parts;
    parts.channels = ByteBuilder().i32(4).i32(7).i32(0);
    expectBytes(parts);
    CMDTrialzk read;
    fillChannels(read, 1);
    ASSERT_EQ(load(read, record(newest, parts)), 1);
    EXPECT_EQ(read.m_ppChannel, nullptr);
    EXPECT_EQ(read.m_nTotalChannel, 7);
    EXPECT_EQ(read.m_nCurrentChannel, 4);
    EXPECT_EQ(read.getTotalChannel(), 0);
    EXPECT_EQ(read.getChannel(4), nullptr);
}

TEST_F(TrialSections, NullChannelsComeBackAsNull)
{
    Parts parts;
    parts.channels = ByteBuilder().i32(0).i32(3).i32(1).zeros(3 * 4);
    ASSERT_EQ(load(trial, record(newest, parts)), 1);
    EXPECT_EQ(trial.getTotalChannel(), 3);
    EXPECT_EQ(trial.getChannel(2), nullptr);
    expectBytes(parts);
}

// ---- montages

TEST_F(TrialSections, ThePresenceWordOfTheCommonReferenceIsTheReservedField)
{
    for (const int word : {1, 6, -3}) {
        trial.m_nTrialReservedB = word;
        trial.m_pMontageCr = std::make_unique<CMtgUnit4CommonRefzk>(commonReference(1));
        Parts parts;
        parts.basic = ByteBuilder().i64(0).i32(1).i32(0).zeros(16).i32(word).i32(0).wide("").wide("");
        parts.basic.zeros(16 + 11 * 8);
        parts.presenceWord = word;
        parts.commonReference = ByteBuilder().raw(bytesOf(commonReference(1)));
        expectBytes(parts);
        CMDTrialzk read;
        ASSERT_EQ(load(read, record(newest, parts)), 1);
        ASSERT_NE(read.m_pMontageCr, nullptr);
        EXPECT_EQ(*read.m_pMontageCr, commonReference(1));
        EXPECT_EQ(read.m_nTrialReservedB, word);
    }
}

TEST_F(TrialSections, ThePresenceWordReadIsNotKept)
{
    Parts parts;
    parts.presenceWord = 9;
    parts.commonReference = ByteBuilder().raw(bytesOf(commonReference(1)));
    ASSERT_EQ(load(trial, record(newest, parts)), 1);
    EXPECT_EQ(trial.m_nTrialReservedB, 1);
}

TEST_F(TrialSections, AUnitWrittenWhileTheReservedFieldIsZeroCannotBeReadBack)
{
    trial.m_nTrialReservedB = 0;
    trial.m_pMontageCr = std::make_unique<CMtgUnit4CommonRefzk>(commonReference(1));
    const std::vector<std::byte> bytes = stored(trial);
    CMDTrialzk read;
    try {
        EXPECT_EQ(load(read, bytes), 0);
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
    }
    EXPECT_EQ(read.m_pMontageCr, nullptr);
}

TEST_F(TrialSections, TheWordBeforeAbsentUnitsIsZeroWhateverTheFieldHolds)
{
    trial.m_nTrialReservedB = 77;
    Parts parts;
    parts.basic = ByteBuilder().i64(0).i32(1).i32(0).zeros(16).i32(77).i32(0).wide("").wide("").zeros(16 + 11 * 8);
    expectBytes(parts);
}

TEST_F(TrialSections, NullEntriesOfTheIndividualReferencesAreWrittenAndDroppedWhenRead)
{
    trial.m_aMontageIr.Add(std::unique_ptr<CMtgUnit4IndividualRefzk>());
    trial.m_aMontageIr.addCopy(individualReference(5));
    Parts parts;
    parts.individualReferences = ByteBuilder().i64(2).i32(0).append(guarded(individualReference(5)));
    expectBytes(parts);
    ASSERT_EQ(load(trial, record(newest, parts)), 1);
    ASSERT_EQ(trial.m_aMontageIr.GetSize(), 1);
    EXPECT_EQ(*trial.m_aMontageIr[0], individualReference(5));
}

TEST_F(TrialSections, ACountOfIndividualReferencesBelowOneEndsTheSection)
{
    for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN}) {
        fill(trial, 1);
        Parts parts = filled(2);
        parts.individualReferences = ByteBuilder().i64(count);
        ASSERT_EQ(load(trial, record(newest, parts)), 1);
        EXPECT_EQ(trial.m_aMontageIr.GetSize(), 0);
        EXPECT_EQ(*trial.m_pFaceIca, components(2));
    }
}

// ---- probes

class ProbeIndex : public TrialSections
{
protected:
    // The index after loading a file with that index and number of probes.
    int loaded(int index, int count, int nulls = 0)
    {
        Parts parts;
        parts.probes = ByteBuilder().i32(index).i32(count + nulls).append(none(nulls));
        for (int i = 0; i < count; ++i)
            parts.probes.append(guarded(probe(i)));
        EXPECT_EQ(load(trial, record(newest, parts)), 1);
        EXPECT_EQ(trial.m_aSeegProbe.GetSize(), count);
        return trial.m_nCurrentSeegProbe;
    }
};

TEST_F(ProbeIndex, InsideStaysAsItIs)
{
    EXPECT_EQ(loaded(0, 3), 0);
    EXPECT_EQ(loaded(2, 3), 2);
}

TEST_F(ProbeIndex, OnePastTheEndStaysAndFurtherOnesBecomeTheLast)
{
    EXPECT_EQ(loaded(3, 3), 3);
    EXPECT_EQ(loaded(4, 3), 2);
    EXPECT_EQ(loaded(INT32_MAX, 3), 2);
}

TEST_F(ProbeIndex, NegativeBecomesTheFirst)
{
    EXPECT_EQ(loaded(-1, 3), 0);
    EXPECT_EQ(loaded(INT32_MIN, 1), 0);
}

TEST_F(ProbeIndex, WithoutProbesZeroStaysAndOthersAreBelowZero)
{
    EXPECT_EQ(loaded(0, 0), 0);
    EXPECT_EQ(loaded(1, 0), -1);
    EXPECT_EQ(loaded(-1, 0), -1);
    EXPECT_EQ(loaded(-7, 0), -7);
}

TEST_F(ProbeIndex, NullProbesAreDroppedAndDoNotCount)
{
    EXPECT_EQ(loaded(3, 2, 1), 1);
    trial.m_aSeegProbe.RemoveAll();
    trial.m_aSeegProbe.Add(std::unique_ptr<CSeegProbezk>());
    Parts parts;
    parts.probes = ByteBuilder().i32(1).i32(1).i32(0);
    expectBytes(parts);
}

TEST_F(ProbeIndex, ACountBelowOneBringsNoProbes)
{
    for (const int count : {0, -1, INT32_MIN}) {
        Parts parts;
        parts.probes = ByteBuilder().i32(0).i32(count);
        fill(trial, 1);
        ASSERT_EQ(load(trial, record(newest, parts)), 1);
        EXPECT_EQ(trial.m_aSeegProbe.GetSize(), 0);
    }
}

// ---- opening and saving

class TrialOnDisk : public ::testing::Test
{
protected:
    CString put(const CString& name, int seed = 1) { return folder.write(name, record(newest, filled(seed)).bytes()); }
    int open(CString path) { return trial.openTrialData(path, &document, datasetPath); }
    int save(const CString& path, bool useGivenPath = true)
    {
        CString given = path;
        const int result = trial.saveTrialData(given, &document, datasetPath, useGivenPath);
        EXPECT_EQ(given, path); // it is not written back
        return result;
    }
    // What a file of the trial with this seed holds that was saved to that path.
    static ByteBuilder savedAs(const CString& path, int seed)
    {
        CMDTrialzk expected;
        fill(expected, seed);
        expected.m_strTrialFilePath = path;
        return ByteBuilder().raw(stored(expected));
    }
    static CString question(const CString& path, int cause)
    {
        return CString::formatted("File save error:%s %d, would you like to save as a new file?", path, cause);
    }

    TemporaryFolder folder;
    ScriptedHost host;
    CDocument document;
    CString datasetPath;
    CMDTrialzk trial;
};

TEST_F(TrialOnDisk, IsOpenedWhereItIsFoundAndTakesThatPath)
{
    folder.makeFolder("doc");
    folder.makeFolder("data");
    document.SetPathName(folder.path("doc\\session.meg"));
    datasetPath = folder.path("data\\session.meg");
    const CString asStored = put("a.trl", 3);
    ASSERT_EQ(open(asStored), 1);
    EXPECT_EQ(trial.m_strTrialFilePath, asStored);
    const CString besideDataset = put("data\\a.trl", 2);
    ASSERT_EQ(open(asStored), 1);
    EXPECT_EQ(trial.m_strTrialFilePath, besideDataset);
    EXPECT_EQ(trial.m_strTrialName, CString("trial2"));
    const CString besideDocument = put("doc\\a.trl", 1);
    ASSERT_EQ(open(asStored), 1);
    EXPECT_EQ(trial.m_strTrialFilePath, besideDocument);
    EXPECT_EQ(trial.m_strTrialName, CString("trial1"));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(TrialOnDisk, IsOpenedWhereTheUserPoints)
{
    const CString moved = put("moved.trl");
    host.willAnswerYes("Would like to find the fileX:\\gone\\a.trl");
    host.willChooseFile(moved);
    ASSERT_EQ(open("X:\\gone\\a.trl"), 1);
    EXPECT_EQ(trial.m_strTrialFilePath, moved);
    host.expectNoMessages();
}

TEST_F(TrialOnDisk, ThatIsNotFoundOrCannotBeOpenedGivesZeroWithoutAMessage)
{
    host.willAnswerNo();
    EXPECT_EQ(open("X:\\gone\\a.trl"), 0);
    host.willAnswerYes();
    host.willChooseFile("X:\\gone\\b.trl");
    EXPECT_EQ(open("X:\\gone\\a.trl"), 0);
    folder.makeFolder("a.trl"); // a folder is not found
    host.willAnswerNo();
    EXPECT_EQ(open(folder.path("a.trl")), 0);
    host.expectNoMessages();
    EXPECT_EQ(trial.m_strTrialFilePath, CString());
}

TEST_F(TrialOnDisk, InUseElsewhereIsNotOpened)
{
    const CString path = put("a.trl");
    CFile other;
    ASSERT_TRUE(other.Open(path, CFile::modeRead | CFile::shareExclusive));
    EXPECT_EQ(open(path), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
    other.Close();
    EXPECT_EQ(open(path), 1);
    EXPECT_EQ(open(path), 1); // the first opening let the file go
}

TEST_F(TrialOnDisk, ThatIsNoTrialIsToldWithTheTextOfSaving)
{
    trial.m_strTrialFilePath = "before";
    EXPECT_EQ(open(folder.write("a.trl", ByteBuilder().wide("MEGCHANNELZK").bytes())), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("The opened file is not trial or corrupted!"), CString("Save trail data error!")));
    EXPECT_EQ(trial.m_strTrialFilePath, CString("before"));
}

TEST_F(TrialOnDisk, CutShortRaisesTheEndOfFileAndLetsTheFileGo)
{
    const std::vector<std::byte> whole = record(newest, filled(1)).bytes();
    const CString path = folder.write("a.trl", std::span(whole).first(whole.size() - 1));
    EXPECT_THROW(open(path), CArchiveException);
    host.expectNoMessages();
    CFile file;
    EXPECT_TRUE(file.Open(path, CFile::modeRead | CFile::shareExclusive));
}

TEST_F(TrialOnDisk, SavedToAGivenPathHoldsItsOwnPath)
{
    fill(trial, 1);
    const CString path = folder.path("new.trl");
    ASSERT_EQ(save(path), 1);
    EXPECT_EQ(trial.m_strTrialFilePath, path);
    EXPECT_TRUE(sameBytes(folder.read("new.trl"), savedAs(path, 1)));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(TrialOnDisk, SavedTwiceGivesTheSameBytesAndNothingOfALongerFileStays)
{
    fill(trial, 1);
    folder.write("a.trl", std::string(100'000, 'x'));
    ASSERT_EQ(save(folder.path("a.trl")), 1);
    const std::vector<std::byte> first = folder.read("a.trl");
    ASSERT_EQ(save(folder.path("a.trl")), 1);
    EXPECT_TRUE(sameBytes(folder.read("a.trl"), first));
}

TEST_F(TrialOnDisk, ReadAgainAfterSavingIsTheSame)
{
    fill(trial, 1);
    ASSERT_EQ(save(folder.path("a.trl")), 1);
    CMDTrialzk again;
    CString path = folder.path("a.trl");
    ASSERT_EQ(again.openTrialData(path, nullptr, ""), 1);
    EXPECT_TRUE(sameBytes(stored(again), stored(trial)));
    EXPECT_EQ(again.m_nTrialIndex, trial.m_nTrialIndex);
    EXPECT_EQ(again.m_bTrialResampled, trial.m_bTrialResampled);
    EXPECT_EQ(again.m_nTrialResampleStep, trial.m_nTrialResampleStep);
}

TEST_F(TrialOnDisk, MovedWithItsDatasetTakesThePathWhereItWasFound)
{
    fill(trial, 1);
    ASSERT_EQ(save(folder.path("a.trl")), 1);
    folder.makeFolder("moved");
    std::filesystem::rename(folder.native("a.trl"), folder.native("moved\\a.trl"));
    datasetPath = folder.path("moved\\session.meg");
    ASSERT_EQ(open(folder.path("a.trl")), 1);
    EXPECT_EQ(trial.m_strTrialFilePath, folder.path("moved\\a.trl"));
}

TEST_F(TrialOnDisk, SavedWithoutAGivenPathGoesWhereTheFileIsFound)
{
    folder.makeFolder("data");
    datasetPath = folder.path("data\\session.meg");
    const CString found = put("data\\a.trl", 2);
    fill(trial, 1);
    ASSERT_EQ(save("X:\\gone\\a.trl", false), 1);
    EXPECT_EQ(trial.m_strTrialFilePath, found);
    EXPECT_TRUE(sameBytes(folder.read("data\\a.trl"), savedAs(found, 1)));
}

TEST_F(TrialOnDisk, AVanishedFileIsNotAskedForButCannotBeSavedTo)
{
    CFileException exception;
    CFile file;
    ASSERT_FALSE(file.Open("", CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive, &exception));
    host.willAnswerNo(question("", exception.m_cause));
    EXPECT_EQ(save("X:\\gone\\a.trl", false), 0);
    EXPECT_THAT(host.messages(), ElementsAre(exception.GetErrorMessage()));
    EXPECT_EQ(trial.m_strTrialFilePath, CString());
}

class TrialThatCannotBeSaved : public TrialOnDisk
{
protected:
    const CString path = folder.path("nowhere\\run.1.trl");

    void willAnswer(bool yes)
    {
        const CString text = question(path, CFileException::badPath);
        yes ? host.willAnswerYes(text) : host.willAnswerNo(text);
    }
    void expectTold()
    {
        ASSERT_EQ(host.messages().size(), 1U);
        EXPECT_EQ(host.calls().front().rfind("message: ", 0), 0U); // before the question
    }
};

TEST_F(TrialThatCannotBeSaved, NoLeavesItAtThat)
{
    willAnswer(false);
    EXPECT_EQ(save(path), 0);
    expectTold();
    EXPECT_THAT(host.fileRequests(), IsEmpty());
    EXPECT_EQ(trial.m_strTrialFilePath, CString());
}

TEST_F(TrialThatCannotBeSaved, ACancelledDialogGivesZeroWithoutAFurtherMessage)
{
    willAnswer(true);
    host.willCancelFile();
    EXPECT_EQ(save(path), 0);
    expectTold();
    ASSERT_EQ(host.fileRequests().size(), 1U);
    const auto request = host.fileRequests().front();
    EXPECT_FALSE(request.open);
    EXPECT_EQ(request.filter, CString("MEG trial files (*.trl)|*.trl|All Files (*.*)|*.*||"));
    EXPECT_EQ(request.fileName, CString("run.1"));
    EXPECT_EQ(trial.m_strTrialFilePath, CString());
}

TEST_F(TrialThatCannotBeSaved, AChosenFileThatCannotBeOpenedGivesZeroWithoutAFurtherMessage)
{
    willAnswer(true);
    host.willChooseFile(folder.path("nowhere\\either.trl"));
    EXPECT_EQ(save(path), 0);
    expectTold();
    EXPECT_EQ(trial.m_strTrialFilePath, CString());
}

TEST_F(TrialThatCannotBeSaved, TheChosenFileTakesThePlaceOfTheGivenOne)
{
    fill(trial, 1);
    const CString chosen = folder.path("chosen.trl");
    willAnswer(true);
    host.willChooseFile(chosen);
    EXPECT_EQ(save(path), 1);
    expectTold();
    EXPECT_EQ(trial.m_strTrialFilePath, chosen);
    EXPECT_TRUE(sameBytes(folder.read("chosen.trl"), savedAs(chosen, 1)));
}

TEST_F(TrialThatCannotBeSaved, NoTitleIsSuggestedForAFolderOf256CharactersOrMore)
{
    const CString longPath = folder.path(CString(std::string(256, 'd')) + "\\run.trl");
    host.willAnswerYes();
    host.willCancelFile();
    EXPECT_EQ(save(longPath), 0);
    ASSERT_EQ(host.fileRequests().size(), 1U);
    EXPECT_EQ(host.fileRequests().front().fileName, CString());
}

TEST_F(TrialThatCannotBeSaved, ATitleOf255CharactersIsSuggestedAndALongerOneIsNot)
{
    for (const std::size_t length : {255U, 256U}) {
        const CString title{std::string(length, 't')};
        host.willAnswerYes();
        host.willCancelFile();
        EXPECT_EQ(save(folder.path(title + ".trl")), 0);
        EXPECT_EQ(host.fileRequests().back().fileName, length == 255 ? title : CString());
    }
}

TEST_F(TrialThatCannotBeSaved, TheDialogOpensOnTheKindOfFileThatWasUsedLast)
{
    for (const int index : {2, 1}) {
        host.willAnswerYes();
        host.willChooseFile(folder.path("chosen.trl"), index);
        EXPECT_EQ(save(path), 1);
        CMDTrialzk other; // all trials share what was used last
        CString given = path;
        host.clearRecord();
        host.willAnswerYes();
        host.willCancelFile();
        EXPECT_EQ(other.saveTrialData(given, nullptr, "", true), 0);
        ASSERT_EQ(host.fileRequests().size(), 1U);
        EXPECT_EQ(host.fileRequests().front().filterIndex, index);
    }
}

TEST_F(TrialThatCannotBeSaved, AFileInUseElsewhereKeepsItsContent)
{
    const CString used = put("a.trl", 2);
    CFile other;
    ASSERT_TRUE(other.Open(used, CFile::modeRead | CFile::shareExclusive));
    host.willAnswerNo(question(used, CFileException::sharingViolation));
    EXPECT_EQ(save(used), 0);
    other.Close();
    EXPECT_TRUE(sameBytes(folder.read("a.trl"), record(newest, filled(2))));
}

TEST_F(TrialThatCannotBeSaved, AFullDiskRaisesTheFileExceptionAfterThePathWasTaken)
{
    std::filesystem::create_symlink("/dev/full", folder.native("full.trl"));
    fill(trial, 1);
    try {
        save(folder.path("full.trl"));
        FAIL() << "saved to a full disk";
    } catch (const CFileException& exception) {
        EXPECT_EQ(exception.m_cause, CFileException::diskFull);
    }
    EXPECT_EQ(trial.m_strTrialFilePath, folder.path("full.trl"));
    host.expectNoMessages();
}

TEST_F(TrialThatCannotBeSaved, ASectionThatFailsIsToldTwiceAndLeavesAPartOfTheFile)
{
    fill(trial, 1);
    trial.m_pSpctmCCFace->getCCSpctmTrlData4Class(1)->m_aPlane[0] = {1.0}; // a plane for no channel
    EXPECT_EQ(save(folder.path("a.trl")), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Trial file format!!?"), CString("Save trail data error!")));
    EXPECT_EQ(trial.m_strTrialFilePath, folder.path("a.trl"));
    const std::vector<std::byte> part = folder.read("a.trl");
    const ByteBuilder whole = savedAs(folder.path("a.trl"), 1);
    EXPECT_GT(part.size(), header(newest).size());
    EXPECT_LT(part.size(), whole.size());
}

} // namespace

} // namespace megset::CMDTrial9FileB_test
