// How samples come into a channel: add operations, single samples and blocks at a place, new arrays, adopted arrays.

#include "tests/core/channelStates.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <cmath>
#include <functional>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannelFilling_test {
namespace {

using namespace channelStates;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double scale = 1.0 / 3.0;

/// One add operation, fed with whole numbers 10, 11, ... of its own type.
struct AddOperation
{
    const char* name;
    std::function<std::int64_t(CMDChannel&, std::int64_t n, bool nullData)> add;
    double factor = 1.0;
    bool keepsOtherBackup = false;
};

template <class T>
const T* numbers(bool nullData)
{
    static const std::vector<T> values = [] {
        std::vector<T> rise(100);
        std::iota(rise.begin(), rise.end(), static_cast<T>(10));
        return rise;
    }();
    return nullData ? nullptr : values.data();
}

const std::vector<AddOperation>& addOperations()
{
    static const std::vector<AddOperation> all = {
        {"addData", [](CMDChannel& c, std::int64_t n, bool none) { return c.addData(n, numbers<double>(none)); }},
        {"addDataF", [](CMDChannel& c, std::int64_t n, bool none) { return c.addDataF(n, numbers<float>(none)); }},
        {"addDataFscaleD",
         [](CMDChannel& c, std::int64_t n, bool none) { return c.addDataFscaleD(n, numbers<float>(none), scale); },
         scale},
        {"addDataInt", [](CMDChannel& c, std::int64_t n, bool none) { return c.addDataInt(n, numbers<int>(none)); },
         1.0, true},
        {"addDataL",
         [](CMDChannel& c, std::int64_t n, bool none) { return c.addDataL(n, numbers<std::int32_t>(none)); }, 1.0,
         true},
    };
    return all;
}

std::vector<double> added(const AddOperation& operation, std::int64_t n)
{
    std::vector<double> samples = rising(n, 10.0);
    for (double& v : samples)
        v *= operation.factor;
    return samples;
}

template <class Body>
void forEachAddAndState(Body body)
{
    for (const AddOperation& operation : addOperations()) {
        for (const State state : allStates) {
            SCOPED_TRACE(::testing::Message() << operation.name << " on " << state);
            body(operation, state);
        }
    }
}

class ChannelFilling : public ::testing::Test
{
protected:
    ScriptedHost host;
};

TEST_F(ChannelFilling, NewChannelIsEmpty)
{
    const CMDChannelzk channel;
    EXPECT_EQ(contents(channel), Contents());
}

// ---- blocks

TEST_F(ChannelFilling, AddReplacesBothArraysInEveryStateAndGoesToTheFirstSample)
{
    forEachAddAndState([](const AddOperation& operation, State state) {
        for (const std::int64_t n : {1, 3, 5, 6, 7, 9, 40}) {
            CMDChannelzk channel;
            bringInto(channel, state);
            EXPECT_EQ(operation.add(channel, n, false), n);
            EXPECT_EQ(contents(channel), readyWith(added(operation, n)));
        }
    });
    host.expectNoMessages();
}

TEST_F(ChannelFilling, AddOfNoSamplesOrNoDataGives0AndChangesNothing)
{
    forEachAddAndState([](const AddOperation& operation, State state) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        EXPECT_EQ(operation.add(channel, 0, false), 0);
        EXPECT_EQ(operation.add(channel, stateSamples, true), 0);
        for (const std::int64_t n : negatives)
            EXPECT_EQ(operation.add(channel, n, false), 0);
        EXPECT_EQ(contents(channel), before);
    });
    host.expectNoMessages();
}

TEST_F(ChannelFilling, AddOfMoreThanAnyArrayHoldsIsToldAndLeavesAnEmptyChannel)
{
    forEachAddAndState([this](const AddOperation& operation, State state) {
        for (const std::int64_t n : impossibleCounts) {
            CMDChannelzk channel;
            bringInto(channel, state);
            host.clearRecord();
            EXPECT_EQ(operation.add(channel, n, false), 0);
            EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
            EXPECT_EQ(contents(channel), Contents());
        }
    });
}

TEST_F(ChannelFilling, AddWithoutMemoryIsToldAndTheChannelStaysUsable)
{
    forEachAddAndState([this](const AddOperation& operation, State state) {
        for (const std::int64_t n : {std::int64_t{2}, stateSamples, std::int64_t{50}}) {
            forEachAllocationFailure([&] {
                CMDChannelzk channel;
                {
                    const FailingAllocator none(0);
                    bringInto(channel, state);
                }
                host.clearRecord();
                const std::int64_t result = operation.add(channel, n, false);
                if (result == 0) {
                    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
                    const FailingAllocator none(0);
                    const Contents left = contents(channel);
                    EXPECT_TRUE(left.hasWave || left.total == 0);
                    EXPECT_TRUE(left.hasBackup || left.bkTotal == 0);
                    EXPECT_EQ(operation.add(channel, n, false), n);
                } else {
                    EXPECT_THAT(host.messages(), IsEmpty());
                }
                EXPECT_EQ(contents(channel), readyWith(added(operation, n)));
            });
        }
    });
}

