#include "megset/spectral/CSpctmChnl09File.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/spectral/spectra.h"

namespace megset::CSpctmChnl09File_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int32_t newest = 20190609;
constexpr std::int64_t T = 2;
constexpr std::int64_t F = 3;

const ByteBuilder doublesR = ByteBuilder().doubles({1, 2, 3, 4, 5, 6});
const ByteBuilder doublesI = ByteBuilder().doubles({7, 8, 9, 10, 11, 12});

ByteBuilder beginning(std::int32_t version)
{
    return ByteBuilder().wide("SPCTMCHNLZK").i32(version);
}

// Tag, version, range and shape of the data half.
ByteBuilder head(std::int32_t version, std::int64_t nTimePt = T, std::int64_t nFreqPt = F)
{
    return beginning(version).f64(6.0).f64(-1.0).f64(2.5).i64(nTimePt).i64(nFreqPt);
}

ByteBuilder block(const ByteBuilder& doubles)
{
    return ByteBuilder().i32(1).append(doubles);
}

// R and I, no M nor A; the backup has A alone, of another shape.
ByteBuilder filledBytes()
{
    return head(newest)
        .append(block(doublesR))
        .append(block(doublesI))
        .i32(0)
        .i32(0)
        .i64(1)
        .i64(2)
        .i32(0)
        .i32(0)
        .i32(0)
        .i32(1)
        .doubles({-1, -2});
}

void fill(CSpctmChnlzk& spectrum)
{
    spectrum.m_dSpctmMax = 6.0;
    spectrum.m_dSpctmMin = -1.0;
    spectrum.m_dSpctmMean = 2.5;
    spectrum.m_nTimePt = T;
    spectrum.m_nFreqPt = F;
    spectrum.m_pSpctmR = planeOf({1, 2, 3, 4, 5, 6});
    spectrum.m_pSpctmI = planeOf({7, 8, 9, 10, 11, 12});
    spectrum.m_nBkTimePt = 1;
    spectrum.m_nBkFreqPt = 2;
    spectrum.m_pBkSpctmA = planeOf({-1, -2});
}

// Every plane of both sets.
void fillAllPlanes(CSpctmChnlzk& spectrum)
{
    spectrum.m_nTimePt = spectrum.m_nBkTimePt = 1;
    spectrum.m_nFreqPt = spectrum.m_nBkFreqPt = 2;
    double value = 0.0;
    for (SampleArray* plane :
         {&spectrum.m_pSpctmR, &spectrum.m_pSpctmI, &spectrum.m_pSpctmM, &spectrum.m_pSpctmA, &spectrum.m_pBkSpctmR,
          &spectrum.m_pBkSpctmI, &spectrum.m_pBkSpctmM, &spectrum.m_pBkSpctmA}) {
        *plane = planeOf({value + 1, value + 2});
        value += 2;
    }
}

void expectShapeWithoutPlanes(const CSpctmChnlzk& spectrum)
{
    for (int type = 0; type <= 4; ++type) {
        std::int64_t nTimePt = 0;
        std::int64_t nFreqPt = 0;
        EXPECT_EQ(spectrum.getSpctmDataPtr(type, &nTimePt, &nFreqPt), nullptr);
        EXPECT_EQ(nTimePt, T);
        EXPECT_EQ(nFreqPt, F);
    }
    EXPECT_EQ(spectrum.m_nBkTimePt, T);
    EXPECT_EQ(spectrum.m_nBkFreqPt, F);
    for (const SampleArray* plane :
         {&spectrum.m_pBkSpctmR, &spectrum.m_pBkSpctmI, &spectrum.m_pBkSpctmM, &spectrum.m_pBkSpctmA})
        EXPECT_EQ(*plane, nullptr);
    EXPECT_EQ(spectrum.m_dSpctmMax, 6.0);
    EXPECT_EQ(spectrum.m_dSpctmMin, -1.0);
    EXPECT_EQ(spectrum.m_dSpctmMean, 2.5);
}

