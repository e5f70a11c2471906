// The fast-draw buffer of a channel: when it is built, when it still fits, and the event around work on it.
#include "megset/display/CMDChannel3Show.h"

#include "megset/core/CMDChannelzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <chrono>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannel3Show_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

struct Extremes
{
    std::vector<float> max;
    std::vector<float> min;
};

Extremes extremesOf(const SHOW_SHRINK_DATAF& buffer)
{
    const auto list = [&](const std::unique_ptr<float[]>& values) {
        return values != nullptr ? std::vector<float>(values.get(), values.get() + buffer.m_nBinCount)
                                 : std::vector<float>();
    };
    return {list(buffer.m_pMax), list(buffer.m_pMin)};
}

// The walk over the blocks as it is defined: a sample between two blocks is never looked at.
Extremes plainExtremes(const std::vector<double>& samples, std::size_t block)
{
    Extremes all{std::vector<float>(samples.size() / block, 0.0F), std::vector<float>(samples.size() / block, 0.0F)};
    std::size_t s = 0;
    for (std::size_t i = 0; s + block < samples.size() && i < all.max.size(); ++i, s += block + 1) {
        all.max[i] = all.min[i] = static_cast<float>(samples[s]);
        for (std::size_t k = s + 1; k < s + block; ++k) {
            if (samples[k] < static_cast<double>(all.min[i]))
                all.min[i] = static_cast<float>(samples[k]);
            else if (samples[k] > static_cast<double>(all.max[i]))
                all.max[i] = static_cast<float>(samples[k]);
        }
    }
    return all;
}

class FastDrawBuffer : public ::testing::Test
{
protected:
    // 1, 2, 3 ...
    void fill(std::int64_t count)
    {
        std::vector<double> samples(static_cast<std::size_t>(count));
        std::iota(samples.begin(), samples.end(), 1.0);
        ASSERT_EQ(channel.addData(count, samples.data()), count);
    }
    SHOW_SHRINK_DATAF& buffer() { return *channel.m_pShowShrink; }

    ScriptedHost host;
    CMDChannelzk channel;
};

// ---- the record

TEST_F(FastDrawBuffer, IsMadeOnDemandDirtyAndEmpty)
{
    EXPECT_EQ(channel.getShowShrinkData(0), nullptr);
    const SHOW_SHRINK_DATAF* made = channel.getShowShrinkData(1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(channel.getShowShrinkData(0), made);
    EXPECT_EQ(channel.getShowShrinkData(1), made);
    EXPECT_EQ(made->m_pSrcData, nullptr);
    EXPECT_EQ(made->m_nSrcSample, 0);
    EXPECT_EQ(made->m_dShrinkRatio, 0.0);
    EXPECT_EQ(made->m_nDirty, 1);
    EXPECT_EQ(made->m_dShrinkRatioUsed, 0.0);
    EXPECT_EQ(made->m_nBinSample, 0);
    EXPECT_EQ(made->m_nBinCount, 0);
    EXPECT_EQ(made->m_pMax, nullptr);
    EXPECT_EQ(made->m_pMin, nullptr);
    EXPECT_EQ(channel._cleanShowShrinkData(), 1);
    EXPECT_EQ(channel.getShowShrinkData(0), nullptr);
    EXPECT_EQ(channel._cleanShowShrinkData(), 1);
}

TEST_F(FastDrawBuffer, IsNullWhereMemoryFails)
{
    const FailingAllocator none(1);
    EXPECT_EQ(channel.getShowShrinkData(1), nullptr);
    host.expectNoMessages();
}

// ---- building

TEST_F(FastDrawBuffer, HoldsTheExtremesOfEachBlock)
{
    fill(120);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    EXPECT_EQ(buffer().m_pSrcData, channel.getDataWave());
    EXPECT_EQ(buffer().m_nSrcSample, 120);
    EXPECT_EQ(buffer().m_nBinSample, 10);
    EXPECT_EQ(buffer().m_nBinCount, 12);
    EXPECT_EQ(buffer().m_dShrinkRatio, 0.1);
    EXPECT_EQ(buffer().m_dShrinkRatioUsed, 0.1);
    EXPECT_EQ(buffer().m_nDirty, 0);
    // Blocks begin 11 samples apart, so that only ten of the twelve are reached.
    EXPECT_THAT(extremesOf(buffer()).max, ElementsAre(10, 21, 32, 43, 54, 65, 76, 87, 98, 109, 0, 0));
    EXPECT_THAT(extremesOf(buffer()).min, ElementsAre(1, 12, 23, 34, 45, 56, 67, 78, 89, 100, 0, 0));
}

TEST_F(FastDrawBuffer, EqualsThePlainWalkForAnyRatio)
{
    std::mt19937 random(8);
    std::normal_distribution<double> noise(0.0, 1e4);
    std::vector<double> samples(1003);
    for (double& v : samples)
        v = noise(random);
    ASSERT_EQ(channel.addData(std::ssize(samples), samples.data()), std::ssize(samples));
    for (const double ratio : {0.2, 0.16, 1.0 / 7.0, 0.03, 0.003, 1.0 / 501.0}) {
        SCOPED_TRACE(ratio);
        ASSERT_EQ(channel.checkInitBuf4FastDraw(ratio, 0), 1);
        const auto block = static_cast<std::size_t>(1.0 / ratio);
        const Extremes expected = plainExtremes(samples, block);
        EXPECT_EQ(buffer().m_nBinSample, static_cast<std::int64_t>(block));
        ASSERT_EQ(buffer().m_nBinCount, std::ssize(expected.max));
        EXPECT_THAT(extremesOf(buffer()).max, ElementsAreArray(expected.max));
        EXPECT_THAT(extremesOf(buffer()).min, ElementsAreArray(expected.min));
        EXPECT_EQ(buffer().m_dShrinkRatio, ratio);
        EXPECT_EQ(buffer().m_dShrinkRatioUsed, ratio);
    }
}

TEST_F(FastDrawBuffer, OfAHundredSamplesAtAFifthReachesSixteenOfTwentyBlocks)
{
    fill(100);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.2, 0), 1);
    EXPECT_EQ(buffer().m_nBinSample, 5);
    ASSERT_EQ(buffer().m_nBinCount, 20);
    const Extremes found = extremesOf(buffer());
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(found.min[i], static_cast<float>(6 * i + 1)) << i;
        EXPECT_EQ(found.max[i], static_cast<float>(6 * i + 5)) << i;
    }
    for (std::size_t i = 16; i < 20; ++i) {
        EXPECT_EQ(found.min[i], 0.0F) << i;
        EXPECT_EQ(found.max[i], 0.0F) << i;
    }
}

