#include "apps/cli/inspect/inspect.h"
#include "apps/cli/commands.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/manual/numberChecks.h"

#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct InspectArguments
{
    std::string file;
    InspectOptions options;
};

void inspect(const InspectArguments& arguments)
{
    const TreeReport report = inspectFile(arguments.file, arguments.options, std::cout);
    std::cout.flush();
    if (!report.faults.empty())
        throw std::runtime_error(shownPath(arguments.file) + ": " + describeFaults(report));
}

} // namespace

void addInspect(CLI::App& program)
{
    auto arguments = std::make_shared<InspectArguments>();
    CLI::App* const command = program.add_subcommand(
        "inspect",
        "Show the records and fields of a file with their offsets, and where a broken file ends making sense");
    command->add_option("FILE", arguments->file, "A file of a dataset, a trial, an acquisition, or any other record")
        ->required();
    command->add_flag("--json", arguments->options.json, "Write the tree as a JSON object");
    command->add_option("--depth", arguments->options.limits.depth, "Levels shown below the record (default: all)")
        ->check(wholeNumber(0));
    command
        ->add_option("--max-list", arguments->options.limits.list,
                     "Entries of a list that are shown; 0 for all (default: 16)")
        ->check(wholeNumber(0));
    command->footer("Example:\n  megset inspect run_ImportTrial0.trl --depth 1");
    command->callback([arguments] { inspect(*arguments); });
}

} // namespace megset::cli
