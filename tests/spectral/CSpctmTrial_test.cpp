#include "megset/spectral/CSpctmTrialzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/spectral/spectra.h"

#include <cmath>

namespace megset::CSpctmTrial_test {
namespace {

using ::testing::ElementsAre;

constexpr std::int64_t huge = INT64_MAX;
constexpr std::int64_t lowest = INT64_MIN;

struct Range
{
    std::int64_t begin = 0;
    std::int64_t end = 0;
    bool operator==(const Range&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Range& range)
{
    return out << range.begin << " to " << range.end;
}

Range timeSelection(const CSpctmTrialzk& trial)
{
    return {trial.m_nSelectTimeBegin, trial.m_nSelectTimeEnd};
}
Range freqSelection(const CSpctmTrialzk& trial)
{
    return {trial.m_nSelectFreqBegin, trial.m_nSelectFreqEnd};
}

class TrialSpectrum : public ::testing::Test
{
protected:
    TrialSpectrum() { trial.setSpctmTimePtFreqPt(5, 4, 2); }

    void selectRaw(Range time, Range freq)
    {
        trial.m_nSelectTimeBegin = time.begin;
        trial.m_nSelectTimeEnd = time.end;
        trial.m_nSelectFreqBegin = freq.begin;
        trial.m_nSelectFreqEnd = freq.end;
    }
    std::int64_t timeCount(Range& range) { return trial.getTrialSpctmSelectTime(range.begin, range.end); }
    std::int64_t freqCount(Range& range) { return trial.getTrialSpctmSelectFreq(range.begin, range.end); }
    void setLinearAxis(double begin, double end, double step)
    {
        trial.setTrialFreqRange4Spctm(begin, end);
        trial.m_dFreqLinearStep = step;
    }
    void setPowerAxis(double begin, double end, double factor)
    {
        trial.setTrialFreqRange4Spctm(begin, end);
        trial.m_nFreqPowerStep = 1;
        trial.m_dFreqPowerStep = factor;
    }

