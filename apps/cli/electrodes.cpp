#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/dataset/chosenTrials.h"
#include "apps/cli/electrodes/changeElectrodes.h"
#include "apps/cli/electrodes/electrodeList.h"
#include "apps/cli/inspect/fileTag.h"

#include <iostream>
#include <memory>
#include <string>

namespace megset::cli {

namespace {

struct ElectrodesArguments
{
    ChangeArguments change;
    std::string save;
    std::string open;
    std::string table = "std21";
    bool standard = false;
    bool all = false;
    bool json = false;
};

const char* trialsInWords(const ElectrodesArguments& arguments)
{
    return arguments.all ? "all trials" : "the current trial";
}

void saveElectrodeFile(const ElectrodesArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.change.dataset, notes);
    std::cout << shownPath(saveElectrodes(*open, arguments.save)) << ": electrodes of trial "
              << open->dataset.getCurrentTrialIndx() << '\n';
}

void openElectrodeFile(const ElectrodesArguments& arguments)
{
    const std::filesystem::path file = std::filesystem::absolute(arguments.open); // the library changes the folder
    checkElectrodeFile(file);
    OpenedElectrodes result;
    changeDataset(arguments.change, [&](OpenDataset& open) { result = openElectrodes(open, file, arguments.all); });
    std::cout << result.given << " electrodes to " << trialsInWords(arguments);
    if (result.dropped > 0)
        std::cout << "; " << result.dropped << " of the file have no channel";
    std::cout << '\n';
}

void placeAtStandard(const ElectrodesArguments& arguments)
{
    PlacedElectrodes result;
    changeDataset(arguments.change,
                  [&](OpenDataset& open) { result = placeElectrodes(open, arguments.table, arguments.all); });
    for (const std::string& name : result.missed)
        std::cerr << "megset: there is no standard place for " << name << '\n';
    std::cout << result.placed << " electrodes at their standard places in " << trialsInWords(arguments) << '\n';
}

void showElectrodes(const ElectrodesArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.change.dataset, notes);
    const auto electrodes = listElectrodes(currentTrial(*open));
    if (arguments.json)
        writeElectrodeJson(electrodes, open->dataset.getCurrentTrialIndx(), std::cout);
    else
        writeElectrodeText(electrodes, std::cout);
}

void runElectrodes(const ElectrodesArguments& arguments)
{
    if (arguments.all && arguments.open.empty() && !arguments.standard)
        throw CLI::ValidationError("--all", "goes with --open or --standard");
    if (!arguments.save.empty())
        return saveElectrodeFile(arguments);
    if (!arguments.open.empty())
        return openElectrodeFile(arguments);
    if (arguments.standard)
        return placeAtStandard(arguments);
    showElectrodes(arguments);
}

} // namespace

void addElectrodes(CLI::App& program)
{
    auto arguments = std::make_shared<ElectrodesArguments>();
    CLI::App* const command =
        program.add_subcommand("electrodes", "List EEG electrodes, save or open them, or take their standard places");
    addChangeOptions(*command, arguments->change);
    CLI::Option_group* const actions = command->add_option_group("action", "without one, the list");
    actions->add_option("--save", arguments->save, "Write the electrodes of the current trial to a new file (.epos)");
    actions->add_option("--open", arguments->open, "Take the electrodes of a file (.epos)");
    CLI::Option* const standard = actions->add_flag("--standard", arguments->standard,
                                                    "Put the electrodes to the standard places of their names");
    actions->add_flag("--json", arguments->json, "Write the list as a JSON object");
    actions->require_option(0, 1);
    command->add_flag("--all", arguments->all, "Change all trials, not the current one alone");
    command->add_option("--table", arguments->table, "Table of standard places that is asked first")
        ->check(CLI::IsMember(electrodeTables()))
        ->needs(standard)
        ->capture_default_str();
    command->footer("Example:\n  megset electrodes run.meg --standard --all --out placed.meg");
    command->callback([arguments] { runElectrodes(*arguments); });
}

} // namespace megset::cli
