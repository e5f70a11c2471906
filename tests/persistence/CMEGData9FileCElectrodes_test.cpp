// Electrode files: what is written, to which channels it goes, and files that are broken.

#include "tests/persistence/informationFiles.h"

#include "tests/kit/FailingAllocator.h"

#include <filesystem>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileCElectrodes_test {

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* otherTag = "The opened file is not electrode information file or corrupted!";

CString mismatch(int channels, int inFile)
{
    return CString::formatted("Channel number does not match: %d->%d ! Continue?", channels, inFile);
}

class ElectrodeFile : public InformationFiles
{
protected:
    // One entry for each channel; the second has none.
    static ByteBuilder fourEntries()
    {
        return electrodeFile({electrodeEntry(302, 1), noElectrode(), electrodeEntry(303, 3), electrodeEntry(350, 4)});
    }
};

// ---- writing

TEST_F(ElectrodeFile, IsWrittenFieldByField)
{
    makeElectrode(channel(0), 302, 1);
    makeElectrode(channel(2), 303, 3);
    makeElectrode(channel(3), 350, 4);
    EXPECT_TRUE(sameBytes(storedElectrodes(), fourEntries()));
    EXPECT_TRUE(sameBytes(storedElectrodes(), fourEntries()));
    host.expectNoMessages();
}

TEST_F(ElectrodeFile, HasNoEntryForChannelsThatAreNotEegOrHaveNoElectrode)
{
    makeElectrode(channel(0), 302, 1);
    channel(0).m_nChannelType = 101; // an electrode on a MEG channel
    channel(1).m_nChannelType = 302; // no electrode
    channel(2)._initGeomHw(4);       // another geometry
    channel(2).m_nChannelType = 302;
    data.getCurrentTrialPt()->m_ppChannel.set(3, nullptr); // no channel at all
    EXPECT_TRUE(
        sameBytes(storedElectrodes(), electrodeFile({noElectrode(), noElectrode(), noElectrode(), noElectrode()})));
}

TEST_F(ElectrodeFile, OpensTheCurrentTrialToBeWritten)
{
    makeElectrode(channel(0), 302, 1);
    ASSERT_EQ(data.saveAllTrials(), 1);
    ASSERT_EQ(data.getMDTrial(0), nullptr);
    EXPECT_TRUE(sameBytes(storedElectrodes(),
                          electrodeFile({electrodeEntry(302, 1), noElectrode(), noElectrode(), noElectrode()})));
    EXPECT_NE(data.getMDTrial(0), nullptr);
}

TEST_F(ElectrodeFile, WithoutATrialHoldsTagAndVersionAlone)
{
    CMEGDatazk empty;
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { EXPECT_EQ(empty.serializeElectrodeInfo(ar, false), 0); }),
                          electrodeHeader()));
    host.willChooseFile(path("e.epos"));
    EXPECT_EQ(empty.saveElectrodesInfo(), 1);
    EXPECT_TRUE(sameBytes(filed.folder.read("e.epos"), electrodeHeader()));
    host.expectNoMessages();
}

TEST_F(ElectrodeFile, OfATrialWithoutChannelsHoldsTagAndVersionAlone)
{
    data.getCurrentTrialPt()->_cleanTrialChannels();
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { EXPECT_EQ(data.serializeElectrodeInfo(ar, false), 0); }),
                          electrodeHeader()));
    host.expectNoMessages();
}

// ---- reading

TEST_F(ElectrodeFile, GivesTheCurrentTrialElectrodesAndTypes)
{
    makeElectrode(channel(1), 310, 9);
    ASSERT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_THAT(labels(), ElementsAre("E1", "E9", "E3", "E4")); // no entry leaves its channel alone
    EXPECT_EQ(channel(0).m_nChannelType, 302);
    EXPECT_EQ(channel(1).m_nChannelType, 310);
    EXPECT_EQ(channel(2).m_nChannelType, 303);
    EXPECT_EQ(channel(3).m_nChannelType, 350);
    EXPECT_EQ(*channel(3).getEegElectrode(0), electrode(4));
    ASSERT_EQ(data.openTrial(1), 1);
    EXPECT_THAT(labels(), Each(CString()));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ElectrodeFile, CopiesIntoAnElectrodeThatIsThere)
{
    makeElectrode(channel(0), 302, 9);
    const CGeomzk* const own = channel(0).m_pGeomHw.get();
    ASSERT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_EQ(channel(0).m_pGeomHw.get(), own);
    EXPECT_EQ(labelOf(channel(0)), CString("E1"));
}

