#include "apps/phantom/acquisition.h"
#include "apps/phantom/Instrument.h"
#include "apps/phantom/TrialSimulator.h"
#include "apps/phantom/ctfFiles.h"
#include "apps/readers/ctf/libraryRecords.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CArchive.h"
#include "megset/platform/CFile.h"
#include "megset/platform/paths.h"
#include "megset/platform/stopRequest.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <stdexcept>
#include <system_error>

namespace megset::phantom {

namespace {

namespace fs = std::filesystem;

// Where the recording system had the files. They are found beside the dataset's file, as those of any recording that
// was brought to another system.
constexpr const char* recordingFolder = "D:\\Phantom\\";

/// Files that are all there in the end, or none of them.
class NewFiles
{
public:
    NewFiles() = default;
    NewFiles(const NewFiles&) = delete;
    NewFiles& operator=(const NewFiles&) = delete;
    ~NewFiles()
    {
        std::error_code ignored;
        for (const fs::path& path : m_paths)
            fs::remove(path, ignored);
    }

    /// A file that is about to be made.
    void add(const fs::path& path)
    {
        if (fs::exists(fs::symlink_status(path)))
            throw std::runtime_error(path.string() + " exists already");
        m_paths.push_back(path);
    }
    void complete() { m_paths.clear(); }

private:
    StopSignals m_signals; // so that they go when the program is asked to end
    std::vector<fs::path> m_paths;
};

[[noreturn]] void failToWrite(const fs::path& path)
{
    throw std::runtime_error(path.string() + " can't be written");
}

/// Stores a record in a file of its own by `serialize(archive)`.
template <class Serialize>
void storeFile(const fs::path& path, Serialize serialize)
{
    try {
        CFile file(fromNative(path), CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive);
        CArchive archive(&file, CArchive::store);
        if (!serialize(archive))
            failToWrite(path);
        archive.Close();
        file.Close();
    } catch (const CFileException&) {
        failToWrite(path);
    }
}

void storeText(const fs::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    if (!(file << text).flush())
        failToWrite(path);
}

/// Absolute; the name ends with .mega and has something before.
fs::path checkedFile(const fs::path& file)
{
    if (file.extension() != ".mega")
        throw std::invalid_argument("the name of the file ends with .mega: " + file.string());
    return fs::absolute(file).lexically_normal();
}

/// The recording as the library's own objects. It is described as its CTF form is, by the same texts.
class Acquisition
{
public:
    Acquisition(const Instrument& instrument, const PhantomPlan& plan, double rate);

    /// Makes the trial the one in memory.
    CMDTrialzk& makeTrial(int index, std::span<const std::int32_t> block);
    /// The dataset without a trial in memory.
    CMEGDatazk& finish(const CString& name, const CStringArray& trialPaths);

private:
    void describe(const Instrument& instrument, double rate);
    void bind(CMDTrialzk& trial) const;

