#pragma once
// MEG fiducials, frames of the sensors and the region of interest.

#include "megset/core/CMEGData0SensorInfo.h"

namespace megset {

class CMEGData1Localization01Meg : public CMEGData0SensorInfo
{
};

} // namespace megset
