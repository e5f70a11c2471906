// Arrays of a channel as wholes: made, adopted, copied to and from the backup, cut, multiplied by the gain, dropped.

#include "megset/records/records.h"
#include "tests/core/channelStates.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannelArrays_test {
namespace {

using namespace channelStates;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ChannelArrays : public ::testing::Test
{
protected:
    /// Runs an operation with each of its allocations failing in turn, in every state. `run` gives whether it failed.
    template <class Run>
    void forEachFailure(const char* message, Run run)
    {
        for (const State state : allStates) {
            SCOPED_TRACE(::testing::Message() << state);
            forEachAllocationFailure([&] {
                CMDChannelzk channel;
                {
                    const FailingAllocator none(0);
                    bringInto(channel, state);
                }
                host.clearRecord();
                if (run(channel))
                    EXPECT_THAT(host.messages(), ElementsAre(message));
                else
                    EXPECT_THAT(host.messages(), IsEmpty());
                expectUsable(channel);
            });
        }
    }

    static void expectUsable(CMDChannel& channel)
    {
        const FailingAllocator none(0);
        const Contents left = contents(channel);
        EXPECT_TRUE(left.hasWave || left.total <= 0);
        EXPECT_TRUE(left.hasBackup || left.bkTotal <= 0);
        EXPECT_EQ(channel.addDataF(2, std::vector<float>{1.0F, 2.0F}.data()), 2);
        EXPECT_EQ(contents(channel), readyWith({1.0, 2.0}));
    }

    ScriptedHost host;
};

// ---- initData

TEST_F(ChannelArrays, InitDataMakesBothArraysInEveryState)
{
    for (const State state : allStates) {
        for (const std::int64_t n : {1, 3, 6, 9, 2000}) {
            CMDChannelzk channel;
            bringInto(channel, state);
            EXPECT_EQ(channel.initData(n, true), 1);
            EXPECT_EQ(contents(channel), readyWith(std::vector<double>(static_cast<std::size_t>(n)))) << state;
        }
    }
    host.expectNoMessages();
}

TEST_F(ChannelArrays, InitDataOfNothingGives1AndChangesNothing)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        for (const bool zero : {false, true}) {
            EXPECT_EQ(channel.initData(0, zero), 1);
            EXPECT_EQ(channel.initDataBk(0, 5, zero), 1);
            for (const std::int64_t n : negatives) {
                EXPECT_EQ(channel.initData(n, zero), 1);
                EXPECT_EQ(channel.initDataBk(n, 5, zero), 1);
            }
        }
        EXPECT_EQ(contents(channel), before) << state;
    }
}

TEST_F(ChannelArrays, InitDataWithoutZeroKeepsTheSamplesOfArraysOfTheRightSize)
{
    CMDChannelzk channel;
    bringInto(channel, State::ready);
    Contents expected = contents(channel);
    expected.current = 0;
    const FailingAllocator counter(0);
    EXPECT_EQ(channel.initData(6, false), 1);
    EXPECT_EQ(counter.calls(), 0);
    EXPECT_EQ(contents(channel), expected);
    EXPECT_EQ(channel.initData(6, true), 1);
    EXPECT_EQ(counter.calls(), 0);
    EXPECT_EQ(contents(channel), readyWith(std::vector<double>(6)));
}

TEST_F(ChannelArrays, NewArraysNeverShowWhatTheirMemoryHeldBefore)
{
    for (const std::int64_t n : {std::int64_t{40}, std::int64_t{5000}}) {
        {
            CMDChannelzk former;
            former.addData(n, std::vector<double>(static_cast<std::size_t>(n), 3.5).data());
        }
        CMDChannelzk channel;
        EXPECT_EQ(channel.initData(n, false), 1);
        EXPECT_THAT(contents(channel).wave, Each(0.0));
        EXPECT_THAT(contents(channel).backup, Each(0.0));
    }
}

TEST_F(ChannelArrays, InitDataBkMakesArraysOfCountsOfTheirOwn)
{
    for (const State state : allStates) {
        for (const bool zero : {false, true}) {
            CMDChannelzk channel;
            bringInto(channel, state);
            EXPECT_EQ(channel.initDataBk(4, 7, zero), 1);
            EXPECT_EQ(contents(channel),
                      (Contents{std::vector<double>(4), std::vector<double>(7), true, true, 4, 7, 0}))
                << state;
        }
    }
}

