#pragma once
// Spectra of virtual channels.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/SpctmAxes.h"
#include "megset/records/results/resultArrays.h"

#include <array>
#include <vector>

namespace megset {

/// The planes of one virtual channel. T and F are those of its face.
class CVirtChnlSpctm
{
public:
    /// Value of a data type (0 real, 1 imaginary, 2 magnitude, 3 phase) in a plane of `freqPt` columns; noValue outside
    /// or without that plane.
    double getValue(int nDataType, std::int64_t iTime, std::int64_t iFreq, std::int64_t freqPt) const;

    bool operator==(const CVirtChnlSpctm&) const = default;

    CString m_strChannelName;
    std::int32_t m_bShow = 1;                    ///< flag: drawn
    std::array<double, 3> m_dPosition = {};      ///< mm, head frame
    std::array<double, 3> m_dDirection = {};     ///< of the moment, unit vector; 0, 0, 0: unknown
    std::array<std::vector<double>, 4> m_aPlane; ///< by data type, [time][frequency], or empty
};

/// The file layer of the spectrum of a virtual channel.
class CVirtChnlSpctm9File : public CVirtChnlSpctm
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CVirtChnlSpctm9File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CVirtChnlSpctm9File> s_versions[1];
};

/// The spectrum of a virtual channel; this is the class that is made.
class CVirtChnlSpctmzk : public CVirtChnlSpctm9File
{
public:
    bool operator==(const CVirtChnlSpctmzk&) const = default;
};

/// The spectra of a trial's virtual channels, on one pair of axes. getSpctmTimePt(i) gives the sample number of time
/// point i.
class CFaceVirtChnlSpctm : public SpctmAxes
{
public:
    int getTotalVirtChnl() const { return m_aVirtSpctm.GetSize(); }
    /// The spectrum of a channel, -1 for the current one; null outside.
    CVirtChnlSpctmzk* getVirtChnlSpctm(std::int64_t index) const;
    /// Adds a copy and gives its number; -1 for null and for planes that don't fit T and F.
    int addVirtChnlSpctm(const CVirtChnlSpctmzk* spctm);

    bool operator==(const CFaceVirtChnlSpctm&) const = default;

    std::int64_t m_nCurrentChannel = 0;
    CTypedPtrArray<CVirtChnlSpctmzk> m_aVirtSpctm;

protected:
    bool fits(const CVirtChnlSpctm& spctm) const;
};

/// The file layer of the spectra of a trial's virtual channels.
class CFaceVirtChnlSpctm9File : public CFaceVirtChnlSpctm
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializeSpctmC(CArchive& ar);

    bool operator==(const CFaceVirtChnlSpctm9File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFaceVirtChnlSpctm9File> s_versions[1];
};

/// The spectra of a trial's virtual channels; this is the class that is made.
class CFaceVirtChnlSpctmzk : public CFaceVirtChnlSpctm9File
{
public:
    bool operator==(const CFaceVirtChnlSpctmzk&) const = default;
};

} // namespace megset
