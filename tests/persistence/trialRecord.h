#pragma once
// A trial's file written byte by byte, section by section, for every version, and the trial that it stands for.

#include "megset/core/CMDTrialzk.h"
#include "megset/spectral/CSpctmTrialzk.h"

#include "tests/persistence/channelRecord.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace megset::trialRecord {

inline constexpr std::int32_t newest = 20190730;
/// In the order of their release.
inline constexpr std::array<std::int32_t, 12> versions = {20080229, 20080601, 20091228, 20100419, 20120228, 20120618,
                                                          20130212, 20160704, 20161110, 20161122, 20190906, 20190730};

/// Places in `versions` of those that brought a section.
enum Since
{
    withCoherence = 1,
    withCrossSpectra = 3,
    withVirtual = 4,
    withResampling = 5,
    withSourceCoherence = 6,
    withMontages = 7,
    withComponents = 8,
    withProbes = 9,
    withWaveResult = 10,
    withPackage = 11
};

inline int placeOf(std::int32_t version)
{
    return static_cast<int>(std::distance(versions.begin(), std::find(versions.begin(), versions.end(), version)));
}

// ---- inner records

template <class Record>
int exchangeRecord(CArchive& ar, Record& record)
{
    if constexpr (requires { record.serializeSAMFace(ar); })
        return record.serializeSAMFace(ar);
    else if constexpr (requires { record.serializeFaceVlmSrcNtwk(ar); })
        return record.serializeFaceVlmSrcNtwk(ar);
    else if constexpr (requires { record.serializeTrlSpctmZk(ar); })
        return record.serializeTrlSpctmZk(ar);
    else if constexpr (requires { record.serializeSpctmFace(ar); })
        return record.serializeSpctmFace(ar);
    else if constexpr (requires { record.serializeSpctmC(ar); })
        return record.serializeSpctmC(ar);
    else if constexpr (requires { record.serializezk(ar); })
        return record.serializezk(ar);
    else
        return record.serialize(ar);
}

template <class Record>
std::vector<std::byte> bytesOf(Record&& record)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(exchangeRecord(ar, record), 1); });
}

/// A guard of 1 and the record.
template <class Record>
ByteBuilder guarded(Record&& record)
{
    return ByteBuilder().i32(1).raw(bytesOf(record));
}

inline CString named(const char* what, int seed)
{
    return CString::formatted("%s%d", CString(what), seed);
}

// One object of each kind; the seed tells it from others.

inline CFaceVolumSourceImagezk volumeSource(int seed)
{
    CFaceVolumSourceImagezk face;
    face.m_nCurrentImage = seed;
    return face;
}

inline CFaceVolumSourceCoherenceImagezk volumeSourceCoherence(int seed)
{
    CFaceVolumSourceCoherenceImagezk face;
    face.m_nCurrentImage = seed;
    return face;
}

inline void fillSpectrum(CSpctmTrialzk& spectrum, const char* name, int seed)
{
    spectrum.m_strLabelR = named(name, seed);
}

inline std::vector<std::byte> bytesOfSpectrum(const char* name, int seed)
{
    CSpctmTrialzk spectrum;
    fillSpectrum(spectrum, name, seed);
    return bytesOf(spectrum);
}

inline CHeadLocalizationzk head(int seed)
{
    CHeadLocalizationzk record;
    record.m_nWorkCoordinate = seed;
    return record;
}

inline CSnsCohFacezk coherence(int seed)
{
    CSnsCohFacezk face;
    face.m_nCurrentData = seed;
    return face;
}

inline CMEGSpctmCCDataFacezk crossSpectra(int seed)
{
    CMEGSpctmCCDataFacezk face;
    face.getCCSpctmTrlData4Class(seed % 3, true);
    return face;
}

inline CFaceVirtChnlWavezk wave(int seed)
{
    CFaceVirtChnlWavezk face;
    face.m_strFaceName = named("wave", seed);
    return face;
}

inline CPkgFaceVirtChnlWavezk package(int seed)
{
    CPkgFaceVirtChnlWavezk all;
    const CFaceVirtChnlWavezk one = wave(seed);
    all.addFaceVirtChnlWave(&one);
    return all;
}

inline CFaceVirtChnlSpctmzk virtualSpectra(int seed)
{
    CFaceVirtChnlSpctmzk face;
    face.m_nCurrentChannel = seed;
    return face;
}

inline CSrcCohFacezk sourceCoherence(int seed)
{
    CSrcCohFacezk face;
    face.m_aSource.resize(1);
    face.m_aSource[0].m_strSourceName = named("source", seed);
    return face;
}

