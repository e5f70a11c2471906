// Zooms of the kinds of channels.
#include "megset/display/CMEGData8Show.h"

#include "tests/core/filedDataset.h"
#include "tests/display/shownChannels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

namespace megset::CMEGData8ShowZoom_test {
namespace {

using ::testing::ElementsAre;

// The nine zooms, in the order in which they are kept.
std::vector<double> zooms(const CMEGDatazk& data)
{
    return {data.m_dZoomMEGSensor, data.m_dZoomMEGRef,  data.m_dZoomEEGSensor, data.m_dZoomEEGRef, data.m_dZoomType903,
            data.m_dZoomType902,   data.m_dZoomType904, data.m_dZoomTrig,      data.m_dZoomOthers};
}

class Zooms : public ShownChannels
{
protected:
    void SetUp() override
    {
        makeChannels({100});
        reset();
    }
    void reset()
    {
        data.m_dZoomMEGSensor = 1.0;
        data.m_dZoomMEGRef = 2.0;
        data.m_dZoomEEGSensor = 3.0;
        data.m_dZoomEEGRef = 4.0;
        data.m_dZoomType903 = 5.0;
        data.m_dZoomType902 = 6.0;
        data.m_dZoomType904 = 7.0;
        data.m_dZoomTrig = 8.0;
        data.m_dZoomOthers = 9.0;
    }
    double zoomOf(int type)
    {
        channel(0).m_nChannelType = type;
        return data.getShowZoomChnl(0);
    }
    // Which zoom a channel of that type sets, counted from 1 as above; 0 for none.
    int setBy(int type)
    {
        reset();
        channel(0).m_nChannelType = type;
        EXPECT_EQ(data.setShowZoomChnl(0, -1.0), 1) << type;
        const std::vector<double> now = zooms(data);
        int which = 0;
        for (std::size_t i = 0; i < now.size(); ++i)
            if (now[i] == -1.0) {
                EXPECT_EQ(which, 0) << "more than one zoom for type " << type;
                which = static_cast<int>(i) + 1;
            }
        return which;
    }
};

TEST_F(Zooms, OfANewDatasetHaveTheirDefaults)
{
    const CMEGDatazk fresh;
    EXPECT_THAT(zooms(fresh), ElementsAre(0.005, 0.001, 0.001, 0.001, 0.005, 0.005, 0.005, 180.0, 0.001));
    EXPECT_EQ(fresh.getShowTimeScaleX(), 1.0);
}

TEST_F(Zooms, AreSetAndReadOneByOne)
{
    EXPECT_EQ(data.setShowZoomMEGSensor(11.0), 1);
    EXPECT_EQ(data.setShowZoomMEGRef(12.0), 1);
    EXPECT_EQ(data.setShowZoomEEGSensor(13.0), 1);
    EXPECT_EQ(data.setShowZoomEEGRef(14.0), 1);
    EXPECT_EQ(data.setShowZoomTrig(18.0), 1);
    EXPECT_EQ(data.setShowZoomOthers(19.0), 1);
    EXPECT_THAT(zooms(data), ElementsAre(11.0, 12.0, 13.0, 14.0, 5.0, 6.0, 7.0, 18.0, 19.0));
    EXPECT_EQ(data.getShowZoomMEGSensor(), 11.0);
    EXPECT_EQ(data.getShowZoomMEGRef(), 12.0);
    EXPECT_EQ(data.getShowZoomEEGSensor(), 13.0);
    EXPECT_EQ(data.getShowZoomEEGRef(), 14.0);
    EXPECT_EQ(data.getShowZoomTrig(), 18.0);
    EXPECT_EQ(data.getShowZoomOthers(), 19.0);
}

TEST_F(Zooms, AreReadByTheTypeOfTheChannel)
{
    const std::vector<std::pair<std::vector<int>, double>> table = {
        {{100, 103, 104, 110, 120}, 1.0},
        {{10, 13, 14, 20}, 2.0},
        {{302, 303}, 3.0},
        {{300, 301, 310, 330, 350, 354}, 4.0},
        {{903}, 5.0},
        {{902}, 6.0},
        {{904}, 7.0},
        {{600, 601, 602}, 8.0},
        {{9,   21,  99,  121, 130, 140, 200, 299, 304, 309,     355,
          400, 402, 403, 599, 603, 901, 905, -1,  0,   INT_MIN, INT_MAX},
         9.0},
    };
    for (const auto& [types, zoom] : table)
        for (const int type : types)
            EXPECT_EQ(zoomOf(type), zoom) << type;
}

TEST_F(Zooms, AreSetByAnotherTableOfTypes)
{
    const std::vector<std::pair<std::vector<int>, int>> table = {
        {{100, 103}, 1},
        {{10, 13}, 2},
        {{302, 303}, 3},
        {{300}, 4},
        {{903}, 5},
        {{902}, 6},
        {{904}, 7},
        {{600, 602}, 8},
        {{400, 401, 402}, 9},
        {{104, 110, 120, 14, 20, 301, 310, 330, 350, 354, 130, 140, 99, 9, 399, 403, 603, 901, 905, -1, 0}, 0},
    };
    for (const auto& [types, which] : table)
        for (const int type : types)
            EXPECT_EQ(setBy(type), which) << type;
}

TEST_F(Zooms, OfType110IsReadAndCantBeSet)
{
    channel(0).m_nChannelType = 110;
    EXPECT_EQ(data.getShowZoomChnl(0), data.m_dZoomMEGSensor);
    EXPECT_EQ(data.setShowZoomChnl(0, 77.0), 1);
    EXPECT_EQ(data.getShowZoomChnl(0), 1.0);
}

TEST_F(Zooms, OfType130IsThatOfOthers)
{
    EXPECT_EQ(zoomOf(130), data.m_dZoomOthers);
}

TEST_F(Zooms, OfTheCurrentChannelIsMeantByMinusOne)
{
    makeChannels({100, 302});
    reset();
    data.getMDTrial(0)->m_nCurrentChannel = 1;
    EXPECT_EQ(data.getShowZoomChnl(-1), 3.0);
    EXPECT_EQ(data.setShowZoomChnl(-1, 33.0), 1);
    EXPECT_EQ(data.m_dZoomEEGSensor, 33.0);
}

TEST_F(Zooms, OfNoChannelIsOne)
{
    for (const int chan : {1, -2, INT_MAX, INT_MIN}) {
        EXPECT_EQ(data.getShowZoomChnl(chan), 1.0) << chan;
        EXPECT_EQ(data.setShowZoomChnl(chan, 77.0), 0) << chan;
    }
    data.getMDTrial(0)->m_ppChannel.release(0);
    EXPECT_EQ(data.getShowZoomChnl(0), 1.0);
    EXPECT_EQ(data.setShowZoomChnl(0, 77.0), 0);
    CMEGDatazk empty;
    EXPECT_EQ(empty.getShowZoomChnl(-1), 1.0);
    EXPECT_EQ(empty.setShowZoomChnl(-1, 77.0), 0);
    EXPECT_THAT(zooms(data), ElementsAre(1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0));
}

TEST_F(Zooms, AllOfThemGrowByAFactorAndTheTimeScaleStays)
{
    data.m_dShowTimeScaleX = 3.0;
    EXPECT_EQ(data.zoomAllChnlShow(2.0), 1);
    EXPECT_THAT(zooms(data), ElementsAre(2.0, 4.0, 6.0, 8.0, 10.0, 12.0, 14.0, 16.0, 18.0));
    EXPECT_EQ(data.m_dShowTimeScaleX, 3.0);
}

TEST_F(Zooms, TheTimeScaleIsStoredWithoutItsSign)
{
    EXPECT_EQ(data.setShowTimeScaleX(-2.0), 1);
    EXPECT_EQ(data.m_dShowTimeScaleX, 2.0);
    EXPECT_EQ(data.setShowTimeScaleX(3.0), 1);
    EXPECT_EQ(data.getShowTimeScaleX(), 3.0);
}

class ZoomUsed : public Zooms
{
protected:
    // Where nothing is shown the result is 1, which is so none of the zooms.
    void SetUp() override
    {
        Zooms::SetUp();
        data.m_dZoomMEGSensor = 1.5;
    }
    double usedOf(const std::vector<int>& types)
    {
        makeChannels(types);
        data._cleanChnlParam();
        return data.getShowZoomUsed();
    }
};

TEST_F(ZoomUsed, IsThatOfTheFirstKindThatIsShown)
{
    EXPECT_EQ(usedOf({400, 600, 300, 302, 10, 103}), 1.5);
    EXPECT_EQ(usedOf({400, 600, 300, 303, 13}), 2.0);
    EXPECT_EQ(usedOf({402, 601, 300, 302}), 3.0);
    EXPECT_EQ(usedOf({401, 602, 300}), 4.0);
    EXPECT_EQ(usedOf({400, 600}), 8.0);
    EXPECT_EQ(usedOf({402}), 9.0);
}

TEST_F(ZoomUsed, IsOneWhereNoKindIsShown)
{
    EXPECT_EQ(usedOf({104, 14, 301, 310, 354, 603, 403, 902, 903, 904, -1}), 1.0);
}

TEST_F(ZoomUsed, LooksAtChannelsThatAreShown)
{
    makeChannels({100, 302, 600});
    giveFlags();
    EXPECT_EQ(data.getShowZoomUsed(), 1.5);
    data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(data.getShowZoomUsed(), 3.0);
    data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getShowZoomUsed(), 8.0);
    data.m_dZoomTrig = 88.0;
    EXPECT_EQ(data.getShowZoomUsed(), 88.0);
    data.setShowChnl4Alltrials(2, 0);
    EXPECT_EQ(data.getShowZoomUsed(), 1.0);
}

TEST_F(ZoomUsed, AChannelBeyondTheFlagsCountsAsShown)
{
    makeChannels({302});
    giveFlags();
    data.setShowChnl4Alltrials(0, 0);
    makeChannels({302, 100});
    ASSERT_EQ(data.m_nChnlParamCount, 1);
    EXPECT_EQ(data.getShowZoomUsed(), 1.5);
}

TEST_F(ZoomUsed, IsZeroWithoutChannelsOrTrial)
{
    makeNoChannels();
    EXPECT_EQ(data.getShowZoomUsed(), 0.0);
    CMEGDatazk empty;
    EXPECT_EQ(empty.getShowZoomUsed(), 0.0);
}

TEST_F(ZoomUsed, PassesOverEmptyPlaces)
{
    makeChannels({100, 302});
    data.getMDTrial(0)->m_ppChannel.release(0);
    EXPECT_EQ(data.getShowZoomUsed(), 3.0);
}

TEST_F(ZoomUsed, OpensTheCurrentTrialAndTheOthersDoNot)
{
    FiledDataset filed(1, 1, 2);
    const auto trial = makeTrial(0, 1, 2);
    trial->getChannel(0)->m_nChannelType = 302;
    filed.writeTrial(0, *trial);
    filed.data.m_dZoomEEGSensor = 0.25;
    EXPECT_EQ(filed.data.getShowZoomChnl(0), 1.0);
    EXPECT_EQ(filed.trialsInMemory(), 0);
    EXPECT_EQ(filed.data.getShowZoomUsed(), 0.25);
    EXPECT_EQ(filed.trialsInMemory(), 1);
    EXPECT_EQ(filed.data.getShowZoomChnl(0), 0.25);
}

} // namespace
} // namespace megset::CMEGData8ShowZoom_test
