// Samples of a stimulus channel: their range, their conditioning, and the runs that stand out.
//
// Between its pulses such a channel rests, mostly at zero. Adding +0.0 changes no sum, so that zeros are passed over;
// and what one pass has seen of a block of samples tells the next one whether it need be read at all. The results are
// those of the plain sequential loop to the bit, whatever the samples are.
#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <span>

#include "megset/numeric/statistics.h"

namespace megset::numeric {

/// What a block of samples holds.
struct StimulusBlock
{
    double min = std::numeric_limits<double>::infinity(); ///< of the samples that are numbers; above max without any
    double max = -std::numeric_limits<double>::infinity();
    bool isZero = false; ///< nothing but +0.0
};

/// What the blocks of a channel hold, from the first one on as far as they have been described. Any block beyond may
/// hold anything.
class StimulusBlocks
{
public:
    static constexpr std::size_t samples = 256;

    StimulusBlocks() = default;
    /// Room for the blocks of n samples. Without memory none are kept, and then none are passed over.
    explicit StimulusBlocks(std::size_t n) noexcept;

    std::size_t described() const noexcept { return m_described; }
    const StimulusBlock& operator[](std::size_t block) const noexcept { return m_blocks[block]; }
    void clear() noexcept { m_described = 0; }
    /// Replaces a described block, or describes the next one; others are not kept.
    void set(std::size_t block, const StimulusBlock& described) noexcept
    {
        if (block >= m_room || block > m_described)
            return;
        m_blocks[block] = described;
        m_described += block == m_described ? 1 : 0;
    }

private:
    std::unique_ptr<StimulusBlock[]> m_blocks;
    std::size_t m_room = 0;
    std::size_t m_described = 0;
};

/// The range of a stimulus channel, and its sum.
struct SampleRange
{
    double min = 0.0;
    double max = 0.0;
    double maxAbsolute = 0.0;
    double sum = 0.0; ///< begins at the first sample and then adds all of them: the first one counts twice
};

/// Minimum and maximum as `minMax` gives them, largest |x| as `maxAbsolute`, and the sum. Zeros for an empty row.
/// Describes the blocks of x.
SampleRange rangeOf(Row x, StimulusBlocks& blocks) noexcept;
/// The same without blocks.
SampleRange rangeOf(Row x) noexcept;

/// The smallest |x|: begins at the first one and is replaced by `if (|v| < smallest)`. 0 for an empty row. Describes
/// the blocks of |x|, as far as it had to read.
double minAbsolute(Row x, StimulusBlocks& blocks) noexcept;
/// The same without blocks.
double minAbsolute(Row x) noexcept;

/// The sum of |x[i]| / n, each divided before it is added; it begins at |x[0]| / n and then adds all of them. 0 for an
/// empty row. Describes the blocks of |x|.
double meanAbsolute(Row x, StimulusBlocks& blocks) noexcept;
/// The same without blocks.
double meanAbsolute(Row x) noexcept;

/// x[i] = |x[i]| - level, or 0 where that is negative. Gives the range of the result. Takes the blocks of |x|, as far
/// as they are described, and leaves those of the result.
SampleRange absoluteAbove(std::span<double> x, double level, StimulusBlocks& blocks) noexcept;
/// The same without blocks.
SampleRange absoluteAbove(std::span<double> x, double level) noexcept;

/// Samples begin to end - 1.
struct Run
{
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// The first run of samples with x > level that begins at index `from` or behind it, as far as it goes. NaN is above
/// no level. An empty run at the end where there is none. Blocks, which are those of a row that begins as x does, are
/// passed over where none of their samples can pass.
Run nextRunAbove(Row x, double level, std::size_t from, const StimulusBlocks& blocks = {}) noexcept;

/// The same with |x - centre| > distance.
Run nextRunApart(Row x, double centre, double distance, std::size_t from, const StimulusBlocks& blocks = {}) noexcept;

} // namespace megset::numeric
