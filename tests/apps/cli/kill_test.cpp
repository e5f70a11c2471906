#include "megset/platform/sanitizers.h"

#include "tests/apps/cli/SampleDataset.h"
#include "tests/kit/tried.h"

#include <chrono>
#include <filesystem>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::kill_test {

namespace {

using testing::AnyOf;

#if MEGSET_ADDRESS_SANITIZER
constexpr int kills = 25; // a sanitized program takes long to start
#else
constexpr int kills = 200;
#endif

// Brings the files back that a change which was cut off had put aside.
void moveBack(const SampleDataset& sample, const std::filesystem::path& former)
{
    if (exists(former / "run.meg"))
        kit::runProgram("/bin/sh",
                        {"-c", "mv '" + former.string() + "'/* '" + sample.folder().native().string() + "'"});
    remove_all(former);
}

// Every trial and the dataset's file are written again and again; what a kill leaves is judged, and mended from what
// the program put aside.
TEST(KilledProgram, LosesNoTrial)
{
    const SampleDataset sample(6, 20000);
    const std::vector<std::string> change = {"resample", sample.path(), "--factor", "2", "--in-place"};
    const std::filesystem::path former = sample.path() + ".former";
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(runMegset(change).exitCode, 0);
    const auto length = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);

    std::mt19937 random(20261122);
    std::uniform_int_distribution<std::int64_t> moment(0, length.count());
    int broken = 0;
    for (int i = 0; i < kills; ++i) {
        countTried(Tried::kill);
        kit::runAndKillProgram(MEGSET_PROGRAM, change, std::chrono::microseconds(moment(random)));
        const auto check = runMegset({"check", sample.path()});
        ASSERT_EQ(check.exitCode, exists(former / "run.meg") ? 1 : 0) << "kill " << i << ": " << check.output;
        const auto info = runMegset({"info", sample.path()});
        ASSERT_THAT(info.exitCode, AnyOf(0, 1)) << "kill " << i << ": " << info.errors;
        broken += check.exitCode;
        moveBack(sample, former);
        const auto mended = runMegset({"check", sample.path()});
        ASSERT_EQ(mended.exitCode, 0) << "kill " << i << ": " << mended.output;
    }
    RecordProperty("broken", broken);
    EXPECT_GT(broken, 0) << "no kill hit a file that was being written";
}

} // namespace

} // namespace megset::cli::kill_test
