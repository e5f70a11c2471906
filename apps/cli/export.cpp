#include "apps/cli/commands.h"
#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/export/exportSamples.h"
#include "apps/cli/manual/numberChecks.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

struct ExportArguments
{
    std::string dataset;
    std::string npy;
    std::string text;
    ExportOptions options;
};

void exportDataset(const ExportArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.dataset, notes);
    const bool asNpy = !arguments.npy.empty();
    const ExportedShape shape = asNpy ? exportNpy(*open, arguments.options, arguments.npy)
                                      : exportText(*open, arguments.options, arguments.text);
    std::cout << (asNpy ? arguments.npy : arguments.text) << ": " << shape.channels
              << (shape.channels == 1 ? " channel x " : " channels x ") << shape.samples
              << (shape.samples == 1 ? " sample\n" : " samples\n");
}

} // namespace

void addExport(CLI::App& program)
{
    auto arguments = std::make_shared<ExportArguments>();
    CLI::App* const command = program.add_subcommand("export", "Write samples for other tools");
    command->add_option("DATASET", arguments->dataset, "A dataset file (.meg)")->required();
    CLI::Option_group* const target = command->add_option_group("target");
    target->add_option("--npy", arguments->npy, "NumPy file of channels x samples, float64, fT and uV");
    target->add_option("--txt", arguments->text, "Text file of a line for each sample, separated by tabs");
    target->require_option(1);
    ExportOptions& options = arguments->options;
    command->add_option("--trial", options.trial, "One trial, counted from 0 (default: all, end to end)")
        ->check(wholeNumber(0));
    CLI::Option* const channels =
        command->add_option("--channels", options.channels, "Names of channels, separated by commas")->delimiter(',');
    command->add_option("--kind", options.kind, "All channels of a kind (default: all)")
        ->check(CLI::IsMember(channelKinds()))
        ->excludes(channels);
    command->add_option("--samples", options.samples, "Samples A:B of each trial, both ends included (default: all)");
    command->add_flag("--raw", options.raw, "The samples as recorded, before all processing");
    command->footer("Example:\n  megset export run.meg --kind meg --npy run.npy");
    command->callback([arguments] { exportDataset(*arguments); });
}

} // namespace megset::cli
