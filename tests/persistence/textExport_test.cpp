// Text files of a dataset: what is asked, and what stands in the files.

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CDocument.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/persistence/textBytes.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::textExport_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* allChannels = "Would you like to export all channels' data?";
constexpr const char* visibleOnly = "Would you like to export visible channel only?";
constexpr const char* entireTrial = "Selected Size <= 1? Export the entire epoch or trial?";

// Two trials in memory of the channels C0, C1, C2 and three samples: sample i of channel c of trial t is 100 t + 10 c +
// i.
class TextExport : public ::testing::Test
{
protected:
    TextExport()
    {
        dataset.initMEGData(2, 3, 3);
        for (int t = 0; t < 2; ++t)
            for (int c = 0; c < 3; ++c) {
                CMDChannelzk& channel = *dataset.getMDTrial(t)->getChannel(c);
                channel.m_strChannelName = CString::formatted("C%d", c);
                for (int i = 0; i < 3; ++i)
                    channel.m_pDataWave[static_cast<std::size_t>(i)] = 100.0 * t + 10.0 * c + i;
            }
        dataset.m_strSessionName = "run";
        dataset.m_recordInfo.m_dRecSampleRate = 600.5;
        dataset.m_nSelectStart = 1;
        dataset.m_nSelectEnd = 2;
    }

    void showOnly(std::vector<int> flags)
    {
        dataset.m_nChnlParamCount = static_cast<int>(flags.size());
        dataset.m_pChnlShow = std::make_unique<int[]>(flags.size());
        std::copy(flags.begin(), flags.end(), dataset.m_pChnlShow.get());
    }
    void willAnswer(bool all, bool visible)
    {
        all ? host.willAnswerYes(allChannels) : host.willAnswerNo(allChannels);
        visible ? host.willAnswerYes(visibleOnly) : host.willAnswerNo(visibleOnly);
    }

    static ByteBuilder header(int trial)
    {
        return textPiece(CString::formatted("DataName:run Trial: %d SamplingRate: 600.500000 \n", trial));
    }
    // The block of a channel with its samples `first` to `last`.
    static ByteBuilder block(int trial, int channel, int first = 0, int last = 2)
    {
        CString text = CString::formatted(" C%d Samples: 3 \n", channel);
        for (int i = first; i <= last; ++i)
            text.AppendFormat("%f ", 100.0 * trial + 10.0 * channel + i);
        return textPiece(text + "\n");
    }
    void expectFile(const char* name, const ByteBuilder& expected) const
    {
        EXPECT_TRUE(sameBytes(folder.read(name), expected)) << name;
    }

    ScriptedHost host;
    TemporaryFolder folder;
    CMEGDatazk dataset;
};

TEST_F(TextExport, AllChannelsGoIntoOneFile)
{
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(true, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 1, 0), 1);
    expectFile("a.txt", header(0).append(block(0, 0)).append(block(0, 1)).append(block(0, 2)));
    EXPECT_THAT(host.questions(), ElementsAre(allChannels, visibleOnly));
    host.expectNoMessages();
}

TEST_F(TextExport, OneChannelGoesOutAloneWhetherItIsShownOrNot)
{
    showOnly({1, 0, 1});
    for (const bool visible : {false, true}) {
        host.willChooseFile(folder.path("a.txt"));
        willAnswer(false, visible);
        EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 1, 0), 1);
        expectFile("a.txt", header(0).append(block(0, 1)));
    }
}

TEST_F(TextExport, ChannelMinusOneIsTheTrialsCurrentOne)
{
    dataset.getMDTrial(0)->m_nCurrentChannel = 2;
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, -1, 0), 1);
    expectFile("a.txt", header(0).append(block(0, 2)));
}

TEST_F(TextExport, AChannelThatIsNotThereLeavesTheHeaderAlone)
{
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 3, 0), 1);
    expectFile("a.txt", header(0));
}

TEST_F(TextExport, OnlyShownChannelsGoOutWhereThatIsWanted)
{
    showOnly({-1, 0, 2});
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(true, true);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 0), 1);
    expectFile("a.txt", header(0).append(block(0, 0)).append(block(0, 2)));
}

TEST_F(TextExport, ChannelsWithoutAShowFlagCountAsNotShown)
{
    for (const int flags : {0, 2}) {
        flags == 0 ? static_cast<void>(dataset._cleanChnlParam()) : showOnly({0, 1});
        host.willChooseFile(folder.path("a.txt"));
        willAnswer(true, true);
        EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 0), 1);
        ByteBuilder expected = header(0);
        if (flags > 0)
            expected.append(block(0, 1));
        expectFile("a.txt", expected);
    }
}

// ---- one file for each channel

TEST_F(TextExport, EachChannelGetsAFileWithItsIndex)
{
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(true, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(1, 1, 0, 0), 1);
    EXPECT_THAT(folder.names(), ElementsAre("a0.txt", "a1.txt", "a2.txt"));
    expectFile("a0.txt", header(1).append(block(1, 0)));
    expectFile("a2.txt", header(1).append(block(1, 2)));
}

