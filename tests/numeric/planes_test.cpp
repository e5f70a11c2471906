#include "megset/numeric/planes.h"

#include "tests/numeric/reference.h"

namespace megset::numeric::planes_test {

namespace {

using Values = std::vector<double>;

// 4 times, 3 frequencies; the value tells the place: tens for time, ones for frequency.
Values placeValues()
{
    Values x;
    for (int t = 0; t < 4; ++t)
        for (int f = 0; f < 3; ++f)
            x.push_back(10.0 * t + f);
    return x;
}

Values column(const Values& x, std::int64_t columns, std::int64_t f)
{
    Values result;
    for (auto i = static_cast<std::size_t>(f); i < x.size(); i += static_cast<std::size_t>(columns))
        result.push_back(x[i]);
    return result;
}

} // namespace

TEST(NumericPlanes, RowsAreCutAtTheEndOfTheValues)
{
    const Values x = placeValues();
    const ConstPlane plane({x.data(), 8}, 3);
    EXPECT_EQ(plane.rows(), 3);
    EXPECT_EQ(plane.row(1).size(), 3U);
    EXPECT_EQ(plane.row(2).size(), 2U);
    EXPECT_EQ(ConstPlane(x, 100).rows(), 1);
    EXPECT_EQ(ConstPlane(x, INT64_MAX).row(0).size(), 12U);
    for (const std::int64_t columns : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN}) {
        EXPECT_TRUE(ConstPlane(x, columns).isEmpty());
        EXPECT_EQ(ConstPlane(x, columns).rows(), 0);
    }
    EXPECT_TRUE(ConstPlane(std::span<const double>(), 3).isEmpty());
}

TEST(NumericPlanes, ColumnsAreReadInTimeOrder)
{
    const Values x = placeValues();
    Values out(2);
    copyColumn({x, 3}, 1, 2, out);
    EXPECT_EQ(out, (Values{21.0, 31.0}));
    out = {9.0, 9.0};
    copyColumn({x, 3}, 1, 3, out);
    EXPECT_EQ(out, (Values{31.0, 9.0}));
    out = {9.0, 9.0};
    copyColumn({x, 3}, 3, 0, out);
    copyColumn({x, 3}, -1, 0, out);
    copyColumn({x, 3}, 0, INT64_MAX, out);
    EXPECT_EQ(out, (Values{9.0, 9.0}));
}

