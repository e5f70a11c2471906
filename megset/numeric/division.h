// Quotients of many values by few divisors. Internal to numeric/ and its tests.
#pragma once

#include <span>

#include "megset/numeric/planes.h"
#include "megset/numeric/processorPath.h"

namespace megset::numeric {

/// plane[t, f] = plane[t, f] / divisor[f] * scale by the loop of a path, the quotient rounded before it is scaled.
/// Columns beyond the divisors stay. A path that this build does not have gives the baseline; the bits are the same.
void divideRowsAndScale(Plane plane, std::span<const double> divisor, double scale, ProcessorPath path) noexcept;

/// sum[f] += plane[t, f] / divisor for all rows, the first one first, under the same conditions.
void addRowQuotients(std::span<double> sum, ConstPlane plane, double divisor, ProcessorPath path) noexcept;

} // namespace megset::numeric
