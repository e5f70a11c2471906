#include "megset/spectral/CMDTrial4Spctm.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/numeric/wrapping.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/spectralPlanes.h"
#include "megset/spectral/spectrumSelection.h"

#include <algorithm>

namespace megset {
namespace {

template <class T>
T* getOrMake(std::unique_ptr<T>& slot, bool create, const CString& failure)
{
    if (slot == nullptr && create) {
        slot = tryNew<T>();
        if (slot == nullptr)
            AfxMessageBox(failure, MB_OK);
    }
    return slot.get();
}

CSpctmTrialzk* getOrMakeSpectrum(std::unique_ptr<CSpctmTrialzk>& slot, bool create)
{
    return getOrMake(slot, create, "Initializing trial spectrogram error!");
}

const CFreqDataChnlzk* freqData(CMDChannelzk* channel, int nClass)
{
    return channel != nullptr ? static_cast<const CFreqDataChnlzk*>(channel->getFreqChnl(false, nClass)) : nullptr;
}

CSpctmChnlzk* channelSpectrum(CMDChannelzk* channel, int nClass)
{
    return channel != nullptr ? channel->getSpctmChnl(false, nClass) : nullptr;
}

bool hasAnyPlane(const CSpctmChnlzk& spectrum)
{
    return spectrum.m_pSpctmR != nullptr || spectrum.m_pSpctmI != nullptr || spectrum.m_pSpctmM != nullptr ||
           spectrum.m_pSpctmA != nullptr;
}

void put(std::int64_t* out, std::int64_t value)
{
    if (out != nullptr)
        *out = value;
}

} // namespace

CMDTrial4Spctm::~CMDTrial4Spctm()
{
    _cleanSpctmTrlData();
    _cleanSpctmChnlDataAll();
    _cleanFreqDataTrl();
    _cleanFreqDataAllChnl();
}

// ---- objects

CSpctmTrialzk* CMDTrial4Spctm::getSpctmTrial(bool bCreate, int nClass)
{
    switch (nClass) {
    case 0:
        return getSpctmTrialA(bCreate);
    case 1:
        return getSpctmTrialC(bCreate);
    case 2:
        return getSpctmTrialR(bCreate);
    default:
        return nullptr;
    }
}

CSpctmTrialzk* CMDTrial4Spctm::getSpctmTrialA(bool bCreate)
{
    return getOrMakeSpectrum(m_pSpctmTrialA, bCreate);
}

CSpctmTrialzk* CMDTrial4Spctm::getSpctmTrialC(bool bCreate)
{
    return getOrMakeSpectrum(m_pSpctmTrialC, bCreate);
}

CSpctmTrialzk* CMDTrial4Spctm::getSpctmTrialR(bool bCreate)
{
    return getOrMakeSpectrum(m_pSpctmTrialR, bCreate);
}

void* CMDTrial4Spctm::getFreqDataTrial(int nClass, bool bCreate)
{
    if (getTotalChannel() < 1 || nClass < 0 || nClass >= spectrumClasses)
        return nullptr;
    std::unique_ptr<CFreqDataTrialzk>* const slots[] = {&m_pFreqDataTrialA, &m_pFreqDataTrialC, &m_pFreqDataTrialX};
    return getOrMake(*slots[nClass], bCreate, "Initializing trial frequency data error!");
}

std::int64_t CMDTrial4Spctm::getSample4FreqData(int nClass)
{
    if (getTotalChannel() < 1)
        return 0;
    const CFreqDataChnlzk* const data = freqData(m_ppChannel[0], nClass);
    return data != nullptr ? data->m_nFreqPt : 0;
}

int CMDTrial4Spctm::_cleanSpctmChnlData(int iChannel, int nClass)
{
    CMDChannelzk* const channel = getChannel(iChannel);
    if (channel == nullptr)
        return 0;
    if (CSpctmChnlzk* const spectrum = channel->getSpctmChnl(false, nClass))
        spectrum->_cleanSpctmData();
    return 1;
}

int CMDTrial4Spctm::_cleanSpctmChnlDataAll()
{
    if (!m_ppChannel)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (CMDChannelzk* channel = m_ppChannel[i])
            channel->_cleanSpctmDataChnl();
    return 1;
}

int CMDTrial4Spctm::_cleanFreqDataAllChnl()
{
    if (!m_ppChannel)
        return 0;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (CMDChannelzk* channel = m_ppChannel[i])
            channel->_cleanFreqDataChnl();
    return 1;
}

int CMDTrial4Spctm::_cleanSpctmTrlData()
{
    m_pSpctmTrialA.reset();
    m_pSpctmTrialC.reset();
    m_pSpctmTrialR.reset();
    return 1;
}

int CMDTrial4Spctm::_cleanFreqDataTrl()
{
    m_pFreqDataTrialA.reset();
    m_pFreqDataTrialC.reset();
    m_pFreqDataTrialX.reset();
    return 1;
}

int CMDTrial4Spctm::reloadSpctmDataAll()
{
    for (int i = 0; i < getTotalChannel(); ++i)
        for (int nClass = 0; nClass < spectrumClasses; ++nClass)
            if (CSpctmChnlzk* const spectrum = channelSpectrum(m_ppChannel[i], nClass))
                spectrum->reloadRawSpctmDataRIX();
    return 1;
}

// ---- what there is

bool CMDTrial4Spctm::hasSpctmPlane(CMDChannelzk* channel, int nClass, int nDataType)
{
    const CSpctmChnlzk* const spectrum = channelSpectrum(channel, nClass);
    std::int64_t nTimePt = 0;
    std::int64_t nFreqPt = 0;
    return spectrum != nullptr && spectrum->getSpctmDataPtr(nDataType, &nTimePt, &nFreqPt) != nullptr && nTimePt > 0 &&
           nFreqPt > 0;
}

bool CMDTrial4Spctm::hasSpctmData4Chnl(int nClass, int, int iChannel) const
{
    return channelSpectrum(getChannel(iChannel), nClass) != nullptr;
}

bool CMDTrial4Spctm::hasFreqData4Chnl(int nClass, int, int iChannel) const
{
    return freqData(getChannel(iChannel), nClass) != nullptr;
}

// Makes a channel current that lies behind the current one. Gives true.
bool CMDTrial4Spctm::moveOnTo(int iChannel)
{
    m_nCurrentChannel = std::max(m_nCurrentChannel, iChannel);
    return true;
}

bool CMDTrial4Spctm::hasSpctmData4draw(int nClass, int nDataType)
{
    for (int i = 0; i < getTotalChannel(); ++i)
        if (hasSpctmPlane(m_ppChannel[i], nClass, nDataType))
            return moveOnTo(i);
    return false;
}

bool CMDTrial4Spctm::hasFreqData4draw(int nClass, int)
{
    for (int i = 0; i < getTotalChannel(); ++i) {
        const CFreqDataChnlzk* const data = freqData(m_ppChannel[i], nClass);
        if (data != nullptr && data->hasFreqData())
            return moveOnTo(i);
    }
    return false;
}

int CMDTrial4Spctm::hasSpctmData4SrcScan(int nClass, int nDataType)
{
    if (getSpctmTrial(false, nClass) == nullptr)
        return 0;
    if (getTotalChannel() < 1 || hasSpctmData4draw(nClass, nDataType))
        return 1;
    CMDChannelzk* const last = m_ppChannel[getTotalChannel() - 1];
    if (last == nullptr)
        return 1;
    // No channel qualifies, so that a plane that is there has no elements.
    const CSpctmChnlzk* const spectrum = channelSpectrum(last, nClass);
    return spectrum != nullptr && spectrum->getSpctmDataPtr(nDataType, nullptr, nullptr) != nullptr ? 1 : 0;
}

bool CMDTrial4Spctm::findSpctmChnl4Show(int nClass, int nDataType)
{
    CMDChannelzk* const current = getChannel(-1);
    if (current != nullptr && (current->isMEGChannel() || current->isEEGChannel()) &&
        hasSpctmPlane(current, nClass, nDataType))
        return true;
    for (int i = 0; i < getTotalChannel(); ++i)
        if (hasSpctmPlane(m_ppChannel[i], nClass, nDataType))
            return setCurrentChannel(i) != 0;
    return false;
}

// ---- shape

int CMDTrial4Spctm::channelIndex(int iChannel)
{
    return iChannel == -1 ? getCurntChnlIndx() : static_cast<int>(clampedIndex(iChannel, getTotalChannel()));
}

int CMDTrial4Spctm::getChnlnumberSpctmFreqPt(int* pChannels, std::int64_t* pFreqPt, int iChannel, int nClass)
{
    return getChnlnumberSpctmTimeFreqPts(pChannels, nullptr, pFreqPt, iChannel, nClass);
}

int CMDTrial4Spctm::getChnlnumberSpctmTimePt(int* pChannels, std::int64_t* pTimePt, int iChannel, int nClass)
{
    return getChnlnumberSpctmTimeFreqPts(pChannels, pTimePt, nullptr, iChannel, nClass);
}

int CMDTrial4Spctm::getChnlnumberSpctmTimeFreqPts(int* pChannels, std::int64_t* pTimePt, std::int64_t* pFreqPt,
                                                  int iChannel, int nClass)
{
    const int index = channelIndex(iChannel);
    const CSpctmChnlzk* const spectrum = index < 0 ? nullptr : channelSpectrum(m_ppChannel[index], nClass);
    if (pChannels != nullptr)
        *pChannels = getTotalChannel();
    put(pTimePt, spectrum != nullptr ? spectrum->m_nTimePt : 0);
    put(pFreqPt, spectrum != nullptr ? spectrum->m_nFreqPt : 0);
    return index;
}

int CMDTrial4Spctm::getSpctmChnTimFrq(std::int64_t& nChannels, std::int64_t& nTimeMin, std::int64_t& nTimeMax,
                                      std::int64_t& nFreqMin, std::int64_t& nFreqMax) const
{
    nChannels = nTimeMin = nTimeMax = nFreqMin = nFreqMax = 0;
    bool isFirst = true;
    for (int i = 0; i < getTotalChannel(); ++i) {
        bool counts = false;
        for (int nClass = 0; nClass < spectrumClasses; ++nClass) {
            const CSpctmChnlzk* const spectrum = channelSpectrum(m_ppChannel[i], nClass);
            if (spectrum == nullptr || !hasAnyPlane(*spectrum))
                continue;
            nTimeMin = isFirst ? spectrum->m_nTimePt : std::min(nTimeMin, spectrum->m_nTimePt);
            nTimeMax = isFirst ? spectrum->m_nTimePt : std::max(nTimeMax, spectrum->m_nTimePt);
            nFreqMin = isFirst ? spectrum->m_nFreqPt : std::min(nFreqMin, spectrum->m_nFreqPt);
            nFreqMax = isFirst ? spectrum->m_nFreqPt : std::max(nFreqMax, spectrum->m_nFreqPt);
            isFirst = false;
            counts = true;
        }
        nChannels += counts ? 1 : 0;
    }
    return m_ppChannel ? 1 : 0;
}

int CMDTrial4Spctm::getSpctmFreqIndexMax(bool bScanChannels, int nClass)
{
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (getTotalChannel() < 1 || spectrum == nullptr)
        return -1;
    for (int i = 0; bScanChannels && i < getTotalChannel(); ++i)
        if (const CSpctmChnlzk* const channel = channelSpectrum(m_ppChannel[i], nClass))
            spectrum->m_nFreqPt = channel->m_nFreqPt;
    return static_cast<int>(numeric::wrapSubtract(spectrum->m_nFreqPt, 1));
}

std::int64_t CMDTrial4Spctm::getSpctmSize(bool bAll, std::int64_t& nTimeBegin, std::int64_t& nTimeEnd,
                                          std::int64_t& nFreqBegin, std::int64_t& nFreqEnd, int nClass)
{
    nTimeBegin = nTimeEnd = nFreqBegin = nFreqEnd = 0;
    CSpctmTrialzk* const spectrum = getSpctmTrial(false, nClass);
    if (spectrum == nullptr)
        return 0;
    std::int64_t nTimes = std::max<std::int64_t>(spectrum->m_nTimePt, 0);
    std::int64_t nFreqs = std::max<std::int64_t>(spectrum->m_nFreqPt, 0);
    nTimeEnd = nTimes - 1;
    nFreqEnd = nFreqs - 1;
    if (!bAll) {
        nTimes = spectrum->getTrialSpctmSelectTime(nTimeBegin, nTimeEnd);
        nFreqs = spectrum->getTrialSpctmSelectFreq(nFreqBegin, nFreqEnd);
    }
    return std::max<std::int64_t>(planeCount(nTimes, nFreqs), 0);
}

std::int64_t CMDTrial4Spctm::getSpctmTimePt(std::int64_t iTime, int nClass, int) const
{
    const CSpctmTrialzk* const spectra[] = {m_pSpctmTrialA.get(), m_pSpctmTrialC.get(), m_pSpctmTrialR.get()};
    const CSpctmTrialzk* const spectrum = nClass >= 0 && nClass < spectrumClasses ? spectra[nClass] : nullptr;
    if (spectrum == nullptr)
        return -1;
    const std::int64_t samples = numeric::wrapMultiply(clampedIndex(iTime, spectrum->m_nTimePt), spectrum->m_nTimeStep);
    return numeric::wrapAdd(numeric::wrapAdd(samples, spectrum->m_nEdgePt), spectrum->m_nDataBegin);
}

} // namespace megset
