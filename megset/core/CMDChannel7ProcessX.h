#pragma once
// Numbers over all samples of a channel, and the channel's sensor as processing sees it. Needs the sensor of
// CMDChannel0SensorInfo.

#include "megset/display/CMDChannel3Show.h"

namespace megset {

namespace numeric {
struct SampleRange;
class StimulusBlocks;
} // namespace numeric

/// The channel's layer for numbers over all its samples: range, scaling, re-sampling, conditioning of triggers.
class CMDChannel7ProcessX : public CMDChannel3Show
{
public:
    /// Sets the range fields from the working samples. The first sample counts twice in the mean: it is meant so. 0
    /// without samples.
    int computeDataRange();
    /// The same, which also tells what the blocks of samples hold.
    int computeDataRangeBlocks(numeric::StimulusBlocks& blocks);
    /// Physical units per unit of the range fields; 0.0 where these have no extent.
    double getBitValue() const;
    /// What is added to a value of the range fields before it is multiplied by getBitValue(); 0.0 where that is not
    /// above 0.
    double getOffset() const;
    /// Multiplies the working samples, with `both` the backup samples, too. 0 without working samples; 0 without backup
    /// samples where these were asked for, with the working ones scaled.
    int scaleWaveData(double factor, int both);
    /// Stretches n values to m > n. The two weights stand the other way round than in an interpolation, so that a point
    /// on a source index gets 0: this curve is meant. A weight on the element behind the source counts as 0. 1, or 0
    /// unless 0 < n < m and both arrays are given.
    static int expandDataPoints(std::int64_t n, const int* src, std::int64_t m, int* dst);

    // Re-sampling by a factor: one sample for each run of `factor` samples, which is the run's first, or with `average`
    // (and a factor above 1) their mean. A factor below 1 counts as 1.

    /// Makes n working samples from the raw ones, repeating the last raw sample where these end, and brings the current
    /// sample inside. The working array is made anew only when its count changes, and then the current sample is 0. A
    /// run that is longer than the raw samples ends after 1,048,576 samples. 1, also for a channel without raw samples,
    /// which is left as it is; 0 without memory, or for an n above 4096 times the raw samples ("Not enough memory!"),
    /// with no working samples left.
    int reSampleBkData(bool average, std::int64_t factor, std::int64_t n);
    /// Makes working and raw samples from those of another channel, count / factor + 1 of each. Where the count divides
    /// by the factor there is no run for the last of them, which is 0: it is meant so. 1; 0 for a source without
    /// working or without raw samples, with nothing changed, and without memory ("Not enough memory!").
    int reSampleFrom(const CMDChannel7ProcessX& source, bool average, std::int64_t factor);

    // Conditioning of trigger channels. The range fields are set as by computeDataRange, and the working samples stay
    // changed. 0 without working samples; with `alsoBackup` the raw samples are treated in the same way, with a level
    // of their own, and 0 where there are none, with the working ones done.

    /// Subtracts the mean of computeDataRange, in which the first sample counts twice: it is meant so. The range fields
    /// stay those of the samples before. The raw samples' mean is the plain one. For channels of any type.
    int stimTrgChnl_Dc(int alsoBackup);
    /// Makes every sample its absolute value, with `subtract` less the smallest of them. Trigger channels only, else 0.
    int stimTrigChnl_AbsDc(int subtract, int alsoBackup);
    /// The same with the mean of the absolute values, in which the first one counts twice, too; what would be negative
    /// becomes 0.
    int stimTrigChnl_AbsDcM(int subtract, int alsoBackup);
    // The same, which also tell what the blocks of conditioned samples hold.
    int stimTrigChnl_AbsDcBlocks(int subtract, int alsoBackup, numeric::StimulusBlocks& blocks);
    int stimTrigChnl_AbsDcMBlocks(int subtract, int alsoBackup, numeric::StimulusBlocks& blocks);

    // The channel's MEG sensor; 0 without one, and for a channel of no MEG type.

    /// Distance of its coils in mm.
    double getCoilBaseLine() const;
    /// Whether it stands at gradient order 2 or above.
    int hasSyntheticGradiometer() const;
    int isAxialGrad() const;

private:
    void takeDataRange(const numeric::SampleRange& range);
    using LevelOf = double (*)(std::span<const double>, numeric::StimulusBlocks&) noexcept;
    int conditionStimulus(LevelOf levelOf, int alsoBackup, numeric::StimulusBlocks& blocks);
};

} // namespace megset
