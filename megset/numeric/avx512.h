// Vectors of eight values by the compiler's own names, for the loops that compilers don't find by themselves. Internal
// to sources of numeric/; there is nothing in it where MEGSET_HAS_MULTIVERSION is 0.
#pragma once

#include "megset/numeric/multiversion.h"

#if MEGSET_HAS_MULTIVERSION

#include <immintrin.h>

#include <cstddef>

/// Functions that only processors of ProcessorPath::Avx512 run.
#define MEGSET_AVX512 __attribute__((target("avx512f")))

namespace megset::numeric {

constexpr std::size_t lanes = 8;

} // namespace megset::numeric

#endif
