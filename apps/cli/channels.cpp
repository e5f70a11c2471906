#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/dataset/channelSelection.h"

#include <iostream>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

struct ChannelsArguments
{
    ChangeArguments change;
    std::vector<std::string> good;
    std::vector<std::string> bad;
    std::vector<std::string> show;
    std::vector<std::string> hide;
    std::vector<std::string> select;
};

// The switches of the dataset, with the channels of its current trial.
class Switches
{
public:
    explicit Switches(CMEGDatazk& dataset) : m_dataset(dataset)
    {
        const CMDTrialzk* const trial = dataset.getTrialzk(-1);
        if (trial == nullptr || !dataset.checkInitChnlParam(trial))
            throw std::runtime_error("the dataset has no channels");
        m_trial = trial;
    }

    // Calls `set` for each channel named; all names are looked up before the first is switched.
    template <class Set>
    int forEach(const std::vector<std::string>& names, Set set)
    {
        const std::vector<int> channels = names.empty() ? std::vector<int>() : selectChannels(*m_trial, names, "all");
        for (const int channel : channels)
            set(m_dataset, channel);
        return static_cast<int>(channels.size());
    }

private:
    CMEGDatazk& m_dataset;
    const CMDTrialzk* m_trial = nullptr;
};

int switchChannels(CMEGDatazk& dataset, const ChannelsArguments& arguments)
{
    Switches switches(dataset);
    int count = 0;
    count += switches.forEach(arguments.good, [](CMEGDatazk& data, int i) { data.setGoodChnl4Alltrials(i, 1); });
    count += switches.forEach(arguments.bad, [](CMEGDatazk& data, int i) { data.setGoodChnl4Alltrials(i, 0); });
    count += switches.forEach(arguments.show, [](CMEGDatazk& data, int i) { data.setShowChnl4Alltrials(i, 1); });
    count += switches.forEach(arguments.hide, [](CMEGDatazk& data, int i) { data.setShowChnl4Alltrials(i, 0); });
    if (!arguments.select.empty())
        dataset.setSelectChnl4Alltrials(0, 0, true);
    count +=
        switches.forEach(arguments.select, [](CMEGDatazk& data, int i) { data.setSelectChnl4Alltrials(i, 1, false); });
    return count;
}

} // namespace

void addChannels(CLI::App& program)
{
    auto arguments = std::make_shared<ChannelsArguments>();
    CLI::App* const command = program.add_subcommand("channels", "Switch channels in all trials");
    addChangeOptions(*command, arguments->change);
    CLI::Option_group* const switches = command->add_option_group("switches");
    switches->add_option("--good", arguments->good, "Count these channels as good")->delimiter(',');
    switches->add_option("--bad", arguments->bad, "Count these channels as bad")->delimiter(',');
    switches->add_option("--show", arguments->show, "Show these channels")->delimiter(',');
    switches->add_option("--hide", arguments->hide, "Hide these channels")->delimiter(',');
    switches->add_option("--select", arguments->select, "Select these channels, and no others")->delimiter(',');
    switches->require_option(1, 0);
    command->footer("Example:\n  megset channels run.meg --bad MLT31,MRF22 --in-place");
    command->callback([arguments] {
        int count = 0;
        changeDataset(arguments->change, [&](OpenDataset& open) { count = switchChannels(open.dataset, *arguments); });
        std::cout << count << (count == 1 ? " channel" : " channels") << " switched\n";
    });
}

} // namespace megset::cli