TEST_F(ChannelFilling, AddAllocatesTheWorkingArrayFirstAndKeepsItWhenTheBackupFails)
{
    CMDChannelzk channel;
    {
        const FailingAllocator second(2);
        EXPECT_EQ(channel.addData(3, rising(3, 0.0).data()), 0);
    }
    EXPECT_NE(channel.getDataWave(), nullptr);
    EXPECT_EQ(channel.getBkData(), nullptr);
    EXPECT_EQ(channel.getTotalSample(), 0);
    EXPECT_EQ(channel.getBkDataSample(), 0);
    EXPECT_EQ(channel.getCurrentV(0, 0), 0.0);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
}

TEST_F(ChannelFilling, AddFailsAfterACountWithoutItsArrayWithoutShowingSamplesThatNobodySet)
{
    CMDChannelzk channel;
    channel.m_nTotalSample = channel.m_nBkDataSample = 4; // counts without arrays, as a file may bring them
    {
        const FailingAllocator second(2);
        EXPECT_EQ(channel.addData(4, rising(4, 1.0).data()), 0);
    }
    EXPECT_THAT(contents(channel).wave, ElementsAre(0.0, 0.0, 0.0, 0.0));
}

TEST_F(ChannelFilling, AddOfTheSameSizeKeepsTheArrays)
{
    for (const AddOperation& operation : addOperations()) {
        CMDChannelzk channel;
        bringInto(channel, State::ready);
        const double* const wave = channel.getDataWave();
        const double* const backup = channel.getBkData();
        const FailingAllocator counter(0);
        EXPECT_EQ(operation.add(channel, stateSamples, false), stateSamples);
        EXPECT_EQ(counter.calls(), 0) << operation.name;
        EXPECT_EQ(channel.getDataWave(), wave);
        EXPECT_EQ(channel.getBkData(), backup);
    }
}

TEST_F(ChannelFilling, FloatingPointAddsMakeBothArraysNewWhenOneCountDiffersAndIntegerAddsLookAtTheWorkingCountAlone)
{
    for (const AddOperation& operation : addOperations()) {
        SCOPED_TRACE(operation.name);
        for (const State state : {State::longerBackup, State::shorterBackup}) {
            CMDChannelzk channel;
            bringInto(channel, state);
            const FailingAllocator counter(0);
            operation.add(channel, stateSamples, false);
            const int forIntegers = state == State::longerBackup ? 0 : 1; // a short backup is grown
            EXPECT_EQ(counter.calls(), operation.keepsOtherBackup ? forIntegers : 2);
        }
    }
}

TEST_F(ChannelFilling, ALongerBackupSurvivesAnIntegerAddWithItsFirstSamplesReplaced)
{
    CMDChannelzk channel;
    bringInto(channel, State::longerBackup);
    const double* const backup = channel.getBkData();
    EXPECT_EQ(channel.addDataInt(6, numbers<int>(false)), 6);
    ASSERT_EQ(channel.getBkData(), backup);
    EXPECT_THAT(samplesOf(backup, 9), ElementsAre(10, 11, 12, 13, 14, 15, 107, 108, 109));
    EXPECT_EQ(channel.getBkDataSample(), 6);
}

TEST_F(ChannelFilling, AShortBackupThatCannotGrowStaysAsItIsWithTheWorkingSamples)
{
    CMDChannelzk channel;
    bringInto(channel, State::shorterBackup);
    const Contents before = contents(channel);
    {
        const FailingAllocator first(1);
        EXPECT_EQ(channel.addDataL(6, numbers<std::int32_t>(false)), 0);
    }
    EXPECT_EQ(contents(channel), before);
    EXPECT_THAT(host.messages(), ElementsAre("Not enough memory!"));
}

TEST_F(ChannelFilling, IntegersKeepEveryBit)
{
    const std::vector<std::int32_t> data = {std::numeric_limits<std::int32_t>::min(),
                                            std::numeric_limits<std::int32_t>::max(), -1, 0, 1};
    CMDChannelzk channel;
    EXPECT_EQ(channel.addDataL(5, data.data()), 5);
    EXPECT_EQ(contents(channel), readyWith({-2147483648.0, 2147483647.0, -1.0, 0.0, 1.0}));
}

