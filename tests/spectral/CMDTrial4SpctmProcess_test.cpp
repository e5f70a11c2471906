// Changes to the spectra of all channels of a trial.

#include "tests/spectral/planes.h"

namespace megset::CMDTrial4SpctmProcess_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

// Channels 1 and 3 have the class, channel 2 is missing.
class TrialProcess : public SpectralTrial
{
protected:
    TrialProcess()
    {
        makeChannels(5);
        fill(1, places);
        fill(3, each(places, [](double v) { return v + 100.0; }));
        trial.m_ppChannel.set(2, std::unique_ptr<CMDChannelzk>());
    }

    Values values(int i, int type = R) { return planeValues(channel(i), type); }
    Values changed(double (*operation)(double)) { return each(places, operation); }

    const Values places{0, 1, 2, 10, 11, 12, 20, 21, 22, 30, 31, 32};
};

TEST_F(TrialProcess, NeedsAChannelArray)
{
    CMDTrialzk empty;
    CSpctmTrialzk& own = *empty.getSpctmTrial(true, active);
    own.setSpctmTimePtFreqPt(1, 1, 1);
    own.m_dFreqBegin = 1.0;
    EXPECT_EQ(empty.cutSpctmDataExtrama(0, 1, 0, active, R), 0);
    EXPECT_EQ(empty.cutSpctmFreqBlock(0, 1, 0, active, R), 0);
    EXPECT_EQ(empty.cutSpctmTimeBlock(0, 1, 0, active, R), 0);
    EXPECT_EQ(empty.cutSpctmSelect(0, 1, 0, 1, 0, true, active, R), 0);
    EXPECT_EQ(empty.cutSpctmSelect(0, 1, 0, 1, 0, false, active, R), 0);
    EXPECT_EQ(empty.normSpctmGlobEachFreqAllChnAllTimSc_rms(active), 0);
    EXPECT_EQ(empty.normSpctmGlobEachFreqAllChnAllTim_rms(), 0);
    EXPECT_EQ(empty.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 0);
    EXPECT_EQ(empty.normSpctmGlobEachFreqAllChnAllTim_max(), 0);
    EXPECT_EQ(empty.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, active, R), 0);
    EXPECT_EQ(empty.normSpctmValue2ShrtAllChnl(true, active, R), 0);
    EXPECT_EQ(empty.normalizeFreq(0, 1.0, true, active, R), 0);
    EXPECT_EQ(empty.rootStrip(0, 1, 1.0, 0, true, active, R), 0);
    EXPECT_EQ(empty.rootStrip(0, 1, 1.0, 0, false, active, R), 0);
    EXPECT_EQ(empty.scaleSpctmAllDataType4Class(active, 1.0), 0);
    EXPECT_EQ(empty.setAllChnlSpctmNAN2zero(active, R), 0);
    EXPECT_EQ(empty.transformSpctm2log(0, true, active, R), 0);
    EXPECT_EQ(empty.normalizeFreqAll(0, 1.0, true), 1);
    EXPECT_EQ(empty.normalizeFreq_reverse(0, 1), 1);
    host.expectNoMessages();
}

TEST_F(TrialProcess, AnotherClassOrTypeChangesNothing)
{
    for (const int nClass : {control, 3, -7}) {
        EXPECT_EQ(trial.setAllChnlSpctmNAN2zero(nClass, R), 1);
        EXPECT_EQ(trial.transformSpctm2log(1, true, nClass, R), 1);
        EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(nClass), 0);
        EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(nClass, R), 0);
        EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, nClass, R), 0);
        EXPECT_EQ(trial.normalizeFreq(0, 1.0, true, nClass, R), 0);
    }
    EXPECT_EQ(trial.transformSpctm2log(1, true, active, 4), 1);
    EXPECT_EQ(values(1), places);
}

// ---- cuts

