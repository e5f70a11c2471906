// Selections of a channel's plane and of the sum planes of a trial.

#include "tests/spectral/planes.h"

namespace megset::CMDTrial4SpctmSelect_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

struct Statistics
{
    std::int64_t given = 0;
    double min = 7.0;
    double mean = 7.0;
    double max = 7.0;
    double rms = 7.0;
};

struct Value
{
    int given = 0;
    double value = 7.0;
    std::int64_t count = 7;
};

constexpr int channelPlane = 0;
constexpr int sumMean = 1;

struct SumPlane
{
    int nPhyVirt;
    SampleArray CSumChnlSpctmData::*plane;
};
constexpr SumPlane sumPlanes[] = {{1, &CSumChnlSpctmData::m_pSumMean},     {2, &CSumChnlSpctmData::m_pSumMin},
                                  {3, &CSumChnlSpctmData::m_pSumMax},      {4, &CSumChnlSpctmData::m_pSumPositive},
                                  {5, &CSumChnlSpctmData::m_pSumNegative}, {6, &CSumChnlSpctmData::m_pSumRms}};

// Channel 1 has a plane of 4 times and 3 frequencies whose values tell their place, and so has the sum plane of means.
class TrialSelection : public SpectralTrial
{
protected:
    TrialSelection()
    {
        makeChannels(3);
        fill(1, places);
        fillSum(&CSumChnlSpctmData::m_pSumMean, places);
    }

    Statistics statistics(int nPhyVirt, int iChannel, std::int64_t t0, std::int64_t t1, std::int64_t f0,
                          std::int64_t f1)
    {
        Statistics s;
        s.given =
            trial.getSelectSpctmValueMMMR(nPhyVirt, active, R, iChannel, t0, t1, f0, f1, s.min, s.mean, s.max, s.rms);
        return s;
    }
    Value value(int nPhyVirt, int iChannel, std::int64_t t0, std::int64_t t1, std::int64_t f0, std::int64_t f1,
                int nClass = active, int type = R)
    {
        Value v;
        v.given =
            trial.getSelectSpctmValueX_PhyVirt(nPhyVirt, iChannel, t0, t1, f0, f1, v.value, v.count, nClass, type);
        return v;
    }
    CString text(int nPhyVirt, int iChannel, std::int64_t t0, std::int64_t t1, std::int64_t f0, std::int64_t f1)
    {
        return trial.getSelectSpctmValue2Txt(nPhyVirt, active, R, iChannel, t0, t1, f0, f1);
    }
    Values profile(int nMode, std::int64_t t0, std::int64_t t1, std::int64_t f0, std::int64_t f1, std::size_t most = 5,
                   int nPhyVirt = channelPlane, int expected = 1)
    {
        Values out(5, -9.0);
        EXPECT_EQ(trial.getSelectSpctmValueXX(nPhyVirt, active, R, nMode, 1, t0, t1, f0, f1,
                                              static_cast<std::int64_t>(most), out.data()),
                  expected);
        return out;
    }

    const Values places{0, 1, 2, 10, 11, 12, 20, 21, 22, 30, 31, 32};
};

TEST_F(TrialSelection, ASumPlaneGivesOneAndAChannelItsCount)
{
    Statistics s = statistics(channelPlane, 1, 1, 2, 0, 1);
    EXPECT_EQ(s.given, 4);
    EXPECT_EQ(s.mean, 62.0 / 4);
    s = statistics(sumMean, 1, 1, 2, 0, 1);
    EXPECT_EQ(s.given, 1);
    EXPECT_EQ(s.min, 10.0);
    EXPECT_EQ(s.mean, 62.0 / 4);
    EXPECT_EQ(s.max, 21.0);
    EXPECT_EQ(s.rms, std::sqrt((100.0 + 121.0 + 400.0 + 441.0) / 4));
}

TEST_F(TrialSelection, ASumPlaneGivesOneForNoTimesAndLeavesTheOutputs)
{
    const Statistics s = statistics(sumMean, 1, 2, 1, 0, 1);
    EXPECT_EQ(s.given, 1);
    EXPECT_EQ(s.mean, 7.0);
    EXPECT_EQ(statistics(channelPlane, 1, 2, 1, 0, 1).given, 0);
}

