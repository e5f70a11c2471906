#include "megset/numeric/channelSums.h"

#include "megset/numeric/channelSumsLoops.h"

namespace megset::numeric {

ChannelSumTotals sumChannels(std::span<const std::span<const double>> channels, const ChannelSumPlanes& planes)
{
    static const ChannelSumsLoops& loops = channelSumsLoops(currentProcessorPath());
    return sumChannels(channels, planes, loops);
}

} // namespace megset::numeric
