#include "megset/core/CMEGData.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/numeric/cut.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>

namespace megset {
namespace {

constexpr double smallestRate = 1e-15;

template <class T>
void give(T* target, T value)
{
    if (target != nullptr)
        *target = value;
}

} // namespace

CMEGData::CMEGData() = default;

CMEGData::~CMEGData()
{
    _cleanDatasetTrials();
    _cleanChnlParam();
    m_pVirtSnsPOXlist4Spctm.reset();
    m_pVirtSnsPOXlist4Wave.reset();
    m_aUnsavedTrial.RemoveAll();
    releaseIdleSampleMemory();
}

int CMEGData::_cleanDatasetTrials()
{
    m_ppTrial.reset();
    m_nTotalTrial = 0;
    m_nCurrentTrial = -1;
    return 1;
}

int CMEGData::_cleanChnlParam()
{
    m_pChnlGood.reset();
    m_pChnlShow.reset();
    m_pChnlSelect.reset();
    m_pChnlParam4.reset();
    m_nChnlParamCount = 0;
    return 1;
}

// ---- trials in memory

// Makes all trials, each filled by `fill(trial, channel, index of the trial, index of the channel)`, which gives false
// without memory.
template <class Fill>
int CMEGData::makeTrials(int trials, int channels, bool keepsPart, Fill fill)
{
    _cleanDatasetTrials();
    if (trials < 1) {
        m_nTotalTrial = trials;
        return 1;
    }
    if (!m_ppTrial.allocate(trials))
        return fail("Not enough memory?!");
    for (int i = 0; i < trials; ++i) {
        auto trial = tryNew<CMDTrialzk>();
        bool made = trial != nullptr && trial->allocateChannels(channels);
        for (int k = 0; made && k < channels; ++k)
            made = fill(*trial->m_ppChannel[k], i, k);
        if (!made) {
            keepsPart ? static_cast<void>(m_nCurrentTrial = i > 0 ? 0 : -1) : static_cast<void>(_cleanDatasetTrials());
            return fail("Not enough memory?");
        }
        m_ppTrial.set(i, std::move(trial));
        m_nTotalTrial = i + 1;
    }
    m_nCurrentTrial = 0;
    return 1;
}

int CMEGData::initMEGData(int trials, int channels, std::int64_t samples)
{
    return makeTrials(trials, channels, false,
                      [samples](CMDChannelzk& channel, int, int) { return channel.initData(samples, true) != 0; });
}

int CMEGData::setDataL2F(int trials, int channels, std::int64_t samples, const std::int32_t* data)
{
    if (data == nullptr)
        return 0;
    return makeTrials(trials, channels, true, [=](CMDChannelzk& channel, int trial, int k) {
        const std::int64_t row = static_cast<std::int64_t>(trial) * channels + k;
        return samples < 1 || channel.addDataL(samples, data + row * samples) != 0;
    });
}

// ---- data of the trial in memory

double* CMEGData::getChannMEGData(int chan, int trial) const
{
    const CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->getChannMEGData(chan) : nullptr;
}

int CMEGData::getChannMEGDataS(std::int64_t* n, double** data, int chan, int trial) const
{
    const CMDTrialzk* slot = getMDTrial(trial);
    double* samples = slot != nullptr ? slot->getChannMEGData(chan) : nullptr;
    give(n, slot != nullptr ? slot->getTotalSample(-1) : std::int64_t{0});
    give(data, samples);
    return samples != nullptr ? 1 : 0;
}

int CMEGData::getCurntTrialChannelSample(int* channels, std::int64_t* samples) const
{
    const CMDTrialzk* slot = getCurrentTrialPt();
    give(channels, getTotalChannel(-1));
    give(samples, getTotalSample());
    return slot != nullptr ? m_nTotalTrial : 0;
}

int CMEGData::getCurntTrialCSD(int* channels, std::int64_t* samples, CMDTrialzk** trial) const
{
    give(channels, getTotalChannel(-1));
    give(samples, getTotalSample());
    give(trial, getCurrentTrialPt());
    return m_nCurrentTrial;
}

int CMEGData::getDataB(int* trials, int* channels, std::int64_t* samples, double** first) const
{
    give(trials, m_nTotalTrial);
    give(first, getChannMEGData(0, -1));
    return getCurntTrialChannelSample(channels, samples);
}

CString CMEGData::getCurrentTrialChannelName(int chan) const
{
    const CMDTrialzk* slot = getCurrentTrialPt();
    return slot != nullptr ? slot->getChannelName(chan) : CString("No Data");
}

int CMEGData::getChannelTypeX(unsigned& type, bool& show, int chan) const
{
    const CMDTrialzk* slot = getCurrentTrialPt();
    const CMDChannelzk* channel = slot != nullptr ? slot->getChannel(chan) : nullptr;
    if (channel == nullptr)
        return 0;
    type = static_cast<unsigned>(channel->m_nChannelType);
    if (chan < 0 || chan >= m_nChnlParamCount || m_pChnlShow == nullptr)
        return 0;
    show = m_pChnlShow[static_cast<std::size_t>(chan)] != 0;
    return 1;
}

int CMEGData::setChannelType(unsigned type, bool show, int chan, int trial)
{
    const CMDTrialzk* slot = getMDTrial(trial);
    if (slot == nullptr || chan < 0 || chan >= m_nChnlParamCount || m_pChnlShow == nullptr)
        return 0;
    CMDChannelzk* channel = slot->getChannel(chan);
    if (channel == nullptr || !channel->setChannelType(static_cast<int>(type)))
        return 0;
    m_pChnlShow[static_cast<std::size_t>(chan)] = show ? 1 : 0;
    return 1;
}

int CMEGData::setCurrentChannel(int trial, int chan)
{
    CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->setCurrentChannel(chan) : 0;
}

// Runs `set(trial)` on one place, or with -1 on all that are in memory; 1 when any of them gave so.
template <class Set>
int CMEGData::setInTrials(int trial, Set set)
{
    if (trial != -1) {
        CMDTrialzk* slot = getMDTrial(trial);
        return slot != nullptr ? set(*slot) : 0;
    }
    int done = 0;
    for (int i = 0; i < placedTrials(); ++i)
        if (CMDTrialzk* slot = getMDTrial(i))
            done |= set(*slot);
    return done;
}

int CMEGData::setChannelName(const CString& name, int chan, int trial, bool raw)
{
    return setInTrials(trial, [&](CMDTrialzk& slot) { return slot.setChannelName(name, chan, raw); });
}

int CMEGData::setChannelPos(int trial, int chan, double x, double y, double z)
{
    return setInTrials(trial, [&](CMDTrialzk& slot) { return slot.setChannelPos(chan, x, y, z); });
}

int CMEGData::getTotalChnl_Visible(bool shownOnly) const
{
    const int total = getTotalChannel(-1);
    if (!shownOnly)
        return total;
    if (m_pChnlShow == nullptr)
        return 0;
    const auto* flags = m_pChnlShow.get();
    return static_cast<int>(
        std::count_if(flags, flags + std::clamp(m_nChnlParamCount, 0, total), [](int flag) { return flag != 0; }));
}

int CMEGData::hasData2Draw() const
{
    return getTotalSample() > 0 && getChannMEGData(-1, -1) != nullptr ? 1 : 0;
}

// ---- time

// Rate and pre-trigger are made usable in place, so that every later reader sees the same numbers.
double CMEGData::guardedRate()
{
    if (m_recordInfo.m_dRecSampleRate <= 0.0)
        m_recordInfo.m_dRecSampleRate = smallestRate;
    return m_recordInfo.m_dRecSampleRate;
}

double CMEGData::guardedPreTrig()
{
    m_recordInfo.m_nRecPreTrigPts = std::max<std::int64_t>(m_recordInfo.m_nRecPreTrigPts, 0);
    return static_cast<double>(m_recordInfo.m_nRecPreTrigPts);
}

double CMEGData::getSampleRate()
{
    if (m_recordInfo.m_dRecSampleRate <= 0.0)
        AfxMessageBox("Sampling rate must be larger than 0!", MB_OK);
    return guardedRate();
}

double CMEGData::dataPoints2TimeMs(std::int64_t n)
{
    return static_cast<double>(n) / guardedRate() * 1000.0;
}

std::int64_t CMEGData::timeMs2DataPoints(double ms) const
{
    return numeric::cutToCount(ms / 1000.0 * m_recordInfo.m_dRecSampleRate);
}

double CMEGData::getLatency4ptSecond(std::int64_t n)
{
    const double rate = guardedRate();
    return static_cast<double>(n) / rate - guardedPreTrig() / rate;
}

std::int64_t CMEGData::getPts4LatencyMs(double ms)
{
    const double rate = guardedRate();
    return numeric::cutToCount((guardedPreTrig() / rate + ms / 1000.0) * rate);
}

double CMEGData::getPreTrigMsc()
{
    if (!(m_recordInfo.m_dRecSampleRate > 0.0))
        return 0.0;
    return guardedPreTrig() / m_recordInfo.m_dRecSampleRate * 1000.0;
}

// ---- the session

int CMEGData::setSessionName(const CString& name)
{
    m_strSessionName = name;
    return 1;
}

int CMEGData::setMEGRecordInfozk(const CMEGRecordInfozkProzk* info)
{
    if (info == nullptr)
        return 0;
    m_recordInfo = *info;
    return 1;
}

int CMEGData::getTotalTrigs() const
{
    return m_mkTrig.getTotalMarkers();
}

} // namespace megset
