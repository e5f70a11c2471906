// Scans of a dataset.
#include "tests/events/stimulusDataset.h"
#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::checkTriggers_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* deleteOld = "Would you like to delete the old triggers?";

struct Variant
{
    int (CMEGData6Classify::*check)(bool);
    const char* averagedQuestion;
    const char* progress;
    int (CMEGData6Classify::*scan)(CMarkerManagerzk&, CMDTrialzk*, TrigScanParam*);
};

// The last one in mode 0.
const Variant variants[] = {
    {&CMEGData6Classify::checkTrig, "Data may be averaged, would you  like to continue?", "Checking triggers...",
     &CMEGData6Classify::getTrialTrigPro},
    {&CMEGData6Classify::checkTrigAbsDc, "Data may be averaged!   Would you  like to continue?", "Checking triggers...",
     &CMEGData6Classify::getTrialTrigAbsDc},
    {&CMEGData6Classify::checkTrigAbsDcM, "Data are averaged, Would you like to continue?",
     "Checking triggers AbsDCM...", &CMEGData6Classify::getTrialTrigAbsDcM},
    {&CMEGData6Classify::checkTrigPro, "Data may be averaged, Would you like to continue?",
     "Checking triggers AbsDCM...", &CMEGData6Classify::getTrialTriggers},
};

/// The scan with Yes or No to the question about the old triggers.
int check(CMEGDatazk& data, int (CMEGData6Classify::*how)(bool), bool deletes = true)
{
    ScriptedHost host;
    deletes ? host.willAnswerYes(deleteOld) : host.willAnswerNo(deleteOld);
    const int result = (data.*how)(true);
    host.expectNoMessages();
    return result;
}

std::vector<std::int64_t> begins(const CMarkerData& marker)
{
    std::vector<std::int64_t> all;
    for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i)
        all.push_back(marker.getMarkPt(i)->m_nMarkPtBegin);
    return all;
}

std::vector<int> trials(const CMarkerData& marker)
{
    std::vector<int> all;
    for (int i = 0; i < marker.getTotalTrgMrkPts(); ++i)
        all.push_back(marker.getMarkPt(i)->m_nMarkPtTrial);
    return all;
}

// ---- questions

TEST(CheckTriggers, GivesZeroWithoutTrials)
{
    for (const Variant& variant : variants) {
        const ScriptedHost host;
        CMEGDatazk data;
        EXPECT_EQ((data.*variant.check)(true), 0);
        EXPECT_THAT(host.calls(), IsEmpty());
    }
}

TEST(CheckTriggers, AsksAboutAnAveragedRecordingAndStopsAtNo)
{
    for (const Variant& variant : variants) {
        StimulusTrial trial({pulses(50, {{10, 9.0}})});
        trial.data.m_recordInfo.m_nAverageCount = 1;
        trial.data.m_mkTrig.addTrigger(7, 1, 0, 1);
        for (const bool force : {false, true}) {
            ScriptedHost host;
            host.willAnswerNo(variant.averagedQuestion);
            EXPECT_EQ((trial.data.*variant.check)(force), 0);
            EXPECT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 1);
            EXPECT_EQ(host.calls().size(), 1U);
        }
        EXPECT_EQ(wave(trial.channel(1)), pulses(50, {{10, 9.0}}));
    }
}

TEST(CheckTriggers, AsksAboutAnAveragedRecordingAndGoesOnAtYes)
{
    for (const Variant& variant : variants) {
        StimulusTrial trial({pulses(50, {{10, 9.0}})});
        trial.data.m_recordInfo.m_nAverageCount = 30;
        ScriptedHost host;
        host.willAnswerYes(variant.averagedQuestion);
        host.willAnswerYes(deleteOld);
        EXPECT_EQ((trial.data.*variant.check)(true), 1);
        EXPECT_THAT(host.questions(), ElementsAre(variant.averagedQuestion, deleteOld));
        EXPECT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 1);
    }
}

TEST(CheckTriggers, WithoutForceGivesTheNumberOfMarkersThatAreThere)
{
    for (const Variant& variant : variants) {
        StimulusTrial trial({pulses(50, {{10, 9.0}})});
        trial.data.m_mkTrig.addTrigger(7, 1, 0, 1);
        trial.data.m_mkTrig.addTrigger(8, 1, 0, 1);
        {
            const ScriptedHost host;
            EXPECT_EQ((trial.data.*variant.check)(false), 2);
            EXPECT_THAT(host.calls(), IsEmpty()) << "without any question";
        }
        trial.data.m_recordInfo.m_nAverageCount = 1;
        ScriptedHost host;
        host.willAnswerYes(variant.averagedQuestion);
        EXPECT_EQ((trial.data.*variant.check)(false), 2) << "but the one about averages, which comes first";
    }
}

