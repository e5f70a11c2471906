#include "megset/spectral/CMEGData4SpctmProcess.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/numeric/channelSums.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/spectralPlanes.h"
#include "megset/ui/CDlgChnlSelect.h"

#include <algorithm>
#include <span>
#include <vector>

namespace megset {
namespace {

/// Which channels of the MEG group the filter of MEG lets pass.
enum class Meg
{
    Group,
    Measuring
};

/// The four filters of channels. Each that is set is a further requirement.
struct Filter
{
    bool meg;
    bool eeg;
    bool good;
    bool shown;
    Meg kind;

    bool passes(const CMEGData2Process& data, int index, const CMDChannelzk& channel) const
    {
        return (!good || data.isGoodChnl4Alltrials(index)) && (!meg || isMeg(channel)) &&
               (!eeg || channel.isEEGChannel()) && (!shown || data.isShowChnl4Alltrials(index));
    }

private:
    bool isMeg(const CMDChannelzk& channel) const
    {
        return (kind == Meg::Group ? channel.isMEGChannel() : channel.isMEGMeasureChannel()) != 0;
    }
};

/// Runs `take` on every channel that passes.
template <class Take>
void forEachPassing(const CMEGData2Process& data, const CMDTrialzk& trial, const Filter& filter, Take take)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* channel = trial.m_ppChannel[i];
        if (channel != nullptr && filter.passes(data, i, *channel))
            take(*channel);
    }
}

/// A plane of a channel, or its frequency data as one row; null where there is none.
struct ChannelPlane
{
    double* data = nullptr;
    std::int64_t times = 0;
    std::int64_t freqs = 0;

    std::span<const double> values() const
    {
        if (data == nullptr || times < 1 || freqs < 1)
            return {};
        return {data, static_cast<std::size_t>(times * freqs)};
    }
};

ChannelPlane spectrumOf(CMDChannelzk& channel, int nClass, int nDataType)
{
    ChannelPlane plane;
    if (const CSpctmChnlzk* spectrum = channel.getSpctmChnl(false, nClass))
        plane.data = spectrum->getSpctmDataPtr(nDataType, &plane.times, &plane.freqs);
    return plane;
}

ChannelPlane freqDataOf(CMDChannelzk& channel, int nClass, int nDataType)
{
    ChannelPlane plane;
    plane.times = 1;
    if (auto* data = static_cast<CFreqDataChnlzk*>(channel.getFreqChnl(false, nClass)))
        data->getFreqData(nDataType, &plane.data, &plane.freqs);
    return plane;
}

/// How many channels qualify, and the sizes of their planes.
struct PlaneSizes
{
    int channels = 0;
    std::int64_t timeMin = 0;
    std::int64_t timeMax = 0;
    std::int64_t freqMin = 0;
    std::int64_t freqMax = 0;

    void take(const ChannelPlane& plane)
    {
        if (plane.data == nullptr)
            return;
        const bool isFirst = channels++ == 0;
        timeMin = isFirst ? plane.times : std::min(timeMin, plane.times);
        timeMax = isFirst ? plane.times : std::max(timeMax, plane.times);
        freqMin = isFirst ? plane.freqs : std::min(freqMin, plane.freqs);
        freqMax = isFirst ? plane.freqs : std::max(freqMax, plane.freqs);
    }
    bool isEmpty() const { return channels < 1 || timeMax < 1 || freqMax < 1; }
    bool areEqual() const { return timeMin == timeMax && freqMin == freqMax; }
};

/// The planes that go into the sums.
class Contributions
{
public:
    void take(const ChannelPlane& plane)
    {
        if (!plane.values().empty())
            m_planes.push_back(plane.values());
    }
    std::int64_t channels() const { return std::ssize(m_planes); }
    numeric::ChannelSumTotals sum(const numeric::ChannelSumPlanes& to) const
    {
        return numeric::sumChannels(m_planes, to);
    }

private:
    std::vector<std::span<const double>> m_planes;
};

