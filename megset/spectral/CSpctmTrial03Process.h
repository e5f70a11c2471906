#pragma once
// The axes of a trial's spectrum read backwards: from hertz to points, and to the samples that were transformed.
// Needs the fields of CSpctmTrial.

#include "megset/spectral/CSpctmTrial.h"

namespace megset {

/// The axes of a trial's spectrum read backwards: from Hz to points, from points to samples.
class CSpctmTrial03Process : public CSpctmTrial
{
public:
    /// The samples that the planes span. 1 when T fits them; 0 for a summed class, which has no single span, and when
    /// it doesn't ("spectral size error!"). A time step below 1 becomes 1.
    int getSelectBE4DrawWave(std::int64_t& nBegin, std::int64_t& nEnd);
    /// The frequency point of dHz, cut toward zero: 0 at or below the lowest frequency, F - 1 at or above the highest.
    /// Always by the linear step, in power mode, too: it is meant so.
    std::int64_t getSpctmFreqIndex4Freq(double dHz) const;
};

} // namespace megset
