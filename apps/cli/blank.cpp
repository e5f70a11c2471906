#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/dataset/trialSelection.h"
#include "apps/cli/events/blankSegments.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

struct BlankArguments
{
    ChangeArguments change;
    std::vector<std::string> trial;
    bool segments = false;
    bool hold = false;
};

const char* pluralEnd(std::int64_t count)
{
    return count == 1 ? "" : "s";
}

void blankAsTold(const BlankArguments& arguments)
{
    Blanked blanked;
    changeDataset(arguments.change, [&](OpenDataset& open) {
        const auto trials =
            arguments.trial.empty() ? allTrials(open.dataset) : selectTrials(open.dataset, arguments.trial);
        blanked = blankSegments(open, trials, arguments.hold);
    });
    if (blanked.outside > 0)
        std::cerr << "megset: " << blanked.outside << " bad segment" << pluralEnd(blanked.outside)
                  << " outside the trials left out\n";
    std::cout << blanked.segments << " bad segment" << pluralEnd(blanked.segments) << " blanked in " << blanked.trials
              << " trial" << pluralEnd(blanked.trials) << ": " << blanked.samples << " sample"
              << pluralEnd(blanked.samples) << (arguments.hold ? " held at the one before" : " set to 0") << '\n';
}

} // namespace

void addBlank(CLI::App& program)
{
    auto arguments = std::make_shared<BlankArguments>();
    CLI::App* const command = program.add_subcommand("blank", "Blank the bad segments in the samples of all channels");
    addChangeOptions(*command, arguments->change);
    command->add_flag("--segments", arguments->segments, "The bad segments, each in its own trial")->required();
    command->add_flag("--hold", arguments->hold, "Hold the sample before a segment instead of 0");
    command->add_option("--trial", arguments->trial, "Trials N or A:B, counted from 0 (default: all)")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->footer("Example:\n  megset blank run.meg --segments --hold --out blanked.meg");
    command->callback([arguments] { blankAsTold(*arguments); });
}

} // namespace megset::cli
