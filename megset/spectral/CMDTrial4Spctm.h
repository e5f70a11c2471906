#pragma once
// Spectra of a trial and of its channels, by class. Needs the channels' spectrum slots.

#include "megset/numeric/planes.h"
#include "megset/processing/CMDTrial3Montage.h"

namespace megset {

class CSpctmChnlzk;

/// Classes: 0 active, 1 control, 2 result; a trial has no spectrum of another class. Data types: 0 R, 1 I, 2 M, 3 A.
/// Sources of a selection or range (nPhyVirt): 0 the plane of a channel; 1 to 6 the trial's sum plane of mean, minimum,
/// maximum, positive and negative values, and root mean square; others fail. A channel of -1 is the current one. No
/// message is shown where none is named.
class CMDTrial4Spctm : public CMDTrial3Montage
{
public:
    ~CMDTrial4Spctm() override;

    // Objects

    /// The trial's spectrum of a class; with bCreate an empty one is made when there is none. Null when there is none,
    /// and without memory ("Initializing trial spectrogram error!").
    CSpctmTrialzk* getSpctmTrial(bool bCreate, int nClass);
    CSpctmTrialzk* getSpctmTrialA(bool bCreate);
    CSpctmTrialzk* getSpctmTrialC(bool bCreate);
    CSpctmTrialzk* getSpctmTrialR(bool bCreate);
    /// The same for the frequency data, a CFreqDataTrialzk; null with no channels, and without memory ("Initializing
    /// trial frequency data error!").
    void* getFreqDataTrial(int nClass, bool bCreate);
    /// Points of the first channel's frequency data; 0 when there is none.
    std::int64_t getSample4FreqData(int nClass);

    /// Ends the current planes of one channel's spectrum. 0 when out of range or empty; 1 without that class, too.
    int _cleanSpctmChnlData(int iChannel, int nClass);
    /// Ends the spectra, or the frequency data, of all classes on every channel. 0 with no channels.
    int _cleanSpctmChnlDataAll();
    int _cleanFreqDataAllChnl();
    /// Ends the trial's own spectra, or frequency data.
    int _cleanSpctmTrlData();
    int _cleanFreqDataTrl();
    /// CSpctmChnl::reloadRawSpctmDataRIX on all classes of every channel, with its messages. 1 whatever they give.
    int reloadSpctmDataAll();

    // What there is

    /// The middle arguments are not read.
    bool hasSpctmData4Chnl(int nClass, int, int iChannel) const;
    bool hasFreqData4Chnl(int nClass, int, int iChannel) const;
    /// Whether a channel has the plane, with T and F above 0. When the first that does lies behind the current channel,
    /// it becomes current.
    bool hasSpctmData4draw(int nClass, int nDataType);
    /// The same for frequency data of any data type.
    bool hasFreqData4draw(int nClass, int);
    /// As hasSpctmData4draw, but 0 without a trial's spectrum of the class. With one, 1 also for a trial without
    /// channels, and when no channel qualifies but the last place is empty or holds an empty plane: it is meant so.
    int hasSpctmData4SrcScan(int nClass, int nDataType);
    /// True when the current channel is MEG or EEG and has the plane; else the first channel of any kind that has it
    /// becomes current. False when none has.
    bool findSpctmChnl4Show(int nClass, int nDataType);

    // Shape. Pointers may be null; a channel without the class has T and F of 0. The index is brought into the
    // channels, and given back; -1 with no channels.

    int getChnlnumberSpctmFreqPt(int* pChannels, std::int64_t* pFreqPt, int iChannel, int nClass);
    int getChnlnumberSpctmTimePt(int* pChannels, std::int64_t* pTimePt, int iChannel, int nClass);
    int getChnlnumberSpctmTimeFreqPts(int* pChannels, std::int64_t* pTimePt, std::int64_t* pFreqPt, int iChannel,
                                      int nClass);
    /// The channels that have any plane, and the smallest and largest T and F of these planes; zeros without any. 0
    /// with no channels.
    int getSpctmChnTimFrq(std::int64_t& nChannels, std::int64_t& nTimeMin, std::int64_t& nTimeMax,
                          std::int64_t& nFreqMin, std::int64_t& nFreqMax) const;
    /// F - 1 of the trial's spectrum, cut to 32 bits; with bScanChannels F becomes that of the last channel with the
    /// class first. -1 with no channels or no such class.
    int getSpctmFreqIndexMax(bool bScanChannels, int nClass);
    /// The whole plane with bAll, else the selection of the trial's spectrum, which it repairs. Gives the number of
    /// elements; zeros without the class.
    std::int64_t getSpctmSize(bool bAll, std::int64_t& nTimeBegin, std::int64_t& nTimeEnd, std::int64_t& nFreqBegin,
                              std::int64_t& nFreqEnd, int nClass);
    /// The sample of the trial that a time point stands for, brought into 0 .. T - 1; -1 without the class.
    std::int64_t getSpctmTimePt(std::int64_t iTime, int nClass, int) const;

