// Channels of a kind, good and bad, and the one with the peak.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/numeric/statistics.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace megset {
namespace {

bool hasFirstChannel(const CMDTrialzk& trial)
{
    return trial.getTotalChannel() > 0 && trial.getChannel(0) != nullptr;
}

// Samples begin to end - 1 of the channel, as far as it has them.
std::span<const double> samplesOf(const CMDChannelzk& channel, std::int64_t begin, std::int64_t end)
{
    end = std::min(end, channel.getTotalSample());
    if (channel.getDataWave() == nullptr || begin >= end)
        return {};
    return {channel.getDataWave() + begin, static_cast<std::size_t>(end - begin)};
}

std::int64_t broughtInto(std::int64_t sample, std::int64_t total)
{
    return std::max<std::int64_t>(std::min(sample, total - 1), 0);
}

} // namespace

// Searches samples begin to end, less `excluded`; -1 where there are none.
int CMEGData6Classify::findPeakChannel(const CMDTrialzk& trial, std::int64_t begin, std::int64_t end, int excluded,
                                       bool visibleOnly) const
{
    const std::int64_t total = trial.getTotalSample(0);
    const std::int64_t from = broughtInto(begin == -1 ? m_nSelectStart : begin, total);
    const std::int64_t to = broughtInto(end == -1 ? m_nSelectEnd : end, total) + 1 - excluded;
    int found = -1;
    double largest = 0.0;
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial.getChannel(i);
        if (channel == nullptr || (visibleOnly && !isShowChnl4Alltrials(i)))
            continue;
        const auto samples = samplesOf(*channel, from, to);
        if (samples.empty())
            continue;
        if (found < 0) {
            found = i;
            largest = std::fabs(samples.front());
        }
        // In a channel, too, only a strictly greater value counts: the first of equal channels stays.
        if (const double peak = numeric::maxAbsolute(samples); peak > largest) {
            found = i;
            largest = peak;
        }
    }
    return found;
}

int CMEGData6Classify::findPeakChnl_RID(std::int64_t begin, std::int64_t end, bool, bool visibleOnly)
{
    CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    if (!hasFirstChannel(*trial))
        return -1;
    const int found = findPeakChannel(*trial, begin, end, 0, visibleOnly);
    if (found >= 0)
        trial->setCurrentChannel(found);
    return found;
}

CString CMEGData6Classify::findPeakChnl_RN(std::int64_t begin, std::int64_t end, bool setCurrent, bool visibleOnly)
{
    CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return "Unknown Trial";
    if (!hasFirstChannel(*trial))
        return "Unknown";
    const int found = std::max(findPeakChannel(*trial, begin, end, 1, visibleOnly), 0);
    if (setCurrent)
        trial->setCurrentChannel(found);
    return trial->getChannel(found)->getSensorTypeName();
}

int CMEGData6Classify::showAllBadChannels(bool show)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    checkInitChnlParam(trial);
    if (trial->getTotalChannel() < 2)
        return 0;
    for (int i = 0; i < trial->getTotalChannel(); ++i)
        if (trial->getChannel(i) != nullptr && !isGoodChnl4Alltrials(i))
            setShowChnl4Alltrials(i, show ? 1 : 0);
    return 1;
}

int CMEGData6Classify::getChannelType(unsigned& type, bool& flag, int channel, int trial)
{
    return openTrial(trial) ? getChannelTypeX(type, flag, channel) : 0;
}

int CMEGData6Classify::getTotalMEGChannel(bool goodOnly, bool)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    int count = 0;
    for (int i = 0; trial != nullptr && i < trial->getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial->getChannel(i);
        if (channel != nullptr && channel->isMEGChannel() && isShowChnl4Alltrials(i) &&
            (!goodOnly || isGoodChnl4Alltrials(i)))
            ++count;
    }
    return count;
}

int CMEGData6Classify::getTotalMEGChannelMeasure(bool goodOnly)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    int count = 0;
    for (int i = 0; trial != nullptr && i < trial->getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial->getChannel(i);
        if (channel != nullptr && channel->isMEGMeasureChannel() && (!goodOnly || isGoodChnl4Alltrials(i)))
            ++count;
    }
    return count;
}

} // namespace megset
