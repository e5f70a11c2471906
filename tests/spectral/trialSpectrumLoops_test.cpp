// Selections and ranges of a trial's spectra, and its normalisations, against plain loops over random planes.

#include "tests/spectral/planes.h"

#include <iterator>
#include <utility>

namespace megset::trialSpectrumLoops_test {
namespace {

struct Bounds
{
    std::int64_t t0, t1, f0, f1;
};

constexpr SampleArray CSumChnlSpctmData::*sumPlanes[] = {
    &CSumChnlSpctmData::m_pSumMean,     &CSumChnlSpctmData::m_pSumMin,      &CSumChnlSpctmData::m_pSumMax,
    &CSumChnlSpctmData::m_pSumPositive, &CSumChnlSpctmData::m_pSumNegative, &CSumChnlSpctmData::m_pSumRms};

/// The clamp of the readers, as it is told.
Bounds clampedAsTold(Bounds b, Shape shape)
{
    const auto clamp = [](std::int64_t& index, std::int64_t limit) {
        index = std::min(std::max<std::int64_t>(index, 0), limit - 1);
    };
    clamp(b.t0, shape.nTimePt);
    clamp(b.t1, shape.nTimePt);
    clamp(b.f1, shape.nFreqPt);
    b.f0 = std::max<std::int64_t>(b.f0, 0);
    if (b.f0 >= shape.nFreqPt)
        b.t1 = shape.nFreqPt - 1;
    return b;
}

class TrialSpectrumLoops : public SpectralTrial
{
protected:
    TrialSpectrumLoops() { makeChannels(4); }

    /// A class and a sum plane of that shape, which all sources have in turn.
    void useSum(Shape shape, int source, const Values& x)
    {
        makeClass(shape.nTimePt, shape.nFreqPt);
        fillSum(sumPlanes[source - 1], x, R, shape.nTimePt, shape.nFreqPt);
    }
    std::int64_t between(std::int64_t low, std::int64_t high)
    {
        return low + static_cast<std::int64_t>(random() % static_cast<unsigned>(high - low + 1));
    }
    // Around the plane, without the -1 that stands for the selection.
    std::int64_t index(std::int64_t limit)
    {
        const std::int64_t i = between(-3, limit + 2);
        return i == -1 ? 0 : i;
    }
    Bounds bounds(Shape shape)
    {
        Bounds b{};
        b.t0 = index(shape.nTimePt);
        b.t1 = index(shape.nTimePt);
        b.f0 = index(shape.nFreqPt);
        b.f1 = index(shape.nFreqPt);
        return b;
    }
    CSumChnlSpctmDatazk& sums(int type = R) { return *spectrum->getSumChnlSpctmData(type); }

    std::mt19937 random{41};
};

TEST_F(TrialSpectrumLoops, SumPlanesAreReadByTheLoopOfAChannel)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 30; ++seed) {
            const int source = static_cast<int>(1 + seed % 6);
            const Values x = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            useSum(shape, source, x);
            const Bounds wanted = bounds(shape);
            const Bounds b = clampedAsTold(wanted, shape);
            Values read(4, 7.0); // minimum, mean, maximum, root mean square
            Values expected = read;
            std::int64_t count = 0;
            for (std::int64_t t = b.t0; t <= b.t1; ++t)
                for (std::int64_t f = b.f0; f <= b.f1; ++f) {
                    const double v = x[shape.at(t, f)];
                    if (count++ == 0) {
                        expected = {v, v, v, v * v};
                        continue;
                    }
                    expected[0] = v < expected[0] ? v : expected[0];
                    expected[1] += v;
                    expected[2] = v > expected[2] ? v : expected[2];
                    expected[3] += v * v;
                }
            if (count > 1) {
                expected[1] /= static_cast<double>(count);
                expected[3] = std::sqrt(expected[3] / static_cast<double>(count));
            }
            EXPECT_EQ(trial.getSelectSpctmValueMMMR(source, active, R, 0, wanted.t0, wanted.t1, wanted.f0, wanted.f1,
                                                    read[0], read[1], read[2], read[3]),
                      1);
            EXPECT_TRUE(numeric::sameSamples(read, expected));

            CString text = CString::formatted("X->Time %I64d   Y-Frequency %I64d \n", b.t1 - b.t0 + 1, b.f1 - b.f0 + 1);
            for (std::int64_t f = b.f1; f >= b.f0; --f) {
                for (std::int64_t t = b.t0; t <= b.t1; ++t)
                    text += CString::formatted("%f ", x[shape.at(t, f)]);
                text += "\n";
            }
            EXPECT_EQ(trial.getSelectSpctmValue2Txt(source, active, R, 0, wanted.t0, wanted.t1, wanted.f0, wanted.f1),
                      text);
        }
}

