#pragma once
// Channels of a trial by index, and steps over all of them. Needs the look-up of CMDTrial0SensorInfo.

#include "megset/spectral/CMDTrial1SourceCoherenc.h"

#include <span>

namespace megset {

struct ChannelStatistics;

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
    /// Whether there is a channel of type 360, the mean of all EEG measure channels. With `create` one is made behind
    /// the others where there is none, as long as the first channel's working and backup samples, with a mean that
    /// counts a shorter channel as zero behind its end; one that is there is not computed anew. 0 without memory ("Not
    /// enough memory!" for the array of channels), without EEG measure channels, or where the first channel lacks
    /// samples.
    int checkInitEegMeaAvrg(int create);
    /// Multiplies the samples of every channel by its MEG sensor's gain (CMDChannel::applyMEGSnsrGainDir2Data); 0 with
    /// no channels.
    int applyMEGSnsrGainDir2Chnls(bool once);
    /// CMDChannel7ProcessX::scaleWaveData on every channel, whatever each gives: the working samples and, with
    /// `alsoBackup`, the raw ones, times the factor. The last argument is not read. 0 with no channels.
    int scaleWaveData(double factor, int alsoBackup, int);
    /// CMDChannel7ProcessX::stimTrigChnl_AbsDc, with its level subtracted, on every trigger channel, whatever each
    /// gives. 0 without an array of channels.
    int setStimTrigChannel2AbsDc(int alsoBackup);
    /// CMDChannel::getSelectMinMeaMaxSdV of all channels in one go: the same numbers to the bit, several times as fast
    /// as channel after channel. out[i] is of channel i, all 0 for one that is absent or has no samples. Gives the
    /// number of channels written: as many as there are and as `out` holds.
    int getAllSelectMinMeaMaxSdV(std::int64_t from, std::int64_t to, std::span<ChannelStatistics> out) const;

private:
    std::unique_ptr<CMDChannelzk> makeEegMeasureAverage() const;
};

} // namespace megset
