#pragma once
// Coherence between sensors in time, per analysis.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/PairPlanes.h"

namespace megset {

/// Coherence of pairs of channels, a plane of T x F values each. A pair names the trial's channels by index.
class CSnsCohData : public PairPlanes
{
public:
    bool operator==(const CSnsCohData&) const = default;

    CString m_strDataName;
};

/// The file layer of an analysis of sensor coherence.
class CSnsCohData09File : public CSnsCohData
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CSnsCohData09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSnsCohData09File> s_versions[1];
};

/// An analysis of sensor coherence; this is the class that is made.
class CSnsCohDatazk : public CSnsCohData09File
{
public:
    bool operator==(const CSnsCohDatazk&) const = default;
};

/// The sensor coherence of a trial, one entry per analysis.
class CSnsCohFace
{
public:
    /// The data of an analysis, -1 for the current one; null outside.
    CSnsCohDatazk* getCoherenceData(int iData) const;
    int getTotalCoherenceData() const { return m_aCohData.GetSize(); }
    /// Adds a copy and gives its number; -1 for null.
    int addCoherenceData(const CSnsCohDatazk* data);

    bool operator==(const CSnsCohFace&) const = default;

    std::int32_t m_nCurrentData = 0;
    CTypedPtrArray<CSnsCohDatazk> m_aCohData;
};

/// The file layer of a trial's sensor coherence.
class CSnsCohFace09File : public CSnsCohFace
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serialize(CArchive& ar);

    bool operator==(const CSnsCohFace09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSnsCohFace09File> s_versions[1];
};

/// A trial's sensor coherence; this is the class that is made.
class CSnsCohFacezk : public CSnsCohFace09File
{
public:
    bool operator==(const CSnsCohFacezk&) const = default;
};

} // namespace megset
