#include "megset/numeric/transform.h"

#include "tests/numeric/reference.h"

namespace megset::numeric::transform_test {

namespace {

/// Three operands of every length: ordinary numbers, then awkward ones.
template <class Check>
void forOperands(Check check)
{
    for (const std::size_t n : lengths) {
        check(randomSamples(n, 1), randomSamples(n, 2), randomSamples(n, 3));
        check(awkwardSamples(n, 4, true), awkwardSamples(n, 5, true), awkwardSamples(n, 6, true));
    }
}

/// The result element by element, from the index.
template <class Operation>
std::vector<double> byIndex(std::size_t n, Operation operation)
{
    std::vector<double> result;
    for (std::size_t k = 0; k < n; ++k)
        result.push_back(operation(k));
    return result;
}

} // namespace

TEST(NumericTransform, MagnitudeHalvesTheSumOfSquaresOnlyWithTwoParts)
{
    std::vector<double> m(1);
    magnitude(std::vector{3.0}, m);
    EXPECT_EQ(m[0], 3.0);
    magnitude(std::vector{-3.0}, m);
    EXPECT_EQ(m[0], 3.0);
    magnitude(std::vector{3.0}, std::vector{4.0}, m);
    EXPECT_EQ(m[0], std::sqrt(12.5));
}

TEST(NumericTransform, MagnitudeAndPhaseAreTheFormulas)
{
    forOperands([](const auto& r, const auto& i, const auto& other) {
        std::vector<double> to = other;
        magnitude(r, to);
        EXPECT_TRUE(sameSamples(to, byIndex(r.size(), [&](auto k) { return std::sqrt(r[k] * r[k]); })));
        magnitude(r, i, to);
        EXPECT_TRUE(
            sameSamples(to, byIndex(r.size(), [&](auto k) { return std::sqrt((r[k] * r[k] + i[k] * i[k]) * 0.5); })));
        phase(r, to);
        EXPECT_TRUE(sameSamples(to, byIndex(r.size(), [&](auto k) { return std::atan(r[k]); })));
        phase(r, i, to);
        EXPECT_TRUE(sameSamples(to, byIndex(r.size(), [&](auto k) { return std::atan2(i[k], r[k]); })));
    });
}

TEST(NumericTransform, SignsAreThoseOfTheSource)
{
    forOperands([](const auto& m, const auto& r, const auto& i) {
        const auto with = [](double v, double source) { return source < 0.0 ? -std::fabs(v) : std::fabs(v); };
        std::vector<double> to = m;
        giveSign(to, r);
        EXPECT_TRUE(sameSamples(to, byIndex(m.size(), [&](auto k) { return with(m[k], r[k]); })));
        to = m;
        giveSignOfLarger(to, r, i);
        EXPECT_TRUE(sameSamples(to, byIndex(m.size(), [&](auto k) {
                                    return with(m[k], std::fabs(i[k]) > std::fabs(r[k]) ? i[k] : r[k]);
                                })));
    });
}

TEST(NumericTransform, ATieTakesTheSignOfR)
{
    std::vector<double> m{1.0, 1.0};
    giveSignOfLarger(m, std::vector{-2.0, 2.0}, std::vector{2.0, -2.0});
    EXPECT_EQ(m, (std::vector{-1.0, 1.0}));
}

TEST(NumericTransform, ReplacingLeavesNanToItsOwnForm)
{
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    std::vector<double> x{-2.0, -1.0, 0.0, 1.0, 2.0, nan, infinity, -infinity};
    replaceOutside(x, -1.0, 1.0, 9.0);
    EXPECT_TRUE(sameSamples(x, std::vector{9.0, -1.0, 0.0, 1.0, 9.0, nan, 9.0, 9.0}));
    x = {-2.0, nan, infinity, -infinity};
    replaceNonFinite(x, 0.0);
    EXPECT_TRUE(sameSamples(x, std::vector{-2.0, 0.0, 0.0, 0.0}));
}

TEST(NumericTransform, InPlaceFormsAreTheFormulas)
{
    forOperands([](const auto& a, const auto& b, const auto&) {
        const std::size_t n = a.size();
        std::vector<double> x = a;
        replaceOutside(x, -0.5, 100.0, 7.0);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return a[k] < -0.5 || a[k] > 100.0 ? 7.0 : a[k]; })));
        x = a;
        replaceNonFinite(x, 0.0);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return std::isfinite(a[k]) ? a[k] : 0.0; })));
        x = a;
        shiftAndScale(x, 0.1, 1.0 / 3.0);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return (a[k] - 0.1) * (1.0 / 3.0); })));
        x = a;
        logarithm(x);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return std::log(a[k]); })));
        x = a;
        divideAndScale(x, b, 1.0 / 3.0);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return a[k] / b[k] * (1.0 / 3.0); })));
    });
}

TEST(NumericTransform, SumsAreTheFormulas)
{
    forOperands([](const auto& a, const auto& b, const auto& c) {
        const std::size_t n = a.size();
        std::vector<double> x = a;
        addQuotients(x, b, 3.0);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return a[k] + b[k] / 3.0; })));
        x = a;
        average(b, c, x);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return (b[k] + c[k]) * 0.5; })));
        x = a;
        addAverage(b, c, x);
        EXPECT_TRUE(sameSamples(x, byIndex(n, [&](auto k) { return a[k] + (b[k] + c[k]) * 0.5; })));
    });
}

TEST(NumericTransform, TheShortestSpanCounts)
{
    const std::vector<double> two{1.0, 2.0};
    const std::vector<double> three{1.0, 2.0, 3.0};
    std::vector<double> to(3, 9.0);
    magnitude(two, to);
    EXPECT_EQ(to, (std::vector{1.0, 2.0, 9.0}));
    to = {9.0, 9.0, 9.0};
    average(three, two, to);
    EXPECT_EQ(to, (std::vector{1.0, 2.0, 9.0}));
    divideAndScale(to, two, 1.0);
    EXPECT_EQ(to, (std::vector{1.0, 1.0, 9.0}));
}

} // namespace megset::numeric::transform_test
