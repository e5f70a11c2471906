#pragma once
// Statistics over the channels of a trial for one spectral class and data type. This is the class that is made.

#include "megset/spectral/CSumChnlSpctmData09File.h"

namespace megset {

/// A sum channel, planes of T x F statistics over the channels of a trial; this is the class that is made.
class CSumChnlSpctmDatazk : public CSumChnlSpctmData09File
{
};

} // namespace megset