void store(const Contributions& contributions, CSumChnlSpctmDatazk& sums)
{
    const std::int64_t count = planeCount(sums.m_nTimePt, sums.m_nFreqPt);
    const numeric::ChannelSumTotals totals =
        contributions.sum({planeSpan(sums.m_pSumMin, count), planeSpan(sums.m_pSumMean, count),
                           planeSpan(sums.m_pSumMax, count), planeSpan(sums.m_pSumPositive, count),
                           planeSpan(sums.m_pSumNegative, count), planeSpan(sums.m_pSumRms, count)});
    sums.m_nRangeValid = 1;
    sums.m_nChannels = contributions.channels();
    sums.m_dRangeMin = totals.min;
    sums.m_dRangeMean = totals.mean;
    sums.m_dRangeMax = totals.max;
    sums.m_dRangePositive = totals.positive;
    sums.m_dRangeNegative = totals.negative;
    sums.m_dRangeRms = totals.rms;
}

void store(const Contributions& contributions, CSumChnlFreqDatazk& sums)
{
    const numeric::ChannelSumTotals totals = contributions.sum(
        {sums.m_aSumMin, sums.m_aSumMean, sums.m_aSumMax, sums.m_aSumPositive, sums.m_aSumNegative, sums.m_aSumRms});
    sums.m_bRangeValid = 1;
    sums.m_nChannels = static_cast<std::int32_t>(contributions.channels());
    sums.m_dMax = totals.max;
    sums.m_dMean = totals.mean;
    sums.m_dMin = totals.min;
    sums.m_dPositive = totals.positive;
    sums.m_dNegative = totals.negative;
    sums.m_dRms = totals.rms;
}

template <class T>
void give(T* target, T value)
{
    if (target != nullptr)
        *target = value;
}

/// The last result of `compute` that is not null, over all data types.
template <class Compute>
auto lastOfDataTypes(Compute compute)
{
    decltype(compute(0)) last = nullptr;
    for (int nDataType = 0; nDataType < spectrumDataTypes; ++nDataType)
        if (auto* result = compute(nDataType))
            last = result;
    return last;
}

/// The same over all classes.
template <class Compute>
auto lastOfClasses(Compute compute)
{
    decltype(compute(0)) last = nullptr;
    for (int nClass = 0; nClass < spectrumClasses; ++nClass)
        if (auto* result = compute(nClass))
            last = result;
    return last;
}

/// Runs `operation` on the spectrum of every channel that has the class.
template <class Operation>
void forEachSpectrum(const CMDTrialzk& trial, int nClass, Operation operation)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* channel = trial.m_ppChannel[i];
        if (CSpctmChnlzk* spectrum = channel != nullptr ? channel->getSpctmChnl(false, nClass) : nullptr)
            operation(*spectrum);
    }
}

} // namespace

// ---- counting

int CMEGData4SpctmProcess::checkChnlSpctmInfo(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow,
                                              int nClass, int nDataType, std::int64_t* pTimePt, std::int64_t* pFreqPt)
{
    const CMDTrialzk* trial = trialOrCurrent(pTrial);
    if (trial == nullptr)
        return 0;
    PlaneSizes sizes;
    forEachPassing(*this, *trial, {bMEG, bEEG, bGood, bShow, Meg::Group},
                   [&](CMDChannelzk& channel) { sizes.take(spectrumOf(channel, nClass, nDataType)); });
    if (sizes.isEmpty())
        return 0;
    if (pTimePt == nullptr && pFreqPt == nullptr)
        return sizes.channels;
    if (!sizes.areEqual())
        AfxMessageBox(CString::formatted("Spectral time range (%I64d %I64d) frequency range (%I64d %I64d)",
                                         sizes.timeMin, sizes.timeMax, sizes.freqMin, sizes.freqMax),
                      MB_OK);
    give(pTimePt, sizes.timeMax);
    give(pFreqPt, sizes.freqMax);
    return sizes.channels;
}

int CMEGData4SpctmProcess::checkChnlFreqDataInfo(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow,
                                                 int nClass, int nDataType, std::int64_t* pPoints)
{
    const CMDTrialzk* trial = trialOrCurrent(pTrial);
    if (trial == nullptr)
        return 0;
    PlaneSizes sizes;
    forEachPassing(*this, *trial, {bMEG, bEEG, bGood, bShow, Meg::Group},
                   [&](CMDChannelzk& channel) { sizes.take(freqDataOf(channel, nClass, nDataType)); });
    if (sizes.isEmpty())
        return 0;
    if (pPoints == nullptr)
        return sizes.channels;
    if (!sizes.areEqual())
        AfxMessageBox(CString::formatted("  frequency range (%I64d %I64d)", sizes.freqMin, sizes.freqMax), MB_OK);
    *pPoints = sizes.freqMax;
    return sizes.channels;
}

