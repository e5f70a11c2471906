#include "apps/cli/import/importAcquisition.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"
#include "megset/platform/stopRequest.h"
#include "megset/platform/terminalText.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view acquisitionTag = "MEACQDATASETZK";
constexpr std::size_t mostNamed = 5; ///< of a list in a message

std::runtime_error fault(const fs::path& path, const std::string& reason)
{
    return std::runtime_error(shownPath(path) + ": " + reason);
}

std::string shown(const CString& text)
{
    return showControlCharacters(text).toUtf8();
}

// ---- what the recording tells

void openToLook(CFile& file, const fs::path& path)
{
    CFileException exception;
    if (!file.Open(fromNative(path), CFile::modeRead | CFile::shareDenyNone, &exception))
        throw std::runtime_error(shown(exception.GetErrorMessage()));
}

void checkKind(CFile& file, const fs::path& source)
{
    const RecordKind* const kind = kindOf(file);
    if (kind == nullptr && source.parent_path().extension() == ".ds")
        throw fault(source,
                    "is a file of a recording; name its folder " + shown(fromNative(source.parent_path().filename())));
    if (kind == nullptr)
        throw fault(source, "is neither the folder of a CTF recording (.ds) nor the dataset of an acquisition (.mega)");
    if (kind->tag != acquisitionTag)
        throw fault(source, "a recording's dataset (.mega) is wanted; this is: " + std::string(kind->meaning));
}

// Reads the recording's own file, without its trials.
void readRecording(const fs::path& source, CMEGDatazk& recording)
{
    CFile file;
    openToLook(file, source);
    checkKind(file, source);
    const MessageRecorder host([] { return ReaderMessage(); });
    CArchive archive(&file, CArchive::load);
    try {
        if (!recording.serializeRecordWithoutTrials(archive))
            throw fault(source, host.messages().empty() ? "this recording can't be read" : host.messages().back().text);
    } catch (const CArchiveException&) {
        throw fault(source, "the file ends before the recording does");
    }
}

// Where the library finds a trial's file when nobody is asked.
CString findAcquired(const CString& path, const fs::path& source)
{
    CString found;
    if (CMDTrialzk::findFile(path, found))
        return found;
    return CMDTrialzk::findFile4FilePath(path, nullptr, fromNative(source), false);
}

std::string quantity(std::int64_t count, const std::string& thing)
{
    return std::to_string(count) + ' ' + thing + (count == 1 ? "" : "s");
}

// Throws when a trial has no file, and tells which.
void checkTrialFiles(const fs::path& source, const CMEGDatazk& recording)
{
    const int trials = recording.getTotalTrial();
    const CStringArray& paths = recording.m_aRecordTrialPath;
    if (trials < 1)
        throw fault(source, "the recording has no trials");
    if (!recording.m_ppTrial || paths.GetSize() < trials)
        throw fault(source, "the recording counts " + quantity(trials, "trial") + " and names " +
                                quantity(recording.m_ppTrial ? paths.GetSize() : 0, "file"));
    std::vector<std::string> missing;
    for (int i = 0; i < trials; ++i)
        if (findAcquired(paths.GetAt(i), source).IsEmpty())
            missing.push_back("\n  trial " + std::to_string(i) + ": " + shown(paths.GetAt(i)));
    if (missing.empty())
        return;
    std::string text = std::to_string(missing.size()) + " of " + quantity(trials, "trial file") +
                       (missing.size() == 1 ? " is" : " are") +
                       " missing, neither where the recording tells nor beside its own file:";
    for (std::size_t i = 0; i < std::min(missing.size(), mostNamed); ++i)
        text += missing[i];
    if (missing.size() > mostNamed)
        text += "\n  and " + std::to_string(missing.size() - mostNamed) + " more";
    throw fault(source, text);
}

// ---- what is wrong with a trial

// Empty when the trial can be read and has channels.
std::string faultOfTrial(const CString& path)
{
    CFile file;
    CFileException exception;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone, &exception))
        return shown(exception.GetErrorMessage());
    const MessageRecorder host([] { return ReaderMessage(); });
    CArchive archive(&file, CArchive::load);
    CMDTrialzk trial;
    try {
        if (!trial.serializeAcq(archive))
            return host.messages().empty() ? "the trial can't be read" : host.messages().back().text;
    } catch (const CArchiveException&) {
        return "the file ends before the trial does";
    }
    return trial.getAllChannelPt() ? "" : "the trial has no channels";
}

// Tells of the first trial that can't be read; else what the library said.
[[noreturn]] void failToConvert(const fs::path& source, const CMEGDatazk& recording,
                                const std::vector<std::string>& said)
{
    for (int i = 0; i < recording.getTotalTrial(); ++i) {
        const CString& listed = recording.m_aRecordTrialPath.GetAt(i);
        const CString path = findAcquired(listed, source);
        const std::string reason = path.IsEmpty() ? "the file is missing" : faultOfTrial(path);
        if (!reason.empty())
            throw fault(toNative(path.IsEmpty() ? listed : path), "trial " + std::to_string(i) + ": " + reason);
    }
    std::string reason = "the recording can't be imported";
    for (std::size_t i = 0; i < std::min(said.size(), mostNamed); ++i)
        reason += (i == 0 ? ": " : "; ") + said[i];
    throw fault(source, reason);
}

