#pragma once
// The bottom of the dataset chain: the trials of a recording session, one of them current and in memory, and all fields
// of the layers above, which add operations and no fields.

#include "megset/platform/CPtrArray.h"
#include "megset/platform/CString.h"
#include "megset/platform/CStringArray.h"
#include "megset/platform/SlotArray.h"
#include "megset/records/records.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace megset {

class CDocument;
class CMDTrialzk;

/// A dataset is larger than memory: its trials live in one file each, and the one in memory is written back when
/// another is opened. A trial index of -1 stands for the current trial; a channel index of -1 for the trial's current
/// channel. The selection is one range of samples, both ends included, shared by all channels and kept across trials.
class CMEGData
{
public:
    CMEGData();
    CMEGData(const CMEGData&) = delete;
    CMEGData& operator=(const CMEGData&) = delete;
    /// Saves nothing: call saveAllTrials() for that.
    virtual ~CMEGData();

    // Trials

    /// Replaces the trials by new ones in memory, with channels of zeros, and makes the first current. Such a dataset
    /// has no files. 1; 0 without memory ("Not enough memory?!" for the array, "Not enough memory?" for a trial or its
    /// channels). Fewer than 1 trial is stored as it is.
    int initMEGData(int trials, int channels, std::int64_t samples);
    /// The same with samples from a block, trial after trial and channel after channel. Without memory the trials made
    /// so far stay. 0 for null data.
    int setDataL2F(int trials, int channels, std::int64_t samples, const std::int32_t* data);
    /// Makes the trial current and brings it into memory; the others are saved and leave it. 1, at once where it is so
    /// already; 0 for an index out of range, for other numbers of trials and paths ("File path and trial error!"), or
    /// when it can't be read ("Open trial data failed "): the former trial stays current. A trial of other length and
    /// re-sampling than the recording shows "Sample has been changed: %I64d->%I64d, Please re-sample and check the
    /// data". A trial that a failed save left in memory is taken as it is, and not read over from its file.
    int openTrial(int trial);
    /// Writes out every trial in memory and frees it. 1; 0 without trials or for other numbers of trials and paths
    /// ("File path and trial error!"). At the first that can't be saved it shows "Save trial data error!" and gives 1:
    /// that trial goes to getUnsavedTrials(), the rest stay in memory.
    int saveAllTrials();
    /// Trials whose save failed, by a result or by an exception. They are owned here until saveUnsavedTrials()
    /// succeeds.
    CTypedPtrArray<CMDTrialzk>& getUnsavedTrials() { return m_aUnsavedTrial; }
    /// Tries again, each with the path that it has in the list. Gives the number of trials that are still unsaved.
    int saveUnsavedTrials();
    /// openTrial, then the current trial; null when that failed.
    CMDTrialzk* getTrialzk(int trial);
    /// The place as it stands, null for a trial on disk; no file is touched.
    CMDTrialzk* getMDTrial(int trial) const;
    CMDTrialzk* getCurrentTrialPt() const { return getMDTrial(-1); }
    int getCurrentTrialIndx() const { return m_nCurrentTrial; }
    int getTotalTrial() const { return m_nTotalTrial; }
    /// Trials from `first` to before `end`.
    struct TrialWalk
    {
        int first = 0;
        int end = 0;
    };
    /// The trials that an operation on all of them, or on the current one, goes over. Of all, those that have a place;
    /// none where the current index is no trial's.
    TrialWalk walkOver(bool allTrials) const;
    /// Through the trial's place; 0 when it is not in memory.
    int getTotalChannel(int trial) const;
    std::int64_t getTotalSample() const;
    /// Recorded and virtual trials: as stored (mode 0); by opening trials from the last one back to the first recorded
    /// one (1); by opening all (2), which shows "Open trial for checking error!" and gives 0 where that fails. Recorded
    /// ones are corrected to the total; nothing is stored. Gives the total; 0 without trials, for other numbers of
    /// trials and paths, and for other modes.
    int getTrialRecordVirtual(int& real, int& virt, int mode);
    /// The good flag of the trial, which is opened for it; 0 when that fails.
    int getTrialComments(int trial);
    /// The path, or the title of the path, of a trial; or "Error > total", "Error < 0", "Error No Trials" (no array),
    /// "Error Path Array" (other numbers of trials and paths).
    CString getTrialFilePath(int trial) const;
    CString getTrialFileName(int trial) const;
    /// Looks for a trial's file as it stands and in the current directory, then asks: "Would like to find the file%s
    /// %s". 1 when found, 2 when the user has chosen a file, both with the full path in `path` and its folder in
    /// m_strTrialFolder, which 1 also makes the current directory; 0 when there is none.
    int _checkFindFile(CString& path);
    /// The same with the document's folder looked at first. Gives the path found, else an empty one.
    CString _checkGetFileSameFold4Path(CString& path);
    /// applyMEGSnsrGainDir2Chnls on a trial, which is opened; 0 when that fails.
    int applyMEGSnsrGainDirTrial(int trial, bool once);

