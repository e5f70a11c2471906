#include "megset/records/results/CSrcCohFace.h"

#include "tests/kit/recordContract.h"
#include "tests/records/results/filledAxes.h"

#include <cmath>

namespace megset::CSrcCohFace_test {
namespace {

struct SrcCohCase
{
    using Record = CSrcCohFacezk;
    static constexpr std::string_view tag = "SRCCOHFACEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CSrcCohFacezk";
    static Record filled()
    {
        CSrcCohFacezk face;
        face.setSize(1, 2, 2);
        face.m_aSource = {{"left", {1, 2, 3}, {0, 0, 1}}, {"right", {-1, 2, 3}, {0, 1, 0}}};
        face.m_nDataBegin = 11;
        face.m_nEdgePt = 12;
        face.m_nTimeStep = 13;
        face.m_dFreqBegin = 4.5;
        face.m_dFreqLinearStep = 0.5;
        face.m_nSelectTimeBegin = 1;
        face.m_nSelectTimeEnd = 14;
        face.m_nSelectFreqBegin = 2;
        face.m_nSelectFreqEnd = 15;
        face.m_nCurrentPair = 1;
        face.m_aPair = {{0, 1}, {1, 7}};
        face.m_aValue = {0.5, 0.25, 0.75, 1};
        return face;
    }
};

using SrcCohRecords = ::testing::Types<SrcCohCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(SrcCoh, RecordContract, SrcCohRecords);

TEST(SrcCohFace, IsWrittenFieldByField)
{
    CSrcCohFacezk face = SrcCohCase::filled();
    fillAxes(face);
    face.m_nCurrentPair = 9;
    ByteBuilder expected;
    expected.wide("SRCCOHFACEZK").i32(20261121).i32(2);
    expected.wide("left").doubles({1, 2, 3, 0, 0, 1}).wide("right").doubles({-1, 2, 3, 0, 1, 0});
    expected.append(axesBytes(1, 2)).i64(9);
    expected.i32(2).i32(0).i32(1).i32(1).i32(7).i64(4).doubles({0.5, 0.25, 0.75, 1});
    expectGolden(face, expected);
}

TEST(SrcCohFace, PairsNameTheirSources)
{
    const CSrcCohFacezk face = SrcCohCase::filled();
    EXPECT_EQ(face.getPairSource(0, false), &face.m_aSource[0]);
    EXPECT_EQ(face.getPairSource(0, true), &face.m_aSource[1]);
    EXPECT_EQ(face.getPairSource(-1, false), &face.m_aSource[1]);
    EXPECT_EQ(face.getPairSource(1, true), nullptr);
    EXPECT_EQ(face.getPairSource(2, false), nullptr);
    EXPECT_EQ(face.getPairSource(-2, false), nullptr);
}

TEST(SrcCohFace, GivesTheValueOfAPair)
{
    const CSrcCohFacezk face = SrcCohCase::filled();
    EXPECT_EQ(face.getValue(0, 1, 1), 1);
    EXPECT_TRUE(std::isnan(face.getValue(-1, 0, 0))); // the selection begins behind the only time point
}

TEST(SrcCohFace, ValuesThatDoNotFitThePairsAreRefused)
{
    CSrcCohFacezk face = SrcCohCase::filled();
    face.m_aPair.pop_back();
    CSrcCohFacezk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { face.serialize(ar); })), 0);
}

} // namespace
} // namespace megset::CSrcCohFace_test
