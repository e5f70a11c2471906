#pragma once
// Spectra without a time axis: per channel, reduced over the channels of a trial, and of a dataset.

#include "megset/platform/CString.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/resultArrays.h"

#include <array>
#include <span>
#include <vector>

namespace megset {

/// The frequency data of one channel and class. Data types: 0 real, 1 imaginary, 2 magnitude, 3 phase.
class CFreqDataChnl
{
public:
    /// Gives the array of a data type and its length: 1, or 0 with null and 0 when there is none.
    int getFreqData(int nDataType, double** ppData, std::int64_t* pPoints);
    /// Stores the values of a data type. 1, or 0 when they are none, or not as many as another data type's.
    int setFreqData(int nDataType, std::span<const double> values);
    /// Whether there are points, and an array of any data type.
    bool hasFreqData() const;
    /// Drops all arrays. Gives 1.
    int cleanAll();

    bool operator==(const CFreqDataChnl&) const = default;

    std::int64_t m_nDataBegin = 0;                  ///< first sample of the trial that was transformed
    std::int64_t m_nFreqPt = 0;                     ///< points of every array
    std::array<std::vector<double>, 4> m_aFreqData; ///< by data type, or empty

protected:
    bool isConsistent() const;
};

/// The file layer of a channel's frequency data.
class CFreqDataChnl09File : public CFreqDataChnl
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CFreqDataChnl09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFreqDataChnl09File> s_versions[1];
};

/// A channel's frequency data; this is the class that is made.
class CFreqDataChnlzk : public CFreqDataChnl09File
{
public:
    bool operator==(const CFreqDataChnlzk&) const = default;
};

/// Frequency data of one data type, reduced over the channels of a trial.
class CSumChnlFreqData
{
public:
    /// Sets up six arrays of `points` zeros and zero statistics. 1, or 0 and an empty object when `points` is below 1
    /// or memory is short.
    int checkInit(std::int64_t points);
    /// Frees the arrays and sets points and statistics to zero. Gives 1.
    int cleanAll();

    bool operator==(const CSumChnlFreqData&) const = default;

    std::int64_t m_nFreqPt = 0;
    std::vector<double> m_aSumMin; ///< per point, over the channels
    std::vector<double> m_aSumMean;
    std::vector<double> m_aSumMax;
    std::vector<double> m_aSumPositive;
    std::vector<double> m_aSumNegative;
    std::vector<double> m_aSumRms;
    std::int32_t m_bRangeValid = 0; ///< flag: the statistics below hold
    std::int32_t m_nChannels = 0;   ///< channels that took part
    double m_dMax = 0;
    double m_dMean = 0;
    double m_dMin = 0;
    double m_dPositive = 0;
    double m_dNegative = 0;
    double m_dRms = 0;

protected:
    bool isConsistent() const;
};

/// The file layer of frequency data reduced over channels.
class CSumChnlFreqData09File : public CSumChnlFreqData
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CSumChnlFreqData09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSumChnlFreqData09File> s_versions[1];
};

/// Frequency data reduced over channels; this is the class that is made.
class CSumChnlFreqDatazk : public CSumChnlFreqData09File
{
public:
    bool operator==(const CSumChnlFreqDatazk&) const = default;
};

/// The frequency data of a trial and class: the axis, the selection, and a sum object per data type.
class CFreqDataTrial
{
public:
    /// The sum object of a data type, null for another one.
    CSumChnlFreqDatazk* getSumChnlFreqData(int nDataType);
    /// Frequency of a point in Hz.
    double getFreqHz(std::int64_t iFreq) const;

    bool operator==(const CFreqDataTrial&) const = default;

    double m_dFreqBegin = 0;      ///< frequency of point 0, Hz
    double m_dFreqStep = 1.0;     ///< Hz between points
    double m_dSamplingRate = 1.0; ///< Hz, of the data transformed
    std::int64_t m_nSelectFreqBegin = 0;
    std::int64_t m_nSelectFreqEnd = 0;
    std::array<CSumChnlFreqDatazk, 4> m_aSum; ///< by data type
};

/// The file layer of a trial's frequency data.
class CFreqDataTrial09File : public CFreqDataTrial
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CFreqDataTrial09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFreqDataTrial09File> s_versions[1];
};

/// A trial's frequency data; this is the class that is made.
class CFreqDataTrialzk : public CFreqDataTrial09File
{
public:
    bool operator==(const CFreqDataTrialzk&) const = default;
};

/// What a dataset shows of its frequency data.
class CFreqDatasetFace
{
public:
    bool operator==(const CFreqDatasetFace&) const = default;

    CString m_strFaceName;
    std::int32_t m_nCurrentClass = 0;
    std::int32_t m_nCurrentDataType = 0;
    double m_dFreqLow = 0; ///< band that is shown, Hz; both 0: all
    double m_dFreqHigh = 0;
    double m_dShowMin = 0; ///< range of values that is drawn; both 0: the range of the data
    double m_dShowMax = 0;
};

/// The file layer of what a dataset shows of its frequency data.
class CFreqDatasetFace09File : public CFreqDatasetFace
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CFreqDatasetFace09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFreqDatasetFace09File> s_versions[1];
};

/// What a dataset shows of its frequency data; this is the class that is made.
class CFreqDatasetFacezk : public CFreqDatasetFace09File
{
public:
    bool operator==(const CFreqDatasetFacezk&) const = default;
};

} // namespace megset
