#pragma once
// Electrode files, and electrodes at their standard places.

#include "apps/cli/dataset/openDataset.h"

#include <filesystem>
#include <string>
#include <vector>

namespace megset::cli {

/// Writes the electrodes of the current trial to a new file; ".epos" is added to a name without an extension. Gives
/// its path. Throws std::runtime_error, also when no channel has an electrode.
std::filesystem::path saveElectrodes(OpenDataset& open, const std::filesystem::path& file);

struct OpenedElectrodes
{
    int given = 0;   ///< electrodes that a channel of the current trial took
    int dropped = 0; ///< those past the trial's last channel
};

/// Throws std::runtime_error for a file that can't be read from its first byte to its last.
void checkElectrodeFile(const std::filesystem::path& file);

/// Gives the electrodes of a file to the current trial, or to all. The host is asked when the trial has another number
/// of channels. Throws std::runtime_error, with nothing changed, when the answer is No.
OpenedElectrodes openElectrodes(OpenDataset& open, const std::filesystem::path& file, bool all);

/// The tables of standard places, by their names.
const std::vector<std::string>& electrodeTables();

struct PlacedElectrodes
{
    int placed = 0;
    std::vector<std::string> missed; ///< channels whose names are in no table
};

/// Puts the electrodes of the EEG channels to the standard places of their names, whose case doesn't count: first by
/// `table`, one of electrodeTables(), then by the other. A channel without an electrode gets one. Gives the numbers of
/// the last trial. Throws std::runtime_error when no name of a trial is in a table, with that trial unchanged.
PlacedElectrodes placeElectrodes(OpenDataset& open, const std::string& table, bool all);

} // namespace megset::cli
