#include "megset/numeric/arithmetic.h"

#include <algorithm>
#include <cstddef>

#include "megset/numeric/multiversion.h"

// Says that element i of one array never is element j of another for i != j, so that the loop may go in vectors;
// the same array in two places is fine. Clang warns where it can't follow, so it isn't told under sanitizers.
#if !defined(__clang__)
#define MEGSET_ELEMENTWISE _Pragma("GCC ivdep")
#elif MEGSET_HAS_MULTIVERSION
#define MEGSET_ELEMENTWISE _Pragma("clang loop vectorize(assume_safety)")
#else
#define MEGSET_ELEMENTWISE
#endif

namespace megset::numeric {

namespace {

MEGSET_MULTIVERSION void scaleLoop(double* x, double factor, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        x[i] *= factor;
}

MEGSET_MULTIVERSION void divideLoop(double* x, double divisor, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        x[i] /= divisor;
}

MEGSET_MULTIVERSION void subtractValueLoop(double* a, double value, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        a[i] -= value;
}

MEGSET_MULTIVERSION void divideEachLoop(double* x, const double* divisor, std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i)
        x[i] /= divisor[i];
}

MEGSET_MULTIVERSION void addWeightedLoop(double* sum, const double* x, double weight, std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i)
        sum[i] += x[i] * weight;
}

MEGSET_MULTIVERSION void addLoop(const double* a, const double* b, double* to, std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i)
        to[i] = a[i] + b[i];
}

MEGSET_MULTIVERSION void addTwiceLoop(const double* a, const double* b, double* to, double* alsoTo,
                                      std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i) {
        const double result = a[i] + b[i];
        to[i] = result;
        alsoTo[i] = result;
    }
}

MEGSET_MULTIVERSION void subtractLoop(const double* a, const double* b, double* to, std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i)
        to[i] = a[i] - b[i];
}

MEGSET_MULTIVERSION void subtractTwiceLoop(const double* a, const double* b, double* to, double* alsoTo,
                                           std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i) {
        const double result = a[i] - b[i];
        to[i] = result;
        alsoTo[i] = result;
    }
}

MEGSET_MULTIVERSION void multiplyLoop(const double* a, const double* b, double* to, std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i)
        to[i] = a[i] * b[i];
}

MEGSET_MULTIVERSION void multiplyTwiceLoop(const double* a, const double* b, double* to, double* alsoTo,
                                           std::size_t n) noexcept
{
    MEGSET_ELEMENTWISE
    for (std::size_t i = 0; i < n; ++i) {
        const double result = a[i] * b[i];
        to[i] = result;
        alsoTo[i] = result;
    }
}

} // namespace

void fill(std::span<double> x, double value) noexcept
{
    std::fill(x.begin(), x.end(), value);
}

void scaleInPlace(std::span<double> x, double factor) noexcept
{
    scaleLoop(x.data(), factor, x.size());
}

void divideInPlace(std::span<double> x, double divisor) noexcept
{
    divideLoop(x.data(), divisor, x.size());
}

void divideInPlace(std::span<double> x, std::span<const double> divisor) noexcept
{
    divideEachLoop(x.data(), divisor.data(), std::min(x.size(), divisor.size()));
}

void addInPlace(std::span<double> a, std::span<const double> b) noexcept
{
    add(a, b, a);
}

void subtractInPlace(std::span<double> a, std::span<const double> b) noexcept
{
    subtract(a, b, a);
}

void subtractInPlace(std::span<double> a, double value) noexcept
{
    subtractValueLoop(a.data(), value, a.size());
}

void addWeightedInPlace(std::span<double> sum, std::span<const double> x, double weight) noexcept
{
    addWeightedLoop(sum.data(), x.data(), weight, std::min(sum.size(), x.size()));
}

void add(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept
{
    addLoop(a.data(), b.data(), to.data(), std::min({a.size(), b.size(), to.size()}));
}

void add(std::span<const double> a, std::span<const double> b, std::span<double> to, std::span<double> alsoTo) noexcept
{
    addTwiceLoop(a.data(), b.data(), to.data(), alsoTo.data(),
                 std::min({a.size(), b.size(), to.size(), alsoTo.size()}));
}

void subtract(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept
{
    subtractLoop(a.data(), b.data(), to.data(), std::min({a.size(), b.size(), to.size()}));
}

void subtract(std::span<const double> a, std::span<const double> b, std::span<double> to,
              std::span<double> alsoTo) noexcept
{
    subtractTwiceLoop(a.data(), b.data(), to.data(), alsoTo.data(),
                      std::min({a.size(), b.size(), to.size(), alsoTo.size()}));
}

void multiply(std::span<const double> a, std::span<const double> b, std::span<double> to) noexcept
{
    multiplyLoop(a.data(), b.data(), to.data(), std::min({a.size(), b.size(), to.size()}));
}

void multiply(std::span<const double> a, std::span<const double> b, std::span<double> to,
              std::span<double> alsoTo) noexcept
{
    multiplyTwiceLoop(a.data(), b.data(), to.data(), alsoTo.data(),
                      std::min({a.size(), b.size(), to.size(), alsoTo.size()}));
}

} // namespace megset::numeric
