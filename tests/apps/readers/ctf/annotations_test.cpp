#include "apps/readers/ctf/annotations.h"
#include "apps/readers/ctf/headCoils.h"
#include "apps/readers/ctf/textLines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::ctf::annotations_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<Channel> channelsNamed(const std::vector<std::string>& names)
{
    std::vector<Channel> channels(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        channels[i].name = names[i];
    return channels;
}

class CtfAnnotations : public testing::Test
{
protected:
    std::vector<std::string> m_warnings;
};

TEST(CtfTextLines, NumbersMayHaveAPlus)
{
    EXPECT_EQ(integerOf("+12"), 12);
    EXPECT_EQ(integerOf("-3"), -3);
    EXPECT_EQ(numberOf("+1.5e-3"), 1.5e-3);
    for (const char* word : {"", "+", "-", "+-1", "1x", "1.5.2", "nan", "inf", "1e999", "0x10", " 1"})
        EXPECT_EQ(numberOf(word), std::nullopt) << word;
    for (const char* word : {"", "1.5", "99999999999", "one"})
        EXPECT_EQ(integerOf(word), std::nullopt) << word;
}

TEST_F(CtfAnnotations, BadChannelsAreFoundWithAndWithoutTheSystemsNumber)
{
    const auto channels = channelsNamed({"UPPT001", "MLC11-4304", "MLC12-4304", "MLC1-4304"});
    EXPECT_THAT(parseBadChannels("MLC12\r\nMLC1\nMLC12-4304\n\nUPPT001\n", channels, "BadChannels", m_warnings),
                ElementsAre(0, 2, 3));
    EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(CtfAnnotations, BadChannelsThatAreNotThereAreTold)
{
    EXPECT_THAT(parseBadChannels("MLC11\nMLC99", channelsNamed({"MLC11-1"}), "BadChannels", m_warnings),
                ElementsAre(0));
    EXPECT_THAT(m_warnings, ElementsAre("BadChannels, line 2: there is no channel \"MLC99\"."));
}

TEST_F(CtfAnnotations, WarningsOfOneFileAreFew)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += "X" + std::to_string(i) + "\n";
    parseBadChannels(text, {}, "BadChannels", m_warnings);
    ASSERT_THAT(m_warnings, SizeIs(6));
    EXPECT_EQ(m_warnings.back(), "BadChannels: 995 more lines are passed over.");
}

TEST_F(CtfAnnotations, BadSegmentsCountTrialsFromOne)
{
    EXPECT_THAT(parseBadSegments("1\t\t2.5\t3.25\n 2 -0.5 0 \n", 2, "bad.segments", m_warnings),
                ElementsAre(BadSegment{0, 2.5, 3.25}, BadSegment{1, -0.5, 0.0}));
    EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(CtfAnnotations, BadSegmentsThatMakeNoSenseAreTold)
{
    EXPECT_THAT(parseBadSegments("1 1 2\n1 1\n1 3 2\n1 a 2\n1 1 2 3", 2, "bad.segments", m_warnings),
                ElementsAre(BadSegment{0, 1.0, 2.0}));
    ASSERT_THAT(m_warnings, SizeIs(4));
    EXPECT_EQ(m_warnings[0], "bad.segments, line 2: the line does not hold a trial, a begin and an end behind it.");
    m_warnings.clear();
    parseBadSegments("0 1 2\n3 1 2\n1.5 1 2\n1e30 1 2", 2, "bad.segments", m_warnings);
    ASSERT_THAT(m_warnings, SizeIs(4));
    EXPECT_EQ(m_warnings[1], "bad.segments, line 2: there is no trial 3 among the 2 of the recording.");
}

constexpr std::string_view classFile = "PATH OF DATASET:\n/data/a.ds\n\n\nNUMBER OF CLASSES:\n2\n\n\n"
                                       "CLASSGROUPID:\n3\nNAME:\nBAD\nCOMMENT:\nnoise\nCOLOR:\nRed\nEDITABLE:\nYes\n"
                                       "CLASSID:\n1\nNUMBER OF TRIALS:\n2\nLIST OF TRIALS:\nTRIAL NUMBER\n"
                                       "                  +0\n                  +3\n\n\n"
                                       "CLASSGROUPID:\n3\nNAME:\nlate\nCOMMENT:\n\nCOLOR:\nBlue\nEDITABLE:\nYes\n"
                                       "CLASSID:\n2\nNUMBER OF TRIALS:\n0\nLIST OF TRIALS:\nTRIAL NUMBER\n\n\n";

TEST_F(CtfAnnotations, ClassesHaveTheirTrialsFromZero)
{
    EXPECT_THAT(parseClasses(classFile, 4, "ClassFile.cls", m_warnings),
                ElementsAre(TrialClass{"BAD", {0, 3}}, TrialClass{"late", {}}));
    EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(CtfAnnotations, ClassesOfTrialsThatAreNotThereAreTold)
{
    EXPECT_THAT(parseClasses(classFile, 3, "ClassFile.cls", m_warnings),
                ElementsAre(TrialClass{"BAD", {0}}, TrialClass{"late", {}}));
    EXPECT_THAT(m_warnings, ElementsAre("ClassFile.cls, line 26: there is no trial +3 among the 3 of the recording."));
}

TEST_F(CtfAnnotations, ListsThatEndEarlyAreTold)
{
    const std::string text = "CLASSGROUPID:\n3\nNAME:\nBAD\nNUMBER OF TRIALS:\n5\nLIST OF TRIALS:\nTRIAL NUMBER\n1\n"
                             "CLASSGROUPID:\n3\nNAME:\nlate\nNUMBER OF TRIALS:\nmany\nLIST OF TRIALS:\n";
    EXPECT_THAT(parseClasses(text, 3, "ClassFile.cls", m_warnings),
                ElementsAre(TrialClass{"BAD", {1}}, TrialClass{"late", {}}));
    EXPECT_THAT(m_warnings, ElementsAre("ClassFile.cls, line 10: the list ends after 1 of 5 entries.",
                                        "ClassFile.cls, line 15: this is no number of entries."));
}

TEST_F(CtfAnnotations, MarkersHaveTheirTimesFromTheTrigger)
{
    const std::string text =
        "PATH OF DATASET:\n/data/a.ds\n\n\nNUMBER OF MARKERS:\n2\n\n\n"
        "CLASSGROUPID:\n0\nNAME:\nbeep\nCOMMENT:\nby the line\nCOLOR:\ngreen\nEDITABLE:\nNo\nCLASSID:\n1\n"
        "BITNUMBER:\n2\nPOLARITY:\n+\nSOURCE:\nUPPT001\nTHRESHOLD:\n0.5\n"
        "NUMBER OF SAMPLES:\n2\nLIST OF SAMPLES:\nTRIAL NUMBER\t\tTIME FROM SYNC POINT (in seconds)\n"
        "                  +0\t\t\t\t     -0.25\n                  +1\t\t\t\t     +1.264167\n\n\n"
        "CLASSGROUPID:\n3\nNAME:\nspike\nCOMMENT:\n\nNUMBER OF SAMPLES:\n1\nLIST OF SAMPLES:\nTRIAL NUMBER\n1 2\n";
    EXPECT_THAT(
        parseMarkers(text, 2, "MarkerFile.mrk", m_warnings),
        ElementsAre(Marker{"beep", "by the line", {{0, -0.25}, {1, 1.264167}}}, Marker{"spike", "", {{1, 2.0}}}));
    EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(CtfAnnotations, MarkersThatMakeNoSenseAreTold)
{
    const std::string text = "CLASSGROUPID:\n3\nNAME:\nspike\nNUMBER OF SAMPLES:\n4\nLIST OF SAMPLES:\nTRIAL\n"
                             "0 now\n0\n7 1.0\n1 0.5\n";
    EXPECT_THAT(parseMarkers(text, 2, "MarkerFile.mrk", m_warnings), ElementsAre(Marker{"spike", "", {{1, 0.5}}}));
    EXPECT_THAT(m_warnings, ElementsAre("MarkerFile.mrk, line 9: the line does not hold a trial and a time.",
                                        "MarkerFile.mrk, line 10: the line does not hold a trial and a time.",
                                        "MarkerFile.mrk, line 11: there is no trial 7 among the 2 of the recording."));
}

TEST_F(CtfAnnotations, HugeCountsEndWithTheFile)
{
    const std::string text = "CLASSGROUPID:\n3\nNAME:\na\nNUMBER OF SAMPLES:\n2147483647\nLIST OF SAMPLES:\nTRIAL\n";
    EXPECT_THAT(parseMarkers(text, 2, "MarkerFile.mrk", m_warnings), ElementsAre(Marker{"a", "", {}}));
    EXPECT_THAT(m_warnings, ElementsAre(HasSubstr("the list ends after 0 of 2147483647 entries")));
}

TEST_F(CtfAnnotations, EmptyFilesSayNothing)
{
    EXPECT_THAT(parseClasses("", 2, "a", m_warnings), IsEmpty());
    EXPECT_THAT(parseMarkers("", 2, "a", m_warnings), IsEmpty());
    EXPECT_THAT(parseBadSegments("", 2, "a", m_warnings), IsEmpty());
    EXPECT_THAT(parseBadChannels("", {}, "a", m_warnings), IsEmpty());
    EXPECT_EQ(parseHeadCoils("", "a", m_warnings), HeadCoils());
    EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(CtfAnnotations, HeadCoilsHaveThreeSets)
{
    const HeadCoils coils =
        parseHeadCoils("stadard nasion coil position relative to dewar (cm):\n\tx = 5.5\n\ty = 5\n\tz = -27\n"
                       "measured left ear coil position relative to dewar (cm):\r\n\tx = -1\r\n\ty = 2\r\n\tz = 3e1\r\n"
                       "measured right ear coil position relative to head (cm):\n\tx = 1\n\ty = -8\n\tz = 0\n"
                       "measured belly coil position relative to abdomen (cm):\n\tx = 1\n",
                       "a.hc", m_warnings);
    EXPECT_EQ(coils.standardDewar.nasion, (Vector{5.5, 5.0, -27.0}));
    EXPECT_EQ(coils.measuredDewar.leftEar, (Vector{-1.0, 2.0, 30.0}));
    EXPECT_EQ(coils.measuredHead.rightEar, (Vector{1.0, -8.0, 0.0}));
    EXPECT_FALSE(coils.measuredHead.isComplete());
    EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(CtfAnnotations, HeadCoilsWithoutPlaceAreTold)
{
    const HeadCoils coils =
        parseHeadCoils("measured nasion coil position relative to head (cm):\n\tx = 5\n\ty = what\n\tz = 1\n"
                       "measured left ear coil position relative to head (m):\n\tx = 5\n\ty = 1\n\tz = 1\n"
                       "measured right ear coil position relative to head (cm):\n\tx = 5",
                       "a.hc", m_warnings);
    EXPECT_EQ(coils, HeadCoils());
    EXPECT_THAT(m_warnings, ElementsAre("a.hc, line 1: the head coil has no place in cm.",
                                        "a.hc, line 5: the head coil has no place in cm.",
                                        "a.hc, line 9: the head coil has no place in cm."));
}

} // namespace
} // namespace megset::ctf::annotations_test
