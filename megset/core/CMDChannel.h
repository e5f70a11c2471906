#pragma once
// The bottom of the channel chain: one recorded channel of one trial, its samples and all fields of the layers above.
// Samples exist twice, as working array and as raw backup. The layers above add operations and no fields.

#include "megset/platform/CEvent.h"
#include "megset/platform/CString.h"
#include "megset/platform/memory.h"
#include "megset/records/display/SHOW_SHRINK_DATAF.h"
#include "megset/records/magnetic/MEG_BalInfo.h"
#include "megset/records/sensors/CGeomzk.h"

#include <cstdint>
#include <memory>
#include <span>

namespace megset {

namespace numeric {
struct SampleStatistics;
}
class CSpctmChnlzk;
class CFreqDataChnlzk;
class CChnlWaveAnalyzedResultzk;

/// Statistics of a range of one channel; all 0 without samples.
struct ChannelStatistics
{
    std::int64_t samples = 0; ///< samples used
    double min = 0.0;
    double mean = 0.0;
    double max = 0.0;
    double rms = 0.0;
    double sd = 0.0;
    double meanPlus2Sd = 0.0;
};

/// The shorter statistics of a range of one channel; all 0 without samples.
struct ChannelMeans
{
    std::int64_t samples = 0; ///< samples used
    double min = 0.0;
    double mean = 0.0;
    double max = 0.0;
    double meanSquare = 0.0;
    double current = 0.0; ///< the mean as getCurrentV gives it: 0.0 for a reversed range
};

/// Samples are in femtotesla for MEG and microvolts for EEG. Ranges of samples include both ends; a range end of -1
/// stands for the current sample, one at or past the end for the last sample. Any other negative number is 0 as the
/// first end, and makes a reversed range as the second.
class CMDChannel
{
public:
    CMDChannel();
    CMDChannel(const CMDChannel&) = delete;
    CMDChannel& operator=(const CMDChannel&) = delete;
    virtual ~CMDChannel();

    // Filling. A block replaces what was there, in both arrays; the current sample becomes 0.

    /// Takes n samples. Gives n, or 0 for n < 1, null data, or no memory ("Not enough memory!").
    std::int64_t addData(std::int64_t n, const double* data);
    std::int64_t addDataF(std::int64_t n, const float* data);
    /// The same with each float widened and then multiplied by `scale`.
    std::int64_t addDataFscaleD(std::int64_t n, const float* data, double scale);
    /// The integer forms keep a backup of another size when the working count is n, and fill its first n samples;
    /// one that is too short is grown.
    std::int64_t addDataInt(std::int64_t n, const int* data);
    std::int64_t addDataL(std::int64_t n, const std::int32_t* data);
    /// Stores one value in both arrays; outside an array nothing is stored there. Gives the working count.
    std::int64_t addData1(std::int64_t index, double value);
    /// Writes n values at `start` into both arrays. Gives the working count; 0 unless they fit into both.
    std::int64_t addDataInt4ID(std::int64_t start, std::int64_t n, const int* data);
    /// Overwrites the working array alone; 0 unless n is its count and at least 1.
    int updateHDTrialDataL(std::int64_t n, const std::int32_t* data);
    /// Makes both arrays n samples long, and clears them with `zero`. 1 without a change for n < 1; 0 with no memory
    /// ("Not enough memory!"). Without `zero` arrays of the right size keep their samples and new ones are clear.
    int initData(std::int64_t n, bool zero);
    /// The same with counts of their own; nBk <= 0 makes no backup, and the backup count takes that value.
    int initDataBk(std::int64_t nWave, std::int64_t nBk, bool zero);
    /// Adopts a caller's array, made by new double[n], as the working array and copies it to a new backup. Gives n; 0
    /// for n < 1 or null data, which stay the caller's, with the former samples gone; 0 when there is no memory for the
    /// backup ("There is not enough memory for backup data!"): the working array stays adopted.
    std::int64_t setSizeData(std::int64_t n, double* data);

    // Reading

