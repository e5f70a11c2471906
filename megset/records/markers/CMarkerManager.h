#pragma once
// All markers of one kind of a dataset, with the parameters of the scan that finds them.

#include "megset/records/markers/CMarkerData.h"

#include <memory>

namespace megset {

/// How trigger channels are scanned.
class TrigScanParam
{
public:
    bool operator==(const TrigScanParam&) const = default;

    int m_nTrigScanMode = 0; // 0 plain, 1 Pro, 2 AbsDc, 3 AbsDcM
    // Level that a sample must exceed. A stimulus line of 16 bits rests at 0 with noise far below one unit, and its
    // codes are 1 to 65535: half of the least code is the greatest distance to both.
    double m_dTrigThreshold = 0.5;
    CString m_strTrigPrefix = "Trig"; // first part of a new marker's name
};

/// A list of markers.
class CMarkerManager
{
public:
    bool operator==(const CMarkerManager&) const = default;

    int getTotalMarkers() const { return m_aMarkers.GetSize(); }
    /// The marker with that index, -1 for the newest; null outside the list. With `select` it becomes the current one.
    CMarkerDatazk* getMarker(int index, bool select);
    /// The same, with the index brought into the list; null only for an empty list or entry.
    CMarkerDatazk* getMarkerRoundIndx(int index, bool select);
    /// Appends a marker and takes it over. Gives its index, or -1 for null.
    int addMarker(std::unique_ptr<CMarkerDatazk> marker);
    /// Drops all markers; gives how many there were.
    int cleanMarks();

    /// Appends a new marker without occurrences, of that value and count, named by prefix and value. `sample` and
    /// `total` say where in a trial of how many samples it was found, and make its window. Gives 1, or 0 without
    /// memory.
    int addTrigger(std::int64_t value, std::int64_t count, std::int64_t sample, std::int64_t total);
    /// The first marker with the same identity, which is value and channel: another scan finds the markers of the first
    /// whatever they were named. Null for none, or a null marker.
    CMarkerDatazk* findMatchMarkerData(const CMarkerData* marker) const;
    /// Makes a marker one of this manager's triggers: takes `param`, when not null, as the scan parameters, names a
    /// nameless marker by prefix and value, then setupTrgClsMks1. Gives 1, or 0 for a null marker or without memory.
    int setupTrgClsMks(CMarkerData* marker, const TrigScanParam* param);
    /// Gives a marker without group the group of the triggers (100), without kind that of scanned markers (1), and
    /// backs up its occurrences and window. Gives 1, or 0 for a null marker or without memory.
    int setupTrgClsMks1(CMarkerData* marker);

    /// One line for a trial, by time of its occurrences: the trial's index, then for each of them name, ms and samples
    /// since the trial's first one, and which occurrence of its marker it is, from 1; at the end their number, which
    /// `count` gets, too.
    CString getTrialAllTrigInfoStd(int trial, std::int64_t& count) const;
    /// A heading with the trial's index and number of occurrences, then a line for each: name, value, channel, ms,
    /// sample.
    CString getTrialAllTrigInfoPro(int trial, std::int64_t& count) const;
    /// The texts of getTrialAllTrigInfoStd for trials 0 to `trials` - 1, one behind the other, with the number of
    /// occurrences in all of them and in the one with most. All occurrences are sorted once.
    CString getAllTrigInfoStd(int trials, std::int64_t& total, std::int64_t& most) const;
    /// The same of getTrialAllTrigInfoPro.
    CString getAllTrigInfoPro(int trials, std::int64_t& total) const;

    CString m_strMgrInfo; // told by what filled the list
    TrigScanParam m_trigScanParam;
    int m_nCurrentMarker = -1;
    CTypedPtrArray<CMarkerDatazk> m_aMarkers;
};

/// The file layer of a list of markers.
class CMarkerManager09File : public CMarkerManager
{
public:
    /// Reads or writes the record "MARKERMANAGERZK". 1, or 0 with the messages of serializeRecord.
    int serializeMLM(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMarkerManager09File> s_versions[];
};

/// A list of markers; this is the class that is made.
class CMarkerManagerzk : public CMarkerManager09File
{
};

} // namespace megset
