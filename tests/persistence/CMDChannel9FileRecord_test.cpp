// The channel's record of an acquisition, read from bytes that were put together field by field.

#include "tests/persistence/acquisitionRecord.h"

#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/brokenFiles.h"

#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannel9FileRecord_test {

namespace {

using namespace megset::acquisitionRecord;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* otherTag = "The opened file is not channel file or corrupted!";

std::vector<std::byte> storedAcq(CMDChannelzk& channel)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(channel.serializeAcqzk(ar), 1); });
}

int loadAcq(CMDChannelzk& channel, std::span<const std::byte> bytes)
{
    return tryLoading(bytes, [&](CArchive& ar) { return channel.serializeAcqzk(ar); });
}

class AcquiredChannel : public ::testing::Test
{
protected:
    int load(const ByteBuilder& bytes) { return loadAcq(channel, bytes.bytes()); }

    ScriptedHost host;
    CMDChannelzk channel;
};

TEST_F(AcquiredChannel, IsWrittenFieldByField)
{
    channelRecord::fill(channel);
    EXPECT_TRUE(sameBytes(storedAcq(channel), acquisitionRecord::channel()));
    host.expectNoMessages();
}

TEST_F(AcquiredChannel, BringsAllItsFields)
{
    ASSERT_EQ(load(acquisitionRecord::channel()), 1);
    CMDChannelzk expected;
    channelRecord::fill(expected);
    // The record of today holds them all.
    EXPECT_TRUE(sameBytes(channelRecord::stored(channel), channelRecord::stored(expected)));
    EXPECT_EQ(channel.m_nMegListID, 3);
    EXPECT_EQ(channel.m_strChannelNameRaw, CString("raw"));
    EXPECT_EQ(channel.m_nChnlRangeState, 19);
    EXPECT_EQ(channel.m_dChnlParamM, 30.5);
    EXPECT_EQ(channel.getTotalSample(), 2);
    EXPECT_EQ(channel.getBkDataSample(), 3);
    host.expectNoMessages();
}

TEST_F(AcquiredChannel, SecondCopiesOfTwoFieldsWin)
{
    ByteBuilder bytes = channelHeader().append(channelRecord::identity());
    const channelRecord::Parts parts;
    bytes.append(parts.geometryType).append(*parts.geometry).append(parts.balance).append(parts.samples);
    ASSERT_EQ(load(bytes.append(channelRecord::rangeAndLabels(115.5, 116.5))), 1);
    EXPECT_EQ(channel.m_dChnlParamK, 115.5);
    EXPECT_EQ(channel.m_dChnlParamL, 116.5);
}

TEST_F(AcquiredChannel, LeavesResultsOfAnalysesAsTheyAre)
{
    channel.m_pSpctmChnlA = std::make_unique<CSpctmChnlzk>();
    channel.m_pWaveResultX = std::make_unique<CChnlWaveAnalyzedResultzk>();
    channel.m_pShowShrink = std::make_unique<SHOW_SHRINK_DATAF>();
    ASSERT_EQ(load(acquisitionRecord::channel()), 1);
    EXPECT_NE(channel.m_pSpctmChnlA, nullptr);
    EXPECT_NE(channel.m_pWaveResultX, nullptr);
    EXPECT_NE(channel.m_pShowShrink, nullptr);
    EXPECT_TRUE(sameBytes(storedAcq(channel), acquisitionRecord::channel()));
}

TEST_F(AcquiredChannel, HasTheGeometryOfEveryType)
{
    const std::pair<int, std::vector<std::byte>> geometries[] = {{2, channelRecord::bytesOf(CEEGelectrodezk())},
                                                                 {3, channelRecord::bytesOf(CStimTrigzk())},
                                                                 {4, channelRecord::bytesOf(CMisceSnsrzk())},
                                                                 {5, channelRecord::bytesOf(CSensorAcceleratorzk())}};
    for (const auto& [type, bytes] : geometries) {
        channelRecord::Parts parts;
        parts.geometryType = channelRecord::geometryType(700, type);
        parts.geometry = ByteBuilder().i32(1).raw(bytes);
        ASSERT_EQ(load(acquisitionRecord::channel(parts)), 1);
        EXPECT_EQ(channel.m_nGeomType, type);
        EXPECT_NE(channel.m_pGeomHw, nullptr);
        EXPECT_TRUE(sameBytes(storedAcq(channel), acquisitionRecord::channel(parts)));
    }
}

