#include "megset/numeric/statisticsLoops.h"

#include <algorithm>
#include <cmath>

#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

constexpr std::size_t blockSamples = 1024; // 8 KiB, well inside the first-level cache

// The loops use the compiler's vector types, which target_clones would break up before it makes the clones. So each
// path is a namespace whose functions have their target from the start.
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
#define MEGSET_GROUPS 2
#include "megset/numeric/statisticsLoops.inc"
} // namespace avx2

namespace avx512 {
#define MEGSET_TARGET __attribute__((target("avx512f")))
// Instructions of 512 bits take a port away from the dependent scalar additions of a single row.
#define MEGSET_CONTINUE_STATISTICS avx2::continueStatistics
#define MEGSET_LANES 8
#define MEGSET_GROUPS 1
#include "megset/numeric/statisticsLoops.inc"
} // namespace avx512
#endif

} // namespace

const StatisticsLoops& statisticsLoops(ProcessorPath path) noexcept
{
#if MEGSET_HAS_MULTIVERSION
    if (path == ProcessorPath::Avx512)
        return avx512::loops;
    if (path == ProcessorPath::Avx2)
        return avx2::loops;
#else
    static_cast<void>(path);
#endif
    return baseline::loops;
}

} // namespace megset::numeric
