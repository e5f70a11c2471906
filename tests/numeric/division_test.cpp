#include "megset/numeric/division.h"

#include "tests/numeric/reference.h"

namespace megset::numeric::division_test {
namespace {

const std::vector<std::int64_t> widths = {1, 3, 7, 8, 12, 33, 60, 128, 255, 256, 257, 600};

template <class Work>
void onEachPath(Work work)
{
    for (const auto path : {ProcessorPath::Baseline, ProcessorPath::Avx2, ProcessorPath::Avx512}) {
        if (path <= currentProcessorPath())
            work(path);
    }
}

void expectQuotients(const std::vector<double>& x, const std::vector<double>& divisor, std::int64_t columns,
                     double scale)
{
    const auto width = static_cast<std::size_t>(columns);
    onEachPath([&](ProcessorPath path) {
        std::vector<double> ours = x;
        divideRowsAndScale({ours, columns}, divisor, scale, path);
        for (std::size_t i = 0; i < x.size(); ++i) {
            const std::size_t f = i % width;
            const double quotient = f < divisor.size() ? x[i] / divisor[f] * scale : x[i];
            ASSERT_TRUE(sameBits(ours[i], quotient)) << columns << " columns, value " << i << ": " << std::hexfloat
                                                     << x[i] << " of " << (f < divisor.size() ? divisor[f] : 0.0);
        }
    });
}

void expectSums(const std::vector<double>& x, double divisor, std::int64_t columns, std::size_t sums)
{
    onEachPath([&](ProcessorPath path) {
        std::vector<double> ours(sums, 0.25);
        std::vector<double> plain = ours;
        addRowQuotients(ours, {x, columns}, divisor, path);
        for (std::size_t i = 0; i < x.size(); ++i) {
            if (const std::size_t f = i % static_cast<std::size_t>(columns); f < sums)
                plain[f] += x[i] / divisor;
        }
        ASSERT_TRUE(sameSamples(ours, plain)) << columns << " columns by " << divisor;
    });
}

std::vector<double> manyValues(std::size_t n, unsigned seed, auto valueOf)
{
    std::mt19937_64 random(seed);
    std::vector<double> x(n);
    for (double& v : x)
        v = valueOf(random);
    return x;
}

/// Of any size that the fast way takes, and some beyond.
double ofManySizes(std::mt19937_64& random)
{
    const double fraction = std::bit_cast<double>((random() >> 12) | std::bit_cast<std::uint64_t>(1.0));
    const double value = std::ldexp(fraction, static_cast<int>(random() % 515) - 257);
    return random() % 2 == 0 ? value : -value;
}

double ofAnyBits(std::mt19937_64& random)
{
    return std::bit_cast<double>(random());
}

TEST(NumericDivision, IsThatOfTheProcessorForAnyWidth)
{
    for (const std::int64_t columns : widths) {
        const auto width = static_cast<std::size_t>(columns);
        for (const std::size_t values : {width, 5 * width, 100 * width, 100 * width - width / 2})
            expectQuotients(manyValues(values, 1, ofManySizes), manyValues(width, 2, ofManySizes), columns, 1.0 / 3.0);
    }
}

TEST(NumericDivision, IsThatOfTheProcessorForManyPairs)
{
    for (unsigned seed = 0; seed < 100; ++seed)
        expectQuotients(manyValues(60 * 500, seed, ofManySizes), manyValues(60, seed + 100, ofManySizes), 60, 1.0);
}

TEST(NumericDivision, IsThatOfTheProcessorForAnyBits)
{
    for (unsigned seed = 0; seed < 20; ++seed) {
        const std::vector<double> x = manyValues(60 * 500, seed, ofAnyBits);
        expectQuotients(x, manyValues(60, seed + 100, ofManySizes), 60, 100.0);
        expectQuotients(x, manyValues(60, seed + 100, ofAnyBits), 60, 100.0);
    }
}

__extension__ typedef unsigned __int128 Wide;

/// 1 / d modulo 2^64, d odd: each step doubles the digits that are right.
std::uint64_t inverse(std::uint64_t d)
{
    std::uint64_t x = d;
    for (int step = 0; step < 6; ++step)
        x *= 2 - d * x;
    return x;
}

/// An x of at most 53 bits with x / d as near to the middle of two results as `distance` / (d 2^54): for an odd middle
/// m of 54 bits, d m = x 2^54 + distance. 0 when d has none.
double besideTheMiddle(std::uint64_t d, std::int64_t distance)
{
    const std::uint64_t middle = (static_cast<std::uint64_t>(distance) * inverse(d)) & ((1ULL << 54) - 1);
    if (middle < 1ULL << 53)
        return 0.0;
    return static_cast<double>(static_cast<std::uint64_t>((Wide{d} * middle - static_cast<Wide>(distance)) >> 54));
}

// Where a correction that is left out, or a reciprocal of less precision, shows.
TEST(NumericDivision, IsThatOfTheProcessorBesideTheMiddleOfTwoResults)
{
    std::mt19937_64 random(4);
    int found = 0;
    for (int round = 0; round < 1000; ++round) {
        std::vector<double> divisor;
        std::vector<double> x;
        for (int f = 0; f < 60; ++f) {
            const std::uint64_t d = (random() >> 11) | (1ULL << 52) | 1U;
            divisor.push_back(static_cast<double>(d));
        }
        for (int i = 0; i < 60 * 10; ++i) {
            const auto d = static_cast<std::uint64_t>(divisor[static_cast<std::size_t>(i % 60)]);
            x.push_back(besideTheMiddle(d, 2 * (i / 60) - 9));
            found += x.back() != 0.0;
        }
        std::replace(x.begin(), x.end(), 0.0, 1.0);
        expectQuotients(x, divisor, 60, 1.0);
    }
    EXPECT_GT(found, 200'000);
}

// The largest and the smallest fractions of a divisor, whose reciprocals are rounded the most.
TEST(NumericDivision, IsThatOfTheProcessorForDivisorsBesideAPowerOfTwo)
{
    std::vector<double> divisor;
    for (int step = 1; step <= 30; ++step)
        divisor.insert(divisor.end(), {1.0 + step * 0x1p-52, 2.0 - step * 0x1p-52});
    expectQuotients(manyValues(60 * 2000, 5, ofManySizes), divisor, 60, 1.0);
    std::vector<double> ofLikeFractions;
    for (int step = 0; step < 6000; ++step)
        ofLikeFractions.push_back(step % 2 == 0 ? 1.0 + step * 0x1p-52 : 2.0 - step * 0x1p-52);
    expectQuotients(ofLikeFractions, divisor, 60, 1.0);
}

TEST(NumericDivision, OfZeroInfinityAndNanIsThatOfTheProcessor)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::vector<double> x = manyValues(60 * 40, 6, ofManySizes);
    const std::vector<double> odd = {0.0, -0.0, infinity, -infinity, std::nan(""), 5e-324, -1e308, 0x1p-256, 0x1p256};
    for (std::size_t i = 0; i < x.size(); i += 7)
        x[i] = odd[i / 7 % odd.size()];
    const std::vector<double> divisor = manyValues(60, 7, ofManySizes);
    expectQuotients(x, divisor, 60, -2.0);
    for (const double d : odd) {
        std::vector<double> withOdd = divisor;
        withOdd[59] = d;
        expectQuotients(x, withOdd, 60, -2.0);
    }
    expectQuotients(x, divisor, 60, infinity);
}

TEST(NumericDivision, LeavesColumnsBeyondTheDivisors)
{
    for (const std::int64_t columns : widths) {
        const std::vector<double> x = manyValues(static_cast<std::size_t>(columns) * 9 + 1, 8, ofManySizes);
        for (const std::size_t divisors : {std::size_t{0}, std::size_t{1}, static_cast<std::size_t>(columns) - 1})
            expectQuotients(x, manyValues(divisors, 9, ofManySizes), columns, 3.0);
        expectQuotients(x, manyValues(static_cast<std::size_t>(columns) + 9, 9, ofManySizes), columns, 3.0);
    }
}

TEST(NumericDivision, SumsQuotientsOfRowsInTheirOrder)
{
    for (const std::int64_t columns : widths) {
        const auto width = static_cast<std::size_t>(columns);
        for (const double divisor : {1.0, 3.0, 100.0, -7.5, 0.0, 1e300, 2.0 - 0x1p-52}) {
            expectSums(manyValues(width * 50, 10, ofManySizes), divisor, columns, width);
            expectSums(manyValues(width * 50, 11, ofAnyBits), divisor, columns, width);
            expectSums(manyValues(width * 50 + width / 2, 12, ofManySizes), divisor, columns, width);
            expectSums(manyValues(width * 3, 13, ofManySizes), divisor, columns, width + 2);
            expectSums(manyValues(width * 3, 14, ofManySizes), divisor, columns, width / 2);
        }
    }
}

TEST(NumericDivision, OfAnEmptyPlaneDoesNothing)
{
    std::vector<double> sum{1.0};
    onEachPath([&](ProcessorPath path) {
        divideRowsAndScale({}, sum, 2.0, path);
        addRowQuotients(sum, {}, 2.0, path);
        EXPECT_EQ(sum, std::vector{1.0});
    });
}

} // namespace
} // namespace megset::numeric::division_test
