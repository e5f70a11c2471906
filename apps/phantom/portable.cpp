#include "apps/phantom/portable.h"

#include <cmath>

namespace megset::phantom {

namespace {

// Taylor's series, for angles up to a right one; the first term left out is below 1e-18.
double sineOfQuarter(double radians)
{
    constexpr int lastPower = 21;
    const double square = radians * radians;
    double sum = 1;
    for (int power = lastPower; power > 1; power -= 2)
        sum = 1 - sum * square / (power * (power - 1));
    return radians * sum;
}

std::uint64_t mixed(std::uint64_t value)
{
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31);
}

int sumOfQuarters(std::uint64_t bits)
{
    return static_cast<int>((bits & 0xFFFF) + ((bits >> 16) & 0xFFFF) + ((bits >> 32) & 0xFFFF) + (bits >> 48));
}

} // namespace

double sineOfTurns(double turns)
{
    double part = turns - std::floor(turns);
    const double sign = part < 0.5 ? 1 : -1;
    if (part >= 0.5)
        part -= 0.5;
    if (part > 0.25)
        part = 0.5 - part;
    return sign * sineOfQuarter(2 * pi * part);
}

double cosineOfTurns(double turns)
{
    return sineOfTurns(turns + 0.25);
}

RandomStream::RandomStream(std::uint64_t seed, std::uint64_t stream) : m_state(mixed(mixed(seed) + stream)) {}

std::uint64_t RandomStream::next()
{
    m_state += 0x9E3779B97F4A7C15U;
    return mixed(m_state);
}

double RandomStream::uniform()
{
    constexpr double step = 1.0 / (1ULL << 53);
    return static_cast<double>(next() >> 11) * step;
}

double RandomStream::normal()
{
    constexpr double mean = 8 * 65535 / 2.0;
    static const double deviation = std::sqrt(8 * (65536.0 * 65536.0 - 1) / 12);
    const int first = sumOfQuarters(next());
    const int second = sumOfQuarters(next());
    return (first + second - mean) / deviation;
}

NarrowBandNoise::NarrowBandNoise(double frequency, double width, double rate, RandomStream random) : m_random(random)
{
    const double radius = 1 / (1 + pi * width / rate);
    m_feedback1 = 2 * radius * cosineOfTurns(frequency / rate);
    m_feedback2 = -radius * radius;
    // Variance of an autoregressive process of second order, driven by noise of variance 1.
    const double difference = 1 - m_feedback2;
    const double variance = difference / ((1 + m_feedback2) * (difference * difference - m_feedback1 * m_feedback1));
    m_drive = 1 / std::sqrt(variance);
    // The resonator rings for 1 / width seconds: after a few times that the beginning is forgotten.
    for (double left = 3 * rate / width; left > 0; --left)
        next();
}

double NarrowBandNoise::next()
{
    const double value = m_feedback1 * m_last + m_feedback2 * m_beforeLast + m_drive * m_random.normal();
    m_beforeLast = m_last;
    m_last = value;
    return value;
}

} // namespace megset::phantom
