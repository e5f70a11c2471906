#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/dataset/trialSelection.h"
#include "apps/cli/events/changeMarks.h"

#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct MarksArguments
{
    ChangeArguments change;
    bool list = false;
    std::string add;                ///< name
    std::string remove;             ///< name
    std::vector<std::string> bad;   ///< places
    std::vector<std::string> at;    ///< places
    std::vector<std::string> trial; ///< as selectTrials takes them
    std::vector<std::string> lists;
    std::string name;
    bool json = false;
};

void tellMarks(const MarkList& list, bool asJson, const std::string& what)
{
    if (asJson)
        return writeJson(list, std::cout);
    const std::size_t trials = list.trials();
    std::cout << list.marks.size() << what << " in " << trials << (trials == 1 ? " trial" : " trials") << '\n';
}

std::string thingsMarked(const MarkList& list, const char* one)
{
    return std::string(" ") + one + (list.marks.size() == 1 ? "" : "s");
}

void listAll(const MarksArguments& arguments)
{
    if (arguments.change.inPlace || !arguments.change.out.empty() || !arguments.at.empty())
        throw std::runtime_error("say what to change: --add, --bad-segment or --remove");
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.change.dataset, notes, LookAt::DatasetAlone);
    MarkFilter filter{arguments.lists, std::nullopt, selectTrials(open->dataset, arguments.trial)};
    if (!arguments.name.empty())
        filter.name = arguments.name;
    const MarkList marks = listMarks(open->dataset, filter);
    if (!arguments.json)
        writeText(marks, std::cout);
    tellMarks(marks, arguments.json, thingsMarked(marks, "mark"));
}

MarkList changeAsTold(OpenDataset& open, const MarksArguments& arguments)
{
    const std::vector<int> trials = selectTrials(open.dataset, arguments.trial);
    if (!arguments.bad.empty())
        return addBadSegments(open, {arguments.bad, trials});
    const MarkPlaces at{arguments.at, trials};
    return arguments.add.empty() ? removeMarks(open, arguments.lists, arguments.remove, at)
                                 : addHandMarks(open, arguments.add, at);
}

void changeMarks(const MarksArguments& arguments)
{
    MarkList marks;
    changeDataset(arguments.change, [&](OpenDataset& open) { marks = changeAsTold(open, arguments); });
    tellMarks(marks, arguments.json,
              !arguments.bad.empty()   ? thingsMarked(marks, "bad segment") + " added"
              : !arguments.add.empty() ? thingsMarked(marks, "mark") + " added"
                                       : thingsMarked(marks, "mark") + " removed");
}

} // namespace

void addMarks(CLI::App& program)
{
    auto arguments = std::make_shared<MarksArguments>();
    CLI::App* const command = program.add_subcommand("marks", "List, add and remove triggers, marks and bad segments");
    addChangeOptions(*command, arguments->change);
    const auto isNamed = [](const std::string& name) { return name.empty() ? "a marker needs a name" : ""; };
    CLI::Option_group* const actions = command->add_option_group("action");
    CLI::Option* const listing =
        actions->add_flag("--list", arguments->list, "List the marks (also without any of these)");
    CLI::Option* const add = actions->add_option("--add", arguments->add, "Add marks of this name")->check(isNamed);
    CLI::Option* const bad =
        actions
            ->add_option("--bad-segment", arguments->bad,
                         "Add a bad segment: samples A:B, both included, or A:Bms from the trigger")
            ->allow_extra_args(false);
    CLI::Option* const remove =
        actions->add_option("--remove", arguments->remove, "Remove the marks of this name")->check(isNamed);
    actions->require_option(0, 1);
    CLI::Option* const at =
        command->add_option("--at", arguments->at, "Where: sample A, samples A:B, or Ams, A:Bms from the trigger")
            ->allow_extra_args(false)
            ->excludes(listing)
            ->excludes(bad);
    add->needs(at);
    command
        ->add_option("--trial", arguments->trial,
                     "Trials N or A:B, counted from 0 (default: the current one to add, all to list and remove)")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_option("--of", arguments->lists, "Look in these lists only")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember(markLists()))
        ->excludes(add)
        ->excludes(bad);
    command->add_option("--name", arguments->name, "List the marks of this name")
        ->excludes(add)
        ->excludes(bad)
        ->excludes(remove);
    command->add_flag("--json", arguments->json, "Write a JSON object");
    command->footer("Example:\n  megset marks run.meg --bad-segment 80:120ms --trial 3,5:7 --in-place");
    command->callback([arguments] {
        const bool isListing = arguments->add.empty() && arguments->bad.empty() && arguments->remove.empty();
        isListing ? listAll(*arguments) : changeMarks(*arguments);
    });
}

} // namespace megset::cli
