#include "megset/spectral/CSpctmTrial.h"

namespace megset {

CSpctmTrial::~CSpctmTrial()
{
    _cleanAll();
}

int CSpctmTrial::_cleanAll()
{
    return _cleanSpctmGlobeRange();
}

int CSpctmTrial::_cleanSpctmGlobeRange()
{
    for (CSumChnlSpctmDatazk* sums : {&m_aSumChnlR, &m_aSumChnlI, &m_aSumChnlM, &m_aSumChnlA}) {
        sums->m_pSumMin.reset();
        sums->m_pSumMean.reset();
        sums->m_pSumMax.reset();
    }
    return 1;
}

int CSpctmTrial::_cleanSpctmFreqPeaks()
{
    return 1;
}

} // namespace megset
