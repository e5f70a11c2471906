#include "apps/cli/spectrum/computeSpectra.h"
#include "apps/cli/spectrum/showSpectrum.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "tests/apps/cli/SampleCommand.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <malloc.h>

namespace megset::cli::spectrum_test {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::SizeIs;

// Trials of 200 samples at 200 Hz, 5 before the trigger; M1 holds a wave of 20 Hz and 30 fT, M2 one of 40 Hz and 10 fT.
class Spectrum : public SampleCommand
{
protected:
    Spectrum() : SampleCommand("spectrum", 2, 200)
    {
        for (int i = 0; i < 2; ++i) {
            CMDTrialzk& trial = *sample.dataset().getTrialzk(i);
            fill(*trial.getChannel(1), 20.0, 30.0);
            fill(*trial.getChannel(2), 40.0, 10.0);
        }
        sample.store();
    }

    static void fill(CMDChannelzk& channel, double hz, double amplitude)
    {
        std::vector<double> wave(200);
        for (std::size_t i = 0; i < wave.size(); ++i)
            wave[i] = amplitude * std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) / 200.0);
        channel.addData(200, wave.data());
    }

    json shown(std::vector<std::string> options)
    {
        options.insert(options.end(), {"--show", "--json"});
        const auto result = run(options);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return json::parse(result.output);
    }
    void compute(std::vector<std::string> more = {})
    {
        more.insert(more.end(), {"--freqs", "10:50:10", "--in-place"});
        const auto result = run(more);
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }
};

TEST_F(Spectrum, MagnitudeStandsAtTheWavesFrequencyWithItsAmplitude)
{
    compute();
    const json map = shown({"--channel", "M1"});
    EXPECT_EQ(map.at("hz"), json({10.0, 20.0, 30.0, 40.0, 50.0}));
    EXPECT_EQ(map.at("ms").front(), -25.0);
    EXPECT_EQ(map.at("ms")[1], -5.0); // steps of 20 ms
    EXPECT_EQ(map.at("unit"), "fT");
    ASSERT_THAT(map.at("values"), SizeIs(map.at("ms").size()));
    const json& middle = map.at("values")[map.at("values").size() / 2];
    EXPECT_NEAR(middle[1].get<double>(), 30.0, 0.01);
    EXPECT_NEAR(middle[3].get<double>(), 0.0, 0.3);
}

TEST_F(Spectrum, SumsGoOverTheChannels)
{
    compute();
    const auto middle = [&](const char* sum) {
        const json map = shown({"--sum", sum});
        return map.at("values")[map.at("values").size() / 2][1].get<double>();
    };
    EXPECT_NEAR(middle("max"), 30.0, 0.01);
    EXPECT_NEAR(middle("mean"), 15.0, 0.1);
    EXPECT_LT(middle("min"), 0.3);
}

TEST_F(Spectrum, AllTrialsHaveSpectraAndAreInOrder)
{
    compute();
    EXPECT_NEAR(shown({"--channel", "M2", "--trial", "0"}).at("values")[20][3].get<double>(), 10.0, 0.01);
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
}

TEST_F(Spectrum, AccumulationAddsAndNeedsTheSameShape)
{
    compute();
    compute({"--accumulate"});
    EXPECT_NEAR(shown({"--channel", "M1"}).at("values")[20][1].get<double>(), 60.0, 0.02);
    const auto result = run({"--freqs", "10:40:10", "--accumulate", "--in-place"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("other times or frequencies"));
}

TEST_F(Spectrum, AccumulationNeedsTheSameStepInTimeAndTheSameKindOfAxis)
{
    const auto accumulate = [&](std::vector<std::string> options) {
        options.insert(options.end(), {"--accumulate", "--in-place"});
        return run(options);
    };
    const auto middle = [&] { return shown({"--channel", "M1"}).at("values")[25][0].get<double>(); };
    ASSERT_EQ(run({"--freqs", "20:80:60", "--samples", "0:99", "--step", "2", "--in-place"}).exitCode, 0);
    for (const std::vector<std::string>& other : std::vector<std::vector<std::string>>{
             {"--freqs", "20:80:60", "--samples", "0:199", "--step", "4"},    // 50 points, too
             {"--octaves", "40:80:1", "--samples", "0:99", "--step", "2"}}) { // from a step above 20 Hz
        const auto result = accumulate(other);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.errors, HasSubstr("other times or frequencies"));
    }
    EXPECT_NEAR(middle(), 30.0, 0.1);
    EXPECT_EQ(accumulate({"--freqs", "20:80:60", "--samples", "100:199", "--step", "2"}).exitCode, 0);
    EXPECT_NEAR(middle(), 60.0, 0.2);
}

