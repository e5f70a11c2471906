#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace megset::spectrum {

/// The frequencies of a transform, Hz, rising.
struct FrequencyAxis
{
    bool isPower = false; ///< each is the one before times `step`, else plus `step`
    double step = 1.0;
    std::vector<double> hz;
};

/// "A:B:STEP": from A to B Hz, linear. Throws std::invalid_argument with a sentence for anything that is no such axis,
/// and for more than 10,000 frequencies.
FrequencyAxis linearAxis(const std::string& text);
/// "A:B:N": from A to B Hz with N frequencies an octave.
FrequencyAxis octaveAxis(const std::string& text);

} // namespace megset::spectrum
