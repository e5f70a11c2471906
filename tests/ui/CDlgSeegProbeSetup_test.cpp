// The dialog of a SEEG probe: what it shows, and what goes to the probe.
#include "tests/ui/seegProbeDialog.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/FailingAllocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CDlgSeegProbeSetup_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Point = CDlgSeegProbeSetup::Point;

TEST_F(SeegProbeDialog, StartsWithItsDefaults)
{
    const CDlgSeegProbeSetup fresh;
    EXPECT_EQ(fresh.GetWindowText(), "SEEG Probe Setup");
    EXPECT_FALSE(fresh.IsWindowVisible());
    EXPECT_EQ(fresh.m_dBase, (Point{30.0, 30.0, 30.0}));
    EXPECT_EQ(fresh.m_dBaseSize, 9.0);
    EXPECT_EQ(fresh.m_dTip, (Point{0.0, 0.0, 0.0}));
    EXPECT_EQ(fresh.m_dTipSize, 6.0);
    EXPECT_EQ(fresh.m_dPointing, (Point{0.0, 0.0, 0.0}));
    EXPECT_EQ(fresh.m_dExtension, 10.0);
    EXPECT_EQ(fresh.m_nMode, 1);
    EXPECT_EQ(fresh.m_bVisible, 0);
    EXPECT_EQ(fresh.m_nProbeSize2D, 0);
    EXPECT_EQ(fresh.m_nContactSize2D, 3);
    EXPECT_EQ(fresh.m_dContactSize3D, 8.0);
    EXPECT_EQ(fresh.m_nPenSize, 2);
    EXPECT_EQ(fresh.m_nContactNumber, 2);
    EXPECT_EQ(fresh.m_dContactDistance, 3.5);
    EXPECT_EQ(fresh.m_nChannelID, 0);
    EXPECT_EQ(fresh.m_strContactName, "");
}

TEST_F(SeegProbeDialog, HasItsTexts)
{
    EXPECT_EQ(CDlgSeegProbeSetup::baseLabel, "Probe Base(Out)");
    EXPECT_EQ(CDlgSeegProbeSetup::tipLabel, "SEEG Tip ( In )");
    EXPECT_EQ(CDlgSeegProbeSetup::size3dLabel, "Size 3D");
    EXPECT_EQ(CDlgSeegProbeSetup::size2dLabel, "Size 2D");
    EXPECT_EQ(CDlgSeegProbeSetup::pointingLabel, "Pointing");
    EXPECT_EQ(CDlgSeegProbeSetup::extensionLabel, "Extension");
    EXPECT_EQ(CDlgSeegProbeSetup::percentLabel, "(%)");
    EXPECT_EQ(CDlgSeegProbeSetup::typeLabel, "SEEG Type");
    EXPECT_EQ(CDlgSeegProbeSetup::visibleLabel, "Visible");
    EXPECT_EQ(CDlgSeegProbeSetup::showContactsLabel, "Show Contacts");
    EXPECT_EQ(CDlgSeegProbeSetup::penSizeLabel, "Pen Size");
    EXPECT_EQ(CDlgSeegProbeSetup::nameLabel, "SEEG Name");
    EXPECT_EQ(CDlgSeegProbeSetup::contactNumberLabel, "Contact Num");
    EXPECT_EQ(CDlgSeegProbeSetup::contactDistanceLabel, "Contact Dist");
    EXPECT_EQ(CDlgSeegProbeSetup::channelIdLabel, "Chnl ID");
    EXPECT_EQ(CDlgSeegProbeSetup::contactNameLabel, "Cntct Name");
    EXPECT_EQ(CDlgSeegProbeSetup::updateLabel, "Update");
    EXPECT_EQ(CDlgSeegProbeSetup::applyLabel, "Apply");
    EXPECT_EQ(CDlgSeegProbeSetup::okLabel, "OK");
    EXPECT_EQ(CDlgSeegProbeSetup::getSelectLabel, "Get Select (MSI)");
    EXPECT_EQ(CDlgSeegProbeSetup::calculateLabel, "Calculate...");
    EXPECT_EQ(CDlgSeegProbeSetup::msiToContactLabel, "MSI to Contact");
    EXPECT_EQ(CDlgSeegProbeSetup::contactToChannelLabel, "Contact To Channel");
    EXPECT_EQ(CDlgSeegProbeSetup::contactColorLabel, "Contact Color");
    EXPECT_EQ(CDlgSeegProbeSetup::probeColorLabel, "Probe Color");
    EXPECT_EQ(CDlgSeegProbeSetup::setUserSeegLabel, "Set User SEEG");
    std::vector<std::string_view> types;
    for (int i = 0; i < CDlgSeegProbeSetup::typeCount(); ++i)
        types.push_back(CDlgSeegProbeSetup::typeName(i));
    EXPECT_THAT(types, ElementsAre("User Defined 2P+N", "HkhsSDE-8P0.8D3.5B26.5", "HkhsSDE-10P0.8D3.5B33.5",
                                   "HkhsSDE-12P0.8D3.5B40.5", "HkhsSDE-16P0.8D3.5B54.5"));
    EXPECT_EQ(CDlgSeegProbeSetup::typeName(-1), "");
    EXPECT_EQ(CDlgSeegProbeSetup::typeName(5), "");
}

