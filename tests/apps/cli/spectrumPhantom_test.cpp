// Spectra of a simulated recording, from the command line: what the phantom put into it is found where it was put.

#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/dataset/openDataset.h"
#include "apps/phantom/Sources.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "tests/kit/Program.h"
#include "tests/kit/TemporaryFolder.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::spectrumPhantom_test {

namespace {

using nlohmann::json;

// A place in a plane of times x frequencies, and what stands there.
struct Peak
{
    double ms = 0.0;
    double hz = 0.0;
    double value = 0.0;
};

Peak largest(const json& map)
{
    Peak peak;
    for (std::size_t t = 0; t < map.at("ms").size(); ++t)
        for (std::size_t f = 0; f < map.at("hz").size(); ++f)
            if (const double value = map.at("values")[t][f]; value > peak.value)
                peak = {map.at("ms")[t], map.at("hz")[f], value};
    return peak;
}

// Magnitude of the wavelet transform of the phantom's answer to a stimulus, worked out as a convolution, where the
// answer has the amplitude 1. `ms` is from the stimulus.
double answerAt(double ms, double hz, double cycles, double rate)
{
    const double s = cycles / (2.0 * std::numbers::pi * hz);
    const auto half = static_cast<int>(5.0 * s * rate);
    std::complex<double> sum = 0.0;
    double weight = 0.0;
    for (int k = -half; k <= half; ++k) {
        const double t = k / rate;
        const double envelope = std::exp(-t * t / (2.0 * s * s));
        weight += envelope;
        const double at = ms / 1000.0 - t;
        if (at >= 0.0)
            sum += phantom::evokedWave(at) * envelope *
                   (std::polar(1.0, 2.0 * std::numbers::pi * hz * t) - std::exp(-cycles * cycles / 2.0));
    }
    return std::abs(2.0 * sum / weight);
}

Peak expectedAnswer(const json& map, double cycles, double rate, double amplitude)
{
    Peak peak;
    for (const double ms : map.at("ms"))
        for (const double hz : map.at("hz"))
            if (const double value = amplitude * answerAt(ms, hz, cycles, rate); value > peak.value)
                peak = {ms, hz, value};
    return peak;
}

class PhantomSpectrum : public testing::Test
{
protected:
    static std::string run(const std::vector<std::string>& arguments)
    {
        const auto result = kit::runProgram(MEGSET_PROGRAM, arguments);
        EXPECT_EQ(result.exitCode, 0) << arguments.front() << ": " << result.errors;
        return result.output;
    }
    std::string path(const char* name) const { return m_folder.native(name).string(); }
    /// Simulates, imports, takes the interference away, and computes spectra.
    void makeSpectra(std::vector<std::string> phantomOptions, std::vector<std::string> spectrumOptions) const
    {
        phantomOptions.insert(phantomOptions.begin(),
                              {"phantom", path("p.ds"), "--channels", std::to_string(gradiometers)});
        run(phantomOptions);
        run({"import", path("p.ds"), path("p.meg")});
        run({"gradient", path("p.meg"), "--order", "3", "--in-place"});
        spectrumOptions.insert(spectrumOptions.begin(), {"spectrum", path("p.meg"), "--in-place"});
        run(spectrumOptions);
    }
    json shown(std::vector<std::string> options) const
    {
        options.insert(options.begin(), {"spectrum", path("p.meg"), "--show", "--json"});
        return json::parse(run(options));
    }

    /// Magnitude of the mean of a channel's complex planes over all trials, rows of values for each time.
    json magnitudeOfMean(const std::string& channel) const
    {
        ReadingNotes notes;
        const auto open = openDatasetToLook(path("p.meg"), notes);
        CSpctmChnlzk sum;
        for (int i = 0; i < open->dataset.getTotalTrial(); ++i) {
            const auto trial = readTrial(*open, i);
            CSpctmChnlzk* const spectrum = trial->getChannel(channelNamed(*trial, channel))->getSpctmChnl(false, 0);
            sum.addSpctmChnlzk(spectrum, true);
        }
        json rows = json::array();
        for (std::int64_t t = 0; t < sum.m_nTimePt; ++t) {
            rows.push_back(json::array());
            for (std::int64_t f = 0; f < sum.m_nFreqPt; ++f) {
                const auto i = static_cast<std::size_t>(t * sum.m_nFreqPt + f);
                rows.back().push_back(std::hypot(sum.m_pSpctmR[i], sum.m_pSpctmI[i]) / open->dataset.getTotalTrial());
            }
        }
        return rows;
    }

    static constexpr int gradiometers = 48;
    TemporaryFolder m_folder;
};

// The channel that the answering dipole reaches best, and what it makes there at its peak, in fT.
std::pair<std::string, double> bestChannel(int gradiometers)
{
    const phantom::Instrument instrument = phantom::makeInstrument(gradiometers);
    std::pair<std::string, double> best;
    for (const int index : instrument.ofKind(phantom::ChannelKind::gradiometer)) {
        const phantom::Channel& channel = instrument.channels[static_cast<std::size_t>(index)];
        const double field = phantom::brainField(instrument, channel, phantom::evokedDipole(instrument)) * 1e15;
        if (std::abs(field) > best.second)
            best = {channel.name, std::abs(field)};
    }
    return best;
}

// What is not in step with the stimuli, alpha rhythm and noise, goes down in the mean of the complex planes over
// trials.
TEST_F(PhantomSpectrum, AnswerToTheStimulusStandsAtItsLatencyAndFrequency)
{
    constexpr double rate = 600.0;
    constexpr double cycles = 3.0;
    constexpr double step = 20.0; // ms
    constexpr double bin = 1.0;   // Hz
    const auto [channel, amplitude] = bestChannel(gradiometers);
    makeSpectra({"--trials", "48", "--seconds", "1.4", "--rate", "600"},
                {"--freqs", "3:24:1", "--cycles", "3", "--step", "12", "--channels", channel});
    json map = shown({"--channel", channel});
    EXPECT_EQ(map.at("ms")[1].get<double>() - map.at("ms")[0].get<double>(), step);
    map["values"] = magnitudeOfMean(channel);
    const Peak expected = expectedAnswer(map, cycles, rate, amplitude);
    const Peak found = largest(map);
    EXPECT_NEAR(found.ms, expected.ms, step) << channel;
    EXPECT_NEAR(found.hz, expected.hz, bin) << channel;
    EXPECT_NEAR(found.value, expected.value, 0.25 * expected.value) << channel;
}

TEST_F(PhantomSpectrum, AlphaRhythmStandsAtTenHertz)
{
    makeSpectra({"--trials", "1", "--seconds", "30", "--rate", "300"}, {"--freqs", "5:15:1", "--edge", "600"});
    const json map = shown({"--sum", "mean"});
    std::vector<double> overTime(map.at("hz").size());
    for (const json& row : map.at("values"))
        for (std::size_t f = 0; f < overTime.size(); ++f)
            overTime[f] += row[f].get<double>() / static_cast<double>(map.at("ms").size());
    const auto peak = static_cast<std::size_t>(std::max_element(overTime.begin(), overTime.end()) - overTime.begin());
    EXPECT_NEAR(map.at("hz")[peak].get<double>(), 10.0, 1.0);
    EXPECT_GT(overTime[peak], 1.5 * overTime.front());
    EXPECT_GT(overTime[peak], 1.5 * overTime.back());
}

} // namespace

} // namespace megset::cli::spectrumPhantom_test
