#include "megset/spectral/CSumChnlSpctmData.h"

namespace megset {

CSumChnlSpctmData::~CSumChnlSpctmData()
{
    clean();
}

int CSumChnlSpctmData::clean()
{
    for (SampleArray* plane : {&m_pSumMin, &m_pSumMean, &m_pSumMax, &m_pSumPositive, &m_pSumNegative, &m_pSumRms})
        plane->reset();
    m_nTimePt = m_nFreqPt = 0;
    m_nRangeValid = 0;
    m_nChannels = 0;
    m_dRangeMax = m_dRangeMean = m_dRangeMin = 0.0;
    m_dRangePositive = m_dRangeNegative = m_dRangeRms = 0.0;
    m_dReserved1 = m_dReserved2 = m_dReserved3 = 0.0;
    return 1;
}

} // namespace megset
