#pragma once
// What memory this process takes, as the system tells it.

#include <fstream>
#include <string>

namespace megset {

/// A number of bytes of /proc/self/status, such as VmRSS (in use) or VmHWM (the most so far); 0 without it.
inline double processMemory(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == name + ":") {
            double kibibytes = 0.0;
            status >> kibibytes;
            return 1024.0 * kibibytes;
        }
    return 0.0;
}

/// The most so far comes down to what is in use.
inline void forgetPeakMemory()
{
    std::ofstream("/proc/self/clear_refs") << 5;
}

} // namespace megset
