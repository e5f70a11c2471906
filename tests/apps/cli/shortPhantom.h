#pragma once
// The phantom that the tests of importing import.

#include "apps/phantom/phantom.h"

namespace megset::cli {

/// 3 trials of a tenth of a second.
inline phantom::PhantomOptions shortPhantom()
{
    phantom::PhantomOptions options;
    options.trials = 3;
    options.seconds = 0.1;
    options.preTriggerSeconds = 0.02;
    options.channels = 10;
    return options;
}

} // namespace megset::cli
