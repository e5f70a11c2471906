#pragma once
// Work on a channel's spectrum in place: cuts, normalisations, transforms, statistics of a selection.
// Needs the planes of CSpctmChnl.

#include "megset/spectral/CSpctmChnl01Function.h"

namespace megset {

class CSpctmChnl03Process : public CSpctmChnl01Function
{
};

} // namespace megset