TEST_F(ElectrodeFile, AChannelOfAnotherGeometryGivesThatUp)
{
    channel(0)._initGeomHw(1);
    channel(0).m_nChannelType = 101;
    channel(0).m_nMegChnlNumBal = 1;
    channel(0).m_pMegBalInf = std::make_unique<MEG_BalInfo[]>(1);
    ASSERT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_EQ(channel(0).m_nGeomType, 2);
    EXPECT_EQ(channel(0).m_nChannelType, 302);
    EXPECT_EQ(channel(0).m_pMegBalInf, nullptr);
    EXPECT_EQ(labelOf(channel(0)), CString("E1"));
}

TEST_F(ElectrodeFile, GivesAllTrialsElectrodesAndSavesThem)
{
    ASSERT_EQ(loadElectrodes(fourEntries(), true), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    ASSERT_EQ(data.saveAllTrials(), 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_THAT(labelsInFile(i), ElementsAre("E1", "", "E3", "E4")) << i;
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ElectrodeFile, ReadsBackWhatItWrites)
{
    ASSERT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_TRUE(sameBytes(storedElectrodes(), fourEntries()));
}

TEST_F(ElectrodeFile, APlaceWithoutAChannelIsPassedOver)
{
    data.getCurrentTrialPt()->m_ppChannel.set(0, nullptr);
    ASSERT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_EQ(data.getCurrentTrialPt()->getChannel(0), nullptr);
    EXPECT_EQ(labelOf(channel(2)), CString("E3"));
}

// ---- another number of channels

TEST_F(ElectrodeFile, AnotherNumberOfChannelsIsAskedForAndNoChangesNothing)
{
    host.willAnswerNo(mismatch(4, 1));
    EXPECT_EQ(loadElectrodes(electrodeFile({electrodeEntry(302, 1)})), 0);
    EXPECT_THAT(labels(), Each(CString()));
}

TEST_F(ElectrodeFile, OfMoreChannelsThanTheTrialGivesItTheFirstEntriesAfterAYes)
{
    std::vector<ByteBuilder> entries;
    for (int i = 0; i < 64; ++i)
        entries.push_back(electrodeEntry(302, i));
    FiledDataset other(1, 32, 2);
    ASSERT_EQ(other.data.openTrial(0), 1);
    host.willAnswerYes(mismatch(32, 64));
    LoadingArchive archive(electrodeFile(entries));
    ASSERT_EQ(other.data.serializeElectrodeInfo(*archive, false), 1);
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(labelOf(*other.data.getCurrentTrialPt()->getChannel(i)), CString::formatted("E%d", i));
}

TEST_F(ElectrodeFile, OfFewerChannelsThanTheTrialLeavesTheOthersAlone)
{
    host.willAnswerYes(mismatch(4, 2));
    ASSERT_EQ(loadElectrodes(electrodeFile({electrodeEntry(302, 1), electrodeEntry(302, 2)})), 1);
    EXPECT_THAT(labels(), ElementsAre("E1", "E2", "", ""));
}

TEST_F(ElectrodeFile, TheNumberOfChannelsIsAskedForOnce)
{
    host.willAnswerYes(mismatch(4, 1));
    ASSERT_EQ(loadElectrodes(electrodeFile({electrodeEntry(302, 1)}), true), 1);
    EXPECT_EQ(host.questions().size(), 1U);
    ASSERT_EQ(data.saveAllTrials(), 1);
    EXPECT_THAT(labelsInFile(2), ElementsAre("E1", "", "", ""));
}

// Whether the number fits is seen on the first trial alone.
TEST_F(ElectrodeFile, ALaterTrialOfAnotherNumberIsNotAskedFor)
{
    filed.writeTrial(1, *makeTrial(1, 2, 2));
    ASSERT_EQ(loadElectrodes(fourEntries(), true), 1);
    ASSERT_EQ(data.saveAllTrials(), 1);
    EXPECT_THAT(labelsInFile(1), ElementsAre("E1", ""));
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ElectrodeFile, TrialsWithoutChannelsOrFilesArePassedOver)
{
    filed.writeTrial(0, *makeTrial(0, 0, 0));
    data.m_ppTrial.set(0, nullptr);
    std::filesystem::remove(filed.folder.native(FiledDataset::name(1)));
    host.willAnswerNo("Would like to find the file" + filed.path(1));
    host.willAnswerNo(mismatch(4, 1)); // on the third trial
    EXPECT_EQ(loadElectrodes(electrodeFile({electrodeEntry(302, 1)}), true), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed ")));
}

TEST_F(ElectrodeFile, IsNotComparedWithATrialInMemoryThatHasNoChannels)
{
    data.getCurrentTrialPt()->_cleanTrialChannels();
    EXPECT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ElectrodeFile, WithoutACurrentTrialChangesNothing)
{
    data.m_nCurrentTrial = std::numeric_limits<int>::max();
    EXPECT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ElectrodeFile, WithoutTrialsChangesNothing)
{
    CMEGDatazk empty;
    for (const bool all : {false, true}) {
        LoadingArchive archive(fourEntries());
        EXPECT_EQ(empty.serializeElectrodeInfo(*archive, all), 1);
        EXPECT_EQ(archive->bytesLeft(), 0U);
    }
    EXPECT_THAT(host.calls(), IsEmpty());
}

// ---- the choice of a file

TEST_F(ElectrodeFile, IsWrittenAndReadWhereTheUserChooses)
{
    makeElectrode(channel(0), 302, 1);
    host.willChooseFile(path("my"));
    ASSERT_EQ(data.saveElectrodesInfo(), 1);
    const auto whole = electrodeFile({electrodeEntry(302, 1), noElectrode(), noElectrode(), noElectrode()});
    EXPECT_TRUE(sameBytes(filed.folder.read("my.epos"), whole));
    ASSERT_EQ(data.openTrial(1), 1);
    host.clearRecord();
    host.willChooseFile(path("my.epos"));
    ASSERT_EQ(data.openElectrodeInfo(false), 1);
    EXPECT_THAT(labels(), ElementsAre("E1", "", "", ""));
    EXPECT_THAT(host.calls(), ElementsAre("wait begin",
                                          "open file [Electrode File(*.epos)|*.epos|All Files(*.*)|*.*||] -> " +
                                              path("my.epos").toUtf8(),
                                          "wait end"));
    EXPECT_TRUE(host.fileRequests()[0].fileMustExist);
    EXPECT_TRUE(host.fileRequests()[0].pathMustExist);
    EXPECT_EQ(host.fileRequests()[0].filter, CString("Electrode File(*.epos)|*.epos|All Files(*.*)|*.*||"));
}

TEST_F(ElectrodeFile, TheEndingIsAddedUnlessThePathHasItAnywhere)
{
    filed.folder.makeFolder("old.epos.d");
    for (const char* name : {"a.epos", "b.epos.bak", "old.epos.d\\c"}) {
        host.willChooseFile(path(name));
        EXPECT_EQ(data.saveElectrodesInfo(), 1);
        EXPECT_TRUE(filed.folder.has(name)) << name;
    }
    host.willChooseFile(path("d.EPOS"));
    EXPECT_EQ(data.saveElectrodesInfo(), 1);
    EXPECT_TRUE(filed.folder.has("d.EPOS.epos"));
    EXPECT_TRUE(host.fileRequests()[0].confirmOverwrite);
    EXPECT_FALSE(host.fileRequests()[0].open);
}

TEST_F(ElectrodeFile, ACancelledChoiceOrAFileThatCannotBeOpenedGivesZero)
{
    host.willCancelFile();
    EXPECT_EQ(data.openElectrodeInfo(true), 0);
    host.willCancelFile();
    EXPECT_EQ(data.saveElectrodesInfo(), 0);
    host.expectNoMessages();
    host.willChooseFile(path("gone.epos"));
    EXPECT_EQ(data.openElectrodeInfo(true), 0);
    host.willChooseFile(path("nowhere\\a.epos"));
    EXPECT_EQ(data.saveElectrodesInfo(), 0);
    EXPECT_EQ(host.messages().size(), 2U);
}

TEST_F(ElectrodeFile, GivesOneOnceItIsOpenWhateverBecameOfIt)
{
    host.willChooseFile(write("a.epos", ByteBuilder().wide("SEEGINFO")));
    EXPECT_EQ(data.openElectrodeInfo(false), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString(otherTag)));
}

TEST_F(ElectrodeFile, RemembersTheKindOfFileOfItsOwnDialog)
{
    host.willChooseFile(write("a.epos", fourEntries()), 2);
    EXPECT_EQ(data.openElectrodeInfo(false), 1);
    host.willChooseFile(path("a.epos"), 1);
    EXPECT_EQ(data.openElectrodeInfo(false), 1);
    EXPECT_EQ(host.fileRequests()[1].filterIndex, 2);
    host.willCancelFile();
    EXPECT_EQ(data.saveElectrodesInfo(), 0);
    EXPECT_EQ(host.fileRequests()[2].filterIndex, 1);
}

// ---- broken files

TEST_F(ElectrodeFile, AnotherTagIsRefused)
{
    const std::vector<std::byte> whole = fourEntries().bytes();
    const auto behindTag = std::span(whole).subspan(4 + 2 * 16);
    EXPECT_EQ(loadElectrodes(ByteBuilder().narrow("ELECTRODINFOFILE").raw(behindTag)), 1);
    host.expectNoMessages();
    for (const char* tag : {"ElectrodInfoFile", "ELECTRODEINFOFILE", "SEEGINFO", ""}) {
        const ScriptedHost told;
        EXPECT_EQ(loadElectrodes(ByteBuilder().narrow(tag).raw(behindTag)), 0) << tag;
        EXPECT_THAT(told.messages(), ElementsAre(CString(otherTag)));
    }
}

TEST_F(ElectrodeFile, OtherVersionsAreRefused)
{
    for (const std::int32_t number : {20170727, 20170725, 20171006, 0}) {
        const ScriptedHost told;
        EXPECT_EQ(loadElectrodes(electrodeHeader(number).i32(4).zeros(16)), 0);
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong electrode information file format!!?")));
    }
}

TEST_F(ElectrodeFile, CountsBelowOneOrThatTheFileCannotHoldAreRefusedWithoutAMessage)
{
    for (const int count : {0, -1, INT32_MIN, INT32_MAX, 1 << 24}) {
        const std::vector<std::byte> bytes = electrodeHeader().i32(count).zeros(64).bytes();
        const FailingAllocator counting(0);
        EXPECT_EQ(loadElectrodes(bytes), 0) << count;
        EXPECT_EQ(counting.calls(), 0);
    }
    EXPECT_THAT(host.calls(), IsEmpty());
}

// An entry takes more memory than bytes of the file: what counts is the memory.
TEST_F(ElectrodeFile, EntriesThatTakeMoreMemoryThanSuitsALargeFileAreRefused)
{
    const std::vector<std::byte> bytes = electrodeHeader().i32(2'000'000).zeros(std::size_t{8} << 20U).bytes();
    const FailingAllocator counting(0);
    EXPECT_EQ(loadElectrodes(bytes), 0);
    EXPECT_EQ(counting.calls(), 0);
}

TEST_F(ElectrodeFile, ARecordThatCannotBeReadChangesNothing)
{
    EXPECT_EQ(loadElectrodes(electrodeFile({electrodeEntry(302, 1), ByteBuilder().i32(1).i32(302).wide("ANOTHERZK")})),
              0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("EEGELECTRODEZK: The record is of another kind or corrupted!")));
    EXPECT_THAT(labels(), Each(CString()));
}

TEST_F(ElectrodeFile, EveryPrefixIsRefusedWithNothingChanged)
{
    expectEveryPrefixRefused(fourEntries().bytes(),
                             [&](CArchive& ar) { return data.serializeElectrodeInfo(ar, false); });
    EXPECT_THAT(labels(), Each(CString()));
    host.expectNoMessages();
}

TEST_F(ElectrodeFile, SingleBitFlipsDoNoHarm)
{
    forEachBitFlip(fourEntries().bytes(), [&](std::span<const std::byte> bytes) {
        ScriptedHost asked;
        asked.willAnswerYes(); // another number of channels
        loadElectrodes(bytes);
        if (asked.questions().empty())
            AfxMessageBox("not asked", MB_YESNO); // uses up the answer
        const std::vector<std::byte> once = storedElectrodes();
        ASSERT_EQ(loadElectrodes(once), 1);
        ASSERT_TRUE(sameBytes(storedElectrodes(), once));
    });
}

TEST_F(ElectrodeFile, AnyAllocationThatFailsLeavesAUsableTrial)
{
    const std::vector<std::byte> bytes = fourEntries().bytes();
    channel(0)._initGeomHw(1);
    const std::int64_t failures = forEachAllocationFailure([&] {
        const ScriptedHost told;
        loadElectrodes(bytes);
        const FailingAllocator none(0);
        ASSERT_EQ(loadElectrodes(bytes), 1);
        ASSERT_TRUE(sameBytes(storedElectrodes(), bytes));
        channel(0)._cleanGeomHw();
    });
    EXPECT_GE(failures, 5);
}

TEST_F(ElectrodeFile, WithoutMemoryForTheChannelsElectrodeIsToldAndTheOthersGetTheirs)
{
    const FailingAllocator fifth(5); // behind the entries and their three electrodes
    EXPECT_EQ(loadElectrodes(fourEntries()), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Make electrode failed")));
    EXPECT_THAT(labels(), ElementsAre("", "", "E3", "E4"));
    EXPECT_EQ(fifth.failures(), 1);
}

} // namespace

} // namespace megset::CMEGData9FileCElectrodes_test
