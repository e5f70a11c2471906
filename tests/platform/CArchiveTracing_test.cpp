// One list of fields for both directions, and the tracer that is told of each.
#include "megset/platform/CArchive.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/memoryArchive.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArchiveTracing_test {
namespace {

using ::testing::ElementsAre;

enum class Kind : std::int16_t
{
    none = 0,
    meg = 100
};

// ---- one list of fields for both directions

struct Record
{
    std::int32_t m_nId = 0;
    std::int64_t m_nTotal = 0;
    double m_dRate = 0;
    bool m_bGood = false;
    CString m_strName;
    std::array<double, 2> m_aRange = {};
    Kind m_kind = Kind::none;

    void exchange(CArchive& ar)
    {
        const ArchiveSection section(ar, "record");
        EXCHANGE_FIELDS(ar, m_nId, m_nTotal, m_dRate, m_bGood, m_strName, m_aRange, m_kind);
    }
    bool operator==(const Record&) const = default;
};

const Record sample = {7, 1LL << 40, 1000.5, true, "A1", {-1, 1}, Kind::meg};

TEST(CArchiveExchange, OneListWritesAndReadsARecord)
{
    Record record = sample;
    const auto bytes = storedBytes([&](CArchive& ar) { record.exchange(ar); });
    const ByteBuilder golden =
        ByteBuilder().i32(7).i64(1LL << 40).f64(1000.5).i32(1).wide("A1").doubles({-1, 1}).i16(100);
    EXPECT_TRUE(sameBytes(bytes, golden));
    EXPECT_EQ(record, sample) << "storing changes nothing";

    Record back;
    LoadingArchive archive(bytes);
    back.exchange(*archive);
    EXPECT_EQ(back, sample);
}

// ---- tracing

const std::vector<std::string> sampleLines = {"{ record @0",
                                              "0 int m_nId = 7",
                                              "4 int64 m_nTotal = 1099511627776",
                                              "12 double m_dRate = 1000.5",
                                              "20 int m_bGood = 1",
                                              "24 text m_strName = \"A1\"",
                                              "32 double m_aRange[0] = -1",
                                              "40 double m_aRange[1] = 1",
                                              "48 short m_kind = 100",
                                              "} @50"};

TEST(CArchiveTracing, TellsEveryFieldWithNameTypeOffsetAndValueWhenLoading)
{
    Record record = sample;
    LoadingArchive archive(storedBytes([&](CArchive& ar) { record.exchange(ar); }));
    TracingRecorder recorder;
    archive->setTracer(&recorder);
    Record back;
    back.exchange(*archive);
    EXPECT_EQ(recorder.lines(), sampleLines);
    ASSERT_EQ(recorder.fields().size(), 8U);
    EXPECT_EQ(recorder.fields()[0].section, "record");
    EXPECT_EQ(recorder.fields()[4].text, CString("A1"));
    EXPECT_EQ(recorder.depth(), 0U);
}

TEST(CArchiveTracing, TellsTheSameWhenStoring)
{
    TracingRecorder recorder;
    Record record = sample;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        EXPECT_EQ(ar.tracer(), &recorder);
        record.exchange(ar);
    });
    EXPECT_EQ(recorder.lines(), sampleLines);
}

TEST(CArchiveTracing, ChangesNoByte)
{
    Record record = sample;
    const auto plain = storedBytes([&](CArchive& ar) { record.exchange(ar); });
    TracingRecorder recorder;
    const auto traced = storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        record.exchange(ar);
    });
    EXPECT_TRUE(sameBytes(traced, plain));
}

TEST(CArchiveTracing, FieldsWithoutANameAreToldWithoutOne)
{
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        ar << std::uint8_t{1} << std::int8_t{-1} << std::uint16_t{2} << std::uint32_t{3} << std::uint64_t{4} << 0.5F;
        ar << "x";
        ar.Write("ab", 2);
        ar.exchangeInt(5);
        ar.exchangeInt(6, "guard");
    });
    EXPECT_THAT(recorder.lines(),
                ElementsAre("0 byte = 1", "1 char = -1", "2 ushort = 2", "4 uint = 3", "8 uint64 = 4", "16 float = 0.5",
                            "20 text = \"x\"", "26 block 2", "28 int = 5", "32 int guard = 6"));
}