TEST_F(SeegProbeDialog, LoadsAllFieldsFromTheCurrentProbe)
{
    CSeegProbezk& from = probe();
    from.m_dProbeTip = {1.0, 2.0, 3.0};
    from.m_dPointing = {4.0, 5.0, 6.0};
    from.m_dBaseSize = 7.0;
    from.m_dTipSize = 8.0;
    from.m_dExtension = 9.0;
    from.m_bBaseSet = from.m_bTipSet = from.m_bProbeVisible = 1;
    from.m_nProbeSize2D = 10;
    from.m_nContactSize2D = 11;
    from.m_dContactSize3D = 12.0;
    from.m_nPenSize = 13;
    contact(0).m_nContactChnlID = 2;
    EXPECT_EQ(dialog.load(), 1);
    EXPECT_EQ(dialog.m_dBase, (Point{0.0, 0.0, 100.0}));
    EXPECT_EQ(dialog.m_dTip, (Point{1.0, 2.0, 3.0}));
    EXPECT_EQ(dialog.m_dPointing, (Point{4.0, 5.0, 6.0}));
    EXPECT_EQ(dialog.m_dBaseSize, 7.0);
    EXPECT_EQ(dialog.m_dTipSize, 8.0);
    EXPECT_EQ(dialog.m_dExtension, 9.0);
    EXPECT_EQ(dialog.m_nMode, 0);
    EXPECT_EQ(dialog.m_bBaseSet, 1);
    EXPECT_EQ(dialog.m_bTipSet, 1);
    EXPECT_EQ(dialog.m_bVisible, 1);
    EXPECT_EQ(dialog.m_bShowContacts, 1);
    EXPECT_EQ(dialog.m_nProbeSize2D, 10);
    EXPECT_EQ(dialog.m_nContactSize2D, 11);
    EXPECT_EQ(dialog.m_dContactSize3D, 12.0);
    EXPECT_EQ(dialog.m_nPenSize, 13);
    EXPECT_EQ(dialog.m_strName, "B");
    EXPECT_EQ(dialog.m_strContactName, "B1");
    EXPECT_EQ(dialog.m_nChannelID, 2);
    EXPECT_EQ(dialog.m_strChannelLabel, "ChnID(0->2)");
    EXPECT_THAT(dialog.calls(), ElementsAre("store list", "refill", "show"));
    EXPECT_EQ(dialog.list().m_aRow.size(), 3U);
}

