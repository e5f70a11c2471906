// The trial's file of an acquisition, read from bytes that were put together field by field, whole and broken.

#include "tests/persistence/acquisitionRecord.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/brokenFiles.h"

#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial9FileBRecord_test {

namespace {

using namespace megset::acquisitionRecord;
using ::testing::ElementsAre;

constexpr const char* otherTag = "The opened file is not trial or corrupted!";

std::vector<std::byte> storedAcq(CMDTrialzk& trial)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(trial.serializeAcq(ar), 1); });
}

int loadAcq(CMDTrialzk& trial, std::span<const std::byte> bytes)
{
    return tryLoading(bytes, [&](CArchive& ar) { return trial.serializeAcq(ar); });
}

int loadAcq(CMDTrialzk& trial, const ByteBuilder& bytes)
{
    return loadAcq(trial, std::span(bytes.bytes()));
}

class AcquiredTrial : public ::testing::Test
{
protected:
    ScriptedHost host;
    CMDTrialzk read;
};

TEST_F(AcquiredTrial, IsWrittenFieldByField)
{
    for (const int seed : {1, 2}) {
        CMDTrialzk filled;
        trialRecord::fill(filled, seed);
        EXPECT_TRUE(sameBytes(storedAcq(filled), trial(filledTrial(seed))));
        EXPECT_TRUE(sameBytes(storedAcq(filled), trial(filledTrial(seed)))); // and the same once more
    }
    EXPECT_TRUE(sameBytes(storedAcq(read), trial(TrialParts())));
    host.expectNoMessages();
}

// What an analysis adds is not in the file, and a read leaves it.
TEST_F(AcquiredTrial, BringsItsSectionsAndLeavesTheResultsOfAnalyses)
{
    trialRecord::fill(read, 2);
    ASSERT_EQ(loadAcq(read, trial(filledTrial(1))), 1);
    trialRecord::Parts expected = trialRecord::filled(2);
    const trialRecord::Parts file = trialRecord::filled(1);
    for (const auto part : {&TrialParts::basic, &TrialParts::channels, &TrialParts::marks, &TrialParts::head,
                            &TrialParts::montageFlags, &TrialParts::commonReference, &TrialParts::individualReferences,
                            &TrialParts::probes, &TrialParts::resampling})
        expected.*part = file.*part;
    expected.presenceWord = file.presenceWord;
    EXPECT_TRUE(sameBytes(trialRecord::stored(read), trialRecord::record(trialRecord::newest, expected)));
    host.expectNoMessages();
}

TEST_F(AcquiredTrial, ThePresenceWordOfTheCommonReferenceIsTheReservedField)
{
    read.m_nTrialReservedB = -3;
    read.m_pMontageCr = std::make_unique<CMtgUnit4CommonRefzk>(trialRecord::commonReference(1));
    TrialParts parts;
    parts.basic = ByteBuilder().i64(0).i32(1).i32(0).zeros(16).i32(-3).i32(0).wide("").wide("").zeros(16 + 11 * 8);
    parts.presenceWord = -3;
    parts.commonReference = ByteBuilder().raw(trialRecord::bytesOf(trialRecord::commonReference(1)));
    EXPECT_TRUE(sameBytes(storedAcq(read), trial(parts)));
    CMDTrialzk back;
    ASSERT_EQ(loadAcq(back, trial(parts)), 1);
    EXPECT_NE(back.m_pMontageCr, nullptr);
}

TEST_F(AcquiredTrial, EmptySlotsAndTrialsWithoutChannelsComeBack)
{
    for (const ByteBuilder& channels : {ByteBuilder().i32(4).i32(7).i32(0), ByteBuilder().i32(0).i32(2).i32(1).zeros(8),
                                        ByteBuilder(none(2)).i32(1)}) {
        TrialParts parts;
        parts.channels = channels;
        ASSERT_EQ(loadAcq(read, trial(parts)), 1);
        EXPECT_TRUE(sameBytes(storedAcq(read), trial(parts)));
    }
}

TEST_F(AcquiredTrial, ATagInTheNarrowFormIsTheSameAndOneInAnotherCaseIsNot)
{
    const std::vector<std::byte> wide = trial(filledTrial(1)).bytes();
    const auto behindTag = std::span(wide).subspan(4 + 2 * 12);
    EXPECT_EQ(loadAcq(read, ByteBuilder().narrow("MEACQTRIALZK").raw(behindTag)), 1);
    EXPECT_TRUE(sameBytes(storedAcq(read), wide));
    host.expectNoMessages();
    for (const char* tag : {"MeAcqTrialZk", "MEGTRIALZK", "MEACQTRIALZ", "MEACQTRIALZKX", ""}) {
        const ScriptedHost told;
        EXPECT_EQ(loadAcq(read, ByteBuilder().narrow(tag).raw(behindTag)), 0) << tag;
        EXPECT_THAT(told.messages(), ElementsAre(CString(otherTag)));
    }
}

