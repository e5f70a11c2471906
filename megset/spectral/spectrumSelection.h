#pragma once
// How a selection of a spectrum is brought inside its plane, and the readings that a channel's planes share with the
// sum planes of a trial. Internal to spectral/.

#include "megset/numeric/planes.h"
#include "megset/platform/CString.h"
#include "megset/spectral/CSumChnlSpctmData.h"

#include <cstdint>

namespace megset {

/// A negative index becomes 0; one at or above the limit becomes limit - 1, which is -1 on an empty axis.
std::int64_t clampedIndex(std::int64_t index, std::int64_t limit);

/// All four bounds clamped.
numeric::PlaneRectangle clampedRectangle(const numeric::PlaneRectangle& wanted, std::int64_t nTimePt,
                                         std::int64_t nFreqPt);

/// The clamp of the three selection readers (text, sum, statistics). It is meant so: a frequency begin at or above F
/// stays, and it is the time end that becomes F - 1 instead. That leaves no frequency to read.
numeric::PlaneRectangle clampedForReaders(const numeric::PlaneRectangle& wanted, std::int64_t nTimePt,
                                          std::int64_t nFreqPt);

/// Statistics of a rectangle, both ends included, into the four outputs; they stay as they are without values. With
/// fewer than two values the mean is the value and the root mean square its plain square. Gives the count.
std::int64_t readStatistics(numeric::ConstPlane plane, const numeric::PlaneRectangle& rectangle, double& dMin,
                            double& dMean, double& dMax, double& dRms);

/// The rectangle's size, and one line of values for each frequency, the highest one first.
CString readText(numeric::ConstPlane plane, const numeric::PlaneRectangle& rectangle);

/// The sum plane that a source selector stands for: 1 mean, 2 minimum, 3 maximum, 4 positive, 5 negative, 6 root mean
/// square. The plane may be absent; null for other selectors.
SampleArray* sumPlane(CSumChnlSpctmData& sums, int nPhyVirt);
/// The largest selector of sumPlane.
inline constexpr int lastSumPlane = 6;

} // namespace megset
