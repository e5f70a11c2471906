#include "megset/records/results/CGroupMeegCxcFace.h"

#include "megset/records/recordFormat.h"

#include <cmath>

namespace megset {

int CGroupMeegCxcFace::setSize(const std::vector<std::int32_t>& groupA, const std::vector<std::int32_t>& groupB,
                               std::int64_t lagBegin, std::int64_t lags)
{
    m_aGroupA = groupA;
    m_aGroupB = groupB;
    m_nLagBegin = lagBegin;
    m_nLagPt = lags;
    const auto channelsA = static_cast<std::int64_t>(m_aGroupA.size());
    const auto channelsB = static_cast<std::int64_t>(m_aGroupB.size());
    if (resizeToZeros(m_aValue, elementCount({channelsA, channelsB, lags})))
        return 1;
    *this = CGroupMeegCxcFace();
    return 0;
}

double CGroupMeegCxcFace::getValue(std::int64_t a, std::int64_t b, std::int64_t iLag) const
{
    return valueAt(m_aValue, indexOf(a, b, iLag));
}

int CGroupMeegCxcFace::setValue(std::int64_t a, std::int64_t b, std::int64_t iLag, double value)
{
    return setValueAt(m_aValue, indexOf(a, b, iLag), value);
}

int CGroupMeegCxcFace::getPeakLag(std::int64_t a, std::int64_t b, std::int64_t& lag, double& value) const
{
    std::int64_t peak = -1;
    for (std::int64_t i = 0; i < m_nLagPt && indexOf(a, b, i) >= 0; ++i) {
        const double candidate = getValue(a, b, i);
        if (!std::isnan(candidate) && (peak < 0 || std::abs(candidate) > std::abs(value))) {
            peak = i;
            value = candidate;
        }
    }
    if (peak < 0)
        return 0;
    lag = m_nLagBegin + peak;
    return 1;
}

bool CGroupMeegCxcFace::isConsistent() const
{
    const auto channelsA = static_cast<std::int64_t>(m_aGroupA.size());
    const auto channelsB = static_cast<std::int64_t>(m_aGroupB.size());
    return hasShape(m_aValue, {channelsA, channelsB, m_nLagPt});
}

// Place of a value, -1 outside.
std::int64_t CGroupMeegCxcFace::indexOf(std::int64_t a, std::int64_t b, std::int64_t iLag) const
{
    const auto channelsB = static_cast<std::int64_t>(m_aGroupB.size());
    if (!isWithin(a, static_cast<std::int64_t>(m_aGroupA.size())) || !isWithin(b, channelsB) ||
        !isWithin(iLag, m_nLagPt) || !isConsistent())
        return -1;
    return (a * channelsB + b) * m_nLagPt + iLag;
}

const FormatVersion<CGroupMeegCxcFace09File> CGroupMeegCxcFace09File::s_versions[1] = {
    {20261121, &CGroupMeegCxcFace09File::serialize_20261121},
};

int CGroupMeegCxcFace09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "GROUPMEEGCXCFACEZK", s_versions);
}

int CGroupMeegCxcFace09File::serialize_20261121(CArchive& ar)
{
    exchangeNumbers(ar, m_aGroupA, "m_aGroupA");
    exchangeNumbers(ar, m_aGroupB, "m_aGroupB");
    EXCHANGE_FIELDS(ar, m_nLagBegin, m_nLagPt, m_nDataBegin, m_nDataEnd);
    exchangeNumbers(ar, m_aValue, "m_aValue");
    return isConsistent() ? 1 : 0;
}

} // namespace megset
