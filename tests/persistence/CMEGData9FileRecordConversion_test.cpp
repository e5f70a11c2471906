// An acquisition on disk: how it becomes an ordinary dataset beside the document, and what goes wrong on the way.

#include "tests/persistence/acquisitionFiles.h"

#include "tests/kit/FailingAllocator.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileRecordConversion_test {

namespace {

using namespace megset::acquisitionRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Acquisition = AcquisitionFiles;

TEST_F(Acquisition, BecomesADatasetBesideTheDocument)
{
    for (const std::int32_t number : versions) {
        ASSERT_EQ(open(parts(3, 1), number), 1);
        EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("ST1.trl"), written("ST2.trl")));
        EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
        EXPECT_EQ(dataset.getMDTrial(0), nullptr);
        ASSERT_NE(dataset.getMDTrial(1), nullptr);
        EXPECT_EQ(dataset.getMDTrial(2), nullptr);
        for (int i = 0; i < 3; ++i) {
            const CMDTrialzk* one = dataset.getTrialzk(i);
            ASSERT_NE(one, nullptr);
            EXPECT_EQ(one->m_strTrialName, CString::formatted("T%d", i));
            EXPECT_EQ(wave(*one->getChannel(1)), channelValues(i, 1, 4));
        }
    }
    EXPECT_THAT(target.names(), ElementsAre("ST0.trl", "ST1.trl", "ST2.trl"));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(Acquisition, KeepsThePathsOfTheRecordingAndLeavesItsFilesAsTheyAre)
{
    const std::vector<std::byte> before = recording.read("rec\\t1.trla");
    ASSERT_EQ(open(parts()), 1);
    const auto& recorded = dataset.m_aRecordTrialPath;
    EXPECT_THAT(std::vector<CString>(recorded.begin(), recorded.end()),
                ElementsAre(trialFile(0), trialFile(1), trialFile(2)));
    EXPECT_EQ(dataset.m_strRecordFolder, CString("D:\\rec\\"));
    EXPECT_TRUE(sameBytes(recording.read("rec\\t1.trla"), before));
    EXPECT_THAT(recording.names(), ElementsAre("rec"));
}

TEST_F(Acquisition, GivesTheDatasetDocumentFolderAndPath)
{
    const auto before = std::filesystem::current_path();
    ASSERT_EQ(open(parts()), 1);
    EXPECT_EQ(dataset.getDocument(), &document);
    EXPECT_EQ(dataset.m_strTrialFolder, target.path());
    EXPECT_EQ(dataset.m_strDatasetPath, recording.path("rec\\a.mega")); // of the file that was read
    EXPECT_EQ(dataset.getSessionName(), CString("S"));                  // of the file as well
    EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_F(Acquisition, CanBeSavedAsAnOrdinaryDatasetAndOpenedAgain)
{
    ASSERT_EQ(open(parts()), 1);
    const std::vector<std::byte> bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(dataset.serializezk(ar), 1); });
    CMEGDatazk again;
    again.setDocument(&document, false);
    LoadingArchive archive(bytes);
    ASSERT_EQ(again.serializezk(*archive), 1);
    ASSERT_NE(again.getTrialzk(2), nullptr);
    EXPECT_EQ(wave(*again.getMDTrial(2)->getChannel(0)), channelValues(2, 0, 4));
    host.expectNoMessages();
}

TEST_F(Acquisition, WithoutTrialsOpensNone)
{
    for (const int presence : {0, 1}) {
        Parts empty = parts(0, -1, 0);
        empty.trials.presence = presence;
        ASSERT_EQ(open(empty), 1);
        EXPECT_EQ(dataset.getTotalTrial(), 0);
    }
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_TRUE(target.names().empty());
}

TEST_F(Acquisition, WithoutSlotsConvertsNothing)
{
    Parts none = parts();
    none.trials.presence = 0;
    ASSERT_EQ(open(none), 1);
    EXPECT_TRUE(dataset.m_aTrialFilePath.IsEmpty());
    EXPECT_TRUE(target.names().empty());
    EXPECT_THAT(host.calls(), IsEmpty());
}

// ---- the index in the file

TEST_F(Acquisition, AnIndexOfMinusOneBecomesTheFirstTrial)
{
    ASSERT_EQ(open(parts(3, -1)), 1);
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 0);
    EXPECT_NE(dataset.getMDTrial(0), nullptr);
}

