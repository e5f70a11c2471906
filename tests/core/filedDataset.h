#pragma once
// Datasets whose samples tell where they belong, in memory and in files.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include "tests/kit/TemporaryFolder.h"

#include <cstdint>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// The sample at an index of a channel of a trial.
inline double valueAt(int trial, int channel, std::int64_t sample)
{
    return 10000.0 * trial + 100.0 * channel + static_cast<double>(sample);
}

/// A channel's samples 0..samples-1 as `valueAt` gives them.
inline std::vector<double> channelValues(int trial, int channel, std::int64_t samples)
{
    std::vector<double> values;
    for (std::int64_t i = 0; i < samples; ++i)
        values.push_back(valueAt(trial, channel, i));
    return values;
}

/// Such samples of some trials, one channel after the other, as integers.
inline std::vector<std::int32_t> blockOf(int trials, int channels, int samples)
{
    std::vector<std::int32_t> block;
    for (int t = 0; t < trials; ++t)
        for (int c = 0; c < channels; ++c)
            for (int i = 0; i < samples; ++i)
                block.push_back(static_cast<std::int32_t>(valueAt(t, c, i)));
    return block;
}

/// A trial with such samples, named after its number.
inline std::unique_ptr<CMDTrialzk> makeTrial(int number, int channels, std::int64_t samples)
{
    auto trial = std::make_unique<CMDTrialzk>();
    if (channels > 0) {
        EXPECT_EQ(trial->allocateChannels(channels), 1);
    }
    for (int i = 0; i < channels && samples > 0; ++i)
        EXPECT_EQ(trial->getChannel(i)->addData(samples, channelValues(number, i, samples).data()), samples);
    trial->m_strTrialName = CString::formatted("Trial%d", number);
    return trial;
}

/// The working samples of a channel.
inline std::vector<double> wave(const CMDChannelzk& channel)
{
    const double* data = channel.getDataWave();
    return data != nullptr ? std::vector<double>(data, data + channel.getTotalSample()) : std::vector<double>();
}

inline std::vector<double> backup(const CMDChannelzk& channel)
{
    const double* data = channel.getBkData();
    return data != nullptr ? std::vector<double>(data, data + channel.getBkDataSample()) : std::vector<double>();
}

/// A dataset whose trials are in files "Trial<n>.trl" of a folder of their own, with the first current and none in
/// memory.
struct FiledDataset
{
    FiledDataset(int trials, int channels, std::int64_t samples)
    {
        EXPECT_EQ(data.m_ppTrial.allocate(trials), 1);
        data.m_nTotalTrial = trials;
        data.m_nCurrentTrial = 0;
        data.m_recordInfo.m_nRecTotalSample = samples;
        for (int i = 0; i < trials; ++i) {
            data.m_aTrialFilePath.Add(path(i));
            writeTrial(i, *makeTrial(i, channels, samples));
        }
    }

    static CString name(int trial) { return CString::formatted("Trial%d.trl", trial); }
    CString path(int trial) const { return folder.path(name(trial)); }
    void writeTrial(int place, CMDTrialzk& trial) const
    {
        CString target = path(place);
        EXPECT_EQ(trial.saveTrialData(target, nullptr, "", true), 1);
    }
    /// What the trial's file holds.
    std::unique_ptr<CMDTrialzk> readTrial(int place) const
    {
        auto trial = std::make_unique<CMDTrialzk>();
        CString source = path(place);
        EXPECT_EQ(trial->openTrialData(source, nullptr, ""), 1);
        return trial;
    }
    int trialsInMemory() const
    {
        int count = 0;
        for (int i = 0; i < data.m_nTotalTrial; ++i)
            count += data.m_ppTrial[i] != nullptr ? 1 : 0;
        return count;
    }

    TemporaryFolder folder;
    CMEGDatazk data;
};

} // namespace megset