TEST_F(TextExport, ChannelsThatAreNotShownGetNoFile)
{
    showOnly({0, 1, 0});
    host.willChooseFile(folder.path("a.b.txt"));
    willAnswer(true, true);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 1, 0, 0), 1);
    EXPECT_THAT(folder.names(), ElementsAre("a.b1.txt"));
}

TEST_F(TextExport, OneChannelAloneGoesToTheChosenFileEvenThen)
{
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 1, 1, 0), 1);
    EXPECT_THAT(folder.names(), ElementsAre("a.txt"));
    expectFile("a.txt", header(0).append(block(0, 1)));
}

// ---- the selection

TEST_F(TextExport, TheSelectionGoesOutWithBothItsEnds)
{
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 1, 1), 1);
    expectFile("a.txt", header(0).append(block(0, 1, 1, 2)));
    EXPECT_THAT(host.questions(), ElementsAre(allChannels, visibleOnly));
}

TEST_F(TextExport, ASelectionOfOneSampleIsAskedForAndGoesOutOnNo)
{
    dataset.m_nSelectEnd = 1;
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    host.willAnswerNo(entireTrial);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 1, 1), 1);
    expectFile("a.txt", header(0).append(block(0, 1, 1, 1)));
    EXPECT_THAT(host.questions(), ElementsAre(allChannels, visibleOnly, entireTrial));
}

TEST_F(TextExport, ASelectionOfOneSampleGivesWayToTheTrialOnYes)
{
    dataset.m_nSelectEnd = 1;
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(true, false);
    host.willAnswerYes(entireTrial);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 1, 1), 1);
    expectFile("a.txt", header(0).append(block(0, 0)).append(block(0, 1)).append(block(0, 2)));
}

TEST_F(TextExport, WithoutASelectionWantedNothingIsAskedAboutIt)
{
    dataset.m_nSelectEnd = 1;
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 0), 1);
    expectFile("a.txt", header(0).append(block(0, 0)));
}

// ---- which trial

TEST_F(TextExport, AnIndexAtOrBeyondTheCountIsTheLastTrialInTheHeaderToo)
{
    for (const int trial : {2, 99}) {
        host.willChooseFile(folder.path("a.txt"));
        willAnswer(false, false);
        EXPECT_EQ(dataset.exportMEGData2TxtFile(trial, 0, 0, 0), 1);
        expectFile("a.txt", header(1).append(block(1, 0)));
    }
}

TEST_F(TextExport, MinusOneIsTheCurrentTrial)
{
    dataset.m_nCurrentTrial = 1;
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(-1, 0, 0, 0), 1);
    expectFile("a.txt", header(1).append(block(1, 0)));
}

TEST_F(TextExport, WithoutTrialsOrTheTrialInMemoryThereIsNoDialog)
{
    dataset.m_ppTrial.set(0, nullptr);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 0), 0);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(-2, 0, 0, 0), 0);
    EXPECT_EQ(dataset.exportSnsrInf2TxtFile(0), 0);
    CMEGDatazk empty;
    EXPECT_EQ(empty.exportMEGData2TxtFile(0, 0, 0, 0), 0);
    EXPECT_EQ(empty.exportMEGData2TxtFile(-1, 0, 0, 0), 0);
    EXPECT_EQ(empty.exportSnsrInf2TxtFile(0), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

// The selection is that of the current trial, which is opened for it while the others go to their files.
TEST_F(TextExport, ATrialThatLeavesMemoryForTheSelectionIsNotExported)
{
    CDocument document;
    document.SetPathName(folder.path("run.meg"));
    CMEGDatazk stored;
    stored.setDocument(&document, true);
    for (int t = 0; t < 2; ++t) {
        auto trial = std::make_unique<CMDTrialzk>();
        trial->allocateChannels(1);
        trial->getChannel(0)->initData(5, true);
        ASSERT_EQ(stored.addTrial(trial.release(), 0), 1);
    }
    ASSERT_EQ(stored.openTrial(0), 1);
    stored.m_nCurrentTrial = 1;
    host.clearRecord();
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(true, false);
    EXPECT_EQ(stored.exportMEGData2TxtFile(0, 0, 0, 0), 0);
    EXPECT_FALSE(folder.has("a.txt"));
    EXPECT_EQ(stored.getMDTrial(0), nullptr);
}

// ---- the dialog and the file

TEST_F(TextExport, TheDialogOffersTextFilesAndRemembersTheKindChosen)
{
    for (const int kind : {2, 1}) {
        host.willChooseFile(folder.path("a.txt"), kind);
        willAnswer(false, false);
        EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 0), 1);
    }
    const auto requests = host.fileRequests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_FALSE(requests[0].open);
    EXPECT_TRUE(requests[0].confirmOverwrite);
    EXPECT_EQ(requests[0].filter, "MEG Channel data(*.txt)|*.txt|All Files(*.*)|*.*||");
    EXPECT_EQ(requests[0].filterIndex, 1);
    EXPECT_EQ(requests[1].filterIndex, 2);
}

