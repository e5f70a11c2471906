// Every version of the trial's file, read from bytes that were put together field by field, and the one that is
// written.

#include "tests/persistence/trialRecord.h"

#include "tests/kit/ScriptedHost.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial9FileBVersions_test {

namespace {

using namespace megset::trialRecord;
using ::testing::ElementsAre;

class TrialFile : public ::testing::Test
{
protected:
    ScriptedHost host;
    CMDTrialzk trial;
};

class TrialFileOfVersion : public TrialFile, public ::testing::WithParamInterface<std::int32_t>
{
};

INSTANTIATE_TEST_SUITE_P(All, TrialFileOfVersion, ::testing::ValuesIn(versions));

TEST_P(TrialFileOfVersion, BringsItsSectionsAndLeavesTheRestOfANewTrial)
{
    LoadingArchive archive(record(GetParam(), filled(1)));
    ASSERT_EQ(trial.serializezk(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, afterReading(GetParam(), filled(1), Parts()))));
    host.expectNoMessages();
}

TEST_P(TrialFileOfVersion, ReplacesItsSectionsAndLeavesTheOthersAsTheyWere)
{
    fill(trial, 2);
    ASSERT_EQ(load(trial, record(GetParam(), filled(1))), 1);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, afterReading(GetParam(), filled(1), filled(2)))));
}

TEST_P(TrialFileOfVersion, EmptySectionsClearWhatTheyOwn)
{
    fill(trial, 2);
    ASSERT_EQ(load(trial, record(GetParam(), Parts())), 1);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, afterReading(GetParam(), Parts(), filled(2)))));
}

TEST_P(TrialFileOfVersion, ATagInTheNarrowFormIsTheSame)
{
    const ByteBuilder wide = record(GetParam(), filled(1));
    const std::size_t wideTag = 4 + 2 * 10;
    ByteBuilder narrow;
    narrow.narrow("MEGTRIALZK").raw(std::span(wide.bytes()).subspan(wideTag));
    ASSERT_EQ(load(trial, narrow), 1);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, afterReading(GetParam(), filled(1), Parts()))));
}

TEST_P(TrialFileOfVersion, ATagInAnotherCaseIsRefused)
{
    const ByteBuilder wide = record(GetParam(), filled(1));
    ByteBuilder other;
    other.narrow("MEGTRIALzk").raw(std::span(wide.bytes()).subspan(4 + 2 * 10));
    EXPECT_EQ(load(trial, other), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not trial or corrupted!")));
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, Parts())));
}

// ---- the fields by name

TEST_F(TrialFile, IsWrittenFieldByField)
{
    fill(trial, 1);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, filled(1))));
    fill(trial, 2);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, filled(2))));
    host.expectNoMessages();
}

TEST_F(TrialFile, OfANewTrialHasDefinedValues)
{
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, Parts())));
}

TEST_F(TrialFile, WrittenTwiceGivesTheSameBytes)
{
    fill(trial, 1);
    const std::vector<std::byte> first = stored(trial);
    EXPECT_TRUE(sameBytes(stored(trial), first));
}

