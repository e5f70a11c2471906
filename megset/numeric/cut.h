// Doubles cut towards zero to integers, whatever they are: what doesn't fit becomes the nearest end, NaN becomes 0.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace megset::numeric {

/// The value cut to 32 bits.
inline int cutToInt(double value) noexcept
{
    if (std::isnan(value))
        return 0;
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    return static_cast<int>(value < low ? low : value > high ? high : value);
}

/// The value cut to 64 bits.
inline std::int64_t cutToCount(double value) noexcept
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<std::int64_t>::max();
    return value <= -limit ? std::numeric_limits<std::int64_t>::min() : static_cast<std::int64_t>(value);
}

} // namespace megset::numeric