TEST_F(TrialSpectrumLoops, AChannelsTextIsThatOfItsPlane)
{
    for (const Shape shape : {Shape{1, 1}, Shape{4, 3}, Shape{3, 5}})
        for (unsigned seed = 0; seed < 20; ++seed) {
            const Values x = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            makeClass(shape.nTimePt, shape.nFreqPt);
            setPlane(channel(2), R, shape.nTimePt, shape.nFreqPt, x);
            useSum(shape, 1, x);
            const Bounds b = bounds(shape);
            EXPECT_EQ(trial.getSelectSpctmValue2Txt(0, active, R, 2, b.t0, b.t1, b.f0, b.f1),
                      trial.getSelectSpctmValue2Txt(1, active, R, 0, b.t0, b.t1, b.f0, b.f1));
        }
}

TEST_F(TrialSpectrumLoops, TheMeanOfASumPlaneIsNotClamped)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 30; ++seed) {
            const int source = static_cast<int>(1 + seed % 6);
            const Values x = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            useSum(shape, source, x);
            const Bounds b = bounds(shape);
            double sum = 0.0;
            std::int64_t count = 0;
            for (std::int64_t t = std::max<std::int64_t>(b.t0, 0); t <= std::min(b.t1, shape.nTimePt - 1); ++t)
                for (std::int64_t f = std::max<std::int64_t>(b.f0, 0); f <= std::min(b.f1, shape.nFreqPt - 1); ++f) {
                    sum += x[shape.at(t, f)];
                    ++count;
                }
            double value = 7.0;
            std::int64_t counted = 7;
            EXPECT_EQ(trial.getSelectSpctmValueX_PhyVirt(source, 0, b.t0, b.t1, b.f0, b.f1, value, counted, active, R),
                      count);
            EXPECT_EQ(counted, count);
            EXPECT_TRUE(numeric::sameBits(value, count > 0 ? sum / static_cast<double>(count) : 0.0));
        }
}

TEST_F(TrialSpectrumLoops, ProfilesOfSumPlanesGoOverTheirTimes)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 24; ++seed) {
            const int mode = static_cast<int>(1 + seed % 6);
            const int source = static_cast<int>(1 + seed / 4);
            const Values x = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            useSum(shape, source, x);
            const Bounds wanted = bounds(shape);
            Bounds b = clampedAsTold(wanted, shape);
            const bool fails = b.t1 < b.t0 || b.f1 - b.f0 + 1 < 0;
            const auto n = static_cast<double>(b.t1 - b.t0 + 1);
            if (mode > 3)
                b = {0, shape.nTimePt - 1, 0, shape.nFreqPt - 1};
            Values expected(static_cast<std::size_t>(shape.nFreqPt) + 2, 7.0);
            const std::int64_t most = between(0, shape.nFreqPt);
            for (std::int64_t f = b.f0; !fails && f <= b.f1 && f - b.f0 < most; ++f) {
                double y = 0.0;
                for (std::int64_t t = b.t0; t <= b.t1; ++t) {
                    const double v = x[shape.at(t, f)];
                    if (mode % 3 == 1)
                        y = std::fabs(v) > y ? std::fabs(v) : y;
                    else
                        y += mode % 3 == 2 ? v : v * v;
                }
                expected[static_cast<std::size_t>(f - b.f0)] = mode % 3 == 1   ? y
                                                               : mode % 3 == 2 ? y / n
                                                                               : std::sqrt(y / n);
            }
            Values out(expected.size(), 7.0);
            EXPECT_EQ(trial.getSelectSpctmValueXX(source, active, R, mode, 0, wanted.t0, wanted.t1, wanted.f0,
                                                  wanted.f1, most, out.data()),
                      fails ? 0 : 1);
            EXPECT_TRUE(numeric::sameSamples(out, expected)) << "mode " << mode;
        }
}

// ---- over all channels

/// Channels of random planes, some of another shape, without the plane or without the class.
struct ChannelPlanes
{
    std::vector<int> withClass;
    std::vector<Shape> shapeOf; ///< of those with the plane, else 0 x 0
    std::vector<Values> planes;
};

