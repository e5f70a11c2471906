// SEEG information files: what is written, to which trials it goes, and files that are broken.

#include "tests/persistence/informationFiles.h"

#include "tests/kit/FailingAllocator.h"

#include <filesystem>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileCSeeg_test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The text for another tag is that of electrodes.
constexpr const char* otherTag = "The opened file is not electrode information file or corrupted!";

class SeegFile : public InformationFiles
{
protected:
    CMDTrialzk& trial() const { return *data.getCurrentTrialPt(); }
    void giveProbes(const std::vector<int>& seeds) const
    {
        for (const int seed : seeds)
            trial().m_aSeegProbe.addCopy(trialRecord::probe(seed));
        trial().m_nCurrentSeegProbe = trial().m_aSeegProbe.GetSize() - 1;
    }
};

// ---- writing

TEST_F(SeegFile, IsWrittenFieldByField)
{
    giveProbes({1, 2});
    EXPECT_TRUE(sameBytes(storedProbes(), seegFile({1, 2})));
    trial().m_aSeegProbe.InsertAt(1, nullptr);
    EXPECT_TRUE(sameBytes(storedProbes(), seegFile({1, -1, 2})));
    host.expectNoMessages();
}

TEST_F(SeegFile, WithoutProbesHoldsACountOfZero)
{
    EXPECT_TRUE(sameBytes(storedProbes(), seegFile({})));
}

TEST_F(SeegFile, WithoutATrialHoldsTagAndVersionAlone)
{
    CMEGDatazk empty;
    host.willChooseFile(path("e.seeg"));
    EXPECT_EQ(empty.saveSeegInfo(), 1);
    EXPECT_TRUE(sameBytes(filed.folder.read("e.seeg"), seegHeader()));
    EXPECT_TRUE(
        sameBytes(storedBytes([&](CArchive& ar) { EXPECT_EQ(empty.serializeSeegInfo(ar, 0), 0); }), seegHeader()));
    host.expectNoMessages();
}

TEST_F(SeegFile, OfATrialWithoutChannelsHoldsTagAndVersionAlone)
{
    giveProbes({1});
    trial()._cleanTrialChannels();
    EXPECT_TRUE(
        sameBytes(storedBytes([&](CArchive& ar) { EXPECT_EQ(data.serializeSeegInfo(ar, 0), 0); }), seegHeader()));
    host.expectNoMessages();
}

// ---- reading