TEST(CheckTriggers, WithoutForceAndWithoutMarkersScans)
{
    for (const Variant& variant : variants) {
        StimulusTrial trial({pulses(50, {{10, 9.0}})});
        ScriptedHost host;
        host.willAnswerNo(deleteOld); // asked although there are none
        EXPECT_EQ((trial.data.*variant.check)(false), 1);
        EXPECT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 1);
    }
}

TEST(CheckTriggers, ShowsItsProgressOverTheTrials)
{
    for (const Variant& variant : variants) {
        StimulusDataset filed({std::vector<double>(5), std::vector<double>(5)});
        ScriptedHost host;
        host.willAnswerYes();
        EXPECT_EQ((filed.data.*variant.check)(true), 1);
        const std::string title = variant.progress;
        EXPECT_THAT(host.calls(),
                    ElementsAre(std::string("question: ") + deleteOld + " -> yes", "progress begin " + title + " 0..2",
                                "progress " + title + " 0", "progress " + title + " 1", "progress end " + title));
        EXPECT_EQ(filed.data.m_mkTrig.getTotalMarkers(), 0);
    }
}

TEST(CheckTriggers, PassesOverATrialThatDoesntOpen)
{
    StimulusDataset filed({pulses(50, {{10, 9.0}}), pulses(50, {{20, 9.0}}), pulses(50, {{30, 9.0}})});
    filed.data.m_aTrialFilePath.SetAt(1, filed.folder.path("missing.trl"));
    ScriptedHost host;
    host.willAnswerYes(deleteOld);
    host.willAnswerNo(); // to look for the file
    EXPECT_EQ(filed.data.checkTrigAbsDc(true), 1);
    ASSERT_EQ(filed.data.m_mkTrig.getTotalMarkers(), 1);
    EXPECT_THAT(trials(*filed.data.m_mkTrig.getMarker(0, false)), ElementsAre(0, 2));
    EXPECT_EQ(host.openBars(), 0);
}

TEST(CheckTriggers, TheOldOneDoesNothing)
{
    CMEGDatazk data;
    EXPECT_EQ(data.checkTrig_bk01(true), 1);
    EXPECT_EQ(data.checkTrig_bk01(false), 1);
}

// ---- what becomes a marker

TEST(CheckTriggers, CollectsTheOccurrencesOfEachValueOverAllTrials)
{
    for (const Variant& variant : variants) {
        StimulusDataset filed({pulses(60, {{10, 9.0}}), pulses(60, {{20, 9.0}, {40, 5.0}}), pulses(60, {{30, 9.0}})});
        EXPECT_EQ(check(filed.data, variant.check), 1);
        // Of the conditioned scans the second pulse extends the first, where both are of one sample.
        const bool isPlain = variant.check == &CMEGData6Classify::checkTrigPro;
        ASSERT_EQ(filed.data.m_mkTrig.getTotalMarkers(), isPlain ? 2 : 1);
        const CMarkerDatazk& marker = *filed.data.m_mkTrig.getMarker(0, false);
        EXPECT_THAT(begins(marker), isPlain ? ElementsAre(10, 20, 30) : ElementsAre(10, 40, 30));
        EXPECT_THAT(trials(marker), ElementsAre(0, 1, 2));
        EXPECT_EQ(marker.m_nMarkCount, 3);
        EXPECT_EQ(marker.m_nMarkChannel, 1);
        EXPECT_EQ(marker.m_nMarkGroupID, 100);
        EXPECT_EQ(marker.m_nMarkID, 1);
        EXPECT_EQ(marker.m_nMarkPtKind, 1);
        EXPECT_EQ(marker.m_nMarkValueBk, marker.m_nMarkValue);
        EXPECT_EQ(marker.m_aMarkPtsBk.GetSize(), 3);
    }
}

