#include "apps/cli/process/resample.h"

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/events/markList.h"
#include "apps/cli/inspect/MessageRecorder.h"
#include "apps/cli/inspect/fileTag.h"
#include "apps/cli/process/forEachTrial.h"
#include "apps/cli/process/restore.h"
#include "megset/platform/paths.h"
#include "megset/platform/stopRequest.h"
#include "megset/processing/resampledCopy.h"

#include <algorithm>
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
    StopSignals m_signals; // so that it goes when the command is stopped
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

void rescale(CMarkerDatazk& marker, const CMEGDatazk& source, std::int64_t factor, double rate)
{
    for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i) {
        MarkTrigClass* const point = marker.m_aMarkPts.GetAt(i);
        if (point == nullptr)
            continue;
        const SampleRange samples = samplesOfMark(source, marker, i);
        if (point->m_nMarkPtEnd >= point->m_nMarkPtBegin) // others have no end
            point->m_nMarkPtEnd = samples.to / factor;
        point->m_nMarkPtBegin = samples.from / factor;
    }
    for (std::int64_t* const count : {&marker.m_markWindow.m_nPreSamples, &marker.m_markWindow.m_nPostSamples,
                                      &marker.m_markWindow.m_nShiftSamples, &marker.m_markWindow.m_nGapSamples})
        *count /= factor;
    marker.m_dMarkSampleRate = rate;
    if (!marker.backupMarkPts())
        throw std::runtime_error("there is not enough memory");
}

// The library takes the triggers over with their former samples, and no other marks.
void takeMarks(const CMEGDatazk& source, CMEGDatazk& made, std::int64_t factor)
{
    for (const auto list :
         {&CMEGData::m_mkTrig, &CMEGData::m_mkTrigRecord, &CMEGData::m_mkMarker, &CMEGData::m_mkSegment,
          &CMEGData::m_mkClass, &CMEGData::m_mkThreshold, &CMEGData::m_mkPattern, &CMEGData::m_mkAiMarkWave}) {
        made.*list = source.*list;
        for (int i = 0; i < (made.*list).getTotalMarkers(); ++i)
            if (CMarkerDatazk* const marker = (made.*list).m_aMarkers.GetAt(i))
                rescale(*marker, source, factor, made.m_recordInfo.m_dRecSampleRate);
    }
}

void takeBadChannels(const CMEGDatazk& source, CMEGDatazk& made)
{
    if (!source.m_pChnlGood || !made.m_pChnlGood || source.m_nChnlParamCount != made.m_nChnlParamCount)
        return;
    for (int i = 0; i < source.m_nChnlParamCount; ++i)
        made.setGoodChnl4Alltrials(i, source.m_pChnlGood[static_cast<std::size_t>(i)]);
}

// The library passes over trials that it can't open. Throws for the first of them.
void refuseLostTrials(const OpenDataset& source)
{
    const int total = source.dataset.getTotalTrial();
    for (int i = 0; i < std::min(total, source.dataset.m_aTrialFilePath.GetSize()); ++i) {
        try {
            readTrial(source, i);
        } catch (const std::runtime_error& fault) {
            throw std::runtime_error("trial " + std::to_string(i) + " of " + std::to_string(total) + ": " +
                                     fault.what());
        }
    }
}

void copyAllTrials(OpenDataset& source, OpenDataset& made, const ResampledCopy& how)
{
    run([&] { return checkResampledCopy(source.dataset, how.factor); });
    try {
        run([&] { return copyResampled(source.dataset, made.dataset, how); });
    } catch (const std::exception&) {
        refuseLostTrials(source);
        throw;
    }
    if (made.dataset.getTotalTrial() < source.dataset.getTotalTrial())
        refuseLostTrials(source);
}

} // namespace

int resampleDataset(OpenDataset& open, const ResampleRequest& request)
{
    checkFactor(open.dataset, request.factor);
    int undone = 0;
    // The library starts from the raw samples, and leaves the marks of what had been done to the working ones.
    forEachTrial(open, "Re-sampling", [&undone](CMDTrialzk& trial) {
        undone += markAsRecorded(trial) ? 1 : 0;
        restoreTrial(trial);
    });
    restoreRecording(open.dataset);
    run([&] { return open.dataset.reSampleData(request.average, request.factor, true); });
    return undone;
}

double makeResampled(const ChangeArguments& arguments, const ResampleRequest& request, const std::string& target)
{
    const fs::path path = datasetPath(target);
    if (fs::exists(path))
        throw std::runtime_error(shownPath(path) + ": exists already");
    // The library writes back each trial of the source that it leaves, and names files after the trials alone.
    const ScratchFolder scratch(path.string() + ".making");
    const fs::path sourcePath = scratch.path() / "source" / "source.meg";
    fs::create_directory(sourcePath.parent_path());
    CreatedFiles scratchFiles;
    copyDataset(datasetPath(arguments.dataset), sourcePath, scratchFiles);
    const auto source = openDatasetToChange(sourcePath);
    checkFactor(source->dataset, request.factor);
    // Its working and its raw samples have different rates, and the new recording can have one only.
    if (source->dataset.m_recordInfo.m_nResampleFactor > 1)
        throw std::runtime_error("the dataset is re-sampled already: restore it first, or re-sample it without --new");
    OpenDataset made;
    made.path = scratch.path() / path.filename();
    made.document.SetPathName(fromNative(made.path));
    made.dataset.setDocument(&made.document, true);
    const double rate = source->dataset.getMEGRecordInfozk()->m_dRawSampleRate / static_cast<double>(request.factor);
    copyAllTrials(*source, made, {true, request.average, request.factor, rate});
    takeMarks(source->dataset, made.dataset, request.factor);
    takeBadChannels(source->dataset, made.dataset);
    storeDataset(made);
    CreatedFiles created;
    copyDataset(made.path, path, created);
    created.keep();
    return rate;
}

} // namespace megset::cli
