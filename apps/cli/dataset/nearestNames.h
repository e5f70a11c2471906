#pragma once
// Which names may have been meant by one that is unknown.

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace megset::cli {

/// Number of insertions, deletions and replacements that make one text the other (Levenshtein, 1966), of the first 64
/// bytes of each.
std::size_t editDistance(const std::string& a, const std::string& b);

/// The three names with the smallest distances, fit for a terminal and joined by commas; of equal ones the first in the
/// alphabet. The pairs are distance and name.
std::string nearestNames(std::vector<std::pair<std::size_t, std::string>> names);

} // namespace megset::cli
