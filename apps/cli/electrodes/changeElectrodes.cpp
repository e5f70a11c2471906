#include "apps/cli/electrodes/changeElectrodes.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/chosenTrials.h"
#include "apps/cli/dataset/informationFile.h"
#include "apps/cli/electrodes/electrodeList.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/records/catalogues.h"

#include <algorithm>
#include <stdexcept>

namespace megset::cli {

namespace {

constexpr std::string_view electrodeTag = "ELECTRODINFOFILE";

// Notes which entries of an electrode file have an electrode.
class EntryTracer : public ArchiveTracer
{
public:
    std::vector<bool> hasElectrode;

    void enter(std::string_view, std::uint64_t) override {}
    void leave(std::uint64_t) override {}
    void integer(std::string_view name, std::string_view, std::uint64_t, std::int64_t value) override
    {
        if (name == "present")
            hasElectrode.push_back(value != 0);
    }
    void real(std::string_view, std::string_view, std::uint64_t, double) override {}
    void text(std::string_view, std::uint64_t, const CString&) override {}
    void block(std::string_view, std::uint64_t, const TracedBlock&) override {}
};

CString upperCase(const CString& text)
{
    std::u16string upper(text.view());
    for (char16_t& unit : upper)
        if (unit >= u'a' && unit <= u'z')
            unit = static_cast<char16_t>(unit - u'a' + u'A');
    return CString(std::u16string_view(upper));
}

bool isStandardName(const CString& name)
{
    return findEegStdPos(g_aEegStd21, name.view()) != nullptr || findEegStdPos(g_aEegStd32, name.view()) != nullptr;
}

// The name that a channel's electrode has, or would have.
CString electrodeName(const CMDChannelzk& channel)
{
    const CEEGelectrodezk* const electrode = channel.getEegElectrode(0);
    return electrode != nullptr && electrode->m_nNameSet != 0 ? electrode->m_strElectrodeName
                                                              : channel.m_strChannelName;
}

// Electrodes inside the head have no standard place, and contacts often have names of the scalp, such as A1.
bool isInside(const CMDChannelzk& channel)
{
    return channel.isSeegChannel() || channel.isIeegChannel();
}

// The electrodes of channels, with the names under which they are looked up for as long as this lives: the tables are
// in upper case, and what lies inside the head is not to be found.
class LookupNames
{
public:
    explicit LookupNames(const std::vector<CMDChannelzk*>& channels)
    {
        for (CMDChannelzk* channel : channels) {
            const CString name = electrodeName(*channel);
            CEEGelectrodezk* const electrode = channel->ensureEegElectrode();
            if (electrode == nullptr)
                throw std::runtime_error("there is not enough memory");
            electrode->m_nNameSet = 1;
            electrode->m_strElectrodeName = isInside(*channel) ? CString() : upperCase(name);
            m_names.emplace_back(electrode, name);
        }
    }
    LookupNames(const LookupNames&) = delete;
    LookupNames& operator=(const LookupNames&) = delete;
    ~LookupNames()
    {
        for (const auto& [electrode, name] : m_names)
            electrode->m_strElectrodeName = name;
    }

private:
    std::vector<std::pair<CEEGelectrodezk*, CString>> m_names;
};

std::vector<CMDChannelzk*> eegChannels(const CMDTrialzk& trial)
{
    std::vector<CMDChannelzk*> channels;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* const channel = trial.getChannel(i);
        if (channel == nullptr)
            throw std::runtime_error("channel " + std::to_string(i) + " is missing");
        if (channel->isEEGChannel())
            channels.push_back(channel);
    }
    return channels;
}

PlacedElectrodes placeInTrial(CMDTrialzk& trial, bool easyCap)
{
    const std::vector<CMDChannelzk*> channels = eegChannels(trial);
    PlacedElectrodes result;
    for (const CMDChannelzk* channel : channels)
        if (isInside(*channel) || !isStandardName(upperCase(electrodeName(*channel))))
            result.missed.push_back(channel->m_strChannelName.toUtf8());
    if (result.missed.size() == channels.size())
        throw std::runtime_error("no EEG channel has the name of a standard electrode, such as CZ");
    const LookupNames names(channels);
    result.placed = trial.setEegElectrodePosStd(1, easyCap ? 1 : 0);
    return result;
}

} // namespace

std::filesystem::path saveElectrodes(OpenDataset& open, const std::filesystem::path& file)
{
    const auto listed = listElectrodes(currentTrial(open));
    if (std::ranges::none_of(listed, [](const ListedElectrode& one) { return one.position.has_value(); }))
        throw std::runtime_error(shownPath(open.path) + ": no channel of the current trial has an electrode");
    const std::filesystem::path path = withExtension(file, ".epos");
    CreatedFiles created;
    created.add(path);
    writeInformation(path, [&](CArchive& ar) { return open.dataset.serializeElectrodeInfo(ar, false); });
    created.keep();
    return path;
}

void checkElectrodeFile(const std::filesystem::path& file)
{
    checkInformation(file, electrodeTag);
}

OpenedElectrodes openElectrodes(OpenDataset& open, const std::filesystem::path& file, bool all)
{
    requireTrials(open, all);
    const int current = open.dataset.getCurrentTrialIndx();
    EntryTracer entries;
    if (!readInformation(
            file, [&](CArchive& ar) { return open.dataset.serializeElectrodeInfo(ar, all); }, &entries))
        throw std::runtime_error(shownPath(file) + ": the electrodes were not taken; it has " +
                                 std::to_string(entries.hasElectrode.size()) +
                                 " channels (--yes gives them to the first channels of a trial)");
    returnToTrial(open, current);
    const auto begin = entries.hasElectrode.begin();
    const int channels = open.dataset.getTotalChannel(-1);
    const auto fit = begin + std::min<std::ptrdiff_t>(channels, std::ssize(entries.hasElectrode));
    return {static_cast<int>(std::count(begin, fit, true)),
            static_cast<int>(std::count(fit, entries.hasElectrode.end(), true))};
}

const std::vector<std::string>& electrodeTables()
{
    static const std::vector<std::string> tables = {"std21", "std32"};
    return tables;
}

PlacedElectrodes placeElectrodes(OpenDataset& open, const std::string& table, bool all)
{
    PlacedElectrodes result;
    forChosenTrials(open, all, "Standard electrodes",
                    [&](CMDTrialzk& trial) { result = placeInTrial(trial, table == electrodeTables()[1]); });
    return result;
}

} // namespace megset::cli
