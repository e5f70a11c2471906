#pragma once
// A dataset for electrode and SEEG files, and these files byte by byte.

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/brokenFiles.h"
#include "tests/persistence/trialRecord.h"

#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace megset {

inline CEEGelectrodezk electrode(int seed)
{
    CEEGelectrodezk made;
    made.m_strElectrodeLabel = CString::formatted("E%d", seed);
    made.setElectrodePositionD(seed, seed + 0.25, seed + 0.5);
    return made;
}

/// Makes the channel one with that electrode.
inline void makeElectrode(CMDChannelzk& channel, int type, int seed)
{
    channel._initGeomHw(2);
    channel.m_nChannelType = type;
    *channel.getEegElectrode(0) = electrode(seed);
}

/// Label of the channel's electrode; empty without one.
inline CString labelOf(const CMDChannelzk& channel)
{
    const auto* own = dynamic_cast<const CEEGelectrodezk*>(channel.m_pGeomHw.get());
    return own != nullptr && channel.m_nGeomType == 2 ? own->m_strElectrodeLabel : CString();
}

// ---- files

inline ByteBuilder electrodeHeader(std::int32_t version = 20170726)
{
    return ByteBuilder().wide("ELECTRODINFOFILE").i32(version);
}

/// A channel's entry, and that of a channel without an electrode.
inline ByteBuilder electrodeEntry(int type, int seed)
{
    return ByteBuilder().i32(1).i32(type).raw(trialRecord::bytesOf(electrode(seed)));
}
inline ByteBuilder noElectrode()
{
    return ByteBuilder().i32(0);
}

inline ByteBuilder electrodeFile(const std::vector<ByteBuilder>& entries)
{
    ByteBuilder bytes = electrodeHeader().i32(static_cast<std::int32_t>(entries.size()));
    for (const ByteBuilder& entry : entries)
        bytes.append(entry);
    return bytes;
}

inline ByteBuilder seegHeader(std::int32_t version = 20171006)
{
    return ByteBuilder().wide("SEEGINFO").i32(version);
}

/// A file with these probes, null entries for seeds below 0.
inline ByteBuilder seegFile(const std::vector<int>& seeds)
{
    ByteBuilder bytes = seegHeader().i32(1).i64(static_cast<std::int64_t>(seeds.size()));
    for (const int seed : seeds)
        bytes.append(seed < 0 ? ByteBuilder().i32(0) : trialRecord::guarded(trialRecord::probe(seed)));
    return bytes;
}

/// Three trials of four channels, the first one opened.
class InformationFiles : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(data.openTrial(0), 1); }
    CMDChannelzk& channel(int index) const { return *data.getCurrentTrialPt()->getChannel(index); }
    std::vector<CString> labels() const
    {
        std::vector<CString> all;
        for (int i = 0; i < data.getTotalChannel(-1); ++i)
            all.push_back(labelOf(channel(i)));
        return all;
    }
    /// Labels of a trial as its file has them.
    std::vector<CString> labelsInFile(int trial) const
    {
        std::vector<CString> all;
        const auto read = filed.readTrial(trial);
        for (int i = 0; i < read->getTotalChannel(); ++i)
            all.push_back(labelOf(*read->getChannel(i)));
        return all;
    }
    static std::vector<CString> namesOf(const CMDTrialzk& trial)
    {
        std::vector<CString> names;
        for (int i = 0; i < trial.m_aSeegProbe.GetSize(); ++i)
            names.push_back(trial.m_aSeegProbe[i] != nullptr ? trial.m_aSeegProbe[i]->m_strProbeName : "null");
        return names;
    }
    CString path(const CString& name) const { return filed.folder.path(name); }
    CString write(const CString& name, const ByteBuilder& bytes) const
    {
        return filed.folder.write(name, bytes.bytes());
    }
    std::vector<std::byte> storedElectrodes()
    {
        return storedBytes([&](CArchive& ar) { EXPECT_EQ(data.serializeElectrodeInfo(ar, false), 1); });
    }
    std::vector<std::byte> storedProbes()
    {
        return storedBytes([&](CArchive& ar) { EXPECT_EQ(data.serializeSeegInfo(ar, 0), 1); });
    }
    int loadElectrodes(std::span<const std::byte> bytes, bool all = false)
    {
        return tryLoading(bytes, [&](CArchive& ar) { return data.serializeElectrodeInfo(ar, all); });
    }
    int loadElectrodes(const ByteBuilder& bytes, bool all = false)
    {
        return loadElectrodes(std::span(bytes.bytes()), all);
    }
    int loadProbes(std::span<const std::byte> bytes, int all = 0)
    {
        return tryLoading(bytes, [&](CArchive& ar) { return data.serializeSeegInfo(ar, all); });
    }
    int loadProbes(const ByteBuilder& bytes, int all = 0) { return loadProbes(std::span(bytes.bytes()), all); }

    FiledDataset filed{3, 4, 2};
    CMEGDatazk& data = filed.data;
    ScriptedHost host;
};

} // namespace megset