TEST_F(FastDrawBuffer, IsNeverMadeForFewerThanAHundredSamples)
{
    fill(99);
    for (const int force : {0, 1})
        EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, force), 0);
    EXPECT_EQ(channel.m_pShowShrink, nullptr);
    fill(100);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
}

TEST_F(FastDrawBuffer, IsNeverMadeWithoutWorkingSamples)
{
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 1), 0);
    fill(200);
    channel._cleanTimeDataC(false);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 1), 0);
    channel.m_nTotalSample = 200; // a count without its array, as a file may bring it
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 1), 0);
    EXPECT_EQ(channel.m_pShowShrink, nullptr);
}

TEST_F(FastDrawBuffer, TakesNoRatioAboveAQuarterAndNoBlocksOfFewerThanFiveSamples)
{
    fill(1000);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(std::nextafter(0.25, 1.0), 0), 0);
    EXPECT_EQ(channel.m_pShowShrink, nullptr) << "refused before the record is made";
    for (const double ratio : {0.25, 0.24, std::nextafter(0.2, 1.0)}) {
        for (const int force : {0, 1})
            EXPECT_EQ(channel.checkInitBuf4FastDraw(ratio, force), 0) << ratio; // blocks of 4
        ASSERT_NE(channel.m_pShowShrink, nullptr);
        EXPECT_EQ(buffer().m_nDirty, 1);
        EXPECT_EQ(buffer().m_pMax, nullptr);
    }
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.2, 0), 1);
}

TEST_F(FastDrawBuffer, NeedsTwoBlocks)
{
    fill(1001);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(1.0 / 501.0, 0), 0);
    EXPECT_EQ(buffer().m_nDirty, 1);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(1.0 / 500.0, 0), 1);
    EXPECT_EQ(buffer().m_nBinCount, 2);
}

TEST_F(FastDrawBuffer, RatiosThatGiveNoBlocksGiveNone)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    fill(1000);
    for (const double ratio : {0.0, -0.0, -0.1, -inf, std::nan(""), 1e-300, 5e-324})
        for (const int force : {0, 1})
            EXPECT_EQ(channel.checkInitBuf4FastDraw(ratio, force), 0) << ratio;
    EXPECT_EQ(buffer().m_nDirty, 1);
}

TEST_F(FastDrawBuffer, ThatIsGoodOutlivesARatioThatGivesNone)
{
    fill(1000);
    ASSERT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    for (const double ratio : {0.25, 0.3, 0.0, 1.0 / 501.0})
        EXPECT_EQ(channel.checkInitBuf4FastDraw(ratio, 1), 0) << ratio;
    EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 1);
    EXPECT_EQ(extremesOf(buffer()).max[0], 10.0F);
}

