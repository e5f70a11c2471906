#include "megset/spectral/CMDTrial4Spctm.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

namespace megset {

int CMDTrial4Spctm::_cleanSpctmChnlDataAll()
{
    if (!m_ppChannel)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (CMDChannelzk* channel = m_ppChannel[i])
            channel->_cleanSpctmDataChnl();
    return 1;
}

int CMDTrial4Spctm::_cleanSpctmTrlData()
{
    m_pSpctmTrialA.reset();
    m_pSpctmTrialC.reset();
    m_pSpctmTrialR.reset();
    return 1;
}

} // namespace megset
