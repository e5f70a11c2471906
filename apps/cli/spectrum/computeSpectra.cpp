#include "apps/cli/spectrum/computeSpectra.h"

#include "apps/cli/dataset/channelSelection.h"
#include "apps/spectrum/MorletTransform.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <stdexcept>

namespace megset::cli {

namespace {

template <std::size_t count>
int indexOf(const std::array<const char*, count>& names, const std::string& name, const char* what)
{
    const auto found = std::ranges::find(names, name);
    if (found == names.end())
        throw std::runtime_error(name + " is no " + what + " of spectra");
    return static_cast<int>(found - names.begin());
}

// The planes of one channel, taken up anew for each: memory holds those of one channel beside the trial.
class Planes
{
public:
    Planes(std::size_t points, std::size_t frequencies)
        : m_real(points * frequencies), m_imaginary(m_real.size()), m_magnitude(m_real.size()), m_phase(m_real.size()),
          m_points(static_cast<std::int64_t>(points)), m_frequencies(static_cast<std::int64_t>(frequencies))
    {
    }

    void compute(spectrum::MorletTransform& morlet, std::span<const double> samples, const spectrum::TimeAxis& axis)
    {
        morlet.transform(samples, axis, m_real, m_imaginary);
        for (std::size_t i = 0; i < m_real.size(); ++i) {
            m_magnitude[i] = std::hypot(m_real[i], m_imaginary[i]);
            m_phase[i] = std::atan2(m_imaginary[i], m_real[i]);
        }
    }

    void addTo(CSpctmChnlzk& spectrum, bool accumulate)
    {
        const int anew = accumulate ? 0 : 1;
        if (!spectrum.addSpctmDataRIMA1d(m_real.data(), m_imaginary.data(), m_magnitude.data(), m_phase.data(),
                                         m_points, m_frequencies, anew, anew, 1))
            throw std::runtime_error("there is not enough memory");
    }

private:
    std::vector<double> m_real;
    std::vector<double> m_imaginary;
    std::vector<double> m_magnitude;
    std::vector<double> m_phase;
    std::int64_t m_points;
    std::int64_t m_frequencies;
};

std::int64_t sampleCount(const CMDTrialzk& trial, const std::vector<int>& channels)
{
    std::int64_t least = -1;
    for (const int index : channels) {
        const std::int64_t samples = trial.getChannel(index)->getTotalSample();
        if (least >= 0 && samples != least)
            throw std::runtime_error("the channels have different numbers of samples");
        least = samples;
    }
    return least;
}

// On a power axis the library's index 0 is a step above the lowest frequency.
double axisBegin(const spectrum::FrequencyAxis& axis)
{
    return axis.isPower ? axis.hz.front() / axis.step : axis.hz.front();
}

void describe(CSpctmTrialzk& spectrum, const SpectrumRequest& request, double rate, const SampleRange& range,
              const spectrum::TimeAxis& time, std::size_t points)
{
    spectrum.setSpctmTimePtFreqPt(static_cast<std::int64_t>(points), static_cast<std::int64_t>(request.axis.hz.size()),
                                  static_cast<std::int64_t>(time.step));
    spectrum.setTrialFreqRange4Spctm(axisBegin(request.axis), request.axis.hz.back());
    spectrum.setTrialTimeDataRange4Spctm(range.from, range.to);
    spectrum.m_nEdgePt = static_cast<std::int64_t>(time.edge);
    spectrum.m_nFreqPowerStep = request.axis.isPower ? 1 : 0;
    (request.axis.isPower ? spectrum.m_dFreqPowerStep : spectrum.m_dFreqLinearStep) = request.axis.step;
    spectrum.m_dSamplingRate = rate;
    spectrum.m_nAccumSpctm = request.accumulate ? 1 : 0;
    spectrum.setTrialSpctmSelectTime(0, static_cast<std::int64_t>(points) - 1);
    spectrum.setTrialSpctmSelectFreq(0, static_cast<std::int64_t>(request.axis.hz.size()) - 1);
}

// Adding to planes that were computed otherwise would mix what can't be told apart any more.
void checkAccumulation(const CSpctmTrialzk& spectrum, const SpectrumRequest& request, std::size_t points)
{
    const bool isFirst = spectrum.m_nTimePt == 0;
    const bool fits = spectrum.m_nTimePt == static_cast<std::int64_t>(points) &&
                      spectrum.m_nFreqPt == static_cast<std::int64_t>(request.axis.hz.size()) &&
                      spectrum.m_dFreqBegin == axisBegin(request.axis) && spectrum.m_dFreqEnd == request.axis.hz.back();
    if (request.accumulate && !isFirst && !fits)
        throw std::runtime_error("the spectra that are there have other times or frequencies");
}

} // namespace

int spectrumClass(const std::string& name)
{
    return indexOf(std::array{"active", "control", "result"}, name, "class");
}

int spectrumType(const std::string& name)
{
    return indexOf(std::array{"real", "imaginary", "magnitude", "phase"}, name, "data type");
}

int computeSpectra(CMDTrialzk& trial, double rate, const SpectrumRequest& request)
{
    const std::vector<int> channels = selectChannels(trial, request.channels, request.kind);
    if (channels.empty())
        throw std::runtime_error("the trial has no channel of this kind");
    const SampleRange range = parseSampleRange(request.samples, sampleCount(trial, channels));
    spectrum::TimeAxis time;
    const auto twentyMs = static_cast<std::int64_t>(std::max(1.0, std::round(rate / 50.0)));
    time.step = static_cast<std::size_t>(request.step > 0 ? request.step : twentyMs);
    time.edge = static_cast<std::size_t>(request.edge);
    const std::size_t points = time.points(static_cast<std::size_t>(range.count()));
    if (points == 0)
        throw std::runtime_error("no sample is left between the edges");
    CSpctmTrialzk* const spectrum = trial.getSpctmTrial(true, request.classIndex);
    if (spectrum == nullptr)
        throw std::runtime_error("there is not enough memory");
    checkAccumulation(*spectrum, request, points);
    spectrum::MorletTransform morlet(static_cast<std::size_t>(range.count()), rate, request.axis.hz, request.cycles);
    Planes planes(points, request.axis.hz.size());
    for (const int index : channels) {
        CMDChannelzk& channel = *trial.getChannel(index);
        CSpctmChnlzk* const kept = channel.getSpctmChnl(true, request.classIndex);
        if (kept == nullptr)
            throw std::runtime_error("there is not enough memory");
        planes.compute(morlet, {channel.getDataWave() + range.from, static_cast<std::size_t>(range.count())}, time);
        planes.addTo(*kept, request.accumulate);
    }
    describe(*spectrum, request, rate, range, time, points);
    return static_cast<int>(channels.size());
}

} // namespace megset::cli
