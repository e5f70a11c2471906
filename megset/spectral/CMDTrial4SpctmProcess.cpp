#include "megset/spectral/CMDTrial4SpctmProcess.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/spectralPlanes.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace megset {
namespace {

enum NormState
{
    byFrequency = 1,
    byFrequencyLaw = 2,
    byFrequencyRootLaw = 3
};

using Spectra = std::vector<CSpctmChnlzk*>;

// None for an absent plane.
std::span<double> planeValues(const CSpctmChnlzk& spectrum, int nDataType)
{
    std::int64_t nTimePt = 0;
    std::int64_t nFreqPt = 0;
    double* const values = spectrum.getSpctmDataPtr(nDataType, &nTimePt, &nFreqPt);
    if (values == nullptr || nTimePt < 1 || nFreqPt < 1)
        return {};
    return {values, static_cast<std::size_t>(planeCount(nTimePt, nFreqPt))};
}

} // namespace

// Runs `operation(spectrum)` on the spectra of a class.
template <class Operation>
int CMDTrial4SpctmProcess::onAllChannels(int nClass, Operation operation) const
{
    for (int i = 0; i < getTotalChannel(); ++i) {
        CMDChannelzk* const channel = m_ppChannel[i];
        CSpctmChnlzk* const spectrum = channel != nullptr ? channel->getSpctmChnl(false, nClass) : nullptr;
        if (spectrum != nullptr)
            operation(*spectrum);
    }
    return m_ppChannel ? 1 : 0;
}

// Runs `operation(spectrum)` on one channel and gives its result; 0 out of range, 1 without the spectrum.
template <class Operation>
int CMDTrial4SpctmProcess::onChannel(int iChannel, int nClass, Operation operation) const
{
    const int index = iChannel == -1 ? m_nCurrentChannel : iChannel;
    if (index < 0 || index >= getTotalChannel())
        return 0;
    CMDChannelzk* const channel = m_ppChannel[index];
    CSpctmChnlzk* const spectrum = channel != nullptr ? channel->getSpctmChnl(false, nClass) : nullptr;
    return spectrum != nullptr ? operation(*spectrum) : 1;
}

// ---- cuts

int CMDTrial4SpctmProcess::cutSpctmDataExtrama(double dLow, double dHigh, double dFill, int nClass, int nDataType)
{
    return onAllChannels(nClass,
                         [=](CSpctmChnlzk& spectrum) { spectrum.cutSpctmDataExtrama(dLow, dHigh, dFill, nDataType); });
}

int CMDTrial4SpctmProcess::cutSpctmFreqBlock(int iFreqBegin, int iFreqEnd, double dFill, int nClass, int nDataType)
{
    return onAllChannels(
        nClass, [=](CSpctmChnlzk& spectrum) { spectrum.cutSpctmFreqBlock(iFreqBegin, iFreqEnd, dFill, nDataType); });
}

int CMDTrial4SpctmProcess::cutSpctmTimeBlock(int iTimeBegin, int iTimeEnd, double dFill, int nClass, int nDataType)
{
    return onAllChannels(
        nClass, [=](CSpctmChnlzk& spectrum) { spectrum.cutSpctmTimeBlock(iTimeBegin, iTimeEnd, dFill, nDataType); });
}

int CMDTrial4SpctmProcess::cutSpctmSelect(int iTimeBegin, int iTimeEnd, int iFreqBegin, int iFreqEnd, double dFill,
                                          bool bAllChannels, int nClass, int nDataType)
{
    if (const CSpctmTrialzk* const selection = getSpctmTrial(false, nClass)) {
        const auto resolve = [](int& bound, std::int64_t selected) {
            bound = bound == -1 ? static_cast<int>(selected) : bound;
        };
        resolve(iTimeBegin, selection->m_nSelectTimeBegin);
        resolve(iTimeEnd, selection->m_nSelectTimeEnd);
        resolve(iFreqBegin, selection->m_nSelectFreqBegin);
        resolve(iFreqEnd, selection->m_nSelectFreqEnd);
    }
    const auto cut = [=](CSpctmChnlzk& spectrum) {
        return spectrum.cutSpctmSelect(iTimeBegin, iTimeEnd, iFreqBegin, iFreqEnd, dFill, nDataType);
    };
    return bAllChannels ? onAllChannels(nClass, cut) : onChannel(-1, nClass, cut);
}

// ---- each frequency by a value over all channels and times

