#include "megset/records/electric/CMisceSnsr.h"

#include "megset/records/recordFormat.h"

namespace megset {

const FormatVersion<CMisceSnsr09File> CMisceSnsr09File::s_versions[] = {
    {20261121, &CMisceSnsr09File::serialize_20261121},
};

int CMisceSnsr09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "MISCESNSRZK", s_versions);
}

int CMisceSnsr09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nGeomValue, m_strSnsName, m_strSnsTypeName);
    return 1;
}

const FormatVersion<CSensorAccelerator09File> CSensorAccelerator09File::s_versions[] = {
    {20261121, &CSensorAccelerator09File::serialize_20261121},
};

int CSensorAccelerator09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "SENSORACCELERATORZK", s_versions);
}

int CSensorAccelerator09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nGeomValue, m_nAccelID, m_nAccelAxis, m_strAccelName, m_strAccelTypeName);
    return 1;
}

const FormatVersion<CSensorAnalog09File> CSensorAnalog09File::s_versions[] = {
    {20261121, &CSensorAnalog09File::serialize_20261121},
};

int CSensorAnalog09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "SENSORANALOGZK", s_versions);
}

int CSensorAnalog09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nGeomValue, m_dAnalogScale, m_strAnalogName, m_strAnalogUnit);
    return 1;
}

} // namespace megset
