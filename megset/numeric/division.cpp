// A divider is slower than memory, so vectors of 512 bits divide by multiplying. With r the rounded reciprocal of d,
// and a quotient q that is one of the two neighbours of x / d, the fused q + r (x - d q) is x / d rounded to nearest:
// Markstein's theorem (Muller et al., Handbook of Floating-Point Arithmetic, "Division using Newton's iteration"). The
// neighbour comes from the reciprocal to twice the precision, x r + x (1 - d r) r, rounded once. The theorem wants no
// overflow and no underflow on the way: operands have to be between 2^-256 and 2^256. Vectors that hold another value,
// such as 0, are divided by the processor.
#include "megset/numeric/division.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "megset/numeric/avx512.h"
#include "megset/numeric/fetchAhead.h"
#include "megset/numeric/transform.h"

#if MEGSET_HAS_MULTIVERSION

#include <array>
#include <bit>
#include <cstdint>
#include <numeric>

namespace megset::numeric {

namespace {

constexpr std::size_t mostDivisors = 256; // values of a row, or of several rows, that are divided in one go
constexpr double leastOperand = 0x1p-256;
constexpr double mostOperand = 0x1p256;

bool isInRange(double value)
{
    return std::fabs(value) > leastOperand && std::fabs(value) < mostOperand;
}

/// Divisors in range with their reciprocals to twice the precision.
struct Divisors
{
    alignas(64) std::array<double, mostDivisors> value;
    alignas(64) std::array<double, mostDivisors> reciprocal;
    alignas(64) std::array<double, mostDivisors> rest; ///< what the reciprocals lack
};

struct Eight
{
    __m512d value;
    __m512d reciprocal;
    __m512d rest;
};

MEGSET_AVX512 inline Eight withReciprocals(__m512d d) noexcept
{
    const __m512d one = _mm512_set1_pd(1.0);
    const __m512d reciprocal = _mm512_div_pd(one, d);
    return {d, reciprocal, _mm512_mul_pd(_mm512_fnmadd_pd(d, reciprocal, one), reciprocal)};
}

/// From the values; n is a multiple of the lanes.
MEGSET_AVX512 void completeDivisors(Divisors& d, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; i += lanes) {
        const Eight eight = withReciprocals(_mm512_load_pd(d.value.data() + i));
        _mm512_store_pd(d.reciprocal.data() + i, eight.reciprocal);
        _mm512_store_pd(d.rest.data() + i, eight.rest);
    }
}

MEGSET_AVX512 inline bool areInRange(__m512d x) noexcept
{
    // Twice the bits, which is without the sign, counted from those of the least operand.
    const __m512i least = _mm512_set1_epi64(std::bit_cast<std::int64_t>(leastOperand) * 2);
    const __m512i most =
        _mm512_set1_epi64((std::bit_cast<std::int64_t>(mostOperand) - std::bit_cast<std::int64_t>(leastOperand)) * 2);
    const __m512i distance = _mm512_sub_epi64(_mm512_maskz_slli_epi64(0xff, _mm512_castpd_si512(x), 1), least);
    return _mm512_cmplt_epu64_mask(distance, most) == 0xff;
}

MEGSET_AVX512 inline __m512d quotients(__m512d x, const Eight& d) noexcept
{
    if (!areInRange(x)) [[unlikely]]
        return _mm512_div_pd(x, d.value);
    const __m512d near = _mm512_fmadd_pd(x, d.reciprocal, _mm512_mul_pd(x, d.rest));
    return _mm512_fmadd_pd(_mm512_fnmadd_pd(d.value, near, x), d.reciprocal, near);
}

inline __mmask8 lanesOf(std::size_t n) noexcept
{
    return static_cast<__mmask8>((1U << n) - 1U);
}

MEGSET_AVX512 inline Eight eightOf(const Divisors& d, std::size_t i) noexcept
{
    return {_mm512_load_pd(d.value.data() + i), _mm512_load_pd(d.reciprocal.data() + i),
            _mm512_load_pd(d.rest.data() + i)};
}

MEGSET_AVX512 void divideAndScaleBlock(double* x, std::size_t n, const Divisors& d, double scale) noexcept
{
    const __m512d scales = _mm512_set1_pd(scale);
    std::size_t i = 0;
    for (; i + lanes <= n; i += lanes) {
        fetchAhead(x + i);
        _mm512_storeu_pd(x + i, _mm512_mul_pd(quotients(_mm512_loadu_pd(x + i), eightOf(d, i)), scales));
    }
    if (i < n) {
        const __mmask8 rest = lanesOf(n - i);
        const __m512d values = _mm512_mask_loadu_pd(_mm512_set1_pd(1.0), rest, x + i);
        _mm512_mask_storeu_pd(x + i, rest, _mm512_mul_pd(quotients(values, eightOf(d, i)), scales));
    }
}

/// sum[f] += x[t * stride + f] / divisor for n columns of some rows.
MEGSET_AVX512 void addQuotientsOfRows(double* sum, const double* x, std::size_t n, std::size_t stride, std::size_t rows,
                                      double divisor) noexcept
{
    const __m512d one = _mm512_set1_pd(1.0);
    const Eight d = withReciprocals(_mm512_set1_pd(divisor));
    const std::size_t whole = n / lanes * lanes;
    const __mmask8 rest = lanesOf(n - whole);
    for (std::size_t t = 0; t < rows; ++t, x += stride) {
        for (std::size_t i = 0; i < whole; i += lanes) {
            fetchAhead(x + i);
            _mm512_storeu_pd(sum + i, _mm512_add_pd(_mm512_loadu_pd(sum + i), quotients(_mm512_loadu_pd(x + i), d)));
        }
        if (rest != 0) {
            const __m512d q = quotients(_mm512_mask_loadu_pd(one, rest, x + whole), d);
            const __m512d sums = _mm512_maskz_loadu_pd(rest, sum + whole);
            _mm512_mask_storeu_pd(sum + whole, rest, _mm512_add_pd(sums, q));
        }
    }
}

/// How many rows, one after the other, fill whole vectors and fit the divisors; 0 when they don't.
std::size_t rowsTogether(std::size_t columns)
{
    const std::size_t whole = lanes / std::gcd(columns, lanes);
    return mostDivisors / (columns * whole) * whole;
}

/// The divisors again and again, `n` in all, a multiple of theirs, then 1 to the next whole vector.
void setDivisors(Divisors& d, std::span<const double> divisor, std::size_t n)
{
    for (std::size_t i = 0; i < n; i += divisor.size())
        std::copy(divisor.begin(), divisor.end(), d.value.data() + i);
    for (; n % lanes != 0; ++n)
        d.value[n] = 1.0;
    completeDivisors(d, n);
}

void divideNarrowRows(Plane plane, std::span<const double> divisor, double scale, std::size_t together)
{
    Divisors d;
    const std::size_t run = divisor.size() * together;
    setDivisors(d, divisor, run);
    for (std::size_t i = 0; i < plane.values().size(); i += run)
        divideAndScaleBlock(plane.values().data() + i, std::min(run, plane.values().size() - i), d, scale);
}

void divideWideRows(Plane plane, std::span<const double> divisor, double scale)
{
    Divisors d;
    for (std::size_t first = 0; first < divisor.size(); first += mostDivisors) {
        const std::size_t n = std::min(mostDivisors, divisor.size() - first);
        setDivisors(d, divisor.subspan(first, n), n);
        for (std::int64_t t = 0; t < plane.rows(); ++t) {
            const std::span<double> row = plane.row(t);
            if (first < row.size())
                divideAndScaleBlock(row.data() + first, std::min(n, row.size() - first), d, scale);
        }
    }
}

/// False when the processor has to divide.
bool divideByMultiplying(Plane plane, std::span<const double> divisor, double scale)
{
    if (divisor.empty() || !std::all_of(divisor.begin(), divisor.end(), isInRange))
        return false;
    const bool isWholeRow = divisor.size() == static_cast<std::size_t>(plane.columns());
    const std::size_t together = isWholeRow ? rowsTogether(divisor.size()) : 0;
    if (together != 0)
        divideNarrowRows(plane, divisor, scale, together);
    else
        divideWideRows(plane, divisor, scale);
    return true;
}

/// For whole rows. False when the processor has to divide.
bool addByMultiplying(std::span<double> sum, ConstPlane plane, double divisor)
{
    const auto columns = static_cast<std::size_t>(plane.columns());
    if (!isInRange(divisor) || plane.values().size() % columns != 0)
        return false;
    addQuotientsOfRows(sum.data(), plane.values().data(), std::min(sum.size(), columns), columns,
                       plane.values().size() / columns, divisor);
    return true;
}

} // namespace

} // namespace megset::numeric

#endif

namespace megset::numeric {

void divideRowsAndScale(Plane plane, std::span<const double> divisor, double scale, ProcessorPath path) noexcept
{
    if (plane.isEmpty())
        return;
    divisor = divisor.first(std::min(divisor.size(), static_cast<std::size_t>(plane.columns())));
#if MEGSET_HAS_MULTIVERSION
    if (path == ProcessorPath::Avx512 && divideByMultiplying(plane, divisor, scale))
        return;
#else
    static_cast<void>(path);
#endif
    for (std::int64_t t = 0; t < plane.rows(); ++t)
        divideAndScale(plane.row(t), divisor, scale);
}

void addRowQuotients(std::span<double> sum, ConstPlane plane, double divisor, ProcessorPath path) noexcept
{
    if (plane.isEmpty())
        return;
#if MEGSET_HAS_MULTIVERSION
    if (path == ProcessorPath::Avx512 && addByMultiplying(sum, plane, divisor))
        return;
#else
    static_cast<void>(path);
#endif
    for (std::int64_t t = 0; t < plane.rows(); ++t)
        addQuotients(sum, plane.row(t), divisor);
}

} // namespace megset::numeric