TEST_F(AcquiredTrial, OtherVersionsAreRefused)
{
    for (const std::int32_t number : {20200728, 20200726, 20220418, 20190730, 0, -1}) {
        const ScriptedHost told;
        EXPECT_EQ(loadAcq(read, trialHeader(number).append(TrialParts().basic)), 0) << number;
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong MeAcqTrial file format!!?")));
    }
    EXPECT_TRUE(sameBytes(storedAcq(read), trial(TrialParts())));
}

// ---- broken files

TrialParts smallTrial()
{
    TrialParts parts = filledTrial(1);
    parts.channels = ByteBuilder().i32(0).i32(2).i32(1).i32(0).i32(1).append(plainChannel({1.0, 2.0}));
    return parts;
}

TEST_F(AcquiredTrial, EveryPrefixIsRefused)
{
    expectEveryPrefixRefused(trial(smallTrial()).bytes(), [](CArchive& ar) { return CMDTrialzk().serializeAcq(ar); });
}

TEST_F(AcquiredTrial, SingleBitFlipsDoNoHarm)
{
    forEachBitFlip(trial(smallTrial()).bytes(), [](std::span<const std::byte> bytes) {
        CMDTrialzk one;
        if (loadAcq(one, bytes) != 1)
            return;
        const std::vector<std::byte> again = storedAcq(one);
        CMDTrialzk copy;
        ASSERT_EQ(loadAcq(copy, again), 1);
        ASSERT_TRUE(sameBytes(storedAcq(copy), again));
    });
}

TEST_F(AcquiredTrial, ImpossibleChannelCountsAreRefused)
{
    for (const int count : {-1, INT32_MAX, INT32_MIN, 1 << 24}) {
        const ScriptedHost told;
        TrialParts parts;
        parts.channels = ByteBuilder().i32(0).i32(count).i32(1);
        EXPECT_EQ(loadAcq(read, trial(parts)), 0);
        EXPECT_THAT(told.messages(), ElementsAre(CString("Not enough memory!"))) << count;
    }
}

// The channel of an ordinary trial is none of this file, and a failed section adds no text.
TEST_F(AcquiredTrial, AChannelOfAnotherFormIsToldByItsOwnTextAlone)
{
    TrialParts parts = filledTrial(1);
    parts.channels = trialRecord::channels(1);
    EXPECT_EQ(loadAcq(read, trial(parts)), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not channel file or corrupted!")));
    EXPECT_EQ(read.m_ppChannel, nullptr);
}

TEST_F(AcquiredTrial, RecordsThatFailEndTheLoadWithTheirOwnTextAlone)
{
    const ByteBuilder other = ByteBuilder().wide("ANOTHERZK");
    const auto told = [&](ByteBuilder TrialParts::*part, const ByteBuilder& bytes) {
        const ScriptedHost here;
        TrialParts parts;
        parts.*part = bytes;
        EXPECT_EQ(loadAcq(read, trial(parts)), 0);
        return here.messages();
    };
    const CString isOther = ": The record is of another kind or corrupted!";
    EXPECT_THAT(told(&TrialParts::head, other), ElementsAre("HEADLOCALIZATIONZK" + isOther));
    EXPECT_THAT(told(&TrialParts::commonReference, other), ElementsAre("MTGUNITCOMMONREFZK" + isOther));
    EXPECT_THAT(told(&TrialParts::individualReferences, ByteBuilder().i64(1).i32(1).append(other)),
                ElementsAre("MTGUNITINDIVIDUALREFZK" + isOther));
}

TEST_F(AcquiredTrial, AnyAllocationThatFailsLeavesAUsableTrial)
{
    const std::vector<std::byte> bytes = trial(smallTrial()).bytes();
    const std::int64_t failures = forEachAllocationFailure([&] {
        CMDTrialzk one;
        loadAcq(one, bytes);
        const FailingAllocator none(0);
        ASSERT_EQ(loadAcq(one, bytes), 1);
        ASSERT_TRUE(sameBytes(storedAcq(one), bytes));
    });
    EXPECT_GE(failures, 5);
}

} // namespace

} // namespace megset::CMDTrial9FileBRecord_test
