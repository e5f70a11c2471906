#pragma once
// Axes of a table of spectra, and their bytes, for tests of the records that have them.

#include "megset/records/results/SpctmAxes.h"

#include "tests/kit/ByteBuilder.h"

namespace megset {

/// Gives every field of the axes but the numbers of points a value of its own.
inline void fillAxes(SpctmAxes& axes)
{
    axes.m_nDataBegin = 101;
    axes.m_nEdgePt = 102;
    axes.m_nTimeStep = 103;
    axes.m_dFreqBegin = 104.5;
    axes.m_dFreqLinearStep = 105.5;
    axes.m_nSelectTimeBegin = 106;
    axes.m_nSelectTimeEnd = 107;
    axes.m_nSelectFreqBegin = 108;
    axes.m_nSelectFreqEnd = 109;
}

/// What fillAxes gives, as a file has it.
inline ByteBuilder axesBytes(std::int64_t timePt, std::int64_t freqPt)
{
    return ByteBuilder()
        .i64(timePt)
        .i64(freqPt)
        .i64(101)
        .i64(102)
        .i64(103)
        .doubles({104.5, 105.5})
        .i64(106)
        .i64(107)
        .i64(108)
        .i64(109);
}

} // namespace megset
