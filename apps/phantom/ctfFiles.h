#pragma once
// The files of a CTF recording but for the samples, as bytes. Nothing in them tells where or when they were made.

#include "apps/phantom/Instrument.h"
#include "apps/phantom/PhantomOptions.h"
#include "apps/phantom/coefficients.h"

#include <string>
#include <vector>

namespace megset::phantom {

/// The .res4 file (MEG42RS).
std::string res4File(const Instrument& instrument, const PhantomPlan& plan, double rate,
                     const std::vector<CoefficientTable>& tables);
/// The .hc file: the coils of the head in both frames.
std::string headCoilFile(const Instrument& instrument);
/// ClassFile.cls with an empty class of bad trials.
std::string classFile();
/// MarkerFile.mrk: a marker for each code, named `stimulus CODE`, with the times of its stimuli from the trigger point.
std::string markerFile(const PhantomPlan& plan, double rate);
/// phantom_truth.json: what was simulated. Trials and samples count from 0.
std::string truthFile(const Instrument& instrument, const PhantomPlan& plan, const PhantomOptions& options);

} // namespace megset::phantom