    // Data of the trial in memory

    /// The working samples of a channel, null when there are none or the trial is not in memory; -1 stands for the
    /// current one of both.
    double* getChannMEGData(int chan, int trial) const;
    /// The count of the trial's current channel, and the working array of `chan`; null pointers are skipped. 0 when
    /// there is none.
    int getChannMEGDataS(std::int64_t* n, double** data, int chan, int trial) const;
    /// Channels and samples of the current trial. Gives the number of trials, or 0.
    int getCurntTrialChannelSample(int* channels, std::int64_t* samples) const;
    /// Channels, samples and pointer of the current trial; null pointers are skipped. Gives the current index.
    int getCurntTrialCSD(int* channels, std::int64_t* samples, CMDTrialzk** trial) const;
    double* getCurntTrialCurntChannDataWave() const { return getChannMEGData(-1, -1); }
    /// Trials, channels, samples and the first channel's working array. Gives the number of trials, or 0.
    int getDataB(int* trials, int* channels, std::int64_t* samples, double** first) const;
    /// "No Data" with no trial.
    CString getCurrentTrialChannelName(int chan) const;
    /// Type and show flag of a channel. 1; 0 out of range, and for -1, which gives the current channel's type alone.
    int getChannelTypeX(unsigned& type, bool& show, int chan) const;
    /// Stores both; 0 when `chan` is outside the flags.
    int setChannelType(unsigned type, bool show, int chan, int trial);
    int setCurrentChannel(int trial, int chan);
    /// Of one trial, or with trial -1 of all trials in memory; 0 when none could be set.
    int setChannelName(const CString& name, int chan, int trial, bool raw);
    int setChannelPos(int trial, int chan, double x, double y, double z);
    /// All channels of the current trial, or those that are shown.
    int getTotalChnl_Visible(bool shownOnly) const;
    /// 1 when the current trial's current channel has samples.
    int hasData2Draw() const;

    // Selection

    /// Start is the smaller of a and b, end is b; each is brought into the current trial, which is opened. 0 without
    /// trial or channels.
    int setSelect(std::int64_t a, std::int64_t b);
    /// The selection, brought into the current trial first. Gives its length; 0 with no trial or no samples, -1 for a
    /// trial without channels.
    std::int64_t getSelect(std::int64_t& from, std::int64_t& to);
    /// Moves the selection by `step` samples, around the ends with `wrap`, else up to them. Gives the new start; 0
    /// without trial or channels.
    std::int64_t nextSelect(int step, bool wrap);
    /// The mean of the channel over the range; an end of -1 takes the selection's.
    double getSelectData(int chan, std::int64_t from, std::int64_t to) const;
    /// The mean, or with `peak` the extreme, as "%0.0ffT" or "%0.2fpT" for MEG, "%0.0fuV" or "%0.2fmV" for EEG, else
    /// empty. "None" with no trial, "OutRange" for a bad channel.
    CString getSelectDataValueUnit(int chan, std::int64_t from, std::int64_t to, int peak) const;
    /// "fT", "uV", or "u" for other channels; "None" and "OutRange" as above.
    CString getSelectUnit(int chan) const;

