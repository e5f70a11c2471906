#pragma once
// The trial that is made: its channels as a whole.

#include "megset/persistence/CMDTrial9FileBRecord.h"

namespace megset {

/// The trial that is made; it closes the chain of the trial.
class CMDTrialzk : public CMDTrial9FileBRecord
{
public:
    /// Replaces the channels, with their spectra, by n new ones, and makes the first current. 0 with no channels left
    /// for n < 1, and without memory ("Not enough memory?").
    int allocateChannels(int n);
    /// Copies the raw samples back on each channel that is MEG with `meg`, EEG with `eeg`, or any with `others`;
    /// `unused` is not read. Gives 1; 0 with no channels.
    int copyRawData(bool meg, bool eeg, bool unused, bool others);
    /// Takes over what the trial's channels are from another trial (CMDChannelzk::copyChannelInfo), channel by channel
    /// as far as both have them, and the head localisation. 0 for null, for a trial without channels, or when a channel
    /// can't be copied.
    int copyTrialInfo(const CMDTrialzk* source);
    /// Fills the channels from a block, channel after channel, making them anew when their number differs. 0 for fewer
    /// than 1 channel or sample, null data, or without memory.
    int setChnlWaveData(int channels, std::int64_t samples, const double* data);

    /// EEG electrodes, by raw channel name, by a read list, and by electrode number. 1 either way; 0 with no channels
    /// or null.
    int setEEG_electrodes(const CEEGelectrodezk* electrode);
    int setEEG_electrodesPositionMe(CPtrArray* positions);
    int setEEG_electrodesPositionPohemus(int id, double x, double y, double z);
};

} // namespace megset
