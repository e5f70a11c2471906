#include "megset/events/CMEGData7Measure.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace megset {
namespace {

constexpr const char* measurementHead =
    "name trial, Channel,SelectB, SelectE, LatencyB(ms), LatencyB(ms), Minimum, Mean, Max, RMS, SD, Mean+2SD \n";

constexpr std::int64_t fewSamples = 3;
constexpr const char* fewSamplesWarning =
    "More than 3 samples are typically requred for calcualte Standard deviation!?";

bool isMember(const CMDChannelzk& channel, unsigned kind)
{
    return kind == 0 ? channel.isMEGMeasureChannel() : kind != 1 || channel.isEEGMeasureChannel();
}

// Each of the three begins at the first channel.
struct Extremes
{
    double min;
    double max;
    double last; // sum of squares of means, or the largest mean square

    void takeMean(double v)
    {
        min = std::min(min, v);
        max = std::max(max, v);
        last += v * v;
    }
    void takeSamples(const ChannelMeans& v)
    {
        min = std::min(min, v.min);
        max = std::max(max, v.max);
        last = std::max(last, v.meanSquare);
    }
};

void swapChannels(CMDTrialzk& trial, int a, int b)
{
    auto moved = trial.m_ppChannel.release(a);
    trial.m_ppChannel.set(a, trial.m_ppChannel.release(b));
    trial.m_ppChannel.set(b, std::move(moved));
}

void moveChannel(CMDTrialzk& trial, int from, int to)
{
    const int step = from < to ? 1 : -1;
    auto moved = trial.m_ppChannel.release(from);
    for (int i = from; i != to; i += step)
        trial.m_ppChannel.set(i, trial.m_ppChannel.release(i + step));
    trial.m_ppChannel.set(to, std::move(moved));
}

} // namespace

// ---- one channel

std::int64_t CMEGData7Measure::getMeasurementParam1ChnlSD(int channel, std::int64_t begin, std::int64_t end,
                                                          double& min, double& mean, double& max, double& rms,
                                                          double& sd, double& meanPlus2Sd)
{
    min = mean = max = rms = sd = meanPlus2Sd = 0.0;
    CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    const int index = channel == -1 ? trial->getCurntChnlIndx() : channel;
    if (index == -1) {
        AfxMessageBox("Please select a channel for measurement!?", MB_OK);
        return 0;
    }
    const CMDChannelzk* measured = trial->getChannel(index);
    if (measured == nullptr)
        return 0;
    completeRange(begin, end);
    const std::int64_t samples =
        measured->getSelectMinMeaMaxSdV(begin, end, &min, &mean, &max, &rms, &sd, &meanPlus2Sd);
    if (samples <= fewSamples)
        AfxMessageBox(fewSamplesWarning, MB_OK);
    return samples;
}

int CMEGData7Measure::getMeasurementParamAllChnlSD(std::int64_t begin, std::int64_t end,
                                                   std::span<ChannelStatistics> out)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    completeRange(begin, end);
    const int channels = trial->getAllSelectMinMeaMaxSdV(begin, end, out);
    const auto written = out.first(static_cast<std::size_t>(channels));
    const bool hasFew = std::any_of(written.begin(), written.end(), [](const ChannelStatistics& v) {
        return v.samples > 0 && v.samples <= fewSamples;
    });
    if (hasFew)
        AfxMessageBox(fewSamplesWarning, MB_OK);
    return channels;
}

// An end that is missing makes both those of the selection.
void CMEGData7Measure::completeRange(std::int64_t& begin, std::int64_t& end)
{
    if (begin == -1 || end == -1)
        getSelect(begin, end);
}

// Opens the current trial; the word that stands for what is missing, or an empty text.
CString CMEGData7Measure::openMeasuredTrial()
{
    if (!m_ppTrial)
        return "Empty";
    if (m_nTotalTrial < 1)
        return "Non";
    m_nCurrentTrial = std::max(m_nCurrentTrial, 0);
    if (!openTrial(m_nCurrentTrial))
        return "Open Trial error";
    return getCurrentTrialPt() == nullptr ? "Error" : "";
}

CString CMEGData7Measure::getMeasurementResults1ChnlSD()
{
    CString fault = openMeasuredTrial();
    if (!fault.IsEmpty())
        return fault;
    const int channel = getCurrentTrialPt()->getCurntChnlIndx();
    if (channel == -1)
        return "No Channel";
    std::int64_t b = 0;
    std::int64_t e = 0;
    getSelect(b, e);
    double min, mean, max, rms, sd, meanPlus2Sd;
    getMeasurementParam1ChnlSD(channel, b, e, min, mean, max, rms, sd, meanPlus2Sd);
    const CString place = CString::formatted(" %s %d %d %I64d %I64d %f %f", m_strDatasetFileName, m_nCurrentTrial,
                                             channel, b, e, latencyMs(b), latencyMs(e));
    const CString numbers = CString::formatted(" %f %f %f %f %f %f ", min, mean, max, rms, sd, meanPlus2Sd);
    return place + numbers + measurementHead;
}

