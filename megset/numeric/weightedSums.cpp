#include "megset/numeric/weightedSums.h"

#include "megset/numeric/weightedSumsLoops.h"

namespace megset::numeric {

void addWeightedSums(std::span<const WeightedSum> sums) noexcept
{
    static const WeightedSumsLoops& loops = weightedSumsLoops(currentProcessorPath());
    addWeightedSums(sums, loops);
}

} // namespace megset::numeric
