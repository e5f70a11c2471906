#include "megset/numeric/statisticsLoops.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "megset/numeric/fetchAhead.h"
#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

constexpr std::size_t blockSamples = 1024; // 8 KiB, well inside the first-level cache

// Where the next samples of several rows are asked for, so that they are there in time: those of the first pass come
// from memory, those of the second one mostly from the second-level cache, which holds four rows of a minute or so.
constexpr std::size_t firstPassAhead = 512;
constexpr std::size_t secondPassAhead = 128;

// The loops use the compiler's vector types, which target_clones would break up before it makes the clones. So each
// path is a namespace whose functions have their target from the start. Vectors of 512 bits gain nothing here: memory
// and dependent additions are what these loops wait for, and more rows at once would not fit the second-level cache.
namespace baseline {
#define MEGSET_TARGET
#define MEGSET_LANES 2
#define MEGSET_GROUPS 2
#include "megset/numeric/statisticsLoops.inc"
} // namespace baseline

#if MEGSET_HAS_MULTIVERSION
namespace avx2 {
#define MEGSET_TARGET __attribute__((target("avx2")))
#define MEGSET_LANES 4
#define MEGSET_GROUPS 1
#include "megset/numeric/statisticsLoops.inc"
} // namespace avx2
#else
namespace avx2 = baseline;
#endif

} // namespace

const StatisticsLoops& statisticsLoops(ProcessorPath path) noexcept
{
    return loopsOf(path, baseline::loops, avx2::loops, avx2::loops);
}

} // namespace megset::numeric
