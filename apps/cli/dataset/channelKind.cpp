#include "apps/cli/dataset/channelKind.h"

#include "megset/records/records.h"

#include <array>

namespace megset::cli {

std::string_view channelKind(const CMDChannelzk& channel)
{
    if (channel.isMEGReferenceChannel())
        return "ref";
    if (channel.isMEGChannel())
        return "meg";
    if (channel.isEEGChannel())
        return "eeg";
    return channel.isTriggerChannel() ? "trigger" : "other";
}

std::string_view channelUnit(const CMDChannelzk& channel)
{
    if (channel.isMEGChannel())
        return "fT";
    return channel.isEEGChannel() ? "uV" : "";
}

std::string_view geometryName(const CMDChannelzk& channel)
{
    constexpr std::array<std::string_view, 6> names = {"none",     "sensor", "electrode",
                                                       "stimulus", "input",  "accelerator"};
    const int type = channel.getGeomType();
    return type >= 0 && type < static_cast<int>(names.size()) ? names[static_cast<std::size_t>(type)] : names[0];
}

std::optional<Position> positionOf(const CMDChannelzk& channel)
{
    constexpr int workingFrame = -1;
    Position position;
    if (const CMEGSensorzk* const sensor = channel.getMEGSensorzk()) {
        sensor->getSnsPos(workingFrame, 0, position.x, position.y, position.z);
        return position;
    }
    if (const CEEGelectrodezk* const electrode = channel.getEegElectrode(0)) {
        electrode->getElectrodePositionD(position.x, position.y, position.z);
        return position;
    }
    return std::nullopt;
}

std::optional<int> gradientOrder(const CMDChannelzk& channel)
{
    const CMEGSensorzk* const sensor = channel.getMEGSensorzk();
    return sensor != nullptr ? std::optional(sensor->getGradOrderNo()) : std::nullopt;
}

} // namespace megset::cli
