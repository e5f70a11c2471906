#pragma once
// Ranges of samples as options tell them.

#include <cstdint>
#include <string>

namespace megset::cli {

/// Both ends included.
struct SampleRange
{
    std::int64_t from = 0;
    std::int64_t to = -1;

    std::int64_t count() const { return to - from + 1; }
};

/// "A:B" with A and B from 0 to `samples` - 1, both included; either may be left out for the first or last sample, and
/// an empty text is all. Throws std::runtime_error for anything else.
SampleRange parseSampleRange(const std::string& text, std::int64_t samples);

/// The samples of a trial, and how their times count from its trigger.
struct TrialTimes
{
    std::int64_t samples = 0;
    double rate = 0.0; ///< Hz
    std::int64_t preTrigger = 0;

    /// Time of a sample in ms from the trigger.
    double msOf(std::int64_t sample) const
    {
        return (static_cast<double>(sample) - static_cast<double>(preTrigger)) / rate * 1000.0;
    }
};

/// "A:B" as times in ms from the trigger, which stand for the nearest samples. Throws std::runtime_error for anything
/// else and for times outside the trial.
SampleRange parseTimeRange(const std::string& text, const TrialTimes& times);

/// A place in a trial as one option tells it: "A" or "A:B" in samples, as parseSampleRange takes them, or with "ms"
/// behind it ("80:120ms") in ms from the trigger, as parseTimeRange does. Throws std::runtime_error.
SampleRange parsePlace(const std::string& text, const TrialTimes& times);

} // namespace megset::cli
