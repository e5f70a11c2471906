#include "megset/records/results/CVirtSnsPOXlist.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

namespace megset {

void VirtSnsPOX::exchangeFields(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strSensorName, m_dPosition, m_dOrientation);
    exchangeNumbers(ar, m_aWeight, "m_aWeight");
}

const VirtSnsPOX* CVirtSnsPOXlist::getVirtSns(std::int64_t index) const
{
    const std::int64_t at = index == -1 ? m_nCurrentVirtSns : index;
    return isWithin(at, getTotalVirtSns()) ? &m_aVirtSns[static_cast<std::size_t>(at)] : nullptr;
}

double CVirtSnsPOXlist::virtualValue(std::int64_t index, std::span<const double> channelValues) const
{
    const VirtSnsPOX* sensor = getVirtSns(index);
    if (sensor == nullptr || sensor->m_aWeight.empty() || sensor->m_aWeight.size() != channelValues.size())
        return noValue;
    double sum = 0;
    for (std::size_t i = 0; i < channelValues.size(); ++i)
        sum += sensor->m_aWeight[i] * channelValues[i];
    return sum;
}

const FormatVersion<CVirtSnsPOXlist09File> CVirtSnsPOXlist09File::s_versions[1] = {
    {20261121, &CVirtSnsPOXlist09File::serialize_20261121},
};

int CVirtSnsPOXlist09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "VIRTSNSPOXLISTZK", s_versions);
}

int CVirtSnsPOXlist09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nCurrentVirtSns);
    exchangeNumbers(ar, m_aChannel, "m_aChannel");
    bool fits = true;
    exchangeList(ar, m_aVirtSns, [&](VirtSnsPOX& sensor) {
        sensor.exchangeFields(ar);
        fits = fits && (sensor.m_aWeight.empty() || sensor.m_aWeight.size() == m_aChannel.size());
    });
    return fits ? 1 : 0;
}

} // namespace megset
