#pragma once
// The sum planes over channels, as the library gives them and by plain loops.

#include "megset/records/results/CFreqDataChnl.h"
#include "megset/spectral/CSumChnlSpctmDatazk.h"

#include "tests/numeric/reference.h"
#include "tests/spectral/spectralDataset.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace megset::plainLoops {

/// The six sum planes and the statistics, in the order minimum, mean, maximum, positive, negative, root mean square.
struct Sums
{
    Sums() = default;
    explicit Sums(const CSumChnlSpctmData& sums)
        : statistics{sums.m_dRangeMin,      sums.m_dRangeMean,     sums.m_dRangeMax,
                     sums.m_dRangePositive, sums.m_dRangeNegative, sums.m_dRangeRms},
          channels(sums.m_nChannels)
    {
        const std::int64_t count = sums.m_nTimePt * sums.m_nFreqPt;
        std::size_t p = 0;
        for (const SampleArray* plane : {&sums.m_pSumMin, &sums.m_pSumMean, &sums.m_pSumMax, &sums.m_pSumPositive,
                                         &sums.m_pSumNegative, &sums.m_pSumRms})
            planes[p++].assign(plane->get(), plane->get() + count);
    }
    explicit Sums(const CSumChnlFreqDatazk& sums)
        : planes{sums.m_aSumMin,      sums.m_aSumMean,     sums.m_aSumMax,
                 sums.m_aSumPositive, sums.m_aSumNegative, sums.m_aSumRms},
          statistics{sums.m_dMin, sums.m_dMean, sums.m_dMax, sums.m_dPositive, sums.m_dNegative, sums.m_dRms},
          channels(sums.m_nChannels)
    {
    }

    std::array<PlaneValues, 6> planes;
    std::array<double, 6> statistics{};
    std::int64_t channels = 0;
};

inline void expectSameBits(const Sums& ours, const Sums& plain)
{
    EXPECT_EQ(ours.channels, plain.channels);
    for (std::size_t p = 0; p < 6; ++p) {
        EXPECT_TRUE(numeric::sameBits(ours.statistics[p], plain.statistics[p]))
            << "statistic " << p << ": " << ours.statistics[p] << " and " << plain.statistics[p];
        EXPECT_TRUE(numeric::sameSamples(ours.planes[p], plain.planes[p])) << "plane " << p;
    }
}

/// Adds a channel to the planes and the statistics, which are not divided yet.
inline void addPlainly(Sums& sums, const PlaneValues& channel)
{
    auto& [min, mean, max, positive, negative, rms] = sums.planes;
    auto& [dMin, dMean, dMax, dPos, dNeg, dSquare] = sums.statistics;
    const bool first = sums.channels++ == 0;
    if (first)
        dMin = dMax = channel[0];
    double m = 0.0, p = 0.0, n = 0.0, s = 0.0;
    for (std::size_t i = 0; i < channel.size(); ++i) {
        const double v = channel[i];
        if (first) {
            min[i] = mean[i] = max[i] = v;
            positive[i] = v > 0.0 ? v : 0.0;
            negative[i] = v > 0.0 ? 0.0 : v;
            rms[i] = v * v;
        } else {
            if (v < min[i])
                min[i] = v;
            if (v > max[i])
                max[i] = v;
            mean[i] += v;
            (v > 0.0 ? positive : negative)[i] += v;
        }
        if (v < dMin)
            dMin = v;
        if (v > dMax)
            dMax = v;
        m += v;
        (v > 0.0 ? p : n) += v;
        s += v * v;
    }
    const auto points = static_cast<double>(channel.size());
    dMean += m / points;
    dPos += p / points;
    dNeg += n / points;
    dSquare += s / points;
}

/// The same by plain loops over the planes, channel by channel.
inline Sums plainSums(const std::vector<PlaneValues>& channels, std::size_t count)
{
    Sums sums;
    sums.planes.fill(PlaneValues(count, 0.0));
    for (const PlaneValues& channel : channels)
        addPlainly(sums, channel);
    auto& [min, mean, max, positive, negative, rms] = sums.planes;
    auto& [dMin, dMean, dMax, dPos, dNeg, dSquare] = sums.statistics;
    const auto n = static_cast<double>(channels.size());
    if (channels.size() > 1) {
        for (std::size_t i = 0; i < count; ++i) {
            mean[i] /= n;
            positive[i] /= n * 0.5;
            negative[i] /= n * 0.5;
            rms[i] = std::sqrt(rms[i] / n);
        }
        dMean /= n;
        dPos /= n * 0.5;
        dNeg /= n * 0.5;
        dSquare = std::sqrt(dSquare / (n * 0.5));
    }
    return sums;
}

} // namespace megset::plainLoops
