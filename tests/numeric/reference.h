// Random samples and bitwise comparison for the tests of numeric/.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace megset::numeric {

/// 0, 1, around the widths of vectors, around the bounds of blocks, and a long one.
inline const std::vector<std::size_t> lengths = {0,  1,  2,  3,  4,  5,  7,    8,    9,    15,   16,   17,  31,
                                                 32, 33, 63, 64, 65, 99, 1023, 1024, 1025, 2047, 2048, 5003};

inline std::vector<double> randomSamples(std::size_t n, unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.3, 1000.0);
    std::vector<double> x(n);
    for (double& v : x)
        v = noise(random);
    return x;
}

/// Few different values, with zeros of both signs, infinities and, with `nan`, NaN among them.
inline std::vector<double> awkwardSamples(std::size_t n, unsigned seed, bool nan)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double values[] = {0.0, -0.0, 1.0, -1.0, 0.1, 1e300, 1e-310, infinity, -infinity, std::nan("")};
    std::mt19937 random(seed);
    const unsigned count = nan ? 10 : 9;
    std::vector<double> x(n);
    for (double& v : x)
        v = values[random() % count];
    return x;
}

/// Equal in every bit; one NaN is as good as another.
inline bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}

inline ::testing::AssertionResult sameSamples(std::span<const double> a, std::span<const double> b)
{
    if (a.size() != b.size())
        return ::testing::AssertionFailure() << a.size() << " and " << b.size() << " samples";
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!sameBits(a[i], b[i]))
            return ::testing::AssertionFailure() << "sample " << i << " is " << a[i] << " and " << b[i];
    }
    return ::testing::AssertionSuccess();
}

} // namespace megset::numeric
