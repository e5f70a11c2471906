// The frequency-dependent gain over the spectra of a trial.

#include "tests/spectral/planes.h"

namespace megset::CMDTrial4SpctmGain_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

constexpr int plainLaw = 0;
constexpr int rootLaw = 1;

class TrialGain : public SpectralTrial
{
protected:
    TrialGain()
    {
        makeChannels(2);
        useShape(2, 2);
        spectrum->m_dFreqBegin = 10.0;
        spectrum->m_dFreqLinearStep = 30.0;
        spectrum->m_dSamplingRate = 1000.0;
    }
    void useShape(std::int64_t nTimePt, std::int64_t nFreqPt)
    {
        makeClass(nTimePt, nFreqPt);
        setPlane(channel(0), R, nTimePt, nFreqPt, Values(static_cast<std::size_t>(nTimePt * nFreqPt), 1.0));
    }
    void usePowerSteps(double factor)
    {
        spectrum->m_nFreqPowerStep = 1;
        spectrum->m_dFreqPowerStep = factor;
    }
    Values values() { return planeValues(channel(0), R); }
    void expectRefused(const CString& message)
    {
        EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 0);
        EXPECT_THAT(host.messages(), ElementsAre(message));
        EXPECT_THAT(values(), Each(1.0));
        EXPECT_EQ(spectrum->m_nSpctmNormState, 0);
        host.clearRecord();
    }
};

TEST_F(TrialGain, OfAFactorOfZeroShowsNothing)
{
    for (const double factor : {0.0, -1.0, notANumber})
        EXPECT_EQ(trial.normalizeFreq(plainLaw, factor, false, active, R), 0);
    EXPECT_THAT(values(), Each(1.0));
    host.expectNoMessages();
}

TEST_F(TrialGain, OfALowestFrequencyOfZeroShowsNothing)
{
    for (const double frequency : {0.0, -1.0, notANumber}) {
        spectrum->m_dFreqBegin = frequency;
        EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 0);
    }
    host.expectNoMessages();
}

TEST_F(TrialGain, OfAVerySmallLowestFrequencySaysSo)
{
    spectrum->m_dFreqBegin = 1e-16;
    expectRefused("Low-frequency is smaller than %0.16f");
    spectrum->m_dFreqBegin = 1e-15;
    expectRefused("Low-frequency is smaller than %0.16f");
}

TEST_F(TrialGain, OfAVerySmallSamplingRateSaysSoFirst)
{
    spectrum->m_dFreqBegin = 1e-16;
    spectrum->m_dSamplingRate = 0.0;
    expectRefused("Sampling rate is smaller than %0.16f");
}

TEST_F(TrialGain, OfAVerySmallStepSaysSoInItsMode)
{
    spectrum->m_dFreqLinearStep = 0.0;
    spectrum->m_dFreqPowerStep = 2.0;
    expectRefused("Frequency linear step is smaller than %0.16f");
    usePowerSteps(1e-15);
    spectrum->m_dFreqLinearStep = 1.0;
    expectRefused("Frequency power step is smaller than %0.16f");
}

TEST_F(TrialGain, OfALimitItselfSaysSoAndOfTheNextNumberIsTaken)
{
    struct Limited
    {
        double CSpctmTrial::*field;
        const char* message;
    };
    constexpr double limit = 1e-15;
    const double above = std::nextafter(limit, 1.0);
    const Limited limited[] = {{&CSpctmTrial::m_dSamplingRate, "Sampling rate is smaller than %0.16f"},
                               {&CSpctmTrial::m_dFreqBegin, "Low-frequency is smaller than %0.16f"},
                               {&CSpctmTrial::m_dFreqLinearStep, "Frequency linear step is smaller than %0.16f"}};
    for (const auto& [field, message] : limited) {
        const double before = (*spectrum).*field;
        (*spectrum).*field = limit;
        expectRefused(message);
        (*spectrum).*field = above;
        EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 1) << message;
        host.expectNoMessages();
        (*spectrum).*field = before;
        useShape(2, 2);
        spectrum->m_nSpctmNormState = 0;
    }
    usePowerSteps(limit);
    expectRefused("Frequency power step is smaller than %0.16f");
    usePowerSteps(above);
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 1);
    host.expectNoMessages();
}

TEST_F(TrialGain, WithoutTimesOrFrequenciesOfTheClassFails)
{
    spectrum->m_nFreqPt = 0;
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 0);
    makeClass(0, 2);
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 0);
    EXPECT_THAT(values(), Each(1.0));
    host.expectNoMessages();
}

TEST_F(TrialGain, OfFactorTwoOnASquareMultipliesByTwiceTheRelativeFrequency)
{
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(2, 8, 2, 8)); // 10 and 40 Hz
    EXPECT_EQ(spectrum->m_nSpctmNormState, 2);
}

