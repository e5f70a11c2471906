#include "apps/cli/import/importRecording.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/changeDataset.h"
#include "apps/cli/import/importAcquisition.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/readers/ctf/importCtf.h"
#include "megset/platform/paths.h"

#include <stdexcept>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

// The names that the library gives to the trials of an import.
fs::path trialPath(const fs::path& dataset, int trial)
{
    return dataset.parent_path() / (dataset.stem().string() + "_ImportTrial" + std::to_string(trial) + ".trl");
}

// Notes all files that come of a folder, so that none is left when the import fails, and none is written over unasked,
// or before the import is done.
void announceFiles(const fs::path& dataset, int trials, bool force, CreatedFiles& created)
{
    if (!fs::is_directory(dataset.parent_path()))
        throw std::runtime_error(shownPath(dataset.parent_path()) + ": there is no such folder");
    std::vector<fs::path> paths = {dataset};
    for (int i = 0; i < trials; ++i)
        paths.push_back(trialPath(dataset, i));
    for (const fs::path& path : paths) {
        if (force)
            created.replace(path);
        else
            created.add(path);
    }
}

// The import, with what the library had to say as the reason where it fails.
std::vector<std::string> import(ctf::Recording& recording, OpenDataset& open)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    try {
        return ctf::importCtf(recording, open.dataset, open.document);
    } catch (const std::exception& fault) {
        std::string reason = fault.what();
        for (const ReaderMessage& message : host.messages())
            reason += "; " + message.text;
        throw std::runtime_error(reason);
    }
}

ImportSummary importFolder(const fs::path& source, const fs::path& target, const ImportArguments& arguments)
{
    ctf::Recording recording = ctf::openCtf(source);
    ImportSummary summary;
    summary.warnings = recording.warnings;
    CreatedFiles created;
    announceFiles(target, recording.trials(), arguments.force, created);
    OpenDataset open;
    open.path = target;
    open.document.SetPathName(fromNative(target));
    for (std::string& note : import(recording, open))
        summary.warnings.push_back(std::move(note));
    if (!arguments.session.empty())
        open.dataset.setSessionName(arguments.session);
    storeDataset(open);
    created.keep();
    summary.trials = recording.trials();
    summary.channels = static_cast<int>(recording.header.channels.size());
    summary.samples = recording.header.samples;
    return summary;
}

} // namespace

ImportSummary importRecording(const ImportArguments& arguments)
{
    const fs::path source = fs::absolute(arguments.source).lexically_normal();
    const fs::path target = datasetPath(arguments.target);
    if (!fs::exists(source))
        throw std::runtime_error(shownPath(source) + ": there is no such file or folder");
    if (fs::exists(target) && fs::equivalent(source, target))
        throw std::runtime_error(shownPath(target) + ": this is the recording; the dataset needs another name");
    if (!arguments.force && fs::exists(target))
        throw std::runtime_error(shownPath(target) + ": exists already");
    return fs::is_directory(source) ? importFolder(source, target, arguments)
                                    : importAcquisition(source, target, arguments);
}

} // namespace megset::cli
