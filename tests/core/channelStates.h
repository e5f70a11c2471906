#pragma once
// Channels in every state that the sample store knows, and what a channel holds as values to compare.

#include "megset/core/CMDChannelzk.h"

#include <array>
#include <cstdint>
#include <limits>
#include <numeric>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

namespace megset::channelStates {

enum class State
{
    empty,
    ready,
    rawOnly,
    workingOnly,
    longerBackup,
    shorterBackup
};

inline constexpr std::array allStates = {State::empty,       State::ready,        State::rawOnly,
                                         State::workingOnly, State::longerBackup, State::shorterBackup};

inline std::ostream& operator<<(std::ostream& stream, State state)
{
    static constexpr std::array names = {"empty",        "ready",         "raw only",
                                         "working only", "longer backup", "shorter backup"};
    return stream << names[static_cast<std::size_t>(state)];
}

/// first, first + 1, ...
inline std::vector<double> rising(std::int64_t n, double first)
{
    std::vector<double> samples(static_cast<std::size_t>(n));
    std::iota(samples.begin(), samples.end(), first);
    return samples;
}

constexpr std::int64_t stateSamples = 6; ///< working samples of the states below, or raw ones where they are alone

/// Brings an empty channel into the state: working samples 1, 2, ..., raw samples 101, 102, ..., current sample 4. The
/// unequal states have 3 raw samples more or less.
inline void bringInto(CMDChannel& channel, State state)
{
    constexpr std::int64_t n = stateSamples;
    const bool wave = state != State::empty && state != State::rawOnly;
    const std::int64_t raw = state == State::empty || state == State::workingOnly ? 0
                             : state == State::longerBackup                       ? n + 3
                             : state == State::shorterBackup                      ? n - 3
                                                                                  : n;
    ASSERT_EQ(channel.initDataBk(state == State::empty ? 0 : n, raw, true), 1);
    if (raw > 0)
        std::iota(channel.getBkData(), channel.getBkData() + raw, 101.0);
    if (wave)
        std::iota(channel.getDataWave(), channel.getDataWave() + n, 1.0);
    if (wave)
        channel.m_nCurrentSample = 4;
    else
        channel._cleanTimeDataC(false);
}

/// What a channel holds: samples, counts, and which arrays are there.
struct Contents
{
    std::vector<double> wave, backup;
    bool hasWave = false, hasBackup = false;
    std::int64_t total = 0, bkTotal = 0, current = 0;
    bool operator==(const Contents&) const = default;
};

inline std::vector<double> samplesOf(const double* samples, std::int64_t n)
{
    return samples != nullptr && n > 0 ? std::vector<double>(samples, samples + n) : std::vector<double>();
}

inline Contents contents(const CMDChannel& channel)
{
    return {samplesOf(channel.getDataWave(), channel.getTotalSample()),
            samplesOf(channel.getBkData(), channel.getBkDataSample()),
            channel.getDataWave() != nullptr,
            channel.getBkData() != nullptr,
            channel.getTotalSample(),
            channel.getBkDataSample(),
            channel.m_nCurrentSample};
}

inline std::ostream& operator<<(std::ostream& stream, const Contents& c)
{
    const auto list = [&](const char* name, bool has, const std::vector<double>& samples, std::int64_t count) {
        stream << name << (has ? "" : " (none)") << ' ' << count << ':';
        for (const double v : samples)
            stream << ' ' << v;
    };
    list("working", c.hasWave, c.wave, c.total);
    list("; backup", c.hasBackup, c.backup, c.bkTotal);
    return stream << "; current " << c.current;
}

/// A channel with these samples in both arrays, and the current sample at 0.
inline Contents readyWith(const std::vector<double>& samples)
{
    const auto n = static_cast<std::int64_t>(samples.size());
    return {samples, samples, true, true, n, n, 0};
}

/// Counts for which no array can be had.
inline constexpr std::array impossibleCounts = {std::int64_t{1} << 60, std::int64_t{1} << 61, std::int64_t{1} << 62,
                                                std::numeric_limits<std::int64_t>::max()};

/// Counts and indices below zero.
inline constexpr std::array negatives = {std::int64_t{-1}, std::int64_t{-2}, -(std::int64_t{1} << 61),
                                         std::numeric_limits<std::int64_t>::min()};

} // namespace megset::channelStates