// ---- whether it fits

TEST_F(FastDrawBuffer, IsReadyForItsRatioAndForThoseOfTheSameBlocks)
{
    fill(1000);
    EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 0) << "there is no record";
    channel.getShowShrinkData(1);
    EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 0) << "a new record is dirty";
    ASSERT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 1);
    EXPECT_EQ(channel.isReady4FastBufDraw(0.0999), 1) << "1 / 0.0999 is 10 as well";
    for (const double ratio : {0.09, 0.101, 0.2, 0.0, -0.1, std::nan(""), 1.5})
        EXPECT_EQ(channel.isReady4FastBufDraw(ratio), 0) << ratio;
}

TEST_F(FastDrawBuffer, IsReadyForTheArrayCountAndBlocksThatItWasBuiltFromAlone)
{
    fill(1000);
    const auto readyWith = [this](auto change) {
        EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 1), 1);
        EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 1);
        change(buffer());
        return channel.isReady4FastBufDraw(0.1);
    };
    EXPECT_EQ(readyWith([](SHOW_SHRINK_DATAF& b) { b.m_nDirty = 1; }), 0);
    EXPECT_EQ(readyWith([](SHOW_SHRINK_DATAF& b) { b.m_nDirty = -1; }), 0);
    EXPECT_EQ(readyWith([](SHOW_SHRINK_DATAF& b) { b.m_pSrcData = nullptr; }), 0);
    EXPECT_EQ(readyWith([](SHOW_SHRINK_DATAF& b) { b.m_nSrcSample = 999; }), 0);
    EXPECT_EQ(readyWith([](SHOW_SHRINK_DATAF& b) { b.m_nBinSample = 11; }), 0);
    EXPECT_EQ(readyWith([](SHOW_SHRINK_DATAF& b) { b.m_nBinCount = 99; }), 0);
    EXPECT_EQ(readyWith([](SHOW_SHRINK_DATAF&) {}), 1);
}

TEST_F(FastDrawBuffer, ThatFitsIsKeptUnlessForced)
{
    fill(1000);
    ASSERT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    channel.getDataWave()[3] = 7777.0; // in place: nothing tells that the buffer is stale
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    EXPECT_EQ(buffer().m_pMax[0], 10.0F);
    const float* const max = buffer().m_pMax.get();
    const FailingAllocator counter(0);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 1), 1);
    EXPECT_EQ(buffer().m_pMax[0], 7777.0F);
    EXPECT_EQ(buffer().m_pMax.get(), max) << "arrays of the right length are used again";
    EXPECT_EQ(counter.calls(), 0);
}

TEST_F(FastDrawBuffer, IsBuiltAnewForANewArrayOfTheSameLength)
{
    fill(1000);
    ASSERT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    ASSERT_EQ(channel.setSizeData(1000, new double[1000]()), 1000);
    EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 0);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    EXPECT_THAT(extremesOf(buffer()).max, Each(0.0F));
    EXPECT_EQ(buffer().m_pSrcData, channel.getDataWave());
}

TEST_F(FastDrawBuffer, GetsArraysOfItsLengthWhenSamplesOrBlocksChange)
{
    fill(1000);
    ASSERT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.05, 0), 1);
    EXPECT_EQ(buffer().m_nBinCount, 50);
    fill(2000);
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.05, 0), 1);
    EXPECT_EQ(buffer().m_nBinCount, 100);
    EXPECT_EQ(buffer().m_nSrcSample, 2000);
    EXPECT_EQ(extremesOf(buffer()).max[94], 1994.0F); // 94 x 21 + 20
    EXPECT_EQ(extremesOf(buffer()).max[95], 0.0F);
}

TEST_F(FastDrawBuffer, FromAFileIsGivenAsItIsAndBuiltAnewAtTheFirstCheck)
{
    fill(1000);
    SHOW_SHRINK_DATAF& loaded = *channel.getShowShrinkData(1); // as a record that was stored valid comes back
    loaded.m_nSrcSample = 1000;
    loaded.m_dShrinkRatio = loaded.m_dShrinkRatioUsed = 0.1;
    loaded.m_nDirty = 0;
    loaded.m_nBinSample = 10;
    loaded.m_nBinCount = 100;
    loaded.m_pMax = tryNewZeroArray<float>(100);
    loaded.m_pMin = tryNewZeroArray<float>(100);
    EXPECT_EQ(channel.getShowShrinkData(0), &loaded);
    EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 0) << "its source isn't filed";
    EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    EXPECT_EQ(extremesOf(buffer()).max[0], 10.0F);
    EXPECT_EQ(buffer().m_pSrcData, channel.getDataWave());
}

