// The selection of a dataset, its values, and times.
#include "megset/core/CMEGData.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <algorithm>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGDataSelection_test {
namespace {

using ::testing::ElementsAre;

constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

// A dataset of one trial with one channel of so many samples.
class SelectedDataset : public CMEGDatazk
{
public:
    explicit SelectedDataset(std::int64_t samples, std::int64_t start = 1, std::int64_t end = 1)
    {
        EXPECT_EQ(initMEGData(1, 1, samples), 1);
        m_nSelectStart = start;
        m_nSelectEnd = end;
    }
    std::vector<std::int64_t> ends() const { return {m_nSelectStart, m_nSelectEnd}; }
};

// ---- by hand

TEST(Selection, IsOfOneSampleForEqualEnds)
{
    SelectedDataset data(10);
    EXPECT_EQ(data.setSelect(5, 5), 1);
    EXPECT_THAT(data.ends(), ElementsAre(5, 5));
    std::int64_t from = -1;
    std::int64_t to = -1;
    EXPECT_EQ(data.getSelect(from, to), 1);
    EXPECT_EQ(from, 5);
    EXPECT_EQ(to, 5);
}

TEST(Selection, EndsAtTheSecondArgumentEvenWhereThatIsTheSmaller)
{
    SelectedDataset data(20);
    EXPECT_EQ(data.setSelect(10, 5), 1);
    EXPECT_THAT(data.ends(), ElementsAre(5, 5));
}

TEST(Selection, IsBroughtIntoTheTrialWhenItIsSet)
{
    SelectedDataset data(10);
    data.setSelect(-5, 99);
    EXPECT_THAT(data.ends(), ElementsAre(0, 9));
    data.setSelect(10, 10);
    EXPECT_THAT(data.ends(), ElementsAre(9, 9));
    data.setSelect(smallest, largest);
    EXPECT_THAT(data.ends(), ElementsAre(0, 9));
    data.setSelect(largest, smallest);
    EXPECT_THAT(data.ends(), ElementsAre(0, 0));
}

TEST(Selection, TakesTheTotalFromTheFirstChannel)
{
    SelectedDataset data(10);
    data.initMEGData(1, 2, 10);
    data.getMDTrial(0)->getChannel(1)->initData(100, true);
    data.getMDTrial(0)->m_nCurrentChannel = 1;
    data.setSelect(2, 50);
    EXPECT_THAT(data.ends(), ElementsAre(2, 9));
}

TEST(Selection, OfAnEmptyDatasetIsNone)
{
    CMEGDatazk data;
    std::int64_t from = 7;
    std::int64_t to = 7;
    EXPECT_EQ(data.getSelect(from, to), 0);
    EXPECT_EQ(from, 0);
    EXPECT_EQ(to, 0);
    EXPECT_EQ(data.setSelect(1, 2), 0);
    EXPECT_EQ(data.nextSelect(5, false), 0);
}

TEST(Selection, OfATrialWithoutChannelsIsTold)
{
    CMEGDatazk data;
    data.m_ppTrial.allocate(1);
    data.m_ppTrial.set(0, std::make_unique<CMDTrialzk>());
    data.m_nTotalTrial = 1;
    data.m_nCurrentTrial = 0;
    std::int64_t from = 7;
    std::int64_t to = 7;
    EXPECT_EQ(data.getSelect(from, to), -1);
    EXPECT_EQ(from, 0);
    EXPECT_EQ(to, 0);
    EXPECT_EQ(data.setSelect(4, 6), 0);
    EXPECT_EQ(data.m_nSelectStart, 1);
    EXPECT_EQ(data.nextSelect(5, false), 0);
}

TEST(Selection, MovesBeforeAnythingIsChecked)
{
    CMEGDatazk data;
    data.m_nSelectStart = 3;
    data.m_nSelectEnd = 7;
    EXPECT_EQ(data.nextSelect(-10, true), 0);
    EXPECT_EQ(data.m_nSelectStart, -7);
    EXPECT_EQ(data.m_nSelectEnd, -3);
}

TEST(Selection, IsNoneForChannelsWithoutSamplesAndStaysAsItIs)
{
    SelectedDataset data(0, 3, 7);
    std::int64_t from = 9;
    std::int64_t to = 9;
    EXPECT_EQ(data.getSelect(from, to), 0);
    EXPECT_EQ(from, 0);
    EXPECT_EQ(to, 0);
    EXPECT_THAT(data.ends(), ElementsAre(3, 7));
    EXPECT_EQ(data.setSelect(3, 7), 1);
    EXPECT_THAT(data.ends(), ElementsAre(0, 0));
}

TEST(NextSelect, MovesBothEnds)
{
    SelectedDataset data(100, 10, 19);
    EXPECT_EQ(data.nextSelect(10, false), 20);
    EXPECT_THAT(data.ends(), ElementsAre(20, 29));
    EXPECT_EQ(data.nextSelect(-5, true), 15);
    EXPECT_THAT(data.ends(), ElementsAre(15, 24));
}

TEST(NextSelect, WithoutWrapStopsAtTheStart)
{
    SelectedDataset data(20, 3, 7);
    EXPECT_EQ(data.nextSelect(-10, false), 0);
    EXPECT_THAT(data.ends(), ElementsAre(0, 4));
}

TEST(NextSelect, WithWrapGoesFromTheStartToTheEnd)
{
    SelectedDataset data(20, 3, 7);
    EXPECT_EQ(data.nextSelect(-10, true), 15);
    EXPECT_THAT(data.ends(), ElementsAre(15, 19));
}

TEST(NextSelect, WithoutWrapStopsAtTheEnd)
{
    SelectedDataset data(20, 12, 16);
    EXPECT_EQ(data.nextSelect(10, false), 15);
    EXPECT_THAT(data.ends(), ElementsAre(15, 19));
}

TEST(NextSelect, WithWrapGoesFromTheEndToTheStart)
{
    SelectedDataset data(20, 12, 16);
    EXPECT_EQ(data.nextSelect(10, true), 0);
    EXPECT_THAT(data.ends(), ElementsAre(0, 4));
}

TEST(NextSelect, WithoutWrapTakesTheWholeTrialForALengthOfTheTotalOrMore)
{
    for (const std::int64_t length : {20, 21, 500}) {
        for (const int step : {-10, 10, 0}) {
            SelectedDataset data(20, 3, 3 + length);
            EXPECT_EQ(data.nextSelect(step, false), 0);
            EXPECT_THAT(data.ends(), ElementsAre(0, 19)) << length << " by " << step;
        }
    }
}

TEST(NextSelect, WithWrapAndTooLongALengthStoresANegativeStart)
{
    SelectedDataset data(20, 3, 33);
    EXPECT_EQ(data.nextSelect(-10, true), -11);
    EXPECT_THAT(data.ends(), ElementsAre(-11, 19));
    // Reading the selection mends it.
    std::int64_t from = 0;
    std::int64_t to = 0;
    EXPECT_EQ(data.getSelect(from, to), 20);
    EXPECT_THAT(data.ends(), ElementsAre(0, 19));
}

TEST(NextSelect, TakesAReversedSelectionForOneSample)
{
    SelectedDataset data(20, 8, 2);
    EXPECT_EQ(data.nextSelect(1, false), 9);
    EXPECT_THAT(data.ends(), ElementsAre(9, 9));
}

// ---- against a plain transcription

__extension__ typedef __int128 Wide;

struct PlainSelection
{
    Wide start;
    Wide end;

