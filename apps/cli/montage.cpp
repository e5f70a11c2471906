#include "apps/cli/process/montage.h"
#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/manual/numberChecks.h"
#include "apps/cli/process/forEachTrial.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct MontageArguments
{
    ChangeArguments change;
    CommonReference reference;
    std::string bipolar; ///< file
    bool average = false;
    bool show = false;
};

// Runs an operation whose faults are those of a montage file.
template <class Operation>
auto inFile(const std::string& path, Operation operation)
{
    try {
        return operation();
    } catch (const MontageFault& fault) {
        throw std::runtime_error(shownPath(path) + ": " + fault.what());
    }
}

std::vector<MontageLine> readMontageFile(const std::string& path)
{
    if (std::filesystem::is_directory(path))
        throw std::runtime_error(shownPath(path) + ": is a folder, not a montage file");
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error(shownPath(path) + ": can't be read");
    return inFile(path, [&] { return readMontage(file); });
}

void showMontage(const MontageArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.change.dataset, notes);
    const CMDTrialzk* const trial = open->dataset.getCurrentTrialPt();
    if (trial == nullptr)
        throw std::runtime_error(shownPath(arguments.change.dataset) + ": its current trial can't be read");
    for (const std::string& line : describeProcessing(*trial))
        std::cout << line << '\n';
}

void applyMontage(const MontageArguments& arguments)
{
    if (arguments.show)
        return showMontage(arguments);
    const auto lines = arguments.bipolar.empty() ? std::vector<MontageLine>() : readMontageFile(arguments.bipolar);
    int channels = 0;
    changeDataset(arguments.change, [&](OpenDataset& open) {
        forEachTrial(open, "Montage", [&](CMDTrialzk& trial) {
            channels = lines.empty() ? applyCommonReference(trial, arguments.reference)
                                     : inFile(arguments.bipolar, [&] { return applyMontageLines(trial, lines); });
        });
    });
    std::cout << channels << (channels == 1 ? " channel" : " channels") << " re-referenced\n";
}

} // namespace

void addMontage(CLI::App& program)
{
    auto arguments = std::make_shared<MontageArguments>();
    CLI::App* const command = program.add_subcommand("montage", "Refer channels to others, or show what was done");
    addChangeOptions(*command, arguments->change);
    CLI::Option_group* const kinds = command->add_option_group("montage");
    CLI::Option* const reference =
        kinds->add_option("--reference", arguments->reference.references, "One reference for all: NAME[=WEIGHT],...")
            ->delimiter(',')
            ->allow_extra_args(false);
    kinds->add_flag("--average", arguments->average, "The mean of all EEG measure channels as the reference");
    kinds->add_option("--bipolar", arguments->bipolar,
                      "File of lines \"TARGET = REF\" or \"TARGET = W1*REF1 + W2*REF2 / D\"");
    kinds->add_flag("--show", arguments->show, "Tell gradient orders, re-sampling and montage of the current trial");
    kinds->require_option(1);
    command->add_option("--divisor", arguments->reference.divisor, "What the sum of the references is divided by")
        ->check(numberAboveZero())
        ->needs(reference);
    command
        ->add_option("--channels", arguments->reference.channels,
                     "Channels to re-reference (default: all EEG measure channels)")
        ->delimiter(',');
    command->footer("Example:\n  megset montage run.meg --reference A1,A2 --divisor 2 --out ears.meg");
    command->callback([arguments] { applyMontage(*arguments); });
}

} // namespace megset::cli
