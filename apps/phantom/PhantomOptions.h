#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace megset::phantom {

inline constexpr int maxGradiometers = 275;
inline constexpr int maxCode = 255;

/// What to simulate.
struct PhantomOptions
{
    int trials = 10;
    double seconds = 1;             ///< of a trial
    double rate = 1200;             ///< samples a second
    int channels = maxGradiometers; ///< gradiometers; fewer than all are spread evenly over the helmet
    std::uint64_t seed = 1;

    double preTriggerSeconds = 0.2; ///< from a trial's beginning to its first stimulus
    /// Time from one stimulus to the next within a trial, as many as fit; 0: one stimulus a trial.
    double stimulusIntervalSeconds = 0;
    std::vector<int> codes = {1}; ///< codes of the stimuli in turn, 1 to 255, begun again after the last
    int pulseSamples = 10;        ///< length of a pulse on the stimulus line
    /// One trial after another in one long trial, without a trigger point; the stimuli stay where they are.
    bool continuous = false;

    // Strength of each part of the signal; 0 leaves it out.
    double evokedScale = 1;
    double alphaScale = 1;
    double noiseScale = 1;
    double interferenceScale = 1;

    /// Size that a file of samples may have before the next trial goes to a continuation file.
    std::int64_t maxFileBytes = 2147483647;
};

/// Where a stimulus begins: trial and sample of it, from 0.
struct Stimulus
{
    int trial = 0;
    int sample = 0;
    int code = 0;

    friend bool operator==(const Stimulus&, const Stimulus&) = default;
};

/// What comes of the options: the trials as they are written, and their stimuli in order of time.
struct PhantomPlan
{
    int trials = 0;
    int samples = 0;           ///< of a trial
    int preTriggerSamples = 0; ///< 0 for a continuous recording
    std::vector<Stimulus> stimuli;

    std::span<const Stimulus> stimuliOf(int trial) const;
};

/// Throws std::invalid_argument with a sentence on the first option that can't be fulfilled.
PhantomPlan planPhantom(const PhantomOptions& options);

} // namespace megset::phantom
