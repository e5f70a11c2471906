// Random ranges blanked, against a walk over the samples of each channel.

#include "tests/processing/resampledDataset.h"

#include "tests/kit/ScriptedHost.h"

#include <random>

#include <gtest/gtest.h>

namespace megset::segmentBlanking_test {
namespace {

using Ranges = std::vector<std::pair<std::int64_t, std::int64_t>>;

/// 0 inside the ranges, or with `hold` the last sample outside, which is 0 before the first.
std::vector<double> blanked(std::vector<double> x, const Ranges& ranges, bool hold)
{
    double held = 0.0;
    for (std::int64_t i = 0; i < std::ssize(x); ++i) {
        bool isInside = false;
        for (const auto& [begin, end] : ranges)
            isInside = isInside ||
                       (i >= std::max<std::int64_t>(begin, 0) && i <= std::min<std::int64_t>(end, std::ssize(x) - 1));
        double& v = x[static_cast<std::size_t>(i)];
        if (isInside)
            v = hold ? held : 0.0;
        else
            held = v;
    }
    return x;
}

/// A trial of channels of these lengths, in memory, and the ranges in its newest selection marker.
struct BlankedTrial
{
    BlankedTrial(const std::vector<std::int64_t>& lengths, const Ranges& ranges)
    {
        EXPECT_EQ(data.initMEGData(1, static_cast<int>(lengths.size()), 1), 1);
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            before.push_back(channelValues(1, static_cast<int>(i), lengths[i]));
            channel(i).addData(lengths[i], before[i].data());
        }
        CMarkerDatazk& marker = addMarker(data.m_mkSelect4Move, {});
        for (const auto& [begin, end] : ranges) {
            MarkTrigClass point;
            point.m_nMarkPtBegin = begin;
            point.m_nMarkPtEnd = end;
            marker.addMarkPt(point);
        }
    }
    CMDChannelzk& channel(std::size_t i) { return *data.getTrialzk(0)->getChannel(static_cast<int>(i)); }
    void expectBlanked(const Ranges& ranges, bool hold)
    {
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(wave(channel(i)), blanked(before[i], ranges, hold)) << "channel " << i;
            EXPECT_EQ(backup(channel(i)), before[i]);
        }
    }

    CMEGDatazk data;
    std::vector<std::vector<double>> before;
};

TEST(BlankedRanges, AreThoseOfAWalkOverTheSamples)
{
    const ScriptedHost host;
    std::mt19937 random(29);
    for (int round = 0; round < 300; ++round) {
        Ranges ranges;
        for (auto i = random() % 7; i > 0; --i) {
            const auto begin = static_cast<std::int64_t>(random() % 90) - 15;
            ranges.emplace_back(begin, begin + static_cast<std::int64_t>(random() % 20) - 3);
        }
        std::vector<std::int64_t> lengths;
        for (auto i = 1 + random() % 3; i > 0; --i)
            lengths.push_back(static_cast<std::int64_t>(1 + random() % 70));
        const int mode = round % 3 - 1; // the mode used last, which holds at first, zeros, and held samples
        SCOPED_TRACE(round);
        BlankedTrial removed(lengths, ranges);
        ASSERT_EQ(removed.data.segmentRemove(round % 2, mode), 1);
        removed.expectBlanked(ranges, mode != 0);

        BlankedTrial repeated(lengths, ranges);
        repeated.data.m_nSegmentCutState = 1;
        repeated.data.m_nSegmentCutNext = mode;
        ASSERT_EQ(repeated.data.segmentRemov4DcOffFilt(repeated.data.getTrialzk(0)), 1);
        repeated.expectBlanked(ranges, mode != 0);
    }
    host.expectNoMessages();
}

} // namespace
} // namespace megset::segmentBlanking_test
