#pragma once
// Spectra of the trials, seen from the dataset: cleaning, shape, latencies and ranges. Needs the trials' and channels'
// spectra.

#include "megset/processing/CMEGData2Process.h"

#include <limits>

namespace megset {

/// Classes are 0 active, 1 control, 2 result; data types 0 real, 1 imaginary, 2 magnitude, 3 phase. A walk over all
/// trials opens each of them; one that can't be opened is passed over, and the last one stays current.
///
/// A latency is in ms from the trigger. Where one is computed a sampling rate below 1e-15 is stored as that, a negative
/// pre-trigger as 0.
class CMEGData3Spctm : public CMEGData2Process
{
public:
    /// _cleanSpctmChnlData of one trial, which is opened, or of all. Of one, the trial's result; 0 for an index out of
    /// range, without trials and for a trial that can't be opened.
    int _cleanSpctmDataChann(bool bAllTrials, int iTrial, int iChannel, int nClass);
    /// _cleanSpctmChnlDataAll likewise.
    int _cleanSpctmDatasetData(bool bAllTrials, int iTrial);

    /// Whether all planes of the current trial, which is opened, or of all trials have one shape; trials without planes
    /// don't count. Gives the largest T and F in any case. 0 with "Spectrograms have different dimensions!" where they
    /// differ; 0 without planes and when the current trial can't be opened. The first argument is not read.
    int checkSpctmTF(std::int64_t nUnused, std::int64_t& nTimePt, std::int64_t& nFreqPt, bool bAllTrials);
    /// With `bCreate` makes m_pFreqDatasetFace where there is none. The result is null in every case: it is meant so.
    void* getFreqDatasetFace(int bCreate);

    /// Latency of a time point of the current trial's spectra of a class; -1.0 without a trial in memory or channels.
    /// Without the class it is that of sample -1: it is meant so. The last argument is not read.
    double getLatencyMs4SpctmTimePt(std::int64_t iTime, int nClass, int nUnused);
    /// The same of a cross-spectrum; -1.0 also for null.
    double getLatencyMs4SpctmCCDTimePt(std::int64_t iTime, int nClass, int nDataType, CMEGSpctmCCDataFacezk* pFace);

    // Latencies of the ends of a range of time points: 2; when both are the same, of it and the next time point: 1. 0
    // with both 0.0 where there is none.

    /// Of the selection in the current trial's spectra of a class.
    int getTrialSpctmSelectTime2LatencyMsec(double& dBegin, double& dEnd, int nClass, int nDataType);
    /// Of given time points.
    int getTrialSpctmGivenTime2LatencyMsec(std::int64_t iBegin, std::int64_t iEnd, double& dBegin, double& dEnd,
                                           int nClass, int nDataType);
    /// Of the selection in a cross-spectrum.
    int getTrialSpctmCCDSelectTime2LatencyMsec(double& dBegin, double& dEnd, CMEGSpctmCCDataFacezk* pFace, int nClass,
                                               int nDataType);

    /// Counts the channels of the current trial, which is opened, that have a spectrum object, filled or not: MEG
    /// measuring and reference channels, and EEG channels of type 300, 302 and 303. Gives the sum; 0 with no trial or
    /// no channels.
    int getSpctmChnlMegEeg(int& nMeg, int& nEeg);
    /// The smallest minimum, largest maximum and mean of the means that getSpctmRangeAllChann gives for the trials in
    /// memory; what it gives on failure counts, too. Null pointers are skipped. Gives 1; -1.0, 1.0 and 0.0 when no
    /// trial is in memory.
    int getSpctmRangeDataset(double* pMin, double* pMax, double* pMean, int bCompute, int nClass, int nDataType);

    /// hasSpctmData4draw of the current trial; 0 without one in memory.
    int hasSpectmData2Draw(int nClass, int nDataType);
    /// hasWaveAnalyzDataX4draw of the current trial; 0 without one in memory.
    int hasWaveAnalyzDataX4draw(int nClass, int nDataType);

protected:
    /// (sample / rate - pre-trigger / rate) x 1000 ms.
    double latencyMs4Sample(std::int64_t sample);
    /// The latencies that `latency` gives for the ends of the range, or where these are one for it and the next point.
    template <class Latency>
    static int latenciesOfRange(std::int64_t iBegin, std::int64_t iEnd, double& dBegin, double& dEnd, Latency latency)
    {
        const bool isRange = iBegin != iEnd;
        dBegin = latency(iBegin);
        dEnd = latency(isRange || iEnd == std::numeric_limits<std::int64_t>::max() ? iEnd : iEnd + 1);
        return isRange ? 2 : 1;
    }
    /// Runs `operation` on every trial that can be opened. 1; 0 without trials.
    template <class Operation>
    int forEachOpenedTrial(Operation operation)
    {
        for (int i = 0; i < placedTrials(); ++i)
            if (CMDTrialzk* trial = getTrialzk(i))
                operation(*trial);
        return m_nTotalTrial > 0 ? 1 : 0;
    }
    /// Runs `operation` on all trials that can be opened, with a result of 1, or on one, with its result. 0 when there
    /// is none.
    template <class Operation>
    int openAndOperate(bool bAllTrials, int iTrial, Operation operation)
    {
        if (bAllTrials)
            return forEachOpenedTrial(operation);
        CMDTrialzk* trial = m_nTotalTrial > 0 ? getTrialzk(trialIndex(iTrial)) : nullptr;
        return trial != nullptr ? operation(*trial) : 0;
    }
};

} // namespace megset
