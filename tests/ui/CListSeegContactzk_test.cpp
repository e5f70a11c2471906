// The list of a probe's contacts.
#include "tests/ui/seegProbeDialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CListSeegContactzk_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ContactList : public SeegProbeDialog
{
protected:
    CListSeegContactzk list;
};

TEST_F(ContactList, HasItsColumns)
{
    EXPECT_THAT(CListSeegContactzk::columns, ElementsAre("Index", "Name", "X(mm)", "Y(mm)", "Z(mm)", "Size(mm)",
                                                         "Channel ID", "Channel Name", "Notes"));
}

TEST_F(ContactList, ShowsARowForEachContactAndNotesIt)
{
    contact(1).m_nContactChnlID = 2;
    contact(1).m_strContactChnlName = "POL2";
    contact(1).m_dContactX = -1.00005;
    EXPECT_EQ(list.refill(data), 1);
    ASSERT_EQ(list.m_aRow.size(), 3U);
    EXPECT_THAT(list.m_aRow[0], ElementsAre("0(1)", "B1", "0.0000", "0.0000", "0.0000", "0.8000", "-1", "", "None"));
    EXPECT_THAT(list.m_aRow[1], ElementsAre("1(2)", "B2", CString::formatted("%.4f", -1.00005), "0.0000", "10.0000",
                                            "0.8000", "2", "POL2", "None"));
    EXPECT_THAT(list.m_aRow[2], ElementsAre("2(3)", "B3", "0.0000", "0.0000", "20.0000", "0.8000", "-1", "", "None"));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(contact(i).m_nContactRow, i);
    EXPECT_EQ(CMEGDatazk::m_nSelectSeegProbeID, 1);
}

TEST_F(ContactList, IsEmptiedBeforeItIsFilled)
{
    list.refill(data);
    ASSERT_EQ(probe().setUserContact(1, 10.0), 1);
    EXPECT_EQ(list.refill(data), 1);
    EXPECT_EQ(list.m_aRow.size(), 1U);
}

TEST_F(ContactList, APlaceWithoutAContactHasNoRow)
{
    probe().m_aContacts.release(0);
    EXPECT_EQ(list.refill(data), 1);
    ASSERT_EQ(list.m_aRow.size(), 2U);
    EXPECT_EQ(list.m_aRow[0][0], "1(2)");
    EXPECT_EQ(contact(1).m_nContactRow, 0);
    EXPECT_EQ(list.choose(data, 0), 1);
    EXPECT_EQ(probe().m_nCurrentContact, 1);
}

TEST_F(ContactList, OfAProbeWithoutContactsIsEmpty)
{
    list.refill(data);
    trial().m_nCurrentSeegProbe = 0;
    EXPECT_EQ(list.refill(data), 1);
    EXPECT_THAT(list.m_aRow, IsEmpty());
    EXPECT_EQ(CMEGDatazk::m_nSelectSeegProbeID, 0);
    EXPECT_EQ(list.choose(data, 0), 0);
}

TEST_F(ContactList, WithoutProbeOrTrialIsEmpty)
{
    list.refill(data);
    trial().cleanSeegProbe();
    EXPECT_EQ(list.refill(data), 0);
    EXPECT_THAT(list.m_aRow, IsEmpty());
    EXPECT_EQ(list.choose(data, 0), 0);
    CMEGDatazk empty;
    EXPECT_EQ(list.refill(empty), 0);
    EXPECT_EQ(list.choose(empty, 0), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(ContactList, ThatCantBeEmptiedSaysSo)
{
    dialog.list().refill(data);
    dialog.list().m_keepsRows = true;
    contact(0).m_strContactName = "new";
    EXPECT_EQ(dialog.list().refill(data), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Remove list item error"));
    EXPECT_EQ(dialog.list().m_aRow[0][1], "B1");
}

TEST_F(ContactList, AChosenRowMakesItsContactCurrentForAll)
{
    list.refill(data);
    contact(2).m_dContactX = 4.0;
    EXPECT_EQ(list.choose(data, 2), 1);
    EXPECT_EQ(probe().m_nCurrentContact, 2);
    EXPECT_EQ(CMEGDatazk::m_nSelectSeegProbeContactID, 2);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    CMEGDatazk::getSeegProbContact2Me(x, y, z);
    EXPECT_EQ((std::vector<double>{x, y, z}), (std::vector<double>{4.0, 0.0, 20.0}));
}

TEST_F(ContactList, ARowThatIsNotThereChangesNothing)
{
    list.refill(data);
    list.choose(data, 1);
    for (const int row : {-1, 3, 99})
        EXPECT_EQ(list.choose(data, row), 0) << row;
    EXPECT_EQ(probe().m_nCurrentContact, 1);
    EXPECT_EQ(CMEGDatazk::m_nSelectSeegProbeContactID, 1);
}

} // namespace
} // namespace megset::CListSeegContactzk_test
