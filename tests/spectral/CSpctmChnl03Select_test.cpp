// Selections of a channel's plane: mean, sum, statistics, text.

#include "tests/spectral/planes.h"

namespace megset::CSpctmChnl03Select_test {
namespace {

using ::testing::ElementsAre;

struct Statistics
{
    std::int64_t count = 0;
    double min = 7.0;
    double mean = 7.0;
    double max = 7.0;
    double rms = 7.0;
};

struct Sum
{
    int given = 0;
    double sum = 7.0;
    std::int64_t count = 7;
};

// A plane of 4 times and 3 frequencies whose values tell their place: tens for time, ones for frequency.
class SpectrumSelection : public ::testing::Test
{
protected:
    SpectrumSelection() { setPlane(spectrum, R, 4, 3, {0, 1, 2, 10, 11, 12, 20, 21, 22, 30, 31, 32}); }

    Statistics statistics(std::int64_t timeBegin, std::int64_t timeEnd, std::int64_t freqBegin, std::int64_t freqEnd)
    {
        Statistics s;
        s.count =
            spectrum.getSelectSpctmValueMMMR(R, timeBegin, timeEnd, freqBegin, freqEnd, s.min, s.mean, s.max, s.rms);
        return s;
    }
    Sum sum(std::int64_t timeBegin, std::int64_t timeEnd, std::int64_t freqBegin, std::int64_t freqEnd)
    {
        Sum s;
        s.given = spectrum.getSelectSpctmValueX(timeBegin, timeEnd, freqBegin, freqEnd, s.sum, s.count, R);
        return s;
    }
    CString text(std::int64_t timeBegin, std::int64_t timeEnd, std::int64_t freqBegin, std::int64_t freqEnd)
    {
        return spectrum.getSelectSpctmValue2Txt(R, timeBegin, timeEnd, freqBegin, freqEnd);
    }
    double mean(std::int64_t timeBegin, std::int64_t timeEnd, std::int64_t freqBegin, std::int64_t freqEnd)
    {
        return spectrum.getSelectSpctmValue(timeBegin, timeEnd, freqBegin, freqEnd, R);
    }

