// Selections of a channel's plane, or of a sum plane of the trial.

#include "megset/spectral/CMDTrial4Spctm.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/numeric/arithmetic.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/spectralPlanes.h"
#include "megset/spectral/spectrumSelection.h"

#include <algorithm>
#include <cmath>

namespace megset {
namespace {

numeric::ProfileOf profileOf(int nMode)
{
    constexpr numeric::ProfileOf what[] = {numeric::ProfileOf::LargestAbsolute, numeric::ProfileOf::Sum,
                                           numeric::ProfileOf::SumOfSquares};
    return what[(nMode - 1) % 3];
}

// The bounds with those of -1 taken from the selection.
numeric::PlaneRectangle resolved(const CSpctmTrialzk& spectrum, numeric::PlaneRectangle wanted)
{
    const auto resolve = [](std::int64_t& bound, std::int64_t selected) { bound = bound == -1 ? selected : bound; };
    resolve(wanted.timeBegin, spectrum.m_nSelectTimeBegin);
    resolve(wanted.timeEnd, spectrum.m_nSelectTimeEnd);
    resolve(wanted.freqBegin, spectrum.m_nSelectFreqBegin);
    resolve(wanted.freqEnd, spectrum.m_nSelectFreqEnd);
    return wanted;
}

} // namespace

// Where a selection is read from.
struct CMDTrial4Spctm::PlaneSource
{
    bool isThere = false;            ///< the plane that was asked for
    CSpctmChnlzk* channel = nullptr; ///< for source 0
    numeric::ConstPlane plane;
    std::int64_t nTimePt = 0; ///< what the whole plane is
    std::int64_t nFreqPt = 0;
};

CMDTrial4Spctm::PlaneSource CMDTrial4Spctm::planeSource(int nPhyVirt, int iChannel, CSpctmTrialzk& spectrum, int nClass,
                                                        int nDataType)
{
    PlaneSource source;
    if (nPhyVirt == 0) {
        const int index = channelIndex(iChannel);
        CMDChannelzk* const channel = index < 0 ? nullptr : m_ppChannel[index];
        source.channel = channel != nullptr ? channel->getSpctmChnl(false, nClass) : nullptr;
        if (!hasSpctmPlane(channel, nClass, nDataType))
            return source;
        const double* const values = source.channel->getSpctmDataPtr(nDataType, &source.nTimePt, &source.nFreqPt);
        const auto count = static_cast<std::size_t>(planeCount(source.nTimePt, source.nFreqPt));
        source.plane = {{values, count}, source.nFreqPt};
        source.isThere = true;
        return source;
    }
    CSumChnlSpctmDatazk* const sums = spectrum.getSumChnlSpctmData(nDataType);
    const SampleArray* const values = sums != nullptr ? sumPlane(*sums, nPhyVirt) : nullptr;
    if (values == nullptr)
        return source;
    // The rows are counted in the frequencies of the class, also where the sums have another shape.
    source.nTimePt = std::max<std::int64_t>(spectrum.m_nTimePt, 0);
    source.nFreqPt = std::max<std::int64_t>(spectrum.m_nFreqPt, 0);
    const auto elements = planeSpan(*values, planeCount(sums->m_nTimePt, sums->m_nFreqPt));
    source.plane = {elements, source.nFreqPt};
    source.isThere = !elements.empty();
    return source;
}

CString CMDTrial4Spctm::getSelectSpctmValue2Txt(int nPhyVirt, int nClass, int nDataType, int iChannel,
                                                std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin,
                                                std::int64_t iFreqEnd)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (!m_ppChannel || spectrum == nullptr)
        return "No data";
    const PlaneSource source = planeSource(nPhyVirt, iChannel, *spectrum, nClass, nDataType);
    if (!source.isThere)
        return "None";
    const auto r = clampedForReaders(resolved(*spectrum, {iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}),
                                     spectrum->m_nTimePt, spectrum->m_nFreqPt);
    if (source.channel != nullptr)
        return source.channel->getSelectSpctmValue2Txt(nDataType, r.timeBegin, r.timeEnd, r.freqBegin, r.freqEnd);
    return readText(source.plane, r);
}

