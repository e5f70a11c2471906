#include "apps/cli/dataset/sampleRange.h"

#include <charconv>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace megset::cli {

namespace {

constexpr const char* formOfRange = " is not of the form A:B";
constexpr const char* formOfPlace = " is not of the form A or A:B, with \"ms\" behind it for times";

// What goes wrong is told of the text as it was typed.
struct Named
{
    std::string what;
    const char* form;
};

std::int64_t parseEnd(std::string_view text, std::int64_t otherwise, const Named& whole)
{
    if (text.empty())
        return otherwise;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::runtime_error(whole.what + whole.form);
    return value;
}

double parseMs(std::string_view text, const Named& whole)
{
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        throw std::runtime_error(whole.what + whole.form);
    return value;
}

std::string shortNumber(double value)
{
    std::ostringstream text;
    text << std::setprecision(10) << value;
    return text.str();
}

std::int64_t sampleAt(std::string_view part, const Named& whole, const TrialTimes& times)
{
    const double sample =
        std::round(parseMs(part, whole) / 1000.0 * times.rate) + static_cast<double>(times.preTrigger);
    if (!(sample >= 0.0 && sample < static_cast<double>(times.samples)))
        throw std::runtime_error("the time " + std::string(part) + " ms is outside the trial, which goes from " +
                                 shortNumber(times.msOf(0)) + " to " + shortNumber(times.msOf(times.samples - 1)) +
                                 " ms");
    return static_cast<std::int64_t>(sample);
}

// Where the colon is.
std::size_t colonOf(std::string_view text, const Named& whole)
{
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        throw std::runtime_error(whole.what + whole.form);
    return colon;
}

SampleRange sampleRange(std::string_view text, std::int64_t samples, const Named& whole)
{
    const std::size_t colon = colonOf(text, whole);
    const SampleRange range = {parseEnd(text.substr(0, colon), 0, whole),
                               parseEnd(text.substr(colon + 1), samples - 1, whole)};
    if (range.from < 0 || range.to < range.from || range.to >= samples)
        throw std::runtime_error(whole.what + " is not within the samples 0 to " + std::to_string(samples - 1));
    return range;
}

SampleRange timeRange(std::string_view text, const TrialTimes& times, const Named& whole)
{
    const std::size_t colon = colonOf(text, whole);
    const SampleRange range = {sampleAt(text.substr(0, colon), whole, times),
                               sampleAt(text.substr(colon + 1), whole, times)};
    if (range.to < range.from)
        throw std::runtime_error(whole.what + " ends before it begins");
    return range;
}

// "80:120" of "80:120ms", with its colon; empty where the text is no place at all.
std::string rangeOfPlace(const std::string& text, bool isTime)
{
    constexpr std::size_t unit = 2;
    std::string range = isTime ? text.substr(0, text.size() - unit) : text;
    const std::size_t colon = range.find(':');
    if (colon == std::string::npos)
        return range.empty() ? range : range + ':' + range;
    if (isTime && range.substr(0, colon).ends_with("ms")) // "80ms:120ms"
        range.erase(colon - unit, unit);
    return range == ":" ? "" : range;
}

} // namespace

SampleRange parseSampleRange(const std::string& text, std::int64_t samples)
{
    return text.empty() ? SampleRange{0, samples - 1}
                        : sampleRange(text, samples, {"the range \"" + text + "\"", formOfRange});
}

SampleRange parseTimeRange(const std::string& text, const TrialTimes& times)
{
    return timeRange(text, times, {"the range \"" + text + "\"", formOfRange});
}

SampleRange parsePlace(const std::string& text, const TrialTimes& times)
{
    const bool isTime = text.ends_with("ms");
    const std::string range = rangeOfPlace(text, isTime);
    if (range.empty())
        throw std::runtime_error("the place \"" + text + "\"" + formOfPlace);
    const Named place{"the place \"" + text + "\"", formOfPlace};
    return isTime ? timeRange(range, times, place) : sampleRange(range, times.samples, place);
}

} // namespace megset::cli
