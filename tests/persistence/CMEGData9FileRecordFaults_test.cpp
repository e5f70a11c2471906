// Acquisition datasets that are cut short, changed, or claim more than they hold, inner records that fail, and memory
// that is refused.

#include "tests/persistence/acquisitionRecord.h"
#include "tests/persistence/brokenForms.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileRecordFaults_test {

namespace {

using namespace megset::acquisitionRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

void expectUsable(CMEGDatazk& dataset)
{
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    ASSERT_TRUE(sameBytes(stored(dataset), record(newest, afterReading(newest, filled(1), 1))));
}

struct AcquisitionForm
{
    using Object = CMEGDatazk;
    static int load(CMEGDatazk& dataset, CArchive& ar) { return dataset.serializeRecordWithoutTrials(ar); }
    static std::vector<std::byte> stored(CMEGDatazk& dataset)
    {
        dataset.m_ppTrial.reset(); // trials are not what is looked at
        return acquisitionRecord::stored(dataset);
    }
    static void fill(CMEGDatazk& dataset, int seed) { acquisitionRecord::fill(dataset, seed); }
    static void expectUsable(CMEGDatazk& dataset) { CMEGData9FileRecordFaults_test::expectUsable(dataset); }
};

// Every part is there, and of the recording information not more than must be.
Parts smallParts()
{
    Parts parts = filled(1);
    parts.recordInfo = Parts().recordInfo;
    return parts;
}

class BrokenAcquisition : public ::testing::Test
{
protected:
    static std::vector<CString> messagesOf(const Parts& parts, int result, std::int32_t number = newest)
    {
        return messagesOfLoading<AcquisitionForm>(record(number, parts).bytes(), result);
    }
};

TEST_F(BrokenAcquisition, EveryPrefixIsRefused)
{
    const ScriptedHost host;
    for (const std::int32_t number : versions)
        expectEveryPrefixRefused(
            record(number, smallParts()).bytes(),
            [](CArchive& ar) { return CMEGDatazk().serializeRecordWithoutTrials(ar); }, number == newest ? 1 : 17);
}

TEST_F(BrokenAcquisition, ADatasetThatWasReadInPartCanBeUsed)
{
    const ScriptedHost host;
    expectUsableAfterEachPart<AcquisitionForm>(record(newest, smallParts()).bytes(), 211);
}

TEST_F(BrokenAcquisition, SingleBitFlipsDoNoHarm)
{
    const ScriptedHost host;
    for (const std::int32_t number : versions)
        expectBitFlipsDoNoHarm<AcquisitionForm>(record(number, smallParts()).bytes());
}

TEST_F(BrokenAcquisition, AnArchiveWithoutAFileIsRefusedWithoutAMessage)
{
    const ScriptedHost host;
    CMEGDatazk dataset;
    fill(dataset, 1);
    CArchive without(nullptr, CArchive::load);
    // Not even the tag can be read from it.
    EXPECT_THROW(dataset.serializeRecordWithoutTrials(without), CException);
    EXPECT_TRUE(sameBytes(stored(dataset), record(newest, filled(1))));
    host.expectNoMessages();
}

// ---- counts

TEST_F(BrokenAcquisition, MoreTrialsThanTheFileHasPathsForAreRefusedBeforeMemoryIsTaken)
{
    for (const std::int32_t number : versions)
        for (const int total : {-1, INT32_MAX, INT32_MIN, 1 << 24}) {
            const ScriptedHost host;
            Parts parts = filled(1);
            parts.trials.total = total;
            parts.trials.presence = 1;
            const std::vector<std::byte> bytes = record(number, parts).bytes();
            CMEGDatazk dataset;
            const FailingAllocator counting(0);
            EXPECT_EQ(tryLoad<AcquisitionForm>(dataset, bytes), 0);
            EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory?!")));
            EXPECT_EQ(counting.calls(), 0);
        }
}

TEST_F(BrokenAcquisition, APathCountThatTheFileCannotHoldEndsAtItsEnd)
{
    const ByteBuilder bytes = header(newest).zeros(16).wide("").wide("").i32(1).wide("").i64(INT64_MAX).wide("a");
    CMEGDatazk dataset;
    EXPECT_THROW(load(dataset, bytes), CArchiveException);
    EXPECT_EQ(dataset.m_aRecordTrialPath.GetSize(), 1);
    expectUsable(dataset);
}

TEST_F(BrokenAcquisition, ImpossibleCountsOfFlagsFailWithoutAMessage)
{
    for (ByteBuilder Parts::*array :
         {static_cast<ByteBuilder Parts::*>(&Parts::good), static_cast<ByteBuilder Parts::*>(&Parts::shown),
          static_cast<ByteBuilder Parts::*>(&Parts::select), &Parts::param4})
        for (const int count : {-1, INT32_MIN, INT32_MAX, 1 << 24}) {
            Parts parts;
            parts.flagCount = count;
            parts.*array = ByteBuilder().i32(1);
            EXPECT_THAT(messagesOf(parts, 0), IsEmpty()) << count;
        }
}

// ---- inner records that fail

TEST_F(BrokenAcquisition, ARecordThatFailsEndsTheLoadWithItsOwnTextAlone)
{
    const ByteBuilder other = ByteBuilder().wide("ANOTHERZK");
    const std::pair<ByteBuilder datasetRecord::Parts::*, const char*> records[] = {
        {&Parts::head, "HEADLOCALIZATIONZK"},
        {&Parts::filter, "FILTERDCLTZK"},
        {&Parts::filter2, "FILTERDCLTZK"},
        {&Parts::recordInfo, "MEGRECORDINFOBASEZK"},
        {&Parts::eeg, "FIDUCIALZK"}};
    for (const std::int32_t number : versions) {
        for (const auto& [part, tag] : records) {
            Parts parts;
            parts.*part = other;
            EXPECT_THAT(messagesOf(parts, 0, number), ElementsAre(otherKind(tag)));
        }
        for (std::size_t i = 0; i < 8; ++i) {
            Parts parts;
            parts.markers[i] = other;
            EXPECT_THAT(messagesOf(parts, 0, number), ElementsAre(otherKind("MARKERMANAGERZK")));
        }
        Parts cut;
        cut.cut = ByteBuilder().i32(0).i32(0).append(other);
        EXPECT_THAT(messagesOf(cut, 0, number), ElementsAre(otherKind("MARKERMANAGERZK")));
    }
}

TEST_F(BrokenAcquisition, TheInformationOfAnOrdinaryDatasetIsAnotherRecord)
{
    Parts parts;
    parts.recordInfo = datasetRecord::Parts().recordInfo;
    EXPECT_THAT(messagesOf(parts, 0), ElementsAre(otherKind("MEGRECORDINFOBASEZK")));
}

// ---- memory

TEST_F(BrokenAcquisition, WithoutMemoryForFlagsTheLoadEndsWithoutAMessage)
{
    Parts parts;
    parts.flagCount = 2;
    parts.good = parts.shown = parts.select = parts.param4 = flags({1, 2});
    for (const std::int32_t number : versions)
        for (int n = 1; n <= 4; ++n) {
            const ScriptedHost host;
            CMEGDatazk dataset;
            const FailingAllocator failing(n);
            EXPECT_EQ(load(dataset, record(number, parts)), 0) << n;
            EXPECT_EQ(failing.failures(), 1);
            host.expectNoMessages();
        }
}

TEST_F(BrokenAcquisition, AnyAllocationThatFailsLeavesAUsableDataset)
{
    for (const std::int32_t number : versions) {
        const ScriptedHost host;
        EXPECT_GT(expectUsableAfterEachFailure<AcquisitionForm>(record(number, smallParts()).bytes()), 5);
    }
}

} // namespace

} // namespace megset::CMEGData9FileRecordFaults_test
