#include "megset/processing/CMDTrial3Montage.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/numeric/montage.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>

namespace megset {

// The samples of a channel by index, -1 being the current one; none for a bad index.
std::span<double> CMDTrial3Montage::samplesOf(int channel, Store store) const
{
    double* data = store == Store::wave ? getChannMEGData(channel) : getChnlBkData(channel);
    const std::int64_t count = store == Store::wave ? getTotalSample(channel) : getChnlBkDataSz(channel);
    return data != nullptr && count > 0 ? std::span(data, static_cast<std::size_t>(count)) : std::span<double>();
}

// ---- common reference

int CMDTrial3Montage::ensureMontageCr()
{
    if (m_pMontageCr == nullptr)
        m_pMontageCr = tryNew<CMtgUnit4CommonRefzk>();
    return m_pMontageCr != nullptr ? 1 : 0;
}

int CMDTrial3Montage::addCopyMcrChnl(const CMtgChnlIdNamezk* channel)
{
    if (channel == nullptr || !ensureMontageCr())
        return 0;
    auto copy = tryNew<CMtgChnlIdNamezk>(*channel);
    if (copy == nullptr)
        return 0;
    m_pMontageCr->m_aMtgChannels.Add(std::move(copy));
    return 1;
}

int CMDTrial3Montage::setMontageCr(const CString& name, const CPtrArray* operators, double divisor, int backupToo)
{
    if (!ensureMontageCr())
        return 0;
    m_pMontageCr->m_strMtgName = name;
    int added = 0;
    for (int i = 0; operators != nullptr && i < operators->GetSize(); ++i) {
        const auto* reference = static_cast<const CMtgChnlOperatorzk*>(operators->GetAt(i));
        auto copy = reference != nullptr ? tryNew<CMtgChnlOperatorzk>(*reference) : nullptr;
        if (copy == nullptr)
            continue;
        m_pMontageCr->m_aMtgOperators.Add(std::move(copy));
        ++added;
    }
    m_pMontageCr->m_dMtgDivisor = divisor;
    m_pMontageCr->m_bMtgBackupToo = backupToo;
    return added;
}

// Whether there are operators, else with the message, and channels.
bool CMDTrial3Montage::canBeReferenced(const CString& noOperators) const
{
    if (m_pMontageCr->m_aMtgOperators.IsEmpty()) {
        AfxMessageBox(noOperators, MB_OK);
        return false;
    }
    return m_ppChannel && getTotalChannel() > 0;
}

std::int64_t CMDTrial3Montage::longestOperator(Store store) const
{
    std::size_t longest = 0;
    for (int i = 0; i < m_pMontageCr->m_aMtgOperators.GetSize(); ++i)
        if (const CMtgChnlOperatorzk* reference = m_pMontageCr->m_aMtgOperators.GetAt(i))
            longest = std::max(longest, samplesOf(reference->m_nMtgChnlID, store).size());
    return static_cast<std::int64_t>(longest);
}

std::vector<std::span<double>> CMDTrial3Montage::listedTargets(Store store) const
{
    std::vector<std::span<double>> targets;
    for (int i = 0; i < m_pMontageCr->m_aMtgChannels.GetSize(); ++i) {
        const CMtgChnlIdNamezk* entry = m_pMontageCr->m_aMtgChannels.GetAt(i);
        if (entry != nullptr && isInRange(entry->m_nMtgChnlID))
            targets.push_back(samplesOf(entry->m_nMtgChnlID, store));
    }
    return targets;
}

void CMDTrial3Montage::applyCommon(Sign sign, Store store, std::int64_t length) const
{
    const CMtgUnit4CommonRefzk& unit = *m_pMontageCr;
    const std::vector<std::span<double>> targets = listedTargets(store);
    if (unit.m_aMtgOperators.GetSize() == 1) {
        // The channel itself, not a copy: what it becomes at its own turn goes for the channels after it.
        const std::span<double> reference = samplesOf(unit.m_aMtgOperators.GetAt(0)->m_nMtgChnlID, store);
        sign == Sign::add ? numeric::addToEach(reference, targets) : numeric::subtractFromEach(reference, targets);
        return;
    }
    std::vector<numeric::WeightedSignal> signals;
    for (int i = 0; i < unit.m_aMtgOperators.GetSize(); ++i)
        if (const CMtgChnlOperatorzk* reference = unit.m_aMtgOperators.GetAt(i))
            signals.push_back({samplesOf(reference->m_nMtgChnlID, store), reference->m_dMtgWeight});
    const numeric::SignalSum sum = {signals, unit.m_dMtgDivisor};
    const auto samples = static_cast<std::size_t>(length);
    sign == Sign::add ? numeric::addToEach(sum, samples, targets) : numeric::subtractFromEach(sum, samples, targets);
}

int CMDTrial3Montage::doCommonRefSubstractW()
{
    if (m_pMontageCr == nullptr)
        return 0;
    if (m_bMontageCrDone)
        reverseMontageCrW();
    if (!canBeReferenced("No reference channel has been setup"))
        return 0;
    const std::int64_t samples = longestOperator(Store::wave);
    if (samples < 1)
        return 0;
    applyCommon(Sign::subtract, Store::wave, samples);
    m_bMontageCrDone = 1;
    return 1;
}

int CMDTrial3Montage::reverseMontageCrW()
{
    if (m_pMontageCr == nullptr)
        return 0;
    if (m_pMontageCr->m_bMtgBackupToo)
        reverseMontageCrWB();
    if (!canBeReferenced("No reference channel has been setup or reversed"))
        return 0;
    const std::int64_t samples = longestOperator(Store::wave);
    if (samples < 1)
        return 0;
    applyCommon(Sign::add, Store::wave, samples);
    m_bMontageCrDone = 0;
    return 1;
}

// Adds the reference to working and backup samples; the working ones get it once more from the caller.
int CMDTrial3Montage::reverseMontageCrWB()
{
    if (!canBeReferenced("No reference channel has been setup or reversed"))
        return 0;
    const std::int64_t samples = longestOperator(Store::wave);
    const std::int64_t backupSamples = longestOperator(Store::backup);
    if (samples < 1 || backupSamples < 1)
        return 0;
    applyCommon(Sign::add, Store::wave, samples);
    applyCommon(Sign::add, Store::backup, backupSamples);
    return 1;
}

// ---- individual references

int CMDTrial3Montage::addCopyMuIr(const CMtgUnit4IndividualRefzk* unit)
{
    auto copy = unit != nullptr ? tryNew<CMtgUnit4IndividualRefzk>(*unit) : nullptr;
    if (copy == nullptr)
        return 0;
    m_aMontageIr.Add(std::move(copy));
    return 1;
}

int CMDTrial3Montage::setMontageIr(const CPtrArray* units)
{
    cleanMontageIrInfo();
    int added = 0;
    for (int i = 0; units != nullptr && i < units->GetSize(); ++i)
        if (m_aMontageIr.GetAt(i) != nullptr) // of the list that is empty: it raises the exception, and is meant to
            added += addCopyMuIr(static_cast<const CMtgUnit4IndividualRefzk*>(units->GetAt(i)));
    return added;
}

// The operator's channel; -1 when its ID is out of range and, where names count, no channel has its name.
int CMDTrial3Montage::findOperator(const CMtgChnlOperatorzk& reference, bool byName) const
{
    if (isInRange(reference.m_nMtgChnlID))
        return reference.m_nMtgChnlID;
    return byName ? findChnlID4NameS(reference.m_strMtgChnlName) : -1;
}

// IDs found by name are stored.
CMDTrial3Montage::Survey CMDTrial3Montage::surveyIndividual(bool byName)
{
    Survey survey;
    for (int i = 0; i < m_aMontageIr.GetSize(); ++i) {
        const CMtgUnit4IndividualRefzk* unit = m_aMontageIr.GetAt(i);
        int operators = 0;
        for (int k = 0; unit != nullptr && k < unit->m_aMtgRefOperators.GetSize(); ++k) {
            CMtgChnlOperatorzk* reference = unit->m_aMtgRefOperators.GetAt(k);
            const int channel = reference != nullptr ? findOperator(*reference, byName) : -1;
            if (reference == nullptr || channel >= 0)
                ++operators; // a null one counts: it is meant so
            if (channel < 0)
                continue;
            reference->m_nMtgChnlID = channel;
            survey.samples = std::max(survey.samples, getChnlBkDataSz(channel));
        }
        survey.operators = std::max(survey.operators, operators);
    }
    return survey;
}

int CMDTrial3Montage::doIndividualRefSubstract()
{
    if (m_bMontageCrDone) // the flag of the other montage: it is meant so
        reverseMontageIr();
    if (!applyIndividual(Sign::subtract, true))
        return 0;
    m_bMontageIrDone = 1;
    return 1;
}

int CMDTrial3Montage::reverseMontageIr()
{
    return applyIndividual(Sign::add, false);
}

int CMDTrial3Montage::applyIndividual(Sign sign, bool byName)
{
    if (m_aMontageIr.IsEmpty()) {
        AfxMessageBox("No reference channel has been setup", MB_OK);
        return 0;
    }
    if (!m_ppChannel || getTotalChannel() < 1)
        return 0;
    const Survey survey = surveyIndividual(byName);
    // A list of units with one operator each does nothing, though one beside a longer unit works: it is meant so.
    if (survey.operators < 2 || survey.samples < 1)
        return 0;
    for (int i = 0; i < m_aMontageIr.GetSize(); ++i)
        if (const CMtgUnit4IndividualRefzk* unit = m_aMontageIr.GetAt(i))
            applyUnit(*unit, sign, byName, survey.samples);
    return 1;
}

// `length` is that of a reference made of several channels.
void CMDTrial3Montage::applyUnit(const CMtgUnit4IndividualRefzk& unit, Sign sign, bool byName, std::int64_t length)
{
    std::vector<numeric::WeightedSignal> signals;
    for (int i = 0; i < unit.m_aMtgRefOperators.GetSize(); ++i) {
        const CMtgChnlOperatorzk* reference = unit.m_aMtgRefOperators.GetAt(i);
        const int channel = reference != nullptr ? findOperator(*reference, byName) : -1;
        if (channel >= 0)
            signals.push_back({samplesOf(channel, Store::backup), reference->m_dMtgWeight});
    }
    const bool isSingle = unit.m_aMtgRefOperators.GetSize() < 2;
    if (isSingle) {
        unit.m_aMtgRefOperators.GetAt(0); // raises the exception where there is none: it is meant so
        if (signals.empty() || signals[0].samples.empty())
            return;
    }
    const int target = isInRange(unit.m_nMtgTargetID) ? unit.m_nMtgTargetID
                       : byName                       ? findChnlID4NameS(unit.m_strMtgTargetName)
                                                      : -1;
    CMDChannelzk* channel = target >= 0 ? getChannel(target) : nullptr;
    if (channel == nullptr)
        return;
    channel->reverseRawData();
    const std::span<double> samples[] = {samplesOf(target, Store::wave)};
    const auto whole = static_cast<std::size_t>(length);
    const numeric::SignalSum sum = {signals, unit.m_dMtgRefDivisor};
    if (isSingle)
        sign == Sign::add ? numeric::addToEach(signals[0].samples, samples)
                          : numeric::subtractFromEach(signals[0].samples, samples);
    else
        sign == Sign::add ? numeric::addToEach(sum, whole, samples) : numeric::subtractFromEach(sum, whole, samples);
}

} // namespace megset
