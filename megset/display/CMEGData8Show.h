#pragma once
// What the views of a dataset show. Needs the flags of CMEGData2Process.

#include "megset/events/CMEGData7Measure.h"

namespace megset {

class CWnd;

class CMEGData8Show : public CMEGData7Measure
{
public:
    /// Shows the MEG measure channels of the current trial, which is opened, and hides the others; the flags hold for
    /// all trials. Where there are none it says so and goes on to a wider kind, without asking: "No MEG measure
    /// channels, show EEG?" and the EEG measure channels, then "No MEG/EEG measure channels, show all MEG/EEG?" and all
    /// MEG and EEG channels, each with a result of 1. At last "No MEG/EEG channels, show all channels?", all channels,
    /// and "No channel to show" where there is none: the result is 0. 0 with no trial or without memory for the flags,
    /// too.
    int setShowMEGMeasureChannel();

    /// Asks for a repaint of a registered view, or with `all` of every one that has a window and is visible. A view
    /// that is given is registered first. Without `all` 1, or 0 for null; with `all` the number of registered views.
    int viewerInvalidate(bool erase, CWnd* view, bool all);

private:
    template <class IsShown>
    int showChannels(const CMDTrialzk& trial, IsShown isShown);
};

} // namespace megset
