#include "apps/cli/process/montage.h"

#include "apps/cli/dataset/channelSelection.h"
#include "apps/readers/recordedMode.h"

#include <charconv>
#include <cmath>
#include <map>
#include <stdexcept>

namespace megset::cli {

namespace {

std::vector<int> eegMeasureChannels(const CMDTrialzk& trial)
{
    std::vector<int> channels;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i);
            channel != nullptr && channel->isEEGMeasureChannel())
            channels.push_back(i);
    return channels;
}

CMtgChnlOperatorzk makeOperator(const CMDTrialzk& trial, int channel, double weight)
{
    if (trial.getChannel(channel)->getTotalSample() < 1)
        throw std::runtime_error("the reference " + trial.getChannel(channel)->m_strChannelName.toUtf8() +
                                 " has no samples");
    CMtgChnlOperatorzk made;
    made.m_nMtgChnlID = channel;
    made.m_strMtgChnlName = trial.getChannel(channel)->m_strChannelName;
    made.m_dMtgWeight = weight;
    return made;
}

// "NAME" or "NAME=WEIGHT"; a name may hold a "=" itself.
CMtgChnlOperatorzk parseReference(const CMDTrialzk& trial, const std::string& text)
{
    const std::size_t equals = text.rfind('=');
    if (equals == std::string::npos)
        return makeOperator(trial, channelNamed(trial, text), 1.0);
    double weight = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + equals + 1, end, weight);
    if (error != std::errc() || rest != end || !std::isfinite(weight))
        throw std::runtime_error("the weight in \"" + text + "\" is no number");
    return makeOperator(trial, channelNamed(trial, text.substr(0, equals)), weight);
}

void refuseSecondMontage(const CMDTrialzk& trial)
{
    if (trial.m_bMontageCrDone != 0 || trial.m_bMontageIrDone != 0)
        throw std::runtime_error("the trial has a montage already; restore it first");
}

// Targets start from all their raw samples, and would be longer than the other channels.
void refuseResampled(const CMDTrialzk& trial)
{
    if (trial.m_nTrialResampleStep > 1)
        throw std::runtime_error("the trial is re-sampled, and the montage takes the raw samples; restore it first");
}

std::vector<CMtgChnlOperatorzk> operatorsOf(const CMDTrialzk& trial, const CommonReference& reference)
{
    std::vector<CMtgChnlOperatorzk> operators;
    if (reference.references.empty())
        for (const int channel : eegMeasureChannels(trial))
            operators.push_back(makeOperator(trial, channel, 1.0));
    for (const std::string& text : reference.references)
        operators.push_back(parseReference(trial, text));
    return operators;
}

std::vector<int> targetsOf(const CMDTrialzk& trial, const CommonReference& reference)
{
    return reference.channels.empty() ? eegMeasureChannels(trial) : selectChannels(trial, reference.channels, "eeg");
}

// The library takes a single reference as it stands while it goes through the channels, which makes a reference that is
// in the list 0 before the channels behind it lose it. Two halves are summed beforehand, to the same bit; so is a
// weight.
void splitSingle(std::vector<CMtgChnlOperatorzk>& operators)
{
    if (operators.size() != 1)
        return;
    operators.front().m_dMtgWeight /= 2.0;
    operators.push_back(operators.front());
}

// Runs an operation whose faults are those of a term.
template <class Operation>
auto at(const MontageTerm& term, Operation operation)
{
    try {
        return operation();
    } catch (const std::runtime_error& fault) {
        throw MontageFault(term.line, term.column, fault.what());
    }
}

CMtgUnit4IndividualRefzk makeUnit(const CMDTrialzk& trial, const MontageLine& line)
{
    CMtgUnit4IndividualRefzk unit;
    unit.m_nMtgTargetID = at(line.target, [&] { return channelNamed(trial, line.target.channel); });
    unit.m_strMtgTargetName = trial.getChannel(unit.m_nMtgTargetID)->m_strChannelName;
    unit.m_dMtgRefDivisor = line.divisor;
    std::vector<CMtgChnlOperatorzk> operators;
    for (const MontageTerm& term : line.terms)
        operators.push_back(
            at(term, [&] { return makeOperator(trial, channelNamed(trial, term.channel), term.weight); }));
    splitSingle(operators);
    for (const CMtgChnlOperatorzk& made : operators)
        unit.m_aMtgRefOperators.Add(std::make_unique<CMtgChnlOperatorzk>(made));
    return unit;
}

void checkTargets(const std::vector<MontageLine>& montage, const std::vector<CMtgUnit4IndividualRefzk>& units)
{
    std::map<int, int> lineOfTarget;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const MontageTerm& target = montage[i].target;
        const auto [place, isNew] = lineOfTarget.emplace(units[i].m_nMtgTargetID, target.line);
        if (!isNew)
            throw MontageFault(target.line, target.column,
                               "the channel has a reference in line " + std::to_string(place->second) + " already");
    }
}