TEST_F(ChannelArrays, InitDataBkMakesNoBackupOfNoSamplesAndStoresThatCount)
{
    for (const State state : allStates) {
        for (const std::int64_t nBk : {std::int64_t{0}, std::int64_t{-1}, -(std::int64_t{1} << 61)}) {
            CMDChannelzk channel;
            bringInto(channel, state);
            EXPECT_EQ(channel.initDataBk(4, nBk, true), 1);
            EXPECT_EQ(contents(channel), (Contents{std::vector<double>(4), {}, true, false, 4, nBk, 0})) << state;
            expectUsable(channel);
        }
    }
}

TEST_F(ChannelArrays, InitDataBkKeepsArraysWhoseCountsAreBothRight)
{
    CMDChannelzk channel;
    bringInto(channel, State::longerBackup);
    Contents expected = contents(channel);
    expected.current = 0;
    EXPECT_EQ(channel.initDataBk(6, 9, false), 1);
    EXPECT_EQ(contents(channel), expected);
}

TEST_F(ChannelArrays, InitDataWithoutMemoryIsToldAndTheChannelStaysUsable)
{
    forEachFailure("Not enough memory!", [](CMDChannel& channel) { return channel.initData(40, true) == 0; });
    forEachFailure("Not enough memory!", [](CMDChannel& channel) { return channel.initDataBk(40, 30, false) == 0; });
}

TEST_F(ChannelArrays, InitDataOfMoreThanAnyArrayHoldsIsTold)
{
    for (const std::int64_t n : impossibleCounts) {
        CMDChannelzk channel;
        bringInto(channel, State::ready);
        host.clearRecord();
        EXPECT_EQ(channel.initData(n, true), 0);
        EXPECT_EQ(channel.initDataBk(n, 1, true), 0);
        EXPECT_EQ(channel.initDataBk(1, n, true), 0);
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!", "Not enough memory!", "Not enough memory!"));
        expectUsable(channel);
    }
}

// ---- setSizeData

TEST_F(ChannelArrays, SetSizeDataAdoptsTheArrayWithoutACopyAndBacksItUp)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        auto* const data = new double[3]{7.0, -0.5, 1e300};
        EXPECT_EQ(channel.setSizeData(3, data), 3);
        EXPECT_EQ(channel.getDataWave(), data);
        EXPECT_NE(channel.getBkData(), data);
        EXPECT_EQ(contents(channel), readyWith({7.0, -0.5, 1e300})) << state;
    }
    host.expectNoMessages();
}

TEST_F(ChannelArrays, SetSizeDataOfNothingDropsTheSamplesAndLeavesTheArrayToItsOwner)
{
    const auto data = std::make_unique<double[]>(3);
    for (const State state : allStates) {
        for (const std::int64_t n : {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
            CMDChannelzk channel;
            bringInto(channel, state);
            EXPECT_EQ(channel.setSizeData(n, data.get()), 0);
            EXPECT_EQ(contents(channel), Contents());
        }
        CMDChannelzk channel;
        bringInto(channel, state);
        EXPECT_EQ(channel.setSizeData(3, nullptr), 0);
        EXPECT_EQ(contents(channel), Contents());
    }
    host.expectNoMessages();
}

TEST_F(ChannelArrays, SetSizeDataWithoutMemoryForTheBackupKeepsTheArrayAdopted)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        host.clearRecord();
        auto* const data = new double[3]{7.0, 8.0, 9.0};
        {
            const FailingAllocator first(1);
            EXPECT_EQ(channel.setSizeData(3, data), 0);
        }
        EXPECT_THAT(host.messages(), ElementsAre("There is not enough memory for backup data!"));
        EXPECT_EQ(channel.getDataWave(), data);
        EXPECT_EQ(contents(channel), (Contents{{7.0, 8.0, 9.0}, {}, true, false, 3, 0, 0}));
        EXPECT_EQ(channel.backup2RawData(), 1);
        EXPECT_EQ(contents(channel), readyWith({7.0, 8.0, 9.0}));
    }
}

TEST_F(ChannelArrays, SetSizeDataLeavesNoCountOverAnArrayThatCannotBeAsLarge)
{
    for (const std::int64_t n : impossibleCounts) {
        CMDChannelzk channel;
        auto* const data = new double[2]{1.0, 2.0};
        host.clearRecord();
        EXPECT_EQ(channel.setSizeData(n, data), 0);
        EXPECT_THAT(host.messages(), ElementsAre("There is not enough memory for backup data!"));
        EXPECT_EQ(channel.getDataWave(), data);
        EXPECT_EQ(channel.getTotalSample(), 0);
        EXPECT_EQ(channel.getBkDataSample(), 0);
        EXPECT_EQ(channel.getCurrentV(0, n), 0.0);
    }
}

