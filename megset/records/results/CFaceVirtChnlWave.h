#pragma once
// Waves of virtual channels: sources that are looked at like channels.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/resultArrays.h"

#include <array>
#include <memory>
#include <vector>

namespace megset {

/// One virtual channel and its samples.
class CVirtChnlWave
{
public:
    bool operator==(const CVirtChnlWave&) const = default;

    CString m_strChannelName;
    CString m_strChannelNameRaw;
    CString m_strWaveUnit;          ///< of the samples, such as "nAm"
    std::int32_t m_nMegListID = -1; ///< list ID that a channel made from this one takes; -1: none
    double m_dSns2dX = 0;           ///< its place on the 2D plane
    double m_dSns2dY = 0;
    std::int32_t m_bShow = 1;                ///< flag: drawn
    std::array<double, 3> m_dPosition = {};  ///< mm, head frame
    std::array<double, 3> m_dDirection = {}; ///< of the moment, unit vector; 0, 0, 0: unknown
    std::vector<double> m_aWave;             ///< samples
};

/// The file layer of a virtual channel.
class CVirtChnlWave9File : public CVirtChnlWave
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CVirtChnlWave9File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CVirtChnlWave9File> s_versions[1];
};

/// A virtual channel; this is the class that is made.
class CVirtChnlWavezk : public CVirtChnlWave9File
{
public:
    bool operator==(const CVirtChnlWavezk&) const = default;
};

/// The virtual channels of one analysis, all over the same samples of the trial.
class CFaceVirtChnlWave
{
public:
    /// Samples of each channel.
    std::int64_t getTotalSample() const { return m_nTotalSample; }
    int getTotalVirtChnl() const { return m_aVirtChnl.GetSize(); }
    /// Number of channels that are there and hold as many samples as the face says; 0 for a face without samples.
    int checkVirtChnl() const;
    /// A channel by number, -1 for the current one; null outside.
    CVirtChnlWavezk* getVirtChnlWavezk(int index) const;
    /// Adds a copy and gives its number; -1 for null.
    int addVirtChnlWave(const CVirtChnlWavezk* wave);

    bool operator==(const CFaceVirtChnlWave&) const = default;

    CString m_strFaceName;
    std::int64_t m_nTotalSample = 0;
    std::int64_t m_nDataBegin = 0; ///< sample of the trial that sample 0 stands for
    double m_dSampleRate = 1.0;    ///< Hz
    std::int32_t m_nCurrentChannel = 0;
    CTypedPtrArray<CVirtChnlWavezk> m_aVirtChnl;

protected:
    bool isUsable(int index) const;
};

/// What drawing asks for.
class CFaceVirtChnlWave3Draw : public CFaceVirtChnlWave
{
public:
    /// Number of channels that checkVirtChnl counts and that are shown.
    int getNumShowSns() const;

    bool operator==(const CFaceVirtChnlWave3Draw&) const = default;
};

/// The file layer of the virtual channels of an analysis.
class CFaceVirtChnlWave9File : public CFaceVirtChnlWave3Draw
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CFaceVirtChnlWave9File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFaceVirtChnlWave9File> s_versions[1];
};

/// The virtual channels of an analysis; this is the class that is made.
class CFaceVirtChnlWavezk : public CFaceVirtChnlWave9File
{
public:
    bool operator==(const CFaceVirtChnlWavezk&) const = default;
};

/// The wave faces of a trial.
class CPkgFaceVirtChnlWave
{
public:
    /// A face by number, null outside. With `bCreate` the number behind the last one makes an empty face.
    CFaceVirtChnlWavezk* getFaceVirtChnlWave(int iFace, int bCreate);
    int getTotalFvcw() const { return m_aFace.GetSize(); }
    /// Takes a face over, or adds a copy of it. 1, or 0 for null.
    int addFaceVirtChnlWave(std::unique_ptr<CFaceVirtChnlWavezk> face);
    int addFaceVirtChnlWave(const CFaceVirtChnlWavezk* face);
    /// Empties the package. Gives 1.
    int cleanFaceVirtSnsWav();

    bool operator==(const CPkgFaceVirtChnlWave&) const = default;

    CTypedPtrArray<CFaceVirtChnlWavezk> m_aFace;
};

/// The file layer of a trial's wave faces.
class CPkgFaceVirtChnlWave09File : public CPkgFaceVirtChnlWave
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CPkgFaceVirtChnlWave09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CPkgFaceVirtChnlWave09File> s_versions[1];
};

/// A trial's wave faces; this is the class that is made.
class CPkgFaceVirtChnlWavezk : public CPkgFaceVirtChnlWave09File
{
public:
    bool operator==(const CPkgFaceVirtChnlWavezk&) const = default;
};

} // namespace megset
