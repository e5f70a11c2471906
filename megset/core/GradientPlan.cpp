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

// What getSensorCoefRecord finds, the first record whose name holds the sensor's. It goes through all records for every
// channel, which costs with the square of the channels.
const CCoefficientDatazk* GradientPlan::recordOf(const CString& sensorName, const GradientMode& mode)
{
    const std::u16string_view name = sensorName.view();
    const std::uint32_t type = CCoefficientData::getCoefficientType(mode.order, mode.realIdeal, mode.adaptive);
    const auto [records, isNew] = m_records.try_emplace({type, name.size()});
    if (isNew)
        addRecords(type, name.size(), records->second);
    const auto found = records->second.find(name);
    return found != records->second.end() ? found->second : nullptr;
}

void GradientPlan::addRecords(std::uint32_t type, std::size_t length, RecordsByText& to) const
{
    for (int i = 0; i < m_coefficients.m_aCoefRecord.GetSize(); ++i) {
        const CCoefficientDatazk* record = m_coefficients.m_aCoefRecord[i];
        if (record == nullptr || record->m_nCoefType != type)
            continue;
        const std::u16string_view name = record->m_strCoefSensorName.view();
        for (std::size_t from = 0; from + length <= name.size(); ++from)
            to.try_emplace(name.substr(from, length), record);
    }
}

const GradientPlan::Reference& GradientPlan::referenceOf(const CString& name)
{
    const auto [found, isNew] = m_references.try_emplace(name);
    if (isNew)
        found->second = {samplesOf(m_trial.getChannelPt4Name(name)), m_trial.getReferenceSensorGain(name)};
    return found->second;
}

} // namespace megset