    ScriptedHost host;
    CSpctmChnlzk spectrum;
};

TEST_F(SpectrumSelection, TheMeanIncludesBothEnds)
{
    EXPECT_EQ(mean(1, 2, 0, 1), (10 + 11 + 20 + 21) / 4.0);
    EXPECT_EQ(mean(3, 3, 2, 2), 32.0);
}

TEST_F(SpectrumSelection, TheMeanClampsAllFourBounds)
{
    EXPECT_EQ(mean(INT64_MIN, INT64_MAX, INT64_MIN, INT64_MAX), 16.0);
    EXPECT_EQ(mean(0, 3, 99, 99), 17.0); // the last frequency, without the exception of the readers
    EXPECT_EQ(mean(99, 99, 0, 0), 30.0);
}

TEST_F(SpectrumSelection, TheMeanOfNothingIsZero)
{
    EXPECT_EQ(mean(2, 1, 0, 2), 0.0);
    EXPECT_EQ(mean(0, 3, 2, 1), 0.0);
}

TEST_F(SpectrumSelection, StatisticsOfOneElementTakeNoRoot)
{
    setPlane(spectrum, R, 1, 1, {-2.0});
    const Statistics s = statistics(0, 0, 0, 0);
    EXPECT_EQ(s.count, 1);
    EXPECT_EQ(s.min, -2.0);
    EXPECT_EQ(s.mean, -2.0);
    EXPECT_EQ(s.max, -2.0);
    EXPECT_EQ(s.rms, 4.0);
}

TEST_F(SpectrumSelection, StatisticsOfMoreAreFinished)
{
    const Statistics s = statistics(1, 2, 0, 1);
    EXPECT_EQ(s.count, 4);
    EXPECT_EQ(s.min, 10.0);
    EXPECT_EQ(s.mean, 62.0 / 4);
    EXPECT_EQ(s.max, 21.0);
    EXPECT_EQ(s.rms, std::sqrt((100.0 + 121.0 + 400.0 + 441.0) / 4));
}

TEST_F(SpectrumSelection, StatisticsOfNothingLeaveTheOutputs)
{
    for (const Statistics& s : {statistics(2, 1, 0, 2), statistics(0, 3, 2, 1), statistics(0, 3, 3, 3)}) {
        EXPECT_EQ(s.count, 0);
        EXPECT_EQ(s.min, 7.0);
        EXPECT_EQ(s.mean, 7.0);
        EXPECT_EQ(s.max, 7.0);
        EXPECT_EQ(s.rms, 7.0);
    }
}

TEST_F(SpectrumSelection, TheSumIsNotDivided)
{
    const Sum s = sum(1, 2, 0, 1);
    EXPECT_EQ(s.given, 4);
    EXPECT_EQ(s.count, 4);
    EXPECT_EQ(s.sum, 62.0);
}

TEST_F(SpectrumSelection, TheSumOfNothingIsZero)
{
    for (const Sum& s : {sum(2, 1, 0, 2), sum(0, 3, 2, 1), sum(0, 3, 3, 3)}) {
        EXPECT_EQ(s.given, 0);
        EXPECT_EQ(s.count, 0);
        EXPECT_EQ(s.sum, 0.0);
    }
}

TEST_F(SpectrumSelection, ReadersClampTimesAndTheFrequencyEnd)
{
    EXPECT_EQ(sum(INT64_MIN, INT64_MAX, INT64_MIN, INT64_MAX).count, 12);
    EXPECT_EQ(sum(99, 99, -5, 0).sum, 30.0);
    EXPECT_EQ(statistics(-1, -1, 2, 99).max, 2.0);
}

TEST_F(SpectrumSelection, AFrequencyBeginPastTheEndIsKeptAndTheTimeEndBecomesTheLastFrequency)
{
    for (const std::int64_t begin : {std::int64_t{3}, std::int64_t{99}, INT64_MAX}) {
        EXPECT_EQ(statistics(0, 3, begin, 2).count, 0);
        EXPECT_EQ(sum(0, 3, begin, INT64_MAX).count, 0);
    }
    EXPECT_EQ(text(0, 3, 3, 2), CString("X->Time 3   Y-Frequency 0 \n"));
    EXPECT_EQ(text(1, 1, 5, 9), CString("X->Time 2   Y-Frequency -2 \n"));
}

TEST_F(SpectrumSelection, TheTextHasALineForEachFrequencyHighestFirst)
{
    EXPECT_EQ(text(1, 2, 0, 1), CString("X->Time 2   Y-Frequency 2 \n"
                                        "11.000000 21.000000 \n"
                                        "10.000000 20.000000 \n"));
    EXPECT_EQ(text(3, 99, 2, 99), CString("X->Time 1   Y-Frequency 1 \n32.000000 \n"));
}

TEST_F(SpectrumSelection, TheTextOfNoTimesHasEmptyLines)
{
    EXPECT_EQ(text(2, 1, 0, 1), CString("X->Time 0   Y-Frequency 2 \n\n\n"));
}

TEST_F(SpectrumSelection, TheTextOfNoPlaneSaysSo)
{
    EXPECT_EQ(CSpctmChnlzk().getSelectSpctmValue2Txt(R, 0, 0, 0, 0), CString("No data"));
}

// The rectangle of the readers, written out.
struct Rectangle
{
    std::int64_t timeBegin, timeEnd, freqBegin, freqEnd;
};

Rectangle clampedAsTold(Rectangle r, Shape shape, bool forReaders)
{
    const auto clamp = [](std::int64_t& index, std::int64_t limit) {
        if (index < 0)
            index = 0;
        if (index >= limit)
            index = limit - 1;
    };
    clamp(r.timeBegin, shape.nTimePt);
    clamp(r.timeEnd, shape.nTimePt);
    clamp(r.freqEnd, shape.nFreqPt);
    if (!forReaders)
        clamp(r.freqBegin, shape.nFreqPt);
    if (r.freqBegin < 0)
        r.freqBegin = 0;
    if (r.freqBegin >= shape.nFreqPt)
        r.timeEnd = shape.nFreqPt - 1;
    return r;
}

TEST_F(SpectrumSelection, RandomSelectionsAgreeWithPlainLoops)
{
    std::mt19937 random(3);
    for (const Shape shape : shapes) {
        for (unsigned seed = 0; seed < 50; ++seed) {
            const Values x = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            setPlane(spectrum, R, shape.nTimePt, shape.nFreqPt, x);
            std::uniform_int_distribution<std::int64_t> time(-2, shape.nTimePt + 2);
            std::uniform_int_distribution<std::int64_t> freq(-2, shape.nFreqPt + 2);
            const Rectangle wanted{time(random), time(random), freq(random), freq(random)};
            Rectangle r = clampedAsTold(wanted, shape, true);
            Statistics expected;
            double sumOfAll = 0.0;
            for (std::int64_t t = r.timeBegin; t <= r.timeEnd; ++t) {
                for (std::int64_t f = r.freqBegin; f <= r.freqEnd; ++f) {
                    const double v = x[shape.at(t, f)];
                    if (expected.count++ == 0) {
                        expected.min = expected.mean = expected.max = v;
                        expected.rms = v * v;
                    } else {
                        expected.min = v < expected.min ? v : expected.min;
                        expected.max = v > expected.max ? v : expected.max;
                        expected.mean += v;
                        expected.rms += v * v;
                    }
                    sumOfAll += v;
                }
            }
            if (expected.count > 1) {
                expected.mean /= static_cast<double>(expected.count);
                expected.rms = std::sqrt(expected.rms / static_cast<double>(expected.count));
            }
            const Statistics s = statistics(wanted.timeBegin, wanted.timeEnd, wanted.freqBegin, wanted.freqEnd);
            EXPECT_EQ(s.count, expected.count);
            EXPECT_TRUE(numeric::sameSamples(Values{s.min, s.mean, s.max, s.rms},
                                             Values{expected.min, expected.mean, expected.max, expected.rms}));
            const Sum total = sum(wanted.timeBegin, wanted.timeEnd, wanted.freqBegin, wanted.freqEnd);
            EXPECT_EQ(total.count, expected.count);
            EXPECT_TRUE(numeric::sameBits(total.sum, sumOfAll));

            r = clampedAsTold(wanted, shape, false);
            sumOfAll = 0.0;
            std::int64_t count = 0;
            for (std::int64_t t = r.timeBegin; t <= r.timeEnd; ++t) {
                for (std::int64_t f = r.freqBegin; f <= r.freqEnd; ++f) {
                    sumOfAll += x[shape.at(t, f)];
                    ++count;
                }
            }
            EXPECT_TRUE(numeric::sameBits(mean(wanted.timeBegin, wanted.timeEnd, wanted.freqBegin, wanted.freqEnd),
                                          count > 0 ? sumOfAll / static_cast<double>(count) : 0.0));
        }
    }
}

} // namespace
} // namespace megset::CSpctmChnl03Select_test
