#include "megset/platform/archiveLists.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/memoryArchive.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::archiveLists_test {
namespace {

using ::testing::ElementsAre;

std::unique_ptr<double[]> wave(std::initializer_list<double> values)
{
    auto array = std::make_unique<double[]>(values.size());
    std::copy(values.begin(), values.end(), array.get());
    return array;
}

struct Point
{
    double m_dX = 0;
    std::int32_t m_nId = 0;
    int m_result = 1;

    int serialize(CArchive& ar)
    {
        ar.exchange(m_dX, m_nId);
        return m_result;
    }
};

int serializePoint(CArchive& ar, Point& point)
{
    return point.serialize(ar);
}

// ---- guards

TEST(ArchiveGuard, IsAnIntOfZeroOrOneAndReadsAnyOtherNumberAsPresent)
{
    EXPECT_TRUE(sameBytes(storedBytes([](CArchive& ar) {
                              EXPECT_TRUE(exchangeGuard(ar, true));
                              EXPECT_FALSE(exchangeGuard(ar, false));
                          }),
                          ByteBuilder().i32(1).i32(0)));
    LoadingArchive archive(ByteBuilder().i32(1).i32(0).i32(-5));
    EXPECT_TRUE(exchangeGuard(*archive, false));
    EXPECT_FALSE(exchangeGuard(*archive, true));
    EXPECT_TRUE(exchangeGuard(*archive, false));
}

// ---- guarded blocks

TEST(ArchiveGuardedBlock, HasItsBytesCountedIn32Bits)
{
    EXPECT_EQ(guardedBlockBytes(0, 8), 0U);
    EXPECT_EQ(guardedBlockBytes(3, 8), 24U);
    EXPECT_EQ(guardedBlockBytes((1LL << 29) - 1, 8), 0xFFFFFFF8U);
    EXPECT_EQ(guardedBlockBytes(1LL << 29, 8), 0U) << "2^32 bytes don't fit";
    EXPECT_EQ(guardedBlockBytes((1LL << 29) + 2, 8), 16U);
    EXPECT_EQ(guardedBlockBytes((1LL << 32) + 3, 8), 24U) << "only the count's low 32 bits count";
    EXPECT_EQ(guardedBlockBytes((1LL << 32) + 3, 1), 3U);
}

TEST(ArchiveGuardedBlock, IsAGuardAndTheElements)
{
    auto array = wave({1, 2, 3});
    const auto bytes =
        storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangeGuardedBlock(ar, array, 3), BlockResult::complete); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(1).doubles({1, 2, 3})));

    std::unique_ptr<double[]> back = wave({9});
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangeGuardedBlock(*archive, back, 3, "wave"), BlockResult::complete);
    EXPECT_THAT(std::vector<double>(back.get(), back.get() + 3), ElementsAre(1, 2, 3));
    EXPECT_EQ(archive->bytesLeft(), 0U);
}

TEST(ArchiveGuardedBlock, OfNoArrayIsAZeroAndReadsAsNull)
{
    std::unique_ptr<double[]> array;
    const auto bytes =
        storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangeGuardedBlock(ar, array, 3), BlockResult::absent); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(0)));
    array = wave({1});
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangeGuardedBlock(*archive, array, 3), BlockResult::absent);
    EXPECT_EQ(array, nullptr);
}

TEST(ArchiveGuardedBlock, OfNoElementsIsCompleteWithAnArray)
{
    auto array = wave({});
    const auto bytes =
        storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangeGuardedBlock(ar, array, 0), BlockResult::complete); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(1)));
    array.reset();
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangeGuardedBlock(*archive, array, 0), BlockResult::complete);
    EXPECT_NE(array, nullptr);
}

TEST(ArchiveGuardedBlock, ThatIsCutShortIsPartialWithZerosBehind)
{
    std::unique_ptr<double[]> array;
    LoadingArchive archive(ByteBuilder().i32(1).doubles({1, 2}).raw({1, 2, 3}));
    EXPECT_EQ(exchangeGuardedBlock(*archive, array, 4), BlockResult::partial);
    EXPECT_EQ(array[0], 1);
    EXPECT_EQ(array[1], 2);
    EXPECT_NE(array[2], 0) << "three of its bytes were there";
    EXPECT_EQ(array[3], 0);
}