// A record of three planes a half, each written by `plane(doubles)`; the last M is absent.
template <class Plane>
ByteBuilder oldBytes(std::int32_t version, Plane plane)
{
    return head(version)
        .append(plane(doublesR))
        .append(plane(doublesI))
        .append(plane(doublesR))
        .i64(T)
        .i64(F)
        .append(plane(doublesI))
        .append(plane(doublesR))
        .i32(0);
}

// A guard, then a guard before each row; the middle plane of three rows would need more of them.
ByteBuilder guardedRows(const ByteBuilder& doubles)
{
    const auto row = std::span(doubles.bytes()).first(F * 8);
    return ByteBuilder().i32(1).i32(1).raw(row).i32(0);
}

TEST(ChannelSpectrumFile, EmptySpectrumIsZerosAndAbsentPlanes)
{
    CSpctmChnlzk spectrum;
    EXPECT_TRUE(sameBytes(spectrumBytes(spectrum), beginning(newest).zeros(5 * 8 + 4 * 4 + 2 * 8 + 4 * 4)));
    CSpctmChnlzk again;
    fill(again);
    expectLoaded(again, beginning(newest).zeros(88));
    EXPECT_EQ(again.m_pSpctmR, nullptr);
    EXPECT_EQ(again.m_pBkSpctmA, nullptr);
    EXPECT_EQ(again.m_dSpctmMax, 0.0);
}

TEST(ChannelSpectrumFile, BytesAreBothHalves)
{
    CSpctmChnlzk spectrum;
    fill(spectrum);
    EXPECT_TRUE(sameBytes(spectrumBytes(spectrum), filledBytes()));
}

TEST(ChannelSpectrumFile, AllPlanesComeBackInTheirPlaces)
{
    CSpctmChnlzk spectrum;
    fillAllPlanes(spectrum);
    CSpctmChnlzk again;
    ASSERT_EQ(loadSpectrum(again, spectrumBytes(spectrum)), 1);
    EXPECT_THAT(valuesOf(again.m_pSpctmR, 2), ElementsAre(1, 2));
    EXPECT_THAT(valuesOf(again.m_pSpctmI, 2), ElementsAre(3, 4));
    EXPECT_THAT(valuesOf(again.m_pSpctmM, 2), ElementsAre(5, 6));
    EXPECT_THAT(valuesOf(again.m_pSpctmA, 2), ElementsAre(7, 8));
    EXPECT_THAT(valuesOf(again.m_pBkSpctmR, 2), ElementsAre(9, 10));
    EXPECT_THAT(valuesOf(again.m_pBkSpctmI, 2), ElementsAre(11, 12));
    EXPECT_THAT(valuesOf(again.m_pBkSpctmM, 2), ElementsAre(13, 14));
    EXPECT_THAT(valuesOf(again.m_pBkSpctmA, 2), ElementsAre(15, 16));
}

TEST(ChannelSpectrumFile, LoadingReplacesWhatWasHeld)
{
    CSpctmChnlzk spectrum;
    fillAllPlanes(spectrum);
    expectLoaded(spectrum, filledBytes());
    EXPECT_TRUE(sameBytes(spectrumBytes(spectrum), filledBytes()));
}

TEST(ChannelSpectrumFile, PlanesWithoutShapeAreWrittenAsAbsent)
{
    CSpctmChnlzk spectrum;
    fillAllPlanes(spectrum);
    spectrum.m_nFreqPt = 0;
    spectrum.m_nBkTimePt = 0;
    EXPECT_TRUE(sameBytes(spectrumBytes(spectrum),
                          beginning(newest).zeros(3 * 8).i64(1).i64(0).zeros(4 * 4).i64(0).i64(2).zeros(4 * 4)));
}

