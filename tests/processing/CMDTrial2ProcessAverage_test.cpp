// The channel that holds the mean of all EEG measure channels.

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/numeric/reference.h"
#include "tests/processing/montageTrial.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial2ProcessAverage_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EegMeasureAverage : public ::testing::Test
{
protected:
    void make(const std::vector<Samples>& samples, const std::vector<int>& types)
    {
        fillTrial(trial, samples);
        for (std::size_t i = 0; i < types.size(); ++i)
            trial.getChannel(static_cast<int>(i))->m_nChannelType = types[i];
    }

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(EegMeasureAverage, StandsBehindTheOthersWithItsTypeAndNames)
{
    make({{1.0, 2.0}, {10.0, 20.0}, {4.0, 8.0}}, {100, 302, 303});
    const CMDChannelzk* second = trial.getChannel(1);
    trial.getChannel(1)->getBkData()[0] = 20.0;
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 1);
    ASSERT_EQ(trial.getTotalChannel(), 4);
    EXPECT_EQ(trial.m_nTotalChannel, 4);
    EXPECT_EQ(trial.getChannel(1), second);
    const CMDChannelzk& mean = *trial.getChannel(3);
    EXPECT_EQ(wave(mean), (Samples{7.0, 14.0}));
    EXPECT_EQ(backup(mean), (Samples{12.0, 14.0}));
    EXPECT_EQ(mean.m_nChannelType, 360);
    EXPECT_EQ(mean.m_nCurrentSample, 0);
    EXPECT_EQ(mean.m_nGeomType, 0);
    for (const CString* name : {&mean.m_strChannelNameRaw, &mean.m_strChannelName, &mean.m_strChannelTypeName})
        EXPECT_EQ(*name, CString("EEG MEASURE CHANNEL AVERAGE"));
    EXPECT_EQ(trial.findChnlID4NameS("EEG MEASURE"), 3);
    host.expectNoMessages();
}

TEST_F(EegMeasureAverage, ThatIsThereIsFoundAndNotComputedAnew)
{
    make({{1.0}, {3.0}}, {302, 302});
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 1);
    trial.getChannel(0)->getDataWave()[0] = 100.0;
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 1);
    EXPECT_EQ(trial.checkInitEegMeaAvrg(0), 1);
    EXPECT_EQ(trial.getTotalChannel(), 3);
    EXPECT_EQ(wave(*trial.getChannel(2)), Samples{2.0});
}

TEST_F(EegMeasureAverage, IsNotMadeUnlessAsked)
{
    make({{1.0}, {3.0}}, {302, 302});
    EXPECT_EQ(trial.checkInitEegMeaAvrg(0), 0);
    EXPECT_EQ(trial.getTotalChannel(), 2);
}

TEST_F(EegMeasureAverage, NeedsEegMeasureChannels)
{
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 0); // no channels
    make({{1.0}, {3.0}}, {300, 100});
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 0);
    EXPECT_EQ(trial.getTotalChannel(), 2);
    host.expectNoMessages();
}

TEST_F(EegMeasureAverage, HasTheLengthsOfTheFirstChannelAndCountsAShorterOneAsZero)
{
    make({{1.0, 1.0, 1.0}, {6.0}, {2.0, 2.0, 2.0, 2.0}}, {100, 302, 302});
    trial.getChannel(0)->initDataBk(3, 2, false);
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 1);
    EXPECT_EQ(wave(*trial.getChannel(3)), (Samples{4.0, 1.0, 1.0}));
    EXPECT_EQ(backup(*trial.getChannel(3)), (Samples{4.0, 1.0}));
}

TEST_F(EegMeasureAverage, NeedsWorkingAndBackupSamplesOfTheFirstChannel)
{
    make({{1.0}, {3.0}}, {100, 302});
    trial.getChannel(0)->m_pBkData.reset();
    trial.getChannel(0)->m_nBkDataSample = 0;
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 0);
    trial.getChannel(0)->_cleanTimeDataC(true);
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 0);
    trial.m_ppChannel.release(0);
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 0);
    EXPECT_EQ(trial.getTotalChannel(), 2);
    host.expectNoMessages();
}

TEST_F(EegMeasureAverage, PassesOverEmptyPlaces)
{
    make({{1.0}, {3.0}, {5.0}}, {302, 302, 302});
    trial.m_ppChannel.release(1);
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 1);
    EXPECT_EQ(wave(*trial.getChannel(3)), Samples{3.0});
    EXPECT_EQ(trial.getChannel(1), nullptr);
}

TEST_F(EegMeasureAverage, WithoutMemoryTheTrialIsUnchanged)
{
    make({{1.0}, {3.0}}, {302, 302});
    std::vector<CString> messages;
    const std::int64_t failures = forEachAllocationFailure([&] {
        host.clearRecord();
        const int done = trial.checkInitEegMeaAvrg(1);
        EXPECT_EQ(trial.getTotalChannel(), done ? 3 : 2);
        for (const CString& text : host.messages())
            messages.push_back(text);
    });
    EXPECT_EQ(failures, 4); // places, channel, two arrays
    EXPECT_THAT(messages, ElementsAre(CString("Not enough memory!")));
    EXPECT_EQ(wave(*trial.getChannel(2)), Samples{2.0});
}

TEST_F(EegMeasureAverage, WithNoMemoryAtAllSaysSo)
{
    make({{1.0}, {3.0}}, {302, 302});
    {
        const FailingAllocator none(1, FailingAllocator::Failing::FromThenOn);
        EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 0);
    }
    EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory!")));
    EXPECT_EQ(trial.getTotalChannel(), 2);
}

TEST_F(EegMeasureAverage, IsThatOfAPlainLoopToTheBit)
{
    std::vector<Samples> x;
    std::vector<int> types;
    for (unsigned i = 0; i < 20; ++i) {
        x.push_back(numeric::randomSamples(3000 - i * 50, i + 1));
        types.push_back(i % 3 == 1 ? 600 : 302);
    }
    make(x, types);
    Samples mean(3000, 0.0);
    int count = 0;
    for (std::size_t k = 0; k < x.size(); ++k) {
        if (types[k] != 302)
            continue;
        ++count;
        for (std::size_t i = 0; i < x[k].size(); ++i)
            mean[i] += x[k][i];
    }
    for (double& value : mean)
        value /= count;
    EXPECT_EQ(trial.checkInitEegMeaAvrg(1), 1);
    EXPECT_EQ(wave(*trial.getChannel(20)), mean);
    EXPECT_EQ(backup(*trial.getChannel(20)), mean);
}

} // namespace
} // namespace megset::CMDTrial2ProcessAverage_test
