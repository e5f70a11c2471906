#include "apps/cli/dataset/changeDataset.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/FormerFiles.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CConsoleHost.h"
#include "megset/platform/CFile.h"
#include "megset/platform/CFileDialog.h"
#include "megset/platform/paths.h"
#include "megset/platform/terminal.h"

#include <mutex>
#include <optional>
#include <stdexcept>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

// The console, which keeps the trials that are written over.
class KeepingHost : public CConsoleHost
{
public:
    explicit KeepingHost(FormerFiles* files) : m_files(files) {}

    void trialFileIsWritten(const CString& path) override
    {
        const std::lock_guard lock(m_mutex);
        if (m_files != nullptr)
            m_files->putAside(toNative(path));
    }

private:
    std::mutex m_mutex;
    FormerFiles* m_files;
};

// The console as the host of the process, with the answers that the user gave beforehand.
class AnsweringHost
{
public:
    AnsweringHost(const ChangeArguments& arguments, FormerFiles* files) : m_host(files)
    {
        m_host.setAnswer(arguments.yes);
        m_host.setAsking(!arguments.yes && !arguments.no);
        m_former = AfxSetHost(&m_host);
    }
    AnsweringHost(const AnsweringHost&) = delete;
    AnsweringHost& operator=(const AnsweringHost&) = delete;
    ~AnsweringHost() { AfxSetHost(m_former); }

private:
    KeepingHost m_host;
    CUserHost* m_former = nullptr;
};

fs::path absolutePath(const fs::path& path)
{
    return fs::absolute(path).lexically_normal();
}

// Where the result goes, as the user says now; only a terminal is asked.
fs::path askForTarget(const ChangeArguments& arguments)
{
    FileRequest request;
    request.open = false;
    request.filter = "MEG datasets (*.meg)|*.meg||";
    request.defaultExtension = "meg";
    request.pathMustExist = true;
    const bool mayAsk = isTerminal(0) && isTerminal(2) && !arguments.yes && !arguments.no;
    const auto choice = mayAsk ? AfxGetHost().chooseFile(request) : std::nullopt;
    if (!choice)
        failWithoutTarget(arguments.dataset, "dataset");
    return toNative(choice->path);
}

fs::path targetOf(const ChangeArguments& arguments)
{
    return datasetPath(arguments.out.empty() ? askForTarget(arguments) : fs::path(arguments.out));
}

fs::path trialPath(const fs::path& dataset, int index)
{
    return dataset.parent_path() / (dataset.stem().string() + "Trial" + std::to_string(index) + ".trl");
}

fs::path findTrial(const OpenDataset& open, int index)
{
    const CString found = findTrialFile(open, index);
    if (found.IsEmpty())
        throw std::runtime_error(storedTrialPath(open, index) + ": the trial's file is missing");
    return toNative(found);
}

// A copy may be changed even where the trial itself is protected.
void copyTrial(const fs::path& from, const fs::path& to)
{
    endWhenAsked();
    copyFile(from, to);
    fs::permissions(to, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add);
}

// Copies the dataset's trials beside `target`, and gives their paths.
std::vector<fs::path> copyTrials(const OpenDataset& source, const fs::path& target, CreatedFiles& created)
{
    std::vector<fs::path> copies;
    for (int i = 0; i < source.dataset.m_aTrialFilePath.GetSize(); ++i) {
        copies.push_back(trialPath(target, i));
        created.add(copies.back());
        copyTrial(findTrial(source, i), copies.back());
    }
    return copies;
}

void write(OpenDataset& open, const fs::path& path)
{
    CFile file;
    CFileException exception;
    if (!file.Open(fromNative(path), CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive, &exception))
        throw std::runtime_error(exception.GetErrorMessage().toUtf8());
    CArchive archive(&file, CArchive::store);
    open.dataset.serializezk(archive);
    archive.Close();
    file.Close();
}

// Takes folder and file name from the document, and keeps the session's name, which goes by the document otherwise.
void takeDocument(OpenDataset& open)
{
    const CString session = open.dataset.getSessionName();
    open.dataset.setDocument(&open.document, true);
    open.dataset.setSessionName(session);
}

} // namespace

