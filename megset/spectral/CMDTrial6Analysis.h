#pragma once
// Wave-analysis results of a trial and their counts. Needs the channels' wave results.

#include "megset/spectral/CMDTrial4SpctmProcess.h"

namespace megset {

/// The trial's layer for results of wave analyses.
class CMDTrial6Analysis : public CMDTrial4SpctmProcess
{
public:
    /// Counts the channels that have an active wave result, and stores the count in m_nWadChannels; the argument is not
    /// read. 0 with nothing stored when the trial has no channel array.
    int getWadChnl(int nUnused);
    /// The largest number of values among the active wave results of that kind, over all channels. Stores it in
    /// m_nWadMaxSample and the count of channels with an active result in m_nWadChannels; both 0 with no channels.
    std::int64_t getWadMaxSample(int nKind);
    /// Whether a channel has a wave result of the class and kind. The first one becomes the current channel when it
    /// lies behind the current one.
    bool hasWaveAnalyzDataX4draw(int nClass, int nKind);
};

} // namespace megset
