#include "megset/records/recording/CCoefficientManager.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/layoutPage.h"
#include "tests/kit/memoryArchive.h"

#include <cstdint>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CCoefficientManager_test {
namespace {

using ::testing::ElementsAre;

constexpr const char* otherFile = "The opened file is not Dataset information file or corrupted!";
constexpr const char* wrongRecord = "Wrong coefficient file format!!?";

CCoefficientDatazk record(const CString& sensor, std::uint32_t type, int references = 2)
{
    CCoefficientDatazk data;
    data.m_strCoefSensorName = sensor;
    data.m_nCoefType = type;
    data.m_nCoefCount = references;
    for (int i = 0; i < references; ++i) {
        const auto at = static_cast<std::size_t>(i);
        data.m_aCoefRefName[at].Format("R%d", i);
        data.m_aCoefValue[at] = 0.5 + i;
    }
    return data;
}

CCoefficientManagerzk managerOf(const std::vector<CCoefficientDatazk>& records)
{
    CCoefficientManagerzk manager;
    manager.addCoefficientsData(static_cast<int>(records.size()), records.data());
    return manager;
}

CCoefficientManagerzk filledManager()
{
    CCoefficientManagerzk manager = managerOf({record("MLC11", 0x47314252), record("MRF23", 0x47334F49, 50)});
    manager.m_nCoefCurrent = 1;
    return manager;
}

ByteBuilder recordBytes(const CCoefficientDatazk& data)
{
    ByteBuilder bytes;
    bytes.wide("DATASETINFO").i32(20080104);
    bytes.wide(data.m_strCoefSensorName).u32(data.m_nCoefType).i32(data.m_nCoefCount);
    for (std::size_t i = 0; i < 50; ++i)
        bytes.wide(data.m_aCoefRefName[i]).f64(data.m_aCoefValue[i]);
    return bytes;
}

ByteBuilder managerBeginning(int count, int current, int listed)
{
    return ByteBuilder().wide("SENSORCOEFFICIENTZK").i32(20080104).i32(count).i32(current).i32(listed);
}

// Taken by reference, since a copy of a manager has no records.
template <class Record>
std::vector<std::byte> stored(Record&& record)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(record.serialize(ar), 1); });
}

template <class Record>
int loaded(Record& record, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return record.serialize(*archive);
}

TEST(CoefficientType, HasOneCodePerOrderAndKind)
{
    const auto codes = [](bool realIdeal, bool adaptive) {
        std::vector<CString> names;
        for (int order = 0; order < 4; ++order)
            names.push_back(CCoefficientData::coefficientsType2Name(
                CCoefficientData::getCoefficientType(order, realIdeal, adaptive)));
        return names;
    };
    EXPECT_THAT(codes(true, false), ElementsAre("NOGRAD", "G1BR", "G2BR", "G3BR"));
    EXPECT_THAT(codes(false, false), ElementsAre("NOGRAD", "G1OI", "G2OI", "G3OI"));
    EXPECT_THAT(codes(true, true), ElementsAre("G0AR", "G1AR", "G2AR", "G3AR"));
    EXPECT_THAT(codes(false, true), ElementsAre("NOGRAD", "G1AI", "G2AI", "G3AI"));
}

TEST(CoefficientType, IsPackedWithTheFirstCharacterInTheHighestByte)
{
    EXPECT_EQ(CCoefficientData::getCoefficientType(1, true, false), 0x47314252U);
    EXPECT_EQ(CCoefficientData::coefficientsType2Name(0x47314252U), "G1BR");
}

TEST(CoefficientType, IsZeroForOtherOrders)
{
    for (const int order : {-1, 4, 100})
        for (const bool realIdeal : {false, true})
            for (const bool adaptive : {false, true})
                EXPECT_EQ(CCoefficientData::getCoefficientType(order, realIdeal, adaptive), 0U);
}

TEST(CoefficientData, StartsEmpty)
{
    const CCoefficientDatazk data;
    EXPECT_EQ(data.getCoefficientDataSensorName(), "");
    EXPECT_EQ(data.m_nCoefType, 0U);
    EXPECT_EQ(data.m_nCoefCount, 0);
    for (const double value : data.m_aCoefValue)
        EXPECT_EQ(value, 0.0);
}