TEST(CheckTriggers, TheFirstOccurrenceOfAMarkerSaysTrialZeroWhereverItIs)
{
    StimulusDataset filed(
        {std::vector<double>(50), std::vector<double>(50), pulses(50, {{20, 9.0}}), pulses(50, {{30, 9.0}})});
    EXPECT_EQ(check(filed.data, &CMEGData6Classify::checkTrigAbsDc), 1);
    EXPECT_THAT(trials(*filed.data.m_mkTrig.getMarker(0, false)), ElementsAre(0, 3));
}

TEST(CheckTriggers, EqualValuesOfTwoChannelsAreTwoMarkers)
{
    StimulusTrial trial({pulses(50, {{10, 9.0}}), pulses(50, {{20, 9.0}})});
    EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigAbsDc), 1);
    ASSERT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(trial.data.m_mkTrig.getMarker(i, false)->m_nMarkChannel, i + 1);
        EXPECT_EQ(trial.data.m_mkTrig.getMarker(i, false)->m_nMarkID, i + 1);
    }
}

TEST(CheckTriggers, NamesByPrefixOrByTheWordOfTheScan)
{
    const char* expected[] = {"Stim9", "ScnTrig9", "ScnTrig9", "Stim9"};
    for (std::size_t i = 0; i < std::size(variants); ++i) {
        StimulusTrial trial({pulses(100, {{10, 9.5}})}); // 9 in all scans: the levels are 0 and 0.095
        trial.data.m_mkTrig.m_trigScanParam.m_strTrigPrefix = "Stim";
        EXPECT_EQ(check(trial.data, variants[i].check), 1);
        EXPECT_THAT(names(trial.data.m_mkTrig), ElementsAre(expected[i]));
        const CMarkerDatazk& marker = *trial.data.m_mkTrig.getMarker(0, false);
        EXPECT_EQ(marker.m_strMarkTrialName, i == 0 ? "Trig9" : expected[i])
            << "the first scan selects trials by the name that a new manager gives";
    }
}

TEST(CheckTriggers, OfABitCodedRecordingAreNamedAndGroupedByTheBit)
{
    const std::pair<double, int> exponents[] = {{1.0, 1}, {2.0, 2}, {4.0, 3}, {8.0, 4}, {5.0, 3}, {32768.0, 16}};
    for (const auto& [value, exponent] : exponents)
        for (std::size_t i = 0; i < std::size(variants); ++i) {
            // So long that the mean stays below the threshold.
            StimulusTrial trial({pulses(200'000, {{10, value}})});
            trial.data.m_recordInfo.m_nAcqWordF = 1;
            if (i == 0 || i == 2)
                trial.channel(1).getDataWave()[10] += 0.5; // the mean is subtracted
            EXPECT_EQ(check(trial.data, variants[i].check), 1);
            ASSERT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 1);
            const CMarkerDatazk& marker = *trial.data.m_mkTrig.getMarker(0, false);
            EXPECT_EQ(marker.m_nMarkGroupID, exponent);
            const bool byPrefix = i == 0 || i == 3;
            EXPECT_EQ(marker.m_strMarkName, CString::formatted(byPrefix ? "Trig%d" : "ScnTrig%d", exponent));
            EXPECT_EQ(marker.m_nMarkValue, static_cast<std::int64_t>(value));
            if (i == 0) {
                EXPECT_EQ(marker.m_strMarkTrialName, CString::formatted("Trig%I64d", marker.m_nMarkValue));
            }
        }
}

TEST(CheckTriggers, AnyOtherCodingWordIsNone)
{
    for (const int word : {0, 2, -1}) {
        StimulusTrial trial({pulses(50, {{10, 8.0}})});
        trial.data.m_recordInfo.m_nAcqWordF = word;
        EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigAbsDc), 1);
        EXPECT_THAT(names(trial.data.m_mkTrig), ElementsAre("ScnTrig8"));
        EXPECT_EQ(trial.data.m_mkTrig.getMarker(0, false)->m_nMarkGroupID, 100);
    }
}

TEST(CheckTriggers, TellTheRangesInTwoOfTheScans)
{
    for (std::size_t i = 0; i < std::size(variants); ++i) {
        StimulusTrial trial({pulses(50, {{10, 9.0}})});
        EXPECT_EQ(check(trial.data, variants[i].check), 1);
        const CString info = trial.data.m_mkTrig.getMarker(0, false)->m_strMarkInfo;
        if (i == 0 || i == 3)
            EXPECT_EQ(info, "Run\n" + trial.channel(1).traceDataInfo());
        else
            EXPECT_EQ(info, "");
    }
}

