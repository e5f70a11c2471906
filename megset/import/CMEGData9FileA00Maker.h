#pragma once
// Trials made from other trials.

#include "megset/persistence/CMEGData9FileA00Basic.h"

namespace megset {

class CMEGData9FileA00Maker : public CMEGData9FileA00Basic
{
};

} // namespace megset
