#include "megset/numeric/convert.h"

#include <algorithm>

#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

std::size_t shortest(std::size_t a, std::size_t b) noexcept
{
    return std::min(a, b);
}

std::size_t shortest(std::size_t a, std::size_t b, std::size_t c) noexcept
{
    return std::min({a, b, c});
}

MEGSET_MULTIVERSION void copyTwice(const double* __restrict from, double* __restrict to, double* __restrict alsoTo,
                                   std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        to[i] = alsoTo[i] = from[i];
}

MEGSET_MULTIVERSION void convertInt(const std::int32_t* __restrict from, double* __restrict to, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        to[i] = static_cast<double>(from[i]);
}

MEGSET_MULTIVERSION void convertIntTwice(const std::int32_t* __restrict from, double* __restrict to,
                                         double* __restrict alsoTo, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        to[i] = alsoTo[i] = static_cast<double>(from[i]);
}

MEGSET_MULTIVERSION void convertFloat(const float* __restrict from, double* __restrict to, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        to[i] = static_cast<double>(from[i]);
}

MEGSET_MULTIVERSION void convertFloatTwice(const float* __restrict from, double* __restrict to,
                                           double* __restrict alsoTo, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        to[i] = alsoTo[i] = static_cast<double>(from[i]);
}

MEGSET_MULTIVERSION void scaleFloat(const float* __restrict from, double scale, double* __restrict to,
                                    std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        to[i] = static_cast<double>(from[i]) * scale;
}

MEGSET_MULTIVERSION void scaleFloatTwice(const float* __restrict from, double scale, double* __restrict to,
                                         double* __restrict alsoTo, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        to[i] = alsoTo[i] = static_cast<double>(from[i]) * scale;
}

} // namespace

void copy(std::span<const double> from, std::span<double> to) noexcept
{
    std::copy_n(from.data(), shortest(from.size(), to.size()), to.data());
}

void copy(std::span<const double> from, std::span<double> to, std::span<double> alsoTo) noexcept
{
    copyTwice(from.data(), to.data(), alsoTo.data(), shortest(from.size(), to.size(), alsoTo.size()));
}

void convert(std::span<const std::int32_t> from, std::span<double> to) noexcept
{
    convertInt(from.data(), to.data(), shortest(from.size(), to.size()));
}

void convert(std::span<const std::int32_t> from, std::span<double> to, std::span<double> alsoTo) noexcept
{
    convertIntTwice(from.data(), to.data(), alsoTo.data(), shortest(from.size(), to.size(), alsoTo.size()));
}

void convert(std::span<const float> from, std::span<double> to) noexcept
{
    convertFloat(from.data(), to.data(), shortest(from.size(), to.size()));
}

void convert(std::span<const float> from, std::span<double> to, std::span<double> alsoTo) noexcept
{
    convertFloatTwice(from.data(), to.data(), alsoTo.data(), shortest(from.size(), to.size(), alsoTo.size()));
}

void convertScaled(std::span<const float> from, double scale, std::span<double> to) noexcept
{
    scaleFloat(from.data(), scale, to.data(), shortest(from.size(), to.size()));
}

void convertScaled(std::span<const float> from, double scale, std::span<double> to, std::span<double> alsoTo) noexcept
{
    scaleFloatTwice(from.data(), scale, to.data(), alsoTo.data(), shortest(from.size(), to.size(), alsoTo.size()));
}

} // namespace megset::numeric
