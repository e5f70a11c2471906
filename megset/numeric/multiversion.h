// Compiles a loop once per vector unit; the loader picks the one that the processor has. Internal to numeric/.
// The arithmetic is the same on every path (no contraction, fixed order of sums), so the bits are, too.
// A multi-versioned function needs a name of its own in the whole library: its resolver is visible to the linker even
// when the function is in an anonymous namespace.
#pragma once

#include <version> // brings the macros of the C library

#include "megset/platform/sanitizers.h"

// The resolvers run before a sanitizer's runtime is ready, and need a C library and a linker that know indirect
// functions.
#if defined(__x86_64__) && defined(__GLIBC__) && !MEGSET_ANY_SANITIZER && !defined(MEGSET_NO_MULTIVERSION)
#define MEGSET_HAS_MULTIVERSION 1
#define MEGSET_MULTIVERSION __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define MEGSET_HAS_MULTIVERSION 0
#define MEGSET_MULTIVERSION
#endif
