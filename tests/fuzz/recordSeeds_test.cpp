// The first files of the corpora of fuzz/channel_fuzz.cpp and fuzz/trial_fuzz.cpp: records of several versions, with
// all that they may hold. With MEGSET_WRITE_SEEDS set the tests write them; otherwise they compare them.

#include "megset/core/CMDTrialzk.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include "tests/fuzz/seedFiles.h"
#include "tests/persistence/channelRecord.h"

#include <memory>
#include <string>
#include <vector>

namespace megset::recordSeeds_test {
namespace {

// ---- channels

std::unique_ptr<CSpctmChnlzk> spectrum()
{
    auto made = std::make_unique<CSpctmChnlzk>();
    made->initSpctmSpace(2, 3, true, 1, 1);
    made->m_pSpctmR[1] = 1.5;
    made->storeData2Backupfile();
    return made;
}

/// A channel with one of each optional thing, and a geometry of that type.
void fillWhole(CMDChannelzk& channel, int geometry)
{
    channelRecord::fill(channel);
    channel._initGeomHw(geometry);
    if (geometry == 5)
        channel.m_pGeomHw = std::make_unique<CSensorAcceleratorzk>();
    channel.m_nGeomType = geometry;
    channel.m_pSpctmChnlA = spectrum();
    channel.m_pSpctmChnlR = spectrum();
    channel.m_pWaveResultA = std::make_unique<CChnlWaveAnalyzedResultzk>(channelRecord::waveResult(1));
    channel.m_pWaveResultC = std::make_unique<CChnlWaveAnalyzedResultzk>(channelRecord::waveResult(2));
    channel.m_pWaveResultX = std::make_unique<CChnlWaveAnalyzedResultzk>(channelRecord::waveResult(3));
    channel.m_pShowShrink = std::make_unique<SHOW_SHRINK_DATAF>();
    SHOW_SHRINK_DATAF& buffer = *channel.m_pShowShrink;
    buffer.m_nSrcSample = 2;
    buffer.m_nBinSample = 1;
    buffer.m_nBinCount = 2;
    buffer.m_pMax = tryNewZeroArray<float>(2);
    buffer.m_pMin = tryNewZeroArray<float>(2);
}

TEST(ChannelFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    using namespace channelRecord;
    Seeds seeds;
    for (const std::int32_t version : versionsWithFields)
        seeds["version_" + std::to_string(version)] = record(version).bytes();
    seeds["version_20080216"] = record(20080216).bytes();
    seeds["version_unknown"] = record(20200802).bytes();
    for (const std::int32_t version : {20021120, 20030219, 20030309, 20030821})
        seeds["version_" + std::to_string(version)] = header(version).bytes();
    for (int geometry = 0; geometry <= 5; ++geometry) {
        CMDChannelzk channel;
        fillWhole(channel, geometry);
        seeds["geometry_" + std::to_string(geometry)] = stored(channel);
    }
    Parts parts;
    parts.geometryType = geometryType(600, 3);
    parts.geometry.reset();
    parts.balance = noBalance();
    seeds["stimulus_without_guard"] = record(20140513, parts).bytes();
    parts = {};
    parts.samples = ByteBuilder().i64(9).i32(0).i64(100).i64(50).i32(1).zeros(800);
    seeds["hundred_samples"] = record(newest, parts).bytes();
    parts.samples = ByteBuilder().i64((std::int64_t{1} << 32) + 1).i32(1).f64(1);
    seeds["impossible_count"] = record(newest, parts).bytes();
    compareOrWrite("channel_fuzz", seeds);
}

// ---- trials, section by section

template <class Serialize>
ByteBuilder guarded(Serialize serialize)
{
    return ByteBuilder().i32(1).raw(storedBytes([&](CArchive& ar) { EXPECT_EQ(serialize(ar), 1); }));
}

ByteBuilder basics(std::int32_t reservedB)
{
    ByteBuilder bytes;
    bytes.i64(1).i32(1).i32(1).zeros(16).i32(reservedB).i32(7).wide("trial").wide("D:\\a.trl").i32(0).i32(1).i64(4);
    return bytes.doubles({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
}

/// Four places: two channels of today, an empty place, and an empty channel of an old version.
ByteBuilder channels()
{
    CMDChannelzk sensor;
    fillWhole(sensor, 1);
    CMDChannelzk electrode;
    fillWhole(electrode, 2);
    electrode.m_nChannelType = 302;
    ByteBuilder bytes = ByteBuilder().i32(1).i32(4).i32(1);
    bytes.i32(1).raw(channelRecord::stored(sensor)).i32(0).i32(1).raw(channelRecord::stored(electrode));
    return bytes.i32(1).append(channelRecord::header(20080101));
}

SourceGrid grid()
{
    SourceGrid made;
    made.m_nX = 2;
    made.m_nY = made.m_nZ = 1;
    return made;
}

ByteBuilder sourceImage()
{
    CVolumSourcImagzk image;
    image.setSize(grid(), 2);
    CFaceVolumSourceImagezk face;
    face.addSam3Dzk(&image, true);
    return guarded([&](CArchive& ar) { return face.serializeSAMFace(ar); });
}

ByteBuilder sourceCoherence()
{
    CVolumSourcCoherencImagzk image;
    image.setSize(grid(), {10.0, 20.0});
    CFaceVolumSourceCoherenceImagezk face;
    face.addSam3Dzk(&image, true);
    return guarded([&](CArchive& ar) { return face.serializeFaceVlmSrcNtwk(ar); });
}

ByteBuilder trialSpectra()
{
    CSpctmTrialzk spectra;
    spectra.setSpctmTimePtFreqPt(2, 3, 1);
    spectra._checkInitTrlSpctmData(0, 2, 3);
    return guarded([&](CArchive& ar) { return spectra.serializeTrlSpctmZk(ar); }).append(channelRecord::none(2));
}

ByteBuilder triggerMarks()
{
    return ByteBuilder().i64(1).f64(2).i32(3).wide("mark").i64(4).i64(5);
}

ByteBuilder headLocation()
{
    CHeadLocalizationzk head;
    return ByteBuilder().raw(storedBytes([&](CArchive& ar) { head.serializezk(ar); }));
}

ByteBuilder sensorCoherence()
{
    CSnsCohDatazk data;
    data.setSize(1, 2, 2);
    CSnsCohFacezk face;
    face.addCoherenceData(&data);
    return guarded([&](CArchive& ar) { return face.serialize(ar); });
}

ByteBuilder crossSpectra()
{
    CMEGSpctmCCDataFacezk face;
    face.m_aTrlData[0].emplace();
    face.m_aTrlData[0]->setSize({0, 1}, 1, 2);
    face.m_aTrlData[0]->initPlanes(2);
    return guarded([&](CArchive& ar) { return face.serializeSpctmFace(ar); });
}

CFaceVirtChnlWavezk virtualWave()
{
    CVirtChnlWavezk wave;
    wave.m_aWave = {1.0, 2.0};
    CFaceVirtChnlWavezk face;
    face.m_nTotalSample = 2;
    face.addVirtChnlWave(&wave);
    return face;
}

ByteBuilder virtualWaves(bool package)
{
    CFaceVirtChnlWavezk face = virtualWave();
    if (!package)
        return guarded([&](CArchive& ar) { return face.serializezk(ar); });
    CPkgFaceVirtChnlWavezk waves;
    waves.addFaceVirtChnlWave(&face);
    return ByteBuilder().raw(storedBytes([&](CArchive& ar) { waves.serializezk(ar); }));
}

ByteBuilder virtualSpectraAndCoherence()
{
    CFaceVirtChnlSpctmzk spectra;
    spectra.m_nTimePt = 1;
    spectra.m_nFreqPt = 2;
    CVirtChnlSpctmzk channel;
    channel.m_aPlane[0] = {1.0, 2.0};
    spectra.addVirtChnlSpctm(&channel);
    CSrcCohFacezk coherence;
    coherence.setSize(1, 2, 1);
    coherence.m_aSource.resize(2);
    return guarded([&](CArchive& ar) { return spectra.serializeSpctmC(ar); }).append(guarded([&](CArchive& ar) {
        return coherence.serialize(ar);
    }));
}

ByteBuilder montages(std::int32_t presence)
{
    CMtgUnit4CommonRefzk common;
    common.m_strMtgName = "average";
    common.m_aMtgChannels.Add(std::make_unique<CMtgChnlIdNamezk>());
    common.m_aMtgOperators.Add(std::make_unique<CMtgChnlOperatorzk>());
    CMtgUnit4IndividualRefzk individual;
    individual.m_aMtgRefOperators.Add(std::make_unique<CMtgChnlOperatorzk>());
    ByteBuilder bytes = ByteBuilder().i32(1).i32(0).i32(presence);
    bytes.raw(storedBytes([&](CArchive& ar) { common.serialize(ar); })).i64(2).i32(0);
    return bytes.append(guarded([&](CArchive& ar) { return individual.serialize(ar); }));
}

ByteBuilder components()
{
    CFaceIcazk ica;
    ica.setSize({0, 1}, 1, 2);
    return guarded([&](CArchive& ar) { return ica.serialize(ar); });
}

ByteBuilder probes()
{
    CSeegProbezk probe;
    probe.setUserContact(2, 3.5);
    ByteBuilder bytes = ByteBuilder().i32(2).i32(2).i32(0);
    return bytes.append(guarded([&](CArchive& ar) { return probe.serializezk(ar); }));
}

ByteBuilder waveResult()
{
    CTrlWaveAnalyzedResultzk result;
    result.setSummary({});
    return ByteBuilder().raw(storedBytes([&](CArchive& ar) { result.serialize(ar); }));
}

/// A trial of that version with one of everything; each number brings what the ones before it have, too.
ByteBuilder trialRecord(std::int32_t version, std::int32_t reservedB = 1, std::int32_t presence = 1)
{
    const bool today = version == 20190730 || version == 20190906;
    const auto since = [&](std::int32_t first) { return today || version >= first; };
    ByteBuilder bytes = ByteBuilder().wide("MEGTRIALZK").i32(version).append(basics(reservedB)).append(channels());
    bytes.append(sourceImage());
    if (since(20130212))
        bytes.append(sourceCoherence());
    bytes.append(trialSpectra()).append(triggerMarks()).append(headLocation());
    if (since(20080601))
        bytes.append(sensorCoherence());
    if (since(20100419))
        bytes.append(crossSpectra());
    if (since(20120228))
        bytes.append(virtualWaves(version == 20190730)).append(virtualSpectraAndCoherence());
    if (since(20160704))
        bytes.append(montages(presence));
    if (since(20161110))
        bytes.append(components());
    if (since(20161122))
        bytes.append(probes());
    if (today)
        bytes.append(waveResult());
    if (since(20120618))
        bytes.i32(1).i64(2);
    return bytes;
}

TEST(TrialFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    Seeds seeds;
    for (const std::int32_t version : {20080229, 20080601, 20091228, 20100419, 20120228, 20120618, 20130212, 20160704,
                                       20161110, 20161122, 20190906, 20190730})
        seeds["version_" + std::to_string(version)] = trialRecord(version).bytes();
    seeds["version_unknown"] = trialRecord(20190609).bytes();
    seeds["presence_without_reserve"] = trialRecord(20190730, 0, -5).bytes();
    seeds["montage_unseen"] = trialRecord(20190730, 1, 0).bytes();
    CMDTrialzk empty;
    seeds["empty"] = storedBytes([&](CArchive& ar) { EXPECT_EQ(empty.serializezk(ar), 1); });
    compareOrWrite("trial_fuzz", seeds);
}

TEST(TrialFuzzSeeds, AllKnownVersionsLoad)
{
    for (const std::int32_t version : {20080229, 20080601, 20091228, 20100419, 20120228, 20120618, 20130212, 20160704,
                                       20161110, 20161122, 20190906, 20190730}) {
        const ByteBuilder bytes = trialRecord(version);
        LoadingArchive archive(bytes);
        CMDTrialzk trial;
        EXPECT_EQ(trial.serializezk(*archive), 1) << version;
        EXPECT_EQ(archive->bytesLeft(), 0U) << version;
    }
}

} // namespace
} // namespace megset::recordSeeds_test
