#pragma once
// Normalisation, logarithm and cuts over the spectra of all channels.
// Needs the channels' spectra by class, and the ranges over all channels.

#include "megset/spectral/CMDTrial4Spctm.h"

namespace megset {

/// Operations over all channels pass over empty places and channels without the class, give 1 whatever the channels
/// give, and 0 with no channel array. Those that need the trial's spectrum of the class give 0 without it. Only
/// normalizeFreq shows messages.
class CMDTrial4SpctmProcess : public CMDTrial4Spctm
{
public:
    // Cuts, as those of CSpctmChnl03Process

    int cutSpctmDataExtrama(double dLow, double dHigh, double dFill, int nClass, int nDataType);
    int cutSpctmFreqBlock(int iFreqBegin, int iFreqEnd, double dFill, int nClass, int nDataType);
    int cutSpctmTimeBlock(int iTimeBegin, int iTimeEnd, double dFill, int nClass, int nDataType);
    /// A bound of -1 is that of the selection of the trial's spectrum, where there is one, cut to 32 bits. Without
    /// bAllChannels on the current channel alone.
    int cutSpctmSelect(int iTimeBegin, int iTimeEnd, int iFreqBegin, int iFreqEnd, double dFill, bool bAllChannels,
                       int nClass, int nDataType);

    // Each frequency by a value over all channels and times. A channel whose plane begins with 0.0 is not divided, nor
    // is any by a value of 0: both are meant so. The trial's spectrum is marked as normalised by frequency.

    /// By the root mean square, on all four data types.
    int normSpctmGlobEachFreqAllChnAllTimSc_rms(int nClass);
    /// The same for each class that the trial has.
    int normSpctmGlobEachFreqAllChnAllTim_rms();
    /// By the largest absolute value.
    int normSpctmGlobEachFreqAllChnAllTim_max(int nClass, int nDataType);
    /// The same for each class that the trial has, and all data types.
    int normSpctmGlobEachFreqAllChnAllTim_max();
    /// To a percentage of the mean. dReserved is not read.
    int normSpctmGlobEachFreqAllChnAllTim_mean(double dReserved, int nClass, int nDataType);

    /// Maps the range over all channels (getSpctmRangeAllChann) to -32766 .. 32766; a range of one value to 0.
    int normSpctmValue2ShrtAllChnl(bool bCompute, int nClass, int nDataType);

    /// A gain that grows with frequency: with x the frequency in units of the lowest one, or its root for nLaw 1, the
    /// gain is x^dFactor with bPower, else x * dFactor. It goes to every T-th element, T being the number of times: on
    /// a plane with T unequal to F it falls on diagonals, as it is meant, and ends with the plane. The frequencies step
    /// as the trial's spectrum says, by a factor or linearly. Marks the spectrum as normalised (3 for nLaw 1, else 2).
    /// 0 for a dFactor or lowest frequency not above 0, for T or F below 1, and for values too small to work with:
    /// "Sampling rate is smaller than %0.16f", "Low-frequency is smaller than %0.16f", "Frequency power step is smaller
    /// than %0.16f", "Frequency linear step is smaller than %0.16f", letter by letter as they stand here: it is meant
    /// so.
    int normalizeFreq(int nLaw, double dFactor, bool bPower, int nClass, int nDataType);
    /// The same for all classes and data types. Always 1.
    int normalizeFreqAll(int nLaw, double dFactor, bool bPower);
    /// Does nothing. 1.
    int normalizeFreq_reverse(int, int);

    /// Baseline division (CSpctmChnl03Process::rootStrip) on all channels, or on one, which gives what the channel
    /// gives. -1 is the current channel, another index out of range gives 0, a missing spectrum 1.
    int rootStrip(unsigned int iTimeBegin, unsigned int iTimeEnd, double dScale, int iChannel, bool bAllChannels,
                  int nClass, int nDataType);
    /// Multiplies all data types of a class, or of all classes for -1; another class is left alone. 0 with no channels.
    int scaleSpctmAllDataType4Class(int nClass, double dScale);
    int setAllChnlSpctmNAN2zero(int nClass, int nDataType);
    /// Does no work: 1 when there is a sum channel of that class and data type, else 0.
    int setPeakDistTotal(int, int, double, int nClass, int nDataType);
    /// The natural logarithm on all channels, or on one; the channel and the result are those of rootStrip.
    int transformSpctm2log(int iChannel, bool bAllChannels, int nClass, int nDataType);

private:
    template <class Operation>
    int onAllChannels(int nClass, Operation operation) const;
    template <class Operation>
    int onChannel(int iChannel, int nClass, Operation operation) const;
    template <class DivisorOf>
    void normalizeEachFreq(const CSpctmTrialzk& spectrum, int nClass, int nDataType, DivisorOf divisorOf);
    bool mayNormalizeFreq(const CSpctmTrialzk& spectrum) const;
};

} // namespace megset
