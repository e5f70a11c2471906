#pragma once
// The program's commands and options as plain lists.

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace megset::cli {

struct OptionEntry
{
    std::vector<std::string> names; ///< with their dashes; none for a positional argument
    std::string value;              ///< name of its value, or of the positional argument; empty for a flag
    std::string description;
};

struct CommandEntry
{
    std::string name;
    std::string description;
    std::string footer; ///< examples
    std::vector<OptionEntry> options;
};

/// The program's own options under its name, and no footer.
CommandEntry describe(const CLI::App& app);
/// All commands, in the order in which they were added.
std::vector<CommandEntry> describeCommands(const CLI::App& program);

} // namespace megset::cli
