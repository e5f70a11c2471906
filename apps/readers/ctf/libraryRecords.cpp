#include "apps/readers/ctf/libraryRecords.h"
#include "apps/readers/ctf/alignFrames.h"
#include "apps/readers/ctf/frames.h"
#include "apps/readers/recordedMode.h"

#include "megset/core/CMDChannelzk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>

namespace megset::ctf {

namespace {

// Places and directions of all coils, behind one another.
struct Triples
{
    std::vector<double> positions;
    std::vector<double> directions;

    void add(const Vector& position, const Vector& direction)
    {
        positions.insert(positions.end(), position.begin(), position.end());
        directions.insert(directions.end(), direction.begin(), direction.end());
    }
};

// A positive gain means that a field along the recorded direction gives negative samples.
Vector withSign(const Channel& channel, Vector direction)
{
    if (channel.properGain > 0.0)
        for (double& number : direction)
            number = 0.0 - number;
    return direction;
}

bool isLocalised(const Channel& channel)
{
    return !channel.coils.empty() && std::all_of(channel.coils.begin(), channel.coils.end(),
                                                 [](const Coil& coil) { return coil.head.isKnown(); });
}

// The diameter of a round coil, the side of a square one, mm.
double coilSize(double area, std::int32_t shape)
{
    if (!(area > 0.0))
        return 0.0;
    return 10.0 * (shape == 0 ? 2.0 * std::sqrt(area / std::numbers::pi) : std::sqrt(area));
}

void setCoils(const Channel& channel, CMEGSensorzk& sensor)
{
    Triples dewar;
    Triples head;
    std::vector<int> turns;
    for (const Coil& coil : channel.coils) {
        dewar.add(placeFromDewar(coil.dewar.position), withSign(channel, directionFromDewar(coil.dewar.direction)));
        head.add(fromHead(coil.head.position, 10.0), withSign(channel, fromHead(coil.head.direction, 1.0)));
        turns.push_back(coil.turns != 0 ? coil.turns : 1);
    }
    const bool hasHead = isLocalised(channel);
    sensor.initSensorBasic(0, {}, {}, static_cast<int>(dewar.positions.size()), turns.data(), dewar.positions.data(),
                           dewar.directions.data(), hasHead ? head.positions.data() : nullptr,
                           hasHead ? head.directions.data() : nullptr);
    for (std::size_t i = 0; i < channel.coils.size(); ++i)
        sensor.m_pSnsCoils.m_aCoils[i].m_dCoilDiameter = coilSize(channel.coils[i].area, channel.coilShape);
}

// Whether the channel's order was reached by adaptive coefficients: there are only those.
bool isAdaptive(const Res4& header, int channel, int order)
{
    const auto has = [&](bool adaptive) {
        const std::uint32_t type = CCoefficientData::getCoefficientType(order, true, adaptive);
        return std::any_of(header.coefficients.begin(), header.coefficients.end(), [&](const Coefficients& record) {
            return record.channel == channel && record.type == type;
        });
    };
    return order > 0 && !has(false) && has(true);
}

// The place of an electrode, which stands in the head frame in either table.
const CoilPlace* electrodePlace(const Channel& channel)
{
    if (channel.coils.empty())
        return nullptr;
    const Coil& coil = channel.coils.front();
    if (coil.head.position != Vector{})
        return &coil.head;
    return coil.dewar.position != Vector{} ? &coil.dewar : nullptr;
}

void setElectrodePlace(const Channel& channel, CMEGSensorzk& sensor)
{
    const CoilPlace* const place = electrodePlace(channel);
    if (place == nullptr)
        return;
    const Vector position = fromHead(place->position, 10.0);
    std::copy(position.begin(), position.end(), sensor.m_dSnsGeom.begin());
    sensor.m_dSnsGeom[3] = 1.0;
}

// Whether another channel's name holds this one's, as MLP11 holds that of the reference P11.
bool isPartOfAnother(const Res4& header, const Channel& channel)
{
    return std::any_of(header.channels.begin(), header.channels.end(), [&](const Channel& other) {
        return other.isField() && other.name.size() > channel.name.size() &&
               other.name.find(channel.name) != std::string::npos;
    });
}

// The names of the sensors. The library takes the first coefficient record whose name holds the sensor's: a name that
// stands in another one is put between blanks, here and in its records.
std::vector<CString> sensorNames(const Res4& header)
{
    std::vector<CString> names;
    names.reserve(header.channels.size());
    for (const Channel& channel : header.channels)
        names.emplace_back(channel.isField() && isPartOfAnother(header, channel) ? " " + channel.name + " "
                                                                                 : channel.name);
    return names;
}

CMEGSensorzk librarySensor(const Res4& header, std::size_t index, const CString& name)
{
    const Channel& channel = header.channels[index];
    CMEGSensorzk sensor;
    if (channel.isField())
        setCoils(channel, sensor);
    else if (channel.kind() == Kind::eeg)
        setElectrodePlace(channel, sensor);
    sensor.m_strSensorName = name;
    sensor.m_strSensorTypeName = channelTypeName(channel);
    sensor.initSensorInfo(static_cast<int>(index), channelType(channel), channel.coilShape,
                          channel.isField() ? channel.gradientOrder : 0, channel.properGain, channel.qGain,
                          channel.ioGain, channel.ioOffset);
    sensor.setRealIdealCoefMode(true);
    sensor.setAdaptiveBalance(isAdaptive(header, static_cast<int>(index), sensor.getGradOrderNo()));
    noteRecordedMode(sensor);
    return sensor;
}

// The row of the electrode type list.
int electrodeRow(int type)
{
    return type - 300;
}

std::unique_ptr<COnlineFilter> onlineFilter(const Filter& filter)
{
    auto made = std::make_unique<COnlineFilter>();
    made->m_nFilterKind = filter.type;
    made->m_dFilterFreq = filter.frequency;
    made->m_nFilterClass = filter.filterClass;
    made->m_nFilterParamCount = static_cast<std::int32_t>(filter.parameters.size());
    if (!filter.parameters.empty())
        made->m_filterParam = filter.parameters;
    return made;
}

void setTexts(const Res4& header, CMEGRecordInfo& info)
{
    const auto set = [&info](std::size_t number, const std::string& text) { info.m_strDbText[number - 1] = text; };
    set(1, header.subjectId);
    set(2, header.operatorName);
    set(4, header.date);
    set(5, header.time);
    set(6, header.runTitle);
    set(7, header.runDescription);
    set(8, header.instruments);
    set(9, header.runName);
    set(10, header.collectDescriptor);
    set(12, header.dataOrigin);
    set(13, header.dataDescription);
    set(14, header.application);
    set(15, header.sensorFile);
}

void setPoint(CFiducial& fiducials, CFiducial::Point point, const Vector& place, bool measured)
{
    CFiduciaryPtzk* const target = fiducials.getFiducialPt(point);
    target->setFidPos(place[0], place[1], place[2]);
    target->m_nFidFound = measured ? 1 : 0;
}

template <class Convert>
void setPoints(CFiducial& fiducials, const CoilSet& set, bool measured, Convert convert)
{
    if (!set.isComplete())
        return;
    setPoint(fiducials, CFiducial::nasion, convert(*set.nasion), measured);
    setPoint(fiducials, CFiducial::leftEar, convert(*set.leftEar), measured);
    setPoint(fiducials, CFiducial::rightEar, convert(*set.rightEar), measured);
}

// The sample of a time in s from the trigger, counted from the begin of the trial.
double sampleAt(const Res4& header, double time)
{
    return std::round(time * header.sampleRate) + header.preTriggerPts;
}

std::int64_t sampleInTrial(const Res4& header, double time)
{
    return static_cast<std::int64_t>(std::clamp(sampleAt(header, time), 0.0, header.samples - 1.0));
}

double msOf(const Res4& header, std::int64_t sample)
{
    return static_cast<double>(sample) / header.sampleRate * 1000.0;
}

} // namespace

int channelType(const Channel& channel)
{
    switch (channel.kind()) {
    case Kind::reference:
        return 10 + channel.sensorType;
    case Kind::meg:
        return 100;
    case Kind::eeg:
        if (channel.sensorType == format::eeg)
            return 302;
        return channel.sensorType == format::eegReference ? 300 : 303;
    case Kind::stimulus:
        return 600;
    default:
        return miscellaneousType;
    }
}

CString channelTypeName(const Channel& channel)
{
    switch (channel.sensorType) {
    case format::referenceMagnetometer:
        return "Reference magnetometer";
    case format::referenceGradiometer1:
    case 2:
    case format::referenceGradiometer3:
        return "Reference gradiometer";
    case format::magnetometer:
        return "Magnetometer";
    case format::gradiometer1:
    case 6:
    case format::gradiometer3:
        return "Gradiometer";
    case format::eegReference:
        return "Reference";
    case format::eeg:
        return "EEG";
    case format::eegBipolar:
        return "Bipolar";
    case format::stimulus:
    case format::stimulusAnalog:
    case format::stimulusDigital:
        return "Stimulus";
    case format::adcCurrent:
    case format::adcVoltage:
        return "ADC";
    case format::dac:
        return "DAC";
    case format::systemClock:
        return "Clock";
    case format::headCoil:
    case 28:
    case 29:
        return "Head coil";
    default:
        return CString::formatted("CTF %d", channel.sensorType);
    }
}

std::vector<CMEGSensorzk> librarySensors(const Res4& header)
{
    std::vector<CMEGSensorzk> sensors;
    sensors.reserve(header.channels.size());
    const std::vector<CString> names = sensorNames(header);
    for (std::size_t i = 0; i < header.channels.size(); ++i)
        sensors.push_back(librarySensor(header, i, names[i]));
    return sensors;
}

std::vector<CEEGelectrodezk> libraryElectrodes(const Res4& header)
{
    std::vector<CEEGelectrodezk> electrodes;
    for (const Channel& channel : header.channels) {
        if (channel.kind() != Kind::eeg)
            continue;
        CEEGelectrodezk& electrode = electrodes.emplace_back();
        electrode.m_strElectrodeLabel = channel.name;
        electrode.m_strElectrodeName = channel.name;
        electrode.m_nNameSet = 1;
        electrode.m_nElectrodeID = static_cast<int>(electrodes.size()) - 1;
        electrode.m_nChannelType = channelType(channel);
        electrode.m_nElectrodeWord = electrodeRow(electrode.m_nChannelType);
        if (const CoilPlace* const place = electrodePlace(channel)) {
            const Vector position = fromHead(place->position, 10.0);
            electrode.setElectrodePositionD(position[0], position[1], position[2]);
            electrode.m_nPosFound = 1;
        }
    }
    return electrodes;
}

void setRecordingInformation(const Res4& header, CMEGRecordInfo& info)
{
    info.m_nRecTotalSample = info.m_nRawTotalSample = header.samples;
    info.m_nRecPreTrigPts = info.m_nRawPreTrigPts = header.preTriggerPts;
    info.m_dRecSampleRate = info.m_dRawSampleRate = header.sampleRate;
    info.m_bResampleAverage = 0;
    info.m_nResampleFactor = 1;
    info.m_nAverageCount = header.averages;
    info.m_nTrigWord[0] = header.primaryTrigger;
    info.m_nTrigWord[1] = header.triggerPolarity;
    info.m_nTrigWord[2] = header.triggerMode;
    info.clearFilterInfo();
    for (const Filter& filter : header.filters)
        info.m_aOnlineFilter.Add(onlineFilter(filter));
    setTexts(header, info);
}

std::vector<CCoefficientDatazk> libraryCoefficients(const Res4& header)
{
    static_assert(format::coefficients::maxCount == CCoefficientData::maxReferences);
    std::vector<CCoefficientDatazk> records(header.coefficients.size());
    const std::vector<CString> names = sensorNames(header);
    for (std::size_t i = 0; i < records.size(); ++i) {
        const Coefficients& from = header.coefficients[i];
        records[i].m_strCoefSensorName = names[static_cast<std::size_t>(from.channel)];
        records[i].m_nCoefType = from.type;
        records[i].m_nCoefCount = static_cast<std::int32_t>(from.weights.size());
        for (std::size_t k = 0; k < from.weights.size(); ++k) {
            records[i].m_aCoefRefName[k] = header.channels[static_cast<std::size_t>(from.weights[k].channel)].name;
            records[i].m_aCoefValue[k] = from.weights[k].value;
        }
    }
    return records;
}

int setHeadLocalization(const HeadCoils& coils, CHeadLocalization& localization)
{
    const auto inHead = [](const Vector& place) { return fromHead(place, 10.0); };
    std::array<double, 16> dewar2Head{};
    std::array<double, 16> head2Dewar{};
    if (!coils.measuredDewar.isComplete() || !coils.measuredHead.isComplete())
        return 0;
    CHeadLocalization made = localization;
    setPoints(made.m_fidDewarStd, coils.standardDewar, false, placeFromDewar);
    setPoints(made.m_fidDewarMsr, coils.measuredDewar, true, placeFromDewar);
    setPoints(made.m_fidHeadMsr, coils.measuredHead, true, inHead);
    if (!alignFrames(made.m_fidDewarMsr, made.m_fidHeadMsr, dewar2Head, head2Dewar))
        return 0;
    made.m_dDewar2Head = dewar2Head;
    made.m_dHead2Dewar = head2Dewar;
    made.m_fidWorkMeg = made.m_fidHeadMsr;
    made.m_nWorkCoordinate = 2;
    localization = made;
    return 1;
}

void addBadSegments(const Recording& recording, CMarkerManager& segments)
{
    constexpr int badSegmentID = 302;
    if (recording.badSegments.empty())
        return;
    auto marker = std::make_unique<CMarkerDatazk>();
    marker->m_nMarkID = badSegmentID;
    for (const BadSegment& segment : recording.badSegments) {
        MarkTrigClass point;
        point.m_nMarkPtTrial = segment.trial;
        point.m_nMarkPtBegin = sampleInTrial(recording.header, segment.begin);
        point.m_nMarkPtEnd = sampleInTrial(recording.header, segment.end);
        point.m_dMarkPtBegin = msOf(recording.header, point.m_nMarkPtBegin);
        point.m_dMarkPtEnd = msOf(recording.header, point.m_nMarkPtEnd);
        marker->addMarkPt(point);
    }
    segments.m_strMgrInfo = "Bad_segment";
    segments.addMarker(std::move(marker));
}

int addMarkers(const Res4& header, const std::vector<Marker>& recorded, CMarkerManager& markers)
{
    constexpr int markerGroup = 1;
    const double preTriggerMs = msOf(header, header.preTriggerPts);
    int outside = 0;
    for (const Marker& from : recorded) {
        auto marker = std::make_unique<CMarkerDatazk>();
        marker->m_nMarkGroupID = markerGroup;
        marker->m_nMarkID = markers.getTotalMarkers();
        marker->m_strMarkName = from.name;
        marker->m_strMarkInfo = from.comment;
        marker->m_dMarkSampleRate = header.sampleRate;
        for (const Marker::Occurrence& occurrence : from.occurrences) {
            const double sample = sampleAt(header, occurrence.time);
            const std::int64_t at = sampleInTrial(header, occurrence.time);
            if (sample != static_cast<double>(at))
                ++outside;
            else
                marker->addClassifyTrial(occurrence.trial, 0, at, at, header.sampleRate, preTriggerMs);
        }
        markers.addMarker(std::move(marker));
    }
    return outside;
}

void finishChannel(const Channel& from, CMDChannelzk& channel)
{
    channel.setChannelTypeName(channelTypeName(from));
    if (!from.isField() && from.unitsPerInteger() != 1.0)
        channel.scaleWaveData(from.unitsPerInteger(), 1);
}

} // namespace megset::ctf
