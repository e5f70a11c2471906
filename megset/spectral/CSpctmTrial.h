#pragma once
// The bottom of the chain of a trial's spectrum: what all channels of a trial share for one spectral class. Shape of
// the planes, axes, selection, and one sum channel for each data type. The layers above add operations and no fields;
// the chain has no virtual operation.

#include "megset/platform/CString.h"
#include "megset/spectral/CSumChnlSpctmDatazk.h"

#include <cstdint>

namespace megset {

class CSpctmTrialzk;

/// Time point i stands for sample i * m_nTimeStep + m_nEdgePt + m_nDataBegin of the trial. Data types are those of a
/// channel's spectrum: 0 R, 1 I, 2 M, 3 A. An index of -1 in a setter of the selection keeps the field; other values
/// are brought into 0 .. T - 1 or 0 .. F - 1, and to 0 on an empty axis.
class CSpctmTrial
{
public:
    CSpctmTrial() = default;
    CSpctmTrial(const CSpctmTrial&) = delete;
    CSpctmTrial& operator=(const CSpctmTrial&) = delete;
    ~CSpctmTrial();

    int getSpctmCmptType() const { return m_nSpctmCmptType; }
    int getSpctmResultType() const { return m_nSpctmResultType; }
    int isAccumSpctm() const { return m_nAccumSpctm == 1 ? 1 : 0; }
    std::int64_t getTrialSpctmTimePt() const { return m_nTimePt; }
    /// F and the time step, cut to 32 bits.
    int getTrialSpctmFreqPt() const { return static_cast<int>(m_nFreqPt); }
    int getTrialSpctmTimeStep() const { return static_cast<int>(m_nTimeStep); }
    /// The factor between frequency points in power mode, else the hertz between them.
    double getTrialSpctmFreqStep() const { return m_nFreqPowerStep != 0 ? m_dFreqPowerStep : m_dFreqLinearStep; }
    int getSpctmFreqRangeHz(double& dLow, double& dHigh) const;
    /// The sum channel of a data type; null for other data types.
    CSumChnlSpctmDatazk* getSumChnlSpctmData(int nDataType);
    /// The frequency of a point in hertz, at most m_dFreqEnd; -1.0 without frequency points. In power mode point 0 lies
    /// one factor above m_dFreqBegin: it is meant so.
    double getSpctmFreq4FreqIndex(std::int64_t i) const;

    /// They store what they are given, unchecked, and give 1. Frequencies are in hertz, the time step in samples.
    int setSpctmResultType(int nType);
    int setSpctmTimePtFreqPt(std::int64_t nTimePt, std::int64_t nFreqPt, std::int64_t nTimeStep);
    int setTrialFreqRange4Spctm(double dLow, double dHigh);
    /// Sets the data length to nEnd - nBegin, too.
    int setTrialTimeDataRange4Spctm(std::int64_t nBegin, std::int64_t nEnd);
    /// Sets m_nSpctmRix1 to m_nSpctmRix5.
    int setChnlRIX(int nRix1, int nRix2, int nRix3, int nRix4, int nRix5);
    /// Sets the range minimum and maximum of the data type's sum channel; the unnamed arguments are ignored. 1 for any
    /// type.
    int setTrialSpctmInfo(int, int, double dMin, double dMax, double, double, int, int nDataType);
    /// Takes over the description, axes and selection of another trial's spectrum and clears the sum channels.
    /// m_nSpctmParam3 to m_nSpctmParam9 and the labels stay. 0 for null.
    int setParameters(const CSpctmTrialzk* pOther);

    /// Gives the data type's sum channel its planes. 1 for other data types.
    int _checkInitTrlSpctmData(int nDataType, std::int64_t nTimePt, std::int64_t nFreqPt);
    /// _cleanSpctmGlobeRange. Gives 1.
    int _cleanAll();
    /// Deletes minimum, mean and maximum plane of the sum channels, and nothing else.
    int _cleanSpctmGlobeRange();
    /// Does nothing and gives 1.
    int _cleanSpctmFreqPeaks();

    // Selection

