#include "megset/records/seeg/CSeegProbe.h"

#include "megset/platform/memory.h"
#include "megset/records/ownedList.h"
#include "megset/records/recordFormat.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace megset {
namespace {

// Orange, sky blue, bluish green, yellow, blue, vermilion, reddish purple, as 0x00BBGGRR.
constexpr std::array<std::uint32_t, 7> palette{0x009FE6, 0xE9B456, 0x739E00, 0x42E4F0, 0xB27200, 0x005ED5, 0xA779CC};

std::uint32_t colorAfter(std::uint32_t color)
{
    const auto* const found = std::find(palette.begin(), palette.end(), color);
    const bool toFirst = found == palette.end() || found + 1 == palette.end();
    return toFirst ? palette.front() : *(found + 1);
}

bool isMode(int mode)
{
    return mode >= 0 && mode < static_cast<int>(g_aSeegProbeModel.size());
}

const SeegProbeModel& modelOf(int mode)
{
    return g_aSeegProbeModel[isMode(mode) ? static_cast<std::size_t>(mode) : 0U];
}

// From the tip to the middle of the first contact: half of a contact, which is what the row has beyond its distances.
double firstMiddle(const SeegProbeModel& model)
{
    return model.contacts > 0 ? 0.5 * (model.length - (model.contacts - 1) * model.distance) : 0.0;
}

// Direction of length 1; false when there is none.
bool unitFrom(const std::array<double, 3>& tip, const std::array<double, 3>& base, std::array<double, 3>& unit)
{
    const double x = base[0] - tip[0];
    const double y = base[1] - tip[1];
    const double z = base[2] - tip[2];
    const double length = std::hypot(x, y, z);
    if (!(length > 0.0) || !std::isfinite(length))
        return false;
    unit = {x / length, y / length, z / length};
    return true;
}

} // namespace

const FormatVersion<CSeegContact09File> CSeegContact09File::s_versions[] = {
    {20261121, &CSeegContact09File::serialize_20261121},
};

int CSeegContact09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "SEEGCONTACTZK", s_versions);
}

int CSeegContact09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_nContactChnlID, m_dContactX, m_dContactY, m_dContactZ, m_dContactSize, m_strContactName,
                    m_strContactChnlName, m_nContactRow);
    return 1;
}

CSeegContactzk* CSeegProbe::getContact(int index) const
{
    if (index != -1)
        return m_aContacts.GetAt(index);
    const bool exists = m_nCurrentContact >= 0 && m_nCurrentContact < m_aContacts.GetSize();
    return exists ? m_aContacts.GetAt(m_nCurrentContact) : nullptr;
}

int CSeegProbe::computeExtend()
{
    for (std::size_t i = 0; i < 3; ++i)
        m_dPointing[i] = m_dProbeTip[i] + (m_dProbeTip[i] - m_dProbeBase[i]) * m_dExtension / 100.0;
    return m_dProbeTip != m_dProbeBase ? 1 : 0;
}

int CSeegProbe::computeContactPos()
{
    std::array<double, 3> toBase{};
    if (!unitFrom(m_dProbeTip, m_dProbeBase, toBase))
        return 0;
    const SeegProbeModel& model = modelOf(m_nProbeMode);
    const bool isUsers = model.contacts == 0;
    if (!isUsers && !tryResizeContacts(model.contacts))
        return 0;
    for (int i = 0; i < m_aContacts.GetSize(); ++i) {
        CSeegContactzk* contact = m_aContacts.GetAt(i);
        if (contact == nullptr)
            continue;
        const double fromTip = firstMiddle(model) + i * (isUsers ? m_dContactDist : model.distance);
        contact->m_dContactX = m_dProbeTip[0] + fromTip * toBase[0];
        contact->m_dContactY = m_dProbeTip[1] + fromTip * toBase[1];
        contact->m_dContactZ = m_dProbeTip[2] + fromTip * toBase[2];
    }
    return 1;
}

int CSeegProbe::setProbeMode(int mode)
{
    if (!isMode(mode))
        return 0;
    const SeegProbeModel& model = modelOf(mode);
    if (model.contacts > 0) {
        if (!tryResizeContacts(model.contacts))
            return 0;
        for (int i = 0; i < m_aContacts.GetSize(); ++i)
            if (CSeegContactzk* contact = m_aContacts.GetAt(i))
                contact->m_dContactSize = model.diameter;
    }
    m_nProbeMode = mode;
    return 1;
}

int CSeegProbe::setUserContact(int count, double distance)
{
    if (count < 0 || count > maxContacts || !(distance > 0.0) || !std::isfinite(distance) || !tryResizeContacts(count))
        return 0;
    m_nProbeMode = userMode;
    m_dContactDist = distance;
    computeContactPos();
    return 1;
}

int CSeegProbe::setupProbeColor()
{
    m_nProbeColor = colorAfter(m_nProbeColor);
    return 1;
}

int CSeegProbe::setupContactColor()
{
    m_nContactColor = colorAfter(m_nContactColor);
    return 1;
}

// New contacts are named by the probe and their number from 1. All are made before the first one is added.
bool CSeegProbe::tryResizeContacts(int count)
{
    std::vector<std::unique_ptr<CSeegContactzk>> added;
    for (int i = m_aContacts.GetSize(); i < count; ++i) {
        added.push_back(tryNew<CSeegContactzk>());
        if (added.back() == nullptr)
            return false;
        added.back()->m_strContactName = CString::formatted("%s%d", m_strProbeName, i + 1);
    }
    for (auto& contact : added)
        m_aContacts.Add(std::move(contact));
    while (m_aContacts.GetSize() > count)
        m_aContacts.RemoveAt(m_aContacts.GetSize() - 1);
    if (m_nCurrentContact >= count)
        m_nCurrentContact = std::max(count - 1, 0);
    return true;
}

const FormatVersion<CSeegProbe09File> CSeegProbe09File::s_versions[] = {
    {20261121, &CSeegProbe09File::serialize_20261121},
};

int CSeegProbe09File::serializezk(CArchive& ar)
{
    return serializeRecord(ar, *this, "SEEGPROBEZK", s_versions);
}

int CSeegProbe09File::serialize_20261121(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_dProbeBase, m_dBaseSize, m_dProbeTip, m_dTipSize, m_dPointing, m_dExtension, m_nProbeMode,
                    m_bBaseSet, m_bTipSet, m_bProbeVisible, m_nProbeSize2D, m_bShowContacts, m_nContactSize2D,
                    m_dContactSize3D, m_nPenSize, m_strProbeName);
    if (!exchangeOwnedList(ar, m_aContacts, [&ar](CSeegContactzk& contact) { return contact.serializezk(ar); }))
        return 0;
    EXCHANGE_FIELDS(ar, m_nCurrentContact, m_dContactDist, m_nProbeRow, m_nProbeColor, m_nContactColor);
    return ar.IsStoring() || isMode(m_nProbeMode) ? 1 : 0;
}

} // namespace megset
