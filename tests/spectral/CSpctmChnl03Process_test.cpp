#include "tests/spectral/planes.h"

namespace megset::CSpctmChnl03Process_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

// A plane of 4 times and 3 frequencies whose values tell their place: tens for time, ones for frequency.
class SpectrumInPlace : public ::testing::Test
{
protected:
    SpectrumInPlace() { fill(places); }

    void fill(const Values& values, std::int64_t nTimePt = 4, std::int64_t nFreqPt = 3)
    {
        setPlane(spectrum, R, nTimePt, nFreqPt, values);
    }
    Values values() const { return planeValues(spectrum, R); }

    const Values places{0, 1, 2, 10, 11, 12, 20, 21, 22, 30, 31, 32};
    ScriptedHost host;
    CSpctmChnlzk spectrum;
};

TEST_F(SpectrumInPlace, AnAbsentPlaneFailsEverywhere)
{
    double x = 7.0;
    std::int64_t n = 7;
    for (const int type : {I, M, A, -1, 4, INT32_MAX}) {
        EXPECT_EQ(spectrum.cutSpctmDataExtrama(0, 1, 0, type), 0);
        EXPECT_EQ(spectrum.cutSpctmFreqBlock(0, 1, 0, type), 0);
        EXPECT_EQ(spectrum.cutSpctmTimeBlock(0, 1, 0, type), 0);
        EXPECT_EQ(spectrum.cutSpctmSelect(0, 1, 0, 1, 0, type), 0);
        EXPECT_EQ(spectrum.getSelectSpctmValue(0, 1, 0, 1, type), 0.0);
        EXPECT_EQ(spectrum.getSelectSpctmValueMMMR(type, 0, 1, 0, 1, x, x, x, x), 0);
        EXPECT_EQ(x, 7.0);
        double sum = 7.0;
        EXPECT_EQ(spectrum.getSelectSpctmValueX(0, 1, 0, 1, sum, n, type), 0);
        EXPECT_EQ(sum, 0.0);
        EXPECT_EQ(n, 0);
        EXPECT_EQ(spectrum.getSelectSpctmValue2Txt(type, 0, 1, 0, 1), CString("No data"));
        EXPECT_EQ(spectrum.getSpctmFreqAbsMax(1, type), 0.0);
        EXPECT_EQ(spectrum.getSpctmFreqAverage(1, true, type), 0.0);
        spectrum.m_dSpctmMean = 5.0;
        EXPECT_EQ(spectrum.getSpctmFreqAverage(1, false, type), 0.0);
        EXPECT_EQ(spectrum.getSpctmFreqRootMean(1, type), 0.0);
        EXPECT_EQ(spectrum.globaleNormalSpctmFreq(1, 2.0, type), 0);
        EXPECT_EQ(spectrum.normSpctmValue2Shrt(2.0, 1.0, type), 0);
        EXPECT_EQ(spectrum.normalizeSpctm4FreqX(0.0, type), 0);
        EXPECT_EQ(spectrum.rootStrip(0, 2, 1.0, type), 0);
        EXPECT_EQ(spectrum.scaleSpctm(2.0, type), 0);
        EXPECT_EQ(spectrum.setSpctmNAN2zero(type), 0);
        EXPECT_EQ(spectrum.transformSpctm2log(type), 0);
    }
    EXPECT_EQ(values(), places);
    host.expectNoMessages();
}

TEST_F(SpectrumInPlace, APlaneWithoutElementsCountsAsAbsent)
{
    CSpctmChnlzk empty;
    empty.m_pSpctmR = tryNewSamples(0, true);
    empty.m_nFreqPt = 3;
    EXPECT_EQ(empty.scaleSpctm(2.0, R), 0);
    EXPECT_EQ(empty.rootStrip(0, 1, 1.0, R), 0);
    EXPECT_EQ(empty.globaleNormalSpctmFreq(0, 2.0, R), 0);
    EXPECT_EQ(empty.getSpctmRange(nullptr, nullptr, nullptr, 1, R), 0);
    EXPECT_EQ(empty.getSelectSpctmValue2Txt(R, 0, 0, 0, 0), CString("No data"));
}