    /// Begin and end on one axis. The setters bring an index into its axis, leave a bound as it is for -1, and give 1.
    int setTrialSpctmSelectTime(std::int64_t nBegin, std::int64_t nEnd);
    int setTrialSpctmSelectFreq(std::int64_t nBegin, std::int64_t nEnd);
    /// The begin of both axes.
    int setTrialSpctmSelectTimeFreqBB(std::int64_t nTime, std::int64_t nFreq);
    /// The end of both axes, at least the begin.
    int setTrialSpctmSelectTimeFreqEE(std::int64_t nTime, std::int64_t nFreq);
    int getTrialSpctmSelectTimeFreqBB(std::int64_t& nTime, std::int64_t& nFreq) const;
    int getTrialSpctmSelectTimeFreqEE(std::int64_t& nTime, std::int64_t& nFreq) const;
    /// Repairs the fields, gives them and end - begin + 1. Order: a negative begin, a begin above the end, an end at or
    /// above T; so a begin past T stays, and the count may be negative.
    std::int64_t getTrialSpctmSelectTime(std::int64_t& nBegin, std::int64_t& nEnd);
    /// The same for frequencies in the opposite order: an end at or above F, a begin above the end, a negative begin.
    std::int64_t getTrialSpctmSelectFreq(std::int64_t& nBegin, std::int64_t& nEnd);
    /// The frequencies of begin and end of the selection: 2; when both are the same, of it and the next: 1.
    int getTrialSpctmSelectFreqHz(double& dLow, double& dHigh) const;
    /// The same of two given frequency points.
    int getTrialSpctmGivenFreqID4Hz(std::int64_t iA, std::int64_t iB, double& dLow, double& dHigh) const;

    // Fields, in the order in which the chain declares them. Those named Param and Rix are carried for applications.

    int m_nSpctmCmptType = 1; ///< type of computation
    int m_nSpctmRix1 = 0;
    int m_nAccumSpctm = 0;          ///< 1: summed over several epochs
    std::int64_t m_nTimePt = 0;     ///< T
    std::int64_t m_nFreqPt = 0;     ///< F
    std::int64_t m_nDataLength = 0; ///< m_nDataEnd - m_nDataBegin
    std::int64_t m_nDataBegin = 0;  ///< first sample of the trial that was transformed
    std::int64_t m_nDataEnd = 0;    ///< last sample
    std::int64_t m_nEdgePt = 0;     ///< samples trimmed at each end of that range
    std::int64_t m_nEdgePt2 = 0;    ///< carried
    std::int64_t m_nTimeStep = 1;   ///< samples between time points
    double m_dFreqBegin = 0.0;      ///< lowest frequency, Hz
    double m_dFreqEnd = 0.0;        ///< highest frequency, Hz
    int m_nFreqPowerStep = 0;       ///< 0: frequencies step linearly; else by a factor
    double m_dFreqLinearStep = 1.0; ///< Hz between frequency points
    double m_dFreqPowerStep = 0.0;  ///< factor between frequency points
    double m_dSpctmParam = 1.0;
    double m_dSamplingRate = 1.0; ///< of the data transformed, Hz
    std::int64_t m_nSpctmRix2 = 0;
    std::int64_t m_nSpctmParam1 = 0;
    int m_nSpctmParam2 = 0;
    int m_nSpctmResultType = 0;
    int m_nSpctmNormState = 0; ///< last global normalisation: 1 per frequency, 2 frequency law, 3 frequency root law
    std::int64_t m_nSelectTimeBegin = 0; ///< selection, both ends included
    std::int64_t m_nSelectTimeEnd = 0;
    std::int64_t m_nSelectFreqBegin = 0;
    std::int64_t m_nSelectFreqEnd = 0;
    std::int64_t m_nSpctmParam3 = 0;
    int m_nSpctmParam4 = 1;
    int m_nSpctmParam5 = 0;
    int m_nSpctmParam6 = 1;
    std::int64_t m_nSpctmParam7 = 0;
    int m_nSpctmParam8 = 1;
    int m_nSpctmParam9 = 0;
    int m_nSpctmRix3 = 0;
    int m_nSpctmRix4 = 0;
    int m_nSpctmRix5 = 0;
    int m_nSpctmParam10 = 0;         ///< not in the record of today
    CSumChnlSpctmDatazk m_aSumChnlR; ///< over the channels' R planes
    CSumChnlSpctmDatazk m_aSumChnlI;
    CSumChnlSpctmDatazk m_aSumChnlM;
    CSumChnlSpctmDatazk m_aSumChnlA; ///< not in the record of today, as is its label
    CString m_strLabelR = "Real";    ///< labels for display
    CString m_strLabelI = "Imaginary";
    CString m_strLabelM = "Magnitude/Power";
    CString m_strLabelA = "Angle/Phase";
};

} // namespace megset
