#pragma once
// What is known of a recording session as a whole: sample geometry, acquisition settings, online filters, texts about
// the subject and the site.

#include "megset/platform/CArchive.h"
#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace megset {

/// One filter that the acquisition system applied while recording.
struct COnlineFilter
{
    std::int32_t m_nFilterKind = 0;
    double m_dFilterFreq = 0; ///< Hz
    std::int32_t m_nFilterClass = 0;
    /// Number of parameters; may stand without them. Follows the size of `m_filterParam` when that exists.
    std::int32_t m_nFilterParamCount = 0;
    std::optional<std::vector<double>> m_filterParam; ///< parameters in the filter's own units

    /// 0 when the parameters that a file announces can't be held.
    int exchangeFields(CArchive& ar);
    bool operator==(const COnlineFilter&) const = default;
};

/// The recording information. Fields named by a section and a letter are carried for the application.
class CMEGRecordInfo
{
public:
    /// Texts about subject and site, numbered from 1; `m_strDbText[n - 1]` is text n.
    static constexpr int databaseTexts = 41;

    /// Empties the list of online filters. Gives 1.
    int clearFilterInfo();

    bool operator==(const CMEGRecordInfo&) const = default;

    /// Samples as they are now, after re-sampling.
    std::int64_t m_nRecTotalSample = 0; ///< samples per trial
    std::int64_t m_nRecPreTrigPts = 0;  ///< samples before the trigger
    double m_dRecSampleRate = 1.0;      ///< Hz; until it is known, times in seconds are sample numbers
    /// Samples as recorded.
    std::int64_t m_nRawTotalSample = 0;
    std::int64_t m_nRawPreTrigPts = 0;
    double m_dRawSampleRate = 1.0;       ///< Hz
    std::int32_t m_bResampleAverage = 0; ///< flag: the last re-sampling averaged
    std::int64_t m_nResampleFactor = 1;  ///< 1: not re-sampled

    std::int32_t m_nBasicWordA = 0;
    std::int32_t m_nBasicWordB = 0;
    std::int32_t m_nBasicWordC = 0;
    std::int32_t m_nBasicWordD = 0;
    std::int32_t m_nAverageCount = 0; ///< averages in the recording; 0 when it is not averaged
    std::int32_t m_nBasicWordE = 0;
    std::int32_t m_nBasicWordF = 0;
    double m_dBasicValue = 0;

    std::int32_t m_nAcqWordA = 0;
    std::int32_t m_nAcqWordB = 0;
    std::int32_t m_nAcqWordC = 0;
    std::int32_t m_nAcqWordD = 0;
    CString m_strAcqTextA;
    CString m_strAcqTextB;
    std::array<CString, 10> m_aAcqText;
    std::int32_t m_nAcqWordE = 0;
    CString m_strAcqTextC;
    std::int32_t m_nAcqWordF = 0;

    std::array<std::int32_t, 12> m_nTrigWord = {};

    double m_dFilterWordA = 0;
    std::array<double, 4> m_aFilterValue = {};
    CTypedPtrArray<COnlineFilter> m_aOnlineFilter;

    std::array<CString, databaseTexts> m_strDbText;
    std::int32_t m_nDbWordA = 0;
    std::int32_t m_nDbWordB = 0;
    std::int32_t m_nDbWordC = 0;
    std::int32_t m_nDbWordD = 0;
    std::int32_t m_nDbWordE = 0;
    std::int32_t m_nDbWordF = 0;
    std::int32_t m_nDbWordG = 0;
    double m_dDbValueA = 0;
    double m_dDbValueB = 0;
    std::int32_t m_nDbWordH = 0;
    std::int32_t m_nDbWordI = 0;
    double m_dDbValueC = 0;
    double m_dDbValueD = 0;
    std::int16_t m_nDbShort = 0;

    std::int32_t m_nTailWordRec1 = 0;
    std::int32_t m_nTailWordRec2 = 0;
    std::array<double, 4> m_dTailValueRec = {};
};

/// The base information as a record of its own, "MEGRECORDINFOBASEZK": what an acquisition file holds. It has no
/// trigger words and no coefficients; loading leaves those as they were.
class CMEGRecordInfo09File : public CMEGRecordInfo
{
public:
    /// 1, or 0 when tag or version are others, or a filter can't be held ("Is memory enough?!").
    int serialize(CArchive& ar);

    bool operator==(const CMEGRecordInfo09File&) const = default;

protected:
    // Sections that both records of the recording information consist of.
    int serialize00Bk(CArchive& ar);
    void exchangeBasicWords(CArchive& ar);
    void exchangeBasicSamples(CArchive& ar);
    int serialize02AcqInfo(CArchive& ar);
    int exchangeOnlineFilters(CArchive& ar);
    int serialize06Database(CArchive& ar);
    void exchangeTail(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);
    void exchangeDbTexts(CArchive& ar, int first, int last);

    static const FormatVersion<CMEGRecordInfo09File> s_versions[1];
};

/// The base information; this is the class that is made where no coefficients are wanted.
class CMEGRecordInfozk : public CMEGRecordInfo09File
{
public:
    bool operator==(const CMEGRecordInfozk&) const = default;
};

} // namespace megset
