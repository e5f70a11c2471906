// Ranges of one plane, and of the planes of all channels.

#include "megset/spectral/CMDTrial4Spctm.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/spectralPlanes.h"
#include "megset/spectral/spectrumSelection.h"

namespace megset {
namespace {

constexpr int sumMean = 1;
constexpr int sumMin = 2;
constexpr int sumMax = 3;
constexpr int sumPositive = 4;

void put(const numeric::PlaneRange& range, double* pMin, double* pMax, double* pMean)
{
    if (pMin != nullptr)
        *pMin = range.min;
    if (pMax != nullptr)
        *pMax = range.max;
    if (pMean != nullptr)
        *pMean = range.mean;
}

// The range of a sum plane; zeros when it is absent.
numeric::PlaneRange rangeOfSums(CSumChnlSpctmDatazk& sums, int nPhyVirt, bool absolute)
{
    // As it is meant: for the positive values it is the maximum whose presence counts.
    const SampleArray* const tested = sumPlane(sums, nPhyVirt == sumPositive ? sumMax : nPhyVirt);
    if (tested == nullptr || *tested == nullptr || sums.m_nTimePt < 1 || sums.m_nFreqPt < 1)
        return {};
    numeric::RangeScan scan;
    scan.firstColumn = nPhyVirt == sumMean || nPhyVirt == sumMin ? 0 : 1; // frequency 0 is passed over: it is meant so
    scan.absolute = absolute;
    scan.rowDivisor = static_cast<double>(sums.m_nFreqPt);
    scan.divisor = static_cast<double>(sums.m_nTimePt);
    const auto values = planeSpan(*sumPlane(sums, nPhyVirt), planeCount(sums.m_nTimePt, sums.m_nFreqPt));
    return numeric::planeRange({values, sums.m_nFreqPt}, scan);
}

} // namespace

int CMDTrial4Spctm::rangeOfOne(int nPhyVirt, int iChannel, double* pMin, double* pMax, double* pMean, bool bCompute,
                               bool absolute, int nClass, int nDataType)
{
    if (pMin == nullptr && pMax == nullptr)
        return 0;
    put({}, pMin, pMax, pMean);
    if (nPhyVirt < 0 || nPhyVirt > lastSumPlane)
        return 0;
    if (nPhyVirt == 0) {
        const int index = iChannel == -1 ? m_nCurrentChannel : iChannel;
        if (index < 0 || index >= getTotalChannel())
            return 0;
        CMDChannelzk* const channel = m_ppChannel[index];
        CSpctmChnlzk* const spectrum = channel != nullptr ? channel->getSpctmChnl(false, nClass) : nullptr;
        if (spectrum == nullptr)
            return 1;
        return absolute ? spectrum->getSpctmRangeAbs(pMin, pMax, pMean, bCompute, nDataType)
                        : spectrum->getSpctmRange(pMin, pMax, pMean, bCompute, nDataType);
    }
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr)
        return 1;
    CSumChnlSpctmDatazk* const sums = spectrum->getSumChnlSpctmData(nDataType);
    if (sums == nullptr)
        return 0;
    put(rangeOfSums(*sums, nPhyVirt, absolute), pMin, pMax, pMean);
    return 1;
}

int CMDTrial4Spctm::getSpctmRange4OneChnlShow(int nPhyVirt, int iChannel, double* pMin, double* pMax, double* pMean,
                                              bool bCompute, int nClass, int nDataType)
{
    return rangeOfOne(nPhyVirt, iChannel, pMin, pMax, pMean, bCompute, false, nClass, nDataType);
}

int CMDTrial4Spctm::getSpctmRange4OneChnlShowAbs(int nPhyVirt, int iChannel, double* pMin, double* pMax, double* pMean,
                                                 bool bCompute, int nClass, int nDataType)
{
    return rangeOfOne(nPhyVirt, iChannel, pMin, pMax, pMean, bCompute, true, nClass, nDataType);
}

struct CMDTrial4Spctm::ChannelRanges
{
    int nChannels = 0;         ///< with the class
    numeric::PlaneRange range; ///< the preset where none of them has the plane
};

