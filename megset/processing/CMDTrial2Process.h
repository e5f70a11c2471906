#pragma once
// Channels of a trial by index, and steps over all of them. Needs the look-up of CMDTrial0SensorInfo.

#include "megset/spectral/CMDTrial1SourceCoherenc.h"

namespace megset {

/// An index of -1 stands for the current channel; null or 0 when out of range.
class CMDTrial2Process : public CMDTrial1SourceCoherenc
{
public:
    double* getChannMEGData(int index) const;
    double* getChnlBkData(int index) const;
    std::int64_t getChnlBkDataSz(int index) const;
    std::int64_t getTotalSample(int index) const;
    /// The first channel whose working name contains the text, -1 when there is none.
    int findChnlID4NameS(const CString& text) const;
    /// Multiplies the samples of every channel by its MEG sensor's gain (CMDChannel::applyMEGSnsrGainDir2Data); 0 with
    /// no channels.
    int applyMEGSnsrGainDir2Chnls(bool once);
};

} // namespace megset