TEST_F(Acquisition, AnIndexOutOfRangeLeavesTheLastTrialCurrentAndNoneInMemory)
{
    for (const int index : {3, -2, INT32_MAX}) {
        ASSERT_EQ(open(parts(3, index)), 1);
        EXPECT_EQ(dataset.getCurrentTrialIndx(), 2);
        EXPECT_EQ(dataset.getCurrentTrialPt(), nullptr);
        EXPECT_EQ(paths().size(), 3U);
    }
    EXPECT_THAT(host.calls(), IsEmpty());
}

// ---- names

TEST_F(Acquisition, AnEmptyTrialNameBecomesTrialAndItsIndex)
{
    writeTrial(1, "");
    ASSERT_EQ(open(parts()), 1);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("STrial1.trl"), written("ST2.trl")));
    EXPECT_EQ(dataset.getTrialzk(1)->m_strTrialName, CString("Trial1"));
}

TEST_F(Acquisition, TrialsOfOneNameGetFilesOfTheirOwn)
{
    for (int i = 0; i < 3; ++i)
        writeTrial(i, "same");
    ASSERT_EQ(open(parts()), 1);
    EXPECT_THAT(paths(), ElementsAre(written("Ssame.trl"), written("Ssame_1.trl"), written("Ssame_2.trl")));
    EXPECT_EQ(wave(*dataset.getTrialzk(2)->getChannel(0)), channelValues(2, 0, 4));
    EXPECT_EQ(wave(*dataset.getTrialzk(0)->getChannel(0)), channelValues(0, 0, 4));
}

TEST_F(Acquisition, AnEmptySessionNameIsTheDatasetsFileName)
{
    Parts made = parts(1, 0, 1);
    made.trials.session = "";
    made.trials.fileName = "runmeg";
    ASSERT_EQ(open(made), 1);
    EXPECT_EQ(dataset.getSessionName(), CString("runmeg")); // which stays whole
    EXPECT_THAT(paths(), ElementsAre(written("runmegT0.trl")));
}

TEST_F(Acquisition, WithoutThatItIsTheDocumentsTitleWithoutLettersOfMegAtItsEnd)
{
    const std::pair<const char*, const char*> titles[] = {
        {"run.meg", "run"}, {"homme.meg", "ho"}, {"run 1", "run 1"}, {"G.meg", "G"}, {"gem", ""}};
    for (const auto& [title, session] : titles) {
        Parts made = parts(1, 0, 1);
        made.trials.session = "";
        document.SetTitle(title);
        ASSERT_EQ(open(made), 1);
        EXPECT_EQ(dataset.getSessionName(), CString(session));
        EXPECT_THAT(paths(), ElementsAre(target.path(CString(session) + "T0.trl")));
    }
}

// ---- samples that were changed

TEST_F(Acquisition, AnotherCountAndAnotherStepThanTheRecordingsAreTold)
{
    const auto messages = [&](std::int64_t samples, std::int64_t step) {
        host.clearRecord();
        Parts made = parts(1, 0, 1);
        CMEGRecordInfozk info;
        info.m_nRecTotalSample = samples;
        info.m_nResampleFactor = step;
        made.recordInfo = recordBytes(info);
        EXPECT_EQ(open(made), 1);
        return host.messages();
    };
    const CString told = "Sample has been changed: 5->4, Please re-sample and check the data";
    EXPECT_THAT(messages(5, 2), ElementsAre(told, told)); // by the conversion, and by the opening behind it
    EXPECT_THAT(messages(5, 1), IsEmpty());
    EXPECT_THAT(messages(4, 2), IsEmpty());
}

// ---- missing and moved files

TEST_F(Acquisition, MovedWithItsTrialsIsFoundBesideItsOwnFile)
{
    const TemporaryFolder moved;
    const std::vector<std::byte> bytes = record(newest, parts()).bytes();
    moved.write("a.mega", bytes);
    for (const char* name : {"t0.trla", "t1.trla", "t2.trla"})
        std::filesystem::rename(recording.native(CString("rec\\") + name), moved.native(name));
    ASSERT_EQ(dataset.openRecordMeX(moved.path("a.mega"), &document), 1);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("ST1.trl"), written("ST2.trl")));
    EXPECT_EQ(dataset.m_aRecordTrialPath[0], trialFile(0)); // as read
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(Acquisition, AMissingTrialIsAskedForAndNoMakesAShorterList)
{
    std::filesystem::remove(recording.native("rec\\t1.trla"));
    host.willAnswerNo("Find trial filet1.trla ?");
    ASSERT_EQ(open(parts()), 1);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("Open trial data failed "), CString("File path and trial error!")));
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("ST2.trl")));
    EXPECT_EQ(dataset.getTotalTrial(), 3);
    EXPECT_EQ(dataset.getMDTrial(1), nullptr);
}

