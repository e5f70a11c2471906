#include "apps/cli/dataset/nearestNames.h"

#include "apps/cli/dataset/shownLine.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace megset::cli {

namespace {

constexpr std::size_t mostSuggestions = 3;
constexpr std::size_t comparedBytes = 64; // names of a file may be of any length

} // namespace

std::size_t editDistance(const std::string& first, const std::string& second)
{
    const std::string_view a = std::string_view(first).substr(0, comparedBytes);
    const std::string_view b = std::string_view(second).substr(0, comparedBytes);
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

std::string nearestNames(std::vector<std::pair<std::size_t, std::string>> names)
{
    const auto count = static_cast<std::ptrdiff_t>(std::min(names.size(), mostSuggestions));
    std::partial_sort(names.begin(), names.begin() + count, names.end());
    std::string text;
    for (auto place = names.begin(); place != names.begin() + count; ++place)
        text += (text.empty() ? "" : ", ") + shownLine(place->second);
    return text;
}

} // namespace megset::cli
