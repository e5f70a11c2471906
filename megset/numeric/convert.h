// Copies of samples, converted to double.
//
// Every function takes as many samples as its shortest span holds. Source and targets must not overlap. The forms with
// a second target write both in one pass, for the working and the backup array of a channel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace megset::numeric {

/// to[i] = from[i]
void copy(std::span<const double> from, std::span<double> to) noexcept;
/// The same to two arrays.
void copy(std::span<const double> from, std::span<double> to, std::span<double> alsoTo) noexcept;

/// to[i] = double(from[i])
void convert(std::span<const std::int32_t> from, std::span<double> to) noexcept;
/// The same to two arrays.
void convert(std::span<const std::int32_t> from, std::span<double> to, std::span<double> alsoTo) noexcept;
/// The same of another type.
void convert(std::span<const float> from, std::span<double> to) noexcept;
/// The same to two arrays.
void convert(std::span<const float> from, std::span<double> to, std::span<double> alsoTo) noexcept;

/// to[i] = double(from[i]) * scale
void convertScaled(std::span<const float> from, double scale, std::span<double> to) noexcept;
/// The same to two arrays.
void convertScaled(std::span<const float> from, double scale, std::span<double> to, std::span<double> alsoTo) noexcept;

} // namespace megset::numeric
