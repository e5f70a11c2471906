// Ranges of a channel's plane, of the sum planes, and over all channels.

#include "tests/spectral/planes.h"

namespace megset::CMDTrial4SpctmRange_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

struct Range
{
    int given = 0;
    double min = 7.0;
    double max = 7.0;
    double mean = 7.0;

    Values values() const { return {min, max, mean}; }
};

class TrialRange : public SpectralTrial
{
protected:
    TrialRange() { makeChannels(4); }

    Range one(int nPhyVirt, int iChannel, bool absolute = false, int nClass = active, int type = R, bool compute = true)
    {
        Range r;
        r.given =
            absolute
                ? trial.getSpctmRange4OneChnlShowAbs(nPhyVirt, iChannel, &r.min, &r.max, &r.mean, compute, nClass, type)
                : trial.getSpctmRange4OneChnlShow(nPhyVirt, iChannel, &r.min, &r.max, &r.mean, compute, nClass, type);
        return r;
    }
    Range all(int compute = 1, int nClass = active, int type = R)
    {
        Range r;
        r.given = trial.getSpctmRangeAllChann(&r.min, &r.max, &r.mean, compute, nClass, type);
        return r;
    }
    Range allAbs(int compute = 1, int nClass = active, int type = R)
    {
        Range r;
        r.given = trial.getSpctmRangeAllChannAbs(&r.min, &r.max, &r.mean, compute, nClass, type);
        return r;
    }
    CSumChnlSpctmDatazk& sums(int type = R) { return *spectrum->getSumChnlSpctmData(type); }
};

constexpr int channelPlane = 0;
constexpr int sumMean = 1;
constexpr int sumMin = 2;
constexpr int sumMax = 3;
constexpr int sumPositive = 4;
constexpr int sumNegative = 5;
constexpr int sumRms = 6;

TEST_F(TrialRange, OfAChannelIsTheChannelsWithItsRunningMean)
{
    setPlane(channel(1), R, 2, 2, {1, 1, 1, 1});
    EXPECT_EQ(one(channelPlane, 1).given, 1);
    EXPECT_THAT(one(channelPlane, 1).values(), ElementsAre(1.0, 1.0, 1.5));
    channel(1).scaleSpctm(-2.0, R);
    EXPECT_THAT(one(channelPlane, 1, false, active, R, false).values(), ElementsAre(1.0, 1.0, 1.5)); // as kept
    EXPECT_THAT(one(channelPlane, 1, true, active, R, false).values(), ElementsAre(2.0, 2.0, 3.0));  // never kept
    trial.setCurrentChannel(1);
    EXPECT_THAT(one(channelPlane, -1).values(), ElementsAre(-2.0, -2.0, -3.0));
}

