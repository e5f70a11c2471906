// Statistics over channels, at every point and as a whole.
#pragma once

#include <span>

namespace megset::numeric {

/// One value per point each; all of one length.
struct ChannelSumPlanes
{
    std::span<double> min;
    std::span<double> mean;
    std::span<double> max;
    std::span<double> positive;
    std::span<double> negative;
    std::span<double> rms;
};

/// The same over all points.
struct ChannelSumTotals
{
    double min = 0.0;
    double mean = 0.0;
    double max = 0.0;
    double positive = 0.0;
    double negative = 0.0;
    double rms = 0.0;
};

/// Reduces n channels, values at the same points each. At every point, with v1, v2, ... the channels' values in turn:
///
///     min, max   start at v1 and follow each v below or above them
///     mean       sum of all v / n
///     positive   sum of the v above 0 / (n / 2)
///     negative   sum of the others / (n / 2)
///     rms        sqrt(v1 * v1 / n)
///
/// The root mean square is of the first channel alone, and the halves of n assume that half of the channels fall on
/// each side; with a single channel nothing is divided and no root is taken, so that rms is v1 * v1. It is all meant
/// so. The totals are formed alike, with the mean over a channel's points of v, of v above 0, of the other v and of
/// v * v in place of v, and their rms is sqrt(sum over all channels / (n / 2)), with one channel its mean square.
///
/// A channel that ends before the planes adds nothing from there on; where the first one has ended the planes start at
/// 0. What reaches past the planes, and a channel without values, is left out (n counts it still). Without channels all
/// is 0. Every sum goes in the order of the channels, and of the points within a channel.
ChannelSumTotals sumChannels(std::span<const std::span<const double>> channels, const ChannelSumPlanes& planes);

} // namespace megset::numeric
