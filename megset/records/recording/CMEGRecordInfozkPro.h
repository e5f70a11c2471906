#pragma once
// The recording information of a dataset: the base information with the sensor coefficients, its file format and its
// report.

#include "megset/platform/CRichInfozk.h"
#include "megset/records/recording/CCoefficientManager.h"
#include "megset/records/recording/CMEGRecordInfo.h"

namespace megset {

/// The base information with the sensor coefficients.
class CMEGRecordInfozkPro : public CMEGRecordInfozk
{
public:
    CCoefficientManagerzk* getSensorCoefficientzk() { return &m_coefficients; }
    const CCoefficientManagerzk* getSensorCoefficientzk() const { return &m_coefficients; }

    bool operator==(const CMEGRecordInfozkPro&) const = default;

    CCoefficientManagerzk m_coefficients;
};

/// The record "MEGRECORDINFO", which stands in a dataset file. The base information alone is
/// CMEGRecordInfo09File::serialize.
class CMEGRecordInfozkPro09File : public CMEGRecordInfozkPro
{
public:
    /// 1, or 0 for another tag ("The opened file is not recording information file or corrupted!"), for an unknown
    /// version ("Wrong recording file format!!?"), or when a filter can't be held ("Is memory enough?!"). A version
    /// that lacks a section leaves its fields as they were.
    int serialize(CArchive& ar);

    bool operator==(const CMEGRecordInfozkPro09File&) const = default;

private:
    int serialize20090803(CArchive& ar);
    int serialize20120419(CArchive& ar);
    int serialize20140513(CArchive& ar);
    int serialize20160320(CArchive& ar);

    int serialize01Basic(CArchive& ar);
    int serialize03Trigger(CArchive& ar);
    int serialize04OnlineFilterNew(CArchive& ar);
    int serialize04OnlineFilterOld(CArchive& ar);

    static const FormatVersion<CMEGRecordInfozkPro09File> s_versions[4];
};

/// The recording information as it is made. Copying copies all fields by their own rules, which for the coefficients is
/// the rule of CCoefficientManagerzk; the target's online filters are cleared first.
class CMEGRecordInfozkProzk : public CMEGRecordInfozkPro09File
{
public:
    /// Shows the database texts, each behind a line break, under "MEG Data Information". Gives what the window gives.
    int showRecordInfo();

    bool operator==(const CMEGRecordInfozkProzk&) const = default;

    CRichInfozk m_richInfo;
};

} // namespace megset
