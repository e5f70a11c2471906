#include "apps/readers/ctf/CtfError.h"
#include "apps/readers/ctf/Meg4.h"

#include "tests/apps/readers/ctf/CtfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::Meg4_test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class Meg4Files : public testing::Test
{
protected:
    Meg4 open(int trials = 3) const
    {
        return {m_folder.native(), "a", {trials, static_cast<int>(m_builder.channels.size()), 4}};
    }
    // Files of the given trials, and what is behind them.
    void write(const std::string& name, int first, int last, std::size_t more = 0) const
    {
        m_folder.write(name, BigEndianBuilder().raw(m_builder.meg4(first, last)).zeros(more).bytes());
    }
    std::string faultOf(int trials = 3) const
    {
        try {
            open(trials);
        } catch (const CtfError& error) {
            return error.what();
        }
        return "none";
    }
    static void expectTrial(Meg4& data, int trial)
    {
        std::vector<std::int32_t> block(data.trialSize());
        data.readTrial(trial, block);
        std::size_t at = 0;
        for (int channel = 0; channel < data.channels(); ++channel)
            for (int sample = 0; sample < data.samples(); ++sample)
                ASSERT_EQ(block[at++], CtfBuilder::sampleAt(trial, channel, sample)) << trial << " " << channel;
    }

    TemporaryFolder m_folder;
    CtfBuilder m_builder;
    static constexpr std::size_t trialBytes = 7 * 4 * 4;
};

TEST_F(Meg4Files, GiveATrialChannelBehindChannel)
{
    write("a.meg4", 0, 3);
    Meg4 data = open();
    EXPECT_EQ(data.trials(), 3);
    EXPECT_EQ(data.trialSize(), 28U);
    EXPECT_THAT(data.warnings(), IsEmpty());
    for (const int trial : {2, 0, 1, 2})
        expectTrial(data, trial);
}

TEST_F(Meg4Files, HaveNegativeSamples)
{
    const auto file = BigEndianBuilder().text("MEG41CP", 8).i32(-1).i32(-2147483648LL).i32(2147483647).i32(-256);
    m_folder.write("a.meg4", file.bytes());
    Meg4 data(m_folder.native(), "a", {1, 1, 4});
    std::vector<std::int32_t> block(4);
    data.readTrial(0, block);
    EXPECT_THAT(block, ElementsAre(-1, -2147483647 - 1, 2147483647, -256));
}

TEST_F(Meg4Files, BeginWithTheTagOfEitherVersion)
{
    m_folder.write("a.meg4", m_builder.meg4(0, 3, "MEG42CP"));
    EXPECT_EQ(open().trials(), 3);
}

TEST_F(Meg4Files, GoOnInContinuations)
{
    write("a.meg4", 0, 2);
    write("a.1_meg4", 2, 3);
    write("a.2_meg4", 3, 6);
    Meg4 data = open(6);
    EXPECT_EQ(data.trials(), 6);
    EXPECT_THAT(data.warnings(), IsEmpty());
    for (const int trial : {5, 2, 0, 3, 1, 4})
        expectTrial(data, trial);
}

TEST_F(Meg4Files, KeepWholeTrialsAndTellWhatWasCut)
{
    write("a.meg4", 0, 2, trialBytes - 1);
    Meg4 data = open(4);
    EXPECT_EQ(data.trials(), 2);
    expectTrial(data, 1);
    const std::size_t size = 8 + 3 * trialBytes - 1;
    EXPECT_THAT(
        data.warnings(),
        ElementsAre(EndsWith("a.meg4: the file is cut inside trial 3 of 4, which is left out (byte " +
                             std::to_string(size) + ")."),
                    "The .meg4 files hold 2 whole trials where the .res4 file counts 4: the others are missing."));
}

TEST_F(Meg4Files, KeepWholeTrialsOfEveryCutFile)
{
    write("a.meg4", 0, 2, 5);
    write("a.1_meg4", 2, 3);
    Meg4 data = open(4);
    EXPECT_EQ(data.trials(), 3);
    expectTrial(data, 2);
    EXPECT_THAT(data.warnings(), testing::SizeIs(2));
}

