#include "megset/spectral/CMDTrial7Coh01TimeData.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/spectral/heldSlot.h"

#include <cmath>

namespace megset {
namespace {

struct PairStatistics
{
    std::int64_t pairs = 0;
    double min = 0.0;
    double sum = 0.0;
    double max = 0.0;
    double squares = 0.0;

    void take(double value)
    {
        if (pairs++ == 0)
            min = max = value;
        min = value < min ? value : min;
        max = value > max ? value : max;
        sum += value;
        squares += value * value;
    }
    // No pair divides by 0: it is meant so.
    double mean() const { return sum / static_cast<double>(pairs); }
    double rms() const { return std::sqrt(squares / static_cast<double>(pairs)); }
};

template <class Counts>
PairStatistics statisticsOf(const CSnsCohDatazk& data, Counts counts)
{
    PairStatistics statistics;
    for (std::int64_t k = 0; k < data.getTotalPair(); ++k)
        if (counts(data.m_aPair[static_cast<std::size_t>(k)]))
            statistics.take(data.getValue(-1, -1, k));
    return statistics;
}

int give(const PairStatistics& statistics, double& dMin, double& dMean, double& dMax, double& dRms)
{
    dMin = statistics.min;
    dMean = statistics.mean();
    dMax = statistics.max;
    dRms = statistics.rms();
    return 1;
}

} // namespace

CMDTrial7Coh01TimeData::~CMDTrial7Coh01TimeData()
{
    _cleanTrialCoherenceFacezkTime();
}

CSnsCohFacezk* CMDTrial7Coh01TimeData::getCoherenceFacezkTime(bool bCreate)
{
    return heldObject(m_pCohFaceTime, bCreate);
}

int CMDTrial7Coh01TimeData::setCoherenceFacezkTime(CSnsCohFacezk* pNew)
{
    return replaceHeld(m_pCohFaceTime, pNew, "Would you like to delete the existing coherence data?!");
}

int CMDTrial7Coh01TimeData::_cleanTrialCoherenceFacezkTime()
{
    m_pCohFaceTime.reset();
    return 1;
}

CGroupMeegCxcFacezk* CMDTrial7Coh01TimeData::getGroupCxcData(int bCreate)
{
    return heldObject(m_pGroupCxc, bCreate != 0);
}

CString CMDTrial7Coh01TimeData::getCohMeasurementResults(int iData) const
{
    double min = 0.0;
    double mean = 0.0;
    double max = 0.0;
    double rms = 0.0;
    if (!getCohMeasurementResults(iData, min, mean, max, rms, false))
        return "None";
    return CString::formatted("%f      %f      %f    %f ", min, mean, max, rms);
}

int CMDTrial7Coh01TimeData::getCohMeasurementResults(int iData, double& dMin, double& dMean, double& dMax, double& dRms,
                                                     bool) const
{
    const CSnsCohDatazk* data = coherenceData(iData);
    if (data == nullptr)
        return 0;
    return give(statisticsOf(*data, [](const CohPair&) { return true; }), dMin, dMean, dMax, dRms);
}

int CMDTrial7Coh01TimeData::getCohMeasurementResultsSN(int iData, CString strName, double& dMin, double& dMean,
                                                       double& dMax, double& dRms, bool) const
{
    const CSnsCohDatazk* data = coherenceData(iData);
    if (!m_ppChannel || data == nullptr)
        return 0;
    const auto isNamed = [&](const CohPair& pair) { return strName.IsEmpty() || nameOfPair(pair).Find(strName) >= 0; };
    return give(statisticsOf(*data, isNamed), dMin, dMean, dMax, dRms);
}

const CSnsCohDatazk* CMDTrial7Coh01TimeData::coherenceData(int iData) const
{
    return m_pCohFaceTime != nullptr ? m_pCohFaceTime->getCoherenceData(iData) : nullptr;
}

// A pair of no channel has no name.
CString CMDTrial7Coh01TimeData::nameOfPair(const CohPair& pair) const
{
    const CMDChannelzk* channel = m_ppChannel[pair.m_nChannel];
    return channel != nullptr ? channel->m_strChannelName : CString();
}

} // namespace megset
