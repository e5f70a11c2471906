// A re-sampled copy of a dataset as a dataset of its own, with files of its own.
#pragma once

#include <cstdint>

namespace megset {

class CMEGDatazk;

/// What a copy is made of.
struct ResampledCopy
{
    bool allTrials = true; ///< or the current one alone
    bool average = false;  ///< the mean of each run of samples instead of its first
    std::int64_t factor = 1;
    double sampleRate = 1.0; ///< what the copy tells as its rate, Hz
};

/// Whether a copy with that factor can be made; one below 1 counts as 1. 0 with the message of
/// CMEGData2Process::checkResampleFactor or with "Resampled data size (%I64d) is too small".
int checkResampledCopy(const CMEGDatazk& source, std::int64_t factor);

/// Fills `made`, a new dataset that has its folder, with re-sampled trials "<name>ReSampl" in files
/// "<folder><name>.trl"; another trial's file is never overwritten: such a name gets "_1", "_2" and so on before its
/// extension. Trials of the source that can't be opened or have no channels are passed over. The copy takes its data
/// for the recording, so that there is no way back to the source's rate. 1; 0 without memory, with the trials made so
/// far.
int copyResampled(CMEGDatazk& source, CMEGDatazk& made, const ResampledCopy& how);

} // namespace megset
