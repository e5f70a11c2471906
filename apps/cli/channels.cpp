#include "apps/cli/commands.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/dataset/channelSelection.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <set>
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
        if (trial == nullptr)
            throw std::runtime_error("its current trial can't be read");
        if (!dataset.checkInitChnlParam(trial))
            throw std::runtime_error("the dataset has no channels");
        m_trial = trial;
    }

    // Nobody asks for both: none is switched then.
    void refuseBoth(const char* one, const std::vector<std::string>& names, const char* other,
                    const std::vector<std::string>& otherNames) const
    {
        const std::vector<int> channels = channelsOf(names);
        for (const int channel : channelsOf(otherNames))
            if (std::ranges::find(channels, channel) != channels.end())
                throw std::runtime_error("the channel " + m_trial->getChannel(channel)->m_strChannelName.toUtf8() +
                                         " is in " + one + " and in " + other);
    }

    // Calls `set` for each channel named; all names are looked up before the first is switched.
    template <class Set>
    void forEach(const std::vector<std::string>& names, Set set)
    {
        for (const int channel : channelsOf(names)) {
            set(m_dataset, channel);
            m_switched.insert(channel);
        }
    }

    int switched() const { return static_cast<int>(m_switched.size()); }

private:
    std::vector<int> channelsOf(const std::vector<std::string>& names) const
    {
        return names.empty() ? std::vector<int>() : selectChannels(*m_trial, names, "all");
    }

    CMEGDatazk& m_dataset;
    const CMDTrialzk* m_trial = nullptr;
    std::set<int> m_switched;
};

int switchChannels(CMEGDatazk& dataset, const ChannelsArguments& arguments)
{
    Switches switches(dataset);
    switches.refuseBoth("--good", arguments.good, "--bad", arguments.bad);
    switches.refuseBoth("--show", arguments.show, "--hide", arguments.hide);
    switches.forEach(arguments.good, [](CMEGDatazk& data, int i) { data.setGoodChnl4Alltrials(i, 1); });
    switches.forEach(arguments.bad, [](CMEGDatazk& data, int i) { data.setGoodChnl4Alltrials(i, 0); });
    switches.forEach(arguments.show, [](CMEGDatazk& data, int i) { data.setShowChnl4Alltrials(i, 1); });
    switches.forEach(arguments.hide, [](CMEGDatazk& data, int i) { data.setShowChnl4Alltrials(i, 0); });
    if (!arguments.select.empty())
        dataset.setSelectChnl4Alltrials(0, 0, true);
    switches.forEach(arguments.select, [](CMEGDatazk& data, int i) { data.setSelectChnl4Alltrials(i, 1, false); });
    return switches.switched();
}

} // namespace

void addChannels(CLI::App& program)
{
    auto arguments = std::make_shared<ChannelsArguments>();
    CLI::App* const command = program.add_subcommand("channels", "Switch channels in all trials");
    addChangeOptions(*command, arguments->change);
    CLI::Option_group* const switches = command->add_option_group("switches");
    switches->add_option("--good", arguments->good, "Count these channels as good")
        ->delimiter(',')
        ->allow_extra_args(false);
    switches->add_option("--bad", arguments->bad, "Count these channels as bad")
        ->delimiter(',')
        ->allow_extra_args(false);
    switches->add_option("--show", arguments->show, "Show these channels")->delimiter(',')->allow_extra_args(false);
    switches->add_option("--hide", arguments->hide, "Hide these channels")->delimiter(',')->allow_extra_args(false);
    switches->add_option("--select", arguments->select, "Select these channels, and no others")
        ->delimiter(',')
        ->allow_extra_args(false);
    switches->require_option(1, 0);
    command->footer("Example:\n  megset channels run.meg --bad MLT31,MRF22 --in-place");
    command->callback([arguments] {
        int count = 0;
        changeDataset(arguments->change, [&](OpenDataset& open) { count = switchChannels(open.dataset, *arguments); });
        std::cout << count << (count == 1 ? " channel" : " channels") << " switched\n";
    });
}

} // namespace megset::cli
