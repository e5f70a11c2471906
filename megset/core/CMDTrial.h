#pragma once
// The bottom of the trial chain: an epoch of recorded data, its channels, and all fields of the layers above, which add
// operations and no fields.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/SlotArray.h"
#include "megset/records/records.h"

#include <cstdint>
#include <memory>

namespace megset {

class CMDChannelzk;
class CSpctmTrialzk;

/// All channels of a trial have the same number of samples. An index of -1 stands for the current channel.
class CMDTrial
{
public:
    CMDTrial();
    CMDTrial(const CMDTrial&) = delete;
    CMDTrial& operator=(const CMDTrial&) = delete;
    virtual ~CMDTrial();

    // Channels

    /// The channel, or null when the index is out of range or its place is empty.
    CMDChannelzk* getChannel(int index) const;
    const SlotArray<CMDChannelzk>& getAllChannelPt() const { return m_ppChannel; }
    /// 0 when there is no array.
    int getTotalChannel() const;
    /// The current index, brought into range first; -1 with no channels.
    int getCurntChnlIndx();
    /// 0 with nothing changed when out of range, and for -1.
    int setCurrentChannel(int index);
    /// Makes the first channel current whose working name contains the text, and gives its index; -1 when there is
    /// none.
    int setCurrentChannel2Name(const CString& text);
    /// The same for the first channel with that place in the MEG or EEG list; 0 with no channels.
    int setCurntChannel2MegListID(int id);
    int setCurntChannel2EegListID(int id);
    /// Sets the channel's place in the MEG list; 0 when out of range.
    int setSensorListID(int index, int id);
    /// The channel type, -1 when out of range.
    int getChannType(int index) const;
    /// The working name; "Unknown" when it is empty or the index out of range.
    CString getChannelName(int index) const;
    int setChannelName(const CString& name, int index, bool raw);
    /// Sets the MEG sensor's position in mm; 1 with no sensor, 0 when out of range.
    int setChannelPos(int index, double x, double y, double z);
    /// CMDChannel::setSizeData with a count of 32 bits; 0 when out of range.
    int setChannelSizeData(std::uint32_t n, double* data, int index);
    /// The channel's working array; 0 with null when out of range.
    int getChannMEGDataS(double** out, int index) const;
    /// The working array of the first channel whose working name contains the text, else null.
    double* getChannMEGData4Name(const CString& text) const;
    /// Copies working to backup on every channel, and gives the number of channels done.
    int backupAllChnlData();

    // The trial itself

    int isGoodTrial() const { return m_nGoodTrial; }
    /// Gives what it stored.
    int setTrialGood(bool good);
    /// Whether the trial was computed, and not recorded.
    int isVirtualTrial() const { return m_nVirtualTrial; }
    CHeadLocalizationzk* getTrialHeadLocat() { return &m_headLocalization; }

    // Triggers: the channels of type 600, in order

    /// The first sample whose value, cut to an int, equals `value`: its index, and the samples from it on. 0 when there
    /// is none.
    int find1stTrig(int value, int& pos, int& rest) const;
    /// The same over a caller's block, channel after channel, where channel k begins at k times its own count.
    int find1stTrigHD(int value, int& pos, int& rest, const std::int32_t* data) const;
    /// Whether find1stTrig finds the value.
    int isSameTrig(int value) const;

    /// Ends the channels; the trial has none then. Gives 1.
    int _cleanTrialChannels();

    // Fields, in the order in which the chain declares them.

    int m_nCurrentChannel = 0;
    int m_nTotalChannel = 0; ///< places of the array below
    SlotArray<CMDChannelzk> m_ppChannel;
    CHeadLocalizationzk m_headLocalization;

    std::int64_t m_nTrigMarkFirst = -1; ///< trigger mark of the trial, carried for applications
    std::int64_t m_nTrigMarkLast = 0;
    std::int64_t m_nTrigMarkPoint = 0;
    double m_dTrigMarkValue = 0.0;
    int m_nTrigMarkCode = 0;
    CString m_strTrigMarkName; ///< compared with names of markers, ignoring case

    CContourMap2DInfozk m_megContour; ///< extents of the MEG coils in mm and of their plane
    CContourMap2DInfozk m_eegContour; ///< the same for electrodes; not filed

    std::unique_ptr<CFaceVolumSourceImagezk> m_pVolumeSrc;
    std::unique_ptr<CFaceVolumSourceCoherenceImagezk> m_pVolumeSrcCoh;
    std::unique_ptr<CSpctmTrialzk> m_pSpctmTrialA; ///< spectra: active, control, result
    std::unique_ptr<CSpctmTrialzk> m_pSpctmTrialC;
    std::unique_ptr<CSpctmTrialzk> m_pSpctmTrialR;
    std::unique_ptr<CFreqDataTrialzk> m_pFreqDataTrialA;
    std::unique_ptr<CFreqDataTrialzk> m_pFreqDataTrialC;
    std::unique_ptr<CFreqDataTrialzk> m_pFreqDataTrialX;
    std::unique_ptr<CSnsCohFacezk> m_pCohFaceTime;
    std::unique_ptr<CGroupMeegCxcFacezk> m_pGroupCxc; ///< lives until the trial ends
    std::unique_ptr<CMEGSpctmCCDataFacezk> m_pSpctmCCFace;
    CPkgFaceVirtChnlWavezk m_pkgVirtWave;
    std::unique_ptr<CFaceVirtChnlSpctmzk> m_pVirtSpctm;
    std::unique_ptr<CSrcCohFacezk> m_pSrcCohFace;
    std::unique_ptr<CFaceIcazk> m_pFaceIca;
    CTrlWaveAnalyzedResultzk m_waveResult;
    int m_nWadChannels = 0;           ///< channels with an active wave result, as last counted
    std::int64_t m_nWadMaxSample = 0; ///< their largest sample count

    int m_bMontageCrDone = 0; ///< the common-reference montage has been applied
    int m_bMontageIrDone = 0; ///< the individual-reference montage has been applied
    std::unique_ptr<CMtgUnit4CommonRefzk> m_pMontageCr;
    CTypedPtrArray<CMtgUnit4IndividualRefzk> m_aMontageIr;

    CTypedPtrArray<CSeegProbezk> m_aSeegProbe;
    int m_nCurrentSeegProbe = 0;

    int m_bTrialResampled = 0;             ///< the samples have been re-sampled
    std::int64_t m_nTrialResampleStep = 1; ///< every n-th sample was kept
    int m_nGoodTrial = 1;
    int m_nMegPlaneDone = 0;            ///< the MEG layout on the plane is valid
    int m_nEegPlaneDone = 0;            ///< the EEG layout on the plane is valid
    int m_nVirtualTrial = 0;            ///< not 0 for a computed trial
    int m_nTrialKind = 0;               ///< 1 recorded, 2 imported virtual; others are the maker's
    std::int64_t m_nTrialIndex = 0;     ///< place in the dataset when the trial was added
    std::int64_t m_nTrialReservedA = 0; ///< carried through the file
    int m_nTrialReservedB = 1;          ///< also the presence word of the common-reference unit in the file
    int m_nTrialReservedC = 0;          ///< carried through the file
    CString m_strTrialName;
    CString m_strTrialFilePath; ///< the file that holds the trial, full path in library form

private:
    int getTotalVirtChannel() const { return 0; }
};

} // namespace megset
