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

} // namespace megset::cli
