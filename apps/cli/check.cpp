#include "apps/cli/commands.h"
#include "apps/cli/dataset/checkDataset.h"

#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct CheckArguments
{
    std::string dataset;
    bool json = false;
};

void check(const CheckArguments& arguments)
{
    const CheckReport report = checkDataset(arguments.dataset);
    if (arguments.json)
        writeJson(report, std::cout);
    else
        writeText(report, std::cout);
    if (report.faults() > 0)
        throw std::runtime_error("the dataset is not in order");
}

} // namespace

void addCheck(CLI::App& program)
{
    auto arguments = std::make_shared<CheckArguments>();
    CLI::App* const command =
        program.add_subcommand("check", "Read a dataset and every trial, and list what is wrong; nothing is changed");
    command->add_option("DATASET", arguments->dataset, "A dataset file (.meg)")->required();
    command->add_flag("--json", arguments->json, "Write a JSON object");
    command->footer("Example:\n  megset check run.meg");
    command->callback([arguments] { check(*arguments); });
}

} // namespace megset::cli
