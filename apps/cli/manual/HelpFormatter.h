#pragma once
// How `--help` shows a command: first the options of which one is asked for, then all others, without the parser's
// words.

#include <CLI/CLI.hpp>

#include <string>

namespace megset::cli {

/// Lays out the help of the program and its commands.
class HelpFormatter : public CLI::Formatter
{
public:
    HelpFormatter();

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
    std::string make_expanded(const CLI::App* app) const override;
    /// A value's kind, or the values that may be chosen; nothing for a positional.
    std::string make_option_opts(const CLI::Option* option) const override;
    /// The description, with "(required)" behind it, or with a default value.
    std::string make_option_desc(const CLI::Option* option) const override;

private:
    std::string choicesOf(const CLI::App& app) const;
};

} // namespace megset::cli
