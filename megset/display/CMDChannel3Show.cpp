#include "megset/display/CMDChannel3Show.h"

#include "megset/numeric/shrink.h"

#include <cmath>

namespace megset {
namespace {

constexpr std::int64_t fewestSamples = 100;
constexpr double largestRatio = 0.25;

// Samples per block for a ratio; 0 where there is no such number.
std::int64_t samplesPerBlock(double ratio)
{
    constexpr double limit = 9007199254740992.0; // 2^53: far more than any channel has
    const double samples = std::trunc(1.0 / ratio);
    return samples >= 1.0 && samples < limit ? static_cast<std::int64_t>(samples) : 0;
}

} // namespace

SHOW_SHRINK_DATAF* CMDChannel3Show::getShowShrinkData(int create)
{
    if (m_pShowShrink == nullptr && create)
        m_pShowShrink = tryNew<SHOW_SHRINK_DATAF>();
    return m_pShowShrink.get();
}

int CMDChannel3Show::checkInitBuf4FastDraw(double ratio, int force)
{
    if (m_pDataWave == nullptr || m_nTotalSample < fewestSamples || ratio > largestRatio)
        return 0;
    SHOW_SHRINK_DATAF* buffer = getShowShrinkData(1);
    if (buffer == nullptr)
        return 0;
    return !force && isReady4FastBufDraw(ratio) ? 1 : rebuildBuffer(*buffer, ratio);
}

int CMDChannel3Show::initSetBuf4FastDraw(int force)
{
    return m_pShowShrink != nullptr ? checkInitBuf4FastDraw(m_pShowShrink->m_dShrinkRatio, force) : 0;
}

int CMDChannel3Show::isReady4FastBufDraw(double ratio) const
{
    if (m_pShowShrink == nullptr || ratio == 0.0)
        return 0;
    const SHOW_SHRINK_DATAF& buffer = *m_pShowShrink;
    const std::int64_t block = samplesPerBlock(ratio);
    const bool fits = buffer.m_nDirty == 0 && buffer.m_pSrcData == m_pDataWave.get() &&
                      buffer.m_nSrcSample == m_nTotalSample && block >= 1 && block == buffer.m_nBinSample &&
                      buffer.m_nBinCount == m_nTotalSample / block;
    return fits ? 1 : 0;
}

int CMDChannel3Show::rebuildBuffer(SHOW_SHRINK_DATAF& buffer, double ratio)
{
    constexpr std::int64_t fewestPerBlock = 5;
    const std::int64_t block = samplesPerBlock(ratio);
    if (block < fewestPerBlock || m_nTotalSample / block < 2)
        return 0;
    const std::int64_t blocks = m_nTotalSample / block;
    if (buffer.m_nSrcSample != m_nTotalSample || buffer.m_nBinSample != block || buffer.m_nBinCount != blocks)
        buffer = SHOW_SHRINK_DATAF{};
    if (buffer.m_pMax == nullptr)
        buffer.m_pMax = tryNewZeroArray<float>(blocks);
    if (buffer.m_pMin == nullptr)
        buffer.m_pMin = tryNewZeroArray<float>(blocks);
    if (buffer.m_pMax == nullptr || buffer.m_pMin == nullptr)
        return 0;
    const auto count = static_cast<std::size_t>(blocks);
    numeric::shrink(waveSpan(), static_cast<std::size_t>(block), std::span(buffer.m_pMax.get(), count),
                    std::span(buffer.m_pMin.get(), count));
    buffer.m_pSrcData = m_pDataWave.get();
    buffer.m_nSrcSample = m_nTotalSample;
    buffer.m_nBinSample = block;
    buffer.m_dShrinkRatio = buffer.m_dShrinkRatioUsed = ratio;
    buffer.m_nBinCount = blocks;
    buffer.m_nDirty = 0;
    return 1;
}

int CMDChannel3Show::event4WorkBegin(int create)
{
    if (m_pWorkEvent == nullptr && create) {
        m_pWorkEvent = tryNew<CEvent>();
        if (m_pWorkEvent == nullptr)
            return 0;
    }
    if (m_pWorkEvent != nullptr)
        m_pWorkEvent->ResetEvent();
    return 1;
}

int CMDChannel3Show::event4WorkEnd()
{
    if (m_pWorkEvent == nullptr)
        return 0;
    m_pWorkEvent->SetEvent();
    return 1;
}

} // namespace megset
