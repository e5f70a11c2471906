#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/dataset/chosenTrials.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/manual/numberChecks.h"
#include "apps/cli/seeg/changeProbes.h"
#include "apps/cli/seeg/probeList.h"

#include <iostream>
#include <memory>
#include <optional>

namespace megset::cli {

namespace {

struct SeegArguments
{
    ChangeArguments change;
    NewProbe probe; // that is added; its name is empty when none is
    std::string base;
    std::string tip;
    std::optional<int> contacts;
    std::optional<double> distance;
    std::vector<std::string> assignments;
    std::string remove;
    std::string save;
    std::string open;
    bool list = false;
    bool all = false;
    bool json = false;

    bool changes() const { return !probe.name.empty() || !assignments.empty() || !remove.empty() || !open.empty(); }
};

void changeProbes(const SeegArguments& arguments, const std::function<void(CMDTrialzk&)>& change)
{
    changeDataset(arguments.change,
                  [&](OpenDataset& open) { forChosenTrials(open, arguments.all, "SEEG probes", change); });
}

void addNewProbe(const SeegArguments& arguments)
{
    NewProbe probe = arguments.probe;
    if (probe.type != probeTypes()[CSeegProbe::userMode] && (arguments.contacts || arguments.distance))
        throw CLI::ValidationError("--type", "a probe of the type " + probe.type + " has contacts of its own");
    probe.contacts = arguments.contacts.value_or(probe.contacts);
    probe.distance = arguments.distance.value_or(probe.distance);
    probe.base = parsePlace(arguments.base);
    probe.tip = parsePlace(arguments.tip);
    int contacts = 0;
    changeProbes(arguments, [&](CMDTrialzk& trial) { contacts = addProbe(trial, probe); });
    std::cout << "probe " << probe.name << ": " << contacts << " contacts\n";
}

void assignChannels(const SeegArguments& arguments)
{
    std::vector<Assignment> assignments;
    for (const std::string& text : arguments.assignments)
        assignments.push_back(parseAssignment(text));
    changeProbes(arguments, [&](CMDTrialzk& trial) { assignContacts(trial, assignments); });
    std::cout << assignments.size() << (assignments.size() == 1 ? " contact" : " contacts") << " assigned\n";
}

void removeNamedProbe(const SeegArguments& arguments)
{
    changeProbes(arguments, [&](CMDTrialzk& trial) { removeProbe(trial, arguments.remove); });
    std::cout << "probe " << arguments.remove << " removed\n";
}

void openProbeFile(const SeegArguments& arguments)
{
    const std::filesystem::path file = std::filesystem::absolute(arguments.open); // the library changes the folder
    checkProbeFile(file);
    int probes = 0;
    changeDataset(arguments.change, [&](OpenDataset& open) { probes = openProbes(open, file, arguments.all); });
    std::cout << probes << " probes to " << (arguments.all ? "all trials\n" : "the current trial\n");
}

void saveProbeFile(const SeegArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.change.dataset, notes);
    std::cout << shownPath(saveProbes(*open, arguments.save)) << ": probes of trial "
              << open->dataset.getCurrentTrialIndx() << '\n';
}

void showProbes(const SeegArguments& arguments)
{
    ReadingNotes notes;
    const auto open = openDatasetToLook(arguments.change.dataset, notes);
    if (arguments.json)
        writeProbeJson(currentTrial(*open), open->dataset.getCurrentTrialIndx(), std::cout);
    else
        writeProbeText(currentTrial(*open), std::cout);
}

void runSeeg(const SeegArguments& arguments)
{
    if (arguments.all && !arguments.changes())
        throw CLI::ValidationError("--all", "goes with what changes probes");
    if (arguments.json && (arguments.changes() || !arguments.save.empty()))
        throw CLI::ValidationError("--json", "goes with the list");
    if (!arguments.probe.name.empty())
        return addNewProbe(arguments);
    if (!arguments.assignments.empty())
        return assignChannels(arguments);
    if (!arguments.remove.empty())
        return removeNamedProbe(arguments);
    if (!arguments.open.empty())
        return openProbeFile(arguments);
    if (!arguments.save.empty())
        return saveProbeFile(arguments);
    showProbes(arguments);
}

void addProbeOptions(CLI::App& command, SeegArguments& arguments, CLI::Option* add)
{
    CLI::Option* const base = command.add_option("--base", arguments.base, "X,Y,Z outside the head, mm")->needs(add);
    CLI::Option* const tip = command.add_option("--tip", arguments.tip, "X,Y,Z inside the head, mm")->needs(add);
    add->needs(base)->needs(tip);
    CLI::Option* const type = command.add_option("--type", arguments.probe.type, "Contacts of a model, or user")
                                  ->check(CLI::IsMember(probeTypes()))
                                  ->needs(add)
                                  ->capture_default_str();
    command.add_option("--contacts", arguments.contacts, "Number of contacts of the type user (default: 2)")
        ->check(CLI::Range(1, int{CSeegProbe::maxContacts}))
        ->needs(type);
    command.add_option("--distance", arguments.distance, "From contact to contact of the type user, mm (default: 3.5)")
        ->check(numberAboveZero())
        ->needs(type);
}

} // namespace

void addSeeg(CLI::App& program)
{
    auto arguments = std::make_shared<SeegArguments>();
    CLI::App* const command =
        program.add_subcommand("seeg", "List depth probes, add them, and tie contacts to channels");
    addChangeOptions(*command, arguments->change);
    CLI::Option_group* const actions = command->add_option_group("action");
    actions->add_flag("--list", arguments->list, "Tell the probes of the current trial with their contacts");
    const CLI::Validator someName([](const std::string& text) { return std::string(text.empty() ? "no name" : ""); },
                                  "NAME");
    CLI::Option* const add =
        actions->add_option("--add", arguments->probe.name, "Name of a new probe")->check(someName);
    actions
        ->add_option("--assign", arguments->assignments,
                     "PROBE:CONTACT=CHANNEL,...: the channels that record contacts, numbered from 1 at the tip")
        ->delimiter(',')
        ->allow_extra_args(false);
    actions->add_option("--remove", arguments->remove, "Name of a probe that goes");
    actions->add_option("--save", arguments->save, "Write the probes of the current trial to a new file (.seeg)");
    actions->add_option("--open", arguments->open, "Take the probes of a file (.seeg) for those that are there");
    actions->require_option(1);
    command->add_flag("--all", arguments->all, "Change all trials, not the current one alone");
    command->add_flag("--json", arguments->json, "Write the list as a JSON object");
    addProbeOptions(*command, *arguments, add);
    command->footer("Example:\n  megset seeg run.meg --add A --base 60,40,0 --tip 25,35,0 --type 8P --in-place\n"
                    "  megset seeg run.meg --assign A:1=SEEG01,A:2=SEEG02 --in-place");
    command->callback([arguments] { runSeeg(*arguments); });
}

} // namespace megset::cli
