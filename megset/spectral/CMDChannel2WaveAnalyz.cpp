#include "megset/spectral/CMDChannel2WaveAnalyz.h"

#include "megset/records/records.h"
#include "megset/spectral/heldSlot.h"

namespace megset {

CChnlWaveAnalyzedResultzk* CMDChannel2WaveAnalyz::getWaveAnalyzeResult(int bCreate, int nClass)
{
    switch (nClass) {
    case 0:
        return getWaveAnalyzeResultA(bCreate);
    case 1:
        return getWaveAnalyzeResultC(bCreate);
    case 2:
        return getWaveAnalyzeResultX(bCreate);
    default:
        return nullptr;
    }
}

CChnlWaveAnalyzedResultzk* CMDChannel2WaveAnalyz::getWaveAnalyzeResultA(int bCreate)
{
    return heldObject(m_pWaveResultA, bCreate != 0);
}

CChnlWaveAnalyzedResultzk* CMDChannel2WaveAnalyz::getWaveAnalyzeResultC(int bCreate)
{
    return heldObject(m_pWaveResultC, bCreate != 0);
}

CChnlWaveAnalyzedResultzk* CMDChannel2WaveAnalyz::getWaveAnalyzeResultX(int bCreate)
{
    return heldObject(m_pWaveResultX, bCreate != 0);
}

} // namespace megset
