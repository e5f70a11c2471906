#include "megset/numeric/logarithm.h"

#include "megset/numeric/transform.h"
#include "tests/numeric/reference.h"

namespace megset::numeric::logarithm_test {
namespace {

void expectLogarithms(const std::vector<double>& x)
{
    for (const auto path : {ProcessorPath::Baseline, ProcessorPath::Avx2, ProcessorPath::Avx512}) {
        if (path > currentProcessorPath())
            continue;
        std::vector<double> ours = x;
        logarithm(ours, path);
        for (std::size_t i = 0; i < x.size(); ++i)
            ASSERT_TRUE(sameBits(ours[i], std::log(x[i]))) << std::hexfloat << x[i] << ": " << ours[i];
    }
}

std::vector<double> manyValues(std::size_t n, auto valueOf)
{
    std::mt19937_64 random(7);
    std::vector<double> x(n);
    for (double& v : x)
        v = valueOf(random);
    return x;
}

TEST(NumericLogarithm, IsThatOfTheLibraryForAnyBits)
{
    expectLogarithms(manyValues(500'000, [](auto& random) { return std::bit_cast<double>(random()); }));
}

TEST(NumericLogarithm, IsThatOfTheLibraryForPowers)
{
    std::uniform_real_distribution<double> power(0.0, 100.0);
    expectLogarithms(manyValues(500'000, [&](auto& random) { return power(random); }));
}

TEST(NumericLogarithm, IsThatOfTheLibraryAroundOne)
{
    std::uniform_real_distribution<double> distance(-1.0, 1.0);
    expectLogarithms(manyValues(
        500'000, [&](auto& random) { return 1.0 + std::ldexp(distance(random), -static_cast<int>(random() % 54)); }));
}

TEST(NumericLogarithm, IsThatOfTheLibraryAtTheBoundsOfItsTable)
{
    std::vector<double> x;
    for (int k = 300; k < 800; ++k) {
        for (const double scale : {0x1p-1060, 0x1p-3, 1.0, 0x1p900}) {
            const double v = scale * 512.0 / (k + 0.5);
            x.insert(x.end(), {v, std::nextafter(v, 0.0), std::nextafter(v, 2.0 * v), scale * k, scale * 512.0 / k});
        }
    }
    expectLogarithms(x);
}

TEST(NumericLogarithm, IsThatOfTheLibraryForWhatHasNone)
{
    for (const std::size_t n : lengths)
        expectLogarithms(awkwardSamples(n, static_cast<unsigned>(n), true));
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::vector<double> x = {0.0, -0.0, -1.0, infinity, -infinity, std::nan(""), 1.0, 5e-324};
    logarithm(x);
    EXPECT_EQ(x[0], -infinity);
    EXPECT_EQ(x[1], -infinity);
    EXPECT_TRUE(std::isnan(x[2]));
    EXPECT_EQ(x[3], infinity);
    EXPECT_TRUE(std::isnan(x[4]) && std::isnan(x[5]));
    EXPECT_TRUE(sameBits(x[6], 0.0));
    EXPECT_EQ(x[7], std::log(5e-324));
}

} // namespace
} // namespace megset::numeric::logarithm_test
