#include "tests/events/measuredDataset.h"

#include "tests/kit/ScriptedHost.h"

#include <cmath>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData7Measure_test {
namespace {

using ::testing::ElementsAre;

constexpr const char* fewSamples = "More than 3 samples are typically requred for calcualte Standard deviation!?";
constexpr const char* head =
    "name trial, Channel,SelectB, SelectE, LatencyB(ms), LatencyB(ms), Minimum, Mean, Max, RMS, SD, Mean+2SD \n";

// ---- one channel

TEST(MeasureChannel, GivesTheStatisticsOfARange)
{
    const ScriptedHost host;
    MeasuredDataset m({{9, 1, 3, 5, 7, 9}});
    EXPECT_EQ(m.measure(0, 1, 4), 4);
    EXPECT_THAT(m.results(), ElementsAre(1, 4, 7, std::sqrt((1.0 + 9.0 + 25.0 + 49.0) / 4.0)));
    const double sd = std::sqrt((1.0 + 1.0 + 9.0) / 4.0); // without the first sample
    EXPECT_EQ(m.sd, sd);
    EXPECT_EQ(m.plus2, 4.0 + 2.0 * sd);
    host.expectNoMessages();
}

TEST(MeasureChannel, OfOneSampleReportsItsPlainSquareWithTheWarning)
{
    const ScriptedHost host;
    MeasuredDataset m({{0, 0, 3, 0}});
    m.data.m_nSelectStart = m.data.m_nSelectEnd = 2;
    EXPECT_EQ(m.measure(-1, -1, -1), 1);
    EXPECT_THAT(m.results(), ElementsAre(3, 3, 3, 9));
    EXPECT_EQ(m.sd, 0.0);
    EXPECT_EQ(m.plus2, 3.0);
    EXPECT_THAT(host.messages(), ElementsAre(fewSamples));
}

TEST(MeasureChannel, WarnsOfThreeSamplesAndNotOfFour)
{
    const ScriptedHost host;
    MeasuredDataset m({{1, 2, 3, 4, 5}});
    EXPECT_EQ(m.measure(0, 0, 3), 4);
    host.expectNoMessages();
    EXPECT_EQ(m.measure(0, 0, 2), 3);
    EXPECT_THAT(host.messages(), ElementsAre(fewSamples));
    EXPECT_EQ(m.mean, 2.0);
}

TEST(MeasureChannel, AnEndOfMinusOneMakesBothThoseOfTheSelection)
{
    MeasuredDataset m({{9, 1, 3, 5, 7, 9}});
    EXPECT_EQ(m.measure(0, -1, 2), 4);
    EXPECT_EQ(m.measure(0, 0, -1), 4);
    EXPECT_EQ(m.min, 1.0);
}

TEST(MeasureChannel, AllAtOnceGiveTheNumbersOfEachAlone)
{
    const ScriptedHost host;
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.3, 1000.0);
    std::vector<std::vector<double>> channels(11, std::vector<double>(1000));
    for (std::vector<double>& channel : channels)
        for (double& v : channel)
            v = noise(random);
    MeasuredDataset m(channels);
    m.data.m_nSelectEnd = 900;
    for (const auto& [begin, end] : {std::pair(-1, -1), std::pair(5, 777), std::pair(990, 2000)}) {
        std::vector<ChannelStatistics> all(channels.size() + 1, {7});
        ASSERT_EQ(m.data.getMeasurementParamAllChnlSD(begin, end, all), std::ssize(channels));
        for (int i = 0; i < std::ssize(channels); ++i) {
            const ChannelStatistics& v = all[static_cast<std::size_t>(i)];
            EXPECT_EQ(v.samples, m.measure(i, begin, end));
            EXPECT_THAT((std::vector{v.min, v.mean, v.max, v.rms}), ::testing::ElementsAreArray(m.results()));
            EXPECT_EQ(v.sd, m.sd);
            EXPECT_EQ(v.meanPlus2Sd, m.plus2);
        }
        EXPECT_EQ(all.back().samples, 7); // no channel's
    }
    host.expectNoMessages();
}

TEST(MeasureChannel, AllAtOnceWarnOnceOfFewSamples)
{
    const ScriptedHost host;
    MeasuredDataset m({{1, 2, 3, 4, 5}, {1, 2, 3, 4, 5}, {}});
    m.channel(2)._cleanTimeDataC(true);
    std::vector<ChannelStatistics> all(3);
    EXPECT_EQ(m.data.getMeasurementParamAllChnlSD(0, 3, all), 3);
    host.expectNoMessages();
    EXPECT_EQ(m.data.getMeasurementParamAllChnlSD(0, 2, all), 3);
    EXPECT_THAT(host.messages(), ElementsAre(fewSamples));
    EXPECT_EQ(all[1].mean, 2.0);
    EXPECT_EQ(all[2].samples, 0);
    EXPECT_EQ(CMEGDatazk().getMeasurementParamAllChnlSD(0, 2, all), 0);
}