TEST(CheckTriggers, TellTheRangesOfTheTrialInWhichAMarkerWasFoundFirst)
{
    for (const auto how : {&CMEGData6Classify::checkTrig, &CMEGData6Classify::checkTrigPro}) {
        StimulusDataset filed({pulses(200, {{10, 9.0}}), pulses(200, {{20, 50.0}})});
        EXPECT_EQ(check(filed.data, how), 1);
        ASSERT_EQ(filed.data.m_mkTrig.getTotalMarkers(), 2);
        for (int i = 0; i < 2; ++i) {
            const CMDTrialzk& trial = *filed.data.getTrialzk(i);
            const CMarkerDatazk& marker = *filed.data.m_mkTrig.getMarker(i, false);
            // Ranges are no part of a trial's file.
            EXPECT_EQ(marker.m_strMarkInfo.Find(trial.m_strTrialName + "\nData points:200 (Min "), 0);
            EXPECT_EQ(marker.m_strMarkInfo.Mid(1).Find("Trial"), -1) << "and of no other";
        }
    }
}

TEST(CheckTriggers, TakesTheThresholdOfANewManagerAndNotTheDatasets)
{
    for (const Variant& variant : variants) {
        StimulusTrial trial({pulses(1000, {{10, 0.9}, {20, 0.4}})});
        trial.data.m_mkTrig.m_trigScanParam.m_dTrigThreshold = 1000.0;
        EXPECT_EQ(check(trial.data, variant.check), 1);
        ASSERT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 1);
        EXPECT_THAT(begins(*trial.data.m_mkTrig.getMarker(0, false)), ElementsAre(10));
        EXPECT_EQ(trial.data.m_mkTrig.m_trigScanParam.m_dTrigThreshold, 1000.0);
    }
}

TEST(CheckTriggers, GivesTheMarkersOfTheTrialsScan)
{
    for (const Variant& variant : variants) {
        const std::vector<double> samples = pulses(900, {{10, 9.0}, {11, 9.0}, {12, 9.0}, {40, 5.0}, {41, 9.0}});
        StimulusTrial scanned({samples});
        CMarkerManagerzk out;
        (scanned.data.*variant.scan)(out, nullptr, nullptr);
        StimulusTrial checked({samples});
        EXPECT_EQ(check(checked.data, variant.check), 1);
        auto expected = occurrences(out);
        auto found = occurrences(checked.data.m_mkTrig);
        std::sort(expected.begin(), expected.end());
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, expected);
        EXPECT_EQ(wave(checked.channel(1)), wave(scanned.channel(1)));
    }
}

TEST(CheckTriggers, TheProScanGoesByTheManagersMode)
{
    using Classify = CMEGData6Classify;
    const decltype(Variant::scan) scans[] = {&Classify::getTrialTriggers, &Classify::getTrialTrigPro,
                                             &Classify::getTrialTrigAbsDc, &Classify::getTrialTrigAbsDcM};
    const std::vector<double> samples = pulses(20, {{10, 9.0}, {11, 9.0}, {12, -4.0}});
    for (int mode = 0; mode < 4; ++mode) {
        StimulusTrial scanned({samples});
        CMarkerManagerzk out;
        (scanned.data.*scans[mode])(out, nullptr, nullptr);
        StimulusTrial checked({samples});
        checked.data.m_mkTrig.m_trigScanParam.m_nTrigScanMode = mode;
        EXPECT_EQ(check(checked.data, &Classify::checkTrigPro), 1);
        EXPECT_EQ(occurrences(checked.data.m_mkTrig).size(), occurrences(out).size());
        EXPECT_EQ(wave(checked.channel(1)), wave(scanned.channel(1)));
    }
    for (const int mode : {-1, 4, 100}) {
        StimulusTrial trial({samples});
        trial.data.m_mkTrig.m_trigScanParam.m_nTrigScanMode = mode;
        EXPECT_EQ(check(trial.data, &Classify::checkTrigPro), 1);
        EXPECT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 0);
        EXPECT_EQ(wave(trial.channel(1)), samples) << "nothing is scanned, nor conditioned";
    }
}

