#include "megset/spectral/CMEGData3Spctm.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/heldSlot.h"

#include <algorithm>

namespace megset {
namespace {

constexpr double smallestRate = 1e-15;

// The smallest and largest of the numbers taken; 0 and 0 of none.
class Extent
{
public:
    void take(std::int64_t least, std::int64_t most)
    {
        m_least = m_taken ? std::min(m_least, least) : least;
        m_most = m_taken ? std::max(m_most, most) : most;
        m_taken = true;
    }
    std::int64_t largest() const { return m_most; }
    bool isOne() const { return m_least == m_most; }

private:
    bool m_taken = false;
    std::int64_t m_least = 0;
    std::int64_t m_most = 0;
};

void give(double* target, double value)
{
    if (target != nullptr)
        *target = value;
}

} // namespace

// ---- cleaning

int CMEGData3Spctm::_cleanSpctmDataChann(bool bAllTrials, int iTrial, int iChannel, int nClass)
{
    return openAndOperate(bAllTrials, iTrial,
                          [&](CMDTrialzk& trial) { return trial._cleanSpctmChnlData(iChannel, nClass); });
}

int CMEGData3Spctm::_cleanSpctmDatasetData(bool bAllTrials, int iTrial)
{
    return openAndOperate(bAllTrials, iTrial, [](CMDTrialzk& trial) { return trial._cleanSpctmChnlDataAll(); });
}

// ---- shape

int CMEGData3Spctm::checkSpctmTF(std::int64_t, std::int64_t& nTimePt, std::int64_t& nFreqPt, bool bAllTrials)
{
    Extent times;
    Extent freqs;
    const int opened = openAndOperate(bAllTrials, -1, [&](CMDTrialzk& trial) {
        std::int64_t channels = 0;
        std::int64_t timeMin = 0;
        std::int64_t timeMax = 0;
        std::int64_t freqMin = 0;
        std::int64_t freqMax = 0;
        trial.getSpctmChnTimFrq(channels, timeMin, timeMax, freqMin, freqMax);
        if (channels > 0) {
            times.take(timeMin, timeMax);
            freqs.take(freqMin, freqMax);
        }
        return 1;
    });
    nTimePt = times.largest();
    nFreqPt = freqs.largest();
    if (!opened || nTimePt < 1 || nFreqPt < 1)
        return 0;
    if (times.isOne() && freqs.isOne())
        return 1;
    AfxMessageBox("Spectrograms have different dimensions!", MB_OK);
    return 0;
}

void* CMEGData3Spctm::getFreqDatasetFace(int bCreate)
{
    heldObject(m_pFreqDatasetFace, bCreate != 0);
    return nullptr;
}

int CMEGData3Spctm::getSpctmChnlMegEeg(int& nMeg, int& nEeg)
{
    nMeg = nEeg = 0;
    const CMDTrialzk* trial = m_nTotalTrial > 0 ? getTrialzk(m_nCurrentTrial) : nullptr;
    if (trial == nullptr)
        return 0;
    for (int i = 0; i < trial->getTotalChannel(); ++i) {
        const CMDChannelzk* channel = trial->m_ppChannel[i];
        if (channel == nullptr || !channel->hasSpctmData())
            continue;
        nMeg += channel->isMEGMeasureChannel() | channel->isMEGReferenceChannel();
        nEeg += channel->isEEGReferenceChannel() | channel->isEEGMeasureChannel();
    }
    return nMeg + nEeg;
}

// ---- latencies

double CMEGData3Spctm::latencyMs4Sample(std::int64_t sample)
{
    if (m_recordInfo.m_dRecSampleRate < smallestRate)
        m_recordInfo.m_dRecSampleRate = smallestRate;
    if (m_recordInfo.m_nRecPreTrigPts < 0)
        m_recordInfo.m_nRecPreTrigPts = 0;
    const double rate = m_recordInfo.m_dRecSampleRate;
    return (static_cast<double>(sample) / rate - static_cast<double>(m_recordInfo.m_nRecPreTrigPts) / rate) * 1000.0;
}

double CMEGData3Spctm::getLatencyMs4SpctmTimePt(std::int64_t iTime, int nClass, int)
{
    CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr || trial->getTotalChannel() < 1)
        return -1.0;
    return latencyMs4Sample(trial->getSpctmTimePt(iTime, nClass, 0));
}