class AllChannelLoops : public TrialSpectrumLoops
{
protected:
    ChannelPlanes fillChannels(Shape shape, int type, unsigned seed, bool awkward)
    {
        trial._cleanSpctmChnlDataAll();
        makeClass(shape.nTimePt, shape.nFreqPt);
        sums(type).clean();
        ChannelPlanes all;
        for (int i = 0; i < 4; ++i) {
            const bool hasClass = i == 0 || random() % 5 != 0;
            const bool hasPlane = hasClass && (i == 0 || random() % 5 != 0);
            if (hasClass) {
                channel(i);
                all.withClass.push_back(i);
            }
            Shape own = hasPlane ? shape : Shape{0, 0};
            if (hasPlane && i > 0 && random() % 4 == 0)
                own = {between(1, shape.nTimePt), between(1, shape.nFreqPt)};
            all.shapeOf.push_back(own);
            all.planes.push_back(!hasPlane ? Values()
                                 : awkward ? anyPlane(own.nTimePt, own.nFreqPt, seed + static_cast<unsigned>(i))
                                           : randomPlane(own.nTimePt, own.nFreqPt, seed + static_cast<unsigned>(i)));
            if (hasPlane && random() % 4 == 0)
                all.planes.back()[0] = 0.0; // which counts as empty
            if (hasPlane)
                setPlane(channel(i), type, own.nTimePt, own.nFreqPt, all.planes.back());
        }
        return all;
    }
    void expectPlanes(const ChannelPlanes& all, int type)
    {
        for (const int i : all.withClass)
            EXPECT_TRUE(numeric::sameSamples(planeValues(channel(i), type), all.planes[static_cast<std::size_t>(i)]))
                << "channel " << i;
    }
};

/// Divides frequency f of every channel, as the channels do it.
void divideAll(ChannelPlanes& all, std::int64_t f, double divisor)
{
    for (const int i : all.withClass) {
        const auto at = static_cast<std::size_t>(i);
        const Shape shape = all.shapeOf[at];
        Values& x = all.planes[at];
        if (divisor == 0.0 || x.empty() || x[0] == 0.0 || f >= shape.nFreqPt)
            continue;
        for (std::int64_t t = 0; t < shape.nTimePt; ++t)
            x[shape.at(t, f)] /= divisor;
    }
}

enum class By
{
    rootMeanSquare,
    largest,
    percentage
};

double divisorOf(const ChannelPlanes& all, std::int64_t f, By by)
{
    double sum = 0.0;
    double largest = 0.0;
    for (const int i : all.withClass) {
        const auto at = static_cast<std::size_t>(i);
        const Shape shape = all.shapeOf[at];
        const Values& x = all.planes[at];
        double mine = 0.0;
        for (std::int64_t t = 0; f < shape.nFreqPt && t < shape.nTimePt; ++t) {
            const double v = x[shape.at(t, f)];
            largest = std::fabs(v) > largest ? std::fabs(v) : largest;
            mine += by == By::rootMeanSquare ? v * v : v / static_cast<double>(shape.nTimePt);
        }
        if (by == By::rootMeanSquare)
            sum += f < shape.nFreqPt ? mine / static_cast<double>(shape.nTimePt) : 0.0;
        else
            sum += x.empty() || x[0] == 0.0 ? 0.0 : mine;
    }
    const auto n = static_cast<double>(all.withClass.size());
    if (by == By::largest)
        return largest;
    if (by == By::percentage)
        return sum / n / 100.0;
    return sum > 0.0 ? std::sqrt(sum / n) : 0.0;
}

TEST_F(AllChannelLoops, EachFrequencyIsDividedByOneValueOfAllChannels)
{
    for (const By by : {By::rootMeanSquare, By::largest, By::percentage})
        for (const Shape shape : shapes)
            for (unsigned seed = 0; seed < 6; ++seed) {
                const int type = static_cast<int>(seed % 4);
                ChannelPlanes all = fillChannels(shape, type, 10 * seed, seed % 2 == 0);
                for (std::int64_t f = 0; f < shape.nFreqPt; ++f)
                    divideAll(all, f, divisorOf(all, f, by));
                spectrum->m_nSpctmNormState = 0;
                ASSERT_EQ(by == By::rootMeanSquare ? trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(active)
                          : by == By::largest      ? trial.normSpctmGlobEachFreqAllChnAllTim_max(active, type)
                                                   : trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, active, type),
                          1);
                EXPECT_EQ(spectrum->m_nSpctmNormState, 1);
                expectPlanes(all, type);
            }
}

/// Minimum, maximum and running mean of a plane.
std::vector<double> rangeOf(const Values& x, Shape shape, bool absolute)
{
    const auto value = [&](std::size_t i) { return absolute ? std::fabs(x[i]) : x[i]; };
    std::vector<double> r = {value(0), value(0), 0.0};
    double sum = 0.0;
    for (std::int64_t t = 0; t < shape.nTimePt; ++t) {
        for (std::int64_t f = 0; f < shape.nFreqPt; ++f) {
            const double v = value(shape.at(t, f));
            r[0] = v < r[0] ? v : r[0];
            r[1] = v > r[1] ? v : r[1];
            sum += v;
        }
        r[2] += sum / static_cast<double>(absolute ? shape.nFreqPt : shape.nTimePt * shape.nFreqPt);
    }
    if (absolute)
        r[2] /= static_cast<double>(shape.nTimePt);
    return r;
}