TEST_F(Spectrum, TheTrialsSpectrumTellsItsAxesAndWhetherItWasAdded)
{
    const std::vector<std::string> options = {"--samples", "20:119", "--edge", "10", "--step", "8"};
    const auto expectAxes = [&](bool isAccumulated) {
        ReadingNotes notes;
        const auto trial = readTrial(*openDatasetToLook(sample.path(), notes), 1);
        const CSpctmTrialzk* const spectrum = trial->getSpctmTrial(false, 0);
        ASSERT_NE(spectrum, nullptr);
        EXPECT_EQ(spectrum->m_nTimePt, 10);
        EXPECT_EQ(spectrum->m_nFreqPt, 5);
        EXPECT_EQ(spectrum->m_nTimeStep, 8);
        EXPECT_EQ(spectrum->m_nDataBegin, 20);
        EXPECT_EQ(spectrum->m_nDataEnd, 119);
        EXPECT_EQ(spectrum->m_nEdgePt, 10);
        EXPECT_EQ(spectrum->m_dFreqBegin, 10.0);
        EXPECT_EQ(spectrum->m_dFreqEnd, 50.0);
        EXPECT_EQ(spectrum->m_nFreqPowerStep, 0);
        EXPECT_EQ(spectrum->m_dFreqLinearStep, 10.0);
        EXPECT_EQ(spectrum->m_dSamplingRate, 200.0);
        EXPECT_EQ(spectrum->m_nSelectTimeEnd, 9);
        EXPECT_EQ(spectrum->m_nSelectFreqEnd, 4);
        EXPECT_EQ(spectrum->isAccumSpctm(), isAccumulated ? 1 : 0);
    };
    compute(options);
    expectAxes(false);
    std::vector<std::string> added = options;
    added.emplace_back("--accumulate");
    compute(added);
    expectAxes(true);
    compute(options);
    expectAxes(false);
}

TEST_F(Spectrum, DataTypesOfAPlaneBelongTogether)
{
    compute();
    const auto middle = [&](const char* type) {
        const json map = shown({"--channel", "M1", "--type", type});
        EXPECT_EQ(map.at("unit"), std::string(type) == "phase" ? "rad" : "fT");
        return map.at("values")[20][1].get<double>();
    };
    const double magnitude = middle("magnitude");
    const double phase = middle("phase");
    EXPECT_NEAR(middle("real"), magnitude * std::cos(phase), 1e-9);
    EXPECT_NEAR(middle("imaginary"), magnitude * std::sin(phase), 1e-9);
}

// Planes of known values, as an application leaves them: 2 times x 2 frequencies.
class KnownSpectrum : public Spectrum
{
protected:
    void keep(int channel, std::vector<double> values)
    {
        for (int i = 0; i < 2; ++i) {
            CMDTrialzk& trial = *sample.dataset().getTrialzk(i);
            trial.getChannel(channel)->getSpctmChnl(true, 0)->addSpctmDataRIM1d(values.data(), values.data(),
                                                                                values.data(), 2, 2, 1, 1, 0);
            trial.getSpctmTrial(true, 0)->setSpctmTimePtFreqPt(2, 2, 1);
        }
        sample.store();
    }
    void change(const std::vector<std::string>& options)
    {
        std::vector<std::string> all = options;
        all.emplace_back("--in-place");
        const auto result = run(all);
        ASSERT_EQ(result.exitCode, 0) << result.errors;
    }
    double first(const char* channel, const char* type = "magnitude")
    {
        return shown({"--channel", channel, "--type", type}).at("values")[0][0].get<double>();
    }
};