TEST(ArchiveGuardedBlock, ThatIsNotThereAtAllIsEmptyAndZero)
{
    std::unique_ptr<double[]> array;
    LoadingArchive archive(ByteBuilder().i32(1));
    EXPECT_EQ(exchangeGuardedBlock(*archive, array, 2), BlockResult::empty);
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array[1], 0);
}

TEST(ArchiveGuardedBlock, ThatTheFileCantHoldTakesNoMemory)
{
    for (const std::int64_t count : {std::int64_t{1} << 20, std::int64_t{1} << 29, std::int64_t{1} << 61, INT64_MAX,
                                     std::int64_t{-1}, INT64_MIN}) {
        auto array = wave({1});
        LoadingArchive archive(ByteBuilder().i32(1).zeros(100));
        const FailingAllocator counting(0);
        EXPECT_EQ(exchangeGuardedBlock(*archive, array, count), BlockResult::noMemory) << count;
        EXPECT_EQ(array, nullptr);
        EXPECT_EQ(counting.calls(), 0);
        EXPECT_EQ(archive->position(), 4U) << "the block is not read";
    }
}

TEST(ArchiveGuardedBlock, WithoutMemoryForItsArrayLeavesNone)
{
    auto array = wave({1});
    LoadingArchive archive(ByteBuilder().i32(1).doubles({1, 2}));
    const FailingAllocator failAt(1);
    EXPECT_EQ(exchangeGuardedBlock(*archive, array, 2), BlockResult::noMemory);
    EXPECT_EQ(array, nullptr);
}

TEST(ArchiveGuardedBlock, ThatEndsInItsGuardRaisesEndOfFileWithTheArrayGone)
{
    auto array = wave({1});
    LoadingArchive archive(ByteBuilder().raw({1, 0}));
    EXPECT_THROW(exchangeGuardedBlock(*archive, array, 2), CArchiveException);
    EXPECT_EQ(array, nullptr);
}

TEST(ArchiveGuardedBlock, TakesSampleArrays)
{
    SampleArray array = tryNewSamples(3, true);
    array[1] = 5;
    const auto bytes = storedBytes(
        [&](CArchive& ar) { EXPECT_EQ(exchangeGuardedBlock(ar, array, 3, "wave"), BlockResult::complete); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(1).doubles({0, 5, 0})));

    SampleArray back;
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangeGuardedBlock(*archive, back, 3), BlockResult::complete);
    EXPECT_EQ(back[1], 5);
    LoadingArchive cut(ByteBuilder().i32(1).doubles({7}));
    EXPECT_EQ(exchangeGuardedBlock(*cut, back, 20'000), BlockResult::partial);
    EXPECT_EQ(back[0], 7);
    for (int i = 1; i < 20'000; ++i)
        ASSERT_EQ(back[static_cast<std::size_t>(i)], 0) << i;
}

TEST(ArchiveGuardedBlock, TakesArraysFromAnAllocatorOfTheCallers)
{
    std::unique_ptr<std::int16_t[]> array;
    std::int64_t asked = 0;
    LoadingArchive archive(ByteBuilder().i32(1).i16(3).i16(4));
    const auto allocate = [&](std::int64_t count) {
        asked = count;
        return std::make_unique<std::int16_t[]>(static_cast<std::size_t>(count));
    };
    EXPECT_EQ(exchangeGuardedBlock(*archive, array, 2, allocate), BlockResult::complete);
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(array[1], 4);
}

TEST(ArchiveGuardedBlock, TellsItsGuardAndBlockToATracer)
{
    TracingRecorder recorder;
    auto array = wave({1, 2});
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        exchangeGuardedBlock(ar, array, 2, "m_pDataWave");
    });
    EXPECT_THAT(recorder.lines(), ElementsAre("0 int present = 1", "4 block m_pDataWave 16"));
}

// ---- guarded records

