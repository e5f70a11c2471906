#pragma once
// Complex Morlet wavelets over the samples of a channel.

#include <complex>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace megset::spectrum {

/// Where the transform is taken.
struct TimeAxis
{
    std::size_t edge = 0; ///< samples left out at each end
    std::size_t step = 1; ///< samples from one point to the next

    /// Points over so many samples.
    std::size_t points(std::size_t samples) const
    {
        return samples > 2 * edge ? (samples - 2 * edge - 1) / step + 1 : 0;
    }
};

/// The wavelet of frequency f is w(t) = 2 / sum(g) * g(t) * (exp(2 pi i f t) - exp(-c^2 / 2)), with c cycles and
/// g(t) = exp(-t^2 / (2 s^2)), s = c / (2 pi f), out to 5 s (Tallon-Baudry and Bertrand, 1999; the second term takes
/// its mean away). The transform is the convolution with the samples, so that a wave a * cos(2 pi f t + p) gives a *
/// exp(i (2 pi f t + p)): its magnitude is the amplitude, in the samples' unit. Samples beyond the ends count as 0,
/// which reaches 5 s into the result.
class MorletTransform
{
public:
    /// For blocks of `samples`, at least 1. Throws std::invalid_argument for cycles that are not above 0, for a
    /// frequency that is not between 0 and half of the rate, and for more than 2^26 samples with half a wavelet.
    MorletTransform(std::size_t samples, double rate, std::vector<double> hz, double cycles);
    MorletTransform(const MorletTransform&) = delete;
    MorletTransform& operator=(const MorletTransform&) = delete;
    ~MorletTransform();

    std::size_t frequencies() const { return m_hz.size(); }
    /// Puts points x frequencies into `real` and `imaginary`, time-major; both have that size.
    void transform(std::span<const double> samples, const TimeAxis& axis, std::span<double> real,
                   std::span<double> imaginary);

private:
    class Fft;

    std::vector<double> spectrumOfWavelet(double hz) const;

    std::size_t m_samples;
    double m_rate;
    double m_cycles;
    std::vector<double> m_hz;
    std::unique_ptr<Fft> m_fft;
    std::vector<std::vector<double>> m_wavelets;  ///< spectra, one for each frequency; none when they are too many
    std::vector<std::complex<double>> m_spectrum; ///< of the samples; kept, for no memory shall come and go per channel
};

} // namespace megset::spectrum
