#include "apps/phantom/SampleWriter.h"
#include "apps/readers/ctf/format.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <stdexcept>

namespace megset::phantom {

namespace {

namespace format = ctf::format;

constexpr std::uint64_t firstNoiseStream = 1000;
constexpr std::size_t sampleSize = 4;

std::int64_t trialSize(const PhantomPlan& plan, std::size_t channels)
{
    return static_cast<std::int64_t>(sampleSize * channels) * plan.samples;
}

std::int64_t trialsOfFile(const PhantomPlan& plan, std::size_t channels, std::int64_t maxFileBytes)
{
    return (maxFileBytes - static_cast<std::int64_t>(format::tagSize)) / trialSize(plan, channels);
}

/// The nearest integer, within the range of the format.
std::int32_t stored(double value)
{
    constexpr double least = std::numeric_limits<std::int32_t>::min();
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::floor(value + 0.5), least, most));
}

void writeBigEndian(std::ofstream& file, const std::vector<double>& samples, double gain)
{
    std::string bytes(samples.size() * sampleSize, '\0');
    char* at = bytes.data();
    for (const double sample : samples) {
        const auto bits = static_cast<std::uint32_t>(stored(gain * sample));
        *at++ = static_cast<char>(bits >> 24);
        *at++ = static_cast<char>(bits >> 16);
        *at++ = static_cast<char>(bits >> 8);
        *at++ = static_cast<char>(bits);
    }
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string fileTag()
{
    std::string tag(format::meg4Tag41);
    tag.resize(format::tagSize);
    return tag;
}

/// A new file with its tag.
std::ofstream sampleFile(const std::filesystem::path& path)
{
    std::ofstream file(path, std::ios::binary);
    const std::string tag = fileTag();
    file.write(tag.data(), static_cast<std::streamsize>(tag.size()));
    return file;
}

} // namespace

void checkTrialFits(const PhantomPlan& plan, std::size_t channels, std::int64_t maxFileBytes)
{
    if (trialsOfFile(plan, channels, maxFileBytes) < 1)
        throw std::invalid_argument("a trial of " + std::to_string(plan.samples) + " samples and " +
                                    std::to_string(channels) + " channels is larger than a file may be, " +
                                    std::to_string(maxFileBytes) + " bytes");
}

SampleWriter::SampleWriter(std::filesystem::path stem, const Instrument& instrument, const PhantomOptions& options)
    : m_stem(std::move(stem)), m_instrument(instrument), m_options(options), m_sources(instrument, options)
{
    for (std::size_t i = 0; i < instrument.channels.size(); ++i)
        m_noise.emplace_back(options.seed, firstNoiseStream + i);
}

int SampleWriter::writeTrials(const PhantomPlan& plan)
{
    const std::int64_t perFile = trialsOfFile(plan, m_instrument.channels.size(), m_options.maxFileBytes);
    int files = 0;
    std::filesystem::path path;
    std::ofstream file;
    for (int trial = 0; trial < plan.trials; ++trial) {
        if (trial % perFile == 0) {
            path = m_stem;
            path += files == 0 ? ".meg4" : "." + std::to_string(files) + "_meg4";
            file = sampleFile(path);
            ++files;
        }
        writeTrial(plan, trial, file);
        if (!file.flush())
            throw std::runtime_error(path.string() + " can't be written");
    }
    return files;
}

void SampleWriter::writeTrial(const PhantomPlan& plan, int trial, std::ofstream& file)
{
    const std::vector<std::vector<double>> courses = m_sources.courses(plan, trial);
    std::vector<double> samples(static_cast<std::size_t>(plan.samples));
    for (std::size_t i = 0; i < m_instrument.channels.size(); ++i) {
        std::fill(samples.begin(), samples.end(), 0.0);
        if (m_instrument.channels[i].kind == ChannelKind::stimulus)
            addStimuli(plan, trial, samples);
        else
            addSignals(i, courses, samples);
        writeBigEndian(file, samples, m_instrument.channels[i].gain());
    }
}

void SampleWriter::addStimuli(const PhantomPlan& plan, int trial, std::vector<double>& samples) const
{
    for (const Stimulus& stimulus : plan.stimuliOf(trial))
        std::fill_n(samples.begin() + stimulus.sample, m_options.pulseSamples, static_cast<double>(stimulus.code));
}

void SampleWriter::addSignals(std::size_t channel, const std::vector<std::vector<double>>& courses,
                              std::vector<double>& samples)
{
    for (std::size_t source = 0; source < m_sources.count(); ++source) {
        const double share = m_sources.share(source, channel);
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] += share * courses[source][i];
    }
    // Noise that is spread evenly up to half the sampling rate.
    const double deviation =
        m_options.noiseScale * m_instrument.channels[channel].noise * std::sqrt(m_options.rate / 2);
    for (double& sample : samples)
        sample += deviation * m_noise[channel].normal();
}

} // namespace megset::phantom