TEST_F(Acquisition, AMissingTrialThatTheUserFindsIsConverted)
{
    const CString other = recording.path("other.trla");
    std::filesystem::rename(recording.native("rec\\t1.trla"), recording.native("other.trla"));
    host.willAnswerYes("Find trial filet1.trla ?");
    host.willChooseFile(other);
    ASSERT_EQ(open(parts()), 1);
    host.expectNoMessages();
    EXPECT_EQ(paths().size(), 3U);
    EXPECT_EQ(wave(*dataset.getTrialzk(1)->getChannel(0)), channelValues(1, 0, 4));
}

TEST_F(Acquisition, AMissingTrialWhoseChoiceIsCancelledIsMissing)
{
    std::filesystem::remove(recording.native("rec\\t2.trla"));
    host.willAnswerYes("Find trial filet2.trla ?");
    host.willCancelFile();
    ASSERT_EQ(open(parts()), 1);
    EXPECT_EQ(paths().size(), 2U);
}

TEST_F(Acquisition, AllTrialsMissingLeaveAnEmptyList)
{
    for (const char* name : {"rec\\t0.trla", "rec\\t1.trla", "rec\\t2.trla"}) {
        std::filesystem::remove(recording.native(name));
        host.willAnswerNo();
    }
    ASSERT_EQ(open(parts()), 1);
    EXPECT_TRUE(dataset.m_aTrialFilePath.IsEmpty());
    EXPECT_EQ(host.messages().size(), 4U);
}

TEST_F(Acquisition, TrialsWithoutAPathInTheFileAreNotAskedFor)
{
    ASSERT_EQ(open(parts(100'000, 0, 2)), 1);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("ST1.trl")));
    EXPECT_THAT(host.calls(), ElementsAre("message: File path and trial error!"));
}

TEST_F(Acquisition, PathsWithoutATrialAreNotRead)
{
    ASSERT_EQ(open(parts(2, 0, 3)), 1);
    EXPECT_THAT(target.names(), ElementsAre("ST0.trl", "ST1.trl"));
    EXPECT_EQ(dataset.m_aRecordTrialPath.GetSize(), 3);
    host.expectNoMessages();
}

// ---- trials that can't be read or written

TEST_F(Acquisition, ATrialThatCannotBeReadIsToldAndTheOthersAreConverted)
{
    recording.write("rec\\t0.trla", ByteBuilder().wide("MEGTRIALZK").bytes());
    ASSERT_EQ(open(parts()), 1);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("The opened file is not trial or corrupted!"), CString("Save trail data error!"),
                            CString("Open trial data failed "), CString("File path and trial error!")));
    EXPECT_THAT(paths(), ElementsAre(written("ST1.trl"), written("ST2.trl")));
}

TEST_F(Acquisition, ATrialWithoutChannelsEndsTheConversionAndWhatIsWrittenStaysInTheList)
{
    writeTrial(1, TrialParts());
    ASSERT_EQ(open(parts()), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Import recorded trial to data trail error!")));
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl")));
    EXPECT_THAT(target.names(), ElementsAre("ST0.trl"));
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
}

TEST_F(Acquisition, ATrialCutShortRaisesTheEndOfFileAndWhatIsWrittenStaysInTheList)
{
    const std::vector<std::byte> whole = recording.read("rec\\t2.trla");
    recording.write("rec\\t2.trla", std::span(whole).first(whole.size() - 1));
    EXPECT_THROW(open(parts()), CArchiveException);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("ST1.trl")));
    host.expectNoMessages();
}

TEST_F(Acquisition, AFullDiskRaisesTheFileExceptionAndWhatIsWrittenStaysInTheList)
{
    std::filesystem::create_symlink("/dev/full", target.native("ST1.trl"));
    EXPECT_THROW(open(parts()), CFileException);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl")));
}

