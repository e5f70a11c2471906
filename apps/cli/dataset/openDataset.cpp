#include "apps/cli/dataset/openDataset.h"

#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"
#include "megset/platform/terminalText.h"

#include <algorithm>
#include <stdexcept>

namespace megset::cli {

namespace {

std::runtime_error fault(const std::filesystem::path& path, const std::string& reason)
{
    return std::runtime_error(shownPath(path) + ": " + reason);
}

void addMessages(const MessageRecorder& host, std::vector<std::string>& messages)
{
    for (const ReaderMessage& message : host.messages())
        messages.push_back(message.text);
}

// What ended may be the file of the current trial, which is read on the way.
std::runtime_error faultOf(const OpenDataset& open, const CArchiveException& exception)
{
    if (exception.m_cause != CArchiveException::endOfFile)
        return fault(open.path, exception.what());
    const std::filesystem::path file = toNative(exception.m_strFileName);
    return file.empty() || file == open.path ? fault(open.path, "the file ends before the dataset does")
                                             : fault(file, "the file ends before the trial does");
}

// Nothing is left to the reader where the file says itself that it is something else.
void refuseOtherKind(CFile& file, const std::filesystem::path& path)
{
    const RecordKind* const kind = kindOf(file);
    if (kind != nullptr && kind->tag != "MEGDATASETZK")
        throw fault(path, "a dataset (.meg) is wanted; this is: " + std::string(kind->meaning));
}

// Reads the dataset's own file with `serialize`, an operation of the dataset.
template <class Serialize>
void read(OpenDataset& open, CFile& file, std::uint64_t& bytesLeft, Serialize serialize)
{
    CArchive archive(&file, CArchive::load);
    try {
        if (!serialize(archive))
            throw fault(open.path, "this dataset can't be read");
        bytesLeft = archive.bytesLeft();
    } catch (const CArchiveException& exception) {
        throw faultOf(open, exception);
    }
}

std::unique_ptr<OpenDataset> openFile(const std::filesystem::path& path, CFile& file, unsigned sharing)
{
    auto open = std::make_unique<OpenDataset>();
    open->path = std::filesystem::absolute(path).lexically_normal();
    std::error_code ignored;
    if (std::filesystem::is_directory(open->path, ignored))
        throw fault(open->path, "is a folder, not a dataset; megset import makes one of a recording");
    CFileException exception;
    if (!file.Open(fromNative(open->path), CFile::modeRead | sharing, &exception))
        throw std::runtime_error(showControlCharacters(exception.GetErrorMessage()).toUtf8());
    refuseOtherKind(file, open->path);
    open->document.SetPathName(fromNative(open->path));
    open->dataset.setDocument(&open->document, false);
    return open;
}

// Makes the current trial resident as the library does on opening, but without a question and without writing.
void readCurrentTrial(OpenDataset& open)
{
    CMEGDatazk& dataset = open.dataset;
    const int last = std::min(dataset.getTotalTrial(), dataset.m_aTrialFilePath.GetSize()) - 1;
    dataset.m_nCurrentTrial = std::max(0, std::min(dataset.m_nCurrentTrial, last));
    if (last < 0 || dataset.getCurrentTrialPt() != nullptr)
        return;
    if (!dataset.m_ppTrial && !dataset.m_ppTrial.allocate(last + 1))
        throw std::runtime_error("there is not enough memory");
    dataset.m_ppTrial.set(dataset.m_nCurrentTrial, readTrial(open, dataset.m_nCurrentTrial));
}

} // namespace

std::filesystem::path datasetPath(const std::filesystem::path& name)
{
    std::filesystem::path path = std::filesystem::absolute(name).lexically_normal();
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored))
        throw fault(path, "is a folder; the dataset needs a name in it");
    if (!path.has_extension())
        path += ".meg";
    return path;
}

std::unique_ptr<OpenDataset> openDatasetToLook(const std::filesystem::path& path, ReadingNotes& notes, LookAt what)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    CFile file;
    auto open = openFile(path, file, CFile::shareDenyNone);
    try {
        read(*open, file, notes.bytesLeft,
             [&open](CArchive& archive) { return open->dataset.serializeWithoutTrials(archive); });
        addMessages(host, notes.messages);
    } catch (const std::runtime_error&) {
        // The reader's own words say more than that it failed.
        if (!host.messages().empty())
            throw fault(open->path, host.messages().back().text);
        throw;
    }
    if (what == LookAt::DatasetAlone)
        return open;
    try {
        readCurrentTrial(*open);
    } catch (const std::runtime_error& exception) {
        notes.messages.emplace_back(exception.what());
    }
    return open;
}

std::unique_ptr<OpenDataset> openDatasetToChange(const std::filesystem::path& path)
{
    auto file = std::make_unique<CFile>();
    auto open = openFile(path, *file, CFile::shareExclusive);
    std::uint64_t bytesLeft = 0;
    read(*open, *file, bytesLeft, [&open](CArchive& archive) { return open->dataset.serializezk(archive); });
    open->held = std::move(file);
    return open;
}

CString findTrialFile(const OpenDataset& open, int trial)
{
    const CMEGDatazk& dataset = open.dataset;
    return CMDTrialzk::findFile4FilePath(dataset.m_aTrialFilePath.GetAt(trial), &open.document,
                                         dataset.m_strDatasetPath, false);
}

std::string storedTrialPath(const OpenDataset& open, int trial)
{
    const CString& stored = open.dataset.m_aTrialFilePath.GetAt(trial);
    return stored.Find("\\") == 0 ? shownPath(toNative(stored)) : stored.toUtf8();
}

std::unique_ptr<CMDTrialzk> readTrial(const OpenDataset& open, int trial)
{
    const CString path = findTrialFile(open, trial);
    if (path.IsEmpty())
        throw std::runtime_error(storedTrialPath(open, trial) + ": the trial's file is missing");
    CFile file;
    CFileException exception;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone, &exception))
        throw std::runtime_error(exception.GetErrorMessage().toUtf8());
    const MessageRecorder host([] { return ReaderMessage(); });
    CArchive archive(&file, CArchive::load);
    auto read = std::make_unique<CMDTrialzk>();
    bool done = false;
    try {
        done = read->serializezk(archive) != 0;
    } catch (const CArchiveException&) {
        throw fault(toNative(path), "the file ends before the trial does");
    }
    if (!done)
        throw fault(toNative(path), host.messages().empty() ? "the trial can't be read" : host.messages().back().text);
    return read;
}

} // namespace megset::cli
