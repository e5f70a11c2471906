#include "megset/numeric/stimulusLoops.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "megset/numeric/fetchAhead.h"
#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

// How many of n samples make the next group, in whole steps.
constexpr std::size_t groupSize(std::size_t n, std::size_t step) noexcept
{
    constexpr std::size_t most = 256;
    return std::min(n, most) / step * step;
}

void addAbsoluteInTurn(const double* x, std::size_t n, double divisor, GrowingSum& sum) noexcept
{
    double value = sum.value();
    for (std::size_t i = 0; i < n; ++i)
        value += std::fabs(x[i]) / divisor;
    sum = GrowingSum(value);
}

void addInTurn(const double* x, std::size_t n, GrowingSum& sum) noexcept
{
    double value = sum.value();
    for (std::size_t i = 0; i < n; ++i)
        value += x[i];
    sum = GrowingSum(value);
}

void takeAbsolute(double x, MinMax& range) noexcept
{
    const double v = std::fabs(x);
    range.min = v < range.min ? v : range.min;
    range.max = v > range.max ? v : range.max;
}

// Vectors of 512 bits gain nothing here: memory is what these loops wait for.
namespace baseline {
#define MEGSET_TARGET
#define MEGSET_LANES 2
#include "megset/numeric/stimulusLoops.inc"
} // namespace baseline

#if MEGSET_HAS_MULTIVERSION
namespace avx2 {
#define MEGSET_TARGET __attribute__((target("avx2")))
#define MEGSET_LANES 4
#include "megset/numeric/stimulusLoops.inc"
} // namespace avx2
#else
namespace avx2 = baseline;
#endif

} // namespace

const StimulusLoops& stimulusLoops(ProcessorPath path) noexcept
{
    return loopsOf(path, baseline::loops, avx2::loops, avx2::loops);
}

} // namespace megset::numeric
