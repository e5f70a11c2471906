// The loops behind numeric/weightedSums, one set per processor path. Internal to numeric/ and its tests.
#pragma once

#include <cstddef>
#include <span>

#include "megset/numeric/processorPath.h"
#include "megset/numeric/weightedSums.h"

namespace megset::numeric {

/// The loops of one processor path.
struct WeightedSumsLoops
{
    /// How many sums the loop over several takes at once.
    static constexpr std::size_t atOnce = 4;

    /// Does samples begin to end - 1 of one sum, which all its references have.
    void (*one)(const WeightedSum& sum, std::size_t begin, std::size_t end) noexcept;
    /// The same of `atOnce` sums with the same references, none of which is a target of theirs, and the same direction.
    void (*several)(const WeightedSum* sums, std::size_t begin, std::size_t end) noexcept;
};

/// The loops of a path. A path that this build does not have gives the baseline.
const WeightedSumsLoops& weightedSumsLoops(ProcessorPath path) noexcept;

/// addWeightedSums by the loops of a path.
void addWeightedSums(std::span<const WeightedSum> sums, const WeightedSumsLoops& loops) noexcept;

} // namespace megset::numeric
