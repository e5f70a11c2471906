#include "apps/cli/process/resample.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/process/restore.h"
#include "megset/platform/paths.h"
#include "megset/processing/resampledCopy.h"

#include <stdexcept>

namespace megset::cli {

namespace {

namespace fs = std::filesystem;

// A folder for files that are in the way afterwards.
class ScratchFolder
{
public:
    explicit ScratchFolder(fs::path path) : m_path(std::move(path)) { fs::create_directory(m_path); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }

    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

// Runs an operation of the library that tells its failure in words, and throws these.
template <class Operation>
void run(Operation operation)
{
    const MessageRecorder host([] { return ReaderMessage(); });
    if (!operation())
        throw std::runtime_error(host.messages().empty() ? "the trials can't be re-sampled"
                                                         : host.messages().back().text);
}

void checkFactor(const CMEGDatazk& dataset, std::int64_t factor)
{
    if (factor < 1)
        throw std::runtime_error("the factor " + std::to_string(factor) + " is below 1");
    run([&] { return dataset.checkResampleFactor(factor); });
}

} // namespace

int resampleDataset(OpenDataset& open, const ResampleRequest& request)
{
    CMEGDatazk& dataset = open.dataset;
    checkFactor(dataset, request.factor);
    int undone = 0;
    run([&] {
        for (int i = 0; i < dataset.getTotalTrial(); ++i) {
            CMDTrialzk* const trial = dataset.getTrialzk(i);
            if (trial == nullptr) // the library passes over it, too
                continue;
            if (!dataset.reSampleData(request.average, request.factor, false))
                return 0;
            undone += markAsRecorded(*trial) ? 1 : 0;
        }
        return dataset.setResampleParameter(request.average, request.factor); // also without trials
    });
    return undone;
}

double makeResampled(const ChangeArguments& arguments, const ResampleRequest& request, const std::string& target)
{
    const fs::path path = datasetPath(target);
    CreatedFiles created;
    created.add(path);
    // The library opens the trials of the source for it, and writes back each one that it leaves.
    const ScratchFolder scratch(path.string() + ".source");
    CreatedFiles copies;
    copyDataset(datasetPath(arguments.dataset), scratch.path() / "source.meg", copies);
    const auto source = openDatasetToChange(scratch.path() / "source.meg");
    checkFactor(source->dataset, request.factor);
    OpenDataset made;
    made.path = path;
    made.document.SetPathName(fromNative(path));
    made.dataset.setDocument(&made.document, true);
    const double rate = source->dataset.getMEGRecordInfozk()->m_dRawSampleRate / static_cast<double>(request.factor);
    run([&] { return checkResampledCopy(source->dataset, request.factor); });
    run([&] { return copyResampled(source->dataset, made.dataset, {true, request.average, request.factor, rate}); });
    for (int i = 0; i < made.dataset.m_aTrialFilePath.GetSize(); ++i)
        created.take(toNative(made.dataset.m_aTrialFilePath.GetAt(i)));
    storeDataset(made);
    created.keep();
    return rate;
}

} // namespace megset::cli
