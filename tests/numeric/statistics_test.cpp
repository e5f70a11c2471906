#include "megset/numeric/statistics.h"

#include <algorithm>

#include "megset/numeric/processorPath.h"
#include "megset/numeric/statisticsLoops.h"
#include "tests/numeric/reference.h"

namespace megset::numeric::statistics_test {

namespace {

SampleStatistics plainStatistics(Row x, double start)
{
    SampleStatistics s{0.0, 0.0, start, 0.0};
    if (!x.empty())
        s.min = s.max = x[0];
    for (const double v : x) {
        if (v < s.min)
            s.min = v;
        if (v > s.max)
            s.max = v;
        s.sum += v;
        s.sumOfSquares += v * v;
    }
    return s;
}

double plainDeviations(Row x, double mean, std::size_t from)
{
    double sum = 0.0;
    for (std::size_t i = from; i < x.size(); ++i)
        sum += (x[i] - mean) * (x[i] - mean);
    return sum;
}

::testing::AssertionResult sameStatistics(const SampleStatistics& a, const SampleStatistics& b)
{
    const double left[] = {a.min, a.max, a.sum, a.sumOfSquares};
    const double right[] = {b.min, b.max, b.sum, b.sumOfSquares};
    return sameSamples(left, right);
}

::testing::AssertionResult sameRow(const RowStatistics& a, const RowStatistics& b)
{
    const double left[] = {a.min, a.max, a.sum, a.sumOfSquares, a.mean, a.sumOfSquaredDeviations};
    const double right[] = {b.min, b.max, b.sum, b.sumOfSquares, b.mean, b.sumOfSquaredDeviations};
    return sameSamples(left, right);
}

/// Rows of every length: ordinary numbers, awkward ones without and with NaN.
std::vector<std::vector<double>> testRows()
{
    std::vector<std::vector<double>> rows;
    for (const std::size_t n : lengths) {
        rows.push_back(randomSamples(n, static_cast<unsigned>(n)));
        for (unsigned seed = 1; seed < 4; ++seed) {
            rows.push_back(awkwardSamples(n, seed, false));
            rows.push_back(awkwardSamples(n, seed, true));
        }
    }
    return rows;
}

/// Ordinary numbers of one sign with zeros of both signs in unsystematic places.
std::vector<double> samplesDownToZero(std::size_t n, unsigned seed, double sign)
{
    std::mt19937 random(seed);
    std::vector<double> x(n);
    for (double& v : x)
        v = random() % 50 == 0 ? (random() % 2 == 0 ? 0.0 : -0.0) : sign * static_cast<double>(1 + random() % 100);
    return x;
}

std::vector<Row> asRows(const std::vector<std::vector<double>>& data)
{
    return {data.begin(), data.end()};
}

} // namespace

TEST(NumericStatistics, SumIsThePlainSequentialOne)
{
    for (const auto& x : testRows())
        EXPECT_TRUE(sameBits(sum(x, 0.1), plainStatistics(x, 0.1).sum));
}

TEST(NumericStatistics, OneRowGivesTheBitsOfThePlainLoop)
{
    for (const auto& x : testRows()) {
        EXPECT_TRUE(sameStatistics(statistics(x), plainStatistics(x, 0.0))) << x.size();
        EXPECT_TRUE(sameStatistics(statistics(x, -7.3), plainStatistics(x, -7.3))) << x.size();
        const MinMax range = minMax(x);
        EXPECT_TRUE(sameBits(range.min, plainStatistics(x, 0.0).min)) << x.size();
        EXPECT_TRUE(sameBits(range.max, plainStatistics(x, 0.0).max)) << x.size();
    }
}

TEST(NumericStatistics, TheFirstOfTwoZerosIsTheExtreme)
{
    for (const std::size_t n : lengths) {
        for (unsigned seed = 0; seed < 20; ++seed) {
            for (const double sign : {1.0, -1.0}) {
                const auto x = samplesDownToZero(n, seed, sign);
                EXPECT_TRUE(sameStatistics(statistics(x), plainStatistics(x, 0.0))) << n << " " << seed;
                EXPECT_TRUE(sameBits(minMax(x).min, plainStatistics(x, 0.0).min)) << n << " " << seed;
                EXPECT_TRUE(sameBits(minMax(x).max, plainStatistics(x, 0.0).max)) << n << " " << seed;
            }
        }
    }
}

TEST(NumericStatistics, ANaNStaysInTheFirstPlaceOnly)
{
    std::vector<double> x = randomSamples(3000, 5);
    x[1500] = std::nan("");
    EXPECT_EQ(minMax(x).min,
              *std::min_element(x.begin(), x.begin() + 1500) < *std::min_element(x.begin() + 1501, x.end())
                  ? *std::min_element(x.begin(), x.begin() + 1500)
                  : *std::min_element(x.begin() + 1501, x.end()));
    x[0] = std::nan("");
    EXPECT_TRUE(std::isnan(minMax(x).min));
    EXPECT_TRUE(std::isnan(statistics(x).max));
}

TEST(NumericStatistics, NoStartKeepsTheSignOfASingleZero)
{
    const std::vector<double> zero = {-0.0};
    EXPECT_TRUE(std::signbit(statistics(zero, noStart).sum));
    EXPECT_FALSE(std::signbit(statistics(zero).sum));
    const std::vector<double> value = {3.5};
    EXPECT_EQ(statistics(value, noStart).sum, 3.5);
}

TEST(NumericStatistics, AnEmptyRowGivesZerosAndTheStart)
{
    EXPECT_TRUE(sameStatistics(statistics({}, 2.0), {0.0, 0.0, 2.0, 0.0}));
    EXPECT_EQ(minMax({}).max, 0.0);
    EXPECT_EQ(maxAbsolute({}), 0.0);
    EXPECT_EQ(sumOfSquaredDeviations({}, 1.0), 0.0);
    EXPECT_TRUE(sameRow(describe({}, 1, 2.0), {0.0, 0.0, 2.0, 0.0, 2.0, 0.0}));
}

TEST(NumericStatistics, MaxAbsolutePassesOverNaN)
{
    for (const auto& x : testRows()) {
        double expected = 0.0;
        for (const double v : x) {
            if (std::fabs(v) > expected)
                expected = std::fabs(v);
        }
        EXPECT_TRUE(sameBits(maxAbsolute(x), expected)) << x.size();
    }
}

TEST(NumericStatistics, DescribeAddsMeanAndDeviations)
{
    const std::vector<double> x = {1, 2, 3, 6};
    EXPECT_TRUE(sameRow(describe(x), {1, 6, 12, 50, 3, 14}));
    EXPECT_TRUE(sameRow(describe(x, 1), {1, 6, 12, 50, 3, 10}));
    EXPECT_TRUE(sameRow(describe(x, 9), {1, 6, 12, 50, 3, 0}));
    for (const auto& row : testRows()) {
        const RowStatistics d = describe(row, 1);
        const double mean = row.size() > 1 ? d.sum / static_cast<double>(row.size()) : d.sum;
        EXPECT_TRUE(sameBits(d.mean, mean));
        EXPECT_TRUE(sameBits(d.sumOfSquaredDeviations, plainDeviations(row, mean, 1))) << row.size();
        EXPECT_TRUE(sameBits(sumOfSquaredDeviations(row, 0.7), plainDeviations(row, 0.7, 0))) << row.size();
    }
}

TEST(NumericStatistics, SeveralRowsGiveTheBitsOfEachAlone)
{
    for (const std::size_t n : lengths) {
        for (std::size_t count = 0; count <= 19; ++count) {
            std::vector<std::vector<double>> data;
            for (unsigned r = 0; r < count; ++r)
                data.push_back(r % 5 == 4 ? awkwardSamples(n, r, true) : randomSamples(n, r));
            const std::vector<Row> rows = asRows(data);
            std::vector<SampleStatistics> s(count);
            std::vector<RowStatistics> d(count);
            statisticsOfRows(rows, s, noStart);
            describeRows(rows, d, 1, noStart);
            for (std::size_t r = 0; r < count; ++r) {
                EXPECT_TRUE(sameStatistics(s[r], plainStatistics(data[r], noStart))) << n << " " << count << " " << r;
                EXPECT_TRUE(sameRow(d[r], describe(data[r], 1, noStart))) << n << " " << count << " " << r;
            }
        }
    }
}

TEST(NumericStatistics, SeveralRowsGiveTheBitsOfThePlainLoopAtEveryLengthUpToSeventy)
{
    for (std::size_t n = 0; n <= 70; ++n) {
        std::vector<std::vector<double>> data;
        for (unsigned r = 0; r < 17; ++r)
            data.push_back(r % 3 == 0 ? randomSamples(n, r) : awkwardSamples(n, r, r % 3 == 1));
        std::vector<RowStatistics> d(data.size());
        describeRows(asRows(data), d, 1, noStart);
        for (std::size_t r = 0; r < data.size(); ++r) {
            const SampleStatistics plain = plainStatistics(data[r], noStart);
            const double mean = n > 1 ? plain.sum / static_cast<double>(n) : plain.sum;
            EXPECT_TRUE(sameRow(
                d[r], {plain.min, plain.max, plain.sum, plain.sumOfSquares, mean, plainDeviations(data[r], mean, 1)}))
                << n << " " << r;
        }
    }
}

TEST(NumericStatistics, RowsMayDifferInLength)
{
    const auto data = testRows();
    const std::vector<Row> rows = asRows(data);
    std::vector<RowStatistics> d(rows.size());
    describeRows(rows, d);
    for (std::size_t r = 0; r < rows.size(); ++r)
        EXPECT_TRUE(sameRow(d[r], describe(data[r]))) << data[r].size();
}

TEST(NumericStatistics, OnlyRowsWithAPlaceForTheResultAreTaken)
{
    const std::vector<std::vector<double>> data = {{1, 2}, {3, 4}, {5, 6}};
    std::vector<SampleStatistics> two(2), four(4, {9, 9, 9, 9});
    statisticsOfRows(asRows(data), two);
    EXPECT_EQ(two[1].sum, 7.0);
    statisticsOfRows(asRows(data), four);
    EXPECT_EQ(four[2].sum, 11.0);
    EXPECT_EQ(four[3].sum, 9.0);
}

TEST(NumericStatistics, EveryProcessorPathGivesTheSameBits)
{
    for (const auto path : {ProcessorPath::Baseline, ProcessorPath::Avx2, ProcessorPath::Avx512}) {
        if (path > currentProcessorPath())
            continue;
        const StatisticsLoops& loops = statisticsLoops(path);
        for (const auto& x : testRows()) {
            if (x.empty())
                continue;
            const SampleStatistics plain = plainStatistics(x, 0.0);
            SampleStatistics s{x[0], x[0], 0.0, 0.0};
            loops.continueStatistics(x.data(), x.size(), s);
            EXPECT_TRUE(sameStatistics(s, plain)) << x.size();
            MinMax range{x[0], x[0]};
            loops.continueMinMax(x.data(), x.size(), range);
            EXPECT_TRUE(sameBits(range.min, plain.min) && sameBits(range.max, plain.max)) << x.size();
            double largest = 0.0;
            loops.continueMaxAbsolute(x.data(), x.size(), largest);
            EXPECT_TRUE(sameBits(largest, maxAbsolute(x))) << x.size();
        }
        const std::size_t n = 41 * loops.step;
        std::vector<std::vector<double>> data;
        std::vector<const double*> starts;
        std::vector<SampleStatistics> s;
        std::vector<double> means, deviations(loops.rows, 0.0);
        for (unsigned r = 0; r < loops.rows; ++r) {
            data.push_back(r == 1 ? awkwardSamples(n, r, true) : randomSamples(n, r));
            starts.push_back(data.back().data());
            s.push_back({data.back()[0], data.back()[0], 0.0, 0.0});
            means.push_back(0.1 * r);
        }
        loops.continueStatisticsOfRows(starts.data(), n, s.data());
        loops.continueDeviationsOfRows(starts.data(), n, means.data(), deviations.data());
        for (std::size_t r = 0; r < loops.rows; ++r) {
            EXPECT_TRUE(sameStatistics(s[r], plainStatistics(data[r], 0.0)));
            EXPECT_TRUE(sameBits(deviations[r], plainDeviations(data[r], means[r], 0)));
        }
    }
}

TEST(NumericProcessorPath, HasOneOfThreeNames)
{
    const std::string_view name = processorPath();
    EXPECT_TRUE(name == "avx512f" || name == "avx2" || name == "baseline") << name;
    EXPECT_EQ(name == "baseline", currentProcessorPath() == ProcessorPath::Baseline);
}

} // namespace megset::numeric::statistics_test
