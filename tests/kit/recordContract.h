#pragma once
// What every record of megset/records promises, as one suite that each record is put through.
//
//     struct SphereCase
//     {
//         using Record = CSpherezk;
//         static constexpr std::string_view tag = "SPHEREZK";
//         static constexpr std::string_view page = "head.md"; // in docs/formats, heading with `CSpherezk`
//         static constexpr std::string_view name = "CSpherezk";
//         static Record filled();                             // every field different from its default
//     };
//     using HeadRecords = ::testing::Types<SphereCase, FiducialCase>;
//     INSTANTIATE_TYPED_TEST_SUITE_P(Head, RecordContract, HeadRecords);
//
// The record has `serializezk(CArchive&)` or `serialize(CArchive&)`, and compares with ==. Lists of the filled record
// should have two elements or more, and be small: the suite goes through its bytes one by one.

#include "megset/platform/CArchiveException.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/layoutPage.h"
#include "tests/kit/memoryArchive.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset {

/// The version that every record of megset/records writes.
inline constexpr std::int32_t recordVersion = 20261121;

template <class Record>
int serializeAny(Record& record, CArchive& ar)
{
    if constexpr (requires { record.serializezk(ar); })
        return record.serializezk(ar);
    else
        return record.serialize(ar);
}

template <class Record>
std::vector<std::byte> recordBytes(Record record)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(serializeAny(record, ar), 1); });
}

template <class Record>
int loadRecord(Record& record, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return serializeAny(record, *archive);
}

/// Loads what may be broken: 1 as the record says, 0 also for an archive exception; others pass and fail the test.
template <class Record>
int tryLoadRecord(Record& record, std::span<const std::byte> bytes)
{
    try {
        return loadRecord(record, bytes);
    } catch (const CArchiveException&) {
        return 0;
    }
}

/// Holds a record against its bytes, built without an archive: they are what it writes, and reading them gives it.
template <class Record>
void expectGolden(const Record& record, const ByteBuilder& golden)
{
    EXPECT_TRUE(sameBytes(recordBytes(record), golden));
    Record loaded;
    EXPECT_EQ(loadRecord(loaded, golden.bytes()), 1);
    EXPECT_TRUE(loaded == record);
}

template <class Case>
class RecordContract : public ::testing::Test
{
protected:
    using Record = typename Case::Record;

    static ByteBuilder beginning(std::int32_t version) { return ByteBuilder().wide(CString(Case::tag)).i32(version); }
    // The filled record's bytes behind tag and version.
    static std::vector<std::byte> body()
    {
        std::vector<std::byte> bytes = recordBytes(Case::filled());
        bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(beginning(recordVersion).size()));
        return bytes;
    }
    static void expectRefused(const ByteBuilder& bytes, const std::string& message)
    {
        ScriptedHost host;
        Record record = Case::filled();
        EXPECT_EQ(loadRecord(record, bytes.bytes()), 0);
        EXPECT_THAT(host.messages(), ::testing::ElementsAre(CString(std::string(Case::tag) + message)));
        EXPECT_EQ(record, Case::filled());
    }
    static void expectEveryPrefixRefused(const std::vector<std::byte>& bytes)
    {
        const ScriptedHost host;
        forEachPrefix(bytes, [](std::span<const std::byte> prefix) {
            Record record;
            ASSERT_EQ(tryLoadRecord(record, prefix), 0);
        });
    }
    // What a broken file gives is a whole record still: it can be written, and read back as the same bytes.
    static void expectWhole(const Record& record)
    {
        const std::vector<std::byte> bytes = recordBytes(record);
        Record again;
        ASSERT_EQ(loadRecord(again, bytes), 1);
        ASSERT_TRUE(sameBytes(recordBytes(again), bytes));
    }
};

TYPED_TEST_SUITE_P(RecordContract);

TYPED_TEST_P(RecordContract, FilledRecordDiffersFromDefault)
{
    EXPECT_FALSE(TypeParam::filled() == typename TypeParam::Record());
    EXPECT_TRUE(TypeParam::filled() == TypeParam::filled());
}

TYPED_TEST_P(RecordContract, DefaultRecordComesBackOverAFilledOne)
{
    typename TypeParam::Record record = TypeParam::filled();
    ASSERT_EQ(loadRecord(record, recordBytes(typename TypeParam::Record())), 1);
    EXPECT_TRUE(record == typename TypeParam::Record());
}