    ScriptedHost host;
    CSpctmTrialzk trial;
};

TEST(TrialSpectrumNew, HasItsDefaults)
{
    CSpctmTrialzk trial;
    EXPECT_EQ(trial.getSpctmCmptType(), 1);
    EXPECT_EQ(trial.isAccumSpctm(), 0);
    EXPECT_EQ(trial.getTrialSpctmTimePt(), 0);
    EXPECT_EQ(trial.getTrialSpctmFreqPt(), 0);
    EXPECT_EQ(trial.getTrialSpctmTimeStep(), 1);
    EXPECT_EQ(trial.getTrialSpctmFreqStep(), 1.0);
    EXPECT_EQ(trial.m_dSpctmParam, 1.0);
    EXPECT_EQ(trial.m_dSamplingRate, 1.0);
    EXPECT_EQ(trial.getSpctmResultType(), 0);
    EXPECT_EQ(trial.m_nSpctmParam4, 1);
    EXPECT_EQ(trial.m_nSpctmParam5, 0);
    EXPECT_EQ(trial.m_nSpctmParam6, 1);
    EXPECT_EQ(trial.m_nSpctmParam8, 1);
    EXPECT_EQ(trial.m_nSpctmParam9, 0);
    EXPECT_EQ(trial.m_strLabelR, CString("Real"));
    EXPECT_EQ(trial.m_strLabelI, CString("Imaginary"));
    EXPECT_EQ(trial.m_strLabelM, CString("Magnitude/Power"));
    EXPECT_EQ(trial.m_strLabelA, CString("Angle/Phase"));
    EXPECT_EQ(trial._cleanSpctmFreqPeaks(), 1);
}

TEST_F(TrialSpectrum, SettersStoreAndGettersGive)
{
    EXPECT_EQ(trial.setSpctmResultType(7), 1);
    EXPECT_EQ(trial.getSpctmResultType(), 7);
    EXPECT_EQ(trial.setSpctmTimePtFreqPt((std::int64_t{1} << 32) + 5, (std::int64_t{1} << 32) + 6, -1), 1);
    EXPECT_EQ(trial.getTrialSpctmTimePt(), (std::int64_t{1} << 32) + 5);
    EXPECT_EQ(trial.getTrialSpctmFreqPt(), 6); // cut to 32 bits
    EXPECT_EQ(trial.getTrialSpctmTimeStep(), -1);
    double low = 0.0;
    double high = 0.0;
    EXPECT_EQ(trial.setTrialFreqRange4Spctm(1.5, 40.0), 1);
    EXPECT_EQ(trial.getSpctmFreqRangeHz(low, high), 1);
    EXPECT_EQ(low, 1.5);
    EXPECT_EQ(high, 40.0);
    EXPECT_EQ(trial.setTrialTimeDataRange4Spctm(100, 350), 1);
    EXPECT_EQ(trial.m_nDataBegin, 100);
    EXPECT_EQ(trial.m_nDataEnd, 350);
    EXPECT_EQ(trial.m_nDataLength, 250);
    EXPECT_EQ(trial.setTrialTimeDataRange4Spctm(lowest, huge), 1); // wraps, harmlessly
    EXPECT_EQ(trial.setChnlRIX(1, -2, 3, 4, 5), 1);
    EXPECT_EQ(trial.m_nSpctmRix1, 1);
    EXPECT_EQ(trial.m_nSpctmRix2, -2);
    EXPECT_EQ(trial.m_nSpctmRix3, 3);
    EXPECT_EQ(trial.m_nSpctmRix4, 4);
    EXPECT_EQ(trial.m_nSpctmRix5, 5);
}

TEST_F(TrialSpectrum, FrequencyStepIsTheFactorInPowerModeAlone)
{
    trial.m_dFreqLinearStep = 0.5;
    trial.m_dFreqPowerStep = 2.0;
    EXPECT_EQ(trial.getTrialSpctmFreqStep(), 0.5);
    trial.m_nFreqPowerStep = -1;
    EXPECT_EQ(trial.getTrialSpctmFreqStep(), 2.0);
}

TEST_F(TrialSpectrum, IsSummedOnlyWhenTheFlagIsOne)
{
    for (const int flag : {0, 1, 2, -1}) {
        trial.m_nAccumSpctm = flag;
        EXPECT_EQ(trial.isAccumSpctm(), flag == 1 ? 1 : 0);
    }
}

TEST_F(TrialSpectrum, SumChannelIsThatOfTheDataType)
{
    EXPECT_EQ(trial.getSumChnlSpctmData(0), &trial.m_aSumChnlR);
    EXPECT_EQ(trial.getSumChnlSpctmData(1), &trial.m_aSumChnlI);
    EXPECT_EQ(trial.getSumChnlSpctmData(2), &trial.m_aSumChnlM);
    EXPECT_EQ(trial.getSumChnlSpctmData(3), &trial.m_aSumChnlA);
    EXPECT_EQ(trial.getSumChnlSpctmData(4), nullptr);
    EXPECT_EQ(trial.getSumChnlSpctmData(-1), nullptr);
}

TEST_F(TrialSpectrum, SpectrumInfoSetsTheRangeOfTheDataTypeAlone)
{
    EXPECT_EQ(trial.setTrialSpctmInfo(9, 9, -1.5, 2.5, 9.0, 9.0, 9, 2), 1);
    EXPECT_EQ(trial.m_aSumChnlM.m_dRangeMin, -1.5);
    EXPECT_EQ(trial.m_aSumChnlM.m_dRangeMax, 2.5);
    EXPECT_EQ(trial.m_aSumChnlM.m_nRangeValid, 0);
    EXPECT_EQ(trial.m_aSumChnlR.m_dRangeMax, 0.0);
    EXPECT_EQ(trial.setTrialSpctmInfo(0, 0, 1.0, 2.0, 0.0, 0.0, 0, 4), 1);
}

TEST_F(TrialSpectrum, SumChannelsGetTheirPlanesByDataType)
{
    EXPECT_EQ(trial._checkInitTrlSpctmData(3, 2, 2), 1);
    EXPECT_NE(trial.m_aSumChnlA.m_pSumRms, nullptr);
    EXPECT_EQ(trial.m_aSumChnlR.m_pSumRms, nullptr);
    EXPECT_EQ(trial._checkInitTrlSpctmData(3, 0, 2), 0);
    EXPECT_EQ(trial._checkInitTrlSpctmData(4, 0, 2), 1);
    const FailingAllocator failing(1);
    EXPECT_EQ(trial._checkInitTrlSpctmData(0, 2, 2), 0);
}

TEST_F(TrialSpectrum, CleaningDropsTheFirstThreeSumPlanesAlone)
{
    for (int type = 0; type < 4; ++type)
        trial._checkInitTrlSpctmData(type, 2, 2);
    trial.m_aSumChnlA.m_nChannels = 3;
    EXPECT_EQ(trial._cleanAll(), 1);
    for (int type = 0; type < 4; ++type) {
        const CSumChnlSpctmDatazk& sums = *trial.getSumChnlSpctmData(type);
        EXPECT_EQ(sums.m_pSumMin, nullptr);
        EXPECT_EQ(sums.m_pSumMean, nullptr);
        EXPECT_EQ(sums.m_pSumMax, nullptr);
        EXPECT_NE(sums.m_pSumPositive, nullptr);
        EXPECT_NE(sums.m_pSumRms, nullptr);
        EXPECT_EQ(sums.m_nTimePt, 2);
    }
    EXPECT_EQ(trial.m_aSumChnlA.m_nChannels, 3);
}

TEST_F(TrialSpectrum, SelectedTimesAreBroughtIntoTheAxisAndMinusOneKeeps)
{
    EXPECT_EQ(trial.setTrialSpctmSelectTime(2, 4), 1);
    EXPECT_EQ(trial.setTrialSpctmSelectTime(-1, 5), 1);
    EXPECT_EQ(timeSelection(trial), (Range{2, 4}));
    trial.setTrialSpctmSelectTime(-2, -1);
    EXPECT_EQ(timeSelection(trial), (Range{0, 4}));
    trial.setTrialSpctmSelectTime(huge, lowest);
    EXPECT_EQ(timeSelection(trial), (Range{4, 0})); // the setter doesn't order them
}

TEST_F(TrialSpectrum, SelectedFrequenciesAreBroughtIntoTheAxisAndMinusOneKeeps)
{
    trial.setTrialSpctmSelectFreq(1, 4);
    EXPECT_EQ(freqSelection(trial), (Range{1, 3}));
    trial.setTrialSpctmSelectFreq(-1, -1);
    EXPECT_EQ(freqSelection(trial), (Range{1, 3}));
    trial.setTrialSpctmSelectFreq(9, -5);
    EXPECT_EQ(freqSelection(trial), (Range{3, 0}));
    EXPECT_EQ(timeSelection(trial), (Range{0, 0}));
}

TEST_F(TrialSpectrum, SelectionOnAnEmptyAxisIsItsFirstPoint)
{
    trial.setSpctmTimePtFreqPt(0, lowest, 1);
    trial.setTrialSpctmSelectTime(3, 3);
    trial.setTrialSpctmSelectFreq(3, -3);
    EXPECT_EQ(timeSelection(trial), (Range{0, 0}));
    EXPECT_EQ(freqSelection(trial), (Range{0, 0}));
}

TEST_F(TrialSpectrum, BeginsAndEndsAreSetAcrossTheAxes)
{
    EXPECT_EQ(trial.setTrialSpctmSelectTimeFreqBB(3, 9), 1);
    EXPECT_EQ(trial.setTrialSpctmSelectTimeFreqEE(1, 3), 1);
    EXPECT_EQ(timeSelection(trial), (Range{3, 3})); // raised to the begin
    EXPECT_EQ(freqSelection(trial), (Range{3, 3}));
    trial.setTrialSpctmSelectTimeFreqEE(99, -1);
    trial.setTrialSpctmSelectTimeFreqBB(-1, 0);
    EXPECT_EQ(timeSelection(trial), (Range{3, 4}));
    EXPECT_EQ(freqSelection(trial), (Range{0, 3}));
    std::int64_t time = 0;
    std::int64_t freq = 0;
    EXPECT_EQ(trial.getTrialSpctmSelectTimeFreqBB(time, freq), 1);
    EXPECT_EQ(Range({time, freq}), (Range{3, 0}));
    EXPECT_EQ(trial.getTrialSpctmSelectTimeFreqEE(time, freq), 1);
    EXPECT_EQ(Range({time, freq}), (Range{4, 3}));
}

TEST_F(TrialSpectrum, AnEndThatIsKeptIsRaisedToTheBegin)
{
    selectRaw({3, 1}, {2, 0});
    trial.setTrialSpctmSelectTimeFreqEE(-1, -1);
    EXPECT_EQ(timeSelection(trial), (Range{3, 3}));
    EXPECT_EQ(freqSelection(trial), (Range{2, 2}));
}

TEST_F(TrialSpectrum, TimesAreRepairedFromTheBeginOn)
{
    struct Case
    {
        Range raw;
        Range repaired;
        std::int64_t count;
    };
    const Case cases[] = {{{1, 3}, {1, 3}, 3},
                          {{-4, 2}, {0, 2}, 3},
                          {{3, 1}, {3, 3}, 1},
                          {{2, 99}, {2, 4}, 3},
                          {{7, 3}, {7, 4}, -2},
                          {{-4, -9}, {0, 0}, 1},
                          {{huge, lowest}, {huge, 4}, 5 - huge},
                          {{lowest, huge}, {0, 4}, 5}};
    for (const Case& c : cases) {
        selectRaw(c.raw, {});
        Range given;
        EXPECT_EQ(timeCount(given), c.count) << c.raw;
        EXPECT_EQ(given, c.repaired);
        EXPECT_EQ(timeSelection(trial), c.repaired);
    }
}

TEST_F(TrialSpectrum, FrequenciesAreRepairedFromTheEndOn)
{
    struct Case
    {
        Range raw;
        Range repaired;
        std::int64_t count;
    };
    const Case cases[] = {{{1, 3}, {1, 3}, 3},
                          {{2, 99}, {2, 3}, 2},
                          {{3, 1}, {1, 1}, 1},
                          {{7, 9}, {3, 3}, 1},
                          {{-4, 2}, {0, 2}, 3},
                          {{7, -3}, {0, -3}, -2},
                          {{huge, lowest}, {0, lowest}, lowest + 1}};
    for (const Case& c : cases) {
        selectRaw({}, c.raw);
        Range given;
        EXPECT_EQ(freqCount(given), c.count) << c.raw;
        EXPECT_EQ(given, c.repaired);
        EXPECT_EQ(freqSelection(trial), c.repaired);
    }
}

TEST_F(TrialSpectrum, SelectionOfNothingCountsNothing)
{
    for (const std::int64_t none : {std::int64_t{0}, std::int64_t{-3}, lowest}) {
        trial.setSpctmTimePtFreqPt(none, none, 1);
        selectRaw({0, 0}, {0, 0});
        Range given;
        EXPECT_EQ(timeCount(given), 0);
        EXPECT_EQ(given, (Range{0, -1}));
        EXPECT_EQ(freqCount(given), 0);
        EXPECT_EQ(given, (Range{0, -1}));
    }
}

TEST_F(TrialSpectrum, FrequencyOfAPointWithoutPointsIsMinusOne)
{
    for (const std::int64_t none : {std::int64_t{0}, std::int64_t{-1}, lowest}) {
        trial.m_nFreqPt = none;
        EXPECT_EQ(trial.getSpctmFreq4FreqIndex(0), -1.0);
    }
}

TEST_F(TrialSpectrum, PowerAxisBeginsOneFactorAboveItsBegin)
{
    setPowerAxis(2.0, 100.0, 2.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(0), 4.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(1), 8.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(2), 16.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(3), 32.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(4), 32.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(-9), 4.0);
}

TEST_F(TrialSpectrum, AxesEndAtTheHighestFrequency)
{
    trial.m_nFreqPt = 10;
    setLinearAxis(1.0, 2.0, 0.5);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(0), 1.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(1), 1.5);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(9), 2.0);
    setPowerAxis(1.0, 5.0, 2.0);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(9), 5.0);
}

