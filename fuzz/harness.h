#pragma once
// What the fuzz targets have in common: the check that ends the program, the limit of memory, the silent host.

#include "fuzz/SilentHost.h"

#include "megset/platform/memory.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace megset {

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

inline void beginFuzzing()
{
    static SilentHost host;
    AfxSetHost(&host);
    setAllocationHook(withinBudget);
}

} // namespace megset
