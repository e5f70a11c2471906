#include "apps/cli/manual/commandList.h"

namespace megset::cli {

namespace {

OptionEntry describe(const CLI::Option& option)
{
    OptionEntry entry;
    for (const std::string& name : option.get_snames())
        entry.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        entry.names.push_back("--" + name);
    if (entry.names.empty())
        entry.value = option.get_name(true);
    else if (option.get_type_size() != 0)
        entry.value = option.get_type_name().substr(0, option.get_type_name().find(':'));
    entry.description = option.get_description();
    return entry;
}

void addOptions(const CLI::App& app, std::vector<OptionEntry>& entries)
{
    // The group has the help option of its command again.
    const CLI::Option* const repeated = app.get_name().empty() ? app.get_help_ptr() : nullptr;
    for (const CLI::Option* option : app.get_options([repeated](const CLI::Option* one) { return one != repeated; }))
        entries.push_back(describe(*option));
    // Groups of options are commands without a name.
    for (const CLI::App* group : app.get_subcommands([](const CLI::App* part) { return part->get_name().empty(); }))
        addOptions(*group, entries);
}

} // namespace

CommandEntry describe(const CLI::App& app)
{
    CommandEntry entry = {app.get_name(), app.get_description(), app.get_footer(), {}};
    addOptions(app, entry.options);
    return entry;
}

std::vector<CommandEntry> describeCommands(const CLI::App& program)
{
    std::vector<CommandEntry> commands;
    for (const CLI::App* command :
         program.get_subcommands([](const CLI::App* part) { return !part->get_name().empty(); }))
        commands.push_back(describe(*command));
    return commands;
}

} // namespace megset::cli
