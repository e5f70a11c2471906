// Samples reduced to the extremes of blocks, for drawing.
#pragma once

#include <cstddef>
#include <span>

namespace megset::numeric {

/// The highest and lowest value of each block of `blockSamples` samples, rounded to float; as many blocks as the
/// shorter result holds. One sample between two blocks is never looked at, so that block i begins at sample i *
/// (blockSamples + 1), and a block that begins within the last blockSamples samples isn't made: it is meant so. Blocks
/// that are not made are 0. A NaN at the start of a block stays; elsewhere it is passed over. Gives the number of
/// blocks made.
std::size_t shrink(std::span<const double> samples, std::size_t blockSamples, std::span<float> max,
                   std::span<float> min) noexcept;

} // namespace megset::numeric
