#include "megset/numeric/montage.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "megset/numeric/arithmetic.h"

namespace megset::numeric {

namespace {

// A block of some hundred channels is read for the sum and is still near when the sum is taken from it.
constexpr std::size_t blockSamples = 256;

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
    for (std::size_t begin = 0; begin < length; begin += blockSamples)
        work(begin, std::min(blockSamples, length - begin));
}

void sumBlock(const WeightedSum& sum, std::size_t begin, std::span<double> to)
{
    fill(to, 0.0);
    for (const Weighted& signal : sum.signals)
        addWeightedInPlace(to, part(signal.samples, begin, to.size()), signal.weight);
    if (sum.divisor > 0.0)
        divideInPlace(to, sum.divisor);
}

using InPlace = void (*)(std::span<double>, std::span<const double>) noexcept;

void applySum(const WeightedSum& sum, std::size_t length, std::span<const std::span<double>> targets, InPlace apply)
{
    std::array<double, blockSamples> buffer;
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

void weightedSum(const WeightedSum& sum, std::span<double> to) noexcept
{
    inBlocks(to.size(), [&](std::size_t begin, std::size_t count) { sumBlock(sum, begin, part(to, begin, count)); });
}

void subtractFromEach(const WeightedSum& sum, std::size_t length, std::span<const std::span<double>> targets) noexcept
{
    applySum(sum, length, targets, subtractInPlace);
}

void addToEach(const WeightedSum& sum, std::size_t length, std::span<const std::span<double>> targets) noexcept
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
