#include "apps/cli/dataset/sampleRange.h"

#include <charconv>
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

} // namespace megset::cli