TEST_F(ChannelArrays, SetSizeDataTakesTheChannelsOwnArrays)
{
    CMDChannelzk channel;
    bringInto(channel, State::longerBackup);
    double* const wave = channel.getDataWave();
    EXPECT_EQ(channel.setSizeData(6, wave), 6);
    EXPECT_EQ(channel.getDataWave(), wave);
    EXPECT_EQ(contents(channel), readyWith(rising(6, 1.0)));

    bringInto(channel, State::longerBackup);
    double* const backup = channel.getBkData();
    EXPECT_EQ(channel.setSizeData(9, backup), 9);
    EXPECT_EQ(channel.getDataWave(), backup);
    EXPECT_EQ(contents(channel), readyWith(rising(9, 101.0)));
}

TEST_F(ChannelArrays, SetSizeDataTakesALargeArrayFromAnotherChannelsMemory)
{
    SampleArray samples = tryNewSamples(5000, true);
    samples[4999] = 2.5;
    CMDChannelzk channel;
    EXPECT_EQ(channel.setSizeData(5000, samples.release()), 5000);
    EXPECT_EQ(channel.getBkData()[4999], 2.5);
}

// ---- backup and working array

TEST_F(ChannelArrays, Backup2RawDataMakesTheBackupEqualToTheWorkingSamples)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        Contents expected = contents(channel);
        EXPECT_EQ(channel.backup2RawData(), expected.hasWave ? 1 : 0);
        if (expected.hasWave) {
            expected = readyWith(rising(6, 1.0));
            expected.current = 4;
        }
        EXPECT_EQ(contents(channel), expected) << state;
    }
    host.expectNoMessages();
}

TEST_F(ChannelArrays, Backup2RawDataUsesTheBackupArrayAgainWhenTheCountsAreEqual)
{
    CMDChannelzk channel;
    bringInto(channel, State::ready);
    const FailingAllocator counter(0);
    EXPECT_EQ(channel.backup2RawData(), 1);
    EXPECT_EQ(counter.calls(), 0);
}

TEST_F(ChannelArrays, Backup2RawDataWithoutMemoryKeepsTheWorkingSamples)
{
    for (const State state : {State::workingOnly, State::longerBackup, State::shorterBackup}) {
        CMDChannelzk channel;
        bringInto(channel, state);
        host.clearRecord();
        {
            const FailingAllocator first(1);
            EXPECT_EQ(channel.backup2RawData(), 0);
        }
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
        EXPECT_EQ(contents(channel), (Contents{rising(6, 1.0), {}, true, false, 6, 0, 4}));
    }
}

TEST_F(ChannelArrays, ReverseRawDataMakesTheWorkingSamplesEqualToTheBackup)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        Contents expected = contents(channel);
        EXPECT_EQ(channel.reverseRawData(), expected.hasBackup ? 1 : 0);
        if (expected.hasBackup) {
            const std::int64_t current = std::min(expected.current, expected.bkTotal - 1);
            expected = readyWith(expected.backup);
            expected.current = current;
        }
        EXPECT_EQ(contents(channel), expected) << state;
    }
    host.expectNoMessages();
}

TEST_F(ChannelArrays, ReverseRawDataPullsTheCurrentSampleInside)
{
    const auto currentAfter = [](State state, std::int64_t current) {
        CMDChannelzk channel;
        bringInto(channel, state);
        channel.m_nCurrentSample = current;
        EXPECT_EQ(channel.reverseRawData(), 1);
        return channel.m_nCurrentSample;
    };
    EXPECT_EQ(currentAfter(State::shorterBackup, 4), 2);
    EXPECT_EQ(currentAfter(State::shorterBackup, 3), 2);
    EXPECT_EQ(currentAfter(State::shorterBackup, 2), 2);
    EXPECT_EQ(currentAfter(State::ready, 5), 5);
    EXPECT_EQ(currentAfter(State::ready, 6), 5);
    EXPECT_EQ(currentAfter(State::ready, -1), 0);
    EXPECT_EQ(currentAfter(State::longerBackup, std::numeric_limits<std::int64_t>::max()), 8);
    EXPECT_EQ(currentAfter(State::longerBackup, std::numeric_limits<std::int64_t>::min()), 0);
}

TEST_F(ChannelArrays, ReverseRawDataWithoutMemoryKeepsTheBackup)
{
    for (const State state : {State::rawOnly, State::longerBackup, State::shorterBackup}) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        host.clearRecord();
        {
            const FailingAllocator first(1);
            EXPECT_EQ(channel.reverseRawData(), 0);
        }
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
        EXPECT_EQ(contents(channel), (Contents{{}, before.backup, false, true, 0, before.bkTotal, before.current}));
        EXPECT_EQ(channel.reverseRawData(), 1);
        EXPECT_EQ(contents(channel).wave, before.backup);
    }
}

