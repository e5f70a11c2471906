#pragma once
// Changes of the spectra of a trial, by the library's operations.

#include "apps/cli/dataset/openDataset.h"

#include <optional>
#include <string>

namespace megset::cli {

/// One of these.
struct SpectrumChange
{
    int classIndex = 0;
    int type = 2;         ///< data type; `law` "rms" and `scale` go to all of them
    std::string baseline; ///< "A:B", ms from the trigger
    bool logarithm = false;
    std::string law; ///< "rms", "max" or "mean"
    std::optional<double> scale;
    std::string cut; ///< "LOW:HIGH"
    bool reload = false;
};

/// Throws std::runtime_error for a trial without spectra of the class.
void changeSpectra(CMEGDatazk& dataset, CMDTrialzk& trial, const SpectrumChange& change);

} // namespace megset::cli