// ---- many channels

CMEGData7Measure::Measured CMEGData7Measure::measure(const CMDTrialzk& trial, bool visibleOnly, bool perSample,
                                                     const std::function<bool(const CMDChannelzk&)>& isChosen) const
{
    std::vector<const CMDChannel*> chosen;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial.getChannel(i);
        if (channel != nullptr && (!visibleOnly || isShowChnl4Alltrials(i)) && isChosen(*channel))
            chosen.push_back(channel);
    }
    if (chosen.empty())
        return {};
    std::vector<ChannelMeans> means(chosen.size());
    CMDChannel::getSelectMinMeaMaxV(chosen, m_nSelectStart, m_nSelectEnd, means);
    const ChannelMeans& first = means[0];
    Extremes extremes =
        perSample ? Extremes{first.min, first.max, first.meanSquare} : Extremes{first.current, first.current, 0.0};
    double sum = 0.0;
    for (const ChannelMeans& v : means) {
        sum += perSample ? v.mean : v.current;
        perSample ? extremes.takeSamples(v) : extremes.takeMean(v.current);
    }
    const double divisor = static_cast<double>(chosen.size());
    // Of samples it stays the largest mean square: it is meant so.
    const double rms = perSample ? extremes.last : std::sqrt(extremes.last / divisor);
    return {static_cast<int>(chosen.size()), extremes.min, sum / divisor, extremes.max, rms};
}

int CMEGData7Measure::getMeasurementResults(double& min, double& mean, double& max, double& rms, bool visibleOnly,
                                            int mode, unsigned kind)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    const Measured result = trial == nullptr ? Measured()
                                             : measure(*trial, visibleOnly, mode != 0,
                                                       [kind](const CMDChannelzk& c) { return isMember(c, kind); });
    min = result.min;
    mean = result.mean;
    max = result.max;
    rms = result.rms;
    return result.channels;
}

int CMEGData7Measure::getMeasurementResultsSN(const CString& name, double& min, double& mean, double& max, double& rms,
                                              bool visibleOnly, int mode)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    const Measured result =
        trial == nullptr ? Measured() : measure(*trial, visibleOnly, mode != 0, [&name](const CMDChannelzk& c) {
            return c.m_strChannelName.Find(name) >= 0;
        });
    min = result.min;
    mean = result.mean;
    max = result.max;
    rms = result.rms;
    return result.channels;
}

CString CMEGData7Measure::getMeasurementResultsT()
{
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return "Unknown Trial";
    const Measured result = measure(*trial, true, false, [](const CMDChannelzk&) { return true; });
    return CString::formatted("%f      %f      %f    %f ", result.min, result.mean, result.max, result.rms);
}

CString CMEGData7Measure::getMeasurementResultsX()
{
    CString fault = openMeasuredTrial();
    if (!fault.IsEmpty())
        return fault;
    const CString place = CString::formatted(" %s      %d      %I64d      %f      ", m_strDatasetFileName,
                                             m_nCurrentTrial, m_nSelectStart, latencyMs(m_nSelectStart));
    return place + getMeasurementResultsT() + "\n";
}

int CMEGData7Measure::getAllChnlDataRng4SelectPt(std::int64_t sample, double& min, double& max, bool measureOnly,
                                                 bool goodOnly)
{
    min = max = 0.0;
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    const std::int64_t at = sample == -1 ? m_nSelectStart : sample;
    if (trial->getTotalChannel() < 1 || at < 0 || at >= trial->getTotalSample(-1))
        return 0;
    bool isFirst = true;
    for (int i = 0; i < trial->getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial->getChannel(i);
        if (channel == nullptr || (goodOnly && !isGoodChnl4Alltrials(i)) ||
            (measureOnly && !channel->isMEGMeasureChannel()) || channel->getDataWave() == nullptr ||
            at >= channel->getTotalSample())
            continue;
        const double v = channel->getDataWave()[at];
        min = isFirst ? v : std::min(min, v);
        max = isFirst ? v : std::max(max, v);
        isFirst = false;
    }
    return 1;
}

// ---- order

int CMEGData7Measure::changeChannelOrderID(int from, int to, int insert, int allTrials)
{
    const TrialWalk walk = walkOver(allTrials != 0);
    for (int i = walk.first; i < walk.end; ++i) {
        CMDTrialzk* trial = getTrialzk(i);
        const int count = trial != nullptr ? trial->getTotalChannel() : 0;
        if (from < 0 || from >= count) {
            if (allTrials)
                continue;
            return 0;
        }
        to = std::clamp(to, 0, count); // for the trials that follow, too
        if (to == from)
            return 1;
        if (to == count) // no place for a channel
            return 0;
        insert ? moveChannel(*trial, from, to) : swapChannels(*trial, from, to);
        trial->m_nCurrentChannel = to;
    }
    return allTrials || walk.first < walk.end ? 1 : 0;
}

} // namespace megset
