#pragma once
// State of processing that is no samples: the filter setting in force, flags of channels over all trials, and
// electrodes that go to the trials. Needs the trials of CMEGData.

#include "megset/geometry/CMEGData1Localization02Eeg.h"

namespace megset {

/// Flags hold for all trials at once, and don't move when another trial becomes current. Every flag operation gives 0
/// for a channel outside the flags: -1 stands for no channel here.
class CMEGData2Process : public CMEGData1Localization02Eeg
{
public:
    // The filter itself is applied by the caller, who reads the setting.

    CFilterDcLtSettingzk* getFilterDcLtSettingzk() { return &m_filterDcLt; }
    /// Takes the setting over and counts it, also when it is the one in force. 1, and for null 1 with nothing changed.
    int setFilterDcLtSettingzk(const CFilterDcLtSettingzk* setting);
    /// The pass band in Hz that the data have: that of the setting, or from 0 to half the sampling rate where no filter
    /// limits it or none was ever set. Gives 1.
    int getFilterRange(double& low, double& high) const;

    /// Makes the four flag arrays as long as the trial has channels, dropping arrays of another length. Where any is
    /// new, all say good 1, show 1, select 0, fourth flag 0 for every channel. 1; 0 for null, for a trial without
    /// channels, and without memory, which leaves no arrays. Without arrays, as in a dataset that was just made, no
    /// channel counts as good, shown or selected.
    int checkInitChnlParam(const CMDTrialzk* trial);
    int isGoodChnl4Alltrials(int channel) const { return isFlagSet(m_pChnlGood, channel); }
    int isShowChnl4Alltrials(int channel) const { return isFlagSet(m_pChnlShow, channel); }
    int isSelectChnl4Alltrials(int channel) const { return isFlagSet(m_pChnlSelect, channel); }
    /// Stores the value as it is.
    int setGoodChnl4Alltrials(int channel, int value) { return setFlag(m_pChnlGood, channel, value); }
    int setShowChnl4Alltrials(int channel, int value) { return setFlag(m_pChnlShow, channel, value); }
    /// With `all` every channel gets the value, whatever `channel` is, with a result of 1.
    int setSelectChnl4Alltrials(int channel, int value, bool all);
    /// Sets the good flag of the first channel whose working name contains the text; it is searched in one trial, which
    /// is opened (-1: the current one), and holds for all. 0 when there is none, or for a trial that can't be opened.
    int setChannelGood4Name(const CString& name, bool good, int trial);
    /// setShowChnl4Alltrials; the two last arguments are not read.
    int setMEGSensorShow(bool show, int channel, int unusedTrial, bool unusedAll);

    // Electrodes: the operation of CMDTrialzk with that name (`Me` for `Meg`), on one trial, which is opened (-1: the
    // current one), or on all. Of one, the trial's result, and 0 when it can't be opened; of all, 1, or 0 at the first
    // trial that gives 0, where the walk ends. Trials that can't be opened are passed over.

    int setEEG_electrodes(const CEEGelectrodezk* electrode, int trial, bool allTrials);
    int setEEG_electrodesPositionMeg(CPtrArray* positions, int trial, bool allTrials);
    int setEEG_electrodesPositionPohemus(int electrode, double x, double y, double z, int trial, bool allTrials);

    // Re-sampling of the working samples by an integer factor, from the raw samples: it can be repeated with another
    // factor, and factor 1 undoes it. A re-sampled channel has one sample more than the recording information says: it
    // is meant so.