// ---- cuts

TEST_F(SpectrumInPlace, ValuesOutsideARangeAreCutAndNanStays)
{
    fill({-2.0, -1.0, 1.0, 2.0, notANumber, infinity}, 2, 3);
    EXPECT_EQ(spectrum.cutSpctmDataExtrama(-1.0, 1.0, 0.5, R), 1);
    EXPECT_TRUE(numeric::sameSamples(values(), Values{0.5, -1.0, 1.0, 0.5, notANumber, 0.5}));
}

TEST_F(SpectrumInPlace, AFrequencyBlockIsCutAtAllTimes)
{
    EXPECT_EQ(spectrum.cutSpctmFreqBlock(1, 2, -1.0, R), 1);
    EXPECT_THAT(values(), ElementsAre(0, -1, -1, 10, -1, -1, 20, -1, -1, 30, -1, -1));
}

TEST_F(SpectrumInPlace, ATimeBlockIsCutAtAllFrequencies)
{
    EXPECT_EQ(spectrum.cutSpctmTimeBlock(1, 2, -1.0, R), 1);
    EXPECT_THAT(values(), ElementsAre(0, 1, 2, -1, -1, -1, -1, -1, -1, 30, 31, 32));
}

TEST_F(SpectrumInPlace, ASelectionIsCutWithItsEnds)
{
    EXPECT_EQ(spectrum.cutSpctmSelect(1, 2, 0, 1, -1.0, R), 1);
    EXPECT_THAT(values(), ElementsAre(0, 1, 2, -1, -1, 12, -1, -1, 22, 30, 31, 32));
}

TEST_F(SpectrumInPlace, BoundsOfCutsAreClamped)
{
    EXPECT_EQ(spectrum.cutSpctmSelect(-5, 0, 2, 99, -1.0, R), 1);
    EXPECT_THAT(values(), ElementsAre(0, 1, -1, 10, 11, 12, 20, 21, 22, 30, 31, 32));
    EXPECT_EQ(spectrum.cutSpctmSelect(99, INT64_MAX, INT64_MIN, -1, -2.0, R), 1); // the last time, the first frequency
    EXPECT_THAT(values(), ElementsAre(0, 1, -1, 10, 11, 12, 20, 21, 22, -2, 31, 32));
    EXPECT_EQ(spectrum.cutSpctmTimeBlock(INT64_MIN, INT64_MAX, 5.0, R), 1);
    EXPECT_THAT(values(), Each(5.0));
}

TEST_F(SpectrumInPlace, AReversedCutOverwritesNothingAndSucceeds)
{
    EXPECT_EQ(spectrum.cutSpctmSelect(2, 1, 0, 2, -1.0, R), 1);
    EXPECT_EQ(spectrum.cutSpctmSelect(0, 3, 2, 1, -1.0, R), 1);
    EXPECT_EQ(spectrum.cutSpctmFreqBlock(2, 0, -1.0, R), 1);
    EXPECT_EQ(spectrum.cutSpctmTimeBlock(3, 0, -1.0, R), 1);
    EXPECT_EQ(values(), places);
}

// ---- single frequencies

TEST_F(SpectrumInPlace, SingleFrequenciesHaveMaximumMeanAndMeanSquare)
{
    fill({1.0, -8.0, 3.0, 2.0}, 2, 2);
    EXPECT_EQ(spectrum.getSpctmFreqAbsMax(0, R), 3.0);
    EXPECT_EQ(spectrum.getSpctmFreqAbsMax(1, R), 8.0);
    EXPECT_EQ(spectrum.getSpctmFreqAverage(1, true, R), -3.0);
    EXPECT_EQ(spectrum.getSpctmFreqRootMean(1, R), 34.0); // and no root
}

