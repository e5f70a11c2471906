#pragma once
// Finds the stimuli on the trigger channels of a dataset.

#include "apps/cli/dataset/openDataset.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace megset::cli {

struct TriggerRequest
{
    int mode = 0; ///< of the library's scans: 0 plain, 1 pro, 2 absdc, 3 absdcm
    std::optional<double>
        threshold;               ///< nothing: half the range of the trial's trigger channels, for the other modes 0.5
    std::string prefix = "Trig"; ///< of the markers' names
    bool keep = false;           ///< add to the triggers that are there
};

struct FoundTrigger
{
    int trial = 0;
    int channel = 0;
    std::string name; ///< of its marker
    std::int64_t value = 0;
    std::int64_t sample = 0; ///< first one of the pulse
    std::int64_t length = 1; ///< samples
    double ms = 0.0;         ///< from the trial's trigger point
};

struct TriggerFindings
{
    std::vector<FoundTrigger> triggers;
    std::vector<std::string> notes; ///< sentences: what keeps triggers from being found
};

/// Scans all trials as the library does a single one, and keeps what was found as markers of the trigger manager, each
/// occurrence with its own trial and first sample. Trigger channels that a scan conditions get their samples back.
/// Throws std::runtime_error with the library's words, also where all trials together have more triggers than the
/// library takes from a dataset.
TriggerFindings scanTriggers(OpenDataset& open, const TriggerRequest& request);

void writeTriggerText(const std::vector<FoundTrigger>& triggers, std::ostream& out);
void writeTriggerJson(const std::vector<FoundTrigger>& triggers, std::ostream& out);
/// The columns onset, duration, trial_type, value and sample of the Brain Imaging Data Structure, for trials that stand
/// one behind another: onset and duration in s, sample from 0.
void writeTriggerTsv(const std::vector<FoundTrigger>& triggers, const CMEGDatazk& dataset, std::ostream& out);

} // namespace megset::cli
