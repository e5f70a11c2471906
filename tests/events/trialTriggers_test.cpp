// Scans of one trial.
#include "tests/events/stimulusDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::trialTriggers_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Scan = int (CMEGData6Classify::*)(CMarkerManagerzk&, CMDTrialzk*, TrigScanParam*);

constexpr Scan plainScan = &CMEGData6Classify::getTrialTriggers;
constexpr Scan conditionedScans[] = {&CMEGData6Classify::getTrialTrigPro, &CMEGData6Classify::getTrialTrigAbsDc,
                                     &CMEGData6Classify::getTrialTrigAbsDcM};
constexpr Scan allScans[] = {&CMEGData6Classify::getTrialTriggers, &CMEGData6Classify::getTrialTrigPro,
                             &CMEGData6Classify::getTrialTrigAbsDc, &CMEGData6Classify::getTrialTrigAbsDcM};

std::vector<Occurrence> scan(StimulusTrial& trial, Scan how, double threshold)
{
    CMarkerManagerzk out;
    out.m_trigScanParam.m_dTrigThreshold = threshold;
    const int found = (trial.data.*how)(out, nullptr, nullptr);
    EXPECT_EQ(found, out.getTotalMarkers());
    return occurrences(out);
}

const double notANumber = std::nan("");
const double infinity = std::numeric_limits<double>::infinity();

// ---- the two rules

TEST(TrialTriggers, AFlatChannelGivesNone)
{
    for (const Scan how : allScans) {
        StimulusTrial trial({std::vector<double>(50)});
        EXPECT_THAT(scan(trial, how, 0.5), IsEmpty());
    }
}

TEST(TrialTriggers, InThePlainScanARunIsOnePointWhoseBeginSampleMovesAlong)
{
    StimulusTrial trial({{0, 0, 5, 5, 5, 0, 0}});
    // Both samples are the last one; the begin stays in ms at the first, and the end is in seconds.
    EXPECT_THAT(scan(trial, plainScan, 2.5), ElementsAre(Occurrence(4, 4, 2.0, 0.004, 5, 5)));
    EXPECT_EQ(trial.channel(1).m_dDataMean, 15.0 / 7.0);
    EXPECT_THAT(wave(trial.channel(1)), ElementsAre(0, 0, 5, 5, 5, 0, 0)) << "the samples stay";
}

TEST(TrialTriggers, InTheProScanEachSampleOfARunIsAPoint)
{
    StimulusTrial trial({{0, 0, 5, 5, 5, 0, 0}});
    EXPECT_THAT(scan(trial, &CMEGData6Classify::getTrialTrigPro, 2.5),
                ElementsAre(Occurrence(2, 0, 2.0, 0.0, 2, 2), Occurrence(3, 0, 3.0, 0.0, 2, 2),
                            Occurrence(4, 0, 4.0, 0.0, 2, 2)));
    EXPECT_EQ(trial.channel(1).getDataWave()[3], 5.0 - 15.0 / 7.0) << "2.86, of which 2 is the value";
}

TEST(TrialTriggers, InTheProScanSamplesApartAreOnePoint)
{
    StimulusTrial trial({pulses(20, {{3, 8.0}, {10, 8.0}})});
    EXPECT_THAT(scan(trial, &CMEGData6Classify::getTrialTrigPro, 2.5),
                ElementsAre(Occurrence(10, 10, 3.0, 0.010, 7, 7)));
}

TEST(TrialTriggers, TheTwoRulesSideBySide)
{
    const std::vector<double> samples = pulses(20, {{3, 5.0}, {4, 6.0}, {10, 5.0}, {11, 5.0}, {15, 5.0}});
    StimulusTrial plain({samples});
    EXPECT_THAT(scan(plain, plainScan, 2.0),
                ElementsAre(Occurrence(4, 4, 3.0, 0.004, 5, 6), Occurrence(11, 11, 10.0, 0.011, 5, 5),
                            Occurrence(15, 0, 15.0, 0.0, 5, 5)));
    StimulusTrial conditioned({samples});
    EXPECT_THAT(scan(conditioned, &CMEGData6Classify::getTrialTrigAbsDc, 2.0),
                ElementsAre(Occurrence(3, 0, 3.0, 0.0, 5, 5), Occurrence(10, 10, 4.0, 0.010, 6, 5),
                            Occurrence(15, 15, 11.0, 0.015, 5, 5)));
}

