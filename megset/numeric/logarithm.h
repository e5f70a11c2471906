// The natural logarithm of many values. Internal to numeric/ and its tests.
#pragma once

#include <span>

#include "megset/numeric/processorPath.h"

namespace megset::numeric {

/// x[i] = std::log(x[i]), to the bit, by the loop of a path. A path that this build does not have gives the baseline.
void logarithm(std::span<double> x, ProcessorPath path) noexcept;

} // namespace megset::numeric
