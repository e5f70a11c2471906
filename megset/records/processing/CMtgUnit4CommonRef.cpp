#include "megset/records/processing/CMtgUnit4CommonRef.h"

#include "megset/records/ownedList.h"
#include "megset/records/recordFormat.h"

namespace megset {
namespace {

template <class Entry>
int exchangeEntries(CArchive& ar, CTypedPtrArray<Entry>& entries)
{
    return exchangeOwnedList(ar, entries, [&ar](Entry& entry) { return entry.serialize(ar); });
}

} // namespace

const FormatVersion<CMtgChnlIdName09File> CMtgChnlIdName09File::s_versions[] = {
    {20261121, &CMtgChnlIdName09File::serialize_20261121},
};

int CMtgChnlIdName09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "MTGCHNLIDNAMEZK", s_versions);
}

int CMtgChnlIdName09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nMtgChnlID, m_strMtgChnlName, m_nMtgChnlWord);
    return 1;
}

const FormatVersion<CMtgChnlOperator09File> CMtgChnlOperator09File::s_versions[] = {
    {20261121, &CMtgChnlOperator09File::serialize_20261121},
};

int CMtgChnlOperator09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "MTGCHNLOPERATORZK", s_versions);
}

int CMtgChnlOperator09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strMtgChnlName, m_nMtgChnlID, m_dMtgWeight);
    return 1;
}

const FormatVersion<CMtgUnit4CommonRef09File> CMtgUnit4CommonRef09File::s_versions[] = {
    {20261121, &CMtgUnit4CommonRef09File::serialize_20261121},
};

int CMtgUnit4CommonRef09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "MTGUNITCOMMONREFZK", s_versions);
}

int CMtgUnit4CommonRef09File::serialize_20261121(CArchive& ar)
{
    if (!exchangeEntries(ar, m_aMtgChannels))
        return 0;
    EXCHANGE_FIELDS(ar, m_strMtgName);
    if (!exchangeEntries(ar, m_aMtgOperators))
        return 0;
    EXCHANGE_FIELDS(ar, m_dMtgDivisor, m_bMtgBackupToo);
    return 1;
}

const FormatVersion<CMtgUnit4IndividualRef09File> CMtgUnit4IndividualRef09File::s_versions[] = {
    {20261121, &CMtgUnit4IndividualRef09File::serialize_20261121},
};

int CMtgUnit4IndividualRef09File::serialize(CArchive& ar)
{
    return serializeRecord(ar, *this, "MTGUNITINDIVIDUALREFZK", s_versions);
}

int CMtgUnit4IndividualRef09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nMtgTargetID, m_strMtgTargetName);
    if (!exchangeEntries(ar, m_aMtgRefOperators))
        return 0;
    EXCHANGE_FIELDS(ar, m_dMtgRefDivisor);
    return 1;
}

} // namespace megset
