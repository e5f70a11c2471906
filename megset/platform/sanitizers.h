// Tells which sanitizers this translation unit is built with: MEGSET_ADDRESS_SANITIZER and MEGSET_ANY_SANITIZER are 0
// or 1.
#pragma once

#if defined(__has_feature)
#define MEGSET_HAS_FEATURE(feature) __has_feature(feature)
#else
#define MEGSET_HAS_FEATURE(feature) 0
#endif

#if defined(__SANITIZE_ADDRESS__) || MEGSET_HAS_FEATURE(address_sanitizer)
#define MEGSET_ADDRESS_SANITIZER 1
#else
#define MEGSET_ADDRESS_SANITIZER 0
#endif

#if MEGSET_ADDRESS_SANITIZER || defined(__SANITIZE_THREAD__) || MEGSET_HAS_FEATURE(thread_sanitizer) ||                \
    MEGSET_HAS_FEATURE(memory_sanitizer) || MEGSET_HAS_FEATURE(undefined_behavior_sanitizer) ||                        \
    MEGSET_HAS_FEATURE(coverage_sanitizer) || defined(FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)
#define MEGSET_ANY_SANITIZER 1
#else
#define MEGSET_ANY_SANITIZER 0
#endif
