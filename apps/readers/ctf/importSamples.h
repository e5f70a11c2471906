#pragma once
// The samples of a CTF recording into the trial files of its dataset.

#include "apps/readers/ctf/openCtf.h"

namespace megset {
class CMEGDatazk;
}

namespace megset::ctf {

/// How many threads an import takes by itself: as many as there are processors, up to four, as long as there are trials
/// for them and what they hold at once stays below 256 MB.
int importThreads(const Recording& recording);

/// Makes the trials of the recording out of a dataset that has the recording's information and one trial, the first,
/// with all channels and no samples, in memory and in its file. All trials of a recording have the same channels: each
/// thread fills a trial of its own with the samples of one after the other, and writes each to its file, once. The
/// files hold the same bytes for any number of threads. The dataset has all trials then, none of them in memory, and
/// the last one is current.
///
/// The first fault ends it: CtfError when a trial can't be read, held or saved, or the exception of the file that could
/// not be written. What the library has to say is shown by the thread that meets it. Files that were written stay.
void importSamples(Recording& recording, CMEGDatazk& dataset, int threads);

} // namespace megset::ctf