TEST_F(TrialProcess, CutsReachEveryChannel)
{
    EXPECT_EQ(trial.cutSpctmDataExtrama(5.0, 110.0, -1.0, active, R), 1);
    EXPECT_THAT(values(1), ElementsAre(-1, -1, -1, 10, 11, 12, 20, 21, 22, 30, 31, 32));
    EXPECT_THAT(values(3), ElementsAre(100, 101, 102, 110, -1, -1, -1, -1, -1, -1, -1, -1));
    EXPECT_EQ(trial.cutSpctmFreqBlock(1, 99, -2.0, active, R), 1);
    EXPECT_THAT(values(1), ElementsAre(-1, -2, -2, 10, -2, -2, 20, -2, -2, 30, -2, -2));
    EXPECT_EQ(trial.cutSpctmTimeBlock(-5, 2, -3.0, active, R), 1);
    EXPECT_THAT(values(1), ElementsAre(-3, -3, -3, -3, -3, -3, -3, -3, -3, 30, -2, -2));
    EXPECT_EQ(trial.getChannel(0)->hasSpctmData(), 0);
}

TEST_F(TrialProcess, ASelectionIsCutOnAllChannelsOrTheCurrentOne)
{
    EXPECT_EQ(trial.cutSpctmSelect(1, 2, 0, 1, -1.0, true, active, R), 1);
    EXPECT_THAT(values(1), ElementsAre(0, 1, 2, -1, -1, 12, -1, -1, 22, 30, 31, 32));
    EXPECT_EQ(values(3)[3], -1.0);
    trial.setCurrentChannel(3);
    EXPECT_EQ(trial.cutSpctmSelect(0, 0, 0, 0, -2.0, false, active, R), 1);
    EXPECT_EQ(values(1)[0], 0.0);
    EXPECT_EQ(values(3)[0], -2.0);
    trial.setCurrentChannel(0);
    EXPECT_EQ(trial.cutSpctmSelect(0, 0, 0, 0, -2.0, false, active, R), 1); // without the class
    EXPECT_EQ(trial.getChannel(0)->hasSpctmData(), 0);
}

TEST_F(TrialProcess, BoundsOfMinusOneAreTheSelectionCutTo32Bits)
{
    spectrum->m_nSelectTimeBegin = (std::int64_t{1} << 32) + 1;
    spectrum->m_nSelectTimeEnd = 2;
    spectrum->m_nSelectFreqBegin = 0;
    spectrum->m_nSelectFreqEnd = 1;
    EXPECT_EQ(trial.cutSpctmSelect(-1, -1, -1, -1, -1.0, true, active, R), 1);
    EXPECT_THAT(values(1), ElementsAre(0, 1, 2, -1, -1, 12, -1, -1, 22, 30, 31, 32));
}

TEST_F(TrialProcess, BoundsOfMinusOneWithoutTheTrialsSpectrumAreClamped)
{
    trial._cleanSpctmTrlData();
    EXPECT_EQ(trial.cutSpctmSelect(-1, -1, -1, -1, -1.0, true, active, R), 1);
    EXPECT_THAT(values(1), ElementsAre(-1, 1, 2, 10, 11, 12, 20, 21, 22, 30, 31, 32));
}

// ---- each frequency by a value over all channels and times

class TrialNormalization : public SpectralTrial
{
protected:
    TrialNormalization()
    {
        makeChannels(3);
        makeClass(2, 2);
    }
    void fill22(int i, const Values& values, int type = R) { setPlane(channel(i), type, 2, 2, values); }
    Values values(int i, int type = R) { return planeValues(channel(i), type); }
};

TEST_F(TrialNormalization, ByTheRootMeanSquareTakesAllTypes)
{
    for (const int type : {R, A}) {
        fill22(0, {1, 3, 1, 3}, type);
        fill22(2, {7, 4, -7, 4}, type);
    }
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(active), 1);
    const double first = std::sqrt((1.0 + 49.0) / 2);
    const double second = std::sqrt((9.0 + 16.0) / 2);
    for (const int type : {R, A}) {
        EXPECT_THAT(values(0, type), ElementsAre(1 / first, 3 / second, 1 / first, 3 / second));
        EXPECT_THAT(values(2, type), ElementsAre(7 / first, 4 / second, -7 / first, 4 / second));
    }
    EXPECT_EQ(spectrum->m_nSpctmNormState, 1);
}

