#include "megset/spectral/CSpctmTrial03Process.h"

#include "megset/numeric/cut.h"
#include "megset/numeric/wrapping.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>

namespace megset {

int CSpctmTrial03Process::getSelectBE4DrawWave(std::int64_t& nBegin, std::int64_t& nEnd)
{
    m_nTimeStep = std::max<std::int64_t>(m_nTimeStep, 1);
    nBegin = numeric::wrapAdd(m_nDataBegin, m_nEdgePt);
    nEnd = numeric::wrapSubtract(m_nDataEnd, m_nEdgePt);
    if (m_nAccumSpctm == 1)
        return 0;
    const std::int64_t samples = numeric::wrapAdd(numeric::wrapSubtract(nEnd, nBegin), 1);
    if (m_nTimePt == samples / m_nTimeStep)
        return 1;
    AfxMessageBox("spectral size error!", MB_OK);
    return 0;
}

std::int64_t CSpctmTrial03Process::getSpctmFreqIndex4Freq(double dHz) const
{
    if (dHz <= m_dFreqBegin)
        return 0;
    if (dHz >= m_dFreqEnd)
        return std::max<std::int64_t>(m_nFreqPt, 0) - 1;
    return numeric::cutToCount((dHz - m_dFreqBegin) / m_dFreqLinearStep);
}

} // namespace megset