TEST_F(TrialSelection, OfOneValueTheRootIsNotTaken)
{
    const Statistics s = statistics(sumMean, 0, 1, 1, 0, 0);
    EXPECT_EQ(s.given, 1);
    EXPECT_EQ(s.mean, 10.0);
    EXPECT_EQ(s.rms, 100.0);
}

TEST_F(TrialSelection, BoundsOfMinusOneAreTheSelection)
{
    spectrum->setTrialSpctmSelectTime(1, 2);
    spectrum->setTrialSpctmSelectFreq(1, 2);
    for (const int source : {channelPlane, sumMean}) {
        EXPECT_EQ(statistics(source, 1, -1, -1, -1, -1).mean, (11 + 12 + 21 + 22) / 4.0);
        EXPECT_EQ(statistics(source, 1, 0, -1, -1, 1).mean, (1 + 11 + 21) / 3.0);
        EXPECT_EQ(value(source, 1, -1, -1, -1, -1).count, 4);
        EXPECT_EQ(text(source, 1, -1, -1, -1, -1), CString("X->Time 2   Y-Frequency 2 \n"
                                                           "12.000000 22.000000 \n"
                                                           "11.000000 21.000000 \n"));
    }
    EXPECT_THAT(profile(2, -1, -1, -1, -1), ElementsAre(16, 17, -9, -9, -9));
}

TEST_F(TrialSelection, BoundsAreClampedWithTheReadersException)
{
    for (const int source : {channelPlane, sumMean}) {
        EXPECT_EQ(statistics(source, 1, -5, 99, -5, 99).mean, 16.0);
        EXPECT_EQ(text(source, 1, 0, 3, 3, 2), CString("X->Time 3   Y-Frequency 0 \n"));
        EXPECT_EQ(statistics(source, 1, 0, 3, 3, 2).mean, 7.0);
    }
}

TEST_F(TrialSelection, BoundsAreClampedAgainstTheClassAndThenAgainstTheChannel)
{
    makeClass(2, 2);
    EXPECT_EQ(statistics(channelPlane, 1, 0, 99, 0, 99).given, 4);
    makeClass(100, 100);
    EXPECT_EQ(statistics(channelPlane, 1, 0, 99, 0, 99).given, 12);
}

TEST_F(TrialSelection, ASumPlaneIsReadWithTheFrequenciesOfTheClassAndNotBeyondItsEnd)
{
    makeClass(100, 5); // rows of 5: 0 1 2 10 11 | 12 20 21 22 30 | 31 32
    EXPECT_EQ(text(sumMean, 0, 0, 99, 1, 2), CString("X->Time 100   Y-Frequency 2 \n"
                                                     "2.000000 21.000000 \n"
                                                     "1.000000 20.000000 32.000000 \n"));
    EXPECT_EQ(statistics(sumMean, 0, 0, 99, 0, 4).mean, 16.0);
    EXPECT_EQ(value(sumMean, 0, 0, 99, 1, 2).count, 5);
    makeClass(INT64_MAX, INT64_MAX);
    EXPECT_EQ(statistics(sumMean, 0, 0, INT64_MAX, 0, INT64_MAX).mean, 16.0);
    EXPECT_EQ(text(sumMean, 0, 0, 0, 11, INT64_MAX), CString("X->Time 1   Y-Frequency 9223372036854775796 \n"
                                                             "32.000000 \n"));
    makeClass(0, 0);
    EXPECT_EQ(statistics(sumMean, 0, 0, 3, 0, 2).given, 1);
    EXPECT_EQ(statistics(sumMean, 0, 0, 3, 0, 2).mean, 7.0);
    EXPECT_EQ(value(sumMean, 0, 0, 3, 0, 2).count, 0);
}

TEST_F(TrialSelection, EachSourceHasItsSumPlane)
{
    for (const SumPlane& source : sumPlanes) {
        const double mark = 100.0 * source.nPhyVirt;
        fillSum(source.plane, Values(12, mark), M);
        EXPECT_EQ(value(source.nPhyVirt, 0, 0, 3, 0, 2, active, M).value, mark);
    }
}

