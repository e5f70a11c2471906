#pragma once
// The spectrum of one channel for one spectral class, and arithmetic between channels. This is the class that is made.

#include "megset/spectral/CSpctmChnl09File.h"

namespace megset {

class CSpctmChnlzk : public CSpctmChnl09File
{
};

} // namespace megset