TEST(CoefficientData, AssignsAllFields)
{
    const CCoefficientDatazk source = record("MLC11", 7);
    CCoefficientDatazk target = record("X", 1, 50);
    target = source;
    EXPECT_EQ(target, source);
    EXPECT_EQ(target.getCoefficientDataSensorName(), "MLC11");
}

TEST(CoefficientData, WritesAllFiftyPairsWhateverTheCount)
{
    EXPECT_TRUE(sameBytes(stored(record("A", 1, 0)), recordBytes(record("A", 1, 0))));
    EXPECT_TRUE(sameBytes(stored(record("A", 1, 3)), recordBytes(record("A", 1, 3))));
}

TEST(CoefficientData, ComesBackEqual)
{
    CCoefficientDatazk data;
    EXPECT_EQ(loaded(data, recordBytes(record("MLC11", 0x47314252, 50)).bytes()), 1);
    EXPECT_EQ(data, record("MLC11", 0x47314252, 50));
}

TEST(CoefficientData, GivesZeroForAnotherTag)
{
    ScriptedHost host;
    CCoefficientDatazk data;
    EXPECT_EQ(loaded(data, ByteBuilder().wide("DATASETINFOS").i32(20080104).bytes()), 0);
    EXPECT_THAT(host.messages(), ElementsAre(wrongRecord));
}

TEST(CoefficientData, GivesOneForAnotherVersionAndReadsNoFurther)
{
    ScriptedHost host;
    CCoefficientDatazk data;
    LoadingArchive archive(ByteBuilder().wide("DATASETINFO").i32(20080105).i32(42));
    EXPECT_EQ(data.serialize(*archive), 1);
    EXPECT_THAT(host.messages(), ElementsAre(wrongRecord));
    EXPECT_EQ(archive->bytesLeft(), 4U);
    EXPECT_EQ(data, CCoefficientDatazk());
}

TEST(CoefficientData, OfAVersionHasARoutineOfItsOwnWithoutHeader)
{
    const ByteBuilder whole = recordBytes(record("MLC11", 7, 3));
    const auto body = std::span(whole.bytes()).subspan(4 + 2 * 11 + 4);
    CCoefficientDatazk data;
    LoadingArchive archive(body);
    EXPECT_EQ(data.serializezk20080104(*archive), 1);
    EXPECT_EQ(data, record("MLC11", 7, 3));
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { EXPECT_EQ(data.serializezk20080104(ar), 1); }), body));
}

TEST(CoefficientData, UsesNoMoreReferencesThanItHas)
{
    for (const auto& [told, used] : {std::pair(0, 0), std::pair(3, 3), std::pair(50, 50), std::pair(51, 50),
                                     std::pair(INT32_MAX, 50), std::pair(-1, 0), std::pair(INT32_MIN, 0)}) {
        CCoefficientDatazk data;
        data.m_nCoefCount = told;
        EXPECT_EQ(data.usedReferences(), used) << told;
    }
}

TEST(CoefficientType, IsShownAsItsFourCharacters)
{
    EXPECT_EQ(CCoefficientData::coefficientsType2Name(0x41424344U), "ABCD");
    EXPECT_EQ(CCoefficientData::coefficientsType2Name(0x7E7E7E7EU), "~~~~");
}

TEST(CoefficientManager, StartsEmptyAndWritesThreeZeros)
{
    CCoefficientManagerzk manager;
    EXPECT_EQ(manager.getCoefficientsData()->GetSize(), 0);
    EXPECT_TRUE(sameBytes(stored(manager), managerBeginning(0, 0, 0)));
}

TEST(CoefficientManager, TakesRecordsByCopy)
{
    std::vector<CCoefficientDatazk> records{record("A", 1), record("B", 2)};
    CCoefficientManagerzk manager;
    manager.m_nCoefCurrent = 5;
    EXPECT_EQ(manager.addCoefficientsData(2, records.data()), 1);
    EXPECT_EQ(manager.m_nCoefRecordCount, 2);
    EXPECT_EQ(manager.m_nCoefCurrent, 0);
    records[0].m_strCoefSensorName = "changed";
    EXPECT_EQ(*manager.getCoefficientsData()->GetAt(0), record("A", 1));
    EXPECT_EQ(*manager.getCoefficientsData()->GetAt(1), record("B", 2));
}

