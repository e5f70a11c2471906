#pragma once
// Results of wave analyses: the data per channel, a summary per trial, the analyses of the dataset.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"
#include "megset/records/results/resultArrays.h"

#include <vector>

namespace megset {

/// The result of one wave analysis of one channel: a series of values over samples of the trial. A kind is a number
/// that the application gives to an analysis; the dataset's CFaceWaveAnalyzedResultzk says what it means.
class CWadX
{
public:
    std::int64_t getTotalSample() const { return static_cast<std::int64_t>(m_aValue.size()); }

    bool operator==(const CWadX&) const = default;

    std::int32_t m_nKind = 0;
    CString m_strName;
    std::int64_t m_nDataBegin = 0; ///< sample of the trial that value 0 stands for
    std::int64_t m_nStep = 1;      ///< samples between two values
    std::vector<double> m_aValue;  ///< in the unit of the analysis
};

/// The file layer of the result of one wave analysis of a channel.
class CWadX09File : public CWadX
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CWadX09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CWadX09File> s_versions[1];
};

/// The result of one wave analysis of a channel; this is the class that is made.
class CWadXzk : public CWadX09File
{
public:
    bool operator==(const CWadXzk&) const = default;
};

/// The wave results of one channel for one spectral class.
class CChnlWaveAnalyzedResult
{
public:
    /// The index-th result of a kind, in the order of adding; null when there are fewer.
    CWadXzk* getWadX(int nKind, int index) const;
    /// The largest number of values among the results of a kind; 0 when there is none.
    std::int64_t getMaxSample(int nKind) const;
    /// Adds a copy: 1, or 0 for null.
    int addWadX(const CWadXzk* wad);
    /// Drops all results. Gives 1.
    int cleanAll();

    bool operator==(const CChnlWaveAnalyzedResult&) const = default;

    CTypedPtrArray<CWadXzk> m_aWad;
};

/// The file layer of a channel's wave results.
class CChnlWaveAnalyzedResult09File : public CChnlWaveAnalyzedResult
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serialize(CArchive& ar);

    bool operator==(const CChnlWaveAnalyzedResult09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CChnlWaveAnalyzedResult09File> s_versions[1];
};

/// A channel's wave results; this is the class that is made.
class CChnlWaveAnalyzedResultzk : public CChnlWaveAnalyzedResult09File
{
public:
    bool operator==(const CChnlWaveAnalyzedResultzk&) const = default;
};

/// What a trial's channels gave for one kind of analysis.
struct WaveResultSummary
{
    void exchangeFields(CArchive& ar);
    bool operator==(const WaveResultSummary&) const = default;

    std::int32_t m_nKind = 0;
    std::int32_t m_nClass = 0;     ///< 0 active, 1 control, 2 result
    std::int32_t m_nChannels = 0;  ///< channels with such a result
    std::int64_t m_nMaxSample = 0; ///< largest number of values
    double m_dMin = 0;             ///< over all values of all channels
    double m_dMean = 0;
    double m_dMax = 0;
    double m_dRms = 0;
};

/// The wave results of a trial: what was analysed, and a summary per kind and class.
class CTrlWaveAnalyzedResult
{
public:
    /// The summary of a kind and class, null when there is none.
    const WaveResultSummary* getSummary(int nKind, int nClass) const;
    /// Stores a summary in place of the one of the same kind and class. Gives 1.
    int setSummary(const WaveResultSummary& summary);

    bool operator==(const CTrlWaveAnalyzedResult&) const = default;

    std::int32_t m_nCurrentKind = 0;
    std::int32_t m_nCurrentClass = 0;
    std::int64_t m_nSelectBegin = 0; ///< first and last sample of the trial that was analysed
    std::int64_t m_nSelectEnd = 0;
    std::int64_t m_nBaselineBegin = 0; ///< first and last sample of its baseline; end before begin: none
    std::int64_t m_nBaselineEnd = -1;
    std::vector<WaveResultSummary> m_aSummary;
};

/// The file layer of a trial's wave results.
class CTrlWaveAnalyzedResult09File : public CTrlWaveAnalyzedResult
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serialize(CArchive& ar);

    bool operator==(const CTrlWaveAnalyzedResult09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CTrlWaveAnalyzedResult09File> s_versions[1];
};

/// A trial's wave results; this is the class that is made.
class CTrlWaveAnalyzedResultzk : public CTrlWaveAnalyzedResult09File
{
public:
    bool operator==(const CTrlWaveAnalyzedResultzk&) const = default;
};

/// A kind of wave analysis and its settings.
struct WaveAnalysis
{
    void exchangeFields(CArchive& ar);
    bool operator==(const WaveAnalysis&) const = default;

    std::int32_t m_nKind = 0;
    CString m_strName;
    CString m_strUnit;
    double m_dFreqLow = 0; ///< band, Hz; 0 and 0: all
    double m_dFreqHigh = 0;
    double m_dWindowMs = 0; ///< length of the sliding window, ms; 0: none
    double m_dStepMs = 0;   ///< from one window to the next, ms
};

/// The wave analyses of a dataset, and which of them is shown.
class CFaceWaveAnalyzedResult
{
public:
    /// The analysis of a kind, null when there is none.
    const WaveAnalysis* getAnalysis(int nKind) const;
    /// Stores an analysis in place of the one of the same kind. Gives 1.
    int setAnalysis(const WaveAnalysis& analysis);

    bool operator==(const CFaceWaveAnalyzedResult&) const = default;

    std::int32_t m_nCurrentKind = 0;
    std::int32_t m_nCurrentClass = 0;
    std::int32_t m_bShow = 0; ///< flag: results are drawn
    double m_dShowMin = 0;    ///< range of values that is drawn; both 0: the range of the data
    double m_dShowMax = 0;
    std::vector<WaveAnalysis> m_aAnalysis;
};

/// The file layer of a dataset's wave analyses.
class CFaceWaveAnalyzedResult09File : public CFaceWaveAnalyzedResult
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serialize(CArchive& ar);

    bool operator==(const CFaceWaveAnalyzedResult09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CFaceWaveAnalyzedResult09File> s_versions[1];
};

/// A dataset's wave analyses; this is the class that is made.
class CFaceWaveAnalyzedResultzk : public CFaceWaveAnalyzedResult09File
{
public:
    bool operator==(const CFaceWaveAnalyzedResultzk&) const = default;
};

} // namespace megset
