#include "megset/core/CMDChannel7ProcessX.h"

#include "megset/numeric/arithmetic.h"
#include "megset/numeric/statistics.h"
#include "megset/records/records.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace megset {
namespace {

int truncatedToInt(double value)
{
    if (std::isnan(value))
        return 0;
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, low, high));
}

} // namespace

int CMDChannel7ProcessX::computeDataRange()
{
    const auto samples = waveSpan();
    if (samples.empty())
        return 0;
    // The mean's sum starts at the first sample and then adds all of them.
    const numeric::SampleStatistics range = numeric::statistics(samples, samples[0]);
    m_dDataMin = range.min;
    m_dDataMax = range.max;
    m_dDataMean = range.sum / static_cast<double>(samples.size());
    m_dDataMaxAbs = numeric::maxAbsolute(samples);
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
        dst[i] = truncatedToInt((x - static_cast<double>(low)) * valueAt(low) +
                                (static_cast<double>(high) - x) * valueAt(high));
    }
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
