#include "megset/core/CMDChannelzk.h"

#include "tests/core/channelStates.h"
#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannel7ProcessXResample_test {
namespace {

using ::testing::ElementsAre;
using ::testing::Eq;
using namespace channelStates;

/// Working samples 1, 2, ..., raw samples 101, 102, ...
std::unique_ptr<CMDChannelzk> channelOf(std::int64_t working, std::int64_t raw)
{
    auto channel = std::make_unique<CMDChannelzk>();
    EXPECT_EQ(channel->initDataBk(working, raw, true), 1);
    std::iota(channel->getDataWave(), channel->getDataWave() + working, 1.0);
    std::iota(channel->getBkData(), channel->getBkData() + raw, 101.0);
    return channel;
}

TEST(ChannelResampling, MakesWorkingSamplesFromTheRawOnes)
{
    const auto channel = channelOf(7, 7);
    EXPECT_EQ(channel->reSampleBkData(false, 3, 3), 1);
    EXPECT_THAT(wave(*channel), ElementsAre(101, 104, 107));
    EXPECT_EQ(channel->reSampleBkData(true, 2, 4), 1);
    EXPECT_THAT(wave(*channel), ElementsAre(101.5, 103.5, 105.5, 107));
    EXPECT_EQ(channel->getTotalSample(), 4);
    EXPECT_EQ(backup(*channel), rising(7, 101.0));
}

TEST(ChannelResampling, AFactorBelowTwoCopiesAndRepeatsTheLastSample)
{
    const auto channel = channelOf(3, 3);
    for (const std::int64_t factor : {std::int64_t{1}, std::int64_t{0}, negatives[0], negatives[3]}) {
        EXPECT_EQ(channel->reSampleBkData(true, factor, 4), 1);
        EXPECT_THAT(wave(*channel), ElementsAre(101, 102, 103, 103));
    }
}

TEST(ChannelResampling, KeepsTheWorkingArrayOfTheSameCount)
{
    const auto channel = channelOf(4, 8);
    channel->m_nCurrentSample = 3;
    const double* before = channel->getDataWave();
    FailingAllocator none(1, FailingAllocator::Failing::FromThenOn);
    EXPECT_EQ(channel->reSampleBkData(false, 2, 4), 1);
    EXPECT_EQ(channel->getDataWave(), before);
    EXPECT_EQ(channel->m_nCurrentSample, 3);
    EXPECT_EQ(none.calls(), 0);
}

TEST(ChannelResampling, BringsTheCurrentSampleInside)
{
    const auto channel = channelOf(4, 8);
    channel->m_nCurrentSample = 4;
    EXPECT_EQ(channel->reSampleBkData(false, 2, 4), 1);
    EXPECT_EQ(channel->m_nCurrentSample, 3);
    channel->m_nCurrentSample = -1;
    EXPECT_EQ(channel->reSampleBkData(false, 2, 4), 1);
    EXPECT_EQ(channel->m_nCurrentSample, 0);
}

TEST(ChannelResampling, PassesOverAChannelWithoutRawSamples)
{
    for (const State state : {State::empty, State::workingOnly}) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        EXPECT_EQ(channel.reSampleBkData(false, 2, 4), 1);
        EXPECT_THAT(contents(channel), Eq(before));
    }
}

TEST(ChannelResampling, WorksFromRawSamplesAlone)
{
    CMDChannelzk channel;
    bringInto(channel, State::rawOnly);
    EXPECT_EQ(channel.reSampleBkData(false, 3, 3), 1);
    EXPECT_THAT(wave(channel), ElementsAre(101, 104, 106));
}