inline CMtgUnit4CommonRefzk commonReference(int seed)
{
    CMtgUnit4CommonRefzk unit;
    unit.m_strMtgName = named("common", seed);
    return unit;
}

inline CMtgUnit4IndividualRefzk individualReference(int seed)
{
    CMtgUnit4IndividualRefzk unit;
    unit.m_strMtgTargetName = named("individual", seed);
    return unit;
}

inline CFaceIcazk components(int seed)
{
    CFaceIcazk face;
    face.m_nDataBegin = seed;
    return face;
}

inline CSeegProbezk probe(int seed)
{
    CSeegProbezk record;
    record.m_strProbeName = named("probe", seed);
    return record;
}

inline CTrlWaveAnalyzedResultzk waveResult(int seed)
{
    CTrlWaveAnalyzedResultzk result;
    result.m_nCurrentKind = seed;
    return result;
}

// ---- sections

/// Guards of 0.
inline ByteBuilder none(int count)
{
    return channelRecord::none(count);
}

/// A file's sections as bytes; by default those of a new trial. What a test wants to be different it replaces.
struct Parts
{
    ByteBuilder basic = newBasic();
    int presenceWord = 1; ///< the word for units in use, which the section above holds as well
    ByteBuilder channels = none(3);
    ByteBuilder volumeSource = none(1);
    ByteBuilder volumeSourceCoherence = none(1);
    ByteBuilder spectra = none(3);
    ByteBuilder marks = ByteBuilder().i64(0).f64(0.0).i32(0).wide("").i64(-1).i64(0);
    ByteBuilder head = ByteBuilder().raw(bytesOf(CHeadLocalizationzk()));
    ByteBuilder coherence = none(1);
    ByteBuilder crossSpectra = none(1);
    ByteBuilder oneWave = none(1); ///< of the old form
    ByteBuilder package = ByteBuilder().raw(bytesOf(CPkgFaceVirtChnlWavezk()));
    ByteBuilder virtualSpectra = none(1);
    ByteBuilder sourceCoherence = none(1);
    ByteBuilder montageFlags = none(2);
    ByteBuilder commonReference; ///< the unit's record, without a guard; empty without a unit
    ByteBuilder individualReferences = ByteBuilder().i64(0);
    ByteBuilder components = none(1);
    ByteBuilder probes = none(2);
    ByteBuilder waveResult = ByteBuilder().raw(bytesOf(CTrlWaveAnalyzedResultzk()));
    ByteBuilder resampling = ByteBuilder().i32(0).i64(1);

    static ByteBuilder newBasic()
    {
        ByteBuilder bytes = ByteBuilder().i64(0).i32(1).i32(0).zeros(16).i32(1).i32(0).wide("").wide("");
        return bytes.i32(0).i32(0).i64(0).zeros(11 * 8);
    }
};

inline ByteBuilder channels(int seed)
{
    const ByteBuilder channel = channelRecord::record(channelRecord::newest);
    ByteBuilder bytes;
    bytes.i32(seed);
    if (seed == 1)
        return bytes.i32(3).i32(1).i32(1).append(channel).i32(0).i32(1).append(channel);
    return bytes.i32(2).i32(1).i32(0).i32(1).append(channel);
}

inline ByteBuilder basic(int seed)
{
    const int n = 1000 * seed;
    ByteBuilder bytes;
    bytes.i64((std::int64_t{1} << 40) + n + 1).i32(n + 2).i32(n + 3).zeros(16).i32(n + 6).i32(n + 7);
    bytes.wide(named("trial", seed)).wide(named("C:\\old\\trial.trl", seed)).i32(n + 10).i32(n + 11);
    bytes.i64((std::int64_t{1} << 41) + n + 12);
    for (int i = 0; i < 11; ++i)
        bytes.f64(n + 13.5 + i);
    return bytes;
}

