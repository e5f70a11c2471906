#include "megset/geometry/CMDTrial6SeegIeeg.h"

#include "megset/core/CMDChannelzk.h"
#include "megset/platform/AfxMessageBox.h"

#include <algorithm>
#include <array>

namespace megset {

int CMDTrial6SeegIeeg::addSeegProbe(CSeegProbezk* probe)
{
    if (probe == nullptr)
        return 0;
    m_nCurrentSeegProbe = m_aSeegProbe.Add(probe);
    return m_nCurrentSeegProbe;
}

int CMDTrial6SeegIeeg::deleteSeegProbe(int index)
{
    if (m_aSeegProbe.IsEmpty())
        return 0;
    const int wanted = index == -1 ? m_nCurrentSeegProbe : index;
    const int at = std::clamp(wanted, 0, m_aSeegProbe.GetSize() - 1);
    if (m_aSeegProbe.GetAt(at) != nullptr)
        m_aSeegProbe.RemoveAt(at);
    // Below 0 it becomes 0, and then with none left -1.
    m_nCurrentSeegProbe = std::min(std::max(m_nCurrentSeegProbe, 0), m_aSeegProbe.GetSize() - 1);
    return m_aSeegProbe.GetSize();
}

int CMDTrial6SeegIeeg::cleanSeegProbe()
{
    const int count = m_aSeegProbe.GetSize();
    m_aSeegProbe.RemoveAll();
    m_nCurrentSeegProbe = count - 1; // no longer there: it is meant so
    return count;
}

CSeegProbezk* CMDTrial6SeegIeeg::getSeegProbe(int index) const
{
    if (m_aSeegProbe.IsEmpty())
        return nullptr;
    const int wanted = index == -1 ? m_nCurrentSeegProbe : index;
    return m_aSeegProbe.GetAt(std::clamp(wanted, 0, m_aSeegProbe.GetSize() - 1));
}

int CMDTrial6SeegIeeg::getSeegProbeCrntID()
{
    if (m_aSeegProbe.IsEmpty())
        return 0;
    m_nCurrentSeegProbe = std::clamp(m_nCurrentSeegProbe, 0, m_aSeegProbe.GetSize() - 1);
    return m_nCurrentSeegProbe;
}

int CMDTrial6SeegIeeg::setSeegContact2Channel(CSeegContactzk* contact, int channel, const CString& contactName)
{
    const int count = getTotalChannel();
    if (channel < 0 || channel >= count) {
        AfxMessageBox(CString::formatted("Channel ID must be in the range of 0-%d!", count - 1), MB_OK);
        return 0;
    }
    CMDChannelzk* target = m_ppChannel[channel];
    if (target == nullptr)
        return 0;
    const bool hasElectrode = target->getEegElectrode(0) != nullptr;
    if (!hasElectrode && AfxMessageBox("Make a new electrode?!", MB_YESNO) == IDNO)
        return 0;
    constexpr int electrodeGeometry = 2;
    constexpr int seegType = 350;
    target->_initGeomHw(electrodeGeometry); // ends an electrode that is there, too
    target->setChannelType(seegType);
    CEEGelectrodezk* electrode = target->getEegElectrode(0);
    if (electrode == nullptr || contact == nullptr)
        return 0;
    const std::array<double, 3> position{contact->m_dContactX, contact->m_dContactY, contact->m_dContactZ};
    electrode->setPosDiir(position.data(), nullptr);
    contact->m_strContactName = contactName;
    contact->m_nContactChnlID = channel;
    contact->m_strContactChnlName = target->m_strChannelName;
    return 1;
}

} // namespace megset