// Divides each frequency of all channels by `divisorOf(spectra, frequency)`. Frequencies that no plane has are left
// out, however many the trial's spectrum and channels without a plane count: a damaged file may bring any number.
template <class DivisorOf>
void CMDTrial4SpctmProcess::normalizeEachFreq(const CSpctmTrialzk& spectrum, int nClass, int nDataType,
                                              DivisorOf divisorOf)
{
    Spectra spectra;
    std::int64_t nFreqs = 0;
    onAllChannels(nClass, [&](CSpctmChnlzk& channel) {
        spectra.push_back(&channel);
        if (!planeValues(channel, nDataType).empty())
            nFreqs = std::max(nFreqs, channel.m_nFreqPt);
    });
    nFreqs = std::min(nFreqs, spectrum.m_nFreqPt);
    for (std::int64_t f = 0; f < nFreqs; ++f) {
        const double divisor = divisorOf(spectra, f);
        for (CSpctmChnlzk* const channel : spectra)
            channel->globaleNormalSpctmFreq(f, divisor, nDataType);
    }
}

int CMDTrial4SpctmProcess::normSpctmGlobEachFreqAllChnAllTimSc_rms(int nClass)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr || !m_ppChannel)
        return 0;
    for (int type = 0; type < spectrumDataTypes; ++type) {
        normalizeEachFreq(*spectrum, nClass, type, [type](const Spectra& spectra, std::int64_t f) {
            double x = 0.0;
            for (const CSpctmChnlzk* const channel : spectra)
                x += channel->getSpctmFreqRootMean(f, type);
            return x > 0.0 ? std::sqrt(x / static_cast<double>(spectra.size())) : 0.0; // 0 divides nothing
        });
        spectrum->m_nSpctmNormState = byFrequency;
    }
    return 1;
}

int CMDTrial4SpctmProcess::normSpctmGlobEachFreqAllChnAllTim_rms()
{
    for (int nClass = 0; nClass < spectrumClasses; ++nClass)
        normSpctmGlobEachFreqAllChnAllTimSc_rms(nClass);
    return m_ppChannel ? 1 : 0;
}

int CMDTrial4SpctmProcess::normSpctmGlobEachFreqAllChnAllTim_max(int nClass, int nDataType)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr || !m_ppChannel)
        return 0;
    normalizeEachFreq(*spectrum, nClass, nDataType, [nDataType](const Spectra& spectra, std::int64_t f) {
        double largest = 0.0;
        for (const CSpctmChnlzk* const channel : spectra)
            largest = std::max(largest, channel->getSpctmFreqAbsMax(f, nDataType));
        return largest;
    });
    spectrum->m_nSpctmNormState = byFrequency;
    return 1;
}

int CMDTrial4SpctmProcess::normSpctmGlobEachFreqAllChnAllTim_max()
{
    for (int nClass = 0; nClass < spectrumClasses; ++nClass)
        for (int type = 0; type < spectrumDataTypes; ++type)
            normSpctmGlobEachFreqAllChnAllTim_max(nClass, type);
    return m_ppChannel ? 1 : 0;
}

int CMDTrial4SpctmProcess::normSpctmGlobEachFreqAllChnAllTim_mean(double, int nClass, int nDataType)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr || !m_ppChannel)
        return 0;
    normalizeEachFreq(*spectrum, nClass, nDataType, [nDataType](const Spectra& spectra, std::int64_t f) {
        double sum = 0.0;
        for (const CSpctmChnlzk* const channel : spectra)
            sum += channel->getSpctmFreqAverage(f, true, nDataType);
        return sum / static_cast<double>(spectra.size()) / 100.0;
    });
    spectrum->m_nSpctmNormState = byFrequency;
    return 1;
}

// ---- maps and gains

int CMDTrial4SpctmProcess::normSpctmValue2ShrtAllChnl(bool bCompute, int nClass, int nDataType)
{
    double dMin = 0.0;
    double dMax = 0.0;
    getSpctmRangeAllChann(&dMin, &dMax, nullptr, bCompute, nClass, nDataType);
    constexpr double shortRange = 65532.0;
    const double scale = dMax - dMin != 0.0 ? shortRange / (dMax - dMin) : 1.0;
    const double offset = (dMax + dMin) * 0.5;
    return onAllChannels(nClass,
                         [=](CSpctmChnlzk& spectrum) { spectrum.normSpctmValue2Shrt(scale, offset, nDataType); });
}

// Shows which value is too small to work with.
bool CMDTrial4SpctmProcess::mayNormalizeFreq(const CSpctmTrialzk& spectrum) const
{
    constexpr double least = 1e-15;
    const bool powerMode = spectrum.m_nFreqPowerStep != 0;
    const char* message = nullptr;
    if (spectrum.m_dSamplingRate <= least)
        message = "Sampling rate is smaller than %0.16f";
    else if (spectrum.m_dFreqBegin <= least)
        message = "Low-frequency is smaller than %0.16f";
    else if (powerMode && spectrum.m_dFreqPowerStep <= least)
        message = "Frequency power step is smaller than %0.16f";
    else if (!powerMode && spectrum.m_dFreqLinearStep <= least)
        message = "Frequency linear step is smaller than %0.16f";
    if (message != nullptr)
        AfxMessageBox(message, MB_OK); // shows "%0.16f" itself: it is meant so
    return message == nullptr;
}

