#pragma once
// What the trigger channels of one trial hold, and how it becomes occurrences. Internal to events/.

#include "megset/records/markers/CMarkerManager.h"

#include <cstdint>
#include <vector>

namespace megset {

class CMDTrialzk;

/// Each of them defines its marks by its own rule: on the same data they differ, and are meant to.
enum class TriggerScan
{
    None,
    Plain,  ///< |x - mean| > threshold; a run of such samples is one occurrence, a gap ends it
    Pro,    ///< after stimTrigChnl_AbsDcM, x > threshold; each sample of a run begins an occurrence of its own, and one
            ///< behind a gap extends the occurrence before it
    AbsDc,  ///< the same after stimTrigChnl_AbsDc
    AbsDcM, ///< the same as Pro
};

/// An occurrence as the scan found it.
struct FoundTrigger
{
    int channel = 0;
    bool isExtended = false;
    int value = 0;     // of its first sample, cut
    int lastValue = 0; // of its last one
    std::int64_t first = 0;
    std::int64_t last = 0;
};

/// What the scan of one trial found.
struct ScannedTrial
{
    CString info;             // the trial's name, and the range of each trigger channel
    std::int64_t samples = 0; // of the trial's current channel: none is scanned further
    bool hasTooMany = false;  // and so the triggers found are not all
    std::vector<FoundTrigger> triggers;
};

/// Whether there is a first channel, without which nothing is scanned.
bool canScan(const CMDTrialzk* trial);

/// Scans the trigger channels in order, up to `most` triggers. All but Plain leave the working samples conditioned.
ScannedTrial scanTriggers(CMDTrialzk& trial, TriggerScan scan, double threshold, std::size_t most);

/// How sample numbers become times, and what re-sampling has done to them.
struct SampleClock
{
    double rate = 1.0; // Hz
    std::int64_t resampleFactor = 1;
};

/// The occurrence, in trial 0. The begin sample of an extended one is its last sample, while its begin time stays; its
/// end time is in seconds: both are meant so. The end of any other is 0.
MarkTrigClass occurrenceOf(const FoundTrigger& trigger, const SampleClock& clock);

/// Appends a marker with this one occurrence. 1, or 0 without memory.
int addFoundMarker(CMarkerManager& to, const FoundTrigger& trigger, std::int64_t samples, const SampleClock& clock);

} // namespace megset
