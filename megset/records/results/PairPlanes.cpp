#include "megset/records/results/PairPlanes.h"

#include "megset/platform/archiveLists.h"

namespace megset {

void CohPair::exchangeFields(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nChannel, m_nReference);
}

int PairPlanes::setSize(std::int64_t timePt, std::int64_t freqPt, std::int64_t pairs)
{
    m_aPair.clear();
    m_nTimePt = m_nFreqPt = m_nCurrentPair = 0;
    if (!resizeToZeros(m_aValue, elementCount({pairs, timePt, freqPt})))
        return 0;
    // Without values nothing speaks for the number of pairs.
    if (pairs > static_cast<std::int64_t>(m_aValue.size()))
        return 0;
    m_aPair.resize(static_cast<std::size_t>(pairs));
    m_nTimePt = timePt;
    m_nFreqPt = freqPt;
    return 1;
}

double PairPlanes::getValue(std::int64_t iTime, std::int64_t iFreq, std::int64_t iPair) const
{
    return valueAt(m_aValue, indexOf(iTime, iFreq, iPair));
}

int PairPlanes::setValue(std::int64_t iTime, std::int64_t iFreq, std::int64_t iPair, double value)
{
    return setValueAt(m_aValue, indexOf(iTime, iFreq, iPair), value);
}

int PairPlanes::exchangePlanes(CArchive& ar)
{
    exchangeAxes(ar);
    EXCHANGE_FIELDS(ar, m_nCurrentPair);
    exchangeList(ar, m_aPair, [&ar](CohPair& pair) { pair.exchangeFields(ar); });
    exchangeNumbers(ar, m_aValue, "m_aValue");
    return hasShape(m_aValue, {getTotalPair(), m_nTimePt, m_nFreqPt}) ? 1 : 0;
}

// Place of a value, -1 for an index outside its axis.
std::int64_t PairPlanes::indexOf(std::int64_t iTime, std::int64_t iFreq, std::int64_t iPair) const
{
    const std::int64_t time = iTime == -1 ? m_nSelectTimeBegin : iTime;
    const std::int64_t freq = iFreq == -1 ? m_nSelectFreqBegin : iFreq;
    const std::int64_t pair = iPair == -1 ? m_nCurrentPair : iPair;
    if (!isWithin(time, m_nTimePt) || !isWithin(freq, m_nFreqPt) || !isWithin(pair, getTotalPair()) ||
        !hasShape(m_aValue, {getTotalPair(), m_nTimePt, m_nFreqPt}))
        return -1;
    return (pair * m_nTimePt + time) * m_nFreqPt + freq;
}

} // namespace megset
