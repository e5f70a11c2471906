// The list of datasets of a document: which one is current, adding and deleting, and the dialog that they share.

#include "megset/core/CArrayMEDataSet.h"
#include "megset/core/CMEGDatazk.h"
#include "megset/platform/CException.h"
#include "megset/platform/CWnd.h"
#include "megset/ui/CDlgReSamplingMEGData.h"

#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CArrayMEDataSet_test {

namespace {

using ::testing::ElementsAre;

// A dataset that counts the ones that have ended.
class CountedDataset : public CMEGDatazk
{
public:
    explicit CountedDataset(int& ended) : m_ended(ended) {}
    ~CountedDataset() override { ++m_ended; }

private:
    int& m_ended;
};

class DatasetArray : public ::testing::Test
{
protected:
    CMEGDatazk* add()
    {
        auto* const data = new CountedDataset(ended);
        array.addNewData(data);
        return data;
    }

    int ended = 0;
    ScriptedHost host;
    CArrayMEDataSetzk array;
};

TEST_F(DatasetArray, BeginsEmptyWithAnIndexOfZero)
{
    EXPECT_EQ(array.getCurrentID(), 0);
    EXPECT_EQ(array.getTotalDataset(), 0);
}

TEST_F(DatasetArray, AddingGivesTheCountAndPassesOverNull)
{
    EXPECT_EQ(array.addNewData(nullptr), 0);
    auto* const first = new CMEGDatazk;
    EXPECT_EQ(array.addNewData(first), 1);
    EXPECT_EQ(array.addNewData(new CMEGDatazk), 2);
    EXPECT_EQ(array.addNewData(nullptr), 2);
    EXPECT_EQ(array.getSessionData(0), first);
    EXPECT_EQ(array.getCurrentID(), 0);
}

TEST_F(DatasetArray, OwnsItsDatasets)
{
    {
        CArrayMEDataSetzk inner;
        inner.addNewData(new CountedDataset(ended));
        inner.addNewData(new CountedDataset(ended));
    }
    EXPECT_EQ(ended, 2);
}

TEST_F(DatasetArray, CleaningEndsAllAndLeavesNoneCurrent)
{
    add();
    add();
    EXPECT_EQ(array.cleanData(), 1);
    EXPECT_EQ(ended, 2);
    EXPECT_EQ(array.getTotalDataset(), 0);
    EXPECT_EQ(array.getCurrentID(), -1);
    EXPECT_EQ(array.cleanData(), 1);
}

TEST_F(DatasetArray, MinusOneMeansTheCurrentDataset)
{
    add();
    CMEGDatazk* const second = add();
    ASSERT_EQ(array.setCurrentSession(1), 1);
    EXPECT_EQ(array.getSessionData(-1), second);
}

TEST_F(DatasetArray, AnEmptyArrayGivesNullForAnyIndex)
{
    for (const int index : {-1, 0, 5, -7})
        EXPECT_EQ(array.getSessionData(index), nullptr);
    array.cleanData();
    EXPECT_EQ(array.getSessionData(-1), nullptr);
}

TEST_F(DatasetArray, AnIndexOutOfRangeRaisesTheInvalidArgumentException)
{
    add();
    for (const int index : {1, -2, INT32_MAX, INT32_MIN})
        EXPECT_THROW(array.getSessionData(index), CException) << index;
}

TEST_F(DatasetArray, ACurrentIndexOfMinusOneRaisesItToo)
{
    array.cleanData();
    add();
    ASSERT_EQ(array.getCurrentID(), -1);
    EXPECT_THROW(array.getSessionData(-1), CException);
}

TEST_F(DatasetArray, MakingCurrentBringsTheIndexIntoRange)
{
    EXPECT_EQ(array.setCurrentSession(0), 0);
    for (int i = 0; i < 3; ++i)
        add();
    EXPECT_EQ(array.setCurrentSession(-5), 1);
    EXPECT_EQ(array.getCurrentID(), 0);
    EXPECT_EQ(array.setCurrentSession(99), 1);
    EXPECT_EQ(array.getCurrentID(), 2);
    EXPECT_EQ(array.setCurrentSession(1), 1);
    EXPECT_EQ(array.getCurrentID(), 1);
}

// ---- deleting

TEST_F(DatasetArray, DeletingClosesUpAndKeepsTheIndexWhereItIsInRange)
{
    add();
    CMEGDatazk* const second = add();
    CMEGDatazk* const third = add();
    array.setCurrentSession(1);
    EXPECT_EQ(array._deleteSessionData(0), 1);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(array.getTotalDataset(), 2);
    EXPECT_EQ(array.getSessionData(0), second);
    EXPECT_EQ(array.getCurrentID(), 1); // another dataset now
    EXPECT_EQ(array.getSessionData(-1), third);
}

TEST_F(DatasetArray, DeletingMinusOneDeletesTheCurrentOneAndTheNewLastBecomesCurrent)
{
    CMEGDatazk* const first = add();
    add();
    array.setCurrentSession(1);
    EXPECT_EQ(array._deleteSessionData(-1), 1);
    EXPECT_EQ(array.getCurrentID(), 0);
    EXPECT_EQ(array.getSessionData(-1), first);
}

TEST_F(DatasetArray, DeletingTheOnlyOneMakesTheIndexMinusOne)
{
    add();
    EXPECT_EQ(array._deleteSessionData(0), 1);
    EXPECT_EQ(array.getTotalDataset(), 0);
    EXPECT_EQ(array.getCurrentID(), -1);
    EXPECT_EQ(ended, 1);
}

TEST_F(DatasetArray, DeletingOutOfRangeOrFromNoneGivesZero)
{
    EXPECT_EQ(array._deleteSessionData(0), 0);
    EXPECT_EQ(array._deleteSessionData(-1), 0);
    add();
    for (const int index : {1, -2, INT32_MAX})
        EXPECT_EQ(array._deleteSessionData(index), 0);
    array.m_nCurrentDataset = -1;
    EXPECT_EQ(array._deleteSessionData(-1), 0);
    EXPECT_EQ(ended, 0);
}

// ---- the dialog

TEST_F(DatasetArray, TheDialogIsMadeOnceAndShowsTheGivenOrTheCurrentDataset)
{
    CMEGDatazk* const first = add();
    CMEGDatazk* const second = add();
    ASSERT_EQ(first->initMEGData(1, 1, 2), 1);
    ASSERT_EQ(second->initMEGData(1, 1, 2), 1);
    EXPECT_EQ(array.showDlgResampling2NewData(second, nullptr, nullptr, nullptr), 1);
    const CDlgReSamplingMEGData* const dialog = array.m_pDlgResampling.get();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->m_pDataset, second);
    EXPECT_EQ(array.showDlgResampling2NewData(nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(array.m_pDlgResampling.get(), dialog);
    EXPECT_EQ(dialog->m_pDataset, first);
}

TEST_F(DatasetArray, TheDialogIsToldOfTheCallbacksAndOfAParentIfOneIsGiven)
{
    CMEGDatazk* const data = add();
    ASSERT_EQ(data->initMEGData(1, 1, 2), 1);
    const auto createDocument = []() -> CDocument* { return nullptr; };
    const auto attach = [](CPtrArray*, CDocument*) { return 0; };
    CWnd parent;
    EXPECT_EQ(array.showDlgResampling2NewData(data, &parent, createDocument, attach), 1);
    const CDlgReSamplingMEGData& dialog = *array.m_pDlgResampling;
    EXPECT_EQ(dialog.m_createDocument, +createDocument);
    EXPECT_EQ(dialog.m_attachDatasets, +attach);
    EXPECT_EQ(dialog.m_pParent, &parent);
    EXPECT_TRUE(dialog.IsWindowVisible());
    EXPECT_EQ(array.showDlgResampling2NewData(data, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(dialog.m_createDocument, nullptr);
    EXPECT_EQ(dialog.m_pParent, &parent);
}

TEST_F(DatasetArray, TheDialogNeedsADatasetWithTrials)
{
    EXPECT_EQ(array.showDlgResampling2NewData(nullptr, nullptr, nullptr, nullptr), 0);
    host.expectNoMessages();
    add();
    EXPECT_EQ(array.showDlgResampling2NewData(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("There is no data!")));
    array.m_nCurrentDataset = 7;
    EXPECT_EQ(array.showDlgResampling2NewData(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(array.m_pDlgResampling, nullptr);
}

} // namespace

} // namespace megset::CArrayMEDataSet_test
