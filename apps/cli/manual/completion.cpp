#include "apps/cli/manual/commandList.h"
#include "apps/cli/manual/manual.h"

#include <ostream>

namespace megset::cli {

namespace {

std::string namesOf(const CommandEntry& command)
{
    std::string names;
    for (const OptionEntry& option : command.options)
        for (const std::string& name : option.names)
            names += (names.empty() ? "" : " ") + name;
    return names;
}

std::string commandNames(const std::vector<CommandEntry>& commands)
{
    std::string names;
    for (const CommandEntry& command : commands)
        names += (names.empty() ? "" : " ") + command.name;
    return names;
}

// A text between the single quotes of an argument of _arguments, in which brackets and colons have a meaning.
std::string zshText(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\'')
            result += "'\\''";
        else if (c == '[' || c == ']' || c == ':' || c == '\\')
            result += std::string("\\") + c;
        else
            result += c;
    }
    return result;
}

void writeZshOptions(const CommandEntry& command, std::ostream& out)
{
    out << "        " << command.name << ") _arguments";
    for (const OptionEntry& option : command.options) {
        if (option.names.empty())
            out << " \\\n            '*:" << zshText(option.value) << ":_files'";
        for (const std::string& name : option.names)
            out << " \\\n            '" << name << '[' << zshText(option.description) << ']'
                << (option.value.empty() ? "" : ':' + zshText(option.value) + ":_files") << '\'';
    }
    out << " ;;\n";
}

} // namespace

void writeBashCompletion(const CLI::App& program, std::ostream& out)
{
    const auto commands = describeCommands(program);
    out << "# Completion of megset for bash.\n"
           "_megset()\n{\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} words\n"
           "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
        << "        COMPREPLY=($(compgen -W \"" << commandNames(commands) << ' ' << namesOf(describe(program))
        << "\" -- \"$word\"))\n        return\n    fi\n"
        << "    case ${COMP_WORDS[1]} in\n";
    for (const CommandEntry& command : commands)
        out << "    " << command.name << ") words=\"" << namesOf(command) << "\" ;;\n";
    out << "    *) words= ;;\n    esac\n"
           "    case $word in\n"
           "    -*) COMPREPLY=($(compgen -W \"$words\" -- \"$word\")) ;;\n"
           "    *) COMPREPLY=($(compgen -f -- \"$word\")) ;;\n"
           "    esac\n}\n"
           "complete -o filenames -F _megset megset\n";
}

void writeZshCompletion(const CLI::App& program, std::ostream& out)
{
    const auto commands = describeCommands(program);
    out << "#compdef megset\n# Completion of megset for zsh.\n"
           "_megset()\n{\n    local -a commands\n    commands=(\n";
    for (const CommandEntry& command : commands)
        out << "        '" << command.name << ':' << zshText(command.description) << "'\n";
    out << "    )\n    if (( CURRENT == 2 )); then\n        _describe command commands\n        return\n    fi\n"
           "    local command=$words[2]\n    shift words\n    (( CURRENT-- ))\n    case $command in\n";
    for (const CommandEntry& command : commands)
        writeZshOptions(command, out);
    out << "    esac\n}\n_megset \"$@\"\n";
}

} // namespace megset::cli