TEST(CoefficientManager, ReplacesItsRecordsEvenByOneOfThem)
{
    CCoefficientManagerzk manager = filledManager();
    EXPECT_EQ(manager.addCoefficientsData(1, manager.getCoefficientsData()->GetAt(1)), 1);
    ASSERT_EQ(manager.getCoefficientsData()->GetSize(), 1);
    EXPECT_EQ(manager.getCoefficientsData()->GetAt(0)->m_strCoefSensorName, "MRF23");
}

TEST(CoefficientManager, AddsNothingFromNullOrForACountBelowOne)
{
    const CCoefficientDatazk one = record("A", 1);
    CCoefficientManagerzk manager = filledManager();
    EXPECT_EQ(manager.addCoefficientsData(3, nullptr), 1);
    EXPECT_EQ(manager, CCoefficientManagerzk());
    EXPECT_EQ(manager.addCoefficientsData(-1, &one), 1);
    EXPECT_EQ(manager, CCoefficientManagerzk());
}

TEST(CoefficientManager, CleanDataEmptiesIt)
{
    CCoefficientManagerzk manager = filledManager();
    EXPECT_EQ(manager.cleanData(), 1);
    EXPECT_EQ(manager, CCoefficientManagerzk());
}

TEST(CoefficientManager, FindsTheFirstRecordWhoseNameContainsTheSensors)
{
    CCoefficientManagerzk manager =
        managerOf({record("MLC11-100", 0x47324252), record("MLC11-200", 0x47314252), record("MLC11-300", 0x47314252)});
    manager.getCoefficientsData()->InsertAt(0, nullptr);
    EXPECT_EQ(manager.getSensorCoefRecord("MLC11", 1, true, false), manager.getCoefficientsData()->GetAt(2));
    EXPECT_EQ(manager.getSensorCoefRecord("mlc11", 1, true, false), nullptr);
    EXPECT_EQ(manager.getSensorCoefRecord("MLC11-100", 1, true, false), nullptr);
    EXPECT_EQ(manager.getSensorCoefRecord("MLC11-100", 2, true, false), manager.getCoefficientsData()->GetAt(1));
}

TEST(CoefficientManager, FindsTheSensorsNameAnywhereInTheRecords)
{
    const CCoefficientManagerzk manager =
        managerOf({record("MLC1", 0x47314252), record("Run-MLC11-100", 0x47314252), record("MLC11", 0x47314252)});
    EXPECT_EQ(manager.getSensorCoefRecord("MLC11", 1, true, false), manager.getCoefficientsData()->GetAt(1));
    EXPECT_EQ(manager.getSensorCoefRecord("", 1, true, false), manager.getCoefficientsData()->GetAt(0));
    EXPECT_EQ(manager.getSensorCoefRecord("MLC11-1000", 1, true, false), nullptr);
}

TEST(CoefficientManager, SearchesForTypeZeroWithAnOrderOfFour)
{
    const CCoefficientManagerzk manager = managerOf({record("MLC11", 1), record("MLC11", 0)});
    EXPECT_EQ(manager.getSensorCoefRecord("MLC11", 4, true, false), manager.getCoefficientsData()->GetAt(1));
}

TEST(CoefficientManager, CopyOfAFilledOneHasItsNumbersAndNoRecord)
{
    const CCoefficientManagerzk source = filledManager();
    const CCoefficientManagerzk copy(source);
    CCoefficientManagerzk assigned;
    assigned = source;
    for (const CCoefficientManagerzk* target : {&copy, &std::as_const(assigned)}) {
        EXPECT_EQ(target->m_nCoefRecordCount, 2);
        EXPECT_EQ(target->m_nCoefCurrent, 1);
        EXPECT_EQ(target->getCoefficientsData()->GetSize(), 0);
    }
}

TEST(CoefficientManager, AssignmentAppendsAsManyRecordsAsTheTargetHeld)
{
    const CCoefficientManagerzk source = managerOf({record("A", 1), record("B", 2), record("C", 3)});
    CCoefficientManagerzk target = managerOf({record("X", 7), record("Y", 8)});
    target = source;
    EXPECT_EQ(target.m_nCoefRecordCount, 3);
    ASSERT_EQ(target.getCoefficientsData()->GetSize(), 4);
    EXPECT_EQ(*target.getCoefficientsData()->GetAt(1), record("Y", 8));
    EXPECT_EQ(*target.getCoefficientsData()->GetAt(2), record("A", 1));
    EXPECT_EQ(*target.getCoefficientsData()->GetAt(3), record("B", 2));
}

