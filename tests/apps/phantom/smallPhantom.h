#pragma once
// The phantom that most tests look at.

#include "apps/phantom/phantom.h"

namespace megset::phantom {

/// A small recording: 62 channels of other kinds and two gradiometers.
inline PhantomOptions small()
{
    PhantomOptions options;
    options.trials = 3;
    options.seconds = 0.5;
    options.rate = 600;
    options.channels = 2;
    return options;
}

} // namespace megset::phantom
