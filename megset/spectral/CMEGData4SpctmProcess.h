#pragma once
// Reduction of spectra over the channels of a trial, and channel operations over all trials. Needs the trials' and
// channels' spectra, and the flags of channels.

#include "megset/spectral/CMEGData3Spctm.h"

namespace megset {

class CSumChnlSpctmDatazk;

/// The four filters of channels, always in this order: MEG, EEG, good and shown in all trials. Each that is set is one
/// more requirement, so that MEG and EEG together leave no channel. A null trial stands for the current one, as it is
/// in memory; an index of -1 does, too.
class CMEGData4SpctmProcess : public CMEGData3Spctm
{
public:
    // Counting. A channel qualifies that passes the filters, has the class, and a plane or array of the data type. Here
    // MEG is every channel of the MEG group, so that sizes may be taken from a reference channel that the sums below
    // leave out: it is meant so.

    /// The number of channels that qualify, with the largest T and F through pointers that are not null; 0 with nothing
    /// written when there is none, and without a trial. Planes of different sizes show "Spectral time range (%I64d
    /// %I64d) frequency range (%I64d %I64d)", smallest and largest of each, when a pointer is given.
    int checkChnlSpctmInfo(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow, int nClass, int nDataType,
                           std::int64_t* pTimePt, std::int64_t* pFreqPt);
    /// The same of frequency data, with one size: "  frequency range (%I64d %I64d)".
    int checkChnlFreqDataInfo(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow, int nClass,
                              int nDataType, std::int64_t* pPoints);

    // Reduction. Six statistics over the channels that pass the filters - here MEG is measuring channels alone - go to
    // the sum object of the class and data type, at every point and as a whole. numeric/channelSums.h tells them. A
    // plane smaller than the largest one counts at its own linear indices; where no plane reaches, the sums are 0.
    // Without a qualified channel, without the trial's spectrum of the class, and without memory, which leaves the sum
    // object empty, the result is null, without a message.

    CSumChnlSpctmDatazk* computTrialSpctm(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow, int nClass,
                                          int nDataType);
    /// All data types, or all classes too; the last result that is not null.
    CSumChnlSpctmDatazk* computTrialSpctmAllDataType(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow,
                                                     int nClass);
    CSumChnlSpctmDatazk* computTrialSpctmAllClassDataType(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood,
                                                          bool bShow);
    /// All classes and data types with the filters that the user sets in a CDlgChnlSelect, all set at first. With
    /// `bReport` each result is shown: "MEG:%d, EEG:%d, Class:%d data:%d channels:%d,time:%I64d, Freq:%I64d,
    /// Rang(%0.4f~%0.4f,mean:%0.4f)". Gives 0 in every case: it is meant so.
    int computTrialSpctmAllPro(CMDTrialzk* pTrial, bool bReport);
    /// The same for frequency data: the CSumChnlFreqDatazk of the data type, or null. The trial's frequency data of the
    /// class are made where there are none.
    void* computTrialFreqData(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow, int nClass,
                              int nDataType);
    void* computTrialFreqDataAllClassDataType(CMDTrialzk* pTrial, bool bMEG, bool bEEG, bool bGood, bool bShow);

    // Operations on every channel that has the class, over all trials. 1; 0 without trials.

    int doSpctmMagnitude(int nClass);
    int doSpctmPhase(int nClass);
    int setSpctmPolarity(int nPolarity, int nClass);
    /// Clears values that are no finite numbers.
    int setAllTrialSpctmNAN2zero(int nClass, int nDataType);
    /// The same: in spite of its name it normalises nothing.
    int normSpctmValue2ShrtAllTrial(int nClass, int nDataType);

    /// Baseline division on all channels of one trial, which is opened, or of all. Of one, the trial's result; 0 for an
    /// index out of range, without trials and for a trial that can't be opened.
    int rootStrip(int iTrial, bool bAllTrials, unsigned int iTimeBegin, unsigned int iTimeEnd, double dScale,
                  int nClass, int nDataType);
    /// The natural logarithm on a channel of a trial, which is opened: class a2, data type a3 (so that only 0 and 1 can
    /// be reached), channel a4, or all with a5. The trial's result; 0 for a trial that there is not.
    int transformSpctm2log(int iTrial, int a2, bool a3, int a4, int a5);

    /// Searches nothing: 1 when the current trial has the class, else 0. Only that argument is read.
    int findSpctmPeaks(bool bMEG, bool bEEG, bool bGood, bool bShow, int nUnused, double dUnused, int nClass,
                       int nUnused2);
    /// That, after a CDlgChnlSelect; 0 when it is cancelled.
    int findSpctmPeaksPro(int nUnused, double dUnused, int nClass, int nUnused2);

private:
    CMDTrialzk* trialOrCurrent(CMDTrialzk* pTrial) const { return pTrial != nullptr ? pTrial : getCurrentTrialPt(); }
};

} // namespace megset
