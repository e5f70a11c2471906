#include "megset/ui/CDlgSetupROIDewar.h"

#include "megset/core/CMEGDatazk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CDlgSetupROIDewar_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Row = CDlgSetupROIDewar::Row;

// A window whose controls hold what is typed, until the fields are read.
class RoiWindow : public CDlgSetupROIDewar
{
public:
    explicit RoiWindow(CMEGDatazk& data) { m_pDataset = &data; }

    int shown = 0;
    bool types = false;
    Row typed;

protected:
    void readFields() override
    {
        if (types)
            m_aRow[0] = typed;
    }
    void showFields() override { ++shown; }
};

class RoiDialog : public ::testing::Test
{
protected:
    void SetUp() override
    {
        data.setROIDewar(-1.0, 2.0, -3.0, 4.0, -5.0, 6.0);
        dialog.m_pParent = &parent;
    }
    std::vector<double> limits() const
    {
        std::vector<double> roi(6);
        data.getROIDewar(roi[0], roi[1], roi[2], roi[3], roi[4], roi[5]);
        return roi;
    }

    const ScriptedHost host;
    CMEGDatazk data;
    CWnd parent;
    RoiWindow dialog{data};
};

TEST_F(RoiDialog, HasItsTexts)
{
    EXPECT_EQ(dialog.GetWindowText(), "Setup Region of Interest in Sensor  Space");
    EXPECT_THAT(CDlgSetupROIDewar::columns, ElementsAre("Minimim", "Maximum", "Dimension"));
    EXPECT_THAT(CDlgSetupROIDewar::rows, ElementsAre("X(Sagittal)", "Y(Axial)", "Z(Coronal)"));
    EXPECT_EQ(CDlgSetupROIDewar::getLabel, "Get ROI");
    EXPECT_EQ(CDlgSetupROIDewar::setLabel, "Set ROI");
    EXPECT_EQ(CDlgSetupROIDewar::okLabel, "OK");
    EXPECT_EQ(CDlgSetupROIDewar::cancelLabel, "Cancel");
    EXPECT_FALSE(dialog.IsWindowVisible());
}

TEST_F(RoiDialog, GetLoadsTheNineValuesAndRepaintsTheParent)
{
    data.m_dRoiYDim = 77.0; // as a reset leaves it
    EXPECT_EQ(dialog.getRoi(), 1);
    EXPECT_THAT(dialog.m_aRow, ElementsAre(Row{-1.0, 2.0, 3.0}, Row{-3.0, 4.0, 77.0}, Row{-5.0, 6.0, 11.0}));
    EXPECT_EQ(dialog.shown, 1);
    EXPECT_THAT(host.invalidated(), ElementsAre(&parent));
}

TEST_F(RoiDialog, SetStoresTheNineValuesAndRepaintsTheParent)
{
    dialog.m_aRow = {Row{1.0, 2.0, 3.0}, Row{4.0, 5.0, 6.0}, Row{7.0, 8.0, 9.0}};
    EXPECT_EQ(dialog.setRoi(), 1);
    EXPECT_THAT(limits(), ElementsAre(1.0, 2.0, 4.0, 5.0, 7.0, 8.0));
    EXPECT_EQ(data.m_dRoiXDim, 3.0);
    EXPECT_EQ(data.m_dRoiYDim, 6.0);
    EXPECT_EQ(data.m_dRoiZDim, 9.0);
    EXPECT_THAT(host.calls(), ElementsAre("invalidate erase"));
}

TEST_F(RoiDialog, WhatWasTypedIsReadBeforeItIsStored)
{
    dialog.load();
    dialog.typed = {10.0, 30.0, 20.0};
    dialog.types = true;
    EXPECT_EQ(dialog.setRoi(), 1);
    EXPECT_THAT(limits(), ElementsAre(10.0, 30.0, -3.0, 4.0, -5.0, 6.0));
}

