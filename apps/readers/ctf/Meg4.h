#pragma once
// The samples of a CTF recording: NAME.meg4 and its continuations.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace megset::ctf {

/// The trials of the .meg4 files, read one at a time. A recording of any length takes the memory of one trial.
class Meg4
{
public:
    /// What the .res4 file counts.
    struct Counts
    {
        int trials = 0;
        int channels = 0;
        std::int32_t samples = 0; ///< per channel and trial
    };

    /// Opens the files of a folder and checks their sizes. Files that end early, or hold more trials than were
    /// counted, keep all whole trials, and warnings() says so. CtfError when there is not one whole trial, no tag, or
    /// the sizes show that there are other channels than were counted.
    Meg4(const std::filesystem::path& folder, const std::string& name, const Counts& counts);

    /// Whole trials in the files, which may not be what was counted.
    int trials() const { return m_trials; }
    int channels() const { return m_counts.channels; }
    std::int32_t samples() const { return m_counts.samples; }
    /// Integers of one trial: channels * samples.
    std::size_t trialSize() const;
    /// Sentences about what was cut.
    const std::vector<std::string>& warnings() const { return m_warnings; }

    /// Reads a trial from 0 on into a block of trialSize() integers, channel behind channel. CtfError when the file
    /// can't be read.
    void readTrial(int trial, std::span<std::int32_t> block);

private:
    struct Part
    {
        std::filesystem::path file;
        std::uint64_t size = 0;
        int firstTrial = 0;
        int trials = 0;
        std::ifstream stream;
    };

    void openPart(const std::filesystem::path& file);
    void countTrials();
    bool hasOtherChannels() const;
    [[noreturn]] void failForChannels() const;
    void warnOfCut(const Part& part);
    std::uint64_t trialBytes() const;

    Counts m_counts;
    int m_trials = 0;
    std::vector<Part> m_parts;
    std::vector<std::string> m_warnings;
};

} // namespace megset::ctf
