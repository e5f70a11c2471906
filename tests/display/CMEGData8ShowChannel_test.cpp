// What the views ask of one channel.
#include "megset/display/CMEGData8Show.h"

#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/core/filedDataset.h"
#include "tests/display/shownChannels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

namespace megset::CMEGData8ShowChannel_test {
namespace {

class ShownChannel : public ShownChannels
{
protected:
    void SetUp() override
    {
        makeChannels({100, 302, 600});
        giveFlags();
        for (int i = 0; i < 3; ++i)
            channel(i).m_strChannelName = CString::formatted("Channel%d", i);
    }
};

TEST_F(ShownChannel, HasItsWorkingName)
{
    channel(1).m_strChannelNameRaw = "raw";
    EXPECT_EQ(data.getChnlName_PhycVirt(1, false), "Channel1");
    EXPECT_EQ(data.getChnlName_PhycVirt(1, true), "Channel1");
    data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getChnlName_PhycVirt(1, false), "Channel1");
    EXPECT_EQ(data.getChnlName_PhycVirt(1, true), "");
}

TEST_F(ShownChannel, OutOfRangeIsNone)
{
    for (const int chan : {-1, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(data.getChnlName_PhycVirt(chan, false), "") << chan;
        EXPECT_FALSE(data.getChnlShow_PhycVirt(chan)) << chan;
        EXPECT_EQ(data.getTrlChnlDataWave(chan, false), nullptr) << chan;
        EXPECT_EQ(data.getChnlSpctmData(chan, false, 0, 0, nullptr, nullptr), nullptr) << chan;
    }
    const CMEGDatazk empty;
    EXPECT_EQ(empty.getChnlName_PhycVirt(0, false), "");
    EXPECT_EQ(empty.getTrlChnlDataWave(0, false), nullptr);
    EXPECT_FALSE(empty.getChnlShow_PhycVirt(0));
}

TEST_F(ShownChannel, AnEmptyPlaceIsNone)
{
    data.getMDTrial(0)->m_ppChannel.release(1);
    EXPECT_EQ(data.getChnlName_PhycVirt(1, false), "");
    EXPECT_EQ(data.getTrlChnlDataWave(1, false), nullptr);
}

TEST_F(ShownChannel, TellsItsFlag)
{
    EXPECT_TRUE(data.getChnlShow_PhycVirt(0));
    data.setShowChnl4Alltrials(0, 0);
    EXPECT_FALSE(data.getChnlShow_PhycVirt(0));
    data._cleanChnlParam();
    EXPECT_FALSE(data.getChnlShow_PhycVirt(1)) << "without flags nothing says that it is shown";
    EXPECT_EQ(data.getChnlName_PhycVirt(1, true), "");
}

TEST_F(ShownChannel, GivesItsWorkingSamples)
{
    EXPECT_NE(data.getTrlChnlDataWave(1, true), nullptr);
    EXPECT_EQ(data.getTrlChnlDataWave(1, true), channel(1).getDataWave());
    data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getTrlChnlDataWave(1, true), nullptr);
    EXPECT_EQ(data.getTrlChnlDataWave(1, false), channel(1).getDataWave());
    channel(1)._cleanTimeDataC(true);
    EXPECT_EQ(data.getTrlChnlDataWave(1, false), nullptr);
}

TEST_F(ShownChannel, OfATrialOnDiskIsNoneAndNoFileIsTouched)
{
    FiledDataset filed(1, 1, 2);
    EXPECT_EQ(filed.data.getTrlChnlDataWave(0, false), nullptr);
    EXPECT_EQ(filed.data.getChnlName_PhycVirt(0, false), "");
    EXPECT_EQ(filed.data.getLongestChannelName(), "Non");
    EXPECT_EQ(filed.trialsInMemory(), 0);
    ASSERT_EQ(filed.data.openTrial(0), 1);
    EXPECT_EQ(filed.data.getTrlChnlDataWave(0, false)[1], valueAt(0, 0, 1));
}

TEST_F(ShownChannel, GivesThePlanesOfItsSpectraByClassAndDataType)
{
    for (auto* slot : {&channel(1).m_pSpctmChnlA, &channel(1).m_pSpctmChnlC, &channel(1).m_pSpctmChnlR}) {
        *slot = std::make_unique<CSpctmChnlzk>();
        const int time = slot == &channel(1).m_pSpctmChnlA ? 2 : slot == &channel(1).m_pSpctmChnlC ? 3 : 4;
        ASSERT_EQ((*slot)->initSpctmSpace(time, 5, true, 1, 1), 1);
    }
    const CSpctmChnlzk* spectra[] = {channel(1).m_pSpctmChnlA.get(), channel(1).m_pSpctmChnlC.get(),
                                     channel(1).m_pSpctmChnlR.get()};
    for (int kind = 0; kind < 3; ++kind)
        for (int part = 0; part < 4; ++part) {
            std::int64_t times = 0;
            std::int64_t frequencies = 0;
            const double* plane = data.getChnlSpctmData(1, true, kind, part, &times, &frequencies);
            EXPECT_NE(plane, nullptr) << kind << part;
            EXPECT_EQ(plane, spectra[kind]->getSpctmDataPtr(part, nullptr, nullptr)) << kind << part;
            EXPECT_EQ(times, kind + 2);
            EXPECT_EQ(frequencies, 5);
        }
    EXPECT_NE(data.getChnlSpctmData(1, true, 0, 0, nullptr, nullptr), nullptr);
}

TEST_F(ShownChannel, HasNoPlaneOfAnotherClassOrType)
{
    channel(1).m_pSpctmChnlA = std::make_unique<CSpctmChnlzk>();
    ASSERT_EQ(channel(1).m_pSpctmChnlA->initSpctmSpace(2, 5, true, 0, 0), 1);
    std::int64_t times = 77;
    std::int64_t frequencies = 77;
    EXPECT_EQ(data.getChnlSpctmData(1, true, 0, 1, &times, &frequencies), nullptr) << "no imaginary part";
    EXPECT_EQ(times, 2);
    for (const int kind : {-1, 1, 2, 3}) {
        times = frequencies = 77;
        EXPECT_EQ(data.getChnlSpctmData(1, true, kind, 0, &times, &frequencies), nullptr) << kind;
        EXPECT_EQ(times, 0) << kind;
        EXPECT_EQ(frequencies, 0) << kind;
    }
    EXPECT_EQ(data.getChnlSpctmData(1, true, 0, 4, nullptr, nullptr), nullptr);
    EXPECT_EQ(data.getChnlSpctmData(1, true, 0, -1, nullptr, nullptr), nullptr);
    data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getChnlSpctmData(1, true, 0, 0, nullptr, nullptr), nullptr);
    EXPECT_NE(data.getChnlSpctmData(1, false, 0, 0, nullptr, nullptr), nullptr);
}

TEST_F(ShownChannel, TheLongestNameIsTheLastOfMoreThanThreeCharacters)
{
    channel(0).m_strChannelName = "the longest by far";
    channel(1).m_strChannelName = "Four";
    channel(2).m_strChannelName = "Thr";
    EXPECT_EQ(data.getLongestChannelName(), "Four");
    data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getLongestChannelName(), "the longest by far");
    data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(data.getLongestChannelName(), "Non");
}

TEST_F(ShownChannel, TheLongestNameOfNoTrialIsNon)
{
    EXPECT_EQ(CMEGDatazk().getLongestChannelName(), "Non");
    data.getMDTrial(0)->m_ppChannel.release(2);
    EXPECT_EQ(data.getLongestChannelName(), "Channel1") << "an empty place has no name";
}

} // namespace
} // namespace megset::CMEGData8ShowChannel_test
