#include "apps/cli/spectrum/changeSpectra.h"

#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <charconv>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace megset::cli {

namespace {

std::pair<double, double> twoNumbers(const std::string& text)
{
    double first = 0.0;
    double second = 0.0;
    const char* const end = text.data() + text.size();
    const auto [colon, error] = std::from_chars(text.data(), end, first);
    if (error == std::errc() && colon != end && *colon == ':')
        if (const auto [rest, fault] = std::from_chars(colon + 1, end, second);
            fault == std::errc() && rest == end && !std::isnan(first) && !std::isnan(second))
            return {first, second};
    throw std::runtime_error("the range \"" + text + "\" is not of the form A:B");
}

// The first time point at or behind a latency.
unsigned timePoint(const CMEGDatazk& dataset, const CMDTrialzk& trial, int classIndex, std::int64_t times, double ms)
{
    // Multiplied first, so that whole samples are met exactly.
    const double sample = ms * dataset.m_recordInfo.m_dRecSampleRate / 1000.0 +
                          static_cast<double>(dataset.m_recordInfo.m_nRecPreTrigPts);
    std::int64_t t = 0;
    while (t < times && static_cast<double>(trial.getSpctmTimePt(t, classIndex, 0)) < sample)
        ++t;
    return static_cast<unsigned>(t);
}

void divideByBaseline(const CMEGDatazk& dataset, CMDTrialzk& trial, const CSpctmTrialzk& spectrum,
                      const SpectrumChange& change)
{
    const auto [from, to] = twoNumbers(change.baseline);
    const unsigned begin = timePoint(dataset, trial, change.classIndex, spectrum.m_nTimePt, from);
    const unsigned end = timePoint(dataset, trial, change.classIndex, spectrum.m_nTimePt, to);
    if (begin >= end)
        throw std::runtime_error("no time point lies in the baseline " + change.baseline + " ms");
    trial.rootStrip(begin, end, 1.0, -1, true, change.classIndex, change.type);
}

void normalize(CMDTrialzk& trial, const SpectrumChange& change)
{
    if (change.law == "rms")
        trial.normSpctmGlobEachFreqAllChnAllTimSc_rms(change.classIndex);
    else if (change.law == "max")
        trial.normSpctmGlobEachFreqAllChnAllTim_max(change.classIndex, change.type);
    else
        trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, change.classIndex, change.type);
}

// The library refuses a backup that holds the real part, which those have that were computed here.
void reload(CMDTrialzk& trial, int classIndex)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* const channel = trial.getChannel(i);
        CSpctmChnlzk* const kept = channel != nullptr ? channel->getSpctmChnl(false, classIndex) : nullptr;
        if (kept == nullptr || !kept->m_pBkSpctmR || !kept->m_pBkSpctmI || !kept->m_pBkSpctmM || !kept->m_pBkSpctmA ||
            kept->m_nBkTimePt != kept->m_nTimePt || kept->m_nBkFreqPt != kept->m_nFreqPt)
            continue;
        if (!kept->addSpctmDataRIMA1d(kept->m_pBkSpctmR.get(), kept->m_pBkSpctmI.get(), kept->m_pBkSpctmM.get(),
                                      kept->m_pBkSpctmA.get(), kept->m_nTimePt, kept->m_nFreqPt, 0, 1, 0))
            throw std::runtime_error("there is not enough memory");
    }
}

} // namespace

void changeSpectra(CMEGDatazk& dataset, CMDTrialzk& trial, const SpectrumChange& change)
{
    const CSpctmTrialzk* const spectrum = trial.getSpctmTrial(false, change.classIndex);
    if (spectrum == nullptr)
        throw std::runtime_error("it has no spectra of this class");
    if (!change.baseline.empty())
        divideByBaseline(dataset, trial, *spectrum, change);
    if (change.logarithm)
        trial.transformSpctm2log(-1, true, change.classIndex, change.type);
    if (!change.law.empty())
        normalize(trial, change);
    if (change.scale)
        trial.scaleSpctmAllDataType4Class(change.classIndex, *change.scale);
    if (!change.cut.empty()) {
        const auto [low, high] = twoNumbers(change.cut);
        if (low > high)
            throw std::runtime_error("the range \"" + change.cut + "\" ends below its begin");
        trial.cutSpctmDataExtrama(low, high, 0.0, change.classIndex, change.type);
    }
    if (change.reload)
        reload(trial, change.classIndex);
}

} // namespace megset::cli
