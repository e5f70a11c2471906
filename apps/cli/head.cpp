#include "apps/cli/commands.h"
#include "apps/cli/dataset/workFrame.h"
#include "apps/cli/process/moveFrame.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

struct HeadArguments
{
    ChangeArguments change;
    std::string frame;
};

void moveAndTell(const HeadArguments& arguments)
{
    const FrameResult result = moveToFrame(arguments.change, arguments.frame);
    std::cout << "frame " << arguments.frame << ": " << result.moved << " sensors";
    if (result.stayed > 0)
        std::cout << "; " << result.stayed << " have no place there and stay where they are";
    std::cout << '\n';
}

} // namespace

void addHead(CLI::App& program)
{
    auto arguments = std::make_shared<HeadArguments>();
    CLI::App* const command = program.add_subcommand("head", "Choose the frame that sensors work in, in all trials");
    addChangeOptions(*command, arguments->change);
    command->add_option("--frame", arguments->frame, "Frame that the places of sensors are in")
        ->required()
        ->check(CLI::IsMember(frameNames()));
    command->footer("Example:\n  megset head run.meg --frame dewar --out dewar.meg");
    command->callback([arguments] { moveAndTell(*arguments); });
}

} // namespace megset::cli
