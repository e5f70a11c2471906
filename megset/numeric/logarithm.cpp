// Vectors of 512 bits give the bits of std::log because a result counts only where it leaves no doubt. The loop
// computes each logarithm to some thousandths of a unit in the last place beyond the result's own rounding, and so
// knows how far the exact value is from the nearest result. The C library promises an error below 0.52 units. Where the
// exact value is less than 0.47 units from one result, it is more than 0.53 from any other, and that result is the only
// one that the library can give. The others, six in a hundred, are asked of std::log, and with them all that is not
// positive and finite.
#include "megset/numeric/logarithm.h"

#include <cmath>

#include "megset/numeric/avx512.h"
#include "megset/numeric/fetchAhead.h"
#include "megset/numeric/transform.h"

#if MEGSET_HAS_MULTIVERSION

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace megset::numeric {

namespace {

__extension__ typedef __float128 Quad;

/// The logarithm of a / b, both from 336 to 688, or 2 and 1.
constexpr Quad quadLogarithm(int a, int b)
{
    const Quad s = static_cast<Quad>(a - b) / static_cast<Quad>(a + b);
    Quad power = s;
    Quad sum = 0;
    for (int i = 1; i < 90; i += 2) {
        sum += power / static_cast<Quad>(i);
        power *= s * s;
    }
    return 2 * sum;
}

struct HighAndLow
{
    double high; ///< a multiple of 2^-42, so that sums of such values below 2^10 are exact
    double low;
};

constexpr HighAndLow split(Quad value)
{
    constexpr double unit = 0x1p-42;
    const auto units = static_cast<std::int64_t>(value / static_cast<Quad>(unit));
    const double high = static_cast<double>(units) * unit;
    return {high, static_cast<double>(value - static_cast<Quad>(high))};
}

constexpr HighAndLow ln2 = split(quadLogarithm(2, 1));

/// -log(k / 512) for the k that reciprocals of 0.75 to 1.5 are rounded to. Other places are never used for a result.
struct LogarithmTable
{
    static constexpr int steps = 512;
    static constexpr int first = 336;
    static constexpr int last = 688;

    constexpr LogarithmTable()
    {
        for (int k = first; k <= last; ++k) {
            const HighAndLow parts = split(quadLogarithm(steps, k));
            high[static_cast<std::size_t>(k)] = parts.high;
            low[static_cast<std::size_t>(k)] = parts.low;
        }
    }

    std::array<double, 1024> high{};
    std::array<double, 1024> low{};
};

constexpr LogarithmTable table;

constexpr std::size_t blockValues = 512;

MEGSET_AVX512 inline __m512d all(double value)
{
    return _mm512_set1_pd(value);
}

MEGSET_AVX512 inline __m512d entries(const std::array<double, 1024>& of, __m512i at)
{
    return _mm512_mask_i64gather_pd(_mm512_setzero_pd(), 0xff, at, of.data(), 8);
}

/// The logarithms of eight values, and in which lanes they are in doubt.
///
/// With x = 2^k z, z from 0.75 to 1.5, and c the reciprocal of z to nine binary places, log(x) is k log(2) - log(c) +
/// log(1 + r) with r = c z - 1, which is exact and below 0.0015. What is no positive finite number makes a NaN of
/// `low`.
MEGSET_AVX512 inline __m512d logarithms(__m512d x, __mmask8& doubtful)
{
    const __m512d z = _mm512_maskz_getmant_pd(0xff, x, _MM_MANT_NORM_p75_1p5, _MM_MANT_SIGN_nan);
    const __m512d k = _mm512_sub_pd(_mm512_maskz_getexp_pd(0xff, x), _mm512_maskz_getexp_pd(0xff, z));
    const __m512d rounder = all(1.5 * 0x1p52 / LogarithmTable::steps);
    const __m512d rounded = _mm512_add_pd(_mm512_maskz_rcp14_pd(0xff, z), rounder);
    const __m512d c = _mm512_sub_pd(rounded, rounder);
    const __m512i at = _mm512_and_si512(_mm512_castpd_si512(rounded), _mm512_set1_epi64(1023));
    const __m512d r = _mm512_fmsub_pd(z, c, all(1.0));

    const __m512d whole = _mm512_fmadd_pd(k, all(ln2.high), entries(table.high, at)); // exact
    const __m512d high = _mm512_add_pd(whole, r);
    const __m512d lost = _mm512_add_pd(_mm512_sub_pd(whole, high), r); // exact: whole is 0 or the larger of the two
    const __m512d rest = _mm512_fmadd_pd(k, all(ln2.low), entries(table.low, at));

    // log(1 + r) - r = r^2 (-1/2 + r (1/3 - r/4 + r^2 (1/5 - r/6 + r^2/7)))
    const __m512d r2 = _mm512_mul_pd(r, r);
    __m512d p = _mm512_fmadd_pd(r2, all(1.0 / 7.0), _mm512_fmadd_pd(r, all(-1.0 / 6.0), all(1.0 / 5.0)));
    p = _mm512_fmadd_pd(r2, p, _mm512_fmadd_pd(r, all(-1.0 / 4.0), all(1.0 / 3.0)));
    p = _mm512_fmadd_pd(r, p, all(-1.0 / 2.0));
    const __m512d low = _mm512_add_pd(lost, _mm512_fmadd_pd(r2, p, rest));

    // An error stretched from 0.47 units to the half of one that would round elsewhere.
    const __m512d result = _mm512_add_pd(high, low);
    const __m512d error = _mm512_add_pd(_mm512_sub_pd(high, result), low);
    const __m512d stretched = _mm512_fmadd_pd(error, all(0.5 / 0.47), result);
    doubtful = _mm512_cmp_pd_mask(stretched, result, _CMP_NEQ_UQ);
    return result;
}

/// n is a multiple of the lanes.
MEGSET_AVX512 void logarithmOfBlock(double* x, std::size_t n) noexcept
{
    alignas(64) std::array<double, blockValues> values;
    std::array<std::uint64_t, blockValues / 64> doubt{};
    for (std::size_t i = 0; i < n; i += lanes) {
        const __m512d v = _mm512_loadu_pd(x + i);
        fetchAhead(x + i);
        __mmask8 doubtful = 0;
        _mm512_store_pd(values.data() + i, v);
        _mm512_storeu_pd(x + i, logarithms(v, doubtful));
        doubt[i / 64] |= std::uint64_t{doubtful} << (i % 64);
    }
    for (std::size_t word = 0; word < doubt.size(); ++word) {
        for (std::uint64_t bits = doubt[word]; bits != 0; bits &= bits - 1) {
            const std::size_t i = word * 64 + static_cast<std::size_t>(std::countr_zero(bits));
            x[i] = std::log(values[i]);
        }
    }
}

} // namespace

} // namespace megset::numeric

#endif

namespace megset::numeric {

void logarithm(std::span<double> x, ProcessorPath path) noexcept
{
    std::size_t i = 0;
#if MEGSET_HAS_MULTIVERSION
    const std::size_t whole = x.size() / lanes * lanes;
    for (; path == ProcessorPath::Avx512 && i < whole; i += std::min(blockValues, whole - i))
        logarithmOfBlock(x.data() + i, std::min(blockValues, whole - i));
#else
    static_cast<void>(path);
#endif
    for (; i < x.size(); ++i)
        x[i] = std::log(x[i]);
}

void logarithm(std::span<double> x) noexcept
{
    logarithm(x, currentProcessorPath());
}

} // namespace megset::numeric
