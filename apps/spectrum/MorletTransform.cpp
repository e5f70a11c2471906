#include "apps/spectrum/MorletTransform.h"

#include <fftw3.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace megset::spectrum {

namespace {

constexpr double reach = 5.0; // of a wavelet, in standard deviations of its envelope
constexpr std::size_t longestTransform = std::size_t{1} << 26U;
// 128 MiB; beyond, wavelets are made anew for each channel, which takes as long again.
constexpr std::size_t mostKeptValues = std::size_t{1} << 24U;

double deviation(double hz, double cycles)
{
    return cycles / (2.0 * std::numbers::pi * hz);
}

// Samples from the middle of a wavelet to its end.
std::size_t halfLength(double hz, double cycles, double rate)
{
    const double samples = reach * deviation(hz, cycles) * rate;
    if (!(samples < static_cast<double>(longestTransform)))
        throw std::invalid_argument("the wavelets are too long");
    return static_cast<std::size_t>(samples);
}

// The next length that has the factors 2, 3 and 5 alone, which transforms are quick for.
std::size_t goodLength(std::size_t least)
{
    for (std::size_t length = least;; ++length) {
        std::size_t rest = length;
        for (const std::size_t factor : {2U, 3U, 5U})
            while (rest % factor == 0)
                rest /= factor;
        if (rest == 1)
            return length;
    }
}

} // namespace

// Forward and backward transform of one length, neither divided by the length. Not in place: for that FFTW takes a
// buffer at every transform, which the heap can't give again for the next one, so that it grows with the channels.
class MorletTransform::Fft
{
public:
    explicit Fft(std::size_t length) : m_length(length), m_input(newArray(length)), m_output(newArray(length))
    {
        if (m_input == nullptr || m_output == nullptr)
            throw std::bad_alloc();
        const auto n = static_cast<int>(length);
        m_forward = fftw_plan_dft_1d(n, m_input.get(), m_output.get(), FFTW_FORWARD, FFTW_ESTIMATE);
        m_backward = fftw_plan_dft_1d(n, m_input.get(), m_output.get(), FFTW_BACKWARD, FFTW_ESTIMATE);
    }
    Fft(const Fft&) = delete;
    Fft& operator=(const Fft&) = delete;
    ~Fft()
    {
        fftw_destroy_plan(m_forward);
        fftw_destroy_plan(m_backward);
    }

    std::span<std::complex<double>> input() const { return view(m_input); }
    std::span<const std::complex<double>> output() const { return view(m_output); }
    void forward() const { fftw_execute(m_forward); }
    void backward() const { fftw_execute(m_backward); }

private:
    struct Free
    {
        void operator()(fftw_complex* array) const { fftw_free(array); }
    };
    using Array = std::unique_ptr<fftw_complex[], Free>;

    static Array newArray(std::size_t length)
    {
        return Array(static_cast<fftw_complex*>(fftw_malloc(length * sizeof(fftw_complex))));
    }
    // std::complex<double> is laid out as two doubles.
    std::span<std::complex<double>> view(const Array& array) const
    {
        return {reinterpret_cast<std::complex<double>*>(array.get()), m_length};
    }

    std::size_t m_length;
    Array m_input;
    Array m_output;
    fftw_plan m_forward = nullptr;
    fftw_plan m_backward = nullptr;
};

MorletTransform::MorletTransform(std::size_t samples, double rate, std::vector<double> hz, double cycles)
    : m_samples(samples), m_rate(rate), m_cycles(cycles), m_hz(std::move(hz))
{
    if (!(cycles > 0.0))
        throw std::invalid_argument("a wavelet has more than 0 cycles");
    std::size_t longest = 0;
    for (const double frequency : m_hz) {
        if (!(frequency > 0.0 && frequency < rate / 2.0))
            throw std::invalid_argument("the frequency " + std::to_string(frequency) +
                                        " Hz is not between 0 and half of the sampling rate");
        longest = std::max(longest, halfLength(frequency, cycles, rate));
    }
    // Behind the samples there is room for half a wavelet, so that its two ends don't meet samples from the other end.
    if (samples + longest >= longestTransform)
        throw std::invalid_argument("the wavelets are too long");
    m_fft = std::make_unique<Fft>(goodLength(std::max(samples + longest, 2 * longest + 1)));
    if (m_fft->input().size() > mostKeptValues / std::max<std::size_t>(m_hz.size(), 1))
        return;
    for (const double frequency : m_hz)
        m_wavelets.push_back(spectrumOfWavelet(frequency));
}

MorletTransform::~MorletTransform() = default;

// The wavelet's middle stands at index 0, its first half at the end. w(-t) is the conjugate of w(t), so that its
// spectrum is real.
std::vector<double> MorletTransform::spectrumOfWavelet(double hz) const
{
    const double s = deviation(hz, m_cycles);
    const double mean = std::exp(-m_cycles * m_cycles / 2.0);
    const std::size_t half = halfLength(hz, m_cycles, m_rate);
    const auto data = m_fft->input();
    std::ranges::fill(data, 0.0);
    double sum = 0.0;
    for (std::size_t i = 0; i <= half; ++i) {
        const double t = static_cast<double>(i) / m_rate;
        const double envelope = std::exp(-t * t / (2.0 * s * s));
        const std::complex<double> wave = std::polar(1.0, 2.0 * std::numbers::pi * hz * t) - mean;
        data[i] = envelope * wave;
        if (i > 0)
            data[data.size() - i] = envelope * std::conj(wave);
        sum += i > 0 ? 2.0 * envelope : envelope;
    }
    m_fft->forward();
    const double scale = 2.0 / sum / static_cast<double>(data.size());
    std::vector<double> spectrum(data.size());
    std::ranges::transform(m_fft->output(), spectrum.begin(),
                           [=](const std::complex<double>& x) { return scale * x.real(); });
    return spectrum;
}

void MorletTransform::transform(std::span<const double> samples, const TimeAxis& axis, std::span<double> real,
                                std::span<double> imaginary)
{
    const std::size_t points = axis.points(m_samples);
    const auto data = m_fft->input();
    const auto transformed = m_fft->output();
    std::ranges::fill(data, 0.0);
    std::ranges::copy(samples.first(std::min(samples.size(), m_samples)), data.begin());
    m_fft->forward();
    m_spectrum.assign(transformed.begin(), transformed.end());
    std::vector<double> unkept;
    for (std::size_t f = 0; f < m_hz.size(); ++f) {
        if (m_wavelets.empty())
            unkept = spectrumOfWavelet(m_hz[f]);
        const std::vector<double>& wavelet = m_wavelets.empty() ? unkept : m_wavelets[f];
        for (std::size_t i = 0; i < data.size(); ++i)
            data[i] = m_spectrum[i] * wavelet[i];
        m_fft->backward();
        for (std::size_t t = 0; t < points; ++t) {
            const std::complex<double> value = transformed[axis.edge + t * axis.step];
            real[t * m_hz.size() + f] = value.real();
            imaginary[t * m_hz.size() + f] = value.imag();
        }
    }
}

} // namespace megset::spectrum