TEST(CArchiveTracing, BlocksTellTheirNameAndWhatWasThere)
{
    TracingRecorder recorder;
    LoadingArchive archive(ByteBuilder().zeros(24));
    archive->setTracer(&recorder);
    std::array<double, 2> first = {}, second = {};
    archive->exchangeBlock(first.data(), 16, "wave");
    archive->exchangeBlock(second.data(), 16, "backup");
    EXPECT_THAT(recorder.lines(), ElementsAre("0 block wave 16", "16 block backup 8 of 16"));
    EXPECT_EQ(recorder.fields()[1].done, 8U);
    EXPECT_EQ(recorder.fields()[1].bytes, 16U);
}

TEST(CArchiveTracing, BlocksTellTheirElementsInBothDirections)
{
    TracingRecorder stored, loaded;
    std::array<double, 2> values = {1.5, -2};
    const auto bytes = storedBytes([&](CArchive& ar) {
        ar.setTracer(&stored);
        ar.exchangeBlock(values.data(), 16, "wave", archiveTypeName<double>());
        ar.exchangeBlock(values.data(), 8, "plain");
    });
    LoadingArchive archive{std::span(bytes).first(20)};
    archive->setTracer(&loaded);
    archive->exchangeBlock(values.data(), 16, "wave", archiveTypeName<double>());
    archive->exchangeBlock(values.data(), 8, "plain");
    for (const TracingRecorder* recorder : {&stored, &loaded}) {
        EXPECT_EQ(recorder->fields()[0].elementType, "double");
        EXPECT_TRUE(sameBytes(recorder->fields()[0].data, ByteBuilder().doubles({1.5, -2})));
        EXPECT_EQ(recorder->fields()[1].elementType, "");
    }
    EXPECT_EQ(stored.fields()[1].data.size(), 8U);
    EXPECT_EQ(loaded.fields()[1].data.size(), 4U);
}

TEST(CArchiveTracing, SectionsNestAndEndWhenAnExceptionPasses)
{
    TracingRecorder recorder;
    LoadingArchive archive(ByteBuilder().i32(1).raw({2}));
    archive->setTracer(&recorder);
    const auto load = [&] {
        const ArchiveSection outer(*archive, "outer");
        std::int32_t a = 0;
        std::int32_t b = 0;
        const ArchiveSection inner(*archive, "inner");
        EXCHANGE_FIELDS(*archive, a, b);
    };
    EXPECT_THROW(load(), CArchiveException);
    EXPECT_THAT(recorder.lines(), ElementsAre("{ outer @0", "{ inner @0", "0 int a = 1", "} @4", "} @4"));
    EXPECT_EQ(recorder.fields()[0].section, "outer/inner");
}

TEST(CArchiveTracing, NamesOfAListThatFailedDontStickToLaterFields)
{
    TracingRecorder recorder;
    LoadingArchive archive(ByteBuilder().raw({1, 2, 3, 4, 5}));
    archive->setTracer(&recorder);
    std::int32_t numbers[2] = {};
    EXPECT_THROW(EXCHANGE_FIELDS(*archive, numbers), CArchiveException);
    std::uint8_t byte = 0;
    *archive >> byte;
    EXPECT_THAT(recorder.lines(), ElementsAre("0 int numbers[0] = 67305985", "4 byte = 5"));
}

TEST(CArchiveTracing, EndsWithANullTracer)
{
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        ar << 1;
        ar.setTracer(nullptr);
        ar << 2;
    });
    EXPECT_EQ(recorder.fields().size(), 1U);
}

} // namespace
} // namespace megset::CArchiveTracing_test
