// Compiles a loop once per vector unit; the loader picks the one that the processor has. Internal to numeric/.
// The arithmetic is the same on every path (no contraction, fixed order of sums), so the bits are, too.
// A multi-versioned function needs a name of its own in the whole library: its resolver is visible to the linker even
// when the function is in an anonymous namespace.
#pragma once

#include <version> // brings the macros of the C library

#include "megset/numeric/processorPath.h"
#include "megset/platform/sanitizers.h"

// The resolvers run before a sanitizer's runtime is ready, and need a C library and a linker that know indirect
// functions.
#if defined(__x86_64__) && defined(__GLIBC__) && !MEGSET_ANY_SANITIZER && !defined(MEGSET_NO_MULTIVERSION)
#define MEGSET_HAS_MULTIVERSION 1
#define MEGSET_MULTIVERSION __attribute__((target_clones("avx512f", "avx2", "default")))
#define MEGSET_MULTIVERSION_256 __attribute__((target_clones("avx2", "default")))
#else
#define MEGSET_HAS_MULTIVERSION 0
#define MEGSET_MULTIVERSION
#define MEGSET_MULTIVERSION_256
#endif

namespace megset::numeric {

/// The loops of a path. Where this build has no other paths, all are those of the baseline.
template <class Loops>
const Loops& loopsOf(ProcessorPath path, const Loops& baseline, const Loops& avx2, const Loops& avx512) noexcept
{
    if (path == ProcessorPath::Avx512)
        return avx512;
    return path == ProcessorPath::Avx2 ? avx2 : baseline;
}

} // namespace megset::numeric
