#include "apps/cli/dataset/TrialCheck.h"

#include "apps/cli/inspect/MessageRecorder.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"

namespace megset::cli {

namespace {

void addMessages(const MessageRecorder& host, TrialCheck& check)
{
    for (const ReaderMessage& message : host.messages())
        check.faults.push_back("the reader said: " + message.text);
}

// Gives whether the trial could be read.
bool load(CMDTrialzk& trial, CFile& file, TrialCheck& check)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    CArchive archive(&file, CArchive::load);
    try {
        const int done = trial.serializezk(archive);
        addMessages(host, check);
        if (!done)
            return false;
    } catch (const CArchiveException& exception) {
        addMessages(host, check);
        check.faults.emplace_back(exception.m_cause == CArchiveException::endOfFile
                                      ? "the file ends before the trial does"
                                      : std::string("the trial can't be read: ") + exception.what());
        return false;
    }
    if (archive.bytesLeft() > 0)
        check.faults.push_back(std::to_string(archive.bytesLeft()) + " bytes are left over behind the trial");
    return true;
}

std::int64_t firstSampleCount(const CMDTrialzk& trial)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i)
        if (const CMDChannelzk* const channel = trial.getChannel(i);
            channel != nullptr && channel->getTotalSample() > 0)
            return channel->getTotalSample();
    return 0;
}

std::string nameOf(const CMDChannelzk& channel, int index)
{
    return "channel " + std::to_string(index) + " (" + channel.m_strChannelName.toUtf8() + ")";
}

void compareChannels(const CMDTrialzk& trial, std::int64_t samples, TrialCheck& check)
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CMDChannelzk* const channel = trial.getChannel(i);
        if (channel == nullptr)
            check.faults.push_back("channel " + std::to_string(i) + " is missing");
        else if (channel->getTotalSample() != 0 && channel->getTotalSample() != samples)
            check.faults.push_back(nameOf(*channel, i) + " has " + std::to_string(channel->getTotalSample()) +
                                   " samples, the trial has " + std::to_string(samples));
    }
}

void checkTrialItself(const CMDTrialzk& trial, TrialCheck& check)
{
    if (trial.m_nTotalChannel > 0 && trial.getTotalChannel() == 0)
        check.faults.push_back("the trial announces " + std::to_string(trial.m_nTotalChannel) +
                               " channels and has none");
    if (trial.m_nTrialResampleStep < 1)
        check.faults.push_back("the trial's re-sampling step is " + std::to_string(trial.m_nTrialResampleStep));
    check.shape = {trial.getTotalChannel(), firstSampleCount(trial), trial.m_nTrialResampleStep,
                   trial.m_nVirtualTrial != 0};
    compareChannels(trial, check.shape->samples, check);
}

} // namespace

TrialCheck checkTrial(const OpenDataset& open, int index)
{
    const CString& stored = open.dataset.m_aTrialFilePath.GetAt(index);
    const CString found = findTrialFile(open, index);
    TrialCheck check;
    check.file = found.IsEmpty() ? storedTrialPath(open, index) : found.toUtf8();
    if (found.IsEmpty()) {
        check.faults.emplace_back("the trial's file is neither beside the dataset nor at this path");
        return check;
    }
    check.file = toNative(found).string();
    CFile file;
    CFileException exception;
    if (!file.Open(found, CFile::modeRead | CFile::shareDenyNone, &exception)) {
        check.faults.push_back(exception.GetErrorMessage().toUtf8());
        return check;
    }
    if (found != stored)
        check.notes.push_back("the dataset names it " + storedTrialPath(open, index) +
                              "; opening the trial mends that");
    CMDTrialzk trial;
    if (load(trial, file, check))
        checkTrialItself(trial, check);
    return check;
}

} // namespace megset::cli
