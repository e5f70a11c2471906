// The dataset's file of an acquisition, every version, read from bytes that were put together field by field; the
// trials are not looked at.

#include "tests/persistence/acquisitionRecord.h"

#include "tests/kit/ScriptedHost.h"

#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileRecord_test {

namespace {

using namespace megset::acquisitionRecord;
using ::testing::ElementsAre;

constexpr const char* otherTag = "The opened file is not MEG acquisition file or corrupted!";

class AcquiredDataset : public ::testing::Test
{
protected:
    ScriptedHost host;
    CMEGDatazk dataset;
};

class AcquiredDatasetOfVersion : public AcquiredDataset, public ::testing::WithParamInterface<std::int32_t>
{
protected:
    std::vector<std::byte> behindTag() const
    {
        const std::vector<std::byte> wide = record(GetParam(), filled(1)).bytes();
        return {wide.begin() + 4 + 2 * 14, wide.end()};
    }
    void expectSections(const Parts& parts) { EXPECT_TRUE(sameBytes(stored(dataset), record(newest, parts))); }
};

INSTANTIATE_TEST_SUITE_P(All, AcquiredDatasetOfVersion, ::testing::ValuesIn(versions));

TEST_P(AcquiredDatasetOfVersion, BringsItsSections)
{
    ASSERT_EQ(load(dataset, record(GetParam(), filled(1))), 1);
    expectSections(afterReading(GetParam(), filled(1), 1));
    host.expectNoMessages();
}

TEST_P(AcquiredDatasetOfVersion, ReplacesWhatWasThere)
{
    fill(dataset, 2);
    ASSERT_EQ(load(dataset, record(GetParam(), filled(1))), 1);
    expectSections(afterReading(GetParam(), filled(1), 1));
    ASSERT_EQ(load(dataset, record(GetParam(), Parts())), 1);
    expectSections(afterReading(GetParam(), Parts(), 0));
}

TEST_P(AcquiredDatasetOfVersion, ReadsToItsLastByte)
{
    LoadingArchive archive(record(GetParam(), filled(1)));
    EXPECT_EQ(dataset.serializeRecordWithoutTrials(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
}

// Neither wave results nor the last two words of the tail are in the file.
TEST_P(AcquiredDatasetOfVersion, LeavesWhatTheFormLacksAsItIs)
{
    fill(dataset, 2);
    ASSERT_EQ(load(dataset, record(GetParam(), filled(1))), 1);
    EXPECT_EQ(dataset.m_faceWaveResult, datasetRecord::waveResult(2));
    EXPECT_EQ(dataset.m_nTailWordK, 2084);
    EXPECT_EQ(dataset.m_nTailWordL, 2085);
    EXPECT_EQ(dataset.m_nTailWordJ, 1083);
    EXPECT_EQ(dataset.m_recordInfo.m_coefficients.getCoefficientsData()->GetSize(), 1);
}

TEST_P(AcquiredDatasetOfVersion, ATagInTheNarrowFormIsTheSame)
{
    ASSERT_EQ(load(dataset, ByteBuilder().narrow("MEACQDATASETZK").raw(behindTag())), 1);
    expectSections(afterReading(GetParam(), filled(1), 1));
}

TEST_P(AcquiredDatasetOfVersion, AnotherTagIsRefusedWithNothingChanged)
{
    fill(dataset, 1);
    ASSERT_EQ(load(dataset, record(GetParam(), filled(1))), 1);
    const std::vector<std::byte> before = stored(dataset);
    for (const char* tag : {"MeAcqDatasetZk", "MEGDATASETZK", "MEACQDATASETZ", "MEACQDATASETZKX", ""}) {
        const ScriptedHost told;
        EXPECT_EQ(load(dataset, ByteBuilder().narrow(tag).raw(behindTag())), 0) << tag;
        EXPECT_THAT(told.messages(), ElementsAre(CString(otherTag)));
    }
    EXPECT_TRUE(sameBytes(stored(dataset), before));
}

TEST_P(AcquiredDatasetOfVersion, MakesEmptySlotsWhereTheFileHasThem)
{
    Parts parts = filled(1);
    parts.trials.presence = -7;
    ASSERT_EQ(load(dataset, record(GetParam(), parts)), 1);
    EXPECT_EQ(dataset.m_ppTrial.size(), 3);
    EXPECT_EQ(dataset.getMDTrial(0), nullptr);
}

TEST_P(AcquiredDatasetOfVersion, DropsTheTrialsAndEmptiesBothLists)
{
    ASSERT_EQ(dataset.initMEGData(2, 1, 4), 1);
    dataset.m_aTrialFilePath.Add("a.trl");
    dataset.m_aRecordTrialPath.Add("a.trla");
    ASSERT_EQ(load(dataset, record(GetParam(), Parts())), 1);
    EXPECT_EQ(dataset.m_ppTrial, nullptr);
    EXPECT_TRUE(dataset.m_aTrialFilePath.IsEmpty());
    EXPECT_TRUE(dataset.m_aRecordTrialPath.IsEmpty());
}

TEST_F(AcquiredDataset, IsWrittenFieldByFieldInTheNewestVersion)
{
    fill(dataset, 1);
    EXPECT_TRUE(sameBytes(stored(dataset), record(newest, filled(1))));
    CMEGDatazk empty;
    EXPECT_TRUE(sameBytes(stored(empty), record(newest, Parts())));
    host.expectNoMessages();
}

TEST_F(AcquiredDataset, NumbersOfNoReleaseAreRefused)
{
    for (const std::int32_t number : {20220419, 20220417, 20200728, 20200729, 0, -1}) {
        const ScriptedHost told;
        const std::vector<std::byte> whole = record(newest, filled(1)).bytes();
        EXPECT_EQ(load(dataset, header(number).raw(std::span(whole).subspan(header(newest).size()))), 0) << number;
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong MEG acquisition file format!!?")));
    }
    EXPECT_TRUE(sameBytes(stored(dataset), record(newest, Parts())));
}

// ---- the trial list

TEST_F(AcquiredDataset, FolderAndPathsOfTheRecordingAreKeptApartFromTheDatasetsOwn)
{
    dataset.m_strTrialFolder = "own\\";
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    EXPECT_EQ(dataset.m_strRecordFolder, CString("C:\\folder1\\")); // with its closing backslash
    EXPECT_EQ(dataset.m_strTrialFolder, CString("own\\"));
    ASSERT_EQ(dataset.m_aRecordTrialPath.GetSize(), 3);
    EXPECT_EQ(dataset.m_aRecordTrialPath[0], CString("C:\\a.trl1"));
    EXPECT_TRUE(dataset.m_aTrialFilePath.IsEmpty());
    EXPECT_EQ(dataset.getTotalTrial(), 3);
    EXPECT_EQ(dataset.getSessionName(), CString("session1"));
    EXPECT_EQ(dataset.m_strDatasetFileName, CString("file1"));
}

TEST_F(AcquiredDataset, TakesThePathOfTheArchivesFile)
{
    dataset.m_strDatasetPath = "former";
    ASSERT_EQ(load(dataset, record(newest, Parts())), 1);
    EXPECT_EQ(dataset.m_strDatasetPath, CString("memory.bin"));
}

// ---- recording information

TEST_F(AcquiredDataset, RawValuesBecomeTheRecordedOnesHoweverTheFileWasWritten)
{
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    EXPECT_EQ(dataset.m_recordInfo.m_nRecTotalSample, 1000);
    EXPECT_EQ(dataset.m_recordInfo.m_nRawTotalSample, 1000);
    EXPECT_EQ(dataset.m_recordInfo.m_nRawPreTrigPts, 100);
    EXPECT_EQ(dataset.m_recordInfo.m_dRawSampleRate, 600.5);
}

TEST_F(AcquiredDataset, WritingMakesTheRawValuesTheRecordedOnesToo)
{
    fill(dataset, 1);
    const std::vector<std::byte> first = stored(dataset);
    EXPECT_TRUE(sameBytes(first, record(newest, filled(1)))); // behind the bytes
    EXPECT_EQ(dataset.m_recordInfo.m_nRawTotalSample, 1000);
    EXPECT_EQ(dataset.m_recordInfo.m_nRawPreTrigPts, 100);
    EXPECT_EQ(dataset.m_recordInfo.m_dRawSampleRate, 600.5);
}

// ---- flags of channels

TEST_F(AcquiredDataset, AFileOf20200727HasThreeArraysAndOneOf20220418Four)
{
    ASSERT_EQ(load(dataset, record(20220418, filled(1))), 1);
    EXPECT_EQ(dataset.m_pChnlParam4[0], 1090);
    EXPECT_EQ(dataset.m_pChnlParam4[1], 1091);
    ASSERT_EQ(load(dataset, record(20200727, filled(1))), 1);
    EXPECT_EQ(dataset.m_pChnlSelect[1], 1049);
    EXPECT_EQ(dataset.m_pChnlParam4[0], 0);
    EXPECT_EQ(dataset.m_pChnlParam4[1], 0);
}

TEST_F(AcquiredDataset, FlagsOutliveTheFirstLookAtATrial)
{
    for (const std::int32_t number : versions) {
        ASSERT_EQ(load(dataset, record(number, filled(1))), 1);
        CMDTrialzk trial;
        ASSERT_EQ(trial.allocateChannels(2), 1);
        ASSERT_EQ(dataset.checkInitChnlParam(&trial), 1);
        EXPECT_EQ(dataset.m_pChnlGood[1], 1045);
        EXPECT_EQ(dataset.m_pChnlParam4[1], number == newest ? 1091 : 0);
    }
}

TEST_F(AcquiredDataset, EachArrayOfFlagsStandsInItsPlaceAlone)
{
    const std::pair<std::unique_ptr<int[]> CMEGData::*, ByteBuilder Parts::*> arrays[] = {
        {&CMEGData::m_pChnlGood, &Parts::good},
        {&CMEGData::m_pChnlShow, &Parts::shown},
        {&CMEGData::m_pChnlSelect, &Parts::select},
        {&CMEGData::m_pChnlParam4, &Parts::param4}};
    for (const auto& [array, bytes] : arrays) {
        Parts parts;
        parts.flagCount = 1;
        parts.*bytes = flags({9});
        ASSERT_EQ(load(dataset, record(newest, parts)), 1);
        ASSERT_NE(dataset.*array, nullptr);
        EXPECT_EQ((dataset.*array)[0], 9);
        EXPECT_TRUE(sameBytes(stored(dataset), record(newest, parts)));
    }
}

} // namespace

} // namespace megset::CMEGData9FileRecord_test