    // Selections: rectangles, ends included. A bound of -1 is that of the selection of the trial's spectrum. Bounds
    // are clamped against its T and F as the channel's readers do it, a channel is brought into the channels. Without
    // a trial's spectrum of the class all fail. What a rectangle has outside the plane is left out.

    /// "No data" with no channels or no class; "None" for another source and without the plane.
    CString getSelectSpctmValue2Txt(int nPhyVirt, int nClass, int nDataType, int iChannel, std::int64_t iTimeBegin,
                                    std::int64_t iTimeEnd, std::int64_t iFreqBegin, std::int64_t iFreqEnd);
    /// Gives the count for a channel, and 1 for a sum plane, whatever the count: it is meant so.
    std::int64_t getSelectSpctmValueMMMR(int nPhyVirt, int nClass, int nDataType, int iChannel, std::int64_t iTimeBegin,
                                         std::int64_t iTimeEnd, std::int64_t iFreqBegin, std::int64_t iFreqEnd,
                                         double& dMin, double& dMean, double& dMax, double& dRms);
    /// A value for each frequency, at most nOutMax: the largest absolute value over time (nMode 1, 4), the sum divided
    /// by the number of times (2, 5), the root of the sum of squares divided by it (3, 6). Modes 4 to 6 read the whole
    /// plane, and still divide by the number of times of the selection: it is meant so. 0 without a plane or times, for
    /// another mode and for a null target.
    std::int64_t getSelectSpctmValueXX(int nPhyVirt, int nClass, int nDataType, int nMode, int iChannel,
                                       std::int64_t iTimeBegin, std::int64_t iTimeEnd, std::int64_t iFreqBegin,
                                       std::int64_t iFreqEnd, std::int64_t nOutMax, double* pOut);
    /// The sum of a rectangle of a channel, clamped; the mean of one of a sum plane, not clamped: it is meant so. Gives
    /// the low 32 bits of the count; 1 with zeros without the channel or its spectrum.
    int getSelectSpctmValueX_PhyVirt(int nPhyVirt, int iChannel, std::int64_t iTimeBegin, std::int64_t iTimeEnd,
                                     std::int64_t iFreqBegin, std::int64_t iFreqEnd, double& dValue,
                                     std::int64_t& nCount, int nClass, int nDataType);

    // Ranges

    /// Minimum, maximum and mean of one source, each where its pointer is not null; not both pMin and pMax may be. For
    /// a channel that of CSpctmChnl03Process::getSpctmRange; for sum planes computed anew, where all but mean and
    /// minimum leave out frequency 0, by whose count the mean is divided all the same. 1 with zeros for a channel
    /// without the class, a trial without it and a sum plane that is absent; 0 for a channel out of range or another
    /// source or data type. The sum of positive values counts as absent when the maximum is. The Abs form is of
    /// absolute values.
    int getSpctmRange4OneChnlShow(int nPhyVirt, int iChannel, double* pMin, double* pMax, double* pMean, bool bCompute,
                                  int nClass, int nDataType);
    int getSpctmRange4OneChnlShowAbs(int nPhyVirt, int iChannel, double* pMin, double* pMax, double* pMean,
                                     bool bCompute, int nClass, int nDataType);
    /// The range over all channels of the class: the extremes of their ranges, and the mean of their means. Kept by the
    /// sum channel of the class; computed with bCompute and when none is kept. Gives the number of channels with the
    /// class, or 1 for a kept range. -1 to 1 around 0 without a channel that has the plane; the same and 0 without
    /// class, data type or shape. 0 for a null pMin or pMax.
    int getSpctmRangeAllChann(double* pMin, double* pMax, double* pMean, int bCompute, int nClass, int nDataType);
    /// The same of absolute values, kept apart, and 0 to 1 where that gives -1 to 1. Whether one is kept is told by the
    /// flag of the other form alone, and the sum channel must have a shape.
    int getSpctmRangeAllChannAbs(double* pMin, double* pMax, double* pMean, int bCompute, int nClass, int nDataType);

protected:
    /// Whether the channel has the plane, with T and F above 0; false for null.
    static bool hasSpctmPlane(CMDChannelzk* channel, int nClass, int nDataType);

private:
    struct PlaneSource;
    struct ChannelRanges;

    bool moveOnTo(int iChannel);
    int channelIndex(int iChannel);
    PlaneSource planeSource(int nPhyVirt, int iChannel, CSpctmTrialzk& spectrum, int nClass, int nDataType);
    int rangeOfOne(int nPhyVirt, int iChannel, double* pMin, double* pMax, double* pMean, bool bCompute, bool absolute,
                   int nClass, int nDataType);
    ChannelRanges channelRanges(int nClass, int nDataType, bool absolute, const numeric::PlaneRange& preset);
};

} // namespace megset
