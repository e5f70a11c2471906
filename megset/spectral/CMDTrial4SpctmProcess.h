#pragma once
// Normalisation, logarithm and cuts over the spectra of all channels.

#include "megset/spectral/CMDTrial4Spctm.h"

namespace megset {

class CMDTrial4SpctmProcess : public CMDTrial4Spctm
{
};

} // namespace megset
