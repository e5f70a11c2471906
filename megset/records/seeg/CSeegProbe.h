#pragma once
// A depth probe of a stereo-EEG: a straight line from a base outside the head to a tip inside it, with its contacts.

#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"
#include "megset/platform/formatVersion.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace megset {

/// One contact.
class CSeegContact
{
public:
    bool operator==(const CSeegContact&) const = default;

    int m_nContactChnlID = -1; // the channel that records it; -1 unassigned
    double m_dContactX = 0.0;  // mm
    double m_dContactY = 0.0;
    double m_dContactZ = 0.0;
    double m_dContactSize = 0.8; // diameter, mm
    CString m_strContactName;
    CString m_strContactChnlName;
    int m_nContactRow = -1; // in the list of contacts that is shown
};

/// The file layer of a contact of a probe.
class CSeegContact09File : public CSeegContact
{
public:
    /// Reads or writes the record "SEEGCONTACTZK". 1, or 0 with the messages of serializeRecord.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSeegContact09File> s_versions[];
};

/// A contact of a probe; this is the class that is made.
class CSeegContactzk : public CSeegContact09File
{
};

/// A type of probe. Its name tells the numbers.
struct SeegProbeModel
{
    std::string_view name;
    int contacts;    // 0: as the user sets them
    double diameter; // mm
    double distance; // mm between the middles of two contacts
    double length;   // mm from the tip to the far end of the last contact
};

/// The types by mode.
inline constexpr std::array<SeegProbeModel, 5> g_aSeegProbeModel{{
    {"User Defined 2P+N", 0, 0.8, 3.5, 0.0},
    {"HkhsSDE-8P0.8D3.5B26.5", 8, 0.8, 3.5, 26.5},
    {"HkhsSDE-10P0.8D3.5B33.5", 10, 0.8, 3.5, 33.5},
    {"HkhsSDE-12P0.8D3.5B40.5", 12, 0.8, 3.5, 40.5},
    {"HkhsSDE-16P0.8D3.5B54.5", 16, 0.8, 3.5, 54.5},
}};

/// A probe. Positions and sizes are in mm.
class CSeegProbe
{
public:
    static constexpr int userMode = 0;
    static constexpr int maxContacts = 1024;

    bool operator==(const CSeegProbe&) const = default;

    int getTotalContacts() const { return m_aContacts.GetSize(); }
    /// The contact with that index, -1 for the current one, or null when there is none; another index outside the list
    /// raises the invalid-argument exception.
    CSeegContactzk* getContact(int index) const;
    /// Computes m_dPointing, the point that the probe points to: it lies beyond the tip by m_dExtension percent of the
    /// way from base to tip. Gives 1, or 0 when base and tip are one point, which is then also what it points to.
    int computeExtend();
    /// Places the contacts on the line from tip to base, contact 0 being the deepest. A model's contacts stand at its
    /// distance, the first one's tip end at the probe's tip; they are made when they are fewer or more than the model
    /// has. A user's contacts stand at m_dContactDist, the first at the tip. Gives 1, or 0, with no contact moved, when
    /// base and tip are one point or not finite, and without memory.
    int computeContactPos();
    /// Takes another type, with the contacts that it has; a user's type keeps those that are there. Contacts that stay
    /// keep their names and channels. Gives 1, or 0 for a mode outside 0 to 4 or without memory, with nothing changed.
    int setProbeMode(int mode);
    /// Makes the probe a user's type with `count` contacts at `distance` mm, and places them if base and tip allow.
    /// Gives 1, or 0 for a count outside 0 to 1024, a distance not above 0, or without memory, with nothing changed.
    int setUserContact(int count, double distance);
    /// Takes the next of seven colours that differ also for the colour-blind (M. Okabe, K. Ito, 2008). Gives 1.
    int setupProbeColor();
    int setupContactColor();

    std::array<double, 3> m_dProbeBase{30.0, 30.0, 30.0};
    double m_dBaseSize = 9.0;
    std::array<double, 3> m_dProbeTip{};
    double m_dTipSize = 6.0;
    std::array<double, 3> m_dPointing{};
    double m_dExtension = 10.0; // percent
    int m_nProbeMode = 1;       // index in g_aSeegProbeModel
    int m_bBaseSet = 0;         // the base came from a selection
    int m_bTipSet = 0;
    int m_bProbeVisible = 0;
    int m_nProbeSize2D = 0; // pixels
    int m_bShowContacts = 1;
    int m_nContactSize2D = 3; // pixels
    double m_dContactSize3D = 8.0;
    int m_nPenSize = 2; // pixels
    CString m_strProbeName;
    CTypedPtrArray<CSeegContactzk> m_aContacts;
    int m_nCurrentContact = 0;
    double m_dContactDist = 3.5;            // of a user's type
    int m_nProbeRow = -1;                   // in the list of probes that is shown
    std::uint32_t m_nProbeColor = 0x009FE6; // 0x00BBGGRR
    std::uint32_t m_nContactColor = 0xE9B456;

private:
    bool tryResizeContacts(int count);
};

/// The file layer of a probe.
class CSeegProbe09File : public CSeegProbe
{
public:
    /// Reads or writes the record "SEEGPROBEZK". 1, or 0 with the messages of serializeRecord, for a mode that isn't
    /// there, or without memory.
    int serializezk(CArchive& ar);

private:
    int serialize_20261121(CArchive& ar);

    static const FormatVersion<CSeegProbe09File> s_versions[];
};

/// A probe; this is the class that is made.
class CSeegProbezk : public CSeegProbe09File
{
};

} // namespace megset
