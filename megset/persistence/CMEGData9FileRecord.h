#pragma once
// The dataset file of an acquisition.

#include "megset/persistence/CMEGData9FileC.h"

namespace megset {

class CMEGData9FileRecord : public CMEGData9FileC
{
};

} // namespace megset
