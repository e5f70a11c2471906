#include "megset/numeric/channelSums.h"

#include <cmath>

#include "megset/numeric/channelSumsLoops.h"
#include "megset/numeric/processorPath.h"
#include "tests/numeric/reference.h"

namespace megset::numeric::channelSums_test {

namespace {

using Samples = std::vector<double>;

/// The planes in the order of the fields, and the totals.
struct Sums
{
    explicit Sums(std::size_t points, double stale = -7.0) : planes(6, Samples(points, stale)) {}

    ChannelSumPlanes spans() { return {planes[0], planes[1], planes[2], planes[3], planes[4], planes[5]}; }

    std::vector<Samples> planes;
    ChannelSumTotals totals;
};

std::vector<std::span<const double>> spansOf(const std::vector<Samples>& channels)
{
    return {channels.begin(), channels.end()};
}

/// One number over the channels, be it of a point or of the whole, by the formulas as they are told.
struct Reference
{
    double min = 0.0, mean = 0.0, max = 0.0, positive = 0.0, negative = 0.0, rms = 0.0;

    void divide(double n)
    {
        mean /= n;
        positive /= n * 0.5;
        negative /= n * 0.5;
    }
};

Reference pointReference(const std::vector<Samples>& channels, std::size_t i)
{
    Reference r;
    bool first = true;
    for (const Samples& channel : channels) {
        const bool has = i < channel.size();
        const double v = has ? channel[i] : 0.0;
        if (first) {
            r.min = r.mean = r.max = v;
            if (v > 0.0)
                r.positive = v;
            else
                r.negative = v;
            r.rms = v * v;
        } else if (has) {
            if (v < r.min)
                r.min = v;
            if (v > r.max)
                r.max = v;
            r.mean += v;
            if (v > 0.0)
                r.positive += v;
            else
                r.negative += v;
        }
        first = false;
    }
    const auto n = static_cast<double>(channels.size());
    if (channels.size() > 1) {
        r.divide(n);
        r.rms = std::sqrt(r.rms / n);
    }
    return r;
}

Reference totalReference(const std::vector<Samples>& channels, std::size_t points)
{
    Reference r;
    if (!channels.empty() && !channels[0].empty())
        r.min = r.max = channels[0][0];
    for (const Samples& channel : channels) {
        const std::size_t n = std::min(channel.size(), points);
        double sum = 0.0, positive = 0.0, negative = 0.0, square = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            const double v = channel[i];
            if (v < r.min)
                r.min = v;
            if (v > r.max)
                r.max = v;
            sum += v;
            if (v > 0.0)
                positive += v;
            else
                negative += v;
            square += v * v;
        }
        if (n > 0) {
            r.mean += sum / static_cast<double>(n);
            r.positive += positive / static_cast<double>(n);
            r.negative += negative / static_cast<double>(n);
            r.rms += square / static_cast<double>(n);
        }
    }
    const auto n = static_cast<double>(channels.size());
    if (channels.size() > 1) {
        r.divide(n);
        r.rms = std::sqrt(r.rms / (n * 0.5));
    }
    return r;
}

void expectSameSums(Sums& ours, const std::vector<Samples>& channels, const std::string& what)
{
    const std::size_t points = ours.planes[0].size();
    Sums plain(points);
    for (std::size_t i = 0; i < points; ++i) {
        const Reference r = pointReference(channels, i);
        const double values[] = {r.min, r.mean, r.max, r.positive, r.negative, r.rms};
        for (std::size_t p = 0; p < 6; ++p)
            plain.planes[p][i] = values[p];
    }
    for (std::size_t p = 0; p < 6; ++p)
        EXPECT_TRUE(sameSamples(ours.planes[p], plain.planes[p])) << what << ", plane " << p;
    const Reference r = totalReference(channels, points);
    EXPECT_TRUE(sameBits(ours.totals.min, r.min)) << what << ": " << ours.totals.min << " and " << r.min;
    EXPECT_TRUE(sameBits(ours.totals.mean, r.mean)) << what << ": " << ours.totals.mean << " and " << r.mean;
    EXPECT_TRUE(sameBits(ours.totals.max, r.max)) << what << ": " << ours.totals.max << " and " << r.max;
    EXPECT_TRUE(sameBits(ours.totals.positive, r.positive)) << what;
    EXPECT_TRUE(sameBits(ours.totals.negative, r.negative)) << what;
    EXPECT_TRUE(sameBits(ours.totals.rms, r.rms)) << what;
}

/// On every processor path that there is, and by the public function.
void expectPlainBits(const std::vector<Samples>& channels, std::size_t points)
{
    const auto spans = spansOf(channels);
    for (const auto path : {ProcessorPath::Baseline, ProcessorPath::Avx2, ProcessorPath::Avx512}) {
        if (path > currentProcessorPath())
            continue;
        Sums ours(points);
        ours.totals = sumChannels(spans, ours.spans(), channelSumsLoops(path));
        expectSameSums(ours, channels, "path " + std::to_string(static_cast<int>(path)));
    }
    Sums ours(points);
    ours.totals = sumChannels(spans, ours.spans());
    expectSameSums(ours, channels, "public");
}

TEST(ChannelSums, OfTwoChannelsFollowTheWorkedExample)
{
    Sums sums(1);
    sums.totals = sumChannels(spansOf({{2.0}, {4.0}}), sums.spans());
    EXPECT_EQ(sums.planes, (std::vector<Samples>{{2.0}, {3.0}, {4.0}, {6.0}, {0.0}, {std::sqrt(4.0 / 2.0)}}));
    EXPECT_EQ(sums.totals.min, 2.0);
    EXPECT_EQ(sums.totals.mean, 3.0);
    EXPECT_EQ(sums.totals.max, 4.0);
    EXPECT_EQ(sums.totals.positive, 6.0);
    EXPECT_EQ(sums.totals.negative, 0.0);
    EXPECT_EQ(sums.totals.rms, std::sqrt(20.0)); // (4 + 16) / (2 / 2)
}

TEST(ChannelSums, DivideEachSignByHalfOfTheChannels)
{
    Sums sums(1);
    sums.totals = sumChannels(spansOf({{-1.0}, {3.0}}), sums.spans());
    EXPECT_EQ(sums.planes[3], Samples{3.0});
    EXPECT_EQ(sums.planes[4], Samples{-1.0});
    sumChannels(spansOf({{-1.0}, {3.0}, {5.0}, {-3.0}}), sums.spans());
    EXPECT_EQ(sums.planes[3], Samples{4.0});
    EXPECT_EQ(sums.planes[4], Samples{-2.0});
}

TEST(ChannelSums, OfOneChannelAreItsValuesAndSquares)
{
    Sums sums(2);
    sums.totals = sumChannels(spansOf({{-3.0, 4.0}}), sums.spans());
    EXPECT_EQ(sums.planes,
              (std::vector<Samples>{{-3.0, 4.0}, {-3.0, 4.0}, {-3.0, 4.0}, {0.0, 4.0}, {-3.0, 0.0}, {9.0, 16.0}}));
    EXPECT_EQ(sums.totals.mean, 0.5);
    EXPECT_EQ(sums.totals.positive, 2.0);
    EXPECT_EQ(sums.totals.negative, -1.5);
    EXPECT_EQ(sums.totals.rms, 12.5); // the mean square, with no root taken
}

TEST(ChannelSums, TakeTheRootMeanSquareFromTheFirstChannelAlone)
{
    Sums sums(1);
    sumChannels(spansOf({{3.0}, {100.0}, {1000.0}}), sums.spans());
    EXPECT_EQ(sums.planes[5], Samples{std::sqrt(9.0 / 3.0)});
}

TEST(ChannelSums, OfNoChannelAreZero)
{
    Sums sums(3);
    sums.totals = sumChannels({}, sums.spans());
    for (const Samples& plane : sums.planes)
        EXPECT_EQ(plane, Samples(3, 0.0));
    EXPECT_EQ(sums.totals.min, 0.0);
    EXPECT_EQ(sums.totals.max, 0.0);
    EXPECT_EQ(sums.totals.rms, 0.0);
}

TEST(ChannelSums, AgreeWithPlainLoopsForAllLengthsAndNumbersOfChannels)
{
    for (const std::size_t length : lengths) {
        for (const std::size_t count :
             {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{9}, std::size_t{18}}) {
            SCOPED_TRACE(std::to_string(count) + " channels of " + std::to_string(length));
            std::vector<Samples> channels;
            for (std::size_t c = 0; c < count; ++c)
                channels.push_back(randomSamples(length, static_cast<unsigned>(length + c)));
            expectPlainBits(channels, length);
        }
    }
}

TEST(ChannelSums, AgreeWithPlainLoopsForAwkwardValues)
{
    for (const std::size_t length : {std::size_t{5}, std::size_t{64}, std::size_t{1501}}) {
        for (unsigned seed = 0; seed < 12; ++seed) {
            SCOPED_TRACE(std::to_string(length) + " values, seed " + std::to_string(seed));
            std::vector<Samples> channels;
            for (unsigned c = 0; c < 2 + seed; ++c)
                channels.push_back(awkwardSamples(length, 100 * seed + c, seed % 2 == 1));
            expectPlainBits(channels, length);
        }
    }
}

TEST(ChannelSums, StartFromAFirstValueThatIsNoNumber)
{
    expectPlainBits({{std::nan(""), 1.0}, {2.0, 3.0}}, 2);
}

TEST(ChannelSums, TakeChannelsOfUnequalLengthAsFarAsTheyGo)
{
    std::mt19937 random(5);
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        std::vector<Samples> channels;
        for (unsigned c = 0; c < 1 + random() % 20; ++c) {
            const std::size_t length = random() % 3 == 0 ? random() % 2300 : 2200;
            channels.push_back(randomSamples(length, static_cast<unsigned>(random())));
        }
        expectPlainBits(channels, 2200);
    }
}

} // namespace

} // namespace megset::numeric::channelSums_test