TEST(CheckTriggers, TheProScanInModeOneScansAsTheFirst)
{
    const std::vector<double> samples = pulses(300, {{10, 9.0}, {11, 9.0}, {12, 4.0}});
    StimulusTrial first({samples});
    EXPECT_EQ(check(first.data, &CMEGData6Classify::checkTrig), 1);
    StimulusTrial pro({samples});
    pro.data.m_mkTrig.m_trigScanParam.m_nTrigScanMode = 1;
    EXPECT_EQ(check(pro.data, &CMEGData6Classify::checkTrigPro), 1);
    EXPECT_EQ(occurrences(first.data.m_mkTrig), occurrences(pro.data.m_mkTrig));
    EXPECT_EQ(names(first.data.m_mkTrig), names(pro.data.m_mkTrig));
}

// ---- once more

TEST(CheckTriggers, ASecondScanWithoutDeletingAppendsToTheSameMarkers)
{
    StimulusDataset filed({pulses(200, {{10, 9.0}}), pulses(200, {{20, 9.0}})});
    EXPECT_EQ(check(filed.data, &CMEGData6Classify::checkTrigPro), 1);
    CMarkerDatazk& marker = *filed.data.m_mkTrig.getMarker(0, false);
    marker.m_strMarkName = "renamed";
    EXPECT_EQ(check(filed.data, &CMEGData6Classify::checkTrigPro, false), 1);
    ASSERT_EQ(filed.data.m_mkTrig.getTotalMarkers(), 1);
    EXPECT_THAT(begins(marker), ElementsAre(10, 20, 10, 20)) << "the first points stay";
    EXPECT_THAT(trials(marker), ElementsAre(0, 1, 0, 1));
    EXPECT_EQ(marker.m_nMarkCount, 4);
    EXPECT_EQ(marker.m_strMarkName, "renamed");
}

TEST(CheckTriggers, NewMarkersOfASecondScanAreNumberedFromOneAgain)
{
    StimulusTrial trial({pulses(200, {{10, 9.0}, {20, 5.0}})});
    EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigPro), 1);
    trial.channel(1).getDataWave()[30] = 7.0;
    EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigPro, false), 1);
    std::vector<int> numbers;
    for (int i = 0; i < trial.data.m_mkTrig.getTotalMarkers(); ++i)
        numbers.push_back(trial.data.m_mkTrig.getMarker(i, false)->m_nMarkID);
    EXPECT_THAT(numbers, ElementsAre(1, 2, 1));
}

TEST(CheckTriggers, ASecondScanWithDeletingBeginsAnew)
{
    StimulusDataset filed({pulses(200, {{10, 9.0}}), pulses(200, {{20, 9.0}})});
    EXPECT_EQ(check(filed.data, &CMEGData6Classify::checkTrigPro), 1);
    EXPECT_EQ(check(filed.data, &CMEGData6Classify::checkTrigPro), 1);
    ASSERT_EQ(filed.data.m_mkTrig.getTotalMarkers(), 1);
    EXPECT_THAT(begins(*filed.data.m_mkTrig.getMarker(0, false)), ElementsAre(10, 20));
}

TEST(CheckTriggers, TheConditionedSamplesStayAlsoWhereNothingIsFound)
{
    for (const Variant& variant : variants) {
        StimulusTrial trial({std::vector<double>(50, -0.25)});
        EXPECT_EQ(check(trial.data, variant.check), 1);
        EXPECT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 0);
        const bool isPlain = variant.check == &CMEGData6Classify::checkTrigPro;
        EXPECT_EQ(trial.channel(1).getDataWave()[7], isPlain ? -0.25 : 0.0);
        EXPECT_EQ(trial.channel(1).getBkData()[7], -0.25) << "the raw samples aren't touched";
    }
}

TEST(CheckTriggers, ASecondConditionedScanSeesConditionedSamples)
{
    StimulusTrial trial({pulses(4, {{1, 8.0}})}); // level 2, and then 1.5
    EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigAbsDcM), 1);
    EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigAbsDcM, false), 1);
    EXPECT_THAT(names(trial.data.m_mkTrig), ElementsAre("ScnTrig6", "ScnTrig4")) << "another value, another marker";
}

TEST(CheckTriggers, TheConditionedSamplesAreSavedWithTheTrial)
{
    StimulusDataset filed({pulses(4, {{1, 8.0}}), pulses(4, {{1, 8.0}})});
    EXPECT_EQ(check(filed.data, &CMEGData6Classify::checkTrigAbsDcM), 1);
    EXPECT_THAT(wave(*filed.readTrial(0)->getChannel(1)), ElementsAre(0, 6, 0, 0));
}