TEST_F(KnownSpectrum, EverySumShowsItsPlane)
{
    keep(1, {-1.0, 1.0, 1.0, 1.0});
    keep(2, {3.0, 1.0, 1.0, 1.0});
    keep(3, {4.0, 1.0, 1.0, 1.0});
    const auto sum = [&](const char* name, const char* kind) {
        return shown({"--sum", name, "--kind", kind}).at("values")[0][0].get<double>();
    };
    EXPECT_EQ(sum("mean", "all"), 2.0);
    EXPECT_EQ(sum("min", "all"), -1.0);
    EXPECT_EQ(sum("max", "all"), 4.0);
    EXPECT_EQ(sum("positive", "all"), 7.0 / 1.5);
    EXPECT_EQ(sum("negative", "all"), -1.0 / 1.5);
    EXPECT_EQ(sum("rms", "all"), std::sqrt(1.0 / 3.0)); // of the first channel
    EXPECT_EQ(sum("mean", "meg"), 1.0);
    EXPECT_EQ(sum("mean", "eeg"), 4.0);
    EXPECT_EQ(shown({"--kind", "eeg"}).at("unit"), "uV");
    EXPECT_EQ(shown({"--channel", "E1"}).at("unit"), "uV");
}

TEST_F(KnownSpectrum, SumsLeaveOutBadAndHiddenChannels)
{
    keep(1, {1.0, 1.0, 1.0, 1.0});
    keep(2, {5.0, 1.0, 1.0, 1.0});
    keep(3, {30.0, 1.0, 1.0, 1.0});
    sample.dataset().checkInitChnlParam(sample.dataset().getCurrentTrialPt());
    sample.dataset().setGoodChnl4Alltrials(2, 0);
    sample.store();
    EXPECT_EQ(shown({"--sum", "max"}).at("values")[0][0], 1.0);
    sample.dataset().setShowChnl4Alltrials(3, 0);
    sample.store();
    EXPECT_EQ(shown({"--sum", "max", "--kind", "all"}).at("values")[0][0], 1.0);
    EXPECT_EQ(shown({"--channel", "M2"}).at("values")[0][0], 5.0);
}

TEST_F(KnownSpectrum, NormalizationFollowsItsLaw)
{
    const auto normalized = [&](const char* law, const char* type) {
        keep(1, {1.0, 2.0, 3.0, 2.0});
        keep(2, {5.0, 6.0, 7.0, 6.0});
        change({"--normalize", law});
        return first("M1", type);
    };
    EXPECT_EQ(normalized("rms", "magnitude"), 1.0 / std::sqrt(21.0));
    EXPECT_EQ(normalized("rms", "real"), 1.0 / std::sqrt(21.0));
    EXPECT_EQ(normalized("max", "magnitude"), 1.0 / 7.0);
    EXPECT_EQ(normalized("max", "real"), 1.0);
    EXPECT_EQ(normalized("mean", "magnitude"), 1.0 / 0.04);
    EXPECT_EQ(normalized("mean", "real"), 1.0);
}

TEST_F(KnownSpectrum, ChangesGoToTheirDataType)
{
    keep(1, {8.0, 2.0, 3.0, 2.0});
    change({"--log", "--type", "imaginary"});
    EXPECT_EQ(first("M1", "imaginary"), std::log(8.0));
    EXPECT_EQ(first("M1", "real"), 8.0);
    change({"--cut", "0:7", "--type", "real"});
    EXPECT_EQ(first("M1", "real"), 0.0);
    EXPECT_EQ(first("M1"), 8.0);
    change({"--scale", "2"});
    EXPECT_EQ(first("M1"), 16.0);
    EXPECT_EQ(first("M1", "imaginary"), 2.0 * std::log(8.0));
}