TEST_F(AcquiredChannel, ATagInTheNarrowFormIsTheSameAndOneInAnotherCaseIsNot)
{
    const std::vector<std::byte> wide = acquisitionRecord::channel().bytes();
    const auto behindTag = std::span(wide).subspan(4 + 2 * 14);
    EXPECT_EQ(load(ByteBuilder().narrow("ACQMECHANNELZK").raw(behindTag)), 1);
    host.expectNoMessages();
    EXPECT_EQ(load(ByteBuilder().narrow("AcqMEChannelzk").raw(behindTag)), 0);
    EXPECT_EQ(load(ByteBuilder().wide("MEGCHANNELZK").raw(behindTag)), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString(otherTag), CString(otherTag)));
}

TEST_F(AcquiredChannel, OtherVersionsAreRefused)
{
    for (const std::int32_t number : {20200728, 20200726, 20220418, 20200801, 0}) {
        const ScriptedHost told;
        EXPECT_EQ(load(channelHeader(number).append(channelRecord::identity())), 0) << number;
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong channel file format!!?")));
    }
    EXPECT_EQ(channel.m_nMegListID, -1);
}

// ---- broken records

TEST_F(AcquiredChannel, EveryPrefixIsRefused)
{
    expectEveryPrefixRefused(acquisitionRecord::channel().bytes(),
                             [](CArchive& ar) { return CMDChannelzk().serializeAcqzk(ar); });
}

TEST_F(AcquiredChannel, SingleBitFlipsDoNoHarm)
{
    forEachBitFlip(acquisitionRecord::channel().bytes(), [](std::span<const std::byte> bytes) {
        CMDChannelzk read;
        if (loadAcq(read, bytes) != 1)
            return;
        const std::vector<std::byte> again = storedAcq(read);
        CMDChannelzk copy;
        ASSERT_EQ(loadAcq(copy, again), 1);
        ASSERT_TRUE(sameBytes(storedAcq(copy), again));
    });
}

TEST_F(AcquiredChannel, ImpossibleCountsAreRefusedWithTheMessagesOfTheSections)
{
    for (const std::int64_t count : {std::int64_t{-1}, INT64_MAX, std::int64_t{1} << 28}) {
        const ScriptedHost told;
        channelRecord::Parts parts;
        parts.samples = ByteBuilder().i64(count).i32(1).f64(1.0);
        EXPECT_EQ(load(acquisitionRecord::channel(parts)), 0) << count;
        EXPECT_THAT(told.messages(), ElementsAre(CString("Not enough memory!")));
    }
    for (const int count : {-1, INT32_MAX}) {
        const ScriptedHost told;
        channelRecord::Parts parts;
        parts.balance = ByteBuilder().i32(0).i32(count).i32(1);
        EXPECT_EQ(load(acquisitionRecord::channel(parts)), 0);
        EXPECT_THAT(told.messages(), IsEmpty());
    }
}

TEST_F(AcquiredChannel, SamplesThatAreNotThereAreTold)
{
    channelRecord::Parts parts;
    parts.samples = ByteBuilder().i64(2).i32(1);
    ByteBuilder bytes = channelHeader().append(channelRecord::identity()).append(parts.geometryType);
    bytes.append(*parts.geometry).append(parts.balance).append(parts.samples);
    EXPECT_EQ(load(bytes), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Read back up data error!?")));
}

TEST_F(AcquiredChannel, AnyAllocationThatFailsLeavesAUsableChannel)
{
    const std::vector<std::byte> bytes = acquisitionRecord::channel().bytes();
    const std::int64_t failures = forEachAllocationFailure([&] {
        CMDChannelzk read;
        loadAcq(read, bytes);
        const FailingAllocator none(0);
        ASSERT_EQ(loadAcq(read, bytes), 1);
        ASSERT_TRUE(sameBytes(storedAcq(read), bytes));
    });
    EXPECT_GE(failures, 4);
}

} // namespace

} // namespace megset::CMDChannel9FileRecord_test
