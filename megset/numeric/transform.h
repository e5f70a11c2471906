// Values made from values, element by element.
//
// Every function takes as many elements as its shortest span holds. A result span may be the same as an operand; other
// overlaps are not allowed.
#pragma once

#include <span>

namespace megset::numeric {

// Parts of complex values

/// m[i] = sqrt(r[i] * r[i])
void magnitude(std::span<const double> r, std::span<double> m) noexcept;
/// m[i] = sqrt((r[i] * r[i] + i[i] * i[i]) * 0.5): the root of the mean of the squares, not the length of the vector
void magnitude(std::span<const double> r, std::span<const double> i, std::span<double> m) noexcept;

/// a[i] = atan(r[i])
void phase(std::span<const double> r, std::span<double> a) noexcept;
/// a[i] = atan2(i[i], r[i])
void phase(std::span<const double> r, std::span<const double> i, std::span<double> a) noexcept;

/// m[i] = |m[i]|, negated where source[i] < 0
void giveSign(std::span<double> m, std::span<const double> source) noexcept;
/// The same with the sign of whichever of r[i] and i[i] has the larger absolute value, r[i] on a tie.
void giveSignOfLarger(std::span<double> m, std::span<const double> r, std::span<const double> i) noexcept;

// In place

/// Values below `low` or above `high` become `replacement`; NaN is neither.
void replaceOutside(std::span<double> x, double low, double high, double replacement) noexcept;
/// NaN and infinite values become `replacement`.
void replaceNonFinite(std::span<double> x, double replacement) noexcept;
/// x[i] = (x[i] - offset) * scale
void shiftAndScale(std::span<double> x, double offset, double scale) noexcept;
/// x[i] = std::log(x[i]), to the bit
void logarithm(std::span<double> x) noexcept;
/// x[i] = x[i] / divisor[i] * scale, the quotient rounded before it is scaled
void divideAndScale(std::span<double> x, std::span<const double> divisor, double scale) noexcept;

// Sums

/// sum[i] += x[i] / divisor
void addQuotients(std::span<double> sum, std::span<const double> x, double divisor) noexcept;
/// to[i] = (a[i] + b[i]) * 0.5
void average(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept;
/// to[i] += (a[i] + b[i]) * 0.5
void addAverage(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept;

} // namespace megset::numeric
