#include "megset/platform/formatVersion.h"

#include "tests/kit/ByteBuilder.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/memoryArchive.h"

#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::formatVersion_test {
namespace {

using ::testing::ElementsAre;

// A format with three versions: the oldest knows only an ID, the second a name as well, today's has the ID in 64 bits.
class Sensor
{
public:
    int serializezk(CArchive& ar) { return serializeFormat(ar, *this, s_texts, s_versions); }

    std::int64_t m_nId = 0;
    CString m_strName;
    int m_result = 1;
    std::int32_t m_nReadBy = 0;

private:
    int serialize_20080101(CArchive& ar)
    {
        m_nReadBy = 20080101;
        m_nId = ar.exchangeInt(static_cast<std::int32_t>(m_nId));
        return m_result;
    }
    int serialize_20190723(CArchive& ar)
    {
        const int done = serialize_20080101(ar);
        ar.exchange(m_strName);
        m_nReadBy = 20190723;
        return done;
    }
    int serialize_20200801(CArchive& ar)
    {
        m_nReadBy = 20200801;
        EXCHANGE_FIELDS(ar, m_nId, m_strName);
        return m_result;
    }

    static constexpr FormatTexts s_texts = {"SENSORZK", "This is no sensor!", "Wrong sensor format!!?"};
    static constexpr FormatVersion<Sensor> s_versions[] = {{20080101, &Sensor::serialize_20080101},
                                                           {20190723, &Sensor::serialize_20190723},
                                                           {20200801, &Sensor::serialize_20200801}};
};

TEST(FormatPattern, WritesTheTagAndTheNewestVersion)
{
    const ScriptedHost host;
    Sensor sensor;
    sensor.m_nId = 5;
    sensor.m_strName = "A1";
    const auto bytes = storedBytes([&](CArchive& ar) { EXPECT_EQ(sensor.serializezk(ar), 1); });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().wide("SENSORZK").i32(20200801).i64(5).wide("A1")));
    host.expectNoMessages();
}

TEST(FormatPattern, ReadsEveryVersionThatWasEverReleased)
{
    const ScriptedHost host;
    Sensor sensor;
    LoadingArchive oldest(ByteBuilder().wide("SENSORZK").i32(20080101).i32(7));
    EXPECT_EQ(sensor.serializezk(*oldest), 1);
    EXPECT_EQ(sensor.m_nReadBy, 20080101);
    EXPECT_EQ(sensor.m_nId, 7);

    LoadingArchive second(ByteBuilder().wide("SENSORZK").i32(20190723).i32(8).wide("B2"));
    EXPECT_EQ(sensor.serializezk(*second), 1);
    EXPECT_EQ(sensor.m_nReadBy, 20190723);
    EXPECT_EQ(sensor.m_strName, CString("B2"));

    LoadingArchive newest(ByteBuilder().wide("SENSORZK").i32(20200801).i64(1LL << 40).wide("C3"));
    EXPECT_EQ(sensor.serializezk(*newest), 1);
    EXPECT_EQ(sensor.m_nReadBy, 20200801);
    EXPECT_EQ(sensor.m_nId, 1LL << 40);
    host.expectNoMessages();
}

TEST(FormatPattern, TakesATagInTheNarrowForm)
{
    const ScriptedHost host;
    Sensor sensor;
    LoadingArchive archive(ByteBuilder().narrow("SENSORZK").i32(20080101).i32(7));
    EXPECT_EQ(sensor.serializezk(*archive), 1);
    EXPECT_EQ(sensor.m_nId, 7);
}

TEST(FormatPattern, AnotherTagIsToldAndNothingBehindItIsRead)
{
    for (const char* tag : {"SENSORZX", "sensorzk", "Sensorzk", "SENSORZ", "SENSORZKK", " SENSORZK", ""}) {
        const ScriptedHost host;
        Sensor sensor;
        const ByteBuilder tagBytes = ByteBuilder().wide(tag);
        LoadingArchive archive(ByteBuilder(tagBytes).i32(20200801).i64(1).wide("x"));
        EXPECT_EQ(sensor.serializezk(*archive), 0) << tag;
        EXPECT_THAT(host.calls(), ElementsAre("message: This is no sensor!")) << tag;
        EXPECT_EQ(archive->position(), tagBytes.size()) << tag;
        EXPECT_EQ(sensor.m_nReadBy, 0) << tag;
    }
}

TEST(FormatPattern, AnUnknownVersionIsToldAndNeverTheNearestRead)
{
    for (const std::int32_t version : {20200802, 20200800, 20190724, 20080102, 0, -1, INT32_MAX, INT32_MIN}) {
        const ScriptedHost host;
        Sensor sensor;
        LoadingArchive archive(ByteBuilder().wide("SENSORZK").i32(version).zeros(100));
        EXPECT_EQ(sensor.serializezk(*archive), 0) << version;
        EXPECT_THAT(host.calls(), ElementsAre("message: Wrong sensor format!!?")) << version;
        EXPECT_EQ(archive->position(), ByteBuilder().wide("SENSORZK").size() + 4) << version;
        EXPECT_EQ(sensor.m_nReadBy, 0) << version;
    }
}

TEST(FormatPattern, GivesWhatTheVersionsRoutineGivesWithoutAWord)
{
    const ScriptedHost host;
    Sensor sensor;
    sensor.m_result = 0;
    EXPECT_TRUE(sameBytes(storedBytes([&](CArchive& ar) { EXPECT_EQ(sensor.serializezk(ar), 0); }),
                          ByteBuilder().wide("SENSORZK").i32(20200801).i64(0).wide("")));
    LoadingArchive archive(ByteBuilder().wide("SENSORZK").i32(20080101).i32(7));
    EXPECT_EQ(sensor.serializezk(*archive), 0);
    host.expectNoMessages();
}

TEST(FormatPattern, EveryPrefixRaisesEndOfFileWithoutAMessage)
{
    const ScriptedHost host;
    const auto whole = ByteBuilder().wide("SENSORZK").i32(20190723).i32(8).wide("B2").bytes();
    forEachPrefix(whole, [](std::span<const std::byte> prefix) {
        Sensor sensor;
        LoadingArchive archive(prefix);
        try {
            sensor.serializezk(*archive);
            ADD_FAILURE() << "so many are enough";
        } catch (const CArchiveException& exception) {
            EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
        }
    });
    host.expectNoMessages();
}

TEST(FormatPattern, TellsATracerTagVersionAndFieldsInOneSection)
{
    TracingRecorder recorder;
    Sensor sensor;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        sensor.serializezk(ar);
    });
    EXPECT_THAT(recorder.lines(), ElementsAre("{ SENSORZK @0", "0 text tag = \"SENSORZK\"", "20 int version = 20200801",
                                              "24 int64 m_nId = 0", "32 text m_strName = \"\"", "} @36"));
}

} // namespace
} // namespace megset::formatVersion_test
