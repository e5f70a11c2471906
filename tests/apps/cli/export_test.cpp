#include "apps/cli/dataset/channelSelection.h"
#include "apps/cli/dataset/sampleRange.h"
#include "apps/cli/export/exportSamples.h"
#include "tests/apps/cli/SampleCommand.h"

#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::export_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::string contentOf(const std::filesystem::path& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

struct Matrix
{
    std::string header;
    std::vector<double> values;
};

// The parts of a .npy file of version 1.0.
Matrix readNpy(const std::filesystem::path& path)
{
    const std::string bytes = contentOf(path);
    EXPECT_EQ(bytes.substr(0, 8), std::string("\x93NUMPY\x01\x00", 8));
    const std::size_t length = static_cast<unsigned char>(bytes[8]) + 256U * static_cast<unsigned char>(bytes[9]);
    EXPECT_EQ((10 + length) % 64, 0U);
    EXPECT_EQ(bytes[10 + length - 1], '\n');
    Matrix matrix;
    matrix.header = bytes.substr(10, length);
    matrix.values.resize((bytes.size() - 10 - length) / sizeof(double));
    std::memcpy(matrix.values.data(), bytes.data() + 10 + length, matrix.values.size() * sizeof(double));
    return matrix;
}

class Export : public SampleCommand
{
protected:
    Export() : SampleCommand("export") {}
};

