#include "megset/numeric/weightedSumsLoops.h"

#include <algorithm>

#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

/// Sample by sample, for what no vector holds and for references that end early.
void plainSum(const WeightedSum& sum, std::size_t begin, std::size_t end) noexcept
{
    for (std::size_t i = begin; i < end; ++i) {
        double s = 0.0;
        for (std::size_t k = 0; k < sum.references.size(); ++k) {
            if (i < sum.references[k].size())
                s += sum.references[k][i] * sum.weights[k];
        }
        sum.target[i] = sum.subtracted ? sum.target[i] - s : sum.target[i] + s;
    }
}

// As in statisticsLoops.cpp: each path is a namespace whose functions have their target from the start.
namespace baseline {
#define MEGSET_TARGET
#define MEGSET_LANES 2
#define MEGSET_VECTORS 2
#include "megset/numeric/weightedSumsLoops.inc"
} // namespace baseline

#if MEGSET_HAS_MULTIVERSION
namespace avx2 {
#define MEGSET_TARGET __attribute__((target("avx2")))
#define MEGSET_LANES 4
#define MEGSET_VECTORS 2
#include "megset/numeric/weightedSumsLoops.inc"
} // namespace avx2

namespace avx512 {
#define MEGSET_TARGET __attribute__((target("avx512f")))
#define MEGSET_LANES 8
#define MEGSET_VECTORS 4
#include "megset/numeric/weightedSumsLoops.inc"
} // namespace avx512
#else
namespace avx2 = baseline;
namespace avx512 = baseline;
#endif

constexpr std::size_t blockSamples = 1024; // 8 KiB of each reference: about twenty of them fit the second-level cache

bool sameReferences(const WeightedSum& a, const WeightedSum& b) noexcept
{
    return std::equal(a.references.begin(), a.references.end(), b.references.begin(), b.references.end(),
                      [](const auto& x, const auto& y) { return x.data() == y.data() && x.size() == y.size(); });
}

bool isOwnReference(const WeightedSum& sum, const double* target) noexcept
{
    return std::any_of(sum.references.begin(), sum.references.end(),
                       [target](const auto& reference) { return reference.data() == target; });
}

bool coversAll(const WeightedSum& sum, std::size_t end) noexcept
{
    return sum.target.size() >= end && std::all_of(sum.references.begin(), sum.references.end(),
                                                   [end](const auto& reference) { return reference.size() >= end; });
}

/// Where the block ends for a sum: its target may end earlier.
std::size_t endOf(const WeightedSum& sum, std::size_t blockEnd) noexcept
{
    return std::min(blockEnd, sum.target.size());
}

/// Whether the sums can be done side by side: all end at the same sample of the block, and none of them reads what
/// another writes.
bool goTogether(std::span<const WeightedSum> sums, std::size_t blockEnd) noexcept
{
    const WeightedSum& first = sums.front();
    for (std::size_t a = 0; a < sums.size(); ++a) {
        if (sums[a].subtracted != first.subtracted || !sameReferences(sums[a], first) ||
            endOf(sums[a], blockEnd) != endOf(first, blockEnd) || isOwnReference(first, sums[a].target.data()))
            return false;
        for (std::size_t b = 0; b < a; ++b) {
            if (sums[b].target.data() == sums[a].target.data())
                return false;
        }
    }
    return true;
}

void sumBlock(std::span<const WeightedSum> sums, std::size_t begin, const WeightedSumsLoops& loops) noexcept
{
    constexpr std::size_t several = WeightedSumsLoops::atOnce;
    const std::size_t blockEnd = begin + blockSamples;
    for (std::size_t j = 0; j < sums.size();) {
        const std::size_t end = endOf(sums[j], blockEnd);
        std::size_t done = 1;
        if (end <= begin) {
            // this target has ended
        } else if (!coversAll(sums[j], end)) {
            plainSum(sums[j], begin, end);
        } else if (j + several <= sums.size() && goTogether(sums.subspan(j, several), blockEnd)) {
            loops.several(&sums[j], begin, end);
            done = several;
        } else {
            loops.one(sums[j], begin, end);
        }
        j += done;
    }
}

} // namespace

const WeightedSumsLoops& weightedSumsLoops(ProcessorPath path) noexcept
{
    return loopsOf(path, baseline::loops, avx2::loops, avx512::loops);
}

void addWeightedSums(std::span<const WeightedSum> sums, const WeightedSumsLoops& loops) noexcept
{
    std::size_t longest = 0;
    for (const WeightedSum& sum : sums)
        longest = std::max(longest, sum.target.size());
    for (std::size_t begin = 0; begin < longest; begin += blockSamples)
        sumBlock(sums, begin, loops);
}

} // namespace megset::numeric
