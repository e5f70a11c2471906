#include "megset/spectral/CSpctmTrial03Process.h"

#include "megset/numeric/wrapping.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <cmath>

namespace megset {
namespace {

// Cut toward zero; what an int64 can't hold goes to its ends, and what is no number to 0.
std::int64_t truncated(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return INT64_MAX;
    return value < -limit ? INT64_MIN : static_cast<std::int64_t>(value);
}

} // namespace

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
    return truncated((dHz - m_dFreqBegin) / m_dFreqLinearStep);
}

} // namespace megset
