#include "megset/numeric/statistics.h"

#include <algorithm>
#include <array>

#include "megset/numeric/statisticsLoops.h"

namespace megset::numeric {

namespace {

const StatisticsLoops& loops() noexcept
{
    static const StatisticsLoops& chosen = statisticsLoops(currentProcessorPath());
    return chosen;
}

SampleStatistics beginStatistics(Row x, double start) noexcept
{
    if (x.empty())
        return {0.0, 0.0, start, 0.0};
    return {x.front(), x.front(), start, 0.0};
}

double continueDeviations(const double* x, std::size_t n, double mean, double sum) noexcept
{
    for (std::size_t i = 0; i < n; ++i) {
        const double deviation = x[i] - mean;
        sum += deviation * deviation;
    }
    return sum;
}

RowStatistics withMean(const SampleStatistics& s, std::size_t n) noexcept
{
    const double mean = n > 1 ? s.sum / static_cast<double>(n) : s.sum;
    return {s.min, s.max, s.sum, s.sumOfSquares, mean, 0.0};
}

Row fromIndex(Row x, std::size_t index) noexcept
{
    return x.subspan(std::min(index, x.size()));
}

/// As many rows as the loops take at once. Places without a row of their own repeat the first one.
class RowGroup
{
public:
    RowGroup(std::span<const Row> rows, std::size_t from, std::size_t most) noexcept
        : m_count(std::min(most, rows.size() - from))
    {
        for (std::size_t r = 0; r < most; ++r)
            m_rows[r] = rows[from + (r < m_count ? r : 0)];
    }

    std::size_t count() const noexcept { return m_count; }
    const Row& operator[](std::size_t r) const noexcept { return m_rows[r]; }

    RowGroup fromIndex(std::size_t index) const noexcept
    {
        RowGroup tails = *this;
        for (Row& row : tails.m_rows)
            row = numeric::fromIndex(row, index);
        return tails;
    }

    std::array<const double*, StatisticsLoops::mostRows> starts() const noexcept
    {
        std::array<const double*, StatisticsLoops::mostRows> x{};
        for (std::size_t r = 0; r < x.size(); ++r)
            x[r] = m_rows[r].data();
        return x;
    }

    /// How many samples all rows have, in whole steps of the loops. A row alone gains nothing by company.
    std::size_t commonSamples(std::size_t step) const noexcept
    {
        if (m_count < 2)
            return 0;
        std::size_t n = m_rows[0].size();
        for (std::size_t r = 1; r < m_count; ++r)
            n = std::min(n, m_rows[r].size());
        return n / step * step;
    }

private:
    std::array<Row, StatisticsLoops::mostRows> m_rows;
    std::size_t m_count;
};

using GroupStatistics = std::array<SampleStatistics, StatisticsLoops::mostRows>;
using GroupValues = std::array<double, StatisticsLoops::mostRows>;

GroupStatistics statisticsOfGroup(const RowGroup& rows, double start) noexcept
{
    GroupStatistics s;
    for (std::size_t r = 0; r < s.size(); ++r)
        s[r] = beginStatistics(rows[r], start);
    const std::size_t common = rows.commonSamples(loops().step);
    if (common > 0)
        loops().continueStatisticsOfRows(rows.starts().data(), common, s.data());
    for (std::size_t r = 0; r < rows.count(); ++r)
        loops().continueStatistics(rows[r].data() + common, rows[r].size() - common, s[r]);
    return s;
}

GroupValues deviationsOfGroup(const RowGroup& rows, const GroupValues& means) noexcept
{
    GroupValues sums{};
    const std::size_t common = rows.commonSamples(loops().step);
    if (common > 0)
        loops().continueDeviationsOfRows(rows.starts().data(), common, means.data(), sums.data());
    for (std::size_t r = 0; r < rows.count(); ++r)
        sums[r] = continueDeviations(rows[r].data() + common, rows[r].size() - common, means[r], sums[r]);
    return sums;
}

} // namespace

double sum(Row x, double start) noexcept
{
    for (const double v : x)
        start += v;
    return start;
}

MinMax minMax(Row x) noexcept
{
    if (x.empty())
        return {};
    MinMax range{x.front(), x.front()};
    loops().continueMinMax(x.data(), x.size(), range);
    return range;
}

double maxAbsolute(Row x) noexcept
{
    double largest = 0.0;
    loops().continueMaxAbsolute(x.data(), x.size(), largest);
    return largest;
}

SampleStatistics statistics(Row x, double start) noexcept
{
    SampleStatistics s = beginStatistics(x, start);
    loops().continueStatistics(x.data(), x.size(), s);
    return s;
}

void statisticsOfRows(std::span<const Row> rows, std::span<SampleStatistics> out, double start) noexcept
{
    rows = rows.first(std::min(rows.size(), out.size()));
    for (std::size_t from = 0; from < rows.size(); from += loops().rows) {
        const RowGroup group(rows, from, loops().rows);
        const GroupStatistics s = statisticsOfGroup(group, start);
        std::copy_n(s.begin(), group.count(), out.begin() + static_cast<std::ptrdiff_t>(from));
    }
}

double sumOfSquaredDeviations(Row x, double mean) noexcept
{
    return continueDeviations(x.data(), x.size(), mean, 0.0);
}

RowStatistics describe(Row x, std::size_t deviationsFrom, double start) noexcept
{
    RowStatistics result = withMean(statistics(x, start), x.size());
    result.sumOfSquaredDeviations = sumOfSquaredDeviations(fromIndex(x, deviationsFrom), result.mean);
    return result;
}

void describeRows(std::span<const Row> rows, std::span<RowStatistics> out, std::size_t deviationsFrom,
                  double start) noexcept
{
    rows = rows.first(std::min(rows.size(), out.size()));
    for (std::size_t from = 0; from < rows.size(); from += loops().rows) {
        const RowGroup group(rows, from, loops().rows); // both passes while the group is in cache
        const GroupStatistics s = statisticsOfGroup(group, start);
        GroupValues means{};
        for (std::size_t r = 0; r < means.size(); ++r)
            means[r] = withMean(s[r], group[r].size()).mean;
        const GroupValues deviations = deviationsOfGroup(group.fromIndex(deviationsFrom), means);
        for (std::size_t r = 0; r < group.count(); ++r) {
            out[from + r] = withMean(s[r], group[r].size());
            out[from + r].sumOfSquaredDeviations = deviations[r];
        }
    }
}

} // namespace megset::numeric
