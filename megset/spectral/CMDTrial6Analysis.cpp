#include "megset/spectral/CMDTrial6Analysis.h"

#include "megset/core/CMDChannelzk.h"

#include <algorithm>

namespace megset {

int CMDTrial6Analysis::getWadChnl(int)
{
    if (!m_ppChannel)
        return 0;
    m_nWadChannels = 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (m_ppChannel[i] != nullptr && m_ppChannel[i]->m_pWaveResultA != nullptr)
            ++m_nWadChannels;
    return m_nWadChannels;
}

std::int64_t CMDTrial6Analysis::getWadMaxSample(int nKind)
{
    m_nWadChannels = 0;
    m_nWadMaxSample = 0;
    getWadChnl(0);
    for (int i = 0; i < getTotalChannel(); ++i)
        if (m_ppChannel[i] != nullptr && m_ppChannel[i]->m_pWaveResultA != nullptr)
            m_nWadMaxSample = std::max(m_nWadMaxSample, m_ppChannel[i]->m_pWaveResultA->getMaxSample(nKind));
    return m_nWadMaxSample;
}

bool CMDTrial6Analysis::hasWaveAnalyzDataX4draw(int nClass, int nKind)
{
    for (int i = 0; i < getTotalChannel(); ++i) {
        CMDChannelzk* channel = m_ppChannel[i];
        const CChnlWaveAnalyzedResultzk* result =
            channel != nullptr ? channel->getWaveAnalyzeResult(0, nClass) : nullptr;
        if (result == nullptr || result->getWadX(nKind, 0) == nullptr)
            continue;
        if (i > m_nCurrentChannel)
            m_nCurrentChannel = i;
        return true;
    }
    return false;
}

} // namespace megset
