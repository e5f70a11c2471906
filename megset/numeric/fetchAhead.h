// Reading before it is asked for: a processor foresees the next lines of a page, but not those of the next page.
// Internal to numeric/.
#pragma once

#include <cstddef>
#include <cstdint>

namespace megset::numeric {

/// Doubles in a line of the cache.
constexpr std::size_t valuesOfCacheLine = 8;

/// Begins to fetch the values that a loop reads some lines behind x. What lies past the end does no harm.
inline void fetchAhead(const double* x, std::size_t ahead = 512) noexcept
{
    const std::uintptr_t later = reinterpret_cast<std::uintptr_t>(x) + ahead * sizeof *x;
    __builtin_prefetch(reinterpret_cast<const void*>(later)); // NOLINT(performance-no-int-to-ptr)
}

/// The same for each line of as many values.
inline void fetchLinesAhead(const double* x, std::size_t values) noexcept
{
    for (std::size_t k = 0; k < values; k += valuesOfCacheLine)
        fetchAhead(x + k);
}

} // namespace megset::numeric