TEST(ArchiveGuardedRecord, GoesBothWays)
{
    auto point = std::make_unique<Point>(Point{1.5, 7});
    const auto bytes = storedBytes([&](CArchive& ar) {
        EXPECT_EQ(exchangeGuarded(ar, point, [&](Point& p) { return serializePoint(ar, p); }), 1);
    });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(1).f64(1.5).i32(7)));

    std::unique_ptr<Point> back;
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangeGuarded(*archive, back, [&](Point& p) { return serializePoint(*archive, p); }), 1);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->m_dX, 1.5);
    EXPECT_EQ(back->m_nId, 7);
}

TEST(ArchiveGuardedRecord, OfNoObjectIsAZeroAndEndsTheOneThatWasThere)
{
    std::unique_ptr<Point> point;
    const auto never = [](Point&) {
        ADD_FAILURE() << "there is nothing to serialise";
        return 0;
    };
    const auto bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangeGuarded(ar, point, never), 1); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(0)));
    point = std::make_unique<Point>();
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangeGuarded(*archive, point, never), 1);
    EXPECT_EQ(point, nullptr);
}

TEST(ArchiveGuardedRecord, StartsFromANewObjectAndGivesWhatItsRoutineGives)
{
    auto point = std::make_unique<Point>(Point{9, 9});
    LoadingArchive archive(ByteBuilder().i32(1));
    EXPECT_EQ(exchangeGuarded(*archive, point,
                              [](Point& p) {
                                  EXPECT_EQ(p.m_nId, 0);
                                  return 0;
                              }),
              0);
    EXPECT_NE(point, nullptr) << "what was read so far stays";
}

TEST(ArchiveGuardedRecord, WithoutMemoryGivesZeroAndNoObject)
{
    auto point = std::make_unique<Point>();
    LoadingArchive archive(ByteBuilder().i32(1).f64(1).i32(2));
    const FailingAllocator failAt(1);
    EXPECT_EQ(exchangeGuarded(*archive, point, [&](Point& p) { return serializePoint(*archive, p); }), 0);
    EXPECT_EQ(point, nullptr);
}

// ---- counted lists

TEST(ArchiveList, OfNumbersIsACountAndTheNumbers)
{
    std::vector<double> list = {1, 2};
    const auto bytes = storedBytes([&](CArchive& ar) { exchangeList(ar, list); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(2).doubles({1, 2})));
    std::vector<double> back = {9, 9, 9};
    LoadingArchive archive(bytes);
    exchangeList(*archive, back);
    EXPECT_EQ(back, list);
}

TEST(ArchiveList, OfStringsKeepsEmptyOnes)
{
    std::vector<CString> list = {"a", "", "ß"};
    const auto bytes = storedBytes([&](CArchive& ar) { exchangeList(ar, list, "names"); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(3).wide("a").wide("").wide("ß")));
    std::vector<CString> back;
    LoadingArchive archive(bytes);
    exchangeList(*archive, back);
    EXPECT_EQ(back, list);
}

TEST(ArchiveList, OfRecordsGoesByTheirOwnRoutine)
{
    std::vector<Point> list = {{1, 2}, {3, 4}};
    const auto bytes =
        storedBytes([&](CArchive& ar) { exchangeList(ar, list, [&](Point& point) { serializePoint(ar, point); }); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(2).f64(1).i32(2).f64(3).i32(4)));
    std::vector<Point> back;
    LoadingArchive archive(bytes);
    exchangeList(*archive, back, [&](Point& point) { serializePoint(*archive, point); });
    ASSERT_EQ(back.size(), 2U);
    EXPECT_EQ(back[1].m_nId, 4);
}

TEST(ArchiveList, ACountBelowZeroReadsAsNone)
{
    std::vector<double> list = {1};
    LoadingArchive archive(ByteBuilder().i32(-1).f64(5));
    exchangeList(*archive, list);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(archive->position(), 4U);
}

TEST(ArchiveList, ACountThatTheFileCantHoldEndsAtTheEndOfFile)
{
    std::vector<double> list;
    LoadingArchive archive(ByteBuilder().i32(INT32_MAX).f64(5).f64(6));
    EXPECT_THROW(exchangeList(*archive, list), CArchiveException);
    EXPECT_THAT(list, ElementsAre(5, 6));
}

// ---- lists of owned objects

