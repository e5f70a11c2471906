#include "megset/records/results/CFaceIca.h"

#include "megset/records/recordFormat.h"

namespace megset {

int CFaceIca::setSize(const std::vector<std::int32_t>& channels, std::int64_t components, std::int64_t samples)
{
    *this = CFaceIca();
    m_aChannel = channels;
    m_nComponent = components;
    m_nSample = samples;
    const std::int64_t matrix = elementCount({getTotalChannel(), components});
    // Components without channels or samples have no numbers that would speak for their count.
    const bool sized = matrix >= components && resizeToZeros(m_aMean, getTotalChannel()) &&
                       resizeToZeros(m_aMixing, matrix) && resizeToZeros(m_aUnmixing, matrix) &&
                       resizeToZeros(m_aWave, elementCount({components, samples}));
    if (!sized) {
        *this = CFaceIca();
        return 0;
    }
    m_aRejected.assign(static_cast<std::size_t>(components), 0);
    return 1;
}

const double* CFaceIca::getComponentWave(std::int64_t iComponent) const
{
    const std::int64_t at = iComponent == -1 ? m_nCurrentComponent : iComponent;
    if (!isWithin(at, m_nComponent) || !isConsistent())
        return nullptr;
    return m_aWave.data() + at * m_nSample;
}

int CFaceIca::setRejected(std::int64_t iComponent, bool rejected)
{
    if (!isWithin(iComponent, static_cast<std::int64_t>(m_aRejected.size())))
        return 0;
    m_aRejected[static_cast<std::size_t>(iComponent)] = rejected ? 1 : 0;
    return 1;
}

double CFaceIca::cleanedValue(std::int64_t iChannel, std::int64_t iSample) const
{
    if (!isWithin(iChannel, getTotalChannel()) || !isWithin(iSample, m_nSample) || !isConsistent())
        return noValue;
    double value = valueAt(m_aMean, iChannel);
    for (std::int64_t c = 0; c < m_nComponent; ++c)
        if (m_aRejected[static_cast<std::size_t>(c)] == 0)
            value += valueAt(m_aMixing, iChannel * m_nComponent + c) * valueAt(m_aWave, c * m_nSample + iSample);
    return value;
}

bool CFaceIca::isConsistent() const
{
    return hasShape(m_aMean, {getTotalChannel()}) && hasShape(m_aMixing, {getTotalChannel(), m_nComponent}) &&
           hasShape(m_aUnmixing, {m_nComponent, getTotalChannel()}) && hasShape(m_aWave, {m_nComponent, m_nSample}) &&
           hasShape(m_aRejected, {m_nComponent});
}

const FormatVersion<CFaceIca09File> CFaceIca09File::s_versions[1] = {
    {20261121, &CFaceIca09File::serialize_20261121},
};

int CFaceIca09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "FACEICAZK", s_versions);
}

int CFaceIca09File::serialize_20261121(CArchive& ar)
{
    exchangeNumbers(ar, m_aChannel, "m_aChannel");
    EXCHANGE_FIELDS(ar, m_nComponent, m_nSample, m_nDataBegin, m_nCurrentComponent);
    exchangeNumbers(ar, m_aMean, "m_aMean");
    exchangeNumbers(ar, m_aMixing, "m_aMixing");
    exchangeNumbers(ar, m_aUnmixing, "m_aUnmixing");
    exchangeNumbers(ar, m_aWave, "m_aWave");
    exchangeNumbers(ar, m_aRejected, "m_aRejected");
    return isConsistent() ? 1 : 0;
}

} // namespace megset