TEST_F(TrialRange, OfAChannelOutOfRangeFailsAndWithoutTheClassIsZero)
{
    for (const int index : {4, -2, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(one(channelPlane, index).given, 0);
        EXPECT_THAT(one(channelPlane, index).values(), Each(0.0));
    }
    EXPECT_EQ(one(channelPlane, 2).given, 1);
    EXPECT_THAT(one(channelPlane, 2).values(), Each(0.0));
    EXPECT_EQ(one(channelPlane, 2, true, 9).given, 1);
    trial.m_ppChannel.set(2, std::unique_ptr<CMDChannelzk>());
    EXPECT_EQ(one(channelPlane, 2).given, 1);
    channel(1);
    EXPECT_EQ(one(channelPlane, 1).given, 0); // the class without a plane
}

TEST_F(TrialRange, NeedsOneOfMinimumAndMaximum)
{
    fill(1, Values(12, 3.0));
    double value = 7.0;
    EXPECT_EQ(trial.getSpctmRange4OneChnlShow(channelPlane, 1, nullptr, nullptr, &value, true, active, R), 0);
    EXPECT_EQ(value, 7.0);
    EXPECT_EQ(trial.getSpctmRange4OneChnlShow(channelPlane, 1, &value, nullptr, nullptr, true, active, R), 1);
    EXPECT_EQ(value, 3.0);
    EXPECT_EQ(trial.getSpctmRange4OneChnlShowAbs(channelPlane, 1, nullptr, nullptr, &value, true, active, R), 0);
    EXPECT_EQ(value, 3.0);
    fillSum(&CSumChnlSpctmData::m_pSumMean, Values(12, 4.0));
    EXPECT_EQ(trial.getSpctmRange4OneChnlShowAbs(sumMean, 1, nullptr, &value, nullptr, true, active, R), 1);
    EXPECT_EQ(value, 4.0);
}

TEST_F(TrialRange, OtherSourcesGiveZeros)
{
    for (const int source : {7, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(one(source, 1).given, 0);
        EXPECT_THAT(one(source, 1).values(), Each(0.0));
    }
}

TEST_F(TrialRange, OfSumPlanesOfMeanAndMinimumTakesAllFrequencies)
{
    const Values x{-6, 1, 2, 3, 4, -5, 0, 0, 0, 0, 0, 3};
    fillSum(&CSumChnlSpctmData::m_pSumMean, x);
    fillSum(&CSumChnlSpctmData::m_pSumMin, x);
    for (const int source : {sumMean, sumMin}) {
        EXPECT_EQ(one(source, 0).given, 1);
        EXPECT_THAT(one(source, 0).values(), ElementsAre(-6.0, 4.0, (-3.0 / 3 + 2.0 / 3 + 0.0 + 3.0 / 3) / 4));
        EXPECT_THAT(one(source, 0, true).values(), ElementsAre(0.0, 6.0, (9.0 / 3 + 12.0 / 3 + 0.0 + 3.0 / 3) / 4));
    }
}

TEST_F(TrialRange, OfTheOtherSumPlanesPassesOverFrequencyZeroButDividesByAllFrequencies)
{
    const Values x{2, 1, 1, 9, 4, -5, -9, 0, 0, 9, 0, 3};
    fillSum(&CSumChnlSpctmData::m_pSumMax, x);
    fillSum(&CSumChnlSpctmData::m_pSumPositive, x);
    fillSum(&CSumChnlSpctmData::m_pSumNegative, x);
    fillSum(&CSumChnlSpctmData::m_pSumRms, x);
    for (const int source : {sumMax, sumPositive, sumNegative, sumRms}) {
        EXPECT_THAT(one(source, 0).values(), ElementsAre(-5.0, 4.0, (2.0 / 3 + -1.0 / 3 + 0.0 + 3.0 / 3) / 4));
        EXPECT_THAT(one(source, 0, true).values(), ElementsAre(0.0, 5.0, (2.0 / 3 + 9.0 / 3 + 0.0 + 3.0 / 3) / 4));
    }
}

TEST_F(TrialRange, ALargestValueAtFrequencyZeroOfTheMaximumShowsOnlyAsTheFirstElement)
{
    fillSum(&CSumChnlSpctmData::m_pSumMax, {1, 1, 1, 99, 1, 1, 1, 1, 1, 1, 1, 1});
    EXPECT_EQ(one(sumMax, 0).max, 1.0);
    fillSum(&CSumChnlSpctmData::m_pSumMax, {99, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1});
    EXPECT_EQ(one(sumMax, 0).max, 99.0);
}

TEST_F(TrialRange, OfPositiveValuesNeedsThePlaneOfTheMaximum)
{
    fillSum(&CSumChnlSpctmData::m_pSumPositive, Values(12, 5.0));
    EXPECT_EQ(one(sumPositive, 0).max, 5.0);
    sums().m_pSumMax.reset();
    EXPECT_EQ(one(sumPositive, 0).given, 1);
    EXPECT_THAT(one(sumPositive, 0).values(), Each(0.0));
    ASSERT_EQ(sums().checkInit(T, F), 1);
    sums().m_pSumPositive.reset();
    EXPECT_EQ(one(sumPositive, 0).given, 1);
    EXPECT_THAT(one(sumPositive, 0).values(), Each(0.0));
}

TEST_F(TrialRange, OfSumPlanesThatAreNotThere)
{
    EXPECT_EQ(one(sumMean, 0, false, control).given, 1); // without the class
    EXPECT_EQ(one(sumMean, 0, false, 9).given, 1);
    EXPECT_EQ(one(sumMean, 0, false, active, 4).given, 0); // without a sum channel
    EXPECT_EQ(one(sumMean, 0).given, 1);                   // without a plane
    EXPECT_THAT(one(sumMean, 0).values(), Each(0.0));
    sums().m_pSumMean = tryNewSamples(0, true);
    sums().m_nFreqPt = 4;
    EXPECT_EQ(one(sumMean, 0).given, 1); // without elements
}

TEST_F(TrialRange, OfASumPlaneHasItsOwnShapeWhateverThatOfTheClass)
{
    fillSum(&CSumChnlSpctmData::m_pSumRms, {1, 2, 3, 4}, R, 2, 2);
    EXPECT_THAT(one(sumRms, 0).values(), ElementsAre(1.0, 4.0, (2.0 / 2 + 4.0 / 2) / 2));
    fillSum(&CSumChnlSpctmData::m_pSumRms, {3, 9}, R, 2, 1);
    EXPECT_THAT(one(sumRms, 0).values(), ElementsAre(3.0, 3.0, 0.0)); // the first element, and no frequency
}

TEST_F(TrialRange, OfRandomSumPlanesIsThePlainLoop)
{
    for (const Shape shape : shapes) {
        for (unsigned seed = 0; seed < 4; ++seed) {
            const Values x = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            fillSum(&CSumChnlSpctmData::m_pSumMean, x, R, shape.nTimePt, shape.nFreqPt);
            fillSum(&CSumChnlSpctmData::m_pSumRms, x, R, shape.nTimePt, shape.nFreqPt);
            for (const int source : {sumMean, sumRms}) {
                for (const bool absolute : {false, true}) {
                    const auto value = [&](std::size_t i) { return absolute ? std::fabs(x[i]) : x[i]; };
                    Range expected{1, value(0), value(0), 0.0};
                    for (std::int64_t t = 0; t < shape.nTimePt; ++t) {
                        double sum = 0.0;
                        for (std::int64_t f = source == sumMean ? 0 : 1; f < shape.nFreqPt; ++f) {
                            const double v = value(shape.at(t, f));
                            expected.min = v < expected.min ? v : expected.min;
                            expected.max = v > expected.max ? v : expected.max;
                            sum += v;
                        }
                        expected.mean += sum / static_cast<double>(shape.nFreqPt);
                    }
                    expected.mean /= static_cast<double>(shape.nTimePt);
                    EXPECT_TRUE(numeric::sameSamples(one(source, 0, absolute).values(), expected.values()));
                }
            }
        }
    }
}

// ---- over all channels

TEST_F(TrialRange, OverAllChannelsOfATrialWithoutTheClassIsThePreset)
{
    for (const int nClass : {control, 3}) {
        EXPECT_EQ(all(1, nClass).given, 0);
        EXPECT_THAT(all(1, nClass).values(), ElementsAre(-1.0, 1.0, 0.0));
        EXPECT_THAT(allAbs(1, nClass).values(), ElementsAre(0.0, 1.0, 0.0));
    }
    EXPECT_EQ(all(1, active, 4).given, 0);
    EXPECT_EQ(allAbs(1, active, 4).given, 0);
}

TEST_F(TrialRange, OverAllChannelsNeedsMinimumAndMaximum)
{
    double value = 7.0;
    EXPECT_EQ(trial.getSpctmRangeAllChann(nullptr, &value, &value, 1, active, R), 0);
    EXPECT_EQ(trial.getSpctmRangeAllChann(&value, nullptr, &value, 1, active, R), 0);
    EXPECT_EQ(trial.getSpctmRangeAllChannAbs(nullptr, &value, &value, 1, active, R), 0);
    EXPECT_EQ(trial.getSpctmRangeAllChannAbs(&value, nullptr, &value, 1, active, R), 0);
    EXPECT_EQ(value, 7.0);
    fill(1, Values(12, 0.5));
    double other = 7.0;
    EXPECT_EQ(trial.getSpctmRangeAllChann(&value, &other, nullptr, 1, active, R), 1);
    EXPECT_EQ(value, 0.5);
}

TEST_F(TrialRange, OverAllChannelsBeginsWithTheFirstOfThem)
{
    fill(1, Values(12, 4.0));
    fill(3, Values(12, 6.0));
    EXPECT_EQ(all().given, 2);
    EXPECT_THAT(all().values(), ElementsAre(4.0, 6.0, 5.0 * (T + 1) / 2));
    EXPECT_EQ(allAbs().given, 2);
    EXPECT_THAT(allAbs().values(), ElementsAre(4.0, 6.0, 5.0 * (T + 1) / 2));
}

TEST_F(TrialRange, AChannelWithoutThePlaneCountsInTheMeanAlone)
{
    channel(0);
    fill(1, Values(12, 4.0));
    EXPECT_EQ(all().given, 2);
    EXPECT_THAT(all().values(), ElementsAre(4.0, 4.0, 4.0 * (T + 1) / 2 / 2));
}

TEST_F(TrialRange, OverChannelsOfWhichNoneHasThePlaneIsThePreset)
{
    channel(0);
    channel(2);
    fill(2, Values(12, 4.0), I);
    EXPECT_EQ(all().given, 2);
    EXPECT_THAT(all().values(), ElementsAre(-1.0, 1.0, 0.0));
}

TEST_F(TrialRange, OverAllChannelsIsKeptBesideTheAbsoluteOne)
{
    fill(1, Values(12, -4.0));
    EXPECT_EQ(all(0).given, 1); // none is kept yet
    EXPECT_EQ(sums().m_nRangeValid, 1);
    EXPECT_EQ(sums().m_dRangeMin, -4.0);
    EXPECT_EQ(sums().m_dRangeMax, -4.0);
    EXPECT_EQ(sums().m_dRangeMean, -10.0);
    EXPECT_EQ(allAbs(1).given, 1);
    EXPECT_EQ(sums().m_dAbsMin, 4.0);
    EXPECT_EQ(sums().m_dAbsMax, 4.0);
    EXPECT_EQ(sums().m_dAbsMean, 10.0);
    fill(2, Values(12, 100.0));
    EXPECT_EQ(all(0).given, 1);
    EXPECT_THAT(all(0).values(), ElementsAre(-4.0, -4.0, -10.0));
    EXPECT_THAT(allAbs(0).values(), ElementsAre(4.0, 4.0, 10.0));
    EXPECT_EQ(all(1).given, 2);
    EXPECT_EQ(all(0).max, 100.0);
}

TEST_F(TrialRange, TheAbsoluteOneLeavesTheFlag)
{
    fill(1, Values(12, -4.0));
    sums().m_nTimePt = T;
    sums().m_nFreqPt = F;
    EXPECT_EQ(allAbs(0).given, 1);
    EXPECT_EQ(sums().m_nRangeValid, 0);
    sums().m_nRangeValid = 1;
    sums().m_dAbsMin = 8.0;
    EXPECT_EQ(allAbs(0).min, 8.0);
}

TEST_F(TrialRange, TheAbsoluteOneNeedsAShapeAndTheOtherTakesTheLargest)
{
    setPlane(channel(1), R, 2, 5, Values(10, -4.0));
    setPlane(channel(2, result), M, 6, 1, Values(6, -4.0));
    EXPECT_EQ(allAbs().given, 0);
    EXPECT_THAT(allAbs().values(), ElementsAre(0.0, 1.0, 0.0));
    sums().m_pSumMean = tryNewSamples(0, true); // as a file may bring it
    EXPECT_EQ(all().given, 1);
    EXPECT_EQ(sums().m_nTimePt, 6);
    EXPECT_EQ(sums().m_nFreqPt, 5);
    EXPECT_EQ(sums().m_pSumMean, nullptr);
    EXPECT_EQ(allAbs().given, 1);
}

TEST_F(TrialRange, OverAllChannelsWithoutAnyPlaneIsThePreset)
{
    EXPECT_EQ(all().given, 0);
    EXPECT_THAT(all().values(), ElementsAre(-1.0, 1.0, 0.0));
    EXPECT_EQ(sums().m_nRangeValid, 0);
}

} // namespace
} // namespace megset::CMDTrial4SpctmRange_test
