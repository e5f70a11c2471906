#include "megset/records/recording/CMEGRecordInfozkPro.h"

namespace megset {
namespace {

// Texts 3, 11 and 20 are not for the report.
constexpr bool isReported(int number)
{
    return number != 3 && number != 11 && number != 20;
}

} // namespace

const FormatVersion<CMEGRecordInfozkPro09File> CMEGRecordInfozkPro09File::s_versions[4] = {
    {20090803, &CMEGRecordInfozkPro09File::serialize20090803},
    {20120419, &CMEGRecordInfozkPro09File::serialize20120419},
    {20140513, &CMEGRecordInfozkPro09File::serialize20140513},
    {20160320, &CMEGRecordInfozkPro09File::serialize20160320}, // the one that is written
};

int CMEGRecordInfozkPro09File::serialize(CArchive& ar)
{
    const FormatTexts texts{"MEGRECORDINFO", "The opened file is not recording information file or corrupted!",
                            "Wrong recording file format!!?"};
    return serializeFormat(ar, *this, texts, s_versions);
}

int CMEGRecordInfozkPro09File::serialize20090803(CArchive& ar)
{
    return serialize01Basic(ar) && serialize02AcqInfo(ar) && serialize03Trigger(ar) && serialize04OnlineFilterOld(ar) &&
           serialize06Database(ar);
}

int CMEGRecordInfozkPro09File::serialize20120419(CArchive& ar)
{
    return serialize00Bk(ar) && serialize20090803(ar);
}

int CMEGRecordInfozkPro09File::serialize20140513(CArchive& ar)
{
    if (!serialize20120419(ar))
        return 0;
    exchangeTail(ar);
    return 1;
}

int CMEGRecordInfozkPro09File::serialize20160320(CArchive& ar)
{
    if (!(serialize00Bk(ar) && serialize01Basic(ar) && serialize02AcqInfo(ar) && serialize03Trigger(ar) &&
          serialize04OnlineFilterNew(ar) && serialize06Database(ar)))
        return 0;
    exchangeTail(ar);
    return 1;
}

int CMEGRecordInfozkPro09File::serialize01Basic(CArchive& ar)
{
    exchangeBasicWords(ar);
    if (!m_coefficients.serialize(ar))
        return 0;
    exchangeBasicSamples(ar);
    return 1;
}

int CMEGRecordInfozkPro09File::serialize03Trigger(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nTrigWord);
    return 1;
}

int CMEGRecordInfozkPro09File::serialize04OnlineFilterNew(CArchive& ar)
{
    return exchangeOnlineFilters(ar);
}

// The same bytes: the two names belong to different versions.
int CMEGRecordInfozkPro09File::serialize04OnlineFilterOld(CArchive& ar)
{
    return exchangeOnlineFilters(ar);
}

int CMEGRecordInfozkProzk::showRecordInfo()
{
    CString report;
    for (int number = 1; number <= databaseTexts; ++number)
        if (isReported(number))
            report += CString("\n") + m_strDbText[static_cast<std::size_t>(number - 1)];
    return m_richInfo.showRichInfo02(report, "MEG Data Information");
}

} // namespace megset