TEST_F(TrialSpectrum, PowerAxisIsMultipliedOutStepByStep)
{
    trial.m_nFreqPt = 300;
    setPowerAxis(1.3, 1e9, 1.01);
    for (const std::int64_t i : {0, 1, 57, 299}) {
        double expected = 1.3;
        for (std::int64_t k = 0; k <= i; ++k)
            expected *= 1.01;
        EXPECT_EQ(trial.getSpctmFreq4FreqIndex(i), expected);
    }
}

TEST_F(TrialSpectrum, EndlessPowerAxisComesToAnEnd)
{
    trial.m_nFreqPt = huge;
    setPowerAxis(1.0, 500.0, 1.0 + 1e-15);
    EXPECT_EQ(trial.getSpctmFreq4FreqIndex(huge), 500.0);
    EXPECT_NEAR(trial.getSpctmFreq4FreqIndex(10'000'000), 1.0, 1e-7);
}

TEST_F(TrialSpectrum, FrequenciesOfTheSelection)
{
    setLinearAxis(1.0, 40.0, 0.5);
    double low = 0.0;
    double high = 0.0;
    selectRaw({}, {1, 3});
    EXPECT_EQ(trial.getTrialSpctmSelectFreqHz(low, high), 2);
    EXPECT_EQ(low, 1.5);
    EXPECT_EQ(high, 2.5);
    selectRaw({}, {1, 1});
    EXPECT_EQ(trial.getTrialSpctmSelectFreqHz(low, high), 1);
    EXPECT_EQ(low, 1.5);
    EXPECT_EQ(high, 2.0);
    EXPECT_EQ(trial.getTrialSpctmGivenFreqID4Hz(3, 0, low, high), 2);
    EXPECT_EQ(low, 2.5);
    EXPECT_EQ(high, 1.0);
    EXPECT_EQ(trial.getTrialSpctmGivenFreqID4Hz(3, 3, low, high), 1); // the last point is its own neighbour
    EXPECT_EQ(high, 2.5);
    EXPECT_EQ(trial.getTrialSpctmGivenFreqID4Hz(huge, huge, low, high), 1);
    EXPECT_EQ(high, 2.5);
}

