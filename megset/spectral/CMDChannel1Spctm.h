#pragma once
// Spectra and frequency data of one channel, by class.

#include "megset/core/CMDChannel0SensorInfo.h"

namespace megset {

class CMDChannel1Spctm : public CMDChannel0SensorInfo
{
};

} // namespace megset
