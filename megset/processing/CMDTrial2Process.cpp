#include "megset/processing/CMDTrial2Process.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/numeric/montage.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <array>
#include <vector>

namespace megset {

double* CMDTrial2Process::getChannMEGData(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->getDataWave() : nullptr;
}

double* CMDTrial2Process::getChnlBkData(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->getBkData() : nullptr;
}

std::int64_t CMDTrial2Process::getChnlBkDataSz(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->getBkDataSample() : 0;
}

std::int64_t CMDTrial2Process::getTotalSample(int index) const
{
    const CMDChannelzk* channel = getChannel(index);
    return channel != nullptr ? channel->getTotalSample() : 0;
}

int CMDTrial2Process::findChnlID4NameS(const CString& text) const
{
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        if (channel != nullptr && channel->m_strChannelName.Find(text) >= 0)
            return i;
    }
    return -1;
}

namespace {

constexpr int eegMeasureAverageType = 360;

bool hasEegMeasureChannel(const SlotArray<CMDChannelzk>& channels)
{
    for (std::int64_t i = 0; i < channels.size(); ++i)
        if (channels[i] != nullptr && channels[i]->isEEGMeasureChannel())
            return true;
    return false;
}

std::span<const double> spanOf(const double* data, std::int64_t count)
{
    return data != nullptr && count > 0 ? std::span(data, static_cast<std::size_t>(count)) : std::span<const double>();
}

void average(const std::vector<numeric::WeightedSignal>& signals, double* to, std::int64_t count)
{
    const numeric::SignalSum mean = {signals, static_cast<double>(signals.size())};
    numeric::signalSum(mean, std::span(to, static_cast<std::size_t>(count)));
}

} // namespace

int CMDTrial2Process::checkInitEegMeaAvrg(int create)
{
    if (!m_ppChannel)
        return 0;
    const int total = getTotalChannel();
    for (int i = 0; i < total; ++i)
        if (m_ppChannel[i] != nullptr && m_ppChannel[i]->m_nChannelType == eegMeasureAverageType)
            return 1;
    if (!create || !hasEegMeasureChannel(m_ppChannel))
        return 0;
    SlotArray<CMDChannelzk> longer;
    if (!longer.allocate(total + 1)) {
        AfxMessageBox("Not enough memory!", MB_OK);
        return 0;
    }
    if (longer.set(total, makeEegMeasureAverage()) == nullptr)
        return 0;
    for (int i = 0; i < total; ++i)
        longer.set(i, m_ppChannel.release(i));
    m_ppChannel = std::move(longer);
    m_nTotalChannel = total + 1;
    return 1;
}

// The mean of all EEG measure channels as a channel of its own; null without samples of the first channel or without
// memory.
std::unique_ptr<CMDChannelzk> CMDTrial2Process::makeEegMeasureAverage() const
{
    std::vector<numeric::WeightedSignal> waves;
    std::vector<numeric::WeightedSignal> backups;
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        if (channel == nullptr || !channel->isEEGMeasureChannel())
            continue;
        waves.push_back({spanOf(channel->getDataWave(), channel->getTotalSample()), 1.0});
        backups.push_back({spanOf(channel->getBkData(), channel->getBkDataSample()), 1.0});
    }
    const CMDChannelzk* first = m_ppChannel[0];
    if (first == nullptr || first->getTotalSample() < 1 || first->getBkDataSample() < 1)
        return nullptr;
    auto made = tryNew<CMDChannelzk>();
    if (made == nullptr)
        return nullptr;
    made->m_nTotalSample = first->getTotalSample();
    made->m_nBkDataSample = first->getBkDataSample();
    made->m_pDataWave = tryNewSamples(made->m_nTotalSample, false);
    made->m_pBkData = tryNewSamples(made->m_nBkDataSample, false);
    if (made->m_pDataWave == nullptr || made->m_pBkData == nullptr)
        return nullptr;
    average(waves, made->m_pDataWave.get(), made->m_nTotalSample);
    average(backups, made->m_pBkData.get(), made->m_nBkDataSample);
    made->m_nChannelType = eegMeasureAverageType;
    made->m_strChannelNameRaw = made->m_strChannelName = made->m_strChannelTypeName = "EEG MEASURE CHANNEL AVERAGE";
    return made;
}

int CMDTrial2Process::applyMEGSnsrGainDir2Chnls(bool once)
{
    if (!m_ppChannel)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (CMDChannelzk* channel = m_ppChannel[i])
            channel->applyMEGSnsrGainDir2Data(once);
    return 1;
}

int CMDTrial2Process::scaleWaveData(double factor, int alsoBackup, int)
{
    if (!m_ppChannel)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (CMDChannelzk* channel = m_ppChannel[i])
            channel->scaleWaveData(factor, alsoBackup);
    return 1;
}

int CMDTrial2Process::setStimTrigChannel2AbsDc(int alsoBackup)
{
    if (!m_ppChannel)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (CMDChannelzk* channel = m_ppChannel[i]; channel != nullptr && channel->isTriggerChannel())
            channel->stimTrigChnl_AbsDc(1, alsoBackup);
    return 1;
}

int CMDTrial2Process::getAllSelectMinMeaMaxSdV(std::int64_t from, std::int64_t to,
                                               std::span<ChannelStatistics> out) const
{
    constexpr int blockChannels = 64;
    const int total = static_cast<int>(std::clamp<std::int64_t>(getTotalChannel(), 0, std::ssize(out)));
    std::array<const CMDChannel*, blockChannels> channels{};
    for (int begin = 0; begin < total; begin += blockChannels) {
        const int count = std::min(blockChannels, total - begin);
        for (int i = 0; i < count; ++i)
            channels[static_cast<std::size_t>(i)] = m_ppChannel[begin + i];
        CMDChannel::getSelectMinMeaMaxSdV(std::span(channels).first(static_cast<std::size_t>(count)), from, to,
                                          out.subspan(static_cast<std::size_t>(begin)));
    }
    return total;
}

} // namespace megset
