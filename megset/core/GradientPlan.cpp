#include "megset/core/GradientPlan.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include <algorithm>
#include <utility>

namespace megset {
namespace {

std::span<double> samplesOf(const CMDChannelzk* channel)
{
    if (channel == nullptr || channel->getDataWave() == nullptr || channel->getTotalSample() < 1)
        return {};
    return {channel->getDataWave(), static_cast<std::size_t>(channel->getTotalSample())};
}

using RecordList = std::vector<const CCoefficientDatazk*>;

// Every text of that length in a name, with the first record that holds it.
std::unordered_map<std::u16string_view, const CCoefficientDatazk*> textsOf(const RecordList& records,
                                                                           std::size_t length)
{
    std::unordered_map<std::u16string_view, const CCoefficientDatazk*> texts;
    for (const CCoefficientDatazk* record : records) {
        const std::u16string_view name = record->m_strCoefSensorName.view();
        for (std::size_t from = 0; from + length <= name.size(); ++from)
            texts.try_emplace(name.substr(from, length), record);
    }
    return texts;
}

const CCoefficientDatazk* firstHolding(const RecordList& records, const CString& text)
{
    const auto found = std::find_if(records.begin(), records.end(), [&text](const CCoefficientDatazk* record) {
        return record->m_strCoefSensorName.Find(text) >= 0;
    });
    return found != records.end() ? *found : nullptr;
}

} // namespace

GradientPlan::GradientPlan(const CMDTrialzk& trial, const CCoefficientManager& coefficients)
    : m_trial(trial), m_coefficients(coefficients)
{
}

void GradientPlan::addOldSums()
{
    for (int i = 0; i < m_trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_trial.m_ppChannel[i];
        const CMEGSensorzk* sensor = channel != nullptr ? channel->getMEGSensorzk() : nullptr;
        if (sensor == nullptr || !channel->isMEGMeasureChannel())
            continue;
        const GradientMode mode{sensor->getGradOrderNo(), sensor->getRealIdealCoefMode(), sensor->getAdaptiveBalance()};
        const CCoefficientDatazk* record = recordOf(sensor->getSensorName(), mode);
        if (record != nullptr)
            planSum(*channel, *record, false);
    }
}

void GradientPlan::subtractNewSums(const GradientMode& mode)
{
    m_mode = mode;
    for (int i = 0; i < m_trial.getTotalChannel(); ++i) {
        CMDChannelzk* channel = m_trial.m_ppChannel[i];
        const CMEGSensorzk* sensor = channel != nullptr ? channel->getMEGSensorzk() : nullptr;
        if (sensor == nullptr)
            continue;
        // Channels of every kind: a reference that has a record is changed like any other, and it is meant so.
        const CCoefficientDatazk* record = recordOf(sensor->getSensorName(), mode);
        if (record == nullptr)
            continue;
        planSum(*channel, *record, true);
        m_changed.push_back(channel);
    }
}

// The sums keep their terms when the lists grow or the plan moves: the arrays that they refer to stay where they are.
void GradientPlan::run() const
{
    numeric::addWeightedSums(m_sums);
    for (const CMDChannelzk* channel : m_changed) {
        CMEGSensorzk* sensor = channel->getMEGSensorzk();
        sensor->setGradOrderNo(m_mode.order);
        sensor->setRealIdealCoefMode(m_mode.realIdeal);
        sensor->setAdaptiveBalance(m_mode.adaptive);
    }
}

void GradientPlan::planSum(const CMDChannelzk& channel, const CCoefficientDatazk& record, bool subtracted)
{
    const std::span<double> target = samplesOf(&channel);
    Terms terms = termsOf(channel, record);
    // Without a reference the sum is 0: the samples stay as they are.
    if (target.empty() || terms.references.empty())
        return;
    m_terms.push_back(std::move(terms));
    m_sums.push_back({target, m_terms.back().references, m_terms.back().weights, subtracted});
}

GradientPlan::Terms GradientPlan::termsOf(const CMDChannelzk& channel, const CCoefficientDatazk& record)
{
    Terms terms;
    const double sensorGain = channel.getMEGSensorzk()->sensorGain();
    const int count = record.usedReferences();
    for (int k = 0; k < count; ++k) {
        const auto at = static_cast<std::size_t>(k);
        const Reference& reference = referenceOf(record.m_aCoefRefName[at]);
        if (reference.samples.empty())
            continue;
        terms.references.push_back(reference.samples);
        terms.weights.push_back(reference.gain * record.m_aCoefValue[at] / sensorGain);
    }
    return terms;
}

// What getSensorCoefRecord finds: the first record whose name holds the sensor's. It goes through all records for every
// channel, which costs with the square of the channels. The texts are noted for as many names as recordings have, in a
// few megabytes at most; a file may hold other collections, which are gone through.
const CCoefficientDatazk* GradientPlan::recordOf(const CString& sensorName, const GradientMode& mode)
{
    constexpr std::size_t mostCharacters = 65'536;
    constexpr std::size_t mostLengths = 4;
    const std::u16string_view name = sensorName.view();
    Records& records = recordsOf(CCoefficientData::getCoefficientType(mode.order, mode.realIdeal, mode.adaptive));
    auto texts = records.byLength.find(name.size());
    if (texts == records.byLength.end() && records.characters <= mostCharacters &&
        records.byLength.size() < mostLengths)
        texts = records.byLength.emplace(name.size(), textsOf(records.list, name.size())).first;
    if (texts == records.byLength.end())
        return firstHolding(records.list, sensorName);
    const auto found = texts->second.find(name);
    return found != texts->second.end() ? found->second : nullptr;
}

GradientPlan::Records& GradientPlan::recordsOf(std::uint32_t type)
{
    const auto [ofType, isNew] = m_records.try_emplace(type);
    Records& records = ofType->second;
    for (int i = 0; isNew && i < m_coefficients.m_aCoefRecord.GetSize(); ++i) {
        const CCoefficientDatazk* record = m_coefficients.m_aCoefRecord.GetAt(i);
        if (record == nullptr || record->m_nCoefType != type)
            continue;
        records.list.push_back(record);
        records.characters += record->m_strCoefSensorName.view().size();
    }
    return records;
}

const GradientPlan::Reference& GradientPlan::referenceOf(const CString& name)
{
    const auto [found, isNew] = m_references.try_emplace(name);
    if (isNew)
        found->second = {samplesOf(m_trial.getChannelPt4Name(name)), m_trial.getReferenceSensorGain(name)};
    return found->second;
}

} // namespace megset
