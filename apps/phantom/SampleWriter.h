#pragma once

#include "apps/phantom/Instrument.h"
#include "apps/phantom/PhantomOptions.h"
#include "apps/phantom/TrialSimulator.h"

#include <filesystem>

namespace megset::phantom {

/// Throws std::invalid_argument when a trial is too long for a file of samples.
void checkTrialFits(const PhantomPlan& plan, std::size_t channels, std::int64_t maxFileBytes);

/// Simulates the trials and writes them: STEM.meg4, and from the size on that a file may have, STEM.1_meg4 and so on.
class SampleWriter
{
public:
    /// `stem` is the path of the files without their endings.
    SampleWriter(std::filesystem::path stem, const Instrument& instrument, const PhantomOptions& options);

    /// Gives the number of files.
    int writeTrials(const PhantomPlan& plan);

private:
    std::filesystem::path m_stem;
    std::size_t m_channels;
    std::int64_t m_maxFileBytes;
    TrialSimulator m_simulator;
};

} // namespace megset::phantom
