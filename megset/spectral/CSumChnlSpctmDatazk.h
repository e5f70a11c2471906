#pragma once
// Statistics over the channels of a trial for one spectral class and data type. This is the class that is made.

#include "megset/spectral/CSumChnlSpctmData09File.h"

namespace megset {

class CSumChnlSpctmDatazk : public CSumChnlSpctmData09File
{
};

} // namespace megset
