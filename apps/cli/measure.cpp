#include "apps/cli/commands.h"
#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/manual/numberChecks.h"
#include "apps/cli/measure/measureChannels.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

struct MeasureArguments
{
    std::string dataset;
    MeasureOptions options;
    bool json = false;
};

void measure(const MeasureArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.dataset, notes);
    const Measurement measurement = measureChannels(*open, arguments.options);
    if (arguments.json)
        writeJson(measurement, std::cout);
    else
        writeText(measurement, std::cout);
}

} // namespace

void addMeasure(CLI::App& program)
{
    auto arguments = std::make_shared<MeasureArguments>();
    CLI::App* const command =
        program.add_subcommand("measure", "Tell minimum, mean, maximum, rms and deviation of channels");
    command->add_option("DATASET", arguments->dataset, "A dataset file (.meg)")->required();
    MeasureOptions& options = arguments->options;
    CLI::Option* const channels =
        command->add_option("--channels", options.channels, "Names of channels, separated by commas")->delimiter(',');
    command->add_option("--kind", options.kind, "All channels of a kind")
        ->check(CLI::IsMember(channelKinds()))
        ->capture_default_str()
        ->excludes(channels);
    command->add_option("--trial", options.trial, "A trial, counted from 0 (default: the current one)")
        ->check(wholeNumber(0));
    CLI::Option* const samples =
        command->add_option("--samples", options.samples, "Samples A:B, both included (default: all)");
    command->add_option("--ms", options.ms, "Times A:B in ms from the trigger")->excludes(samples);
    command->add_flag("--json", arguments->json, "Write a JSON object");
    command->footer("Example:\n  megset measure run.meg --kind meg --ms 80:120");
    command->callback([arguments] { measure(*arguments); });
}

} // namespace megset::cli
