#pragma once
// Channels in the words of the command line.

#include "megset/core/CMDChannelzk.h"

#include <optional>
#include <string_view>

namespace megset::cli {

/// "meg", "ref", "eeg", "trigger" or "other", by the channel's type.
std::string_view channelKind(const CMDChannelzk& channel);

/// Unit of the samples: "fT" for MEG and its references, "uV" for EEG, else empty: the recording's own.
std::string_view channelUnit(const CMDChannelzk& channel);

/// "sensor", "electrode", "stimulus", "input", "accelerator" or "none", by the channel's geometry.
std::string_view geometryName(const CMDChannelzk& channel);

struct Position
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// Where the channel's first coil or its electrode is, in mm in the working frame; nothing for other channels.
std::optional<Position> positionOf(const CMDChannelzk& channel);

/// The order of gradient noise reduction, 0 to 3, of a channel with a MEG sensor.
std::optional<int> gradientOrder(const CMDChannelzk& channel);

} // namespace megset::cli
