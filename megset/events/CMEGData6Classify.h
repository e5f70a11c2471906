#pragma once
// Triggers, marks, segments and bad channels.

#include "megset/spectral/CMEGData5VirtualSns.h"

namespace megset {

class CMEGData6Classify : public CMEGData5VirtualSns
{
};

} // namespace megset
