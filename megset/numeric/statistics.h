// Statistics of rows of samples.
//
// Every sum is the plain sequential one: it begins at its start value and adds element by element in index order.
// Minimum and maximum begin at the first element and are replaced by `if (v < minimum)` and `if (v > maximum)`, so that
// a NaN in the first place stays and later ones are passed over. The forms for several rows give the same bits as the
// form for one row; they are faster, because the sums of different rows don't wait for each other. (Which NaN a sum
// gives that meets several different ones is left open.)
#pragma once

#include <cstddef>
#include <span>

namespace megset::numeric {

/// The range of a row.
struct MinMax
{
    double min = 0.0;
    double max = 0.0;
};

/// What one pass over a row gives.
struct SampleStatistics
{
    double min = 0.0;
    double max = 0.0;
    double sum = 0.0;
    double sumOfSquares = 0.0;
};

/// What two passes over a row give.
struct RowStatistics
{
    double min = 0.0;
    double max = 0.0;
    double sum = 0.0;
    double sumOfSquares = 0.0;
    double mean = 0.0;                 ///< sum divided by the count; of a single sample, the sum
    double sumOfSquaredDeviations = 0; ///< of (x - mean)^2
};

/// Samples one behind another.
using Row = std::span<const double>;

/// A start value of sums that changes no element: the sum of one sample is that sample, be it -0.0.
inline constexpr double noStart = -0.0;

/// The sequential sum.
double sum(Row x, double start = 0.0) noexcept;

/// Minimum and maximum; zeros for an empty row.
MinMax minMax(Row x) noexcept;

/// The largest |x|; 0 for an empty row; NaN is passed over.
double maxAbsolute(Row x) noexcept;

/// Minimum, maximum, sum and sum of squares in one pass, at about the price of one sequential sum. `sum` begins
/// at `start`, `sumOfSquares` at 0. Zeros and `start` for an empty row.
SampleStatistics statistics(Row x, double start = 0.0) noexcept;

/// out[r] = statistics(rows[r], start), for as many rows as both spans have. Rows may differ in length.
void statisticsOfRows(std::span<const Row> rows, std::span<SampleStatistics> out, double start = 0.0) noexcept;

/// The sum of (x - mean)^2 over all samples, beginning at 0.
double sumOfSquaredDeviations(Row x, double mean) noexcept;

/// As `statistics`, with the mean and, in a second pass, the sum of squared deviations over the samples from
/// index `deviationsFrom` on.
RowStatistics describe(Row x, std::size_t deviationsFrom = 0, double start = 0.0) noexcept;

/// out[r] = describe(rows[r], deviationsFrom, start), for as many rows as both spans have.
void describeRows(std::span<const Row> rows, std::span<RowStatistics> out, std::size_t deviationsFrom = 0,
                  double start = 0.0) noexcept;

} // namespace megset::numeric