TEST_F(Acquisition, ATrialThatCannotBeWrittenGetsNoPath)
{
    std::filesystem::create_directory(target.native("ST1.trl"));
    host.willAnswerNo();
    ASSERT_EQ(open(parts()), 1);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("ST2.trl")));
    EXPECT_TRUE(dataset.getUnsavedTrials().IsEmpty()); // it is still in the recording's file
    EXPECT_EQ(host.messages().back(), CString("File path and trial error!"));
}

TEST_F(Acquisition, ATrialThatIsWrittenWhereTheUserPointsHasThatPath)
{
    std::filesystem::create_directory(target.native("ST1.trl"));
    host.willAnswerYes();
    host.willChooseFile(target.path("other.trl"));
    ASSERT_EQ(open(parts()), 1);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("other.trl"), written("ST2.trl")));
}

TEST_F(Acquisition, AnyAllocationThatFailsLosesNothingOfTheRecording)
{
    const CString path = writeDataset(parts());
    const std::vector<std::byte> before = recording.read("rec\\t1.trla");
    const std::int64_t failures = forEachAllocationFailure([&] {
        const ScriptedHost here;
        CMEGDatazk one;
        one.openRecordMeX(path, &document);
        const FailingAllocator none(0);
        const ScriptedHost again;
        ASSERT_EQ(one.openRecordMeX(path, &document), 1);
        ASSERT_NE(one.getTrialzk(2), nullptr);
        ASSERT_EQ(wave(*one.getMDTrial(2)->getChannel(0)), channelValues(2, 0, 4));
    });
    EXPECT_GT(failures, 10);
    EXPECT_TRUE(sameBytes(recording.read("rec\\t1.trla"), before));
}

// ---- without a document

