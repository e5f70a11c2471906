#pragma once
// Import of recordings of Neuromag systems.

#include "megset/import/CMEGData9FileA01CtfMISL.h"

namespace megset {

class CMEGData9FileA02Neuromag : public CMEGData9FileA01CtfMISL
{
};

} // namespace megset
