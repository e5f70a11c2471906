#include "megset/core/CMDChannel.h"

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/convert.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/records/records.h"
#include "megset/spectral/CSpctmChnlzk.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

namespace megset {
namespace {

int memoryFailure(const char* message)
{
    AfxMessageBox(message, MB_OK);
    return 0;
}

constexpr const char* notEnoughMemory = "Not enough memory!";

constexpr std::int64_t mostSamples =
    std::numeric_limits<std::ptrdiff_t>::max() / static_cast<std::ptrdiff_t>(sizeof(double));

std::size_t sizeOf(std::int64_t n)
{
    return n > 0 ? static_cast<std::size_t>(n) : 0;
}

// Whether `p` points into the n samples of `array`. std::less orders pointers of different arrays, too.
bool pointsInto(const void* p, const double* array, std::int64_t n)
{
    const std::less<const void*> before;
    return array != nullptr && p != nullptr && !before(p, array) && before(p, array + n);
}

} // namespace

CMDChannel::CMDChannel() = default;

CMDChannel::~CMDChannel()
{
    _cleanTimeDataC(true);
    _cleanGeomHw();
    _cleanSpctmDataChnl();
    _cleanFreqDataChnl();
    _cleanWaveAnlzRsltChnl();
    _cleanShowShrinkData();
    m_pWorkEvent.reset();
}

// ---- filling

template <class Value, class Convert>
std::int64_t CMDChannel::replaceSamples(std::int64_t n, const Value* data, bool keepsOtherBackup, Convert convert)
{
    if (n < 1 || data == nullptr)
        return 0;
    // A block that is part of this channel's own samples must live until it has been copied.
    SampleArray ownSource;
    const bool drop = m_nTotalSample != n || (!keepsOtherBackup && m_nBkDataSample != n);
    if (drop) {
        if (pointsInto(data, m_pDataWave.get(), m_nTotalSample))
            ownSource = std::move(m_pDataWave);
        else if (pointsInto(data, m_pBkData.get(), m_nBkDataSample))
            ownSource = std::move(m_pBkData);
        _cleanTimeDataC(true);
    }
    const bool hadWave = m_pDataWave != nullptr;
    if (!allocateMissing(n, n, false) || !growBackup(n)) {
        // A count that was there before its array would stand over samples that nobody has set.
        if (!hadWave && m_pDataWave != nullptr)
            numeric::fill(waveSpan(), 0.0);
        return memoryFailure(notEnoughMemory);
    }
    const std::size_t size = sizeOf(n);
    convert(std::span(data, size), std::span(m_pDataWave.get(), size), std::span(m_pBkData.get(), size));
    m_nCurrentSample = 0;
    m_nTotalSample = n;
    m_nBkDataSample = n;
    return n;
}

// Makes the arrays that are absent, the working one first; what could be made stays.
bool CMDChannel::allocateMissing(std::int64_t nWave, std::int64_t nBk, bool zero)
{
    if (m_pDataWave == nullptr) {
        m_pDataWave = tryNewSamples(nWave, zero);
        if (m_pDataWave == nullptr)
            return false;
    }
    if (m_pBkData == nullptr && nBk > 0) {
        m_pBkData = tryNewSamples(nBk, zero);
        if (m_pBkData == nullptr)
            return false;
        m_nBkDataSample = nBk;
    }
    return true;
}

// A backup that survived at another size is made long enough for n samples, which are about to be written.
bool CMDChannel::growBackup(std::int64_t n)
{
    if (m_nBkDataSample >= n)
        return true;
    SampleArray grown = tryNewSamples(n, false);
    if (grown == nullptr)
        return false;
    m_pBkData = std::move(grown);
    m_nBkDataSample = n;
    return true;
}

std::int64_t CMDChannel::addData(std::int64_t n, const double* data)
{
    return replaceSamples(n, data, false, [](auto from, auto to, auto alsoTo) {
        std::memmove(to.data(), from.data(), from.size_bytes());
        std::memmove(alsoTo.data(), from.data(), from.size_bytes());
    });
}

std::int64_t CMDChannel::addDataF(std::int64_t n, const float* data)
{
    return replaceSamples(n, data, false, [](auto from, auto to, auto alsoTo) { numeric::convert(from, to, alsoTo); });
}

std::int64_t CMDChannel::addDataFscaleD(std::int64_t n, const float* data, double scale)
{
    return replaceSamples(
        n, data, false, [scale](auto from, auto to, auto alsoTo) { numeric::convertScaled(from, scale, to, alsoTo); });
}

std::int64_t CMDChannel::addDataInt(std::int64_t n, const int* data)
{
    return addDataL(n, data);
}

std::int64_t CMDChannel::addDataL(std::int64_t n, const std::int32_t* data)
{
    return replaceSamples(n, data, true, [](auto from, auto to, auto alsoTo) { numeric::convert(from, to, alsoTo); });
}

std::int64_t CMDChannel::addData1(std::int64_t index, double value)
{
    for (const std::span<double> samples : {waveSpan(), backupSpan()})
        if (index >= 0 && index < std::ssize(samples))
            samples[sizeOf(index)] = value;
    return m_nTotalSample;
}

std::int64_t CMDChannel::addDataInt4ID(std::int64_t start, std::int64_t n, const int* data)
{
    const std::int64_t room = std::min(std::ssize(waveSpan()), std::ssize(backupSpan()));
    if (data == nullptr || n <= 0 || start < 0 || start > room || n > room - start)
        return 0;
    numeric::convert(std::span(data, sizeOf(n)), waveSpan().subspan(sizeOf(start), sizeOf(n)),
                     backupSpan().subspan(sizeOf(start), sizeOf(n)));
    return m_nTotalSample;
}

int CMDChannel::updateHDTrialDataL(std::int64_t n, const std::int32_t* data)
{
    if (n < 1 || n != m_nTotalSample || data == nullptr || m_pDataWave == nullptr)
        return 0;
    numeric::convert(std::span(data, sizeOf(n)), waveSpan());
    return 1;
}

int CMDChannel::initData(std::int64_t n, bool zero)
{
    return initDataBk(n, n, zero);
}

int CMDChannel::initDataBk(std::int64_t nWave, std::int64_t nBk, bool zero)
{
    if (nWave < 1)
        return 1;
    if (m_nTotalSample != nWave || m_nBkDataSample != nBk)
        _cleanTimeDataC(true);
    // New arrays are clear in any case: no sample ever comes from memory that held something else.
    const bool hadWave = m_pDataWave != nullptr;
    const bool hadBackup = m_pBkData != nullptr;
    if (!allocateMissing(nWave, nBk, true))
        return memoryFailure(notEnoughMemory);
    m_nCurrentSample = 0;
    m_nTotalSample = nWave;
    m_nBkDataSample = nBk;
    if (zero && hadWave)
        numeric::fill(waveSpan(), 0.0);
    if (zero && hadBackup)
        numeric::fill(backupSpan(), 0.0);
    return 1;
}

std::int64_t CMDChannel::setSizeData(std::int64_t n, double* data)
{
    // The channel's own array given back to it must not go with the others.
    const bool adopts = n >= 1 && data != nullptr;
    SampleArray adopted;
    if (adopts && data == m_pDataWave.get())
        adopted = std::move(m_pDataWave);
    else if (adopts && data == m_pBkData.get())
        adopted = std::move(m_pBkData);
    else if (adopts)
        adopted.reset(data);
    _cleanTimeDataC(true);
    if (!adopts)
        return 0;
    m_pDataWave = std::move(adopted);
    m_nTotalSample = n <= mostSamples ? n : 0; // no array holds more
    m_pBkData = tryNewSamples(n, false);
    if (m_pBkData == nullptr)
        return memoryFailure("There is not enough memory for backup data!");
    m_nBkDataSample = n;
    numeric::copy(waveSpan(), backupSpan());
    return n;
}

// ---- the two arrays

std::span<double> CMDChannel::waveSpan() const
{
    return m_pDataWave ? std::span(m_pDataWave.get(), sizeOf(m_nTotalSample)) : std::span<double>();
}

std::span<double> CMDChannel::backupSpan() const
{
    return m_pBkData ? std::span(m_pBkData.get(), sizeOf(m_nBkDataSample)) : std::span<double>();
}

// ---- backup and shape

int CMDChannel::backup2RawData()
{
    const auto samples = waveSpan();
    if (samples.empty())
        return 0;
    if (m_nBkDataSample != m_nTotalSample || m_pBkData == nullptr) {
        m_pBkData.reset();
        m_nBkDataSample = 0;
        m_pBkData = tryNewSamples(m_nTotalSample, false);
        if (m_pBkData == nullptr)
            return memoryFailure(notEnoughMemory);
        m_nBkDataSample = m_nTotalSample;
    }
    numeric::copy(samples, backupSpan());
    return 1;
}

int CMDChannel::reverseRawData()
{
    const auto samples = backupSpan();
    if (samples.empty())
        return 0;
    if (m_nTotalSample != m_nBkDataSample || m_pDataWave == nullptr) {
        // Not by _cleanTimeDataC: the current sample stays, and is brought inside at the end.
        m_pDataWave.reset();
        m_nTotalSample = 0;
        m_pDataWave = tryNewSamples(m_nBkDataSample, false);
        if (m_pDataWave == nullptr)
            return memoryFailure(notEnoughMemory);
        m_nTotalSample = m_nBkDataSample;
    }
    numeric::copy(samples, waveSpan());
    clampCurrentSample();
    return 1;
}

std::int64_t CMDChannel::checkInitData4MontageIr()
{
    if (backupSpan().empty())
        return -1;
    if (m_nTotalSample < m_nBkDataSample) {
        m_pDataWave.reset();
        m_nTotalSample = 0;
    }
    if (m_pDataWave == nullptr) {
        m_nTotalSample = 0;
        m_pDataWave = tryNewSamples(m_nBkDataSample, false);
        if (m_pDataWave == nullptr)
            return memoryFailure(notEnoughMemory);
    }
    m_nTotalSample = m_nBkDataSample;
    numeric::fill(waveSpan(), 0.0);
    clampCurrentSample();
    return m_nTotalSample;
}

void CMDChannel::clampCurrentSample()
{
    m_nCurrentSample = std::max<std::int64_t>(0, std::min(m_nCurrentSample, m_nTotalSample - 1));
}

int CMDChannel::chopSize4Select(std::int64_t newSize, int mode, std::int64_t from, std::int64_t to)
{
    if (newSize < 1)
        return 1;
    if (waveSpan().empty() && !backupSpan().empty())
        return 0; // raw samples alone give no contents, and must not be lost to zeros
    SampleArray wave = tryNewSamples(newSize, true);
    SampleArray backup = wave ? tryNewSamples(newSize, false) : nullptr;
    if (backup == nullptr)
        return memoryFailure("Not enough memory!?");
    const SampleRange range = resolveRange(from, to);
    if (range.hasSamples)
        placeSelection(std::span(wave.get(), sizeOf(newSize)), mode, range);
    numeric::copy(std::span(wave.get(), sizeOf(newSize)), std::span(backup.get(), sizeOf(newSize)));
    m_pDataWave = std::move(wave);
    m_pBkData = std::move(backup);
    m_nTotalSample = m_nBkDataSample = newSize;
    m_nCurrentSample = 0;
    return 1;
}

// Copies what falls on the target of the working samples first..last, sample `source` going to place `place`.
void CMDChannel::copyAligned(std::span<double> target, std::int64_t source, std::int64_t place, std::int64_t first,
                             std::int64_t last) const
{
    const std::int64_t shift = place - source;
    const std::int64_t begin = std::max<std::int64_t>({first, -shift, 0});
    const std::int64_t end = std::min(last, std::ssize(target) - 1 - shift);
    if (begin <= end)
        numeric::copy(waveSpan().subspan(sizeOf(begin), sizeOf(end - begin + 1)),
                      target.subspan(sizeOf(begin + shift), sizeOf(end - begin + 1)));
}

void CMDChannel::placeSelection(std::span<double> target, int mode, const SampleRange& range) const
{
    const std::int64_t size = std::ssize(target);
    if (mode == 1) {
        copyAligned(target, range.from, 0, range.from, range.to);
    } else if (mode == 2) {
        // The centre counts from sample 0, not from the start of the range: it is meant so. To its right the range's
        // start doesn't matter, to its left its end doesn't.
        const std::int64_t middle = (range.to - range.from) / 2;
        copyAligned(target, middle, size / 2, middle, range.to);
        copyAligned(target, middle, size / 2, range.from, middle - 1);
    } else if (mode == 3) {
        copyAligned(target, range.to, size - 1, range.from, range.to);
    }
}

int CMDChannel::applyMEGSnsrGainDir2Data(bool once)
{
    if (once && m_nSnsGainApplied > 0)
        return 1;
    const auto* sensor = m_nGeomType == 1 ? dynamic_cast<const CMEGSensorzk*>(m_pGeomHw.get()) : nullptr;
    if (waveSpan().empty() || sensor == nullptr)
        return 0;
    const double gain = sensor->getSnsGainCtf();
    numeric::scaleInPlace(waveSpan(), gain);
    // The backup samples of the same indices.
    numeric::scaleInPlace(backupSpan().first(std::min(backupSpan().size(), waveSpan().size())), gain);
    ++m_nSnsGainApplied;
    return 1;
}

int CMDChannel::_cleanTimeDataC(bool alsoBackup)
{
    m_pDataWave.reset();
    m_nTotalSample = 0;
    m_nCurrentSample = 0;
    if (alsoBackup) {
        m_pBkData.reset();
        m_nBkDataSample = 0;
    }
    return 1;
}

CString CMDChannel::traceDataInfo() const
{
    return CString::formatted("Data points:%I64d (Min %.9f; Mean %.9f;  Max %.9f; MaxAbsValue %.9f \n)", m_nTotalSample,
                              m_dDataMin, m_dDataMean, m_dDataMax, m_dDataMaxAbs);
}

// ---- geometry and the other owned objects

int CMDChannel::_initGeomHw(int type)
{
    _cleanGeomHw();
    const char* failure = "";
    switch (type) {
    case 1:
        m_pGeomHw = tryNew<CMEGSensorzk>();
        failure = "Make magentic Sensor failed";
        break;
    case 2:
        m_pGeomHw = tryNew<CEEGelectrodezk>();
        failure = "Make electrode failed";
        break;
    case 3:
        m_pGeomHw = tryNew<CStimTrigzk>();
        failure = "Make stim-trig failed";
        break;
    case 4:
        m_pGeomHw = tryNew<CMisceSnsrzk>();
        failure = "Make stim-trig failed"; // the same text as for a stimulus: it is meant so
        break;
    default:
        return 1;
    }
    m_nGeomType = type; // stored even where the object could not be made
    if (m_pGeomHw == nullptr)
        AfxMessageBox(failure, MB_OK);
    return 1;
}

int CMDChannel::_cleanGeomHw()
{
    m_pGeomHw.reset();
    m_strChannelTypeName.Empty();
    m_nChannelType = -1;
    m_nGeomType = 0;
    m_pMegBalInf.reset();
    m_nMegBalMode = 0;
    m_nMegChnlNumBal = 0;
    return 1;
}

int CMDChannel::getMegChnlNumBal()
{
    if (m_pMegBalInf == nullptr)
        m_nMegChnlNumBal = 0;
    return m_nMegChnlNumBal;
}

int CMDChannel::_cleanSpctmDataChnl()
{
    m_pSpctmChnlA.reset();
    m_pSpctmChnlC.reset();
    m_pSpctmChnlR.reset();
    return 1;
}

int CMDChannel::_cleanFreqDataChnl()
{
    m_pFreqDataA.reset();
    m_pFreqDataC.reset();
    m_pFreqDataX.reset();
    return 1;
}

int CMDChannel::_cleanWaveAnlzRsltChnl()
{
    m_pWaveResultA.reset();
    m_pWaveResultC.reset();
    m_pWaveResultX.reset();
    return 1;
}

int CMDChannel::_cleanShowShrinkData()
{
    m_pShowShrink.reset();
    return 1;
}

} // namespace megset
