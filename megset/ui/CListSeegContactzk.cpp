#include "megset/ui/CListSeegContactzk.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxMessageBox.h"

namespace megset {
namespace {

CString millimetres(double value)
{
    return CString::formatted("%.4f", value);
}

CListSeegContactzk::Row rowOf(const CSeegContactzk& contact, int index)
{
    return {CString::formatted("%d(%d)", index, index + 1),
            contact.m_strContactName,
            millimetres(contact.m_dContactX),
            millimetres(contact.m_dContactY),
            millimetres(contact.m_dContactZ),
            millimetres(contact.m_dContactSize),
            CString::formatted("%d", contact.m_nContactChnlID),
            contact.m_strContactChnlName,
            "None"};
}

} // namespace

int CListSeegContactzk::refill(CMEGDatazk& data)
{
    if (!removeAllRows()) {
        AfxMessageBox("Remove list item error", MB_OK);
        return 0;
    }
    CMDTrialzk* trial = data.getTrialzk(-1);
    const CSeegProbezk* probe = trial != nullptr ? trial->getSeegProbe(-1) : nullptr;
    if (probe == nullptr)
        return 0;
    CMEGDatazk::m_nSelectSeegProbeID = trial->getSeegProbeCrntID();
    int row = 0;
    for (int i = 0; i < probe->getTotalContacts(); ++i) {
        CSeegContactzk* contact = probe->getContact(i);
        if (contact == nullptr)
            continue;
        contact->m_nContactRow = row++;
        addRow(rowOf(*contact, i));
    }
    return 1;
}

int CListSeegContactzk::choose(CMEGDatazk& data, int row)
{
    const CMDTrialzk* trial = data.getTrialzk(-1);
    CSeegProbezk* probe = trial != nullptr ? trial->getSeegProbe(-1) : nullptr;
    if (probe == nullptr)
        return 0;
    for (int i = 0; i < probe->getTotalContacts(); ++i) {
        const CSeegContactzk* contact = probe->getContact(i);
        if (contact == nullptr || contact->m_nContactRow != row)
            continue;
        probe->m_nCurrentContact = i;
        CMEGDatazk::m_nSelectSeegProbeContactID = i;
        CMEGDatazk::setSeegProbContact2Me(contact->m_dContactX, contact->m_dContactY, contact->m_dContactZ);
        return 1;
    }
    return 0;
}

} // namespace megset
