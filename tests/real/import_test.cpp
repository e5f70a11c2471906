// A session on the real recording of a CTF system, through the program, held against what MNE-Python 1.3.0 makes of it.

#include "tests/real/RealSession.h"

#include <cmath>

#include <gmock/gmock.h>

namespace megset::import_test {
namespace {

using nlohmann::json;

double rms(const double* values, std::size_t count)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < count; ++i)
        sum += values[i] * values[i];
    return std::sqrt(sum / static_cast<double>(count));
}

TEST_F(RealSession, AllChannelsAgreeAfterTheImport)
{
    const NpyMatrix ours = exported("run.meg");
    const NpyMatrix theirs = expected("grade0.npy");
    const json list = info("run.meg").at("channels");
    ASSERT_EQ(ours.rows, theirs.rows);
    ASSERT_EQ(ours.columns, theirs.columns);
    for (std::size_t c = 0; c < ours.rows; ++c) {
        const std::string unit = list[c].at("unit");
        const double scale = unit == "fT" ? 1e15 : unit == "uV" ? 1e6 : 1.0;
        for (std::size_t i = 0; i < ours.columns; ++i) {
            const double wanted = theirs.row(c)[i] * scale;
            ASSERT_LE(std::abs(ours.row(c)[i] - wanted), 1e-9 * std::abs(wanted)) << list[c].at("name") << ' ' << i;
        }
    }
}

TEST_F(RealSession, Order3AgreesForAllGradiometersAndOrder0BringsThemBack)
{
    const NpyMatrix before = exported("run.meg");
    run({"gradient", path("run.meg"), "--order", "3", "--out", path("clean.meg")});
    const NpyMatrix ours = exported("clean.meg");
    const NpyMatrix theirs = expected("grade3.npy");
    const json list = info("run.meg").at("channels");
    std::size_t row = 0;
    int compared = 0;
    for (std::size_t c = 0; c < ours.rows; ++c) {
        const std::string kind = list[c].at("kind");
        if (kind != "meg" && kind != "ref")
            continue;
        const double* const wanted = theirs.row(row++);
        if (kind != "meg")
            continue;
        ++compared;
        const double allowed = 1e-6 * rms(ours.row(c), ours.columns);
        for (std::size_t i = 0; i < ours.columns; ++i)
            ASSERT_LE(std::abs(ours.row(c)[i] - 1e15 * wanted[i]), allowed) << list[c].at("name") << ' ' << i;
    }
    EXPECT_EQ(row, theirs.rows);
    EXPECT_EQ(compared, 273);

    run({"gradient", path("clean.meg"), "--order", "0", "--in-place"});
    const NpyMatrix back = exported("clean.meg");
    for (std::size_t c = 0; c < back.rows; ++c) {
        const double allowed = 1e-12 * rms(before.row(c), before.columns);
        for (std::size_t i = 0; i < back.columns; ++i)
            ASSERT_LE(std::abs(back.row(c)[i] - before.row(c)[i]), allowed) << list[c].at("name") << ' ' << i;
    }
}

TEST_F(RealSession, OrdersInTurnAndRestoreGiveTheRecordedSamples)
{
    const NpyMatrix recorded = exported("run.meg");
    for (const char* order : {"1", "3", "1", "1", "2"})
        run({"gradient", path("run.meg"), "--order", order, "--in-place"});
    EXPECT_NE(exported("run.meg").values, recorded.values);
    run({"restore", path("run.meg"), "--in-place"});
    EXPECT_EQ(exported("run.meg").values, recorded.values);
    EXPECT_THAT(run({"check", path("run.meg")}), testing::HasSubstr("nothing wrong"));
}

TEST_F(RealSession, MovedFolderOpensAndIsMended)
{
    const NpyMatrix before = exported("run.meg");
    const TemporaryFolder other;
    for (const std::string& name : m_folder.names())
        std::filesystem::rename(m_folder.native(name), other.native(name));
    const std::string moved = other.native("run.meg").string();
    EXPECT_THAT(run({"check", moved}), testing::HasSubstr("note: "));
    run({"gradient", moved, "--order", "0", "--in-place"});
    EXPECT_THAT(run({"check", moved}), testing::Not(testing::HasSubstr("note: ")));
    const std::string file = other.native("moved.npy").string();
    run({"export", moved, "--npy", file});
    EXPECT_EQ(readNpy(file).values, before.values);
}

} // namespace
} // namespace megset::import_test