TEST_F(Meg4Files, TellOfTrialsThatAreMissingAltogether)
{
    write("a.meg4", 0, 2);
    EXPECT_THAT(open(5).warnings(), ElementsAre(HasSubstr("hold 2 whole trials where the .res4 file counts 5")));
}

TEST_F(Meg4Files, KeepTrialsThatWereNotCounted)
{
    write("a.meg4", 0, 3);
    Meg4 data = open(2);
    EXPECT_EQ(data.trials(), 3);
    expectTrial(data, 2);
    EXPECT_THAT(data.warnings(), ElementsAre(EndsWith("hold 3 whole trials where the .res4 file counts 2: "
                                                      "all of them are taken.")));
}

TEST_F(Meg4Files, WithNotOneWholeTrialAreRefused)
{
    write("a.meg4", 0, 0, trialBytes - 1);
    EXPECT_THAT(faultOf(), EndsWith("a.meg4: the file ends inside its first trial, which takes 112 bytes (byte 119)"));
    write("a.meg4", 0, 0);
    EXPECT_THAT(faultOf(), EndsWith("a.meg4: the file ends inside its first trial, which takes 112 bytes (byte 8)"));
}

TEST_F(Meg4Files, OfMoreChannelsThanCountedAreRefused)
{
    m_folder.write("a.meg4", BigEndianBuilder().text("MEG41CP", 8).zeros(3 * 9 * 16).bytes());
    EXPECT_THAT(faultOf(), EndsWith("a.meg4: the channel counts disagree, the .res4 file counts 7 channels and the "
                                    "samples are of 9 (byte 440)"));
    m_folder.write("a.meg4", BigEndianBuilder().text("MEG41CP", 8).zeros(3 * 112 + 3).bytes());
    EXPECT_THAT(faultOf(), EndsWith("a.meg4: the channel counts disagree, the .res4 file counts 7 channels and the "
                                    "samples make no whole trials of so many (byte 347)"));
}

TEST_F(Meg4Files, ThatAreMissingAreNoDataset)
{
    EXPECT_THAT(faultOf(), EndsWith("this is no CTF dataset, it has no file a.meg4"));
}

TEST_F(Meg4Files, WithAnotherTagAreRefused)
{
    for (const std::string& text : {std::string("MEG41RS\0________", 16), std::string("MEG"), std::string()}) {
        m_folder.write("a.meg4", text);
        EXPECT_THAT(faultOf(), EndsWith("a.meg4: these are no CTF samples, the file does not begin with MEG41CP or "
                                        "MEG42CP (byte 0)"));
    }
}

TEST_F(Meg4Files, WithContinuationsOfAnotherTagAreRefused)
{
    write("a.meg4", 0, 2);
    m_folder.write("a.1_meg4", std::string("something else"));
    EXPECT_THAT(faultOf(), HasSubstr("a.1_meg4: these are no CTF samples"));
}

TEST_F(Meg4Files, OfCountsBeyondAllMemoryAreRefusedBeforeAnythingIsTaken)
{
    write("a.meg4", 0, 1);
    EXPECT_THROW(Meg4(m_folder.native(), "a", {32767, 32767, 2147483647}), CtfError);
}

TEST_F(Meg4Files, ThatWereCutWhileOpenFailWhenTheTrialIsRead)
{
    write("a.meg4", 0, 3);
    Meg4 data = open();
    write("a.meg4", 0, 1);
    std::vector<std::int32_t> block(data.trialSize());
    EXPECT_THROW(data.readTrial(2, block), CtfError);
    EXPECT_NO_THROW(expectTrial(data, 0));
}

TEST_F(Meg4Files, RefuseTrialsAndBlocksThatAreNotTheirs)
{
    write("a.meg4", 0, 3);
    Meg4 data = open();
    std::vector<std::int32_t> block(data.trialSize());
    EXPECT_THROW(data.readTrial(-1, block), CtfError);
    EXPECT_THROW(data.readTrial(3, block), CtfError);
    EXPECT_THROW(data.readTrial(0, std::span(block).first(5)), std::invalid_argument);
}

} // namespace
} // namespace megset::ctf::Meg4_test
