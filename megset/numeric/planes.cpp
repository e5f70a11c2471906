#include "megset/numeric/planes.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/division.h"
#include "megset/numeric/transform.h"

namespace megset::numeric {

namespace {

// As many columns at a time as fit on the stack beside each other.
constexpr std::int64_t blockColumns = 128;
using ColumnBlock = std::array<double, blockColumns>;

/// Runs `work(first, count)` on one block of columns after the other.
template <class Work>
void inColumnBlocks(std::int64_t columns, Work work)
{
    for (std::int64_t first = 0; first < columns; first += blockColumns)
        work(first, std::min(blockColumns, columns - first));
}

/// Columns first to first + count - 1 of a row.
template <class Value>
std::span<Value> part(std::span<Value> row, std::int64_t first, std::int64_t count)
{
    const auto from = std::min(static_cast<std::size_t>(first), row.size());
    return row.subspan(from, std::min(static_cast<std::size_t>(count), row.size() - from));
}

/// The rows begin <= t < end that there are.
ConstPlane rowsOf(ConstPlane plane, std::int64_t begin, std::int64_t end)
{
    begin = std::max<std::int64_t>(begin, 0);
    end = std::min(end, plane.rows());
    if (begin >= end)
        return {};
    const auto from = static_cast<std::size_t>(begin * plane.columns());
    const auto most = static_cast<std::size_t>((end - begin) * plane.columns());
    return {plane.values().subspan(from, std::min(most, plane.values().size() - from)), plane.columns()};
}

/// Calls `visit(v)` for every value of a column, in time order.
template <class Value, class Visit>
void forColumn(BasicPlane<Value> plane, std::int64_t column, Visit visit)
{
    if (column < 0 || column >= plane.columns())
        return;
    const auto values = plane.values();
    const auto columns = static_cast<std::size_t>(plane.columns());
    for (auto i = static_cast<std::size_t>(column); i < values.size(); i += columns)
        visit(values[i]);
}

/// Calls `visit(row)` with the part of each row that lies in the rectangle, in time order.
template <class Value, class Visit>
void forRectangle(BasicPlane<Value> plane, const PlaneRectangle& rectangle, Visit visit)
{
    const std::int64_t first = std::max<std::int64_t>(rectangle.freqBegin, 0);
    const std::int64_t last = std::min(rectangle.freqEnd, plane.columns() - 1);
    const std::int64_t timeEnd = std::min(rectangle.timeEnd, plane.rows() - 1);
    if (first > last)
        return;
    for (std::int64_t t = std::max<std::int64_t>(rectangle.timeBegin, 0); t <= timeEnd; ++t)
        visit(part(plane.row(t), first, last - first + 1));
}

void keepLarger(std::span<double> largest, std::span<const double> x)
{
    for (std::size_t k = 0; k < x.size(); ++k)
        largest[k] = std::fabs(x[k]) > largest[k] ? std::fabs(x[k]) : largest[k];
}

void addSquares(std::span<double> sum, std::span<const double> x)
{
    for (std::size_t k = 0; k < x.size(); ++k)
        sum[k] += x[k] * x[k];
}

void addSquaredDeviations(std::span<double> sum, std::span<const double> x, std::span<const double> mean)
{
    for (std::size_t k = 0; k < x.size(); ++k) {
        const double deviation = x[k] - mean[k];
        sum[k] += deviation * deviation;
    }
}

} // namespace

void copyColumn(ConstPlane plane, std::int64_t column, std::int64_t begin, std::span<double> out) noexcept
{
    if (column < 0 || column >= plane.columns())
        return;
    const auto values = plane.values();
    for (std::size_t k = 0; k < out.size() && begin < plane.rows() - static_cast<std::int64_t>(k); ++k) {
        const auto i = (begin + static_cast<std::int64_t>(k)) * plane.columns() + column;
        if (static_cast<std::size_t>(i) < values.size())
            out[k] = values[static_cast<std::size_t>(i)];
    }
}

double columnMaxAbsolute(ConstPlane plane, std::int64_t column) noexcept
{
    double largest = 0.0;
    forColumn(plane, column, [&](double v) { largest = std::fabs(v) > largest ? std::fabs(v) : largest; });
    return largest;
}

double columnMean(ConstPlane plane, std::int64_t column) noexcept
{
    double mean = 0.0;
    const auto rows = static_cast<double>(plane.rows());
    forColumn(plane, column, [&](double v) { mean += v / rows; });
    return mean;
}

double columnMeanSquare(ConstPlane plane, std::int64_t column) noexcept
{
    double sum = 0.0;
    forColumn(plane, column, [&](double v) { sum += v * v; });
    return plane.isEmpty() ? 0.0 : sum / static_cast<double>(plane.rows());
}

void divideColumn(Plane plane, std::int64_t column, double divisor) noexcept
{
    forColumn(plane, column, [divisor](double& v) { v /= divisor; });
}

void divideColumnsByTheirMeans(Plane plane) noexcept
{
    const auto rows = static_cast<double>(plane.rows());
    inColumnBlocks(plane.columns(), [&](std::int64_t first, std::int64_t count) {
        ColumnBlock means{};
        for (std::int64_t t = 0; t < plane.rows(); ++t)
            addQuotients(means, part(plane.row(t), first, count), rows);
        for (double& mean : means)
            mean = mean != 0.0 ? mean : 1.0; // which changes no bit
        for (std::int64_t t = 0; t < plane.rows(); ++t)
            divideInPlace(part(plane.row(t), first, count), means);
    });
}

void columnDeviations(ConstPlane plane, std::span<double> out) noexcept
{
    if (out.empty())
        return;
    const auto rows = static_cast<double>(plane.rows());
    inColumnBlocks(plane.columns(), [&](std::int64_t first, std::int64_t count) {
        ColumnBlock means{};
        ColumnBlock squares{};
        for (std::int64_t t = 0; t < plane.rows(); ++t)
            addInPlace(means, part(plane.row(t), first, count));
        divideInPlace(means, rows);
        for (std::int64_t t = 0; t < plane.rows(); ++t)
            addSquaredDeviations(squares, part(plane.row(t), first, count), means);
        for (std::int64_t k = 0; k < count; ++k)
            out[static_cast<std::size_t>(first + k) % out.size()] =
                std::sqrt(squares[static_cast<std::size_t>(k)] / rows);
    });
}

void baseline(ConstPlane plane, std::int64_t begin, std::int64_t end, std::span<double> base) noexcept
{
    fill(base, 0.0);
    const auto n = static_cast<double>(end) - static_cast<double>(begin);
    addRowQuotients(base, rowsOf(plane, begin, end), n, currentProcessorPath());
}

void divideRowsAndScale(Plane plane, std::span<const double> divisor, double scale) noexcept
{
    divideRowsAndScale(plane, divisor, scale, currentProcessorPath());
}

RectangleStatistics rectangleStatistics(ConstPlane plane, const PlaneRectangle& rectangle) noexcept
{
    RectangleStatistics s;
    forRectangle(plane, rectangle, [&s](std::span<const double> row) {
        if (s.count == 0 && !row.empty()) {
            s = {1, row[0], row[0], row[0], row[0] * row[0]};
            row = row.subspan(1);
        }
        for (const double v : row) {
            s.min = v < s.min ? v : s.min;
            s.max = v > s.max ? v : s.max;
            s.sum += v;
            s.sumOfSquares += v * v;
        }
        s.count += static_cast<std::int64_t>(row.size());
    });
    return s;
}

RectangleSum rectangleSum(ConstPlane plane, const PlaneRectangle& rectangle) noexcept
{
    RectangleSum s;
    forRectangle(plane, rectangle, [&s](std::span<const double> row) {
        for (const double v : row)
            s.sum += v;
        s.count += static_cast<std::int64_t>(row.size());
    });
    return s;
}

void fillRectangle(Plane plane, const PlaneRectangle& rectangle, double value) noexcept
{
    forRectangle(plane, rectangle, [value](std::span<double> row) { fill(row, value); });
}

void rectangleProfile(ConstPlane plane, const PlaneRectangle& rectangle, ProfileOf what, std::span<double> out) noexcept
{
    if (rectangle.freqBegin < 0 || rectangle.freqBegin > rectangle.freqEnd)
        return;
    const std::int64_t most = rectangle.freqEnd - rectangle.freqBegin; // one less than the frequencies
    if (static_cast<std::uint64_t>(most) < out.size())
        out = out.first(static_cast<std::size_t>(most) + 1);
    fill(out, 0.0);
    forRectangle(plane, rectangle, [&](std::span<const double> row) {
        row = row.first(std::min(row.size(), out.size()));
        if (what == ProfileOf::LargestAbsolute)
            keepLarger(out, row);
        else if (what == ProfileOf::Sum)
            addInPlace(out, row);
        else
            addSquares(out, row);
    });
}

PlaneRange planeRange(ConstPlane plane, const RangeScan& scan) noexcept
{
    if (plane.isEmpty())
        return {};
    const auto value = [&scan](double v) { return scan.absolute ? std::fabs(v) : v; };
    const double first = value(plane.values().front());
    PlaneRange range{first, first, 0.0};
    double sum = 0.0;
    for (std::int64_t t = 0; t < plane.rows(); ++t) {
        sum = scan.carriesRowSum ? sum : 0.0;
        for (const double element : part(plane.row(t), scan.firstColumn, plane.columns())) {
            const double v = value(element);
            range.min = v < range.min ? v : range.min;
            range.max = v > range.max ? v : range.max;
            sum += v;
        }
        range.mean += sum / scan.rowDivisor;
    }
    range.mean /= scan.divisor;
    return range;
}

void scaleEvery(std::span<double> values, std::int64_t first, std::int64_t stride, std::int64_t count,
                double factor) noexcept
{
    if (first < 0 || stride < 1)
        return;
    const auto size = static_cast<std::int64_t>(values.size());
    for (std::int64_t i = first; count > 0 && i < size; --count) {
        values[static_cast<std::size_t>(i)] *= factor;
        if (stride > size - i)
            return;
        i += stride;
    }
}

} // namespace megset::numeric
