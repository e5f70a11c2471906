#pragma once
// Triggers, marks, segments and bad channels.

#include "megset/spectral/CMEGData5VirtualSns.h"

namespace megset {

class CMEGData6Classify : public CMEGData5VirtualSns
{
public:
    /// The MEG measure channels of the current trial, which is opened, shown or not; with `goodOnly` without the bad
    /// ones. 0 without trial or channels.
    int getTotalMEGChannelMeasure(bool goodOnly);
};

} // namespace megset
