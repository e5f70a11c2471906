#pragma once
// The sections of a dataset's file byte by byte, and the dataset that they stand for.

#include "megset/core/CMEGDatazk.h"

#include "tests/persistence/trialRecord.h"
#include "tests/records/recording/filledRecordInfo.h"

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace megset::datasetRecord {

using trialRecord::bytesOf;
using trialRecord::named;
using trialRecord::none;

/// The trial list. Item 11, `presence`, is 0 or not; `behind` is what the old forms have behind it.
struct TrialList
{
    int total = 0;
    int current = -1;
    int real = 0;
    int virt = 0;
    CString fileName;
    CString session = "Unknown";
    int flagA = 1;
    CString folder;
    std::vector<CString> paths;
    int presence = 0;
    ByteBuilder behind;

    ByteBuilder pathBytes() const
    {
        ByteBuilder bytes = ByteBuilder().i64(static_cast<std::int64_t>(paths.size()));
        for (const CString& path : paths)
            bytes.wide(path);
        return bytes;
    }
    ByteBuilder numbers() const { return ByteBuilder().i32(total).i32(current).i32(real).i32(virt); }
    ByteBuilder today() const
    {
        return numbers().wide(fileName).wide(session).i32(flagA).wide(folder).append(pathBytes()).i32(presence);
    }
    ByteBuilder old() const
    {
        ByteBuilder bytes = numbers().wide(folder).append(pathBytes());
        return bytes.wide(fileName).wide(session).i32(flagA).i32(presence).append(behind);
    }
};

inline ByteBuilder markers(const CMarkerManagerzk& manager)
{
    CMarkerManagerzk copy = manager;
    return ByteBuilder().raw(storedBytes([&](CArchive& ar) { EXPECT_EQ(copy.serializeMLM(ar), 1); }));
}

template <class Record>
ByteBuilder recordBytes(Record&& record)
{
    return ByteBuilder().raw(bytesOf(record));
}

/// A file's sections as bytes; by default those of a new dataset. What a test wants to be different it replaces.
struct Parts
{
    TrialList trials;
    ByteBuilder head = recordBytes(CHeadLocalizationzk());
    std::array<ByteBuilder, 8> markers = newMarkers();
    std::int64_t filterCount = 0;
    std::int64_t filterCount2 = 0;
    ByteBuilder filter = recordBytes(CFilterDcLtSettingzk());
    ByteBuilder filter2 = recordBytes(CFilterDcLtSettingzk());
    CString oldProcessInfo; ///< of the old form of the section
    ByteBuilder recordInfo = recordBytes(CMEGRecordInfozkProzk());
    ByteBuilder show = newShow();
    ByteBuilder showMore = ByteBuilder().f64(0.0).f64(100.0).i32(512).i32(1);
    CString processInfo;
    ByteBuilder roi = newRoi();
    int flagCount = 0;
    ByteBuilder good = none(1);
    ByteBuilder shown = none(1);
    ByteBuilder select = none(1);
    ByteBuilder cut = ByteBuilder().i32(0).i32(1).append(datasetRecord::markers({}));
    ByteBuilder oldCut = ByteBuilder().i32(0).append(recordBytes(CMarkerDatazk()));
    ByteBuilder eeg = newEeg();
    ByteBuilder wave = recordBytes(CFaceWaveAnalyzedResultzk());
    ByteBuilder tail2 = ByteBuilder().i64(1).i64(1);
    ByteBuilder tail5 = ByteBuilder().i32(1).i32(1).f64(2.0);
    ByteBuilder tail8 = ByteBuilder().i32(1).i32(1).i64(10);
    int tailE = 0;
    ByteBuilder tailFG = ByteBuilder().i32(1).i32(1);
    ByteBuilder tailHIJ = ByteBuilder().zeros(12);
    int tailK = 0;
    int tailL = 1;

    static std::array<ByteBuilder, 8> newMarkers()
    {
        std::array<ByteBuilder, 8> all;
        all.fill(datasetRecord::markers({}));
        return all;
    }
    static ByteBuilder newShow()
    {
        ByteBuilder bytes;
        for (int i = 0; i < 6; ++i)
            bytes.i32(1);
        bytes.doubles({0.005, 0.001, 0.001, 0.001, 0.005, 0.005, 0.005, 180.0, 0.001, 1.0}).i32(4).f64(4.0);
        return bytes.zeros(4 * 8).i32(0).f64(1.0).f64(1.0);
    }
    static ByteBuilder newRoi()
    {
        ByteBuilder bytes = ByteBuilder().i32(0).u32(0x0000FF00U).u32(0xFF00FF00U).i32(0);
        return bytes.doubles({-90.0, 90.0, 20.0, 120.0, -100.0, 100.0, 180.0, 100.0, 200.0});
    }
    static ByteBuilder newEeg()
    {
        ByteBuilder bytes = recordBytes(CFiducialzk()).append(recordBytes(CFiducialzk()));
        bytes.i32(1).f64(3.0).i32(2).doubles({-1.0, 1.0, 1.0, -1.0, 0.0, 100.0});
        return bytes;
    }
};

// One object of each kind; the seed tells it from others.

inline CMarkerManagerzk manager(int seed)
{
    CMarkerManagerzk made;
    made.m_strMgrInfo = named("manager", seed);
    made.addTrigger(seed, 2, 3, 4);
    return made;
}

inline CFilterDcLtSettingzk filter(int seed)
{
    CFilterDcLtSettingzk setting;
    setting.m_nFiltOrder = seed;
    return setting;
}

inline CFiducialzk fiducials(int seed)
{
    CFiducialzk made;
    made.m_nCurrentFid = seed;
    return made;
}

inline CMarkerDatazk marker(int seed)
{
    CMarkerDatazk made;
    made.m_strMarkName = named("marker", seed);
    return made;
}

inline CFaceWaveAnalyzedResultzk waveResult(int seed)
{
    CFaceWaveAnalyzedResultzk result;
    result.m_nCurrentKind = seed;
    return result;
}

inline void fillInfo(CMEGRecordInfozkProzk& info, int seed)
{
    info.clearFilterInfo();
    fillRecordInfo(info);
    info.m_strAcqTextA = named("acquired", seed);
    CCoefficientDatazk coefficients;
    coefficients.m_strCoefSensorName = named("sensor", seed);
    info.m_coefficients.addCoefficientsData(1, &coefficients);
}

inline TrialList filledTrials(int seed)
{
    const int n = 1000 * seed;
    TrialList list;
    list.total = 3;
    list.current = seed;
    list.real = n + 3;
    list.virt = n + 4;
    list.fileName = named("file", seed);
    list.session = named("session", seed);
    list.flagA = n + 7;
    list.folder = named("C:\\folder", seed) + "\\";
    list.paths = {named("C:\\a.trl", seed), "", named("\u00e4\u732b", seed)};
    return list;
}

inline ByteBuilder flags(const std::vector<int>& values)
{
    ByteBuilder bytes = ByteBuilder().i32(1);
    for (const int value : values)
        bytes.i32(value);
    return bytes;
}

inline ByteBuilder filledShow(int n)
{
    ByteBuilder bytes;
    for (int i = 0; i < 6; ++i)
        bytes.i32(n + i);
    for (int i = 6; i < 16; ++i)
        bytes.f64(n + i + 0.5);
    bytes.i32(n + 16);
    for (int i = 17; i < 22; ++i)
        bytes.f64(n + i + 0.5);
    return bytes.i32(n + 22).f64(n + 23.5).f64(n + 24.5);
}

inline ByteBuilder filledEeg(int seed)
{
    const int n = 1000 * seed;
    ByteBuilder bytes = recordBytes(fiducials(seed)).append(recordBytes(fiducials(seed + 1)));
    bytes.i32(n + 60).f64(n + 61.5).i32(n + 62);
    for (int i = 63; i < 69; ++i)
        bytes.f64(n + i + 0.5);
    return bytes;
}

/// The sections of the dataset that `fill` makes.
inline Parts filled(int seed)
{
    const int n = 1000 * seed;
    Parts parts;
    parts.trials = filledTrials(seed);
    parts.head = recordBytes(trialRecord::head(seed));
    for (int i = 0; i < 8; ++i)
        parts.markers[static_cast<std::size_t>(i)] = markers(manager(10 * seed + i));
    parts.filterCount = (std::int64_t{1} << 40) + n;
    parts.filterCount2 = (std::int64_t{1} << 41) + n;
    parts.filter = recordBytes(filter(seed));
    parts.filter2 = recordBytes(filter(seed + 1));
    parts.oldProcessInfo = named("old process", seed);
    CMEGRecordInfozkProzk info;
    fillInfo(info, seed);
    parts.recordInfo = recordBytes(info);
    parts.show = filledShow(n);
    parts.showMore = ByteBuilder().f64(n + 25.5).f64(n + 26.5).i32(n + 27).i32(n + 28);
    parts.processInfo = named("process", seed);
    parts.roi = ByteBuilder().i32(n + 30).i32(n + 31).i32(n + 32).i32(n + 33);
    for (int i = 34; i < 43; ++i)
        parts.roi.f64(n + i + 0.5);
    parts.flagCount = 2;
    parts.good = flags({n + 44, n + 45});
    parts.shown = flags({n + 46, n + 47});
    parts.select = flags({n + 48, n + 49});
    parts.cut = ByteBuilder().i32(n + 50).i32(n + 51).append(markers(manager(10 * seed + 8)));
    parts.oldCut = ByteBuilder().i32(n + 52).append(recordBytes(marker(seed)));
    parts.eeg = filledEeg(seed);
    parts.wave = recordBytes(waveResult(seed));
    parts.tail2 = ByteBuilder().i64(n + 70).i64(n + 71);
    parts.tail5 = ByteBuilder().i32(n + 72).i32(n + 73).f64(n + 74.5);
    parts.tail8 = ByteBuilder().i32(n + 75).i32(n + 76).i64(n + 77);
    parts.tailE = n + 78;
    parts.tailFG = ByteBuilder().i32(n + 79).i32(n + 80);
    parts.tailHIJ = ByteBuilder().i32(n + 81).i32(n + 82).i32(n + 83);
    parts.tailK = n + 84;
    parts.tailL = n + 85;
    return parts;
}

inline void fillList(CMEGDatazk& dataset, int seed)
{
    const TrialList list = filledTrials(seed);
    dataset.m_nTotalTrial = list.total;
    dataset.m_nCurrentTrial = list.current;
    dataset.m_nRealTrial = list.real;
    dataset.m_nVirtualTrial = list.virt;
    dataset.m_strDatasetFileName = list.fileName;
    dataset.m_strSessionName = list.session;
    dataset.m_nDatasetFlagA = list.flagA;
    dataset.m_strTrialFolder = list.folder;
    dataset.m_aTrialFilePath.RemoveAll();
    for (const CString& path : list.paths)
        dataset.m_aTrialFilePath.Add(path);
}

inline void fillMarkers(CMEGDatazk& dataset, int seed)
{
    CMarkerManagerzk* const all[] = {&dataset.m_mkTrig,    &dataset.m_mkTrigRecord, &dataset.m_mkMarker,
                                     &dataset.m_mkSegment, &dataset.m_mkClass,      &dataset.m_mkThreshold,
                                     &dataset.m_mkPattern, &dataset.m_mkAiMarkWave, &dataset.m_mkSelect4Move};
    int i = 0;
    for (CMarkerManagerzk* one : all)
        *one = manager(10 * seed + i++);
}

inline void fillShow(CMEGDatazk& d, int n)
{
    int i = n;
    for (int* word : {&d.m_bShowVirtChnl, &d.m_bShowMEGSensorActive, &d.m_bShowSensor2DOverlap, &d.m_bShowMEGSensor,
                      &d.m_nShowWordA, &d.m_nShowWordB})
        *word = i++;
    for (double* value :
         {&d.m_dZoomMEGSensor, &d.m_dZoomMEGRef, &d.m_dZoomEEGSensor, &d.m_dZoomEEGRef, &d.m_dZoomType903,
          &d.m_dZoomType902, &d.m_dZoomType904, &d.m_dZoomTrig, &d.m_dZoomOthers, &d.m_dShowTimeScaleX})
        *value = i++ + 0.5;
    d.m_nSensorSize2D = i++;
    for (double* value : {&d.m_dSensorSize2D, &d.m_d2DSensorColorStepLow, &d.m_d2DSensorColorStepHigh,
                          &d.m_d2DSensorColorHigh, &d.m_d2DSensorColorLow})
        *value = i++ + 0.5;
    d.m_nShowWordC = i++;
    for (double* value : {&d.m_dShowScaleA, &d.m_dShowScaleB, &d.m_dShowRangeMegLow, &d.m_dShowRangeMegHigh})
        *value = i++ + 0.5;
    d.m_nShowWordD = i++;
    d.m_nShowWordE = i++;
}

inline void fillRoi(CMEGDatazk& d, int n)
{
    d.m_nRoiWord = n + 30;
    d.m_clrRoiA = static_cast<std::uint32_t>(n + 31);
    d.m_clrRoiB = static_cast<std::uint32_t>(n + 32);
    d.m_nRoiWord2 = n + 33;
    int i = n + 34;
    for (double* value : {&d.m_dRoiXMin, &d.m_dRoiXMax, &d.m_dRoiYMin, &d.m_dRoiYMax, &d.m_dRoiZMin, &d.m_dRoiZMax,
                          &d.m_dRoiXDim, &d.m_dRoiYDim, &d.m_dRoiZDim})
        *value = i++ + 0.5;
}

inline void fillFlags(CMEGDatazk& d, int n)
{
    d._cleanChnlParam();
    d.m_nChnlParamCount = 2;
    int i = n + 44;
    for (auto* array : {&d.m_pChnlGood, &d.m_pChnlShow, &d.m_pChnlSelect}) {
        *array = std::make_unique<int[]>(2);
        (*array)[0] = i++;
        (*array)[1] = i++;
    }
}

inline void fillEeg(CMEGDatazk& d, int seed)
{
    const int n = 1000 * seed;
    d.m_fidEegMeasure = fiducials(seed);
    d.m_fidWorkEeg = fiducials(seed + 1);
    d.m_nEegShowWord = n + 60;
    d.m_dElectrodeSize2D = n + 61.5;
    d.m_nElectrodeSize2D = n + 62;
    int i = n + 63;
    for (double* value : {&d.m_d2DElectrodeColorStepLow, &d.m_d2DElectrodeColorStepHigh, &d.m_d2DElectrodeColorHigh,
                          &d.m_d2DElectrodeColorLow, &d.m_dShowRangeEegLow, &d.m_dShowRangeEegHigh})
        *value = i++ + 0.5;
}

inline void fillTail(CMEGDatazk& d, int n)
{
    d.m_nSelectStart = n + 70;
    d.m_nSelectEnd = n + 71;
    d.m_nTailWordA = n + 72;
    d.m_nTailWordB = n + 73;
    d.m_dTailValueA = n + 74.5;
    d.m_nShowMarkLineType = n + 75;
    d.m_nTailWordC = n + 76;
    d.m_nTailWordD = n + 77;
    int i = n + 78;
    for (int* word : {&d.m_nTailWordE, &d.m_nTailWordF, &d.m_nTailWordG, &d.m_nTailWordH, &d.m_nTailWordI,
                      &d.m_nTailWordJ, &d.m_nTailWordK, &d.m_nTailWordL})
        *word = i++;
}

/// The dataset whose sections `filled` gives. It has no slots.
inline void fill(CMEGDatazk& dataset, int seed)
{
    const int n = 1000 * seed;
    fillList(dataset, seed);
    dataset.m_headLocalization = trialRecord::head(seed);
    fillMarkers(dataset, seed);
    dataset.m_nFilterSettingCount = (std::int64_t{1} << 40) + n;
    dataset.m_nFilterSettingCount2 = (std::int64_t{1} << 41) + n;
    dataset.m_filterDcLt = filter(seed);
    dataset.m_filterDcLt2 = filter(seed + 1);
    fillInfo(dataset.m_recordInfo, seed);
    fillShow(dataset, n);
    dataset.m_strProcessInfo = named("process", seed);
    fillRoi(dataset, n);
    fillFlags(dataset, n);
    dataset.m_nSegmentCutState = n + 50;
    dataset.m_nSegmentCutNext = n + 51;
    fillEeg(dataset, seed);
    dataset.m_faceWaveResult = waveResult(seed);
    fillTail(dataset, n);
}

} // namespace megset::datasetRecord
