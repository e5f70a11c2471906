#pragma once
// Electrode and SEEG information files.

#include "megset/persistence/CMEGData9FileB.h"

namespace megset {

class CMEGData9FileC : public CMEGData9FileB
{
};

} // namespace megset