int CMDTrial4SpctmProcess::normalizeFreq(int nLaw, double dFactor, bool bPower, int nClass, int nDataType)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (!(dFactor > 0.0) || spectrum == nullptr || !m_ppChannel || !(spectrum->m_dFreqBegin > 0.0))
        return 0;
    if (spectrum->m_nFreqPt < 1 || spectrum->m_nTimePt < 1 || !mayNormalizeFreq(*spectrum))
        return 0;
    constexpr int rootLaw = 1;
    std::int64_t largest = 0;
    onAllChannels(nClass, [&](CSpctmChnlzk& channel) {
        largest = std::max<std::int64_t>(largest, std::ssize(planeValues(channel, nDataType)));
    });
    double frequency = spectrum->m_dFreqBegin; // of index 0 here, in power mode, too: it is meant so
    for (std::int64_t i = 0; i < std::min(spectrum->m_nFreqPt, largest); ++i) {
        double x = frequency / spectrum->m_dFreqBegin;
        x = nLaw == rootLaw && x > 0.0 ? std::sqrt(x) : x;
        const double gain = bPower ? std::pow(x, dFactor) : x * dFactor;
        // Every T-th element is not one frequency, but it is meant so.
        if (x > 0.0)
            onAllChannels(nClass, [&](CSpctmChnlzk& channel) {
                const std::int64_t count = nLaw == rootLaw ? spectrum->m_nTimePt : channel.m_nTimePt;
                numeric::scaleEvery(planeValues(channel, nDataType), i, spectrum->m_nTimePt, count, gain);
            });
        frequency = spectrum->m_nFreqPowerStep != 0 ? frequency * spectrum->m_dFreqPowerStep
                                                    : frequency + spectrum->m_dFreqLinearStep;
    }
    spectrum->m_nSpctmNormState = nLaw == rootLaw ? byFrequencyRootLaw : byFrequencyLaw;
    return 1;
}

int CMDTrial4SpctmProcess::normalizeFreqAll(int nLaw, double dFactor, bool bPower)
{
    for (int nClass = 0; nClass < spectrumClasses; ++nClass)
        for (int type = 0; type < spectrumDataTypes; ++type)
            normalizeFreq(nLaw, dFactor, bPower, nClass, type);
    return 1;
}

int CMDTrial4SpctmProcess::normalizeFreq_reverse(int, int)
{
    return 1;
}

// ---- channel by channel

int CMDTrial4SpctmProcess::rootStrip(unsigned int iTimeBegin, unsigned int iTimeEnd, double dScale, int iChannel,
                                     bool bAllChannels, int nClass, int nDataType)
{
    const auto strip = [=](CSpctmChnlzk& spectrum) {
        return spectrum.rootStrip(iTimeBegin, iTimeEnd, dScale, nDataType);
    };
    return bAllChannels ? onAllChannels(nClass, strip) : onChannel(iChannel, nClass, strip);
}

int CMDTrial4SpctmProcess::scaleSpctmAllDataType4Class(int nClass, double dScale)
{
    constexpr int allClasses = -1;
    for (int each = 0; each < spectrumClasses; ++each)
        for (int type = 0; type < spectrumDataTypes; ++type)
            if (nClass == allClasses || nClass == each)
                onAllChannels(each, [=](CSpctmChnlzk& spectrum) { spectrum.scaleSpctm(dScale, type); });
    return getTotalChannel() > 0 ? 1 : 0;
}

int CMDTrial4SpctmProcess::setAllChnlSpctmNAN2zero(int nClass, int nDataType)
{
    return onAllChannels(nClass, [=](CSpctmChnlzk& spectrum) { spectrum.setSpctmNAN2zero(nDataType); });
}

int CMDTrial4SpctmProcess::setPeakDistTotal(int, int, double, int nClass, int nDataType)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    return spectrum != nullptr && spectrum->getSumChnlSpctmData(nDataType) != nullptr ? 1 : 0;
}

int CMDTrial4SpctmProcess::transformSpctm2log(int iChannel, bool bAllChannels, int nClass, int nDataType)
{
    const auto transform = [=](CSpctmChnlzk& spectrum) { return spectrum.transformSpctm2log(nDataType); };
    return bAllChannels ? onAllChannels(nClass, transform) : onChannel(iChannel, nClass, transform);
}

} // namespace megset
