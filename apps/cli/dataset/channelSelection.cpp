#include "apps/cli/dataset/channelSelection.h"

#include "apps/cli/dataset/channelKind.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace megset::cli {

namespace {

constexpr std::size_t mostSuggestions = 3;

std::string upToDash(const std::string& name)
{
    return name.substr(0, name.find('-'));
}

// Number of insertions, deletions and replacements that make one text the other (Levenshtein, 1966).
std::size_t editDistance(const std::string& a, const std::string& b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
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

std::string nearestNames(const CMDTrialzk& trial, const std::string& name)
{
    std::vector<std::pair<std::size_t, std::string>> names;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i)) {
            const std::string known = channel->m_strChannelName.toUtf8();
            names.emplace_back(std::min(editDistance(name, known), editDistance(name, upToDash(known))), known);
        }
    const auto count = static_cast<std::ptrdiff_t>(std::min(names.size(), mostSuggestions));
    std::partial_sort(names.begin(), names.begin() + count, names.end());
    std::string text;
    for (auto place = names.begin(); place != names.begin() + count; ++place)
        text += (text.empty() ? "" : ", ") + place->second;
    return text;
}

} // namespace

int channelNamed(const CMDTrialzk& trial, const std::string& name)
{
    int index = findChannel(trial, [&](const std::string& known) { return !name.empty() && known == name; });
    if (index < 0)
        index = findChannel(trial, [&](const std::string& known) { return !name.empty() && upToDash(known) == name; });
    if (index < 0)
        throw std::runtime_error("there is no channel " + name + "; the nearest names are " +
                                 nearestNames(trial, name));
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