TEST(TrialTriggers, ThePlainScanTestsTheDistanceFromTheMeanBothWays)
{
    StimulusTrial trial({{10, 10, 2, 10, 10, 10, 19, 10}}); // mean 91 / 8
    EXPECT_THAT(scan(trial, plainScan, 5.0),
                ElementsAre(Occurrence(2, 0, 2.0, 0.0, 2, 2), Occurrence(6, 0, 6.0, 0.0, 19, 19)));
}

TEST(TrialTriggers, ASampleAtTheThresholdIsNotAboveIt)
{
    StimulusTrial trial({{0, 3, 0, 4, 0}});
    EXPECT_THAT(scan(trial, &CMEGData6Classify::getTrialTrigAbsDc, 3.0), ElementsAre(Occurrence(3, 0, 3.0, 0.0, 4, 4)));
}

TEST(TrialTriggers, TheConditionedScansDifferInTheirLevelOnly)
{
    const std::vector<double> samples = {-2, 2, -6, 2, 2, 2, 2, 2}; // smallest 2, mean 22 / 8
    StimulusTrial absDc({samples});
    EXPECT_THAT(scan(absDc, &CMEGData6Classify::getTrialTrigAbsDc, 0.5), ElementsAre(Occurrence(2, 0, 2.0, 0.0, 4, 4)));
    for (const Scan how : {&CMEGData6Classify::getTrialTrigPro, &CMEGData6Classify::getTrialTrigAbsDcM}) {
        StimulusTrial absDcM({samples});
        EXPECT_THAT(scan(absDcM, how, 0.5), ElementsAre(Occurrence(2, 0, 2.0, 0.0, 3, 3)));
    }
}

// The rules as they are told, sample by sample.
std::vector<Occurrence> scanPlainly(const std::vector<double>& x, double threshold, bool isPlain, double mean)
{
    std::vector<Occurrence> points;
    std::int64_t last = 0;
    for (std::int64_t i = 0; i < std::ssize(x); ++i) {
        const double v = x[static_cast<std::size_t>(i)];
        if (!(isPlain ? std::fabs(v - mean) > threshold : v > threshold))
            continue;
        const bool isNear = i - last <= 1;
        const int value = static_cast<int>(v);
        if (points.empty() || isNear != isPlain) {
            points.emplace_back(i, 0, static_cast<double>(i) / 1000.0 * 1000.0, 0.0, value, value);
        } else {
            std::get<0>(points.back()) = std::get<1>(points.back()) = i;
            std::get<3>(points.back()) = static_cast<double>(i) / 1000.0;
            std::get<5>(points.back()) = value;
        }
        last = i;
    }
    return points;
}

TEST(TrialTriggers, AgreeWithAPlainLoopOnRandomPulses)
{
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        std::vector<double> samples(1 + random() % 700);
        for (std::size_t i = 0; i < samples.size(); ++i)
            if (random() % 23 == 0)
                for (const std::size_t end = std::min(samples.size(), i + 1 + random() % 6); i < end; ++i)
                    samples[i] = static_cast<double>(random() % 256) * (random() % 9 == 0 ? -1.0 : 1.0);
        const double threshold = static_cast<double>(random() % 50);
        StimulusTrial trial({samples});
        const auto found = scan(trial, plainScan, threshold);
        EXPECT_EQ(found, scanPlainly(samples, threshold, true, trial.channel(1).m_dDataMean));
        for (const Scan how : conditionedScans) {
            StimulusTrial conditioned({samples});
            const auto points = scan(conditioned, how, threshold);
            EXPECT_EQ(points, scanPlainly(wave(conditioned.channel(1)), threshold, false, 0.0));
        }
    }
}

// ---- which samples, and what is told

TEST(TrialTriggers, AreMarkersOfOneOccurrenceEach)
{
    StimulusTrial trial({pulses(20, {{3, 5.9}, {10, 5.0}})});
    CMarkerManagerzk out;
    out.m_trigScanParam.m_dTrigThreshold = 2.0;
    TrigScanParam unread;
    unread.m_dTrigThreshold = 1000.0;
    EXPECT_EQ(trial.data.getTrialTriggers(out, trial.data.getTrialzk(0), &unread), 2);
    for (int i = 0; i < 2; ++i) {
        const CMarkerDatazk& marker = *out.getMarker(i, false);
        EXPECT_EQ(marker.m_nMarkValue, 5) << "cut";
        EXPECT_EQ(marker.m_nMarkCount, 1);
        EXPECT_EQ(marker.m_nMarkChannel, 1);
        EXPECT_EQ(marker.m_nMarkPtKind, 1);
        EXPECT_EQ(marker.m_strMarkName, "Trig5");
        ASSERT_EQ(marker.getTotalTrgMrkPts(), 1);
        EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtTrial, 0);
        EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtChannel, 1);
        EXPECT_EQ(marker.getMarkPt(0)->m_strMarkPtName, "");
        EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtWord, 0);
    }
    EXPECT_EQ(trial.data.getTrialTriggers(out, nullptr, nullptr), 4) << "they are added to those that are there";
}

