#include "apps/phantom/phantom.h"
#include "apps/cli/commands.h"
#include "apps/cli/manual/numberChecks.h"
#include "apps/phantom/acquisition.h"

#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct PhantomArguments
{
    std::string target;
    bool acquisition = false;
    phantom::PhantomOptions options;
};

void writePhantom(const PhantomArguments& arguments)
{
    try {
        const phantom::PhantomReport report = arguments.acquisition
                                                  ? phantom::writeAcquisition(arguments.target, arguments.options)
                                                  : phantom::writePhantom(arguments.target, arguments.options);
        std::cout << arguments.target << ": " << report.plan.trials
                  << (report.plan.trials == 1 ? " trial, " : " trials, ") << report.channels << " channels, "
                  << report.plan.samples << " samples at " << arguments.options.rate << " Hz, "
                  << report.plan.stimuli.size() << (report.plan.stimuli.size() == 1 ? " stimulus\n" : " stimuli\n");
    } catch (const std::invalid_argument& fault) {
        // What was asked for can't be: wrong usage.
        throw CLI::ValidationError(fault.what(), CLI::ExitCodes::ValidationError);
    }
}

} // namespace

void addPhantom(CLI::App& program)
{
    auto arguments = std::make_shared<PhantomArguments>();
    phantom::PhantomOptions& options = arguments->options;
    CLI::App* const command = program.add_subcommand(
        "phantom",
        "Write a simulated recording, CTF or acquisition: stimuli, answers, alpha rhythm, noise, interference");
    command
        ->add_option("DEST", arguments->target,
                     "The new folder, whose name ends with .ds; with --acquisition a file, which ends with .mega")
        ->required();
    command->add_flag("--acquisition", arguments->acquisition,
                      "Write an acquisition: a dataset .mega, and a .trla for each trial beside it");
    command->add_option("--trials", options.trials, "Number of trials")->check(wholeNumber())->capture_default_str();
    command->add_option("--seconds", options.seconds, "Length of a trial")
        ->check(finiteNumber())
        ->capture_default_str();
    command->add_option("--rate", options.rate, "Samples a second")->check(finiteNumber())->capture_default_str();
    command->add_option("--channels", options.channels, "Number of gradiometers, up to 275")
        ->check(wholeNumber())
        ->capture_default_str();
    command->add_option("--seed", options.seed, "Another number makes another recording")
        ->check(wholeNumber(0))
        ->capture_default_str();
    command->footer("Example:\n  megset phantom test.ds --trials 20 --seed 2");
    command->callback([arguments] { writePhantom(*arguments); });
}

} // namespace megset::cli
