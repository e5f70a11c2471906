#include "megset/records/results/CSnsCohFace.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/recordContract.h"
#include "tests/records/results/filledAxes.h"

#include <cmath>

namespace megset::CSnsCohFace_test {
namespace {

CSnsCohDatazk filledData()
{
    CSnsCohDatazk data;
    data.setSize(2, 3, 2);
    data.m_strDataName = "theta";
    data.m_nDataBegin = 11;
    data.m_nEdgePt = 12;
    data.m_nTimeStep = 13;
    data.m_dFreqBegin = 4.5;
    data.m_dFreqLinearStep = 0.5;
    data.m_nSelectTimeBegin = 1;
    data.m_nSelectTimeEnd = 14;
    data.m_nSelectFreqBegin = 2;
    data.m_nSelectFreqEnd = 15;
    data.m_nCurrentPair = 1;
    data.m_aPair = {{3, 4}, {5, 6}};
    for (std::size_t i = 0; i < data.m_aValue.size(); ++i)
        data.m_aValue[i] = static_cast<double>(i) + 0.5;
    return data;
}

struct DataCase
{
    using Record = CSnsCohDatazk;
    static constexpr std::string_view tag = "SNSCOHDATAZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CSnsCohDatazk";
    static Record filled() { return filledData(); }
};

struct FaceCase
{
    using Record = CSnsCohFacezk;
    static constexpr std::string_view tag = "SNSCOHFACEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CSnsCohFacezk";
    static Record filled()
    {
        CSnsCohFacezk face;
        const CSnsCohDatazk data = filledData();
        face.addCoherenceData(&data);
        face.addCoherenceData(&data);
        face.m_nCurrentData = 1;
        return face;
    }
};

using SnsCohRecords = ::testing::Types<DataCase, FaceCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(SnsCoh, RecordContract, SnsCohRecords);

CSnsCohDatazk dataOfDistinctFields(std::int64_t currentPair)
{
    CSnsCohDatazk data = filledData();
    fillAxes(data);
    data.m_nCurrentPair = currentPair;
    return data;
}

ByteBuilder dataBytes(std::int64_t currentPair)
{
    ByteBuilder bytes;
    bytes.wide("SNSCOHDATAZK").i32(20261121).wide("theta").append(axesBytes(2, 3)).i64(currentPair);
    bytes.i32(2).i32(3).i32(4).i32(5).i32(6);
    return bytes.i64(12).doubles({0.5, 1.5, 2.5, 3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 9.5, 10.5, 11.5});
}

TEST(SnsCohData, IsWrittenFieldByField)
{
    expectGolden(dataOfDistinctFields(7), dataBytes(7));
}

TEST(SnsCohFace, IsWrittenEntryByEntry)
{
    CSnsCohFacezk face;
    for (const std::int64_t pair : {7, 8, 9}) {
        const CSnsCohDatazk data = dataOfDistinctFields(pair);
        face.addCoherenceData(&data);
    }
    face.m_nCurrentData = 1;
    ByteBuilder expected;
    expected.wide("SNSCOHFACEZK").i32(20261121).i32(1).i32(3);
    expected.i32(1).append(dataBytes(7)).i32(1).append(dataBytes(8)).i32(1).append(dataBytes(9));
    expectGolden(face, expected);
}

TEST(SnsCohData, ValuesStandByPairTimeAndFrequency)
{
    const CSnsCohDatazk data = filledData();
    EXPECT_EQ(data.getTotalPair(), 2);
    EXPECT_EQ(data.getValue(0, 0, 0), 0.5);
    EXPECT_EQ(data.getValue(0, 2, 0), 2.5);
    EXPECT_EQ(data.getValue(1, 0, 0), 3.5);
    EXPECT_EQ(data.getValue(1, 2, 1), 11.5);
}

TEST(SnsCohData, MinusOneStandsForTheSelectionAndTheCurrentPair)
{
    CSnsCohDatazk data = filledData();
    EXPECT_EQ(data.getValue(-1, -1, 0), data.getValue(1, 2, 0));
    EXPECT_EQ(data.getValue(-1, -1, -1), data.getValue(1, 2, 1));
    EXPECT_EQ(data.setValue(-1, -1, -1, 99), 1);
    EXPECT_EQ(data.getValue(1, 2, 1), 99);
}

TEST(SnsCohData, OutsideThereIsNoValue)
{
    CSnsCohDatazk data = filledData();
    EXPECT_TRUE(std::isnan(data.getValue(2, 0, 0)));
    EXPECT_TRUE(std::isnan(data.getValue(0, 3, 0)));
    EXPECT_TRUE(std::isnan(data.getValue(0, 0, 2)));
    EXPECT_TRUE(std::isnan(data.getValue(-2, 0, 0)));
    EXPECT_EQ(data.setValue(0, 0, 2, 1), 0);
    EXPECT_TRUE(std::isnan(CSnsCohDatazk().getValue(-1, -1, -1)));
    EXPECT_EQ(data, filledData());
}

TEST(SnsCohData, SizeThatCannotBeMakesAnEmptyTable)
{
    for (const std::int64_t pairs : {std::int64_t{-1}, INT64_MAX}) {
        CSnsCohDatazk data = filledData();
        EXPECT_EQ(data.setSize(2, 3, pairs), 0);
        EXPECT_EQ(data.getTotalPair(), 0);
        EXPECT_EQ(data.m_nTimePt, 0);
        EXPECT_TRUE(data.m_aValue.empty());
    }
    CSnsCohDatazk data;
    EXPECT_EQ(data.setSize(0, 3, 5), 0);
    EXPECT_EQ(data.getTotalPair(), 0);
}

TEST(SnsCohData, ValuesThatDoNotFitTheAxesAreRefused)
{
    CSnsCohDatazk data = filledData();
    data.m_nTimePt = 3;
    CSnsCohDatazk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { data.serializezk(ar); })), 0);
    EXPECT_TRUE(std::isnan(loaded.getValue(0, 0, 0)));
}