void copyDataset(const fs::path& from, const fs::path& target, CreatedFiles& created)
{
    if (!fs::is_directory(target.parent_path()))
        throw std::runtime_error(shownPath(target.parent_path()) + ": there is no such folder");
    created.add(target);
    ReadingNotes notes;
    const auto source = openDatasetToLook(from, notes);
    const std::vector<fs::path> copies = copyTrials(*source, target, created);
    source->path = target;
    source->document.SetPathName(fromNative(target));
    const int current = source->dataset.m_nCurrentTrial;
    source->dataset._cleanDatasetTrials(); // the resident trial is the source's; its copy lies on disk
    source->dataset.m_ppTrial.allocate(static_cast<int>(copies.size()));
    takeDocument(*source);
    source->dataset.m_aTrialFilePath.RemoveAll();
    for (const fs::path& copy : copies)
        source->dataset.m_aTrialFilePath.Add(fromNative(copy));
    source->dataset.m_nTotalTrial = static_cast<int>(copies.size());
    source->dataset.m_nCurrentTrial = current;
    storeDataset(*source);
}

void addAnswerOptions(CLI::App& command, bool& yes, bool& no)
{
    CLI::Option* const yesOption = command.add_flag("--yes", yes, "Answer every question with yes");
    CLI::Option* const noOption = command.add_flag("--no", no, "Answer every question with no")->excludes(yesOption);
    for (CLI::Option* option : {yesOption, noOption})
        option->group(answersHeading);
}

void addChangeOptions(CLI::App& command, ChangeArguments& arguments)
{
    command.add_option("DATASET", arguments.dataset, "A dataset file (.meg)")->required();
    addTargetOptions(command, arguments, "dataset");
    addAnswerOptions(command, arguments.yes, arguments.no);
}

void addTargetOptions(CLI::App& command, ChangeArguments& arguments, const std::string& what)
{
    CLI::Option* const out =
        command.add_option("--out", arguments.out, "Leave the " + what + " as it is, and write the changed one here");
    CLI::Option* const inPlace =
        command.add_flag("--in-place", arguments.inPlace, "Change the " + what + " itself")->excludes(out);
    for (CLI::Option* option : {out, inPlace})
        option->group(targetHeading);
}

void failWithoutTarget(const std::string& path, const std::string& what)
{
    const std::string newName = what == "dataset" ? "NEW.meg" : "NEW";
    throw std::runtime_error(shownPath(path) + ": say where the changed " + what + " goes, --out " + newName +
                             " or --in-place");
}

void storeDataset(OpenDataset& open)
{
    const fs::path part = open.path.string() + ".part";
    try {
        write(open, part);
        if (open.dataset.getUnsavedTrials().GetSize() > 0)
            throw std::runtime_error(shownPath(open.path) + ": a trial can't be saved");
        fs::rename(part, open.path);
    } catch (...) {
        std::error_code ignored;
        fs::remove(part, ignored);
        throw;
    }
}

namespace {

// Nobody else changes the dataset as long as what comes back is there.
std::unique_ptr<OpenDataset> changeAndStore(const fs::path& path, const std::function<void(OpenDataset&)>& change)
{
    auto open = openDatasetToChange(path);
    takeDocument(*open);
    change(*open);
    storeDataset(*open);
    return open;
}

void changeInPlace(const ChangeArguments& arguments, const std::function<void(OpenDataset&)>& change)
{
    const fs::path path = absolutePath(arguments.dataset);
    FormerFiles former(path);
    const AnsweringHost host(arguments, &former);
    const auto open = changeAndStore(path, change);
    former.keepNew();
}

} // namespace

void changeDataset(const ChangeArguments& arguments, const std::function<void(OpenDataset&)>& change)
{
    if (arguments.inPlace)
        return changeInPlace(arguments, change);
    const AnsweringHost host(arguments, nullptr);
    const fs::path target = targetOf(arguments);
    CreatedFiles created;
    copyDataset(absolutePath(arguments.dataset), target, created);
    changeAndStore(target, change);
    created.keep();
}

} // namespace megset::cli
