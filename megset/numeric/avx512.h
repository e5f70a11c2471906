// Vectors of eight values by the compiler's own names, for the loops that compilers don't find by themselves. Internal
// to sources of numeric/; there is nothing in it where MEGSET_HAS_MULTIVERSION is 0.
#pragma once

#include "megset/numeric/multiversion.h"

#if MEGSET_HAS_MULTIVERSION

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

/// Functions that only processors of ProcessorPath::Avx512 run.
#define MEGSET_AVX512 __attribute__((target("avx512f")))

namespace megset::numeric {

constexpr std::size_t lanes = 8;

/// Begins to fetch what the loop reads some vectors later, or what lies past its end, which does no harm.
inline void fetchAhead(const double* x) noexcept
{
    constexpr std::size_t ahead = 512;
    const std::uintptr_t later = reinterpret_cast<std::uintptr_t>(x) + ahead * sizeof *x;
    __builtin_prefetch(reinterpret_cast<const void*>(later)); // NOLINT(performance-no-int-to-ptr)
}

} // namespace megset::numeric

#endif
