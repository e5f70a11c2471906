#include "megset/core/CArrayMEDataSet.h"

#include "megset/core/CMEGDatazk.h"
#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/archiveLists.h"
#include "megset/ui/CDlgReSamplingMEGData.h"

#include <algorithm>
#include <utility>

namespace megset {
namespace {

// One text for both cases: it is meant so.
constexpr const char* notThisFile = "The opened file is not array for MEG dataset file or corrupted!";

// Gives a member another value for the length of a scope, which an exception may end.
template <class Value>
class Scope
{
public:
    Scope(Value& member, Value during, Value after) : m_member(member), m_after(after) { m_member = during; }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope() { m_member = m_after; }

private:
    Value& m_member;
    Value m_after;
};

} // namespace

CArrayMEDataSet::CArrayMEDataSet() = default;
CArrayMEDataSet::~CArrayMEDataSet() = default;

int CArrayMEDataSet::addNewData(CMEGDatazk* data)
{
    if (data != nullptr)
        m_aDataset.Add(data);
    return m_aDataset.GetSize();
}

int CArrayMEDataSet::cleanData()
{
    m_aDataset.RemoveAll();
    m_nCurrentDataset = -1;
    return 1;
}

CMEGDatazk* CArrayMEDataSet::getSessionData(int index) const
{
    if (m_aDataset.IsEmpty())
        return nullptr;
    return m_aDataset.GetAt(index == -1 ? m_nCurrentDataset : index);
}

int CArrayMEDataSet::setCurrentSession(int index)
{
    if (m_aDataset.IsEmpty())
        return 0;
    m_nCurrentDataset = std::clamp(index, 0, m_aDataset.GetSize() - 1);
    return 1;
}

int CArrayMEDataSet::_deleteSessionData(int index)
{
    const int place = index == -1 ? m_nCurrentDataset : index;
    if (place < 0 || place >= m_aDataset.GetSize())
        return 0;
    m_aDataset.RemoveAt(place);
    m_nCurrentDataset = std::min(m_nCurrentDataset, m_aDataset.GetSize() - 1);
    return 1;
}

// ---- the file

const FormatVersion<CArrayMEDataSet09File> CArrayMEDataSet09File::s_versions[1] = {
    {20160909, &CArrayMEDataSet09File::serialize20160909},
};

int CArrayMEDataSet09File::serialize(CArchive& ar, CDocument* doc)
{
    return serializeFile(ar, doc, true);
}

int CArrayMEDataSet09File::serializeWithoutTrials(CArchive& ar)
{
    return serializeFile(ar, nullptr, false);
}

int CArrayMEDataSet09File::serializeFile(CArchive& ar, CDocument* doc, bool withTrials)
{
    const Scope<CDocument*> document(m_pFileDocument, doc, nullptr);
    const Scope<bool> trials(m_bWithTrials, withTrials, true);
    return serializeFormat(ar, *this, {"ARRAYMEGDATASETZK", notThisFile, notThisFile}, s_versions);
}

int CArrayMEDataSet09File::serialize20160909(CArchive& ar)
{
    return _01serializeMEGData(ar);
}

// Null entries are written, and dropped when read. The index read is kept as it stands.
int CArrayMEDataSet09File::_01serializeMEGData(CArchive& ar)
{
    const ArchiveSection section(ar, "_01serializeMEGData");
    EXCHANGE_FIELDS(ar, m_nCurrentDataset);
    const int count = ar.exchangeInt(m_aDataset.GetSize(), "m_aDataset");
    for (int i = 0; i < count; ++i) {
        CMEGDatazk* data = ar.IsStoring() ? m_aDataset.GetAt(i) : nullptr;
        if (!exchangeGuard(ar, data != nullptr))
            continue;
        if (ar.IsStoring()) {
            exchangeDataset(ar, *data);
            continue;
        }
        auto loaded = tryNew<CMEGDatazk>();
        if (loaded == nullptr) {
            AfxMessageBox("Not enough memory!", MB_OK);
            return 0;
        }
        exchangeDataset(ar, *loaded);
        m_aDataset.Add(std::move(loaded));
    }
    return 1;
}

// What the dataset answers is not looked at.
void CArrayMEDataSet09File::exchangeDataset(CArchive& ar, CMEGDatazk& data) const
{
    const Scope<int> inArray(data.m_bInArray, 1, 0);
    if (!m_bWithTrials) {
        data.serializeWithoutTrials(ar);
        return;
    }
    data.setDocument(m_pFileDocument, false);
    data.serializezk(ar);
}

// ---- re-sampling

CArrayMEDataSetzk::CArrayMEDataSetzk() = default;
CArrayMEDataSetzk::~CArrayMEDataSetzk()
{
    if (m_pDlgResampling != nullptr)
        m_pDlgResampling->endWorker();
}

int CArrayMEDataSetzk::showDlgResampling2NewData(CMEGDatazk* data, CWnd* parent, CDocument* (*createDoc)(),
                                                 int (*attachDatasets)(CPtrArray*, CDocument*))
{
    const bool hasCurrent = m_nCurrentDataset >= 0 && m_nCurrentDataset < m_aDataset.GetSize();
    CMEGDatazk* const shown = data == nullptr && hasCurrent ? getSessionData(-1) : data;
    return CDlgReSamplingMEGData::show(m_pDlgResampling, shown, parent, createDoc, attachDatasets);
}

} // namespace megset