TEST_F(ChannelFilling, FloatsAreWidenedAndThenMultiplied)
{
    std::mt19937 random(3);
    std::normal_distribution<float> noise(0.0F, 1e3F);
    std::vector<float> data(1001);
    for (float& v : data)
        v = noise(random);
    std::vector<double> plain, scaled;
    for (const float v : data) {
        plain.push_back(static_cast<double>(v));
        scaled.push_back(static_cast<double>(v) * scale);
    }
    CMDChannelzk channel;
    EXPECT_EQ(channel.addDataF(1001, data.data()), 1001);
    EXPECT_EQ(contents(channel), readyWith(plain));
    EXPECT_EQ(channel.addDataFscaleD(1001, data.data(), scale), 1001);
    EXPECT_EQ(contents(channel), readyWith(scaled));
}

TEST_F(ChannelFilling, NanAndInfinitiesGoThroughEveryFloatingPointAdd)
{
    const std::vector<float> data = {std::nanf(""), std::numeric_limits<float>::infinity(),
                                     -std::numeric_limits<float>::infinity(), -0.0F};
    const std::vector<double> wide(data.begin(), data.end());
    CMDChannelzk channel;
    const auto expectKept = [&] {
        for (const double* samples : {channel.getDataWave(), channel.getBkData()}) {
            EXPECT_TRUE(std::isnan(samples[0]));
            EXPECT_EQ(samples[1], infinity);
            EXPECT_EQ(samples[2], -infinity);
            EXPECT_TRUE(samples[3] == 0.0 && std::signbit(samples[3]));
        }
    };
    channel.addData(4, wide.data());
    expectKept();
    channel.addDataF(4, data.data());
    expectKept();
    channel.addDataFscaleD(4, data.data(), 1e-3);
    expectKept();
}

TEST_F(ChannelFilling, AScaleOfInfinityOrNanIsMultipliedAsAnyOther)
{
    const std::vector<float> data = {1.0F, -2.0F, 0.0F};
    CMDChannelzk channel;
    channel.addDataFscaleD(3, data.data(), infinity);
    EXPECT_EQ(channel.getDataWave()[0], infinity);
    EXPECT_EQ(channel.getDataWave()[1], -infinity);
    EXPECT_TRUE(std::isnan(channel.getBkData()[2]));
    channel.addDataFscaleD(3, data.data(), std::nan(""));
    EXPECT_TRUE(std::isnan(channel.getDataWave()[0]));
}

TEST_F(ChannelFilling, AChannelTakesItsOwnSamplesOrAPartOfThem)
{
    for (const State state : allStates) {
        for (const bool fromBackup : {false, true}) {
            for (std::int64_t begin = 0; begin < stateSamples + 3; ++begin) {
                CMDChannelzk channel;
                bringInto(channel, state);
                const double* own = fromBackup ? channel.getBkData() : channel.getDataWave();
                const std::int64_t count = fromBackup ? channel.getBkDataSample() : channel.getTotalSample();
                if (own == nullptr || begin >= count)
                    continue;
                SCOPED_TRACE(::testing::Message()
                             << state << ", from " << begin << (fromBackup ? " of the backup" : ""));
                const std::vector<double> part(own + begin, own + count);
                EXPECT_EQ(channel.addData(count - begin, own + begin), count - begin);
                EXPECT_EQ(contents(channel), readyWith(part));
            }
        }
    }
}

// ---- single samples, and blocks at a place

TEST_F(ChannelFilling, AddData1StoresInBothArraysAndGivesTheWorkingCount)
{
    CMDChannelzk channel;
    bringInto(channel, State::ready);
    EXPECT_EQ(channel.addData1(0, -1.5), 6);
    EXPECT_EQ(channel.addData1(5, infinity), 6);
    EXPECT_THAT(contents(channel).wave, ElementsAre(-1.5, 2, 3, 4, 5, infinity));
    EXPECT_THAT(contents(channel).backup, ElementsAre(-1.5, 102, 103, 104, 105, infinity));
    EXPECT_EQ(channel.m_nCurrentSample, 4);
}

TEST_F(ChannelFilling, AddData1StoresOnlyInArraysThatHaveTheIndex)
{
    CMDChannelzk channel;
    bringInto(channel, State::shorterBackup);
    EXPECT_EQ(channel.addData1(3, 7.5), 6);
    EXPECT_THAT(contents(channel).wave, ElementsAre(1, 2, 3, 7.5, 5, 6));
    EXPECT_THAT(contents(channel).backup, ElementsAre(101, 102, 103));

    CMDChannelzk raw;
    bringInto(raw, State::rawOnly);
    EXPECT_EQ(raw.addData1(1, 7.5), 0);
    EXPECT_THAT(contents(raw).backup, ElementsAre(101, 7.5, 103, 104, 105, 106));
}

