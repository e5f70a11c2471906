// Opening single trials, with and without the form of an acquisition.

#include "tests/persistence/acquisitionRecord.h"
#include "tests/persistence/trialFiles.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileRecordTrials_test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecordedTrials : public TrialFiles
{
protected:
    // Puts a trial in the form of an acquisition to a place of the list.
    CString putAcquired(int place, const std::vector<std::vector<double>>& samples)
    {
        const CString name = CString::formatted("t%d.trla", place);
        const auto parts = acquisitionRecord::namedTrial("acquired", samples);
        const CString file = filed.folder.write(name, acquisitionRecord::trial(parts).bytes());
        data.m_aTrialFilePath.SetAt(place, file);
        return file;
    }
    void giveDocument()
    {
        document.SetPathName(path("session.meg"));
        data.setDocument(&document, false);
    }
};

TEST_F(RecordedTrials, WithoutAPathAreOpenedAsOrdinaryOnes)
{
    ASSERT_EQ(data.openTrialRecord(1, ""), 1);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    CMDTrialzk* const current = data.getCurrentTrialPt();
    EXPECT_EQ(data.openTrialRecord(-1, ""), 1);
    EXPECT_EQ(data.openTrialRecord(1, "s.mega"), 1); // it is there
    EXPECT_EQ(data.getCurrentTrialPt(), current);
    const CMDTrialzk* const third = data.getTrialRecord(2);
    ASSERT_NE(third, nullptr);
    EXPECT_EQ(third, data.getMDTrial(2));
    EXPECT_EQ(data.getMDTrial(1), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(RecordedTrials, WithAPathAreReadInTheFormOfTheAcquisition)
{
    giveDocument();
    const CString file = putAcquired(1, {channelValues(1, 0, 5)});
    ASSERT_EQ(data.openTrialRecord(1, path("s.mega")), 1);
    EXPECT_EQ(data.getCurrentTrialPt()->m_strTrialName, CString("acquired"));
    EXPECT_EQ(listed(1), file);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(RecordedTrials, AreFoundBesideTheAcquisitionAndTheListTakesThatPath)
{
    giveDocument();
    const CString file = putAcquired(1, {channelValues(1, 0, 5)});
    data.m_aTrialFilePath.SetAt(1, "X:\\gone\\t1.trla");
    ASSERT_EQ(data.openTrialRecord(1, path("s.mega")), 1);
    EXPECT_EQ(listed(1), file);
}

TEST_F(RecordedTrials, AnIndexOutOfRangeGivesZero)
{
    EXPECT_EQ(data.openTrialRecord(3, ""), 0);
    EXPECT_EQ(data.openTrialRecord(-2, ""), 0);
    EXPECT_EQ(data.getTrialRecord(3), nullptr);
    CMEGDatazk empty;
    EXPECT_EQ(empty.openTrialRecord(-1, ""), 0);
    EXPECT_EQ(empty.openTrialRecord(0, ""), 0);
    EXPECT_EQ(empty.getTrialRecord(-1), nullptr);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(RecordedTrials, OtherNumbersOfTrialsAndPathsAreTold)
{
    data.m_aTrialFilePath.RemoveAt(2);
    EXPECT_EQ(data.openTrialRecord(1, ""), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("File path and trial error!")));
}

TEST_F(RecordedTrials, WithoutADocumentTheFormOfTheAcquisitionCannotBeOpened)
{
    putAcquired(1, {channelValues(1, 0, 5)});
    EXPECT_EQ(data.openTrialRecord(1, path("s.mega")), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed ")));
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
}

TEST_F(RecordedTrials, ATrialThatCannotBeOpenedIsToldAndTheFormerOneStaysCurrent)
{
    giveDocument();
    ASSERT_EQ(data.openTrialRecord(0, ""), 1);
    EXPECT_EQ(data.openTrialRecord(1, path("s.mega")), 0); // an ordinary trial's file
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not trial or corrupted!"),
                                             CString("Save trail data error!"), CString("Open trial data failed ")));
    EXPECT_EQ(data.getCurrentTrialIndx(), 0);
    host.clearRecord();
    std::filesystem::remove(native(2));
    host.willAnswerNo("Would like to find the file" + listed(2));
    EXPECT_EQ(data.getTrialRecord(2), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed ")));
}

TEST_F(RecordedTrials, TheTrialThatIsLeftIsSaved)
{
    ASSERT_EQ(data.openTrialRecord(0, ""), 1);
    data.getMDTrial(0)->getChannel(0)->getDataWave()[0] = -7.0;
    ASSERT_EQ(data.openTrialRecord(1, ""), 1);
    EXPECT_EQ(waveInFile(FiledDataset::name(0), 0)[0], -7.0);
}

TEST_F(RecordedTrials, AnotherLengthAndStepThanTheRecordingsAreTold)
{
    giveDocument();
    data.m_recordInfo.m_nResampleFactor = 2;
    putAcquired(1, {channelValues(1, 0, 4)});
    ASSERT_EQ(data.openTrialRecord(1, path("s.mega")), 1);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("Sample has been changed: 5->4, Please re-sample and check the data")));
}

TEST_F(RecordedTrials, ATrialWithoutChannelsStaysAndGivesZero)
{
    giveDocument();
    putAcquired(1, {});
    const CString file = filed.folder.write("t1.trla", acquisitionRecord::trial({}).bytes());
    EXPECT_EQ(data.openTrialRecord(1, path("s.mega")), 0);
    EXPECT_EQ(data.getCurrentTrialIndx(), 1);
    EXPECT_NE(data.getMDTrial(1), nullptr);
    EXPECT_EQ(listed(1), file);
    host.expectNoMessages();
}

} // namespace

} // namespace megset::CMEGData9FileRecordTrials_test
