#include "apps/cli/commands.h"

#include <exception>
#include <iostream>

namespace {

enum ExitCode
{
    Done = 0,
    Failed = 1,
    WrongUsage = 2
};

void addCommands(CLI::App& program)
{
    megset::cli::addVersion(program);
    megset::cli::addDemo(program);
    megset::cli::addImport(program);
    megset::cli::addInspect(program);
    megset::cli::addInfo(program);
    megset::cli::addCheck(program);
    megset::cli::addExport(program);
    megset::cli::addMeasure(program);
    megset::cli::addTriggers(program);
    megset::cli::addMarks(program);
    megset::cli::addBlank(program);
    megset::cli::addSpectrum(program);
    megset::cli::addPhantom(program);
    megset::cli::addGradient(program);
    megset::cli::addResample(program);
    megset::cli::addMontage(program);
    megset::cli::addChannels(program);
    megset::cli::addHead(program);
    megset::cli::addElectrodes(program);
    megset::cli::addSeeg(program);
    megset::cli::addArray(program);
    megset::cli::addRestore(program);
    megset::cli::addLayout(program);
    megset::cli::addManual(program);
}

int runCommand(CLI::App& program, int argc, char** argv)
{
    try {
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
        std::cerr << "megset: " << fault.what() << '\n';
        return Failed;
    }
}