TEST_F(TrialFile, BringsEveryFieldOfTheNewestVersion)
{
    ASSERT_EQ(load(trial, record(newest, filled(1))), 1);
    EXPECT_EQ(trial.m_nTrialReservedA, (std::int64_t{1} << 40) + 1001);
    EXPECT_EQ(trial.m_nGoodTrial, 1002);
    EXPECT_EQ(trial.m_nMegPlaneDone, 1003);
    EXPECT_EQ(trial.m_nTrialReservedB, 1006);
    EXPECT_EQ(trial.m_nTrialReservedC, 1007);
    EXPECT_EQ(trial.m_strTrialName, CString("trial1"));
    EXPECT_EQ(trial.m_strTrialFilePath, CString("C:\\old\\trial.trl1"));
    EXPECT_EQ(trial.m_nVirtualTrial, 1010);
    EXPECT_EQ(trial.m_nTrialKind, 1011);
    EXPECT_EQ(trial.m_nTrialIndex, (std::int64_t{1} << 41) + 1012);
    EXPECT_EQ(trial.m_megContour.m_dXmin, 1013.5);
    EXPECT_EQ(trial.m_megContour.m_dPlaneScale, 1023.5);
    EXPECT_EQ(trial.m_nCurrentChannel, 1);
    ASSERT_EQ(trial.getTotalChannel(), 3);
    ASSERT_NE(trial.m_ppChannel[0], nullptr);
    EXPECT_EQ(trial.m_ppChannel[0]->m_strChannelName, CString("working"));
    EXPECT_EQ(trial.m_ppChannel[1], nullptr);
    EXPECT_NE(trial.m_ppChannel[2], nullptr);
    EXPECT_EQ(*trial.m_pVolumeSrc, volumeSource(1));
    EXPECT_EQ(*trial.m_pVolumeSrcCoh, volumeSourceCoherence(1));
    EXPECT_EQ(trial.m_pSpctmTrialA->m_strLabelR, CString("A1"));
    EXPECT_EQ(trial.m_pSpctmTrialC->m_strLabelR, CString("C1"));
    EXPECT_EQ(trial.m_pSpctmTrialR->m_strLabelR, CString("R1"));
    EXPECT_EQ(trial.m_nTrigMarkPoint, 1050);
    EXPECT_EQ(trial.m_dTrigMarkValue, 1051.5);
    EXPECT_EQ(trial.m_nTrigMarkCode, 1052);
    EXPECT_EQ(trial.m_strTrigMarkName, CString("mark1"));
    EXPECT_EQ(trial.m_nTrigMarkFirst, 1054);
    EXPECT_EQ(trial.m_nTrigMarkLast, 1055);
    EXPECT_EQ(trial.m_headLocalization, head(1));
    EXPECT_EQ(*trial.m_pCohFaceTime, coherence(1));
    EXPECT_EQ(*trial.m_pSpctmCCFace, crossSpectra(1));
    EXPECT_EQ(trial.m_pkgVirtWave, package(1));
    EXPECT_EQ(*trial.m_pVirtSpctm, virtualSpectra(1));
    EXPECT_EQ(*trial.m_pSrcCohFace, sourceCoherence(1));
    EXPECT_EQ(trial.m_bMontageCrDone, 1060);
    EXPECT_EQ(trial.m_bMontageIrDone, 1061);
    EXPECT_EQ(*trial.m_pMontageCr, commonReference(1));
    ASSERT_EQ(trial.m_aMontageIr.GetSize(), 2);
    EXPECT_EQ(*trial.m_aMontageIr[1], individualReference(11));
    EXPECT_EQ(*trial.m_pFaceIca, components(1));
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 1);
    ASSERT_EQ(trial.m_aSeegProbe.GetSize(), 2);
    EXPECT_EQ(*trial.m_aSeegProbe[1], probe(11));
    EXPECT_EQ(trial.m_waveResult, waveResult(1));
    EXPECT_EQ(trial.m_bTrialResampled, 1070);
    EXPECT_EQ(trial.m_nTrialResampleStep, (std::int64_t{1} << 42) + 1071);
}

TEST_F(TrialFile, WordsWithoutAFieldAreSkippedAndWrittenAsZero)
{
    Parts parts;
    parts.basic = ByteBuilder().i64(0).i32(1).i32(0).i64(-1).i64(-2).i32(1).i32(0).wide("").wide("");
    parts.basic.i32(0).i32(0).i64(0).zeros(11 * 8);
    ASSERT_EQ(load(trial, record(newest, parts)), 1);
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, Parts())));
}