/// The sections of the trial that `fill` makes.
inline Parts filled(int seed)
{
    const int n = 1000 * seed;
    Parts parts;
    parts.basic = basic(seed);
    parts.presenceWord = n + 6;
    parts.channels = channels(seed);
    parts.volumeSource = guarded(volumeSource(seed));
    parts.volumeSourceCoherence = guarded(volumeSourceCoherence(seed));
    parts.spectra = ByteBuilder();
    for (const char* name : {"A", "C", "R"})
        parts.spectra.i32(1).raw(bytesOfSpectrum(name, seed));
    parts.marks = ByteBuilder().i64(n + 50).f64(n + 51.5).i32(n + 52).wide(named("mark", seed)).i64(n + 54).i64(n + 55);
    parts.head = ByteBuilder().raw(bytesOf(head(seed)));
    parts.coherence = guarded(coherence(seed));
    parts.crossSpectra = guarded(crossSpectra(seed));
    parts.oneWave = guarded(wave(seed));
    parts.package = ByteBuilder().raw(bytesOf(package(seed)));
    parts.virtualSpectra = guarded(virtualSpectra(seed));
    parts.sourceCoherence = guarded(sourceCoherence(seed));
    parts.montageFlags = ByteBuilder().i32(n + 60).i32(n + 61);
    parts.commonReference = ByteBuilder().raw(bytesOf(commonReference(seed)));
    parts.individualReferences = ByteBuilder().i64(2);
    for (const int which : {seed, seed + 10})
        parts.individualReferences.i32(1).raw(bytesOf(individualReference(which)));
    parts.components = guarded(components(seed));
    parts.probes = ByteBuilder().i32(1).i32(2);
    for (const int which : {seed, seed + 10})
        parts.probes.i32(1).raw(bytesOf(probe(which)));
    parts.waveResult = ByteBuilder().raw(bytesOf(waveResult(seed)));
    parts.resampling = ByteBuilder().i32(n + 70).i64((std::int64_t{1} << 42) + n + 71);
    return parts;
}

inline void fillBasic(CMDTrialzk& trial, int seed)
{
    const int n = 1000 * seed;
    trial.m_nTrialReservedA = (std::int64_t{1} << 40) + n + 1;
    trial.m_nGoodTrial = n + 2;
    trial.m_nMegPlaneDone = n + 3;
    trial.m_nTrialReservedB = n + 6;
    trial.m_nTrialReservedC = n + 7;
    trial.m_strTrialName = named("trial", seed);
    trial.m_strTrialFilePath = named("C:\\old\\trial.trl", seed);
    trial.m_nVirtualTrial = n + 10;
    trial.m_nTrialKind = n + 11;
    trial.m_nTrialIndex = (std::int64_t{1} << 41) + n + 12;
    CContourMap2DInfozk& map = trial.m_megContour;
    int i = 0;
    for (double* extent :
         {&map.m_dXmin, &map.m_dXmax, &map.m_dYmin, &map.m_dYmax, &map.m_dZmin, &map.m_dZmax, &map.m_dPlaneXmin,
          &map.m_dPlaneXmax, &map.m_dPlaneYmin, &map.m_dPlaneYmax, &map.m_dPlaneScale})
        *extent = n + 13.5 + i++;
}

inline void fillChannels(CMDTrialzk& trial, int seed)
{
    trial.m_nCurrentChannel = seed;
    trial.m_nTotalChannel = seed == 1 ? 3 : 2;
    ASSERT_EQ(trial.m_ppChannel.allocate(trial.m_nTotalChannel), 1);
    for (int i = 0; i < trial.m_nTotalChannel; ++i)
        if (seed == 1 ? i != 1 : i == 1)
            channelRecord::fill(*trial.m_ppChannel.set(i, std::make_unique<CMDChannelzk>()));
}

inline std::unique_ptr<CSpctmTrialzk> newSpectrum(const char* name, int seed)
{
    auto spectrum = std::make_unique<CSpctmTrialzk>();
    fillSpectrum(*spectrum, name, seed);
    return spectrum;
}

inline void fillResults(CMDTrialzk& trial, int seed)
{
    trial.m_pVolumeSrc = std::make_unique<CFaceVolumSourceImagezk>(volumeSource(seed));
    trial.m_pVolumeSrcCoh = std::make_unique<CFaceVolumSourceCoherenceImagezk>(volumeSourceCoherence(seed));
    trial.m_pSpctmTrialA = newSpectrum("A", seed);
    trial.m_pSpctmTrialC = newSpectrum("C", seed);
    trial.m_pSpctmTrialR = newSpectrum("R", seed);
    trial.m_pCohFaceTime = std::make_unique<CSnsCohFacezk>(coherence(seed));
    trial.m_pSpctmCCFace = std::make_unique<CMEGSpctmCCDataFacezk>(crossSpectra(seed));
    trial.m_pkgVirtWave = package(seed);
    trial.m_pVirtSpctm = std::make_unique<CFaceVirtChnlSpctmzk>(virtualSpectra(seed));
    trial.m_pSrcCohFace = std::make_unique<CSrcCohFacezk>(sourceCoherence(seed));
    trial.m_pFaceIca = std::make_unique<CFaceIcazk>(components(seed));
    trial.m_waveResult = waveResult(seed);
}

