#include "apps/readers/ctf/openCtf.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::openCtf_test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class OpenCtf : public testing::Test
{
protected:
    static std::string faultOf(const std::filesystem::path& folder)
    {
        try {
            openCtf(folder);
        } catch (const CtfError& error) {
            return error.what();
        }
        return "none";
    }

    TemporaryFolder m_folder;
    CtfBuilder m_builder;
};

TEST_F(OpenCtf, GivesHeaderAndSamples)
{
    Recording recording = openCtf(m_builder.write(m_folder));
    EXPECT_EQ(recording.name, "small");
    EXPECT_EQ(recording.trials(), 2);
    EXPECT_EQ(recording.header.channels.size(), 7U);
    EXPECT_THAT(recording.warnings, IsEmpty());
    std::vector<std::int32_t> block(recording.data.trialSize());
    recording.data.readTrial(1, block);
    EXPECT_EQ(block.back(), CtfBuilder::sampleAt(1, 6, 3));
}

TEST_F(OpenCtf, TakesAClosingSeparator)
{
    EXPECT_EQ(openCtf(m_builder.write(m_folder).string() + "/").name, "small");
}

TEST_F(OpenCtf, TakesAFolderThatWasRenamed)
{
    m_builder.write(m_folder);
    std::filesystem::rename(m_folder.native("small.ds"), m_folder.native("other.ds"));
    EXPECT_EQ(openCtf(m_folder.native("other.ds")).name, "small");
}

TEST_F(OpenCtf, ReadsContinuousEpochedAndAveragedRecordings)
{
    m_builder.trials = 1; // continuous
    EXPECT_EQ(openCtf(m_builder.write(m_folder)).trials(), 1);
    m_builder.trials = 40; // epochs
    EXPECT_EQ(openCtf(m_builder.write(m_folder)).trials(), 40);
    m_builder.trials = 1; // an average
    m_builder.averages = 100;
    EXPECT_EQ(openCtf(m_builder.write(m_folder)).header.averages, 100);
}

TEST_F(OpenCtf, ReadsWhatPeopleSaidOfIt)
{
    const std::filesystem::path folder = m_builder.write(m_folder);
    m_folder.write("small.ds\\BadChannels", "MLC12\n");
    m_folder.write("small.ds\\bad.segments", "2 0.001 0.002\n");
    m_folder.write("small.ds\\ClassFile.cls",
                   "CLASSGROUPID:\n3\nNAME:\nBAD\nNUMBER OF TRIALS:\n2\nLIST OF TRIALS:\nTRIAL NUMBER\n+1\n+1\n\n"
                   "CLASSGROUPID:\n3\nNAME:\nGOOD\nNUMBER OF TRIALS:\n1\nLIST OF TRIALS:\nTRIAL NUMBER\n+0\n");
    m_folder.write("small.ds\\MarkerFile.mrk", "CLASSGROUPID:\n3\nNAME:\nspike\nNUMBER OF SAMPLES:\n1\n"
                                               "LIST OF SAMPLES:\nTRIAL NUMBER\n+0 +0.005\n");
    m_folder.write("small.ds\\small.hc",
                   "measured nasion coil position relative to head (cm):\n\tx = 10\n\ty = 0\n\tz = 0\n");
    const Recording recording = openCtf(folder);
    EXPECT_THAT(recording.badChannels, ElementsAre(4));
    EXPECT_THAT(recording.badSegments, ElementsAre(BadSegment{1, 0.001, 0.002}));
    EXPECT_THAT(recording.badTrials(), ElementsAre(1));
    EXPECT_THAT(recording.markers, ElementsAre(Marker{"spike", "", {{0, 0.005}}}));
    EXPECT_EQ(recording.coils.measuredHead.nasion, (Vector{10.0, 0.0, 0.0}));
    EXPECT_THAT(recording.warnings, IsEmpty());
}

TEST_F(OpenCtf, TellsOfChannelsWithoutGain)
{
    m_builder.channels[3].properGain = 0.0;
    const Recording recording = openCtf(m_builder.write(m_folder));
    EXPECT_THAT(recording.badChannels, ElementsAre(3));
    EXPECT_THAT(recording.warnings, ElementsAre(HasSubstr("Channel \"MLC11-1\" has no gain")));
}

TEST_F(OpenCtf, CollectsTheWarningsOfAllFiles)
{
    m_builder.coefficients[0].sensor = "MLC13-1";
    const std::filesystem::path folder = m_builder.write(m_folder);
    m_folder.write("small.ds\\small.meg4", m_builder.meg4(0, 1));
    m_folder.write("small.ds\\bad.segments", "2 0 1\n");
    EXPECT_THAT(openCtf(folder).warnings, ElementsAre(HasSubstr("1 of 3 records"), HasSubstr("hold 1 whole trials"),
                                                      HasSubstr("there is no trial 2")));
}

TEST_F(OpenCtf, RefusesWhatIsNoFolder)
{
    EXPECT_THAT(faultOf(m_folder.native("none.ds")), EndsWith("none.ds: this is no CTF dataset, it is no folder"));
    m_folder.write("file.ds", "text");
    EXPECT_THAT(faultOf(m_folder.native("file.ds")), EndsWith("file.ds: this is no CTF dataset, it is no folder"));
}

TEST_F(OpenCtf, RefusesAFolderWithoutHeader)
{
    const std::filesystem::path folder = m_builder.write(m_folder);
    std::filesystem::remove(folder / "small.res4");
    EXPECT_THAT(faultOf(folder), EndsWith("small.ds: this is no CTF dataset, it has no .res4 file"));
}

TEST_F(OpenCtf, RefusesAFolderOfTwoRecordings)
{
    m_builder.write(m_folder);
    m_folder.write("small.ds\\second.res4", "");
    std::filesystem::rename(m_folder.native("small.ds"), m_folder.native("other.ds"));
    EXPECT_THAT(faultOf(m_folder.native("other.ds")), HasSubstr("several .res4 files"));
}

TEST_F(OpenCtf, RefusesAFolderWithoutSamples)
{
    const std::filesystem::path folder = m_builder.write(m_folder);
    std::filesystem::remove(folder / "small.meg4");
    EXPECT_THAT(faultOf(folder), EndsWith("small.ds: this is no CTF dataset, it has no file small.meg4"));
}

TEST_F(OpenCtf, NamesTheCutHeader)
{
    const std::filesystem::path folder = m_builder.write(m_folder);
    std::filesystem::resize_file(folder / "small.res4", 5000);
    EXPECT_THAT(faultOf(folder), EndsWith("small.res4: the file is cut, it ends before the end of the sensor records "
                                          "(byte 5000)"));
}

TEST_F(OpenCtf, RefusesHeaderAndSamplesOfDifferentChannels)
{
    const std::filesystem::path folder = m_builder.write(m_folder);
    m_builder.channels.pop_back();
    m_builder.coefficients.clear();
    m_folder.write("small.ds\\small.res4", m_builder.res4());
    EXPECT_THAT(faultOf(folder), HasSubstr("the .res4 file counts 6 channels and the samples are of 7"));
}

} // namespace
} // namespace megset::ctf::openCtf_test
