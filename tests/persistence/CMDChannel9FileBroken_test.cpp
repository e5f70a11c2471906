// Channel records that are cut short, changed, or claim more than they hold, and memory that is refused.

#include "tests/persistence/channelRecord.h"

#include "megset/platform/CArchiveException.h"
#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/FailingFile.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/brokenFiles.h"

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannel9FileBroken_test {

namespace {

using namespace megset::channelRecord;
using ::testing::ElementsAre;

const CString wrongFormat = "Wrong channel file format!!?";

class BrokenChannelRecord : public ::testing::Test
{
protected:
    // The newest three versions tell of a failed section, the older ones don't.
    void expectRefused(const Parts& parts, const std::vector<CString>& messages)
    {
        for (const std::int32_t version : versionsWithFields) {
            const ScriptedHost host;
            CMDChannelzk channel;
            std::vector<CString> expected = messages;
            if (version >= 20190609)
                expected.push_back(wrongFormat);
            EXPECT_EQ(load(channel, record(version, parts)), 0) << version;
            EXPECT_EQ(host.messages(), expected) << version;
            expectUsable(channel);
        }
    }
    static void expectUsable(CMDChannelzk& channel)
    {
        const std::vector<double> samples = {1.0, 2.0};
        EXPECT_GE(channel.getCurrentV(0, -1), -1e308);
        channel.computeDataRange();
        EXPECT_EQ(channel.addData(2, samples.data()), 2);
        EXPECT_EQ(load(channel, record(newest)), 1);
        EXPECT_TRUE(sameBytes(stored(channel), record(newest)));
    }
    static std::vector<CString> only(const char* message) { return {CString(message)}; }
};

// Loads what may be broken: 1 as the record says, 0 also for an archive exception.
int tryLoad(CMDChannelzk& channel, std::span<const std::byte> bytes)
{
    try {
        LoadingArchive archive(bytes);
        return channel.serializezk(*archive);
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
        return 0;
    }
}

// A small record in which every optional part is there.
ByteBuilder fullRecord(std::int32_t version)
{
    Parts parts;
    CSpctmChnlzk spectrum;
    parts.spectra = ByteBuilder().i32(1).raw(storedBytes([&](CArchive& ar) { spectrum.serializeSpctmCzk(ar); }));
    parts.spectra.append(none(2));
    parts.waveResults = ByteBuilder().i32(1).raw(bytesOfWaveResult(1)).i32(0).i32(1).raw(bytesOfWaveResult(3));
    parts.shrink = ByteBuilder().i32(1).i64(100).f64(0.2).i32(0).f64(0.2).i64(5).i64(2);
    parts.shrink.i32(1).f32(1.5F).f32(2.5F).i32(1).f32(-1.5F).f32(-2.5F);
    parts.geometryType = geometryType(600, 4);
    parts.geometry = ByteBuilder().i32(1).raw(bytesOf(CMisceSnsrzk()));
    return record(version, parts);
}

TEST_F(BrokenChannelRecord, EveryPrefixEndsInAnExceptionOrAnErrorOrShortSamples)
{
    const ScriptedHost host;
    for (const std::int32_t version : versionsWithFields) {
        const std::vector<std::byte> bytes = fullRecord(version).bytes();
        SCOPED_TRACE(version);
        forEachPrefix(bytes, [&](std::span<const std::byte> prefix) {
            CMDChannelzk channel;
            const int result = tryLoad(channel, prefix);
            // The last block of the record may be cut short unnoticed.
            const bool insideLastBlock = version >= 20190723 && prefix.size() > bytes.size() - 8;
            ASSERT_EQ(result, insideLastBlock ? 1 : 0);
            ASSERT_EQ(tryLoad(channel, bytes), 1);
        });
    }
}

TEST_F(BrokenChannelRecord, SingleBitFlipsDoNoHarm)
{
    const ScriptedHost host;
    for (const std::int32_t version : {20090726, 20200801}) {
        // A part of them, spread so that every bit of a byte is met.
        constexpr std::size_t step = 5;
        const auto load = [](std::span<const std::byte> bytes) {
            CMDChannelzk channel;
            if (tryLoad(channel, bytes) != 1)
                return;
            // It can be used, written, and read back as the same bytes.
            channel.computeDataRange();
            channel.getCurrentV(0, -1);
            const std::vector<std::byte> again = stored(channel);
            CMDChannelzk copy;
            ASSERT_EQ(tryLoad(copy, again), 1);
            ASSERT_TRUE(sameBytes(stored(copy), again));
            EXPECT_EQ(copy.copyChannelInfo(&channel), 1);
        };
        forEachBitFlip(fullRecord(version).bytes(), load, step);
    }
}

TEST_F(BrokenChannelRecord, ImpossibleSampleCountsAreRefused)
{
    for (const std::int64_t count : {std::int64_t{-1}, std::int64_t{INT32_MAX}, INT64_MAX, INT64_MIN,
                                     std::int64_t{1} << 29, std::int64_t{1} << 61}) {
        Parts backup;
        backup.samples = ByteBuilder().i64(count).i32(1).doubles({1.0, 2.0});
        expectRefused(backup, only("Not enough memory!"));
        Parts working;
        working.samples = ByteBuilder().i64(0).i32(0).i64(count).i64(0).i32(1).doubles({1.0, 2.0});
        expectRefused(working, only("Not enough memory!"));
    }
}

TEST_F(BrokenChannelRecord, ImpossibleSampleCountsWithoutSamplesAreKept)
{
    for (const std::int64_t count :
         {std::int64_t{0}, std::int64_t{-1}, std::int64_t{INT32_MAX}, INT64_MAX, INT64_MIN}) {
        Parts parts;
        parts.samples = ByteBuilder().i64(count).i32(0).i64(count).i64(count).i32(0);
        CMDChannelzk channel;
        ASSERT_EQ(load(channel, record(newest, parts)), 1);
        EXPECT_EQ(channel.m_nBkDataSample, count);
        EXPECT_EQ(channel.m_nTotalSample, count);
        EXPECT_EQ(channel.m_nCurrentSample, count);
        EXPECT_TRUE(sameBytes(stored(channel), record(newest, parts)));
        EXPECT_EQ(channel.getCurrentV(-1, -1), 0.0);
        EXPECT_EQ(channel.scaleWaveData(2.0, 1), 0);
        expectUsable(channel);
    }
}

TEST_F(BrokenChannelRecord, ACurrentSampleOutsideIsCarriedAndBroughtInsideWhereItIsUsed)
{
    for (const std::int64_t current : {std::int64_t{-7}, INT64_MAX, INT64_MIN}) {
        Parts parts;
        parts.samples = ByteBuilder().i64(0).i32(0).i64(2).i64(current).i32(1).doubles({3.0, 4.0});
        CMDChannelzk channel;
        ASSERT_EQ(load(channel, record(newest, parts)), 1);
        EXPECT_EQ(channel.m_nCurrentSample, current);
        EXPECT_EQ(channel.getCurrentV(-1, -1), current > 0 ? 4.0 : 3.0);
    }
}

TEST_F(BrokenChannelRecord, SamplesThatAreNotThereAreToldOf)
{
    Parts parts;
    parts.samples = ByteBuilder().i64(2).i32(1);
    for (const std::int32_t version : versionsWithFields) {
        const ScriptedHost host;
        CMDChannelzk channel;
        // The file ends where the samples should be.
        ByteBuilder cut = header(version);
        cut.append(identity());
        if (version >= 20190609)
            cut.append(rangeAndLabels());
        cut.append(parts.geometryType).append(*parts.geometry).append(parts.balance).append(parts.samples);
        EXPECT_EQ(load(channel, cut), 0);
        EXPECT_EQ(host.messages().front(), CString("Read back up data error!?"));
        EXPECT_EQ(host.messages().size(), version >= 20190609 ? 2U : 1U);
        expectUsable(channel);
    }
}

TEST_F(BrokenChannelRecord, ABlockThatIsCutShortGoesUnnoticedAndTheRestIsZero)
{
    // Working samples at the end of the record's bytes: the sections behind them raise the end of the file.
    ByteBuilder bytes = header(newest);
    bytes.append(identity()).append(rangeAndLabels()).append(geometryType(-1, 0)).append(none(1)).append(noBalance());
    bytes.i64(0).i32(0).i64(3).i64(0).i32(1).f64(5.5).i32(-1);
    CMDChannelzk channel;
    const ScriptedHost host;
    EXPECT_THROW(load(channel, bytes), CArchiveException);
    ASSERT_NE(channel.m_pDataWave, nullptr);
    EXPECT_EQ(channel.m_pDataWave[0], 5.5);
    EXPECT_EQ(channel.m_pDataWave[2], 0.0);
    host.expectNoMessages();
}

TEST_F(BrokenChannelRecord, AnArrayOfNoSamplesIsNoError)
{
    Parts parts;
    parts.samples = ByteBuilder().i64(0).i32(1).i64(0).i64(0).i32(1);
    CMDChannelzk channel;
    const ScriptedHost host;
    EXPECT_EQ(load(channel, record(newest, parts)), 1);
    EXPECT_EQ(channel.computeDataRange(), 0);
    host.expectNoMessages();
}

TEST_F(BrokenChannelRecord, ImpossibleBalanceCountsAreRefusedInSilence)
{
    for (const std::int32_t count : {-1, INT32_MIN, INT32_MAX}) {
        Parts parts;
        parts.balance = ByteBuilder().i32(1).i32(count).i32(1);
        expectRefused(parts, {});
    }
}

TEST_F(BrokenChannelRecord, BalanceCountsWithoutEntriesAreCarried)
{
    for (const std::int32_t count : {0, -1, INT32_MAX}) {
        Parts parts;
        parts.balance = ByteBuilder().i32(1).i32(count).i32(0);
        CMDChannelzk channel;
        ASSERT_EQ(load(channel, record(newest, parts)), 1);
        EXPECT_EQ(channel.m_nMegChnlNumBal, count);
        EXPECT_TRUE(sameBytes(stored(channel), record(newest, parts)));
        EXPECT_EQ(channel.getMegChnlNumBal(), 0);
    }
}

// An entry takes more memory than bytes of the file: what counts is the memory.
TEST_F(BrokenChannelRecord, ABalanceThatTakesMoreMemoryThanSuitsALargeFileIsRefused)
{
    constexpr std::size_t left = std::size_t{16} << 20U;
    constexpr std::int32_t count = 1'000'000; // 13 bytes each in the file, 48 and more in memory
    ByteBuilder bytes = header(newest);
    bytes.append(identity()).append(rangeAndLabels()).append(geometryType(-1, 0)).append(none(1));
    bytes.i32(0).i32(count).i32(1).zeros(left);
    const ScriptedHost host;
    CMDChannelzk channel;
    EXPECT_EQ(load(channel, bytes), 0);
    EXPECT_EQ(channel.m_pMegBalInf, nullptr);
    EXPECT_THAT(host.messages(), ElementsAre(wrongFormat));
}

TEST_F(BrokenChannelRecord, ABalanceOfNoEntriesIsAnArrayOfNone)
{
    Parts parts;
    parts.balance = ByteBuilder().i32(1).i32(0).i32(1);
    CMDChannelzk channel;
    ASSERT_EQ(load(channel, record(newest, parts)), 1);
    EXPECT_NE(channel.m_pMegBalInf, nullptr);
    EXPECT_TRUE(sameBytes(stored(channel), record(newest, parts)));
}

TEST_F(BrokenChannelRecord, ImpossibleBlockCountsOfTheBufferForDrawingAreRefused)
{
    for (const std::int64_t count : {std::int64_t{-1}, std::int64_t{INT32_MAX}, INT64_MAX}) {
        Parts parts;
        parts.shrink = ByteBuilder().i32(1).i64(100).f64(0.2).i32(0).f64(0.2).i64(5).i64(count).i32(1).f32(1.0F);
        for (const std::int32_t version : {20190723, 20200801}) {
            const ScriptedHost host;
            CMDChannelzk channel;
            EXPECT_EQ(load(channel, record(version, parts)), 0);
            EXPECT_THAT(host.messages(), ElementsAre(CString("Is memory enough?!"), wrongFormat));
            expectUsable(channel);
        }
    }
}

TEST_F(BrokenChannelRecord, AWaveResultThatIsRefusedEndsTheRecord)
{
    Parts parts;
    parts.waveResults = ByteBuilder().i32(1).wide("ANOTHERZK").i32(1);
    const ScriptedHost host;
    CMDChannelzk channel;
    EXPECT_EQ(load(channel, record(newest, parts)), 0);
    EXPECT_EQ(host.messages().back(), wrongFormat);
    expectUsable(channel);
}

TEST_F(BrokenChannelRecord, EveryAllocationFailureHasItsMessage)
{
    const std::set<CString> known = {CString("Is there enough memory?!"), CString("Not enough memory!"),
                                     CString("Is memory enough?!"), CString("")};
    for (const std::int32_t version : versionsWithFields) {
        const std::vector<std::byte> bytes = fullRecord(version).bytes();
        std::vector<CString> first; // message of each failure, "" where there is none
        const auto failures = forEachAllocationFailure([&] {
            const ScriptedHost host;
            CMDChannelzk channel;
            const int result = tryLoad(channel, bytes);
            std::vector<CString> messages = host.messages();
            if (result == 1)
                return;
            const bool tellsTwice = version >= 20190609;
            if (tellsTwice) {
                ASSERT_FALSE(messages.empty());
                EXPECT_EQ(messages.back(), wrongFormat);
                messages.pop_back();
            }
            first.push_back(messages.empty() ? CString("") : messages.front());
            EXPECT_TRUE(known.contains(first.back())) << first.back().toUtf8();
            const FailingAllocator none(0);
            expectUsable(channel);
        });
        EXPECT_GE(failures, 5) << version;
        ASSERT_GE(first.size(), 5U);
        // In the order of the record: geometry, balance, backup, working samples, spectrum.
        EXPECT_EQ(first[0], CString("Is there enough memory?!"));
        EXPECT_EQ(first[1], CString(""));
        EXPECT_EQ(first[2], CString("Not enough memory!"));
        EXPECT_EQ(first[3], CString("Not enough memory!"));
        EXPECT_EQ(first[4], CString("Is memory enough?!"));
    }
}

TEST_F(BrokenChannelRecord, AFullDiskRaisesItsExceptionAndTheChannelStays)
{
    const ScriptedHost host;
    CMDChannelzk channel;
    fill(channel);
    FailingFile file;
    file.fullAfter(100);
    CArchive archive(&file, CArchive::store);
    EXPECT_THROW(
        {
            channel.serializezk(archive);
            archive.Close();
        },
        CFileException);
    archive.Abort();
    EXPECT_TRUE(sameBytes(stored(channel), record(newest)));
    host.expectNoMessages();
}

} // namespace

} // namespace megset::CMDChannel9FileBroken_test
