#pragma once

#include "apps/phantom/Instrument.h"
#include "apps/phantom/PhantomOptions.h"
#include "apps/phantom/Sources.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace megset::phantom {

/// Simulates trials: what each channel's converter gives.
class TrialSimulator
{
public:
    /// The integers of a channel over the trial, the nearest ones within 32 bits.
    using TakeChannel = std::function<void(std::size_t channel, std::span<const std::int32_t> samples)>;

    TrialSimulator(const Instrument& instrument, const PhantomOptions& options);

    /// Gives the channels one after another. Trials are asked for in order, each once.
    void simulate(const PhantomPlan& plan, int trial, const TakeChannel& take);

private:
    void addStimuli(const PhantomPlan& plan, int trial, std::vector<double>& samples) const;
    void addSignals(std::size_t channel, const std::vector<std::vector<double>>& courses, std::vector<double>& samples);

    const Instrument& m_instrument;
    PhantomOptions m_options;
    Sources m_sources;
    std::vector<RandomStream> m_noise; ///< a stream for each channel
};

} // namespace megset::phantom
