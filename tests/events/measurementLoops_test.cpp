// Peaks, ranges at a sample, measurement and the order of channels, against plain loops over random channels.
#include "tests/events/measuredDataset.h"
#include "tests/numeric/reference.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace megset::measurementLoops_test {
namespace {

/// Channels of random lengths, kinds and flags; some are missing.
struct RandomTrial
{
    explicit RandomTrial(unsigned seed) : random(seed), m(makeSamples())
    {
        m.data.m_nSelectStart = any(20);
        m.data.m_nSelectEnd = m.data.m_nSelectStart + any(60);
        for (int i = 0; i < channels(); ++i) {
            constexpr int types[] = {100, 103, 10, 302, 303, 600};
            m.channel(i).m_nChannelType = types[random() % 6];
            m.channel(i).m_strChannelName = random() % 2 == 0 ? "MLC1" : "Cz";
            m.data.setShowChnl4Alltrials(i, random() % 4 != 0 ? 1 : 0);
            m.data.setGoodChnl4Alltrials(i, random() % 4 != 0 ? 1 : 0);
        }
        if (random() % 2 == 0)
            trial().m_ppChannel.set(channels() - 1, nullptr);
    }
    CMDTrialzk& trial() { return *m.data.getTrialzk(0); }
    int channels() const { return static_cast<int>(x.size()); }
    bool isThere(int i) { return trial().getChannel(i) != nullptr; }
    std::int64_t any(unsigned below) { return static_cast<std::int64_t>(random() % below); }
    /// The sample, none behind the end.
    const double* at(int i, std::int64_t sample) const
    {
        const auto& samples = x[static_cast<std::size_t>(i)];
        return sample >= 0 && sample < std::ssize(samples) ? &samples[static_cast<std::size_t>(sample)] : nullptr;
    }

    std::mt19937 random;
    std::vector<std::vector<double>> x;
    MeasuredDataset m;

private:
    const std::vector<std::vector<double>>& makeSamples()
    {
        for (unsigned i = 2 + static_cast<unsigned>(random() % 6); i > 0; --i) {
            const std::size_t n = 1 + random() % 90;
            x.push_back(random() % 3 == 0 ? numeric::awkwardSamples(n, static_cast<unsigned>(random()), true)
                                          : numeric::randomSamples(n, static_cast<unsigned>(random())));
        }
        return x;
    }
};

std::int64_t broughtInto(std::int64_t sample, std::int64_t total)
{
    return std::max<std::int64_t>(std::min(sample, total - 1), 0);
}

/// The first channel with the largest |x| in samples begin to end; -1 where none was met.
int peakOf(RandomTrial& t, std::int64_t begin, std::int64_t end, bool visibleOnly)
{
    int winner = -1;
    double largest = 0.0;
    for (int i = 0; i < t.channels(); ++i) {
        if (!t.isThere(i) || (visibleOnly && !t.m.data.isShowChnl4Alltrials(i)))
            continue;
        for (std::int64_t s = begin; s <= end; ++s)
            if (const double* v = t.at(i, s); v != nullptr && (winner < 0 || std::fabs(*v) > largest)) {
                winner = i;
                largest = std::fabs(*v);
            }
    }
    return winner;
}

TEST(MeasurementLoops, ThePeakIsTheFirstStrictlyGreatestValue)
{
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(seed);
        RandomTrial t(seed);
        const std::int64_t total = std::ssize(t.x[0]);
        const std::int64_t begin = t.any(100) - 5;
        const std::int64_t end = begin + t.any(60) - 5;
        const bool visibleOnly = seed % 2 == 0;
        const std::int64_t from = broughtInto(begin == -1 ? t.m.data.m_nSelectStart : begin, total);
        const std::int64_t to = broughtInto(end == -1 ? t.m.data.m_nSelectEnd : end, total);
        const int byName = std::max(peakOf(t, from, to - 1, visibleOnly), 0);
        for (int i = 0; i < t.channels(); ++i)
            if (t.isThere(i))
                t.m.channel(i).m_strChannelName = CString::formatted("N%d", i);
        EXPECT_EQ(t.m.data.findPeakChnl_RN(begin, end, false, visibleOnly), CString::formatted("N%d", byName));
        const int expected = peakOf(t, from, to, visibleOnly);
        EXPECT_EQ(t.m.data.findPeakChnl_RID(begin, end, false, visibleOnly), expected);
        EXPECT_EQ(t.trial().m_nCurrentChannel, std::max(expected, 0));
    }
}

