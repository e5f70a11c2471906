#include "megset/numeric/montage.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/multiversion.h"

namespace megset::numeric {

namespace {

// A block of some hundred channels is read for the sum and is still near when the sum is taken from it.
constexpr std::size_t montageBlock = 256;

template <class Value>
std::span<Value> part(std::span<Value> x, std::size_t begin, std::size_t count)
{
    begin = std::min(begin, x.size());
    return x.subspan(begin, std::min(count, x.size() - begin));
}

/// Runs `work(begin, count)` on one block of samples after the other.
template <class Work>
void inBlocks(std::size_t length, Work work)
{
    for (std::size_t begin = 0; begin < length; begin += montageBlock)
        work(begin, std::min(montageBlock, length - begin));
}

/// Four signals in one pass over the sum, one after the other at each sample. None overlaps the sum.
MEGSET_MULTIVERSION void addFourSignalsLoop(double* __restrict sum, const double* a, double weightA, const double* b,
                                            double weightB, const double* c, double weightC, const double* d,
                                            double weightD, std::size_t n) noexcept
{
    for (std::size_t i = 0; i < n; ++i)
        sum[i] = (((sum[i] + a[i] * weightA) + b[i] * weightB) + c[i] * weightC) + d[i] * weightD;
}

/// Adds the first four signals of a list at once where all of them reach to the end of the block.
bool addFourSignals(std::span<const WeightedSignal> signals, std::size_t begin, std::span<double> to)
{
    const std::size_t end = begin + to.size();
    if (signals.size() < 4 || std::any_of(signals.begin(), signals.begin() + 4,
                                          [end](const WeightedSignal& signal) { return signal.samples.size() < end; }))
        return false;
    const auto data = [&](std::size_t i) { return signals[i].samples.data() + begin; };
    addFourSignalsLoop(to.data(), data(0), signals[0].weight, data(1), signals[1].weight, data(2), signals[2].weight,
                       data(3), signals[3].weight, to.size());
    return true;
}

void sumBlock(const SignalSum& sum, std::size_t begin, std::span<double> to)
{
    fill(to, 0.0);
    for (std::span<const WeightedSignal> rest = sum.signals; !rest.empty();) {
        if (addFourSignals(rest, begin, to)) {
            rest = rest.subspan(4);
            continue;
        }
        addWeightedInPlace(to, part(rest[0].samples, begin, to.size()), rest[0].weight);
        rest = rest.subspan(1);
    }
    if (sum.divisor > 0.0)
        divideInPlace(to, sum.divisor);
}

using InPlace = void (*)(std::span<double>, std::span<const double>) noexcept;

void applySum(const SignalSum& sum, std::size_t length, std::span<const std::span<double>> targets, InPlace apply)
{
    std::array<double, montageBlock> buffer;
    inBlocks(length, [&](std::size_t begin, std::size_t count) {
        const std::span<double> reference = std::span(buffer).first(count);
        sumBlock(sum, begin, reference);
        for (const std::span<double> target : targets)
            apply(part(target, begin, count), reference);
    });
}

void applySignal(std::span<const double> x, std::span<const std::span<double>> targets, InPlace apply)
{
    inBlocks(x.size(), [&](std::size_t begin, std::size_t count) {
        for (const std::span<double> target : targets)
            apply(part(target, begin, count), part(x, begin, count));
    });
}

} // namespace

void signalSum(const SignalSum& sum, std::span<double> to) noexcept
{
    inBlocks(to.size(), [&](std::size_t begin, std::size_t count) { sumBlock(sum, begin, part(to, begin, count)); });
}

void subtractFromEach(const SignalSum& sum, std::size_t length, std::span<const std::span<double>> targets) noexcept
{
    applySum(sum, length, targets, subtractInPlace);
}

void addToEach(const SignalSum& sum, std::size_t length, std::span<const std::span<double>> targets) noexcept
{
    applySum(sum, length, targets, addInPlace);
}

void subtractFromEach(std::span<const double> x, std::span<const std::span<double>> targets) noexcept
{
    applySignal(x, targets, subtractInPlace);
}

void addToEach(std::span<const double> x, std::span<const std::span<double>> targets) noexcept
{
    applySignal(x, targets, addInPlace);
}

} // namespace megset::numeric
