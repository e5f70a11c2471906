// Statistics of all channels of a trial in one go.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include <bit>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace megset::CMDTrial2ProcessStatistics_test {
namespace {

bool sameBits(const ChannelStatistics& a, const ChannelStatistics& b)
{
    const auto bits = [](double v) { return std::bit_cast<std::uint64_t>(v); };
    return a.samples == b.samples && bits(a.min) == bits(b.min) && bits(a.mean) == bits(b.mean) &&
           bits(a.max) == bits(b.max) && bits(a.rms) == bits(b.rms) && bits(a.sd) == bits(b.sd) &&
           bits(a.meanPlus2Sd) == bits(b.meanPlus2Sd);
}

ChannelStatistics statistics(const CMDChannel* channel, std::int64_t from, std::int64_t to)
{
    ChannelStatistics s;
    if (channel != nullptr)
        s.samples = channel->getSelectMinMeaMaxSdV(from, to, &s.min, &s.mean, &s.max, &s.rms, &s.sd, &s.meanPlus2Sd);
    return s;
}

/// Channels of 300 samples of noise; channel 7 has none and channel 12 is absent.
void fill(CMDTrialzk& trial, int channels)
{
    ASSERT_TRUE(trial.m_ppChannel.allocate(channels));
    trial.m_nTotalChannel = channels;
    std::mt19937 random(4);
    std::normal_distribution<double> noise(1.0, 300.0);
    for (int c = 0; c < channels; ++c) {
        std::vector<double> samples(c == 7 ? 0 : 300);
        for (double& v : samples)
            v = noise(random);
        if (c != 12)
            trial.m_ppChannel.set(c, std::make_unique<CMDChannelzk>())->addData(std::ssize(samples), samples.data());
    }
}

TEST(TrialStatistics, AreThoseOfEachChannelInEveryBit)
{
    CMDTrialzk trial;
    fill(trial, 150);
    for (const std::int64_t from : {0, -1, 10, 299, 400}) {
        for (const std::int64_t to : {299, 20, -1, 0}) {
            std::vector<ChannelStatistics> out(150, ChannelStatistics{-1, 1, 1, 1, 1, 1, 1});
            EXPECT_EQ(trial.getAllSelectMinMeaMaxSdV(from, to, out), 150);
            for (int c = 0; c < 150; ++c)
                EXPECT_TRUE(sameBits(out[static_cast<std::size_t>(c)], statistics(trial.getChannel(c), from, to)))
                    << "channel " << c << ", " << from << " to " << to;
        }
    }
}

TEST(TrialStatistics, StopAtTheEndOfTheChannelsOrOfTheResults)
{
    CMDTrialzk trial;
    fill(trial, 20);
    std::vector<ChannelStatistics> out(25, ChannelStatistics{-1, 1, 1, 1, 1, 1, 1});
    EXPECT_EQ(trial.getAllSelectMinMeaMaxSdV(0, 299, out), 20);
    EXPECT_EQ(out[19].samples, 300);
    EXPECT_EQ(out[20].samples, -1);
    out.assign(25, ChannelStatistics{-1, 1, 1, 1, 1, 1, 1});
    EXPECT_EQ(trial.getAllSelectMinMeaMaxSdV(0, 299, std::span(out).first(3)), 3);
    EXPECT_EQ(out[2].samples, 300);
    EXPECT_EQ(out[3].samples, -1);
    EXPECT_EQ(trial.getAllSelectMinMeaMaxSdV(0, 299, {}), 0);
}

TEST(TrialStatistics, OfATrialWithoutChannelsAreNone)
{
    const CMDTrialzk trial;
    std::vector<ChannelStatistics> out(2);
    EXPECT_EQ(trial.getAllSelectMinMeaMaxSdV(0, 1, out), 0);
    EXPECT_EQ(out[0].samples, 0);
}

} // namespace
} // namespace megset::CMDTrial2ProcessStatistics_test
