#pragma once
// What a dataset is, as the command line tells it.

#include "apps/cli/dataset/channelKind.h"
#include "apps/cli/dataset/openDataset.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace megset::cli {

struct TrialInfo
{
    int index = 0;
    std::string name;
    std::string file; ///< where it is; the stored path when it isn't found
    bool found = false;
    bool isVirtual = false; ///< computed, not recorded
    bool good = true;
    int channels = 0;
    std::int64_t samples = 0;
    std::uint64_t bytes = 0;
};

struct ChannelInfo
{
    int index = 0;
    std::string name;
    std::string rawName;
    int type = -1;
    std::string typeName;
    std::string kind;
    std::string geometry;
    std::string unit;
    bool good = true;
    bool shown = true;
    std::optional<Position> position; ///< mm, working frame
    std::optional<int> gradientOrder;
};

/// A marker: a kind of mark, and how often it occurs.
struct MarkInfo
{
    std::string list; ///< "trigger", "mark", "segment", "class", ...
    std::string name;
    std::int64_t value = 0;
    int count = 0;
};

struct DatasetInfo
{
    std::string file;
    std::string session;
    int currentTrial = -1;
    double rate = 0.0; ///< Hz
    std::int64_t samples = 0;
    std::int64_t preTrigger = 0;
    double rawRate = 0.0; ///< as recorded
    std::int64_t rawSamples = 0;
    std::int64_t rawPreTrigger = 0;
    std::int64_t resamplingFactor = 1;
    int averages = 0;
    std::string frame;      ///< that the MEG sensors work in
    double filterLow = 0.0; ///< Hz, pass band of the samples
    double filterHigh = 0.0;
    std::uint64_t bytes = 0; ///< of the dataset's own file
    std::vector<TrialInfo> trials;
    std::vector<ChannelInfo> channels; ///< of the current trial; none when it isn't found
    std::vector<MarkInfo> marks;
    std::vector<std::string> processing; ///< what was done to the current trial, a sentence each
};

/// Of each trial's file the beginning is read, of none but the current trial the samples.
DatasetInfo collectInfo(OpenDataset& open);

void writeText(const DatasetInfo& info, std::ostream& out);
/// A JSON object with the keys of docs/commands.md.
void writeJson(const DatasetInfo& info, std::ostream& out);

} // namespace megset::cli
