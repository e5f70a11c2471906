#include "apps/cli/commands.h"
#include "apps/cli/dataset/DatasetInfo.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

struct InfoArguments
{
    std::string dataset;
    bool json = false;
};

void showInfo(const InfoArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.dataset, notes);
    for (const std::string& message : notes.messages)
        std::cerr << "megset: " << message << '\n';
    const DatasetInfo info = collectInfo(*open);
    if (arguments.json)
        writeJson(info, std::cout);
    else
        writeText(info, std::cout);
}

} // namespace

void addInfo(CLI::App& program)
{
    auto arguments = std::make_shared<InfoArguments>();
    CLI::App* const command =
        program.add_subcommand("info", "Tell a dataset's session, trials, channels, rate, marks and sizes");
    command->add_option("DATASET", arguments->dataset, "A dataset file (.meg)")->required();
    command->add_flag("--json", arguments->json, "Write a JSON object");
    command->footer("Example:\n  megset info run.meg --json");
    command->callback([arguments] { showInfo(*arguments); });
}

} // namespace megset::cli
