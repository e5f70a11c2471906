#include "megset/ui/CDlgSetupROIDewar.h"

#include "megset/core/CMEGDatazk.h"

namespace megset {
namespace {

// Where a dataset keeps the rows.
struct RoiFields
{
    double CMEGData::*minimum;
    double CMEGData::*maximum;
    double CMEGData::*dimension;
};

constexpr std::array<RoiFields, 3> roiFields{{
    {&CMEGData::m_dRoiXMin, &CMEGData::m_dRoiXMax, &CMEGData::m_dRoiXDim},
    {&CMEGData::m_dRoiYMin, &CMEGData::m_dRoiYMax, &CMEGData::m_dRoiYDim},
    {&CMEGData::m_dRoiZMin, &CMEGData::m_dRoiZMax, &CMEGData::m_dRoiZDim},
}};

bool isRow(int row)
{
    return row >= 0 && row < static_cast<int>(roiFields.size());
}

} // namespace

CDlgSetupROIDewar::CDlgSetupROIDewar()
{
    CWnd::SetWindowText("Setup Region of Interest in Sensor  Space");
    CWnd::ShowWindow(false);
}

int CDlgSetupROIDewar::load()
{
    if (m_pDataset == nullptr)
        return 0;
    for (std::size_t i = 0; i < m_aRow.size(); ++i) {
        const RoiFields& from = roiFields[i];
        m_aRow[i] = {m_pDataset->*from.minimum, m_pDataset->*from.maximum, m_pDataset->*from.dimension};
    }
    showFields();
    return 1;
}

int CDlgSetupROIDewar::store()
{
    if (m_pDataset == nullptr)
        return 0;
    readFields();
    for (std::size_t i = 0; i < m_aRow.size(); ++i) {
        const RoiFields& to = roiFields[i];
        m_pDataset->*to.minimum = m_aRow[i].minimum;
        m_pDataset->*to.maximum = m_aRow[i].maximum;
        m_pDataset->*to.dimension = m_aRow[i].dimension;
    }
    return 1;
}

int CDlgSetupROIDewar::changeMinimum(int row, double value)
{
    if (!isRow(row))
        return 0;
    m_aRow[static_cast<std::size_t>(row)].minimum = value;
    return showDimension(row);
}

int CDlgSetupROIDewar::changeMaximum(int row, double value)
{
    if (!isRow(row))
        return 0;
    m_aRow[static_cast<std::size_t>(row)].maximum = value;
    return showDimension(row);
}

int CDlgSetupROIDewar::showDimension(int row)
{
    Row& changed = m_aRow[static_cast<std::size_t>(row)];
    changed.dimension = changed.maximum - changed.minimum;
    showFields();
    return 1;
}

int CDlgSetupROIDewar::getRoi()
{
    const int done = load();
    redrawParent();
    return done;
}

int CDlgSetupROIDewar::setRoi()
{
    const int done = store();
    redrawParent();
    return done;
}

int CDlgSetupROIDewar::ok()
{
    const int done = store();
    ShowWindow(false);
    return done;
}

void CDlgSetupROIDewar::cancel()
{
    ShowWindow(false);
}

void CDlgSetupROIDewar::redrawParent()
{
    if (m_pParent != nullptr)
        m_pParent->Invalidate(true);
}

} // namespace megset
