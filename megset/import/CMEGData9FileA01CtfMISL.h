#pragma once
// Import of recordings of CTF systems.

#include "megset/import/CMEGData9FileA00Maker.h"

namespace megset {

class CMEGData9FileA01CtfMISL : public CMEGData9FileA00Maker
{
};

} // namespace megset
