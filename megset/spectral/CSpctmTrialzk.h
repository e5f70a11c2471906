#pragma once
// What the channels of a trial share for one spectral class. This is the class that is made.

#include "megset/spectral/CSpctmTrial09File.h"

namespace megset {

class CSpctmTrialzk : public CSpctmTrial09File
{
};

} // namespace megset
