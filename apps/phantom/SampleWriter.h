#pragma once

#include "apps/phantom/Instrument.h"
#include "apps/phantom/PhantomOptions.h"
#include "apps/phantom/Sources.h"

#include <filesystem>
#include <iosfwd>
#include <vector>

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
    void writeTrial(const PhantomPlan& plan, int trial, std::ofstream& file);
    void addStimuli(const PhantomPlan& plan, int trial, std::vector<double>& samples) const;
    void addSignals(std::size_t channel, const std::vector<std::vector<double>>& courses, std::vector<double>& samples);

    std::filesystem::path m_stem;
    const Instrument& m_instrument;
    PhantomOptions m_options;
    Sources m_sources;
    std::vector<RandomStream> m_noise; ///< a stream for each channel
};

} // namespace megset::phantom
