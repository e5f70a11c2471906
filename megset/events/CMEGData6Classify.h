#pragma once
// Triggers, marks, segments and bad channels. Needs the trials of CMEGData, and the flags of CMEGData2Process.

#include "megset/spectral/CMEGData5VirtualSns.h"

namespace megset {

struct TriggerScanPlan;
enum class TriggerScan;

/// The dataset's layer for triggers, marks, bad segments, and channels by what is in them.
class CMEGData6Classify : public CMEGData5VirtualSns
{
public:
    // Scans for triggers. The trigger channels of all trials, which are opened one after the other, are searched for
    // samples above a threshold; each value on each channel becomes a marker of the trigger manager, and each time that
    // it is found an occurrence. How a channel is prepared and how samples make an occurrence is the scan's own: on the
    // same data they give different marks, and are meant to. All but the plain one leave the trigger channels changed.
    //
    // A recording that may be averaged is asked about first. Without `force`, markers that are there are the result, as
    // their number. Then "Would you like to delete the old triggers?" is asked: with No the finds are added to them.
    // The threshold is that of a new manager (0.5); mode and prefix are the trigger manager's. The first occurrence of
    // a new marker says trial 0, whatever trial it is in: it is meant so. Names go by the value, or with a coding word
    // (m_nAcqWordF) of 1 by the exponent of its bit, which is the group, too.
    //
    // Gives 1; 0 without trials, for a No to the first question, and where a scan finds more than can be stimuli ("Too
    // many triggers (more than %d), please check the trigger channels!"), with the markers of that moment. A trial that
    // can't be opened is passed over. Without memory for an occurrence the invalid-argument exception is raised.

    /// getTrialTrigPro, with names by prefix.
    int checkTrig(bool force);
    /// getTrialTrigAbsDc, with names "ScnTrig".
    int checkTrigAbsDc(bool force);
    /// getTrialTrigAbsDcM, with names "ScnTrig".
    int checkTrigAbsDcM(bool force);
    /// The scan of the manager's mode: 0 getTrialTriggers, 1 getTrialTrigPro, 2 getTrialTrigAbsDc, 3
    /// getTrialTrigAbsDcM; others find nothing. Names go by prefix.
    int checkTrigPro(bool force);
    /// Does nothing and gives 1.
    int checkTrig_bk01(bool) const { return 1; }

    // One trial, null standing for the current one: `out` gets a marker for each occurrence, and as its information the
    // trial's name with the ranges of its trigger channels. The threshold is that of `out`; the last argument is not
    // read. They give the number of markers in `out`; 0 without trial or without a first channel. Too many show the
    // message above, and none of them is added.

    int getTrialTriggers(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*);
    int getTrialTrigPro(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*);
    int getTrialTrigAbsDc(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*);
    int getTrialTrigAbsDcM(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*);

    /// All trials' triggers as CMarkerManager::getTrialAllTrigInfoStd tells them, also shown, under a head, as a
    /// report. Without trials the message "No Trials", and "No Trial".
    CString getTrialTrigInfoStd();
    /// The same with getTrialAllTrigInfoPro, and without a head.
    CString getTrialTrigInfoPro();
    /// Whether the marker's name for trials is that of the trial's trigger mark, in any case; 0 for null.
    int isMarkTrig2TrlMatch(const CMarkerDatazk* marker, const CMDTrialzk* trial) const;
    /// Copies the triggers to the record of triggers; 0 without any. Both copies give 0 without memory ("Not enough
    /// memory!"), with nothing changed.
    int setTrig2Record();
    /// Copies them back; 0 without any ("No recorded triggers can be found!").
    int reloadTrigRecord();
    /// CMDChannel7ProcessX::stimTrgChnl_Dc on the trigger channels of all trials that can be opened. 1; 0 without
    /// trials, and for a No to the question about an averaged recording.
    int trigChannelDcoff(int alsoBackup);

    // Marks by kind, with their line types

    CMarkerManagerzk* getTrigManager() { return &m_mkTrig; }                 // 0
    CMarkerManagerzk* getMarkerManager() { return &m_mkMarker; }             // 1
    CMarkerManagerzk* getSegmentManager() { return &m_mkSegment; }           // 2
    CMarkerManagerzk* getClassManager() { return &m_mkClass; }               // 3
    CMarkerManagerzk* getThreshodMkManager() { return &m_mkThreshold; }      // 4
    CMarkerManagerzk* getPatternMkManager() { return &m_mkPattern; }         // 5
    CMarkerManagerzk* getMkManagerSelect4Move() { return &m_mkSelect4Move; } // 6
    CMarkerManagerzk* getAiMarkWave2Disease() { return &m_mkAiMarkWave; }    // 7
    /// Stores the line type, also a wrong one, and gives its manager; -1 stands for the type stored last. "Wrong Mark
    /// Line type!?" and null for a type outside 0 to 7.
    CMarkerManagerzk* getShowMarkLineManager(int type);
    /// The line type of a marker group; "Wrong Trigger Mark Group ID!?" and -1 for an unknown one.
    int getTRIGMRK_GRPID2MK_LINE_TYPE(int group) const;
    /// Adds a bad segment of the current trial, in ms from the trial's first sample, to the first marker of the segment
    /// manager, which is made where there is none. The marker's count stays: it is meant so. Times are taken as they
    /// are. 1, or 0 without memory.
    int addTrialBadSegment(double beginMs, double endMs);
    /// The same in a trial, which is opened: -1 is the current one, another negative index the first, one behind the
    /// last the last. 0 when it can't be opened.
    int addTrialBadSegment(int trial, double beginMs, double endMs);

    // Channels of the current trial, which is opened

    /// Makes the channel with the largest |x| from `begin` to `end` current, and gives its index; of equal ones the
    /// first. An end of -1 is that of the selection; channels that end before are searched to their own end. The third
    /// argument is not read. 0 without trial; -1 without a first channel, and where no sample was searched.
    int findPeakChnl_RID(std::int64_t begin, std::int64_t end, bool, bool visibleOnly);
    /// The name of that channel, for the range without its last sample. The first channel's where no sample was
    /// searched. "Unknown Trial" without trial, "Unknown" without a first channel.
    CString findPeakChnl_RN(std::int64_t begin, std::int64_t end, bool setCurrent, bool visibleOnly);
    /// Shows or hides all channels that are not good. 1; 0 without trial and with fewer than two channels.
    int showAllBadChannels(bool show);
    /// getChannelTypeX in a trial, which is opened; 0 when that fails.
    int getChannelType(unsigned& type, bool& flag, int channel, int trial);
    /// The MEG channels that are shown; with `goodOnly` without the bad ones. 0 without trial or channels.
    int getTotalMEGChannel(bool goodOnly, bool);
    /// The MEG measure channels, shown or not; with `goodOnly` without the bad ones. 0 without trial or channels.
    int getTotalMEGChannelMeasure(bool goodOnly);

private:
    bool mayBeScanned(const char* averagedQuestion) const;
    int scanTrials(const TriggerScanPlan& plan, bool force);
    int scanTrial(CMarkerManagerzk& out, CMDTrialzk* trial, TriggerScan scan);
    int findPeakChannel(const CMDTrialzk& trial, std::int64_t begin, std::int64_t end, int excluded,
                        bool visibleOnly) const;
    bool hasTrialsToReport() const;
    void showTrigInfo(const CString& text, std::int64_t triggers) const;
};

} // namespace megset