std::vector<double> rangeOfAll(const ChannelPlanes& all, bool absolute)
{
    std::vector<double> range = {absolute ? 0.0 : -1.0, 1.0, 0.0};
    bool isFirst = true;
    for (const int i : all.withClass) {
        const auto at = static_cast<std::size_t>(i);
        if (all.planes[at].empty())
            continue;
        const std::vector<double> one = rangeOf(all.planes[at], all.shapeOf[at], absolute);
        range[0] = isFirst || one[0] < range[0] ? one[0] : range[0];
        range[1] = isFirst || one[1] > range[1] ? one[1] : range[1];
        range[2] += one[2];
        isFirst = false;
    }
    if (all.withClass.size() > 1)
        range[2] /= static_cast<double>(all.withClass.size());
    return range;
}

TEST_F(AllChannelLoops, TheRangeIsThatOfTheChannelsAndTheMeanOfTheirMeans)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 10; ++seed) {
            const int type = static_cast<int>(seed % 4);
            const ChannelPlanes all = fillChannels(shape, type, 10 * seed, false);
            Values read(3, 7.0);
            ASSERT_EQ(trial.getSpctmRangeAllChann(&read[0], &read[1], &read[2], 1, active, type),
                      std::ssize(all.withClass));
            EXPECT_TRUE(numeric::sameSamples(read, rangeOfAll(all, false)));
            ASSERT_EQ(trial.getSpctmRangeAllChannAbs(&read[0], &read[1], &read[2], 1, active, type),
                      std::ssize(all.withClass));
            EXPECT_TRUE(numeric::sameSamples(read, rangeOfAll(all, true)));
        }
}

TEST_F(AllChannelLoops, TheRangeOfAShortIsReachedBySubtractionAndScale)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 6; ++seed) {
            const int type = static_cast<int>(seed % 4);
            ChannelPlanes all = fillChannels(shape, type, 10 * seed, seed == 3);
            const std::vector<double> range = rangeOfAll(all, false);
            const double extent = range[1] - range[0];
            const double scale = extent != 0.0 ? 65532.0 / extent : 1.0;
            for (Values& x : all.planes)
                for (double& v : x)
                    v = (v - (range[1] + range[0]) * 0.5) * scale;
            ASSERT_EQ(trial.normSpctmValue2ShrtAllChnl(true, active, type), 1);
            expectPlanes(all, type);
        }
}

// ---- the gain

TEST_F(AllChannelLoops, TheGainFallsOnEveryTthElementToThePlanesEnd)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 24; ++seed) {
            const int type = static_cast<int>(seed % 4);
            const int law = static_cast<int>(seed % 3);
            const bool power = seed % 2 == 0;
            const double factor = 0.25 * (1 + seed % 7);
            ChannelPlanes all = fillChannels(shape, type, 10 * seed, false);
            spectrum->m_dSamplingRate = 1000.0;
            spectrum->m_dFreqBegin = 1.5;
            spectrum->m_nFreqPowerStep = seed % 5 == 0 ? 1 : 0;
            spectrum->m_dFreqPowerStep = 1.1;
            spectrum->m_dFreqLinearStep = 0.7;
            double frequency = 1.5;
            for (std::int64_t i = 0; i < shape.nFreqPt; ++i) {
                double base = frequency / 1.5;
                base = law == 1 ? std::sqrt(base) : base;
                base = power ? std::pow(base, factor) : base * factor;
                for (const int c : all.withClass) {
                    const auto at = static_cast<std::size_t>(c);
                    const std::int64_t count = law == 1 ? shape.nTimePt : all.shapeOf[at].nTimePt;
                    for (std::int64_t k = 0; k < count && i + k * shape.nTimePt < std::ssize(all.planes[at]); ++k)
                        all.planes[at][static_cast<std::size_t>(i + k * shape.nTimePt)] *= base;
                }
                frequency = seed % 5 == 0 ? frequency * 1.1 : frequency + 0.7;
            }
            ASSERT_EQ(trial.normalizeFreq(law, factor, power, active, type), 1);
            EXPECT_EQ(spectrum->m_nSpctmNormState, law == 1 ? 3 : 2);
            expectPlanes(all, type);
        }
}

} // namespace
} // namespace megset::trialSpectrumLoops_test
