#pragma once
// Spectra and arguments of any kind, for tests that nothing outside a plane is read or written.

#include "tests/spectral/planes.h"

namespace megset {

// Arguments around the planes' bounds, and far beyond them.
class AnyArgument
{
public:
    explicit AnyArgument(unsigned seed) : m_random(seed) {}

    std::int64_t index()
    {
        constexpr std::int64_t far[] = {INT64_MIN, INT64_MIN + 1, INT64_MAX - 1, INT64_MAX, INT32_MAX, INT32_MIN};
        return m_random() % 4 == 0 ? far[m_random() % 6] : between(-3, 8);
    }
    int small() { return static_cast<int>(between(-2, 8)); }
    int cut() { return static_cast<int>(index()); }
    double value()
    {
        const double values[] = {0.0, -1.0, 1.0, 2.5, 1e300, infinity, -infinity, notANumber};
        return values[m_random() % 8];
    }
    bool flag() { return m_random() % 2 == 0; }
    Shape shape() { return {between(1, 6), between(1, 6)}; }
    std::int64_t between(std::int64_t low, std::int64_t high)
    {
        return low + static_cast<std::int64_t>(m_random() % static_cast<unsigned>(high - low + 1));
    }
    unsigned seed() { return static_cast<unsigned>(m_random()); }

private:
    std::minstd_rand m_random;
};

inline void fillAtRandom(CSpctmChnlzk& spectrum, AnyArgument& any)
{
    const Shape shape = any.shape();
    spectrum._cleanSpctmData();
    for (const int type : {R, I, M, A})
        if (any.flag())
            setPlane(spectrum, type, shape.nTimePt, shape.nFreqPt,
                     anyPlane(shape.nTimePt, shape.nFreqPt, any.seed() % 1000));
}

inline bool everyPlaneFits(const CSpctmChnlzk& spectrum)
{
    const bool hasPlane = spectrum.m_pSpctmR || spectrum.m_pSpctmI || spectrum.m_pSpctmM || spectrum.m_pSpctmA;
    return !hasPlane || (spectrum.m_nTimePt >= 1 && spectrum.m_nFreqPt >= 1);
}

// Gives the trial's channels planes of any shape in class 0, or none, beside a class and sum channels of any other
// shape.
inline void fillAtRandom(CMDTrialzk& trial, AnyArgument& any)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (any.flag())
            fillAtRandom(*trial.getChannel(i)->getSpctmChnl(true, 0), any);
    if (any.flag())
        trial.m_ppChannel.set(0, std::unique_ptr<CMDChannelzk>());
    trial.m_nCurrentChannel = any.small();
    if (any.between(0, 9) == 0)
        return;
    CSpctmTrialzk& spectrum = *trial.getSpctmTrial(true, 0);
    spectrum.setSpctmTimePtFreqPt(any.index(), any.index(), any.index());
    spectrum.m_nSelectTimeBegin = any.index();
    spectrum.m_nSelectTimeEnd = any.index();
    spectrum.m_nSelectFreqBegin = any.index();
    spectrum.m_nSelectFreqEnd = any.index();
    spectrum.m_dFreqBegin = any.value();
    spectrum.m_dFreqLinearStep = any.value();
    spectrum.m_dFreqPowerStep = any.value();
    spectrum.m_nFreqPowerStep = any.small();
    spectrum.m_nEdgePt = any.index();
    for (const int type : {R, I, M, A}) {
        const Shape shape = any.shape();
        if (any.flag())
            spectrum.getSumChnlSpctmData(type)->checkInit(shape.nTimePt, shape.nFreqPt);
        if (any.flag())
            spectrum.getSumChnlSpctmData(type)->m_pSumMean.reset();
    }
}

/// The same of a new trial, with up to three channels.
inline void makeAtRandom(CMDTrialzk& trial, AnyArgument& any)
{
    trial.allocateChannels(static_cast<int>(any.between(1, 3)));
    fillAtRandom(trial, any);
}

} // namespace megset
