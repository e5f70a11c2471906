#include "megset/processing/CMDTrial2Process.h"

#include "megset/core/CMDChannelzk.h"

#include <algorithm>
#include <array>

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
