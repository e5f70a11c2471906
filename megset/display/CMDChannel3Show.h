#pragma once
// The fast-draw buffer of one channel.

#include "megset/spectral/CMDChannel2WaveAnalyz.h"

namespace megset {

class CMDChannel3Show : public CMDChannel2WaveAnalyz
{
};

} // namespace megset
