#include "megset/spectral/CMEGData5VirtualSns.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/spectral/heldSlot.h"

namespace megset {

CVirtSnsPOXlistzk* CMEGData5VirtualSns::getVirtSnsPOXlist4Spctm(int bCreate)
{
    return heldObject(m_pVirtSnsPOXlist4Spctm, bCreate != 0);
}

CVirtSnsPOXlistzk* CMEGData5VirtualSns::getVirtSnsPOXlist4Wave(int bCreate)
{
    return heldObject(m_pVirtSnsPOXlist4Wave, bCreate != 0);
}

CFaceVirtChnlSpctmzk* CMEGData5VirtualSns::currentVirtSpctm() const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    return trial != nullptr ? trial->m_pVirtSpctm.get() : nullptr;
}

double CMEGData5VirtualSns::getLatencyMs4VirtSpctmTimePt(std::int64_t iTime)
{
    const CFaceVirtChnlSpctmzk* face = currentVirtSpctm();
    return face != nullptr ? latencyMs4Sample(face->getSpctmTimePt(iTime)) : -1.0;
}

int CMEGData5VirtualSns::getVirtSpctmSelectTime2LatencyMsec(double& dBegin, double& dEnd)
{
    dBegin = dEnd = 0.0;
    const CFaceVirtChnlSpctmzk* face = currentVirtSpctm();
    if (face == nullptr || face->getVirtChnlSpctm(-1) == nullptr)
        return 0;
    return latenciesOfRange(face->m_nSelectTimeBegin, face->m_nSelectTimeEnd, dBegin, dEnd,
                            [this](std::int64_t iTime) { return getLatencyMs4VirtSpctmTimePt(iTime); });
}

} // namespace megset
