#include "megset/numeric/resample.h"

#include <algorithm>
#include <array>

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

constexpr std::size_t blockRuns = 1024; // sums of 8 KiB, which stay in the first-level cache until they are divided

// The sums of `runs` whole runs; a factor that the compiler knows lets it take several runs at once.
template <std::size_t factor>
inline __attribute__((always_inline)) void sumShortRuns(const double* x, double* sums, std::size_t runs) noexcept
{
    for (std::size_t k = 0; k < runs; ++k) {
        double sum = 0.0;
        for (std::size_t j = 0; j < factor; ++j)
            sum += x[k * factor + j];
        sums[k] = sum;
    }
}

// Eight runs go side by side, so that no addition waits for the one before it.
inline __attribute__((always_inline)) void sumRuns(const double* x, std::size_t factor, double* sums,
                                                   std::size_t runs) noexcept
{
    constexpr std::size_t together = 8;
    std::size_t k = 0;
    for (; k + together <= runs; k += together) {
        std::array<double, together> sum{};
        const double* first = x + k * factor;
        for (std::size_t j = 0; j < factor; ++j)
            for (std::size_t w = 0; w < together; ++w)
                sum[w] += first[w * factor + j];
        std::copy(sum.begin(), sum.end(), sums + k);
    }
    for (; k < runs; ++k) {
        double sum = 0.0;
        for (std::size_t j = 0; j < factor; ++j)
            sum += x[k * factor + j];
        sums[k] = sum;
    }
}

MEGSET_MULTIVERSION void sumRunsOfSamples(const double* x, std::size_t factor, double* sums, std::size_t runs) noexcept
{
    switch (factor) {
    case 2:
        return sumShortRuns<2>(x, sums, runs);
    case 3:
        return sumShortRuns<3>(x, sums, runs);
    case 4:
        return sumShortRuns<4>(x, sums, runs);
    case 5:
        return sumShortRuns<5>(x, sums, runs);
    case 8:
        return sumShortRuns<8>(x, sums, runs);
    default:
        return sumRuns(x, factor, sums, runs);
    }
}

// The run from sample s on, which the end of x cuts short.
double averageCutRun(std::span<const double> x, std::size_t s, std::size_t factor) noexcept
{
    double sum = 0.0;
    for (std::size_t j = 0; j < factor; ++j)
        sum += j < x.size() - s ? x[s + j] : x.back();
    return sum / static_cast<double>(factor);
}

} // namespace

void pickEvery(std::span<const double> x, std::size_t factor, std::span<double> to) noexcept
{
    if (x.empty())
        return;
    const std::size_t inside = std::min(to.size(), (x.size() - 1) / factor + 1);
    for (std::size_t k = 0; k < inside; ++k)
        to[k] = x[k * factor];
    fill(to.subspan(inside), x.back());
}

void averageEvery(std::span<const double> x, std::size_t factor, std::span<double> to) noexcept
{
    if (x.empty())
        return;
    const std::size_t whole = std::min(to.size(), x.size() / factor);
    for (std::size_t k = 0; k < whole; k += blockRuns) {
        const std::size_t runs = std::min(blockRuns, whole - k);
        sumRunsOfSamples(x.data() + k * factor, factor, to.data() + k, runs);
        divideInPlace(to.subspan(k, runs), static_cast<double>(factor));
    }
    if (whole == to.size())
        return;
    // At most one run is cut; those behind it are all of the last sample alone.
    const std::size_t cut = whole * factor < x.size() ? 1 : 0;
    if (cut == 1)
        to[whole] = averageCutRun(x, whole * factor, factor);
    if (whole + cut < to.size())
        fill(to.subspan(whole + cut), averageCutRun(x, x.size() - 1, factor));
}

} // namespace megset::numeric
