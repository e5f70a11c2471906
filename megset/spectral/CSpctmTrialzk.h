#pragma once
// What the channels of a trial share for one spectral class. This is the class that is made.

#include "megset/spectral/CSpctmTrial09File.h"

namespace megset {

/// What the channels of a trial share for one class: axes, selection, sum channels. This is the class that is made.
class CSpctmTrialzk : public CSpctmTrial09File
{
};

} // namespace megset