TEST_F(TrialSpectrum, PointOfAFrequencyIsCutTowardZero)
{
    setLinearAxis(1.0, 40.0, 0.5);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(1.99), 1);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(2.0), 2);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(1.0), 0);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(-7.0), 0);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(40.0), 3);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(99.0), 3);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(39.9), 77); // past the axis: only the highest frequency bounds it
}

TEST_F(TrialSpectrum, PointOfAFrequencyGoesByTheLinearStepInPowerModeToo)
{
    setPowerAxis(1.0, 40.0, 2.0);
    trial.m_dFreqLinearStep = 0.25;
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(2.0), 4);
}

TEST_F(TrialSpectrum, PointOfAFrequencyOnABrokenAxisIsSomeNumber)
{
    setLinearAxis(1.0, 40.0, 0.0);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(2.0), huge);
    trial.m_dFreqLinearStep = -1e-300;
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(2.0), lowest);
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(std::nan("")), 0);
    trial.m_nFreqPt = lowest;
    EXPECT_EQ(trial.getSpctmFreqIndex4Freq(50.0), -1);
}

TEST_F(TrialSpectrum, DrawnSpanFitsTheTimes)
{
    trial.setTrialTimeDataRange4Spctm(100, 119);
    trial.m_nEdgePt = 5;
    std::int64_t begin = 0;
    std::int64_t end = 0;
    EXPECT_EQ(trial.getSelectBE4DrawWave(begin, end), 1); // (114 - 105 + 1) / 2
    EXPECT_EQ(begin, 105);
    EXPECT_EQ(end, 114);
    trial.setTrialTimeDataRange4Spctm(100, 120);
    EXPECT_EQ(trial.getSelectBE4DrawWave(begin, end), 1); // 11 / 2, cut
    host.expectNoMessages();
}

