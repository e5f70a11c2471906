#pragma once
// Datasets with a trigger channel.

#include "tests/core/filedDataset.h"

#include <map>
#include <string>
#include <tuple>

namespace megset {

/// Makes the channel one of triggers with these samples.
inline void makeStimulus(CMDChannelzk& channel, const std::vector<double>& samples)
{
    EXPECT_EQ(channel.addData(std::ssize(samples), samples.data()), std::ssize(samples));
    channel.m_nChannelType = 600;
}

/// Zeros with a value at some samples.
inline std::vector<double> pulses(std::size_t n, const std::map<std::size_t, double>& values)
{
    std::vector<double> samples(n);
    for (const auto& [at, value] : values)
        samples[at] = value;
    return samples;
}

/// One trial in memory at 1000 Hz: channel 0 is zero, and those behind it are trigger channels.
struct StimulusTrial
{
    explicit StimulusTrial(const std::vector<std::vector<double>>& stimuli)
    {
        const std::int64_t samples = std::ssize(stimuli.at(0));
        EXPECT_EQ(data.initMEGData(1, static_cast<int>(stimuli.size()) + 1, samples), 1);
        for (std::size_t i = 0; i < stimuli.size(); ++i)
            makeStimulus(channel(static_cast<int>(i) + 1), stimuli[i]);
        data.getTrialzk(0)->m_strTrialName = "Run";
        data.m_recordInfo.m_dRecSampleRate = 1000.0;
    }
    CMDChannelzk& channel(int i) { return *data.getTrialzk(0)->getChannel(i); }

    CMEGDatazk data;
};

/// A dataset of files at 1000 Hz: channel 0 is no trigger channel, channel 1 is one.
struct StimulusDataset : FiledDataset
{
    explicit StimulusDataset(const std::vector<std::vector<double>>& stimuli)
        : FiledDataset(static_cast<int>(stimuli.size()), 2, std::ssize(stimuli.at(0)))
    {
        data.m_recordInfo.m_dRecSampleRate = 1000.0;
        for (int i = 0; i < data.m_nTotalTrial; ++i) {
            const auto& samples = stimuli[static_cast<std::size_t>(i)];
            const auto trial = makeTrial(i, 2, std::ssize(samples));
            makeStimulus(*trial->getChannel(1), samples);
            writeTrial(i, *trial);
        }
    }
};

/// An occurrence as begin sample, end sample, begin in ms, end, and its values.
using Occurrence = std::tuple<std::int64_t, std::int64_t, double, double, std::int64_t, std::int64_t>;

inline Occurrence occurrence(const MarkTrigClass& point)
{
    return {point.m_nMarkPtBegin, point.m_nMarkPtEnd,    point.m_dMarkPtBegin,
            point.m_dMarkPtEnd,   point.m_nMarkPtValueB, point.m_nMarkPtValueE};
}

/// All occurrences of a list of markers, marker by marker.
inline std::vector<Occurrence> occurrences(const CMarkerManagerzk& manager)
{
    std::vector<Occurrence> all;
    for (int i = 0; i < manager.getTotalMarkers(); ++i)
        for (int k = 0; k < manager.m_aMarkers.GetAt(i)->getTotalTrgMrkPts(); ++k)
            all.push_back(occurrence(*manager.m_aMarkers.GetAt(i)->getMarkPt(k)));
    return all;
}

inline std::vector<std::string> names(const CMarkerManagerzk& manager)
{
    std::vector<std::string> all;
    for (int i = 0; i < manager.getTotalMarkers(); ++i)
        all.push_back(manager.m_aMarkers.GetAt(i)->m_strMarkName.toUtf8());
    return all;
}

} // namespace megset