TEST_F(TrialFile, TheTwelfthWordOfTheExtentsAndTheOtherExtentsStay)
{
    trial.m_megContour.m_nContourWord = 12;
    trial.m_eegContour.m_dXmin = 5.0;
    ASSERT_EQ(load(trial, record(newest, filled(1))), 1);
    EXPECT_EQ(trial.m_megContour.m_nContourWord, 12);
    EXPECT_EQ(trial.m_megContour.m_dPlaneScale, 1023.5);
    EXPECT_EQ(trial.m_eegContour.m_dXmin, 5.0);
}

// ---- which numbers are versions

TEST_F(TrialFile, NumbersOfNoReleaseAreRefused)
{
    // 20190609 is the date in a reader's name, and no number of a file.
    for (const std::int32_t number : {20190609, 20190731, 20080228, 20190907, 0, -1}) {
        const ScriptedHost told;
        ByteBuilder bytes = header(number);
        const ByteBuilder whole = record(newest, filled(1));
        bytes.raw(std::span(whole.bytes()).subspan(header(newest).size()));
        EXPECT_EQ(load(trial, bytes), 0) << number;
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong MEG data file format!!?")));
    }
    EXPECT_TRUE(sameBytes(stored(trial), record(newest, Parts())));
}

TEST_F(TrialFile, Number20190906HasOneWaveAndTheWaveResults)
{
    ASSERT_EQ(load(trial, record(20190906, filled(1))), 1);
    EXPECT_EQ(trial.m_pkgVirtWave, package(1));
    EXPECT_EQ(trial.m_waveResult, waveResult(1));
}

TEST_F(TrialFile, OldFilesWithoutAWaveEmptyThePackage)
{
    for (const std::int32_t version : {20120228, 20120618, 20130212, 20160704, 20161110, 20161122, 20190906}) {
        fill(trial, 2);
        ASSERT_EQ(load(trial, record(version, Parts())), 1);
        EXPECT_EQ(trial.m_pkgVirtWave.getTotalFvcw(), 0) << version;
    }
}

TEST_F(TrialFile, OldVersionsLeaveTheCoherenceImageOfTheTrialBefore)
{
    for (const std::int32_t version : versions) {
        fill(trial, 2);
        ASSERT_EQ(load(trial, record(version, Parts())), 1);
        EXPECT_EQ(trial.m_pVolumeSrcCoh != nullptr, version <= 20120618) << version;
        EXPECT_EQ(trial.m_pVolumeSrc, nullptr) << version;
    }
}

TEST_F(TrialFile, ChannelsOfOldFilesHaveRecordsOfTheirTime)
{
    Parts parts;
    parts.channels = ByteBuilder().i32(0).i32(2).i32(1).i32(1).append(channelRecord::record(20090726));
    parts.channels.i32(1).append(channelRecord::record(20140513));
    for (const std::int32_t version : versions) {
        ASSERT_EQ(load(trial, record(version, parts)), 1);
        ASSERT_NE(trial.getChannel(1), nullptr);
        EXPECT_EQ(trial.getChannel(1)->m_dDataMaxAbs, 23.5);
    }
}

// ---- each optional object on its own

using Slot = std::pair<std::function<void(CMDTrialzk&)>, std::function<void(Parts&)>>;

