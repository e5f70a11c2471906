#include "apps/cli/commands.h"
#include "apps/cli/dataset/nearestNames.h"
#include "apps/cli/dataset/shownLine.h"
#include "apps/cli/manual/HelpFormatter.h"
#include "apps/cli/manual/usageFault.h"
#include "megset/platform/stopRequest.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>

namespace {

enum ExitCode
{
    Done = 0,
    Failed = 1,
    WrongUsage = 2
};

using AddCommand = void (*)(CLI::App&);

// Adds commands under a heading of the program's help.
void addGroup(CLI::App& program, const char* heading, std::initializer_list<AddCommand> commands)
{
    const std::size_t former = program.get_subcommands({}).size();
    for (const AddCommand add : commands)
        add(program);
    const std::vector<CLI::App*> all = program.get_subcommands({});
    std::for_each(all.begin() + static_cast<std::ptrdiff_t>(former), all.end(),
                  [heading](CLI::App* command) { command->group(heading); });
}

void addCommands(CLI::App& program)
{
    using namespace megset::cli;
    program.formatter(std::make_shared<HelpFormatter>());
    program.footer("megset COMMAND --help tells the options of a command, megset man those of all.\n"
                   "megset demo goes through a session on a simulated recording.");
    program.failure_message(megset::cli::usageFault);
    addVersion(program);
    addGroup(program, "To get a dataset", {&addImport, &addPhantom, &addDemo});
    addGroup(program, "To look at it", {&addInfo, &addCheck, &addInspect, &addLayout});
    addGroup(program, "To work on its samples", {&addGradient, &addResample, &addMontage, &addBlank, &addRestore});
    addGroup(program, "To find and mark events", {&addTriggers, &addMarks});
    addGroup(program, "To change channels and places", {&addChannels, &addHead, &addElectrodes, &addSeeg});
    addGroup(program, "To take results out", {&addMeasure, &addSpectrum, &addExport});
    addGroup(program, "To keep datasets together", {&addArray});
    addGroup(program, "To have help at hand", {&addManual});
}

// The first word names a command or is an option. Throws a CLI::ParseError for any other.
void checkCommand(const CLI::App& program, const std::string& word)
{
    if (word.empty() || word.front() == '-')
        return;
    std::vector<std::pair<std::size_t, std::string>> names;
    for (const CLI::App* command : program.get_subcommands({})) {
        if (command->get_name() == word)
            return;
        names.emplace_back(megset::cli::editDistance(word, command->get_name()), command->get_name());
    }
    throw CLI::ParseError("there is no command " + megset::cli::shownLine(word) + "; the nearest names are " +
                              megset::cli::nearestNames(std::move(names)),
                          CLI::ExitCodes::ExtrasError);
}

int runCommand(CLI::App& program, int argc, char** argv)
{
    try {
        checkCommand(program, argc > 1 ? argv[1] : "");
        program.parse(argc, argv);
    } catch (const CLI::ParseError& stop) {
        // Asking for help or version stops the parsing as an error does, with exit code 0.
        return program.exit(stop) == 0 ? Done : WrongUsage;
    }
    if (program.get_subcommands().empty()) {
        std::cerr << program.help();
        return WrongUsage;
    }
    return Done;
}

// A command that was stopped has cleared up by now; whoever called the program sees what stopped it.
int failed(const char* fault)
{
    const int signal = megset::stopSignal();
    std::cerr << "megset: " << (signal != 0 ? "stopped" : fault) << '\n';
    if (signal != 0)
        megset::endBySignal(signal);
    return Failed;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        CLI::App program("Looks into and works on datasets of MEG and EEG recordings.", "megset");
        addCommands(program);
        const int exitCode = runCommand(program, argc, argv);
        if (!std::cout.flush()) {
            std::cerr << "megset: standard output can't be written\n";
            return Failed;
        }
        return exitCode;
    } catch (const std::exception& fault) {
        return failed(fault.what());
    }
}
