// The first files of the corpora of fuzz/acquisition_fuzz.cpp and fuzz/information_fuzz.cpp. With MEGSET_WRITE_SEEDS
// set the tests write them; otherwise they compare them.

#include "megset/core/CArrayMEDataSet.h"

#include "tests/fuzz/seedFiles.h"
#include "tests/persistence/acquisitionRecord.h"
#include "tests/persistence/informationFiles.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace megset::acquisitionSeeds_test {

namespace {

// The first byte of an input says what the rest is.
std::vector<std::byte> seed(std::uint8_t kind, const ByteBuilder& bytes)
{
    return ByteBuilder().u8(kind).append(bytes).bytes();
}

acquisitionRecord::Parts smallDataset()
{
    acquisitionRecord::Parts parts = acquisitionRecord::filled(1);
    parts.recordInfo = acquisitionRecord::Parts().recordInfo; // what it holds is recording_fuzz's
    return parts;
}

// With an electrode, a stimulus, a miscellaneous or an accelerator input.
ByteBuilder channelOfGeometry(int type)
{
    const auto record = [type] {
        switch (type) {
        case 2:
            return channelRecord::bytesOf(CEEGelectrodezk());
        case 3:
            return channelRecord::bytesOf(CStimTrigzk());
        case 4:
            return channelRecord::bytesOf(CMisceSnsrzk());
        default:
            return channelRecord::bytesOf(CSensorAcceleratorzk());
        }
    };
    channelRecord::Parts parts;
    parts.geometryType = channelRecord::geometryType(700, type);
    parts.geometry = ByteBuilder().i32(1).raw(record());
    return acquisitionRecord::channel(parts);
}

TEST(AcquisitionFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    namespace acq = acquisitionRecord;
    Seeds seeds;
    for (const std::int32_t version : acq::versions)
        seeds["dataset_" + std::to_string(version)] = seed(0, acq::record(version, smallDataset()));
    seeds["dataset_empty"] = seed(0, acq::record(acq::newest, acq::Parts()));
    seeds["dataset_unknown"] = seed(0, acq::header(20220419));
    acq::Parts slots = smallDataset();
    slots.trials.presence = 1;
    seeds["dataset_slots"] = seed(0, acq::record(acq::newest, slots));
    slots.trials.session = slots.trials.fileName = "";
    seeds["dataset_slots_unnamed"] = seed(0, acq::record(acq::newest, slots));
    seeds["trial"] = seed(1, acq::trial(acq::filledTrial(1)));
    seeds["trial_empty"] = seed(1, acq::trial(acq::TrialParts()));
    seeds["trial_small"] = seed(1, acq::trial(acq::namedTrial("T", {{1.0, 2.0}, {3.0, 4.0}})));
    seeds["trial_unknown"] = seed(1, acq::trialHeader(20200728));
    // The word that says whether a common reference follows may be any number, and 0 though one follows.
    acq::TrialParts montage = acq::filledTrial(1);
    montage.presenceWord = -5;
    seeds["trial_presence"] = seed(1, acq::trial(montage));
    montage.presenceWord = 0;
    seeds["trial_montage_unseen"] = seed(1, acq::trial(montage));
    acq::TrialParts many;
    many.channels = ByteBuilder().i32(0).i32(INT32_MAX).i32(1);
    seeds["trial_impossible_count"] = seed(1, acq::trial(many));
    seeds["channel"] = seed(2, acq::channel());
    seeds["channel_plain"] = seed(2, acq::plainChannel({1.0, 2.0, 3.0}));
    seeds["channel_unknown"] = seed(2, acq::channelHeader(20200801));
    for (const int type : {2, 3, 4, 5})
        seeds["channel_geometry_" + std::to_string(type)] = seed(2, channelOfGeometry(type));
    compareOrWrite("acquisition_fuzz", seeds);
}

TEST(AcquisitionFuzzSeeds, AllKnownVersionsLoad)
{
    namespace acq = acquisitionRecord;
    for (const std::int32_t version : acq::versions) {
        const ByteBuilder bytes = acq::record(version, smallDataset());
        LoadingArchive archive(bytes);
        EXPECT_EQ(std::make_unique<CMEGDatazk>()->serializeRecordWithoutTrials(*archive), 1) << version;
        EXPECT_EQ(archive->bytesLeft(), 0U) << version;
    }
    const ByteBuilder trial = acq::trial(acq::filledTrial(1));
    LoadingArchive archive(trial);
    EXPECT_EQ(std::make_unique<CMDTrialzk>()->serializeAcq(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
}

TEST(AcquisitionFuzzSeeds, ChannelsOfEveryGeometryLoad)
{
    for (const int type : {2, 3, 4, 5}) {
        const ByteBuilder bytes = channelOfGeometry(type);
        LoadingArchive archive(bytes);
        CMDChannelzk channel;
        EXPECT_EQ(channel.serializeAcqzk(*archive), 1) << type;
        EXPECT_EQ(archive->bytesLeft(), 0U) << type;
        EXPECT_NE(channel.m_pGeomHw, nullptr) << type;
    }
}

TEST(InformationFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    const ByteBuilder electrodes =
        electrodeFile({electrodeEntry(302, 1), noElectrode(), electrodeEntry(303, 2), electrodeEntry(101, 3)});
    const ByteBuilder probes = seegFile({1, -1, 2});
    const ByteBuilder dataset = datasetRecord::record(datasetRecord::newest, datasetRecord::Parts());
    const ByteBuilder header = ByteBuilder().wide("ARRAYMEGDATASETZK").i32(20160909);
    Seeds seeds;
    seeds["electrodes"] = seed(0, electrodes);
    seeds["electrodes_all"] = seed(1, electrodes);
    seeds["electrodes_none"] = seed(0, electrodeFile({}));
    seeds["electrodes_too_many"] = seed(0, electrodeHeader().i32(INT32_MAX));
    seeds["probes"] = seed(2, probes);
    seeds["probes_all"] = seed(3, probes);
    seeds["probes_absent"] = seed(2, seegHeader().i32(0));
    seeds["probes_too_many"] = seed(3, seegHeader().i32(1).i64(INT64_MAX));
    seeds["array_empty"] = seed(4, ByteBuilder(header).i32(0).i32(0));
    seeds["array"] = seed(4, ByteBuilder(header).i32(1).i32(3).i32(0).i32(1).append(dataset).i32(1).append(dataset));
    // The magic, a rate, and a name in 257 bytes.
    seeds["exchange"] = seed(5, ByteBuilder().raw({'M', 'E', 'G', 'T'}).f64(600.0).zeros(257));
    compareOrWrite("information_fuzz", seeds);
}

// What a target's first byte chooses must be reached by a seed, or the target would never come to its fields.
TEST(InformationFuzzSeeds, ReachTheLastByteOfEachFormat)
{
    CMEGDatazk dataset;
    ASSERT_EQ(dataset.initMEGData(1, 4, 1), 1);
    const auto behindKind = [](const char* name) {
        std::vector<std::byte> bytes = seedFile("information_fuzz", name);
        bytes.erase(bytes.begin());
        return bytes;
    };
    LoadingArchive electrodes(behindKind("electrodes"));
    EXPECT_EQ(dataset.serializeElectrodeInfo(*electrodes, false), 1);
    EXPECT_EQ(electrodes->bytesLeft(), 0U);
    EXPECT_EQ(labelOf(*dataset.getMDTrial(0)->getChannel(0)), CString("E1"));
    LoadingArchive probes(behindKind("probes_all"));
    EXPECT_EQ(dataset.serializeSeegInfo(*probes, 1), 1);
    EXPECT_EQ(probes->bytesLeft(), 0U);
    EXPECT_EQ(dataset.getMDTrial(0)->m_aSeegProbe.GetSize(), 2);
    LoadingArchive array(behindKind("array"));
    CArrayMEDataSetzk datasets;
    EXPECT_EQ(datasets.serializeWithoutTrials(*array), 1);
    EXPECT_EQ(array->bytesLeft(), 0U);
    EXPECT_EQ(datasets.getTotalDataset(), 2);
}

TEST(AcquisitionFuzzSeeds, ReachTheLastByteOfEachFormat)
{
    for (const char* name : {"dataset_20200727", "dataset_20220418", "trial", "channel"}) {
        std::vector<std::byte> bytes = seedFile("acquisition_fuzz", name);
        const int kind = std::to_integer<int>(bytes.at(0));
        bytes.erase(bytes.begin());
        LoadingArchive archive(bytes);
        CMEGDatazk dataset;
        CMDTrialzk trial;
        CMDChannelzk channel;
        EXPECT_EQ(kind == 0   ? dataset.serializeRecordWithoutTrials(*archive)
                  : kind == 1 ? trial.serializeAcq(*archive)
                              : channel.serializeAcqzk(*archive),
                  1)
            << name;
        EXPECT_EQ(archive->bytesLeft(), 0U) << name;
    }
}

} // namespace

} // namespace megset::acquisitionSeeds_test
