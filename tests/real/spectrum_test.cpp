// Wavelet planes of the real recording, from the command line, held against MNE-Python 1.3.0's.

#include "tests/real/RealSession.h"

#include <array>
#include <cmath>
#include <complex>
#include <numbers>

namespace megset::spectrum_test {
namespace {

using Complex = std::complex<double>;

constexpr double rate = 1200.0;
constexpr double cycles = 7.0;
constexpr std::array<double, 4> frequencies = {20.0, 40.0, 60.0, 80.0};
constexpr std::size_t times = 6; // samples 0, 240, ... 1200

struct Reference
{
    const char* channel;
    int trial;
    std::array<std::array<Complex, frequencies.size()>, times> values; // T or V
};

// raw = mne.io.read_raw_ctf("testdata_ctf_short_discontinuous.ds", system_clock="ignore", preload=True)
// block = raw.get_data()[channel, 1201 * trial:1201 * (trial + 1)]
// mne.time_frequency.tfr_array_morlet(block[None, None, :], sfreq=1200.0, freqs=[20.0, 40.0, 60.0, 80.0], n_cycles=7.0,
//                                     zero_mean=True, output="complex")[0, 0, :, ::240]
const std::array<Reference, 6> wavelets = {{
    {"MLC11-4304",
     0,
     {{
         {Complex(-3.86018736979e-12, 8.72697456957e-11), Complex(-6.05291881185e-12, 6.10637291449e-11),
          Complex(-7.95794530773e-12, 4.97038730572e-11), Complex(-9.01159356365e-12, 4.28721679302e-11)},
         {Complex(1.44279975718e-12, 9.00331257831e-13), Complex(1.18099608161e-13, -2.95255415748e-13),
          Complex(-3.42372766118e-13, -2.5701642645e-13), Complex(-9.6008165707e-14, -1.03312489883e-13)},
         {Complex(5.64265677305e-13, -4.35939051381e-13), Complex(-8.52621486498e-14, -1.5870604322e-13),
          Complex(-6.07113864352e-14, -8.30491785502e-14), Complex(7.25864179784e-14, -6.30421952738e-14)},
         {Complex(2.19513437297e-13, 9.96826584335e-13), Complex(-3.30592451811e-13, 3.9498414178e-16),
          Complex(-4.65233313234e-14, 3.71430560489e-14), Complex(8.99170594184e-14, 7.25488486436e-15)},
         {Complex(5.62034488106e-13, 1.14272786323e-12), Complex(-7.4232423644e-14, -1.11320876572e-13),
          Complex(-3.06356913984e-14, -9.55204627982e-14), Complex(-1.09609368841e-13, 3.4949007672e-14)},
         {Complex(-4.71391427926e-12, -8.73229695827e-11), Complex(-6.6001614026e-12, -6.12584455856e-11),
          Complex(-7.83270100245e-12, -5.01414667995e-11), Complex(-8.97250937552e-12, -4.29689947065e-11)},
     }}},
    {"MRT57-4304",
     0,
     {{
         {Complex(7.07164031136e-12, -1.34531425964e-10), Complex(1.00278104603e-11, -9.4997368442e-11),
          Complex(1.21504886192e-11, -7.72914273504e-11), Complex(1.40676784809e-11, -6.66437394204e-11)},
         {Complex(-2.39439253547e-13, 9.39267071337e-14), Complex(-1.54848882342e-13, 6.26653753301e-13),
          Complex(1.1177787638e-13, -1.72387972682e-13), Complex(2.46489313044e-13, 6.1147874876e-13)},
         {Complex(1.81937293838e-13, -2.71907664476e-13), Complex(-1.70021095982e-13, 1.28608735826e-13),
          Complex(-1.87872496381e-13, 3.93708186127e-13), Complex(5.80777677504e-14, -3.46687327028e-14)},
         {Complex(-3.26183762765e-15, -9.70663714705e-14), Complex(-1.41170823384e-13, -3.8972234657e-15),
          Complex(1.30289686466e-13, -1.90999418951e-13), Complex(4.24168976296e-13, 5.09234328717e-14)},
         {Complex(-1.37618031091e-13, 2.27066380755e-13), Complex(7.41129819968e-13, 7.83443262208e-14),
          Complex(3.54165628906e-13, 4.3996551936e-13), Complex(4.78432672861e-15, 1.61527893871e-14)},
         {Complex(6.83651740878e-12, 1.34137827195e-10), Complex(9.3219550553e-12, 9.42864331814e-11),
          Complex(1.19880981583e-11, 7.66060781038e-11), Complex(1.37441723049e-11, 6.61660632176e-11)},
     }}},
    {"EEG057",
     0,
     {{
         {Complex(-5.51602945422e-05, 0.00112849889387), Complex(-0.000101972849316, 0.000786497909953),
          Complex(-0.000109446618538, 0.000683723911598), Complex(-0.000110086558146, 0.000577225441667)},
         {Complex(7.66166727666e-06, 1.51182315595e-05), Complex(-1.67617233504e-05, 5.63709994544e-06),
          Complex(-4.0105802157e-05, 5.81549228123e-06), Complex(4.69597651855e-06, -1.02969071225e-05)},
         {Complex(5.94382289512e-06, 1.36955854871e-05), Complex(-2.75147035684e-05, -1.15844529727e-05),
          Complex(-2.89691616999e-05, 6.48946807003e-06), Complex(-6.99952384649e-06, 5.89643040475e-06)},
         {Complex(2.19367131993e-05, 1.24621794326e-05), Complex(-2.11574525461e-05, -9.95128485997e-06),
          Complex(-3.49069587918e-05, -1.14296277597e-05), Complex(3.69649640682e-06, -1.80095583422e-05)},
         {Complex(4.32850553265e-08, 3.57202436028e-06), Complex(-2.2557143646e-05, 8.04358366938e-06),
          Complex(-3.92908872416e-06, -3.93300542606e-06), Complex(1.13582409822e-05, -3.3340478194e-06)},
         {Complex(-6.56864923787e-05, -0.00111084071581), Complex(-8.61522183952e-05, -0.000776658930149),
          Complex(-0.000123963795988, -0.000661753919451), Complex(-0.000122030218569, -0.00058252767786)},
     }}},
    {"MLO53-4304",
     1,
     {{
         {Complex(9.51205303741e-12, -1.86742039622e-10), Complex(1.38716422845e-11, -1.31911619988e-10),
          Complex(1.58301900802e-11, -1.0717592778e-10), Complex(1.89401053467e-11, -9.15000937229e-11)},
         {Complex(-3.77051834964e-14, 7.19026517668e-13), Complex(-6.38232027175e-13, 8.8045521421e-13),
          Complex(2.62091310978e-14, 5.98633162238e-13), Complex(8.77140122747e-13, 5.69258000153e-14)},
         {Complex(2.20184928877e-13, -3.74324888046e-14), Complex(1.0123953642e-12, 1.00115506961e-13),
          Complex(-1.17754965805e-13, 3.13555094241e-13), Complex(4.56525450151e-13, 1.45170916019e-12)},
         {Complex(-7.58107286528e-13, -5.54162549604e-13), Complex(-1.28601009724e-13, -1.78588840618e-13),
          Complex(5.24823666292e-13, 3.11120583379e-13), Complex(1.36082446135e-13, -2.58683959067e-14)},
         {Complex(5.02258657158e-13, 6.96182992173e-13), Complex(-2.03052606431e-13, -1.36932546773e-13),
          Complex(-4.36057172036e-13, -2.49925209278e-13), Complex(6.08383102061e-14, -8.82536614468e-13)},
         {Complex(9.55597612671e-12, 1.86168943371e-10), Complex(1.37346171392e-11, 1.31079427289e-10),
          Complex(1.68601657455e-11, 1.07267897869e-10), Complex(1.91107509999e-11, 9.21766185344e-11)},
     }}},
    {"MZP01-4304",
     1,
     {{
         {Complex(-6.05871038433e-12, 1.13149269151e-10), Complex(-8.12822867337e-12, 7.98371240028e-11),
          Complex(-9.99907523775e-12, 6.49407017409e-11), Complex(-1.14728674791e-11, 5.58715822026e-11)},
         {Complex(6.22673757475e-13, 2.97111216805e-14), Complex(-1.88698809845e-13, 7.34118756544e-14),
          Complex(6.02503154079e-14, 1.56242506923e-13), Complex(4.86805120787e-14, 8.66878425925e-14)},
         {Complex(-7.17214588484e-13, 2.49146773888e-12), Complex(-3.48429265623e-13, -3.17634537378e-13),
          Complex(-1.59357991265e-13, -2.61530696186e-13), Complex(-6.00444046746e-14, -2.33323640137e-13)},
         {Complex(1.26154328708e-12, -5.40487556939e-13), Complex(-2.28127894017e-13, -2.52229149656e-13),
          Complex(-1.37641767223e-13, 7.66712440854e-14), Complex(-7.40420714898e-14, -8.11789417126e-15)},
         {Complex(-1.5270746868e-12, 2.79529850886e-13), Complex(4.73837229775e-13, 1.88289350608e-13),
          Complex(6.50588381923e-14, -2.39904024506e-13), Complex(-1.06508268872e-14, -2.04827580884e-13)},
         {Complex(-5.37851823562e-12, -1.13111800354e-10), Complex(-8.38908531273e-12, -7.9526006348e-11),
          Complex(-1.01323293859e-11, -6.48405691751e-11), Complex(-1.16032386118e-11, -5.57045634133e-11)},
     }}},
    {"EEG057",
     1,
     {{
         {Complex(3.30961019474e-05, -0.000357191040702), Complex(5.30439305649e-05, -0.000234028535992),
          Complex(4.75829426947e-05, -0.000235972876025), Complex(4.40696873847e-05, -0.000205376340342)},
         {Complex(2.53896310303e-05, 3.43250910291e-06), Complex(2.42309594483e-07, -1.29747094747e-05),
          Complex(3.222857438e-05, -3.28451877659e-05), Complex(7.5260294894e-09, -1.01240241833e-05)},
         {Complex(-9.24874351551e-06, -1.86265416992e-06), Complex(-1.08283504732e-05, 7.89450898461e-06),
          Complex(2.03060964652e-05, -3.65241847737e-05), Complex(4.89886315644e-06, -2.17856832831e-05)},
         {Complex(1.94041285383e-05, -2.32698927688e-05), Complex(2.8015466486e-05, 2.38272760217e-06),
          Complex(3.03160523728e-05, 4.74261454901e-06), Complex(6.93328349789e-07, 6.21129394331e-06)},
         {Complex(-1.02942790191e-05, -6.64867161172e-06), Complex(3.30254110931e-06, -1.48905280294e-05),
          Complex(2.534342652e-05, -3.23080229975e-05), Complex(1.69951301803e-06, -7.75750164535e-06)},
         {Complex(1.35310809325e-05, 0.000372393033127), Complex(2.6781861088e-05, 0.000243709501845),
          Complex(4.93391507839e-05, 0.000224033239431), Complex(3.20332872536e-05, 0.000185446101103)},
     }}},
}};

// What MNE-Python's values times are ours: it gives its wavelets the norm sqrt(2), ours are divided by half the sum of
// the envelope.
double scaleOf(double hz)
{
    const double s = cycles / (2.0 * std::numbers::pi * hz);
    const auto half = static_cast<int>(5.0 * s * rate);
    double envelope = 0.0;
    double energy = 0.0;
    for (int k = -half; k <= half; ++k) {
        const double t = k / rate;
        const double g = std::exp(-t * t / (2.0 * s * s));
        envelope += g;
        energy += std::norm(g * (std::polar(1.0, 2.0 * std::numbers::pi * hz * t) - std::exp(-cycles * cycles / 2.0)));
    }
    return std::sqrt(2.0 * energy) / envelope;
}

class RealSpectrum : public RealSession
{
protected:
    /// A plane of the trial, times x frequencies.
    NpyMatrix plane(const Reference& reference, const char* type) const
    {
        const std::string file = path(
            (std::string(reference.channel) + std::to_string(reference.trial) + std::string(type) + ".npy").c_str());
        run({"spectrum", path("run.meg"), "--show", "--channel", reference.channel, "--trial",
             std::to_string(reference.trial), "--type", type, "--npy", file});
        return readNpy(file);
    }
};

TEST_F(RealSpectrum, WaveletsAgreeWithMnePythonsButForTheirScale)
{
    run({"spectrum", path("run.meg"), "--freqs", "20:80:20", "--cycles", "7", "--step", "240", "--kind", "all",
         "--in-place"});
    for (const Reference& reference : wavelets) {
        const double unit = std::string(reference.channel).starts_with("EEG") ? 1e6 : 1e15;
        const NpyMatrix magnitude = plane(reference, "magnitude");
        const NpyMatrix real = plane(reference, "real");
        const NpyMatrix imaginary = plane(reference, "imaginary");
        ASSERT_EQ(magnitude.rows, times);
        ASSERT_EQ(magnitude.columns, frequencies.size());
        for (std::size_t t = 0; t < times; ++t)
            for (std::size_t f = 0; f < frequencies.size(); ++f) {
                const Complex expected = reference.values[t][f] * unit * scaleOf(frequencies[f]);
                const double allowed = 1e-6 * std::abs(expected);
                EXPECT_NEAR(magnitude.row(t)[f], std::abs(expected), allowed)
                    << reference.channel << ' ' << t << ' ' << f;
                EXPECT_NEAR(real.row(t)[f], expected.real(), allowed) << reference.channel << ' ' << t << ' ' << f;
                EXPECT_NEAR(imaginary.row(t)[f], expected.imag(), allowed) << reference.channel << ' ' << t << ' ' << f;
            }
    }
}

} // namespace
} // namespace megset::spectrum_test
