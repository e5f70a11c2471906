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

// The planes of one channel, taken up anew for each.
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

// Where the transform is taken.
struct Times
{
    SampleRange range;
    spectrum::TimeAxis axis;
    std::size_t points;
    double rate;
};

spectrum::TimeAxis timeAxis(const SpectrumRequest& request, double rate)
{
    const auto twentyMs = static_cast<std::int64_t>(std::max(1.0, std::round(rate / 50.0)));
    return {static_cast<std::size_t>(request.edge),
            static_cast<std::size_t>(request.step > 0 ? request.step : twentyMs)};
}

// One channel after another, so that memory holds the planes of one beside the trial.
void computePlanes(const CMDTrialzk& trial, const std::vector<int>& channels, const SpectrumRequest& request,
                   const Times& times)
{
    const auto count = static_cast<std::size_t>(times.range.count());
    spectrum::MorletTransform morlet(count, times.rate, request.axis.hz, request.cycles);
    Planes planes(times.points, request.axis.hz.size());
    for (const int index : channels) {
        CMDChannelzk& channel = *trial.getChannel(index);
        CSpctmChnlzk* const kept = channel.getSpctmChnl(true, request.classIndex);
        if (kept == nullptr)
            throw std::runtime_error("there is not enough memory");
        planes.compute(morlet, {channel.getDataWave() + times.range.from, count}, times.axis);
        planes.addTo(*kept, request.accumulate);
    }
}

void describe(CSpctmTrialzk& spectrum, const SpectrumRequest& request, const Times& times)
{
    const auto points = static_cast<std::int64_t>(times.points);
    spectrum.setSpctmTimePtFreqPt(points, static_cast<std::int64_t>(request.axis.hz.size()),
                                  static_cast<std::int64_t>(times.axis.step));
    spectrum.setTrialFreqRange4Spctm(axisBegin(request.axis), request.axis.hz.back());
    spectrum.setTrialTimeDataRange4Spctm(times.range.from, times.range.to);
    spectrum.m_nEdgePt = static_cast<std::int64_t>(times.axis.edge);
    spectrum.m_nFreqPowerStep = request.axis.isPower ? 1 : 0;
    (request.axis.isPower ? spectrum.m_dFreqPowerStep : spectrum.m_dFreqLinearStep) = request.axis.step;
    spectrum.m_dSamplingRate = times.rate;
    spectrum.m_nAccumSpctm = request.accumulate ? 1 : 0;
    spectrum.setTrialSpctmSelectTime(0, points - 1);
    spectrum.setTrialSpctmSelectFreq(0, static_cast<std::int64_t>(request.axis.hz.size()) - 1);
}

// Adding to planes that were computed otherwise would mix what can't be told apart any more.
void checkAccumulation(const CSpctmTrialzk& spectrum, const SpectrumRequest& request, const spectrum::TimeAxis& time,
                       std::size_t points)
{
    const bool isFirst = spectrum.m_nTimePt == 0;
    const bool fits = spectrum.m_nTimePt == static_cast<std::int64_t>(points) &&
                      spectrum.m_nTimeStep == static_cast<std::int64_t>(time.step) &&
                      spectrum.m_nFreqPt == static_cast<std::int64_t>(request.axis.hz.size()) &&
                      (spectrum.m_nFreqPowerStep != 0) == request.axis.isPower &&
                      spectrum.m_dFreqBegin == axisBegin(request.axis) && spectrum.m_dFreqEnd == request.axis.hz.back();
    if (request.accumulate && !isFirst && !fits)
        throw std::runtime_error("the spectra that are there have other times or frequencies");
}

// What all channels of a class share.
struct Axes
{
    explicit Axes(const CSpctmTrialzk& spectrum)
        : counts{spectrum.m_nTimePt,    spectrum.m_nFreqPt, spectrum.m_nTimeStep,
                 spectrum.m_nDataBegin, spectrum.m_nEdgePt, spectrum.m_nFreqPowerStep},
          hz{spectrum.m_dFreqBegin, spectrum.m_dFreqEnd, spectrum.m_dSamplingRate}
    {
    }

    bool operator==(const Axes&) const = default;

    std::array<std::int64_t, 6> counts;
    std::array<double, 3> hz;
};

// Planes of other channels would be read on axes that are not theirs.
void dropOtherPlanes(const CMDTrialzk& trial, const std::vector<int>& channels, int classIndex)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        CMDChannelzk* const channel = trial.getChannel(i);
        CSpctmChnlzk* const spectrum = channel != nullptr ? channel->getSpctmChnl(false, classIndex) : nullptr;
        if (spectrum == nullptr || std::ranges::find(channels, i) != channels.end())
            continue;
        spectrum->_cleanSpctmData();
        spectrum->_cleanBkSpctmData();
    }
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
    const spectrum::TimeAxis time = timeAxis(request, rate);
    const std::size_t points = time.points(static_cast<std::size_t>(range.count()));
    if (points == 0)
        throw std::runtime_error("no sample is left between the edges");
    CSpctmTrialzk* const spectrum = trial.getSpctmTrial(true, request.classIndex);
    if (spectrum == nullptr)
        throw std::runtime_error("there is not enough memory");
    checkAccumulation(*spectrum, request, time, points);
    computePlanes(trial, channels, request, {range, time, points, rate});
    const Axes former(*spectrum);
    describe(*spectrum, request, {range, time, points, rate});
    if (!request.accumulate && !(Axes(*spectrum) == former))
        dropOtherPlanes(trial, channels, request.classIndex);
    return static_cast<int>(channels.size());
}

} // namespace megset::cli