std::string sumOf(const CTypedPtrArray<CMtgChnlOperatorzk>& operators, double divisor)
{
    std::map<std::string, double> weights;
    for (int i = 0; i < operators.GetSize(); ++i)
        if (const CMtgChnlOperatorzk* const reference = operators.GetAt(i))
            weights[reference->m_strMtgChnlName.toUtf8()] += reference->m_dMtgWeight;
    constexpr std::size_t mostNames = 4;
    if (weights.size() > mostNames)
        return "the sum of " + std::to_string(weights.size()) + " channels" +
               (divisor > 0.0 ? " / " + std::to_string(divisor) : "");
    std::string text;
    for (const auto& [name, weight] : weights)
        text += (text.empty() ? "" : " + ") + (weight == 1.0 ? "" : std::to_string(weight) + "*") + name;
    return divisor > 0.0 ? text + " / " + std::to_string(divisor) : text;
}

std::string describeOrders(const CMDTrialzk& trial)
{
    std::map<int, int> channels;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i);
            channel != nullptr && channel->isMEGMeasureChannel())
            if (const CMEGSensorzk* const sensor = channel->getMEGSensorzk())
                ++channels[sensor->getGradOrderNo()];
    std::string text;
    for (const auto& [order, count] : channels)
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " MEG channels at gradient order " +
                std::to_string(order);
    return text;
}

} // namespace

int applyCommonReference(CMDTrialzk& trial, const CommonReference& reference)
{
    refuseSecondMontage(trial);
    auto operators = operatorsOf(trial, reference);
    const auto targets = targetsOf(trial, reference);
    if (operators.empty() || targets.empty())
        throw std::runtime_error("the trial has no EEG channel");
    const bool isAverage = reference.references.empty();
    const double divisor = isAverage ? static_cast<double>(operators.size()) : reference.divisor;
    splitSingle(operators);
    CPtrArray pointers;
    for (CMtgChnlOperatorzk& made : operators)
        pointers.Add(&made);
    trial.cleanMontageCrInfo();
    trial.setMontageCr(isAverage ? "average" : "reference", &pointers, divisor, 0);
    for (const int channel : targets) {
        CMtgChnlIdNamezk target;
        target.m_nMtgChnlID = channel;
        target.m_strMtgChnlName = trial.getChannel(channel)->m_strChannelName;
        trial.addCopyMcrChnl(&target);
    }
    if (!trial.doCommonRefSubstractW())
        throw std::runtime_error("the reference can't be subtracted");
    return static_cast<int>(targets.size());
}

int applyMontageLines(CMDTrialzk& trial, const std::vector<MontageLine>& montage)
{
    refuseSecondMontage(trial);
    refuseResampled(trial);
    std::vector<CMtgUnit4IndividualRefzk> units;
    for (const MontageLine& line : montage)
        units.push_back(makeUnit(trial, line));
    checkTargets(montage, units);
    trial.cleanMontageIrInfo();
    for (const CMtgUnit4IndividualRefzk& unit : units)
        trial.addCopyMuIr(&unit);
    if (!trial.doIndividualRefSubstract())
        throw std::runtime_error("the references can't be subtracted");
    for (const CMtgUnit4IndividualRefzk& unit : units)
        if (CMEGSensorzk* const sensor = trial.getChannel(unit.m_nMtgTargetID)->getMEGSensorzk())
            setRecordedMode(*sensor); // its raw samples are back
    return static_cast<int>(units.size());
}

std::vector<std::string> describeProcessing(const CMDTrialzk& trial)
{
    std::vector<std::string> lines;
    if (const std::string orders = describeOrders(trial); !orders.empty())
        lines.push_back(orders);
    if (trial.m_nTrialResampleStep > 1)
        lines.push_back("re-sampled by " + std::to_string(trial.m_nTrialResampleStep) +
                        (trial.m_bTrialResampled != 0 ? ", averaging" : ""));
    if (trial.m_bMontageCrDone != 0 && trial.m_pMontageCr)
        lines.push_back(std::to_string(trial.m_pMontageCr->m_aMtgChannels.GetSize()) + " channels less " +
                        sumOf(trial.m_pMontageCr->m_aMtgOperators, trial.m_pMontageCr->m_dMtgDivisor));
    if (trial.m_bMontageIrDone != 0)
        for (int i = 0; i < trial.m_aMontageIr.GetSize(); ++i)
            if (const CMtgUnit4IndividualRefzk* const unit = trial.m_aMontageIr.GetAt(i))
                lines.push_back(unit->m_strMtgTargetName.toUtf8() + " less " +
                                sumOf(unit->m_aMtgRefOperators, unit->m_dMtgRefDivisor));
    return lines;
}

} // namespace megset::cli
