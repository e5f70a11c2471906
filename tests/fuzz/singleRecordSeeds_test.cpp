// Inputs of fuzz/recording_fuzz.cpp for the records that stand behind recording information in its list, each with all
// that it may hold. With MEGSET_WRITE_SEEDS set the test writes them; otherwise it compares them.

#include "megset/records/records.h"

#include "tests/fuzz/seedFiles.h"
#include "tests/kit/memoryArchive.h"

#include <string>

namespace megset::singleRecordSeeds_test {
namespace {

// The first byte of an input says which record the rest is: the target's order.
enum RecordKind : std::uint8_t
{
    freqDataChannel = 2,
    freqDataSums,
    freqDataTrial,
    freqDatasetFace,
    groupCxc,
    virtualSensors,
    indexColor,
    contourMap,
    squid,
    opm,
    vapor,
    sphere,
    analog,
    electrode,
    fiducials,
    headLocalization,
    coil,
    sensor,
    probe,
    marker,
    markers,
    ica,
    sourceImage,
    sourceCoherence,
    crossSpectra,
    sensorCoherence,
    sourceCoherenceFace,
    virtualWaves,
    virtualSpectra,
    channelWave,
    trialWave,
    datasetWave
};

template <class Record, class Store>
std::vector<std::byte> seed(RecordKind kind, Record record, Store store)
{
    return ByteBuilder().u8(kind).raw(storedBytes([&](CArchive& ar) { EXPECT_EQ(store(record, ar), 1); })).bytes();
}

template <class Record>
std::vector<std::byte> seed(RecordKind kind, const Record& record)
{
    return seed(kind, record, [](Record& one, CArchive& ar) {
        if constexpr (requires { one.serializezk(ar); })
            return one.serializezk(ar);
        else
            return one.serialize(ar);
    });
}

SourceGrid threePoints()
{
    SourceGrid grid;
    grid.m_nX = 3;
    grid.m_nY = grid.m_nZ = 1;
    return grid;
}

// ---- frequencies, groups, virtual sensors

CSumChnlFreqDatazk filledSums()
{
    CSumChnlFreqDatazk sums;
    sums.checkInit(2);
    sums.m_aSumMax = {3.0, 4.0};
    return sums;
}

void addFrequencies(Seeds& seeds)
{
    CFreqDataChnlzk channel;
    channel.setFreqData(0, std::vector<double>{1, 2, 3});
    channel.setFreqData(2, std::vector<double>{4, 5, 6});
    seeds["freq_channel"] = seed(freqDataChannel, channel);
    seeds["freq_sums"] = seed(freqDataSums, filledSums());
    CFreqDataTrialzk trial;
    *trial.getSumChnlFreqData(1) = filledSums();
    seeds["freq_trial"] = seed(freqDataTrial, trial);
    seeds["freq_dataset"] = seed(freqDatasetFace, CFreqDatasetFacezk());
    CGroupMeegCxcFacezk group;
    group.setSize({10, 11}, {20}, -2, 4);
    group.m_aValue = {0.5, -0.75, 0.25, 0.125, -0.5, 0.5, 0.25, 1.0};
    seeds["group_cxc"] = seed(groupCxc, group);
    CVirtSnsPOXlistzk list;
    list.m_aChannel = {4, 9};
    list.m_aVirtSns = {{"a", {1, 2, 3}, {0, 0, 1}, {0.5, -2}}, {"b", {4, 5, 6}, {0, 1, 0}, {}}};
    seeds["virtual_sensors"] = seed(virtualSensors, list);
}

// ---- sensors and the head

void addSensors(Seeds& seeds)
{
    seeds["index_color"] = seed(indexColor, CM3DIndex2Colorzk());
    seeds["contour_map"] = seed(contourMap, CContourMap2DInfozk());
    CMegSquidzk coils;
    coils.m_aCoils.resize(2);
    coils.m_aCoils[1].m_dCoilMatrix[0] = 1.5;
    coils.m_dProperGain = 2.0;
    seeds["squid"] = seed(squid, coils);
    seeds["squid_without_gain"] = seed(squid, CMegSquidzk());
    CMegOpmzk cells;
    cells.m_aCells.resize(2);
    seeds["opm"] = seed(opm, cells);
    seeds["vapor"] = seed(vapor, CMagVaporzk());
    seeds["sphere"] = seed(sphere, CSpherezk());
    seeds["analog"] = seed(analog, CSensorAnalogzk());
    CEEGelectrodezk known;
    known.m_strElectrodeName = "Cz";
    seeds["electrode"] = seed(electrode, known);
    seeds["electrode_without_name"] = seed(electrode, CEEGelectrodezk());
    known.m_strElectrodeName = "nowhere";
    seeds["electrode_unknown"] = seed(electrode, known);
    seeds["fiducials"] = seed(fiducials, CFiducialzk());
    seeds["head"] = seed(headLocalization, CHeadLocalizationzk());
    CHeadLocalizationzk line;
    for (CFiduciaryPtzk& point : line.m_fidDewarMsr.m_aFidPt)
        point.setFidPos(1.0, 2.0, 3.0);
    seeds["head_on_a_line"] = seed(headLocalization, line);
    seeds["coil"] = seed(coil, coils.m_aCoils[1]);
}

void addSensorAndProbe(Seeds& seeds)
{
    CMEGSensorzk gradiometer;
    const int turns[] = {1, -1};
    const double places[] = {1, 2, 3, 4, 5, 6};
    const double directions[] = {0, 0, 1, 0, 0, -1};
    gradiometer.initSensorBasic(0, "MLC11", "Gradiometer", 2, turns, places, directions, places, directions);
    seeds["sensor"] = seed(sensor, gradiometer);
    seeds["sensor_without_coils"] = seed(sensor, CMEGSensorzk());
    CSeegProbezk shaft;
    shaft.setUserContact(2, 3.5);
    shaft.m_aContacts.Add(nullptr);
    seeds["probe"] = seed(probe, shaft);
    shaft.m_dProbeTip = {1.0, 2.0, 3.0};
    shaft.setProbeMode(3);
    seeds["probe_of_a_model"] = seed(probe, shaft);
}

// ---- markers

CMarkerDatazk filledMarker()
{
    CMarkerDatazk made;
    made.m_strMarkName = "Trig8";
    made.m_nMarkValue = 8;
    made.addClassifyTrial(0, 1, 20, 30, 1000.0, 0.0);
    made.addClassifyTrial(0, 1, 10, 12, 1000.0, 0.0);
    made.addClassifyTrial(1, 1, -50, 10, 1000.0, 0.0);
    made.m_aMarkPts.Add(nullptr);
    return made;
}

void addMarkers(Seeds& seeds)
{
    seeds["marker"] = seed(marker, filledMarker());
    CMarkerDatazk far = filledMarker();
    far.m_aMarkPts.GetAt(0)->m_nMarkPtBegin = INT64_MAX;
    far.m_aMarkPts.GetAt(0)->m_nMarkPtEnd = INT64_MIN;
    seeds["marker_far_away"] = seed(marker, far);
    CMarkerManagerzk manager;
    manager.m_aMarkers.addCopy(filledMarker());
    manager.m_aMarkers.Add(nullptr);
    manager.m_aMarkers.addCopy(CMarkerDatazk());
    manager.m_nCurrentMarker = 2;
    seeds["markers"] = seed(markers, manager, [](auto& one, CArchive& ar) { return one.serializeMLM(ar); });
}

// ---- results of analyses

void addImages(Seeds& seeds)
{
    CFaceIcazk components;
    components.setSize({5, 6, 7}, 2, 2);
    components.m_aMean = {100, 200, 300};
    components.m_aMixing = {1, 2, 3, 4, 5, 6};
    seeds["ica"] = seed(ica, components);
    CVolumSourcImagzk image;
    image.setSize(threePoints(), 2);
    image.m_aValue[4] = 2.0;
    seeds["source_image"] = seed(sourceImage, image);
    CVolumSourcCoherencImagzk coherence;
    coherence.setSize(threePoints(), {10.0, 20.0});
    seeds["source_coherence"] = seed(sourceCoherence, coherence);
    CMEGSpctmCCDataFacezk spectra;
    CMEGSpctmCCTrlDatazk& first = *spectra.getCCSpctmTrlData4Class(0, true);
    first.setSize({0, 1}, 1, 2);
    first.initPlanes(2);
    seeds["cross_spectra"] =
        seed(crossSpectra, spectra, [](auto& one, CArchive& ar) { return one.serializeSpctmFace(ar); });
    CSnsCohDatazk pairs;
    pairs.setSize(1, 2, 2);
    seeds["sensor_coherence"] = seed(sensorCoherence, pairs);
    CSrcCohFacezk sources;
    sources.setSize(1, 2, 2);
    sources.m_aSource = {{"left", {1, 2, 3}, {0, 0, 1}}, {"right", {-1, 2, 3}, {0, 1, 0}}};
    sources.m_aPair = {{0, 1}, {1, 7}};
    seeds["source_coherence_face"] = seed(sourceCoherenceFace, sources);
}

void addVirtualChannels(Seeds& seeds)
{
    CVirtChnlWavezk wave;
    wave.m_aWave = {1.0, 2.0};
    wave.m_bShow = 1;
    CFaceVirtChnlWavezk waves;
    waves.m_nTotalSample = 2;
    waves.addVirtChnlWave(&wave);
    waves.m_nTotalSample = 2;
    seeds["virtual_waves"] = seed(virtualWaves, waves);
    CFaceVirtChnlSpctmzk spectra;
    spectra.m_nTimePt = 1;
    spectra.m_nFreqPt = 2;
    CVirtChnlSpctmzk plane;
    plane.m_aPlane[0] = {1.0, 2.0};
    spectra.addVirtChnlSpctm(&plane);
    seeds["virtual_spectra"] =
        seed(virtualSpectra, spectra, [](auto& one, CArchive& ar) { return one.serializeSpctmC(ar); });
}

void addWaveResults(Seeds& seeds)
{
    CWadXzk wad;
    wad.m_aValue = {1.5, 2.5};
    CChnlWaveAnalyzedResultzk channel;
    channel.addWadX(&wad);
    channel.addWadX(&wad);
    seeds["channel_wave"] = seed(channelWave, channel);
    CTrlWaveAnalyzedResultzk trial;
    trial.setSummary({1, 0, 10, 100, -1, 0.5, 2, 1.5});
    trial.setSummary({0, 0, 11, 101, -2, 0.25, 3, 2.5});
    seeds["trial_wave"] = seed(trialWave, trial);
    CFaceWaveAnalyzedResultzk dataset;
    dataset.setAnalysis({0, "kurtosis", "", 70, 250, 50, 25});
    seeds["dataset_wave"] = seed(datasetWave, dataset);
}

TEST(SingleRecordFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    Seeds seeds;
    addFrequencies(seeds);
    addSensors(seeds);
    addSensorAndProbe(seeds);
    addMarkers(seeds);
    addImages(seeds);
    addVirtualChannels(seeds);
    addWaveResults(seeds);
    compareOrWrite("recording_fuzz", seeds);
}

} // namespace
} // namespace megset::singleRecordSeeds_test
