#include "apps/cli/process/restore.h"
#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/process/forEachTrial.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

void restore(const ChangeArguments& arguments)
{
    int trials = 0;
    changeDataset(arguments, [&](OpenDataset& open) {
        forEachTrial(open, "Restoring", [&](CMDTrialzk& trial) {
            restoreTrial(trial);
            ++trials;
        });
        restoreRecording(open.dataset);
    });
    std::cout << trials << (trials == 1 ? " trial" : " trials") << " as recorded\n";
}

} // namespace

void addRestore(CLI::App& program)
{
    auto arguments = std::make_shared<ChangeArguments>();
    CLI::App* const command =
        program.add_subcommand("restore", "Bring the samples of all trials back to what was recorded");
    addChangeOptions(*command, *arguments);
    command->footer("Example:\n  megset restore clean.meg --in-place");
    command->callback([arguments] { restore(*arguments); });
}

} // namespace megset::cli
