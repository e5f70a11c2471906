// Ranges of a channel's samples: mean, copy, statistics of one channel and of many, and the chopping to a selection.

#include "tests/core/channelStates.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"

#include <cmath>
#include <initializer_list>
#include <memory>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannelReading_test {
namespace {

using namespace channelStates;
using numeric::sameBits;
using ::testing::ElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr std::int64_t huge = std::int64_t{1} << 61;
constexpr double untouched = -77.25;

// ---- plain references

struct Range
{
    std::int64_t from, to;
};

/// -1 is the current sample, past the end the last one. A first end below the samples is sample 0.
Range resolved(const CMDChannel& channel, std::int64_t from, std::int64_t to)
{
    const std::int64_t total = channel.getTotalSample();
    if (from == -1)
        from = channel.m_nCurrentSample;
    if (from >= total)
        from = total - 1;
    if (to == -1)
        to = channel.m_nCurrentSample;
    if (to >= total)
        to = total - 1;
    // No sample lies before the first one; how far before it an end was doesn't show.
    return {std::max<std::int64_t>(from, 0), std::max<std::int64_t>(to, -1000)};
}

ChannelStatistics referenceStatistics(const CMDChannel& channel, std::int64_t from, std::int64_t to)
{
    const double* x = channel.getDataWave();
    if (x == nullptr || channel.getTotalSample() < 1)
        return {};
    const Range range = resolved(channel, from, to);
    ChannelStatistics s;
    s.min = s.max = x[range.from];
    double sum = x[range.from];
    double squares = x[range.from] * x[range.from];
    s.samples = 1;
    for (std::int64_t i = range.from + 1; i <= range.to; ++i, ++s.samples) {
        if (x[i] < s.min)
            s.min = x[i];
        if (x[i] > s.max)
            s.max = x[i];
        sum += x[i];
        squares += x[i] * x[i];
    }
    if (s.samples == 1) {
        s.mean = s.meanPlus2Sd = sum;
        s.rms = squares;
        return s;
    }
    const double count = static_cast<double>(s.samples);
    s.mean = sum / count;
    s.rms = std::sqrt(squares / count);
    double deviations = 0.0;
    for (std::int64_t i = range.from + 1; i <= range.to; ++i)
        deviations += (x[i] - s.mean) * (x[i] - s.mean);
    s.sd = std::sqrt(deviations / count);
    s.meanPlus2Sd = s.mean + 2 * s.sd;
    return s;
}

/// The table of placements, element by element; samples outside the channel are 0.
std::vector<double> referenceChop(const CMDChannel& channel, std::int64_t size, int mode, Range range)
{
    const auto sample = [&](std::int64_t i) {
        return i >= 0 && i < channel.getTotalSample() ? channel.getDataWave()[i] : 0.0;
    };
    std::vector<double> out(static_cast<std::size_t>(size));
    const auto element = [&](std::int64_t i) -> double& { return out[static_cast<std::size_t>(i)]; };
    if (mode == 1) {
        for (std::int64_t i = 0; i < size; ++i)
            element(i) = range.from + i <= range.to ? sample(range.from + i) : 0.0;
    }
    if (mode == 2) {
        const std::int64_t half = size / 2;
        const std::int64_t mid = (range.to - range.from) / 2;
        for (std::int64_t k = 0; half + k < size; ++k)
            element(half + k) = mid + k <= range.to ? sample(mid + k) : 0.0;
        for (std::int64_t k = 0; half - 1 - k >= 0; ++k)
            element(half - 1 - k) = mid - 1 - k >= range.from ? sample(mid - 1 - k) : 0.0;
    }
    if (mode == 3) {
        for (std::int64_t k = 0; k < size; ++k)
            element(size - 1 - k) = range.to - k >= range.from ? sample(range.to - k) : 0.0;
    }
    return out;
}

// ---- helpers

ChannelStatistics statistics(const CMDChannel& channel, std::int64_t from, std::int64_t to)
{
    ChannelStatistics s;
    s.samples = channel.getSelectMinMeaMaxSdV(from, to, &s.min, &s.mean, &s.max, &s.rms, &s.sd, &s.meanPlus2Sd);
    return s;
}

void expectSame(const ChannelStatistics& a, const ChannelStatistics& b)
{
    EXPECT_EQ(a.samples, b.samples);
    EXPECT_TRUE(sameBits(a.min, b.min)) << a.min << " and " << b.min;
    EXPECT_TRUE(sameBits(a.mean, b.mean)) << a.mean << " and " << b.mean;
    EXPECT_TRUE(sameBits(a.max, b.max)) << a.max << " and " << b.max;
    EXPECT_TRUE(sameBits(a.rms, b.rms)) << a.rms << " and " << b.rms;
    EXPECT_TRUE(sameBits(a.sd, b.sd)) << a.sd << " and " << b.sd;
    EXPECT_TRUE(sameBits(a.meanPlus2Sd, b.meanPlus2Sd)) << a.meanPlus2Sd << " and " << b.meanPlus2Sd;
}

std::unique_ptr<CMDChannelzk> channelOf(const std::vector<double>& samples)
{
    auto channel = std::make_unique<CMDChannelzk>();
    channel->addData(static_cast<std::int64_t>(samples.size()), samples.data());
    return channel;
}

std::vector<double> noise(std::size_t n, unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> value(3.0, 500.0);
    std::vector<double> samples(n);
    for (double& v : samples)
        v = value(random);
    return samples;
}

/// Ends around the samples, the -1 that stands for the current one, and far outside.
std::vector<std::int64_t> ends(std::int64_t total)
{
    return {0,
            1,
            2,
            total / 2,
            total - 1,
            total,
            total + 5,
            huge,
            -1,
            -2,
            -total,
            -huge,
            std::numeric_limits<std::int64_t>::max(),
            std::numeric_limits<std::int64_t>::min()};
}

template <class Body>
void forEachRange(CMDChannel& channel, Body body)
{
    const std::int64_t total = channel.getTotalSample();
    for (const std::int64_t current : {std::int64_t{0}, total / 3, total - 1}) {
        channel.m_nCurrentSample = current;
        for (const std::int64_t from : ends(total)) {
            for (const std::int64_t to : ends(total)) {
                SCOPED_TRACE(::testing::Message() << from << " to " << to << ", current " << current);
                body(from, to);
            }
        }
    }
}

// ---- mean and copy

TEST(ChannelReading, GetCurrentVGivesTheMeanOfTheRange)
{
    const auto channel = channelOf({1.0, 2.0, 4.0, 9.0});
    EXPECT_EQ(channel->getCurrentV(0, 3), 4.0);
    EXPECT_EQ(channel->getCurrentV(1, 2), 3.0);
    EXPECT_EQ(channel->getCurrentV(2, 2), 4.0);
    EXPECT_EQ(channel->getCurrentV(2, 1), 0.0);
}

TEST(ChannelReading, GetCurrentVOfMinus1IsTheCurrentSample)
{
    const auto channel = channelOf({1.0, 2.0, 4.0, -0.0});
    EXPECT_EQ(channel->getCurrentV(-1, -1), 1.0);
    channel->m_nCurrentSample = 2;
    EXPECT_EQ(channel->getCurrentV(-1, -1), 4.0);
    EXPECT_EQ(channel->getCurrentV(0, -1), 7.0 / 3.0);
    EXPECT_EQ(channel->getCurrentV(-1, 3), 2.0);
    channel->m_nCurrentSample = 3;
    EXPECT_TRUE(sameBits(channel->getCurrentV(-1, -1), -0.0));
}

TEST(ChannelReading, ACurrentSampleOutsideIsBroughtInsideForReading)
{
    const auto channel = channelOf({1.0, 2.0, 4.0});
    for (const std::int64_t current : {std::int64_t{3}, huge}) {
        channel->m_nCurrentSample = current;
        EXPECT_EQ(channel->getCurrentV(-1, -1), 4.0);
    }
    for (const std::int64_t current : negatives) {
        channel->m_nCurrentSample = current;
        EXPECT_EQ(channel->getCurrentV(-1, -1), 1.0);
    }
}

TEST(ChannelReading, EndsPastTheLastSampleMeanTheLastSample)
{
    const auto channel = channelOf({1.0, 2.0, 4.0});
    EXPECT_EQ(channel->getCurrentV(3, 3), 4.0);
    EXPECT_EQ(channel->getCurrentV(1, huge), 3.0);
    EXPECT_EQ(channel->getCurrentV(huge, huge), 4.0);
    EXPECT_EQ(channel->getCurrentV(huge, 1), 0.0);
}

TEST(ChannelReading, OtherNegativeEndsMakeARangeReversedOrBeginAtItsFirstSample)
{
    const auto channel = channelOf({1.0, 2.0, 4.0});
    EXPECT_EQ(channel->getCurrentV(0, -2), 0.0);
    EXPECT_EQ(channel->getCurrentV(-5, -3), 0.0);
    EXPECT_EQ(channel->getCurrentV(-5, 1), 1.5);
    EXPECT_EQ(statistics(*channel, 1, -2).samples, 1);
    EXPECT_EQ(statistics(*channel, 1, -2).mean, 2.0);
}

TEST(ChannelReading, GetCurrentVEqualsTheSequentialSumOverTheCount)
{
    const auto channel = channelOf(noise(203, 5));
    forEachRange(*channel, [&](std::int64_t from, std::int64_t to) {
        const Range range = resolved(*channel, from, to);
        double sum = 0.0;
        std::int64_t count = 0;
        for (std::int64_t i = range.from; i <= range.to; ++i, ++count)
            sum += channel->getDataWave()[i];
        EXPECT_EQ(channel->getCurrentV(from, to), count >= 2 ? sum / static_cast<double>(count) : sum);
    });
}

TEST(ChannelReading, GetSelectDataCopiesTheRangeAndGivesItsLength)
{
    const auto channel = channelOf(noise(40, 6));
    forEachRange(*channel, [&](std::int64_t from, std::int64_t to) {
        const Range range = resolved(*channel, from, to);
        const std::int64_t count = std::max<std::int64_t>(range.to - range.from + 1, 0);
        std::vector<double> out(static_cast<std::size_t>(count) + 1, untouched);
        double* target = out.data();
        EXPECT_EQ(channel->getSelectData(target, from, to), count);
        EXPECT_EQ(target, out.data());
        for (std::int64_t i = 0; i < count; ++i)
            EXPECT_EQ(out[static_cast<std::size_t>(i)], channel->getDataWave()[range.from + i]);
        EXPECT_EQ(out.back(), untouched);
    });
}

TEST(ChannelReading, GetSelectDataWithoutTargetGives0)
{
    const auto channel = channelOf({1.0, 2.0});
    double* target = nullptr;
    EXPECT_EQ(channel->getSelectData(target, 0, 1), 0);
    EXPECT_EQ(target, nullptr);
}

TEST(ChannelReading, GetSelectDataMayCopyWithinTheChannelsOwnSamples)
{
    const auto channel = channelOf({1.0, 2.0, 3.0, 4.0});
    double* target = channel->getDataWave();
    EXPECT_EQ(channel->getSelectData(target, 1, 3), 3);
    EXPECT_THAT(contents(*channel).wave, ElementsAre(2, 3, 4, 4));
    target = channel->getDataWave() + 1;
    EXPECT_EQ(channel->getSelectData(target, 0, 2), 3);
    EXPECT_THAT(contents(*channel).wave, ElementsAre(2, 2, 3, 4));
}

TEST(ChannelReading, ChannelsWithoutWorkingSamplesGive0AndTouchNoResult)
{
    for (const State state : {State::empty, State::rawOnly}) {
        CMDChannelzk channel;
        bringInto(channel, state);
        double a = untouched, b = untouched, c = untouched, d = untouched, e = untouched, f = untouched;
        for (const std::int64_t end : ends(6)) {
            double* target = &a;
            EXPECT_EQ(channel.getCurrentV(0, end), 0.0);
            EXPECT_EQ(channel.getCurrentV(end, -1), 0.0);
            EXPECT_EQ(channel.getSelectData(target, 0, end), 0);
            EXPECT_EQ(channel.getSelectMinMeaMaxV(end, end, &a, &b, &c, &d), 0);
            EXPECT_EQ(channel.getSelectMinMeaMaxSdV(0, end, &a, &b, &c, &d, &e, &f), 0);
        }
        for (const double value : {a, b, c, d, e, f})
            EXPECT_EQ(value, untouched);
    }
}

TEST(ChannelReading, AChannelWithWorkingSamplesAloneOrAnotherBackupIsReadAsAnyOther)
{
    for (const State state : {State::ready, State::workingOnly, State::longerBackup, State::shorterBackup}) {
        CMDChannelzk channel;
        bringInto(channel, state);
        EXPECT_EQ(channel.getCurrentV(0, 100), 3.5) << state;
        EXPECT_EQ(channel.getCurrentV(-1, -1), 5.0) << state;
        EXPECT_EQ(statistics(channel, 0, 100).samples, 6) << state;
    }
}

// ---- statistics

TEST(ChannelReading, StatisticsByHand)
{
    const auto channel = channelOf({2.0, 4.0, -1.0, 3.0});
    double min = 0, mean = 0, max = 0, meanSquare = 0;
    EXPECT_EQ(channel->getSelectMinMeaMaxV(0, 3, &min, &mean, &max, &meanSquare), 4);
    EXPECT_EQ(min, -1.0);
    EXPECT_EQ(mean, 2.0);
    EXPECT_EQ(max, 4.0);
    EXPECT_EQ(meanSquare, 7.5);
    const ChannelStatistics s = statistics(*channel, 0, 3);
    EXPECT_EQ(s.rms, std::sqrt(7.5));
    EXPECT_EQ(s.sd, std::sqrt(14.0 / 4.0)); // of 4, -1 and 3 around 2, over four samples
    EXPECT_EQ(s.meanPlus2Sd, 2.0 + 2.0 * s.sd);
}

TEST(ChannelReading, TheFirstSampleIsLeftOutOfTheDeviation)
{
    const auto channel = channelOf({9.0, 1.0});
    EXPECT_EQ(statistics(*channel, 0, 1).sd, std::sqrt(16.0 / 2.0));
}

TEST(ChannelReading, TheFourthResultOfASingleSampleIsItsPlainSquare)
{
    const auto channel = channelOf({2.0, -3.0, 5.0});
    double meanSquare = 0;
    EXPECT_EQ(channel->getSelectMinMeaMaxV(1, 1, nullptr, nullptr, nullptr, &meanSquare), 1);
    EXPECT_EQ(meanSquare, 9.0);
    const ChannelStatistics s = statistics(*channel, 1, 1);
    expectSame(s, {1, -3.0, -3.0, -3.0, 9.0, 0.0, -3.0});
}

TEST(ChannelReading, AReversedRangeHasOneSample)
{
    const auto channel = channelOf({2.0, -3.0, 5.0});
    double min = 0, mean = 0, max = 0, meanSquare = 0;
    EXPECT_EQ(channel->getSelectMinMeaMaxV(2, 0, &min, &mean, &max, &meanSquare), 1);
    EXPECT_EQ(min, 5.0);
    EXPECT_EQ(mean, 5.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(meanSquare, 25.0);
    expectSame(statistics(*channel, 2, 0), {1, 5.0, 5.0, 5.0, 25.0, 0.0, 5.0});
}

TEST(ChannelReading, StatisticsEqualThePlainLoopsInEveryBit)
{
    for (const std::size_t n : std::initializer_list<std::size_t>{1, 2, 3, 17, 300, 2500}) {
        const auto channel = channelOf(noise(n, static_cast<unsigned>(n)));
        forEachRange(*channel, [&](std::int64_t from, std::int64_t to) {
            const ChannelStatistics expected = referenceStatistics(*channel, from, to);
            expectSame(statistics(*channel, from, to), expected);
            double min = 0, mean = 0, max = 0, meanSquare = 0;
            EXPECT_EQ(channel->getSelectMinMeaMaxV(from, to, &min, &mean, &max, &meanSquare), expected.samples);
            EXPECT_TRUE(sameBits(min, expected.min) && sameBits(mean, expected.mean) && sameBits(max, expected.max));
            EXPECT_TRUE(sameBits(expected.samples > 1 ? std::sqrt(meanSquare) : meanSquare, expected.rms));
        });
    }
}

TEST(ChannelReading, StatisticsOfNanAndInfinitiesEqualThePlainLoops)
{
    const double nan = std::nan("");
    const std::vector<std::vector<double>> cases = {{nan, 1.0, 2.0},
                                                    {1.0, nan, 2.0},
                                                    {nan},
                                                    {infinity, 1.0},
                                                    {-infinity, 1.0},
                                                    {infinity, -infinity, 1.0},
                                                    {1e200, -1e200, 1e300},
                                                    {0.0, -0.0, -0.0},
                                                    {-0.0, -0.0},
                                                    {-0.0},
                                                    {infinity},
                                                    {5e-324, 5e-324}};
    for (const auto& samples : cases) {
        const auto channel = channelOf(samples);
        for (std::int64_t from = 0; from < std::ssize(samples); ++from)
            for (std::int64_t to = from; to < std::ssize(samples); ++to)
                expectSame(statistics(*channel, from, to), referenceStatistics(*channel, from, to));
    }
}

TEST(ChannelReading, EachResultGoesOnlyToAPointerThatIsThere)
{
    const auto channel = channelOf(noise(10, 1));
    const ChannelStatistics all = statistics(*channel, 2, 7);
    for (unsigned asked = 0; asked < 64; ++asked) {
        std::array<double, 6> out;
        out.fill(untouched);
        const auto place = [&](std::size_t i) { return (asked >> i & 1U) != 0 ? &out[i] : nullptr; };
        EXPECT_EQ(channel->getSelectMinMeaMaxSdV(2, 7, place(0), place(1), place(2), place(3), place(4), place(5)), 6);
        const std::array expected = {all.min, all.mean, all.max, all.rms, all.sd, all.meanPlus2Sd};
        for (std::size_t i = 0; i < 6; ++i)
            EXPECT_EQ(out[i], place(i) != nullptr ? expected[i] : untouched);
        if (asked < 16) {
            EXPECT_EQ(channel->getSelectMinMeaMaxV(2, 7, place(0), place(1), place(2), place(3)), 6);
            EXPECT_TRUE(place(3) == nullptr || std::sqrt(out[3]) == all.rms);
        }
    }
}

TEST(ChannelReading, StatisticsOfManyChannelsEqualThoseOfEachInEveryBit)
{
    std::vector<std::unique_ptr<CMDChannelzk>> channels;
    for (unsigned c = 0; c < 131; ++c) {
        channels.push_back(channelOf(noise(c % 10 == 3 ? 0 : 200 + c % 3, c)));
        channels.back()->m_nCurrentSample = c % 150;
    }
    channels[5] = nullptr;
    channels[9] = channelOf({std::nan(""), 1.0, infinity});
    std::vector<const CMDChannel*> all;
    for (const auto& channel : channels)
        all.push_back(channel.get());
    const auto expectAll = [&](std::int64_t from, std::int64_t to) {
        std::vector<ChannelStatistics> out(all.size(), ChannelStatistics{-1, 1, 1, 1, 1, 1, 1});
        CMDChannel::getSelectMinMeaMaxSdV(all, from, to, out);
        for (std::size_t c = 0; c < all.size(); ++c) {
            SCOPED_TRACE(::testing::Message() << "channel " << c << ", " << from << " to " << to);
            expectSame(out[c], all[c] != nullptr ? referenceStatistics(*all[c], from, to) : ChannelStatistics());
        }
    };
    for (const std::int64_t from : ends(200))
        for (const std::int64_t to :
             {std::int64_t{0}, std::int64_t{64}, std::int64_t{199}, huge, std::int64_t{-1}, -huge})
            expectAll(from, to);
}

TEST(ChannelReading, StatisticsOfManyChannelsStopAtTheShorterList)
{
    const auto channel = channelOf({1.0, 3.0});
    const std::vector<const CMDChannel*> two = {channel.get(), channel.get()};
    std::vector<ChannelStatistics> out(3);
    CMDChannel::getSelectMinMeaMaxSdV(two, 0, 1, std::span(out).first(1));
    EXPECT_EQ(out[0].mean, 2.0);
    EXPECT_EQ(out[1].samples, 0);
    CMDChannel::getSelectMinMeaMaxSdV(two, 0, 1, out);
    EXPECT_EQ(out[1].mean, 2.0);
    EXPECT_EQ(out[2].samples, 0);
    CMDChannel::getSelectMinMeaMaxSdV({}, 0, 1, out);
}

// ---- chopping

TEST(ChannelChopping, LeftAlignedByHand)
{
    const auto channel = channelOf(rising(6, 1.0));
    channel->m_nCurrentSample = 4;
    EXPECT_EQ(channel->chopSize4Select(5, 1, 2, 4), 1);
    EXPECT_EQ(contents(*channel), readyWith({3.0, 4.0, 5.0, 0.0, 0.0}));
}

TEST(ChannelChopping, CentredOnASampleCountedFromTheFirstOneNotFromTheRange)
{
    const auto whole = channelOf(rising(6, 1.0));
    EXPECT_EQ(whole->chopSize4Select(8, 2, 0, 5), 1); // sample 2 goes to element 4
    EXPECT_EQ(contents(*whole), readyWith({0.0, 0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0}));

    const auto later = channelOf(rising(6, 1.0));
    EXPECT_EQ(later->chopSize4Select(4, 2, 3, 5), 1); // sample 1 goes to element 2, though the range begins at 3
    EXPECT_EQ(contents(*later), readyWith({0.0, 0.0, 2.0, 3.0}));
}

TEST(ChannelChopping, RightAlignedByHand)
{
    const auto longer = channelOf(rising(6, 1.0));
    EXPECT_EQ(longer->chopSize4Select(5, 3, 2, 4), 1);
    EXPECT_EQ(contents(*longer), readyWith({0.0, 0.0, 3.0, 4.0, 5.0}));
    const auto shorter = channelOf(rising(6, 1.0));
    EXPECT_EQ(shorter->chopSize4Select(2, 3, 0, 4), 1);
    EXPECT_EQ(contents(*shorter), readyWith({4.0, 5.0}));
}

TEST(ChannelChopping, OtherModesGiveZeros)
{
    for (const int mode : {0, 4, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        const auto channel = channelOf(rising(6, 1.0));
        EXPECT_EQ(channel->chopSize4Select(3, mode, 0, 5), 1);
        EXPECT_EQ(contents(*channel), readyWith({0.0, 0.0, 0.0}));
    }
}

TEST(ChannelChopping, EqualsTheTableForEveryRangeAndNeverReadsOutside)
{
    const auto source = channelOf(noise(11, 8));
    for (const int mode : {1, 2, 3}) {
        for (const std::int64_t size : {1, 2, 5, 10, 11, 12, 40}) {
            forEachRange(*source, [&](std::int64_t from, std::int64_t to) {
                SCOPED_TRACE(::testing::Message() << "mode " << mode << ", size " << size);
                const auto channel = channelOf(contents(*source).wave);
                channel->m_nCurrentSample = source->m_nCurrentSample;
                const Range range = resolved(*source, from, to);
                EXPECT_EQ(channel->chopSize4Select(size, mode, from, to), 1);
                EXPECT_EQ(contents(*channel), readyWith(referenceChop(*source, size, mode, range)));
            });
        }
    }
}

TEST(ChannelChopping, TakesTheWorkingSamplesInEveryStateThatHasThem)
{
    for (const State state : {State::ready, State::workingOnly, State::longerBackup, State::shorterBackup}) {
        CMDChannelzk channel;
        bringInto(channel, state);
        EXPECT_EQ(channel.chopSize4Select(4, 1, 1, 2), 1);
        EXPECT_EQ(contents(channel), readyWith({2.0, 3.0, 0.0, 0.0})) << state;
    }
}

TEST(ChannelChopping, AnEmptyChannelBecomesOneOfZeros)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.chopSize4Select(3, 1, 0, 2), 1);
    EXPECT_EQ(contents(channel), readyWith({0.0, 0.0, 0.0}));
}

TEST(ChannelChopping, RawSamplesAloneAreNotLost)
{
    CMDChannelzk channel;
    bringInto(channel, State::rawOnly);
    const Contents before = contents(channel);
    EXPECT_EQ(channel.chopSize4Select(3, 1, 0, 2), 0);
    EXPECT_EQ(contents(channel), before);
}

TEST(ChannelChopping, ASizeOfNothingGives1AndChangesNothing)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        EXPECT_EQ(channel.chopSize4Select(0, 1, 0, 2), 1);
        for (const std::int64_t n : negatives)
            EXPECT_EQ(channel.chopSize4Select(n, 1, 0, 2), 1);
        EXPECT_EQ(contents(channel), before) << state;
    }
}

TEST(ChannelChopping, WithoutMemoryForEitherArrayTheSamplesStay)
{
    ScriptedHost host;
    CMDChannelzk channel;
    bringInto(channel, State::longerBackup);
    const Contents before = contents(channel);
    const std::int64_t failures = forEachAllocationFailure([&] {
        host.clearRecord();
        if (channel.chopSize4Select(4, 1, 0, 5) == 0) {
            EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!?"));
            EXPECT_EQ(contents(channel), before);
        }
    });
    EXPECT_EQ(failures, 2);
    EXPECT_EQ(contents(channel), readyWith({1.0, 2.0, 3.0, 4.0}));
    for (const std::int64_t n : impossibleCounts) {
        host.clearRecord();
        EXPECT_EQ(channel.chopSize4Select(n, 2, 0, 5), 0);
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!?"));
    }
    EXPECT_EQ(contents(channel), readyWith({1.0, 2.0, 3.0, 4.0}));
}

} // namespace
} // namespace megset::CMDChannelReading_test
