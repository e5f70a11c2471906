#pragma once
// The trial file of an acquisition.

#include "megset/persistence/CMDTrial9FileB.h"

namespace megset {

class CMDTrial9FileBRecord : public CMDTrial9FileB
{
};

} // namespace megset
