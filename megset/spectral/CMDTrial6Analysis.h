#pragma once
// Wave-analysis results of a trial and their counts.

#include "megset/spectral/CMDTrial4SpctmProcess.h"

namespace megset {

class CMDTrial6Analysis : public CMDTrial4SpctmProcess
{
};

} // namespace megset
