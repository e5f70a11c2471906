#include "apps/phantom/PhantomOptions.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace megset::phantom {

namespace {

// The format counts trials in 16 bits, and keeps a trial whole in a file of at most 2 GB.
constexpr int maxTrials = std::numeric_limits<std::int16_t>::max();
constexpr double maxSamples = 1e9;
constexpr std::int64_t maxStimuli = 1000000;
constexpr double minRate = 100;
constexpr double maxRate = 100000;

void require(bool fulfilled, const char* sentence)
{
    if (!fulfilled)
        throw std::invalid_argument(sentence);
}

bool isScale(double value)
{
    return std::isfinite(value) && value >= 0;
}

void checkRecording(const PhantomOptions& options)
{
    require(options.trials >= 1 && options.trials <= maxTrials, "the number of trials is from 1 to 32767");
    require(options.rate >= minRate && options.rate <= maxRate, "the sampling rate is from 100 to 100000 Hz");
    require(options.seconds > 0 && options.seconds * options.rate <= maxSamples, "a trial has 1 to 1e9 samples");
    require(options.channels >= 1 && options.channels <= maxGradiometers,
            "the number of gradiometers is from 1 to 275");
    require(isScale(options.evokedScale) && isScale(options.alphaScale) && isScale(options.noiseScale) &&
                isScale(options.interferenceScale),
            "the strength of a part of the signal is a number of at least 0");
}

void checkStimuli(const PhantomOptions& options)
{
    require(!options.codes.empty(), "there is at least one stimulus code");
    require(
        std::all_of(options.codes.begin(), options.codes.end(), [](int code) { return code >= 1 && code <= maxCode; }),
        "stimulus codes are from 1 to 255");
    require(options.pulseSamples >= 1, "a pulse has at least one sample");
    require(options.preTriggerSeconds >= 0 && options.preTriggerSeconds <= options.seconds,
            "the first stimulus is within the trial");
    require(options.stimulusIntervalSeconds >= 0 && options.stimulusIntervalSeconds * options.rate <= maxSamples,
            "the time between stimuli is 0 or more, and at most 1e9 samples");
}

int samplesOf(double seconds, double rate)
{
    return static_cast<int>(std::floor(seconds * rate + 0.5));
}

/// Samples of one trial at which a stimulus begins. Each pulse ends before the trial does.
std::vector<int> stimulusSamples(int first, int interval, int pulse, int samples)
{
    std::vector<int> starts = {first};
    if (interval > 0)
        for (std::int64_t start = std::int64_t{first} + interval;
             start + pulse < samples && std::ssize(starts) <= maxStimuli; start += interval)
            starts.push_back(static_cast<int>(start));
    return starts;
}

} // namespace

std::span<const Stimulus> PhantomPlan::stimuliOf(int trial) const
{
    const auto begin = std::lower_bound(stimuli.begin(), stimuli.end(), trial,
                                        [](const Stimulus& stimulus, int number) { return stimulus.trial < number; });
    const auto end = std::upper_bound(begin, stimuli.end(), trial,
                                      [](int number, const Stimulus& stimulus) { return number < stimulus.trial; });
    return {begin, end};
}

PhantomPlan planPhantom(const PhantomOptions& options)
{
    checkRecording(options);
    checkStimuli(options);
    const int samples = samplesOf(options.seconds, options.rate);
    const int first = samplesOf(options.preTriggerSeconds, options.rate);
    const int interval = samplesOf(options.stimulusIntervalSeconds, options.rate);
    require(samples >= 1, "a trial has 1 to 1e9 samples");
    require(std::int64_t{first} + options.pulseSamples < samples,
            "a trial is long enough for its first stimulus with the whole pulse and a sample behind it");
    require(options.stimulusIntervalSeconds == 0 || interval > options.pulseSamples,
            "the time between stimuli is longer than a pulse");
    require(!options.continuous || static_cast<double>(samples) * options.trials <= maxSamples,
            "a continuous recording has at most 1e9 samples");

    PhantomPlan plan;
    plan.trials = options.continuous ? 1 : options.trials;
    plan.samples = options.continuous ? samples * options.trials : samples;
    plan.preTriggerSamples = options.continuous ? 0 : first;
    const std::vector<int> starts = stimulusSamples(first, interval, options.pulseSamples, samples);
    require(static_cast<std::int64_t>(starts.size()) * options.trials <= maxStimuli,
            "a recording has at most 1000000 stimuli");
    for (int trial = 0; trial < options.trials; ++trial)
        for (const int start : starts) {
            const int code = options.codes[plan.stimuli.size() % options.codes.size()];
            plan.stimuli.push_back(options.continuous ? Stimulus{0, trial * samples + start, code}
                                                      : Stimulus{trial, start, code});
        }
    return plan;
}

} // namespace megset::phantom