double CMEGData3Spctm::getLatencyMs4SpctmCCDTimePt(std::int64_t iTime, int nClass, int nDataType,
                                                   CMEGSpctmCCDataFacezk* pFace)
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr || trial->getTotalChannel() < 1 || pFace == nullptr)
        return -1.0;
    return latencyMs4Sample(pFace->getSpctmTimePt(iTime, nClass, nDataType));
}

int CMEGData3Spctm::getTrialSpctmSelectTime2LatencyMsec(double& dBegin, double& dEnd, int nClass, int nDataType)
{
    dBegin = dEnd = 0.0;
    CMDTrialzk* trial = getCurrentTrialPt();
    const CSpctmTrialzk* spectrum = trial != nullptr ? trial->getSpctmTrial(false, nClass) : nullptr;
    if (spectrum == nullptr)
        return 0;
    return getTrialSpctmGivenTime2LatencyMsec(spectrum->m_nSelectTimeBegin, spectrum->m_nSelectTimeEnd, dBegin, dEnd,
                                              nClass, nDataType);
}

int CMEGData3Spctm::getTrialSpctmGivenTime2LatencyMsec(std::int64_t iBegin, std::int64_t iEnd, double& dBegin,
                                                       double& dEnd, int nClass, int nDataType)
{
    dBegin = dEnd = 0.0;
    CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr || trial->getSpctmTrial(false, nClass) == nullptr)
        return 0;
    return latenciesOfRange(iBegin, iEnd, dBegin, dEnd,
                            [&](std::int64_t iTime) { return getLatencyMs4SpctmTimePt(iTime, nClass, nDataType); });
}

int CMEGData3Spctm::getTrialSpctmCCDSelectTime2LatencyMsec(double& dBegin, double& dEnd, CMEGSpctmCCDataFacezk* pFace,
                                                           int nClass, int nDataType)
{
    dBegin = dEnd = 0.0;
    const CMEGSpctmCCTrlDatazk* data = pFace != nullptr ? pFace->getCCSpctmTrlData4Class(nClass) : nullptr;
    if (data == nullptr || getCurrentTrialPt() == nullptr)
        return 0;
    return latenciesOfRange(data->m_nSelectTimeBegin, data->m_nSelectTimeEnd, dBegin, dEnd, [&](std::int64_t iTime) {
        return getLatencyMs4SpctmCCDTimePt(iTime, nClass, nDataType, pFace);
    });
}

// ---- ranges and presence

int CMEGData3Spctm::getSpctmRangeDataset(double* pMin, double* pMax, double* pMean, int bCompute, int nClass,
                                         int nDataType)
{
    double least = -1.0;
    double most = 1.0;
    double mean = 0.0;
    int trials = 0;
    for (int i = 0; i < placedTrials(); ++i) {
        CMDTrialzk* trial = getMDTrial(i);
        if (trial == nullptr)
            continue;
        double trialMin = 0.0;
        double trialMax = 0.0;
        double trialMean = 0.0;
        trial->getSpctmRangeAllChann(&trialMin, &trialMax, &trialMean, bCompute, nClass, nDataType);
        const bool isFirst = trials++ == 0;
        least = isFirst || trialMin < least ? trialMin : least;
        most = isFirst || trialMax > most ? trialMax : most;
        mean += trialMean;
    }
    give(pMin, least);
    give(pMax, most);
    give(pMean, trials > 1 ? mean / trials : mean);
    return 1;
}

int CMEGData3Spctm::hasSpectmData2Draw(int nClass, int nDataType)
{
    CMDTrialzk* trial = getCurrentTrialPt();
    return trial != nullptr && trial->hasSpctmData4draw(nClass, nDataType) ? 1 : 0;
}

int CMEGData3Spctm::hasWaveAnalyzDataX4draw(int nClass, int nDataType)
{
    CMDTrialzk* trial = getCurrentTrialPt();
    return trial != nullptr && trial->hasWaveAnalyzDataX4draw(nClass, nDataType) ? 1 : 0;
}

} // namespace megset