TEST_F(SpectrumInPlace, OtherFrequenciesGiveZero)
{
    spectrum.m_pSpctmR[0] = 1.0;
    for (const std::int64_t f : {std::int64_t{-1}, std::int64_t{3}, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(spectrum.getSpctmFreqAbsMax(f, R), 0.0);
        EXPECT_EQ(spectrum.getSpctmFreqAverage(f, true, R), 0.0);
        EXPECT_EQ(spectrum.getSpctmFreqRootMean(f, R), 0.0);
        EXPECT_EQ(spectrum.globaleNormalSpctmFreq(f, 2.0, R), 0);
    }
}

TEST_F(SpectrumInPlace, TheAverageIsZeroWhenTheFirstValueIsZero)
{
    spectrum.m_dSpctmMean = 5.0;
    EXPECT_EQ(spectrum.getSpctmFreqAverage(1, true, R), 0.0);
    EXPECT_EQ(spectrum.getSpctmFreqAverage(1, false, R), 0.0);
    spectrum.m_pSpctmR[0] = -0.0;
    EXPECT_EQ(spectrum.getSpctmFreqAverage(1, true, R), 0.0);
    spectrum.m_pSpctmR[0] = 1e-300;
    EXPECT_EQ(spectrum.getSpctmFreqAverage(1, true, R), 16.0);
}

TEST_F(SpectrumInPlace, TheAverageOfAllIsTheKeptMean)
{
    spectrum.m_pSpctmR[0] = 1.0;
    spectrum.m_dSpctmMean = 5.0;
    EXPECT_EQ(spectrum.getSpctmFreqAverage(1, false, R), 5.0);
    EXPECT_EQ(spectrum.getSpctmFreqAverage(-1, false, R), 5.0);
}

// ---- ranges

TEST_F(SpectrumInPlace, TheRangesMeanOfAPlaneOfOnesIsOneAndAHalf)
{
    fill({1, 1, 1, 1}, 2, 2);
    double min = 0.0;
    double max = 0.0;
    double mean = 0.0;
    EXPECT_EQ(spectrum.getSpctmRange(&min, &max, &mean, 1, R), 1);
    EXPECT_EQ(min, 1.0);
    EXPECT_EQ(max, 1.0);
    EXPECT_EQ(mean, 1.5);
}

TEST_F(SpectrumInPlace, TheRangesMeanOfAConstantPlaneGrowsWithItsTimes)
{
    fill(Values(4 * 3, -2.0));
    double mean = 0.0;
    EXPECT_EQ(spectrum.getSpctmRange(nullptr, nullptr, &mean, 1, R), 1);
    EXPECT_EQ(mean, -2.0 * (4 + 1) / 2);
    EXPECT_EQ(spectrum.getSpctmRangeAbs(nullptr, nullptr, &mean, 1, R), 1);
    EXPECT_EQ(mean, 2.0 * (4 + 1) / 2);
}

TEST_F(SpectrumInPlace, TheRangeIsKeptAndGivenAgain)
{
    fill({3, -1, 2, 5}, 2, 2);
    double min = 0.0;
    double max = 0.0;
    double mean = 0.0;
    EXPECT_EQ(spectrum.getSpctmRange(&min, &max, &mean, 1, R), 1);
    EXPECT_EQ(min, -1.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(mean, 2.0 / 4 + 9.0 / 4);
    spectrum.scaleSpctm(10.0, R);
    min = max = mean = 0.0;
    EXPECT_EQ(spectrum.getSpctmRange(&min, &max, &mean, 0, R), 1);
    EXPECT_EQ(min, -1.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(mean, 2.75);
    EXPECT_EQ(spectrum.m_dSpctmMin, -1.0);
    EXPECT_EQ(spectrum.m_dSpctmMax, 5.0);
    EXPECT_EQ(spectrum.m_dSpctmMean, 2.75);
}

TEST_F(SpectrumInPlace, TheRangeOfAnAbsentPlaneIsZeroAndKeepsTheOldOne)
{
    spectrum.m_dSpctmMax = 9.0;
    for (const int compute : {0, 1}) {
        double min = 7.0;
        double max = 7.0;
        double mean = 7.0;
        EXPECT_EQ(spectrum.getSpctmRange(&min, &max, &mean, compute, I), 0);
        EXPECT_THAT((Values{min, max, mean}), Each(0.0));
        min = max = mean = 7.0;
        EXPECT_EQ(spectrum.getSpctmRangeAbs(&min, &max, &mean, compute, 4), 0);
        EXPECT_THAT((Values{min, max, mean}), Each(0.0));
    }
    EXPECT_EQ(spectrum.m_dSpctmMax, 9.0);
}

TEST_F(SpectrumInPlace, TheAbsoluteRangeIsAlwaysComputedAndNeverKept)
{
    fill({-3, 1, 2, -5}, 2, 2);
    double min = 0.0;
    double max = 0.0;
    double mean = 0.0;
    EXPECT_EQ(spectrum.getSpctmRangeAbs(&min, &max, &mean, 0, R), 1);
    EXPECT_EQ(min, 1.0);
    EXPECT_EQ(max, 5.0);
    EXPECT_EQ(mean, (4.0 / 2 + 11.0 / 2) / 2);
    EXPECT_EQ(spectrum.m_dSpctmMax, 0.0);
    EXPECT_EQ(spectrum.m_dSpctmMean, 0.0);
}

// ---- normalisations and transforms

TEST_F(SpectrumInPlace, OneFrequencyIsDivided)
{
    fill({1, 2, 3, 4}, 2, 2);
    EXPECT_EQ(spectrum.globaleNormalSpctmFreq(1, 2.0, R), 1);
    EXPECT_THAT(values(), ElementsAre(1, 1, 3, 2));
}

TEST_F(SpectrumInPlace, AZeroDivisorChangesNothing)
{
    fill({1, 2, 3, 4}, 2, 2);
    EXPECT_EQ(spectrum.globaleNormalSpctmFreq(1, 0.0, R), 0);
    EXPECT_EQ(spectrum.globaleNormalSpctmFreq(1, -0.0, R), 0);
    EXPECT_THAT(values(), ElementsAre(1, 2, 3, 4));
}

TEST_F(SpectrumInPlace, APlaneThatBeginsWithZeroIsNotDivided)
{
    EXPECT_EQ(spectrum.globaleNormalSpctmFreq(1, 2.0, R), 0);
    EXPECT_EQ(values(), places);
}

TEST_F(SpectrumInPlace, TheMapSubtractsBeforeItScales)
{
    fill({1.0, 0.1}, 1, 2);
    EXPECT_EQ(spectrum.normSpctmValue2Shrt(3.0, 0.3, R), 1);
    EXPECT_THAT(values(), ElementsAre((1.0 - 0.3) * 3.0, (0.1 - 0.3) * 3.0));
}

TEST_F(SpectrumInPlace, EachFrequencyIsDividedByItsOwnMeanUnlessThatIsZero)
{
    fill({1, -2, notANumber, 3, 2, 1}, 2, 3);
    EXPECT_EQ(spectrum.normalizeSpctm4FreqX(99.0, R), 1);
    EXPECT_TRUE(numeric::sameSamples(values(), Values{0.5, -2, notANumber, 1.5, 2, notANumber}));
}

TEST_F(SpectrumInPlace, ABaselineEndsBeforeItsEnd)
{
    fill({1, 2, 3, 6, 8, 10}, 3, 2);
    EXPECT_EQ(spectrum.rootStrip(0, 2, 10.0, R), 1); // means 2 and 4
    EXPECT_THAT(values(), ElementsAre(5, 5, 15, 15, 40, 25));
}

TEST_F(SpectrumInPlace, ABaselineWorksWithMoreFrequenciesThanTimes)
{
    fill({1, 2, 4, 8, 16, 1, 2, 4, 8, 16}, 2, 5);
    EXPECT_EQ(spectrum.rootStrip(0, 2, 1.0, R), 1);
    EXPECT_THAT(values(), Each(1.0));
}

TEST_F(SpectrumInPlace, ABaselineFromOneToOneIsEmpty)
{
    EXPECT_EQ(spectrum.rootStrip(1, 1, 1.0, R), 0);
    EXPECT_EQ(values(), places);
    host.expectNoMessages();
}

TEST_F(SpectrumInPlace, BoundsOfABaselineAreBroughtInside)
{
    const auto stripped = [&](std::int64_t begin, std::int64_t end) {
        fill({1, 2, 4, 8}, 4, 1);
        EXPECT_EQ(spectrum.rootStrip(begin, end, 1.0, R), 1);
        return values();
    };
    EXPECT_THAT(stripped(3, 99), ElementsAre(0.125, 0.25, 0.5, 1.0));         // the end is T
    EXPECT_THAT(stripped(99, INT64_MAX), ElementsAre(0.125, 0.25, 0.5, 1.0)); // a begin past the end: the time before
    EXPECT_THAT(stripped(3, 2), ElementsAre(0.5, 1.0, 2.0, 4.0));             // the same inside
    EXPECT_THAT(stripped(0, 0), ElementsAre(1.0, 2.0, 4.0, 8.0));             // an end of at least 1
    EXPECT_THAT(stripped(7, INT64_MIN), ElementsAre(1.0, 2.0, 4.0, 8.0));
    EXPECT_THAT(stripped(INT64_MIN, 1), ElementsAre(1.0, 2.0, 4.0, 8.0)); // a negative begin is 0
    EXPECT_THAT(stripped(-5, 2), ElementsAre(1 / 1.5, 2 / 1.5, 4 / 1.5, 8 / 1.5));
}

TEST_F(SpectrumInPlace, ABaselineOfZerosLeavesNonFiniteValuesInItsFrequency)
{
    fill({0, 1, 0, 1, 5, 1}, 3, 2);
    EXPECT_EQ(spectrum.rootStrip(0, 2, 1.0, R), 1);
    EXPECT_TRUE(numeric::sameSamples(values(), Values{notANumber, 1, notANumber, 1, infinity, 1}));
    EXPECT_EQ(spectrum.setSpctmNAN2zero(R), 1);
    EXPECT_THAT(values(), ElementsAre(0, 1, 0, 1, 0, 1));
}

TEST_F(SpectrumInPlace, ABaselineWithoutMemorySaysSo)
{
    const FailingAllocator none(1);
    EXPECT_EQ(spectrum.rootStrip(0, 2, 1.0, R), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory?!")));
    EXPECT_EQ(values(), places);
}

TEST_F(SpectrumInPlace, ValuesAreScaled)
{
    fill({1, -2, 3}, 1, 3);
    EXPECT_EQ(spectrum.scaleSpctm(-0.5, R), 1);
    EXPECT_THAT(values(), ElementsAre(-0.5, 1.0, -1.5));
}

TEST_F(SpectrumInPlace, NonFiniteValuesAreCleared)
{
    fill({notANumber, infinity, -infinity, 1.0}, 2, 2);
    EXPECT_EQ(spectrum.setSpctmNAN2zero(R), 1);
    EXPECT_THAT(values(), ElementsAre(0.0, 0.0, 0.0, 1.0));
}

TEST_F(SpectrumInPlace, TheLogarithmHasNoGuard)
{
    fill({1.0, std::exp(1.0), 0.0, -1.0}, 2, 2);
    EXPECT_EQ(spectrum.transformSpctm2log(R), 1);
    EXPECT_TRUE(numeric::sameSamples(values(), Values{0.0, 1.0, -infinity, notANumber}));
}

TEST_F(SpectrumInPlace, ThePlanesBesideStay)
{
    setPlane(spectrum, M, 4, 3, places);
    spectrum.storeData2Backupfile();
    EXPECT_EQ(spectrum.scaleSpctm(2.0, M), 1);
    EXPECT_EQ(values(), places);
    EXPECT_EQ(Values(spectrum.m_pBkSpctmM.get(), spectrum.m_pBkSpctmM.get() + 12), places);
    EXPECT_EQ(planeValues(spectrum, M), each(places, [](double v) { return 2.0 * v; }));
}

} // namespace
} // namespace megset::CSpctmChnl03Process_test
