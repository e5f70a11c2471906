#include "megset/numeric/convert.h"

#include "tests/numeric/reference.h"

namespace megset::numeric::convert_test {

namespace {

std::vector<std::int32_t> randomIntegers(std::size_t n)
{
    std::mt19937 random(7);
    std::vector<std::int32_t> x(n);
    for (std::int32_t& v : x)
        v = static_cast<std::int32_t>(random());
    if (n > 2) {
        x[0] = std::numeric_limits<std::int32_t>::min();
        x[2] = std::numeric_limits<std::int32_t>::max();
    }
    return x;
}

std::vector<float> randomFloats(std::size_t n)
{
    std::vector<float> x;
    for (const double v : randomSamples(n, 8))
        x.push_back(static_cast<float>(v));
    if (n > 3) {
        x[1] = std::numeric_limits<float>::infinity();
        x[2] = -0.0F;
        x[3] = std::numeric_limits<float>::denorm_min();
    }
    return x;
}

/// Runs both forms, whose targets have one guard sample behind the end.
template <class One, class Two>
void expectConverted(const std::vector<double>& expected, One one, Two two)
{
    const std::size_t n = expected.size();
    std::vector<double> guarded = expected;
    guarded.push_back(42.0);
    std::vector<double> a(n + 1, 42.0), b(n + 1, 42.0), c(n + 1, 42.0);
    one(std::span(a).first(n));
    two(std::span(b).first(n), std::span(c).first(n));
    EXPECT_TRUE(sameSamples(a, guarded)) << n;
    EXPECT_TRUE(sameSamples(b, guarded)) << n;
    EXPECT_TRUE(sameSamples(c, guarded)) << n;
}

} // namespace

TEST(NumericConvert, CopyGivesTheSameBits)
{
    for (const std::size_t n : lengths) {
        const std::vector<double> x = awkwardSamples(n, 1, true);
        expectConverted(
            x, [&](auto to) { copy(x, to); }, [&](auto to, auto alsoTo) { copy(x, to, alsoTo); });
    }
}

TEST(NumericConvert, IntegersBecomeTheSameNumbers)
{
    for (const std::size_t n : lengths) {
        const std::vector<std::int32_t> x = randomIntegers(n);
        expectConverted(
            std::vector<double>(x.begin(), x.end()), [&](auto to) { convert(x, to); },
            [&](auto to, auto alsoTo) { convert(x, to, alsoTo); });
    }
}

TEST(NumericConvert, FloatsBecomeTheSameNumbers)
{
    for (const std::size_t n : lengths) {
        const std::vector<float> x = randomFloats(n);
        expectConverted(
            std::vector<double>(x.begin(), x.end()), [&](auto to) { convert(x, to); },
            [&](auto to, auto alsoTo) { convert(x, to, alsoTo); });
    }
}

TEST(NumericConvert, FloatsAreWidenedBeforeTheyAreScaled)
{
    constexpr double scale = 1.0 / 3.0;
    for (const std::size_t n : lengths) {
        const std::vector<float> x = randomFloats(n);
        std::vector<double> expected;
        for (const float v : x)
            expected.push_back(static_cast<double>(v) * scale);
        expectConverted(
            expected, [&](auto to) { convertScaled(x, scale, to); },
            [&](auto to, auto alsoTo) { convertScaled(x, scale, to, alsoTo); });
    }
}

TEST(NumericConvert, TheShortestSpanCounts)
{
    const std::vector<std::int32_t> x = {1, 2, 3};
    std::vector<double> to(5, 42.0), alsoTo(2, 42.0);
    convert(x, to, alsoTo);
    EXPECT_EQ(to, (std::vector<double>{1, 2, 42, 42, 42}));
    EXPECT_EQ(alsoTo, (std::vector<double>{1, 2}));
}

} // namespace megset::numeric::convert_test