    /// Working and raw samples, null without any, and the number of each.
    double* getDataWave() const { return m_pDataWave.get(); }
    double* getBkData() const { return m_pBkData.get(); }
    std::int64_t getBkDataSample() const { return m_nBkDataSample; }
    std::int64_t getTotalSample() const { return m_nTotalSample; }
    /// The mean over the range; 0.0 without samples or for a reversed range.
    double getCurrentV(std::int64_t from, std::int64_t to) const;
    /// Copies the range to `out`, which must be large enough. Gives the samples copied; 0 without samples, with a null
    /// target or for a reversed range.
    std::int64_t getSelectData(double*& out, std::int64_t from, std::int64_t to) const;
    /// Minimum, mean, maximum and mean square of the range, each where its pointer is not null. Gives the samples used,
    /// 0 without samples. A reversed range counts as its first sample alone, for which the mean square is the plain
    /// square.
    std::int64_t getSelectMinMeaMaxV(std::int64_t from, std::int64_t to, double* min, double* mean, double* max,
                                     double* meanSquare) const;
    /// The same of many channels at once, to the bit, and several times as fast: out[i] is of channels[i], for as many
    /// as both spans have. A null channel counts as one without samples.
    static void getSelectMinMeaMaxV(std::span<const CMDChannel* const> channels, std::int64_t from, std::int64_t to,
                                    std::span<ChannelMeans> out);
    /// The same with root mean square (of a single sample its plain square), deviation and mean + 2 deviations. The
    /// deviation leaves the first sample out of its sum and still divides by the full count: it is meant so.
    std::int64_t getSelectMinMeaMaxSdV(std::int64_t from, std::int64_t to, double* min, double* mean, double* max,
                                       double* rms, double* sd, double* meanPlus2Sd) const;
    /// The same of many channels at once, to the bit, and several times as fast: out[i] is of channels[i], for as many
    /// as both spans have. A null channel counts as one without samples.
    static void getSelectMinMeaMaxSdV(std::span<const CMDChannel* const> channels, std::int64_t from, std::int64_t to,
                                      std::span<ChannelStatistics> out);

    // Backup and shape

    /// Copies working to backup. 0 without working samples or memory ("Not enough memory!").
    int backup2RawData();
    /// Copies backup to working, and brings the current sample inside. 0 without backup samples or memory ("Not enough
    /// memory!").
    int reverseRawData();
    /// Makes a working array of zeros at the backup's count. Gives that count; -1 without a backup, 0 without memory
    /// ("Not enough memory!"). A longer working array is kept and counted shorter.
    std::int64_t checkInitData4MontageIr();
    /// Cuts or stretches both arrays to newSize samples of the range: mode 1 left-aligned, 2 centred on (to - from) / 2
    /// counted from sample 0 (it is meant so), 3 right-aligned; other modes give zeros. What the range does not fill is
    /// zero. 1; 0 without memory ("Not enough memory!?") and for a channel of raw samples alone, which it keeps. 1
    /// without a change for newSize < 1.
    int chopSize4Select(std::int64_t newSize, int mode, std::int64_t from, std::int64_t to);
    /// Multiplies both arrays by the MEG sensor's gain and counts that; with `once` only the first time. 0 without
    /// samples or MEG sensor.
    int applyMEGSnsrGainDir2Data(bool once);
    int _cleanTimeDataC(bool alsoBackup);
    /// The range fields as text.
    CString traceDataInfo() const;

    // Geometry and balance

    /// Replaces the geometry object by a new one of the type: 1 MEG sensor, 2 electrode, 3 stimulus, 4 miscellaneous;
    /// others leave none. 1 in any case; a failure shows "Make magentic Sensor failed", "Make electrode failed" or
    /// "Make stim-trig failed".
    int _initGeomHw(int type);
    /// Ends geometry and balance, and makes the channel one of no type.
    int _cleanGeomHw();
    /// Entries of the balance; the count is set to 0 where there is no array.
    int getMegChnlNumBal();
    MEG_BalInfo* getMegBalInf() const { return m_pMegBalInf.get(); }

    /// Spectra, frequency data or wave results of all classes, or the drawing buffer end. They give 1.
    int _cleanSpctmDataChnl();
    int _cleanFreqDataChnl();
    int _cleanWaveAnlzRsltChnl();
    int _cleanShowShrinkData();

    // Fields, in the order in which the chain declares them.

    SampleArray m_pBkData;            ///< raw samples; null when there are none
    std::int64_t m_nBkDataSample = 0; ///< may differ from m_nTotalSample
    SampleArray m_pDataWave;          ///< working samples; null when there are none
    std::int64_t m_nTotalSample = 0;
    std::int64_t m_nCurrentSample = 0; ///< what -1 stands for in ranges