    // Time. A rate of 0 or below is stored as 1e-15 where it is used, a negative pre-trigger as 0.

    /// In hertz; a rate of 0 or below shows "Sampling rate must be larger than 0!".
    double getSampleRate();
    /// n / rate x 1000: time in ms from the first sample.
    double dataPoints2TimeMs(std::int64_t n);
    /// ms / 1000 x rate, cut; the rate is taken as it is.
    std::int64_t timeMs2DataPoints(double ms) const;
    /// Time in s from the trigger.
    double getLatency4ptSecond(std::int64_t n);
    /// The sample at a time in ms from the trigger: (pre / rate + ms / 1000) x rate, cut.
    std::int64_t getPts4LatencyMs(double ms);
    std::int64_t getPreTrigPts() const { return m_recordInfo.m_nRecPreTrigPts; }
    /// Time in ms before the trigger; 0.0 at a rate not above 0.
    double getPreTrigMsc();

    // The session

    CString getSessionName() const { return m_strSessionName; }
    /// Stores the name, with which the names of new trials' files begin. Gives 1.
    int setSessionName(const CString& name);
    CMEGRecordInfozkProzk* getMEGRecordInfozk() { return &m_recordInfo; }
    /// Copies the recording information, with the coefficients by the rule of CCoefficientManagerzk. 1; 0 for null.
    int setMEGRecordInfozk(const CMEGRecordInfozkProzk* info);
    /// Number of averages in the recording.
    int getAverageTrigValue() const { return m_recordInfo.m_nAverageCount; }
    /// Trigger marks.
    int getTotalTrigs() const;

    /// Ends all trials and the array; the paths stay.
    int _cleanDatasetTrials();
    /// Ends the per-channel flags.
    int _cleanChnlParam();

    // Fields, in the order in which the chain declares them.

    int m_nTotalTrial = 0; ///< places of the trial array
    int m_nCurrentTrial = -1;
    int m_nRealTrial = 0;                 ///< trials that were recorded
    int m_nVirtualTrial = 0;              ///< trials that were computed
    SlotArray<CMDTrialzk> m_ppTrial;      ///< an empty place is a trial on disk
    CStringArray m_aTrialFilePath;        ///< one full path for each trial
    CString m_strTrialFolder;             ///< folder of the dataset, with its closing backslash
    CString m_strDatasetPath;             ///< path of the dataset file; not filed
    CString m_strDatasetFileName;         ///< title of the dataset file
    CStringArray m_aRecordTrialPath;      ///< an acquisition's trial files, as read
    CString m_strRecordFolder;            ///< an acquisition's folder, as read
    CString m_strSessionName = "Unknown"; ///< session title, and stem of the trial files' names
    int m_nDatasetFlagA = 1;              ///< carried through the file
    int m_nDatasetFlagB = 0;              ///< in memory only
    int m_bInArray = 0;                   ///< while the dataset is read or written as part of an array
    CHeadLocalizationzk m_headLocalization;
    CFiducialzk m_fidEegMeasure; ///< measured EEG fiducials
    CFiducialzk m_fidWorkEeg;    ///< EEG fiducials in use

