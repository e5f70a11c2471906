#include "apps/cli/measure/measureChannels.h"

#include "apps/cli/dataset/channelKind.h"
#include "apps/cli/dataset/channelSelection.h"
#include "megset/platform/terminalText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <stdexcept>

namespace megset::cli {

namespace {

std::int64_t sampleCount(const CMDTrialzk& trial)
{
    std::int64_t most = 0;
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i))
            most = std::max(most, channel->getTotalSample());
    return most;
}

// The values of channels without samples in the range stay 0, with a count of 0.
std::vector<ChannelStatistics> statisticsOf(const CMDTrialzk& trial, const std::vector<int>& indices,
                                            const SampleRange& range)
{
    std::vector<const CMDChannel*> channels;
    for (const int index : indices) {
        const CMDChannelzk* const channel = trial.getChannel(index);
        channels.push_back(range.from < channel->getTotalSample() ? channel : nullptr);
    }
    std::vector<ChannelStatistics> values(channels.size());
    CMDChannel::getSelectMinMeaMaxSdV(channels, range.from, range.to, values);
    return values;
}

} // namespace

Measurement measureChannels(OpenDataset& open, const MeasureOptions& options)
{
    Measurement measurement;
    measurement.trial = options.trial < 0 ? open.dataset.getCurrentTrialIndx() : options.trial;
    if (measurement.trial >= open.dataset.m_aTrialFilePath.GetSize() || measurement.trial < 0)
        throw std::runtime_error("there is no trial " + std::to_string(measurement.trial) + "; the dataset has " +
                                 std::to_string(open.dataset.m_aTrialFilePath.GetSize()));
    const auto trial = readTrial(open, measurement.trial);
    const CMEGRecordInfozkProzk& recording = open.dataset.m_recordInfo;
    const TrialTimes times = {sampleCount(*trial), recording.m_dRecSampleRate, recording.m_nRecPreTrigPts};
    measurement.range =
        options.ms.empty() ? parseSampleRange(options.samples, times.samples) : parseTimeRange(options.ms, times);
    measurement.msFrom = times.msOf(measurement.range.from);
    measurement.msTo = times.msOf(measurement.range.to);
    const std::vector<int> indices = selectChannels(*trial, options.channels, options.kind);
    if (indices.empty())
        throw std::runtime_error("the trial has no channel of this kind");
    const auto values = statisticsOf(*trial, indices, measurement.range);
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const CMDChannelzk& channel = *trial->getChannel(indices[i]);
        measurement.channels.push_back(
            {indices[i], channel.m_strChannelName.toUtf8(), std::string(channelUnit(channel)), values[i]});
    }
    return measurement;
}

void writeText(const Measurement& measurement, std::ostream& out)
{
    out << "trial " << measurement.trial << ", samples " << measurement.range.from << " to " << measurement.range.to
        << ", " << measurement.msFrom << " to " << measurement.msTo << " ms\n"
        << "name                  unit         min        mean         max         rms          sd\n";
    for (const MeasuredChannel& channel : measurement.channels) {
        out << std::left << std::setw(22) << showControlCharacters(CString(channel.name)).toUtf8() << std::setw(5)
            << channel.unit << std::right;
        for (const double value :
             {channel.values.min, channel.values.mean, channel.values.max, channel.values.rms, channel.values.sd})
            out << std::setw(12) << std::setprecision(6) << value;
        out << '\n';
    }
}

void writeJson(const Measurement& measurement, std::ostream& out)
{
    nlohmann::ordered_json channels = nlohmann::ordered_json::array();
    for (const MeasuredChannel& channel : measurement.channels)
        channels.push_back({{"index", channel.index},
                            {"name", channel.name},
                            {"unit", channel.unit},
                            {"samples", channel.values.samples},
                            {"min", channel.values.min},
                            {"mean", channel.values.mean},
                            {"max", channel.values.max},
                            {"rms", channel.values.rms},
                            {"sd", channel.values.sd}});
    const nlohmann::ordered_json json = {{"trial", measurement.trial},
                                         {"samples", {measurement.range.from, measurement.range.to}},
                                         {"ms", {measurement.msFrom, measurement.msTo}},
                                         {"channels", channels}};
    out << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

} // namespace megset::cli
