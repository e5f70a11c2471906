#include "apps/cli/manual/numberChecks.h"

#include "apps/cli/dataset/shownLine.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <string>

namespace megset::cli {

namespace {

std::string quoted(const std::string& text)
{
    return '"' + shownLine(text) + '"';
}

// The number that the whole text is; nothing for any other text, and for one that is too large.
template <class Number>
std::optional<Number> parse(const std::string& text)
{
    const char* const end = text.data() + text.size();
    Number value = 0;
    const char* const begin = text.data() + (text.size() > 1 && text[0] == '+' ? 1 : 0);
    const auto [rest, error] = std::from_chars(begin, end, value);
    return error == std::errc() && rest == end ? std::optional(value) : std::nullopt;
}

std::optional<double> parseFinite(const std::string& text)
{
    const std::optional<double> value = parse<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::string shownNumber(double value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

} // namespace

CLI::Validator wholeNumber(std::int64_t least)
{
    return {[least](const std::string& text) -> std::string {
                const std::optional<std::int64_t> value = parse<std::int64_t>(text);
                if (!value)
                    return quoted(text) + " is no whole number, or too large";
                return *value < least ? text + " is below " + std::to_string(least) : std::string();
            },
            ""};
}

CLI::Validator finiteNumber()
{
    return {[](const std::string& text) { return parseFinite(text) ? std::string() : quoted(text) + " is no number"; },
            ""};
}

CLI::Validator numberAboveZero()
{
    return {[](const std::string& text) -> std::string {
                const std::optional<double> value = parseFinite(text);
                if (!value)
                    return quoted(text) + " is no number";
                return *value > 0.0 ? "" : text + " is not above 0";
            },
            ""};
}

CLI::Validator numberWithin(double low, double high)
{
    return {[low, high](const std::string& text) -> std::string {
                const std::optional<double> value = parseFinite(text);
                if (!value)
                    return quoted(text) + " is no number";
                return *value >= low && *value <= high
                           ? ""
                           : text + " is not from " + shownNumber(low) + " to " + shownNumber(high);
            },
            ""};
}

} // namespace megset::cli
