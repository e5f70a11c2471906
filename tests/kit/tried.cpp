#include "tests/kit/tried.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace megset {
namespace {

constexpr std::array names{"prefixes", "bit-flips", "allocation-failures", "kills"};

class TriedCounts
{
public:
    TriedCounts() = default;
    TriedCounts(const TriedCounts&) = delete;
    TriedCounts& operator=(const TriedCounts&) = delete;
    ~TriedCounts()
    {
        const char* const path = std::getenv("MEGSET_TRIED");
        if (path == nullptr)
            return;
        std::ostringstream lines;
        for (std::size_t i = 0; i < names.size(); ++i)
            if (m_counts[i] > 0)
                lines << names[i] << ' ' << m_counts[i] << '\n';
        // All at once, since other programs of the suite may end at the same moment.
        std::ofstream(path, std::ios::app) << lines.str();
    }
    void add(Tried what, std::int64_t times) { m_counts[static_cast<std::size_t>(what)] += times; }

private:
    std::array<std::atomic<std::int64_t>, names.size()> m_counts{};
};

} // namespace

void countTried(Tried what, std::int64_t times)
{
    static TriedCounts counts;
    counts.add(what, times);
}

} // namespace megset
