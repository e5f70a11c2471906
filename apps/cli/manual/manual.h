#pragma once
// Manual page and shell completion, both from the program's own definitions of commands and options.

#include <CLI/CLI.hpp>

#include <iosfwd>

namespace megset::cli {

/// The manual page of section 1, in roff with the man macros.
void writeManPage(const CLI::App& program, std::ostream& out);

/// A completion script: commands first, then the options of the command, and file names where no option begins.
void writeBashCompletion(const CLI::App& program, std::ostream& out);
void writeZshCompletion(const CLI::App& program, std::ostream& out);

} // namespace megset::cli
