#pragma once
// Channel-by-channel spectral data of a trial, per spectral class.

#include "megset/platform/formatVersion.h"
#include "megset/records/results/SpctmAxes.h"
#include "megset/records/results/resultArrays.h"

#include <array>
#include <optional>
#include <vector>

namespace megset {

/// Cross-spectrum of one class: for every two of N channels a plane of T x F values per data type.
class CMEGSpctmCCTrlData : public SpctmAxes
{
public:
    std::int64_t getTotalChannel() const { return static_cast<std::int64_t>(m_aChannel.size()); }
    /// Takes channels (indices of the trial's channels) and size over; all planes are dropped. 1, or 0 and an empty
    /// object.
    int setSize(const std::vector<std::int32_t>& channels, std::int64_t timePt, std::int64_t freqPt);
    /// Makes the planes of a data type (0 real, 1 imaginary, 2 magnitude, 3 phase), all zero: 1 or 0.
    int initPlanes(int nDataType);
    /// Value of channel a with channel b, numbers in `m_aChannel`; noValue outside or without planes of the type.
    double getValue(int nDataType, std::int64_t a, std::int64_t b, std::int64_t iTime, std::int64_t iFreq) const;
    /// 1, or 0 outside.
    int setValue(int nDataType, std::int64_t a, std::int64_t b, std::int64_t iTime, std::int64_t iFreq, double value);

    bool operator==(const CMEGSpctmCCTrlData&) const = default;

    std::vector<std::int32_t> m_aChannel;        ///< channel indices of the trial
    std::array<std::vector<double>, 4> m_aPlane; ///< by data type, [a][b][time][frequency], or empty

protected:
    bool isConsistent() const;

private:
    std::int64_t indexOf(std::int64_t a, std::int64_t b, std::int64_t iTime, std::int64_t iFreq) const;
};

/// The file layer of the cross-spectra of one class.
class CMEGSpctmCCTrlData09File : public CMEGSpctmCCTrlData
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CMEGSpctmCCTrlData09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMEGSpctmCCTrlData09File> s_versions[1];
};

/// The cross-spectra of one class; this is the class that is made.
class CMEGSpctmCCTrlDatazk : public CMEGSpctmCCTrlData09File
{
public:
    bool operator==(const CMEGSpctmCCTrlDatazk&) const = default;
};

/// The cross-spectra of a trial: one slot per class, 0 active, 1 control, 2 result.
class CMEGSpctmCCDataFace
{
public:
    /// The data of a class, null where there is none; with `bCreate` an empty one is made. Null for another class.
    CMEGSpctmCCTrlDatazk* getCCSpctmTrlData4Class(int nClass, bool bCreate = false);
    const CMEGSpctmCCTrlDatazk* getCCSpctmTrlData4Class(int nClass) const;
    /// Empties all slots. Gives 1.
    int cleanAll();

    bool operator==(const CMEGSpctmCCDataFace&) const = default;

    std::array<std::optional<CMEGSpctmCCTrlDatazk>, 3> m_aTrlData; ///< by class
};

/// Time points of a trial's cross-spectra as samples of the trial.
class CMEGSpctmCCDataFace04Prcs : public CMEGSpctmCCDataFace
{
public:
    /// Sample number in the trial of a time point, which is limited to 0 .. T - 1; -1 without the class. All data types
    /// of a class have one axis.
    std::int64_t getSpctmTimePt(std::int64_t iTime, int nClass, int nDataType) const;

    bool operator==(const CMEGSpctmCCDataFace04Prcs&) const = default;
};

/// The file layer of a trial's cross-spectra.
class CMEGSpctmCCDataFace09File : public CMEGSpctmCCDataFace04Prcs
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializeSpctmFace(CArchive& ar);

    bool operator==(const CMEGSpctmCCDataFace09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMEGSpctmCCDataFace09File> s_versions[1];
};

/// A trial's cross-spectra; this is the class that is made.
class CMEGSpctmCCDataFacezk : public CMEGSpctmCCDataFace09File
{
public:
    bool operator==(const CMEGSpctmCCDataFacezk&) const = default;
};

} // namespace megset