/// The trial whose sections `filled` gives.
inline void fill(CMDTrialzk& trial, int seed)
{
    const int n = 1000 * seed;
    fillBasic(trial, seed);
    fillChannels(trial, seed);
    fillResults(trial, seed);
    trial.m_nTrigMarkPoint = n + 50;
    trial.m_dTrigMarkValue = n + 51.5;
    trial.m_nTrigMarkCode = n + 52;
    trial.m_strTrigMarkName = named("mark", seed);
    trial.m_nTrigMarkFirst = n + 54;
    trial.m_nTrigMarkLast = n + 55;
    trial.m_headLocalization = head(seed);
    trial.m_bMontageCrDone = n + 60;
    trial.m_bMontageIrDone = n + 61;
    trial.m_pMontageCr = std::make_unique<CMtgUnit4CommonRefzk>(commonReference(seed));
    trial.m_aMontageIr.RemoveAll();
    trial.m_aSeegProbe.RemoveAll();
    for (const int which : {seed, seed + 10}) {
        trial.m_aMontageIr.addCopy(individualReference(which));
        trial.m_aSeegProbe.addCopy(probe(which));
    }
    trial.m_nCurrentSeegProbe = 1;
    trial.m_bTrialResampled = n + 70;
    trial.m_nTrialResampleStep = (std::int64_t{1} << 42) + n + 71;
}

// ---- files

inline ByteBuilder header(std::int32_t version)
{
    return ByteBuilder().wide("MEGTRIALZK").i32(version);
}

inline ByteBuilder montages(const Parts& parts)
{
    const bool unit = parts.commonReference.size() > 0;
    ByteBuilder bytes = parts.montageFlags;
    return bytes.i32(unit ? parts.presenceWord : 0).append(parts.commonReference).append(parts.individualReferences);
}

/// The file of a version.
inline ByteBuilder record(std::int32_t version, const Parts& parts)
{
    const int place = placeOf(version);
    ByteBuilder bytes = header(version);
    bytes.append(parts.basic).append(parts.channels).append(parts.volumeSource);
    if (place >= withSourceCoherence)
        bytes.append(parts.volumeSourceCoherence);
    bytes.append(parts.spectra).append(parts.marks).append(parts.head);
    if (place >= withCoherence)
        bytes.append(parts.coherence);
    if (place >= withCrossSpectra)
        bytes.append(parts.crossSpectra);
    if (place >= withVirtual) {
        bytes.append(place >= withPackage ? parts.package : parts.oneWave);
        bytes.append(parts.virtualSpectra).append(parts.sourceCoherence);
    }
    if (place >= withMontages)
        bytes.append(montages(parts));
    if (place >= withComponents)
        bytes.append(parts.components);
    if (place >= withProbes)
        bytes.append(parts.probes);
    if (place >= withWaveResult)
        bytes.append(parts.waveResult);
    if (place >= withResampling)
        bytes.append(parts.resampling);
    return bytes;
}

/// The sections of a trial into which a file of that version was read: the file's own, and what was there before.
inline Parts afterReading(std::int32_t version, const Parts& file, const Parts& before)
{
    const int place = placeOf(version);
    Parts after = file;
    const auto keep = [&](int since, ByteBuilder Parts::*part) {
        if (place < since)
            after.*part = before.*part;
    };
    keep(withSourceCoherence, &Parts::volumeSourceCoherence);
    keep(withCoherence, &Parts::coherence);
    keep(withCrossSpectra, &Parts::crossSpectra);
    for (const auto part : {&Parts::package, &Parts::virtualSpectra, &Parts::sourceCoherence})
        keep(withVirtual, part);
    for (const auto part : {&Parts::montageFlags, &Parts::commonReference, &Parts::individualReferences})
        keep(withMontages, part);
    keep(withComponents, &Parts::components);
    keep(withProbes, &Parts::probes);
    keep(withWaveResult, &Parts::waveResult);
    keep(withResampling, &Parts::resampling);
    return after;
}

inline std::vector<std::byte> stored(CMDTrialzk& trial)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(trial.serializezk(ar), 1); });
}

inline int load(CMDTrialzk& trial, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return trial.serializezk(*archive);
}

inline int load(CMDTrialzk& trial, const ByteBuilder& bytes)
{
    return load(trial, std::span(bytes.bytes()));
}

} // namespace megset::trialRecord
