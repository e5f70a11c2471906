#pragma once
// Changes of the SEEG probes of a trial, by the library's operations.

#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/seeg/probeNames.h"

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace megset::cli {

struct NewProbe
{
    std::string name;
    std::array<double, 3> base{}; ///< outside, mm
    std::array<double, 3> tip{};  ///< inside, mm
    std::string type = "8P";      ///< one of probeTypes()
    int contacts = 2;             ///< of the type "user"
    double distance = 3.5;        ///< of the type "user", mm
};

/// Appends the probe, which is current then, with its contacts named NAME1 from the tip on. Gives their number. Throws
/// std::runtime_error, with nothing changed: a name that is there, base and tip in one place, values out of range.
int addProbe(CMDTrialzk& trial, const NewProbe& probe);

/// Ends a probe. The channels of its contacts stay what they are. Throws std::runtime_error.
void removeProbe(CMDTrialzk& trial, const std::string& name);

/// Makes each channel the one that records its contact. A channel that another contact had is that one's no more.
/// All names are looked up before anything is changed. Throws std::runtime_error, also when the host said No to a new
/// electrode.
void assignContacts(CMDTrialzk& trial, const std::vector<Assignment>& assignments);

/// Writes the probes of the current trial to a new file; ".seeg" is added to a name without an extension. Gives its
/// path. Throws std::runtime_error, also when there are no probes.
std::filesystem::path saveProbes(OpenDataset& open, const std::filesystem::path& file);

/// Throws std::runtime_error for a file that can't be read from its first byte to its last.
void checkProbeFile(const std::filesystem::path& file);

/// Replaces the probes of the current trial, or of all trials, by those of a file. Gives their number. Throws
/// std::runtime_error.
int openProbes(OpenDataset& open, const std::filesystem::path& file, bool all);

} // namespace megset::cli
