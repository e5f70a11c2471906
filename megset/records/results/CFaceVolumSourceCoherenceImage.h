#pragma once
// Volumetric images of source coherence of a trial.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/SourceGrid.h"
#include "megset/records/results/SourceImageFace.h"
#include "megset/records/results/resultArrays.h"

#include <array>
#include <vector>

namespace megset {

/// Coherence of every point of a grid with a reference, per frequency.
class CVolumSourcCoherencImag
{
public:
    std::int64_t getTotalFreq() const { return static_cast<std::int64_t>(m_aFreq.size()); }
    /// Takes grid and frequencies (Hz) over and makes values of zero: 1, or 0 and an empty image.
    int setSize(const SourceGrid& grid, const std::vector<double>& frequencies);
    /// Coherence of a point at a frequency, 0 to 1; noValue outside.
    double getValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFreq) const;
    /// 1, or 0 outside.
    int setValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFreq, double value);

    bool operator==(const CVolumSourcCoherencImag&) const = default;

    CString m_strImageName;
    CString m_strReferenceName;                 ///< channel or source that the points are coherent with
    std::array<double, 3> m_dReferencePos = {}; ///< position of that source, mm
    SourceGrid m_grid;
    std::int64_t m_nDataBegin = 0; ///< first and last sample of the trial that was analysed
    std::int64_t m_nDataEnd = 0;
    std::vector<double> m_aFreq;  ///< Hz
    std::vector<double> m_aValue; ///< [frequency][point]

private:
    std::int64_t indexOf(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFreq) const;
};

/// The file layer of a source-coherence image.
class CVolumSourcCoherencImag09File : public CVolumSourcCoherencImag
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CVolumSourcCoherencImag09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CVolumSourcCoherencImag09File> s_versions[1];
};

/// A source-coherence image; this is the class that is made.
class CVolumSourcCoherencImagzk : public CVolumSourcCoherencImag09File
{
public:
    bool operator==(const CVolumSourcCoherencImagzk&) const = default;
};

/// The coherence images of a trial.
class CFaceVolumSourceCoherenceImage : public SourceImageFace<CVolumSourcCoherencImagzk>
{
public:
    bool operator==(const CFaceVolumSourceCoherenceImage&) const = default;
};

/// The file layer of a trial's source-coherence images.
class CFaceVolumSourceCoherenceImage09File : public CFaceVolumSourceCoherenceImage
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializeFaceVlmSrcNtwk(CArchive& ar);

    bool operator==(const CFaceVolumSourceCoherenceImage09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFaceVolumSourceCoherenceImage09File> s_versions[1];
};

/// A trial's source-coherence images; this is the class that is made.
class CFaceVolumSourceCoherenceImagezk : public CFaceVolumSourceCoherenceImage09File
{
public:
    bool operator==(const CFaceVolumSourceCoherenceImagezk&) const = default;
};

} // namespace megset
