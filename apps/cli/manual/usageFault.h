#pragma once
// What was wrong with a call of the program, in words.

#include <CLI/CLI.hpp>

#include <string>

namespace megset::cli {

/// The fault, and where to read on: with the command, where one was named.
std::string usageFault(const CLI::App* program, const CLI::Error& error);

} // namespace megset::cli
