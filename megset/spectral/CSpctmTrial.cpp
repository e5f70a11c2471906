#include "megset/spectral/CSpctmTrial.h"

#include "megset/numeric/wrapping.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <algorithm>
#include <cmath>

namespace megset {
namespace {

// The last index of an axis; -1 of an empty one, also when a file made it negative.
std::int64_t lastIndex(std::int64_t count)
{
    return std::max<std::int64_t>(count, 0) - 1;
}

// Puts a given index, brought into the axis, into a field of the selection; -1 keeps the field.
void select(std::int64_t& field, std::int64_t index, std::int64_t count)
{
    if (index != -1)
        field = std::clamp<std::int64_t>(index, 0, std::max<std::int64_t>(lastIndex(count), 0));
}

// begin * step^n, multiplied out. Axes as long as no transform gives them take the power, so that they come to an end.
double steppedFrequency(double begin, double step, std::int64_t n)
{
    constexpr std::int64_t longestAxis = 1'000'000;
    if (n > longestAxis)
        return begin * std::pow(step, static_cast<double>(n));
    double frequency = begin;
    for (std::int64_t k = 0; k < n; ++k)
        frequency *= step;
    return frequency;
}

} // namespace

CSpctmTrial::~CSpctmTrial()
{
    _cleanAll();
}

int CSpctmTrial::getSpctmFreqRangeHz(double& dLow, double& dHigh) const
{
    dLow = m_dFreqBegin;
    dHigh = m_dFreqEnd;
    return 1;
}

CSumChnlSpctmDatazk* CSpctmTrial::getSumChnlSpctmData(int nDataType)
{
    CSumChnlSpctmDatazk* const sums[] = {&m_aSumChnlR, &m_aSumChnlI, &m_aSumChnlM, &m_aSumChnlA};
    return nDataType >= 0 && nDataType < 4 ? sums[nDataType] : nullptr;
}

double CSpctmTrial::getSpctmFreq4FreqIndex(std::int64_t i) const
{
    if (m_nFreqPt < 1)
        return -1.0;
    const std::int64_t index = std::clamp<std::int64_t>(i, 0, lastIndex(m_nFreqPt));
    const double frequency = m_nFreqPowerStep != 0
                                 ? steppedFrequency(m_dFreqBegin, m_dFreqPowerStep, numeric::wrapAdd(index, 1))
                                 : static_cast<double>(index) * m_dFreqLinearStep + m_dFreqBegin;
    return frequency < m_dFreqEnd ? frequency : m_dFreqEnd;
}

int CSpctmTrial::setSpctmResultType(int nType)
{
    m_nSpctmResultType = nType;
    return 1;
}

int CSpctmTrial::setSpctmTimePtFreqPt(std::int64_t nTimePt, std::int64_t nFreqPt, std::int64_t nTimeStep)
{
    m_nTimePt = nTimePt;
    m_nFreqPt = nFreqPt;
    m_nTimeStep = nTimeStep;
    return 1;
}

int CSpctmTrial::setTrialFreqRange4Spctm(double dLow, double dHigh)
{
    m_dFreqBegin = dLow;
    m_dFreqEnd = dHigh;
    return 1;
}

int CSpctmTrial::setTrialTimeDataRange4Spctm(std::int64_t nBegin, std::int64_t nEnd)
{
    m_nDataBegin = nBegin;
    m_nDataEnd = nEnd;
    m_nDataLength = numeric::wrapSubtract(nEnd, nBegin);
    return 1;
}

int CSpctmTrial::setChnlRIX(int nRix1, int nRix2, int nRix3, int nRix4, int nRix5)
{
    m_nSpctmRix1 = nRix1;
    m_nSpctmRix2 = nRix2;
    m_nSpctmRix3 = nRix3;
    m_nSpctmRix4 = nRix4;
    m_nSpctmRix5 = nRix5;
    return 1;
}

int CSpctmTrial::setTrialSpctmInfo(int, int, double dMin, double dMax, double, double, int, int nDataType)
{
    if (CSumChnlSpctmDatazk* const sums = getSumChnlSpctmData(nDataType)) {
        sums->m_dRangeMin = dMin;
        sums->m_dRangeMax = dMax;
    }
    return 1;
}

int CSpctmTrial::setParameters(const CSpctmTrialzk* pOther)
{
    if (pOther == nullptr)
        return 0;
    m_nSpctmCmptType = pOther->m_nSpctmCmptType;
    m_nSpctmRix1 = pOther->m_nSpctmRix1;
    m_nAccumSpctm = pOther->m_nAccumSpctm;
    m_nTimePt = pOther->m_nTimePt;
    m_nFreqPt = pOther->m_nFreqPt;
    m_nDataLength = pOther->m_nDataLength;
    m_nDataBegin = pOther->m_nDataBegin;
    m_nDataEnd = pOther->m_nDataEnd;
    m_nEdgePt = pOther->m_nEdgePt;
    m_nEdgePt2 = pOther->m_nEdgePt2;
    m_nTimeStep = pOther->m_nTimeStep;
    m_dFreqBegin = pOther->m_dFreqBegin;
    m_dFreqEnd = pOther->m_dFreqEnd;
    m_nFreqPowerStep = pOther->m_nFreqPowerStep;
    m_dFreqLinearStep = pOther->m_dFreqLinearStep;
    m_dFreqPowerStep = pOther->m_dFreqPowerStep;
    m_dSpctmParam = pOther->m_dSpctmParam;
    m_dSamplingRate = pOther->m_dSamplingRate;
    m_nSpctmRix2 = pOther->m_nSpctmRix2;
    m_nSpctmParam1 = pOther->m_nSpctmParam1;
    m_nSpctmParam2 = pOther->m_nSpctmParam2;
    m_nSpctmResultType = pOther->m_nSpctmResultType;
    m_nSpctmNormState = pOther->m_nSpctmNormState;
    m_nSelectTimeBegin = pOther->m_nSelectTimeBegin;
    m_nSelectTimeEnd = pOther->m_nSelectTimeEnd;
    m_nSelectFreqBegin = pOther->m_nSelectFreqBegin;
    m_nSelectFreqEnd = pOther->m_nSelectFreqEnd;
    // m_nSpctmParam3 to m_nSpctmParam9 and the labels are left out as it is meant.
    m_nSpctmRix3 = pOther->m_nSpctmRix3;
    m_nSpctmRix4 = pOther->m_nSpctmRix4;
    m_nSpctmRix5 = pOther->m_nSpctmRix5;
    m_nSpctmParam10 = pOther->m_nSpctmParam10;
    for (CSumChnlSpctmDatazk* sums : {&m_aSumChnlR, &m_aSumChnlI, &m_aSumChnlM, &m_aSumChnlA})
        sums->clean();
    return 1;
}

int CSpctmTrial::_checkInitTrlSpctmData(int nDataType, std::int64_t nTimePt, std::int64_t nFreqPt)
{
    CSumChnlSpctmDatazk* const sums = getSumChnlSpctmData(nDataType);
    return sums != nullptr ? sums->checkInit(nTimePt, nFreqPt) : 1;
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

int CSpctmTrial::setTrialSpctmSelectTime(std::int64_t nBegin, std::int64_t nEnd)
{
    select(m_nSelectTimeBegin, nBegin, m_nTimePt);
    select(m_nSelectTimeEnd, nEnd, m_nTimePt);
    return 1;
}

int CSpctmTrial::setTrialSpctmSelectFreq(std::int64_t nBegin, std::int64_t nEnd)
{
    select(m_nSelectFreqBegin, nBegin, m_nFreqPt);
    select(m_nSelectFreqEnd, nEnd, m_nFreqPt);
    return 1;
}

int CSpctmTrial::setTrialSpctmSelectTimeFreqBB(std::int64_t nTime, std::int64_t nFreq)
{
    select(m_nSelectTimeBegin, nTime, m_nTimePt);
    select(m_nSelectFreqBegin, nFreq, m_nFreqPt);
    return 1;
}

int CSpctmTrial::setTrialSpctmSelectTimeFreqEE(std::int64_t nTime, std::int64_t nFreq)
{
    select(m_nSelectTimeEnd, nTime, m_nTimePt);
    select(m_nSelectFreqEnd, nFreq, m_nFreqPt);
    m_nSelectTimeEnd = std::max(m_nSelectTimeEnd, m_nSelectTimeBegin);
    m_nSelectFreqEnd = std::max(m_nSelectFreqEnd, m_nSelectFreqBegin);
    return 1;
}

int CSpctmTrial::getTrialSpctmSelectTimeFreqBB(std::int64_t& nTime, std::int64_t& nFreq) const
{
    nTime = m_nSelectTimeBegin;
    nFreq = m_nSelectFreqBegin;
    return 1;
}

int CSpctmTrial::getTrialSpctmSelectTimeFreqEE(std::int64_t& nTime, std::int64_t& nFreq) const
{
    nTime = m_nSelectTimeEnd;
    nFreq = m_nSelectFreqEnd;
    return 1;
}

std::int64_t CSpctmTrial::getTrialSpctmSelectTime(std::int64_t& nBegin, std::int64_t& nEnd)
{
    m_nSelectTimeBegin = std::max<std::int64_t>(m_nSelectTimeBegin, 0);
    m_nSelectTimeEnd = std::max(m_nSelectTimeEnd, m_nSelectTimeBegin);
    m_nSelectTimeEnd = std::min(m_nSelectTimeEnd, lastIndex(m_nTimePt));
    nBegin = m_nSelectTimeBegin;
    nEnd = m_nSelectTimeEnd;
    return nEnd - nBegin + 1;
}

std::int64_t CSpctmTrial::getTrialSpctmSelectFreq(std::int64_t& nBegin, std::int64_t& nEnd)
{
    m_nSelectFreqEnd = std::min(m_nSelectFreqEnd, lastIndex(m_nFreqPt));
    m_nSelectFreqBegin = std::min(m_nSelectFreqBegin, m_nSelectFreqEnd);
    m_nSelectFreqBegin = std::max<std::int64_t>(m_nSelectFreqBegin, 0);
    nBegin = m_nSelectFreqBegin;
    nEnd = m_nSelectFreqEnd;
    return nEnd - nBegin + 1;
}

int CSpctmTrial::getTrialSpctmSelectFreqHz(double& dLow, double& dHigh) const
{
    return getTrialSpctmGivenFreqID4Hz(m_nSelectFreqBegin, m_nSelectFreqEnd, dLow, dHigh);
}

int CSpctmTrial::getTrialSpctmGivenFreqID4Hz(std::int64_t iA, std::int64_t iB, double& dLow, double& dHigh) const
{
    const bool differ = iA != iB;
    dLow = getSpctmFreq4FreqIndex(iA);
    dHigh = getSpctmFreq4FreqIndex(differ ? iB : std::min(iA, INT64_MAX - 1) + 1);
    return differ ? 2 : 1;
}

} // namespace megset