TEST_F(TextExport, TheExtensionIsAddedUnlessThePathEndsInIt)
{
    for (const char* name : {"a", "a.dat", "a.txt.old", "a.TXT"}) {
        host.willChooseFile(folder.path(name));
        willAnswer(false, false);
        EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 0), 1);
    }
    EXPECT_THAT(folder.names(), ElementsAre("a.TXT.txt", "a.dat.txt", "a.txt", "a.txt.old.txt"));
}

TEST_F(TextExport, CancellingGivesZeroAndAsksNothing)
{
    host.willCancelFile();
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 1), 0);
    host.willCancelFile();
    EXPECT_EQ(dataset.exportSnsrInf2TxtFile(0), 0);
    EXPECT_THAT(host.questions(), IsEmpty());
    EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(TextExport, AFileThatCannotBeMadeIsNotToldAndGivesOne)
{
    for (const int each : {0, 1}) {
        host.willChooseFile(folder.path("missing\\a.txt"));
        willAnswer(true, false);
        EXPECT_EQ(dataset.exportMEGData2TxtFile(0, each, 0, 0), 1);
    }
    host.willChooseFile(folder.path("missing\\a.txt"));
    EXPECT_EQ(dataset.exportSnsrInf2TxtFile(0), 1);
    host.expectNoMessages();
    EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(TextExport, AFaultEndsTheFilesThatWereToCome)
{
    folder.makeFolder("a1.txt");
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(true, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 1, 0, 0), 1);
    expectFile("a0.txt", header(0).append(block(0, 0)));
    EXPECT_FALSE(folder.has("a2.txt"));
    host.expectNoMessages();
}

TEST_F(TextExport, AFormerFileIsReplaced)
{
    folder.write("a.txt", std::string(10'000, 'x'));
    host.willChooseFile(folder.path("a.txt"));
    willAnswer(false, false);
    EXPECT_EQ(dataset.exportMEGData2TxtFile(0, 0, 0, 0), 1);
    expectFile("a.txt", header(0).append(block(0, 0)));
}

// ---- sensors

ByteBuilder sensors(int trial)
{
    ByteBuilder bytes = textPiece("run \n").append(textPiece(CString::formatted("%d \n", trial)));
    return bytes.append(textPiece("C0 \n")).append(textPiece("C1 \n")).append(textPiece("C2 \n"));
}

TEST_F(TextExport, SensorsAreSessionTrialAndNames)
{
    host.willChooseFile(folder.path("s"));
    EXPECT_EQ(dataset.exportSnsrInf2TxtFile(0), 1);
    expectFile("s.txt", sensors(0));
    const auto requests = host.fileRequests();
    EXPECT_FALSE(requests[0].open);
    EXPECT_EQ(requests[0].filter, "Sensor Info(*.txt)|*.txt|All Files(*.*)|*.*||");
    EXPECT_THAT(host.questions(), IsEmpty());
}

TEST_F(TextExport, TheDialogOfTheSensorsHasAMemoryOfItsOwn)
{
    host.willChooseFile(folder.path("a.txt"), 1);
    willAnswer(false, false);
    dataset.exportMEGData2TxtFile(0, 0, 0, 0);
    for (const int kind : {2, 1}) {
        host.willChooseFile(folder.path("s.txt"), kind);
        EXPECT_EQ(dataset.exportSnsrInf2TxtFile(0), 1);
    }
    host.willChooseFile(folder.path("s.txt"), 2);
    dataset.exportSnsrInf2TxtFile(0);
    host.clearRecord();
    host.willChooseFile(folder.path("s.txt"), 1);
    host.willChooseFile(folder.path("a.txt"), 1);
    dataset.exportSnsrInf2TxtFile(0);
    willAnswer(false, false);
    dataset.exportMEGData2TxtFile(0, 0, 0, 0);
    const auto requests = host.fileRequests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_TRUE(requests[0].confirmOverwrite);
    EXPECT_EQ(requests[0].filterIndex, 2);
    EXPECT_EQ(requests[1].filterIndex, 1); // that of the samples
}

TEST_F(TextExport, TheTrialOfTheSensorsIsBroughtIntoTheRange)
{
    dataset.m_nCurrentTrial = 1;
    for (const auto& [asked, shown] : {std::pair{-7, 0}, std::pair{-1, 1}, std::pair{1, 1}, std::pair{2, 1}}) {
        host.willChooseFile(folder.path("s.txt"));
        EXPECT_EQ(dataset.exportSnsrInf2TxtFile(asked), 1);
        expectFile("s.txt", sensors(shown));
    }
}

} // namespace
} // namespace megset::textExport_test
