#include "apps/cli/process/gradientOrder.h"

#include "apps/cli/process/forEachTrial.h"
#include "megset/records/records.h"

#include <algorithm>
#include <span>
#include <stdexcept>

namespace megset::cli {

namespace {

struct Mode
{
    int order = 0;
    bool real = true;
    bool adaptive = false;

    bool operator==(const Mode&) const = default;
};

constexpr Mode unreducedMode = {};

Mode modeOf(const CMEGSensorzk& sensor)
{
    return {sensor.getGradOrderNo(), sensor.getRealIdealCoefMode(), sensor.getAdaptiveBalance()};
}

void setMode(CMEGSensorzk& sensor, const Mode& mode)
{
    sensor.setGradOrderNo(mode.order);
    sensor.setRealIdealCoefMode(mode.real);
    sensor.setAdaptiveBalance(mode.adaptive);
}

// A channel may announce samples that it has not.
std::span<double> samplesOf(const CMDChannelzk& channel)
{
    double* const samples = channel.getDataWave();
    const std::int64_t count = samples != nullptr ? std::max<std::int64_t>(channel.getTotalSample(), 0) : 0;
    return {samples, static_cast<std::size_t>(count)};
}

// The trial of one dataset, with the coefficients of its recording.
class Reduction
{
public:
    explicit Reduction(CMEGDatazk& dataset)
        : m_dataset(dataset), m_trial(*dataset.getCurrentTrialPt()),
          m_coefficients(*dataset.getMEGRecordInfozk()->getSensorCoefficientzk())
    {
    }

    GradientResult bringTo(const Mode& mode)
    {
        check(mode);
        if (!isAt(mode)) {
            takeBack();
            forEachSensor([](const CMDChannelzk&, CMEGSensorzk& sensor) { setMode(sensor, unreducedMode); });
            m_dataset.setGradientNoiseReduction(mode.order, mode.real, mode.adaptive);
        }
        return count(mode);
    }

private:
    template <class Visit>
    void forEachSensor(Visit visit) const
    {
        for (int i = 0; i < m_trial.getTotalChannel(); ++i)
            if (const CMDChannelzk* const channel = m_trial.getChannel(i))
                if (CMEGSensorzk* const sensor = channel->getMEGSensorzk())
                    visit(*channel, *sensor);
    }

    const CCoefficientDatazk* record(const CMEGSensorzk& sensor, const Mode& mode) const
    {
        if (CCoefficientData::getCoefficientType(mode.order, mode.real, mode.adaptive) == 0)
            return nullptr;
        return m_coefficients.getSensorCoefRecord(sensor.getSensorName(), mode.order, mode.real, mode.adaptive);
    }

    void check(const Mode& mode) const
    {
        bool hasRecord = mode.order == 0;
        forEachSensor([&](const CMDChannelzk& channel, const CMEGSensorzk& sensor) {
            hasRecord = hasRecord || record(sensor, mode) != nullptr;
            if (sensor.getGradOrderNo() != 0 && !record(sensor, modeOf(sensor)))
                throw std::runtime_error("channel " + channel.m_strChannelName.toUtf8() + " stands at order " +
                                         std::to_string(sensor.getGradOrderNo()) +
                                         ", and the dataset has no coefficients to take it back");
        });
        if (!hasRecord)
            throw std::runtime_error("the dataset has no coefficients for order " + std::to_string(mode.order));
    }

    // The mode that a channel has after it was brought to `mode`.
    Mode goal(const CMEGSensorzk& sensor, const Mode& mode) const
    {
        return record(sensor, mode) != nullptr ? mode : unreducedMode;
    }

    bool isAt(const Mode& mode) const
    {
        bool at = true;
        forEachSensor(
            [&](const CMDChannelzk&, const CMEGSensorzk& sensor) { at = at && modeOf(sensor) == goal(sensor, mode); });
        return at;
    }

    // The library takes MEG measure channels back alone, and by the references as they are now. That is right where no
    // reference was reduced itself.
    void takeBack()
    {
        bool hasReducedReference = false;
        forEachSensor([&](const CMDChannelzk& channel, const CMEGSensorzk& sensor) {
            hasReducedReference =
                hasReducedReference || (!channel.isMEGMeasureChannel() && record(sensor, modeOf(sensor)) != nullptr);
        });
        if (hasReducedReference)
            takeBackFromLastToFirst();
        else
            m_dataset.setGradient2Non();
    }

    // Channels were reduced in array order, each by the references as they were then; the last one comes back first.
    void takeBackFromLastToFirst()
    {
        for (int i = m_trial.getTotalChannel() - 1; i >= 0; --i) {
            CMDChannelzk* const channel = m_trial.getChannel(i);
            const CMEGSensorzk* const sensor = channel != nullptr ? channel->getMEGSensorzk() : nullptr;
            if (sensor == nullptr)
                continue;
            if (const CCoefficientDatazk* const coefficients = record(*sensor, modeOf(*sensor)))
                addSum(*channel, *sensor, *coefficients);
        }
    }

    void addSum(CMDChannelzk& channel, const CMEGSensorzk& sensor, const CCoefficientDatazk& record)
    {
        const std::span<double> target = samplesOf(channel);
        std::vector<double> sum(target.size());
        for (std::size_t k = 0; k < static_cast<std::size_t>(record.usedReferences()); ++k) {
            const CMDChannelzk* const reference = m_trial.getChannelPt4Name(record.m_aCoefRefName[k]);
            if (reference == nullptr)
                continue;
            const double weight =
                m_trial.getReferenceSensorGain(record.m_aCoefRefName[k]) * record.m_aCoefValue[k] / sensor.sensorGain();
            const std::span<const double> source = samplesOf(*reference);
            for (std::size_t i = 0; i < std::min(sum.size(), source.size()); ++i)
                sum[i] += source[i] * weight;
        }
        for (std::size_t i = 0; i < sum.size(); ++i)
            target[i] += sum[i];
    }

    GradientResult count(const Mode& mode) const
    {
        GradientResult result;
        forEachSensor([&](const CMDChannelzk& channel, const CMEGSensorzk& sensor) {
            if (modeOf(sensor) == mode)
                ++result.reduced;
            else if (channel.isMEGMeasureChannel())
                ++result.unreduced;
        });
        return result;
    }

    CMEGDatazk& m_dataset;
    CMDTrialzk& m_trial;
    const CCoefficientManagerzk& m_coefficients;
};

} // namespace

GradientResult setGradientOrder(CMEGDatazk& dataset, const GradientRequest& request)
{
    return Reduction(dataset).bringTo({request.order, !request.ideal, request.adaptive});
}

GradientResult reduceNoise(const ChangeArguments& arguments, const GradientRequest& request)
{
    GradientResult result;
    changeDataset(arguments, [&](OpenDataset& open) {
        forEachTrial(open, "Noise reduction", [&](CMDTrialzk&) { result = setGradientOrder(open.dataset, request); });
    });
    return result;
}

} // namespace megset::cli
