#pragma once
// Coherence between pairs of sources.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/PairPlanes.h"

#include <array>
#include <vector>

namespace megset {

/// One source of a pair.
struct CohSource
{
    void exchangeFields(CArchive& ar);
    bool operator==(const CohSource&) const = default;

    CString m_strSourceName;
    std::array<double, 3> m_dPosition = {};  ///< mm, head frame
    std::array<double, 3> m_dDirection = {}; ///< of the moment, unit vector; 0, 0, 0: unknown
};

/// The source coherence of a trial: sources, and a plane of T x F values for each pair of them. A pair names its
/// sources by their number here.
class CSrcCohFace : public PairPlanes
{
public:
    /// The source of a pair, or with `reference` the other one; null where there is none. -1: the current pair.
    const CohSource* getPairSource(std::int64_t iPair, bool reference) const;

    bool operator==(const CSrcCohFace&) const = default;

    std::vector<CohSource> m_aSource;
};

/// The file layer of a trial's source coherence.
class CSrcCohFace9File : public CSrcCohFace
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serialize(CArchive& ar);

    bool operator==(const CSrcCohFace9File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSrcCohFace9File> s_versions[1];
};

/// A trial's source coherence; this is the class that is made.
class CSrcCohFacezk : public CSrcCohFace9File
{
public:
    bool operator==(const CSrcCohFacezk&) const = default;
};

} // namespace megset