    PhantomPlan m_plan;
    ctf::Res4 m_header;
    std::vector<CMEGSensorzk> m_sensors;
    std::vector<CEEGelectrodezk> m_electrodes;
    CMEGDatazk m_dataset;
};

Acquisition::Acquisition(const Instrument& instrument, const PhantomPlan& plan, double rate) : m_plan(plan)
{
    const std::string header = res4File(instrument, plan, rate, coefficientTables(instrument));
    m_header = ctf::parseRes4(std::as_bytes(std::span(header)), "phantom.res4");
    m_sensors = ctf::librarySensors(m_header);
    m_electrodes = ctf::libraryElectrodes(m_header);
    describe(instrument, rate);
}

void Acquisition::describe(const Instrument& instrument, double rate)
{
    std::vector<std::string> warnings;
    const ctf::HeadCoils coils = ctf::parseHeadCoils(headCoilFile(instrument), "phantom.hc", warnings);
    const auto markers = ctf::parseMarkers(markerFile(m_plan, rate), m_plan.trials, "MarkerFile.mrk", warnings);
    ctf::setRecordingInformation(m_header, m_dataset.m_recordInfo);
    const bool isComplete = ctf::setHeadLocalization(coils, m_dataset.m_headLocalization) &&
                            ctf::addMarkers(m_header, markers, m_dataset.m_mkMarker) == 0;
    if (!isComplete || !warnings.empty())
        throw std::logic_error("a phantom that can't be read");
}

void Acquisition::bind(CMDTrialzk& trial) const
{
    for (int i = 0; i < trial.getTotalChannel(); ++i) {
        const CString name = m_header.channels[static_cast<std::size_t>(i)].name;
        trial.setMEGSensorParameter(&m_sensors[static_cast<std::size_t>(i)], i);
        trial.setMEGSensorName(name, name, i);
    }
    for (const CEEGelectrodezk& electrode : m_electrodes)
        trial.setEEG_electrodes(&electrode);
}

CMDTrialzk& Acquisition::makeTrial(int index, std::span<const std::int32_t> block)
{
    const int channels = static_cast<int>(m_header.channels.size());
    m_dataset.m_nTotalTrial = 1;
    m_dataset.m_nCurrentTrial = 0;
    CMDTrialzk* const trial =
        m_dataset.m_ppTrial.allocate(1) ? m_dataset.m_ppTrial.set(0, tryNew<CMDTrialzk>()) : nullptr;
    if (trial == nullptr || !trial->allocateChannels(channels))
        throw std::bad_alloc();
    bind(*trial);
    trial->m_nTrialKind = 1;
    trial->m_nTrialIndex = index;
    trial->m_strTrialName = CString::formatted("Trial%d", index);
    trial->m_headLocalization = m_dataset.m_headLocalization;
    m_dataset.checkInitChnlParam(trial);
    m_dataset.setShowMEGMeasureChannel();
    m_dataset.importCtfDataT(0, channels, m_plan.samples, block.data());
    for (int i = 0; i < channels; ++i) {
        if (trial->getChannel(i)->getTotalSample() != m_plan.samples)
            throw std::bad_alloc();
        ctf::finishChannel(m_header.channels[static_cast<std::size_t>(i)], *trial->getChannel(i));
    }
    return *trial;
}

CMEGDatazk& Acquisition::finish(const CString& name, const CStringArray& trialPaths)
{
    if (!m_dataset.m_ppTrial.allocate(m_plan.trials))
        throw std::bad_alloc();
    m_dataset.m_nTotalTrial = m_plan.trials;
    m_dataset.m_nCurrentTrial = 0;
    m_dataset.m_nRealTrial = m_plan.trials;
    m_dataset.m_nVirtualTrial = 0;
    m_dataset.m_strDatasetFileName = name;
    m_dataset.m_strSessionName = name;
    m_dataset.m_strRecordFolder = recordingFolder;
    m_dataset.m_aRecordTrialPath = trialPaths;
    return m_dataset;
}

/// The paths of all files, the dataset's last.
struct Paths
{
    explicit Paths(const fs::path& dataset, int trialCount) : truth(dataset), mega(dataset)
    {
        truth.replace_filename(dataset.stem().string() + "_truth.json");
        for (int i = 0; i < trialCount; ++i)
            trials.push_back(dataset.parent_path() / (dataset.stem().string() + "Trial" + std::to_string(i) + ".trla"));
    }

    std::vector<fs::path> trials;
    fs::path truth;
    fs::path mega;
};

/// Gives the paths that the recording tells.
CStringArray writeTrials(Acquisition& acquisition, TrialSimulator simulator, const PhantomReport& report,
                         const std::vector<fs::path>& paths)
{
    const auto samples = static_cast<std::size_t>(report.plan.samples);
    std::vector<std::int32_t> block(report.channels * samples);
    CStringArray recorded;
    for (int i = 0; i < report.plan.trials; ++i) {
        simulator.simulate(report.plan, i, [&](std::size_t channel, std::span<const std::int32_t> row) {
            std::copy(row.begin(), row.end(), block.begin() + static_cast<std::ptrdiff_t>(channel * samples));
        });
        const fs::path& path = paths[static_cast<std::size_t>(i)];
        CMDTrialzk& trial = acquisition.makeTrial(i, block);
        trial.m_strTrialFilePath = recordingFolder + fromNative(path.filename());
        recorded.Add(trial.m_strTrialFilePath);
        storeFile(path, [&trial](CArchive& archive) { return trial.serializeAcq(archive); });
    }
    return recorded;
}

} // namespace

PhantomReport writeAcquisition(const std::filesystem::path& file, const PhantomOptions& options)
{
    PhantomReport report;
    report.plan = planPhantom(options);
    report.sampleFiles = report.plan.trials;
    const Paths paths(checkedFile(file), report.plan.trials);
    const Instrument instrument = makeInstrument(options.channels);
    report.channels = instrument.channels.size();

    NewFiles made;
    for (const fs::path& path : paths.trials)
        made.add(path);
    made.add(paths.truth);
    made.add(paths.mega);

    Acquisition acquisition(instrument, report.plan, options.rate);
    const CStringArray recorded = writeTrials(acquisition, TrialSimulator(instrument, options), report, paths.trials);
    storeText(paths.truth, truthFile(instrument, report.plan, options));
    CMEGDatazk& dataset = acquisition.finish(fromNative(paths.mega.stem()), recorded);
    storeFile(paths.mega, [&](CArchive& archive) { return dataset.serializeRecordWithoutTrials(archive); });
    made.complete();
    return report;
}

} // namespace megset::phantom
