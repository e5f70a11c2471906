// The dialog of a SEEG probe: its buttons and lists.
#include "tests/ui/seegProbeDialog.h"

#include "tests/kit/FailingAllocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CDlgSeegProbeSetupActions_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Point = CDlgSeegProbeSetup::Point;

class SeegProbeActions : public SeegProbeDialog
{
protected:
    void SetUp() override
    {
        SeegProbeDialog::SetUp();
        dialog.load();
        dialog.calls().clear();
        host.clearRecord();
    }
};

TEST_F(SeegProbeActions, TheBaseIsTakenFromTheSelectedPlaceAndStored)
{
    dialog.m_type = [](CDlgSeegProbeSetup& fields) { fields.m_strName = "typed before"; };
    EXPECT_EQ(dialog.getBaseFromSelect(), 1);
    EXPECT_EQ(probe().m_dProbeBase, (Point{11.0, 12.0, 13.0}));
    EXPECT_EQ(probe().m_bBaseSet, 1);
    EXPECT_EQ(probe().m_bTipSet, 0);
    EXPECT_EQ(dialog.m_bBaseSet, 1);
    EXPECT_EQ(probe().m_strProbeName, "typed before");
    // A tenth of the way beyond the tip, which is at 0.
    EXPECT_EQ(probe().m_dPointing, (Point{-11.0 * 10.0 / 100.0, -12.0 * 10.0 / 100.0, -13.0 * 10.0 / 100.0}));
    EXPECT_THAT(dialog.calls(), ElementsAre("read", "show", "read", "show"));
}

TEST_F(SeegProbeActions, TheTipIsTakenFromTheSelectedPlaceAndStored)
{
    EXPECT_EQ(dialog.getTipFromSelect(), 1);
    EXPECT_EQ(probe().m_dProbeTip, (Point{11.0, 12.0, 13.0}));
    EXPECT_EQ(probe().m_dProbeBase, (Point{0.0, 0.0, 100.0}));
    EXPECT_EQ(probe().m_bTipSet, 1);
    EXPECT_EQ(probe().m_bBaseSet, 0);
    EXPECT_EQ(dialog.m_bTipSet, 1);
}

TEST_F(SeegProbeActions, CalculatePlacesTheContactsOfTheStoredProbe)
{
    probe().m_dProbeTip = {0.0, 0.0, 40.0};
    dialog.m_type = [](CDlgSeegProbeSetup& fields) { fields.m_dTip = {5.0, 5.0, 5.0}; };
    EXPECT_EQ(dialog.calculate(), 1);
    EXPECT_EQ(placeOf(contact(0)), (std::vector<double>{0.0, 0.0, 40.0}));
    EXPECT_EQ(placeOf(contact(2)), (std::vector<double>{0.0, 0.0, 60.0}));
    EXPECT_EQ(dialog.list().m_aRow[2][4], "60.0000");
    EXPECT_THAT(dialog.calls(), ElementsAre("read", "refill"));
}

TEST_F(SeegProbeActions, CalculateOfAProbeWithoutLengthGivesZero)
{
    probe().m_dProbeTip = probe().m_dProbeBase;
    EXPECT_EQ(dialog.calculate(), 0);
    EXPECT_EQ(placeOf(contact(2)), (std::vector<double>{0.0, 0.0, 20.0}));
}

TEST_F(SeegProbeActions, TheCurrentContactGoesToTheSelectedPlace)
{
    probe().m_nCurrentContact = 1;
    EXPECT_EQ(dialog.msiToContact(), 1);
    EXPECT_EQ(placeOf(contact(1)), (std::vector<double>{11.0, 12.0, 13.0}));
    EXPECT_EQ(placeOf(contact(0)), (std::vector<double>{0.0, 0.0, 0.0}));
    EXPECT_EQ(dialog.list().m_aRow[1][2], "11.0000");
    EXPECT_THAT(dialog.calls(), ElementsAre("refill"));
}

TEST_F(SeegProbeActions, ContactToChannelTakesFieldsAsTyped)
{
    dialog.m_type = [](CDlgSeegProbeSetup& fields) {
        fields.m_nChannelID = 2;
        fields.m_strContactName = "B'1";
    };
    probe().m_nCurrentContact = 1;
    host.willAnswerYes("Make a new electrode?!");
    EXPECT_EQ(dialog.contactToChannel(), 1);
    const CMDChannelzk& channel = *trial().m_ppChannel[2];
    EXPECT_EQ(channel.m_nChannelType, 350);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    channel.getEegElectrode(0)->getElectrodePositionD(x, y, z);
    EXPECT_EQ(z, 10.0);
    EXPECT_EQ(contact(1).m_nContactChnlID, 2);
    EXPECT_THAT(dialog.list().m_aRow[1],
                ElementsAre("1(2)", "B'1", "0.0000", "0.0000", "10.0000", "0.8000", "2", "POL2", "None"));
    EXPECT_THAT(dialog.calls(), ElementsAre("read", "refill"));
}