TEST_F(TrialSpectrum, DrawnSpanOfAnotherSizeIsTold)
{
    std::int64_t begin = 0;
    std::int64_t end = 0;
    EXPECT_EQ(trial.getSelectBE4DrawWave(begin, end), 0);
    EXPECT_THAT(host.messages(), ElementsAre("spectral size error!"));
}

TEST_F(TrialSpectrum, SummedClassHasNoDrawnSpanAndATimeStepBelowOneIsRepaired)
{
    trial.m_nAccumSpctm = 1;
    trial.m_nTimeStep = -4;
    trial.setTrialTimeDataRange4Spctm(0, 4);
    std::int64_t begin = -1;
    std::int64_t end = -1;
    EXPECT_EQ(trial.getSelectBE4DrawWave(begin, end), 0);
    EXPECT_EQ(trial.m_nTimeStep, 1);
    EXPECT_EQ(end, 4);
    host.expectNoMessages();
    trial.m_nAccumSpctm = 0;
    EXPECT_EQ(trial.getSelectBE4DrawWave(begin, end), 1);
}

TEST_F(TrialSpectrum, DrawnSpanOfBrokenNumbersDoesNoHarm)
{
    trial.m_nDataBegin = huge;
    trial.m_nDataEnd = lowest;
    trial.m_nEdgePt = huge;
    std::int64_t begin = 0;
    std::int64_t end = 0;
    EXPECT_EQ(trial.getSelectBE4DrawWave(begin, end), 0);
}

