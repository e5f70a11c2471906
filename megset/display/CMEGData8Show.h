#pragma once
// What the views of a dataset show: zooms, the channels that are shown, their colours, and the views themselves.
// Nothing is drawn here. Needs the flags of CMEGData2Process.

#include "megset/events/CMEGData7Measure.h"

namespace megset {

class CBrush;
class CDC;
class CMDChannelzk;
class CPen;
class CWnd;

/// Unless an operation says that it opens the current trial, it takes the one in memory and touches no file.
class CMEGData8Show : public CMEGData7Measure
{
public:
    // Zooms, by which samples are multiplied for the screen. Setters give 1.

    double getShowZoomMEGSensor() const { return m_dZoomMEGSensor; }
    double getShowZoomMEGRef() const { return m_dZoomMEGRef; }
    double getShowZoomEEGSensor() const { return m_dZoomEEGSensor; }
    double getShowZoomEEGRef() const { return m_dZoomEEGRef; }
    double getShowZoomTrig() const { return m_dZoomTrig; }
    double getShowZoomOthers() const { return m_dZoomOthers; }
    int setShowZoomMEGSensor(double zoom) { return store(m_dZoomMEGSensor, zoom); }
    int setShowZoomMEGRef(double zoom) { return store(m_dZoomMEGRef, zoom); }
    int setShowZoomEEGSensor(double zoom) { return store(m_dZoomEEGSensor, zoom); }
    int setShowZoomEEGRef(double zoom) { return store(m_dZoomEEGRef, zoom); }
    int setShowZoomTrig(double zoom) { return store(m_dZoomTrig, zoom); }
    int setShowZoomOthers(double zoom) { return store(m_dZoomOthers, zoom); }
    /// The zoom of a channel's type, -1 for the current channel; 1.0 where there is no channel.
    double getShowZoomChnl(int chan) const;
    /// Sets the zoom of a channel's type. Types that are read with a zoom, but not set through it, change nothing: MEG
    /// 104 to 120, references 14 to 20, EEG kinds beyond 300, 302 and 303, and others beyond 400 to 402; it is meant
    /// so. 1; 0 where there is no channel.
    int setShowZoomChnl(int chan, double zoom);
    /// The zoom of what is shown in the current trial, which is opened: of the first kind that is there of MEG
    /// measure, MEG reference, EEG measure, EEG reference, trigger, others; 1.0 with none of them, 0.0 with no
    /// channels. A channel beyond the flags counts as shown.
    double getShowZoomUsed();
    /// Multiplies all nine zooms. Gives 1.
    int zoomAllChnlShow(double factor);
    double getShowTimeScaleX() const { return m_dShowTimeScaleX; }
    /// Stores the absolute value. Gives 1.
    int setShowTimeScaleX(double scale);
    int getShowVirtChnl() const { return m_bShowVirtChnl; }
    int setShowVirtChnl(bool show);

    // One channel, 0 or above. With `onlyShown` one that isn't shown counts as none.

    /// The working name; empty for none.
    CString getChnlName_PhycVirt(int chan, bool onlyShown) const;
    /// The show flag; false outside the flags.
    bool getChnlShow_PhycVirt(int chan) const { return isShowChnl4Alltrials(chan) != 0; }
    /// A plane of the channel's spectrum of a class (`kind`: 0 active, 1 control, 2 result) and data type (`part`: 0
    /// real, 1 imaginary, 2 magnitude, 3 phase), not to be freed; null for none. Its T goes to `a` and F to `b` where
    /// these are not null, 0 where there is no spectrum.
    double* getChnlSpctmData(int chan, bool onlyShown, int kind, int part, std::int64_t* a, std::int64_t* b) const;
    /// Working samples, not to be freed; null for none.
    double* getTrlChnlDataWave(int chan, bool onlyShown) const;
    /// The working name of the last shown channel with a name of more than 3 characters, in spite of its own name: it
    /// is meant so. "Non" where there is none.
    CString getLongestChannelName() const;

    // Which channels are shown. The flags hold for all trials.

    using CMEGData2Process::setMEGSensorShow;
    /// Sets the show flag, -1 of the current channel. 0 outside the flags.
    int setMEGSensorShow(bool show, int chan);
    /// Shows the MEG measure channels of the current trial, which is opened, whose working name contains the text, and
    /// hides all others. 1; 0 with no trial or without memory for the flags.
    int setShowGroup4Word(const CString& text);
    /// The same, if there is such a trial (-1: the current one); which one does not matter, and the last argument is
    /// not read. 0 if there is none.
    int setShowGroup4WordTrial(const CString& text, int trial, bool unused);
    /// Shows one kind of EEG channels and hides all others: 1 all EEG, 2 measure, 3 reference, 4 EKG, 5 iEEG, 6 SEEG;
    /// another mode shows every channel. The text is not read. Trial and result as above.
    int setShowGroup4WordEeg(const CString& unused, int mode);
    /// Shows the MEG measure channels of the current trial, which is opened, and hides the others. Where there are none
    /// it says so and goes on to a wider kind, without asking: "No MEG measure channels, show EEG?" and the EEG measure
    /// channels, then "No MEG/EEG measure channels, show all MEG/EEG?" and all MEG and EEG channels, each with a result
    /// of 1. At last "No MEG/EEG channels, show all channels?", all channels, and "No channel to show" where there is
    /// none: the result is 0. 0 with no trial or without memory for the flags, too.
    int setShowMEGMeasureChannel();

    // Colours. 2 for a value above the neutral band, 1 below it, 0 in it or for what isn't a number: the object is made
    // of that colour, and selected into the canvas. Where it is null or has its object already nothing is selected. A
    // brush goes through the table by distance from the band / step, a pen by distance x step: the mismatch is meant. A
    // brush with a step of 0 takes the last colour. While sensors are not shown as active nothing is made, and 0.

    int set2DSensorColorBrush(CDC* canvas, CBrush* brush, double value);
    int set2DSensorColorPen(CDC* canvas, CPen* pen, double value);
    int set2DElectrodeColorBrush(CDC* canvas, CBrush* brush, double value);
    int set2DElectrodeColorPen(CDC* canvas, CPen* pen, double value);

    // The views, which repaint when something changes. They are not owned.

    /// Registers a view. Gives the new number of views; 0 for one that is registered, and for null.
    int viewerAdd(CWnd* view);
    /// Takes a view off, or with `all` every one. Gives the new number of views; -1 for one that isn't registered.
    int viewerRemove(CWnd* view, bool all);
    /// Asks for a repaint of a registered view, or with `all` of every one that has a window and is visible. A view
    /// that is given is registered first. Without `all` 1, or 0 for null; with `all` the number of registered views.
    int viewerInvalidate(bool erase, CWnd* view, bool all);

private:
    static int store(double& field, double value)
    {
        field = value;
        return 1;
    }
    const CMDChannelzk* channelAt(int chan, bool onlyShown) const;
    const CMDTrialzk* openTrialWithFlags();
    bool countsAsShown(int chan) const;
    template <class IsShown>
    int showChannels(const CMDTrialzk& trial, IsShown isShown);
};

} // namespace megset