    CString m_strChannelTypeName = "None"; ///< free text for the type
    int m_nChannelType = -1;
    int m_nGeomType =
        0; ///< class of the geometry object: 0 none, 1 MEG, 2 electrode, 3 stimulus, 4 other, 5 accelerator
    std::unique_ptr<CGeomzk> m_pGeomHw;
    int m_nMegBalMode = 0;    ///< goes with the balance entries
    int m_nMegChnlNumBal = 0; ///< entries of m_pMegBalInf
    std::unique_ptr<MEG_BalInfo[]> m_pMegBalInf;
    double m_dChnlParamA = 0.0; ///< carried for applications, as all fields named Param
    int m_nSnsGainApplied = 0;  ///< times the sensor gain went into the samples
    int m_nChnlParamH = 0;
    int m_nChnlParamI = 0;
    double m_dChnlParamJ = 0.0;
    CString m_strChannelNameRaw; ///< as recorded

    std::unique_ptr<CSpctmChnlzk> m_pSpctmChnlA; ///< spectra: active, control, result; null until asked for
    std::unique_ptr<CSpctmChnlzk> m_pSpctmChnlC;
    std::unique_ptr<CSpctmChnlzk> m_pSpctmChnlR;
    std::unique_ptr<CFreqDataChnlzk> m_pFreqDataA;
    std::unique_ptr<CFreqDataChnlzk> m_pFreqDataC;
    std::unique_ptr<CFreqDataChnlzk> m_pFreqDataX;
    std::unique_ptr<CChnlWaveAnalyzedResultzk> m_pWaveResultA;
    std::unique_ptr<CChnlWaveAnalyzedResultzk> m_pWaveResultC;
    std::unique_ptr<CChnlWaveAnalyzedResultzk> m_pWaveResultX;

    double m_dSns2dX = 0.0; ///< place on the MEG plane
    double m_dSns2dY = 0.0;
    double m_dElct2dX = 0.0; ///< place on the EEG plane
    double m_dElct2dY = 0.0;
    CString m_strChannelName; ///< working name: every look-up and display uses this one
    int m_nChnlParamD = 0;
    int m_nChnlParamE = 1;
    int m_nChnlParamF = 1;
    std::int64_t m_nChnlParamG = 0;
    int m_nMegListID = -1; ///< place in the MEG sensor list
    int m_nEegListID = -1; ///< place in the EEG list; copied but not filed
    int m_nChnlRangeState = -1;
    double m_dDataMin = 0.0; ///< range fields, set by computeDataRange
    double m_dDataMean = 0.0;
    double m_dDataMax = 0.0;
    double m_dDataMaxAbs = 0.0;
    double m_dPhysicalMin = 0.0; ///< physical values at the two ends of the range
    double m_dPhysicalMax = 0.0;
    CString m_strChnlLabelA;
    CString m_strChnlLabelB;
    double m_dChnlParamK = 0.0;
    double m_dChnlParamL = 0.0;
    double m_dChnlParamM = 0.0;

    std::unique_ptr<SHOW_SHRINK_DATAF> m_pShowShrink; ///< fast-draw buffer
    std::unique_ptr<CEvent> m_pWorkEvent;             ///< set and reset around work on the channel

protected:
    /// A range of samples after -1 and the ends have been resolved; empty without samples.
    struct SampleRange
    {
        std::int64_t from = 0;
        std::int64_t to = -1;
        bool hasSamples = false;
        bool isForward() const { return hasSamples && from <= to; }
    };
    SampleRange resolveRange(std::int64_t from, std::int64_t to) const;
    std::span<double> waveSpan() const;
    std::span<double> backupSpan() const;

private:
    template <class Value, class Convert>
    std::int64_t replaceSamples(std::int64_t n, const Value* data, bool keepsOtherBackup, Convert convert);
    bool allocateMissing(std::int64_t nWave, std::int64_t nBk, bool zero);
    bool growBackup(std::int64_t n);
    /// Of a range that is not reversed.
    std::span<const double> samplesOf(const SampleRange& range) const;
    std::span<const double> statisticsSpan(std::int64_t from, std::int64_t to) const;
    template <class Sums, class Result, class SumUp, class Finish>
    static void readInBlocks(std::span<const CMDChannel* const> channels, std::int64_t from, std::int64_t to,
                             std::span<Result> results, SumUp sumUp, Finish finish);
    ChannelMeans meansOf(const numeric::SampleStatistics& sums, std::span<const double> samples, std::int64_t from,
                         std::int64_t to) const;
    void clampCurrentSample();
    void placeSelection(std::span<double> target, int mode, const SampleRange& range) const;
    void copyAligned(std::span<double> target, std::int64_t source, std::int64_t place, std::int64_t first,
                     std::int64_t last) const;
};

} // namespace megset
