#pragma once
// Layout of the sensors of a trial on a plane.

#include "megset/spectral/CMDTrial7Coh02SpctmData.h"

namespace megset {

class CMDTrial8Show : public CMDTrial7Coh02SpctmData
{
};

} // namespace megset
