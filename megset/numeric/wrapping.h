// Arithmetic of 64-bit integers that a file may have made as large as it likes: what does not fit wraps around.
#pragma once

#include <cstdint>

namespace megset::numeric {

/// a + b
constexpr std::int64_t wrapAdd(std::int64_t a, std::int64_t b) noexcept
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

/// a - b
constexpr std::int64_t wrapSubtract(std::int64_t a, std::int64_t b) noexcept
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

/// a * b
constexpr std::int64_t wrapMultiply(std::int64_t a, std::int64_t b) noexcept
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

} // namespace megset::numeric
