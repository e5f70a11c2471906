#pragma once
// EEG fiducials and electrode positions.

#include "megset/geometry/CMEGData1Localization01Meg.h"

namespace megset {

class CMEGData1Localization02Eeg : public CMEGData1Localization01Meg
{
};

} // namespace megset
