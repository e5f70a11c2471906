#pragma once
// Datasets for the tests of re-sampling.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include "tests/core/filedDataset.h"

#include <algorithm>

namespace megset {

/// Tells the dataset's record that it is of that many samples at 1000 Hz with a tenth of them before the trigger.
inline void recordAs(CMEGDatazk& data, std::int64_t samples)
{
    CMEGRecordInfozkProzk& record = data.m_recordInfo;
    record.m_nRecTotalSample = record.m_nRawTotalSample = samples;
    record.m_nRecPreTrigPts = record.m_nRawPreTrigPts = samples / 10;
    record.m_dRecSampleRate = record.m_dRawSampleRate = 1000.0;
}

/// A dataset of files, recorded as above.
struct RecordedDataset : FiledDataset
{
    RecordedDataset(int trials, int channels, std::int64_t samples) : FiledDataset(trials, channels, samples)
    {
        recordAs(data, samples);
    }
    std::vector<double> waveOf(int trial, int channel) { return wave(*data.getTrialzk(trial)->getChannel(channel)); }
};

/// The re-sampled form of `x` by the plain loop, n samples.
inline std::vector<double> resampled(const std::vector<double>& x, bool average, std::int64_t factor, std::int64_t n)
{
    const std::int64_t last = std::ssize(x) - 1;
    const auto at = [&](std::int64_t i) { return x[static_cast<std::size_t>(std::min(i, last))]; };
    std::vector<double> result;
    for (std::int64_t k = 0, s = 0; k < n; ++k, s += factor) {
        s = std::min(s, last);
        double sum = 0.0;
        for (std::int64_t j = 0; average && j < factor; ++j)
            sum += at(s + j);
        result.push_back(average && factor > 1 ? sum / static_cast<double>(factor) : at(s));
    }
    return result;
}

/// A marker with occurrences from `begin` to begin + 5 each, and their backup.
inline CMarkerDatazk& addMarker(CMarkerManagerzk& manager, const std::vector<std::int64_t>& begins)
{
    auto marker = std::make_unique<CMarkerDatazk>();
    for (const std::int64_t begin : begins) {
        MarkTrigClass point;
        point.m_nMarkPtBegin = begin;
        point.m_nMarkPtEnd = begin + 5;
        marker->addMarkPt(point);
    }
    marker->m_markWindow = marker->m_markWindowBk = {100, 300, 10, 50};
    return *manager.getMarker(manager.addMarker(std::move(marker)), false);
}

inline std::vector<std::int64_t> beginsOf(const CMarkerData& marker)
{
    std::vector<std::int64_t> begins;
    for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i)
        begins.push_back(marker.getMarkPt(i) != nullptr ? marker.getMarkPt(i)->m_nMarkPtBegin : -1);
    return begins;
}

} // namespace megset