    Wide set(Wide a, Wide b, Wide total)
    {
        start = a < b ? a : b;
        end = b;
        for (Wide* value : {&start, &end}) {
            if (*value >= total)
                *value = total - 1;
            if (*value < 0)
                *value = 0;
        }
        return 1;
    }
    Wide get(Wide total)
    {
        if (start < 0)
            start = 0;
        if (start >= total)
            start = total - 1;
        if (end < start)
            end = start;
        if (end >= total)
            end = total - 1;
        return end - start + 1;
    }
    Wide next(Wide step, bool wrap, Wide total)
    {
        // Lengths and ends stop at what 64 bits hold.
        const Wide length = std::min<Wide>((end > start ? end : start) - start, largest);
        start = std::clamp<Wide>(start + step, smallest, largest);
        end = std::clamp<Wide>(end + step, smallest, largest);
        if (start < 0) {
            if (wrap) {
                start = total - length - 1;
            } else {
                start = 0;
                end = length;
            }
            if (wrap || length >= total)
                end = total - 1;
        }
        if (end >= total) {
            if (wrap) {
                end = length;
                start = 0;
            } else {
                end = total - 1;
                start = total - length - 1;
                if (start >= 0)
                    return start;
                start = 0;
            }
        }
        if (end < start)
            end = start;
        return start;
    }
};

class RandomStates : public ::testing::Test
{
protected:
    // Mostly around the trial, now and then anywhere up to the ends of 64 bits.
    std::int64_t end(std::int64_t total)
    {
        const std::int64_t extremes[] = {smallest, smallest + 1, smallest + 7, largest - 7, largest - 1, largest};
        const int kind = small(0, 9);
        if (kind == 0)
            return extremes[small(0, 5)];
        if (kind == 1)
            return std::uniform_int_distribution<std::int64_t>(smallest, largest)(m_random);
        return std::uniform_int_distribution<std::int64_t>(-total - 5, 2 * total + 5)(m_random);
    }
    int step()
    {
        const int extremes[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
        return small(0, 9) == 0 ? extremes[small(0, 1)] : small(-40, 40);
    }
    int small(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

    static constexpr int rounds = 30000;
    std::mt19937 m_random{20261121};
};

TEST_F(RandomStates, AreSetAsThePlainStepsSay)
{
    for (const std::int64_t total : {1, 2, 13}) {
        SelectedDataset data(total);
        for (int i = 0; i < rounds; ++i) {
            const std::int64_t a = end(total);
            const std::int64_t b = end(total);
            PlainSelection plain{};
            ASSERT_TRUE(data.setSelect(a, b) == plain.set(a, b, total));
            ASSERT_TRUE(data.m_nSelectStart == plain.start && data.m_nSelectEnd == plain.end) << a << ' ' << b;
        }
    }
}

TEST_F(RandomStates, AreReadAsThePlainStepsSay)
{
    for (const std::int64_t total : {1, 2, 13}) {
        SelectedDataset data(total);
        for (int i = 0; i < rounds; ++i) {
            const std::int64_t a = end(total);
            const std::int64_t b = end(total);
            PlainSelection plain{a, b};
            data.m_nSelectStart = a;
            data.m_nSelectEnd = b;
            std::int64_t from = 0;
            std::int64_t to = 0;
            ASSERT_TRUE(data.getSelect(from, to) == plain.get(total)) << a << ' ' << b;
            ASSERT_TRUE(from == plain.start && to == plain.end) << a << ' ' << b;
            ASSERT_THAT(data.ends(), ElementsAre(from, to));
        }
    }
}

TEST_F(RandomStates, MoveAsThePlainStepsSay)
{
    for (const std::int64_t total : {0, 1, 2, 13}) {
        SelectedDataset data(total);
        for (int i = 0; i < rounds; ++i) {
            const std::int64_t a = end(total);
            const std::int64_t b = end(total);
            const int by = step();
            const bool wrap = small(0, 1) == 1;
            PlainSelection plain{a, b};
            data.m_nSelectStart = a;
            data.m_nSelectEnd = b;
            const auto told = [&] { return ::testing::Message() << a << ".." << b << " by " << by << ' ' << wrap; };
            const std::int64_t result = data.nextSelect(by, wrap);
            ASSERT_TRUE(result == plain.next(by, wrap, total)) << told();
            ASSERT_TRUE(data.m_nSelectStart == plain.start && data.m_nSelectEnd == plain.end) << told();
        }
    }
}

// ---- values of the selection

class SelectedValues : public ::testing::Test
{
protected:
    void fill(int channelType, const std::vector<double>& values)
    {
        EXPECT_EQ(data.initMEGData(1, 1, 1), 1);
        channel()->m_nChannelType = channelType;
        channel()->addData(std::ssize(values), values.data());
    }
    CMDChannelzk* channel() { return data.getMDTrial(0)->getChannel(0); }
    CString text(int peak) { return data.getSelectDataValueUnit(0, 0, 99, peak); }

    CMEGDatazk data;
};

TEST_F(SelectedValues, AreMeansOfTheRange)
{
    fill(100, {1.0, 2.0, 6.0, 9.0});
    EXPECT_EQ(data.getSelectData(0, 1, 2), 4.0);
    EXPECT_EQ(data.getSelectData(-1, 0, 3), 4.5);
    EXPECT_EQ(data.getSelectData(1, 0, 3), 0.0);
}

TEST_F(SelectedValues, TakeTheEndsOfTheSelectionForMinusOne)
{
    fill(100, {1.0, 2.0, 6.0, 9.0});
    data.setSelect(2, 3);
    EXPECT_EQ(data.getSelectData(0, -1, -1), 7.5);
    EXPECT_EQ(data.getSelectData(0, 1, -1), 17.0 / 3.0);
    EXPECT_EQ(data.getSelectData(0, -1, 2), 6.0);
    EXPECT_EQ(data.getSelectDataValueUnit(0, -1, -1, 0), "8fT");
}

TEST_F(SelectedValues, AreShownInFemtoAndPicotesla)
{
    fill(100, {999.4, 999.4});
    EXPECT_EQ(text(0), "999fT");
    fill(100, {1000.0});
    EXPECT_EQ(text(0), "1.00pT");
    fill(10, {-12345.0});
    EXPECT_EQ(text(0), "-12.35pT");
    fill(100, {-999.0});
    EXPECT_EQ(text(0), "-999fT");
}

TEST_F(SelectedValues, AreShownInMicroAndMillivolts)
{
    fill(302, {12.4});
    EXPECT_EQ(text(0), "12uV");
    fill(302, {-2500.0});
    EXPECT_EQ(text(0), "-2.50mV");
}

TEST_F(SelectedValues, OfOtherChannelsAreNotShown)
{
    fill(600, {3.0});
    EXPECT_EQ(text(0), "");
    EXPECT_EQ(text(1), "");
}

TEST_F(SelectedValues, AreThePeakWithTheLargerAbsoluteValue)
{
    fill(100, {-7.0, 3.0, 1.0});
    EXPECT_EQ(text(1), "-7fT");
    EXPECT_EQ(text(0), "-1fT");
    fill(100, {-7.0, 8.0, 1.0});
    EXPECT_EQ(text(1), "8fT");
}

TEST_F(SelectedValues, AreTheMinimumWherePeaksAreEqual)
{
    fill(100, {5.0, -5.0});
    EXPECT_EQ(text(1), "-5fT");
}

TEST_F(SelectedValues, AreOutOfRangeForABadChannel)
{
    fill(100, {1.0});
    EXPECT_EQ(data.getSelectDataValueUnit(1, 0, 0, 0), "OutRange");
    EXPECT_EQ(data.getSelectDataValueUnit(-2, 0, 0, 0), "OutRange");
    EXPECT_EQ(data.getSelectUnit(1), "OutRange");
}

TEST_F(SelectedValues, AreNoneWithoutATrial)
{
    EXPECT_EQ(data.getSelectDataValueUnit(0, 0, 0, 0), "None");
    EXPECT_EQ(data.getSelectUnit(0), "None");
}

TEST_F(SelectedValues, HaveTheUnitOfTheirChannel)
{
    fill(100, {1.0});
    EXPECT_EQ(data.getSelectUnit(0), "fT");
    channel()->m_nChannelType = 302;
    EXPECT_EQ(data.getSelectUnit(-1), "uV");
    channel()->m_nChannelType = 600;
    EXPECT_EQ(data.getSelectUnit(0), "u");
}

// ---- time

class Times : public ::testing::Test
{
protected:
    void record(double rate, std::int64_t preTrigger)
    {
        data.m_recordInfo.m_dRecSampleRate = rate;
        data.m_recordInfo.m_nRecPreTrigPts = preTrigger;
    }
    double rate() const { return data.m_recordInfo.m_dRecSampleRate; }

    CMEGDatazk data;
};

TEST_F(Times, AreWorkedOutByHand)
{
    record(1000.0, 100);
    EXPECT_EQ(data.getSampleRate(), 1000.0);
    EXPECT_EQ(data.dataPoints2TimeMs(250), 250.0);
    EXPECT_EQ(data.timeMs2DataPoints(250.9), 250);
    EXPECT_EQ(data.timeMs2DataPoints(-250.9), -250);
    EXPECT_DOUBLE_EQ(data.getLatency4ptSecond(350), 0.25);
    EXPECT_EQ(data.getPts4LatencyMs(50.0), 150);
    EXPECT_EQ(data.getPreTrigPts(), 100);
    EXPECT_EQ(data.getPreTrigMsc(), 100.0);
}

TEST_F(Times, FollowTheirFormulasForRandomRates)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> rates(0.1, 20000.0);
    std::uniform_real_distribution<double> times(-5000.0, 5000.0);
    std::uniform_int_distribution<std::int64_t> points(0, 100000);
    for (int i = 0; i < 2000; ++i) {
        const double r = rates(random);
        const double ms = times(random);
        const std::int64_t pre = points(random);
        const std::int64_t n = points(random);
        record(r, pre);
        const auto p = static_cast<double>(pre);
        ASSERT_EQ(data.dataPoints2TimeMs(n), static_cast<double>(n) / r * 1000.0);
        ASSERT_EQ(data.timeMs2DataPoints(ms), static_cast<std::int64_t>(ms / 1000.0 * r));
        ASSERT_EQ(data.getLatency4ptSecond(n), static_cast<double>(n) / r - p / r);
        ASSERT_EQ(data.getPts4LatencyMs(ms), static_cast<std::int64_t>((p / r + ms / 1000.0) * r));
        ASSERT_EQ(data.getPreTrigMsc(), p / r * 1000.0);
    }
}

TEST_F(Times, AreCutAfterTheDivisionSoThatAWholeSampleMayBeMissed)
{
    record(1000.0, 0);
    EXPECT_EQ(data.timeMs2DataPoints(1001.0), 1000); // 1.001 s x 1000 Hz is a little less than 1001
    EXPECT_EQ(data.timeMs2DataPoints(1002.0), 1002);
}

TEST_F(Times, OfLatencyZeroAreThePreTriggerAtUsualRates)
{
    for (const double r : {250.0, 256.0, 500.0, 1000.0, 1024.0, 2000.0}) {
        record(r, static_cast<std::int64_t>(r / 2.0));
        EXPECT_EQ(data.getPts4LatencyMs(0.0), data.getPreTrigPts()) << r;
    }
}

TEST_F(Times, AreHugeAtARateOfZeroAndTheRateIsMadeUsable)
{
    record(0.0, 5);
    EXPECT_EQ(data.timeMs2DataPoints(1000.0), 0);
    EXPECT_EQ(rate(), 0.0);
    EXPECT_GT(data.dataPoints2TimeMs(1), 1e17);
    EXPECT_EQ(rate(), 1e-15);
}

TEST_F(Times, StoreTheUsableRateWhereverTheyReadIt)
{
    for (const double bad : {0.0, -1.0, -1e300}) {
        record(bad, 0);
        data.getLatency4ptSecond(1);
        EXPECT_EQ(rate(), 1e-15);
        record(bad, 0);
        data.getPts4LatencyMs(1.0);
        EXPECT_EQ(rate(), 1e-15);
    }
}

TEST_F(Times, TellOfARateThatIsNotAboveZero)
{
    for (const double bad : {-1.0, 0.0}) {
        const ScriptedHost host;
        record(bad, 0);
        EXPECT_EQ(data.getSampleRate(), 1e-15);
        EXPECT_EQ(rate(), 1e-15);
        EXPECT_THAT(host.messages(), ElementsAre("Sampling rate must be larger than 0!")) << bad;
        EXPECT_EQ(data.getSampleRate(), 1e-15);
        EXPECT_EQ(host.messages().size(), 1U);
    }
}

TEST_F(Times, SetANegativePreTriggerToZero)
{
    record(1000.0, -5);
    EXPECT_EQ(data.getPreTrigPts(), -5);
    EXPECT_EQ(data.getLatency4ptSecond(500), 0.5);
    EXPECT_EQ(data.getPreTrigPts(), 0);
    record(1000.0, -5);
    EXPECT_EQ(data.getPreTrigMsc(), 0.0);
    EXPECT_EQ(data.getPreTrigPts(), 0);
    record(1000.0, -5);
    EXPECT_EQ(data.getPts4LatencyMs(10.0), 10);
    EXPECT_EQ(data.getPreTrigPts(), 0);
}

TEST_F(Times, HaveNoPreTriggerTimeWithoutARateAndLeaveItThen)
{
    record(0.0, -5);
    EXPECT_EQ(data.getPreTrigMsc(), 0.0);
    EXPECT_EQ(rate(), 0.0);
    EXPECT_EQ(data.getPreTrigPts(), -5);
}

TEST_F(Times, StopAtTheEndsOfTheirRange)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    record(1e300, 0);
    EXPECT_EQ(data.timeMs2DataPoints(1e300), largest);
    EXPECT_EQ(data.timeMs2DataPoints(-1e300), smallest);
    EXPECT_EQ(data.timeMs2DataPoints(none), 0);
    EXPECT_EQ(data.getPts4LatencyMs(1e300), largest);
    EXPECT_EQ(data.getPts4LatencyMs(none), 0);
}

} // namespace
} // namespace megset::CMEGDataSelection_test
