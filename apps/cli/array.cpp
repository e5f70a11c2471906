#include "apps/cli/array/DatasetArray.h"
#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/manual/numberChecks.h"

#include <iostream>
#include <memory>
#include <optional>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

struct ArrayArguments
{
    ChangeArguments change; // its dataset is the array
    std::vector<std::string> add;
    std::optional<int> remove;
    bool list = false;
    bool json = false;
};

// A new array needs no word on where it goes.
bool isNewArray(const ArrayArguments& arguments)
{
    return !arguments.add.empty() && !fs::exists(arguments.change.dataset);
}

// Where the changed array goes. A file that is not the array itself must be new.
fs::path arrayTarget(const ArrayArguments& arguments, CreatedFiles& created)
{
    const ChangeArguments& change = arguments.change;
    const bool isNewFile = !change.out.empty() || (isNewArray(arguments) && !change.inPlace);
    if (!isNewFile && !change.inPlace)
        failWithoutTarget(change.dataset, "array");
    const fs::path target = fs::absolute(change.out.empty() ? change.dataset : change.out);
    if (isNewFile)
        created.add(target);
    return target;
}

void changeArray(const ArrayArguments& arguments)
{
    CreatedFiles created;
    const bool isNew = isNewArray(arguments);
    const fs::path target = arrayTarget(arguments, created);
    const auto array =
        isNew ? std::make_unique<DatasetArray>() : std::make_unique<DatasetArray>(arguments.change.dataset);
    for (const std::string& dataset : arguments.add)
        array->add(dataset);
    if (arguments.remove)
        array->remove(*arguments.remove);
    array->store(target);
    created.keep();
    std::cout << shownPath(target) << ": " << array->size() << (array->size() == 1 ? " dataset\n" : " datasets\n");
}

void runArray(const ArrayArguments& arguments)
{
    if (!arguments.list)
        return changeArray(arguments);
    const DatasetArray array(arguments.change.dataset);
    if (arguments.json)
        array.writeJson(std::cout);
    else
        array.writeText(std::cout);
}

} // namespace

void addArray(CLI::App& program)
{
    auto arguments = std::make_shared<ArrayArguments>();
    CLI::App* const command = program.add_subcommand("array", "Keep several datasets in one file");
    command->add_option("FILE", arguments->change.dataset, "A file of several datasets")->required();
    addTargetOptions(*command, arguments->change, "array");
    CLI::Option_group* const actions = command->add_option_group("action");
    actions->add_option("--add", arguments->add, "Datasets (.meg) to append; a FILE that isn't there is made");
    CLI::Option* const list = actions->add_flag("--list", arguments->list, "Tell the datasets");
    actions->add_option("--remove", arguments->remove, "Index of a dataset that goes, counted from 0")
        ->check(wholeNumber(0));
    actions->require_option(1);
    command->add_flag("--json", arguments->json, "Write the list as a JSON object")->needs(list);
    command->footer("Example:\n  megset array sessions.megarray --add morning.meg evening.meg");
    command->callback([arguments] { runArray(*arguments); });
}

} // namespace megset::cli
