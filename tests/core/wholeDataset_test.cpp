// A dataset from its making to its measures, all in memory.
#include "megset/core/CMEGData.h"

#include "tests/core/filedDataset.h"
#include "tests/kit/ScriptedHost.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::wholeDataset_test {
namespace {

constexpr std::int64_t samples = 60;
constexpr double scale = 0.25;

struct Way
{
    const char* name;
    std::function<bool(CMDChannelzk&, const std::vector<std::int32_t>&)> fill;
    double factor = 1.0;
};

template <class T>
std::vector<T> as(const std::vector<std::int32_t>& values)
{
    return {values.begin(), values.end()};
}

bool addOneByOne(CMDChannelzk& channel, const std::vector<std::int32_t>& values)
{
    channel.initData(samples, true);
    for (std::size_t i = 0; i < values.size(); ++i)
        if (channel.addData1(static_cast<std::int64_t>(i), values[i]) != samples)
            return false;
    return true;
}

bool addInTwoPieces(CMDChannelzk& channel, const std::vector<std::int32_t>& values)
{
    constexpr std::int64_t first = 23;
    channel.initData(samples, true);
    return channel.addDataInt4ID(0, first, values.data()) == samples &&
           channel.addDataInt4ID(first, samples - first, values.data() + first) == samples;
}

bool adopt(CMDChannelzk& channel, const std::vector<std::int32_t>& values)
{
    auto* array = new double[values.size()];
    std::copy(values.begin(), values.end(), array);
    return channel.setSizeData(samples, array) == samples;
}

const std::vector<Way>& ways()
{
    using Values = const std::vector<std::int32_t>&;
    static const std::vector<Way> all = {
        {"addData", [](auto& c, Values v) { return c.addData(samples, as<double>(v).data()) == samples; }},
        {"addDataF", [](auto& c, Values v) { return c.addDataF(samples, as<float>(v).data()) == samples; }},
        {"addDataFscaleD",
         [](auto& c, Values v) { return c.addDataFscaleD(samples, as<float>(v).data(), scale) == samples; }, scale},
        {"addDataInt", [](auto& c, Values v) { return c.addDataInt(samples, v.data()) == samples; }},
        {"addDataL", [](auto& c, Values v) { return c.addDataL(samples, v.data()) == samples; }},
        {"addData1", addOneByOne},
        {"addDataInt4ID", addInTwoPieces},
        {"setSizeData", adopt},
    };
    return all;
}

// The measures of a range, each by a loop of its own.
struct Plain
{
    explicit Plain(const std::vector<double>& range)
        : min(*std::min_element(range.begin(), range.end())), max(*std::max_element(range.begin(), range.end())),
          mean(std::accumulate(range.begin(), range.end(), 0.0) / static_cast<double>(range.size()))
    {
        for (const double value : range)
            meanSquare += value * value / static_cast<double>(range.size());
    }
    double min;
    double max;
    double mean;
    double meanSquare = 0.0;
};

class WholeDataset : public ::testing::Test
{
protected:
    static constexpr int trials = 2;

    WholeDataset()
    {
        EXPECT_EQ(data.initMEGData(trials, channels(), samples), 1);
        EXPECT_EQ(data.checkInitChnlParam(data.getMDTrial(0)), 1);
        data.m_recordInfo.m_nRecTotalSample = samples;
        data.m_recordInfo.m_nRecPreTrigPts = 20;
        data.m_recordInfo.m_dRecSampleRate = 500.0;
        for (int t = 0; t < trials; ++t)
            for (int c = 0; c < channels(); ++c)
                fill(t, c);
    }

    static int channels() { return static_cast<int>(ways().size()); }
    static const Way& way(int channel) { return ways()[static_cast<std::size_t>(channel)]; }

    void fill(int trial, int index)
    {
        std::uniform_int_distribution<std::int32_t> values(-9000, 9000);
        std::vector<std::int32_t> block(static_cast<std::size_t>(samples));
        for (std::int32_t& value : block)
            value = values(m_random);
        CMDChannelzk& channel = *data.getMDTrial(trial)->getChannel(index);
        EXPECT_TRUE(way(index).fill(channel, block)) << way(index).name;
        channel.m_nChannelType = index % 2 == 0 ? 100 : 302;
        channel.m_strChannelName = CString::formatted("%d", index);
        std::vector<double> expected;
        for (const std::int32_t value : block)
            expected.push_back(value * way(index).factor);
        m_expected[{trial, index}] = expected;
    }

