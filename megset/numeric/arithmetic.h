// Arithmetic on samples, element by element.
//
// Every function takes as many samples as its shortest span holds. A result span may be the same as an operand; other
// overlaps are not allowed. The forms with a second target write the same result into both in one pass.
#pragma once

#include <span>

namespace megset::numeric {

/// x[i] = value
void fill(std::span<double> x, double value) noexcept;

/// x[i] *= factor
void scaleInPlace(std::span<double> x, double factor) noexcept;

/// x[i] /= divisor
void divideInPlace(std::span<double> x, double divisor) noexcept;

/// x[i] /= divisor[i]
void divideInPlace(std::span<double> x, std::span<const double> divisor) noexcept;

/// a[i] += b[i]
void addInPlace(std::span<double> a, std::span<const double> b) noexcept;

/// a[i] -= b[i]
void subtractInPlace(std::span<double> a, std::span<const double> b) noexcept;

/// a[i] -= value
void subtractInPlace(std::span<double> a, double value) noexcept;

/// sum[i] += x[i] * weight, the product rounded before it is added
void addWeightedInPlace(std::span<double> sum, std::span<const double> x, double weight) noexcept;

/// to[i] = a[i] + b[i]
void add(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept;
/// The same to two arrays.
void add(std::span<const double> a, std::span<const double> b, std::span<double> to, std::span<double> alsoTo) noexcept;

/// to[i] = a[i] - b[i]
void subtract(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept;
/// The same to two arrays.
void subtract(std::span<const double> a, std::span<const double> b, std::span<double> to,
              std::span<double> alsoTo) noexcept;

/// to[i] = a[i] * b[i]
void multiply(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept;
/// The same to two arrays.
void multiply(std::span<const double> a, std::span<const double> b, std::span<double> to,
              std::span<double> alsoTo) noexcept;

} // namespace megset::numeric
