#pragma once
// Spectra of a trial's channels: computed with wavelets, and kept by the library.

#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/dataset/sampleRange.h"
#include "apps/spectrum/FrequencyAxis.h"

#include <string>
#include <vector>

namespace megset::cli {

/// Index of a class of spectra: "active" 0, "control" 1, "result" 2.
int spectrumClass(const std::string& name);
/// Index of a data type: "real" 0, "imaginary" 1, "magnitude" 2, "phase" 3.
int spectrumType(const std::string& name);

struct SpectrumRequest
{
    spectrum::FrequencyAxis axis;
    double cycles = 7.0;
    int classIndex = 0;
    std::vector<std::string> channels; ///< names; none: by kind
    std::string kind = "meg";
    std::string samples;     ///< "A:B"; empty: all
    std::int64_t step = 0;   ///< samples from one time point to the next; 0: some 20 ms
    std::int64_t edge = 0;   ///< samples left out at each end of the range
    bool accumulate = false; ///< add to the planes that are there
};

/// Gives the number of channels that planes of the class were computed for. All four data types are made, and a backup.
/// Planes that are added to must have the same shape; other channels' planes of the class go when its times or
/// frequencies become others. Throws std::runtime_error.
int computeSpectra(CMDTrialzk& trial, double rate, const SpectrumRequest& request);

} // namespace megset::cli