TEST_F(TrialSpectrum, ParametersOfAnotherTrialAreTakenOver)
{
    CSpctmTrialzk other;
    other.m_nSpctmCmptType = 2;
    other.setChnlRIX(3, 4, 5, 6, 7);
    other.m_nAccumSpctm = 1;
    other.setSpctmTimePtFreqPt(8, 9, 10);
    other.setTrialTimeDataRange4Spctm(11, 30);
    other.m_nEdgePt = 12;
    other.m_nEdgePt2 = 13;
    other.setTrialFreqRange4Spctm(14.0, 15.0);
    other.m_nFreqPowerStep = 16;
    other.m_dFreqLinearStep = 17.0;
    other.m_dFreqPowerStep = 18.0;
    other.m_dSpctmParam = 19.0;
    other.m_dSamplingRate = 20.0;
    other.m_nSpctmParam1 = 21;
    other.m_nSpctmParam2 = 22;
    other.m_nSpctmResultType = 23;
    other.m_nSpctmNormState = 24;
    other.m_nSelectTimeBegin = 25;
    other.m_nSelectTimeEnd = 26;
    other.m_nSelectFreqBegin = 27;
    other.m_nSelectFreqEnd = 28;
    other.m_nSpctmParam10 = 29;
    std::vector<std::byte> expected = spectrumBytes(other);
    other.m_nSpctmParam3 = other.m_nSpctmParam7 = 99;
    other.m_nSpctmParam4 = other.m_nSpctmParam5 = other.m_nSpctmParam6 = 99;
    other.m_nSpctmParam8 = other.m_nSpctmParam9 = 99;
    other.m_strLabelR = "other";
    trial._checkInitTrlSpctmData(0, 2, 2);
    trial._checkInitTrlSpctmData(3, 2, 2);
    ASSERT_EQ(trial.setParameters(&other), 1);
    EXPECT_TRUE(sameBytes(spectrumBytes(trial), expected));
    EXPECT_EQ(trial.m_nSpctmParam10, 29);
    EXPECT_EQ(trial.m_aSumChnlA.m_pSumRms, nullptr);
    EXPECT_EQ(trial.m_aSumChnlA.m_nTimePt, 0);
}

TEST_F(TrialSpectrum, ParametersOfNoTrialChangeNothing)
{
    trial._checkInitTrlSpctmData(0, 2, 2);
    EXPECT_EQ(trial.setParameters(nullptr), 0);
    EXPECT_EQ(trial.m_nTimePt, 5);
    EXPECT_NE(trial.m_aSumChnlR.m_pSumRms, nullptr);
}

} // namespace
} // namespace megset::CSpctmTrial_test
