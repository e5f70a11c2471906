#pragma once
// Planes of T x F doubles as the records of spectra have them, those of old versions included. Internal to spectral/.

#include "megset/platform/CArchive.h"
#include "megset/platform/archiveLists.h"
#include "megset/platform/memory.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace megset {

/// Real, imaginary, magnitude and angle.
inline constexpr int spectrumDataTypes = 4;
/// Active, control and result.
inline constexpr int spectrumClasses = 3;

/// T x F. The largest number when that does not fit, and -1 when a factor is negative: no memory is ever given for
/// these.
std::int64_t planeCount(std::int64_t nTimePt, std::int64_t nFreqPt) noexcept;

/// The elements of a plane; none for a null plane and for a count that is no size.
std::span<double> planeSpan(const SampleArray& plane, std::int64_t count) noexcept;

/// A guarded block of `count` doubles. When storing, a plane of no legal shape is written as an absent one.
BlockResult exchangePlane(CArchive& ar, SampleArray& plane, std::int64_t count, bool legalShape, std::string_view name);

// The forms that were given up: what they hold is read, so that the record stays in step, and dropped. noMemory is for
// a plane that memory or the file can't hold; nothing of it is read then, but for guardedRows the rows before.

/// A plane guard, then T rows of F doubles, each as one block.
BlockResult dropPlaneOfRows(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt);
/// A plane guard, then T x F doubles, value by value.
BlockResult dropPlaneOfValues(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt);
/// A plane guard, then for each of T rows a row guard and, where that is not 0, F doubles.
BlockResult dropPlaneOfGuardedRows(CArchive& ar, std::int64_t nTimePt, std::int64_t nFreqPt);

} // namespace megset