TEST_F(TrialGain, OfAPowerRaisesTheRelativeFrequency)
{
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 3.0, true, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(1, 64, 1, 64));
}

TEST_F(TrialGain, OfTheRootLawTakesTheRootFirst)
{
    EXPECT_EQ(trial.normalizeFreq(rootLaw, 3.0, true, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(1, 8, 1, 8));
    EXPECT_EQ(spectrum->m_nSpctmNormState, 3);
}

TEST_F(TrialGain, InPowerModeFrequenciesStepByTheFactorFromTheLowest)
{
    usePowerSteps(5.0);
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 1.0, false, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(1, 5, 1, 5));
}

TEST_F(TrialGain, FallsOnDiagonalsWhereTimesAndFrequenciesDiffer)
{
    useShape(2, 3); // every second element from 0, from 1, from 2; two of each
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 1.0, false, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(1, 4, 7, 4, 7, 1));
}

TEST_F(TrialGain, StopsAtThePlanesEnd)
{
    useShape(3, 2); // every third element, three of each, of which the plane has two
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(2, 8, 1, 2, 8, 1));
    makeClass(INT64_MAX, INT64_MAX);
    setPlane(channel(0), R, 3, 2, Values(6, 1.0));
    EXPECT_EQ(trial.normalizeFreq(rootLaw, 1.0, true, active, R), 1);
    EXPECT_EQ(values()[5], std::sqrt(16.0));
}

TEST_F(TrialGain, TakesAsManyElementsAsTheChannelHasTimesAndForTheRootLawAsTheClassHas)
{
    makeClass(1, 1);
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(2, 2, 1, 1));
    EXPECT_EQ(trial.normalizeFreq(rootLaw, 3.0, false, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(6, 2, 1, 1));
}

TEST_F(TrialGain, LeavesFrequenciesThatAreNotAboveZero)
{
    usePowerSteps(notANumber);
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 1);
    EXPECT_THAT(values(), ElementsAre(2, 1, 2, 1));
}

TEST_F(TrialGain, PassesOverChannelsWithoutThePlane)
{
    channel(1);
    EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, M), 1);
    EXPECT_THAT(values(), Each(1.0));
    EXPECT_EQ(spectrum->m_nSpctmNormState, 2);
}

TEST_F(TrialGain, ComesToAnEndWhenAChannelWithoutThePlaneCountsAnyNumberOfFrequencies)
{
    CSpctmChnlzk& damaged = channel(1);
    for (const std::int64_t nTimePt : {std::int64_t{1}, INT64_MAX}) {
        damaged.m_nTimePt = nTimePt;
        damaged.m_nFreqPt = INT64_MAX;
        useShape(2, 2);
        spectrum->m_nFreqPt = INT64_MAX;
        EXPECT_EQ(trial.normalizeFreq(plainLaw, 2.0, false, active, R), 1);
        EXPECT_THAT(values(), ElementsAre(2, 8, 2 * 14, 8 * 20));
    }
}

TEST_F(TrialGain, OfAllClassesAndTypesSucceedsWhateverTheySay)
{
    setPlane(channel(0), A, 2, 2, Values(4, 1.0));
    setPlane(channel(1, result), M, 2, 2, Values(4, 1.0));
    CSpctmTrialzk& other = *trial.getSpctmTrial(true, result);
    other.setSpctmTimePtFreqPt(2, 2, 1);
    other.m_dFreqBegin = 10.0;
    other.m_dFreqLinearStep = 0.0;
    EXPECT_EQ(trial.normalizeFreqAll(plainLaw, 2.0, false), 1);
    EXPECT_THAT(values(), ElementsAre(2, 8, 2, 8));
    EXPECT_THAT(planeValues(channel(0), A), ElementsAre(2, 8, 2, 8));
    EXPECT_THAT(planeValues(channel(1, result), M), Each(1.0));
    EXPECT_THAT(host.messages(), ElementsAre("Frequency linear step is smaller than %0.16f",
                                             "Frequency linear step is smaller than %0.16f",
                                             "Frequency linear step is smaller than %0.16f",
                                             "Frequency linear step is smaller than %0.16f")); // once for each type
}

TEST_F(TrialGain, OfAllClassesAndTypesTakesLawFactorAndPower)
{
    EXPECT_EQ(trial.normalizeFreqAll(rootLaw, 3.0, true), 1);
    EXPECT_THAT(values(), ElementsAre(1, 8, 1, 8));
    EXPECT_EQ(spectrum->m_nSpctmNormState, 3);
}

TEST_F(TrialGain, HasAReverseThatDoesNothing)
{
    EXPECT_EQ(trial.normalizeFreq_reverse(1, 2), 1);
    EXPECT_THAT(values(), Each(1.0));
    EXPECT_EQ(spectrum->m_nSpctmNormState, 0);
}

} // namespace
} // namespace megset::CMDTrial4SpctmGain_test