// ---- reduction

CSumChnlSpctmDatazk* CMEGData4SpctmProcess::computTrialSpctm(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood,
                                                             bool bShow, int nClass, int nDataType)
{
    CMDTrialzk* trial = trialOrCurrent(pTrial);
    CSpctmTrialzk* spectrum = trial != nullptr ? trial->getSpctmTrial(false, nClass) : nullptr;
    if (spectrum == nullptr)
        return nullptr;
    std::int64_t timePt = 0;
    std::int64_t freqPt = 0;
    if (!checkChnlSpctmInfo(trial, bMEG, bEEG, bGood, bShow, nClass, nDataType, &timePt, &freqPt))
        return nullptr;
    CSumChnlSpctmDatazk* sums = spectrum->getSumChnlSpctmData(nDataType);
    if (sums == nullptr || !sums->checkInit(timePt, freqPt))
        return nullptr;
    Contributions contributions;
    forEachPassing(*this, *trial, {bMEG, bEEG, bGood, bShow, Meg::Measuring},
                   [&](CMDChannelzk& channel) { contributions.take(spectrumOf(channel, nClass, nDataType)); });
    store(contributions, *sums);
    return sums;
}

CSumChnlSpctmDatazk* CMEGData4SpctmProcess::computTrialSpctmAllDataType(CMDTrialzk* pTrial, bool bMEG, bool bEEG,
                                                                        bool bGood, bool bShow, int nClass)
{
    return lastOfDataTypes(
        [&](int nDataType) { return computTrialSpctm(pTrial, bMEG, bEEG, bGood, bShow, nClass, nDataType); });
}

CSumChnlSpctmDatazk* CMEGData4SpctmProcess::computTrialSpctmAllClassDataType(CMDTrialzk* pTrial, bool bMEG, bool bEEG,
                                                                             bool bGood, bool bShow)
{
    return lastOfClasses(
        [&](int nClass) { return computTrialSpctmAllDataType(pTrial, bMEG, bEEG, bGood, bShow, nClass); });
}

int CMEGData4SpctmProcess::computTrialSpctmAllPro(CMDTrialzk* pTrial, bool bReport)
{
    CDlgChnlSelect dialog;
    dialog.m_nMEGChannel = dialog.m_nEEGChannel = dialog.m_nGoodChannel = dialog.m_nVisible = 1;
    if (dialog.DoModal() != IDOK)
        return 0;
    for (int nClass = 0; nClass < spectrumClasses; ++nClass)
        for (int nDataType = 0; nDataType < spectrumDataTypes; ++nDataType) {
            const CSumChnlSpctmDatazk* sums =
                computTrialSpctm(pTrial, dialog.m_nMEGChannel != 0, dialog.m_nEEGChannel != 0,
                                 dialog.m_nGoodChannel != 0, dialog.m_nVisible != 0, nClass, nDataType);
            if (sums != nullptr && bReport)
                AfxMessageBox(CString::formatted("MEG:%d, EEG:%d, Class:%d data:%d channels:%d,time:%I64d, "
                                                 "Freq:%I64d, Rang(%0.4f~%0.4f,mean:%0.4f)",
                                                 dialog.m_nMEGChannel, dialog.m_nEEGChannel, nClass, nDataType,
                                                 sums->m_nChannels, sums->m_nTimePt, sums->m_nFreqPt, sums->m_dRangeMin,
                                                 sums->m_dRangeMax, sums->m_dRangeMean),
                              MB_OK);
        }
    return 0;
}