TEST(MeasurementLoops, TheRangeAtASampleIsThatOfTheChannelsThatHaveIt)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        RandomTrial t(seed);
        const std::int64_t sample = t.any(100) - 3;
        const std::int64_t at = sample == -1 ? t.m.data.m_nSelectStart : sample;
        const bool measureOnly = seed % 2 == 0;
        const bool goodOnly = seed % 3 == 0;
        double min = 0.0;
        double max = 0.0;
        bool isFirst = true;
        const bool isInside = t.at(0, at) != nullptr; // of the current channel
        for (int i = 0; isInside && i < t.channels(); ++i) {
            const double* v = t.at(i, at);
            if (v == nullptr || !t.isThere(i) || (goodOnly && !t.m.data.isGoodChnl4Alltrials(i)) ||
                (measureOnly && !t.m.channel(i).isMEGMeasureChannel()))
                continue;
            min = isFirst || *v < min ? *v : min;
            max = isFirst || *v > max ? *v : max;
            isFirst = false;
        }
        EXPECT_EQ(t.m.data.getAllChnlDataRng4SelectPt(sample, t.m.min, t.m.max, measureOnly, goodOnly),
                  isInside ? 1 : 0);
        EXPECT_TRUE(numeric::sameBits(t.m.min, min));
        EXPECT_TRUE(numeric::sameBits(t.m.max, max));
    }
}

TEST(MeasurementLoops, ChannelsAreTakenByKindOrNameAndWhetherTheyAreShown)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        RandomTrial t(seed);
        const bool visibleOnly = t.any(2) == 0;
        const int mode = static_cast<int>(t.any(2));
        const unsigned kind = seed % 4;
        const bool named = kind == 3;
        double min = 0.0, max = 0.0, sum = 0.0, last = 0.0;
        int used = 0;
        for (int i = 0; i < t.channels(); ++i) {
            if (!t.isThere(i) || (visibleOnly && !t.m.data.isShowChnl4Alltrials(i)))
                continue;
            const CMDChannelzk& channel = t.m.channel(i);
            if ((kind == 0 && !channel.isMEGMeasureChannel()) || (kind == 1 && !channel.isEEGMeasureChannel()) ||
                (named && channel.m_strChannelName.Find("LC") < 0))
                continue;
            double low = channel.getCurrentV(t.m.data.m_nSelectStart, t.m.data.m_nSelectEnd);
            double high = low;
            double mean = low;
            double square = low * low;
            if (mode != 0)
                channel.getSelectMinMeaMaxV(t.m.data.m_nSelectStart, t.m.data.m_nSelectEnd, &low, &mean, &high,
                                            &square);
            const bool isFirst = used++ == 0;
            min = isFirst || low < min ? low : min;
            max = isFirst || high > max ? high : max;
            sum += mean;
            last = mode == 0 ? last + square : isFirst || square > last ? square : last;
        }
        EXPECT_EQ(named ? t.m.measureNamed("LC", visibleOnly, mode) : t.m.measureAll(visibleOnly, mode, kind), used);
        const double n = used;
        const std::vector<double> expected = {min, sum / n, max, mode == 0 ? std::sqrt(last / n) : last};
        EXPECT_TRUE(numeric::sameSamples(t.m.results(), used > 0 ? expected : std::vector<double>(4, 0.0)));
    }
}

// ---- order

TEST(MeasurementLoops, ChannelsChangePlacesAsInAList)
{
    std::mt19937 random(43);
    for (int round = 0; round < 300; ++round) {
        const int count = 1 + static_cast<int>(random() % 9);
        CMEGDatazk data;
        ASSERT_EQ(data.initMEGData(1, count, 1), 1);
        CMDTrialzk& trial = *data.getTrialzk(0);
        std::vector<const CMDChannelzk*> order;
        for (int i = 0; i < count; ++i)
            order.push_back(trial.getChannel(i));
        const int from = static_cast<int>(random() % static_cast<unsigned>(count + 2)) - 1;
        const int to = static_cast<int>(random() % static_cast<unsigned>(count + 4)) - 2;
        const int insert = round % 2;
        const int place = std::max(to, 0);
        const bool isThere = from >= 0 && from < count;
        const bool moves = isThere && place != from && place < count;
        if (moves && insert) {
            const CMDChannelzk* moved = order[static_cast<std::size_t>(from)];
            order.erase(order.begin() + from);
            order.insert(order.begin() + place, moved);
        } else if (moves) {
            std::swap(order[static_cast<std::size_t>(from)], order[static_cast<std::size_t>(place)]);
        }
        EXPECT_EQ(data.changeChannelOrderID(from, to, insert, 0), moves || (isThere && place == from) ? 1 : 0);
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(trial.getChannel(i), order[static_cast<std::size_t>(i)]) << from << " to " << to;
        EXPECT_EQ(trial.m_nCurrentChannel, moves ? place : 0);
    }
}

} // namespace
} // namespace megset::measurementLoops_test
