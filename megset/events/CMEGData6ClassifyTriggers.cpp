// Triggers: the scans of a dataset, their copy, and their reports.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/events/triggerScan.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/CProgresszk.h"
#include "megset/platform/CRichInfozk.h"

#include <cmath>
#include <map>
#include <new>
#include <utility>

namespace megset {

/// What tells the four scans of a dataset apart.
struct TriggerScanPlan
{
    const char* averagedQuestion;
    const char* progress;
    TriggerScan scan;
    bool namesByPrefix = false;
    bool selectsTrialsAsFound = false; // by the name that a new manager gives the marker, else by its own name
    bool tellsRanges = false;
    bool announcesParameters = true;
    bool setsParameters = false;
};

namespace {

// A stimulus channel has far fewer: beyond them a channel is no stimulus channel, and its marks would eat the memory.
constexpr std::size_t mostTriggers = 1'000'000;
constexpr std::size_t mostMarkers = 200'000;

constexpr int triggerGroup = 100;

int refuseTooMany(std::size_t most)
{
    AfxMessageBox(CString::formatted("Too many triggers (more than %d), please check the trigger channels!", most),
                  MB_OK);
    return 0;
}

// Takes the triggers of trial after trial into the trigger manager.
class TriggerCollector
{
public:
    TriggerCollector(CMEGData6Classify& data, const TriggerScanPlan& plan, const SampleClock& clock)
        : m_data(data), m_plan(plan), m_clock(clock)
    {
        CMarkerManagerzk& manager = m_data.m_mkTrig;
        for (int i = 0; i < manager.getTotalMarkers(); ++i)
            if (CMarkerDatazk* marker = manager.getMarker(i, false))
                m_known.emplace(Identity(marker->m_nMarkValue, marker->m_nMarkChannel), marker);
    }

    /// 1, or 0 for too many markers.
    int take(const ScannedTrial& found, int trial)
    {
        for (const FoundTrigger& trigger : found.triggers) {
            const auto known = m_known.find(Identity(trigger.value, trigger.channel));
            if (known != m_known.end())
                repeat(*known->second, trigger, trial);
            else if (m_nNextId > static_cast<int>(mostMarkers))
                return refuseTooMany(mostMarkers);
            else
                addNew(found, trigger);
        }
        return 1;
    }

private:
    // What findMatchMarkerData compares; a search of all markers for each trigger would take too long.
    using Identity = std::pair<std::int64_t, int>;

    void repeat(CMarkerDatazk& marker, const FoundTrigger& trigger, int trial)
    {
        MarkTrigClass point = occurrenceOf(trigger, m_clock);
        point.m_nMarkPtTrial = trial;
        if (!marker.addMarkPt(point, m_clock.resampleFactor))
            AfxThrowInvalidArgException();
        marker.countOccurrence();
    }

    // Its first occurrence stays in trial 0: it is meant so.
    void addNew(const ScannedTrial& found, const FoundTrigger& trigger)
    {
        m_scratch.cleanMarks();
        if (!addFoundMarker(m_scratch, trigger, found.samples, m_clock))
            AfxThrowInvalidArgException();
        std::unique_ptr<CMarkerDatazk> marker = m_scratch.m_aMarkers.release(0);
        name(*marker);
        marker->m_nMarkID = m_nNextId++;
        marker->m_nMarkValueBk = marker->m_nMarkValue;
        marker->m_nMarkCount = 1;
        if (m_plan.tellsRanges)
            marker->m_strMarkInfo = found.info;
        setup(*marker, m_plan.setsParameters);
        CMarkerDatazk* kept = marker.get();
        m_data.m_mkTrig.addMarker(std::move(marker));
        m_known.emplace(Identity(trigger.value, trigger.channel), kept);
    }

    void name(CMarkerDatazk& marker) const
    {
        const CString found = marker.m_strMarkName;
        std::int64_t number = marker.m_nMarkValue;
        marker.m_nMarkGroupID = triggerGroup;
        if (m_data.m_recordInfo.m_nAcqWordF == 1) {
            int exponent = 0;
            std::frexp(static_cast<double>(marker.m_nMarkValue), &exponent);
            number = marker.m_nMarkGroupID = exponent;
        }
        marker.m_strMarkName = m_plan.namesByPrefix
                                   ? CString::formatted("%s%d", m_data.m_mkTrig.m_trigScanParam.m_strTrigPrefix, number)
                                   : CString::formatted("ScnTrig%d", number);
        marker.m_strMarkTrialName = m_plan.selectsTrialsAsFound ? found : marker.m_strMarkName;
    }