const Slot slots[] = {
    {[](CMDTrialzk& t) { t.m_pVolumeSrc = std::make_unique<CFaceVolumSourceImagezk>(volumeSource(3)); },
     [](Parts& p) { p.volumeSource = guarded(volumeSource(3)); }},
    {[](CMDTrialzk& t) {
         t.m_pVolumeSrcCoh = std::make_unique<CFaceVolumSourceCoherenceImagezk>(volumeSourceCoherence(3));
     },
     [](Parts& p) { p.volumeSourceCoherence = guarded(volumeSourceCoherence(3)); }},
    {[](CMDTrialzk& t) { t.m_pSpctmTrialA = newSpectrum("A", 3); },
     [](Parts& p) { p.spectra = ByteBuilder().i32(1).raw(bytesOfSpectrum("A", 3)).i32(0).i32(0); }},
    {[](CMDTrialzk& t) { t.m_pSpctmTrialC = newSpectrum("C", 3); },
     [](Parts& p) { p.spectra = ByteBuilder().i32(0).i32(1).raw(bytesOfSpectrum("C", 3)).i32(0); }},
    {[](CMDTrialzk& t) { t.m_pSpctmTrialR = newSpectrum("R", 3); },
     [](Parts& p) { p.spectra = ByteBuilder().i32(0).i32(0).i32(1).raw(bytesOfSpectrum("R", 3)); }},
    {[](CMDTrialzk& t) { t.m_pCohFaceTime = std::make_unique<CSnsCohFacezk>(coherence(3)); },
     [](Parts& p) { p.coherence = guarded(coherence(3)); }},
    {[](CMDTrialzk& t) { t.m_pSpctmCCFace = std::make_unique<CMEGSpctmCCDataFacezk>(crossSpectra(3)); },
     [](Parts& p) { p.crossSpectra = guarded(crossSpectra(3)); }},
    {[](CMDTrialzk& t) { t.m_pkgVirtWave = package(3); },
     [](Parts& p) { p.package = ByteBuilder().raw(bytesOf(package(3))); }},
    {[](CMDTrialzk& t) { t.m_pVirtSpctm = std::make_unique<CFaceVirtChnlSpctmzk>(virtualSpectra(3)); },
     [](Parts& p) { p.virtualSpectra = guarded(virtualSpectra(3)); }},
    {[](CMDTrialzk& t) { t.m_pSrcCohFace = std::make_unique<CSrcCohFacezk>(sourceCoherence(3)); },
     [](Parts& p) { p.sourceCoherence = guarded(sourceCoherence(3)); }},
    {[](CMDTrialzk& t) { t.m_pMontageCr = std::make_unique<CMtgUnit4CommonRefzk>(commonReference(3)); },
     [](Parts& p) { p.commonReference = ByteBuilder().raw(bytesOf(commonReference(3))); }},
    {[](CMDTrialzk& t) { t.m_aMontageIr.addCopy(individualReference(3)); },
     [](Parts& p) { p.individualReferences = ByteBuilder().i64(1).append(guarded(individualReference(3))); }},
    {[](CMDTrialzk& t) { t.m_pFaceIca = std::make_unique<CFaceIcazk>(components(3)); },
     [](Parts& p) { p.components = guarded(components(3)); }},
    {[](CMDTrialzk& t) { t.m_aSeegProbe.addCopy(probe(3)); },
     [](Parts& p) { p.probes = ByteBuilder().i32(0).i32(1).append(guarded(probe(3))); }},
};

TEST_F(TrialFile, EachOptionalObjectStandsInItsPlaceAlone)
{
    int number = 0;
    for (const auto& [putInto, putBytes] : slots) {
        SCOPED_TRACE(number++);
        CMDTrialzk written;
        putInto(written);
        Parts parts;
        putBytes(parts);
        EXPECT_TRUE(sameBytes(stored(written), record(newest, parts)));
        ASSERT_EQ(load(trial, record(newest, parts)), 1);
        EXPECT_TRUE(sameBytes(stored(trial), record(newest, parts)));
    }
}

TEST_F(TrialFile, AnyGuardButZeroMeansPresence)
{
    Parts parts;
    parts.components = ByteBuilder().i32(-5).raw(bytesOf(components(3)));
    parts.probes = ByteBuilder().i32(0).i32(1).i32(256).raw(bytesOf(probe(3)));
    parts.channels = ByteBuilder().i32(0).i32(1).i32(7).i32(-1).append(channelRecord::record(channelRecord::newest));
    ASSERT_EQ(load(trial, record(newest, parts)), 1);
    EXPECT_NE(trial.m_pFaceIca, nullptr);
    EXPECT_EQ(trial.m_aSeegProbe.GetSize(), 1);
    EXPECT_NE(trial.getChannel(0), nullptr);
}

} // namespace

} // namespace megset::CMDTrial9FileBVersions_test