    CMarkerManagerzk m_mkTrig; ///< triggers
    CMarkerManagerzk m_mkTrigRecord;
    CMarkerManagerzk m_mkMarker;
    CMarkerManagerzk m_mkSegment;
    CMarkerManagerzk m_mkClass;
    CMarkerManagerzk m_mkThreshold;
    CMarkerManagerzk m_mkPattern;
    CMarkerManagerzk m_mkAiMarkWave;
    CMarkerManagerzk m_mkSelect4Move;
    int m_nSegmentCutState = 0; ///< 1 after segments were removed
    int m_nSegmentCutNext = 1;
    CString m_strProcessInfo; ///< carried through the file
    CMEGRecordInfozkProzk m_recordInfo;
    CPtrArray m_aViewer;               ///< views to repaint, CWnd*, not owned
    int m_bViewRedraw = 0;             ///< samples changed under the views; theirs to reset
    int m_bBusy = 0;                   ///< while the dataset is copied; in memory only
    CDocument* m_pDocument = nullptr;  ///< the application's, not owned
    CFilterDcLtSettingzk m_filterDcLt; ///< the filter setting in force
    CFilterDcLtSettingzk m_filterDcLt2;
    std::int64_t m_nFilterSettingCount = 0; ///< raised whenever the filter is set
    std::int64_t m_nFilterSettingCount2 = 0;

    int m_nChnlParamCount = 0;          ///< length of the four arrays below
    std::unique_ptr<int[]> m_pChnlGood; ///< flags of a channel in all trials
    std::unique_ptr<int[]> m_pChnlShow;
    std::unique_ptr<int[]> m_pChnlSelect;
    std::unique_ptr<int[]> m_pChnlParam4; ///< in memory only

    std::unique_ptr<CFreqDatasetFacezk> m_pFreqDatasetFace;
    std::unique_ptr<CVirtSnsPOXlistzk> m_pVirtSnsPOXlist4Spctm;
    std::unique_ptr<CVirtSnsPOXlistzk> m_pVirtSnsPOXlist4Wave;
    CFaceWaveAnalyzedResultzk m_faceWaveResult;

    // Show state. Words, scales and ranges named by letters are carried through the file for applications.

    CM3DIndex2Colorzk m_colorIndex; ///< colours of maps
    int m_bShowVirtChnl = 1;
    int m_bShowMEGSensorActive = 1; ///< also switches the colours of sensors and electrodes on
    int m_bShowSensor2DOverlap = 1;
    int m_bShowMEGSensor = 1;
    int m_nShowWordA = 1;
    int m_nShowWordB = 1;
    double m_dZoomMEGSensor = 0.005;
    double m_dZoomMEGRef = 0.001;
    double m_dZoomEEGSensor = 0.001;
    double m_dZoomEEGRef = 0.001;
    double m_dZoomType903 = 0.005;
    double m_dZoomType902 = 0.005;
    double m_dZoomType904 = 0.005;
    double m_dZoomTrig = 180.0;
    double m_dZoomOthers = 0.001;
    double m_dShowTimeScaleX = 1.0;
    int m_nSensorSize2D = 4; ///< pixels
    double m_dSensorSize2D = 4.0;
    double m_d2DSensorColorStepLow = 0.0; ///< colour scale of MEG sensors, below and above the neutral band
    double m_d2DSensorColorStepHigh = 0.0;
    double m_d2DSensorColorHigh = 0.0; ///< bounds of the neutral band
    double m_d2DSensorColorLow = 0.0;
    int m_nShowWordC = 0;
    double m_dShowScaleA = 1.0;
    double m_dShowScaleB = 1.0;
    double m_dShowRangeMegLow = 0.0;
    double m_dShowRangeMegHigh = 100.0;
    int m_nShowWordD = 512;
    int m_nShowWordE = 1;
    int m_nEegShowWord = 1;
    double m_dElectrodeSize2D = 3.0;
    int m_nElectrodeSize2D = 2;
    double m_d2DElectrodeColorStepLow = -1.0; ///< the same for electrodes
    double m_d2DElectrodeColorStepHigh = 1.0;
    double m_d2DElectrodeColorHigh = 1.0;
    double m_d2DElectrodeColorLow = -1.0;
    double m_dShowRangeEegLow = 0.0;
    double m_dShowRangeEegHigh = 100.0;