TYPED_TEST_P(RecordContract, FilledRecordComesBackEqual)
{
    typename TypeParam::Record record;
    LoadingArchive archive(recordBytes(TypeParam::filled()));
    ASSERT_EQ(serializeAny(record, *archive), 1);
    EXPECT_TRUE(record == TypeParam::filled());
    EXPECT_EQ(archive->bytesLeft(), 0U);
}

TYPED_TEST_P(RecordContract, CopiesAndMovesKeepTheValueAndShareNothing)
{
    typename TypeParam::Record original = TypeParam::filled();
    typename TypeParam::Record copy(original);
    typename TypeParam::Record assigned;
    assigned = original;
    ASSERT_EQ(loadRecord(original, recordBytes(typename TypeParam::Record())), 1);
    EXPECT_TRUE(copy == TypeParam::filled());
    EXPECT_TRUE(assigned == TypeParam::filled());
    const typename TypeParam::Record moved(std::move(copy));
    EXPECT_TRUE(moved == TypeParam::filled());
}

TYPED_TEST_P(RecordContract, SameValueGivesTheSameBytes)
{
    const std::vector<std::byte> bytes = recordBytes(TypeParam::filled());
    EXPECT_TRUE(sameBytes(recordBytes(TypeParam::filled()), bytes));
    typename TypeParam::Record loaded;
    ASSERT_EQ(loadRecord(loaded, bytes), 1);
    EXPECT_TRUE(sameBytes(recordBytes(loaded), bytes));
}

TYPED_TEST_P(RecordContract, FileBeginsWithTagAndVersion)
{
    const std::vector<std::byte> bytes = recordBytes(typename TypeParam::Record());
    const ByteBuilder expected = TestFixture::beginning(recordVersion);
    ASSERT_GE(bytes.size(), expected.size());
    EXPECT_TRUE(sameBytes(std::span(bytes).first(expected.size()), expected));
}

TYPED_TEST_P(RecordContract, EveryPrefixRaisesEndOfFileOrGivesZero)
{
    TestFixture::expectEveryPrefixRefused(recordBytes(typename TypeParam::Record()));
    TestFixture::expectEveryPrefixRefused(recordBytes(TypeParam::filled()));
}

TYPED_TEST_P(RecordContract, SingleBitFlipsDoNoHarm)
{
    const ScriptedHost host;
    forEachBitFlip(recordBytes(TypeParam::filled()), [](std::span<const std::byte> bytes) {
        typename TypeParam::Record record;
        if (tryLoadRecord(record, bytes) == 1)
            TestFixture::expectWhole(record);
    });
}

TYPED_TEST_P(RecordContract, AnotherTagIsRefused)
{
    ByteBuilder other;
    other.wide(CString(TypeParam::tag) + CString("X")).i32(recordVersion).raw(TestFixture::body());
    TestFixture::expectRefused(other, ": The record is of another kind or corrupted!");
}

TYPED_TEST_P(RecordContract, TheNextVersionIsRefused)
{
    ByteBuilder next = TestFixture::beginning(recordVersion + 1);
    TestFixture::expectRefused(next.raw(TestFixture::body()), ": Wrong record format!!?");
}

TYPED_TEST_P(RecordContract, PageShowsTheFieldsInTheirOrder)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    TracingRecorder recorder;
    archive.setTracer(&recorder);
    typename TypeParam::Record record = TypeParam::filled();
    ASSERT_EQ(serializeAny(record, archive), 1);
    EXPECT_TRUE(followsLayoutPage(formatPages() / TypeParam::page, TypeParam::name, recorder.fields()));
}

REGISTER_TYPED_TEST_SUITE_P(RecordContract, FilledRecordDiffersFromDefault, DefaultRecordComesBackOverAFilledOne,
                            FilledRecordComesBackEqual, CopiesAndMovesKeepTheValueAndShareNothing,
                            SameValueGivesTheSameBytes, FileBeginsWithTagAndVersion,
                            EveryPrefixRaisesEndOfFileOrGivesZero, SingleBitFlipsDoNoHarm, AnotherTagIsRefused,
                            TheNextVersionIsRefused, PageShowsTheFieldsInTheirOrder);

} // namespace megset
