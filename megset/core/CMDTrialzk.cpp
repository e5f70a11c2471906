#include "megset/core/CMDTrialzk.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>

namespace megset {

int CMDTrialzk::allocateChannels(int n)
{
    _cleanSpctmChnlDataAll();
    _cleanTrialChannels();
    if (n < 1)
        return 0;
    bool made = m_ppChannel.allocate(n) != 0;
    for (int i = 0; made && i < n; ++i)
        made = m_ppChannel.set(i, tryNew<CMDChannelzk>()) != nullptr;
    if (!made) {
        m_ppChannel.reset();
        AfxMessageBox("Not enough memory?", MB_OK);
        return 0;
    }
    m_nTotalChannel = n;
    m_nCurrentChannel = 0;
    return 1;
}

int CMDTrialzk::copyRawData(bool meg, bool eeg, bool, bool others)
{
    if (getTotalChannel() < 1)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i) {
        CMDChannelzk* channel = m_ppChannel[i];
        if (channel == nullptr)
            continue;
        if ((meg && channel->isMEGChannel()) || (eeg && channel->isEEGChannel()) || others)
            channel->reverseRawData();
    }
    return 1;
}

int CMDTrialzk::copyTrialInfo(const CMDTrialzk* source)
{
    if (source == nullptr || getTotalChannel() < 1)
        return 0;
    m_headLocalization = source->m_headLocalization;
    const int both = std::min(getTotalChannel(), source->getTotalChannel());
    for (int i = 0; i < both; ++i)
        if (m_ppChannel[i] != nullptr && source->m_ppChannel[i] != nullptr &&
            !m_ppChannel[i]->copyChannelInfo(source->m_ppChannel[i]))
            return 0;
    return 1;
}

int CMDTrialzk::setChnlWaveData(int channels, std::int64_t samples, const double* data)
{
    if (channels != getTotalChannel())
        _cleanTrialChannels();
    if (channels < 1)
        return 0;
    if (!m_ppChannel && !allocateChannels(channels))
        return 0;
    if (samples < 1 || data == nullptr)
        return 0;
    for (int i = 0; i < channels; ++i) {
        CMDChannelzk* channel = m_ppChannel[i];
        if (channel != nullptr && !channel->addData(samples, data + i * samples))
            return 0;
    }
    return 1;
}

int CMDTrialzk::setEEG_electrodes(const CEEGelectrodezk* electrode)
{
    if (electrode == nullptr || getTotalChannel() < 1)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        CEEGelectrodezk* own = channel != nullptr ? channel->getEegElectrode(0) : nullptr;
        if (own != nullptr && channel->m_strChannelNameRaw == electrode->m_strElectrodeName) {
            *own = *electrode;
            break;
        }
    }
    return 1;
}

int CMDTrialzk::setEEG_electrodesPositionMe(CPtrArray* positions)
{
    if (positions == nullptr || getTotalChannel() < 1)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        if (CEEGelectrodezk* electrode = channel != nullptr ? channel->getEegElectrode(0) : nullptr)
            electrode->findPosReadPea(positions);
    }
    return 1;
}

int CMDTrialzk::setEEG_electrodesPositionPohemus(int id, double x, double y, double z)
{
    if (getTotalChannel() < 1)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CMDChannelzk* channel = m_ppChannel[i];
        CEEGelectrodezk* electrode = channel != nullptr ? channel->getEegElectrode(0) : nullptr;
        if (electrode != nullptr && electrode->m_nElectrodeID == id) {
            electrode->m_dElectrodePos[0] = x;
            electrode->m_dElectrodePos[1] = y;
            electrode->m_dElectrodePos[2] = z;
            break;
        }
    }
    return 1;
}

} // namespace megset