TEST_F(Export, NpyHoldsAllTrialsEndToEndWithARowForEachChannel)
{
    const auto result = run({"--npy", file("all.npy")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("all.npy: 6 channels x 60 samples\n"));
    const Matrix matrix = readNpy(file("all.npy"));
    EXPECT_THAT(matrix.header, StartsWith("{'descr': '<f8', 'fortran_order': False, 'shape': (6, 60), }"));
    ASSERT_EQ(matrix.values.size(), 360U);
    for (std::size_t channel = 0; channel < 6; ++channel)
        for (std::size_t i = 0; i < 60; ++i)
            ASSERT_EQ(matrix.values[channel * 60 + i],
                      SampleDataset::sampleAt(static_cast<int>(i / 20), static_cast<int>(channel),
                                              static_cast<std::int64_t>(i % 20)));
}

TEST_F(Export, ChannelsTrialAndSamplesAreChosen)
{
    const auto result = run({"--npy", file("part.npy"), "--channels", "M2,E1", "--trial", "1", "--samples", "3:5"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(readNpy(file("part.npy")).values, ElementsAre(1203, 1204, 1205, 1303, 1304, 1305));
}

TEST_F(Export, KindChoosesChannels)
{
    run({"--npy", file("meg.npy"), "--kind", "meg", "--trial", "0", "--samples", "0:0"});
    EXPECT_THAT(readNpy(file("meg.npy")).values, ElementsAre(100, 200));
}

TEST_F(Export, RawGivesTheSamplesAsRecorded)
{
    sample.dataset().getTrialzk(0)->getChannel(1)->getDataWave()[0] = -1.0;
    sample.store();
    const std::vector<std::string> options = {"--channels", "M1", "--trial", "0", "--samples", ":0"};
    auto worked = options;
    worked.insert(worked.end(), {"--npy", file("worked.npy")});
    run(worked);
    auto raw = options;
    raw.insert(raw.end(), {"--npy", file("raw.npy"), "--raw"});
    run(raw);
    EXPECT_THAT(readNpy(file("worked.npy")).values, ElementsAre(-1));
    EXPECT_THAT(readNpy(file("raw.npy")).values, ElementsAre(100));
}

TEST_F(Export, TextHasALineForEachSampleWithItsTimeFromTheTrigger)
{
    const auto result = run({"--txt", file("part.txt"), "--channels", "M1,S1", "--samples", "4:5", "--trial", "1"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(contentOf(file("part.txt")), "trial\ttime_s\tM1-77\tS1\n"
                                           "1\t-0.005\t1104\t1404\n"
                                           "1\t0\t1105\t1405\n");
}

TEST_F(Export, RowOfAShorterChannelIsFilledUpWithZeros)
{
    sample.dataset().getTrialzk(0)->getChannel(1)->initData(1, true);
    sample.store();
    run({"--npy", file("short.npy"), "--channels", "M1", "--trial", "0", "--samples", "0:2"});
    EXPECT_THAT(readNpy(file("short.npy")).values, ElementsAre(0, 0, 0));
}

TEST_F(Export, ExistingFileStays)
{
    sample.folder().write("old.npy", "mine");
    const auto result = run({"--npy", file("old.npy")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("old.npy: exists already"));
    EXPECT_EQ(contentOf(file("old.npy")), "mine");
}

TEST_F(Export, UnknownChannelNamesTheNearest)
{
    const auto result = run({"--npy", file("x.npy"), "--channels", "M9"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("there is no channel M9; the nearest names are M1-77, M2-77"));
    EXPECT_FALSE(sample.folder().has("x.npy"));
}

TEST_F(Export, TrialThatIsNotThereIsTold)
{
    const auto result = run({"--npy", file("x.npy"), "--trial", "3"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("there is no trial 3; the dataset has 3"));
}

TEST_F(Export, MissingTrialIsToldAndNoFileIsLeft)
{
    std::filesystem::remove(sample.trialFile(1));
    const auto result = run({"--npy", file("x.npy")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("runTrial1.trl: the trial's file is missing"));
    EXPECT_FALSE(sample.folder().has("x.npy"));
}

TEST_F(Export, FileThatCanNotBeMadeIsTold)
{
    const auto result = run({"--npy", file("no") + "/x.npy"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("x.npy: can't be written"));
}

TEST_F(Export, OneTargetIsAsked)
{
    EXPECT_EQ(run({}).exitCode, 2);
    EXPECT_EQ(run({"--npy", file("a"), "--txt", file("b")}).exitCode, 2);
    EXPECT_EQ(run({"--npy", file("a"), "--kind", "none"}).exitCode, 2);
}

TEST(SampleRange, BothEndsAreIncludedAndMayBeLeftOut)
{
    EXPECT_EQ(parseSampleRange("", 10).count(), 10);
    EXPECT_EQ(parseSampleRange("2:4", 10).count(), 3);
    EXPECT_EQ(parseSampleRange(":4", 10).from, 0);
    EXPECT_EQ(parseSampleRange("4:", 10).to, 9);
}

TEST(SampleRange, OtherTextsAndRangesOutsideAreRefused)
{
    for (const char* text : {"3", "a:b", "1:2:3", "-1:2", "4:3", "0:10", "1 :2"})
        EXPECT_THROW(parseSampleRange(text, 10), std::runtime_error) << text;
}

TEST(ChannelSelection, FullNameGoesBeforeTheNameUpToTheDash)
{
    CMDTrialzk trial;
    trial.allocateChannels(2);
    trial.getChannel(0)->m_strChannelName = "A-1";
    trial.getChannel(1)->m_strChannelName = "A";
    EXPECT_EQ(channelNamed(trial, "A"), 1);
    EXPECT_EQ(channelNamed(trial, "A-1"), 0);
    EXPECT_THROW(channelNamed(trial, ""), std::runtime_error);
}

TEST(ChannelSelection, NamesGoByTheirOrder)
{
    CMDTrialzk trial;
    trial.allocateChannels(2);
    trial.getChannel(0)->m_strChannelName = "A";
    trial.getChannel(1)->m_strChannelNameRaw = "B";
    EXPECT_THAT(selectChannels(trial, {"B", "A"}, "meg"), ElementsAre(1, 0));
    EXPECT_THAT(selectChannels(trial, {}, "all"), ElementsAre(0, 1));
}

} // namespace

} // namespace megset::cli::export_test
