#pragma once
// Measurement over selections.

#include "megset/events/CMEGData6Classify.h"

namespace megset {

class CMEGData7Measure : public CMEGData6Classify
{
};

} // namespace megset
