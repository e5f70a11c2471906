#pragma once
// The files of an acquisition written byte by byte, and the objects that they stand for. A dataset stores no trial in
// this form: the library writes none of these files.

#include "tests/persistence/datasetRecord.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace megset::acquisitionRecord {

using datasetRecord::flags;
using datasetRecord::named;
using datasetRecord::none;
using datasetRecord::recordBytes;
using datasetRecord::TrialList;

// ---- channels

/// Of channels and of trials.
inline constexpr std::int32_t version = 20200727;

inline ByteBuilder channelHeader(std::int32_t number = version)
{
    return ByteBuilder().wide("ACQMECHANNELZK").i32(number);
}

/// The channel that channelRecord::fill makes, or with other parts.
inline ByteBuilder channel(const channelRecord::Parts& parts = {})
{
    ByteBuilder bytes = channelHeader().append(channelRecord::identity()).append(parts.geometryType);
    if (parts.geometry)
        bytes.append(*parts.geometry);
    return bytes.append(parts.balance).append(parts.samples).append(channelRecord::rangeAndLabels());
}

/// A channel without geometry, of these samples alone.
inline ByteBuilder plainChannel(const std::vector<double>& samples)
{
    channelRecord::Parts parts;
    parts.geometryType = channelRecord::geometryType(-1, 0);
    parts.geometry = none(1);
    parts.balance = channelRecord::noBalance();
    parts.samples = ByteBuilder().i64(0).i32(0).i64(static_cast<std::int64_t>(samples.size())).i64(0).i32(1);
    parts.samples.doubles(samples);
    return channel(parts);
}

// ---- trials

using TrialParts = trialRecord::Parts;

inline ByteBuilder trialHeader(std::int32_t number = version)
{
    return ByteBuilder().wide("MEACQTRIALZK").i32(number);
}

/// A trial's file; what the form lacks of the parts is left out.
inline ByteBuilder trial(const TrialParts& parts)
{
    ByteBuilder bytes = trialHeader().append(parts.basic).append(parts.channels).append(parts.marks);
    return bytes.append(parts.head).append(trialRecord::montages(parts)).append(parts.probes).append(parts.resampling);
}

/// As trialRecord::channels.
inline ByteBuilder channels(int seed)
{
    ByteBuilder bytes = ByteBuilder().i32(seed);
    if (seed == 1)
        return bytes.i32(3).i32(1).i32(1).append(channel()).i32(0).i32(1).append(channel());
    return bytes.i32(2).i32(1).i32(0).i32(1).append(channel());
}

/// The sections of the trial that trialRecord::fill makes.
inline TrialParts filledTrial(int seed)
{
    TrialParts parts = trialRecord::filled(seed);
    parts.channels = channels(seed);
    return parts;
}

/// A trial of that name whose channels have these samples.
inline TrialParts namedTrial(const CString& name, const std::vector<std::vector<double>>& samples)
{
    TrialParts parts;
    parts.basic = ByteBuilder().i64(0).i32(1).i32(0).zeros(16).i32(1).i32(0).wide(name).wide("D:\\rec\\old.trla");
    parts.basic.i32(0).i32(1).i64(0).zeros(11 * 8);
    parts.channels = ByteBuilder().i32(0).i32(static_cast<std::int32_t>(samples.size())).i32(1);
    for (const std::vector<double>& one : samples)
        parts.channels.i32(1).append(plainChannel(one));
    return parts;
}

// ---- datasets

inline constexpr std::int32_t newest = 20220418;
inline constexpr std::array<std::int32_t, 2> versions = {20200727, 20220418};

/// The sections of the file; what the form lacks of a dataset's is left out.
struct Parts : datasetRecord::Parts
{
    Parts() { recordInfo = recordBytes(CMEGRecordInfozk()); }
    explicit Parts(const datasetRecord::Parts& parts) : datasetRecord::Parts(parts) {}

    ByteBuilder param4 = none(1);
};

inline ByteBuilder header(std::int32_t number)
{
    return ByteBuilder().wide("MEACQDATASETZK").i32(number);
}

inline ByteBuilder record(std::int32_t number, const Parts& parts)
{
    ByteBuilder bytes = header(number).append(parts.trials.today()).append(parts.head);
    for (const ByteBuilder& manager : parts.markers)
        bytes.append(manager);
    bytes.append(datasetRecord::filters(datasetRecord::newest, parts)).append(parts.recordInfo);
    bytes.append(parts.show).append(parts.showMore).wide(parts.processInfo).append(parts.roi);
    bytes.i32(parts.flagCount).append(parts.good).append(parts.shown).append(parts.select);
    if (number == newest)
        bytes.append(parts.param4);
    bytes.append(parts.cut).append(parts.eeg).append(parts.tail2).append(parts.tail5).append(parts.tail8);
    return bytes.i32(parts.tailE).append(parts.tailFG).append(parts.tailHIJ);
}

/// What an acquisition knows of its recording; the raw values are as given or those recorded.
inline ByteBuilder recordInfo(int seed, bool withRawValues)
{
    CMEGRecordInfozk info;
    fillRecordInfo(info);
    info.m_strAcqTextA = named("acquired", seed);
    if (!withRawValues) {
        info.m_nRawTotalSample = info.m_nRecTotalSample;
        info.m_nRawPreTrigPts = info.m_nRecPreTrigPts;
        info.m_dRawSampleRate = info.m_dRecSampleRate;
    }
    return recordBytes(info);
}

/// The sections of the dataset that `fill` makes, with raw values that are not the recorded ones.
inline Parts filled(int seed)
{
    Parts parts(datasetRecord::filled(seed));
    parts.recordInfo = recordInfo(seed, true);
    parts.param4 = flags({1000 * seed + 90, 1000 * seed + 91});
    return parts;
}

inline void fill(CMEGDatazk& dataset, int seed)
{
    datasetRecord::fill(dataset, seed);
    const TrialList list = datasetRecord::filledTrials(seed);
    dataset.m_strRecordFolder = list.folder;
    dataset.m_aRecordTrialPath.RemoveAll();
    for (const CString& path : list.paths)
        dataset.m_aRecordTrialPath.Add(path);
    dataset.m_strTrialFolder = "own folder\\";
    dataset.m_aTrialFilePath.RemoveAll();
    dataset.m_pChnlParam4 = std::make_unique<int[]>(2);
    dataset.m_pChnlParam4[0] = 1000 * seed + 90;
    dataset.m_pChnlParam4[1] = 1000 * seed + 91;
}

/// The sections after a file of that version has been read.
inline Parts afterReading(std::int32_t number, const Parts& file, int seed)
{
    Parts after = file;
    if (seed > 0)
        after.recordInfo = recordInfo(seed, false);
    if (number != newest)
        after.param4 = datasetRecord::selectNone(file); // made, where there are other flags
    return after;
}

inline std::vector<std::byte> stored(CMEGDatazk& dataset)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(dataset.serializeRecordWithoutTrials(ar), 1); });
}

inline int load(CMEGDatazk& dataset, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return dataset.serializeRecordWithoutTrials(*archive);
}

inline int load(CMEGDatazk& dataset, const ByteBuilder& bytes)
{
    return load(dataset, std::span(bytes.bytes()));
}

} // namespace megset::acquisitionRecord
