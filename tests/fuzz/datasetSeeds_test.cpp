// The first files of the corpora of fuzz/dataset_fuzz.cpp, fuzz/recording_fuzz.cpp and fuzz/coefficients_fuzz.cpp. With
// MEGSET_WRITE_SEEDS set the tests write them; otherwise they compare them.

#include "tests/fuzz/seedFiles.h"
#include "tests/persistence/datasetRecord.h"

#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset::datasetSeeds_test {

namespace {

using namespace megset::datasetRecord;

// A dataset of that version with one of everything, and with trials inside where it may have them.
ByteBuilder datasetSeed(std::int32_t version)
{
    Parts parts = filled(1);
    CMEGRecordInfozkProzk info; // what it holds is recording_fuzz's
    parts.recordInfo = recordBytes(info);
    parts.trials.presence = listForm(version) == ListForm::today ? 0 : 1;
    parts.trials.behind = none(1).i32(1).i32(0);
    if (listForm(version) == ListForm::doubleStore) {
        const ByteBuilder trial = trialRecord::record(20080229, trialRecord::Parts());
        parts.trials.behind = ByteBuilder().i32(0).i32(1).append(trial).i32(0);
    }
    return record(version, parts);
}

TEST(DatasetFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    Seeds seeds;
    for (const std::int32_t version : versions)
        seeds["version_" + std::to_string(version)] = datasetSeed(version).bytes();
    seeds["version_unknown"] = header(20090727).bytes();
    seeds["empty"] = record(newest, Parts()).bytes();
    Parts parts;
    parts.trials.total = 3;
    parts.trials.paths = {"a", "b"};
    parts.trials.presence = 1;
    parts.flagCount = 3;
    parts.good = parts.shown = parts.select = flags({1, 0, 1});
    seeds["two_paths_of_three"] = record(newest, parts).bytes();
    parts.trials.total = INT32_MAX;
    seeds["impossible_count"] = record(newest, parts).bytes();
    compareOrWrite("dataset_fuzz", seeds);
}

TEST(DatasetFuzzSeeds, AllKnownVersionsLoad)
{
    for (const std::int32_t version : versions) {
        LoadingArchive archive(datasetSeed(version));
        CMEGDatazk dataset;
        try {
            EXPECT_EQ(dataset.serializeWithoutTrials(*archive), 1);
        } catch (const CArchiveException&) {
            EXPECT_EQ(version, readTwice);
        }
        EXPECT_EQ(archive->bytesLeft(), 0U) << version;
    }
}

// ---- recording information

// The first byte of an input says which record the rest is.
enum RecordingKind : std::uint8_t
{
    information,
    basicInformation
};
enum CoefficientsKind : std::uint8_t
{
    coefficients,
    coefficientRecord
};

template <class Record>
ByteBuilder recordingSeed(std::uint8_t kind, Record&& record)
{
    return ByteBuilder().u8(kind).append(recordBytes(record));
}

// Old versions lack the section behind the header, or the tail.
ByteBuilder informationSeed(std::int32_t version)
{
    constexpr std::size_t headerBytes = 4 + 2 * 13 + 4;
    constexpr std::size_t backupBytes = 36;
    constexpr std::size_t tailBytes = 40;
    CMEGRecordInfozkProzk info;
    fillInfo(info, 1);
    const std::vector<std::byte> whole = bytesOf(info);
    const std::size_t begin = headerBytes + (version < 20120419 ? backupBytes : 0);
    const std::size_t end = whole.size() - (version < 20140513 ? tailBytes : 0);
    ByteBuilder bytes = ByteBuilder().u8(information).wide("MEGRECORDINFO").i32(version);
    return bytes.raw(std::span(whole).subspan(begin, end - begin));
}

TEST(RecordingFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    Seeds seeds;
    CMEGRecordInfozkProzk info;
    fillInfo(info, 1);
    CMEGRecordInfozk basic;
    fillRecordInfo(basic);
    for (const std::int32_t version : {20090803, 20120419, 20140513, 20160320, 20160321})
        seeds["information_" + std::to_string(version)] = informationSeed(version).bytes();
    seeds["information_empty"] = recordingSeed(information, CMEGRecordInfozkProzk()).bytes();
    seeds["basic"] = recordingSeed(basicInformation, basic).bytes();
    compareOrWrite("recording_fuzz", seeds);
}

// ---- coefficients

CCoefficientDatazk coefficientsOf(const CString& sensor, int order, int count)
{
    CCoefficientDatazk record;
    record.m_strCoefSensorName = sensor;
    record.m_nCoefType = CCoefficientData::getCoefficientType(order, true, false);
    record.m_nCoefCount = count;
    record.m_aCoefRefName[0] = "R0";
    record.m_aCoefRefName[1] = "R1";
    record.m_aCoefValue[0] = 0.5;
    record.m_aCoefValue[1] = -2.0;
    return record;
}

ByteBuilder collection(std::int32_t version, std::int32_t listed)
{
    return ByteBuilder().u8(coefficients).wide("SENSORCOEFFICIENTZK").i32(version).i32(2).i32(0).i32(listed);
}

// Two sensors with two references each, for two orders, and an absent entry between them.
ByteBuilder collectionOfSensors(int count)
{
    ByteBuilder bytes = collection(20080104, 5);
    for (const char* sensor : {"A", "B"}) {
        bytes.i32(1).append(recordBytes(coefficientsOf(sensor, 1, count)));
        bytes.i32(1).append(recordBytes(coefficientsOf(sensor, 3, count)));
        if (*sensor == 'A')
            bytes.i32(0);
    }
    return bytes;
}

TEST(CoefficientsFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    Seeds seeds;
    seeds["empty"] = recordingSeed(coefficients, CCoefficientManagerzk()).bytes();
    seeds["null"] = collection(20080104, 2).zeros(8).bytes();
    seeds["sensors"] = collectionOfSensors(2).bytes();
    seeds["sensors_count_beyond"] = collectionOfSensors(INT32_MAX).bytes();
    seeds["sensors_count_below"] = collectionOfSensors(-1).bytes();
    seeds["impossible_count"] = collection(20080104, INT32_MAX).i32(1).bytes();
    seeds["version_unknown"] = collection(20080105, 0).bytes();
    seeds["inner_tag"] = collection(20080104, 1).i32(1).wide("DATASETINFOS").i32(20080104).bytes();
    seeds["inner_version"] = collection(20080104, 1).i32(1).wide("DATASETINFO").i32(20080105).bytes();
    seeds["record"] = recordingSeed(coefficientRecord, coefficientsOf("A", 1, 2)).bytes();
    seeds["record_empty"] = recordingSeed(coefficientRecord, CCoefficientDatazk()).bytes();
    compareOrWrite("coefficients_fuzz", seeds);
}

TEST(CoefficientsFuzzSeeds, SensorsLoad)
{
    const ByteBuilder bytes = collectionOfSensors(2);
    LoadingArchive archive(std::span(bytes.bytes()).subspan(1));
    CCoefficientManagerzk manager;
    EXPECT_EQ(manager.serialize(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    EXPECT_EQ(manager.getCoefficientsData()->GetSize(), 4);
    EXPECT_NE(manager.getSensorCoefRecord("B", 3, true, false), nullptr);
}

TEST(RecordingFuzzSeeds, AllKnownVersionsLoad)
{
    for (const std::int32_t version : {20090803, 20120419, 20140513, 20160320}) {
        const ByteBuilder bytes = informationSeed(version);
        LoadingArchive archive(std::span(bytes.bytes()).subspan(1));
        CMEGRecordInfozkProzk info;
        EXPECT_EQ(info.serialize(*archive), 1) << version;
        EXPECT_EQ(archive->bytesLeft(), 0U) << version;
        EXPECT_EQ(info.m_aOnlineFilter.GetSize(), 3) << version;
    }
}

} // namespace

} // namespace megset::datasetSeeds_test
