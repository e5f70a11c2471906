#include "megset/records/electric/CStimTrig.h"

#include "megset/platform/archiveLists.h"
#include "megset/records/recordFormat.h"

namespace megset {

const FormatVersion<CStimTrig09File> CStimTrig09File::s_versions[] = {
    {20261121, &CStimTrig09File::serialize_20261121},
};

int CStimTrig09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "STIMTRIGZK", s_versions);
}

int CStimTrig09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nGeomValue, m_strTrigName, m_strTrigTypeName, m_nTrigID, m_nChannelType, m_nTrigMode);
    exchangeList(ar, m_aTrigBegin);
    EXCHANGE_FIELDS(ar, m_nTrigCurrent, m_strTrigCode, m_nTrigValue, m_nTrigMask, m_nTrigMinSamples, m_strTrigNote);
    exchangeList(ar, m_aTrigLevel);
    return 1;
}

} // namespace megset