    /// Picks every factor-th sample, or with `average` takes the mean of each `factor` samples, on all trials or on the
    /// current one, and then sets the parameters of the whole dataset. Every trial is opened; the last one stays
    /// current. Trials that can't be opened are passed over. A factor below 1 counts as 1. Gradient orders and montages
    /// are gone from the samples then, but the marks that tell of them stay. 1; 0 for a factor of half
    /// the samples or more ("Re-sampling factor (%I64d) cannot be larger than half of the sampling rate (%I64d)"), and
    /// without memory ("Not enough memory!"), with the trials before done and the parameters as they were.
    int reSampleData(bool average, std::int64_t factor, bool allTrials);
    /// 0 with the message above for a factor that reSampleData refuses.
    int checkResampleFactor(std::int64_t factor) const;
    /// Working samples of a channel that is re-sampled: raw samples / factor + 1, as far as 64 bits hold that. A factor
    /// below 1 counts as 1.
    std::int64_t resampledCount(std::int64_t factor) const;
    /// Scales the triggers and the recording information, from what was recorded; other marks keep their samples. A
    /// trigger that lost occurrences gets them back ("The triggers have been modified and the re-sampling needs to
    /// restore original data!"). 1, also for a factor below 1, which changes nothing; 0 without memory for a trigger,
    /// with the recording information as it was.
    int setResampleParameter(bool average, std::int64_t factor);
    /// Makes a trial's working samples anew from the raw ones, as the dataset is re-sampled; a trial that is not, with
    /// a plain copy. A trial re-sampled otherwise, with another number of samples, brings the dataset to its own
    /// parameters first. 1; 0 for null, for a trial without an array of channels, and without memory ("Not enough
    /// memory!").
    int reSampleTrl4DcOffFilt(CMDTrialzk* trial);
    /// That, and segmentRemov4DcOffFilt: before a DC offset or a filter goes over the dataset. For null the trial is
    /// opened, -1 being the current one. 1; 0 when one of the two gives 0, and for a trial that can't be opened or has
    /// no channels.
    int prepareRawData4DcOffFiltDatset(CMDTrialzk* trial, int index);

    /// Blanks the selected ranges in a trial's working samples again where segments were removed: with 0 or, as they
    /// were removed, with the sample before the range. All marks count, whatever trial they were set in. 1, at once
    /// where none were removed; 0 for null, without a marker and without an array of channels.
    int segmentRemov4DcOffFilt(CMDTrialzk* trial);

    // The selected ranges that are to be moved out: the newest marker of m_mkSelect4Move. They are tied to no trial.

    /// Adds a range, -1 standing for the selection's end, to the newest marker, which is made where there is none, at
    /// the current trial and channel. Where the selection ends behind the data, so does the range, with the last
    /// sample. A marker of ranges at a lower sampling rate is asked about: "The sampling rate changed, would you like
    /// to remove all the old selection?!"; a higher one isn't noticed, and is meant so. 1; 0 for a No, for an empty
    /// range, without trial, and without memory: a marker made for it stays.
    int addSegment4Cut(std::int64_t begin, std::int64_t end);
    /// Blanks the ranges in the working samples of all trials or of the current one: with 0 (mode 0), or with the
    /// sample before the range, 0 before the first (other modes; -1 is the mode used last). From then on they are
    /// blanked whenever a trial is prepared for a pass over the dataset. Trials that can't be opened are passed over.
    /// 1, or 0 without a marker.
    int segmentRemove(int allTrials, int mode);

    // Two selections made of the same length, inside the data. A range grows by turns at its begin and its end, the
    // begin first; an end of the data leaves the rest to the other side.

    /// Lets the shorter range grow to the length of the other. 1; 0 for "The selected data range is wrong!", where
    /// neither has a length above 0, and for "Can't match the active and control selections!", with the range as long
    /// as the data let it be.
    int matchAtiveControl(std::int64_t& activeB, std::int64_t& activeE, std::int64_t& controlB,
                          std::int64_t& controlE) const;
    /// Lets the range grow or shrink, in the same way, to `size` samples. 1; 0 for "The selected data range or size is
    /// wrong!", where neither is above 0, and for the other message as above.
    int matchSelect2Size(std::int64_t& begin, std::int64_t& end, std::int64_t size) const;

private:
    int segmentCut(int allTrials);
    bool hasFlag(const std::unique_ptr<int[]>& flags, int channel) const;
    int isFlagSet(const std::unique_ptr<int[]>& flags, int channel) const;
    int setFlag(const std::unique_ptr<int[]>& flags, int channel, int value);
    template <class Operation>
    int openAndRun(int trial, bool allTrials, Operation operation);
};

} // namespace megset
