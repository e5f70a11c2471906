#pragma once
// A dataset of one trial for the tests of measurement.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <vector>

#include <gtest/gtest.h>

namespace megset {

/// One trial in memory with these channels, all shown, at 1000 Hz with 2 samples before the trigger; the selection is
/// from 1 to 4.
struct MeasuredDataset
{
    explicit MeasuredDataset(const std::vector<std::vector<double>>& channels)
    {
        EXPECT_EQ(data.initMEGData(1, static_cast<int>(channels.size()), 1), 1);
        for (std::size_t i = 0; i < channels.size(); ++i)
            channel(static_cast<int>(i)).addData(std::ssize(channels[i]), channels[i].data());
        data.checkInitChnlParam(data.getTrialzk(0));
        data.m_recordInfo.m_dRecSampleRate = 1000.0;
        data.m_recordInfo.m_nRecPreTrigPts = 2;
        data.m_strDatasetFileName = "Run1";
        data.m_nSelectStart = 1;
        data.m_nSelectEnd = 4;
    }
    CMDChannelzk& channel(int i) { return *data.getTrialzk(0)->getChannel(i); }
    std::int64_t measure(int index, std::int64_t begin, std::int64_t end)
    {
        return data.getMeasurementParam1ChnlSD(index, begin, end, min, mean, max, rms, sd, plus2);
    }
    int measureAll(bool visibleOnly, int mode, unsigned kind)
    {
        return data.getMeasurementResults(min, mean, max, rms, visibleOnly, mode, kind);
    }
    int measureNamed(const char* name, bool visibleOnly, int mode)
    {
        return data.getMeasurementResultsSN(name, min, mean, max, rms, visibleOnly, mode);
    }
    std::vector<double> results() const { return {min, mean, max, rms}; }

    CMEGDatazk data;
    double min = 42, mean = 42, max = 42, rms = 42, sd = 42, plus2 = 42;
};

} // namespace megset
