#include "megset/records/results/SpctmAxes.h"

#include <algorithm>

namespace megset {
namespace {

// A file may hold any number of points.
std::int64_t limited(std::int64_t index, std::int64_t points)
{
    return std::clamp<std::int64_t>(index, 0, std::max<std::int64_t>(points, 1) - 1);
}

} // namespace

std::int64_t SpctmAxes::getSpctmTimePt(std::int64_t iTime) const
{
    // Without sign, so that the values of a broken file wrap around.
    const auto wide = [](std::int64_t value) { return static_cast<std::uint64_t>(value); };
    return static_cast<std::int64_t>(wide(limited(iTime, m_nTimePt)) * wide(m_nTimeStep) + wide(m_nEdgePt) +
                                     wide(m_nDataBegin));
}

double SpctmAxes::getSpctmFreqHz(std::int64_t iFreq) const
{
    return m_dFreqBegin + m_dFreqLinearStep * static_cast<double>(limited(iFreq, m_nFreqPt));
}

void SpctmAxes::exchangeAxes(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nTimePt, m_nFreqPt, m_nDataBegin, m_nEdgePt, m_nTimeStep, m_dFreqBegin, m_dFreqLinearStep,
                    m_nSelectTimeBegin, m_nSelectTimeEnd, m_nSelectFreqBegin, m_nSelectFreqEnd);
}

} // namespace megset