TEST_F(SeegProbeActions, ContactToChannelStopsAtNo)
{
    host.willAnswerNo("Make a new electrode?!");
    EXPECT_EQ(dialog.contactToChannel(), 0);
    EXPECT_EQ(trial().m_ppChannel[0]->m_nChannelType, -1);
    EXPECT_EQ(contact(0).m_nContactChnlID, -1);
    EXPECT_THAT(dialog.calls(), ElementsAre("read"));
}

TEST_F(SeegProbeActions, ContactToChannelWithAnIdEqualToTheCountShowsTheRange)
{
    dialog.m_nChannelID = 3;
    EXPECT_EQ(dialog.contactToChannel(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Channel ID must be in the range of 0-2!"));
}

TEST_F(SeegProbeActions, ContactToChannelWithoutATrialSaysSo)
{
    CMEGDatazk empty;
    dialog.m_pDataset = &empty;
    EXPECT_EQ(dialog.contactToChannel(), 0);
    dialog.m_pDataset = nullptr;
    EXPECT_EQ(dialog.contactToChannel(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("No channel data!?", "No channel data!?"));
}

TEST_F(SeegProbeActions, ContactToChannelWithoutAContactEndsAfterTheChannelWasMade)
{
    probe().m_aContacts.RemoveAll();
    host.willAnswerYes();
    EXPECT_EQ(dialog.contactToChannel(), 0);
    EXPECT_EQ(trial().m_ppChannel[0]->m_nChannelType, 350);
}

TEST_F(SeegProbeActions, ColoursGoToTheNextOneAndTheParentIsRepainted)
{
    CSeegProbezk expected = probe();
    expected.setupContactColor();
    EXPECT_EQ(dialog.contactColor(), 1);
    EXPECT_EQ(probe(), expected);
    expected.setupProbeColor();
    EXPECT_EQ(dialog.probeColor(), 1);
    EXPECT_EQ(probe(), expected);
    EXPECT_THAT(dialog.calls(), ElementsAre("store list", "store list"));
    EXPECT_THAT(host.invalidated(), ElementsAre(&parent, &parent));
}

TEST_F(SeegProbeActions, AUsersProbeGetsItsContacts)
{
    dialog.m_type = [](CDlgSeegProbeSetup& fields) {
        fields.m_nContactNumber = 5;
        fields.m_dContactDistance = 2.0;
    };
    EXPECT_EQ(dialog.setUserSeeg(), 1);
    EXPECT_EQ(probe().getTotalContacts(), 5);
    EXPECT_EQ(placeOf(contact(4)), (std::vector<double>{0.0, 0.0, 8.0}));
    EXPECT_EQ(dialog.m_nMode, CSeegProbe::userMode);
    EXPECT_EQ(dialog.list().m_aRow.size(), 5U);
    EXPECT_THAT(host.invalidated(), ElementsAre(&parent));
    EXPECT_THAT(dialog.calls(), ElementsAre("read", "store list", "refill", "show"));
}

TEST_F(SeegProbeActions, AUsersProbeWithAWrongNumberOrDistanceStaysAsItIs)
{
    const CSeegProbezk before = probe();
    dialog.m_nContactNumber = -1;
    EXPECT_EQ(dialog.setUserSeeg(), 0);
    dialog.m_nContactNumber = 2;
    dialog.m_dContactDistance = 0.0;
    EXPECT_EQ(dialog.setUserSeeg(), 0);
    EXPECT_EQ(probe(), before);
}

TEST_F(SeegProbeActions, AChosenTypePlacesItsContacts)
{
    EXPECT_EQ(dialog.chooseType(1), 1);
    EXPECT_EQ(dialog.m_nMode, 1);
    EXPECT_EQ(probe().m_nProbeMode, 1);
    ASSERT_EQ(probe().getTotalContacts(), 8);
    // The row is 26.5 long and has 7 distances of 3.5: 1 from the tip to the middle of the first contact.
    EXPECT_EQ(placeOf(contact(0)), (std::vector<double>{0.0, 0.0, 1.0}));
    EXPECT_EQ(placeOf(contact(7)), (std::vector<double>{0.0, 0.0, 25.5}));
    EXPECT_EQ(dialog.list().m_aRow.size(), 8U);
}

TEST_F(SeegProbeActions, ATypeThatIsNotChosenChangesNothing)
{
    for (const int mode : {-1, 5})
        EXPECT_EQ(dialog.chooseType(mode), 0) << mode;
    EXPECT_EQ(dialog.m_nMode, 0);
    EXPECT_EQ(probe().getTotalContacts(), 3);
    EXPECT_THAT(dialog.calls(), IsEmpty());
}

TEST_F(SeegProbeActions, WithoutMemoryForTheContactsOfATypeTheProbeKeepsItsOwn)
{
    const CSeegProbezk before = probe();
    const std::int64_t failures = forEachAllocationFailure([&] {
        probe() = before;
        const int done = dialog.chooseType(2);
        EXPECT_EQ(probe().getTotalContacts(), done ? 10 : 3);
        EXPECT_EQ(probe().m_nProbeMode, done ? 2 : 0);
    });
    EXPECT_EQ(failures, 7);
}

TEST_F(SeegProbeActions, AChosenRowBringsItsContactToTheFields)
{
    contact(2).m_nContactChnlID = 1;
    EXPECT_EQ(dialog.chooseContact(2), 1);
    EXPECT_EQ(probe().m_nCurrentContact, 2);
    EXPECT_EQ(CMEGDatazk::m_nSelectSeegProbeContactID, 2);
    EXPECT_EQ(dialog.m_strContactName, "B3");
    EXPECT_EQ(dialog.m_nChannelID, 1);
    EXPECT_EQ(dialog.chooseContact(0), 1);
    EXPECT_EQ(dialog.m_strContactName, "B1");
    EXPECT_EQ(dialog.m_nChannelID, 1) << "one without a channel leaves the field";
    EXPECT_EQ(dialog.chooseContact(3), 0);
    EXPECT_EQ(dialog.m_strContactName, "B1");
    EXPECT_THAT(dialog.calls(), ElementsAre("show", "show"));
}

TEST_F(SeegProbeActions, VisibilityGoesToTheProbeAtOnce)
{
    EXPECT_EQ(dialog.changeVisible(true), 1);
    EXPECT_EQ(probe().m_bProbeVisible, 1);
    EXPECT_EQ(dialog.changeShowContacts(false), 1);
    EXPECT_EQ(probe().m_bShowContacts, 0);
    EXPECT_THAT(host.invalidated(), ElementsAre(&parent, &parent));
    dialog.load();
    EXPECT_EQ(dialog.m_bVisible, 1);
    EXPECT_EQ(dialog.m_bShowContacts, 0);
}

TEST_F(SeegProbeActions, WithoutAProbeGiveZero)
{
    trial().cleanSeegProbe();
    EXPECT_EQ(dialog.apply(), 0);
    EXPECT_EQ(dialog.ok(), 0);
    EXPECT_EQ(dialog.getBaseFromSelect(), 0);
    EXPECT_EQ(dialog.getTipFromSelect(), 0);
    EXPECT_EQ(dialog.calculate(), 0);
    EXPECT_EQ(dialog.msiToContact(), 0);
    EXPECT_EQ(dialog.contactColor(), 0);
    EXPECT_EQ(dialog.probeColor(), 0);
    EXPECT_EQ(dialog.setUserSeeg(), 0);
    EXPECT_EQ(dialog.chooseType(3), 0);
    EXPECT_EQ(dialog.m_nMode, 3) << "the list itself is as chosen";
    EXPECT_EQ(dialog.chooseContact(0), 0);
    EXPECT_EQ(dialog.changeVisible(true), 0);
    EXPECT_EQ(dialog.changeShowContacts(true), 0);
    host.expectNoMessages();
}

TEST_F(SeegProbeActions, WithoutADatasetGiveZero)
{
    dialog.m_pDataset = nullptr;
    EXPECT_EQ(dialog.load(), 0);
    EXPECT_EQ(dialog.apply(), 0);
    EXPECT_EQ(dialog.getBaseFromSelect(), 0);
    EXPECT_EQ(dialog.msiToContact(), 0);
    EXPECT_EQ(dialog.chooseContact(0), 0);
    host.expectNoMessages();
}

} // namespace
} // namespace megset::CDlgSeegProbeSetupActions_test
