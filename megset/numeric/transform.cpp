#include "megset/numeric/transform.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

template <class... Spans>
std::size_t shortest(const Spans&... spans) noexcept
{
    return std::min({spans.size()...});
}

MEGSET_MULTIVERSION void realMagnitudeLoop(const double* r, double* m, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        m[k] = std::sqrt(r[k] * r[k]);
}

MEGSET_MULTIVERSION void magnitudeLoop(const double* r, const double* i, double* m, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        m[k] = std::sqrt((r[k] * r[k] + i[k] * i[k]) * 0.5);
}

MEGSET_MULTIVERSION void giveSignLoop(double* m, const double* source, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k) {
        const double positive = std::fabs(m[k]);
        m[k] = source[k] < 0.0 ? -positive : positive;
    }
}

MEGSET_MULTIVERSION void giveSignOfLargerLoop(double* m, const double* r, const double* i, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k) {
        const double positive = std::fabs(m[k]);
        const double source = std::fabs(i[k]) > std::fabs(r[k]) ? i[k] : r[k];
        m[k] = source < 0.0 ? -positive : positive;
    }
}

MEGSET_MULTIVERSION void replaceOutsideLoop(double* x, double low, double high, double replacement,
                                            std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k) {
        const bool isOutside = (x[k] < low) | (x[k] > high);
        x[k] = isOutside ? replacement : x[k];
    }
}

MEGSET_MULTIVERSION void replaceNonFiniteLoop(double* x, double replacement, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        x[k] = std::isfinite(x[k]) ? x[k] : replacement;
}

MEGSET_MULTIVERSION void shiftAndScaleLoop(double* x, double offset, double scale, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        x[k] = (x[k] - offset) * scale;
}

MEGSET_MULTIVERSION void divideAndScaleLoop(double* x, const double* divisor, double scale, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        x[k] = x[k] / divisor[k] * scale;
}

MEGSET_MULTIVERSION void addQuotientsLoop(double* sum, const double* x, double divisor, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        sum[k] += x[k] / divisor;
}

MEGSET_MULTIVERSION void averageLoop(const double* a, const double* b, double* to, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        to[k] = (a[k] + b[k]) * 0.5;
}

MEGSET_MULTIVERSION void addAverageLoop(const double* a, const double* b, double* to, std::size_t n) noexcept
{
    for (std::size_t k = 0; k < n; ++k)
        to[k] += (a[k] + b[k]) * 0.5;
}

} // namespace

void magnitude(std::span<const double> r, std::span<double> m) noexcept
{
    realMagnitudeLoop(r.data(), m.data(), shortest(r, m));
}

void magnitude(std::span<const double> r, std::span<const double> i, std::span<double> m) noexcept
{
    magnitudeLoop(r.data(), i.data(), m.data(), shortest(r, i, m));
}

void phase(std::span<const double> r, std::span<double> a) noexcept
{
    for (std::size_t k = 0; k < shortest(r, a); ++k)
        a[k] = std::atan(r[k]);
}

void phase(std::span<const double> r, std::span<const double> i, std::span<double> a) noexcept
{
    for (std::size_t k = 0; k < shortest(r, i, a); ++k)
        a[k] = std::atan2(i[k], r[k]);
}

void giveSign(std::span<double> m, std::span<const double> source) noexcept
{
    giveSignLoop(m.data(), source.data(), shortest(m, source));
}

void giveSignOfLarger(std::span<double> m, std::span<const double> r, std::span<const double> i) noexcept
{
    giveSignOfLargerLoop(m.data(), r.data(), i.data(), shortest(m, r, i));
}

void replaceOutside(std::span<double> x, double low, double high, double replacement) noexcept
{
    replaceOutsideLoop(x.data(), low, high, replacement, x.size());
}

void replaceNonFinite(std::span<double> x, double replacement) noexcept
{
    replaceNonFiniteLoop(x.data(), replacement, x.size());
}

void shiftAndScale(std::span<double> x, double offset, double scale) noexcept
{
    shiftAndScaleLoop(x.data(), offset, scale, x.size());
}

void divideAndScale(std::span<double> x, std::span<const double> divisor, double scale) noexcept
{
    divideAndScaleLoop(x.data(), divisor.data(), scale, shortest(x, divisor));
}

void addQuotients(std::span<double> sum, std::span<const double> x, double divisor) noexcept
{
    addQuotientsLoop(sum.data(), x.data(), divisor, shortest(sum, x));
}

void average(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept
{
    averageLoop(a.data(), b.data(), to.data(), shortest(a, b, to));
}

void addAverage(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept
{
    addAverageLoop(a.data(), b.data(), to.data(), shortest(a, b, to));
}

} // namespace megset::numeric
