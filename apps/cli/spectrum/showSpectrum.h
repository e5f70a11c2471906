#pragma once
// Reads a time-frequency plane out of a dataset.

#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/spectrum/spectrumMap.h"

#include <iosfwd>
#include <string>

namespace megset::cli {

struct ShowRequest
{
    int classIndex = 0;
    int type = 2; ///< magnitude
    int trial = -1;
    std::string channel;      ///< empty: a sum over channels
    std::string sum;          ///< "mean", "min", "max", "positive", "negative" or "rms"; empty: "mean"
    std::string kind = "meg"; ///< channels of the sum: "meg", "eeg" or "all"
};

/// The plane with latencies in ms from the trigger and frequencies in Hz. Throws std::runtime_error where there is
/// none.
SpectrumMap readSpectrum(OpenDataset& open, const ShowRequest& request);

/// The extent of the plane, its smallest and largest value, and where these are.
void writeText(const SpectrumMap& map, std::ostream& out);
/// A JSON object with the keys of docs/commands.md.
void writeJson(const SpectrumMap& map, std::ostream& out);

} // namespace megset::cli
