#pragma once
// Datasets with spectra: a trial in memory, or several in files.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include "tests/core/filedDataset.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

using PlaneValues = std::vector<double>;

/// Gives the channel planes R, or R to A, of that shape, with R the values and the others 10, 20 and 30 more.
inline void setPlanes(CMDChannelzk& channel, int nClass, std::int64_t times, std::int64_t freqs,
                      const PlaneValues& values, int planes = 4)
{
    ASSERT_EQ(times * freqs, std::ssize(values));
    CSpctmChnlzk& spectrum = *channel.getSpctmChnl(true, nClass);
    ASSERT_EQ(spectrum.initSpctmSpace(times, freqs, true, planes > 1, planes > 2), 1);
    for (int nDataType = 0; nDataType < planes; ++nDataType)
        std::transform(values.begin(), values.end(), spectrum.getSpctmDataPtr(nDataType, nullptr, nullptr),
                       [nDataType](double v) { return v + 10.0 * nDataType; });
}

/// A plane of one value.
inline PlaneValues constant(std::int64_t times, std::int64_t freqs, double value)
{
    return PlaneValues(static_cast<std::size_t>(times * freqs), value);
}

inline PlaneValues noisePlane(std::int64_t times, std::int64_t freqs, unsigned seed)
{
    std::mt19937 random(seed);
    std::normal_distribution<double> noise(0.1, 5.0);
    PlaneValues values(static_cast<std::size_t>(times * freqs));
    for (double& v : values)
        v = noise(random);
    return values;
}

/// The plane of a channel; empty when there is none.
inline PlaneValues planeOf(CMDChannelzk& channel, int nClass, int nDataType)
{
    const CSpctmChnlzk* spectrum = channel.getSpctmChnl(false, nClass);
    std::int64_t times = 0;
    std::int64_t freqs = 0;
    const double* data = spectrum != nullptr ? spectrum->getSpctmDataPtr(nDataType, &times, &freqs) : nullptr;
    return data != nullptr ? PlaneValues(data, data + times * freqs) : PlaneValues();
}

/// One trial in memory, of channels of these types, with flags that say good and shown.
struct SpectralDataset
{
    explicit SpectralDataset(const std::vector<int>& types)
    {
        EXPECT_EQ(data.initMEGData(1, static_cast<int>(types.size()), 10), 1);
        for (int i = 0; i < static_cast<int>(types.size()); ++i)
            channel(i).m_nChannelType = types[static_cast<std::size_t>(i)];
        EXPECT_EQ(data.checkInitChnlParam(&trial()), 1);
    }

    CMDTrialzk& trial() { return *data.getCurrentTrialPt(); }
    CMDChannelzk& channel(int i) { return *trial().getChannel(i); }
    CSpctmTrialzk& spectrum(int nClass) { return *trial().getSpctmTrial(true, nClass); }

    CMEGDatazk data;
};

/// Trials in files, of MEG channels with planes of class 0: of channel c of trial t 3 x 2 values 100 t + 10 c + i.
struct SpectralFiles : FiledDataset
{
    SpectralFiles(int trials, int channels) : FiledDataset(trials, channels, 10)
    {
        for (int t = 0; t < trials; ++t) {
            CMDTrialzk* trial = data.getTrialzk(t);
            for (int c = 0; c < channels; ++c) {
                trial->getChannel(c)->m_nChannelType = 100;
                setPlanes(*trial->getChannel(c), 0, 3, 2, values(t, c));
            }
        }
        data.getTrialzk(0);
    }
    static PlaneValues values(int trial, int channel)
    {
        PlaneValues all;
        for (int i = 0; i < 6; ++i)
            all.push_back(100.0 * trial + 10.0 * channel + i);
        return all;
    }
    CMDChannelzk& channel(int trial, int index) { return *data.getTrialzk(trial)->getChannel(index); }
    PlaneValues plane(int trial, int index, int nDataType, int nClass = 0)
    {
        return planeOf(channel(trial, index), nClass, nDataType);
    }
    /// The trial's file can't be read any more.
    void lose(int trial) { data.m_aTrialFilePath.SetAt(trial, folder.path("lost.trl")); }
};

} // namespace megset
