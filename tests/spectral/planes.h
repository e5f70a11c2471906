#pragma once
// Planes with known values for the tests of what works on them.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>

namespace megset {

using Values = std::vector<double>;

// Data types
constexpr int R = 0;
constexpr int I = 1;
constexpr int M = 2;
constexpr int A = 3;

// Classes
constexpr int active = 0;
constexpr int control = 1;
constexpr int result = 2;

constexpr double infinity = std::numeric_limits<double>::infinity();
inline const double notANumber = std::nan("");

inline SampleArray& planeOf(CSpctmChnlzk& spectrum, int type)
{
    SampleArray* const planes[] = {&spectrum.m_pSpctmR, &spectrum.m_pSpctmI, &spectrum.m_pSpctmM, &spectrum.m_pSpctmA};
    return *planes[type];
}

/// Gives the spectrum that shape and one plane; the others stay.
inline void setPlane(CSpctmChnlzk& spectrum, int type, std::int64_t nTimePt, std::int64_t nFreqPt, const Values& values)
{
    ASSERT_EQ(static_cast<std::size_t>(nTimePt * nFreqPt), values.size());
    spectrum.m_nTimePt = nTimePt;
    spectrum.m_nFreqPt = nFreqPt;
    SampleArray& plane = planeOf(spectrum, type);
    plane = tryNewSamples(nTimePt * nFreqPt, false);
    std::copy(values.begin(), values.end(), plane.get());
}

/// The plane's values; none when it is absent.
inline Values planeValues(const CSpctmChnlzk& spectrum, int type)
{
    std::int64_t nTimePt = 0;
    std::int64_t nFreqPt = 0;
    const double* const values = spectrum.getSpctmDataPtr(type, &nTimePt, &nFreqPt);
    return values == nullptr ? Values() : Values(values, values + nTimePt * nFreqPt);
}

inline Values randomPlane(std::int64_t nTimePt, std::int64_t nFreqPt, unsigned seed)
{
    return numeric::randomSamples(static_cast<std::size_t>(nTimePt * nFreqPt), seed);
}

/// Both ordinary and awkward values.
inline Values anyPlane(std::int64_t nTimePt, std::int64_t nFreqPt, unsigned seed)
{
    const auto count = static_cast<std::size_t>(nTimePt * nFreqPt);
    return seed % 2 == 0 ? numeric::randomSamples(count, seed) : numeric::awkwardSamples(count, seed, true);
}

struct Shape
{
    std::int64_t nTimePt;
    std::int64_t nFreqPt;
    std::size_t at(std::int64_t t, std::int64_t f) const { return static_cast<std::size_t>(t * nFreqPt + f); }
};

inline const std::vector<Shape> shapes = {{1, 1}, {1, 7}, {7, 1}, {4, 3}, {3, 5}, {16, 16}, {9, 130}, {40, 257}};

/// The result of an operation on one element.
template <class Operation>
Values each(const Values& x, Operation operation)
{
    Values y;
    for (const double v : x)
        y.push_back(operation(v));
    return y;
}

/// A trial of channels that each have the class, beside the trial's own spectrum of it.
class SpectralTrial : public ::testing::Test
{
protected:
    static constexpr std::int64_t T = 4;
    static constexpr std::int64_t F = 3;

    void makeChannels(int n)
    {
        ASSERT_EQ(trial.allocateChannels(n), 1);
        makeClass(T, F);
    }
    void makeClass(std::int64_t nTimePt, std::int64_t nFreqPt)
    {
        spectrum = trial.getSpctmTrial(true, active);
        ASSERT_NE(spectrum, nullptr);
        spectrum->setSpctmTimePtFreqPt(nTimePt, nFreqPt, 1);
    }
    CSpctmChnlzk& channel(int i, int nClass = active) { return *trial.getChannel(i)->getSpctmChnl(true, nClass); }
    /// Gives the channel a plane of T x F in class active.
    void fill(int i, const Values& values, int type = R) { setPlane(channel(i), type, T, F, values); }
    /// Fills a plane of the sum channel of a data type, which gets a shape and all planes.
    void fillSum(SampleArray CSumChnlSpctmData::*plane, const Values& values, int type = R, std::int64_t nTimePt = T,
                 std::int64_t nFreqPt = F)
    {
        CSumChnlSpctmDatazk& sums = *spectrum->getSumChnlSpctmData(type);
        ASSERT_EQ(sums.checkInit(nTimePt, nFreqPt), 1);
        ASSERT_EQ(values.size(), static_cast<std::size_t>(nTimePt * nFreqPt));
        std::copy(values.begin(), values.end(), (sums.*plane).get());
    }

    ScriptedHost host;
    CMDTrialzk trial;
    CSpctmTrialzk* spectrum = nullptr; ///< of class active
};

} // namespace megset