    std::vector<double> range(int trial, int index, std::int64_t from, std::int64_t to) const
    {
        const auto& all = m_expected.at({trial, index});
        return {all.begin() + from, all.begin() + to + 1};
    }

    void expectMeasures(int trial, int index, std::int64_t from, std::int64_t to)
    {
        SCOPED_TRACE(::testing::Message() << way(index).name << ", trial " << trial << ": " << from << ".." << to);
        const CMDChannelzk& channel = *data.getMDTrial(trial)->getChannel(index);
        const std::vector<double> expected = range(trial, index, from, to);
        std::vector<double> read(expected.size(), -1.0);
        double* target = read.data();
        EXPECT_EQ(channel.getSelectData(target, from, to), std::ssize(expected));
        EXPECT_EQ(read, expected);
        const Plain plain(expected);
        double min = 0.0;
        double mean = 0.0;
        double max = 0.0;
        double meanSquare = 0.0;
        EXPECT_EQ(channel.getSelectMinMeaMaxV(from, to, &min, &mean, &max, &meanSquare), std::ssize(expected));
        EXPECT_EQ(min, plain.min);
        EXPECT_EQ(max, plain.max);
        EXPECT_NEAR(mean, plain.mean, 1e-9);
        EXPECT_NEAR(meanSquare, plain.meanSquare, 1e-6);
        if (trial == data.getCurrentTrialIndx())
            expectTexts(index, plain);
    }

    // What the dataset says of its selection, in the current trial.
    void expectTexts(int index, const Plain& plain)
    {
        EXPECT_NEAR(data.getSelectData(index, -1, -1), plain.mean, 1e-9);
        const double peak = std::fabs(plain.max) > std::fabs(plain.min) ? plain.max : plain.min;
        EXPECT_EQ(data.getSelectDataValueUnit(index, -1, -1, 1), text(index, peak));
        EXPECT_EQ(data.getSelectDataValueUnit(index, -1, -1, 0), text(index, data.getSelectData(index, -1, -1)));
    }

    static CString text(int index, double value)
    {
        const bool meg = index % 2 == 0;
        std::array<char, 64> buffer = {};
        if (std::fabs(value) < 1000.0)
            std::snprintf(buffer.data(), buffer.size(), meg ? "%.0ffT" : "%.0fuV", value);
        else
            std::snprintf(buffer.data(), buffer.size(), meg ? "%.2fpT" : "%.2fmV", value / 1000.0);
        return buffer.data();
    }

    CMEGDatazk data;
    std::map<std::pair<int, int>, std::vector<double>> m_expected;
    std::mt19937 m_random{42};
};

TEST_F(WholeDataset, FilledInEveryWayReadsBackAndMeasuresTheSame)
{
    const ScriptedHost host;
    for (int t = 0; t < trials; ++t) {
        for (int c = 0; c < channels(); ++c) {
            const CMDChannelzk& channel = *data.getMDTrial(t)->getChannel(c);
            EXPECT_EQ(wave(channel), m_expected.at({t, c})) << way(c).name;
            EXPECT_EQ(backup(channel), m_expected.at({t, c})) << way(c).name;
        }
    }
    data.setSelect(0, 9);
    for (int step = 0; step < 12; ++step) {
        std::int64_t from = 0;
        std::int64_t to = 0;
        ASSERT_EQ(data.getSelect(from, to), 10);
        for (int t = 0; t < trials; ++t)
            for (int c = 0; c < channels(); ++c)
                expectMeasures(t, c, from, to);
        data.nextSelect(10, true);
    }
    host.expectNoMessages();
}

TEST_F(WholeDataset, TellsTheTimesOfItsSelection)
{
    data.setSelect(data.getPts4LatencyMs(0.0), data.getPts4LatencyMs(40.0));
    std::int64_t from = 0;
    std::int64_t to = 0;
    EXPECT_EQ(data.getSelect(from, to), 21);
    EXPECT_EQ(from, 20);
    EXPECT_DOUBLE_EQ(data.getLatency4ptSecond(to), 0.04);
    EXPECT_DOUBLE_EQ(data.dataPoints2TimeMs(to), 80.0);
}

TEST_F(WholeDataset, SelectsAloneInOneSampleAtEitherEnd)
{
    for (const std::int64_t at : {std::int64_t{0}, samples - 1}) {
        data.setSelect(at, at);
        for (int c = 0; c < channels(); ++c)
            expectMeasures(0, c, at, at);
    }
}

} // namespace
} // namespace megset::wholeDataset_test
