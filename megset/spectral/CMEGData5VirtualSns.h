#pragma once
// The lists of virtual sensors, and latencies of the current trial's virtual spectra.

#include "megset/spectral/CMEGData4SpctmProcess.h"

namespace megset {

/// The dataset's layer for virtual sensors.
class CMEGData5VirtualSns : public CMEGData4SpctmProcess
{
public:
    /// With `bCreate` an empty list is made where there is none. Null without one or without memory.
    CVirtSnsPOXlistzk* getVirtSnsPOXlist4Spctm(int bCreate);
    CVirtSnsPOXlistzk* getVirtSnsPOXlist4Wave(int bCreate);

    /// Latency in ms of a time point of the current trial's virtual spectra; -1.0 without trial or spectra. A rate
    /// below 1e-15 is stored as that, a negative pre-trigger as 0.
    double getLatencyMs4VirtSpctmTimePt(std::int64_t iTime);
    /// Latencies in ms of the ends of their selection: 2; when both are the same, of it and the next time point: 1. 0
    /// with both 0.0 without trial, spectra or a current one among them.
    int getVirtSpctmSelectTime2LatencyMsec(double& dBegin, double& dEnd);

private:
    CFaceVirtChnlSpctmzk* currentVirtSpctm() const;
};

} // namespace megset
