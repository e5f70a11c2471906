// How the cost of a dataset grows with its trials and channels: opening it, walking through its trials, noise reduction
// and scans for triggers.
//
// A tenth of the channels are references, one is the trigger line and the rest are gradiometers of 17 coefficients, so
// that there is as much to do for a byte at every size. Trials are short: what each trial or channel costs besides its
// samples shows all the more. Times are of the processor: the files stay in the page cache, and nothing waits for a
// disk. `MB` is what lies on disk for what is timed.

#include "bench/benchFolder.h"
#include "bench/comparison.h"
#include "bench/processMemory.h"
#include "tests/kit/SilentHost.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/paths.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace megset {
namespace {

constexpr std::int64_t samples = 240;
constexpr int terms = 17;
constexpr int pulses = 2; // in each trial

void demand(bool holds)
{
    if (!holds)
        std::abort();
}

struct Size
{
    int trials;
    int channels;

    int references() const { return channels / 10; }
    int trigger() const { return channels - 1; }
    bool isGradiometer(int channel) const { return channel >= references() && channel != trigger(); }
    bool operator==(const Size&) const = default;
};

// ---- one trial, which is written as often as there are trials

CString nameOf(const Size& size, int channel)
{
    return CString::formatted(channel < size.references() ? "R%04d-1" : "M%04d-1", channel);
}

std::vector<double> stimulus()
{
    std::vector<double> line(static_cast<std::size_t>(samples));
    for (std::size_t p = 0; p < pulses; ++p)
        std::fill_n(line.begin() + static_cast<std::ptrdiff_t>(50 + 100 * p), 5, 1.0 + static_cast<double>(p));
    return line;
}

void setSensor(CMDChannelzk& channel, const CString& name, int id)
{
    CMEGSensorzk* sensor = channel.ensureMEGSensor();
    sensor->m_strSensorName = name;
    sensor->initSensorInfo(id, channel.m_nChannelType, 0, 0, 1e9, 1.0, 1.0, 0.0);
    sensor->setRealIdealCoefMode(true);
}

void fillTrial(CMDTrialzk& trial, const Size& size)
{
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> noise(-1000.0, 1000.0);
    std::vector<double> wave(static_cast<std::size_t>(samples));
    demand(trial.allocateChannels(size.channels) != 0);
    for (int c = 0; c < size.channels; ++c) {
        CMDChannelzk& channel = *trial.getChannel(c);
        std::generate(wave.begin(), wave.end(), [&] { return noise(random); });
        channel.addData(samples, c == size.trigger() ? stimulus().data() : wave.data());
        channel.m_nChannelType = c == size.trigger() ? 600 : c < size.references() ? 10 : 100;
        channel.setChannelName(nameOf(size, c), false);
        if (c != size.trigger())
            setSensor(channel, nameOf(size, c), c);
    }
}

void addCoefficients(CMEGDatazk& dataset, const Size& size)
{
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> coefficient(-0.01, 0.01);
    std::vector<CCoefficientDatazk> records;
    for (int c = 0; c < size.channels; ++c) {
        if (!size.isGradiometer(c))
            continue;
        CCoefficientDatazk& record = records.emplace_back();
        record.m_strCoefSensorName = nameOf(size, c);
        record.m_nCoefType = CCoefficientData::getCoefficientType(3, true, false);
        record.m_nCoefCount = terms;
        for (std::size_t k = 0; k < terms; ++k) {
            record.m_aCoefRefName[k] = nameOf(size, static_cast<int>(k) % size.references());
            record.m_aCoefValue[k] = coefficient(random);
        }
    }
    dataset.m_recordInfo.m_coefficients.addCoefficientsData(static_cast<int>(records.size()), records.data());
}

// ---- the dataset on disk

std::filesystem::path datasetPath()
{
    return benchFolder() / "a.meg";
}

std::filesystem::path trialPath(int trial)
{
    return benchFolder() / ('t' + std::to_string(trial) + ".trl");
}

void makeFiles(const Size& size)
{
    CMEGDatazk dataset;
    demand(dataset.m_ppTrial.allocate(size.trials) != 0);
    dataset.m_nTotalTrial = size.trials;
    dataset.m_nCurrentTrial = 0;
    dataset.m_recordInfo.m_nRecTotalSample = samples;
    dataset.m_recordInfo.m_dRecSampleRate = 1200.0;
    addCoefficients(dataset, size);
    CMDTrialzk trial;
    fillTrial(trial, size);
    for (int i = 0; i < size.trials; ++i) {
        CString path = fromNative(trialPath(i));
        demand(trial.saveTrialData(path, nullptr, {}, true) != 0);
        dataset.m_aTrialFilePath.Add(path);
    }
    CFile file(fromNative(datasetPath()), CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive);
    CArchive archive(&file, CArchive::store);
    demand(dataset.serializezk(archive) != 0);
}

std::unique_ptr<CMEGDatazk> openDataset()
{
    auto dataset = std::make_unique<CMEGDatazk>();
    CFile file(fromNative(datasetPath()), CFile::modeRead | CFile::shareExclusive);
    CArchive archive(&file, CArchive::load);
    demand(dataset->serializezk(archive) != 0 && dataset->getCurrentTrialPt() != nullptr);
    return dataset;
}

/// The dataset of that size; the files of another size go first, so that the disk holds but one.
void ensureFiles(const Size& size)
{
    static Size made = {0, 0};
    if (made == size)
        return;
    for (const auto& file : std::filesystem::directory_iterator(benchFolder()))
        std::filesystem::remove(file.path());
    makeFiles(size);
    made = size;
}

double megabytesOfTrials(int trials)
{
    return static_cast<double>(std::filesystem::file_size(trialPath(0))) * trials / 1e6;
}

// ---- what is timed

/// Opened, with the host that answers for it. An iteration is one pass over all trials.
class Session
{
public:
    explicit Session(benchmark::State& state)
        : m_state(state), m_size{static_cast<int>(state.range(0)), static_cast<int>(state.range(1))}
    {
        ensureFiles(m_size);
        m_former = AfxSetHost(&m_host);
        m_dataset = openDataset();
        trial(m_size.trials - 1); // memory of two trials has been in use before the clock runs
    }
    ~Session()
    {
        m_state.counters["MB"] = megabytesOfTrials(m_size.trials);
        m_dataset.reset();
        AfxSetHost(m_former);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    CMEGDatazk& dataset() { return *m_dataset; }
    const Size& size() const { return m_size; }
    CMDTrialzk& trial(int i)
    {
        CMDTrialzk* opened = m_dataset->getTrialzk(i);
        demand(opened != nullptr);
        return *opened;
    }

    /// The seconds of `work(trial)` on every trial in turn, without bringing it into memory, and without
    /// `after(trial)`.
    template <class Work, class After>
    double secondsInMemory(Work work, After after)
    {
        double seconds = 0.0;
        for (int i = 0; i < m_size.trials; ++i) {
            CMDTrialzk& resident = trial(i);
            seconds += secondsOf([&] { work(resident); }).processor;
            after(resident);
        }
        return seconds;
    }

private:
    benchmark::State& m_state;
    Size m_size;
    SilentHost m_host{IDYES};
    CUserHost* m_former = nullptr;
    std::unique_ptr<CMEGDatazk> m_dataset;
};

/// The dataset file and the one trial that comes with it.
void Open(benchmark::State& state)
{
    ensureFiles({static_cast<int>(state.range(0)), static_cast<int>(state.range(1))});
    std::unique_ptr<CMEGDatazk> dataset = openDataset();
    for (auto _ : state) {
        dataset.reset();
        state.SetIterationTime(secondsOf([&] { dataset = openDataset(); }).processor);
    }
    int resident = 0;
    for (int i = 0; i < dataset->getTotalTrial(); ++i)
        resident += dataset->getMDTrial(i) != nullptr ? 1 : 0;
    demand(resident == 1);
    state.counters["MB"] = megabytesOfTrials(1) + static_cast<double>(std::filesystem::file_size(datasetPath())) / 1e6;
}

/// Every trial in memory in turn; the one that leaves is written.
void Walk(benchmark::State& state)
{
    Session session(state);
    forgetPeakMemory();
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] {
                                   for (int i = 0; i < session.size().trials; ++i)
                                       session.trial(i);
                               }).processor);
    }
    state.counters["peak_MB"] = processMemory("VmHWM") / 1e6;
}

