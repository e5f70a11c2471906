#include "megset/numeric/arithmetic.h"

#include "tests/numeric/reference.h"

namespace megset::numeric::arithmetic_test {

namespace {

/// Operands of every length: ordinary numbers, then awkward ones.
template <class Check>
void forOperands(Check check)
{
    for (const std::size_t n : lengths) {
        check(randomSamples(n, 1), randomSamples(n, 2));
        check(awkwardSamples(n, 3, true), awkwardSamples(n, 4, true));
    }
}

template <class Operation>
std::vector<double> each(const std::vector<double>& a, const std::vector<double>& b, Operation operation)
{
    std::vector<double> result;
    for (std::size_t i = 0; i < a.size(); ++i)
        result.push_back(operation(a[i], b[i]));
    return result;
}

} // namespace

TEST(NumericArithmetic, FillSetsEverySample)
{
    for (const std::size_t n : lengths) {
        std::vector<double> x = randomSamples(n, 1);
        fill(x, -0.0);
        EXPECT_TRUE(sameSamples(x, std::vector<double>(n, -0.0)));
    }
}

TEST(NumericArithmetic, ScaleAndDivideWorkInPlace)
{
    forOperands([](const auto& a, const auto& b) {
        std::vector<double> x = a;
        scaleInPlace(x, 1.0 / 3.0);
        EXPECT_TRUE(sameSamples(x, each(a, b, [](double v, double) { return v * (1.0 / 3.0); })));
        x = a;
        divideInPlace(x, 3.0); // not the same as a multiplication with 1/3
        EXPECT_TRUE(sameSamples(x, each(a, b, [](double v, double) { return v / 3.0; })));
        x = a;
        divideInPlace(x, b);
        EXPECT_TRUE(sameSamples(x, each(a, b, [](double v, double w) { return v / w; })));
    });
}

TEST(NumericArithmetic, AddSubtractAndWeightedAddWorkInPlace)
{
    forOperands([](const auto& a, const auto& b) {
        std::vector<double> x = a;
        addInPlace(x, b);
        EXPECT_TRUE(sameSamples(x, each(a, b, [](double v, double w) { return v + w; })));
        x = a;
        subtractInPlace(x, b);
        EXPECT_TRUE(sameSamples(x, each(a, b, [](double v, double w) { return v - w; })));
        x = a;
        addWeightedInPlace(x, b, 0.1);
        EXPECT_TRUE(sameSamples(x, each(a, b, [](double v, double w) {
                                    const volatile double product = w * 0.1; // rounded on its own
                                    return v + product;
                                })));
    });
}

TEST(NumericArithmetic, ResultsOfTwoOperandsGoIntoOneOrTwoTargets)
{
    forOperands([](const auto& a, const auto& b) {
        std::vector<double> x(a.size()), y(a.size()), z(a.size());
        const auto expected = each(a, b, [](double v, double w) { return v + w; });
        add(a, b, x);
        add(a, b, y, z);
        EXPECT_TRUE(sameSamples(x, expected) && sameSamples(y, expected) && sameSamples(z, expected));
        const auto difference = each(a, b, [](double v, double w) { return v - w; });
        subtract(a, b, x);
        subtract(a, b, y, z);
        EXPECT_TRUE(sameSamples(x, difference) && sameSamples(y, difference) && sameSamples(z, difference));
        const auto product = each(a, b, [](double v, double w) { return v * w; });
        multiply(a, b, x);
        multiply(a, b, y, z);
        EXPECT_TRUE(sameSamples(x, product) && sameSamples(y, product) && sameSamples(z, product));
    });
}

TEST(NumericArithmetic, AResultMayReplaceAnOperand)
{
    for (const std::size_t n : lengths) {
        const std::vector<double> a = randomSamples(n, 1), b = randomSamples(n, 2);
        const auto difference = each(a, b, [](double v, double w) { return v - w; });
        std::vector<double> x = a, y = b;
        subtract(x, y, x, y);
        EXPECT_TRUE(sameSamples(x, difference) && sameSamples(y, difference));
        x = a;
        subtractInPlace(x, x);
        EXPECT_TRUE(sameSamples(x, std::vector<double>(n, 0.0)));
        x = a;
        multiply(x, x, x);
        EXPECT_TRUE(sameSamples(x, each(a, a, [](double v, double w) { return v * w; })));
    }
}

TEST(NumericArithmetic, TheShortestOperandCounts)
{
    const std::vector<double> a = {1, 2, 3}, b = {10, 20};
    std::vector<double> x(4, 42.0), y(1, 42.0);
    add(a, b, x);
    EXPECT_EQ(x, (std::vector<double>{11, 22, 42, 42}));
    add(a, b, x, y);
    EXPECT_EQ(y, std::vector<double>{11});
    std::vector<double> z = a;
    subtractInPlace(z, b);
    EXPECT_EQ(z, (std::vector<double>{-9, -18, 3}));
}

} // namespace megset::numeric::arithmetic_test
