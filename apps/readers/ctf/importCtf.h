#pragma once
// A CTF recording into a dataset on disk, through the import operations of the library.

#include "apps/readers/ctf/openCtf.h"

#include <string>
#include <vector>

namespace megset {
class CDocument;
class CMEGDatazk;
} // namespace megset

namespace megset::ctf {

/// Makes the dataset of a recording: trial files in the folder of the document, named by its title, with sensors,
/// electrodes and samples in the units of the library; recording information, coefficients and fiducials; good flags,
/// bad trials, bad segments and markers. Channels keep their order and the names that they were recorded with. All
/// trials are in their files at the end; the dataset's own file is left to the caller.
///
/// Memory holds one trial for each of the threads, of which 0 means as many as suit recording and machine. Gives
/// sentences about what was left out. Throws CtfError when samples can't be read, and when the dataset can't be made;
/// what the library had to say was shown then. Files that were written stay.
std::vector<std::string> importCtf(Recording& recording, CMEGDatazk& dataset, CDocument& document, int threads = 0);

} // namespace megset::ctf
