#include "apps/cli/dataset/openDataset.h"

#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"
#include "megset/platform/terminalText.h"

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

std::string reasonOf(const CArchiveException& exception)
{
    return exception.m_cause == CArchiveException::endOfFile ? "the file ends before the dataset does"
                                                             : exception.what();
}

void read(OpenDataset& open, CFile& file, ReadingNotes& notes)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    CArchive archive(&file, CArchive::load);
    try {
        const int done = open.dataset.serializezk(archive);
        addMessages(host, notes.messages);
        if (!done)
            throw fault(open.path, notes.messages.empty() ? "this dataset can't be read" : notes.messages.back());
        notes.bytesLeft = archive.bytesLeft();
    } catch (const CArchiveException& exception) {
        throw fault(open.path, reasonOf(exception));
    }
}

} // namespace

std::filesystem::path datasetPath(const std::filesystem::path& name)
{
    std::filesystem::path path = std::filesystem::absolute(name).lexically_normal();
    if (!path.has_extension())
        path += ".meg";
    return path;
}

std::unique_ptr<OpenDataset> openDatasetToLook(const std::filesystem::path& path, ReadingNotes& notes)
{
    auto open = std::make_unique<OpenDataset>();
    open->path = std::filesystem::absolute(path).lexically_normal();
    CFile file;
    CFileException exception;
    if (!file.Open(fromNative(open->path), CFile::modeRead | CFile::shareDenyNone, &exception))
        throw std::runtime_error(showControlCharacters(exception.GetErrorMessage()).toUtf8());
    open->document.SetPathName(fromNative(open->path));
    open->dataset.setDocument(&open->document, false);
    read(*open, file, notes);
    return open;
}

CString findTrialFile(const OpenDataset& open, int trial)
{
    const CMEGDatazk& dataset = open.dataset;
    return CMDTrialzk::findFile4FilePath(dataset.m_aTrialFilePath.GetAt(trial), &open.document,
                                         dataset.m_strDatasetPath, false);
}

} // namespace megset::cli
