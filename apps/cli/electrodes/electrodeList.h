#pragma once
// The electrodes of a trial, as the command line tells them.

#include "apps/cli/dataset/channelKind.h"
#include "apps/cli/dataset/openDataset.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace megset::cli {

/// An EEG channel. Without an electrode it has no position.
struct ListedElectrode
{
    int channel = 0;  ///< index
    std::string name; ///< of the channel
    int type = 0;     ///< of the channel
    std::string electrode;
    std::string label;
    std::string standard;             ///< name in the table that the position is from
    std::optional<Position> position; ///< mm
    bool found = false;               ///< the position was measured or looked up
    double impedance = 0.0;           ///< kilohm, 0 not measured
};

/// All EEG channels of the trial, in their order.
std::vector<ListedElectrode> listElectrodes(const CMDTrialzk& trial);

void writeElectrodeText(const std::vector<ListedElectrode>& electrodes, std::ostream& out);
/// A JSON object with the keys of docs/commands.md.
void writeElectrodeJson(const std::vector<ListedElectrode>& electrodes, int trial, std::ostream& out);

} // namespace megset::cli
