#include "megset/spectral/CSumChnlSpctmData.h"

#include "megset/spectral/spectralPlanes.h"

namespace megset {

CSumChnlSpctmData::~CSumChnlSpctmData()
{
    clean();
}

int CSumChnlSpctmData::checkInit(std::int64_t nTimePt, std::int64_t nFreqPt)
{
    if (nTimePt != m_nTimePt || nFreqPt != m_nFreqPt)
        clean();
    if (nTimePt < 1 || nFreqPt < 1)
        return 0;
    m_nTimePt = nTimePt;
    m_nFreqPt = nFreqPt;
    for (SampleArray* plane : {&m_pSumMin, &m_pSumMean, &m_pSumMax, &m_pSumPositive, &m_pSumNegative, &m_pSumRms}) {
        if (*plane == nullptr)
            *plane = tryNewSamples(planeCount(nTimePt, nFreqPt), true);
        if (*plane == nullptr) {
            clean();
            return 0;
        }
    }
    return 1;
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
