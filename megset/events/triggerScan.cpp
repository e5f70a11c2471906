#include "megset/events/triggerScan.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/numeric/cut.h"
#include "megset/numeric/stimulus.h"

#include <algorithm>
#include <span>

namespace megset {
namespace {

class ChannelScan
{
public:
    ChannelScan(int index, std::span<const double> samples, const numeric::StimulusBlocks& blocks, std::size_t most,
                ScannedTrial& found)
        : m_index(index), m_samples(samples), m_blocks(blocks), m_most(most), m_found(found)
    {
    }

    void plain(double mean, double threshold)
    {
        for (std::size_t at = 0; at < m_samples.size() && !m_found.hasTooMany;) {
            const numeric::Run run = numeric::nextRunApart(m_samples, mean, threshold, at, m_blocks);
            at = run.end;
            if (run.begin == run.end)
                return;
            begin(run.begin);
            if (run.end - run.begin > 1)
                extend(run.end - 1);
        }
    }

    void conditioned(double threshold)
    {
        bool isFirst = true;
        for (std::size_t at = 0; at < m_samples.size() && !m_found.hasTooMany;) {
            const numeric::Run run = numeric::nextRunAbove(m_samples, threshold, at, m_blocks);
            at = run.end;
            if (run.begin == run.end)
                return;
            isFirst ? begin(run.begin) : extend(run.begin);
            isFirst = false;
            for (std::size_t i = run.begin + 1; i < run.end && !m_found.hasTooMany; ++i)
                begin(i);
        }
    }

private:
    void begin(std::size_t i)
    {
        m_found.hasTooMany = m_found.triggers.size() >= m_most;
        if (m_found.hasTooMany)
            return;
        const int value = numeric::cutToInt(m_samples[i]);
        const auto sample = static_cast<std::int64_t>(i);
        m_found.triggers.push_back({m_index, false, value, value, sample, sample});
    }
    void extend(std::size_t i)
    {
        if (m_found.hasTooMany)
            return;
        FoundTrigger& current = m_found.triggers.back();
        current.isExtended = true;
        current.last = static_cast<std::int64_t>(i);
        current.lastValue = numeric::cutToInt(m_samples[i]);
    }

    int m_index;
    std::span<const double> m_samples;
    const numeric::StimulusBlocks& m_blocks;
    std::size_t m_most;
    ScannedTrial& m_found;
};

void condition(CMDChannelzk& channel, TriggerScan scan, numeric::StimulusBlocks& blocks)
{
    if (scan == TriggerScan::Plain)
        channel.computeDataRangeBlocks(blocks);
    else if (scan == TriggerScan::AbsDc)
        channel.stimTrigChnl_AbsDcBlocks(1, 0, blocks);
    else
        channel.stimTrigChnl_AbsDcMBlocks(1, 0, blocks);
}

// The channel's samples, at most `samples` of them.
std::span<const double> scannedSamples(const CMDChannelzk& channel, std::int64_t samples)
{
    const std::int64_t count = std::min(samples, channel.getTotalSample());
    if (channel.getDataWave() == nullptr || count < 1)
        return {};
    return {channel.getDataWave(), static_cast<std::size_t>(count)};
}

} // namespace

bool canScan(const CMDTrialzk* trial)
{
    return trial != nullptr && trial->getTotalChannel() > 0 && trial->getChannel(0) != nullptr;
}

ScannedTrial scanTriggers(CMDTrialzk& trial, TriggerScan scan, double threshold, std::size_t most)
{
    ScannedTrial found;
    found.samples = trial.getTotalSample(-1);
    found.info = trial.m_strTrialName + "\n";
    for (int i = 0; i < trial.getTotalChannel() && scan != TriggerScan::None && !found.hasTooMany; ++i) {
        CMDChannelzk* channel = trial.getChannel(i);
        if (channel == nullptr || !channel->isTriggerChannel())
            continue;
        const std::span<const double> samples = scannedSamples(*channel, found.samples);
        numeric::StimulusBlocks blocks(samples.size());
        condition(*channel, scan, blocks);
        found.info += channel->traceDataInfo();
        ChannelScan channelScan(i, samples, blocks, most, found);
        if (scan == TriggerScan::Plain)
            channelScan.plain(channel->m_dDataMean, threshold);
        else
            channelScan.conditioned(threshold);
    }
    return found;
}

MarkTrigClass occurrenceOf(const FoundTrigger& trigger, const SampleClock& clock)
{
    MarkTrigClass point;
    point.m_nMarkPtChannel = trigger.channel;
    point.m_dMarkPtBegin = static_cast<double>(trigger.first) / clock.rate * 1000.0;
    point.m_nMarkPtBegin = trigger.last;
    point.m_nMarkPtValueB = trigger.value;
    point.m_nMarkPtValueE = trigger.lastValue;
    if (trigger.isExtended) {
        point.m_nMarkPtEnd = trigger.last;
        point.m_dMarkPtEnd = static_cast<double>(trigger.last) / clock.rate;
    }
    return point;
}

int addFoundMarker(CMarkerManager& to, const FoundTrigger& trigger, std::int64_t samples, const SampleClock& clock)
{
    if (!to.addTrigger(trigger.value, 1, trigger.first, samples))
        return 0;
    CMarkerDatazk& marker = *to.getMarker(-1, false);
    marker.m_nMarkChannel = trigger.channel;
    marker.m_nMarkPtKind = 1;
    return marker.addMarkPt(occurrenceOf(trigger, clock), clock.resampleFactor);
}

} // namespace megset
