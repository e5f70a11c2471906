#include "megset/spectral/spectrumSelection.h"

#include "megset/numeric/wrapping.h"

#include <algorithm>
#include <cmath>

namespace megset {

std::int64_t clampedIndex(std::int64_t index, std::int64_t limit)
{
    return std::min(std::max<std::int64_t>(index, 0), std::max<std::int64_t>(limit, 0) - 1);
}

numeric::PlaneRectangle clampedRectangle(const numeric::PlaneRectangle& wanted, std::int64_t nTimePt,
                                         std::int64_t nFreqPt)
{
    return {clampedIndex(wanted.timeBegin, nTimePt), clampedIndex(wanted.timeEnd, nTimePt),
            clampedIndex(wanted.freqBegin, nFreqPt), clampedIndex(wanted.freqEnd, nFreqPt)};
}

numeric::PlaneRectangle clampedForReaders(const numeric::PlaneRectangle& wanted, std::int64_t nTimePt,
                                          std::int64_t nFreqPt)
{
    numeric::PlaneRectangle rectangle = clampedRectangle(wanted, nTimePt, nFreqPt);
    if (wanted.freqBegin >= std::max<std::int64_t>(nFreqPt, 0)) {
        rectangle.freqBegin = wanted.freqBegin;
        rectangle.timeEnd = std::max<std::int64_t>(nFreqPt, 0) - 1; // of the times, and not the frequency begin
    }
    return rectangle;
}

std::int64_t readStatistics(numeric::ConstPlane plane, const numeric::PlaneRectangle& rectangle, double& dMin,
                            double& dMean, double& dMax, double& dRms)
{
    const numeric::RectangleStatistics s = numeric::rectangleStatistics(plane, rectangle);
    if (s.count == 0)
        return 0;
    dMin = s.min;
    dMean = s.sum;
    dMax = s.max;
    dRms = s.sumOfSquares;
    if (s.count >= 2) { // of a single value no mean and no root is taken: it is meant so
        dMean /= static_cast<double>(s.count);
        dRms = std::sqrt(dRms / static_cast<double>(s.count));
    }
    return s.count;
}

// Both ends belong to a selection, which may be as long as numbers go.
static std::int64_t lengthOf(std::int64_t begin, std::int64_t end)
{
    return numeric::wrapAdd(numeric::wrapSubtract(end, begin), 1);
}

CString readText(numeric::ConstPlane plane, const numeric::PlaneRectangle& rectangle)
{
    CString text;
    text.Format("X->Time %I64d   Y-Frequency %I64d \n", lengthOf(rectangle.timeBegin, rectangle.timeEnd),
                lengthOf(rectangle.freqBegin, rectangle.freqEnd));
    const auto size = static_cast<std::int64_t>(plane.values().size());
    const std::int64_t timeEnd = std::min(rectangle.timeEnd, plane.rows() - 1);
    // A plane has no more frequencies than values, whatever the number that it is read with.
    for (std::int64_t f = std::min(rectangle.freqEnd, size - 1); f >= std::max<std::int64_t>(rectangle.freqBegin, 0);
         --f) {
        for (std::int64_t t = std::max<std::int64_t>(rectangle.timeBegin, 0); t <= timeEnd; ++t) {
            const auto row = plane.row(t);
            if (static_cast<std::size_t>(f) < row.size())
                text.AppendFormat("%f ", row[static_cast<std::size_t>(f)]);
        }
        text += CString("\n");
    }
    return text;
}

SampleArray* sumPlane(CSumChnlSpctmData& sums, int nPhyVirt)
{
    SampleArray* const planes[lastSumPlane] = {&sums.m_pSumMean,     &sums.m_pSumMin,      &sums.m_pSumMax,
                                               &sums.m_pSumPositive, &sums.m_pSumNegative, &sums.m_pSumRms};
    return nPhyVirt >= 1 && nPhyVirt <= lastSumPlane ? planes[nPhyVirt - 1] : nullptr;
}

} // namespace megset
