#pragma once
// Spectra of the current trial, seen from the dataset.

#include "megset/processing/CMEGData2Process.h"

namespace megset {

class CMEGData3Spctm : public CMEGData2Process
{
};

} // namespace megset
