#pragma once
// A small dataset on disk, for the tests of the commands.

#include "apps/cli/dataset/changeDataset.h"
#include "megset/platform/paths.h"
#include "tests/kit/Program.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

namespace megset::cli {

/// "run.meg" in a folder of its own, with trials of the channels R1 (a MEG reference), M1 and M2 (MEG), E1 (EEG), S1
/// (trigger), X1 (other). Sample i of channel c of trial t is 1000 t + 100 c + i.
class SampleDataset
{
public:
    static constexpr int channels = 6;

    explicit SampleDataset(int trials = 3, std::int64_t samples = 20)
    {
        m_open.path = m_folder.native("run.meg");
        m_open.document.SetPathName(fromNative(m_open.path));
        m_open.dataset.setDocument(&m_open.document, true);
        CMEGRecordInfozkProzk& recording = *m_open.dataset.getMEGRecordInfozk();
        recording.m_nRecTotalSample = recording.m_nRawTotalSample = samples;
        recording.m_nRecPreTrigPts = recording.m_nRawPreTrigPts = 5;
        recording.m_dRecSampleRate = recording.m_dRawSampleRate = 200.0;
        for (int i = 0; i < trials; ++i)
            m_open.dataset.addTrial(makeTrial(i, samples).release(), 0);
        store();
    }

    OpenDataset& open() { return m_open; }
    CMEGDatazk& dataset() { return m_open.dataset; }
    const TemporaryFolder& folder() const { return m_folder; }
    std::string path() const { return m_open.path.string(); }
    std::filesystem::path trialFile(int trial) const { return toNative(m_open.dataset.m_aTrialFilePath.GetAt(trial)); }
    void store() { storeDataset(m_open); }

    static double sampleAt(int trial, int channel, std::int64_t sample)
    {
        return 1000.0 * trial + 100.0 * channel + static_cast<double>(sample);
    }

private:
    static std::unique_ptr<CMDTrialzk> makeTrial(int index, std::int64_t samples)
    {
        struct Kind
        {
            const char* name;
            int type;
        };
        constexpr Kind kinds[channels] = {{"R1-77", 11}, {"M1-77", 100}, {"M2-77", 100},
                                          {"E1", 302},   {"S1", 600},    {"X1", 700}};
        auto trial = std::make_unique<CMDTrialzk>();
        trial->allocateChannels(channels);
        for (int c = 0; c < channels; ++c) {
            CMDChannelzk& channel = *trial->getChannel(c);
            channel.m_strChannelName = channel.m_strChannelNameRaw = kinds[c].name;
            channel.setChannelType(kinds[c].type);
            if (channel.isMEGChannel())
                channel.ensureMEGSensor()->setSnsPos(-1, 0, 1.0 * c, 2.0 * c, 3.0 * c);
            std::vector<double> wave(static_cast<std::size_t>(samples));
            for (std::int64_t i = 0; i < samples; ++i)
                wave[static_cast<std::size_t>(i)] = sampleAt(index, c, i);
            channel.addData(samples, wave.data());
        }
        return trial;
    }

    TemporaryFolder m_folder;
    ScriptedHost m_host; // no question is expected
    OpenDataset m_open;
};

/// A trial as its file holds it.
inline std::unique_ptr<CMDTrialzk> trialInFile(const std::string& dataset, int trial)
{
    ReadingNotes notes;
    return readTrial(*openDatasetToLook(dataset, notes), trial);
}

/// The working samples of a channel in the trial's file.
inline std::vector<double> samplesInFile(const std::string& dataset, int trial, int channel)
{
    const auto read = trialInFile(dataset, trial);
    const double* const data = read->getChannel(channel)->getDataWave();
    return {data, data + read->getChannel(channel)->getTotalSample()};
}

inline kit::ProgramResult runMegset(const std::vector<std::string>& arguments)
{
    return kit::runProgram(MEGSET_PROGRAM, arguments);
}

} // namespace megset::cli
