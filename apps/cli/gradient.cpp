#include "apps/cli/commands.h"
#include "apps/cli/process/gradientOrder.h"

#include <iostream>
#include <memory>

namespace megset::cli {

namespace {

struct GradientArguments
{
    ChangeArguments change;
    GradientRequest request;
};

void reduceAndTell(const GradientArguments& arguments)
{
    const GradientResult result = reduceNoise(arguments.change, arguments.request);
    std::cout << "order " << arguments.request.order << ": " << result.reduced
              << (result.reduced == 1 ? " channel" : " channels");
    if (result.unreduced > 0)
        std::cout << "; " << result.unreduced
                  << (result.unreduced == 1 ? " MEG channel has no coefficients for it and is at order 0"
                                            : " MEG channels have no coefficients for it and are at order 0");
    std::cout << '\n';
}

} // namespace

void addGradient(CLI::App& program)
{
    auto arguments = std::make_shared<GradientArguments>();
    CLI::App* const command =
        program.add_subcommand("gradient", "Reduce distant noise by the reference channels, in all trials");
    addChangeOptions(*command, arguments->change);
    GradientRequest& request = arguments->request;
    command->add_option("--order", request.order, "Gradient order, 0 (none) to 3")->required()->check(CLI::Range(0, 3));
    command->add_flag("--ideal", request.ideal, "Coefficients of ideal sensors, not the measured ones");
    command->add_flag("--adaptive", request.adaptive, "Coefficients adapted to the recording's noise");
    command->footer("Example:\n  megset gradient run.meg --order 3 --out clean.meg");
    command->callback([arguments] { reduceAndTell(*arguments); });
}

} // namespace megset::cli
