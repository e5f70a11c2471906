#include "megset/records/head/CSphere.h"

#include "megset/platform/CArchive.h"
#include "megset/records/recordFormat.h"

namespace megset {

const FormatVersion<CSphere09File> CSphere09File::s_versions[] = {
    {20261121, &CSphere09File::serialize_20261121},
};

int CSphere09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "SPHEREZK", s_versions);
}

int CSphere09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_dSphereX, m_dSphereY, m_dSphereZ, m_dSphereRadius, m_nSphereID, m_nSphereShow,
                    m_strSphereName);
    return 1;
}

} // namespace megset