template <class Count = std::int32_t>
int exchangePoints(CArchive& ar, CTypedPtrArray<Point>& list)
{
    return exchangePointers<Count>(ar, list, [&](Point& point) { return serializePoint(ar, point); });
}

CTypedPtrArray<Point> pointsWithAHole()
{
    CTypedPtrArray<Point> list;
    list.addCopy(Point{1, 10});
    list.Add(std::unique_ptr<Point>());
    list.addCopy(Point{2, 20});
    return list;
}

TEST(ArchivePointers, WriteNullEntriesAndDropThemWhenRead)
{
    auto list = pointsWithAHole();
    const auto bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangePoints(ar, list), 1); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i32(3).i32(1).f64(1).i32(10).i32(0).i32(1).f64(2).i32(20)));

    CTypedPtrArray<Point> back;
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangePoints(*archive, back), 1);
    ASSERT_EQ(back.GetSize(), 2);
    EXPECT_EQ(back[0]->m_nId, 10);
    EXPECT_EQ(back[1]->m_nId, 20);
}

TEST(ArchivePointers, CountInTheWidthThatIsAskedFor)
{
    auto list = pointsWithAHole();
    const auto bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangePoints<std::int64_t>(ar, list), 1); });
    EXPECT_TRUE(sameBytes(std::span(bytes).first(12), ByteBuilder().i64(3).i32(1)));
    CTypedPtrArray<Point> back;
    LoadingArchive archive(bytes);
    EXPECT_EQ(exchangePoints<std::int64_t>(*archive, back), 1);
    EXPECT_EQ(back.GetSize(), 2);
}

TEST(ArchivePointers, AppendWhenLoading)
{
    auto list = pointsWithAHole();
    LoadingArchive archive(ByteBuilder().i32(1).i32(1).f64(3).i32(30));
    EXPECT_EQ(exchangePoints(*archive, list), 1);
    ASSERT_EQ(list.GetSize(), 4);
    EXPECT_EQ(list[3]->m_nId, 30);
}

TEST(ArchivePointers, ARoutineThatGivesZeroEndsLoadingButNotStoring)
{
    CTypedPtrArray<Point> list;
    list.addCopy(Point{1, 10, 0});
    list.addCopy(Point{2, 20, 0});
    const auto bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangePoints(ar, list), 1); });
    EXPECT_EQ(bytes.size(), 4U + 2 * 16);

    CTypedPtrArray<Point> back;
    LoadingArchive archive(bytes);
    int calls = 0;
    EXPECT_EQ(exchangePointers<std::int32_t>(*archive, back,
                                             [&](Point& point) {
                                                 point.serialize(*archive);
                                                 return ++calls == 2 ? 0 : 1;
                                             }),
              0);
    EXPECT_EQ(back.GetSize(), 1) << "what was read before stays";
}

TEST(ArchivePointers, WithoutMemoryForAnObjectGiveZeroAndKeepTheOnesBefore)
{
    auto list = pointsWithAHole();
    const auto bytes = storedBytes([&](CArchive& ar) { exchangePoints(ar, list); });
    const auto failures = forEachAllocationFailure([&] {
        CTypedPtrArray<Point> back;
        LoadingArchive archive(bytes);
        if (exchangePoints(*archive, back) == 0)
            EXPECT_LT(back.GetSize(), 2);
        else
            EXPECT_EQ(back.GetSize(), 2);
    });
    EXPECT_EQ(failures, 2);
}

TEST(ArchivePointers, ACountThatTheFileCantHoldOrBelowZeroDoesNoHarm)
{
    CTypedPtrArray<Point> list;
    LoadingArchive much(ByteBuilder().i64(INT64_MAX).i32(1).f64(1).i32(10).i32(0));
    EXPECT_THROW(exchangePoints<std::int64_t>(*much, list), CArchiveException);
    EXPECT_EQ(list.GetSize(), 1);
    LoadingArchive negative(ByteBuilder().i32(-3).i32(1));
    EXPECT_EQ(exchangePoints(*negative, list), 1);
    EXPECT_EQ(list.GetSize(), 1);
}

} // namespace
} // namespace megset::archiveLists_test
