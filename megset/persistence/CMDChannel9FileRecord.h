#pragma once
// The channel record of an acquisition file.

#include "megset/persistence/CMDChannel9File.h"

namespace megset {

class CMDChannel9FileRecord : public CMDChannel9File
{
};

} // namespace megset
