#pragma once
// Volumetric source images of a trial.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/SourceGrid.h"
#include "megset/records/results/SourceImageFace.h"
#include "megset/records/results/resultArrays.h"

#include <vector>

namespace megset {

/// Source strength over a grid of points, in one frame or a series of frames.
class CVolumSourcImag
{
public:
    /// Takes the grid over and makes `frames` frames of zeros: 1, or 0 and an empty image.
    int setSize(const SourceGrid& grid, std::int64_t frames);
    /// Value of a point in a frame; noValue outside.
    double getValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFrame) const;
    /// 1, or 0 outside.
    int setValue(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFrame, double value);
    /// The value of largest magnitude in a frame and its position in mm; the first of equal ones, values that are no
    /// numbers apart. 1, or 0 when there is none.
    int getPeak(std::int64_t iFrame, double& x, double& y, double& z, double& value) const;

    bool operator==(const CVolumSourcImag&) const = default;

    CString m_strImageName;
    CString m_strValueUnit; ///< of the values, such as "pseudo-Z" or "nAm"
    SourceGrid m_grid;
    std::int64_t m_nFrame = 0;     ///< frames
    std::int64_t m_nDataBegin = 0; ///< first and last sample of the trial that frame 0 was computed from
    std::int64_t m_nDataEnd = 0;
    std::int64_t m_nFrameStep = 1; ///< samples from one frame to the next
    double m_dFreqLow = 0;         ///< band of the data, Hz; 0 and 0: all
    double m_dFreqHigh = 0;
    std::vector<double> m_aValue; ///< [frame][point]

private:
    std::int64_t indexOf(std::int64_t ix, std::int64_t iy, std::int64_t iz, std::int64_t iFrame) const;
};

/// The file layer of a source image.
class CVolumSourcImag09File : public CVolumSourcImag
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CVolumSourcImag09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CVolumSourcImag09File> s_versions[1];
};

/// A source image; this is the class that is made.
class CVolumSourcImagzk : public CVolumSourcImag09File
{
public:
    bool operator==(const CVolumSourcImagzk&) const = default;
};

/// The source images of a trial.
class CFaceVolumSourceImage : public SourceImageFace<CVolumSourcImagzk>
{
public:
    bool operator==(const CFaceVolumSourceImage&) const = default;
};

/// The file layer of a trial's source images.
class CFaceVolumSourceImage09File : public CFaceVolumSourceImage
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializeSAMFace(CArchive& ar);

    bool operator==(const CFaceVolumSourceImage09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFaceVolumSourceImage09File> s_versions[1];
};

/// A trial's source images; this is the class that is made.
class CFaceVolumSourceImagezk : public CFaceVolumSourceImage09File
{
public:
    bool operator==(const CFaceVolumSourceImagezk&) const = default;
};

} // namespace megset
