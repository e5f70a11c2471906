#pragma once
// What the signal does in the selected range, as numbers and as lines of a table, and the order of channels. Needs the
// selection of CMEGData and the flags of CMEGData2Process.

#include "megset/events/CMEGData6Classify.h"

#include <functional>
#include <span>

namespace megset {

class CMDChannelzk;
struct ChannelStatistics;

/// All measures are of the working samples of the current trial, which is opened, from m_nSelectStart to m_nSelectEnd
/// unless a range is given. The results are 0 where nothing could be measured. Units are those of the samples.
class CMEGData7Measure : public CMEGData6Classify
{
public:
    /// Statistics of one channel, -1 being the current one, as CMDChannel::getSelectMinMeaMaxSdV gives them. A begin or
    /// end of -1 makes both those of the selection. Gives the samples used; 3 or fewer of them show "More than 3
    /// samples are typically requred for calcualte Standard deviation!?". 0 without trial, without a current channel
    /// ("Please select a channel for measurement!?") and for a channel that is missing.
    std::int64_t getMeasurementParam1ChnlSD(int channel, std::int64_t begin, std::int64_t end, double& min,
                                            double& mean, double& max, double& rms, double& sd, double& meanPlus2Sd);
    /// The same of all channels at once, to the bit and several times as fast: out[i] is of channel i, all 0 where it
    /// is missing or has no samples. Gives the channels written, as many as there are and as `out` holds; 0 without
    /// trial. The box about 3 samples or fewer shows once, where a channel with samples has so few.
    int getMeasurementParamAllChnlSD(std::int64_t begin, std::int64_t end, std::span<ChannelStatistics> out);
    /// The same of the current channel over the selection, as text: where it was measured, the numbers, and at the end,
    /// as it is meant, the head that explains them. Or "Empty" (no array of trials), "Non" (no trials), "Open Trial
    /// error", "Error" and "No Channel". A negative current trial becomes the first.
    CString getMeasurementResults1ChnlSD();

    // Across channels. Of each channel the mean counts: results are the smallest, the mean, the largest and the root
    // mean square of these. With a mode that is not 0: the smallest minimum, the mean of the means, the largest maximum
    // and the largest mean square, no root taken. A channel without samples counts with 0. They give the channels used.

    /// MEG measure channels (kind 0), EEG measure channels (1) or all channels; with `visibleOnly` those that are
    /// shown.
    int getMeasurementResults(double& min, double& mean, double& max, double& rms, bool visibleOnly, int mode,
                              unsigned kind);
    /// Channels whose working name contains the text.
    int getMeasurementResultsSN(const CString& name, double& min, double& mean, double& max, double& rms,
                                bool visibleOnly, int mode);
    /// All shown channels in mode 0, as text; "Unknown Trial" without trial.
    CString getMeasurementResultsT();
    /// A row of a table: dataset, trial, start of the selection as sample and as time in ms from the trigger, and the
    /// text of getMeasurementResultsT. The same words as getMeasurementResults1ChnlSD, without "No Channel".
    CString getMeasurementResultsX();

    /// Smallest and largest value of all channels, or of good ones, or of MEG measure channels, at one sample; -1 is
    /// m_nSelectStart. Channels that end before it are passed over. 1; 0 without trial or channels, and for a sample
    /// outside the current channel.
    int getAllChnlDataRng4SelectPt(std::int64_t sample, double& min, double& max, bool measureOnly, bool goodOnly);

    /// Exchanges two channels, or with `insert` moves one and lets those between move up, in the current trial or in
    /// all; the moved channel becomes current. Nothing else is renumbered: IDs and flags elsewhere keep their places.
    /// `to` is limited to 0 and the number of channels. 1, with nothing changed where both are the same, which ends a
    /// walk over all trials; 0 without trial, for a channel that is not there, and at a trial where `to` is not below
    /// the number of channels. In all trials, those that lack the channel are passed over.
    int changeChannelOrderID(int from, int to, int insert, int allTrials);

private:
    struct Measured
    {
        int channels = 0;
        double min = 0.0;
        double mean = 0.0;
        double max = 0.0;
        double rms = 0.0;
    };
    Measured measure(const CMDTrialzk& trial, bool visibleOnly, bool perSample,
                     const std::function<bool(const CMDChannelzk&)>& isChosen) const;
    CString openMeasuredTrial();
    void completeRange(std::int64_t& begin, std::int64_t& end);
    double latencyMs(std::int64_t sample) { return getLatency4ptSecond(sample) * 1000.0; }
};

} // namespace megset
