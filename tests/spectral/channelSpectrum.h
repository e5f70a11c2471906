#pragma once
// A channel's spectrum that planes are added to, in each of the forms that an application has.

#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/spectral/planes.h"
#include "tests/spectral/spectra.h"

#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace megset::channelSpectrum {

inline constexpr int restart = 1;
inline constexpr int keep = 0;
inline constexpr int assign = 1;
inline constexpr int sum = 0;
inline constexpr int withBackup = 1;
inline constexpr int noBackup = 0;

/// T x F values with the rows' addresses, as an application hands them in.
class Input
{
public:
    Input(std::int64_t nTimePt, std::int64_t nFreqPt, unsigned seed)
    {
        std::mt19937 random(seed);
        std::normal_distribution<double> noise(0.0, 10.0);
        m_values.resize(static_cast<std::size_t>(nTimePt * nFreqPt));
        for (double& value : m_values)
            value = noise(random);
        for (std::int64_t t = 0; t < nTimePt; ++t)
            m_rows.push_back(m_values.data() + t * nFreqPt);
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    double** rows() { return m_rows.data(); }
    double* flat() { return m_values.data(); }
    const Values& values() const { return m_values; }

private:
    Values m_values;
    std::vector<double*> m_rows;
};

inline Values operator+(const Values& a, const Values& b)
{
    Values result(a);
    for (std::size_t i = 0; i < a.size(); ++i)
        result[i] += b[i];
    return result;
}

inline Values backup(const CSpctmChnlzk& spectrum, int type)
{
    const SampleArray* const planes[] = {&spectrum.m_pBkSpctmR, &spectrum.m_pBkSpctmI, &spectrum.m_pBkSpctmM,
                                         &spectrum.m_pBkSpctmA};
    return valuesOf(*planes[type], spectrum.m_nBkTimePt * spectrum.m_nBkFreqPt);
}

inline bool isEmptySpectrum(const CSpctmChnlzk& spectrum)
{
    return spectrum.m_nTimePt == 0 && spectrum.m_nFreqPt == 0 && planeValues(spectrum, R).empty() &&
           planeValues(spectrum, I).empty() && planeValues(spectrum, M).empty() && planeValues(spectrum, A).empty();
}

inline bool hasNoBackup(const CSpctmChnlzk& spectrum)
{
    return spectrum.m_nBkTimePt == 0 && spectrum.m_nBkFreqPt == 0 && !spectrum.m_pBkSpctmR && !spectrum.m_pBkSpctmI &&
           !spectrum.m_pBkSpctmM && !spectrum.m_pBkSpctmA;
}

inline constexpr std::int64_t T = 4;
inline constexpr std::int64_t F = 3;

/// An empty spectrum, and two sets of four planes for it.
class ChannelSpectrum : public ::testing::Test
{
protected:
    /// Any of the forms, by the planes that it carries and its kind of input.
    int add(int planes, bool flat, int bRestart, int bAssign, int bBackup, std::array<Input, 4>& in)
    {
        if (flat && planes == 3)
            return spectrum.addSpctmDataRIM1d(in[0].flat(), in[1].flat(), in[2].flat(), T, F, bRestart, bAssign,
                                              bBackup);
        if (flat)
            return spectrum.addSpctmDataRIMA1d(in[0].flat(), in[1].flat(), in[2].flat(), in[3].flat(), T, F, bRestart,
                                               bAssign, bBackup);
        if (planes == 1)
            return spectrum.addSpctmDataR(in[0].rows(), T, F, bRestart, bAssign, bBackup);
        if (planes == 2)
            return spectrum.addSpctmDataRI(in[0].rows(), in[1].rows(), T, F, bRestart, bAssign, bBackup);
        if (planes == 3)
            return spectrum.addSpctmDataRIM(in[0].rows(), in[1].rows(), in[2].rows(), T, F, bRestart, bAssign, bBackup);
        return spectrum.addSpctmDataRIMA(in[0].rows(), in[1].rows(), in[2].rows(), in[3].rows(), T, F, bRestart,
                                         bAssign, bBackup);
    }
    void fillAll() { ASSERT_EQ(add(4, false, restart, assign, withBackup, first), 1); }

    struct Form
    {
        int planes;
        bool flat;
    };
    static constexpr Form forms[] = {{1, false}, {2, false}, {3, false}, {4, false}, {3, true}, {4, true}};

    ScriptedHost host;
    CSpctmChnlzk spectrum;
    std::array<Input, 4> first{{{T, F, 1}, {T, F, 2}, {T, F, 3}, {T, F, 4}}};
    std::array<Input, 4> second{{{T, F, 5}, {T, F, 6}, {T, F, 7}, {T, F, 8}}};
};

} // namespace megset::channelSpectrum
