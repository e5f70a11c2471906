#include "apps/cli/dataset/checkDataset.h"

#include "apps/cli/dataset/FormerFiles.h"
#include "apps/cli/dataset/TrialCheck.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/terminalText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <ostream>

namespace megset::cli {

namespace {

std::string quantity(std::int64_t count, const std::string& thing)
{
    return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

// Compares what the dataset says of its trials with what they are.
class Comparison
{
public:
    Comparison(OpenDataset& open, CheckReport& report) : m_open(open), m_dataset(open.dataset), m_report(report) {}

    void run(const ReadingNotes& notes)
    {
        checkLastChange();
        checkCounts();
        checkPaths();
        readTrials();
        compareShapes();
        checkSwitches();
        checkAllMarks();
        addReadingNotes(notes);
    }

private:
    void fault(const std::string& text) { m_report.findings.push_back({true, m_open.path.string(), text}); }
    void note(const std::string& text) { m_report.findings.push_back({false, m_open.path.string(), text}); }

    void checkLastChange()
    {
        if (const std::filesystem::path former = cutOffChange(m_open.path); !former.empty())
            m_report.findings.push_back({true, former.string(), adviceAfterCutOff(former)});
    }

    void checkCounts()
    {
        const int paths = m_dataset.m_aTrialFilePath.GetSize();
        m_report.trials = paths;
        if (paths != m_dataset.getTotalTrial())
            fault("the dataset counts " + quantity(m_dataset.getTotalTrial(), "trial") + " and names " +
                  quantity(paths, "file"));
        if (!(m_dataset.m_recordInfo.m_dRecSampleRate > 0.0))
            fault("the sampling rate is not above 0 Hz");
    }

    void checkPaths()
    {
        std::map<std::u16string, int> indexOfPath;
        for (int i = 0; i < m_dataset.m_aTrialFilePath.GetSize(); ++i) {
            const CString& path = m_dataset.m_aTrialFilePath.GetAt(i);
            const auto [place, isNew] = indexOfPath.emplace(std::u16string(path.view()), i);
            if (!isNew)
                fault("the trials " + std::to_string(place->second) + " and " + std::to_string(i) +
                      " have the same file, " + path.toUtf8());
        }
    }

    void readTrials()
    {
        for (int i = 0; i < m_dataset.m_aTrialFilePath.GetSize(); ++i) {
            TrialCheck check = checkTrial(m_open, i);
            for (const std::string& text : check.faults)
                m_report.findings.push_back({true, check.file, text});
            for (const std::string& text : check.notes)
                m_report.findings.push_back({false, check.file, text});
            m_report.trialsRead += check.shape ? 1 : 0;
            m_trials.push_back(std::move(check));
        }
    }

    void compareShapes()
    {
        const auto first = std::ranges::find_if(m_trials, [](const TrialCheck& trial) { return !!trial.shape; });
        if (first == m_trials.end())
            return;
        for (const TrialCheck& trial : m_trials)
            if (trial.shape)
                compareShape(trial, *first);
        m_channels = first->shape->channels;
        compareVirtual();
    }

    void compareShape(const TrialCheck& trial, const TrialCheck& first)
    {
        if (trial.shape->channels != first.shape->channels)
            m_report.findings.push_back({true, trial.file,
                                         "the trial has " + quantity(trial.shape->channels, "channel") + ", " +
                                             first.file + " has " + std::to_string(first.shape->channels)});
        const CMEGRecordInfozkProzk& recording = m_dataset.m_recordInfo;
        if (trial.shape->samples == 0 || trial.shape->samples == recording.m_nRecTotalSample)
            return;
        // A re-sampled trial has one sample more than the recording tells.
        if (trial.shape->resampleStep > 1 && trial.shape->resampleStep == recording.m_nResampleFactor &&
            trial.shape->samples == recording.m_nRecTotalSample + 1)
            return;
        // As the library warns when it opens a trial: other samples alone may be meant.
        const bool otherStep = trial.shape->resampleStep != recording.m_nResampleFactor;
        m_report.findings.push_back({otherStep, trial.file,
                                     "the trial has " + quantity(trial.shape->samples, "sample") +
                                         ", the recording has " + std::to_string(recording.m_nRecTotalSample) +
                                         (otherStep ? ", and their re-sampling differs" : "")});
    }

    void compareVirtual()
    {
        int virtualTrials = 0;
        for (const TrialCheck& trial : m_trials)
            virtualTrials += trial.shape && trial.shape->isVirtual ? 1 : 0;
        if (m_report.trialsRead == m_report.trials && virtualTrials != m_dataset.m_nVirtualTrial)
            note("the dataset counts " + quantity(m_dataset.m_nVirtualTrial, "virtual trial") + ", the trials say " +
                 std::to_string(virtualTrials));
    }

    void checkSwitches()
    {
        const int switches = m_dataset.m_nChnlParamCount;
        if (switches != 0 && m_channels > 0 && switches != m_channels)
            note("the channel switches are for " + quantity(switches, "channel") + ", the trials have " +
                 std::to_string(m_channels) + "; they fall back to their defaults");
    }

    void checkAllMarks()
    {
        for (const CMarkerManagerzk* manager :
             {&m_dataset.m_mkTrig, &m_dataset.m_mkMarker, &m_dataset.m_mkSegment, &m_dataset.m_mkClass})
            for (int i = 0; i < manager->m_aMarkers.GetSize(); ++i)
                if (const CMarkerDatazk* const marker = manager->m_aMarkers.GetAt(i))
                    checkMarker(*marker);
    }

    void checkMarker(const CMarkerDatazk& marker)
    {
        for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i) {
            const MarkTrigClass* const point = marker.getMarkPt(i);
            if (point != nullptr && (point->m_nMarkPtTrial < 0 || point->m_nMarkPtTrial >= m_report.trials)) {
                fault("the marker " + marker.m_strMarkName.toUtf8() + " occurs in trial " +
                      std::to_string(point->m_nMarkPtTrial) + ", which the dataset has not");
                return;
            }
        }
    }

    // The reader of the dataset opens one trial, whose faults have been told already.
    void addReadingNotes(const ReadingNotes& notes)
    {
        if (notes.bytesLeft > 0)
            fault(quantity(static_cast<std::int64_t>(notes.bytesLeft), "byte") + " left over behind the dataset");
        if (m_report.findings.empty())
            for (const std::string& message : notes.messages)
                fault("the reader said: " + message);
    }

    OpenDataset& m_open;
    const CMEGDatazk& m_dataset;
    CheckReport& m_report;
    std::vector<TrialCheck> m_trials;
    int m_channels = 0;
};

std::string shown(const std::string& text)
{
    return showControlCharacters(CString(text)).toUtf8();
}

} // namespace

int CheckReport::faults() const
{
    return static_cast<int>(std::ranges::count_if(findings, &Finding::isFault));
}

CheckReport checkDataset(const std::filesystem::path& path)
{
    CheckReport report;
    report.dataset = path.string();
    ReadingNotes notes;
    try {
        const auto open = openDatasetToLook(path, notes);
        Comparison(*open, report).run(notes);
    } catch (const std::runtime_error& exception) {
        // The path is told already.
        const std::string text = exception.what();
        const std::string told = shownPath(std::filesystem::absolute(path).lexically_normal()) + ": ";
        report.findings.push_back({true, path.string(), text.starts_with(told) ? text.substr(told.size()) : text});
    }
    return report;
}

void writeText(const CheckReport& report, std::ostream& out)
{
    for (const Finding& finding : report.findings)
        out << (finding.isFault ? "wrong: " : "note: ") << shown(finding.file) << ": " << shown(finding.text) << '\n';
    out << shown(report.dataset) << ": " << report.trialsRead << " of " << quantity(report.trials, "trial") << " read, "
        << (report.faults() == 0 ? "nothing wrong" : quantity(report.faults(), "fault")) << '\n';
}

void writeJson(const CheckReport& report, std::ostream& out)
{
    nlohmann::ordered_json findings = nlohmann::ordered_json::array();
    for (const Finding& finding : report.findings)
        findings.push_back(
            {{"level", finding.isFault ? "fault" : "note"}, {"file", finding.file}, {"text", finding.text}});
    const nlohmann::ordered_json json = {{"dataset", report.dataset},
                                         {"trials", report.trials},
                                         {"trials_read", report.trialsRead},
                                         {"faults", report.faults()},
                                         {"findings", findings}};
    out << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

} // namespace megset::cli
