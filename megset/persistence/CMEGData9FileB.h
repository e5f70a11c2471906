#pragma once
// The dataset file, text export and exchange.

#include "megset/import/CMEGData9FileA02Neuromag.h"

namespace megset {

class CMEGData9FileB : public CMEGData9FileA02Neuromag
{
};

} // namespace megset
