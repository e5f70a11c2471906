#include "megset/core/CMDChannelzk.h"
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <gtest/gtest.h>

namespace megset {
namespace {

TEST(MegMeasureChannels, AreCountedShownOrNotAndWithoutTheBadOnes)
{
    CMEGDatazk data;
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 0);
    ASSERT_EQ(data.initMEGData(1, 5, 1), 1);
    CMDTrialzk& trial = *data.getTrialzk(0);
    data.checkInitChnlParam(&trial);
    const int types[] = {100, 103, 10, 302, 101};
    for (int i = 0; i < 5; ++i)
        trial.getChannel(i)->m_nChannelType = types[i];
    trial.m_ppChannel.set(4, nullptr);
    data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 2);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(true), 2);
    data.setGoodChnl4Alltrials(1, 0);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(true), 1);
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 2);
    trial._cleanTrialChannels();
    EXPECT_EQ(data.getTotalMEGChannelMeasure(false), 0);
}

} // namespace
} // namespace megset