TEST_F(TrialSelection, OtherSourcesFail)
{
    for (const int source : {7, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(text(source, 1, 0, 1, 0, 1), CString("None"));
        EXPECT_EQ(statistics(source, 1, 0, 1, 0, 1).given, 0);
        EXPECT_EQ(value(source, 1, 0, 1, 0, 1).given, 0);
        profile(1, 0, 1, 0, 1, 5, source, 0);
    }
}

TEST_F(TrialSelection, ChannelsAreClampedAndMinusOneIsTheCurrentOne)
{
    trial.setCurrentChannel(1);
    EXPECT_EQ(value(channelPlane, -1, 3, 3, 2, 2).value, 32.0);
    fill(2, Values(12, 5.0));
    EXPECT_EQ(value(channelPlane, 99, 3, 3, 2, 2).value, 5.0);
    fill(0, Values(12, 6.0));
    EXPECT_EQ(value(channelPlane, -2, 3, 3, 2, 2).value, 6.0);
    trial.m_nCurrentChannel = 99;
    EXPECT_EQ(value(channelPlane, -1, 3, 3, 2, 2).value, 5.0);
}

TEST_F(TrialSelection, TheValueIsASumForAChannelAndAMeanForASumPlane)
{
    Value v = value(channelPlane, 1, 1, 2, 0, 1);
    EXPECT_EQ(v.given, 4);
    EXPECT_EQ(v.count, 4);
    EXPECT_EQ(v.value, 62.0);
    v = value(sumMean, 1, 1, 2, 0, 1);
    EXPECT_EQ(v.given, 4);
    EXPECT_EQ(v.count, 4);
    EXPECT_EQ(v.value, 62.0 / 4);
}

TEST_F(TrialSelection, TheValueOfASumPlaneIsNotClampedButEndsWithThePlane)
{
    EXPECT_EQ(value(sumMean, 0, 2, 99, 1, 99).count, 4);
    EXPECT_EQ(value(sumMean, 0, -5, 0, -5, 0).count, 1); // clamped or not
    EXPECT_EQ(value(sumMean, 0, 99, 99, 0, 2).count, 0); // where a clamp would give the last time
    EXPECT_EQ(value(sumMean, 0, 0, 3, 99, 99).count, 0);
    EXPECT_EQ(value(sumMean, 0, INT64_MIN, INT64_MAX, INT64_MIN, INT64_MAX).count, 12);
    EXPECT_EQ(value(channelPlane, 1, 99, 99, 0, 2).count, 3);
}

TEST_F(TrialSelection, TheValueOfAMissingSpectrumIsZeroAndSucceeds)
{
    Value v = value(channelPlane, 2, 0, 3, 0, 2);
    EXPECT_EQ(v.given, 1);
    EXPECT_EQ(v.value, 0.0);
    EXPECT_EQ(v.count, 0);
    trial.m_ppChannel.set(2, std::unique_ptr<CMDChannelzk>());
    EXPECT_EQ(value(channelPlane, 2, 0, 3, 0, 2).given, 1);
    EXPECT_EQ(value(channelPlane, 1, 0, 3, 0, 2, active, I).given, 0); // a spectrum without that plane
    EXPECT_EQ(value(sumMean, 1, 0, 3, 0, 2, active, I).given, 0);
}

TEST_F(TrialSelection, TheValueOfATrialWithoutChannelsIsZeroAndSucceeds)
{
    CMDTrialzk empty;
    empty.getSpctmTrial(true, active)->setSpctmTimePtFreqPt(T, F, 1);
    for (const int index : {-1, 0, 5}) {
        double value = 7.0;
        std::int64_t count = 7;
        EXPECT_EQ(empty.getSelectSpctmValueX_PhyVirt(channelPlane, index, 0, 3, 0, 2, value, count, active, R), 1);
        EXPECT_EQ(value, 0.0);
        EXPECT_EQ(count, 0);
        double x = 7.0;
        EXPECT_EQ(empty.getSelectSpctmValueMMMR(channelPlane, active, R, index, 0, 3, 0, 2, x, x, x, x), 0);
        EXPECT_EQ(empty.getSelectSpctmValueXX(channelPlane, active, R, 1, index, 0, 3, 0, 2, 1, &x), 0);
        EXPECT_EQ(x, 7.0);
    }
}

TEST_F(TrialSelection, WithoutTheClassAllFail)
{
    double x = 7.0;
    for (const int nClass : {control, 3, -1}) {
        EXPECT_EQ(value(channelPlane, 1, 0, 3, 0, 2, nClass).given, 0);
        EXPECT_EQ(value(sumMean, 1, 0, 3, 0, 2, nClass).count, 0);
        EXPECT_EQ(trial.getSelectSpctmValue2Txt(channelPlane, nClass, R, 1, 0, 1, 0, 1), CString("No data"));
        EXPECT_EQ(trial.getSelectSpctmValueMMMR(channelPlane, nClass, R, 1, 0, 1, 0, 1, x, x, x, x), 0);
        EXPECT_EQ(trial.getSelectSpctmValueXX(channelPlane, nClass, R, 1, 1, 0, 1, 0, 1, 1, &x), 0);
    }
    EXPECT_EQ(x, 7.0);
}

TEST_F(TrialSelection, TheTextWithoutChannelsIsNoDataAndWithoutAPlaneNone)
{
    EXPECT_EQ(text(channelPlane, 2, 0, 1, 0, 1), CString("None"));
    EXPECT_EQ(trial.getSelectSpctmValue2Txt(channelPlane, active, I, 1, 0, 1, 0, 1), CString("None"));
    EXPECT_EQ(trial.getSelectSpctmValue2Txt(sumMean, active, I, 1, 0, 1, 0, 1), CString("None"));
    EXPECT_EQ(trial.getSelectSpctmValue2Txt(sumMean, active, 4, 1, 0, 1, 0, 1), CString("None"));
    trial.m_ppChannel.set(2, std::unique_ptr<CMDChannelzk>());
    EXPECT_EQ(text(channelPlane, 2, 0, 1, 0, 1), CString("None"));
    CMDTrialzk empty;
    empty.getSpctmTrial(true, active);
    EXPECT_EQ(empty.getSelectSpctmValue2Txt(sumMean, active, R, 0, 0, 1, 0, 1), CString("No data"));
}

// ---- profiles over frequency

TEST_F(TrialSelection, AProfileIsMaximumMeanOrRootMeanSquare)
{
    fill(1, {3, -1, 0, -4, 1, 0, 9, 9, 9, 9, 9, 9});
    EXPECT_THAT(profile(1, 0, 1, 0, 2), ElementsAre(4, 1, 0, -9, -9));
    EXPECT_THAT(profile(2, 0, 1, 0, 2), ElementsAre(-0.5, 0, 0, -9, -9));
    EXPECT_THAT(profile(3, 0, 1, 0, 2), ElementsAre(std::sqrt(25.0 / 2), 1, 0, -9, -9));
    EXPECT_THAT(profile(1, 0, 1, 1, 2), ElementsAre(1, 0, -9, -9, -9));
}

TEST_F(TrialSelection, AWholePlaneProfileIsDividedByTheTimesOfTheSelection)
{
    makeClass(10, 3);
    setPlane(channel(1), R, 10, 3, Values(30, 1.0));
    EXPECT_THAT(profile(5, 4, 5, 1, 1), ElementsAre(5, 5, 5, -9, -9));
    EXPECT_THAT(profile(6, 4, 5, 1, 1), ElementsAre(std::sqrt(5.0), std::sqrt(5.0), std::sqrt(5.0), -9, -9));
    EXPECT_THAT(profile(4, 4, 5, 1, 1), ElementsAre(1, 1, 1, -9, -9));
    fillSum(&CSumChnlSpctmData::m_pSumRms, Values(30, 1.0), R, 10, 3);
    EXPECT_THAT(profile(5, 4, 5, 1, 1, 5, 6), ElementsAre(5, 5, 5, -9, -9));
}

TEST_F(TrialSelection, AProfileStopsAtTheNumberAskedFor)
{
    EXPECT_THAT(profile(1, 0, 3, 0, 2, 2), ElementsAre(30, 31, -9, -9, -9));
    EXPECT_THAT(profile(4, 0, 3, 0, 0, 1), ElementsAre(30, -9, -9, -9, -9));
    EXPECT_THAT(profile(1, 0, 3, 0, 2, 0), Each(-9.0));
    double out = -9.0;
    EXPECT_EQ(trial.getSelectSpctmValueXX(channelPlane, active, R, 1, 1, 0, 3, 0, 2, INT64_MIN, &out), 1);
    EXPECT_EQ(out, -9.0);
}

TEST_F(TrialSelection, AProfileNeedsAModeTimesAPlaneAndATarget)
{
    for (const int mode : {0, 7, -1, INT32_MIN})
        EXPECT_THAT(profile(mode, 0, 3, 0, 2, 5, channelPlane, 0), Each(-9.0));
    EXPECT_THAT(profile(1, 2, 1, 0, 2, 5, channelPlane, 0), Each(-9.0));
    EXPECT_THAT(profile(4, 0, 3, 5, 2, 5, channelPlane, 0), Each(-9.0)); // a number of frequencies below 0
    EXPECT_THAT(profile(1, 0, 3, 0, 2, 5, 2, 1), ElementsAre(0, 0, 0, -9, -9));
    EXPECT_EQ(trial.getSelectSpctmValueXX(channelPlane, active, I, 1, 1, 0, 3, 0, 2, 5, Values(5).data()), 0);
    EXPECT_EQ(trial.getSelectSpctmValueXX(channelPlane, active, R, 1, 2, 0, 3, 0, 2, 5, Values(5).data()), 0);
    EXPECT_EQ(trial.getSelectSpctmValueXX(channelPlane, active, R, 1, 1, 0, 3, 0, 2, 5, nullptr), 0);
}

TEST_F(TrialSelection, AProfileOfNoFrequenciesSucceedsAndMayMeanTheWholePlane)
{
    EXPECT_THAT(profile(1, 0, 3, 2, 1), Each(-9.0));
    EXPECT_THAT(profile(4, 0, 3, 2, 1), ElementsAre(30, 31, 32, -9, -9));
}

TEST_F(TrialSelection, AProfileOfAPlaneWithItsOwnShapeEndsWithIt)
{
    makeClass(100, 100);
    EXPECT_THAT(profile(2, 0, 3, 1, 99), ElementsAre(16, 17, 0, 0, 0));
    EXPECT_THAT(profile(4, 0, 0, 0, 0), ElementsAre(30, 31, 32, -9, -9));
    makeClass(0, 0);
    profile(4, 0, 0, 0, 0, 5, channelPlane, 0);
}

TEST_F(TrialSelection, RandomProfilesAgreeWithPlainLoops)
{
    std::mt19937 random(5);
    for (const Shape shape : shapes) {
        for (unsigned seed = 0; seed < 24; ++seed) {
            const Values x = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            makeClass(shape.nTimePt, shape.nFreqPt);
            setPlane(channel(1), R, shape.nTimePt, shape.nFreqPt, x);
            const int mode = static_cast<int>(1 + seed % 6);
            const std::int64_t t0 = static_cast<std::int64_t>(random() % static_cast<unsigned>(shape.nTimePt));
            const std::int64_t f0 = static_cast<std::int64_t>(random() % static_cast<unsigned>(shape.nFreqPt));
            const Shape range = mode > 3 ? Shape{0, 0} : Shape{t0, f0};
            const auto n = static_cast<double>(shape.nTimePt - t0);
            Values expected;
            for (std::int64_t f = range.nFreqPt; f < shape.nFreqPt; ++f) {
                double y = 0.0;
                for (std::int64_t t = range.nTimePt; t < shape.nTimePt; ++t) {
                    const double v = x[shape.at(t, f)];
                    if (mode % 3 == 1)
                        y = std::fabs(v) > y ? std::fabs(v) : y;
                    else
                        y += mode % 3 == 2 ? v : v * v;
                }
                expected.push_back(mode % 3 == 1 ? y : mode % 3 == 2 ? y / n : std::sqrt(y / n));
            }
            Values out(expected.size());
            EXPECT_EQ(trial.getSelectSpctmValueXX(channelPlane, active, R, mode, 1, t0, shape.nTimePt - 1, f0,
                                                  shape.nFreqPt - 1, 1000, out.data()),
                      1);
            EXPECT_TRUE(numeric::sameSamples(out, expected));
        }
    }
}

} // namespace
} // namespace megset::CMDTrial4SpctmSelect_test
