// Weighted sums of reference signals, added to other signals or taken away from them.
#pragma once

#include <span>

namespace megset::numeric {

/// One target and the references whose weighted sum goes into it.
struct WeightedSum
{
    std::span<double> target;
    std::span<const std::span<const double>> references;
    std::span<const double> weights; ///< one for each reference
    bool subtracted = false;
};

/// For every sum in turn and each of its samples i: s = 0, then s += references[k][i] * weights[k] for k = 0, 1, ...,
/// each product rounded before it is added; then target[i] += s, or -= s where it is subtracted. A reference that ends
/// before the target adds nothing from there on.
///
/// A target may be the very span that is a reference of any of the sums: sums that come later see the changed samples.
/// Other overlaps are not allowed. The work goes in blocks of samples that stay in cache, which changes no bit, since
/// each sample index stands alone.
void addWeightedSums(std::span<const WeightedSum> sums) noexcept;

} // namespace megset::numeric
