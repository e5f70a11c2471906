#pragma once
// The same simulated recording as phantom.h, in the form of an acquisition: a dataset file .mega, and a file .trla for
// each trial beside it. See docs/phantom.md.

#include "apps/phantom/phantom.h"

namespace megset::phantom {

/// Writes `file`, whose name ends with .mega, with its trials, STEMTrialN.trla, and STEM_truth.json. Imported, they
/// give what the CTF form gives but for the coefficients, of which an acquisition has none. Equal options and names
/// give equal bytes in every folder: the folder that the files tell is one of a system that isn't there. Throws as
/// writePhantom does; then nothing is left behind, and no file that exists is written over.
PhantomReport writeAcquisition(const std::filesystem::path& file, const PhantomOptions& options = {});

} // namespace megset::phantom