TEST(MeasureChannel, OfMinusOneIsTheCurrentOne)
{
    MeasuredDataset m({{1, 2, 3, 4, 5}, {11, 12, 13, 14, 15}});
    m.data.setCurrentChannel(0, 1);
    EXPECT_EQ(m.measure(-1, 0, 4), 5);
    EXPECT_EQ(m.mean, 13.0);
}

TEST(MeasureChannel, NeedsACurrentChannel)
{
    const ScriptedHost host;
    MeasuredDataset m({{1, 2, 3, 4, 5}});
    m.data.getTrialzk(0)->_cleanTrialChannels();
    EXPECT_EQ(m.measure(-1, 0, 4), 0);
    EXPECT_THAT(host.messages(), ElementsAre("Please select a channel for measurement!?"));
    EXPECT_THAT(m.results(), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(m.sd, 0.0);
    EXPECT_EQ(m.plus2, 0.0);
}

TEST(MeasureChannel, GivesZeroForAMissingChannelAndWithoutTrial)
{
    const ScriptedHost host;
    MeasuredDataset m({{1, 2, 3, 4, 5}});
    EXPECT_EQ(m.measure(1, 0, 4), 0);
    EXPECT_EQ(m.measure(-2, 0, 4), 0);
    EXPECT_THAT(m.results(), ElementsAre(0, 0, 0, 0));
    m.data._cleanDatasetTrials();
    EXPECT_EQ(m.measure(0, 0, 4), 0);
    host.expectNoMessages();
}

TEST(MeasureChannel, TellsThePlaceTheNumbersAndTheHeadLast)
{
    MeasuredDataset m({{9, 1, 3, 5, 7, 9}, {9, 1, 3, 5, 7, 9}});
    m.data.setCurrentChannel(0, 1);
    EXPECT_EQ(m.data.getMeasurementResults1ChnlSD(),
              CString(" Run1 0 1 1 4 -1.000000 2.000000 1.000000 4.000000 7.000000 4.582576 1.658312 7.316625 ") +
                  head);
}

TEST(MeasureChannel, HasAWordForEachThingThatIsMissing)
{
    const ScriptedHost host;
    CMEGDatazk data;
    EXPECT_EQ(data.getMeasurementResults1ChnlSD(), "Empty");
    EXPECT_EQ(data.getMeasurementResultsX(), "Empty");
    EXPECT_EQ(data.getMeasurementResultsT(), "Unknown Trial");
    ASSERT_EQ(data.m_ppTrial.allocate(1), 1);
    EXPECT_EQ(data.getMeasurementResults1ChnlSD(), "Non");
    EXPECT_EQ(data.getMeasurementResultsX(), "Non");
    data.m_nTotalTrial = 1;
    EXPECT_EQ(data.getMeasurementResults1ChnlSD(), "Open Trial error");
    EXPECT_EQ(data.m_nCurrentTrial, 0) << "a negative one is reset";
    data.m_nCurrentTrial = -1;
    EXPECT_EQ(data.getMeasurementResultsX(), "Open Trial error");
    EXPECT_EQ(data.m_nCurrentTrial, 0);
    data.m_ppTrial.set(0, std::make_unique<CMDTrialzk>());
    EXPECT_EQ(data.getMeasurementResults1ChnlSD(), "No Channel");
}

// ---- many channels

TEST(MeasureChannels, InModeZeroTakesTheMeanOfEach)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}, {0, 2, 4, 2, 4}, {9, -5, -5, -5, -5}});
    EXPECT_EQ(m.measureAll(false, 0, 2), 3);
    EXPECT_THAT(m.results(), ElementsAre(-5, (1.0 + 3.0 - 5.0) / 3.0, 3, std::sqrt((1.0 + 9.0 + 25.0) / 3.0)));
}

TEST(MeasureChannels, InModeOneTheFourthResultIsALargestMeanSquare)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}, {0, 2, 4, 2, 4}, {9, -3, -2, -3, -2}});
    EXPECT_EQ(m.measureAll(false, 1, 2), 3);
    EXPECT_THAT(m.results(), ElementsAre(-3, (1.0 + 3.0 - 2.5) / 3.0, 4, (4.0 + 16.0 + 4.0 + 16.0) / 4.0));
}