TEST(CoefficientManager, AssignmentFromAShorterSourceTakesWhatIsThere)
{
    CCoefficientManagerzk source = managerOf({record("A", 1), record("B", 2)});
    source.getCoefficientsData()->SetAt(0, nullptr);
    CCoefficientManagerzk target = managerOf({record("X", 7), record("Y", 8), record("Z", 9)});
    target = source;
    ASSERT_EQ(target.getCoefficientsData()->GetSize(), 4);
    EXPECT_EQ(*target.getCoefficientsData()->GetAt(3), record("B", 2));
}

TEST(CoefficientManager, AssignmentToItselfChangesNothing)
{
    CCoefficientManagerzk manager = filledManager();
    const CCoefficientManagerzk& same = manager;
    manager = same;
    EXPECT_EQ(manager, filledManager());
}

TEST(CoefficientManager, MovingMovesTheRecords)
{
    CCoefficientManagerzk source = filledManager();
    CCoefficientManagerzk target(std::move(source));
    EXPECT_EQ(target, filledManager());
    CCoefficientManagerzk assigned;
    assigned = std::move(target);
    EXPECT_EQ(assigned, filledManager());
}

TEST(CoefficientManager, WritesGuardsAndRecords)
{
    CCoefficientManagerzk manager = filledManager();
    manager.getCoefficientsData()->InsertAt(1, nullptr);
    ByteBuilder expected = managerBeginning(2, 1, 3);
    expected.i32(1).append(recordBytes(*manager.getCoefficientsData()->GetAt(0)));
    expected.i32(0);
    expected.i32(1).append(recordBytes(*manager.getCoefficientsData()->GetAt(2)));
    const std::vector<std::byte> bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(manager.serialize(ar), 1); });
    EXPECT_TRUE(sameBytes(bytes, expected));
}

TEST(CoefficientManager, ReadingDropsNullEntriesAndWhatWasThere)
{
    ByteBuilder bytes = managerBeginning(2, 1, 3);
    bytes.i32(0).i32(1).append(recordBytes(record("B", 2))).i32(0);
    CCoefficientManagerzk manager = filledManager();
    EXPECT_EQ(loaded(manager, bytes.bytes()), 1);
    EXPECT_EQ(manager.m_nCoefRecordCount, 2);
    ASSERT_EQ(manager.getCoefficientsData()->GetSize(), 1);
    EXPECT_EQ(*manager.getCoefficientsData()->GetAt(0), record("B", 2));
}

TEST(CoefficientManager, GivesZeroForAnotherTag)
{
    ScriptedHost host;
    CCoefficientManagerzk manager;
    EXPECT_EQ(loaded(manager, ByteBuilder().wide("SENSORCOEFFICIENT").i32(20080104).bytes()), 0);
    EXPECT_THAT(host.messages(), ElementsAre(otherFile));
}

TEST(CoefficientManager, GivesOneForAnotherVersionAndStaysBehindIt)
{
    ScriptedHost host;
    CCoefficientManagerzk manager;
    LoadingArchive archive(ByteBuilder().wide("SENSORCOEFFICIENTZK").i32(20080105).i32(42));
    EXPECT_EQ(manager.serialize(*archive), 1);
    EXPECT_THAT(host.messages(), ElementsAre("Wrong file format!!?"));
    EXPECT_EQ(archive->bytesLeft(), 4U);
}

TEST(CoefficientManager, KeepsARecordOfAnotherVersionAndReadsOnBehindItsHeader)
{
    ScriptedHost host;
    ByteBuilder bytes = managerBeginning(2, 0, 2);
    bytes.i32(1).wide("DATASETINFO").i32(20080105).i32(1).append(recordBytes(record("B", 2)));
    CCoefficientManagerzk manager;
    EXPECT_EQ(loaded(manager, bytes.bytes()), 1);
    EXPECT_THAT(host.messages(), ElementsAre(wrongRecord));
    ASSERT_EQ(manager.getCoefficientsData()->GetSize(), 2);
    EXPECT_EQ(*manager.getCoefficientsData()->GetAt(1), record("B", 2));
}

