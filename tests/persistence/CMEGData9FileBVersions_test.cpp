// Every version of the dataset's file, read from bytes that were put together field by field, and the one that is
// written.

#include "tests/persistence/datasetRecord.h"

#include "megset/platform/CArchiveException.h"

#include "tests/kit/ScriptedHost.h"

#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData9FileBVersions_test {

namespace {

using namespace megset::datasetRecord;
using ::testing::ElementsAre;

class DatasetFile : public ::testing::Test
{
protected:
    void expectNewest(const Parts& parts) { EXPECT_TRUE(sameBytes(stored(dataset), record(newest, parts))); }

    ScriptedHost host;
    CMEGDatazk dataset;
};

class DatasetFileOfVersion : public DatasetFile, public ::testing::WithParamInterface<std::int32_t>
{
};

INSTANTIATE_TEST_SUITE_P(All, DatasetFileOfVersion, ::testing::ValuesIn(versions));

TEST_P(DatasetFileOfVersion, BringsItsSectionsAndLeavesTheRestOfANewDataset)
{
    ASSERT_EQ(loadWhole(dataset, GetParam(), record(GetParam(), filled(1))), 1);
    expectNewest(afterReading(GetParam(), filled(1), Parts()));
    host.expectNoMessages();
}

TEST_P(DatasetFileOfVersion, ReplacesItsSectionsAndLeavesTheOthersAsTheyWere)
{
    fill(dataset, 2);
    ASSERT_EQ(loadWhole(dataset, GetParam(), record(GetParam(), filled(1))), 1);
    expectNewest(afterReading(GetParam(), filled(1), filled(2)));
}

TEST_P(DatasetFileOfVersion, EmptySectionsClearWhatTheyOwn)
{
    fill(dataset, 2);
    ASSERT_EQ(loadWhole(dataset, GetParam(), record(GetParam(), Parts())), 1);
    expectNewest(afterReading(GetParam(), Parts(), filled(2)));
}

TEST_P(DatasetFileOfVersion, DropsTheTrialsThatWereThere)
{
    ASSERT_EQ(dataset.initMEGData(2, 1, 4), 1);
    ASSERT_EQ(loadWhole(dataset, GetParam(), record(GetParam(), filled(1))), 1);
    EXPECT_EQ(dataset.m_ppTrial != nullptr, GetParam() == 20080104);
}

TEST_P(DatasetFileOfVersion, ATagInTheNarrowFormIsTheSame)
{
    const ByteBuilder wide = record(GetParam(), filled(1));
    ByteBuilder narrow;
    narrow.narrow("MEGDATASETZK").raw(std::span(wide.bytes()).subspan(4 + 2 * 12));
    ASSERT_EQ(loadWhole(dataset, GetParam(), narrow), 1);
    expectNewest(afterReading(GetParam(), filled(1), Parts()));
}

TEST_P(DatasetFileOfVersion, ATagInAnotherCaseIsRefused)
{
    const ByteBuilder wide = record(GetParam(), filled(1));
    ByteBuilder other;
    other.narrow("MEGDATASETzk").raw(std::span(wide.bytes()).subspan(4 + 2 * 12));
    EXPECT_EQ(load(dataset, other), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not MEG dataset file or corrupted!")));
    expectNewest(Parts());
}

// The word of presence makes the slots, in every form of the list; without flags behind it no trial is opened.
TEST_P(DatasetFileOfVersion, MakesEmptySlotsWhereTheFileHasThem)
{
    const bool today = listForm(GetParam()) == ListForm::today;
    Parts parts = filled(1);
    parts.trials.presence = -7;
    parts.trials.behind = none(3);
    if (today) // this version opens a trial, but not where there is no path
        parts.trials.paths.clear();
    ASSERT_EQ(loadWhole(dataset, GetParam(), record(GetParam(), parts)), 1);
    EXPECT_EQ(dataset.m_ppTrial.size(), GetParam() == 20080104 ? 0 : 3);
    EXPECT_EQ(dataset.getMDTrial(0), nullptr);
    EXPECT_EQ(host.messages().size(), today ? 2U : 0U);
    if (GetParam() == 20080104)
        return;
    parts.trials.presence = 1;
    expectNewest(afterReading(GetParam(), parts, Parts()));
}

TEST_P(DatasetFileOfVersion, CannotHaveLessThanNoTrial)
{
    if (GetParam() == 20080104)
        return;
    for (const int total : {-1, INT32_MIN}) {
        const ScriptedHost told;
        Parts parts = filled(1);
        parts.trials.total = total;
        parts.trials.presence = 1;
        EXPECT_EQ(load(dataset, record(GetParam(), parts)), 0);
        EXPECT_THAT(told.messages(), ElementsAre(CString("Not enough memory?!"))) << total;
        EXPECT_EQ(dataset.m_ppTrial, nullptr);
    }
}

// ---- the newest version

TEST_F(DatasetFile, IsWrittenFieldByField)
{
    fill(dataset, 1);
    expectNewest(filled(1));
    fill(dataset, 2);
    expectNewest(filled(2));
    host.expectNoMessages();
}

TEST_F(DatasetFile, OfANewDatasetHasDefinedValues)
{
    expectNewest(Parts());
}

TEST_F(DatasetFile, WrittenTwiceGivesTheSameBytes)
{
    fill(dataset, 1);
    const std::vector<std::byte> first = stored(dataset);
    EXPECT_TRUE(sameBytes(stored(dataset), first));
}

TEST_F(DatasetFile, BringsTheTrialListOfTheNewestVersion)
{
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    EXPECT_EQ(dataset.getTotalTrial(), 3);
    EXPECT_EQ(dataset.getCurrentTrialIndx(), 1);
    EXPECT_EQ(dataset.m_nRealTrial, 1003);
    EXPECT_EQ(dataset.m_nVirtualTrial, 1004);
    EXPECT_EQ(dataset.m_strDatasetFileName, CString("file1"));
    EXPECT_EQ(dataset.getSessionName(), CString("session1"));
    EXPECT_EQ(dataset.m_nDatasetFlagA, 1007);
    EXPECT_EQ(dataset.m_strTrialFolder, CString("C:\\folder1\\"));
    ASSERT_EQ(dataset.m_aTrialFilePath.GetSize(), 3);
    EXPECT_EQ(dataset.m_aTrialFilePath[0], CString("C:\\a.trl1"));
    EXPECT_EQ(dataset.m_aTrialFilePath[1], CString());
    EXPECT_EQ(dataset.m_aTrialFilePath[2], CString("ä猫1"));
    EXPECT_EQ(dataset.m_ppTrial, nullptr);
}

TEST_F(DatasetFile, BringsTheRecordsOfTheNewestVersion)
{
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    EXPECT_EQ(dataset.m_headLocalization, trialRecord::head(1));
    const CMarkerManagerzk* const markers[] = {&dataset.m_mkTrig,    &dataset.m_mkTrigRecord, &dataset.m_mkMarker,
                                               &dataset.m_mkSegment, &dataset.m_mkClass,      &dataset.m_mkThreshold,
                                               &dataset.m_mkPattern, &dataset.m_mkAiMarkWave, &dataset.m_mkSelect4Move};
    int i = 10;
    for (const CMarkerManagerzk* one : markers)
        EXPECT_EQ(*one, manager(i++));
    EXPECT_EQ(dataset.m_nFilterSettingCount, (std::int64_t{1} << 40) + 1000);
    EXPECT_EQ(dataset.m_nFilterSettingCount2, (std::int64_t{1} << 41) + 1000);
    EXPECT_EQ(dataset.m_filterDcLt, filter(1));
    EXPECT_EQ(dataset.m_filterDcLt2, filter(2));
    EXPECT_EQ(dataset.m_recordInfo.m_strAcqTextA, CString("acquired1"));
    EXPECT_EQ(dataset.m_recordInfo.m_nRecTotalSample, 1000);
    EXPECT_EQ(dataset.m_recordInfo.m_coefficients.getCoefficientsData()->GetSize(), 1);
    EXPECT_EQ(dataset.m_fidEegMeasure, fiducials(1));
    EXPECT_EQ(dataset.m_fidWorkEeg, fiducials(2));
    EXPECT_EQ(dataset.m_faceWaveResult, waveResult(1));
}

TEST_F(DatasetFile, BringsTheShowStateOfTheNewestVersion)
{
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    EXPECT_EQ(dataset.m_bShowVirtChnl, 1000);
    EXPECT_EQ(dataset.m_nShowWordB, 1005);
    EXPECT_EQ(dataset.m_dZoomMEGSensor, 1006.5);
    EXPECT_EQ(dataset.m_dZoomType903, 1010.5);
    EXPECT_EQ(dataset.m_dZoomType902, 1011.5);
    EXPECT_EQ(dataset.m_dZoomType904, 1012.5);
    EXPECT_EQ(dataset.m_dShowTimeScaleX, 1015.5);
    EXPECT_EQ(dataset.m_nSensorSize2D, 1016);
    EXPECT_EQ(dataset.m_d2DSensorColorStepLow, 1018.5);
    EXPECT_EQ(dataset.m_d2DSensorColorLow, 1021.5);
    EXPECT_EQ(dataset.m_nShowWordC, 1022);
    EXPECT_EQ(dataset.m_dShowRangeMegHigh, 1026.5);
    EXPECT_EQ(dataset.m_nShowWordE, 1028);
    EXPECT_EQ(dataset.m_strProcessInfo, CString("process1"));
    EXPECT_EQ(dataset.m_nRoiWord, 1030);
    EXPECT_EQ(dataset.m_clrRoiB, 1032U);
    EXPECT_EQ(dataset.m_dRoiXMin, 1034.5);
    EXPECT_EQ(dataset.m_dRoiZMax, 1039.5);
    EXPECT_EQ(dataset.m_dRoiXDim, 1040.5);
    EXPECT_EQ(dataset.m_dRoiZDim, 1042.5);
    EXPECT_EQ(dataset.m_nEegShowWord, 1060);
    EXPECT_EQ(dataset.m_nElectrodeSize2D, 1062);
    EXPECT_EQ(dataset.m_d2DElectrodeColorHigh, 1065.5);
    EXPECT_EQ(dataset.m_dShowRangeEegHigh, 1068.5);
}

TEST_F(DatasetFile, BringsFlagsAndTailOfTheNewestVersion)
{
    ASSERT_EQ(load(dataset, record(newest, filled(1))), 1);
    EXPECT_EQ(dataset.m_nChnlParamCount, 2);
    EXPECT_EQ(dataset.m_pChnlGood[1], 1045);
    EXPECT_EQ(dataset.m_pChnlShow[0], 1046);
    EXPECT_EQ(dataset.m_pChnlSelect[1], 1049);
    EXPECT_EQ(dataset.m_nSegmentCutState, 1050);
    EXPECT_EQ(dataset.m_nSegmentCutNext, 1051);
    EXPECT_EQ(dataset.m_nSelectStart, 1070);
    EXPECT_EQ(dataset.m_nSelectEnd, 1071);
    EXPECT_EQ(dataset.m_nTailWordB, 1073);
    EXPECT_EQ(dataset.m_dTailValueA, 1074.5);
    EXPECT_EQ(dataset.m_nShowMarkLineType, 1075);
    EXPECT_EQ(dataset.m_nTailWordD, 1077);
    EXPECT_EQ(dataset.m_nTailWordE, 1078);
    EXPECT_EQ(dataset.m_nTailWordF, 1079);
    EXPECT_EQ(dataset.m_nTailWordH, 1081);
    EXPECT_EQ(dataset.m_nTailWordK, 1084);
    EXPECT_EQ(dataset.m_nTailWordL, 1085);
}

// ---- which numbers are versions

TEST_F(DatasetFile, NumbersOfNoReleaseAreRefused)
{
    // 20090727 is the date in a reader's name, and no number of a file.
    for (const int number : {20090727, 20200730, 20200728, 20161124, 0, -1}) {
        const ScriptedHost told;
        ByteBuilder bytes = header(number);
        const ByteBuilder whole = record(newest, filled(1));
        bytes.raw(std::span(whole.bytes()).subspan(header(newest).size()));
        EXPECT_EQ(load(dataset, bytes), 0) << number;
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong MEG dataset file format!!?")));
    }
    expectNewest(Parts());
}

TEST_F(DatasetFile, Version20090727IsRefusedAnd20080609IsRead)
{
    const ByteBuilder old = record(20080609, filled(1));
    ByteBuilder other = header(20090727);
    other.raw(std::span(old.bytes()).subspan(header(newest).size()));
    EXPECT_EQ(load(dataset, other), 0);
    EXPECT_EQ(dataset.getTotalTrial(), 0);
    ASSERT_EQ(load(dataset, old), 1);
    EXPECT_EQ(dataset.getTotalTrial(), 3);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Wrong MEG dataset file format!!?")));
}

TEST_F(DatasetFile, Version20080104ReadsNothingAndLeavesAllFields)
{
    fill(dataset, 2);
    ByteBuilder bytes = header(20080104);
    LoadingArchive archive(bytes.zeros(100));
    EXPECT_EQ(dataset.serializezk(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 100U);
    expectNewest(filled(2));
    host.expectNoMessages();
}

TEST_F(DatasetFile, Version20161123EndsLoadedWithAnEndOfFileException)
{
    LoadingArchive archive(record(20161123, filled(1)));
    try {
        dataset.serializezk(*archive);
        FAIL() << "no exception";
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
    }
    EXPECT_EQ(dataset.getTotalTrial(), 3);
    EXPECT_EQ(dataset.m_nTailWordG, 1080);
    expectNewest(afterReading(20161123, filled(1), Parts()));
}

// What stands behind a file of this version is read over it, and decides the result.
TEST_F(DatasetFile, Version20161123ReadsWhatFollowsAsTheVersionBefore)
{
    const ByteBuilder behind = record(20160222, filled(2));
    ByteBuilder both = record(20161123, filled(1));
    both.raw(std::span(behind.bytes()).subspan(header(newest).size()));
    ASSERT_EQ(load(dataset, both), 1);
    Parts expected = afterReading(20160222, filled(2), afterReading(20161123, filled(1), Parts()));
    expectNewest(expected);

    ByteBuilder other = record(20161123, filled(1));
    EXPECT_EQ(load(dataset, other.wide("ANOTHERZK")), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre(CString("HEADLOCALIZATIONZK: The record is of another kind or corrupted!")));
}

TEST_F(DatasetFile, Version20161123ThatFailsIsNotReadAsTheVersionBefore)
{
    Parts parts = filled(1);
    parts.trials.presence = 1;
    parts.trials.total = -1;
    ByteBuilder both = record(20161123, parts);
    const std::size_t own = both.size();
    const ByteBuilder behind = record(20160222, filled(2));
    both.raw(std::span(behind.bytes()).subspan(header(newest).size()));
    LoadingArchive archive(both);
    EXPECT_EQ(dataset.serializezk(*archive), 0);
    EXPECT_EQ(archive->position(), own);
}

// ---- sections of old versions

TEST_F(DatasetFile, TheSecondProcessTextOfOldFilesStands)
{
    for (const std::int32_t version : {20080609, 20100428}) {
        ASSERT_EQ(load(dataset, record(version, filled(1))), 1);
        EXPECT_EQ(dataset.m_strProcessInfo, CString("process1"));
    }
    ASSERT_EQ(load(dataset, record(20110210, filled(1))), 1);
    EXPECT_EQ(dataset.m_strProcessInfo, CString("old process1"));
}

TEST_F(DatasetFile, TheMarkerOfTheOldCutIsThrownAway)
{
    for (const std::int32_t version : {20120527, 20120824, 20130404, 20130421, 20130502}) {
        fill(dataset, 2);
        ASSERT_EQ(load(dataset, record(version, filled(1))), 1);
        EXPECT_EQ(dataset.m_nSegmentCutState, 1052);
        EXPECT_EQ(dataset.m_nSegmentCutNext, 2051);
        EXPECT_EQ(dataset.m_mkSelect4Move, manager(28));
    }
}

TEST_F(DatasetFile, OldFilesLeaveTheMarkersThatTheyLack)
{
    const std::pair<std::int32_t, int> known[] = {{20120419, 4}, {20130404, 4}, {20130421, 6},
                                                  {20130508, 6}, {20140516, 7}, {20170706, 8}};
    for (const auto& [version, count] : known) {
        fill(dataset, 2);
        ASSERT_EQ(load(dataset, record(version, filled(1))), 1);
        EXPECT_EQ(dataset.m_mkTrig, manager(10));
        EXPECT_EQ(dataset.m_mkClass, manager(14));
        EXPECT_EQ(dataset.m_mkTrigRecord, manager(count >= 7 ? 11 : 21)) << version;
        EXPECT_EQ(dataset.m_mkThreshold, manager(count >= 6 ? 15 : 25)) << version;
        EXPECT_EQ(dataset.m_mkPattern, manager(count >= 6 ? 16 : 26)) << version;
        EXPECT_EQ(dataset.m_mkAiMarkWave, manager(count >= 8 ? 17 : 27)) << version;
    }
}

} // namespace

} // namespace megset::CMEGData9FileBVersions_test
