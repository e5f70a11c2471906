#include "apps/phantom/Sources.h"

namespace megset::phantom {

namespace {

// Streams of random numbers. Those from 1000 on are the noise of the channels.
enum Stream
{
    alphaStream = 1,
    phaseStream = 3
};

constexpr double evokedMoment = 40e-9; // A m
constexpr double alphaMoment = 30e-9;
constexpr double alphaFrequency = 10;
constexpr double alphaWidth = 1.5;
constexpr double mainsFrequency = 50;
constexpr double machineFrequency = 16.7;
// Slow traffic: a few oscillations for each of its three moments, in Hz.
constexpr double trafficFrequencies[] = {0.13, 0.29, 0.61, 1.3};
constexpr int trafficOscillations = 4;
constexpr int disturberPhases = 3 + 3 * trafficOscillations;

double bump(double seconds, double centre, double halfWidth)
{
    const double part = (seconds - centre) / halfWidth;
    const double inside = 1 - part * part;
    return inside > 0 ? inside * inside * inside : 0;
}

/// A dipole at a place of the sphere that points along it, across the way from the place to `side`.
CurrentDipole tangential(const Instrument& instrument, const Vector3& place, const Vector3& side, double moment)
{
    return {place, moment * unit(cross(place - instrument.sphereCentre, side))};
}

/// Reads a field at a channel's coils.
template <class Field>
double atCoils(const Channel& channel, const Field& field)
{
    double sum = 0;
    double weight = 1;
    for (const Coil& coil : channel.coils) {
        sum += weight * dot(field(coil.position), coil.direction);
        weight = channel.balance;
    }
    return sum;
}

} // namespace

CurrentDipole evokedDipole(const Instrument& instrument)
{
    return tangential(instrument, {0.01, 0.048, 0.062}, {1, 0, 0.2}, evokedMoment);
}

double evokedWave(double seconds)
{
    return bump(seconds, 0.1, 0.05) - 0.6 * bump(seconds, 0.2, 0.08);
}

double brainField(const Instrument& instrument, const Channel& channel, const CurrentDipole& dipole)
{
    // The formula has the sphere's centre as origin; a turn of all it knows turns what it gives.
    const CurrentDipole centred{dipole.position - instrument.sphereCentre, dipole.moment};
    return atCoils(channel, [&](const Vector3& point) {
        const Vector3 field = fieldOutsideSphere(centred, instrument.head.toHead(point) - instrument.sphereCentre);
        return instrument.head.directionToDewar(field);
    });
}

double brainPotential(const Instrument& instrument, const Channel& channel, const CurrentDipole& dipole)
{
    const CurrentDipole centred{dipole.position - instrument.sphereCentre, dipole.moment};
    return potentialOnSphere(centred, channel.coils.front().position - instrument.sphereCentre);
}

double magnetField(const Channel& channel, const Vector3& position, const Vector3& moment)
{
    return atCoils(channel, [&](const Vector3& point) { return fieldOfMagnet(position, moment, point); });
}

Sources::Sources(const Instrument& instrument, const PhantomOptions& options) : m_rate(options.rate), m_options(options)
{
    addBrain(instrument, evokedDipole(instrument));
    addBrain(instrument, tangential(instrument, {-0.055, 0.02, 0.06}, {0, 0, 1}, alphaMoment));
    addBrain(instrument, tangential(instrument, {-0.055, -0.02, 0.06}, {0, 0.3, 1}, alphaMoment));
    addMagnet(instrument, {5.5, -4, 1.5}, {1, 1.4, 2.2});
    const Vector3 machine{-6, 5, -2};
    addMagnet(instrument, machine, {1.2, 0, 0.6});
    addMagnet(instrument, machine, {0, 1.4, 0});
    const Vector3 traffic{9, 7, -4};
    addMagnet(instrument, traffic, {24, 0, 0});
    addMagnet(instrument, traffic, {0, 30, 0});
    addMagnet(instrument, traffic, {0, 0, 18});

    for (std::uint64_t side = 0; side < 2; ++side)
        m_alpha.emplace_back(alphaFrequency, alphaWidth, m_rate, RandomStream(options.seed, alphaStream + side));
    RandomStream phases(options.seed, phaseStream);
    for (int i = 0; i < disturberPhases; ++i)
        m_phases.push_back(phases.uniform());
}

void Sources::addBrain(const Instrument& instrument, const CurrentDipole& dipole)
{
    std::vector<double> shares;
    for (const Channel& channel : instrument.channels)
        shares.push_back(channel.isField()                  ? brainField(instrument, channel, dipole)
                         : channel.kind == ChannelKind::eeg ? brainPotential(instrument, channel, dipole)
                                                            : 0);
    m_shares.push_back(std::move(shares));
}

void Sources::addMagnet(const Instrument& instrument, const Vector3& position, const Vector3& moment)
{
    std::vector<double> shares;
    for (const Channel& channel : instrument.channels)
        shares.push_back(channel.isField() ? magnetField(channel, position, moment) : 0);
    m_shares.push_back(std::move(shares));
}

std::vector<double> Sources::evokedCourse(const PhantomPlan& plan, int trial) const
{
    constexpr double wholeAnswer = 0.28;
    const int answered = static_cast<int>(wholeAnswer * m_rate) + 1;
    std::vector<double> course(static_cast<std::size_t>(plan.samples));
    for (const Stimulus& stimulus : plan.stimuliOf(trial))
        for (int i = 0; i < answered && stimulus.sample + i < plan.samples; ++i)
            course[static_cast<std::size_t>(stimulus.sample + i)] += m_options.evokedScale * evokedWave(i / m_rate);
    return course;
}

std::vector<std::vector<double>> Sources::courses(const PhantomPlan& plan, int trial)
{
    const auto samples = static_cast<std::size_t>(plan.samples);
    std::vector<std::vector<double>> courses(count(), std::vector<double>(samples));
    courses[0] = evokedCourse(plan, trial);
    const double begin = static_cast<double>(trial) * plan.samples;
    for (std::size_t i = 0; i < samples; ++i) {
        courses[1][i] = m_options.alphaScale * m_alpha[0].next();
        courses[2][i] = m_options.alphaScale * m_alpha[1].next();

        const double seconds = (begin + static_cast<double>(i)) / m_rate;
        const double scale = m_options.interferenceScale;
        const double mains = mainsFrequency * seconds;
        courses[3][i] = scale * (sineOfTurns(mains + m_phases[0]) + 0.2 * sineOfTurns(3 * mains + m_phases[1]));
        courses[4][i] = scale * cosineOfTurns(machineFrequency * seconds + m_phases[2]);
        courses[5][i] = scale * sineOfTurns(machineFrequency * seconds + m_phases[2]);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            double sum = 0;
            for (std::size_t k = 0; k < trafficOscillations; ++k)
                sum += sineOfTurns(trafficFrequencies[k] * seconds + m_phases[3 + axis * trafficOscillations + k]);
            courses[6 + axis][i] = scale * sum / 2;
        }
    }
    return courses;
}

} // namespace megset::phantom
