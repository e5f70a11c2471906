#include "apps/spectrum/FrequencyAxis.h"

#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace megset::spectrum {

namespace {

constexpr std::size_t mostFrequencies = 10000;
// A last frequency that misses the end by rounding alone is at the end.
constexpr double slack = 1e-9;

std::array<double, 3> threeNumbers(const std::string& text)
{
    std::array<double, 3> numbers{};
    const char* at = text.data();
    const char* const end = text.data() + text.size();
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto [rest, error] = std::from_chars(at, end, numbers[i]);
        const bool isLast = i + 1 == numbers.size();
        if (error != std::errc() || !std::isfinite(numbers[i]) || (isLast ? rest != end : rest == end || *rest != ':'))
            throw std::invalid_argument("the frequencies \"" + text + "\" are not of the form A:B:N");
        at = rest + 1;
    }
    if (!(numbers[0] > 0.0 && numbers[1] >= numbers[0] && numbers[2] > 0.0))
        throw std::invalid_argument("the frequencies \"" + text + "\" don't rise from above 0 Hz");
    return numbers;
}

void add(std::vector<double>& hz, double frequency)
{
    if (hz.size() == mostFrequencies)
        throw std::invalid_argument("these are more than " + std::to_string(mostFrequencies) + " frequencies");
    hz.push_back(frequency);
}

} // namespace

FrequencyAxis linearAxis(const std::string& text)
{
    const auto [from, to, step] = threeNumbers(text);
    FrequencyAxis axis = {false, step, {}};
    for (double i = 0.0; from + i * step <= to * (1.0 + slack); ++i)
        add(axis.hz, from + i * step);
    return axis;
}

FrequencyAxis octaveAxis(const std::string& text)
{
    const auto [from, to, count] = threeNumbers(text);
    FrequencyAxis axis = {true, std::exp2(1.0 / count), {}};
    for (double i = 0.0; from * std::exp2(i / count) <= to * (1.0 + slack); ++i)
        add(axis.hz, from * std::exp2(i / count));
    return axis;
}

} // namespace megset::spectrum
