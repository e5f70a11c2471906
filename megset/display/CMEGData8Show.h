#pragma once
// Show state and registered views.

#include "megset/events/CMEGData7Measure.h"

namespace megset {

class CMEGData8Show : public CMEGData7Measure
{
};

} // namespace megset
