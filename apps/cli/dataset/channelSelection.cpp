#include "apps/cli/dataset/channelSelection.h"

#include "apps/cli/dataset/channelKind.h"
#include "apps/cli/dataset/nearestNames.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace megset::cli {

namespace {

std::string upToDash(const std::string& name)
{
    return name.substr(0, name.find('-'));
}

// The first channel of which the working or the raw name matches. An empty name matches nothing.
template <class Matches>
int findChannel(const CMDTrialzk& trial, Matches matches)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* const channel = trial.getChannel(i);
        if (channel != nullptr &&
            (matches(channel->m_strChannelName.toUtf8()) || matches(channel->m_strChannelNameRaw.toUtf8())))
            return i;
    }
    return -1;
}

std::string nearestChannels(const CMDTrialzk& trial, const std::string& name)
{
    std::vector<std::pair<std::size_t, std::string>> names;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i)) {
            const std::string known = channel->m_strChannelName.toUtf8();
            names.emplace_back(std::min(editDistance(name, known), editDistance(name, upToDash(known))), known);
        }
    return nearestNames(std::move(names));
}

} // namespace

int channelNamed(const CMDTrialzk& trial, const std::string& asTyped)
{
    // A list may have blanks behind its commas; a channel whose name has them is found as well.
    const std::size_t begin = asTyped.find_first_not_of(' ');
    const std::string bare =
        begin == std::string::npos ? "" : asTyped.substr(begin, asTyped.find_last_not_of(' ') - begin + 1);
    const bool isExact = findChannel(trial, [&](const std::string& known) { return known == asTyped; }) >= 0;
    const std::string& name = isExact ? asTyped : bare;
    if (name.empty())
        throw std::runtime_error("the name of a channel is empty");
    int index = findChannel(trial, [&](const std::string& known) { return !name.empty() && known == name; });
    if (index < 0)
        index = findChannel(trial, [&](const std::string& known) { return !name.empty() && upToDash(known) == name; });
    if (index < 0)
        throw std::runtime_error("there is no channel " + name + "; the nearest names are " +
                                 nearestChannels(trial, name));
    return index;
}

std::vector<int> selectChannels(const CMDTrialzk& trial, const std::vector<std::string>& names, const std::string& kind)
{
    std::vector<int> channels;
    for (const std::string& name : names)
        channels.push_back(channelNamed(trial, name));
    if (!names.empty())
        return channels;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* const channel = trial.getChannel(i);
        if (channel != nullptr && (kind == "all" || channelKind(*channel) == kind))
            channels.push_back(i);
    }
    return channels;
}

const std::vector<std::string>& channelKinds()
{
    static const std::vector<std::string> kinds = {"meg", "ref", "eeg", "trigger", "other", "all"};
    return kinds;
}

} // namespace megset::cli
