#pragma once
// Montages: channel references, the common-reference unit and the individual-reference unit.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"

#include <cstdint>

namespace megset {

/// A channel, by index and name.
class CMtgChnlIdName
{
public:
    bool operator==(const CMtgChnlIdName&) const = default;

    int m_nMtgChnlID = -1; // index in the trial's channel array; below 0 unresolved
    CString m_strMtgChnlName;
    std::int64_t m_nMtgChnlWord = 0; // carried for the application
};

/// The file layer of a channel of a montage.
class CMtgChnlIdName09File : public CMtgChnlIdName
{
public:
    /// Reads or writes the record "MTGCHNLIDNAMEZK". 1, or 0 with the messages of serializeRecord.
    int serialize(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMtgChnlIdName09File> s_versions[];
};

/// A channel of a montage; this is the class that is made.
class CMtgChnlIdNamezk : public CMtgChnlIdName09File
{
};

/// A reference channel with its weight.
class CMtgChnlOperator
{
public:
    bool operator==(const CMtgChnlOperator&) const = default;

    CString m_strMtgChnlName;
    int m_nMtgChnlID = -1; // index in the trial's channel array; out of range unresolved
    double m_dMtgWeight = 1.0;
};

/// The file layer of a weighted reference channel.
class CMtgChnlOperator09File : public CMtgChnlOperator
{
public:
    /// Reads or writes the record "MTGCHNLOPERATORZK". 1, or 0 with the messages of serializeRecord.
    int serialize(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMtgChnlOperator09File> s_versions[];
};

/// A weighted reference channel; this is the class that is made.
class CMtgChnlOperatorzk : public CMtgChnlOperator09File
{
};

/// A common-reference montage: the channels that lose the weighted sum of the operators over the divisor.
class CMtgUnit4CommonRef
{
public:
    bool operator==(const CMtgUnit4CommonRef&) const = default;

    CTypedPtrArray<CMtgChnlIdNamezk> m_aMtgChannels;
    CString m_strMtgName;
    CTypedPtrArray<CMtgChnlOperatorzk> m_aMtgOperators;
    double m_dMtgDivisor = 0.0; // divides when above 0
    int m_bMtgBackupToo = 0;    // the reversal treats the backup samples, too
};

/// The file layer of a common-reference montage.
class CMtgUnit4CommonRef09File : public CMtgUnit4CommonRef
{
public:
    /// Reads or writes the record "MTGUNITCOMMONREFZK". 1, or 0 with the messages of serializeRecord.
    int serialize(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMtgUnit4CommonRef09File> s_versions[];
};

/// A common-reference montage; this is the class that is made.
class CMtgUnit4CommonRefzk : public CMtgUnit4CommonRef09File
{
};

/// One target of an individual-reference montage, and its references.
class CMtgUnit4IndividualRef
{
public:
    bool operator==(const CMtgUnit4IndividualRef&) const = default;

    int m_nMtgTargetID = -1; // index of the target channel; out of range unresolved
    CString m_strMtgTargetName;
    CTypedPtrArray<CMtgChnlOperatorzk> m_aMtgRefOperators;
    double m_dMtgRefDivisor = 0.0; // divides when above 0
};

/// The file layer of a target with its references.
class CMtgUnit4IndividualRef09File : public CMtgUnit4IndividualRef
{
public:
    /// Reads or writes the record "MTGUNITINDIVIDUALREFZK". 1, or 0 with the messages of serializeRecord.
    int serialize(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMtgUnit4IndividualRef09File> s_versions[];
};

/// A target with its references; this is the class that is made.
class CMtgUnit4IndividualRefzk : public CMtgUnit4IndividualRef09File
{
};

} // namespace megset