TEST(MeasureChannels, OfAKind)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}, {0, 2, 2, 2, 2}, {0, 3, 3, 3, 3}, {0, 4, 4, 4, 4}, {0, 5, 5, 5, 5}});
    const int types[] = {100, 302, 600, 10};
    for (int i = 0; i < 4; ++i)
        m.channel(i).m_nChannelType = types[i];
    m.data.getTrialzk(0)->m_ppChannel.set(4, nullptr);
    EXPECT_EQ(m.measureAll(false, 0, 0), 1);
    EXPECT_EQ(m.mean, 1.0);
    EXPECT_EQ(m.measureAll(false, 0, 1), 1);
    EXPECT_EQ(m.mean, 2.0);
    EXPECT_EQ(m.measureAll(false, 0, 2), 4) << "every channel there is, triggers too";
    EXPECT_EQ(m.mean, 2.5);
    EXPECT_EQ(m.measureAll(false, 0, 77), 4);
    m.data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(m.measureAll(true, 0, 2), 3);
    EXPECT_EQ(m.min, 2.0);
}

TEST(MeasureChannels, OfEegAreThoseThatMeasure)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}, {0, 2, 2, 2, 2}, {0, 6, 6, 6, 6}});
    m.channel(0).m_nChannelType = 300; // no measure channel
    m.channel(1).m_nChannelType = 302;
    m.channel(2).m_nChannelType = 303;
    EXPECT_EQ(m.measureAll(false, 0, 1), 2);
    EXPECT_EQ(m.mean, 4.0);
}

TEST(MeasureChannels, GivesZeroWithNoChannelAndWithoutTrial)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}});
    for (const int mode : {0, 1}) {
        EXPECT_EQ(m.measureAll(false, mode, 0), 0);
        EXPECT_THAT(m.results(), ElementsAre(0, 0, 0, 0));
    }
    m.data._cleanDatasetTrials();
    m.min = m.mean = m.max = m.rms = 42;
    EXPECT_EQ(m.measureAll(false, 0, 2), 0);
    EXPECT_THAT(m.results(), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(m.measureNamed("", false, 0), 0);
}

TEST(MeasureChannels, AChannelWithoutSamplesCountsWithZero)
{
    MeasuredDataset m({{0, 4, 4, 4, 4}, {0, 2, 2, 2, 2}});
    m.channel(1)._cleanTimeDataC(true);
    EXPECT_EQ(m.measureAll(false, 0, 2), 2);
    EXPECT_THAT(m.results(), ElementsAre(0, 2, 4, std::sqrt(8.0)));
}

TEST(MeasureChannels, WhoseNameContainsAText)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}, {0, 2, 2, 2, 2}, {0, 3, 3, 3, 3}});
    m.channel(0).m_strChannelName = "MLC11";
    m.channel(1).m_strChannelName = "MRC11";
    m.channel(2).m_strChannelName = "Cz";
    EXPECT_EQ(m.measureNamed("C11", false, 0), 2);
    EXPECT_EQ(m.mean, 1.5);
    EXPECT_EQ(m.measureNamed("", false, 0), 3);
    EXPECT_EQ(m.measureNamed("MLC11-2", false, 0), 0);
    m.data.setShowChnl4Alltrials(0, 0);
    EXPECT_EQ(m.measureNamed("C11", true, 1), 1);
    EXPECT_THAT(m.results(), ElementsAre(2, 2, 2, 4));
    m.data.getTrialzk(0)->m_ppChannel.set(1, nullptr);
    EXPECT_EQ(m.measureNamed("C11", false, 0), 1);
}

TEST(MeasureChannels, AsTextOfTheShownOnes)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}, {0, 3, 3, 3, 3}, {0, 8, 8, 8, 8}});
    m.data.setShowChnl4Alltrials(2, 0);
    EXPECT_EQ(m.data.getMeasurementResultsT(), "1.000000      2.000000      3.000000    2.236068 ");
    m.data.setShowChnl4Alltrials(0, 0);
    m.data.setShowChnl4Alltrials(1, 0);
    EXPECT_EQ(m.data.getMeasurementResultsT(), "0.000000      0.000000      0.000000    0.000000 ");
}

TEST(MeasureChannels, AsARowOfATable)
{
    MeasuredDataset m({{0, 1, 1, 1, 1}, {0, 3, 3, 3, 3}});
    EXPECT_EQ(m.data.getMeasurementResultsX(),
              " Run1      0      1      -1.000000      1.000000      2.000000      3.000000    2.236068 \n");
}