/// From order 0 to order 3, of the trial in memory.
void NoiseReduction(benchmark::State& state)
{
    Session session(state);
    const auto reduce = [&](CMDTrialzk&) { session.dataset().setGradientNoiseReduction(3, true, false); };
    const auto forget = [&](const CMDTrialzk& trial) {
        demand(trial.getChannel(session.size().references())->getMEGSensorzk()->getGradOrderNo() == 3);
        for (int c = 0; c < session.size().trigger(); ++c)
            trial.getChannel(c)->getMEGSensorzk()->setGradOrderNo(0);
    };
    for (auto _ : state)
        state.SetIterationTime(session.secondsInMemory(reduce, forget));
}

/// The trigger line of the trial in memory, by the scan that changes nothing: it finds the same again and again.
void TriggerScan(benchmark::State& state)
{
    Session session(state);
    CMarkerManagerzk found;
    const auto scan = [&](CMDTrialzk& trial) { session.dataset().getTrialTriggers(found, &trial, nullptr); };
    const auto forget = [&](const CMDTrialzk&) {
        demand(found.getTotalMarkers() >= pulses);
        found.cleanMarks();
    };
    for (auto _ : state)
        state.SetIterationTime(session.secondsInMemory(scan, forget));
}

/// That scan of the whole dataset, which walks through the trials and gathers the marks.
void ScanDataset(benchmark::State& state)
{
    Session session(state);
    session.dataset().m_mkTrig.m_trigScanParam.m_nTrigScanMode = 0;
    for (auto _ : state)
        state.SetIterationTime(secondsOf([&] { demand(session.dataset().checkTrigPro(true) != 0); }).processor);
    demand(session.dataset().m_mkTrig.getTotalMarkers() == pulses);
}

// ---- sizes

using Operation = void (*)(benchmark::State&);

/// All operations at one size, one after the other, since its files are made once. All sizes take about as long.
void measure(const Size& size)
{
    const int passes = std::max(1, 300 / size.trials);
    const auto add = [&](const char* name, Operation operation, int iterations) {
        benchmark::RegisterBenchmark(name, operation)
            ->ArgNames({"trials", "channels"})
            ->Args({size.trials, size.channels})
            ->Iterations(iterations)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    add("Open", Open, 30);
    add("Walk", Walk, passes);
    add("NoiseReduction", NoiseReduction, passes);
    add("TriggerScan", TriggerScan, passes);
    add("ScanDataset", ScanDataset, passes);
}

[[maybe_unused]] const bool registered = [] {
    for (const Size& size : {Size{10, 300}, Size{100, 300}, Size{1'000, 300}, Size{100, 30}, Size{100, 1'000}})
        measure(size);
    return true;
}();

} // namespace
} // namespace megset