TEST(CoefficientManager, CountsThatNoListHasReadNoRecord)
{
    for (const int count : {0, -1, INT32_MIN}) {
        CCoefficientManagerzk manager = filledManager();
        EXPECT_EQ(loaded(manager, managerBeginning(7, 3, count).bytes()), 1);
        EXPECT_EQ(manager.m_nCoefRecordCount, 7); // as the file tells it
        EXPECT_EQ(manager.m_nCoefCurrent, 3);
        EXPECT_EQ(manager.getCoefficientsData()->GetSize(), 0);
    }
    CCoefficientManagerzk manager;
    EXPECT_THROW(loaded(manager, managerBeginning(7, 3, INT32_MAX).bytes()), CArchiveException);
}

TEST(CoefficientManager, KeepsARecordThatWasRefused)
{
    ScriptedHost host;
    ByteBuilder bytes = managerBeginning(2, 0, 2);
    bytes.i32(1).wide("OTHER").i32(1).append(recordBytes(record("B", 2)));
    CCoefficientManagerzk manager;
    EXPECT_EQ(loaded(manager, bytes.bytes()), 1);
    EXPECT_THAT(host.messages(), ElementsAre(wrongRecord));
    ASSERT_EQ(manager.getCoefficientsData()->GetSize(), 2);
    EXPECT_EQ(*manager.getCoefficientsData()->GetAt(0), CCoefficientDatazk());
    EXPECT_EQ(*manager.getCoefficientsData()->GetAt(1), record("B", 2));
}

TEST(CoefficientManager, TellsThatARecordCouldNotBeMadeAndGivesOneAllTheSame)
{
    const std::vector<std::byte> bytes = stored(filledManager());
    const std::int64_t tried = forEachAllocationFailure([&] {
        ScriptedHost host;
        CCoefficientManagerzk manager;
        EXPECT_EQ(loaded(manager, bytes), 1);
        if (manager.getCoefficientsData()->GetSize() < 2) {
            EXPECT_THAT(host.messages(), ElementsAre("Is memory enough?!"));
        }
    });
    EXPECT_EQ(tried, 2);
}

TEST(CoefficientManager, TakesNoMemoryOutOfProportionToTheFile)
{
    ScriptedHost host;
    ByteBuilder bytes = managerBeginning(100000, 0, 100000);
    for (int i = 0; i < 100000; ++i)
        bytes.i32(1).narrow("");
    CCoefficientManagerzk manager;
    EXPECT_EQ(loaded(manager, bytes.bytes()), 1);
    EXPECT_LT(static_cast<std::size_t>(manager.getCoefficientsData()->GetSize()) * sizeof(CCoefficientDatazk),
              8 * bytes.size() + (1U << 20U));
    EXPECT_EQ(host.messages().back(), "Is memory enough?!");
}

TEST(CoefficientManager, EveryPrefixRaisesEndOfFile)
{
    forEachPrefix(stored(filledManager()), [](std::span<const std::byte> prefix) {
        CCoefficientManagerzk manager;
        EXPECT_THROW(loaded(manager, prefix), CArchiveException);
    });
}

TEST(CoefficientManager, SingleBitFlipsDoNoHarm)
{
    const ScriptedHost host;
    constexpr std::size_t allBits = 1;
    const auto load = [](std::span<const std::byte> bytes) {
        CCoefficientManagerzk manager;
        const int result = tryLoading(bytes, [&](CArchive& ar) { return manager.serialize(ar); });
        ASSERT_TRUE(result == 0 || result == 1);
        ASSERT_LE(manager.getCoefficientsData()->GetSize(), 1000);
    };
    forEachBitFlip(stored(filledManager()), load, allBits);
}

template <class Record>
::testing::AssertionResult followsItsPage(Record&& record, std::string_view name)
{
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        record.serialize(ar);
    });
    return followsLayoutPage(formatPages() / "recording.md", name, recorder.fields());
}

TEST(CoefficientManager, PageShowsTheFieldsInTheirOrder)
{
    EXPECT_TRUE(followsItsPage(record("A", 1), "CCoefficientDatazk"));
    EXPECT_TRUE(followsItsPage(filledManager(), "CCoefficientManagerzk"));
}

} // namespace
} // namespace megset::CCoefficientManager_test
