#include "megset/core/CMDChannel7ProcessX.h"

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/cut.h"
#include "megset/numeric/resample.h"
#include "megset/numeric/statistics.h"
#include "megset/numeric/stimulus.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/records/records.h"

#include <algorithm>
#include <cmath>

namespace megset {
namespace {

// A file may give any count and any factor: the working samples stay within this many times the raw ones.
constexpr std::int64_t mostStretch = 4096;

// The same for the samples that a mean is made of: behind the raw ones it is the last one over and over.
constexpr std::int64_t mostRun = std::int64_t{1} << 20;

void reSample(std::span<const double> from, bool average, std::int64_t factor, std::span<double> to)
{
    const std::int64_t most = std::max(mostRun, std::ssize(from));
    const auto run = static_cast<std::size_t>(std::clamp<std::int64_t>(factor, 1, most));
    average&& run > 1 ? numeric::averageEvery(from, run, to) : numeric::pickEvery(from, run, to);
}

// Fills the runs that begin inside `from`, and leaves the rest of `to` alone.
void reSampleRuns(std::span<const double> from, bool average, std::int64_t factor, std::span<double> to)
{
    const std::int64_t runs = (std::ssize(from) - 1) / factor + 1;
    reSample(from, average, factor, to.first(static_cast<std::size_t>(runs)));
}

double restsAtZero(std::span<const double>, numeric::StimulusBlocks& blocks) noexcept
{
    blocks.clear();
    return 0.0;
}

} // namespace

int CMDChannel7ProcessX::computeDataRange()
{
    numeric::StimulusBlocks none;
    return computeDataRangeBlocks(none);
}

int CMDChannel7ProcessX::computeDataRangeBlocks(numeric::StimulusBlocks& blocks)
{
    const auto samples = waveSpan();
    if (samples.empty())
        return 0;
    takeDataRange(numeric::rangeOf(samples, blocks));
    return 1;
}

void CMDChannel7ProcessX::takeDataRange(const numeric::SampleRange& range)
{
    m_dDataMin = range.min;
    m_dDataMax = range.max;
    m_dDataMean = range.sum / static_cast<double>(m_nTotalSample);
    m_dDataMaxAbs = range.maxAbsolute;
}

int CMDChannel7ProcessX::stimTrgChnl_Dc(int alsoBackup)
{
    if (!computeDataRange())
        return 0;
    numeric::subtractInPlace(waveSpan(), m_dDataMean);
    if (!alsoBackup)
        return 1;
    const auto raw = backupSpan();
    if (raw.empty())
        return 0;
    numeric::subtractInPlace(raw, numeric::sum(raw, numeric::noStart) / static_cast<double>(raw.size()));
    return 1;
}

int CMDChannel7ProcessX::stimTrigChnl_AbsDc(int subtract, int alsoBackup)
{
    numeric::StimulusBlocks blocks(waveSpan().size());
    return stimTrigChnl_AbsDcBlocks(subtract, alsoBackup, blocks);
}

int CMDChannel7ProcessX::stimTrigChnl_AbsDcBlocks(int subtract, int alsoBackup, numeric::StimulusBlocks& blocks)
{
    return conditionStimulus(subtract ? static_cast<LevelOf>(numeric::minAbsolute) : restsAtZero, alsoBackup, blocks);
}

int CMDChannel7ProcessX::stimTrigChnl_AbsDcM(int subtract, int alsoBackup)
{
    numeric::StimulusBlocks blocks(waveSpan().size());
    return stimTrigChnl_AbsDcMBlocks(subtract, alsoBackup, blocks);
}

int CMDChannel7ProcessX::stimTrigChnl_AbsDcMBlocks(int subtract, int alsoBackup, numeric::StimulusBlocks& blocks)
{
    return conditionStimulus(subtract ? static_cast<LevelOf>(numeric::meanAbsolute) : restsAtZero, alsoBackup, blocks);
}

int CMDChannel7ProcessX::conditionStimulus(LevelOf levelOf, int alsoBackup, numeric::StimulusBlocks& blocks)
{
    const auto samples = waveSpan();
    if (!isTriggerChannel() || samples.empty())
        return 0;
    const double level = levelOf(samples, blocks);
    takeDataRange(numeric::absoluteAbove(samples, level, blocks));
    if (!alsoBackup)
        return 1;
    const auto raw = backupSpan();
    if (raw.empty())
        return 0;
    numeric::StimulusBlocks rawBlocks(raw.size());
    const double rawLevel = levelOf(raw, rawBlocks);
    numeric::absoluteAbove(raw, rawLevel, rawBlocks);
    return 1;
}

double CMDChannel7ProcessX::getBitValue() const
{
    const double extent = m_dDataMax - m_dDataMin;
    return extent > 0.0 ? (m_dPhysicalMax - m_dPhysicalMin) / extent : 0.0;
}

double CMDChannel7ProcessX::getOffset() const
{
    const double bit = getBitValue();
    return bit > 0.0 ? m_dPhysicalMax / bit - m_dDataMax : 0.0;
}

int CMDChannel7ProcessX::scaleWaveData(double factor, int both)
{
    if (waveSpan().empty())
        return 0;
    numeric::scaleInPlace(waveSpan(), factor);
    if (!both)
        return 1;
    if (backupSpan().empty())
        return 0;
    numeric::scaleInPlace(backupSpan(), factor);
    return 1;
}

int CMDChannel7ProcessX::expandDataPoints(std::int64_t n, const int* src, std::int64_t m, int* dst)
{
    if (n <= 0 || n >= m || src == nullptr || dst == nullptr)
        return 0;
    const double ratio = static_cast<double>(n) / static_cast<double>(m);
    const auto valueAt = [n, src](std::int64_t i) { return i < n ? static_cast<double>(src[i]) : 0.0; };
    for (std::int64_t i = 0; i < m; ++i) {
        const double x = static_cast<double>(i) * ratio;
        const auto low = std::max<std::int64_t>(static_cast<std::int64_t>(std::floor(x)), 0);
        const auto high = std::min<std::int64_t>(static_cast<std::int64_t>(std::ceil(x)), m - 1);
        dst[i] = numeric::cutToInt((x - static_cast<double>(low)) * valueAt(low) +
                                   (static_cast<double>(high) - x) * valueAt(high));
    }
    return 1;
}

int CMDChannel7ProcessX::reSampleBkData(bool average, std::int64_t factor, std::int64_t n)
{
    const auto raw = backupSpan();
    if (raw.empty())
        return 1;
    if (m_nTotalSample != n || m_pDataWave == nullptr) {
        _cleanTimeDataC(false);
        if (n / mostStretch <= std::ssize(raw))
            m_pDataWave = tryNewSamples(n, false);
    }
    if (m_pDataWave == nullptr) {
        AfxMessageBox("Not enough memory!", MB_OK);
        return 0;
    }
    m_nTotalSample = n;
    reSample(raw, average, factor, waveSpan());
    m_nCurrentSample = std::clamp<std::int64_t>(m_nCurrentSample, 0, std::max<std::int64_t>(n - 1, 0));
    return 1;
}

int CMDChannel7ProcessX::reSampleFrom(const CMDChannel7ProcessX& source, bool average, std::int64_t factor)
{
    const auto wave = source.waveSpan();
    const auto raw = source.backupSpan();
    if (&source == this || wave.empty() || raw.empty())
        return 0;
    const std::int64_t run = std::max<std::int64_t>(factor, 1);
    if (!initDataBk(std::ssize(wave) / run + 1, std::ssize(raw) / run + 1, true))
        return 0;
    reSampleRuns(wave, average, run, waveSpan());
    reSampleRuns(raw, average, run, backupSpan());
    return 1;
}

double CMDChannel7ProcessX::getCoilBaseLine() const
{
    const CMEGSensorzk* sensor = isMEGChannel() ? getMEGSensorzk() : nullptr;
    return sensor != nullptr ? sensor->getCoilBaseLine() : 0.0;
}

int CMDChannel7ProcessX::hasSyntheticGradiometer() const
{
    const CMEGSensorzk* sensor = isMEGChannel() ? getMEGSensorzk() : nullptr;
    return sensor != nullptr && sensor->getGradOrderNo() >= 2 ? 1 : 0;
}

int CMDChannel7ProcessX::isAxialGrad() const
{
    const CMEGSensorzk* sensor = isMEGChannel() ? getMEGSensorzk() : nullptr;
    return sensor != nullptr && sensor->isAxialGrad() ? 1 : 0;
}

} // namespace megset