TEST(ChannelResampling, LeavesNoWorkingSamplesWhereMemoryEnds)
{
    const auto channel = channelOf(4, 8);
    const ScriptedHost host;
    const FailingAllocator first(1);
    EXPECT_EQ(channel->reSampleBkData(false, 2, 5), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    EXPECT_EQ(channel->getDataWave(), nullptr);
    EXPECT_EQ(channel->getTotalSample(), 0);
    EXPECT_EQ(backup(*channel), rising(8, 101.0));
}

TEST(ChannelResampling, RefusesCountsOutOfAllProportion)
{
    for (const std::int64_t n : {std::int64_t{1} << 34, impossibleCounts[0], impossibleCounts[3]}) {
        const auto channel = channelOf(4, 8);
        const ScriptedHost host;
        EXPECT_EQ(channel->reSampleBkData(false, 1, n), 0);
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    }
}

TEST(ChannelResampling, AveragesRunsThatAreLongerThanTheRawSamples)
{
    const auto channel = channelOf(2, 2);
    EXPECT_EQ(channel->reSampleBkData(true, 4, 2), 1);
    EXPECT_THAT(wave(*channel), ElementsAre((101.0 + 3 * 102.0) / 4, 102));
    EXPECT_EQ(channel->reSampleBkData(true, impossibleCounts[3], 1), 1) << "and ends for a run without end";
    EXPECT_NEAR(wave(*channel)[0], 102, 1e-3);
}

TEST(ChannelResampling, MakesBothArraysFromAnotherChannel)
{
    const auto source = channelOf(7, 8);
    CMDChannelzk channel;
    EXPECT_EQ(channel.reSampleFrom(*source, false, 3), 1);
    EXPECT_THAT(wave(channel), ElementsAre(1, 4, 7));
    EXPECT_THAT(backup(channel), ElementsAre(101, 104, 107));
    EXPECT_EQ(channel.reSampleFrom(*source, true, 3), 1);
    EXPECT_THAT(wave(channel), ElementsAre(2, 5, 7)) << "a run over the end counts the last sample again";
    EXPECT_THAT(backup(channel), ElementsAre(102, 105, (107.0 + 108.0 + 108.0) / 3)) << "of the raw ones, too";
}

TEST(ChannelResampling, LeavesTheLastSampleZeroWhereTheCountDividesByTheFactor)
{
    const auto source = channelOf(6, 4);
    CMDChannelzk channel;
    EXPECT_EQ(channel.reSampleFrom(*source, false, 2), 1);
    EXPECT_THAT(wave(channel), ElementsAre(1, 3, 5, 0));
    EXPECT_THAT(backup(channel), ElementsAre(101, 103, 0));
    EXPECT_EQ(channel.reSampleFrom(*source, true, 2), 1);
    EXPECT_THAT(wave(channel), ElementsAre(1.5, 3.5, 5.5, 0));
    EXPECT_EQ(channel.reSampleFrom(*source, true, 0), 1) << "a factor below 1 counts as 1";
    EXPECT_THAT(wave(channel), ElementsAre(1, 2, 3, 4, 5, 6, 0));
}

/// The copy as it is told: the walk ends when it has passed the samples, and leaves what is behind it at zero.
std::vector<double> copied(const std::vector<double>& x, bool average, std::int64_t factor)
{
    const std::int64_t count = std::ssize(x);
    std::vector<double> to(static_cast<std::size_t>(count / factor + 1), 0.0);
    for (std::int64_t k = 0, s = 0; k < std::ssize(to);) {
        s = std::min(s, count - 1);
        double value = x[static_cast<std::size_t>(s)];
        if (factor >= 2 && average) {
            value = 0.0;
            for (std::int64_t j = 0; j < factor; ++j)
                value += x[static_cast<std::size_t>(std::min(s + j, count - 1))];
            value /= static_cast<double>(factor);
        }
        to[static_cast<std::size_t>(k++)] = value;
        s += factor;
        if (s >= count)
            break;
    }
    return to;
}

TEST(ChannelResampling, OfRandomChannelsIntoAnotherAgreesWithThePlainLoop)
{
    std::mt19937 random(31);
    for (int round = 0; round < 200; ++round) {
        const auto working = numeric::randomSamples(1 + random() % 900, static_cast<unsigned>(random()));
        const auto raw = numeric::randomSamples(1 + random() % 900, static_cast<unsigned>(random()));
        CMDChannelzk source;
        ASSERT_EQ(source.initDataBk(std::ssize(working), std::ssize(raw), true), 1);
        std::copy(working.begin(), working.end(), source.getDataWave());
        std::copy(raw.begin(), raw.end(), source.getBkData());
        const bool average = random() % 2 == 0;
        const auto factor = static_cast<std::int64_t>(1 + random() % (round % 4 == 0 ? 1200 : 12));
        CMDChannelzk channel;
        ASSERT_EQ(channel.reSampleFrom(source, average, factor), 1);
        EXPECT_TRUE(numeric::sameSamples(wave(channel), copied(working, average, factor))) << "by " << factor;
        EXPECT_TRUE(numeric::sameSamples(backup(channel), copied(raw, average, factor))) << "by " << factor;
    }
}

TEST(ChannelResampling, NeedsWorkingAndRawSamplesOfTheOtherChannel)
{
    for (const State state : {State::empty, State::rawOnly, State::workingOnly}) {
        CMDChannelzk source;
        bringInto(source, state);
        const auto channel = channelOf(2, 2);
        const Contents before = contents(*channel);
        EXPECT_EQ(channel->reSampleFrom(source, false, 2), 0);
        EXPECT_THAT(contents(*channel), Eq(before));
    }
    const auto self = channelOf(4, 4);
    EXPECT_EQ(self->reSampleFrom(*self, false, 2), 0);
}

TEST(ChannelResampling, TellsOfMissingMemoryForACopy)
{
    const auto source = channelOf(6, 4);
    const std::int64_t failures = forEachAllocationFailure([&source] {
        const ScriptedHost host;
        CMDChannelzk channel;
        if (channel.reSampleFrom(*source, false, 2))
            return;
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
    });
    EXPECT_EQ(failures, 2);
}

} // namespace
} // namespace megset::CMDChannel7ProcessXResample_test