TEST_F(TrialNormalization, ByTheRootMeanSquareLeavesAFrequencyOfZerosAndOfNan)
{
    fill22(0, {2, 0, 2, 0});
    fill22(0, {2, notANumber, 2, 1}, I);
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(active), 1);
    EXPECT_THAT(values(0), ElementsAre(1, 0, 1, 0));
    EXPECT_TRUE(numeric::sameSamples(values(0, I), Values{1, notANumber, 1, 1}));
}

TEST_F(TrialNormalization, ByTheLargestValue)
{
    fill22(0, {1, -8, 2, 4});
    fill22(2, {-4, 1, 2, 1});
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 1);
    EXPECT_THAT(values(0), ElementsAre(0.25, -1, 0.5, 0.5));
    EXPECT_THAT(values(2), ElementsAre(-1, 0.125, 0.5, 0.125));
    EXPECT_EQ(spectrum->m_nSpctmNormState, 1);
}

TEST_F(TrialNormalization, ToAPercentageOfTheMean)
{
    fill22(0, {1, 2, 3, 2});
    fill22(2, {5, 6, 7, 6});
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_mean(99.0, active, R), 1);
    EXPECT_THAT(values(0), ElementsAre(1 / 0.04, 2 / 0.04, 3 / 0.04, 2 / 0.04));
    EXPECT_THAT(values(2), ElementsAre(5 / 0.04, 6 / 0.04, 7 / 0.04, 6 / 0.04));
    EXPECT_EQ(spectrum->m_nSpctmNormState, 1);
}

TEST_F(TrialNormalization, OfAMeanOfZeroLeavesTheFrequency)
{
    fill22(0, {1, 2, 1, -2});
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, active, R), 1);
    EXPECT_THAT(values(0), ElementsAre(100, 2, 100, -2));
}

TEST_F(TrialNormalization, AChannelThatBeginsWithZeroIsNotDividedAndCountsAsZeroInTheMean)
{
    fill22(0, {0, 50, 8, 8});
    fill22(2, {1, 4, 1, 4});
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, active, R), 1);
    EXPECT_THAT(values(0), ElementsAre(0, 50, 8, 8));
    EXPECT_THAT(values(2), ElementsAre(1 / 0.005, 4 / 0.02, 1 / 0.005, 4 / 0.02));
    fill22(2, {1, 4, 1, 4});
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 1);
    EXPECT_THAT(values(0), ElementsAre(0, 50, 8, 8));
    EXPECT_THAT(values(2), ElementsAre(0.125, 0.08, 0.125, 0.08)); // its values still count
}

TEST_F(TrialNormalization, MarksTheClassEvenWithoutFrequencies)
{
    fill22(0, {1, 2, 3, 4});
    makeClass(2, 0);
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 1);
    EXPECT_EQ(spectrum->m_nSpctmNormState, 1);
    spectrum->m_nSpctmNormState = 0;
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, active, R), 1);
    EXPECT_EQ(spectrum->m_nSpctmNormState, 1);
    spectrum->m_nSpctmNormState = 0;
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(active), 1);
    EXPECT_EQ(spectrum->m_nSpctmNormState, 1);
    EXPECT_THAT(values(0), ElementsAre(1, 2, 3, 4));
}

TEST_F(TrialNormalization, ReachesTheFrequenciesThatClassAndChannelShare)
{
    fill22(0, {2, 4, 2, 4});
    makeClass(2, 1);
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 1);
    EXPECT_THAT(values(0), ElementsAre(1, 4, 1, 4));
    makeClass(2, INT64_MAX); // and comes to an end
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 1);
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(active), 1);
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, active, R), 1);
    makeClass(INT64_MIN, INT64_MIN);
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 1);
}

TEST_F(TrialNormalization, ComesToAnEndWhenAChannelWithoutAPlaneCountsAnyNumberOfFrequencies)
{
    fill22(0, {2, 4, 2, 4});
    makeClass(2, INT64_MAX);
    CSpctmChnlzk& damaged = channel(1);
    for (const std::int64_t nTimePt : {std::int64_t{0}, std::int64_t{1}, INT64_MAX}) {
        damaged.m_nTimePt = nTimePt;
        damaged.m_nFreqPt = INT64_MAX;
        EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(active, R), 1);
        EXPECT_THAT(values(0), Each(1.0));
    }
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(active), 1);
    EXPECT_THAT(values(0), Each(::testing::DoubleEq(std::sqrt(2.0)))); // the channel without a plane counts
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, active, R), 1);
    EXPECT_THAT(values(0), Each(::testing::DoubleEq(200.0)));
}

