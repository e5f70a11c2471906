#pragma once
// A CTF recording as the records of the library.

#include "apps/readers/ctf/openCtf.h"

#include "megset/records/records.h"

#include <vector>

namespace megset {
class CMDChannelzk;
}

namespace megset::ctf {

/// Channel type of channels that record neither field nor potentials nor stimuli: head coils, voltages, the clock.
inline constexpr int miscellaneousType = 400;

/// The library's channel type: 10 to 13 for references of order 0 to 3, 100 for sensors, 300, 302 and 303 for
/// reference, unipolar and bipolar electrodes, 600 for stimuli, miscellaneousType for the rest.
int channelType(const Channel& channel);
/// What the channel records, in words.
CString channelTypeName(const Channel& channel);

/// One sensor for each channel, in their order: those of field with coils, gains and gradient order, those of
/// electrodes with a place, the rest with name and type. Positions are in mm, x to the left, y up, z to the back.
/// Directions are those of the field that gives positive samples. Coils whose place in the head was not recorded have
/// none there. A sensor has its channel's name; one that stands in another sensor's name is between blanks, so that the
/// library's search for coefficients, which takes the first name that holds the sensor's, doesn't find the other's.
std::vector<CMEGSensorzk> librarySensors(const Res4& header);

/// One electrode for each EEG channel, in their order, with its place in the head where that was recorded.
std::vector<CEEGelectrodezk> libraryElectrodes(const Res4& header);

/// Sets the recording information: counts, rate, averages, filters, and the texts 1 subject, 2 operator, 4 date, 5
/// time, 6 run title, 7 run description, 8 instruments, 9 run name, 10 collection, 12 origin, 13 description, 14
/// application, 15 sensor file. Coefficients stay.
void setRecordingInformation(const Res4& header, CMEGRecordInfo& info);

/// The coefficient records, with the names of the sensors, and of the references as they stand in the channel list.
std::vector<CCoefficientDatazk> libraryCoefficients(const Res4& header);

/// Sets fiducials and transforms of both frames, and puts the head frame to work. 1; 0, with nothing changed, when the
/// three coils were not measured in both frames.
int setHeadLocalization(const HeadCoils& coils, CHeadLocalization& localization);

/// Adds the bad segments to the segment manager, as one marker; a segment ends with its trial.
void addBadSegments(const Recording& recording, CMarkerManager& segments);

/// Adds a marker for each of the recording's. Gives the number of occurrences that lie outside their trial, which are
/// left out.
int addMarkers(const Res4& header, const std::vector<Marker>& recorded, CMarkerManager& markers);

/// What the library's import leaves to be done on a channel with its samples: what is recorded in words, and the scale
/// of one that isn't a sensor of field.
void finishChannel(const Channel& from, CMDChannelzk& channel);

} // namespace megset::ctf
