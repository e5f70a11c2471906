#pragma once
// What the fuzz targets have in common: their entry, the check that ends the program, and the limit of memory.

#include "megset/platform/memory.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

namespace megset {

/// Defined by each target: what it does with one input. A silent host, which answers No, is set.
void fuzzInput(std::span<const std::byte> input);

/// Runs what the first byte of the input chooses on the rest of it.
template <std::size_t n>
void runChosen(std::span<const std::byte> input, void (*const (&runs)[n])(std::span<const std::byte>))
{
    if (!input.empty())
        runs[std::to_integer<std::size_t>(input[0]) % n](input.subspan(1));
}

inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// What one input may still take from the functions of memory.h. It only falls: what is freed doesn't count.
inline std::atomic<std::uint64_t> memoryLeft = 0;

/// An allocation beyond the limit is a finding.
inline bool withinBudget(std::size_t bytes) noexcept
{
    require(bytes <= memoryLeft);
    memoryLeft -= bytes;
    return true;
}

/// Little in any case, and beyond it in proportion to the input.
inline void limitMemory(std::size_t inputBytes, std::uint64_t perByte = 2, std::uint64_t megabytes = 64)
{
    memoryLeft = (megabytes << 20U) + perByte * inputBytes;
}

} // namespace megset