TEST(SnsCohFace, GivesDataByNumber)
{
    CSnsCohFacezk face = FaceCase::filled();
    EXPECT_EQ(face.getTotalCoherenceData(), 2);
    EXPECT_EQ(*face.getCoherenceData(0), filledData());
    EXPECT_EQ(face.getCoherenceData(-1), face.getCoherenceData(1));
    EXPECT_EQ(face.getCoherenceData(2), nullptr);
    EXPECT_EQ(face.getCoherenceData(-2), nullptr);
    EXPECT_EQ(CSnsCohFacezk().getCoherenceData(-1), nullptr);
}

TEST(SnsCohFace, AddsCopies)
{
    CSnsCohFacezk face;
    CSnsCohDatazk data = filledData();
    EXPECT_EQ(face.addCoherenceData(&data), 0);
    EXPECT_EQ(face.addCoherenceData(nullptr), -1);
    data.m_strDataName = "changed";
    EXPECT_EQ(*face.getCoherenceData(0), filledData());
}

TEST(SnsCohFace, GivesZeroWhenAnEntryCannotBeMade)
{
    const std::vector<std::byte> bytes = recordBytes(FaceCase::filled());
    const std::int64_t tried = forEachAllocationFailure([&] {
        CSnsCohFacezk face;
        const int result = loadRecord(face, bytes);
        EXPECT_EQ(result, face.getTotalCoherenceData() == 2 ? 1 : 0);
    });
    EXPECT_EQ(tried, 2);
}

TEST(SnsCohFace, DropsNullEntries)
{
    CSnsCohFacezk face = FaceCase::filled();
    face.m_aCohData.InsertAt(0, nullptr);
    CSnsCohFacezk loaded;
    ASSERT_EQ(loadRecord(loaded, recordBytes(face)), 1);
    EXPECT_EQ(loaded, FaceCase::filled());
}

} // namespace
} // namespace megset::CSnsCohFace_test