// The extremes of the channels' ranges, and the mean of their means. A channel that has the class counts in that mean
// even when it lacks the plane.
CMDTrial4Spctm::ChannelRanges CMDTrial4Spctm::channelRanges(int nClass, int nDataType, bool absolute,
                                                            const numeric::PlaneRange& preset)
{
    ChannelRanges all{0, preset};
    bool isFirst = true;
    for (int i = 0; i < getTotalChannel(); ++i) {
        CSpctmChnlzk* const spectrum = m_ppChannel[i] ? m_ppChannel[i]->getSpctmChnl(false, nClass) : nullptr;
        if (spectrum == nullptr)
            continue;
        ++all.nChannels;
        numeric::PlaneRange one;
        const int done = absolute ? spectrum->getSpctmRangeAbs(&one.min, &one.max, &one.mean, 1, nDataType)
                                  : spectrum->getSpctmRange(&one.min, &one.max, &one.mean, 1, nDataType);
        if (!done)
            continue;
        all.range.min = isFirst || one.min < all.range.min ? one.min : all.range.min;
        all.range.max = isFirst || one.max > all.range.max ? one.max : all.range.max;
        all.range.mean += one.mean;
        isFirst = false;
    }
    if (all.nChannels > 1)
        all.range.mean /= static_cast<double>(all.nChannels);
    return all;
}

int CMDTrial4Spctm::getSpctmRangeAllChann(double* pMin, double* pMax, double* pMean, int bCompute, int nClass,
                                          int nDataType)
{
    if (pMin == nullptr || pMax == nullptr)
        return 0;
    constexpr numeric::PlaneRange preset{-1.0, 1.0, 0.0};
    put(preset, pMin, pMax, pMean);
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    CSumChnlSpctmDatazk* const sums = spectrum != nullptr ? spectrum->getSumChnlSpctmData(nDataType) : nullptr;
    if (sums == nullptr)
        return 0;
    const bool isKept = sums->m_nRangeValid != 0 && bCompute == 0;
    if (sums->m_nTimePt < 1 || sums->m_nFreqPt < 1) {
        std::int64_t nChannels = 0;
        std::int64_t nTimeMin = 0;
        std::int64_t nFreqMin = 0;
        getSpctmChnTimFrq(nChannels, nTimeMin, sums->m_nTimePt, nFreqMin, sums->m_nFreqPt);
        for (int nPhyVirt = 1; nPhyVirt <= lastSumPlane; ++nPhyVirt)
            sumPlane(*sums, nPhyVirt)->reset(); // those of a file had no elements
        if (sums->m_nTimePt < 1 || sums->m_nFreqPt < 1)
            return 0;
    }
    if (isKept) {
        put({sums->m_dRangeMin, sums->m_dRangeMax, sums->m_dRangeMean}, pMin, pMax, pMean);
        return 1;
    }
    const auto [nChannels, range] = channelRanges(nClass, nDataType, false, preset);
    sums->m_dRangeMin = range.min;
    sums->m_dRangeMax = range.max;
    sums->m_dRangeMean = range.mean;
    sums->m_nRangeValid = 1;
    put(range, pMin, pMax, pMean);
    return nChannels;
}

int CMDTrial4Spctm::getSpctmRangeAllChannAbs(double* pMin, double* pMax, double* pMean, int bCompute, int nClass,
                                             int nDataType)
{
    if (pMin == nullptr || pMax == nullptr)
        return 0;
    constexpr numeric::PlaneRange preset{0.0, 1.0, 0.0};
    put(preset, pMin, pMax, pMean);
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    CSumChnlSpctmDatazk* const sums = spectrum != nullptr ? spectrum->getSumChnlSpctmData(nDataType) : nullptr;
    if (sums == nullptr || sums->m_nTimePt < 1 || sums->m_nFreqPt < 1)
        return 0;
    if (sums->m_nRangeValid != 0 && bCompute == 0) {
        put({sums->m_dAbsMin, sums->m_dAbsMax, sums->m_dAbsMean}, pMin, pMax, pMean);
        return 1;
    }
    const auto [nChannels, range] = channelRanges(nClass, nDataType, true, preset);
    sums->m_dAbsMin = range.min;
    sums->m_dAbsMax = range.max;
    sums->m_dAbsMean = range.mean;
    put(range, pMin, pMax, pMean);
    return nChannels;
}

} // namespace megset
