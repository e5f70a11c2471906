#pragma once
// Counts what the suite tries on readers and writers, for docs/robustness.md.

#include <cstdint>

namespace megset {

enum class Tried
{
    prefix,            ///< a file that ends early
    bitFlip,           ///< a file with one bit changed
    allocationFailure, ///< a run without memory at one moment, or from one on
    kill               ///< a program that is ended while it writes
};

/// Adds to the count of this program. At its end it adds its counts to the file that MEGSET_TRIED names, a line for
/// each with its name and number; scripts/tried sums them up.
void countTried(Tried what, std::int64_t times = 1);

} // namespace megset
