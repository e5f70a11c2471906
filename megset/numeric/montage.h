// References of montages: weighted sums of signals, and taking them from many signals at once.
//
// Every sample index stands alone, so that all work goes in blocks of samples which stay in the cache; each sum is
// formed in the order of the list. A signal that ends early adds nothing behind its end.
#pragma once

#include <cstddef>
#include <span>

namespace megset::numeric {

/// A signal with its weight in a sum.
struct WeightedSignal
{
    std::span<const double> samples;
    double weight = 1.0;
};

/// A weighted sum of signals: sample i is 0 + x0[i] * w0 + x1[i] * w1 + ..., each product rounded before it is added,
/// and then divided by the divisor where that is above 0.
struct SignalSum
{
    std::span<const WeightedSignal> signals;
    double divisor = 0.0;
};

/// to[i] = the sum's sample i
void signalSum(const SignalSum& sum, std::span<double> to) noexcept;

/// x[i] -= the sum's sample i for each target x in turn and i below `length` and the target's end. The signals
/// of the sum are read before any target changes at i.
void subtractFromEach(const SignalSum& sum, std::size_t length, std::span<const std::span<double>> targets) noexcept;
/// The same with +=.
void addToEach(const SignalSum& sum, std::size_t length, std::span<const std::span<double>> targets) noexcept;

/// The same with one signal as it stands at each target's turn: where it is a target itself, the later ones get it as
/// it has become.
void subtractFromEach(std::span<const double> x, std::span<const std::span<double>> targets) noexcept;
/// The same with +=.
void addToEach(std::span<const double> x, std::span<const std::span<double>> targets) noexcept;

} // namespace megset::numeric
