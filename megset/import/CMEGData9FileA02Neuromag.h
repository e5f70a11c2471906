#pragma once
// Trials that somebody else has built: from a recording of a Neuromag system, or dropped from another dataset's view.
// Needs the trial files of CMEGData9FileA00Basic and the show flags of CMEGData8Show.

#include "megset/import/CMEGData9FileA01CtfMISL.h"

namespace megset {

/// The dataset's layer for trials that come in whole: from a Neuromag recording, or dropped from another dataset.
class CMEGData9FileA02Neuromag : public CMEGData9FileA01CtfMISL
{
public:
    /// Adds a trial behind the last one, makes it current and writes its file "<folder><session>Trial<index>.trl"; then
    /// names its sensors after their place, which the file holds from the next save on, and shows its MEG measure
    /// channels. All trials count as recorded from then on. Takes over the trial in every case: with no memory ("Not
    /// enough memory?!", 0) it goes to getUnsavedTrials(). A file that can't be written leaves the trial without a
    /// path, and the result is 1. 0 for null and for a trial of the dataset.
    int addImportNeuromagTrial(CMDTrialzk* trial, int bVirtual);

    /// Adds a copy of the trial behind the last one and makes it current, by way of its file
    /// "<folder><session>DragDropTrial<index>.trl". The given trial stays whose it is, with the path that it has; one
    /// of this dataset leaves memory with the others, which are saved. Mode
    /// 1 cuts the copy to samples from..to, both included, left-aligned, mode 2 centred (CMDChannel::chopSize4Select),
    /// which makes theirs the recording's sample count and leaves the copy on disk; every other mode takes all samples.
    ///
    /// Into a dataset with trials it asks "The droped trial and existing trial have unequal channels, which may be
    /// troublesome!  would you like to continue?" and, for mode 0, the same of "sample"; into one without, the
    /// recording takes the sample count. 0 for null, at No, where the file can't be written, with "Selected sample is
    /// too small!?, please select at least 2 samples" (modes 1 to 3), "Open New Drag-Drop trial error! is Memory
    /// enough?" or "Not enough memory?!", and for a trial without channels that is to be cut; the trials are as they
    /// were then.
    int dropNewTrial(CMDTrialzk* trial, int mode, std::int64_t from, std::int64_t to);
    /// The same into an empty dataset, which takes over what the source knows of the recording (no pre-trigger, and the
    /// coefficients by their own rule), head localisation, zoom factors, time scale and channel flags. 1, also where
    /// nothing was dropped; 0 for a null source.
    int dropNewMeg(CMEGData9FileA02Neuromag* source, CMDTrialzk* trial, int mode, std::int64_t from, std::int64_t to);
    /// Cuts or stretches all channels of the trial (CMDChannel::chopSize4Select), makes `newSize` the sample count of
    /// the recording, and saves all trials: one in the dataset leaves memory. 0 for null, without channels, for a size
    /// below 1, and without memory, with some of the channels done.
    int chopSize4Select(CMDTrialzk* trial, std::int64_t newSize, int mode, std::int64_t from, std::int64_t to);

private:
    bool mayDrop(const CMDTrialzk& trial, int mode, std::int64_t size);
    CString saveForDrop(CMDTrialzk& trial, const CString& path) const;
    std::unique_ptr<CMDTrialzk> copyThroughFile(CMDTrialzk& trial);
    void takeRecordedSize(std::int64_t size);
    void copyFlags(const CMEGData& source);
};

} // namespace megset