TEST_F(TrialNormalization, OfAllClassesTakesThoseThatTheTrialHas)
{
    const auto fillAll = [&] {
        fill22(0, {2, 4, 2, 4}, A);
        for (const int nClass : {control, result})
            setPlane(channel(0, nClass), M, 2, 2, {2, 4, 2, 4});
    };
    trial.getSpctmTrial(true, result)->setSpctmTimePtFreqPt(2, 2, 1);
    fillAll();
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_max(), 1);
    EXPECT_THAT(values(0, A), Each(1.0));
    EXPECT_THAT(planeValues(channel(0, result), M), Each(1.0));
    EXPECT_THAT(planeValues(channel(0, control), M), ElementsAre(2, 4, 2, 4)); // the trial lacks it
    fillAll();
    EXPECT_EQ(trial.normSpctmGlobEachFreqAllChnAllTim_rms(), 1);
    EXPECT_THAT(values(0, A), Each(1.0));
    EXPECT_THAT(planeValues(channel(0, result), M), Each(1.0));
    EXPECT_THAT(planeValues(channel(0, control), M), ElementsAre(2, 4, 2, 4));
}

TEST_F(TrialNormalization, ToTheRangeOfAShortGoesToItsEnds)
{
    fill22(0, {0, 1, 2, 3});
    fill22(2, {10, 5, 5, 5});
    EXPECT_EQ(trial.normSpctmValue2ShrtAllChnl(true, active, R), 1);
    EXPECT_EQ(values(0)[0], -32766.0);
    EXPECT_EQ(values(2)[0], 32766.0);
    EXPECT_EQ(values(2)[1], 0.0);
}

TEST_F(TrialNormalization, ToTheRangeOfAShortTakesConstantDataToZero)
{
    fill22(0, Values(4, 7.5));
    fill22(2, Values(4, 7.5));
    EXPECT_EQ(trial.normSpctmValue2ShrtAllChnl(true, active, R), 1);
    EXPECT_THAT(values(0), Each(0.0));
    EXPECT_THAT(values(2), Each(0.0));
}

TEST_F(TrialNormalization, ToTheRangeOfAShortByAKeptRangeOfOneValueSubtractsAlone)
{
    fill22(0, Values(4, 7.5));
    trial.normSpctmValue2ShrtAllChnl(true, active, R);
    fill22(0, {7.5, 8.5, 0.0, 7.5});
    EXPECT_EQ(trial.normSpctmValue2ShrtAllChnl(false, active, R), 1);
    EXPECT_THAT(values(0), ElementsAre(0.0, 1.0, -7.5, 0.0));
}

TEST_F(TrialNormalization, ToTheRangeOfAShortTakesAKeptRangeOrThePreset)
{
    fill22(0, {0, 10, 0, 10});
    trial.normSpctmValue2ShrtAllChnl(true, active, R);
    fill22(0, {0, 20, 0, 20});
    EXPECT_EQ(trial.normSpctmValue2ShrtAllChnl(false, active, R), 1);
    EXPECT_EQ(values(0)[1], (20.0 - 5.0) * 6553.2);
    setPlane(channel(0, control), R, 1, 1, {0.5}); // without the trial's spectrum the range is -1 to 1
    EXPECT_EQ(trial.normSpctmValue2ShrtAllChnl(true, control, R), 1);
    EXPECT_EQ(planeValues(channel(0, control), R)[0], 0.5 * 32766.0);
}

// ---- channel by channel

TEST_F(TrialProcess, ABaselineIsDividedOnOneChannelOrAll)
{
    const Values x{1, 2, 4, 3, 6, 12, 1, 2, 4, 1, 2, 4}; // baselines 2, 4, 8
    const Values stripped{0.5, 0.5, 0.5, 1.5, 1.5, 1.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5};
    fill(1, x);
    fill(3, x);
    EXPECT_EQ(trial.rootStrip(0, 2, 1.0, 1, false, active, R), 1);
    EXPECT_EQ(values(1), stripped);
    EXPECT_EQ(values(3), x);
    trial.setCurrentChannel(3);
    EXPECT_EQ(trial.rootStrip(0, 2, 1.0, -1, false, active, R), 1);
    EXPECT_EQ(values(3), stripped);
    fill(1, x);
    fill(3, x);
    EXPECT_EQ(trial.rootStrip(0, 2, 1.0, 99, true, active, R), 1);
    EXPECT_EQ(values(1), stripped);
    EXPECT_EQ(values(3), stripped);
}

