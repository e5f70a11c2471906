// Samples of a stimulus channel: their range, their conditioning, and the runs that stand out.
//
// Between its pulses such a channel rests at zero. Adding +0.0 changes no sum, so that groups of zeros are passed over
// at memory speed; the results are those of the plain sequential loop to the bit, whatever the samples are.
#pragma once

#include <cstddef>
#include <span>

#include "megset/numeric/statistics.h"

namespace megset::numeric {

struct SampleRange
{
    double min = 0.0;
    double max = 0.0;
    double maxAbsolute = 0.0;
    double sum = 0.0; ///< begins at the first sample and then adds all of them: the first one counts twice
};

/// Minimum and maximum as `minMax` gives them, largest |x| as `maxAbsolute`, and the sum. Zeros for an empty row.
SampleRange rangeOf(Row x) noexcept;

/// x[i] = |x[i]| - level, or 0 where that is negative. Gives the range of the result.
SampleRange absoluteAbove(std::span<double> x, double level) noexcept;

/// The smallest |x|: begins at the first one and is replaced by `if (|v| < smallest)`. 0 for an empty row.
double minAbsolute(Row x) noexcept;

/// The sum of |x[i]| / n, each divided before it is added; it begins at |x[0]| / n and then adds all of them. 0 for an
/// empty row.
double meanAbsolute(Row x) noexcept;

/// Samples begin to end - 1.
struct Run
{
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// The first run of samples with x > level that begins at index `from` or behind it, as far as it goes. NaN is above
/// no level. An empty run at the end where there is none.
Run nextRunAbove(Row x, double level, std::size_t from) noexcept;

/// The same with |x - centre| > distance.
Run nextRunApart(Row x, double centre, double distance, std::size_t from) noexcept;

} // namespace megset::numeric