TEST_F(SeegProbeDialog, AnUnassignedContactLeavesTheChannelFieldAsItIs)
{
    dialog.m_nChannelID = 1;
    dialog.load();
    EXPECT_EQ(dialog.m_nChannelID, 1);
    EXPECT_EQ(dialog.m_strContactName, "B1");
}

TEST_F(SeegProbeDialog, AProbeNameOfTwelveCharactersShowsItsLastTenInTheTitle)
{
    probe().m_strProbeName = "abcdefghijkl";
    trial().m_strTrialName = "123456789012";
    dialog.load();
    EXPECT_EQ(dialog.GetWindowText(), "3456789012 cdefghijkl ");
    EXPECT_EQ(dialog.m_strName, "abcdefghijkl");
    probe().m_strProbeName = "B";
    trial().m_strTrialName = "T";
    dialog.load();
    EXPECT_EQ(dialog.GetWindowText(), "T B ");
}

TEST_F(SeegProbeDialog, WithoutAProbeItSaysSoAndKeepsItsFields)
{
    trial().cleanSeegProbe();
    dialog.m_dBaseSize = 77.0;
    EXPECT_EQ(dialog.load(), 1);
    EXPECT_EQ(dialog.GetWindowText(), "Trial1 No SeegProbe ");
    EXPECT_EQ(dialog.m_dBaseSize, 77.0);
    EXPECT_THAT(dialog.list().m_aRow, IsEmpty());
}

TEST_F(SeegProbeDialog, WithoutATrialItSaysSo)
{
    CMEGDatazk empty;
    dialog.m_pDataset = &empty;
    EXPECT_EQ(dialog.load(), 1);
    EXPECT_EQ(dialog.GetWindowText(), "NoTrial No SeegProbe ");
    EXPECT_EQ(dialog.m_strChannelLabel, "No Channel is available");
}

TEST_F(SeegProbeDialog, WithoutChannelsItSaysSo)
{
    trial()._cleanTrialChannels();
    dialog.load();
    EXPECT_EQ(dialog.m_strChannelLabel, "No Channel is available");
}

TEST_F(SeegProbeDialog, ApplyWritesWhatWasTypedAndTakesBackWhereTheProbePoints)
{
    dialog.load();
    dialog.calls().clear();
    dialog.m_type = [](CDlgSeegProbeSetup& fields) {
        fields.m_strName = "New";
        fields.m_dBase = {10.0, 0.0, 0.0};
        fields.m_dBaseSize = 1.0;
        fields.m_dTip = {0.0, 20.0, 0.0};
        fields.m_dTipSize = 2.0;
        fields.m_dExtension = 50.0;
        fields.m_nProbeSize2D = 3;
        fields.m_nContactSize2D = 4;
        fields.m_dContactSize3D = 5.0;
        fields.m_nPenSize = 6;
        fields.m_strContactName = "first";
        fields.m_nChannelID = 2;
    };
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_EQ(probe().m_strProbeName, "New");
    EXPECT_EQ(probe().m_dProbeBase, (Point{10.0, 0.0, 0.0}));
    EXPECT_EQ(probe().m_dBaseSize, 1.0);
    EXPECT_EQ(probe().m_dProbeTip, (Point{0.0, 20.0, 0.0}));
    EXPECT_EQ(probe().m_dTipSize, 2.0);
    EXPECT_EQ(probe().m_dExtension, 50.0);
    EXPECT_EQ(probe().m_nProbeSize2D, 3);
    EXPECT_EQ(probe().m_nContactSize2D, 4);
    EXPECT_EQ(probe().m_dContactSize3D, 5.0);
    EXPECT_EQ(probe().m_nPenSize, 6);
    // Half of the way from base to tip beyond the tip.
    EXPECT_EQ(probe().m_dPointing, (Point{-5.0, 30.0, 0.0}));
    EXPECT_EQ(dialog.m_dPointing, probe().m_dPointing);
    EXPECT_EQ(contact(0).m_strContactName, "first");
    EXPECT_EQ(contact(0).m_nContactChnlID, 2);
    EXPECT_EQ(contact(1).m_strContactName, "B2");
    EXPECT_THAT(dialog.calls(), ElementsAre("read", "show", "manager"));
}

