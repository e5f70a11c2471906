#pragma once
// The lists of virtual sensors.

#include "megset/spectral/CMEGData4SpctmProcess.h"

namespace megset {

class CMEGData5VirtualSns : public CMEGData4SpctmProcess
{
};

} // namespace megset
