#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace megset::layering {

/// The file names that the #include lines of a source name, with their quotes or angle brackets.
std::vector<std::string> includesOf(std::string_view source);

/// What is wrong with the include lines of a file, a sentence each; empty when all is well. `path` is relative to the
/// project's root, such as "megset/core/CMDChannel.h". Files outside megset/ and apps/ have no rules.
std::vector<std::string> violations(std::string_view path, std::string_view source);

} // namespace megset::layering
