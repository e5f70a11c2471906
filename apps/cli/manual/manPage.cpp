#include "apps/cli/manual/commandList.h"
#include "apps/cli/manual/manual.h"
#include "megset/platform/version.h"

#include <ostream>

namespace megset::cli {

namespace {

// Text for roff: backslashes and dashes as they stand, and no line that begins as a command.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else if ((c == '.' || c == '\'') && (result.empty() || result.back() == '\n'))
            result += std::string("\\&") + c;
        else
            result += c;
    }
    return result;
}

std::string headOf(const OptionEntry& option)
{
    std::string head;
    for (const std::string& name : option.names)
        head += (head.empty() ? "\\fB" : ", \\fB") + escaped(name) + "\\fR";
    if (!option.value.empty())
        head += (head.empty() ? "\\fI" : " \\fI") + escaped(option.value) + "\\fR";
    return head;
}

void writeOptions(const CommandEntry& command, std::ostream& out)
{
    for (const OptionEntry& option : command.options)
        out << ".TP\n" << headOf(option) << '\n' << escaped(option.description) << '\n';
}

void writeCommand(const CommandEntry& command, std::ostream& out)
{
    out << ".SS " << escaped(command.name) << '\n' << escaped(command.description) << ".\n";
    writeOptions(command, out);
    if (!command.footer.empty())
        out << ".PP\n.nf\n" << escaped(command.footer) << "\n.fi\n";
}

} // namespace

void writeManPage(const CLI::App& program, std::ostream& out)
{
    const CommandEntry self = describe(program);
    out << ".TH MEGSET 1 \"\" \"megset " << escaped(std::string(version())) << "\" \"User commands\"\n"
        << ".SH NAME\nmegset \\- " << escaped(self.description) << '\n'
        << ".SH SYNOPSIS\n.B megset\n.I COMMAND\n[\\fIOPTION\\fR]...\n.SH OPTIONS\n";
    writeOptions(self, out);
    out << ".SH COMMANDS\n";
    for (const CommandEntry& command : describeCommands(program))
        writeCommand(command, out);
    out << ".SH EXIT STATUS\n.TP\n0\nthe command did its work\n.TP\n1\nit failed\n.TP\n2\nit was called wrongly\n";
}

} // namespace megset::cli
