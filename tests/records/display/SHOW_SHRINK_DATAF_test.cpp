#include "megset/records/display/SHOW_SHRINK_DATAF.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/memoryArchive.h"

#include "megset/platform/CArchiveException.h"

#include <limits>

#include <gmock/gmock.h>

namespace megset::SHOW_SHRINK_DATAF_test {
namespace {

using ::testing::ElementsAre;

std::unique_ptr<float[]> floats(std::initializer_list<float> values)
{
    auto array = std::make_unique<float[]>(values.size());
    std::copy(values.begin(), values.end(), array.get());
    return array;
}

SHOW_SHRINK_DATAF filledShrink()
{
    SHOW_SHRINK_DATAF shrink;
    shrink.m_nSrcSample = 100;
    shrink.m_dShrinkRatio = 0.2;
    shrink.m_nDirty = 0;
    shrink.m_dShrinkRatioUsed = 0.25;
    shrink.m_nBinSample = 50;
    shrink.m_nBinCount = 2;
    shrink.m_pMax = floats({1.5F, 2.5F});
    shrink.m_pMin = floats({-1.5F, -2.5F});
    return shrink;
}

ByteBuilder fields(std::int64_t bins)
{
    return ByteBuilder().i64(100).f64(0.2).i32(0).f64(0.25).i64(50).i64(bins);
}

ByteBuilder filledBytes()
{
    return fields(2).i32(1).f32(1.5F).f32(2.5F).i32(1).f32(-1.5F).f32(-2.5F);
}

std::vector<std::byte> stored(SHOW_SHRINK_DATAF& shrink)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(shrink.serialize(ar), 1); });
}

int loadShrink(SHOW_SHRINK_DATAF& shrink, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return shrink.serialize(*archive);
}

int tryLoadShrink(SHOW_SHRINK_DATAF& shrink, std::span<const std::byte> bytes)
{
    try {
        return loadShrink(shrink, bytes);
    } catch (const CArchiveException&) {
        return 0;
    }
}

void expectRefused(const ByteBuilder& bytes, const CString& message)
{
    ScriptedHost host;
    SHOW_SHRINK_DATAF shrink;
    EXPECT_EQ(loadShrink(shrink, bytes.bytes()), 0);
    EXPECT_THAT(host.messages(), ElementsAre(message));
}

TEST(ShrinkRecord, BytesAreTheFieldsAndTwoGuardedBlocks)
{
    SHOW_SHRINK_DATAF shrink = filledShrink();
    EXPECT_TRUE(sameBytes(stored(shrink), filledBytes()));
}

TEST(ShrinkRecord, LoadedBufferHasNoSourceAndLooksNew)
{
    SHOW_SHRINK_DATAF shrink;
    const double source = 1.0;
    shrink.m_pSrcData = &source;
    ASSERT_EQ(loadShrink(shrink, filledBytes().bytes()), 1);
    EXPECT_EQ(shrink.m_pSrcData, nullptr);
    EXPECT_EQ(shrink.m_nSrcSample, 100);
    EXPECT_EQ(shrink.m_dShrinkRatio, 0.2);
    EXPECT_EQ(shrink.m_nDirty, 0);
    EXPECT_EQ(shrink.m_dShrinkRatioUsed, 0.25);
    EXPECT_EQ(shrink.m_nBinSample, 50);
    EXPECT_EQ(shrink.m_nBinCount, 2);
    EXPECT_TRUE(sameBytes(stored(shrink), filledBytes()));
}

TEST(ShrinkRecord, NewBufferIsDirtyAndWritesTwoEmptyGuards)
{
    SHOW_SHRINK_DATAF shrink;
    EXPECT_TRUE(sameBytes(stored(shrink), ByteBuilder().i64(0).f64(0).i32(1).f64(0).i64(0).i64(0).i32(0).i32(0)));
}

TEST(ShrinkRecord, NoBlocksAreTwoGuardsAndEmptyBlocks)
{
    SHOW_SHRINK_DATAF shrink = filledShrink();
    shrink.m_nBinCount = 0;
    EXPECT_TRUE(sameBytes(stored(shrink), fields(0).i32(1).i32(1)));
    ScriptedHost host;
    SHOW_SHRINK_DATAF again;
    EXPECT_EQ(loadShrink(again, fields(0).i32(1).i32(1).bytes()), 1);
    host.expectNoMessages();
}

TEST(ShrinkRecord, LoadingDropsTheArraysThatTheFileLacks)
{
    SHOW_SHRINK_DATAF shrink = filledShrink();
    ASSERT_EQ(loadShrink(shrink, fields(2).i32(0).i32(0).bytes()), 1);
    EXPECT_EQ(shrink.m_pMax, nullptr);
    EXPECT_EQ(shrink.m_pMin, nullptr);
}

TEST(ShrinkRecord, ImpossibleCountsAreRefusedBeforeMemoryIsTaken)
{
    for (const std::int64_t count : {std::int64_t{-1}, std::int64_t{INT32_MAX}, INT64_MAX, INT64_MIN})
        expectRefused(fields(count).i32(1).zeros(16), "Is memory enough?!");
}

TEST(ShrinkRecord, ABlockThatIsNotThereIsTold)
{
    expectRefused(fields(2).i32(1), "Read ShowShrink data error!?");
    expectRefused(fields(2).i32(1).f32(1).f32(2).i32(1), "Read ShowShrink data error!?");
}

TEST(ShrinkRecord, WhatAShortBlockLacksIsZero)
{
    SHOW_SHRINK_DATAF shrink;
    ASSERT_EQ(loadShrink(shrink, fields(2).i32(0).i32(1).f32(3).bytes()), 1);
    EXPECT_EQ(shrink.m_pMin[0], 3.0F);
    EXPECT_EQ(shrink.m_pMin[1], 0.0F);
}

TEST(ShrinkRecord, AllocationFailuresAreTold)
{
    const ByteBuilder bytes = filledBytes();
    const auto tried = forEachAllocationFailure([&] {
        ScriptedHost host;
        SHOW_SHRINK_DATAF shrink;
        if (loadShrink(shrink, bytes.bytes()) == 1)
            host.expectNoMessages();
        else
            EXPECT_THAT(host.messages(), ElementsAre("Is memory enough?!"));
    });
    EXPECT_EQ(tried, 2);
}

TEST(ShrinkRecord, PrefixesAndBitFlipsDoNoHarm)
{
    const ScriptedHost host;
    const std::vector<std::byte> whole = filledBytes().bytes();
    forEachPrefix(whole, [&](std::span<const std::byte> prefix) {
        SHOW_SHRINK_DATAF shrink;
        const bool inLastBlock = prefix.size() > whole.size() - 8;
        EXPECT_EQ(tryLoadShrink(shrink, prefix), inLastBlock ? 1 : 0);
        stored(shrink);
    });
    forEachBitFlip(whole, [](std::span<const std::byte> bytes) {
        SHOW_SHRINK_DATAF shrink;
        tryLoadShrink(shrink, bytes);
        stored(shrink);
    });
}

} // namespace
} // namespace megset::SHOW_SHRINK_DATAF_test