TEST(TrialTriggers, TellTheTrialsNameAndTheRangesOfItsTriggerChannels)
{
    StimulusTrial trial({{0, 2, 0, 0}, {0, 0, 1, 1}});
    trial.channel(1).m_nChannelType = 100;
    CMarkerManagerzk out;
    out.m_strMgrInfo = "former";
    trial.data.getTrialTriggers(out, nullptr, nullptr);
    EXPECT_EQ(out.m_strMgrInfo, "Run\n" + trial.channel(2).traceDataInfo());
    EXPECT_GE(out.m_strMgrInfo.Find("Min 0.000000000; Mean 0.500000000;  Max 1.000000000"), 0);
}

TEST(TrialTriggers, BeginAnewOnEachChannel)
{
    for (const Scan how : allScans) {
        // The last sample of one channel and the first of the next are no run, and no gap either.
        StimulusTrial trial({pulses(50, {{49, 9.0}}), pulses(50, {{0, 9.0}}), pulses(50, {{1, 9.0}})});
        CMarkerManagerzk out;
        out.m_trigScanParam.m_dTrigThreshold = 4.0;
        ASSERT_EQ((trial.data.*how)(out, nullptr, nullptr), 3);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(out.getMarker(i, false)->m_nMarkChannel, i + 1);
    }
}

TEST(TrialTriggers, AreSearchedAsFarAsTheCurrentChannelAndTheChannelItselfGo)
{
    StimulusTrial trial({pulses(20, {{19, 9.0}}), pulses(6, {{5, 9.0}})});
    EXPECT_EQ(scan(trial, plainScan, 4.0).size(), 2U) << "a short channel is searched to its own end";
    trial.data.setCurrentChannel(0, 2);
    EXPECT_THAT(scan(trial, plainScan, 4.0), ElementsAre(Occurrence(5, 0, 5.0, 0.0, 9, 9)))
        << "and a long one to the end of the current channel";
    trial.channel(2)._cleanTimeDataC(true);
    EXPECT_THAT(scan(trial, plainScan, 4.0), IsEmpty());
}

TEST(TrialTriggers, AreThoseOfTheTrialThatIsGiven)
{
    for (const Scan how : allScans) {
        StimulusTrial current({pulses(50, {{10, 9.0}})});
        StimulusTrial other({pulses(30, {{20, 5.0}})});
        other.data.getTrialzk(0)->m_strTrialName = "Other";
        CMarkerManagerzk out;
        out.m_trigScanParam.m_dTrigThreshold = 4.0;
        ASSERT_EQ((current.data.*how)(out, other.data.getTrialzk(0), nullptr), 1);
        EXPECT_EQ(out.getMarker(0, false)->getMarkPt(0)->m_nMarkPtBegin, 20);
        EXPECT_EQ(out.m_strMgrInfo, "Other\n" + other.channel(1).traceDataInfo());
        EXPECT_EQ(wave(current.channel(1)), pulses(50, {{10, 9.0}}));
    }
}

TEST(TrialTriggers, NeedATrialAndAFirstChannel)
{
    for (const Scan how : allScans) {
        CMarkerManagerzk out;
        out.m_strMgrInfo = "former";
        CMEGDatazk none;
        EXPECT_EQ((none.*how)(out, nullptr, nullptr), 0);
        CMDTrialzk empty;
        EXPECT_EQ((none.*how)(out, &empty, nullptr), 0);
        StimulusTrial trial({{0, 9, 0}});
        trial.data.getTrialzk(0)->m_ppChannel.set(0, nullptr);
        EXPECT_EQ((trial.data.*how)(out, nullptr, nullptr), 0);
        EXPECT_EQ(out.m_strMgrInfo, "former");
    }
}

