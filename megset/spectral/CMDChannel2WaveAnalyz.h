#pragma once
// Wave-analysis results of one channel, by class.

#include "megset/spectral/CMDChannel1Spctm.h"

namespace megset {

class CMDChannel2WaveAnalyz : public CMDChannel1Spctm
{
};

} // namespace megset