TEST(CheckTriggers, FollowAResamplingBackToTheRecordedRate)
{
    StimulusTrial trial({pulses(40, {{10, 4.0}, {11, 4.0}, {20, 4.0}})});
    CMEGRecordInfozkProzk& record = trial.data.m_recordInfo;
    record.m_nResampleFactor = 4;
    record.m_nRawTotalSample = 160;
    record.m_dRawSampleRate = 4000.0;
    EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigPro), 1);
    EXPECT_EQ(trial.data.setResampleParameter(false, 1), 1);
    ASSERT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 1);
    const CMarkerDatazk& marker = *trial.data.m_mkTrig.getMarker(0, false);
    EXPECT_THAT(begins(marker), ElementsAre(44, 80));
    EXPECT_EQ(marker.getMarkPt(0)->m_nMarkPtEnd, 44);
    EXPECT_EQ(marker.m_markWindow.m_nPreSamples, 40) << "found at sample 10";
}

// ---- bad input

TEST(CheckTriggers, MoreThanAnyStimulusChannelHasEndTheScan)
{
    // Of a level that is held each sample is a trigger.
    std::vector<double> samples(800'000, 3.0);
    samples[0] = 0.0;
    StimulusDataset filed({samples, samples});
    ScriptedHost host;
    host.willAnswerYes(deleteOld);
    EXPECT_EQ(filed.data.checkTrigAbsDc(true), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Too many triggers (more than 1000000), please check the trigger channels!"));
    ASSERT_EQ(filed.data.m_mkTrig.getTotalMarkers(), 1);
    EXPECT_EQ(filed.data.m_mkTrig.getMarker(0, false)->m_nMarkCount, 799'999) << "those of the first trial";
    EXPECT_EQ(host.openBars(), 0);
}

TEST(CheckTriggers, MoreValuesThanAnyStimulusChannelHasEndTheScan)
{
    std::vector<double> samples(250'000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<double>(i);
    StimulusTrial trial({samples});
    ScriptedHost host;
    host.willAnswerYes(deleteOld);
    EXPECT_EQ(trial.data.checkTrigAbsDc(true), 0);
    EXPECT_THAT(host.messages(),
                ElementsAre("Too many triggers (more than 200000), please check the trigger channels!"));
    EXPECT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 200'000);
}

TEST(CheckTriggers, AMillionPulsesOfOneSampleAreOneTrigger)
{
    std::vector<double> samples(2'000'000);
    for (std::size_t i = 1; i < samples.size(); i += 2)
        samples[i] = 3.0;
    StimulusTrial trial({samples});
    EXPECT_EQ(check(trial.data, &CMEGData6Classify::checkTrigAbsDc), 1);
    EXPECT_THAT(occurrences(trial.data.m_mkTrig), ElementsAre(Occurrence(1'999'999, 1'999'999, 1.0, 1999.999, 3, 3)));
}

TEST(CheckTriggers, WithoutMemoryForAnOccurrenceRaiseTheInvalidArgumentException)
{
    int raised = 0;
    int doneWithout = 0; // the blocks that a scan passes over
    for (std::int64_t n = 1;; ++n) {
        StimulusTrial trial({pulses(1000, {{10, 9.0}, {20, 9.0}, {30, 5.0}})});
        ScriptedHost host;
        host.willAnswerYes(deleteOld);
        const FailingAllocator failAt(n);
        try {
            EXPECT_EQ(trial.data.checkTrigPro(true), 1);
            if (failAt.failures() == 0)
                break;
            ++doneWithout;
            EXPECT_EQ(trial.data.m_mkTrig.getTotalMarkers(), 2);
        } catch (const CInvalidArgException&) {
            ++raised;
        }
        EXPECT_EQ(host.openBars(), 0);
        for (int i = 0; i < trial.data.m_mkTrig.getTotalMarkers(); ++i)
            EXPECT_EQ(trial.data.m_mkTrig.getMarker(i, false)->m_nMarkCount,
                      trial.data.m_mkTrig.getMarker(i, false)->getTotalTrgMrkPts())
                << "the markers of that moment are whole";
    }
    EXPECT_GT(raised, 5);
    EXPECT_EQ(doneWithout, 1);
}

} // namespace
} // namespace megset::checkTriggers_test