TEST_F(FastDrawBuffer, IsCheckedWithTheRatioOfItsRecord)
{
    fill(1000);
    EXPECT_EQ(channel.initSetBuf4FastDraw(0), 0);
    EXPECT_EQ(channel.m_pShowShrink, nullptr) << "no record is made for it";
    channel.getShowShrinkData(1);
    EXPECT_EQ(channel.initSetBuf4FastDraw(1), 0) << "the ratio of a new record is 0";
    ASSERT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    channel.getDataWave()[3] = 7777.0;
    EXPECT_EQ(channel.initSetBuf4FastDraw(0), 1);
    EXPECT_EQ(buffer().m_pMax[0], 10.0F);
    EXPECT_EQ(channel.initSetBuf4FastDraw(1), 1);
    EXPECT_EQ(buffer().m_pMax[0], 7777.0F);
}

TEST_F(FastDrawBuffer, WithoutMemoryGivesZeroInSilenceAndIsMadeTheNextTime)
{
    fill(1000);
    const std::int64_t failures = forEachAllocationFailure([this] {
        channel._cleanShowShrinkData();
        if (channel.checkInitBuf4FastDraw(0.1, 0) == 1)
            return;
        EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 0);
        const FailingAllocator none(0);
        EXPECT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
        EXPECT_EQ(extremesOf(buffer()).max[0], 10.0F);
    });
    EXPECT_EQ(failures, 3); // the record and its two arrays
    host.expectNoMessages();
}

TEST_F(FastDrawBuffer, WithoutMemoryForOtherBlocksIsResetAndNoLongerGood)
{
    fill(1000);
    ASSERT_EQ(channel.checkInitBuf4FastDraw(0.1, 0), 1);
    {
        const FailingAllocator first(1);
        EXPECT_EQ(channel.checkInitBuf4FastDraw(0.05, 0), 0);
    }
    EXPECT_EQ(buffer().m_pSrcData, nullptr);
    EXPECT_EQ(buffer().m_nSrcSample, 0);
    EXPECT_EQ(buffer().m_nBinCount, 0);
    EXPECT_EQ(buffer().m_nDirty, 1);
    EXPECT_EQ(buffer().m_dShrinkRatio, 0.0);
    EXPECT_EQ(buffer().m_pMax, nullptr);
    EXPECT_EQ(channel.isReady4FastBufDraw(0.1), 0);
}

// ---- the event around work

TEST(WorkEvent, IsMadeOnDemandAndNotSet)
{
    using namespace std::chrono_literals;
    CMDChannelzk channel;
    EXPECT_EQ(channel.event4WorkEnd(), 0) << "there is none";
    EXPECT_EQ(channel.event4WorkBegin(0), 1);
    EXPECT_EQ(channel.m_pWorkEvent, nullptr);
    EXPECT_EQ(channel.event4WorkBegin(1), 1);
    ASSERT_NE(channel.m_pWorkEvent, nullptr);
    EXPECT_FALSE(channel.m_pWorkEvent->Lock(0ms));
    const CEvent* const made = channel.m_pWorkEvent.get();
    EXPECT_EQ(channel.event4WorkBegin(1), 1);
    EXPECT_EQ(channel.m_pWorkEvent.get(), made);
}

TEST(WorkEvent, IsSetAtTheEndAndResetAtTheNextBeginning)
{
    using namespace std::chrono_literals;
    CMDChannelzk channel;
    channel.event4WorkBegin(1);
    EXPECT_EQ(channel.event4WorkEnd(), 1);
    EXPECT_TRUE(channel.m_pWorkEvent->Lock(0ms));
    EXPECT_FALSE(channel.m_pWorkEvent->Lock(0ms)) << "it lets one waiter through";
    channel.event4WorkEnd();
    EXPECT_EQ(channel.event4WorkBegin(0), 1);
    EXPECT_FALSE(channel.m_pWorkEvent->Lock(0ms));
}

TEST(WorkEvent, WithoutMemoryGivesZero)
{
    CMDChannelzk channel;
    const FailingAllocator first(1);
    EXPECT_EQ(channel.event4WorkBegin(1), 0);
    EXPECT_EQ(channel.m_pWorkEvent, nullptr);
    EXPECT_EQ(channel.event4WorkBegin(1), 1);
}

} // namespace
} // namespace megset::CMDChannel3Show_test
