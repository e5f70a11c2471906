#pragma once
// Reduction of spectra over channels and trials.

#include "megset/spectral/CMEGData3Spctm.h"

namespace megset {

class CMEGData4SpctmProcess : public CMEGData3Spctm
{
};

} // namespace megset
