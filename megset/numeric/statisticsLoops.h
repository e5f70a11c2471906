// The loops behind numeric/statistics, one set per processor path. Internal to numeric/ and its tests.
#pragma once

#include <cstddef>

#include "megset/numeric/processorPath.h"
#include "megset/numeric/statistics.h"

namespace megset::numeric {

/// The loops of one processor path.
struct StatisticsLoops
{
    static constexpr std::size_t mostRows = 4;

    std::size_t rows; ///< how many rows the loops over rows take at once
    std::size_t step; ///< and of which number their sample count is a multiple

    /// Replaces the range by that of it and n more samples.
    void (*continueMinMax)(const double* x, std::size_t n, MinMax& range);
    /// `largest` becomes the largest of itself and n absolute values.
    void (*continueMaxAbsolute)(const double* x, std::size_t n, double& largest);
    /// Takes n more samples into the statistics.
    void (*continueStatistics)(const double* x, std::size_t n, SampleStatistics& s);
    /// The same for `rows` rows; n is a multiple of `step`.
    void (*continueStatisticsOfRows)(const double* const* x, std::size_t n, SampleStatistics* s);
    /// sums[r] += (x[r][i] - means[r])^2 for `rows` rows; n is a multiple of `step`.
    void (*continueDeviationsOfRows)(const double* const* x, std::size_t n, const double* means, double* sums);
};

/// The loops of a path. A path that this build does not have gives the baseline.
const StatisticsLoops& statisticsLoops(ProcessorPath path) noexcept;

} // namespace megset::numeric
