#include "megset/core/CMEGData.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace megset {
namespace {

constexpr double smallestRate = 1e-15;

template <class T>
void give(T* target, T value)
{
    if (target != nullptr)
        *target = value;
}

// A number of samples cut towards zero; what no int64 can hold becomes the nearest one, NaN becomes 0.
std::int64_t cutToCount(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<std::int64_t>::max();
    return value <= -limit ? std::numeric_limits<std::int64_t>::min() : static_cast<std::int64_t>(value);
}

// Sample indices come from files: sums of them stop at the ends of their range.
std::int64_t addLimited(std::int64_t a, std::int64_t b)
{
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return b > 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t subtractLimited(std::int64_t a, std::int64_t b)
{
    std::int64_t difference = 0;
    if (!__builtin_sub_overflow(a, b, &difference))
        return difference;
    return b < 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t broughtInto(std::int64_t index, std::int64_t total)
{
    return std::max<std::int64_t>(std::min(index, total - 1), 0);
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

// ---- trials on disk

bool CMEGData::checkPathsMatchTrials() const
{
    if (!pathsMatchTrials())
        AfxMessageBox("File path and trial error!", MB_OK);
    return pathsMatchTrials();
}

int CMEGData::openTrial(int trial)
{
    const int index = trialIndex(trial);
    if (index < 0 || index >= m_nTotalTrial || !m_ppTrial)
        return 0;
    if (index == m_nCurrentTrial && m_ppTrial[index] != nullptr)
        return 1;
    if (!checkPathsMatchTrials())
        return 0;
    saveAllTrials();
    CString path = m_aTrialFilePath.GetAt(index);
    auto opened = tryNew<CMDTrialzk>();
    if (opened == nullptr)
        return 0;
    if (!opened->openTrialData(path, m_pDocument, m_strDatasetPath))
        return fail("Open trial data failed ");
    return installOpened(index, std::move(opened));
}

int CMEGData::installOpened(int index, std::unique_ptr<CMDTrialzk> opened)
{
    m_aTrialFilePath.SetAt(index, opened->m_strTrialFilePath);
    m_nCurrentTrial = index;
    const CMDTrialzk& current = *m_ppTrial.set(index, std::move(opened));
    warnOfChangedSamples(current);
    return current.getAllChannelPt() ? 1 : 0;
}

bool CMEGData::isUnlikeRecording(const CMDTrialzk& trial) const
{
    const CMDChannelzk* first = trial.getChannel(0);
    return first != nullptr && trial.m_nTrialResampleStep != m_recordInfo.m_nResampleFactor &&
           first->m_nTotalSample != m_recordInfo.m_nRecTotalSample;
}

void CMEGData::warnOfChangedSamples(const CMDTrialzk& trial) const
{
    if (isUnlikeRecording(trial))
        AfxMessageBox(CString::formatted("Sample has been changed: %I64d->%I64d, Please re-sample and check the data",
                                         m_recordInfo.m_nRecTotalSample, trial.getChannel(0)->m_nTotalSample),
                      MB_OK);
}

int CMEGData::saveAllTrials()
{
    if (m_nTotalTrial < 1 || !checkPathsMatchTrials() || !m_ppTrial)
        return 0;
    for (int i = 0; i < m_nTotalTrial; ++i) {
        if (m_ppTrial[i] != nullptr && !saveTrialAt(i)) {
            AfxMessageBox("Save trial data error!", MB_OK);
            return 1; // the rest stay in memory: it is meant so
        }
    }
    return 1;
}

// Writes the trial of one place to its file and frees it.
int CMEGData::saveTrialAt(int index)
{
    if (!storeTrialAt(index))
        return 0;
    m_ppTrial.set(index, nullptr);
    return 1;
}

// Writes the trial of one place, which is empty meanwhile, to its file. One that can't be saved goes to the unsaved
// trials, also where an exception tells so, which passes on.
int CMEGData::storeTrialAt(int index)
{
    std::unique_ptr<CMDTrialzk> trial = m_ppTrial.release(index);
    const bool hasPath = index < m_aTrialFilePath.GetSize();
    CString path = hasPath ? m_aTrialFilePath.GetAt(index) : CString();
    try {
        if (trial->saveTrialData(path, m_pDocument, m_strDatasetPath, false)) {
            if (hasPath)
                m_aTrialFilePath.SetAt(index, trial->m_strTrialFilePath);
            m_ppTrial.set(index, std::move(trial));
            return 1;
        }
    } catch (...) {
        keepUnsavedTrial(std::move(trial), index);
        throw;
    }
    keepUnsavedTrial(std::move(trial), index);
    return 0;
}

// One that had no file yet notes the path that it was meant for, since its place may go.
void CMEGData::keepUnsavedTrial(std::unique_ptr<CMDTrialzk> trial, int place)
{
    if (trial->m_strTrialFilePath.IsEmpty() && place >= 0 && place < m_aTrialFilePath.GetSize())
        trial->m_strTrialFilePath = m_aTrialFilePath.GetAt(place);
    m_aUnsavedPlace.push_back(place);
    m_aUnsavedTrial.Add(std::move(trial));
}

int CMEGData::placeOfTrial(const CMDTrialzk* trial) const
{
    for (std::int64_t i = 0; trial != nullptr && i < m_ppTrial.size(); ++i)
        if (m_ppTrial[i] == trial)
            return static_cast<int>(i);
    return -1;
}

void CMEGData::removeUnsavedPlace(int place)
{
    for (int& each : m_aUnsavedPlace)
        each = each == place ? -1 : each > place ? each - 1 : each;
}

void CMEGData::removeUnsavedPlaces()
{
    std::fill(m_aUnsavedPlace.begin(), m_aUnsavedPlace.end(), -1);
}

// Oldest first: of two versions of one trial the later one is what its file holds in the end.
int CMEGData::saveUnsavedTrials()
{
    for (int i = 0; i < m_aUnsavedTrial.GetSize();)
        if (!saveUnsavedTrial(i))
            ++i;
    return m_aUnsavedTrial.GetSize();
}

// Writes one of them to the path that its place has in the list, and lets it go.
int CMEGData::saveUnsavedTrial(int i)
{
    CMDTrialzk& trial = *m_aUnsavedTrial.GetAt(i);
    const int place = m_aUnsavedPlace[static_cast<std::size_t>(i)];
    const bool hasPath = place >= 0 && place < m_aTrialFilePath.GetSize();
    CString path = hasPath ? m_aTrialFilePath.GetAt(place) : trial.m_strTrialFilePath;
    if (!trial.saveTrialData(path, m_pDocument, m_strDatasetPath, true))
        return 0;
    if (hasPath)
        m_aTrialFilePath.SetAt(place, trial.m_strTrialFilePath);
    m_aUnsavedTrial.RemoveAt(i);
    m_aUnsavedPlace.erase(m_aUnsavedPlace.begin() + i);
    return 1;
}

CMDTrialzk* CMEGData::getTrialzk(int trial)
{
    return openTrial(trial) ? getCurrentTrialPt() : nullptr;
}

CMDTrialzk* CMEGData::getMDTrial(int trial) const
{
    const int index = trialIndex(trial);
    return index >= 0 && index < m_nTotalTrial ? m_ppTrial[index] : nullptr;
}

int CMEGData::getTotalChannel(int trial) const
{
    const CMDTrialzk* slot = getMDTrial(trial);
    return slot != nullptr ? slot->getTotalChannel() : 0;
}

std::int64_t CMEGData::getTotalSample() const
{
    const CMDTrialzk* slot = getCurrentTrialPt();
    return slot != nullptr ? slot->getTotalSample(-1) : 0;
}

int CMEGData::getTrialRecordVirtual(int& real, int& virt, int mode)
{
    real = virt = 0;
    if (m_nTotalTrial < 1 || !checkPathsMatchTrials() || !m_ppTrial)
        return 0;
    int counted = 0;
    if (mode == 0) {
        real = m_nRealTrial;
        virt = m_nVirtualTrial;
        counted = 1;
    } else if (mode == 1) {
        counted = countVirtualAtEnd(virt);
    } else if (mode == 2) {
        counted = countAllTrials(real, virt);
    }
    if (!counted)
        return 0;
    // A file may have brought any counts, so that the difference may leave the range of int.
    real = static_cast<int>(std::int64_t{m_nTotalTrial} - virt);
    return m_nTotalTrial;
}

// Virtual trials stand at the end: the first recorded one from there ends the count.
int CMEGData::countVirtualAtEnd(int& virt)
{
    for (int i = m_nTotalTrial - 1; i >= 0; --i) {
        const CMDTrialzk* trial = getTrialzk(i);
        if (trial == nullptr)
            return fail("Open trial for checking error!");
        if (!trial->isVirtualTrial())
            break;
        ++virt;
    }
    return 1;
}

int CMEGData::countAllTrials(int& real, int& virt)
{
    for (int i = 0; i < m_nTotalTrial; ++i) {
        const CMDTrialzk* trial = getTrialzk(i);
        if (trial == nullptr)
            return fail("Open trial for checking error!");
        ++(trial->isVirtualTrial() ? virt : real);
    }
    return 1;
}

int CMEGData::getTrialComments(int trial)
{
    const CMDTrialzk* opened = getTrialzk(trial);
    return opened != nullptr ? opened->m_nGoodTrial : 0;
}

int CMEGData::applyMEGSnsrGainDirTrial(int trial, bool once)
{
    CMDTrialzk* opened = getTrialzk(trial);
    return opened != nullptr ? opened->applyMEGSnsrGainDir2Chnls(once) : 0;
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
    const int from = trial == -1 ? 0 : trial;
    const int to = trial == -1 ? placedTrials() - 1 : trial;
    int done = 0;
    for (int i = from; i <= to; ++i)
        if (CMDTrialzk* slot = i >= 0 ? getMDTrial(i) : nullptr)
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

// ---- selection

int CMEGData::setSelect(std::int64_t a, std::int64_t b)
{
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr || trial->getTotalChannel() < 1)
        return 0;
    const std::int64_t total = trial->getTotalSample(0);
    // The end is b even where b is the smaller: the two are not exchanged.
    m_nSelectStart = broughtInto(std::min(a, b), total);
    m_nSelectEnd = broughtInto(b, total);
    return 1;
}

std::int64_t CMEGData::getSelect(std::int64_t& from, std::int64_t& to)
{
    from = to = 0;
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr)
        return 0;
    if (trial->getTotalChannel() < 1)
        return -1;
    const std::int64_t total = trial->getTotalSample(0);
    if (total < 1)
        return 0;
    m_nSelectStart = broughtInto(m_nSelectStart, total);
    m_nSelectEnd = std::min(std::max(m_nSelectEnd, m_nSelectStart), total - 1);
    from = m_nSelectStart;
    to = m_nSelectEnd;
    return to - from + 1;
}

std::int64_t CMEGData::nextSelect(int step, bool wrap)
{
    const std::int64_t length = subtractLimited(std::max(m_nSelectEnd, m_nSelectStart), m_nSelectStart);
    m_nSelectStart = addLimited(m_nSelectStart, step);
    m_nSelectEnd = addLimited(m_nSelectEnd, step);
    const CMDTrialzk* trial = getTrialzk(-1);
    if (trial == nullptr || trial->getTotalChannel() < 1)
        return 0;
    const std::int64_t total = trial->getTotalSample(0);
    if (m_nSelectStart < 0) {
        m_nSelectStart = wrap ? total - length - 1 : 0;
        m_nSelectEnd = wrap || length >= total ? total - 1 : length;
    }
    if (m_nSelectEnd >= total) {
        m_nSelectStart = wrap ? 0 : total - length - 1;
        m_nSelectEnd = wrap ? length : total - 1;
        if (!wrap && m_nSelectStart >= 0)
            return m_nSelectStart;
        m_nSelectStart = 0;
    }
    m_nSelectEnd = std::max(m_nSelectEnd, m_nSelectStart);
    return m_nSelectStart;
}

double CMEGData::getSelectData(int chan, std::int64_t from, std::int64_t to) const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    const CMDChannelzk* channel = trial != nullptr ? trial->getChannel(chan) : nullptr;
    if (channel == nullptr)
        return 0.0;
    return channel->getCurrentV(from == -1 ? m_nSelectStart : from, to == -1 ? m_nSelectEnd : to);
}

CString CMEGData::getSelectDataValueUnit(int chan, std::int64_t from, std::int64_t to, int peak) const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr)
        return "None";
    const CMDChannelzk* channel = trial->getChannel(chan);
    if (channel == nullptr)
        return "OutRange";
    double low = 0.0;
    double mean = 0.0;
    double high = 0.0;
    channel->getSelectMinMeaMaxV(from == -1 ? m_nSelectStart : from, to == -1 ? m_nSelectEnd : to, &low, &mean, &high,
                                 nullptr);
    const double extreme = std::fabs(high) > std::fabs(low) ? high : low;
    const double value = peak ? extreme : mean;
    const bool small = std::fabs(value) < 1000.0;
    if (channel->isMEGChannel())
        return small ? CString::formatted("%0.0ffT", value) : CString::formatted("%0.2fpT", value / 1000.0);
    if (channel->isEEGChannel())
        return small ? CString::formatted("%0.0fuV", value) : CString::formatted("%0.2fmV", value / 1000.0);
    return "";
}

CString CMEGData::getSelectUnit(int chan) const
{
    const CMDTrialzk* trial = getCurrentTrialPt();
    if (trial == nullptr)
        return "None";
    const CMDChannelzk* channel = trial->getChannel(chan);
    if (channel == nullptr)
        return "OutRange";
    return channel->isMEGChannel() ? "fT" : channel->isEEGChannel() ? "uV" : "u";
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
    return cutToCount(ms / 1000.0 * m_recordInfo.m_dRecSampleRate);
}

double CMEGData::getLatency4ptSecond(std::int64_t n)
{
    const double rate = guardedRate();
    return static_cast<double>(n) / rate - guardedPreTrig() / rate;
}

std::int64_t CMEGData::getPts4LatencyMs(double ms)
{
    const double rate = guardedRate();
    return cutToCount((guardedPreTrig() / rate + ms / 1000.0) * rate);
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