TEST_F(ChannelFilling, AddData1OutsideChangesNothingInAnyState)
{
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        for (const std::int64_t index : {std::max(before.total, before.bkTotal), std::int64_t{1} << 61})
            EXPECT_EQ(channel.addData1(index, 9.0), before.total);
        for (const std::int64_t index : negatives)
            EXPECT_EQ(channel.addData1(index, 9.0), before.total);
        EXPECT_EQ(contents(channel), before) << state;
    }
}

TEST_F(ChannelFilling, AddDataInt4IDWritesABlockAtItsPlaceInBothArrays)
{
    CMDChannelzk channel;
    bringInto(channel, State::ready);
    const int data[] = {-7, 8};
    EXPECT_EQ(channel.addDataInt4ID(0, 2, data), 6);
    EXPECT_EQ(channel.addDataInt4ID(4, 2, data), 6);
    EXPECT_THAT(contents(channel).wave, ElementsAre(-7, 8, 3, 4, -7, 8));
    EXPECT_THAT(contents(channel).backup, ElementsAre(-7, 8, 103, 104, -7, 8));
    EXPECT_EQ(channel.m_nCurrentSample, 4);
}

TEST_F(ChannelFilling, AddDataInt4IDRefusesWhatDoesNotFitIntoBothArrays)
{
    const int data[16] = {};
    for (const State state : allStates) {
        SCOPED_TRACE(::testing::Message() << state);
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        const std::int64_t room = std::min(before.total, before.bkTotal);
        EXPECT_EQ(channel.addDataInt4ID(0, room + 1, data), 0);
        EXPECT_EQ(channel.addDataInt4ID(room, 1, data), 0);
        EXPECT_EQ(channel.addDataInt4ID(0, 0, data), 0);
        EXPECT_EQ(channel.addDataInt4ID(0, 1, nullptr), 0);
        for (const std::int64_t n : impossibleCounts) {
            EXPECT_EQ(channel.addDataInt4ID(0, n, data), 0);
            EXPECT_EQ(channel.addDataInt4ID(n, n, data), 0); // the sum of both may overflow
            EXPECT_EQ(channel.addDataInt4ID(n, 1, data), 0);
        }
        for (const std::int64_t n : negatives) {
            EXPECT_EQ(channel.addDataInt4ID(0, n, data), 0);
            EXPECT_EQ(channel.addDataInt4ID(n, 1, data), 0);
        }
        EXPECT_EQ(contents(channel), before);
        if (room > 0) {
            EXPECT_EQ(channel.addDataInt4ID(room - 1, 1, data), before.total);
        }
    }
    host.expectNoMessages();
}

TEST_F(ChannelFilling, UpdateHDTrialDataLOverwritesTheWorkingSamplesAlone)
{
    const std::int32_t data[] = {-1, -2, -3, -4, -5, -6};
    for (const State state : allStates) {
        SCOPED_TRACE(::testing::Message() << state);
        CMDChannelzk channel;
        bringInto(channel, state);
        Contents expected = contents(channel);
        EXPECT_EQ(channel.updateHDTrialDataL(6, data), expected.hasWave ? 1 : 0);
        if (expected.hasWave)
            expected.wave = {-1, -2, -3, -4, -5, -6};
        EXPECT_EQ(contents(channel), expected);
    }
}

TEST_F(ChannelFilling, UpdateHDTrialDataLRefusesAnyOtherCount)
{
    const std::int32_t data[7] = {};
    for (const State state : allStates) {
        CMDChannelzk channel;
        bringInto(channel, state);
        const Contents before = contents(channel);
        for (const std::int64_t n : {std::int64_t{0}, std::int64_t{5}, std::int64_t{7}, std::int64_t{1} << 61})
            EXPECT_EQ(channel.updateHDTrialDataL(n, data), 0);
        for (const std::int64_t n : negatives)
            EXPECT_EQ(channel.updateHDTrialDataL(n, data), 0);
        EXPECT_EQ(channel.updateHDTrialDataL(6, nullptr), 0);
        EXPECT_EQ(contents(channel), before) << state;
        channel.m_nTotalSample = 0; // a count of nothing, with an array or without
        EXPECT_EQ(channel.updateHDTrialDataL(0, data), 0);
    }
}

} // namespace
} // namespace megset::CMDChannelFilling_test