TEST(MeasureChannels, AgreesWithEveryChannelOnItsOwn)
{
    std::mt19937 random(5);
    std::normal_distribution<double> noise(0.0, 100.0);
    std::vector<std::vector<double>> samples(67, std::vector<double>(501));
    for (auto& x : samples)
        for (double& v : x)
            v = noise(random);
    MeasuredDataset m(samples);
    m.data.m_nSelectEnd = 333;
    double sum = 0.0, sumOfMeans = 0.0, squares = 0.0, largest = 0.0;
    for (int i = 0; i < 67; ++i) {
        const double v = m.channel(i).getCurrentV(1, 333);
        double min, mean, max, meanSquare;
        m.channel(i).getSelectMinMeaMaxV(1, 333, &min, &mean, &max, &meanSquare);
        sum += v;
        squares += v * v;
        sumOfMeans += mean;
        largest = std::max(largest, meanSquare);
    }
    EXPECT_EQ(m.measureAll(false, 0, 2), 67);
    EXPECT_EQ(m.mean, sum / 67.0);
    EXPECT_EQ(m.rms, std::sqrt(squares / 67.0));
    EXPECT_EQ(m.measureAll(false, 1, 2), 67);
    EXPECT_EQ(m.mean, sumOfMeans / 67.0);
    EXPECT_EQ(m.rms, largest);
}

TEST(MeasureChannels, TheMeansOfManyAreThoseOfEachToTheBit)
{
    MeasuredDataset m({{0.1, 0.2, 0.3, 0.7}, {-0.0}, {5, 6}});
    m.channel(2)._cleanTimeDataC(false);
    const std::vector<const CMDChannel*> channels = {&m.channel(0), nullptr, &m.channel(1), &m.channel(2)};
    for (const std::int64_t from : {0, 1, 3, 9})
        for (const std::int64_t to : {-2, -1, 0, 2, 9}) {
            std::vector<ChannelMeans> out(5);
            CMDChannel::getSelectMinMeaMaxV(channels, from, to, out);
            for (std::size_t i = 0; i < channels.size(); ++i) {
                ChannelMeans one;
                if (channels[i] != nullptr) {
                    one.samples =
                        channels[i]->getSelectMinMeaMaxV(from, to, &one.min, &one.mean, &one.max, &one.meanSquare);
                    one.current = channels[i]->getCurrentV(from, to);
                }
                EXPECT_EQ(out[i].samples, one.samples);
                EXPECT_EQ(out[i].min, one.min);
                EXPECT_EQ(out[i].mean, one.mean);
                EXPECT_EQ(out[i].max, one.max);
                EXPECT_EQ(out[i].meanSquare, one.meanSquare);
                EXPECT_EQ(out[i].current, one.current);
                EXPECT_EQ(std::signbit(out[i].mean), std::signbit(one.mean));
            }
        }
}

// ---- the range at a sample

TEST(RangeAtASample, IsOfAllChannels)
{
    MeasuredDataset m({{0, 5}, {0, -2}, {0, 9}});
    m.channel(0).m_nChannelType = m.channel(1).m_nChannelType = 100;
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(1, m.min, m.max, false, false), 1);
    EXPECT_EQ(m.min, -2.0);
    EXPECT_EQ(m.max, 9.0);
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(-1, m.min, m.max, true, false), 1) << "the selection's start";
    EXPECT_EQ(m.max, 5.0);
    m.data.setGoodChnl4Alltrials(1, 0);
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(1, m.min, m.max, false, true), 1);
    EXPECT_EQ(m.min, 5.0);
}

TEST(RangeAtASample, PassesOverChannelsThatEndBefore)
{
    MeasuredDataset m({{0, 5, 6}, {0, -2}, {7, 7, 7}});
    m.channel(2)._cleanTimeDataC(false);
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(2, m.min, m.max, false, false), 1);
    EXPECT_EQ(m.min, 6.0);
    EXPECT_EQ(m.max, 6.0);
}

TEST(RangeAtASample, NeedsASampleOfTheCurrentChannel)
{
    MeasuredDataset m({{0, 5}, {0, -2, 3}});
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(2, m.min, m.max, false, false), 0);
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(-2, m.min, m.max, false, false), 0);
    EXPECT_EQ(m.min, 0.0);
    EXPECT_EQ(m.max, 0.0);
    m.data.getTrialzk(0)->_cleanTrialChannels();
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(0, m.min, m.max, false, false), 0);
    CMEGDatazk none;
    EXPECT_EQ(none.getAllChnlDataRng4SelectPt(0, m.min, m.max, false, false), 0);
}

TEST(RangeAtASample, MayLieAsFarAsTheCurrentChannelGoes)
{
    MeasuredDataset m({{0, 5}, {0, -2, 3}});
    m.data.setCurrentChannel(0, 1);
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(2, m.min, m.max, false, false), 1);
    EXPECT_EQ(m.min, 3.0);
    EXPECT_EQ(m.max, 3.0);
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(3, m.min, m.max, false, false), 0);
}

TEST(RangeAtASample, IsZeroWhereNoChannelIsOfTheKind)
{
    MeasuredDataset m({{0, 5}});
    EXPECT_EQ(m.data.getAllChnlDataRng4SelectPt(1, m.min, m.max, true, false), 1);
    EXPECT_EQ(m.min, 0.0);
    EXPECT_EQ(m.max, 0.0);
}

} // namespace
} // namespace megset::CMEGData7Measure_test