// At 200 Hz with the trigger at sample 0, 35 ms are sample 7, though 0.035 * 200 is a little more in binary numbers.
TEST_F(Spectrum, ABaselineBeginsAtATimePointOfItsLatencyAndEndsBeforeOne)
{
    sample.dataset().getMEGRecordInfozk()->m_nRecPreTrigPts = 0;
    std::vector<double> values = {1.0, 2.0, 4.0, 8.0}; // at 30, 35, 40 and 45 ms
    for (int i = 0; i < 2; ++i) {
        CMDTrialzk& trial = *sample.dataset().getTrialzk(i);
        trial.getChannel(1)->getSpctmChnl(true, 0)->addSpctmDataRIM1d(values.data(), values.data(), values.data(), 4, 1,
                                                                      1, 1, 0);
        trial.getSpctmTrial(true, 0)->setSpctmTimePtFreqPt(4, 1, 1);
        trial.getSpctmTrial(true, 0)->m_nDataBegin = 6;
    }
    sample.store();
    const auto stripped = [&](const std::string& baseline) {
        const auto result = run({"--baseline", baseline, "--type", "real", "--in-place"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return shown({"--channel", "M1", "--type", "real"}).at("values");
    };
    EXPECT_EQ(stripped("35:45"), json({{1.0 / 3.0}, {2.0 / 3.0}, {4.0 / 3.0}, {8.0 / 3.0}}));
    EXPECT_EQ(stripped("30:35"), json({{1.0}, {2.0}, {4.0}, {8.0}}));
    EXPECT_EQ(stripped("31:36"), json({{0.5}, {1.0}, {2.0}, {4.0}}));
    EXPECT_EQ(stripped("45:1000"), json({{0.125}, {0.25}, {0.5}, {1.0}}));
}

TEST_F(Spectrum, ChangesAreMadeAndTakenBack)
{
    compute();
    ASSERT_EQ(run({"--scale", "2", "--in-place"}).exitCode, 0);
    EXPECT_NEAR(shown({"--channel", "M1"}).at("values")[20][1].get<double>(), 60.0, 0.02);
    ASSERT_EQ(run({"--reload", "--in-place"}).exitCode, 0);
    EXPECT_NEAR(shown({"--channel", "M1"}).at("values")[20][1].get<double>(), 30.0, 0.01);
    ASSERT_EQ(run({"--log", "--in-place"}).exitCode, 0);
    EXPECT_NEAR(shown({"--channel", "M1"}).at("values")[20][1].get<double>(), std::log(30.0), 0.001);
    ASSERT_EQ(run({"--reload", "--in-place"}).exitCode, 0);
    ASSERT_EQ(run({"--baseline", "300:600", "--in-place"}).exitCode, 0);
    EXPECT_NEAR(shown({"--channel", "M1"}).at("values")[20][1].get<double>(), 1.0, 0.001);
    ASSERT_EQ(run({"--reload", "--in-place"}).exitCode, 0);
    ASSERT_EQ(run({"--cut", "0:25", "--in-place"}).exitCode, 0);
    EXPECT_EQ(shown({"--channel", "M1"}).at("values")[20][1], 0.0);
}

TEST_F(Spectrum, EdgeStepAndSamplesChooseTheTimes)
{
    compute({"--samples", "20:119", "--edge", "10", "--step", "8"});
    const json ms = shown({"--channel", "M1"}).at("ms");
    EXPECT_THAT(ms, SizeIs(10)); // samples 30, 38, ... 102
    EXPECT_EQ(ms.front(), 125.0);
    EXPECT_EQ(ms[1], 165.0);
}

TEST_F(Spectrum, OctavesGiveAPowerAxis)
{
    ASSERT_EQ(run({"--octaves", "10:40:1", "--in-place"}).exitCode, 0);
    const json hz = shown({"--channel", "M1"}).at("hz");
    EXPECT_THAT(hz, SizeIs(3));
    EXPECT_DOUBLE_EQ(hz[0], 10.0);
    EXPECT_DOUBLE_EQ(hz[1], 20.0);
    EXPECT_DOUBLE_EQ(hz[2], 40.0);
}

TEST_F(Spectrum, PictureAndNumPyFileAreWritten)
{
    compute();
    const std::string svg = sample.folder().native("map.svg").string();
    const std::string npy = sample.folder().native("map.npy").string();
    const auto result = run({"--show", "--channel", "M1", "--svg", svg, "--npy", npy});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("5 frequencies, 10 to 50 Hz\n"));
    EXPECT_THAT(result.output, HasSubstr(", 20 Hz\n")); // of the largest value
    EXPECT_TRUE(sample.folder().has("map.svg"));
    EXPECT_TRUE(sample.folder().has("map.npy"));
}

TEST_F(Spectrum, FaultsAreTold)
{
    EXPECT_THAT(run({"--show"}).errors, HasSubstr("has no such spectrum: meg channels, class active, magnitude\n"));
    EXPECT_THAT(run({"--scale", "2", "--in-place"}).errors, HasSubstr("it has no spectra of this class"));
    EXPECT_THAT(run({"--freqs", "10:150:10", "--in-place"}).errors, HasSubstr("half of the sampling rate"));
    EXPECT_THAT(run({"--freqs", "x", "--in-place"}).errors, HasSubstr("not of the form"));
    EXPECT_THAT(run({"--freqs", "10:20:1", "--edge", "100", "--in-place"}).errors, HasSubstr("no sample is left"));
    EXPECT_EQ(run({"--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--freqs", "1:2:1", "--log", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--freqs", "1:2:1", "--trial", "0", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--log", "--json", "--in-place"}).exitCode, 2);
}

TEST_F(Spectrum, AbsentPlanesClassesAndTypesAreTold)
{
    compute({"--channels", "M1"});
    EXPECT_THAT(run({"--show", "--channel", "M2"}).errors, HasSubstr("has no such spectrum"));
    EXPECT_THAT(run({"--show", "--channel", "M1", "--class", "control", "--type", "phase"}).errors,
                HasSubstr("has no such spectrum: M1, class control, phase\n"));
    EXPECT_THAT(run({"--show", "--class", "control"}).errors, HasSubstr("has no such spectrum"));
    EXPECT_THAT(run({"--show", "--kind", "eeg"}).errors, HasSubstr("has no such spectrum"));
    EXPECT_THAT(run({"--show", "--channel", "M9"}).errors, HasSubstr("there is no channel M9; the nearest names are"));
    EXPECT_THAT(run({"--show", "--trial", "2"}).errors, HasSubstr("there is no trial 2"));
    EXPECT_EQ(run({"--show", "--class", "fourth"}).exitCode, 2);
    EXPECT_EQ(run({"--show", "--type", "power"}).exitCode, 2);
    EXPECT_EQ(run({"--show", "--type", "4"}).exitCode, 2);
    EXPECT_THAT(run({"--log", "--class", "result", "--in-place"}).errors,
                HasSubstr("trial 0 of 2: it has no spectra of this class"));
}

TEST_F(Spectrum, AReferenceChannelAloneHasNoSum)
{
    compute({"--channels", "R1"});
    EXPECT_THAT(run({"--show"}).errors, HasSubstr("has no such spectrum"));
    EXPECT_THAT(shown({"--kind", "all"}).at("hz"), SizeIs(5));
    EXPECT_THAT(shown({"--channel", "R1"}).at("hz"), SizeIs(5));
}

// Applications may leave such spectra. The largest times and frequencies make the sum plane.
TEST_F(Spectrum, PlanesOfUnequalSizeBetweenChannelsAreSummedAtTheirOwnIndices)
{
    for (int i = 0; i < 2; ++i) {
        CMDTrialzk& trial = *sample.dataset().getTrialzk(i);
        std::vector<double> ones(12, 1.0);
        std::vector<double> twos(12, 2.0);
        trial.getChannel(1)->getSpctmChnl(true, 0)->addSpctmDataRIM1d(ones.data(), ones.data(), ones.data(), 4, 3, 1, 1,
                                                                      0);
        trial.getChannel(2)->getSpctmChnl(true, 0)->addSpctmDataRIM1d(twos.data(), twos.data(), twos.data(), 6, 2, 1, 1,
                                                                      0);
        trial.getSpctmTrial(true, 0)->setSpctmTimePtFreqPt(6, 3, 2);
    }
    sample.store();
    const json values = shown({"--sum", "max"}).at("values");
    EXPECT_EQ(values, json({{2, 2, 2}, {2, 2, 2}, {2, 2, 2}, {2, 2, 2}, {0, 0, 0}, {0, 0, 0}}));
    EXPECT_THAT(shown({"--channel", "M1"}).at("values"), SizeIs(4));
    EXPECT_THAT(shown({"--channel", "M2"}).at("hz"), SizeIs(2));
}

TEST_F(Spectrum, ComputingOnOtherAxesDropsTheClasssPlanesOfOtherChannels)
{
    compute();
    compute({"--channels", "M1"}); // the same axes
    EXPECT_THAT(shown({"--channel", "M2"}).at("hz"), SizeIs(5));
    const auto other = run({"--freqs", "10:40:10", "--channels", "M1", "--in-place"});
    ASSERT_EQ(other.exitCode, 0) << other.errors;
    EXPECT_THAT(shown({"--channel", "M1"}).at("hz"), SizeIs(4));
    EXPECT_THAT(run({"--show", "--channel", "M2"}).errors, HasSubstr("has no such spectrum"));
}

TEST_F(Spectrum, SamplesThatAreNoNumbersGiveNullAndGreyAndAreClearedByNothing)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 2; ++i) {
        std::vector<double> wave(200, 1.0);
        wave[100] = i == 0 ? nan : infinite;
        sample.dataset().getTrialzk(i)->getChannel(1)->addData(200, wave.data());
    }
    sample.store();
    compute();
    for (const char* trial : {"0", "1"}) {
        const json map = shown({"--channel", "M1", "--trial", trial});
        for (const json& row : map.at("values"))
            for (const json& value : row)
                ASSERT_TRUE(value.is_null());
        EXPECT_NEAR(shown({"--channel", "M2", "--trial", trial}).at("values")[20][3].get<double>(), 10.0, 0.01);
        const auto text = run({"--show", "--channel", "M1", "--trial", trial});
        EXPECT_EQ(text.exitCode, 0);
        EXPECT_THAT(text.output, testing::Not(HasSubstr("largest")));
    }
    ASSERT_EQ(run({"--log", "--in-place"}).exitCode, 0);
    EXPECT_EQ(run({"--normalize", "max", "--in-place"}).exitCode, 0);
    EXPECT_EQ(run({"--cut", "0:1", "--in-place"}).exitCode, 0);
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
}

