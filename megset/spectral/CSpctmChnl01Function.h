#pragma once
// Planes derived from a channel's spectrum, and values of single frequencies.
// Needs the planes of CSpctmChnl.

#include "megset/spectral/CSpctmChnl.h"

namespace megset {

class CSpctmChnl01Function : public CSpctmChnl
{
};

} // namespace megset