TEST_F(SeegProbeDialog, ANegativeChannelIsNotStored)
{
    dialog.load();
    contact(0).m_nContactChnlID = 1;
    dialog.m_nChannelID = -1;
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_EQ(contact(0).m_nContactChnlID, 1);
}

TEST_F(SeegProbeDialog, TheFirstChannelIsShownAndStored)
{
    contact(0).m_nContactChnlID = 0;
    dialog.m_nChannelID = 2;
    dialog.load();
    EXPECT_EQ(dialog.m_nChannelID, 0);
    contact(0).m_nContactChnlID = 1;
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_EQ(contact(0).m_nContactChnlID, 0);
}

TEST_F(SeegProbeDialog, OkStoresAndCloses)
{
    dialog.load();
    dialog.ShowWindow(true);
    dialog.m_strName = "New";
    EXPECT_EQ(dialog.ok(), 1);
    EXPECT_EQ(probe().m_strProbeName, "New");
    EXPECT_FALSE(dialog.IsWindowVisible());
    EXPECT_EQ(dialog.calls().back(), "manager");
}

TEST_F(SeegProbeDialog, AProbeWithoutContactsIsStored)
{
    trial().m_nCurrentSeegProbe = 0;
    dialog.load();
    dialog.m_dBaseSize = 77.0;
    EXPECT_EQ(dialog.apply(), 1);
    EXPECT_EQ(probe().m_dBaseSize, 77.0);
    EXPECT_EQ(probe().getTotalContacts(), 0);
}

TEST_F(SeegProbeDialog, OfADatasetIsMadeOnceAndLoaded)
{
    EXPECT_EQ(data.showDlgSeegProbeSetup(&parent, -1), 1);
    CDlgSeegProbeSetup* const made = data.m_pDlgSeegProbe.get();
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(made->IsWindowVisible());
    EXPECT_EQ(made->m_strName, "B");
    made->ShowWindow(false);
    trial().m_nCurrentSeegProbe = 0;
    EXPECT_EQ(data.showDlgSeegProbeSetup(nullptr, 0), 1);
    EXPECT_EQ(data.m_pDlgSeegProbe.get(), made);
    EXPECT_EQ(made->m_pParent, &parent);
    EXPECT_EQ(made->m_strName, "A");
    EXPECT_TRUE(made->IsWindowVisible());
}

TEST_F(SeegProbeDialog, OpensTheTrialThatItIsShownFor)
{
    FiledDataset filed(2, 1, 1);
    EXPECT_EQ(filed.data.showDlgSeegProbeSetup(nullptr, 1), 1);
    EXPECT_EQ(filed.data.getCurrentTrialIndx(), 1);
    EXPECT_EQ(filed.data.m_pDlgSeegProbe->GetWindowText(), "Trial1 No SeegProbe ");
}

TEST_F(SeegProbeDialog, OfADatasetWithoutTrialsIsNotShown)
{
    CMEGDatazk empty;
    EXPECT_EQ(empty.showDlgSeegProbeSetup(nullptr, -1), 0);
    EXPECT_THAT(host.messages(), ElementsAre("There is no data!"));
}

TEST_F(SeegProbeDialog, WithoutMemoryIsNotShown)
{
    const std::int64_t failures = forEachAllocationFailure([this] {
        data.m_pDlgSeegProbe.reset();
        const int shown = data.showDlgSeegProbeSetup(nullptr, -1);
        EXPECT_EQ(shown, data.m_pDlgSeegProbe != nullptr ? 1 : 0);
    });
    EXPECT_EQ(failures, 1);
}

} // namespace
} // namespace megset::CDlgSeegProbeSetup_test
