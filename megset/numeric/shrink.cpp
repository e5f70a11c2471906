#include "megset/numeric/shrink.h"

#include <algorithm>

#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

// Values are compared with the extremes as float has them. What replaces the low is never above the high.
MEGSET_MULTIVERSION void shrinkLoop(const double* samples, std::size_t blockSamples, std::size_t blocks, float* max,
                                    float* min) noexcept
{
    for (std::size_t i = 0; i < blocks; ++i) {
        const double* const block = samples + i * (blockSamples + 1);
        double low = static_cast<float>(block[0]);
        double high = low;
        for (std::size_t k = 1; k < blockSamples; ++k) {
            const double rounded = static_cast<float>(block[k]);
            low = block[k] < low ? rounded : low;
            high = block[k] > high ? rounded : high;
        }
        max[i] = static_cast<float>(high);
        min[i] = static_cast<float>(low);
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
