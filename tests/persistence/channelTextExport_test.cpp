// A channel and a trial as text, byte by byte.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include "tests/kit/FailingFile.h"
#include "tests/persistence/textBytes.h"

#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::channelTextExport_test {
namespace {

void fill(CMDChannelzk& channel, const CString& name, const std::vector<double>& samples)
{
    channel.m_strChannelName = name;
    channel.m_strChannelNameRaw = "raw";
    channel.addData(static_cast<std::int64_t>(samples.size()), samples.data());
}

// A channel "A1" of two samples.
struct TextChannel : CMDChannelzk
{
    explicit TextChannel(int geomType = 0)
    {
        fill(*this, "A1", {0.5, -1});
        m_nGeomType = geomType;
    }
};

std::vector<std::byte> exported(const CMDChannelzk& channel, std::int64_t from = 0, std::int64_t to = 0, int select = 0)
{
    CMemFile file;
    EXPECT_EQ(channel.exportMEGData2TxtFile(file, from, to, select), 1);
    return file.detach();
}

// The block of a TextChannel whose description goes on with `geometry`.
ByteBuilder blockWith(const CString& geometry)
{
    return textPiece(CString(" A1 Samples: 2 ") + geometry + "\n0.500000 -1.000000 \n");
}

TEST(ChannelTextExport, MegChannelTellsWhereItsCoilIs)
{
    TextChannel channel(1);
    channel.ensureMEGSensor()->setSnsPos(-1, 0, 1.5, -2, 3.0000004);
    EXPECT_TRUE(sameBytes(exported(channel), blockWith("Coil_Position: 1.500000 -2.000000 3.000000 ")));
}

TEST(ChannelTextExport, MegChannelWithoutASensorSaysSo)
{
    EXPECT_TRUE(sameBytes(exported(TextChannel(1)), blockWith("No_MEG_Sensor_Info")));
}

TEST(ChannelTextExport, EegChannelTellsWhereItsElectrodeIs)
{
    TextChannel channel(2);
    channel.ensureEegElectrode()->setElectrodePositionD(-7, 8.25, 9);
    EXPECT_TRUE(sameBytes(exported(channel), blockWith("Electrode_Position: -7.000000 8.250000 9.000000 ")));
}

TEST(ChannelTextExport, EegChannelWithoutAnElectrodeSaysSoInItsOwnSpelling)
{
    EXPECT_TRUE(sameBytes(exported(TextChannel(2)), blockWith("No_EEEG_Electrode_Info")));
}

TEST(ChannelTextExport, StimulusChannelTellsItsTwoStringsAndEndsTheLineItself)
{
    TextChannel channel(3);
    channel.ensureStimTrig()->m_strTrigName = "STI 001";
    channel.ensureStimTrig()->m_strTrigTypeName = "button";
    EXPECT_TRUE(sameBytes(exported(channel), blockWith("Stim_trig: STI 001 button \n")));
}

TEST(ChannelTextExport, StimulusChannelWithoutARecordSaysSo)
{
    EXPECT_TRUE(sameBytes(exported(TextChannel(3)), blockWith("No_Stimulation_Info")));
}

TEST(ChannelTextExport, OtherChannelTellsItsName)
{
    TextChannel channel(4);
    channel.ensureMisceSnsr()->m_strSnsName = "breath %s belt";
    channel.m_pGeomHw->m_nGeomValue = 3;
    EXPECT_TRUE(sameBytes(exported(channel), blockWith("breath %s belt")));
}

TEST(ChannelTextExport, OtherChannelWithoutARecordSaysSo)
{
    EXPECT_TRUE(sameBytes(exported(TextChannel(4)), blockWith("No_Misc_Channel_Info")));
}

TEST(ChannelTextExport, OtherGeometryTypesTellNothing)
{
    for (const int type : {-1, 0, 5, 6})
        EXPECT_TRUE(sameBytes(exported(TextChannel(type)), blockWith("")));
}

TEST(ChannelTextExport, ARecordOfAnotherClassCountsAsNone)
{
    TextChannel channel(4);
    channel.ensureMisceSnsr();
    for (const auto& [type, text] : {std::pair{1, "No_MEG_Sensor_Info"}, std::pair{2, "No_EEEG_Electrode_Info"},
                                     std::pair{3, "No_Stimulation_Info"}}) {
        channel.m_nGeomType = type;
        EXPECT_TRUE(sameBytes(exported(channel), blockWith(text))) << type;
    }
}

TEST(ChannelTextExport, TheNameIsTheWorkingOneInAnyLanguage)
{
    CMDChannelzk channel;
    fill(channel, "通道 ä😀", {1});
    EXPECT_TRUE(sameBytes(exported(channel), textPiece(" 通道 ä😀 Samples: 1 \n1.000000 \n")));
}

TEST(ChannelTextExport, ChannelWithoutSamplesHasAnEmptyLine)
{
    CMDChannelzk channel;
    channel.m_strChannelName = "E";
    EXPECT_TRUE(sameBytes(exported(channel), textPiece(" E Samples: 0 \n\n")));
}

TEST(ChannelTextExport, ACountWithoutAnArrayIsShownAndNoSampleRead)
{
    CMDChannelzk channel;
    channel.m_strChannelName = "E";
    channel.m_nTotalSample = 5'000'000'000;
    EXPECT_TRUE(sameBytes(exported(channel), textPiece(" E Samples: 5000000000 \n\n")));
    EXPECT_TRUE(sameBytes(exported(channel, 0, 9, 1), textPiece(" E Samples: 5000000000 \n\n")));
}

// ---- ranges

ByteBuilder rangeBlock(const CString& samples)
{
    return textPiece(CString(" R Samples: 4 \n") + samples + "\n");
}

TEST(ChannelTextExport, ARangeIncludesBothEnds)
{
    CMDChannelzk channel;
    fill(channel, "R", {1, 2, 3, 4});
    const CString all("1.000000 2.000000 3.000000 4.000000 ");
    EXPECT_TRUE(sameBytes(exported(channel, 1, 2, 1), rangeBlock("2.000000 3.000000 ")));
    EXPECT_TRUE(sameBytes(exported(channel, 2, 2, 1), rangeBlock("3.000000 ")));
    EXPECT_TRUE(sameBytes(exported(channel, 0, 3, 1), rangeBlock(all)));
    EXPECT_TRUE(sameBytes(exported(channel, 1, 2, 0), rangeBlock(all)));
}

TEST(ChannelTextExport, NegativeIndicesAreSkippedAndTheEndIsTheLastSample)
{
    CMDChannelzk channel;
    fill(channel, "R", {1, 2, 3, 4});
    EXPECT_TRUE(sameBytes(exported(channel, -3, 1, 1), rangeBlock("1.000000 2.000000 ")));
    EXPECT_TRUE(sameBytes(exported(channel, 2, 9, 1), rangeBlock("3.000000 4.000000 ")));
    EXPECT_TRUE(
        sameBytes(exported(channel, INT64_MIN, INT64_MAX, 1), rangeBlock("1.000000 2.000000 3.000000 4.000000 ")));
}

TEST(ChannelTextExport, ARangeOutsideOrBackwardsIsEmpty)
{
    CMDChannelzk channel;
    fill(channel, "R", {1, 2, 3, 4});
    for (const auto& [from, to] : {std::pair<std::int64_t, std::int64_t>{2, 1}, {4, 9}, {-9, -1}, {INT64_MAX, 0}})
        EXPECT_TRUE(sameBytes(exported(channel, from, to, 1), rangeBlock(""))) << from << ".." << to;
}

// ---- numbers

CString lineOf(const std::vector<double>& samples)
{
    CString line;
    for (const double sample : samples)
        line.AppendFormat("%f ", sample);
    return line;
}

TEST(ChannelTextExport, NumbersAreThoseOfTheCFormat)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    CMDChannelzk channel;
    fill(channel, "R",
         {0.0, -0.0, infinite, -infinite, std::nan(""), -std::nan(""), 0.0000005, 0.00000051, -1e-9, 1e15});
    EXPECT_TRUE(sameBytes(exported(channel),
                          textPiece(" R Samples: 10 \n0.000000 -0.000000 inf -inf nan -nan 0.000000 0.000001 "
                                    "-0.000000 1000000000000000.000000 \n")));
}