// ---- the conversion

/// A folder that goes away with all in it.
class PassingFolder
{
public:
    explicit PassingFolder(fs::path path) : m_path(std::move(path))
    {
        if (!fs::is_directory(m_path.parent_path()))
            throw fault(m_path.parent_path(), "there is no such folder");
        std::error_code error;
        if (!fs::create_directory(m_path, error))
            throw fault(m_path, error ? error.message() : "exists already; the dataset is built there");
    }
    PassingFolder(const PassingFolder&) = delete;
    PassingFolder& operator=(const PassingFolder&) = delete;
    ~PassingFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    fs::path file(const fs::path& name) const { return m_path / name; }

private:
    StopSignals m_signals; // so that it goes when the command is stopped
    fs::path m_path;
};

// Converts all trials into the folder of the document. Gives what the library had to say.
std::vector<std::string> convert(const fs::path& source, const CMEGDatazk& recording, OpenDataset& open)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    bool done = false;
    try {
        done = open.dataset.openRecordMeX(fromNative(source), &open.document) != 0;
    } catch (const CFileException& exception) {
        throw std::runtime_error(shown(exception.GetErrorMessage())); // a full disk
    } catch (const CArchiveException&) {
        done = false; // the trial that is cut short is told below
    }
    std::vector<std::string> said;
    for (const ReaderMessage& message : host.messages())
        said.push_back(shown(message.text));
    CMEGDatazk& dataset = open.dataset;
    const bool isWhole = done && dataset.m_aTrialFilePath.GetSize() == dataset.getTotalTrial();
    // An index outside the trials leaves none in memory.
    const bool isOpen = isWhole && (dataset.getCurrentTrialPt() != nullptr || dataset.openTrial(0));
    if (!isOpen)
        failToConvert(source, recording, said);
    return said;
}

// The files of the dataset's trials, as they are named beside the target.
std::vector<fs::path> finalPaths(const OpenDataset& open, const fs::path& target)
{
    std::vector<fs::path> paths;
    for (const CString& path : open.dataset.m_aTrialFilePath)
        paths.push_back(target.parent_path() / toNative(path).filename());
    return paths;
}

// The files of the recording, which may have any names.
std::set<fs::path> filesOf(const fs::path& source, const CMEGDatazk& recording)
{
    std::set<fs::path> files{fs::weakly_canonical(source)};
    for (const CString& listed : recording.m_aRecordTrialPath)
        if (const CString found = findAcquired(listed, source); !found.IsEmpty())
            files.insert(fs::weakly_canonical(toNative(found)));
    return files;
}

// Throws when a file of the dataset would take the place of another.
void checkPlace(const fs::path& path, bool force, const std::set<fs::path>& recorded)
{
    if (recorded.contains(fs::weakly_canonical(path)))
        throw fault(path, "this is a file of the recording; the dataset needs another place");
    if (fs::exists(path) && (!force || fs::is_directory(path)))
        throw fault(path, "exists already");
}

// Brings the trials to their place. Those that are there are replaced, each in one step.
void bringTrials(OpenDataset& open, const std::vector<fs::path>& paths, CreatedFiles& created)
{
    for (std::size_t i = 0; i < paths.size(); ++i) {
        CString& listed = open.dataset.m_aTrialFilePath[static_cast<int>(i)];
        fs::rename(toNative(listed), paths[i]);
        created.take(paths[i]);
        listed = fromNative(paths[i]);
    }
}

} // namespace

ImportSummary importAcquisition(const fs::path& source, const fs::path& target, const ImportArguments& arguments)
{
    CMEGDatazk recording;
    readRecording(source, recording);
    checkTrialFiles(source, recording);
    const std::set<fs::path> recorded = filesOf(source, recording);
    checkPlace(target, arguments.force, recorded);
    const PassingFolder building(target.string() + ".import");
    OpenDataset open;
    open.path = target;
    open.document.SetPathName(fromNative(building.file(target.filename())));
    ImportSummary summary;
    summary.warnings = convert(source, recording, open);

    const std::vector<fs::path> places = finalPaths(open, target);
    for (const fs::path& place : places)
        checkPlace(place, arguments.force, recorded);
    if (std::ranges::find(places, target) != places.end())
        throw fault(target, "a trial has this name; the dataset needs another one");
    CreatedFiles created;
    bringTrials(open, places, created);
    open.document.SetPathName(fromNative(target));
    const CString session = arguments.session.empty() ? open.dataset.getSessionName() : CString(arguments.session);
    open.dataset.setDocument(&open.document, true);
    open.dataset.setSessionName(session);
    storeDataset(open);
    created.keep();

    const CMDTrialzk& current = *open.dataset.getCurrentTrialPt();
    summary.trials = open.dataset.getTotalTrial();
    summary.channels = current.getTotalChannel();
    summary.samples = current.getTotalSample(0);
    return summary;
}

} // namespace megset::cli
