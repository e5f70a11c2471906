#include "megset/numeric/shrink.h"

#include <algorithm>

#include "megset/numeric/multiversion.h"
#include "megset/numeric/statistics.h"

namespace megset::numeric {

namespace {

struct Extremes
{
    float max;
    float min;
};

// Values are compared with the extremes as float has them. What replaces the low is never above the high.
inline Extremes extremesInOrder(const double* block, std::size_t n) noexcept
{
    double low = static_cast<float>(block[0]);
    double high = low;
    for (std::size_t k = 1; k < n; ++k) {
        const double rounded = static_cast<float>(block[k]);
        low = block[k] < low ? rounded : low;
        high = block[k] > high ? rounded : high;
    }
    return {static_cast<float>(high), static_cast<float>(low)};
}

// Rounding keeps the order, so that the extremes may be rounded last. Only a zero may have got the other sign.
Extremes extremesOfLongBlock(const double* block, std::size_t n) noexcept
{
    const MinMax exact = minMax({block, n});
    const Extremes rounded{static_cast<float>(exact.max), static_cast<float>(exact.min)};
    return rounded.max == 0.0F || rounded.min == 0.0F ? extremesInOrder(block, n) : rounded;
}

MEGSET_MULTIVERSION void shrinkLoop(const double* samples, std::size_t blockSamples, std::size_t blocks, float* max,
                                    float* min) noexcept
{
    constexpr std::size_t longBlock = 16; // from here on the quicker search repays its call
    for (std::size_t i = 0; i < blocks; ++i) {
        const double* const block = samples + i * (blockSamples + 1);
        const Extremes extremes =
            blockSamples < longBlock ? extremesInOrder(block, blockSamples) : extremesOfLongBlock(block, blockSamples);
        max[i] = extremes.max;
        min[i] = extremes.min;
    }
}

} // namespace

std::size_t shrink(std::span<const double> samples, std::size_t blockSamples, std::span<float> max,
                   std::span<float> min) noexcept
{
    const std::size_t n = samples.size();
    std::size_t blocks = 0;
    if (blockSamples > 0 && n > blockSamples)
        blocks = std::min({(n - blockSamples - 1) / (blockSamples + 1) + 1, max.size(), min.size()});
    shrinkLoop(samples.data(), blockSamples, blocks, max.data(), min.data());
    for (const std::span<float> result : {max, min})
        std::fill(result.begin() + static_cast<std::ptrdiff_t>(blocks), result.end(), 0.0F);
    return blocks;
}

} // namespace megset::numeric
