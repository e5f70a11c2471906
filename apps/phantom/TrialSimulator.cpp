#include "apps/phantom/TrialSimulator.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace megset::phantom {

namespace {

constexpr std::uint64_t firstNoiseStream = 1000;

std::int32_t converted(double value)
{
    constexpr double least = std::numeric_limits<std::int32_t>::min();
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::floor(value + 0.5), least, most));
}

} // namespace

TrialSimulator::TrialSimulator(const Instrument& instrument, const PhantomOptions& options)
    : m_instrument(instrument), m_options(options), m_sources(instrument, options)
{
    for (std::size_t i = 0; i < instrument.channels.size(); ++i)
        m_noise.emplace_back(options.seed, firstNoiseStream + i);
}

void TrialSimulator::simulate(const PhantomPlan& plan, int trial, const TakeChannel& take)
{
    const std::vector<std::vector<double>> courses = m_sources.courses(plan, trial);
    std::vector<double> samples(static_cast<std::size_t>(plan.samples));
    std::vector<std::int32_t> integers(samples.size());
    for (std::size_t i = 0; i < m_instrument.channels.size(); ++i) {
        const Channel& channel = m_instrument.channels[i];
        std::fill(samples.begin(), samples.end(), 0.0);
        if (channel.kind == ChannelKind::stimulus)
            addStimuli(plan, trial, samples);
        else
            addSignals(i, courses, samples);
        std::transform(samples.begin(), samples.end(), integers.begin(),
                       [gain = channel.gain()](double sample) { return converted(gain * sample); });
        take(i, integers);
    }
}

void TrialSimulator::addStimuli(const PhantomPlan& plan, int trial, std::vector<double>& samples) const
{
    for (const Stimulus& stimulus : plan.stimuliOf(trial))
        std::fill_n(samples.begin() + stimulus.sample, m_options.pulseSamples, static_cast<double>(stimulus.code));
}

void TrialSimulator::addSignals(std::size_t channel, const std::vector<std::vector<double>>& courses,
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