TEST_F(ChannelArrays, ArraysThatAreMissingAtEqualCountsAreMade)
{
    CMDChannelzk channel;
    bringInto(channel, State::ready);
    channel.m_pBkData.reset();
    EXPECT_EQ(channel.backup2RawData(), 1);
    EXPECT_THAT(contents(channel).backup, rising(6, 1.0));
    channel.m_pDataWave.reset();
    EXPECT_EQ(channel.reverseRawData(), 1);
    EXPECT_THAT(contents(channel).wave, rising(6, 1.0));
    channel.m_pDataWave.reset();
    EXPECT_EQ(channel.checkInitData4MontageIr(), 6);
    EXPECT_THAT(contents(channel).wave, std::vector<double>(6));
}

TEST_F(ChannelArrays, CheckInitData4MontageIrGivesAClearWorkingArrayOfTheBackupsSize)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        Contents expected = contents(channel);
        EXPECT_EQ(channel.checkInitData4MontageIr(), expected.hasBackup ? expected.bkTotal : -1);
        if (expected.hasBackup) {
            expected.hasWave = true;
            expected.total = expected.bkTotal;
            expected.wave.assign(expected.backup.size(), 0.0);
            expected.current = std::min(expected.current, expected.total - 1);
        }
        EXPECT_EQ(contents(channel), expected) << state;
    }
    host.expectNoMessages();
}

TEST_F(ChannelArrays, CheckInitData4MontageIrKeepsALongerWorkingArrayAndCountsItShorter)
{
    CMDChannelzk channel;
    bringInto(channel, State::shorterBackup);
    const double* const wave = channel.getDataWave();
    EXPECT_EQ(channel.checkInitData4MontageIr(), 3);
    ASSERT_EQ(channel.getDataWave(), wave);
    EXPECT_THAT(samplesOf(wave, 6), ElementsAre(0, 0, 0, 4, 5, 6));
    EXPECT_EQ(channel.m_nCurrentSample, 2);
}

TEST_F(ChannelArrays, CheckInitData4MontageIrBringsTheCurrentSampleInside)
{
    CMDChannelzk channel;
    bringInto(channel, State::longerBackup);
    channel.m_nCurrentSample = 8; // behind the working samples that go, inside those that come
    EXPECT_EQ(channel.checkInitData4MontageIr(), 9);
    EXPECT_EQ(channel.m_nCurrentSample, 8);
    channel.m_nCurrentSample = -3;
    EXPECT_EQ(channel.checkInitData4MontageIr(), 9);
    EXPECT_EQ(channel.m_nCurrentSample, 0);
}

TEST_F(ChannelArrays, CheckInitData4MontageIrWithoutMemoryIsToldAndKeepsTheBackup)
{
    for (const State state : {State::rawOnly, State::longerBackup}) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        host.clearRecord();
        {
            const FailingAllocator first(1);
            EXPECT_EQ(channel.checkInitData4MontageIr(), 0);
        }
        EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
        EXPECT_EQ(contents(channel).backup, before.backup);
        EXPECT_EQ(channel.checkInitData4MontageIr(), before.bkTotal);
    }
}

TEST_F(ChannelArrays, CleanTimeDataCDropsTheWorkingSamplesAndTheBackupWhenAsked)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        Contents expected = contents(channel);
        expected.wave.clear();
        expected.hasWave = false;
        expected.total = expected.current = 0;
        EXPECT_EQ(channel._cleanTimeDataC(false), 1);
        EXPECT_EQ(contents(channel), expected) << state;
        EXPECT_EQ(channel._cleanTimeDataC(true), 1);
        EXPECT_EQ(contents(channel), Contents()) << state;
    }
}

// ---- gain

/// A MEG channel whose gain is 1e15 / (2 * 5e3 * 1e9) = 100.
void makeMeg(CMDChannel& channel)
{
    ASSERT_EQ(channel._initGeomHw(1), 1);
    ASSERT_EQ(static_cast<CMEGSensorzk&>(*channel.m_pGeomHw).initSensorInfo(1, 100, 0, 0, 2.0, 5e3, 1e9, 0.0), 1);
}

