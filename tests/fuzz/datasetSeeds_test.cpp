// The first files of the corpora of fuzz/dataset_fuzz.cpp and fuzz/recording_fuzz.cpp. With MEGSET_WRITE_SEEDS set the
// tests write them; otherwise they compare them.

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
enum Kind : std::uint8_t
{
    information,
    coefficients,
    coefficientRecord,
    basicInformation
};

template <class Record>
ByteBuilder recordingSeed(Kind kind, Record&& record)
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
    seeds["coefficients"] = recordingSeed(coefficients, info.m_coefficients).bytes();
    seeds["coefficients_empty"] = recordingSeed(coefficients, CCoefficientManagerzk()).bytes();
    seeds["coefficients_null"] =
        ByteBuilder().u8(coefficients).wide("SENSORCOEFFICIENTZK").i32(20080104).i32(2).i32(0).i32(2).zeros(8).bytes();
    seeds["coefficient_record"] = recordingSeed(coefficientRecord, CCoefficientDatazk()).bytes();
    compareOrWrite("recording_fuzz", seeds);
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
