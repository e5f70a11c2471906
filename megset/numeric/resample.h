// One sample for each run of `factor` samples: the run's first, or its mean.
//
// The target's length is the caller's: runs that begin behind the last sample of x are made of the last sample, as are
// the missing samples of a run that is cut short. Nothing is written for an empty x. x and the target don't overlap,
// and a factor is at least 1.
#pragma once

#include <cstddef>
#include <span>

namespace megset::numeric {

/// to[k] = x[min(k * factor, last)]
void pickEvery(std::span<const double> x, std::size_t factor, std::span<double> to) noexcept;

/// to[k] = (0 + x[s] + x[min(s + 1, last)] + ... + x[min(s + factor - 1, last)]) / factor with s = min(k * factor,
/// last), added in this order.
void averageEvery(std::span<const double> x, std::size_t factor, std::span<double> to) noexcept;

} // namespace megset::numeric