TEST_F(ChannelArrays, TheGainGoesIntoBothArraysAndIsCounted)
{
    CMDChannelzk channel;
    makeMeg(channel);
    bringInto(channel, State::ready);
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 1);
    EXPECT_THAT(contents(channel).wave, ElementsAre(100, 200, 300, 400, 500, 600));
    EXPECT_THAT(contents(channel).backup, ElementsAre(10100, 10200, 10300, 10400, 10500, 10600));
    EXPECT_EQ(channel.m_nSnsGainApplied, 1);
    EXPECT_EQ(channel.m_nCurrentSample, 4);
}

TEST_F(ChannelArrays, TheGainIsAppliedOnceWhenAskedAndOtherwiseAgain)
{
    CMDChannelzk channel;
    makeMeg(channel);
    bringInto(channel, State::workingOnly);
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(true), 1);
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(true), 1);
    EXPECT_EQ(channel.m_nSnsGainApplied, 1);
    EXPECT_EQ(channel.getDataWave()[0], 100.0);
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 1);
    EXPECT_EQ(channel.m_nSnsGainApplied, 2);
    EXPECT_EQ(channel.getDataWave()[0], 10000.0);
}

TEST_F(ChannelArrays, AGainThatWasAppliedIsEnoughEvenWithoutSamplesOrSensor)
{
    CMDChannelzk channel;
    channel.m_nSnsGainApplied = 1;
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(true), 1);
    EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 0);
    EXPECT_EQ(channel.m_nSnsGainApplied, 1);
}

TEST_F(ChannelArrays, TheGainReachesTheBackupSamplesThatHaveAWorkingOne)
{
    CMDChannelzk longer;
    makeMeg(longer);
    bringInto(longer, State::longerBackup);
    EXPECT_EQ(longer.applyMEGSnsrGainDir2Data(false), 1);
    EXPECT_THAT(contents(longer).backup, ElementsAre(10100, 10200, 10300, 10400, 10500, 10600, 107, 108, 109));

    CMDChannelzk shorter;
    makeMeg(shorter);
    bringInto(shorter, State::shorterBackup);
    EXPECT_EQ(shorter.applyMEGSnsrGainDir2Data(false), 1);
    EXPECT_THAT(contents(shorter).backup, ElementsAre(10100, 10200, 10300));
    EXPECT_THAT(contents(shorter).wave, ElementsAre(100, 200, 300, 400, 500, 600));
}

TEST_F(ChannelArrays, TheGainNeedsWorkingSamplesAndAMegSensor)
{
    for (const State state : {State::empty, State::rawOnly}) {
        CMDChannelzk channel;
        makeMeg(channel);
        bringInto(channel, state);
        const Contents before = contents(channel);
        EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 0);
        EXPECT_EQ(contents(channel), before);
    }
    for (const int type : {0, 2, 3, 4, 5}) {
        CMDChannelzk channel;
        channel._initGeomHw(type);
        bringInto(channel, State::ready);
        EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 0) << type;
        channel.m_nGeomType = 1; // the type alone makes no MEG sensor
        EXPECT_EQ(channel.applyMEGSnsrGainDir2Data(false), 0) << type;
        EXPECT_EQ(channel.m_nSnsGainApplied, 0);
        EXPECT_EQ(channel.getDataWave()[0], 1.0);
    }
    CMDChannelzk typeless;
    makeMeg(typeless);
    bringInto(typeless, State::ready);
    typeless.m_nGeomType = 2;
    EXPECT_EQ(typeless.applyMEGSnsrGainDir2Data(false), 0);
    host.expectNoMessages();
}

// ---- text

TEST_F(ChannelArrays, TraceDataInfoTellsCountAndRange)
{
    CMDChannelzk channel;
    EXPECT_EQ(channel.traceDataInfo().toUtf8(), "Data points:0 (Min 0.000000000; Mean 0.000000000;  Max 0.000000000; "
                                                "MaxAbsValue 0.000000000 \n)");
    bringInto(channel, State::ready);
    channel.m_dDataMin = -1.5;
    channel.m_dDataMean = 0.1234567894;
    channel.m_dDataMax = 1.0 / 3.0;
    channel.m_dDataMaxAbs = 1e6;
    EXPECT_EQ(channel.traceDataInfo().toUtf8(), "Data points:6 (Min -1.500000000; Mean 0.123456789;  Max 0.333333333; "
                                                "MaxAbsValue 1000000.000000000 \n)");
    channel.m_nTotalSample = 0;
    channel.m_pDataWave.reset();
    channel.m_nTotalSample = std::int64_t{1} << 40;
    EXPECT_EQ(channel.traceDataInfo().toUtf8().substr(0, 25), "Data points:1099511627776");
}

} // namespace
} // namespace megset::CMDChannelArrays_test
