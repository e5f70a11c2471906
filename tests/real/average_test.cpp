// The average reference of the real recording's EEG channels, from the command line, held against MNE-Python 1.3.0's.

#include "tests/real/RealSession.h"

#include <array>
#include <cmath>

namespace megset::average_test {
namespace {

constexpr std::size_t samples = 1201; // of a trial

struct Reference
{
    const char* channel;
    std::array<double, 8> volts; // samples 0, 400, 800 and 1200 of the first trial, then of the second
};

// raw = mne.io.read_raw_ctf("testdata_ctf_short_discontinuous.ds", system_clock="ignore", preload=True)
// raw.pick_types(meg=False, eeg=True, ref_meg=False).set_eeg_reference("average")
// repr(float(raw.get_data()[channel, 1201 * trial + sample]))
constexpr std::array<Reference, 8> averageReference = {{
    {"EEG057",
     {0.01743172183208022, 0.017469121445565367, 0.017452507324598354, 0.017451239960212445, 0.018285849187789666,
      0.0182871449220601, 0.018283464355384943, 0.018282301366329884}},
    {"EEG058",
     {0.0026187152011666603, 0.0026088293243040905, 0.002610261974104189, 0.002623961221594112, 0.0031340767672380088,
      0.003159520383342579, 0.0031605288945585064, 0.0032235492744002447}},
    {"EEG059",
     {0.014514005492856669, 0.014443444949834322, 0.01453849845351396, 0.014481476219092099, 0.014877546003682213,
      0.01481459493328921, 0.014891471681616947, 0.014855327391469414}},
    {"EEG060",
     {-0.10776860228360072, -0.10776009789676719, -0.10777576565007485, -0.10776754114419321, -0.10811476327394529,
      -0.10810743033426903, -0.10812258666607658, -0.10812752478808854}},
    {"EEG061",
     {0.017761231168629182, 0.01776969749400273, 0.017753800432146027, 0.017762111398628128, 0.017414487509020665,
      0.017421866498364552, 0.017407313981076505, 0.017401440298980247}},
    {"EEG062",
     {0.01858082926182028, 0.018590038020610794, 0.018573429538378594, 0.018582339150539945, 0.01823410486788904,
      0.018241239512057722, 0.01822676546716248, 0.018222011543821054}},
    {"EEG063",
     {0.018084720215976763, 0.01809358689152199, 0.018077097762509986, 0.018086833919215922, 0.017738289976044902,
      0.017745432608421235, 0.01773127621225376, 0.017725588138511744}},
    {"EEG064",
     {0.01877737911107094, 0.018785379770927896, 0.01877017016482374, 0.018779579274910557, 0.018430408962280792,
      0.018437631476733635, 0.018421766074023432, 0.018417306774575953}},
}};

TEST_F(RealSession, AverageReferenceAgreesWithMnePythons)
{
    run({"montage", path("run.meg"), "--average", "--out", path("average.meg")});
    for (const Reference& expected : averageReference) {
        const NpyMatrix ours = exported("average.meg", {"--channels", expected.channel});
        ASSERT_EQ(ours.rows, 1U);
        ASSERT_EQ(ours.columns, 2 * samples);
        for (std::size_t i = 0; i < expected.volts.size(); ++i) {
            const double microvolts = 1e6 * expected.volts[i];
            const double value = ours.values[samples * (i / 4) + 400 * (i % 4)];
            EXPECT_LE(std::abs(value - microvolts), 1e-12 * std::abs(microvolts))
                << expected.channel << ", " << i << ": " << value << " and " << microvolts;
        }
    }
}

} // namespace
} // namespace megset::average_test