TEST(TrialTriggers, PassOverEmptyPlacesAndAreNoneWithoutATriggerChannel)
{
    StimulusTrial trial({{0, 9, 0}, {0, 9, 0}});
    trial.data.getTrialzk(0)->m_ppChannel.set(1, nullptr);
    EXPECT_EQ(scan(trial, plainScan, 4.0).size(), 1U);
    trial.channel(2).m_nChannelType = 302;
    EXPECT_THAT(scan(trial, plainScan, 4.0), IsEmpty());
}

TEST(TrialTriggers, KeepTheirSamplesAtTheRecordedRateAsBackup)
{
    StimulusTrial trial({pulses(20, {{3, 5.0}, {4, 5.0}})});
    trial.data.m_recordInfo.m_nResampleFactor = 4;
    CMarkerManagerzk out;
    ASSERT_EQ(trial.data.getTrialTriggers(out, nullptr, nullptr), 1);
    ASSERT_EQ(out.getMarker(0, false)->m_aMarkPtsBk.GetSize(), 1);
    EXPECT_EQ(out.getMarker(0, false)->m_aMarkPtsBk.GetAt(0)->m_nMarkPtBegin, 16);
    EXPECT_EQ(out.getMarker(0, false)->m_aMarkPtsBk.GetAt(0)->m_nMarkPtEnd, 16);
}

// ---- samples that are no stimuli

TEST(TrialTriggers, AThresholdAboveTheDataFindsNone)
{
    for (const double threshold : {9.0, 1e300, infinity, notANumber})
        for (const Scan how : allScans) {
            StimulusTrial trial({pulses(50, {{10, 9.0}, {30, 9.0}})});
            EXPECT_THAT(scan(trial, how, threshold), IsEmpty());
        }
}

TEST(TrialTriggers, SamplesThatAreNoNumbersAreNone)
{
    for (const Scan how : allScans) {
        StimulusTrial all({std::vector<double>(50, notANumber)});
        EXPECT_THAT(scan(all, how, 0.5), IsEmpty());
    }
    std::vector<double> samples = pulses(50, {{10, 9.0}, {11, 9.0}, {13, 9.0}});
    samples[12] = notANumber;
    StimulusTrial trial({samples});
    EXPECT_THAT(scan(trial, &CMEGData6Classify::getTrialTrigAbsDc, 0.5),
                ElementsAre(Occurrence(10, 0, 10.0, 0.0, 9, 9), Occurrence(13, 13, 11.0, 0.013, 9, 9)));
    for (const Scan how : {plainScan, &CMEGData6Classify::getTrialTrigPro}) {
        StimulusTrial without({samples}); // their mean is no number, so nothing is above it
        EXPECT_THAT(scan(without, how, 0.5), IsEmpty());
    }
}

TEST(TrialTriggers, SamplesThatNoIntCanHoldAreTheNearestOne)
{
    StimulusTrial trial({{0, infinity, 0}});
    EXPECT_THAT(
        scan(trial, &CMEGData6Classify::getTrialTrigAbsDc, 0.5),
        ElementsAre(Occurrence(1, 0, 1.0, 0.0, std::numeric_limits<int>::max(), std::numeric_limits<int>::max())));
}

TEST(TrialTriggers, BelowAnyThresholdTheWholeTrialIsOnePointOfThePlainScan)
{
    StimulusTrial trial({std::vector<double>(50, 1.0)});
    EXPECT_THAT(scan(trial, plainScan, -1.0), ElementsAre(Occurrence(49, 49, 0.0, 0.049, 1, 1)));
}

TEST(TrialTriggers, MoreThanAnyStimulusChannelHasAreRefused)
{
    std::vector<double> samples(1'000'000);
    for (std::size_t i = 2; i < samples.size(); i += 3)
        samples[i] = 3.0;
    StimulusTrial trial({samples});
    CMarkerManagerzk out;
    out.m_trigScanParam.m_dTrigThreshold = 1.5;
    const ScriptedHost host;
    EXPECT_EQ(trial.data.getTrialTriggers(out, nullptr, nullptr), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Too many triggers (more than 200000), please check the trigger channels!"));
}

TEST(TrialTriggers, EndWhereThereIsNoMemory)
{
    StimulusTrial trial({pulses(50, {{10, 9.0}, {30, 9.0}})});
    const auto failures = forEachAllocationFailure([&trial] {
        CMarkerManagerzk out;
        trial.data.getTrialTriggers(out, nullptr, nullptr);
        EXPECT_LE(out.getTotalMarkers(), 2);
    });
    EXPECT_EQ(failures, 7) << "the blocks, which are done without; marker, occurrence and its backup, twice";
}

} // namespace
} // namespace megset::trialTriggers_test
