#pragma once

#include <cstdint>
#include <memory>

namespace megset {

class CArchive;

/// A channel's samples reduced for drawing: the highest and lowest value of each block of samples.
struct SHOW_SHRINK_DATAF
{
    const double* m_pSrcData =
        nullptr;                     ///< the working array it was built from, not owned; another array makes it stale
    std::int64_t m_nSrcSample = 0;   ///< samples of that array
    double m_dShrinkRatio = 0.0;     ///< ratio asked for: columns per sample
    int m_nDirty = 1;                ///< not 0: the buffer isn't valid
    double m_dShrinkRatioUsed = 0.0; ///< the ratio it was built with
    std::int64_t m_nBinSample = 0;   ///< samples per block
    std::int64_t m_nBinCount = 0;    ///< blocks
    std::unique_ptr<float[]> m_pMax; ///< highest value of each block
    std::unique_ptr<float[]> m_pMin; ///< lowest value of each block

    /// Reads or writes the fields, without a tag; the source is not filed and null after a load. 0 for arrays that
    /// memory or the file can't hold ("Is memory enough?!"), and for one that the file lacks ("Read ShowShrink data
    /// error!?").
    int serialize(CArchive& ar);
};

} // namespace megset
