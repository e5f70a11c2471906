// A contact of a probe becomes a channel's.
#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

namespace megset::CMDTrial6SeegIeegContact_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CString question = "Make a new electrode?!";

class ContactToChannel : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(trial.allocateChannels(3), 1);
        channel(1).m_strChannelName = "POL A1";
        channel(1).m_nChannelType = 100;
        ASSERT_NE(channel(1).ensureMEGSensor(), nullptr);
        channel(2).m_strChannelName = "POL A2";
        ASSERT_NE(channel(2).ensureEegElectrode(), nullptr);
        channel(2).m_nChannelType = 302;
        channel(2).getEegElectrode(0)->m_strElectrodeName = "old";
        contact.m_dContactX = 1.5;
        contact.m_dContactY = -2.5;
        contact.m_dContactZ = 3.5;
    }
    CMDChannelzk& channel(int i) { return *trial.m_ppChannel[i]; }
    std::vector<double> electrodePlace(int i)
    {
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        channel(i).getEegElectrode(0)->getElectrodePositionD(x, y, z);
        return {x, y, z};
    }

    ScriptedHost host;
    CMDTrialzk trial;
    CSeegContactzk contact;
};

TEST_F(ContactToChannel, MakesAnElectrodeWhereThereIsNoneWhenTheUserAgrees)
{
    host.willAnswerYes(question);
    EXPECT_EQ(trial.setSeegContact2Channel(&contact, 1, "A'1"), 1);
    EXPECT_EQ(channel(1).m_nChannelType, 350);
    EXPECT_EQ(channel(1).isSeegChannel(), 1);
    EXPECT_EQ(channel(1).m_nGeomType, 2);
    EXPECT_EQ(electrodePlace(1), (std::vector<double>{1.5, -2.5, 3.5}));
    EXPECT_EQ(contact.m_nContactChnlID, 1);
    EXPECT_EQ(contact.m_strContactName, "A'1");
    EXPECT_EQ(contact.m_strContactChnlName, "POL A1");
}

TEST_F(ContactToChannel, ChangesNothingWhenTheUserDoesNotAgree)
{
    host.willAnswerNo(question);
    EXPECT_EQ(trial.setSeegContact2Channel(&contact, 1, "A'1"), 0);
    EXPECT_EQ(channel(1).m_nChannelType, 100);
    EXPECT_NE(channel(1).getMEGSensorzk(), nullptr);
    EXPECT_EQ(contact.m_nContactChnlID, -1);
    EXPECT_EQ(contact.m_strContactName, "");
}

TEST_F(ContactToChannel, ReplacesAnElectrodeThatIsThereWithoutAsking)
{
    EXPECT_EQ(trial.setSeegContact2Channel(&contact, 2, "A'2"), 1);
    EXPECT_THAT(host.questions(), IsEmpty());
    EXPECT_EQ(channel(2).m_nChannelType, 350);
    EXPECT_EQ(channel(2).getEegElectrode(0)->m_strElectrodeName, "");
    EXPECT_EQ(electrodePlace(2), (std::vector<double>{1.5, -2.5, 3.5}));
    EXPECT_EQ(contact.m_strContactChnlName, "POL A2");
}

TEST_F(ContactToChannel, AChannelIdEqualToTheCountShowsTheRange)
{
    for (const int id : {3, -1, INT_MIN, INT_MAX})
        EXPECT_EQ(trial.setSeegContact2Channel(&contact, id, "A'1"), 0) << id;
    EXPECT_THAT(host.messages(),
                ElementsAre("Channel ID must be in the range of 0-2!", "Channel ID must be in the range of 0-2!",
                            "Channel ID must be in the range of 0-2!", "Channel ID must be in the range of 0-2!"));
    EXPECT_TRUE(contact.m_strContactName.IsEmpty());
}

TEST_F(ContactToChannel, ATrialWithoutChannelsHasNoRange)
{
    CMDTrialzk empty;
    EXPECT_EQ(empty.setSeegContact2Channel(&contact, 0, "A'1"), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Channel ID must be in the range of 0--1!"));
}

TEST_F(ContactToChannel, AnEmptyPlaceEndsIt)
{
    trial.m_ppChannel.release(0);
    EXPECT_EQ(trial.setSeegContact2Channel(&contact, 0, "A'1"), 0);
    EXPECT_THAT(host.calls(), IsEmpty());
    EXPECT_EQ(contact.m_nContactChnlID, -1);
}

TEST_F(ContactToChannel, WithoutAContactTheChannelHasBecomeASeegChannelBeforeItEnds)
{
    EXPECT_EQ(trial.setSeegContact2Channel(nullptr, 2, "A'1"), 0);
    EXPECT_EQ(channel(2).m_nChannelType, 350);
    EXPECT_EQ(electrodePlace(2), (std::vector<double>{0.0, 0.0, 0.0}));
}

TEST_F(ContactToChannel, WithoutMemoryForTheElectrodeTheContactStaysFree)
{
    const std::int64_t failures = forEachAllocationFailure([this] {
        CSeegContactzk tied = contact;
        channel(2)._initGeomHw(0);
        channel(2).m_nChannelType = 302;
        host.willAnswerYes(question);
        const int done = trial.setSeegContact2Channel(&tied, 2, "A'2");
        EXPECT_EQ(tied.m_nContactChnlID, done ? 2 : -1);
        EXPECT_EQ(channel(2).getEegElectrode(0) != nullptr, done != 0);
    });
    EXPECT_EQ(failures, 1);
    EXPECT_THAT(host.messages(), ElementsAre("Make electrode failed"));
}

} // namespace
} // namespace megset::CMDTrial6SeegIeegContact_test
