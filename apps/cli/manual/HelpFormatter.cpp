#include "apps/cli/manual/HelpFormatter.h"

namespace megset::cli {

namespace {

// How many of a group's options are asked for.
std::string headingOf(const CLI::App& group)
{
    const std::string number = group.get_require_option_min() == 0   ? "At most one of these"
                               : group.get_require_option_max() == 1 ? "One of these"
                                                                     : "At least one of these";
    return group.get_description().empty() ? number : number + " (" + group.get_description() + ')';
}

// The parser has "TEXT:{a,b}" where one of several words is asked for, and "INT:POSITIVE" for a number with a range.
std::string valueOf(const std::string& typeName)
{
    const std::size_t colon = typeName.find(':');
    return colon != std::string::npos && typeName.compare(colon + 1, 1, "{") == 0 ? typeName.substr(colon + 1)
                                                                                  : typeName.substr(0, colon);
}

} // namespace

HelpFormatter::HelpFormatter()
{
    label("SUBCOMMAND", "COMMAND");
    label("Positionals", "Arguments");
    column_width(32);
}

std::string HelpFormatter::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const
{
    const std::string text = app->get_description() + "\n\n" + make_usage(app, std::move(name)) +
                             make_positionals(app) + choicesOf(*app) + make_groups(app, mode) +
                             make_subcommands(app, mode) + '\n' + make_footer(app);
    return CLI::detail::find_and_replace(text, "\n\n\n", "\n\n");
}

// A group of options is a command without a name; choicesOf shows it.
std::string HelpFormatter::make_expanded(const CLI::App* app) const
{
    return app->get_name().empty() ? std::string() : CLI::Formatter::make_expanded(app);
}

std::string HelpFormatter::choicesOf(const CLI::App& app) const
{
    std::string text;
    for (const CLI::App* group : app.get_subcommands([](const CLI::App* part) { return part->get_name().empty(); }))
        text += make_group(headingOf(*group), false, group->get_options([group](const CLI::Option* option) {
            return option != group->get_help_ptr();
        }));
    return text;
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const
{
    if (option->get_type_size() == 0 || option->get_positional())
        return {};
    const bool many = option->get_expected_max() == CLI::detail::expected_max_vector_size;
    return ' ' + valueOf(option->get_type_name()) + (!many ? "" : option->get_delimiter() == ',' ? ",..." : " ...");
}

std::string HelpFormatter::make_option_desc(const CLI::Option* option) const
{
    const std::string value = option->get_default_str();
    return option->get_description() + (option->get_required() && option->nonpositional() ? " (required)" : "") +
           (value.empty() ? "" : " (default: " + value + ')');
}

} // namespace megset::cli
