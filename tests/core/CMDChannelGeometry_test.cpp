// The geometry object that a channel owns, and its balance entries.

#include "megset/core/CMDChannelzk.h"
#include "megset/records/records.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <climits>
#include <memory>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannelGeometry_test {

namespace {

using ::testing::ElementsAre;

void giveBalance(CMDChannelzk& channel, int count)
{
    channel.m_nMegBalMode = 3;
    channel.m_nMegChnlNumBal = count;
    channel.m_pMegBalInf = std::make_unique<MEG_BalInfo[]>(static_cast<std::size_t>(count));
}

// A geometry object that tells when it ends.
class WatchedGeometry : public CSensorAcceleratorzk
{
public:
    explicit WatchedGeometry(int& ended) : m_ended(ended) {}
    WatchedGeometry(const WatchedGeometry&) = delete;
    WatchedGeometry& operator=(const WatchedGeometry&) = delete;
    ~WatchedGeometry() override { ++m_ended; }

private:
    int& m_ended;
};

TEST(ChannelGeometry, InitMakesTheObjectOfEachType)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel._initGeomHw(1), 1);
    EXPECT_EQ(channel.m_nGeomType, 1);
    EXPECT_NE(dynamic_cast<CMEGSensorzk*>(channel.m_pGeomHw.get()), nullptr);
    EXPECT_EQ(channel._initGeomHw(2), 1);
    EXPECT_EQ(channel.m_nGeomType, 2);
    EXPECT_NE(dynamic_cast<CEEGelectrodezk*>(channel.m_pGeomHw.get()), nullptr);
    EXPECT_EQ(channel._initGeomHw(3), 1);
    EXPECT_EQ(channel.m_nGeomType, 3);
    EXPECT_NE(dynamic_cast<CStimTrigzk*>(channel.m_pGeomHw.get()), nullptr);
    EXPECT_EQ(channel._initGeomHw(4), 1);
    EXPECT_EQ(channel.m_nGeomType, 4);
    EXPECT_NE(dynamic_cast<CMisceSnsrzk*>(channel.m_pGeomHw.get()), nullptr);
}

TEST(ChannelGeometry, InitOfAnyOtherTypeLeavesGeometryTypeZero)
{
    for (const int type : {0, 5, -1, 6, INT_MAX, INT_MIN}) {
        CMDChannelzk channel;
        channel._initGeomHw(1);
        EXPECT_EQ(channel._initGeomHw(type), 1);
        EXPECT_EQ(channel.m_nGeomType, 0) << type;
        EXPECT_EQ(channel.m_pGeomHw, nullptr);
    }
}

TEST(ChannelGeometry, InitEndsTheIdentityAndTheBalance)
{
    CMDChannelzk channel;
    channel.setChannelType(302);
    channel.setChannelTypeName("name");
    channel.setChannelName("C3", false);
    giveBalance(channel, 2);
    channel._initGeomHw(2);
    EXPECT_EQ(channel.m_nChannelType, -1);
    EXPECT_TRUE(channel.m_strChannelTypeName.IsEmpty());
    EXPECT_EQ(channel.m_pMegBalInf, nullptr);
    EXPECT_EQ(channel.m_nMegBalMode, 0);
    EXPECT_EQ(channel.m_nMegChnlNumBal, 0);
    EXPECT_EQ(channel.m_strChannelName, CString("C3"));
}

TEST(ChannelGeometry, InitWithoutMemoryTellsSoAndStoresTheTypeAllTheSame)
{
    const char* const messages[] = {"", "Make magentic Sensor failed", "Make electrode failed", "Make stim-trig failed",
                                    "Make stim-trig failed"};
    for (int type = 1; type <= 4; ++type) {
        const ScriptedHost host;
        CMDChannelzk channel;
        {
            const FailingAllocator none(1);
            EXPECT_EQ(channel._initGeomHw(type), 1);
        }
        EXPECT_EQ(channel.m_nGeomType, type);
        EXPECT_EQ(channel.m_pGeomHw, nullptr);
        EXPECT_THAT(host.messages(), ElementsAre(CString(messages[type])));
        EXPECT_EQ(channel.getMEGSensorzk(), nullptr);
        EXPECT_EQ(channel._initGeomHw(type), 1);
        EXPECT_NE(channel.m_pGeomHw, nullptr);
    }
}

TEST(ChannelGeometry, InitSucceedsInSilence)
{
    const ScriptedHost host;
    CMDChannelzk channel;
    for (int type = -1; type <= 6; ++type)
        channel._initGeomHw(type);
    host.expectNoMessages();
}

TEST(ChannelGeometry, CleaningEndsTheObjectOfEveryTypeAnAcceleratorIncluded)
{
    for (int type = 0; type <= 6; ++type) {
        int ended = 0;
        CMDChannelzk channel;
        channel.m_pGeomHw = std::make_unique<WatchedGeometry>(ended);
        channel.m_nGeomType = type;
        channel.m_nChannelType = 100;
        giveBalance(channel, 1);
        EXPECT_EQ(channel._cleanGeomHw(), 1);
        EXPECT_EQ(ended, 1) << "geometry type " << type;
        EXPECT_EQ(channel.m_pGeomHw, nullptr);
        EXPECT_EQ(channel.m_nGeomType, 0);
        EXPECT_EQ(channel.m_nChannelType, -1);
        EXPECT_TRUE(channel.m_strChannelTypeName.IsEmpty());
        EXPECT_EQ(channel.m_pMegBalInf, nullptr);
        EXPECT_EQ(channel.m_nMegBalMode, 0);
        EXPECT_EQ(channel.m_nMegChnlNumBal, 0);
    }
}

TEST(ChannelGeometry, CleaningTwiceIsCleaningOnce)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel._cleanGeomHw(), 1);
    EXPECT_EQ(channel._cleanGeomHw(), 1);
    EXPECT_EQ(channel.m_nGeomType, 0);
}

TEST(ChannelGeometry, TheChannelsEndEndsTheGeometry)
{
    int ended = 0;
    {
        CMDChannelzk channel;
        channel.m_pGeomHw = std::make_unique<WatchedGeometry>(ended);
        channel.m_nGeomType = 5;
    }
    EXPECT_EQ(ended, 1);
}

TEST(ChannelBalance, CountIsGivenWhereTheArrayIs)
{
    CMDChannelzk channel;
    giveBalance(channel, 3);
    EXPECT_EQ(channel.getMegChnlNumBal(), 3);
    EXPECT_EQ(channel.getMegBalInf(), channel.m_pMegBalInf.get());
    EXPECT_EQ(channel.m_nMegChnlNumBal, 3);
}

TEST(ChannelBalance, CountWithoutAnArrayBecomesZero)
{
    CMDChannelzk channel;
    channel.m_nMegChnlNumBal = 7;
    channel.m_nMegBalMode = 2;
    EXPECT_EQ(channel.getMegChnlNumBal(), 0);
    EXPECT_EQ(channel.m_nMegChnlNumBal, 0);
    EXPECT_EQ(channel.m_nMegBalMode, 2);
    EXPECT_EQ(channel.getMegBalInf(), nullptr);
}

} // namespace

} // namespace megset::CMDChannelGeometry_test
