#pragma once
// A marker: a kind of mark (a trigger, a segment, a class) with the list of its occurrences.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"

#include <cstdint>

namespace megset {

/// One occurrence of a mark.
class MarkTrigClass
{
public:
    bool operator==(const MarkTrigClass&) const = default;

    /// Reads or writes the fields, which stand inside the marker's record without a tag of their own: there may be very
    /// many of them.
    void exchange(CArchive& ar);

    std::int64_t m_nMarkPtWord = 0; // carried for the application
    CString m_strMarkPtName;
    int m_nMarkPtTrial = 0;           // trial index
    int m_nMarkPtChannel = 0;         // channel index
    double m_dMarkPtBegin = 0.0;      // ms
    double m_dMarkPtEnd = 0.0;        // as its maker has it, ms or s
    std::int64_t m_nMarkPtBegin = 0;  // sample
    std::int64_t m_nMarkPtEnd = 0;    // sample
    std::int64_t m_nMarkPtValueB = 0; // value at the begin
    std::int64_t m_nMarkPtValueE = 0; // value at the end
};

/// The samples around an occurrence that belong to it, as counts that follow the sampling rate.
struct MarkWindow
{
    bool operator==(const MarkWindow&) const = default;

    std::int64_t m_nPreSamples = 0;   // before the begin
    std::int64_t m_nPostSamples = 0;  // from the begin on
    std::int64_t m_nShiftSamples = 0; // from the mark to what it stands for, such as a display's delay
    std::int64_t m_nGapSamples = 0;   // least distance between two occurrences
};

/// A marker. Its occurrences stand twice: as they are used, and as a backup at the recorded sampling rate, from which
/// re-sampling computes the used ones.
class CMarkerData
{
public:
    bool operator==(const CMarkerData&) const = default;

    /// Number of occurrences, null entries included.
    int getTotalTrgMrkPts() const { return m_aMarkPts.GetSize(); }
    /// The occurrence with that index, -1 for the newest; null outside the list.
    MarkTrigClass* getMarkPt(int index) const;
    /// Appends a copy, and one with its samples times `factor` to the backup, so that re-sampling by that factor gives
    /// the occurrence again. A backup that the list has grown away from is left alone. m_nMarkCount isn't changed.
    /// Gives 1, or 0 without memory, with nothing changed.
    int addMarkPt(const MarkTrigClass& point, std::int64_t factor = 1);
    /// Appends an occurrence from sample `begin` to `end`, and counts it. Its times are in ms from the trial's trigger,
    /// sample / rate * 1000 - preTrigMs. Gives 1, or 0 for a rate that isn't above 0 or without memory.
    int addClassifyTrial(int trial, int channel, std::int64_t begin, std::int64_t end, double rate, double preTrigMs);
    /// Adds 1 to m_nMarkCount, which a file may have at its largest, where it stays.
    void countOccurrence() { m_nMarkCount += m_nMarkCount < INT64_MAX ? 1 : 0; }
    /// Drops all occurrences and their backup, and counts none. Gives the number of occurrences there were.
    int cleanMarkedPts();

    /// Takes occurrences and window, which are those of data re-sampled by `factor`, as the new backup, at the recorded
    /// rate. Gives 1, or 0 without memory, with the backup as it was.
    int backupMarkPts(std::int64_t factor = 1);
    /// Whether occurrences of the backup are missing in the list.
    bool hasLostMarkPts() const { return m_aMarkPts.GetSize() < m_aMarkPtsBk.GetSize(); }
    /// Makes the occurrences those of the backup. Gives 1, or 0 without memory, with the list as it was.
    int reloadBkMarkPts();
    /// Sets the window, and begin and end of each occurrence that both lists have, to those of the backup over
    /// `factor`, rounded toward zero. A factor below 1 changes nothing. Gives 1.
    int scaleMarkPts(std::int64_t factor);

    int m_nMarkGroupID = 0; // 100 triggers, 1 markers, 300 segments, 200 classes, or the exponent of a bit code
    int m_nMarkID = 0;      // running number
    std::int64_t m_nMarkValue = 0;
    std::int64_t m_nMarkValueBk = 0;
    std::int64_t m_nMarkCount = 0; // occurrences
    CString m_strMarkName;         // as shown
    CString m_strMarkInfo;
    CString m_strMarkTrialName;        // selects trials whose trigger mark has this name
    int m_nMarkChannel = -1;           // trigger channel index
    std::int64_t m_nMarkPtKind = 0;    // 1 for a scanned marker
    double m_dMarkSampleRate = 0.0;    // Hz at which the occurrences were taken; 0 unknown
    int m_nMarkShow = 1;               // drawn in the views
    std::uint32_t m_nMarkColor = 0xFF; // 0x00BBGGRR
    MarkWindow m_markWindow;
    MarkWindow m_markWindowBk; // at the recorded rate
    CTypedPtrArray<MarkTrigClass> m_aMarkPts;
    CTypedPtrArray<MarkTrigClass> m_aMarkPtsBk; // at the recorded rate
};

/// The file layer of a marker.
class CMarkerData09File : public CMarkerData
{
public:
    /// Reads or writes the record "MARKERDATAZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CMarkerData09File> s_versions[];
};

/// A marker; this is the class that is made.
class CMarkerDatazk : public CMarkerData09File
{
};

} // namespace megset
