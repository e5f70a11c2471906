#include "apps/cli/dataset/TrialReader.h"

#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/fileTag.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"

#include <stdexcept>

namespace megset::cli {

namespace {

CString findFile(const OpenDataset& open, int index)
{
    const CString found = findTrialFile(open, index);
    if (found.IsEmpty())
        throw std::runtime_error(open.dataset.m_aTrialFilePath.GetAt(index).toUtf8() + ": the trial's file is missing");
    return found;
}

std::string lastMessage(const MessageRecorder& host)
{
    return host.messages().empty() ? "the trial can't be read" : host.messages().back().text;
}

void load(CMDTrialzk& trial, const CString& path)
{
    CFile file;
    CFileException exception;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone, &exception))
        throw std::runtime_error(exception.GetErrorMessage().toUtf8());
    const MessageRecorder host([] { return ReaderMessage(); });
    CArchive archive(&file, CArchive::load);
    bool done = false;
    try {
        done = trial.serializezk(archive) != 0;
    } catch (const CArchiveException&) {
        throw std::runtime_error(shownPath(toNative(path)) + ": the file ends before the trial does");
    }
    if (!done)
        throw std::runtime_error(shownPath(toNative(path)) + ": " + lastMessage(host));
}

} // namespace

const CMDTrialzk& TrialReader::read(int index)
{
    if (m_trial && index == m_index)
        return *m_trial;
    m_trial.reset(); // before the next one: only one trial is in memory
    auto trial = std::make_unique<CMDTrialzk>();
    load(*trial, findFile(m_open, index));
    m_trial = std::move(trial);
    m_index = index;
    return *m_trial;
}

} // namespace megset::cli