TEST_F(SeegFile, ReplacesTheProbesOfTheCurrentTrial)
{
    giveProbes({7, 8, 9});
    ASSERT_EQ(loadProbes(seegFile({1, 2})), 1);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe1", "probe2"));
    EXPECT_EQ(*trial().m_aSeegProbe[1], trialRecord::probe(2));
    EXPECT_EQ(trial().m_nCurrentSeegProbe, 0);
    ASSERT_EQ(data.openTrial(1), 1);
    EXPECT_THAT(namesOf(trial()), IsEmpty());
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(SeegFile, ReplacesTheProbesOfAllTrials)
{
    giveProbes({7, 8, 9});
    ASSERT_EQ(loadProbes(seegFile({1, 2}), 1), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    ASSERT_EQ(data.saveAllTrials(), 1);
    for (int i = 0; i < 3; ++i) {
        const auto read = filed.readTrial(i);
        EXPECT_THAT(namesOf(*read), ElementsAre("probe1", "probe2")) << i;
        EXPECT_EQ(read->m_nCurrentSeegProbe, 0);
    }
}

TEST_F(SeegFile, WithoutProbesEmptiesTheListAndNoneIsCurrent)
{
    for (const int all : {0, 1}) {
        ASSERT_EQ(data.openTrial(0), 1);
        giveProbes({7});
        ASSERT_EQ(loadProbes(seegFile({}), all), 1);
        ASSERT_EQ(data.openTrial(0), 1);
        EXPECT_THAT(namesOf(trial()), IsEmpty());
        EXPECT_EQ(trial().m_nCurrentSeegProbe, -1);
    }
}

TEST_F(SeegFile, NullEntriesAreDroppedForOneTrialAndForAll)
{
    ASSERT_EQ(loadProbes(seegFile({-1, 1, -1, 2})), 1);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe1", "probe2"));
    ASSERT_EQ(loadProbes(seegFile({-1, 3, -1}), 1), 1);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe3"));
}

TEST_F(SeegFile, APresenceWordOfZeroEndsTheFileWithNothingChanged)
{
    giveProbes({7});
    ASSERT_EQ(loadProbes(seegHeader().i32(0)), 1);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe7"));
    ASSERT_EQ(loadProbes(seegHeader().i32(-5).i64(0)), 1); // any other value is presence
    EXPECT_THAT(namesOf(trial()), IsEmpty());
}

TEST_F(SeegFile, ProbesWithoutContactsComeBack)
{
    CSeegProbezk bare = trialRecord::probe(1);
    bare.m_aContacts.RemoveAll();
    trial().m_aSeegProbe.addCopy(bare);
    const std::vector<std::byte> bytes = storedProbes();
    ASSERT_EQ(loadProbes(bytes), 1);
    EXPECT_EQ(*trial().m_aSeegProbe[0], bare);
    EXPECT_EQ(trial().m_aSeegProbe[0]->getTotalContacts(), 0);
}

TEST_F(SeegFile, ATrialThatCannotBeOpenedIsPassedOver)
{
    std::filesystem::remove(filed.folder.native(FiledDataset::name(1)));
    host.willAnswerNo("Would like to find the file" + filed.path(1));
    ASSERT_EQ(loadProbes(seegFile({1}), 1), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed ")));
    EXPECT_EQ(data.getCurrentTrialIndx(), 2);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe1"));
    ASSERT_EQ(data.saveAllTrials(), 1);
    EXPECT_THAT(namesOf(*filed.readTrial(0)), ElementsAre("probe1"));
}

TEST_F(SeegFile, WithoutTrialsChangesNothing)
{
    CMEGDatazk empty;
    for (const int all : {0, 1}) {
        LoadingArchive archive(seegFile({1, 2}));
        EXPECT_EQ(empty.serializeSeegInfo(*archive, all), 1);
        EXPECT_EQ(archive->bytesLeft(), 0U);
    }
    EXPECT_THAT(host.calls(), IsEmpty());
}

// ---- the choice of a file

TEST_F(SeegFile, IsWrittenAndReadWhereTheUserChooses)
{
    giveProbes({1});
    host.willChooseFile(path("my"));
    ASSERT_EQ(data.saveSeegInfo(), 1);
    EXPECT_TRUE(sameBytes(filed.folder.read("my.seeg"), seegFile({1})));
    EXPECT_TRUE(host.fileRequests()[0].confirmOverwrite);
    ASSERT_EQ(data.openTrial(1), 1);
    host.clearRecord();
    host.willChooseFile(path("my.seeg"));
    ASSERT_EQ(data.openSeegInfo(0), 1);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe1"));
    EXPECT_THAT(host.calls(),
                ElementsAre("wait begin",
                            "open file [SEEG File(*.seeg)|*.seeg|All Files(*.*)|*.*||] -> " + path("my.seeg").toUtf8(),
                            "wait end"));
    EXPECT_EQ(host.fileRequests()[0].filter, CString("SEEG File(*.seeg)|*.seeg|All Files(*.*)|*.*||"));
    EXPECT_TRUE(host.fileRequests()[0].fileMustExist);
}

TEST_F(SeegFile, TheEndingIsAddedUnlessThePathHasItAnywhere)
{
    for (const char* name : {"a.seeg", "b.seeg.bak"}) {
        host.willChooseFile(path(name));
        EXPECT_EQ(data.saveSeegInfo(), 1);
        EXPECT_TRUE(filed.folder.has(name)) << name;
    }
}

TEST_F(SeegFile, RemembersTheKindOfFileOfItsOwnDialog)
{
    host.willChooseFile(write("a.seeg", seegFile({1})), 2);
    EXPECT_EQ(data.openSeegInfo(0), 1);
    host.willChooseFile(path("a.seeg"), 1);
    EXPECT_EQ(data.openSeegInfo(0), 1);
    EXPECT_EQ(host.fileRequests()[1].filterIndex, 2);
    host.willChooseFile(path("b.seeg"), 2);
    EXPECT_EQ(data.saveSeegInfo(), 1);
    EXPECT_EQ(host.fileRequests()[2].filterIndex, 1);
    host.willCancelFile();
    EXPECT_EQ(data.saveSeegInfo(), 0);
    EXPECT_EQ(host.fileRequests()[3].filterIndex, 2);
}

TEST_F(SeegFile, ACancelledChoiceOrAFileThatCannotBeOpenedGivesZero)
{
    host.willCancelFile();
    EXPECT_EQ(data.openSeegInfo(1), 0);
    host.willCancelFile();
    EXPECT_EQ(data.saveSeegInfo(), 0);
    host.expectNoMessages();
    host.willChooseFile(path("gone.seeg"));
    EXPECT_EQ(data.openSeegInfo(1), 0);
    host.willChooseFile(path("nowhere\\a.seeg"));
    EXPECT_EQ(data.saveSeegInfo(), 0);
    EXPECT_EQ(host.messages().size(), 2U);
}

TEST_F(SeegFile, GivesOneOnceItIsOpenWhateverBecameOfIt)
{
    host.willChooseFile(write("a.seeg", seegHeader(20171007)));
    EXPECT_EQ(data.openSeegInfo(0), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Wrong SEEG information file format!!?")));
}

// ---- broken files

TEST_F(SeegFile, AnotherTagIsRefusedWithTheTextOfElectrodes)
{
    const std::vector<std::byte> whole = seegFile({1}).bytes();
    const auto behindTag = std::span(whole).subspan(4 + 2 * 8);
    EXPECT_EQ(loadProbes(ByteBuilder().narrow("SEEGINFO").raw(behindTag)), 1);
    host.expectNoMessages();
    for (const char* tag : {"SeegInfo", "ELECTRODINFOFILE", "SEEGINFOX", ""}) {
        const ScriptedHost told;
        EXPECT_EQ(loadProbes(ByteBuilder().narrow(tag).raw(behindTag)), 0) << tag;
        EXPECT_THAT(told.messages(), ElementsAre(CString(otherTag)));
    }
}

TEST_F(SeegFile, OtherVersionsAreRefused)
{
    for (const std::int32_t number : {20171007, 20171005, 20170726, 0}) {
        const ScriptedHost told;
        EXPECT_EQ(loadProbes(seegHeader(number).i32(1).i64(0)), 0);
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong SEEG information file format!!?")));
    }
}

TEST_F(SeegFile, ACountBelowOneBringsNoProbesAndOneThatTheFileCannotHoldEndsAtItsEnd)
{
    for (const std::int64_t count : {std::int64_t{-1}, INT64_MIN}) {
        giveProbes({7});
        ASSERT_EQ(loadProbes(seegHeader().i32(1).i64(count)), 1);
        EXPECT_THAT(namesOf(trial()), IsEmpty());
    }
    giveProbes({7});
    EXPECT_EQ(loadProbes(seegHeader().i32(1).i64(INT64_MAX).zeros(64)), 0);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe7"));
}

TEST_F(SeegFile, ARecordThatCannotBeReadChangesNothing)
{
    giveProbes({7});
    ByteBuilder bytes = seegHeader().i32(1).i64(2).append(trialRecord::guarded(trialRecord::probe(1)));
    EXPECT_EQ(loadProbes(bytes.i32(1).wide("ANOTHERZK")), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("SEEGPROBEZK: The record is of another kind or corrupted!")));
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe7"));
}

TEST_F(SeegFile, EveryPrefixIsRefusedWithNothingChanged)
{
    giveProbes({7});
    expectEveryPrefixRefused(seegFile({1, 2}).bytes(), [&](CArchive& ar) { return data.serializeSeegInfo(ar, 0); });
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe7"));
}

TEST_F(SeegFile, SingleBitFlipsDoNoHarm)
{
    forEachBitFlip(seegFile({1, -1, 2}).bytes(), [&](std::span<const std::byte> bytes) {
        const ScriptedHost told;
        loadProbes(bytes);
        const std::vector<std::byte> once = storedProbes();
        ASSERT_EQ(loadProbes(once), 1);
        ASSERT_TRUE(sameBytes(storedProbes(), once));
    });
}

TEST_F(SeegFile, AnyAllocationThatFailsKeepsTheProbesOrBringsTheNewOnes)
{
    const std::vector<std::byte> bytes = seegFile({1, 2}).bytes();
    const std::int64_t failures = forEachAllocationFailure([&] {
        {
            const FailingAllocator none(0);
            trial().m_aSeegProbe.RemoveAll();
            giveProbes({7});
        }
        const int done = loadProbes(bytes);
        const std::vector<CString> expected =
            done ? std::vector<CString>{"probe1", "probe2"} : std::vector<CString>{"probe7"};
        EXPECT_EQ(namesOf(trial()), expected);
    });
    EXPECT_GE(failures, 2);
}

TEST_F(SeegFile, WithoutMemoryForACopyTheTrialKeepsItsProbes)
{
    giveProbes({7});
    const FailingAllocator third(3); // behind the two of the file
    EXPECT_EQ(loadProbes(seegFile({1, 2}), 1), 0);
    EXPECT_EQ(third.failures(), 1);
    ASSERT_EQ(data.getCurrentTrialIndx(), 0);
    EXPECT_THAT(namesOf(trial()), ElementsAre("probe7"));
}

} // namespace

} // namespace megset::CMEGData9FileCSeeg_test