std::int64_t CMDTrial4Spctm::getSelectSpctmValueMMMR(int nPhyVirt, int nClass, int nDataType, int iChannel,
                                                     std::int64_t iTimeBegin, std::int64_t iTimeEnd,
                                                     std::int64_t iFreqBegin, std::int64_t iFreqEnd, double& dMin,
                                                     double& dMean, double& dMax, double& dRms)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr)
        return 0;
    const PlaneSource source = planeSource(nPhyVirt, iChannel, *spectrum, nClass, nDataType);
    if (!source.isThere)
        return 0;
    const auto r = clampedForReaders(resolved(*spectrum, {iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}),
                                     spectrum->m_nTimePt, spectrum->m_nFreqPt);
    if (source.channel != nullptr)
        return source.channel->getSelectSpctmValueMMMR(nDataType, r.timeBegin, r.timeEnd, r.freqBegin, r.freqEnd, dMin,
                                                       dMean, dMax, dRms);
    readStatistics(source.plane, r, dMin, dMean, dMax, dRms);
    return 1; // and not the count: it is meant so
}

std::int64_t CMDTrial4Spctm::getSelectSpctmValueXX(int nPhyVirt, int nClass, int nDataType, int nMode, int iChannel,
                                                   std::int64_t iTimeBegin, std::int64_t iTimeEnd,
                                                   std::int64_t iFreqBegin, std::int64_t iFreqEnd, std::int64_t nOutMax,
                                                   double* pOut)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr || nMode < 1 || nMode > 6 || pOut == nullptr)
        return 0;
    const PlaneSource source = planeSource(nPhyVirt, iChannel, *spectrum, nClass, nDataType);
    auto r = clampedForReaders(resolved(*spectrum, {iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd}), spectrum->m_nTimePt,
                               spectrum->m_nFreqPt);
    // No frequency at all is fine: the whole plane may be meant.
    if (!source.isThere || r.timeEnd < 0 || r.timeBegin > r.timeEnd || r.freqEnd - r.freqBegin + 1 < 0)
        return 0;
    const auto n = static_cast<double>(r.timeEnd - r.timeBegin + 1); // of the selection, in all modes: it is meant so
    if (nMode > 3)
        r = {0, source.nTimePt - 1, 0, source.nFreqPt - 1};
    const std::int64_t count = std::min(nOutMax, r.freqEnd - r.freqBegin + 1);
    if (count < 1)
        return 1;
    const std::span<double> out(pOut, static_cast<std::size_t>(count));
    const numeric::ProfileOf what = profileOf(nMode);
    numeric::rectangleProfile(source.plane, r, what, out);
    if (what != numeric::ProfileOf::LargestAbsolute)
        numeric::divideInPlace(out, n);
    if (what == numeric::ProfileOf::SumOfSquares)
        for (double& value : out)
            value = std::sqrt(value);
    return 1;
}

int CMDTrial4Spctm::getSelectSpctmValueX_PhyVirt(int nPhyVirt, int iChannel, std::int64_t iTimeBegin,
                                                 std::int64_t iTimeEnd, std::int64_t iFreqBegin, std::int64_t iFreqEnd,
                                                 double& dValue, std::int64_t& nCount, int nClass, int nDataType)
{
    dValue = 0.0;
    nCount = 0;
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr)
        return 0;
    const PlaneSource source = planeSource(nPhyVirt, iChannel, *spectrum, nClass, nDataType);
    const auto r = resolved(*spectrum, {iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd});
    if (nPhyVirt == 0 && source.channel == nullptr)
        return 1;
    if (nPhyVirt == 0)
        return source.channel->getSelectSpctmValueX(r.timeBegin, r.timeEnd, r.freqBegin, r.freqEnd, dValue, nCount,
                                                    nDataType);
    const numeric::RectangleSum s = numeric::rectangleSum(source.plane, r);
    nCount = s.count;
    dValue = nCount >= 1 ? s.sum / static_cast<double>(nCount) : s.sum; // the mean here, the sum above: it is meant so
    return static_cast<int>(nCount);
}

} // namespace megset
