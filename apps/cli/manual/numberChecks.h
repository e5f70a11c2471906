#pragma once
// Checks of options that take a number, with what is wrong in words.

#include <CLI/CLI.hpp>

#include <cstdint>
#include <limits>

namespace megset::cli {

/// A whole number, at least `least`.
CLI::Validator wholeNumber(std::int64_t least = std::numeric_limits<std::int64_t>::min());

/// A finite number.
CLI::Validator finiteNumber();

/// A finite number above 0.
CLI::Validator numberAboveZero();

/// A number from `low` to `high`, both included.
CLI::Validator numberWithin(double low, double high);

} // namespace megset::cli