    void setup(CMarkerDatazk& marker, bool setsParameters)
    {
        CMarkerManagerzk& manager = m_data.m_mkTrig;
        const int done = setsParameters ? manager.setupTrgClsMks(&marker, &manager.m_trigScanParam)
                                        : manager.setupTrgClsMks1(&marker);
        // The backup is to be at the recorded rate.
        if (!done || !marker.backupMarkPts(m_clock.resampleFactor))
            AfxThrowInvalidArgException();
    }

    CMEGData6Classify& m_data;
    const TriggerScanPlan& m_plan;
    SampleClock m_clock;
    CMarkerManagerzk m_scratch; // with the default prefix
    std::map<Identity, CMarkerDatazk*> m_known;
    int m_nNextId = 1;
};

SampleClock clockOf(const CMEGRecordInfozkProzk& record)
{
    return {record.m_dRecSampleRate, record.m_nResampleFactor};
}

void announceParameters(CMarkerManagerzk& manager, bool withParameters)
{
    CMarkerDatazk scan;
    scan.m_strMarkName = "ScanTrig";
    scan.m_nMarkValue = 1;
    withParameters ? manager.setupTrgClsMks(&scan, &manager.m_trigScanParam) : manager.setupTrgClsMks1(&scan);
}

TriggerScan scanOfMode(int mode)
{
    constexpr TriggerScan scans[] = {TriggerScan::Plain, TriggerScan::Pro, TriggerScan::AbsDc, TriggerScan::AbsDcM};
    return mode >= 0 && mode < static_cast<int>(std::size(scans)) ? scans[mode] : TriggerScan::None;
}

int copyMarkers(const CMarkerManagerzk& from, CMarkerManagerzk& to)
{
    try {
        CMarkerManagerzk copy(from);
        to = std::move(copy);
        return 1;
    } catch (const std::bad_alloc&) {
        AfxMessageBox("Not enough memory!", MB_OK);
        return 0;
    }
}

} // namespace

// ---- scans of the dataset

int CMEGData6Classify::checkTrig(bool force)
{
    return scanTrials({.averagedQuestion = "Data may be averaged, would you  like to continue?",
                       .progress = "Checking triggers...",
                       .scan = TriggerScan::Pro,
                       .namesByPrefix = true,
                       .selectsTrialsAsFound = true,
                       .tellsRanges = true},
                      force);
}

int CMEGData6Classify::checkTrigAbsDc(bool force)
{
    return scanTrials({.averagedQuestion = "Data may be averaged!   Would you  like to continue?",
                       .progress = "Checking triggers...",
                       .scan = TriggerScan::AbsDc},
                      force);
}

int CMEGData6Classify::checkTrigAbsDcM(bool force)
{
    return scanTrials({.averagedQuestion = "Data are averaged, Would you like to continue?",
                       .progress = "Checking triggers AbsDCM...",
                       .scan = TriggerScan::AbsDcM,
                       .announcesParameters = false},
                      force);
}

int CMEGData6Classify::checkTrigPro(bool force)
{
    return scanTrials({.averagedQuestion = "Data may be averaged, Would you like to continue?",
                       .progress = "Checking triggers AbsDCM...",
                       .scan = scanOfMode(m_mkTrig.m_trigScanParam.m_nTrigScanMode),
                       .namesByPrefix = true,
                       .tellsRanges = true,
                       .setsParameters = true},
                      force);
}

bool CMEGData6Classify::mayBeScanned(const char* averagedQuestion) const
{
    if (m_nTotalTrial < 1)
        return false;
    return m_recordInfo.m_nAverageCount <= 0 || AfxMessageBox(averagedQuestion, MB_YESNO) == IDYES;
}

int CMEGData6Classify::scanTrials(const TriggerScanPlan& plan, bool force)
{
    if (!mayBeScanned(plan.averagedQuestion))
        return 0;
    if (!force && m_mkTrig.getTotalMarkers() > 0)
        return m_mkTrig.getTotalMarkers();
    if (AfxMessageBox("Would you like to delete the old triggers?", MB_YESNO) == IDYES)
        m_mkTrig.cleanMarks();
    announceParameters(m_mkTrig, plan.announcesParameters);
    const double threshold = TrigScanParam().m_dTrigThreshold; // not the dataset's: it is meant so
    TriggerCollector collector(*this, plan, clockOf(m_recordInfo));
    std::size_t room = mostTriggers;
    CProgresszk progress(plan.progress, 0, m_nTotalTrial);
    for (int i = 0; i < placedTrials(); ++i) {
        progress.setPos(i);
        CMDTrialzk* trial = getTrialzk(i);
        if (!canScan(trial))
            continue;
        const ScannedTrial found = scanTriggers(*trial, plan.scan, threshold, room);
        if (found.hasTooMany)
            return refuseTooMany(mostTriggers);
        room -= found.triggers.size();
        if (!collector.take(found, i))
            return 0;
    }
    return 1;
}

int CMEGData6Classify::trigChannelDcoff(int alsoBackup)
{
    if (!mayBeScanned("Data may be averaged, Would you like to continue?"))
        return 0;
    CProgresszk progress("Trigger channel Dc off-set...", 0, m_nTotalTrial);
    for (int i = 0; i < placedTrials(); ++i) {
        progress.setPos(i);
        const CMDTrialzk* trial = getTrialzk(i);
        for (int c = 0; trial != nullptr && c < trial->getTotalChannel(); ++c)
            if (CMDChannelzk* channel = trial->getChannel(c); channel != nullptr && channel->isTriggerChannel())
                channel->stimTrgChnl_Dc(alsoBackup);
    }
    return 1;
}

// ---- one trial

int CMEGData6Classify::getTrialTriggers(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*)
{
    return scanTrial(out, trial, TriggerScan::Plain);
}

int CMEGData6Classify::getTrialTrigPro(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*)
{
    return scanTrial(out, trial, TriggerScan::Pro);
}

int CMEGData6Classify::getTrialTrigAbsDc(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*)
{
    return scanTrial(out, trial, TriggerScan::AbsDc);
}

int CMEGData6Classify::getTrialTrigAbsDcM(CMarkerManagerzk& out, CMDTrialzk* trial, TrigScanParam*)
{
    return scanTrial(out, trial, TriggerScan::AbsDcM);
}

int CMEGData6Classify::scanTrial(CMarkerManagerzk& out, CMDTrialzk* trial, TriggerScan scan)
{
    CMDTrialzk* scanned = trial != nullptr ? trial : getTrialzk(-1);
    if (!canScan(scanned))
        return 0;
    const ScannedTrial found = scanTriggers(*scanned, scan, out.m_trigScanParam.m_dTrigThreshold, mostMarkers);
    out.m_strMgrInfo = found.info;
    if (found.hasTooMany) {
        refuseTooMany(mostMarkers);
        return out.getTotalMarkers();
    }
    const SampleClock clock = clockOf(m_recordInfo);
    for (const FoundTrigger& trigger : found.triggers)
        if (!addFoundMarker(out, trigger, found.samples, clock))
            break;
    return out.getTotalMarkers();
}

// ---- copy and reports

int CMEGData6Classify::setTrig2Record()
{
    return m_mkTrig.getTotalMarkers() > 0 ? copyMarkers(m_mkTrig, m_mkTrigRecord) : 0;
}

int CMEGData6Classify::reloadTrigRecord()
{
    if (m_mkTrigRecord.getTotalMarkers() > 0)
        return copyMarkers(m_mkTrigRecord, m_mkTrig);
    AfxMessageBox("No recorded triggers can be found!", MB_OK);
    return 0;
}

int CMEGData6Classify::isMarkTrig2TrlMatch(const CMarkerDatazk* marker, const CMDTrialzk* trial) const
{
    if (marker == nullptr || trial == nullptr)
        return 0;
    return marker->m_strMarkTrialName.CompareNoCase(trial->m_strTrigMarkName) == 0 ? 1 : 0;
}

CString CMEGData6Classify::getTrialTrigInfoStd()
{
    if (!hasTrialsToReport())
        return "No Trial";
    std::int64_t total = 0;
    std::int64_t most = 0;
    CString text = m_mkTrig.getAllTrigInfoStd(m_nTotalTrial, total, most);
    CString head = "TrlID  ";
    const CString columns = "TrigName  Time2SyncTrig(ms) Point2SyncTrig Repetition ";
    for (std::int64_t i = 0; i < most; ++i)
        head += columns;
    head += " TotalTrig \n";
    showTrigInfo(head + text, total);
    return text;
}

CString CMEGData6Classify::getTrialTrigInfoPro()
{
    if (!hasTrialsToReport())
        return "No Trial";
    std::int64_t total = 0;
    CString text = m_mkTrig.getAllTrigInfoPro(m_nTotalTrial, total);
    showTrigInfo(text, total);
    return text;
}

bool CMEGData6Classify::hasTrialsToReport() const
{
    if (m_nTotalTrial > 0)
        return true;
    AfxMessageBox("No Trials", MB_OK);
    return false;
}

// The title has no closing bracket: it is meant so.
void CMEGData6Classify::showTrigInfo(const CString& text, std::int64_t triggers) const
{
    const std::int64_t trials = m_nTotalTrial;
    CRichInfozk().showRichInfo(
        text, CString::formatted("%s (Trials:%I64d Triggers:%I64d", m_strDatasetFileName, trials, triggers));
}

} // namespace megset