TEST_F(Spectrum, SelectionsOutsideThePlaneAreTold)
{
    EXPECT_THAT(run({"--freqs", "10:20:10", "--samples", "200:300", "--in-place"}).errors, HasSubstr("200:300"));
    EXPECT_THAT(run({"--freqs", "10:20:10", "--samples", "50:20", "--in-place"}).errors, HasSubstr("50:20"));
    compute();
    EXPECT_THAT(run({"--baseline", "5000:6000", "--in-place"}).errors, HasSubstr("no time point lies in the baseline"));
    EXPECT_THAT(run({"--baseline", "100:-100", "--in-place"}).errors, HasSubstr("no time point lies in the baseline"));
    EXPECT_THAT(run({"--baseline", "100", "--in-place"}).errors, HasSubstr("not of the form A:B"));
    EXPECT_THAT(run({"--cut", "1:x", "--in-place"}).errors, HasSubstr("not of the form A:B"));
    EXPECT_THAT(run({"--cut", "nan:1", "--in-place"}).errors, HasSubstr("not of the form A:B"));
    EXPECT_THAT(run({"--baseline", "0:nan", "--in-place"}).errors, HasSubstr("not of the form A:B"));
    EXPECT_NEAR(shown({"--channel", "M1"}).at("values")[20][1].get<double>(), 30.0, 0.01);
}

