#include "megset/ui/CDlgSeegProbeSetup.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxMessageBox.h"

namespace megset {

CDlgSeegProbeSetup::CDlgSeegProbeSetup() : CDlgSeegProbeSetup(std::make_unique<CListSeegContactzk>()) {}

CDlgSeegProbeSetup::CDlgSeegProbeSetup(std::unique_ptr<CListSeegContactzk> list) : m_pList(std::move(list))
{
    CWnd::SetWindowText("SEEG Probe Setup");
    CWnd::ShowWindow(false);
}

std::string_view CDlgSeegProbeSetup::typeName(int mode)
{
    return mode >= 0 && mode < typeCount() ? g_aSeegProbeModel[static_cast<std::size_t>(mode)].name
                                           : std::string_view();
}

int CDlgSeegProbeSetup::typeCount()
{
    return static_cast<int>(g_aSeegProbeModel.size());
}

// ---- what the dialog acts on

CMDTrialzk* CDlgSeegProbeSetup::trial() const
{
    return m_pDataset != nullptr ? m_pDataset->getTrialzk(-1) : nullptr;
}

CSeegProbezk* CDlgSeegProbeSetup::probe() const
{
    const CMDTrialzk* current = trial();
    return current != nullptr ? current->getSeegProbe(-1) : nullptr;
}

CSeegContactzk* CDlgSeegProbeSetup::contact() const
{
    const CSeegProbezk* current = probe();
    return current != nullptr ? current->getContact(-1) : nullptr;
}

// ---- load and store

int CDlgSeegProbeSetup::load()
{
    m_pList->storeState();
    showTitle();
    showChannelLabel();
    if (m_pDataset == nullptr)
        return 0;
    refillContacts();
    if (const CSeegProbezk* current = probe())
        takeProbe(*current);
    showFields();
    return 1;
}

void CDlgSeegProbeSetup::showTitle()
{
    constexpr int shown = 10; // characters, from the end of a name
    const CMDTrialzk* currentTrial = trial();
    const CSeegProbezk* currentProbe = probe();
    const CString trialPart = currentTrial != nullptr ? currentTrial->m_strTrialName.Right(shown) + " " : "NoTrial ";
    const CString probePart =
        currentProbe != nullptr ? currentProbe->m_strProbeName.Right(shown) + " " : "No SeegProbe ";
    SetWindowText(trialPart + probePart);
}

void CDlgSeegProbeSetup::showChannelLabel()
{
    const CMDTrialzk* current = trial();
    const int channels = current != nullptr ? current->getTotalChannel() : 0;
    m_strChannelLabel =
        channels > 0 ? CString::formatted("ChnID(0->%d)", channels - 1) : CString("No Channel is available");
}

void CDlgSeegProbeSetup::takeProbe(const CSeegProbezk& from)
{
    m_dBase = from.m_dProbeBase;
    m_dBaseSize = from.m_dBaseSize;
    m_dTip = from.m_dProbeTip;
    m_dTipSize = from.m_dTipSize;
    m_dPointing = from.m_dPointing;
    m_dExtension = from.m_dExtension;
    m_nMode = from.m_nProbeMode;
    m_bBaseSet = from.m_bBaseSet;
    m_bTipSet = from.m_bTipSet;
    m_bVisible = from.m_bProbeVisible;
    m_nProbeSize2D = from.m_nProbeSize2D;
    m_bShowContacts = from.m_bShowContacts;
    m_nContactSize2D = from.m_nContactSize2D;
    m_dContactSize3D = from.m_dContactSize3D;
    m_nPenSize = from.m_nPenSize;
    m_strName = from.m_strProbeName;
    takeContact(from.getContact(-1));
}

void CDlgSeegProbeSetup::takeContact(const CSeegContactzk* from)
{
    if (from == nullptr)
        return;
    m_strContactName = from->m_strContactName;
    if (from->m_nContactChnlID >= 0)
        m_nChannelID = from->m_nContactChnlID;
}

void CDlgSeegProbeSetup::giveProbe(CSeegProbezk& to) const
{
    to.m_strProbeName = m_strName;
    to.m_dProbeBase = m_dBase;
    to.m_dBaseSize = m_dBaseSize;
    to.m_dProbeTip = m_dTip;
    to.m_dTipSize = m_dTipSize;
    to.m_dPointing = m_dPointing;
    to.m_dExtension = m_dExtension;
    to.m_nProbeSize2D = m_nProbeSize2D;
    to.m_nContactSize2D = m_nContactSize2D;
    to.m_dContactSize3D = m_dContactSize3D;
    to.m_nPenSize = m_nPenSize;
    if (CSeegContactzk* current = to.getContact(-1)) {
        current->m_strContactName = m_strContactName;
        if (m_nChannelID >= 0)
            current->m_nContactChnlID = m_nChannelID;
    }
}

int CDlgSeegProbeSetup::store()
{
    readFields();
    CSeegProbezk* current = probe();
    if (current == nullptr)
        return 0;
    giveProbe(*current);
    current->computeExtend();
    m_dPointing = current->m_dPointing;
    showFields();
    return 1;
}

int CDlgSeegProbeSetup::apply()
{
    const int done = store();
    refreshManager();
    return done;
}

int CDlgSeegProbeSetup::ok()
{
    const int done = apply();
    ShowWindow(false);
    return done;
}

// ---- base and tip

int CDlgSeegProbeSetup::getBaseFromSelect()
{
    readFields();
    CMEGDatazk::getMsiSelect3DPts2Me(m_dBase[0], m_dBase[1], m_dBase[2]);
    m_bBaseSet = 1;
    if (CSeegProbezk* current = probe())
        current->m_bBaseSet = 1;
    showFields();
    return store();
}

int CDlgSeegProbeSetup::getTipFromSelect()
{
    readFields();
    CMEGDatazk::getMsiSelect3DPts2Me(m_dTip[0], m_dTip[1], m_dTip[2]);
    m_bTipSet = 1;
    if (CSeegProbezk* current = probe())
        current->m_bTipSet = 1;
    showFields();
    return store();
}

// ---- contacts

int CDlgSeegProbeSetup::refillContacts()
{
    return m_pDataset != nullptr ? m_pList->refill(*m_pDataset) : 0;
}

int CDlgSeegProbeSetup::calculate()
{
    readFields();
    CSeegProbezk* current = probe();
    if (current == nullptr)
        return 0;
    const int done = current->computeContactPos();
    refillContacts();
    return done;
}

int CDlgSeegProbeSetup::msiToContact()
{
    CSeegContactzk* current = contact();
    if (current == nullptr)
        return 0;
    CMEGDatazk::getMsiSelect3DPts2Me(current->m_dContactX, current->m_dContactY, current->m_dContactZ);
    refillContacts();
    return 1;
}

int CDlgSeegProbeSetup::contactToChannel()
{
    readFields();
    CMDTrialzk* current = trial();
    if (current == nullptr) {
        AfxMessageBox("No channel data!?", MB_OK);
        return 0;
    }
    if (!current->setSeegContact2Channel(contact(), m_nChannelID, m_strContactName))
        return 0;
    refillContacts();
    return 1;
}

int CDlgSeegProbeSetup::setUserSeeg()
{
    readFields();
    CSeegProbezk* current = probe();
    if (current == nullptr)
        return 0;
    const int done = current->setUserContact(m_nContactNumber, m_dContactDistance);
    redrawParent();
    load();
    return done;
}

int CDlgSeegProbeSetup::chooseType(int mode)
{
    if (mode < 0 || mode >= typeCount())
        return 0;
    m_nMode = mode;
    CSeegProbezk* current = probe();
    if (current == nullptr)
        return 0;
    const int done = current->setProbeMode(mode);
    current->computeContactPos();
    refillContacts();
    return done;
}

int CDlgSeegProbeSetup::chooseContact(int row)
{
    if (m_pDataset == nullptr || !m_pList->choose(*m_pDataset, row))
        return 0;
    takeContact(contact());
    showFields();
    return 1;
}

// ---- looks

int CDlgSeegProbeSetup::contactColor()
{
    m_pList->storeState();
    CSeegProbezk* current = probe();
    const int done = current != nullptr ? current->setupContactColor() : 0;
    redrawParent();
    return done;
}

int CDlgSeegProbeSetup::probeColor()
{
    m_pList->storeState();
    CSeegProbezk* current = probe();
    const int done = current != nullptr ? current->setupProbeColor() : 0;
    redrawParent();
    return done;
}

int CDlgSeegProbeSetup::changeVisible(bool visible)
{
    m_bVisible = visible ? 1 : 0;
    CSeegProbezk* current = probe();
    if (current == nullptr)
        return 0;
    current->m_bProbeVisible = m_bVisible;
    redrawParent();
    return 1;
}

int CDlgSeegProbeSetup::changeShowContacts(bool show)
{
    m_bShowContacts = show ? 1 : 0;
    CSeegProbezk* current = probe();
    if (current == nullptr)
        return 0;
    current->m_bShowContacts = m_bShowContacts;
    redrawParent();
    return 1;
}

void CDlgSeegProbeSetup::redrawParent()
{
    if (m_pParent != nullptr)
        m_pParent->Invalidate(true);
}

} // namespace megset
