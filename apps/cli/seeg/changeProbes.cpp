#include "apps/cli/seeg/changeProbes.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/dataset/chosenTrials.h"
#include "apps/cli/dataset/informationFile.h"
#include "apps/cli/inspect/fileTag.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace megset::cli {

namespace {

constexpr std::string_view probeTag = "SEEGINFO";

// What an assignment means in a trial.
struct Target
{
    CSeegProbezk* probe;
    int contact;
    int channel;
};

Target targetOf(const CMDTrialzk& trial, const Assignment& assignment)
{
    CSeegProbezk* const probe = trial.m_aSeegProbe.GetAt(probeNamed(trial, assignment.probe));
    return {probe, contactNamed(*probe, assignment.contact), channelNamed(trial, assignment.channel)};
}

void checkDifferent(const std::vector<Target>& targets, const std::vector<Assignment>& assignments)
{
    for (std::size_t i = 0; i < targets.size(); ++i)
        for (std::size_t j = 0; j < i; ++j) {
            if (targets[i].channel == targets[j].channel)
                throw std::runtime_error("the channel " + assignments[i].channel + " is assigned twice");
            if (targets[i].probe == targets[j].probe && targets[i].contact == targets[j].contact)
                throw std::runtime_error("the contact " + assignments[i].probe + ":" + assignments[i].contact +
                                         " is assigned twice");
        }
}

// No contact has the channel afterwards.
void freeChannel(const CMDTrialzk& trial, int channel)
{
    for (int i = 0; i < trial.m_aSeegProbe.GetSize(); ++i) {
        const CSeegProbezk* const probe = trial.m_aSeegProbe.GetAt(i);
        for (int c = 0; probe != nullptr && c < probe->getTotalContacts(); ++c)
            if (CSeegContactzk* const contact = probe->m_aContacts.GetAt(c);
                contact != nullptr && contact->m_nContactChnlID == channel) {
                contact->m_nContactChnlID = -1;
                contact->m_strContactChnlName.Empty();
            }
    }
}

CString contactName(const Target& target)
{
    const CSeegContactzk& contact = *target.probe->m_aContacts.GetAt(target.contact);
    return contact.m_strContactName.IsEmpty()
               ? CString::formatted("%s%d", target.probe->m_strProbeName, target.contact + 1)
               : contact.m_strContactName;
}

} // namespace

int addProbe(CMDTrialzk& trial, const NewProbe& wanted)
{
    if (wanted.name.empty())
        throw std::runtime_error("the probe needs a name");
    if (findProbe(trial, wanted.name) >= 0)
        throw std::runtime_error("there is a probe " + wanted.name + " already");
    auto probe = std::make_unique<CSeegProbezk>();
    probe->m_strProbeName = wanted.name;
    probe->m_dProbeBase = wanted.base;
    probe->m_dProbeTip = wanted.tip;
    if (!probe->computeExtend())
        throw std::runtime_error("base and tip of the probe " + wanted.name + " are in one place");
    const auto type = std::ranges::find(probeTypes(), wanted.type) - probeTypes().begin();
    const bool isUsers = type == CSeegProbe::userMode;
    const bool done = isUsers ? probe->setUserContact(wanted.contacts, wanted.distance) != 0
                              : probe->setProbeMode(static_cast<int>(type)) && probe->computeContactPos();
    if (!done)
        throw std::runtime_error("the contacts of the probe " + wanted.name + " can't be placed");
    const int contacts = probe->getTotalContacts();
    trial.addSeegProbe(probe.release());
    return contacts;
}

void removeProbe(CMDTrialzk& trial, const std::string& name)
{
    trial.deleteSeegProbe(probeNamed(trial, name));
}

void assignContacts(CMDTrialzk& trial, const std::vector<Assignment>& assignments)
{
    std::vector<Target> targets;
    for (const Assignment& assignment : assignments)
        targets.push_back(targetOf(trial, assignment));
    checkDifferent(targets, assignments);
    for (std::size_t i = 0; i < targets.size(); ++i) {
        const Target& target = targets[i];
        CSeegContactzk* const contact = target.probe->m_aContacts.GetAt(target.contact);
        CSeegContactzk tied = *contact;
        if (!trial.setSeegContact2Channel(&tied, target.channel, contactName(target)))
            throw std::runtime_error("the channel " + assignments[i].channel +
                                     " has no electrode, and gets none (--yes gives it one)");
        freeChannel(trial, target.channel);
        *contact = tied;
    }
}

std::filesystem::path saveProbes(OpenDataset& open, const std::filesystem::path& file)
{
    if (currentTrial(open).m_aSeegProbe.IsEmpty())
        throw std::runtime_error(shownPath(open.path) + ": the current trial has no probes");
    const std::filesystem::path path = withExtension(file, ".seeg");
    CreatedFiles created;
    created.add(path);
    writeInformation(path, [&](CArchive& ar) { return open.dataset.serializeSeegInfo(ar, 0); });
    created.keep();
    return path;
}

void checkProbeFile(const std::filesystem::path& file)
{
    checkInformation(file, probeTag);
}

int openProbes(OpenDataset& open, const std::filesystem::path& file, bool all)
{
    requireTrials(open, all);
    const int current = open.dataset.getCurrentTrialIndx();
    if (!readInformation(file, [&](CArchive& ar) { return open.dataset.serializeSeegInfo(ar, all ? 1 : 0); }))
        throw std::runtime_error(shownPath(file) + ": the probes can't be taken");
    returnToTrial(open, current);
    return open.dataset.getTrialzk(-1)->m_aSeegProbe.GetSize();
}

} // namespace megset::cli