TEST_F(Acquisition, NeedsAPathAndADocumentWithAPath)
{
    const CString path = writeDataset(parts());
    CDocument unnamed;
    EXPECT_EQ(dataset.openRecordMeX("", &document), 0);
    EXPECT_EQ(dataset.openRecordMeX(path, nullptr), 0);
    EXPECT_EQ(dataset.openRecordMeX(path, &unnamed), 0);
    EXPECT_EQ(dataset.getDocument(), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(Acquisition, AFileThatCannotBeOpenedGivesZeroSilentlyWithTheDocumentTaken)
{
    EXPECT_EQ(dataset.openRecordMeX(recording.path("gone.mega"), &document), 0);
    EXPECT_EQ(dataset.getDocument(), &document);
    EXPECT_EQ(dataset.m_strDatasetFileName, CString("session"));
    EXPECT_EQ(dataset.getSessionName(), CString("session"));
    EXPECT_EQ(dataset.m_strTrialFolder, target.path());
    EXPECT_EQ(dataset.m_strDatasetPath, target.path("session"));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(Acquisition, ADocumentWhosePathCannotBeSplitGivesZeroSilently)
{
    document.SetPathName(target.path(CString(u'x', 300)));
    EXPECT_EQ(open(parts()), 0);
    EXPECT_EQ(dataset.getTotalTrial(), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(Acquisition, AFileThatIsNoneGivesWhatTheReaderGives)
{
    EXPECT_EQ(dataset.openRecordMeX(recording.write("b.mega", ByteBuilder().wide("MEGDATASETZK").bytes()), &document),
              0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not MEG acquisition file or corrupted!")));
}

// ---- the choice of a file

TEST_F(Acquisition, IsReadForNoDocumentIntoTheFolderThatTheDatasetHas)
{
    dataset.m_strTrialFolder = target.path();
    const CString path = writeDataset(parts());
    host.willChooseFile(path);
    EXPECT_EQ(dataset.openRecordMeStd(), 1);
    EXPECT_THAT(paths(), ElementsAre(written("ST0.trl"), written("ST1.trl"), written("ST2.trl")));
    EXPECT_EQ(dataset.getDocument(), nullptr);
    EXPECT_NE(dataset.getMDTrial(0), nullptr);
    EXPECT_THAT(host.calls(),
                ElementsAre("wait begin",
                            "open file [MEG Acquired (*.mega)|*.mega|All Files(*.*)|*.*||] -> " + path.toUtf8(),
                            "wait end"));
    EXPECT_TRUE(host.fileRequests()[0].fileMustExist);
    EXPECT_TRUE(host.fileRequests()[0].pathMustExist);
    EXPECT_EQ(host.fileRequests()[0].filter, CString("MEG Acquired (*.mega)|*.mega|All Files(*.*)|*.*||"));
}

TEST_F(Acquisition, WithoutADocumentAnEmptySessionNameStaysEmpty)
{
    dataset.m_strTrialFolder = target.path();
    Parts made = parts(1, 0, 1);
    made.trials.session = "";
    host.willChooseFile(writeDataset(made));
    EXPECT_EQ(dataset.openRecordMeStd(), 1);
    EXPECT_THAT(paths(), ElementsAre(written("T0.trl")));
}

TEST_F(Acquisition, AChosenFileThatIsNoneGivesOneAllTheSame)
{
    host.willChooseFile(recording.write("b.mega", header(20200728).bytes()));
    EXPECT_EQ(dataset.openRecordMeStd(), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Wrong MEG acquisition file format!!?")));
}

TEST_F(Acquisition, TheKindOfFileIsRememberedUntilTheNextChoice)
{
    const CString path = recording.write("b.mega", header(20200728).bytes());
    for (const int index : {2, 1}) {
        host.willChooseFile(path, index);
        EXPECT_EQ(dataset.openRecordMeStd(), 1);
        host.willCancelFile();
        EXPECT_EQ(dataset.openRecordMeStd(), 0);
        EXPECT_EQ(host.fileRequests().back().filterIndex, index);
    }
}

TEST_F(Acquisition, ACancelledChoiceOrAFileThatCannotBeOpenedGivesZero)
{
    host.willCancelFile();
    EXPECT_EQ(dataset.openRecordMeStd(), 0);
    host.expectNoMessages();
    host.willChooseFile(recording.path("gone.mega"));
    EXPECT_EQ(dataset.openRecordMeStd(), 0);
    EXPECT_EQ(host.messages().size(), 1U);
    EXPECT_EQ(host.waitDepth(), 0);
}

// ---- storing

// Nothing in the library stores so; what it would do is the same conversion.
TEST_F(Acquisition, StoringConvertsTheTrialsAsWell)
{
    ASSERT_EQ(open(parts()), 1);
    for (const std::string& name : target.names())
        std::filesystem::remove(target.native(CString(name)));
    dataset.m_ppTrial.set(0, nullptr);
    {
        CFile file(recording.path("rec\\b.mega"), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        EXPECT_EQ(dataset.serializeRecordMe(archive, &document), 1);
    }
    EXPECT_THAT(target.names(), ElementsAre("ST0.trl", "ST1.trl", "ST2.trl"));
    EXPECT_EQ(paths().size(), 3U);
    CMEGDatazk again;
    ASSERT_EQ(again.openRecordMeX(recording.path("rec\\b.mega"), &document), 1);
    EXPECT_EQ(again.m_strRecordFolder, CString("D:\\rec\\"));
    EXPECT_EQ(again.m_aRecordTrialPath, dataset.m_aRecordTrialPath);
    host.expectNoMessages();
}

TEST_F(Acquisition, StoringKeepsATrialInMemoryWhoseRecordingIsGone)
{
    ASSERT_EQ(open(parts()), 1);
    CMDTrialzk* const edited = dataset.getTrialzk(1);
    ASSERT_NE(edited, nullptr);
    std::filesystem::remove(recording.native("rec\\t1.trla"));
    host.willAnswerNo("Find trial filet1.trla ?");
    storedBytes([&](CArchive& ar) { EXPECT_EQ(dataset.serializeRecordMe(ar, &document), 1); });
    ASSERT_EQ(dataset.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(dataset.getUnsavedTrials().GetAt(0), edited);
}

TEST_F(Acquisition, StoringKeepsATrialInMemoryThatCannotBeWritten)
{
    ASSERT_EQ(open(parts()), 1);
    CMDTrialzk* const edited = dataset.getTrialzk(1);
    ASSERT_NE(edited, nullptr);
    std::filesystem::remove(target.native("ST1.trl"));
    std::filesystem::create_directory(target.native("ST1.trl"));
    host.willAnswerNo();
    storedBytes([&](CArchive& ar) { EXPECT_EQ(dataset.serializeRecordMe(ar, &document), 1); });
    ASSERT_EQ(dataset.getUnsavedTrials().GetSize(), 1);
    EXPECT_EQ(dataset.getUnsavedTrials().GetAt(0), edited);
}

} // namespace

} // namespace megset::CMEGData9FileRecordConversion_test