TEST_F(TrialProcess, ABaselineOfOneChannelOutOfRangeFailsAndOfAMissingSpectrumSucceeds)
{
    for (const int index : {5, -2, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(trial.rootStrip(0, 2, 1.0, index, false, active, R), 0);
        EXPECT_EQ(trial.transformSpctm2log(index, false, active, R), 0);
    }
    for (const int index : {0, 2}) {
        EXPECT_EQ(trial.rootStrip(0, 2, 1.0, index, false, active, R), 1);
        EXPECT_EQ(trial.transformSpctm2log(index, false, active, R), 1);
    }
    EXPECT_EQ(trial.rootStrip(1, 1, 1.0, 1, false, active, R), 0); // what the channel gives
    EXPECT_EQ(trial.rootStrip(1, 1, 1.0, 1, true, active, R), 1);
    EXPECT_EQ(values(1), places);
    EXPECT_EQ(trial.rootStrip(UINT32_MAX, UINT32_MAX, 1.0, 1, false, active, R), 1);
    EXPECT_EQ(values(1)[11], 1.0);
}

TEST_F(TrialProcess, TheLogarithmIsTakenOfOneChannelOrAll)
{
    EXPECT_EQ(trial.transformSpctm2log(3, false, active, R), 1);
    EXPECT_EQ(values(1), places);
    EXPECT_EQ(values(3), changed([](double v) { return std::log(v + 100.0); }));
    trial.setCurrentChannel(1);
    EXPECT_EQ(trial.transformSpctm2log(-1, false, active, R), 1);
    EXPECT_EQ(values(1), changed([](double v) { return std::log(v); }));
    fill(1, places);
    fill(3, places);
    EXPECT_EQ(trial.transformSpctm2log(99, true, active, R), 1);
    EXPECT_EQ(values(1), changed([](double v) { return std::log(v); }));
    EXPECT_EQ(values(3), values(1));
    EXPECT_EQ(trial.setAllChnlSpctmNAN2zero(active, R), 1);
    EXPECT_EQ(values(1)[0], 0.0);
    EXPECT_EQ(values(3)[0], 0.0);
}

TEST_F(TrialProcess, AClassOrAllAreScaledInAllTypes)
{
    fill(1, places, A);
    setPlane(channel(3, result), M, T, F, places);
    EXPECT_EQ(trial.scaleSpctmAllDataType4Class(active, 2.0), 1);
    EXPECT_EQ(values(1), changed([](double v) { return 2 * v; }));
    EXPECT_EQ(values(1, A), values(1));
    EXPECT_EQ(planeValues(channel(3, result), M), places);
    EXPECT_EQ(trial.scaleSpctmAllDataType4Class(-1, 2.0), 1);
    EXPECT_EQ(values(1), changed([](double v) { return 4 * v; }));
    EXPECT_EQ(planeValues(channel(3, result), M), changed([](double v) { return 2 * v; }));
}

TEST_F(TrialProcess, AnotherClassIsScaledByNothingAndSucceeds)
{
    EXPECT_EQ(trial.scaleSpctmAllDataType4Class(3, 2.0), 1);
    EXPECT_EQ(trial.scaleSpctmAllDataType4Class(-2, 2.0), 1);
    EXPECT_EQ(values(1), places);
}

TEST_F(TrialProcess, ThePeakDistributionDoesNoWork)
{
    EXPECT_EQ(trial.setPeakDistTotal(1, 2, 3.0, active, A), 1);
    EXPECT_EQ(trial.setPeakDistTotal(1, 2, 3.0, active, 4), 0);
    EXPECT_EQ(trial.setPeakDistTotal(1, 2, 3.0, control, R), 0);
    EXPECT_EQ(values(1), places);
}

} // namespace
} // namespace megset::CMDTrial4SpctmProcess_test
