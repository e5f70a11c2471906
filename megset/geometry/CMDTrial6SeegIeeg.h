#pragma once
// SEEG probes of a trial.

#include "megset/spectral/CMDTrial6IcaFace.h"

namespace megset {

class CMDTrial6SeegIeeg : public CMDTrial6IcaFace
{
};

} // namespace megset