TEST(ChannelSpectrumFile, BackupPlanesWithoutFrequenciesAreWrittenAsEmptyBlocks)
{
    CSpctmChnlzk spectrum;
    fillAllPlanes(spectrum);
    spectrum.m_nTimePt = 0;
    spectrum.m_nBkFreqPt = 0;
    EXPECT_TRUE(
        sameBytes(spectrumBytes(spectrum),
                  beginning(newest).zeros(3 * 8).i64(0).i64(2).zeros(4 * 4).i64(1).i64(0).i32(1).i32(1).i32(1).i32(1)));
}

TEST(ChannelSpectrumFile, APlaneOfNoTimesReadsNoBytes)
{
    CSpctmChnlzk spectrum;
    expectLoaded(spectrum, head(newest, 0, F).i32(1).i32(0).i32(0).i32(0).zeros(16).zeros(16));
    EXPECT_EQ(spectrum.m_nTimePt, 0);
    EXPECT_EQ(spectrum.m_nFreqPt, F);
}

TEST(ChannelSpectrumFile, AnyGuardButZeroMeansAPlane)
{
    CSpctmChnlzk spectrum;
    expectLoaded(spectrum, head(newest).i32(-7).append(doublesR).zeros(12).zeros(16).zeros(16));
    EXPECT_THAT(valuesOf(spectrum.m_pSpctmR, 6), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(ChannelSpectrumFile, TagAndVersionAreChecked)
{
    expectTagAndVersionChecked<CSpctmChnlzk>("SPCTMCHNLZK", filledBytes().bytes(), newest,
                                             "This is error in opening channel spectral data!",
                                             "Channel spectral fileformat error !!!?");
}

TEST(ChannelSpectrumFile, AnotherTagLeavesTheSpectrumAsItWas)
{
    const ScriptedHost host;
    CSpctmChnlzk spectrum;
    fill(spectrum);
    EXPECT_EQ(loadSpectrum(spectrum, ByteBuilder().wide("SPCTMTRIALZK").i32(newest)), 0);
    EXPECT_TRUE(sameBytes(spectrumBytes(spectrum), filledBytes()));
}

TEST(ChannelSpectrumFile, ThreePlanesAHalfBecomeFourWhenSavedAgain)
{
    const ByteBuilder old = oldBytes(20131219, block);
    CSpctmChnlzk spectrum;
    expectLoaded(spectrum, old);
    EXPECT_THAT(valuesOf(spectrum.m_pSpctmI, 6), ElementsAre(7, 8, 9, 10, 11, 12));
    EXPECT_THAT(valuesOf(spectrum.m_pBkSpctmI, 6), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(spectrum.m_pSpctmA, nullptr);
    EXPECT_TRUE(sameBytes(spectrumBytes(spectrum), head(newest)
                                                       .append(block(doublesR))
                                                       .append(block(doublesI))
                                                       .append(block(doublesR))
                                                       .i32(0)
                                                       .i64(T)
                                                       .i64(F)
                                                       .append(block(doublesI))
                                                       .append(block(doublesR))
                                                       .i32(0)
                                                       .i32(0)));
}

TEST(ChannelSpectrumFile, PlanesOfTheThreeOldestVersionsAreReadAndDropped)
{
    for (const ByteBuilder& old :
         {oldBytes(20131218, block), oldBytes(20120725, block), oldBytes(20090726, guardedRows)}) {
        CSpctmChnlzk spectrum;
        fillAllPlanes(spectrum);
        expectLoaded(spectrum, old);
        expectShapeWithoutPlanes(spectrum);
    }
}

TEST(ChannelSpectrumFile, OldRecordsWithoutAShapeHaveNoRows)
{
    for (const std::int32_t version : {20131218, 20120725, 20090726}) {
        CSpctmChnlzk spectrum;
        expectLoaded(spectrum, head(version, 0, INT64_MAX).i32(1).i32(1).i32(1).i64(0).i64(-3).i32(1).i32(1).i32(1));
    }
    for (const std::int32_t version : {20131218, 20120725}) {
        CSpctmChnlzk spectrum;
        expectLoaded(spectrum, head(version, INT64_MAX, 0).i32(1).i32(1).i32(1).i64(9).i64(0).i32(1).i32(1).i32(1));
    }
}

struct Shape
{
    std::int64_t nTimePt;
    std::int64_t nFreqPt;
};

constexpr Shape impossible[] = {{-1, 3},
                                {-1, -1},
                                {2, -3},
                                {INT32_MAX, 1},
                                {1, INT32_MAX},
                                {INT64_MAX, 1},
                                {INT64_MAX, INT64_MAX},
                                {std::int64_t{1} << 32, std::int64_t{1} << 32},
                                {std::int64_t{1} << 61, 1}};

TEST(ChannelSpectrumFile, ImpossibleShapesAreRefusedBeforeMemoryIsTaken)
{
    for (const Shape shape : impossible) {
        for (const std::int32_t version : {20120725, 20131218, 20131219, newest}) {
            const FailingAllocator counting(0);
            const auto withShape = [&] { return head(version, shape.nTimePt, shape.nFreqPt); };
            expectRefusedSpectrum<CSpctmChnlzk>(withShape().i32(1).zeros(64), {"Has enough memory?"});
            expectRefusedSpectrum<CSpctmChnlzk>(withShape().i32(0).i32(1).zeros(64), {"Not enough memory!"});
            expectRefusedSpectrum<CSpctmChnlzk>(withShape().i32(0).i32(0).i32(1).zeros(64), {"Not enough memory!"});
            const int planes = version == newest ? 4 : 3;
            for (int plane = 0; plane < planes; ++plane) {
                const auto upTo = static_cast<std::size_t>(4 * plane);
                const ByteBuilder bytes = head(version)
                                              .zeros(static_cast<std::size_t>(4 * planes))
                                              .i64(shape.nTimePt)
                                              .i64(shape.nFreqPt)
                                              .zeros(upTo)
                                              .i32(1)
                                              .zeros(64);
                expectRefusedSpectrum<CSpctmChnlzk>(bytes, {"Has enough memory?"});
            }
            EXPECT_EQ(counting.calls(), 0);
        }
        const ByteBuilder phase = head(newest, shape.nTimePt, shape.nFreqPt).zeros(12).i32(1).zeros(64);
        expectRefusedSpectrum<CSpctmChnlzk>(phase, {"Not enough memory!"});
    }
}

TEST(ChannelSpectrumFile, TheOldestVersionGoesOnBehindARowThatCanNotBeHeld)
{
    const auto tooLong = ByteBuilder().i32(1).i32(1);
    const ScriptedHost host;
    CSpctmChnlzk spectrum;
    const ByteBuilder bytes = head(20090726, 1, INT64_MAX)
                                  .append(tooLong)
                                  .append(tooLong)
                                  .append(tooLong)
                                  .i64(1)
                                  .i64(-1)
                                  .append(tooLong)
                                  .append(tooLong)
                                  .append(tooLong);
    EXPECT_EQ(loadSpectrum(spectrum, bytes), 1);
    EXPECT_THAT(host.messages(), ElementsAre("Has enough memory?", "Not enough memory!", "Not enough memory!",
                                             "Has enough memory?", "Has enough memory?", "Has enough memory?"));
    EXPECT_EQ(spectrum.m_nBkFreqPt, -1);
}

TEST(ChannelSpectrumFile, RowsWithoutEndStopAtTheEndOfTheFile)
{
    const ScriptedHost host;
    for (const std::int32_t version : {20090726, 20120725, 20131218, 20131219, newest}) {
        CSpctmChnlzk spectrum;
        const std::int64_t nTimePt = version == 20090726 ? INT64_MAX : 5000;
        EXPECT_EQ(tryLoadSpectrum(spectrum, head(version, nTimePt, 1).i32(1).zeros(64).bytes()), -1);
    }
    host.expectNoMessages();
}

TEST(ChannelSpectrumFile, EveryAllocationMayFail)
{
    CSpctmChnlzk source;
    fillAllPlanes(source);
    const std::vector<std::byte> bytes = spectrumBytes(source);
    std::vector<CString> told;
    const auto tried = forEachAllocationFailure([&] {
        const ScriptedHost host;
        CSpctmChnlzk spectrum;
        if (loadSpectrum(spectrum, bytes) == 0)
            for (const CString& message : host.messages())
                told.push_back(message);
        const FailingAllocator noFailure(0);
        expectStillWhole(spectrum);
    });
    EXPECT_EQ(tried, 8);
    EXPECT_THAT(told,
                ElementsAre("Has enough memory?", "Not enough memory!", "Not enough memory!", "Not enough memory!",
                            "Has enough memory?", "Has enough memory?", "Has enough memory?", "Has enough memory?"));
}

TEST(ChannelSpectrumFile, AllocationsOfOldVersionsMayFail)
{
    for (const ByteBuilder& old : {oldBytes(20131218, block), oldBytes(20120725, block)}) {
        std::vector<CString> told;
        forEachAllocationFailure([&] {
            const ScriptedHost host;
            CSpctmChnlzk spectrum;
            if (loadSpectrum(spectrum, old) == 0)
                told.push_back(host.messages().at(0));
        });
        EXPECT_THAT(told, ElementsAre("Has enough memory?", "Not enough memory!", "Not enough memory!",
                                      "Has enough memory?", "Has enough memory?"));
    }
}

TEST(ChannelSpectrumFile, WhatAFailedLoadBroughtStays)
{
    const ScriptedHost host;
    CSpctmChnlzk spectrum;
    const FailingAllocator failing(2);
    EXPECT_EQ(loadSpectrum(spectrum, filledBytes()), 0);
    EXPECT_THAT(valuesOf(spectrum.m_pSpctmR, 6), ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(spectrum.m_pSpctmI, nullptr);
    EXPECT_EQ(spectrum.m_dSpctmMax, 6.0);
}

TEST(ChannelSpectrumFile, WhatAShortBlockLacksIsZero)
{
    const ScriptedHost host;
    std::vector<std::byte> bytes = filledBytes().bytes();
    bytes.resize(bytes.size() - 8);
    CSpctmChnlzk spectrum;
    EXPECT_EQ(tryLoadSpectrum(spectrum, bytes), 1);
    EXPECT_THAT(valuesOf(spectrum.m_pBkSpctmA, 2), ElementsAre(-1, 0));
}

TEST(ChannelSpectrumFile, PrefixesDoNoHarm)
{
    expectPrefixesHarmless<CSpctmChnlzk>(filledBytes().bytes(), 16);
    expectPrefixesHarmless<CSpctmChnlzk>(oldBytes(20131219, block).bytes(), 0);
    expectPrefixesHarmless<CSpctmChnlzk>(oldBytes(20131218, block).bytes(), 0);
    expectPrefixesHarmless<CSpctmChnlzk>(oldBytes(20120725, block).bytes(), 0);
    expectPrefixesHarmless<CSpctmChnlzk>(oldBytes(20090726, guardedRows).bytes(), 0);
}

TEST(ChannelSpectrumFile, BitFlipsDoNoHarm)
{
    expectBitFlipsHarmless<CSpctmChnlzk>(filledBytes().bytes());
    expectBitFlipsHarmless<CSpctmChnlzk>(oldBytes(20131218, block).bytes());
    expectBitFlipsHarmless<CSpctmChnlzk>(oldBytes(20120725, block).bytes());
    expectBitFlipsHarmless<CSpctmChnlzk>(oldBytes(20090726, guardedRows).bytes());
}

TEST(ChannelSpectrumFile, PageShowsTheFieldsInTheirOrder)
{
    CSpctmChnlzk spectrum;
    fillAllPlanes(spectrum);
    expectPageFollowed(spectrum, "CSpctmChnlzk");
}

} // namespace
} // namespace megset::CSpctmChnl09File_test