TEST(ChannelTextExport, EveryBitPatternIsFormattedAsTheLibraryDoes)
{
    std::vector<double> samples{std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::lowest(),
                                std::numeric_limits<double>::denorm_min(),
                                0.5,
                                1.5,
                                2.5};
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i)
        samples.push_back(std::bit_cast<double>(random()));
    for (int i = 0; i < 2000; ++i)
        samples.push_back(static_cast<double>(random() % 2'000'000) / 1024.0 - 1000.0);
    CMDChannelzk channel;
    fill(channel, "R", samples);
    EXPECT_TRUE(sameBytes(exported(channel), textPiece(CString(" R Samples: 4006 \n") + lineOf(samples) + "\n")));
}

TEST(ChannelTextExport, ALongLineGoesOutInPiecesAndHasOneZeroAtItsEnd)
{
    std::vector<double> samples(72'000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<double>(i) * 0.37 - 9000;
    CMDChannelzk channel;
    fill(channel, "R", samples);
    FailingFile file;
    EXPECT_EQ(channel.exportMEGData2TxtFile(file, 0, 0, 0), 1);
    EXPECT_TRUE(sameBytes(file.content(), textPiece(CString(" R Samples: 72000 \n") + lineOf(samples) + "\n")));
    EXPECT_THAT(file.writeSizes(), ::testing::Each(::testing::Le(128U * 1024U)));
    EXPECT_GT(file.writeSizes().size(), 1U);
}

TEST(ChannelTextExport, AFullDiskPasses)
{
    FailingFile file;
    file.fullAfter(10);
    EXPECT_THROW(TextChannel().exportMEGData2TxtFile(file, 0, 0, 0), CFileException);
    EXPECT_EQ(file.GetLength(), 10U);
}

// ---- single values

TEST(ChannelTextExport, SingleValuesEndInABlankALineFeedAndAZero)
{
    CMemFile file;
    EXPECT_EQ(CMDChannelzk::exportCString(file, "a %d b"), 1);
    EXPECT_EQ(CMDChannelzk::exportDWORD(file, 12), 1);
    EXPECT_EQ(CMDChannelzk::exportDWORD(file, 0xFFFFFFFF), 1); // shown as a signed number
    EXPECT_EQ(CMDChannelzk::exportDouble(file, 0.1), 1);
    EXPECT_EQ(CMDChannelzk::exportCString(file, ""), 1);
    ByteBuilder expected = textPiece("a %d b \n").append(textPiece("12 \n")).append(textPiece("-1 \n"));
    expected.append(textPiece("0.10000000000000000555111512312578 \n")).append(textPiece(" \n"));
    EXPECT_TRUE(sameBytes(file.content(), expected));
}

// ---- the trial

// Channels "A", "B" and "C" of one sample each, B current.
std::unique_ptr<CMDTrialzk> textTrial()
{
    auto trial = std::make_unique<CMDTrialzk>();
    trial->allocateChannels(3);
    fill(*trial->getChannel(0), "A", {1});
    fill(*trial->getChannel(1), "B", {2});
    fill(*trial->getChannel(2), "C", {3});
    trial->m_nCurrentChannel = 1;
    return trial;
}

TEST(TrialTextExport, PassesOnToTheChannel)
{
    const auto trial = textTrial();
    CMemFile file;
    EXPECT_EQ(trial->exportMEGData2TxtFile(file, 2, 0, 0, 0), 1);
    EXPECT_EQ(trial->exportMEGData2TxtFile(file, -1, 5, 9, 1), 1);
    EXPECT_TRUE(
        sameBytes(file.content(), textPiece(" C Samples: 1 \n3.000000 \n").append(textPiece(" B Samples: 1 \n\n"))));
}

TEST(TrialTextExport, WithoutTheChannelNothingIsWritten)
{
    const auto trial = textTrial();
    trial->m_ppChannel.set(0, nullptr);
    CMemFile file;
    for (const int channel : {0, 3, -2})
        EXPECT_EQ(trial->exportMEGData2TxtFile(file, channel, 0, 0, 0), 0) << channel;
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(TrialTextExport, SensorsAreTheNamesInTurn)
{
    const auto trial = textTrial();
    trial->m_ppChannel.set(1, nullptr);
    CMemFile file;
    EXPECT_EQ(trial->exportSnsrInf2TxtFile(file), 1);
    EXPECT_TRUE(sameBytes(file.content(), textPiece("A \n").append(textPiece("C \n"))));
}

TEST(TrialTextExport, ExchangeOfATrialDoesNothing)
{
    const auto trial = textTrial();
    CMemFile file;
    EXPECT_EQ(trial->export_importMEGTrial(&file, false), 1);
    EXPECT_EQ(trial->export_importMEGTrial(nullptr, true), 1);
    EXPECT_EQ(file.GetLength(), 0U);
    EXPECT_EQ(trial->getTotalChannel(), 3);
}

} // namespace
} // namespace megset::channelTextExport_test
