#include "apps/cli/manual/usageFault.h"

#include "apps/cli/dataset/nearestNames.h"
#include "apps/cli/dataset/shownLine.h"

#include <utility>
#include <vector>

namespace megset::cli {

namespace {

// The options of a command, with those of its groups.
std::vector<const CLI::Option*> optionsOf(const CLI::App& command)
{
    std::vector<const CLI::Option*> options;
    for (const CLI::Option* option : command.get_options())
        options.push_back(option);
    for (const CLI::App* group : command.get_subcommands([](const CLI::App* part) { return part->get_name().empty(); }))
        for (const CLI::Option* option : group->get_options())
            options.push_back(option);
    return options;
}

std::string nearestOptions(const CLI::App& command, const std::string& word)
{
    std::vector<std::pair<std::size_t, std::string>> names;
    for (const CLI::Option* option : optionsOf(command))
        for (const std::string& name : option->get_lnames())
            if (const std::string known = "--" + name; names.empty() || names.back().second != known)
                names.emplace_back(editDistance(word, known), known);
    return nearestNames(std::move(names));
}

// How several values go to the options that were given and take them.
std::string adviceOnSeveral(const CLI::App& command)
{
    for (const CLI::Option* option : optionsOf(command)) {
        if (option->count() == 0 || option->get_positional() ||
            option->get_expected_max() != CLI::detail::expected_max_vector_size)
            continue;
        const std::string name = option->get_name();
        return "; several values are given as " +
               (option->get_delimiter() == ',' ? name + " A,B" : name + " A " + name + " B");
    }
    return {};
}

std::string unexpected(const CLI::App& command)
{
    const std::vector<std::string> words = command.remaining(true);
    for (const std::string& word : words)
        if (word.size() > 1 && word[0] == '-')
            return "there is no option " + shownLine(word) + "; the nearest names are " +
                   nearestOptions(command, word.substr(0, word.find('=')));
    return words.empty() ? std::string() : shownLine(words.front()) + " was not expected" + adviceOnSeveral(command);
}

std::string faultOf(const CLI::App& command, const CLI::Error& error)
{
    const std::string text = shownLine(error.what());
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr)
        if (const std::string told = unexpected(command); !told.empty())
            return told;
    const std::string twice = ": At Most 1 required but received ";
    const std::size_t at = text.find(twice);
    return at == std::string::npos
               ? text
               : text.substr(0, at) + " is given " + text.substr(at + twice.size()) + " times, and may be once";
}

} // namespace

std::string usageFault(const CLI::App* program, const CLI::Error& error)
{
    std::string name = program->get_name();
    const CLI::App* last = program;
    for (const CLI::App* command : program->get_subcommands()) {
        name += ' ' + command->get_name();
        last = command;
    }
    return name + ": " + faultOf(*last, error) + "\n" + name + " --help tells the options.\n";
}

} // namespace megset::cli
