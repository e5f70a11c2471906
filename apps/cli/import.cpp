#include "apps/cli/commands.h"
#include "apps/cli/import/importRecording.h"

#include <iostream>
#include <memory>

namespace megset::cli {

void addImport(CLI::App& program)
{
    auto arguments = std::make_shared<ImportArguments>();
    CLI::App* const command =
        program.add_subcommand("import", "Make a dataset of a recording: of a CTF system, or an acquisition");
    command
        ->add_option("SOURCE", arguments->source,
                     "Folder of a CTF recording (.ds), or dataset of an acquisition (.mega)")
        ->required();
    command->add_option("DEST", arguments->target, "Dataset to make (.meg); its trials go beside it")->required();
    command->add_option("--session", arguments->session,
                        "Name of the session (default: that of DEST, or of the acquisition)");
    command->add_flag("--force", arguments->force, "Replace a dataset that exists");
    command->footer("Example:\n  megset import run.ds run.meg");
    command->callback([arguments] {
        const ImportSummary summary = importRecording(*arguments);
        for (const std::string& warning : summary.warnings)
            std::cerr << "megset: " << warning << '\n';
        std::cout << arguments->target << ": " << summary.trials << (summary.trials == 1 ? " trial" : " trials") << ", "
                  << summary.channels << (summary.channels == 1 ? " channel, " : " channels, ") << summary.samples
                  << " samples\n";
    });
}

} // namespace megset::cli
