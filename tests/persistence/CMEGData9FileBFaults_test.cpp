// Dataset files that are cut short, changed, or claim more than they hold, inner records that fail, and memory that is
// refused.

#include "tests/persistence/brokenForms.h"
#include "tests/persistence/datasetRecord.h"

#include "megset/platform/CArchiveException.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/SilentHost.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileBFaults_test {

namespace {

using namespace megset::datasetRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// What changed paths make the library ask is answered No while it lives.
class Silence
{
public:
    Silence() : m_former(AfxSetHost(&m_host)) {}
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { AfxSetHost(m_former); }

private:
    SilentHost m_host;
    CUserHost* m_former;
};

// Whatever a broken file left, the dataset can be read into, written, and read back.
void expectUsable(CMEGDatazk& dataset)
{
    {
        const Silence silence;
        dataset.getTrialzk(0);
        dataset.getSampleRate();
    }
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    ASSERT_TRUE(sameBytes(stored(dataset), record(newest, filled(1))));
}

struct DatasetForm
{
    using Object = CMEGDatazk;
    static int load(CMEGDatazk& dataset, CArchive& ar) { return dataset.serializezk(ar); }
    static std::vector<std::byte> stored(CMEGDatazk& dataset)
    {
        dataset.m_ppTrial.reset(); // trials are not what is looked at
        return datasetRecord::stored(dataset);
    }
    static void fill(CMEGDatazk& dataset, int seed) { datasetRecord::fill(dataset, seed); }
    static void expectUsable(CMEGDatazk& dataset) { CMEGData9FileBFaults_test::expectUsable(dataset); }
};

// A small file in which every part is there; old ones have a trial inside.
Parts smallParts(std::int32_t version)
{
    Parts parts = filled(1);
    parts.recordInfo = recordBytes(CMEGRecordInfozkProzk());
    if (listForm(version) == ListForm::today)
        return parts;
    parts.trials.presence = 1;
    parts.trials.behind = none(3);
    if (listForm(version) == ListForm::doubleStore) {
        const trialRecord::Parts trial;
        parts.trials.behind = ByteBuilder().i32(0).i32(1).append(trialRecord::record(20080229, trial)).i32(0);
    }
    return parts;
}

class BrokenDatasetFile : public ::testing::Test
{
protected:
    // The messages of loading a file into a dataset, which must give `result`.
    std::vector<CString> messagesOf(const Parts& parts, int result, std::int32_t version = newest)
    {
        return messagesOfLoading<DatasetForm>(record(version, parts).bytes(), result);
    }
};

TEST_F(BrokenDatasetFile, EveryPrefixEndsInAnExceptionOrAnError)
{
    const ScriptedHost host;
    for (const std::int32_t version : versions) {
        SCOPED_TRACE(version);
        // All of the newest and the oldest file, and of the others each 29th.
        const std::size_t step = version == newest || version == 20080609 ? 1 : 29;
        expectEveryPrefixRefused(
            record(version, smallParts(version)).bytes(), [](CArchive& ar) { return CMEGDatazk().serializezk(ar); },
            step);
    }
}

TEST_F(BrokenDatasetFile, ADatasetThatWasReadInPartCanBeUsed)
{
    const ScriptedHost host;
    for (const std::int32_t version : {20080609, 20190725, newest})
        expectUsableAfterEachPart<DatasetForm>(record(version, smallParts(version)).bytes(), 211);
}

TEST_F(BrokenDatasetFile, SingleBitFlipsDoNoHarm)
{
    const Silence silence;
    for (const std::int32_t version : {20080609, 20190725, newest})
        expectBitFlipsDoNoHarm<DatasetForm>(record(version, smallParts(version)).bytes());
}

TEST_F(BrokenDatasetFile, AnotherTagIsRefusedWithNothingChanged)
{
    for (const char* tag : {"MEACQDATASETZK", "MEGDATASETZ", "MEGDATASETZKX", "megdatasetzk", "MEGTRIALZK", ""}) {
        const ScriptedHost host;
        CMEGDatazk dataset;
        fill(dataset, 1);
        LoadingArchive archive(ByteBuilder().wide(tag).i32(newest));
        EXPECT_EQ(dataset.serializezk(*archive), 0) << tag;
        EXPECT_EQ(archive->bytesLeft(), 4U);
        EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not MEG dataset file or corrupted!")));
        EXPECT_TRUE(sameBytes(stored(dataset), record(newest, filled(1))));
    }
}

// ---- counts

TEST_F(BrokenDatasetFile, MoreTrialsThanTheFileHasPathsForAreRefusedBeforeMemoryIsTaken)
{
    for (const std::int32_t version : versions)
        for (const int total : {-1, INT32_MAX, INT32_MIN, 1 << 24}) {
            if (version == 20080104)
                continue;
            const ScriptedHost host;
            Parts parts = filled(1);
            parts.trials.total = total;
            parts.trials.presence = 1;
            const std::vector<std::byte> bytes = record(version, parts).bytes();
            CMEGDatazk dataset;
            const FailingAllocator counting(0);
            EXPECT_EQ(tryLoad<DatasetForm>(dataset, bytes), 0);
            EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory?!"))) << version;
            EXPECT_EQ(dataset.m_ppTrial, nullptr);
            if (listForm(version) != ListForm::smallLast) { // there are no records in front of the list
                EXPECT_EQ(counting.calls(), 0);
            }
        }
}

TEST_F(BrokenDatasetFile, MoreTrialsThanPathsAreReadWhereTheyAreFew)
{
    Parts parts;
    parts.trials.total = 100'000;
    parts.trials.presence = 1;
    EXPECT_THAT(messagesOf(parts, 1),
                ElementsAre(CString("No trial path for opening trial!"), CString("Serial trial error!")));
}

TEST_F(BrokenDatasetFile, AsManyTrialsAsPathsAreAlwaysRead)
{
    const ScriptedHost host;
    Parts parts;
    parts.trials.total = 300'000;
    parts.trials.paths.resize(300'000);
    parts.trials.presence = 1;
    parts.trials.behind.zeros(4 * 300'000);
    CMEGDatazk dataset;
    for (const std::int32_t version : {20140516, 20150724, 20190725}) {
        ASSERT_EQ(load(dataset, record(version, parts)), 1);
        EXPECT_EQ(dataset.m_ppTrial.size(), 300'000);
    }
}

TEST_F(BrokenDatasetFile, APathCountThatTheFileCannotHoldEndsAtItsEnd)
{
    const ByteBuilder bytes = header(newest).zeros(16).wide("").wide("").i32(1).wide("").i64(INT64_MAX).wide("a");
    CMEGDatazk dataset;
    EXPECT_THROW(load(dataset, bytes), CArchiveException);
    EXPECT_EQ(dataset.m_aTrialFilePath.GetSize(), 1);
    expectUsable(dataset);
}

TEST_F(BrokenDatasetFile, ANegativePathCountMeansNoPath)
{
    for (const std::int64_t count : {std::int64_t{-1}, INT64_MIN}) {
        const ByteBuilder whole = record(newest, Parts());
        // In front of the count: header, four ints, three texts, an int.
        const std::size_t offset = header(newest).size() + 16 + 4 + (4 + 14) + 4 + 4;
        ByteBuilder bytes;
        bytes.raw(std::span(whole.bytes()).first(offset)).i64(count);
        bytes.raw(std::span(whole.bytes()).subspan(offset + 8));
        CMEGDatazk dataset;
        ASSERT_EQ(load(dataset, bytes), 1);
        EXPECT_TRUE(dataset.m_aTrialFilePath.IsEmpty());
    }
}

TEST_F(BrokenDatasetFile, ImpossibleCountsOfFlagsFailWithoutAMessage)
{
    for (ByteBuilder Parts::*array : {&Parts::good, &Parts::shown, &Parts::select})
        for (const int count : {-1, INT32_MIN, INT32_MAX, 1 << 24}) {
            Parts parts;
            parts.flagCount = count;
            parts.*array = ByteBuilder().i32(1);
            EXPECT_THAT(messagesOf(parts, 0), IsEmpty()) << count;
        }
}

TEST_F(BrokenDatasetFile, FlagsThatTheFileEndsAmongRaiseTheEndOfFile)
{
    Parts parts;
    parts.flagCount = 100'000;
    parts.good = ByteBuilder().i32(1);
    CMEGDatazk dataset;
    EXPECT_THROW(load(dataset, record(newest, parts)), CArchiveException);
    ASSERT_NE(dataset.m_pChnlGood, nullptr);
    EXPECT_EQ(dataset.m_pChnlGood[99'999], 0);
    expectUsable(dataset);
}

// ---- inner records that fail

TEST_F(BrokenDatasetFile, ARecordThatFailsEndsTheLoadWithItsOwnTextAlone)
{
    const ByteBuilder other = ByteBuilder().wide("ANOTHERZK");
    const std::pair<ByteBuilder Parts::*, const char*> records[] = {{&Parts::head, "HEADLOCALIZATIONZK"},
                                                                    {&Parts::filter, "FILTERDCLTZK"},
                                                                    {&Parts::filter2, "FILTERDCLTZK"},
                                                                    {&Parts::eeg, "FIDUCIALZK"},
                                                                    {&Parts::wave, "FACEWAVEANALYZEDRESULTZK"}};
    for (const auto& [part, tag] : records) {
        Parts parts;
        parts.*part = other;
        EXPECT_THAT(messagesOf(parts, 0), ElementsAre(otherKind(tag)));
    }
    for (std::size_t i = 0; i < 8; ++i) {
        Parts parts;
        parts.markers[i] = other;
        EXPECT_THAT(messagesOf(parts, 0), ElementsAre(otherKind("MARKERMANAGERZK")));
    }
    Parts cut;
    cut.cut = ByteBuilder().i32(0).i32(0).append(other);
    EXPECT_THAT(messagesOf(cut, 0), ElementsAre(otherKind("MARKERMANAGERZK")));
    Parts second;
    second.eeg = recordBytes(CFiducialzk()).append(other);
    EXPECT_THAT(messagesOf(second, 0), ElementsAre(otherKind("FIDUCIALZK")));
    Parts info;
    info.recordInfo = other;
    EXPECT_THAT(messagesOf(info, 0),
                ElementsAre(CString("The opened file is not recording information file or corrupted!")));
}

TEST_F(BrokenDatasetFile, ARecordThatFailsEndsTheLoadOfOldVersionsToo)
{
    const ByteBuilder other = ByteBuilder().wide("ANOTHERZK");
    for (const std::int32_t version : versions) {
        if (version == 20080104)
            continue;
        Parts head;
        head.head = other;
        EXPECT_THAT(messagesOf(head, 0, version), ElementsAre(otherKind("HEADLOCALIZATIONZK")));
        for (const int manager : managersOf(version)) {
            Parts parts;
            parts.markers[static_cast<std::size_t>(manager)] = other;
            EXPECT_THAT(messagesOf(parts, 0, version), ElementsAre(otherKind("MARKERMANAGERZK"))) << version;
        }
        Parts cut;
        cut.oldCut = ByteBuilder().i32(0).append(other);
        if (hasOldCut(version)) {
            EXPECT_THAT(messagesOf(cut, 0, version), ElementsAre(otherKind("MARKERDATAZK"))) << version;
        }
    }
}

TEST_F(BrokenDatasetFile, ATrialInsideThatFailsEndsTheLoadAndIsNotKept)
{
    const ScriptedHost host;
    Parts parts = filled(1);
    parts.trials.presence = 1;
    const ByteBuilder good = trialRecord::record(trialRecord::newest, trialRecord::Parts());
    parts.trials.behind = ByteBuilder().i32(1).append(good).i32(1).wide("ANOTHERZK");
    CMEGDatazk dataset;
    EXPECT_EQ(tryLoad<DatasetForm>(dataset, record(20140516, parts).bytes()), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not trial or corrupted!")));
    EXPECT_NE(dataset.getMDTrial(0), nullptr);
    EXPECT_EQ(dataset.getMDTrial(1), nullptr);
    EXPECT_EQ(dataset.m_headLocalization, CHeadLocalizationzk()); // later sections were not reached
    expectUsable(dataset);
}

// ---- memory

TEST_F(BrokenDatasetFile, WithoutMemoryForTheSlotsTheLoadEnds)
{
    for (const std::int32_t version : {newest, 20150724, 20140516}) {
        const ScriptedHost host;
        Parts parts;
        parts.trials.total = 2;
        parts.trials.presence = 1;
        CMEGDatazk dataset;
        const FailingAllocator first(1);
        EXPECT_EQ(load(dataset, record(version, parts)), 0);
        EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory?!"))) << version;
        EXPECT_EQ(dataset.m_ppTrial, nullptr);
    }
}

TEST_F(BrokenDatasetFile, WithoutMemoryForATrialInsideTheLoadEnds)
{
    const ScriptedHost host;
    Parts parts;
    parts.trials.total = 1;
    parts.trials.presence = 1;
    parts.trials.behind = ByteBuilder().i32(1);
    CMEGDatazk dataset;
    const FailingAllocator second(2);
    EXPECT_EQ(load(dataset, record(20140516, parts)), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Is there enough memory for read MEG trial data?")));
    EXPECT_EQ(dataset.getMDTrial(0), nullptr);
}

TEST_F(BrokenDatasetFile, WithoutMemoryForFlagsTheLoadEndsWithoutAMessage)
{
    Parts parts;
    parts.flagCount = 2;
    parts.good = parts.shown = parts.select = flags({1, 2});
    for (int n = 1; n <= 4; ++n) { // the fourth is that of the array which is not in the file
        const ScriptedHost host;
        CMEGDatazk dataset;
        const FailingAllocator failing(n);
        EXPECT_EQ(load(dataset, record(newest, parts)), 0) << n;
        EXPECT_EQ(failing.failures(), 1);
        host.expectNoMessages();
    }
}

TEST_F(BrokenDatasetFile, AnyAllocationThatFailsLeavesAUsableDataset)
{
    for (const std::int32_t version : {20080609, 20190725, newest}) {
        const ScriptedHost host;
        EXPECT_GT(expectUsableAfterEachFailure<DatasetForm>(record(version, smallParts(version)).bytes()), 5);
    }
}

} // namespace

} // namespace megset::CMEGData9FileBFaults_test