TEST_F(RoiDialog, AChangedLimitSetsTheDimensionOfItsRow)
{
    dialog.load();
    EXPECT_EQ(dialog.changeMinimum(0, -11.0), 1);
    EXPECT_EQ(dialog.m_aRow[0], (Row{-11.0, 2.0, 13.0}));
    EXPECT_EQ(dialog.changeMaximum(2, -10.0), 1);
    EXPECT_EQ(dialog.m_aRow[2], (Row{-5.0, -10.0, -5.0})) << "the order of the limits is not checked";
    EXPECT_EQ(dialog.m_aRow[1], (Row{-3.0, 4.0, 7.0}));
    EXPECT_EQ(dialog.shown, 3);
    EXPECT_THAT(limits(), ElementsAre(-1.0, 2.0, -3.0, 4.0, -5.0, 6.0)) << "the dataset is left alone";
}

TEST_F(RoiDialog, HasThreeRows)
{
    for (const int row : {-1, 3}) {
        EXPECT_EQ(dialog.changeMinimum(row, 1.0), 0);
        EXPECT_EQ(dialog.changeMaximum(row, 1.0), 0);
    }
}

TEST_F(RoiDialog, OkStoresAndCloses)
{
    dialog.load();
    dialog.ShowWindow(true);
    dialog.changeMaximum(1, 40.0);
    EXPECT_EQ(dialog.ok(), 1);
    EXPECT_FALSE(dialog.IsWindowVisible());
    EXPECT_THAT(limits(), ElementsAre(-1.0, 2.0, -3.0, 40.0, -5.0, 6.0));
    EXPECT_EQ(data.m_dRoiYDim, 43.0);
}

TEST_F(RoiDialog, CancelClosesAndKeepsTheDatasetsValues)
{
    dialog.load();
    dialog.ShowWindow(true);
    dialog.changeMaximum(1, 40.0);
    dialog.cancel();
    EXPECT_FALSE(dialog.IsWindowVisible());
    EXPECT_THAT(limits(), ElementsAre(-1.0, 2.0, -3.0, 4.0, -5.0, 6.0));
    EXPECT_EQ(data.m_dRoiYDim, 7.0);
}

TEST_F(RoiDialog, WithoutDatasetOrParentDoesNothing)
{
    CDlgSetupROIDewar alone;
    EXPECT_EQ(alone.load(), 0);
    EXPECT_EQ(alone.getRoi(), 0);
    EXPECT_EQ(alone.setRoi(), 0);
    EXPECT_EQ(alone.ok(), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(RoiDialog, OfADatasetIsMadeOnceAndLoaded)
{
    ASSERT_EQ(data.initMEGData(1, 1, 1), 1);
    EXPECT_EQ(data.showDlgSetupROIDewar(&parent), 1);
    CDlgSetupROIDewar* const made = data.m_pDlgRoiDewar.get();
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->IsWindowVisible());
    EXPECT_EQ(made->m_pDataset, &data);
    EXPECT_EQ(made->m_aRow[0], (Row{-1.0, 2.0, 3.0}));
    made->cancel();
    data.resetROIDewar();
    EXPECT_EQ(data.showDlgSetupROIDewar(nullptr), 1);
    EXPECT_EQ(data.m_pDlgRoiDewar.get(), made);
    EXPECT_EQ(made->m_pParent, &parent) << "null keeps the parent";
    EXPECT_EQ(made->m_aRow[0], (Row{-90.0, 90.0, 3.0}));
    EXPECT_TRUE(made->IsWindowVisible());
}

TEST_F(RoiDialog, OfADatasetWithoutTrialsIsNotShown)
{
    EXPECT_EQ(data.showDlgSetupROIDewar(&parent), 0);
    EXPECT_THAT(host.messages(), ElementsAre("There is no data!"));
    EXPECT_EQ(data.m_pDlgRoiDewar, nullptr);
}

TEST_F(RoiDialog, WithoutMemoryIsNotShown)
{
    ASSERT_EQ(data.initMEGData(1, 1, 1), 1);
    const std::int64_t failures = forEachAllocationFailure([this] {
        data.m_pDlgRoiDewar.reset();
        const int shown = data.showDlgSetupROIDewar(&parent);
        EXPECT_EQ(shown, data.m_pDlgRoiDewar != nullptr ? 1 : 0);
    });
    EXPECT_EQ(failures, 1);
}

} // namespace
} // namespace megset::CDlgSetupROIDewar_test
