#include "apps/cli/dataset/sampleRange.h"

#include <charconv>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace megset::cli {

namespace {

std::int64_t parseEnd(std::string_view text, std::int64_t otherwise, const std::string& whole)
{
    if (text.empty())
        return otherwise;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::runtime_error("the range \"" + whole + "\" is not of the form A:B");
    return value;
}

double parseMs(std::string_view text, const std::string& whole)
{
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        throw std::runtime_error("the range \"" + whole + "\" is not of the form A:B");
    return value;
}

std::string shortNumber(double value)
{
    std::ostringstream text;
    text << std::setprecision(10) << value;
    return text.str();
}

std::int64_t sampleAt(std::string_view part, const std::string& whole, const TrialTimes& times)
{
    const double sample =
        std::round(parseMs(part, whole) / 1000.0 * times.rate) + static_cast<double>(times.preTrigger);
    if (!(sample >= 0.0 && sample < static_cast<double>(times.samples)))
        throw std::runtime_error("the time " + std::string(part) + " ms is outside the trial, which goes from " +
                                 shortNumber(times.msOf(0)) + " to " + shortNumber(times.msOf(times.samples - 1)) +
                                 " ms");
    return static_cast<std::int64_t>(sample);
}

} // namespace

SampleRange parseSampleRange(const std::string& text, std::int64_t samples)
{
    const std::string_view view = text;
    if (view.empty())
        return {0, samples - 1};
    const std::size_t colon = view.find(':');
    if (colon == std::string_view::npos)
        throw std::runtime_error("the range \"" + text + "\" is not of the form A:B");
    const SampleRange range = {parseEnd(view.substr(0, colon), 0, text),
                               parseEnd(view.substr(colon + 1), samples - 1, text)};
    if (range.from < 0 || range.to < range.from || range.to >= samples)
        throw std::runtime_error("the range \"" + text + "\" is not within the samples 0 to " +
                                 std::to_string(samples - 1));
    return range;
}

SampleRange parseTimeRange(const std::string& text, const TrialTimes& times)
{
    const std::string_view view = text;
    const std::size_t colon = view.find(':');
    if (colon == std::string_view::npos)
        throw std::runtime_error("the range \"" + text + "\" is not of the form A:B");
    const SampleRange range = {sampleAt(view.substr(0, colon), text, times),
                               sampleAt(view.substr(colon + 1), text, times)};
    if (range.to < range.from)
        throw std::runtime_error("the range \"" + text + "\" ends before it begins");
    return range;
}

SampleRange parsePlace(const std::string& text, const TrialTimes& times)
{
    constexpr std::string_view unit = "ms";
    std::string range = text;
    const bool isTime = range.ends_with(unit);
    if (isTime)
        range.resize(range.size() - unit.size());
    const std::size_t colon = range.find(':');
    if (colon == std::string::npos)
        range += ':' + range;
    else if (isTime && range.substr(0, colon).ends_with(unit)) // "80ms:120ms"
        range.erase(colon - unit.size(), unit.size());
    if (range == ":")
        throw std::runtime_error("the place \"" + text + "\" is not of the form A or A:B");
    return isTime ? parseTimeRange(range, times) : parseSampleRange(range, times.samples);
}

} // namespace megset::cli
