#pragma once
// SEEG probes of a trial: the list of them, and the channels that record their contacts.

#include "megset/spectral/CMDTrial6IcaFace.h"

namespace megset {

/// An index of -1 stands for the current probe; others are brought into the list.
class CMDTrial6SeegIeeg : public CMDTrial6IcaFace
{
public:
    /// Appends a probe, which the trial owns then, and makes it current. Gives its index; 0 for null.
    int addSeegProbe(CSeegProbezk* probe);
    /// Ends a probe and its place; a place without a probe stays. The current index is brought into the list, -1 with
    /// none left. Gives the number of places left; 0 where there were none.
    int deleteSeegProbe(int index);
    /// Ends all probes and gives their number. The current index is one less then, where no probe is:
    /// getSeegProbeCrntID mends it.
    int cleanSeegProbe();
    /// Null with no probes, and for a place without one.
    CSeegProbezk* getSeegProbe(int index) const;
    /// The current index, brought into the list and stored so; 0 with nothing stored where there are none.
    int getSeegProbeCrntID();

    /// Makes a channel the one that records a contact: a SEEG channel (type 350), whose new electrode stands at the
    /// contact. The contact takes the name, the channel's index and its working name. A channel without an electrode
    /// asks "Make a new electrode?!"; No changes nothing. 1; 0 with "Channel ID must be in the range of 0-%d!" for an
    /// index outside the channels, for an empty place, and without memory. For no contact 0, too: the channel has
    /// become a SEEG channel by then, and is meant to.
    int setSeegContact2Channel(CSeegContactzk* contact, int channel, const CString& contactName);
};

} // namespace megset
