// The channel record: every version, read from bytes that were put together field by field, and the one that is
// written.

#include "tests/persistence/channelRecord.h"

#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/ScriptedHost.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannel9File_test {

namespace {

using namespace megset::channelRecord;
using ::testing::ElementsAre;

void expectIdentity(const CMDChannelzk& channel)
{
    EXPECT_EQ(channel.m_nMegListID, 3);
    EXPECT_EQ(channel.m_dChnlParamA, 4.5);
    EXPECT_EQ(channel.m_dSns2dX, 5.5);
    EXPECT_EQ(channel.m_dSns2dY, 6.5);
    EXPECT_EQ(channel.m_nChnlParamE, 7);
    EXPECT_EQ(channel.m_nChnlParamD, 8);
    EXPECT_EQ(channel.m_nChnlParamF, 9);
    EXPECT_EQ(channel.m_nChnlParamG, std::int64_t{10} << 32);
    EXPECT_EQ(channel.m_nSnsGainApplied, 11);
    EXPECT_EQ(channel.m_nChnlParamH, 12);
    EXPECT_EQ(channel.m_nChnlParamI, 13);
    EXPECT_EQ(channel.m_dChnlParamJ, 14.5);
    EXPECT_EQ(channel.m_dChnlParamK, 15.5);
    EXPECT_EQ(channel.m_dChnlParamL, 16.5);
    EXPECT_EQ(channel.m_strChannelName, CString("working"));
    EXPECT_EQ(channel.m_strChannelNameRaw, CString("raw"));
}

void expectRange(const CMDChannelzk& channel, bool present)
{
    EXPECT_EQ(channel.m_nChnlRangeState, present ? 19 : -1);
    EXPECT_EQ(channel.m_dDataMin, present ? 20.5 : 0.0);
    EXPECT_EQ(channel.m_dDataMean, present ? 21.5 : 0.0);
    EXPECT_EQ(channel.m_dDataMax, present ? 22.5 : 0.0);
    EXPECT_EQ(channel.m_dDataMaxAbs, present ? 23.5 : 0.0);
}

void expectLabels(const CMDChannelzk& channel, bool present)
{
    EXPECT_EQ(channel.m_dPhysicalMin, present ? 24.5 : 0.0);
    EXPECT_EQ(channel.m_dPhysicalMax, present ? 25.5 : 0.0);
    EXPECT_EQ(channel.m_strChnlLabelA, CString(present ? "label A" : ""));
    EXPECT_EQ(channel.m_strChnlLabelB, CString(present ? "label B" : ""));
    EXPECT_EQ(channel.m_dChnlParamM, present ? 30.5 : 0.0);
}

void expectGeometryAndBalance(const CMDChannelzk& channel)
{
    EXPECT_EQ(channel.m_strChannelTypeName, CString("type"));
    EXPECT_EQ(channel.m_nChannelType, 101);
    EXPECT_EQ(channel.m_nGeomType, 1);
    ASSERT_NE(channel.getMEGSensorzk(), nullptr);
    EXPECT_EQ(*channel.getMEGSensorzk(), sensor());
    EXPECT_EQ(channel.m_nMegBalMode, 35);
    EXPECT_EQ(channel.m_nMegChnlNumBal, 2);
    ASSERT_NE(channel.m_pMegBalInf, nullptr);
    EXPECT_EQ(channel.m_pMegBalInf[0], (MEG_BalInfo{0.25, 7, "G1"}));
    EXPECT_EQ(channel.m_pMegBalInf[1], (MEG_BalInfo{-0.5, 8, "G2"}));
}

void expectSamples(const CMDChannelzk& channel)
{
    ASSERT_EQ(channel.m_nBkDataSample, 3);
    ASSERT_NE(channel.m_pBkData, nullptr);
    EXPECT_EQ(channel.m_pBkData[0], 1.5);
    EXPECT_EQ(channel.m_pBkData[2], 3.5);
    ASSERT_EQ(channel.m_nTotalSample, 2);
    EXPECT_EQ(channel.m_nCurrentSample, 1);
    ASSERT_NE(channel.m_pDataWave, nullptr);
    EXPECT_EQ(channel.m_pDataWave[0], -1.5);
    EXPECT_EQ(channel.m_pDataWave[1], -2.5);
}

class ChannelRecord : public ::testing::Test
{
protected:
    ScriptedHost host;
    CMDChannelzk channel;
};

class ChannelRecordOfVersion : public ChannelRecord, public ::testing::WithParamInterface<std::int32_t>
{
};

INSTANTIATE_TEST_SUITE_P(AllWithFields, ChannelRecordOfVersion, ::testing::ValuesIn(versionsWithFields));

TEST_P(ChannelRecordOfVersion, BringsTheFieldsThatItHoldsAndLeavesTheRest)
{
    LoadingArchive archive(record(GetParam()));
    ASSERT_EQ(channel.serializezk(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    expectIdentity(channel);
    expectRange(channel, GetParam() > 20090726);
    expectLabels(channel, GetParam() > 20140513);
    expectGeometryAndBalance(channel);
    expectSamples(channel);
    host.expectNoMessages();
}

TEST_P(ChannelRecordOfVersion, IsWrittenBackAsTheNewest)
{
    ASSERT_EQ(load(channel, record(GetParam())), 1);
    fillRangeAndLabels(channel);
    EXPECT_TRUE(sameBytes(stored(channel), record(newest)));
}

TEST_P(ChannelRecordOfVersion, ATagInTheNarrowFormIsTheSame)
{
    const ByteBuilder wide = record(GetParam());
    const std::size_t wideTag = 4 + 2 * 12;
    ByteBuilder narrow;
    narrow.narrow("MEGCHANNELZK").raw(std::span(wide.bytes()).subspan(wideTag));
    EXPECT_EQ(load(channel, narrow), 1);
    expectSamples(channel);
}

TEST_P(ChannelRecordOfVersion, ARecordReadOverAnotherLeavesNothingOfIt)
{
    fill(channel);
    channel.m_pSpctmChnlA = std::make_unique<CSpctmChnlzk>();
    channel.m_pWaveResultX = std::make_unique<CChnlWaveAnalyzedResultzk>();
    channel.m_pShowShrink = std::make_unique<SHOW_SHRINK_DATAF>();
    Parts parts;
    parts.geometryType = geometryType(-1, 0);
    parts.geometry = none(1);
    parts.balance = noBalance();
    parts.samples = ByteBuilder().i64(0).i32(0).i64(0).i64(0).i32(0);
    ASSERT_EQ(load(channel, record(GetParam(), parts)), 1);
    EXPECT_EQ(channel.m_pGeomHw, nullptr);
    EXPECT_EQ(channel.m_pMegBalInf, nullptr);
    EXPECT_EQ(channel.m_pBkData, nullptr);
    EXPECT_EQ(channel.m_pDataWave, nullptr);
    EXPECT_EQ(channel.m_nCurrentSample, 0);
    EXPECT_EQ(channel.m_pSpctmChnlA, nullptr);
    // Only versions with such a section clear what it owns.
    EXPECT_EQ(channel.m_pWaveResultX == nullptr, GetParam() >= 20190609);
    EXPECT_EQ(channel.m_pShowShrink == nullptr, GetParam() >= 20190723);
}

TEST_F(ChannelRecord, TheNewestIsWrittenFieldByField)
{
    fill(channel);
    EXPECT_TRUE(sameBytes(stored(channel), record(newest)));
    EXPECT_TRUE(sameBytes(stored(channel), record(newest)));
    host.expectNoMessages();
}

TEST_F(ChannelRecord, ANewChannelIsWrittenWithItsDefaults)
{
    ByteBuilder expected = header(newest);
    expected.i32(-1).f64(0.0).f64(0.0).f64(0.0).i32(1).i32(0).i32(1).i64(0).i32(0).i32(0).i32(0);
    expected.f64(0.0).f64(0.0).f64(0.0).wide("").wide("");
    expected.i32(-1).zeros(6 * 8).wide("").wide("").zeros(3 * 8);
    expected.wide("None").i32(-1).i32(0).i32(0).append(noBalance());
    expected.i64(0).i32(0).i64(0).i64(0).i32(0).append(none(7));
    EXPECT_TRUE(sameBytes(stored(channel), expected));
}

TEST_F(ChannelRecord, TheTwoOldestVersionsHoldNothingAndTheNextByteIsTheNext)
{
    for (const std::int32_t version : {20080101, 20080216}) {
        CMDChannelzk fresh;
        LoadingArchive archive(header(version).i32(0x12345678));
        EXPECT_EQ(fresh.serializezk(*archive), 1);
        EXPECT_EQ(archive->bytesLeft(), 4U);
        EXPECT_EQ(archive->exchangeInt(0), 0x12345678);
        CMDChannelzk untouched;
        EXPECT_TRUE(sameBytes(stored(fresh), stored(untouched)));
    }
    host.expectNoMessages();
}

TEST_F(ChannelRecord, AnotherTagIsRefused)
{
    for (const char* const tag : {"MEGTRIALZK", "megchannelzk", "MEGCHANNELZ", "MEGCHANNELZKX", ""}) {
        const ScriptedHost told;
        fill(channel);
        EXPECT_EQ(load(channel, ByteBuilder().wide(tag).i32(newest)), 0);
        EXPECT_THAT(told.messages(), ElementsAre(CString("The opened file is not channel file or corrupted!")));
        expectSamples(channel);
    }
}

TEST_F(ChannelRecord, UnknownVersionsAreRefused)
{
    for (const std::int32_t version : {20080316, 20080102, 20090727, 20190610, 20200802, 20200800, 0, -1, INT32_MAX}) {
        const ScriptedHost told;
        fill(channel);
        ByteBuilder bytes = header(version);
        EXPECT_EQ(load(channel, bytes.append(identity())), 0);
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong channel file format!!?"))) << version;
        expectSamples(channel);
    }
}

TEST_F(ChannelRecord, TheSecondCopyOfTwoFieldsWins)
{
    ByteBuilder bytes = header(newest);
    bytes.append(identity()).append(rangeAndLabels(115.5, 116.5)).append(geometryType(-1, 0)).append(none(1));
    bytes.append(noBalance()).append(samples()).append(none(7));
    ASSERT_EQ(load(channel, bytes), 1);
    EXPECT_EQ(channel.m_dChnlParamK, 115.5);
    EXPECT_EQ(channel.m_dChnlParamL, 116.5);
}

TEST_F(ChannelRecord, AMissingBackupKeepsItsCount)
{
    Parts parts;
    parts.samples = ByteBuilder().i64(77).i32(0).i64(2).i64(1).i32(1).doubles({-1.5, -2.5});
    ASSERT_EQ(load(channel, record(newest, parts)), 1);
    EXPECT_EQ(channel.m_nBkDataSample, 77);
    EXPECT_EQ(channel.m_pBkData, nullptr);
    EXPECT_EQ(channel.m_nTotalSample, 2);
    EXPECT_TRUE(sameBytes(stored(channel), record(newest, parts)));
    EXPECT_EQ(channel.reverseRawData(), 0);
    EXPECT_EQ(channel.backup2RawData(), 1);
    EXPECT_EQ(channel.m_nBkDataSample, 2);
}

// ---- geometry

struct GeometrySection
{
    std::int32_t version;
    std::vector<int> known;
    bool typeThreeHasGuard;
};

const GeometrySection geometrySections[] = {
    {20090726, {1, 2, 4}, false},      {20140513, {1, 2, 4}, false},   {20150707, {1, 2, 4}, false},
    {20190112, {1, 2, 3, 4}, true},    {20190609, {1, 2, 3, 4}, true}, {20190723, {1, 2, 3, 4}, true},
    {20200801, {1, 2, 3, 4, 5}, true},
};

std::vector<std::byte> emptyGeometry(int type)
{
    switch (type) {
    case 1:
        return bytesOf(CMEGSensorzk());
    case 2:
        return bytesOf(CEEGelectrodezk());
    case 3:
        return bytesOf(CStimTrigzk());
    case 4:
        return bytesOf(CMisceSnsrzk());
    default:
        return bytesOf(CSensorAcceleratorzk());
    }
}

bool isOfType(const CGeomzk* geometry, int type)
{
    switch (type) {
    case 1:
        return dynamic_cast<const CMEGSensorzk*>(geometry) != nullptr;
    case 2:
        return dynamic_cast<const CEEGelectrodezk*>(geometry) != nullptr;
    case 3:
        return dynamic_cast<const CStimTrigzk*>(geometry) != nullptr;
    case 4:
        return dynamic_cast<const CMisceSnsrzk*>(geometry) != nullptr;
    default:
        return dynamic_cast<const CSensorAcceleratorzk*>(geometry) != nullptr;
    }
}

TEST_F(ChannelRecord, EachGeometrySectionKnowsTheTypesOfItsTime)
{
    for (const GeometrySection& section : geometrySections) {
        for (const int type : {-1, 0, 1, 2, 3, 4, 5, 6, 1000}) {
            const bool known = std::ranges::find(section.known, type) != section.known.end();
            for (const int guard : {0, 1, 2}) {
                SCOPED_TRACE(::testing::Message() << section.version << " type " << type << " guard " << guard);
                Parts parts;
                parts.geometryType = geometryType(302, type);
                parts.geometry = ByteBuilder().i32(guard);
                if (known && guard != 0)
                    parts.geometry->raw(emptyGeometry(type));
                if (type == 3 && !section.typeThreeHasGuard)
                    parts.geometry.reset();
                CMDChannelzk read;
                LoadingArchive archive(record(section.version, parts));
                ASSERT_EQ(read.serializezk(*archive), 1);
                EXPECT_EQ(archive->bytesLeft(), 0U);
                EXPECT_EQ(read.m_nGeomType, type);
                EXPECT_EQ(read.m_pGeomHw != nullptr, known && guard != 0);
                if (read.m_pGeomHw != nullptr) {
                    EXPECT_TRUE(isOfType(read.m_pGeomHw.get(), type));
                }
                expectSamples(read);
            }
        }
    }
    host.expectNoMessages();
}

TEST_F(ChannelRecord, ChannelTypeZeroOfTheOldestFilesBecomesTen)
{
    for (const std::int32_t version : versionsWithFields) {
        Parts parts;
        parts.geometryType = geometryType(0, 0);
        parts.geometry = none(1);
        CMDChannelzk read;
        ASSERT_EQ(load(read, record(version, parts)), 1);
        EXPECT_EQ(read.m_nChannelType, version == 20090726 ? 10 : 0) << version;
    }
}

TEST_F(ChannelRecord, OtherChannelTypesOfTheOldestFilesStay)
{
    for (const int type : {-1, 1, 10, 302, INT32_MIN}) {
        Parts parts;
        parts.geometryType = geometryType(type, 0);
        parts.geometry = none(1);
        CMDChannelzk read;
        ASSERT_EQ(load(read, record(20090726, parts)), 1);
        EXPECT_EQ(read.m_nChannelType, type);
    }
}

TEST_F(ChannelRecord, AChannelOfGeometryTypeZeroHasAGuardOfZero)
{
    fill(channel);
    channel.m_nGeomType = 0; // with an object that no type tells of
    Parts parts;
    parts.geometryType = geometryType(101, 0);
    parts.geometry = none(1);
    EXPECT_TRUE(sameBytes(stored(channel), record(newest, parts)));
    CMDChannelzk read;
    ASSERT_EQ(load(read, record(newest, parts)), 1);
    EXPECT_EQ(read.m_pGeomHw, nullptr);
}

TEST_F(ChannelRecord, EveryGeometryTypeIsWrittenWithItsRecord)
{
    for (int type = 1; type <= 5; ++type) {
        Parts parts;
        parts.geometryType = geometryType(101, type);
        parts.geometry = ByteBuilder().i32(1).raw(emptyGeometry(type));
        CMDChannelzk read;
        ASSERT_EQ(load(read, record(newest, parts)), 1);
        EXPECT_TRUE(sameBytes(stored(read), record(newest, parts))) << type;
    }
}

TEST_F(ChannelRecord, AnObjectOfAnotherClassThanItsTypeIsNotWritten)
{
    for (int type = 2; type <= 5; ++type) {
        CMDChannelzk other;
        fill(other); // with a MEG sensor
        other.m_nGeomType = type;
        Parts parts;
        parts.geometryType = geometryType(101, type);
        parts.geometry = none(1);
        EXPECT_TRUE(sameBytes(stored(other), record(newest, parts))) << type;
    }
}

TEST_F(ChannelRecord, WhatAGeometryRecordAnswersIsNotLookedAt)
{
    Parts parts;
    parts.geometry = ByteBuilder().i32(1).wide("ANOTHERZK"); // its own reader refuses that
    ASSERT_EQ(load(channel, record(newest, parts)), 1);
    EXPECT_NE(channel.getMEGSensorzk(), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre(CString("MEGSENSORZK: The record is of another kind or corrupted!")));
    expectSamples(channel);
}

// ---- spectra, wave results, buffer for drawing

TEST_F(ChannelRecord, SpectraStandInTheirOrderEachBehindItsGuard)
{
    CSpctmChnlzk spectrum;
    const std::vector<std::byte> bytes =
        storedBytes([&](CArchive& ar) { EXPECT_EQ(spectrum.serializeSpctmCzk(ar), 1); });
    for (int present = 0; present < 8; ++present) {
        Parts parts;
        parts.spectra = ByteBuilder();
        for (int slot = 0; slot < 3; ++slot) {
            parts.spectra.i32(present >> slot & 1);
            if ((present >> slot & 1) != 0)
                parts.spectra.raw(bytes);
        }
        CMDChannelzk read;
        ASSERT_EQ(load(read, record(newest, parts)), 1);
        EXPECT_EQ(read.m_pSpctmChnlA != nullptr, (present & 1) != 0);
        EXPECT_EQ(read.m_pSpctmChnlC != nullptr, (present & 2) != 0);
        EXPECT_EQ(read.m_pSpctmChnlR != nullptr, (present & 4) != 0);
        EXPECT_TRUE(sameBytes(stored(read), record(newest, parts)));
    }
}

ByteBuilder waveResults(int a, int c, int x)
{
    ByteBuilder bytes;
    for (const int kind : {a, c, x}) {
        bytes.i32(kind != 0 ? 1 : 0);
        if (kind != 0)
            bytes.raw(bytesOfWaveResult(kind));
    }
    return bytes;
}

int kindOf(const std::unique_ptr<CChnlWaveAnalyzedResultzk>& result)
{
    return result != nullptr ? result->m_aWad.GetAt(0)->m_nKind : 0;
}

TEST_F(ChannelRecord, WaveResultsAreWrittenFromTheirThreeSlots)
{
    fill(channel);
    channel.m_pWaveResultA = std::make_unique<CChnlWaveAnalyzedResultzk>(waveResult(1));
    channel.m_pWaveResultC = std::make_unique<CChnlWaveAnalyzedResultzk>(waveResult(2));
    channel.m_pWaveResultX = std::make_unique<CChnlWaveAnalyzedResultzk>(waveResult(3));
    Parts parts;
    parts.waveResults = waveResults(1, 2, 3);
    EXPECT_TRUE(sameBytes(stored(channel), record(newest, parts)));
}

TEST_F(ChannelRecord, TheThirdWaveResultIsReadIntoTheSecondSlot)
{
    for (const std::int32_t version : {20190609, 20190723, 20200801}) {
        for (int present = 0; present < 8; ++present) {
            SCOPED_TRACE(::testing::Message() << version << " slots " << present);
            const int a = (present & 1) != 0 ? 1 : 0;
            const int c = (present & 2) != 0 ? 2 : 0;
            const int x = (present & 4) != 0 ? 3 : 0;
            Parts parts;
            parts.waveResults = waveResults(a, c, x);
            CMDChannelzk read;
            LoadingArchive archive(record(version, parts));
            ASSERT_EQ(read.serializezk(*archive), 1);
            EXPECT_EQ(archive->bytesLeft(), 0U);
            EXPECT_EQ(kindOf(read.m_pWaveResultA), a);
            EXPECT_EQ(kindOf(read.m_pWaveResultC), x != 0 ? x : c);
            EXPECT_EQ(read.m_pWaveResultX, nullptr);
        }
    }
}

TEST_F(ChannelRecord, TheBufferForDrawingComesBackWithoutItsSource)
{
    Parts parts;
    parts.shrink = ByteBuilder().i32(1).i64(100).f64(0.2).i32(0).f64(0.2).i64(5).i64(2);
    parts.shrink.i32(1).f32(1.5F).f32(2.5F).i32(1).f32(-1.5F).f32(-2.5F);
    for (const std::int32_t version : {20190723, 20200801}) {
        ASSERT_EQ(load(channel, record(version, parts)), 1);
        ASSERT_NE(channel.m_pShowShrink, nullptr);
        EXPECT_EQ(channel.m_pShowShrink->m_pSrcData, nullptr);
        EXPECT_EQ(channel.m_pShowShrink->m_nBinCount, 2);
        ASSERT_NE(channel.m_pShowShrink->m_pMin, nullptr);
        EXPECT_EQ(channel.m_pShowShrink->m_pMin[1], -2.5F);
        EXPECT_TRUE(sameBytes(stored(channel), record(newest, parts)));
    }
}

// ---- the oldest entry

class OldestChannelRecord : public ChannelRecord
{
protected:
    int loadOldest(const ByteBuilder& bytes, bool readTag)
    {
        LoadingArchive archive(bytes);
        const int result = channel.serializezk_obsolete20071230(*archive, readTag);
        bytesLeft = archive->bytesLeft();
        return result;
    }

    std::uint64_t bytesLeft = 0;
};

TEST_F(OldestChannelRecord, TagAndVersionAreWrittenAndNothingElse)
{
    fill(channel);
    for (const bool readTag : {false, true}) {
        const auto bytes =
            storedBytes([&](CArchive& ar) { EXPECT_EQ(channel.serializezk_obsolete20071230(ar, readTag), 1); });
        EXPECT_TRUE(sameBytes(bytes, ByteBuilder().wide("MEGCHANNELZK").i32(20080101)));
    }
}

TEST_F(OldestChannelRecord, FourVersionsAreKnownAndHoldNothing)
{
    for (const std::int32_t version : {20021120, 20030219, 20030309, 20030821}) {
        EXPECT_EQ(loadOldest(ByteBuilder().narrow("MEGCHANNELZK").i32(version).i32(1), true), 1);
        EXPECT_EQ(bytesLeft, 4U);
        EXPECT_EQ(loadOldest(ByteBuilder().i32(version).i32(1), false), 1);
        EXPECT_EQ(bytesLeft, 4U);
    }
    host.expectNoMessages();
}

TEST_F(OldestChannelRecord, AnUnknownVersionIsToldAndGivesOne)
{
    for (const std::int32_t version : {20080101, 20030109, 0}) {
        const ScriptedHost told;
        EXPECT_EQ(loadOldest(ByteBuilder().i32(version), false), 1);
        EXPECT_THAT(told.messages(), ElementsAre(CString("Wrong file format!!?")));
    }
}

TEST_F(OldestChannelRecord, AnotherTagIsRefusedWhereOneIsRead)
{
    EXPECT_EQ(loadOldest(ByteBuilder().narrow("MEGTRIALZK").i32(20021120), true), 0);
    EXPECT_EQ(bytesLeft, 4U);
    EXPECT_THAT(host.messages(), ElementsAre(CString("The opened file is not MEG file or corrupted!")));
}

TEST_F(OldestChannelRecord, ExportOfTheChannelDoesNothing)
{
    const auto bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(channel.export_importChalData(ar), 1); });
    EXPECT_TRUE(bytes.empty());
}

} // namespace

} // namespace megset::CMDChannel9File_test
