// Time-major planes: rows of values, one row for each time point, one column for each frequency.
//
// Every sum is sequential: it begins at 0 and goes up in time, and within a row up in frequency. Minimum and maximum
// are replaced by `if (v < minimum)` and `if (v > maximum)`, so that NaN is passed over unless it is where they begin.
// Nothing outside a plane is read or written, whatever a column, rectangle or walk asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace megset::numeric {

/// Values in rows of `columns` each; the last row may be cut short. Without values, or with no columns, it is empty.
template <class Value>
class BasicPlane
{
public:
    BasicPlane() = default;
    BasicPlane(std::span<Value> values, std::int64_t columns) noexcept
        : m_values(columns < 1 ? std::span<Value>() : values), m_columns(columns < 1 ? 0 : columns)
    {
    }
    template <class Other>
    requires(!std::is_same_v<Other, Value>) && std::is_convertible_v<Other (*)[], Value (*)[]> BasicPlane(
                                                   const BasicPlane<Other>& other) noexcept
        : m_values(other.values()),
    m_columns(other.columns())
    {
    }

    bool isEmpty() const noexcept { return m_values.empty(); }
    std::span<Value> values() const noexcept { return m_values; }
    std::int64_t columns() const noexcept { return m_columns; }
    /// Whole rows and the one that is cut short.
    std::int64_t rows() const noexcept
    {
        return isEmpty() ? 0 : (static_cast<std::int64_t>(m_values.size()) - 1) / m_columns + 1;
    }
    /// A row that there is.
    std::span<Value> row(std::int64_t t) const noexcept
    {
        const auto rest = m_values.subspan(static_cast<std::size_t>(t * m_columns));
        return rest.size() > static_cast<std::size_t>(m_columns) ? rest.first(static_cast<std::size_t>(m_columns))
                                                                 : rest;
    }

private:
    std::span<Value> m_values;
    std::int64_t m_columns = 0;
};

/// A plane that is changed.
using Plane = BasicPlane<double>;
/// A plane that is read.
using ConstPlane = BasicPlane<const double>;

// Columns. Those that a plane doesn't have hold nothing.

/// out[k] = the column's value at time begin + k, for as many times as `out` and the plane have. `begin` is not
/// negative.
void copyColumn(ConstPlane plane, std::int64_t column, std::int64_t begin, std::span<double> out) noexcept;
/// The largest |v|; 0 without values; NaN is passed over.
double columnMaxAbsolute(ConstPlane plane, std::int64_t column) noexcept;
/// The sum of v / rows, each term divided before it is added.
double columnMean(ConstPlane plane, std::int64_t column) noexcept;
/// The sum of v * v, divided by the rows.
double columnMeanSquare(ConstPlane plane, std::int64_t column) noexcept;
/// v /= divisor
void divideColumn(Plane plane, std::int64_t column, double divisor) noexcept;

/// Every column is divided by its columnMean, unless that is 0.
void divideColumnsByTheirMeans(Plane plane) noexcept;
/// The standard deviations of all columns over time, for whole rows: the root of the sum of squared differences from
/// the mean (the sum divided by the rows), divided by the rows. They go to `out` in turn, which begins anew at its
/// start when it is full, so that a short one holds the last ones that came to each place.
void columnDeviations(ConstPlane plane, std::span<double> out) noexcept;

/// base[f] = the sum of v / n over the rows begin <= t < end, where n is end - begin.
void baseline(ConstPlane plane, std::int64_t begin, std::int64_t end, std::span<double> base) noexcept;
/// v = v / divisor[f] * scale, the quotient rounded before it is scaled; columns beyond the divisors stay.
void divideRowsAndScale(Plane plane, std::span<const double> divisor, double scale) noexcept;

// Rectangles

/// Times and frequencies, all four included.
struct PlaneRectangle
{
    std::int64_t timeBegin = 0;
    std::int64_t timeEnd = -1;
    std::int64_t freqBegin = 0;
    std::int64_t freqEnd = -1;

    bool operator==(const PlaneRectangle&) const = default;
};

/// The sums of no values are 0, and so are their extremes.
struct RectangleStatistics
{
    std::int64_t count = 0;
    double min = 0.0;
    double max = 0.0;
    double sum = 0.0;
    double sumOfSquares = 0.0;
};

/// Statistics of the values that the rectangle and the plane have in common; both sums begin with the first value.
RectangleStatistics rectangleStatistics(ConstPlane plane, const PlaneRectangle& rectangle) noexcept;

/// The sum over a rectangle, and of how many values it is.
struct RectangleSum
{
    double sum = 0.0;
    std::int64_t count = 0;
};

/// The sequential sum of the values that the rectangle and the plane have in common.
RectangleSum rectangleSum(ConstPlane plane, const PlaneRectangle& rectangle) noexcept;

/// Sets the values that the rectangle and the plane have in common.
void fillRectangle(Plane plane, const PlaneRectangle& rectangle, double value) noexcept;

/// What a profile keeps of each frequency.
enum class ProfileOf
{
    LargestAbsolute,
    Sum,
    SumOfSquares
};

/// out[k] = the value over the rectangle's times at frequency freqBegin + k, for as many as the rectangle and `out`
/// have; 0 for frequencies that the plane doesn't have.
void rectangleProfile(ConstPlane plane, const PlaneRectangle& rectangle, ProfileOf what,
                      std::span<double> out) noexcept;

// The range of a plane

/// The ways of taking it, which differ in how the mean is formed: row after row the sum of the row, divided by
/// `rowDivisor`, is added to the mean, which is divided by `divisor` in the end.
struct RangeScan
{
    std::int64_t firstColumn = 0; ///< columns before this one are passed over in every row
    bool absolute = false;        ///< of |v|
    bool carriesRowSum = false;   ///< the sum is not cleared between rows, so that early rows weigh more
    double rowDivisor = 1.0;
    double divisor = 1.0;
};

/// The range of a plane, by a RangeScan.
struct PlaneRange
{
    double min = 0.0;
    double max = 0.0;
    double mean = 0.0;
};

/// Minimum and maximum begin at the first value of the plane, even when its column is passed over. Zeros without
/// values.
PlaneRange planeRange(ConstPlane plane, const RangeScan& scan) noexcept;

/// values[first + k * stride] *= factor for k = 0 .. count - 1, as far as there are values. Nothing for a negative
/// first, and for a stride below 1.
void scaleEvery(std::span<double> values, std::int64_t first, std::int64_t stride, std::int64_t count,
                double factor) noexcept;

} // namespace megset::numeric
