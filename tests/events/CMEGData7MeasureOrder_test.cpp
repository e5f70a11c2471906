// The order of channels.
#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData7MeasureOrder_test {
namespace {

using ::testing::ElementsAre;

/// The first samples of a trial's channels tell where they came from.
std::vector<int> order(CMEGDatazk& data, int trial)
{
    std::vector<int> places;
    const CMDTrialzk& opened = *data.getTrialzk(trial);
    for (int i = 0; i < opened.getTotalChannel(); ++i)
        places.push_back(static_cast<int>(opened.getChannel(i)->getDataWave()[0]) / 100 % 100);
    return places;
}

TEST(ChannelOrder, SwapsTwoChannels)
{
    FiledDataset filed(1, 8, 2);
    EXPECT_EQ(filed.data.changeChannelOrderID(2, 5, 0, 0), 1);
    EXPECT_THAT(order(filed.data, 0), ElementsAre(0, 1, 5, 3, 4, 2, 6, 7));
    EXPECT_EQ(filed.data.getTrialzk(0)->m_nCurrentChannel, 5);
}

TEST(ChannelOrder, InsertsAChannelAndMovesThoseBetween)
{
    FiledDataset filed(1, 8, 2);
    EXPECT_EQ(filed.data.changeChannelOrderID(2, 5, 1, 0), 1);
    EXPECT_THAT(order(filed.data, 0), ElementsAre(0, 1, 3, 4, 5, 2, 6, 7));
    EXPECT_EQ(filed.data.getTrialzk(0)->m_nCurrentChannel, 5);
    EXPECT_EQ(filed.data.changeChannelOrderID(5, 2, 1, 0), 1);
    EXPECT_THAT(order(filed.data, 0), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_EQ(filed.data.changeChannelOrderID(7, -3, 1, 0), 1) << "limited to 0";
    EXPECT_THAT(order(filed.data, 0), ElementsAre(7, 0, 1, 2, 3, 4, 5, 6));
}

TEST(ChannelOrder, ToTheSamePlaceChangesNothing)
{
    FiledDataset filed(1, 8, 2);
    filed.data.getTrialzk(0)->setCurrentChannel(3);
    for (const int insert : {0, 1}) {
        EXPECT_EQ(filed.data.changeChannelOrderID(2, 2, insert, 0), 1);
        EXPECT_EQ(filed.data.changeChannelOrderID(2, 2, insert, 1), 1);
    }
    EXPECT_THAT(order(filed.data, 0), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_EQ(filed.data.getTrialzk(0)->m_nCurrentChannel, 3);
}

TEST(ChannelOrder, PlacesBehindTheLastAreRefused)
{
    FiledDataset filed(1, 8, 2);
    for (const int insert : {0, 1})
        for (const int to : {8, 9, 1000}) {
            EXPECT_EQ(filed.data.changeChannelOrderID(2, to, insert, 0), 0);
            EXPECT_EQ(filed.data.changeChannelOrderID(2, to, insert, 1), 0);
        }
    EXPECT_THAT(order(filed.data, 0), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST(ChannelOrder, NeedsATrialAndAChannelThatIsThere)
{
    FiledDataset filed(1, 3, 2);
    EXPECT_EQ(filed.data.changeChannelOrderID(-1, 1, 0, 0), 0);
    EXPECT_EQ(filed.data.changeChannelOrderID(3, 1, 0, 0), 0);
    CMEGDatazk none;
    EXPECT_EQ(none.changeChannelOrderID(0, 1, 0, 0), 0);
    EXPECT_EQ(none.changeChannelOrderID(0, 1, 0, 1), 1) << "no trial to walk over";
}

TEST(ChannelOrder, OfOneTrialLeavesTheOthers)
{
    FiledDataset filed(2, 3, 2);
    filed.data.getTrialzk(1);
    EXPECT_EQ(filed.data.changeChannelOrderID(0, 2, 0, 0), 1);
    EXPECT_THAT(order(filed.data, 1), ElementsAre(2, 1, 0));
    EXPECT_THAT(order(filed.data, 0), ElementsAre(0, 1, 2));
}

TEST(ChannelOrder, OfAllTrialsPassesOverThoseThatLackTheChannel)
{
    FiledDataset filed(3, 4, 2);
    filed.writeTrial(1, *makeTrial(1, 2, 2));
    EXPECT_EQ(filed.data.changeChannelOrderID(3, 0, 1, 1), 1);
    EXPECT_THAT(order(filed.data, 0), ElementsAre(3, 0, 1, 2));
    EXPECT_THAT(order(filed.data, 1), ElementsAre(0, 1));
    EXPECT_THAT(order(filed.data, 2), ElementsAre(3, 0, 1, 2));
}

TEST(ChannelOrder, OfAllTrialsStopsWhereAShorterTrialHasNoPlace)
{
    FiledDataset filed(3, 4, 2);
    filed.writeTrial(1, *makeTrial(1, 2, 2));
    EXPECT_EQ(filed.data.changeChannelOrderID(0, 3, 0, 1), 0);
    EXPECT_THAT(order(filed.data, 0), ElementsAre(3, 1, 2, 0));
    EXPECT_THAT(order(filed.data, 1), ElementsAre(0, 1));
    EXPECT_THAT(order(filed.data, 2), ElementsAre(0, 1, 2, 3));
}

TEST(ChannelOrder, OfAllTrialsWalksOverTheirPlacesAlone)
{
    ScriptedHost host;
    FiledDataset filed(1, 3, 2);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    filed.data.m_nTotalTrial = 5;
    EXPECT_EQ(filed.data.changeChannelOrderID(0, 2, 0, 1), 1);
    EXPECT_THAT(order(filed.data, 0), ElementsAre(2, 1, 0));
    host.expectNoMessages();
}

TEST(ChannelOrder, OfACurrentTrialThatIsNoneGivesNothing)
{
    ScriptedHost host;
    FiledDataset filed(2, 3, 2);
    for (const int current : {-5, -1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        filed.data.m_nCurrentTrial = current;
        EXPECT_EQ(filed.data.changeChannelOrderID(0, 2, 0, 0), 0) << current;
        EXPECT_EQ(filed.data.changeChannelOrderID(0, 0, 0, 0), 0) << current;
    }
    EXPECT_EQ(filed.trialsInMemory(), 0);
    host.expectNoMessages();
}

} // namespace
} // namespace megset::CMEGData7MeasureOrder_test
