// What processing makes of the real recording of a CTF system, from the command line.

#include "tests/real/RealSession.h"

#include <algorithm>
#include <cstring>

#include <gmock/gmock.h>

namespace megset::session_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr std::size_t samples = 1201; // of a trial

void expectClean(const std::string& check)
{
    EXPECT_THAT(check, HasSubstr("2 of 2 trials read, nothing wrong"));
    EXPECT_THAT(check, Not(HasSubstr("note: ")));
}

bool sameBits(const NpyMatrix& a, const NpyMatrix& b)
{
    return a.rows == b.rows && a.columns == b.columns &&
           std::memcmp(a.values.data(), b.values.data(), a.values.size() * sizeof(double)) == 0;
}

// Sample k of a trial of `recorded` when each `factor` samples become their mean; the last window counts the last
// sample again.
double meanOf(const double* recorded, std::size_t k, std::size_t factor)
{
    double sum = 0.0;
    for (std::size_t j = 0; j < factor; ++j)
        sum += recorded[std::min(k * factor + j, samples - 1)];
    return sum / static_cast<double>(factor);
}

TEST_F(RealSession, EachStepOfAChainChecksOutAndRestoreGivesTheRecordedBits)
{
    const NpyMatrix recorded = exported("run.meg");
    expectClean(run({"check", path("run.meg")}));

    run({"gradient", path("run.meg"), "--order", "3", "--out", path("clean.meg")});
    expectClean(run({"check", path("clean.meg")}));
    const NpyMatrix clean = exported("clean.meg");
    EXPECT_FALSE(sameBits(clean, recorded));
    EXPECT_TRUE(sameBits(exported("clean.meg", {"--raw"}), recorded));
    EXPECT_THAT(info("clean.meg").at("processing"), json({"273 MEG channels at gradient order 3"}));

    run({"montage", path("clean.meg"), "--average", "--out", path("average.meg")});
    expectClean(run({"check", path("average.meg")}));
    const NpyMatrix average = exported("average.meg");
    EXPECT_FALSE(sameBits(average, clean));
    EXPECT_TRUE(sameBits(exported("average.meg", {"--kind", "meg"}), exported("clean.meg", {"--kind", "meg"})));
    EXPECT_EQ(info("average.meg").at("processing").size(), 2U);

    run({"resample", path("average.meg"), "--factor", "4", "--average", "--out", path("slow.meg")});
    expectClean(run({"check", path("slow.meg")}));
    const NpyMatrix slow = exported("slow.meg");
    ASSERT_EQ(slow.rows, recorded.rows);
    ASSERT_EQ(slow.columns, 2 * (samples / 4 + 1));
    for (std::size_t c = 0; c < slow.rows; ++c)
        for (std::size_t i = 0; i < slow.columns; ++i) {
            const std::size_t trial = i / (slow.columns / 2);
            ASSERT_EQ(slow.row(c)[i], meanOf(recorded.row(c) + trial * samples, i % (slow.columns / 2), 4)) << c;
        }
    EXPECT_THAT(info("slow.meg").at("processing"),
                json({"273 MEG channels at gradient order 0", "re-sampled by 4, averaging"}));

    run({"restore", path("slow.meg"), "--out", path("back.meg")});
    expectClean(run({"check", path("back.meg")}));
    EXPECT_TRUE(sameBits(exported("back.meg"), recorded));
    EXPECT_TRUE(sameBits(exported("run.meg"), recorded)) << "the source has changed";
    json before = info("run.meg");
    json after = info("back.meg");
    for (const char* key : {"rate_hz", "samples", "pre_trigger_samples", "channels", "marks", "processing"})
        EXPECT_EQ(after.at(key), before.at(key)) << key;
}

TEST_F(RealSession, RestoreUndoesEachMontageAndResamplingToTheBit)
{
    const NpyMatrix recorded = exported("run.meg");
    m_folder.write("bipolar.txt", "EEG057 = EEG058\nEEG059 = 0.5*EEG057 + 2*EEG060 / 3\n");
    const std::vector<std::vector<std::string>> steps = {
        {"montage", path("run.meg"), "--average", "--in-place"},
        {"montage", path("run.meg"), "--reference", "EEG057", "--in-place"},
        {"montage", path("run.meg"), "--bipolar", path("bipolar.txt"), "--in-place"},
        {"resample", path("run.meg"), "--factor", "7", "--in-place"},
        {"resample", path("run.meg"), "--factor", "599", "--average", "--in-place"},
    };
    for (const auto& step : steps) {
        run(step);
        EXPECT_FALSE(sameBits(exported("run.meg"), recorded)) << step[0] << ' ' << step[2];
        expectClean(run({"check", path("run.meg")}));
        run({"restore", path("run.meg"), "--in-place"});
        EXPECT_TRUE(sameBits(exported("run.meg"), recorded)) << step[0] << ' ' << step[2];
    }
}

} // namespace
} // namespace megset::session_test
