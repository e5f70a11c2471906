#pragma once

#include "apps/phantom/Instrument.h"
#include "apps/phantom/PhantomOptions.h"
#include "apps/phantom/fields.h"
#include "apps/phantom/portable.h"

#include <vector>

namespace megset::phantom {

/// The dipole that answers the stimuli, in the frame of the head; the moment is that of the first, largest peak.
CurrentDipole evokedDipole(const Instrument& instrument);

/// The answer to a stimulus, as a factor of the dipole's moment, at a time in s after the stimulus: 1 at 0.1 s, then a
/// longer and lower wave the other way around 0.2 s, over at 0.28 s.
double evokedWave(double seconds);

/// What a sensor of field tells of a current dipole in the conducting sphere (frame of the head), in T.
double brainField(const Instrument& instrument, const Channel& channel, const CurrentDipole& dipole);
/// What an electrode tells of it, in V.
double brainPotential(const Instrument& instrument, const Channel& channel, const CurrentDipole& dipole);
/// What a sensor of field tells of a magnetic dipole in free space (frame of the dewar; m and A m^2), in T.
double magnetField(const Channel& channel, const Vector3& position, const Vector3& moment);

/// All that is not noise of the sensors themselves: the answering dipole, two of alpha rhythm in the back of the head,
/// and three disturbers outside: mains, a machine that turns, and slow traffic. Each is a course over time, and the
/// share that every channel has of it.
class Sources
{
public:
    Sources(const Instrument& instrument, const PhantomOptions& options);

    std::size_t count() const { return m_shares.size(); }
    /// Share of a channel in a source, in T or V to a course of 1.
    double share(std::size_t source, std::size_t channel) const { return m_shares[source][channel]; }
    /// Courses of all sources over a trial, sources x samples. Trials are asked for in order, each once.
    std::vector<std::vector<double>> courses(const PhantomPlan& plan, int trial);

private:
    void addBrain(const Instrument& instrument, const CurrentDipole& dipole);
    void addMagnet(const Instrument& instrument, const Vector3& position, const Vector3& moment);

    std::vector<double> evokedCourse(const PhantomPlan& plan, int trial) const;

    double m_rate;
    PhantomOptions m_options;
    std::vector<std::vector<double>> m_shares;
    std::vector<NarrowBandNoise> m_alpha;
    std::vector<double> m_phases; ///< of the disturbers' oscillations, in turns
};

} // namespace megset::phantom
