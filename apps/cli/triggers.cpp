#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/events/scanTriggers.h"
#include "apps/cli/inspect/fileTag.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <set>
#include <stdexcept>

namespace megset::cli {

namespace {

struct TriggersArguments
{
    ChangeArguments change;
    TriggerRequest request;
    std::string mode = "plain";
    bool json = false;
    std::string tsv;
};

void writeFile(const std::vector<FoundTrigger>& triggers, const CMEGDatazk& dataset, const std::string& path)
{
    CreatedFiles created;
    created.add(path);
    std::ofstream file(path, std::ios::binary);
    writeTriggerTsv(triggers, dataset, file);
    file.close();
    if (!file)
        throw std::runtime_error(shownPath(path) + ": can't be written");
    created.keep();
}

void scan(const TriggersArguments& arguments)
{
    static const std::vector<std::string> modes = {"plain", "pro", "absdc", "absdcm"};
    TriggerRequest request = arguments.request;
    request.mode = static_cast<int>(std::ranges::find(modes, arguments.mode) - modes.begin());
    const std::string tsv = arguments.tsv.empty()
                                ? ""
                                : std::filesystem::absolute(arguments.tsv).string(); // the library changes the folder
    TriggerFindings found;
    const std::vector<FoundTrigger>& triggers = found.triggers;
    changeDataset(arguments.change, [&](OpenDataset& open) {
        found = scanTriggers(open, request);
        if (!tsv.empty())
            writeFile(triggers, open.dataset, tsv);
    });
    for (const std::string& note : found.notes)
        std::cerr << "megset: " << note << '\n';
    std::set<int> trials;
    for (const FoundTrigger& trigger : triggers)
        trials.insert(trigger.trial);
    if (arguments.json)
        return writeTriggerJson(triggers, std::cout);
    writeTriggerText(triggers, std::cout);
    std::cout << triggers.size() << (triggers.size() == 1 ? " trigger in " : " triggers in ") << trials.size()
              << (trials.size() == 1 ? " trial\n" : " trials\n");
}

} // namespace

void addTriggers(CLI::App& program)
{
    auto arguments = std::make_shared<TriggersArguments>();
    CLI::App* const command = program.add_subcommand("triggers", "Find the stimuli on the trigger channels");
    addChangeOptions(*command, arguments->change);
    command->add_option("--mode", arguments->mode, "How channels are prepared and pulses told apart")
        ->check(CLI::IsMember({"plain", "pro", "absdc", "absdcm"}))
        ->capture_default_str();
    command
        ->add_option("--threshold", arguments->request.threshold,
                     "Level above which a sample counts (default: half the range for plain, 0.5 for the others)")
        ->check([](const std::string& text) { return text.find_first_of("nN") == text.npos ? "" : "is no level"; });
    command->add_option("--prefix", arguments->request.prefix, "First part of the markers' names")
        ->capture_default_str();
    command->add_flag("--keep", arguments->request.keep, "Add to the triggers that are there");
    CLI::Option* const json = command->add_flag("--json", arguments->json, "Write a JSON object");
    command->add_option("--tsv", arguments->tsv, "Table for the Brain Imaging Data Structure")->excludes(json);
    command->footer("Example:\n  megset triggers run.meg --in-place --tsv events.tsv");
    command->callback([arguments] { scan(*arguments); });
}

} // namespace megset::cli
