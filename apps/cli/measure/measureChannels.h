#pragma once
// What the signal of channels does in a range of samples.

#include "apps/cli/dataset/openDataset.h"
#include "apps/cli/dataset/sampleRange.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace megset::cli {

struct MeasureOptions
{
    std::vector<std::string> channels; ///< names; none: by kind
    std::string kind = "meg";
    int trial = -1;      ///< -1: the current one
    std::string samples; ///< "A:B"
    std::string ms;      ///< "A:B", ms from the trigger
};

struct MeasuredChannel
{
    int index = 0;
    std::string name;
    std::string unit;
    ChannelStatistics values;
};

struct Measurement
{
    int trial = 0;
    SampleRange range;
    double msFrom = 0.0; ///< from the trigger
    double msTo = 0.0;
    std::vector<MeasuredChannel> channels;
};

/// Minimum, mean, maximum, root mean square and standard deviation of each channel over the range (all samples without
/// one), as CMDChannel::getSelectMinMeaMaxSdV gives them. Throws std::runtime_error.
Measurement measureChannels(OpenDataset& open, const MeasureOptions& options);

void writeText(const Measurement& measurement, std::ostream& out);
/// A JSON object with the keys of docs/commands.md.
void writeJson(const Measurement& measurement, std::ostream& out);

} // namespace megset::cli
