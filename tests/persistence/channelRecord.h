#pragma once
// A channel's record written byte by byte, section by section, for every version, and the channel that it stands for.

#include "megset/core/CMDChannelzk.h"
#include "megset/records/records.h"

#include "tests/kit/memoryArchive.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace megset::channelRecord {

inline constexpr std::int32_t newest = 20200801;
inline constexpr std::int32_t versionsWithFields[] = {20090726, 20140513, 20150707, 20190112,
                                                      20190609, 20190723, 20200801};

/// Who the channel is: fields 3 to 18.
inline ByteBuilder identity()
{
    ByteBuilder bytes;
    bytes.i32(3).f64(4.5).f64(5.5).f64(6.5).i32(7).i32(8).i32(9).i64(std::int64_t{10} << 32).i32(11).i32(12).i32(13);
    return bytes.f64(14.5).f64(15.5).f64(16.5).wide("working").wide("raw");
}

/// Fields 19 to 23.
inline ByteBuilder range()
{
    return ByteBuilder().i32(19).f64(20.5).f64(21.5).f64(22.5).f64(23.5);
}

/// Fields 19 to 30; 28 and 29 are the second copies of 15 and 16.
inline ByteBuilder rangeAndLabels(double paramK = 15.5, double paramL = 16.5)
{
    ByteBuilder bytes = range();
    return bytes.f64(24.5).f64(25.5).wide("label A").wide("label B").f64(paramK).f64(paramL).f64(30.5);
}

/// Fields 31 to 33.
inline ByteBuilder geometryType(std::int32_t channelType, std::int32_t geomType)
{
    return ByteBuilder().wide("type").i32(channelType).i32(geomType);
}

/// Fields 35 to 38 with two entries, and with none.
inline ByteBuilder balance()
{
    ByteBuilder bytes;
    bytes.i32(35).i32(2).i32(1);
    return bytes.i32(7).wide("G1").f64(0.25).i32(8).wide("G2").f64(-0.5);
}
inline ByteBuilder noBalance()
{
    return ByteBuilder().i32(0).i32(0).i32(0);
}

/// Fields 39 to 45: three backup and two working samples, the second of them current.
inline ByteBuilder samples()
{
    ByteBuilder bytes;
    bytes.i64(3).i32(1).doubles({1.5, 2.5, 3.5});
    return bytes.i64(2).i64(1).i32(1).doubles({-1.5, -2.5});
}

/// Guards of 0.
inline ByteBuilder none(int count)
{
    return ByteBuilder().zeros(4 * static_cast<std::size_t>(count));
}

inline CMEGSensorzk sensor()
{
    CMEGSensorzk record;
    record.m_strSensorName = "sensor";
    record.setSnsPos(-1, 0, 1.0, 2.0, 3.0);
    return record;
}

template <class Record>
std::vector<std::byte> bytesOf(Record record)
{
    return storedBytes([&](CArchive& ar) { record.serializezk(ar); });
}

inline CChnlWaveAnalyzedResultzk waveResult(std::int32_t kind)
{
    CChnlWaveAnalyzedResultzk result;
    CWadXzk wad;
    wad.m_nKind = kind;
    wad.m_aValue = {1.0, 2.0};
    result.addWadX(&wad);
    return result;
}

inline std::vector<std::byte> bytesOfWaveResult(std::int32_t kind)
{
    CChnlWaveAnalyzedResultzk result = waveResult(kind);
    return storedBytes([&](CArchive& ar) { result.serialize(ar); });
}

/// What of a record may differ from test to test.
struct Parts
{
    ByteBuilder geometryType = channelRecord::geometryType(101, 1);
    std::optional<ByteBuilder> geometry = ByteBuilder().i32(1).raw(bytesOf(sensor())); ///< guard and record
    ByteBuilder balance = channelRecord::balance();
    ByteBuilder samples = channelRecord::samples();
    ByteBuilder spectra = none(3);
    ByteBuilder waveResults = none(3);
    ByteBuilder shrink = none(1);
};

inline ByteBuilder header(std::int32_t version)
{
    return ByteBuilder().wide("MEGCHANNELZK").i32(version);
}

/// The record of a version; of the two that hold nothing, the header alone.
inline ByteBuilder record(std::int32_t version, const Parts& parts = {})
{
    ByteBuilder bytes = header(version);
    if (version < 20090726)
        return bytes;
    const bool today = version >= 20190609;
    bytes.append(identity());
    if (today)
        bytes.append(rangeAndLabels());
    bytes.append(parts.geometryType);
    if (parts.geometry)
        bytes.append(*parts.geometry);
    bytes.append(parts.balance).append(parts.samples).append(parts.spectra);
    if (version == 20140513)
        bytes.append(range());
    else if (version == 20150707 || version == 20190112)
        bytes.append(rangeAndLabels());
    if (today)
        bytes.append(parts.waveResults);
    if (version >= 20190723)
        bytes.append(parts.shrink);
    return bytes;
}

/// What the oldest versions don't hold.
inline void fillRangeAndLabels(CMDChannelzk& channel)
{
    channel.m_nChnlRangeState = 19;
    channel.m_dDataMin = 20.5;
    channel.m_dDataMean = 21.5;
    channel.m_dDataMax = 22.5;
    channel.m_dDataMaxAbs = 23.5;
    channel.m_dPhysicalMin = 24.5;
    channel.m_dPhysicalMax = 25.5;
    channel.m_strChnlLabelA = "label A";
    channel.m_strChnlLabelB = "label B";
    channel.m_dChnlParamM = 30.5;
}

/// The channel that the newest record above is of.
inline void fill(CMDChannelzk& channel)
{
    channel.m_nMegListID = 3;
    channel.m_dChnlParamA = 4.5;
    channel.m_dSns2dX = 5.5;
    channel.m_dSns2dY = 6.5;
    channel.m_nChnlParamE = 7;
    channel.m_nChnlParamD = 8;
    channel.m_nChnlParamF = 9;
    channel.m_nChnlParamG = std::int64_t{10} << 32;
    channel.m_nSnsGainApplied = 11;
    channel.m_nChnlParamH = 12;
    channel.m_nChnlParamI = 13;
    channel.m_dChnlParamJ = 14.5;
    channel.m_dChnlParamK = 15.5;
    channel.m_dChnlParamL = 16.5;
    channel.m_strChannelName = "working";
    channel.m_strChannelNameRaw = "raw";
    fillRangeAndLabels(channel);
    channel.m_strChannelTypeName = "type";
    channel.m_nChannelType = 101;
    channel.m_nGeomType = 1;
    channel.m_pGeomHw = std::make_unique<CMEGSensorzk>(sensor());
    channel.m_nMegBalMode = 35;
    channel.m_nMegChnlNumBal = 2;
    channel.m_pMegBalInf = std::make_unique<MEG_BalInfo[]>(2);
    channel.m_pMegBalInf[0] = {0.25, 7, "G1"};
    channel.m_pMegBalInf[1] = {-0.5, 8, "G2"};
    channel.initDataBk(2, 3, true);
    for (int i = 0; i < 3; ++i)
        channel.m_pBkData[static_cast<std::size_t>(i)] = i + 1.5;
    channel.m_pDataWave[0] = -1.5;
    channel.m_pDataWave[1] = -2.5;
    channel.m_nCurrentSample = 1;
}

inline std::vector<std::byte> stored(CMDChannelzk& channel)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(channel.serializezk(ar), 1); });
}

inline int load(CMDChannelzk& channel, const ByteBuilder& bytes)
{
    LoadingArchive archive(bytes);
    return channel.serializezk(*archive);
}

} // namespace megset::channelRecord
