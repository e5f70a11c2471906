#pragma once
// Trials made from other data of the session. Needs the recording information of CMEGData.

#include "megset/persistence/CMEGData9FileA00Basic.h"

namespace megset {

/// The dataset's layer for trials that are made of other data of the session.
class CMEGData9FileA00Maker : public CMEGData9FileA00Basic
{
public:
    /// A virtual trial of EEG-like channels from the waves of virtual channels, with `shownOnly` of those that are
    /// shown: an electrode at each one's position and direction, its wave, names and place on the plane. `kind` says
    /// what the channels are: 1 iEEG ("Vc2iEEG_%s", type 340), 2 EEG ("Vc2EEG_%s", 302), else SEEG ("Vc2EEG_%s", 350),
    /// with the face's name in the type name. With `hasRange` samples from..to are taken, both included, else all.
    ///
    /// With a target its recording information is copied here first, with its coefficients by their own rule, and this
    /// dataset becomes the session "VirtualWaveform". The trial belongs to the caller and to no dataset. Null for a
    /// null face, a range that is not inside its samples, and where there is no channel or sample; with "Not enough
    /// memory?" or "Is there enough memory?!".
    CMDTrialzk* makeTrial4VirtSns2xEeg(CMEGData9FileA00Maker* target, const CFaceVirtChnlWavezk* wave, int kind,
                                       bool hasRange, std::int64_t from, std::int64_t to, bool shownOnly);
};

} // namespace megset
