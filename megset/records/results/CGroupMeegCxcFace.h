#pragma once
// Cross-correlation between two groups of channels, such as MEG and EEG.

#include "megset/platform/formatVersion.h"
#include "megset/records/results/resultArrays.h"

#include <vector>

namespace megset {

/// Correlation of every channel of group A with every channel of group B over a range of lags.
class CGroupMeegCxcFace
{
public:
    /// Takes the groups (channel indices of the trial) over and makes correlations of zero for `lags` lags from
    /// `lagBegin` samples on: 1, or 0 and an empty object.
    int setSize(const std::vector<std::int32_t>& groupA, const std::vector<std::int32_t>& groupB, std::int64_t lagBegin,
                std::int64_t lags);
    /// Correlation, -1 to 1, of the a-th channel of group A with the b-th of B at a lag number; noValue outside.
    double getValue(std::int64_t a, std::int64_t b, std::int64_t iLag) const;
    /// 1, or 0 outside.
    int setValue(std::int64_t a, std::int64_t b, std::int64_t iLag, double value);
    /// The lag in samples at which the magnitude is largest, the first of equal ones: 1, or 0 when there is none.
    int getPeakLag(std::int64_t a, std::int64_t b, std::int64_t& lag, double& value) const;

    bool operator==(const CGroupMeegCxcFace&) const = default;

    std::vector<std::int32_t> m_aGroupA; ///< channel indices
    std::vector<std::int32_t> m_aGroupB;
    std::int64_t m_nLagBegin = 0;  ///< samples by which B is later than A at lag number 0
    std::int64_t m_nLagPt = 0;     ///< lags, one sample apart
    std::int64_t m_nDataBegin = 0; ///< first and last sample of the trial that was analysed
    std::int64_t m_nDataEnd = 0;
    std::vector<double> m_aValue; ///< [a][b][lag]

protected:
    bool isConsistent() const;

private:
    std::int64_t indexOf(std::int64_t a, std::int64_t b, std::int64_t iLag) const;
};

/// The file layer of the cross-correlation of two groups of channels.
class CGroupMeegCxcFace09File : public CGroupMeegCxcFace
{
public:
    /// 1, or 0 when tag, version or shape are wrong.
    int serializezk(CArchive& ar);

    bool operator==(const CGroupMeegCxcFace09File&) const = default;

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CGroupMeegCxcFace09File> s_versions[1];
};

/// The cross-correlation of two groups of channels; this is the class that is made.
class CGroupMeegCxcFacezk : public CGroupMeegCxcFace09File
{
public:
    bool operator==(const CGroupMeegCxcFacezk&) const = default;
};

} // namespace megset
