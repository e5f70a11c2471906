// The loops behind numeric/stimulus, one set per processor path. Internal to numeric/ and its tests.
#pragma once

#include <cmath>
#include <cstddef>

#include "megset/numeric/growingSum.h"
#include "megset/numeric/processorPath.h"
#include "megset/numeric/statistics.h"

namespace megset::numeric {

/// |x| less the level, and no less than 0. NaN stays.
inline double aboveLevel(double x, double level) noexcept
{
    const double above = std::fabs(x) - level;
    return above < 0.0 ? 0.0 : above;
}

/// The loops of one processor path. Sums are the plain sequential ones to the bit.
struct StimulusLoops
{
    /// Adds |x[i]| / divisor for n samples to the sum, and takes |x[i]| into the range; NaN is passed over there.
    void (*addAbsolute)(const double* x, std::size_t n, double divisor, GrowingSum& sum, MinMax& range);
    /// Replaces n samples by aboveLevel and adds these to the sum.
    void (*addAbove)(double* x, std::size_t n, double level, GrowingSum& sum);
};

/// The loops of a path. A path that this build does not have gives the baseline.
const StimulusLoops& stimulusLoops(ProcessorPath path) noexcept;

} // namespace megset::numeric
