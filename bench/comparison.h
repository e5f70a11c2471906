#pragma once
// The library's time beside that of plain system calls over as many bytes.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <time.h> // NOLINT(modernize-deprecated-headers): clock_gettime is POSIX
#include <unistd.h>

namespace megset {

// ---- plain system calls

template <class Transfer>
void plain(const std::filesystem::path& path, int flags, std::vector<char>& data, Transfer transfer)
{
    const int file = ::open(path.c_str(), flags, 0666);
    for (std::size_t done = 0; done < data.size();) {
        const ssize_t moved = transfer(file, data.data() + done, data.size() - done);
        if (moved <= 0)
            std::abort();
        done += static_cast<std::size_t>(moved);
    }
    ::close(file);
}

inline void plainWrite(const std::filesystem::path& path, std::vector<char>& data)
{
    plain(path, O_WRONLY | O_CREAT | O_TRUNC, data, ::write);
}

inline void plainRead(const std::filesystem::path& path, std::vector<char>& data)
{
    plain(path, O_RDONLY, data, ::read);
}

// ---- measuring

struct Seconds
{
    double wall = 0.0;
    double processor = 0.0; ///< of this process, the system's work for it included
};

inline double clockSeconds(clockid_t clock)
{
    timespec now = {};
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Work>
Seconds secondsOf(Work work)
{
    const double wall = clockSeconds(CLOCK_MONOTONIC);
    const double processor = clockSeconds(CLOCK_PROCESS_CPUTIME_ID);
    work();
    return {clockSeconds(CLOCK_MONOTONIC) - wall, clockSeconds(CLOCK_PROCESS_CPUTIME_ID) - processor};
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The times of the plain way and of the library's, pair by pair. They take turns in going first, because what comes
/// second may have to wait for the disk.
class Comparison
{
public:
    /// Gives the library's seconds.
    template <class Plain, class Megset>
    double measure(Plain plainWork, Megset megsetWork)
    {
        const bool plainFirst = m_ratio.size() % 2 == 0;
        Seconds plainSeconds = plainFirst ? secondsOf(plainWork) : Seconds{};
        const Seconds seconds = secondsOf(megsetWork);
        if (!plainFirst)
            plainSeconds = secondsOf(plainWork);
        m_plain.push_back(plainSeconds.wall);
        m_megset.push_back(seconds.wall);
        m_plainProcessor.push_back(plainSeconds.processor);
        m_megsetProcessor.push_back(seconds.processor);
        m_ratio.push_back(plainSeconds.wall / seconds.wall);
        m_processorRatio.push_back(plainSeconds.processor / seconds.processor);
        return seconds.wall;
    }
    void tell(benchmark::State& state) const
    {
        state.counters["plain_ms"] = 1e3 * median(m_plain);
        state.counters["megset_ms"] = 1e3 * median(m_megset);
        state.counters["plain_cpu_ms"] = 1e3 * median(m_plainProcessor);
        state.counters["megset_cpu_ms"] = 1e3 * median(m_megsetProcessor);
        state.counters["ratio"] = median(m_ratio);
        state.counters["cpu_ratio"] = median(m_processorRatio);
    }

private:
    std::vector<double> m_plain;
    std::vector<double> m_megset;
    std::vector<double> m_plainProcessor;
    std::vector<double> m_megsetProcessor;
    std::vector<double> m_ratio;
    std::vector<double> m_processorRatio;
};

} // namespace megset