TEST(NumericPlanes, ColumnStatisticsOfAColumnThatIsNotThereAreZero)
{
    const Values x = placeValues();
    for (const std::int64_t f : {std::int64_t{-1}, std::int64_t{3}, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(columnMaxAbsolute({x, 3}, f), 0.0);
        EXPECT_EQ(columnMean({x, 3}, f), 0.0);
        EXPECT_EQ(columnMeanSquare({x, 3}, f), 0.0);
    }
    EXPECT_EQ(columnMeanSquare({}, 0), 0.0);
}

TEST(NumericPlanes, ColumnStatisticsAreTheFormulas)
{
    for (const bool awkward : {false, true}) {
        for (const std::int64_t columns : {1, 3, 127, 128, 129, 300}) {
            const std::int64_t rows = 11;
            const auto n = static_cast<std::size_t>(rows * columns);
            const Values x = awkward ? awkwardSamples(n, 1, true) : randomSamples(n, 2);
            Values deviations;
            Values normalized = x;
            for (std::int64_t f = 0; f < columns; ++f) {
                const Values values = column(x, columns, f);
                double largest = 0.0;
                double mean = 0.0;
                double sum = 0.0;
                double squares = 0.0;
                for (const double v : values) {
                    largest = std::fabs(v) > largest ? std::fabs(v) : largest;
                    mean += v / 11.0;
                    sum += v;
                    squares += v * v;
                }
                double deviation = 0.0;
                for (const double v : values)
                    deviation += (v - sum / 11.0) * (v - sum / 11.0);
                deviations.push_back(std::sqrt(deviation / 11.0));
                EXPECT_TRUE(sameBits(columnMaxAbsolute({x, columns}, f), largest));
                EXPECT_TRUE(sameBits(columnMean({x, columns}, f), mean));
                EXPECT_TRUE(sameBits(columnMeanSquare({x, columns}, f), squares / 11.0));
                for (std::int64_t t = 0; t < rows && mean != 0.0; ++t)
                    normalized[static_cast<std::size_t>(t * columns + f)] /= mean;
            }
            Values out(static_cast<std::size_t>(columns));
            columnDeviations({x, columns}, out);
            EXPECT_TRUE(sameSamples(out, deviations));
            Values inPlace = x;
            divideColumnsByTheirMeans({inPlace, columns});
            EXPECT_TRUE(sameSamples(inPlace, normalized));
        }
    }
}

TEST(NumericPlanes, AShortTargetOfDeviationsIsWrittenOverFromItsStart)
{
    const Values x{0, 0, 0, 0, 0, 2, 4, 6, 8, 10}; // of each column the deviation is half of its second value
    Values out(3, -1.0);
    columnDeviations({x, 5}, out);
    EXPECT_EQ(out, (Values{4.0, 5.0, 3.0}));
    columnDeviations({x, 5}, {});
}

TEST(NumericPlanes, ABaselineIsTheMeanOverTheRowsBeforeItsEnd)
{
    const Values x = placeValues();
    Values base(3, 9.0);
    baseline({x, 3}, 1, 3, base);
    EXPECT_EQ(base, (Values{15.0, 16.0, 17.0}));
}

TEST(NumericPlanes, RectanglesIncludeTheirEnds)
{
    Values x = placeValues();
    const auto s = rectangleStatistics({x, 3}, {1, 2, 0, 1});
    EXPECT_EQ(s.count, 4);
    EXPECT_EQ(s.min, 10.0);
    EXPECT_EQ(s.max, 21.0);
    EXPECT_EQ(s.sum, 62.0);
    EXPECT_EQ(s.sumOfSquares, 100.0 + 121.0 + 400.0 + 441.0);
    EXPECT_EQ(rectangleSum({x, 3}, {1, 2, 0, 1}).sum, 62.0);
    EXPECT_EQ(rectangleSum({x, 3}, {1, 2, 0, 1}).count, 4);
    fillRectangle({x, 3}, {1, 2, 0, 1}, -1.0);
    EXPECT_EQ(x, (Values{0, 1, 2, -1, -1, 12, -1, -1, 22, 30, 31, 32}));
}

TEST(NumericPlanes, RectanglesAreCutByThePlane)
{
    const Values x = placeValues();
    EXPECT_EQ(rectangleSum({x, 3}, {INT64_MIN, INT64_MAX, INT64_MIN, INT64_MAX}).count, 12);
    EXPECT_EQ(rectangleSum({x, 3}, {3, 9, 2, 9}).sum, 32.0);
    EXPECT_EQ(rectangleSum({x, 5}, {0, 9, 3, 4}).count, 4); // the third row has two values
    EXPECT_EQ(rectangleSum({x, 3}, {2, 1, 0, 2}).count, 0);
    EXPECT_EQ(rectangleSum({x, 3}, {0, 3, 2, 1}).count, 0);
    EXPECT_EQ(rectangleSum({x, 3}, {4, 9, 0, 2}).count, 0);
    EXPECT_EQ(rectangleStatistics({}, {0, 9, 0, 9}).count, 0);
}

TEST(NumericPlanes, StatisticsKeepANanInTheFirstPlaceAndPassOverLaterOnes)
{
    const double nan = std::nan("");
    const Values first{nan, 1.0};
    EXPECT_TRUE(std::isnan(rectangleStatistics({first, 2}, {0, 0, 0, 1}).min));
    const Values later{1.0, nan, 0.0};
    EXPECT_EQ(rectangleStatistics({later, 3}, {0, 0, 0, 2}).min, 0.0);
    EXPECT_TRUE(std::isnan(rectangleStatistics({later, 3}, {0, 0, 0, 2}).sum));
}

TEST(NumericPlanes, AProfileHasAValueForEachFrequency)
{
    const Values x{1, -5, 2, -3, 4, 1};
    Values out(4, 9.0);
    rectangleProfile({x, 3}, {0, 1, 0, 2}, ProfileOf::LargestAbsolute, out);
    EXPECT_EQ(out, (Values{3.0, 5.0, 2.0, 9.0}));
    rectangleProfile({x, 3}, {0, 1, 1, 2}, ProfileOf::Sum, out);
    EXPECT_EQ(out, (Values{-1.0, 3.0, 2.0, 9.0}));
    rectangleProfile({x, 3}, {0, 1, 0, 2}, ProfileOf::SumOfSquares, std::span(out).first(1));
    EXPECT_EQ(out, (Values{10.0, 3.0, 2.0, 9.0}));
    rectangleProfile({x, 3}, {0, 1, 2, 9}, ProfileOf::Sum, out);
    EXPECT_EQ(out, (Values{3.0, 0.0, 0.0, 0.0}));
    rectangleProfile({x, 3}, {0, 1, 7, INT64_MAX}, ProfileOf::Sum, std::span(out).first(2));
    EXPECT_EQ(out, (Values{0.0, 0.0, 0.0, 0.0}));
    out = {9.0};
    rectangleProfile({x, 3}, {0, 1, 2, 1}, ProfileOf::Sum, out);
    EXPECT_EQ(out, (Values{9.0}));
}

TEST(NumericPlanes, TheRangesMeanFollowsItsScan)
{
    const Values ones(4, 1.0);
    RangeScan scan;
    scan.carriesRowSum = true;
    scan.rowDivisor = 4.0;
    EXPECT_EQ(planeRange({ones, 2}, scan).mean, 1.5);
    scan.carriesRowSum = false;
    scan.rowDivisor = 2.0;
    scan.divisor = 2.0;
    EXPECT_EQ(planeRange({ones, 2}, scan).mean, 1.0);
    scan.firstColumn = 1;
    EXPECT_EQ(planeRange({ones, 2}, scan).mean, 0.5);
    const PlaneRange none = planeRange({}, scan);
    EXPECT_EQ(none.min, 0.0);
    EXPECT_EQ(none.max, 0.0);
    EXPECT_EQ(none.mean, 0.0);
}

TEST(NumericPlanes, TheRangeBeginsAtTheFirstValueThoughItsColumnIsPassedOver)
{
    const Values x{-9, 1, 8, 2};
    RangeScan scan;
    scan.firstColumn = 1;
    PlaneRange range = planeRange({x, 2}, scan);
    EXPECT_EQ(range.min, -9.0);
    EXPECT_EQ(range.max, 2.0);
    scan.absolute = true;
    range = planeRange({x, 2}, scan);
    EXPECT_EQ(range.min, 1.0);
    EXPECT_EQ(range.max, 9.0);
    scan.firstColumn = 5;
    EXPECT_EQ(planeRange({x, 2}, scan).max, 9.0);
}

TEST(NumericPlanes, EveryNthValueIsScaledUpToTheEnd)
{
    Values x{1, 1, 1, 1, 1};
    scaleEvery(x, 1, 3, 10, 2.0);
    EXPECT_EQ(x, (Values{1, 2, 1, 1, 2}));
    scaleEvery(x, 0, 1, 2, 3.0);
    EXPECT_EQ(x, (Values{3, 6, 1, 1, 2}));
    for (const std::int64_t odd : {std::int64_t{-1}, std::int64_t{5}, INT64_MAX, INT64_MIN}) {
        scaleEvery(x, odd, 1, 1, 9.0);
        scaleEvery(x, 0, odd, 0, 9.0);
    }
    scaleEvery(x, 0, 0, 3, 9.0);
    scaleEvery(x, 0, -1, 3, 9.0);
    scaleEvery(x, 0, 1, -3, 9.0);
    EXPECT_EQ(x, (Values{3, 6, 1, 1, 2}));
    scaleEvery(x, 4, INT64_MAX, 3, 2.0);
    EXPECT_EQ(x, (Values{3, 6, 1, 1, 4}));
}

} // namespace megset::numeric::planes_test