TEST_F(Spectrum, ChannelsOfDifferentLengthAreToldAndTrialsMayDiffer)
{
    const std::vector<double> shorter(150, 1.0);
    sample.dataset().getTrialzk(1)->getChannel(1)->addData(150, shorter.data());
    sample.store();
    const auto names = sample.folder().names();
    const auto result = run({"--freqs", "10:20:10", "--out", sample.folder().native("new.meg").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("trial 1 of 2: the channels have different numbers of samples"));
    EXPECT_EQ(sample.folder().names(), names);
    sample.dataset().getTrialzk(1)->getChannel(2)->addData(150, shorter.data());
    sample.store();
    compute();
    EXPECT_THAT(shown({"--channel", "M1", "--trial", "0"}).at("ms"), SizeIs(50));
    EXPECT_THAT(shown({"--channel", "M1", "--trial", "1"}).at("ms"), SizeIs(38));
}

// The planes themselves are sample memory, which is no part of the heap.
TEST(SpectrumMemory, TheHeapDoesNotGrowWithThePlanesOfEachChannel)
{
    constexpr int channels = 64;
    const std::vector<double> wave(12'000, 1.0);
    CMDTrialzk trial;
    ASSERT_TRUE(trial.allocateChannels(channels));
    for (int c = 0; c < channels; ++c) {
        trial.getChannel(c)->setChannelType(100);
        trial.getChannel(c)->addData(std::ssize(wave), wave.data());
    }
    SpectrumRequest request;
    request.axis = spectrum::linearAxis("2:40:2");
    const std::size_t before = mallinfo2().arena;
    EXPECT_EQ(computeSpectra(trial, 1200.0, request), channels);
    EXPECT_LE(mallinfo2().arena, before + (std::size_t{8} << 20U));
}

} // namespace

} // namespace megset::cli::spectrum_test
