#pragma once
// Which channels a command works on, as its options tell.

#include "megset/core/CMDTrialzk.h"

#include <string>
#include <vector>

namespace megset::cli {

/// The channel with that working or raw name, compared in full; else the one with that name up to the first "-", as the
/// site's suffix in recordings ("MLC11" for "MLC11-2908"). Throws std::runtime_error that suggests the nearest names.
int channelNamed(const CMDTrialzk& trial, const std::string& name);

/// Channels of these names, in this order; without names those of the kind "meg", "ref", "eeg", "trigger", "other" or
/// "all", in the trial's order.
std::vector<int> selectChannels(const CMDTrialzk& trial, const std::vector<std::string>& names,
                                const std::string& kind);

/// The kinds that selectChannels knows.
const std::vector<std::string>& channelKinds();

} // namespace megset::cli