void* CMEGData4SpctmProcess::computTrialFreqData(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow,
                                                 int nClass, int nDataType)
{
    CMDTrialzk* trial = trialOrCurrent(pTrial);
    auto* freqData = trial != nullptr ? static_cast<CFreqDataTrialzk*>(trial->getFreqDataTrial(nClass, true)) : nullptr;
    if (freqData == nullptr)
        return nullptr;
    std::int64_t points = 0;
    if (!checkChnlFreqDataInfo(trial, bMEG, bEEG, bGood, bShow, nClass, nDataType, &points))
        return nullptr;
    CSumChnlFreqDatazk* sums = freqData->getSumChnlFreqData(nDataType);
    if (sums == nullptr || !sums->checkInit(points))
        return nullptr;
    Contributions contributions;
    forEachPassing(*this, *trial, {bMEG, bEEG, bGood, bShow, Meg::Measuring},
                   [&](CMDChannelzk& channel) { contributions.take(freqDataOf(channel, nClass, nDataType)); });
    store(contributions, *sums);
    return sums;
}

void* CMEGData4SpctmProcess::computTrialFreqDataAllClassDataType(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood,
                                                                 bool bShow)
{
    return lastOfClasses([&](int nClass) {
        return lastOfDataTypes([&](int nDataType) {
            return static_cast<CSumChnlFreqDatazk*>(
                computTrialFreqData(pTrial, bMEG, bEEG, bGood, bShow, nClass, nDataType));
        });
    });
}

// ---- operations on every channel

int CMEGData4SpctmProcess::doSpctmMagnitude(int nClass)
{
    return forEachOpenedTrial([nClass](const CMDTrialzk& trial) {
        forEachSpectrum(trial, nClass, [](CSpctmChnlzk& spectrum) { spectrum.computeMagnitude(); });
    });
}

int CMEGData4SpctmProcess::doSpctmPhase(int nClass)
{
    return forEachOpenedTrial([nClass](const CMDTrialzk& trial) {
        forEachSpectrum(trial, nClass, [](CSpctmChnlzk& spectrum) { spectrum.computePhase(); });
    });
}

int CMEGData4SpctmProcess::setSpctmPolarity(int nPolarity, int nClass)
{
    return forEachOpenedTrial([=](const CMDTrialzk& trial) {
        forEachSpectrum(trial, nClass,
                        [nPolarity](CSpctmChnlzk& spectrum) { spectrum.setPolarity2Magnitude(nPolarity); });
    });
}

int CMEGData4SpctmProcess::setAllTrialSpctmNAN2zero(int nClass, int nDataType)
{
    return forEachOpenedTrial([=](CMDTrialzk& trial) { trial.setAllChnlSpctmNAN2zero(nClass, nDataType); });
}

int CMEGData4SpctmProcess::normSpctmValue2ShrtAllTrial(int nClass, int nDataType)
{
    return setAllTrialSpctmNAN2zero(nClass, nDataType);
}

int CMEGData4SpctmProcess::rootStrip(int iTrial, bool bAllTrials, unsigned int iTimeBegin, unsigned int iTimeEnd,
                                     double dScale, int nClass, int nDataType)
{
    return openAndOperate(bAllTrials, iTrial, [&](CMDTrialzk& trial) {
        return trial.rootStrip(iTimeBegin, iTimeEnd, dScale, -1, true, nClass, nDataType);
    });
}

int CMEGData4SpctmProcess::transformSpctm2log(int iTrial, int a2, bool a3, int a4, int a5)
{
    return openAndOperate(false, iTrial,
                          [&](CMDTrialzk& trial) { return trial.transformSpctm2log(a4, a5 != 0, a2, a3 ? 1 : 0); });
}

// ---- peaks

int CMEGData4SpctmProcess::findSpctmPeaks(bool, bool, bool, bool, int, double, int nClass, int)
{
    CMDTrialzk* trial = getCurrentTrialPt();
    return trial != nullptr && trial->getSpctmTrial(false, nClass) != nullptr ? 1 : 0;
}

int CMEGData4SpctmProcess::findSpctmPeaksPro(int nUnused, double dUnused, int nClass, int nUnused2)
{
    CDlgChnlSelect dialog;
    if (dialog.DoModal() != IDOK)
        return 0;
    return findSpctmPeaks(dialog.m_nMEGChannel != 0, dialog.m_nEEGChannel != 0, dialog.m_nGoodChannel != 0,
                          dialog.m_nVisible != 0, nUnused, dUnused, nClass, nUnused2);
}

} // namespace megset