    int m_nRoiWord = 0; ///< region of interest in the dewar, mm: flags, colours, limits, extents
    std::uint32_t m_clrRoiA = 0x0000FF00U;
    std::uint32_t m_clrRoiB = 0xFF00FF00U;
    int m_nRoiWord2 = 0;
    double m_dRoiXMin = -90.0;
    double m_dRoiXMax = 90.0;
    double m_dRoiYMin = 20.0;
    double m_dRoiYMax = 120.0;
    double m_dRoiZMin = -100.0;
    double m_dRoiZMax = 100.0;
    double m_dRoiXDim = 180.0;
    double m_dRoiYDim = 100.0;
    double m_dRoiZDim = 200.0;

    std::int64_t m_nSelectStart = 1;
    std::int64_t m_nSelectEnd = 1;
    int m_nTailWordA = 1;
    int m_nTailWordB = 1;
    double m_dTailValueA = 2.0;
    int m_nShowMarkLineType = 1; ///< kind of marks drawn as lines, 0 to 7
    int m_nTailWordC = 1;
    std::int64_t m_nTailWordD = 10;
    int m_nTailWordE = 0;
    int m_nTailWordF = 1;
    int m_nTailWordG = 1;
    int m_nTailWordH = 0;
    int m_nTailWordI = 0;
    int m_nTailWordJ = 0;
    int m_nTailWordK = 0;
    int m_nTailWordL = 1;

protected:
    /// Trials that have a place. A file may count any number of trials for which it has none: walks go by this one.
    int placedTrials() const { return static_cast<int>(std::min<std::int64_t>(m_nTotalTrial, m_ppTrial.size())); }
    bool pathsMatchTrials() const { return m_aTrialFilePath.GetSize() == m_nTotalTrial; }
    /// The same with its message where they don't.
    bool checkPathsMatchTrials() const;
    int trialIndex(int trial) const { return trial == -1 ? m_nCurrentTrial : trial; }
    int saveTrialAt(int index);
    int storeTrialAt(int index);
    /// Makes a trial current that saveAllTrials has left in memory, behind one that could not be saved; false where the
    /// place is empty.
    bool takeResident(int index);
    /// Takes a trial that was read from its file into its place, makes it current and compares it with the recording.
    /// 1; 0 for one without channels, which stays.
    int installOpened(int index, std::unique_ptr<CMDTrialzk> opened);
    int saveUnsavedTrial(int i);
    /// Takes a trial that has no place in memory into the unsaved trials; a place of -1 stands for none in the list.
    void keepUnsavedTrial(std::unique_ptr<CMDTrialzk> trial, int place);
    /// The places of unsaved trials follow the list, from which one place was removed, or all of them.
    void removeUnsavedPlace(int place);
    void removeUnsavedPlaces();
    /// Whether an unsaved trial that has no place in the list is meant for a file of that name, in any folder.
    bool isFileNameOfUnsaved(const CString& name) const;
    /// The place in which the trial is, -1 for none.
    int placeOfTrial(const CMDTrialzk* trial) const;
    /// Sets m_strTrialFolder, with its closing backslash, and the current directory; false when that can't be entered.
    bool takeTrialFolder(const CString& folder);
    /// Whether both the re-sampling step and the number of samples are others than those of the recording.
    bool isUnlikeRecording(const CMDTrialzk& trial) const;
    void warnOfChangedSamples(const CMDTrialzk& trial) const;

private:
    template <class Fill>
    int makeTrials(int trials, int channels, bool keepsPart, Fill fill);
    template <class Set>
    int setInTrials(int trial, Set set);
    double guardedRate();
    double guardedPreTrig();
    int countVirtualAtEnd(int& virt);
    int countAllTrials(int& real, int& virt);
    CString trialFileFault(int index) const;
    bool takeFoundTrialFile(const CString& candidate, CString& path);

    CTypedPtrArray<CMDTrialzk> m_aUnsavedTrial;
    std::vector<int> m_aUnsavedPlace; ///< their places in the trial list, -1 for none
};

} // namespace megset
