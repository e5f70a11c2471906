#pragma once
// Numbers that come out bit for bit alike on every machine. The C library's sine, exponential and logarithm and the
// standard's random distributions may differ in their last bits from one system to the next; what stands here takes
// additions, multiplications and divisions alone, which IEEE 754 fixes, as it does the square root.

#include <cstdint>

namespace megset::phantom {

inline constexpr double pi = 3.14159265358979323846;

/// Sine and cosine of an angle in full turns: 0.25 is a right angle. Within 1e-15 of the true value while the angle has
/// a fraction to tell.
double sineOfTurns(double turns);
double cosineOfTurns(double turns);

/// Random numbers (splitmix64). Streams of the same seed with different numbers are independent of one another.
class RandomStream
{
public:
    RandomStream(std::uint64_t seed, std::uint64_t stream);

    std::uint64_t next();
    /// Evenly spread over [0, 1).
    double uniform();
    /// Mean 0, variance 1: the sum of eight uniform numbers of 16 bits, scaled. It follows the bell curve closely, and
    /// ends at 4.9 standard deviations.
    double normal();

private:
    std::uint64_t m_state;
};

/// An oscillation around a frequency with a waxing and waning amplitude: noise through a resonator of two poles. Its
/// variance is 1.
class NarrowBandNoise
{
public:
    /// Frequency, its width at half power and the sampling rate in Hz; the frequency is below half the rate.
    NarrowBandNoise(double frequency, double width, double rate, RandomStream random);

    double next();

private:
    double m_feedback1;
    double m_feedback2;
    double m_drive;
    double m_last = 0;
    double m_beforeLast = 0;
    RandomStream m_random;
};

} // namespace megset::phantom
