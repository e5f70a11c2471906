// Names of sensors by their place on the plane.

#include "megset/geometry/neuromagSensorNumbers.h"

#include "tests/geometry/sensorTrial.h"
#include "tests/kit/ScriptedHost.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDTrial8ShowNames_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Names on a plane of 200 x 100, whose middle is 100, 50.
class NamesByPlace : public ::testing::Test
{
protected:
    void make(const std::vector<ChannelAt>& channels) { makeSensors(trial, channels); }
    CString nameAt(double x, double y)
    {
        make({{100, {}}, {100, {}}});
        trial.m_nMegPlaneDone = 1;
        trial.m_megContour.m_dPlaneXmax = 200.0;
        trial.m_megContour.m_dPlaneYmax = 100.0;
        CMDChannelzk& channel = *trial.getChannel(0);
        channel.m_strChannelNameRaw = "MEG1";
        channel.m_dSns2dX = 100.0 + x;
        channel.m_dSns2dY = 50.0 + y;
        EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
        return channel.m_strChannelName;
    }

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(NamesByPlace, TellTheSide)
{
    EXPECT_EQ(nameAt(0.0, 0.0), CString("MZP1"));
    EXPECT_EQ(nameAt(9.9, 0.0), CString("MZP1"));
    EXPECT_EQ(nameAt(-9.9, 0.0), CString("MZP1"));
    EXPECT_EQ(nameAt(10.0, 0.0), CString("MLP1"));
    EXPECT_EQ(nameAt(-10.0, 0.0), CString("MRP1"));
}

TEST_F(NamesByPlace, TellTheLobe)
{
    EXPECT_EQ(nameAt(20.0, -0.5), CString("MLC1"));
    EXPECT_EQ(nameAt(20.0, -25.0), CString("MLC1")); // on the bound
    EXPECT_EQ(nameAt(20.0, -25.5), CString("MLF1"));
    EXPECT_EQ(nameAt(20.0, 25.0), CString("MLP1"));
    EXPECT_EQ(nameAt(20.0, 25.5), CString("MLO1"));
    EXPECT_EQ(nameAt(-50.0, 45.0), CString("MRO1")); // on the bound of the temporal lobe
    EXPECT_EQ(nameAt(-50.5, 45.0), CString("MRT1"));
    EXPECT_EQ(nameAt(50.5, -45.0), CString("MLT1"));
}

TEST_F(NamesByPlace, ANarrowPlaneIsTemporalAtItsMiddleToo)
{
    make({{100, {}}, {100, {}}});
    trial.m_nMegPlaneDone = 1;
    trial.m_megContour.m_dPlaneXmax = 20.0; // a quarter is less than what counts as the middle
    trial.getChannel(0)->m_dSns2dX = 16.0;
    trial.getChannel(0)->m_strChannelNameRaw = "MEG";
    EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
    EXPECT_EQ(trial.getChannel(0)->m_strChannelName, CString("MZT"));
}

TEST_F(NamesByPlace, CountFromZeroAndNotFromTheLeastBound)
{
    make({{100, {}}, {100, {}}});
    trial.m_nMegPlaneDone = 1;
    trial.m_megContour.m_dPlaneXmin = 100.0;
    trial.m_megContour.m_dPlaneXmax = 300.0;
    trial.getChannel(0)->m_dSns2dX = 200.0; // the middle of the bounds lies 100 from half their width
    trial.getChannel(0)->m_strChannelNameRaw = "MEG";
    EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
    EXPECT_EQ(trial.getChannel(0)->m_strChannelName, CString("MLT"));
}

TEST_F(NamesByPlace, ComeFromTheRawNameWithEveryMegReplaced)
{
    EXPECT_EQ(nameAt(0.0, 0.0), CString("MZP1"));
    CMDChannelzk& channel = *trial.getChannel(0);
    channel.m_strChannelName = "edited MEG";
    channel.m_strChannelNameRaw = "MEG MEG-meg 7";
    EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
    EXPECT_EQ(channel.m_strChannelName, CString("MZP MZP-meg 7"));
    EXPECT_EQ(channel.m_strChannelNameRaw, CString("MEG MEG-meg 7"));
}

TEST_F(NamesByPlace, ARawNameWithoutMegBecomesTheWorkingName)
{
    nameAt(0.0, 0.0);
    CMDChannelzk& channel = *trial.getChannel(0);
    channel.m_strChannelNameRaw = "A17";
    EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
    EXPECT_EQ(channel.m_strChannelName, CString("A17"));
}

TEST_F(NamesByPlace, OtherChannelsKeepTheirs)
{
    make({{100, {}}, {11, {}}, {302, {}}});
    trial.m_nMegPlaneDone = 1;
    for (int i = 0; i < 3; ++i) {
        trial.getChannel(i)->m_strChannelNameRaw = "MEG";
        trial.getChannel(i)->m_strChannelName = "mine";
    }
    EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
    EXPECT_EQ(trial.getChannel(0)->m_strChannelName, CString("MZP"));
    EXPECT_EQ(trial.getChannel(1)->m_strChannelName, CString("mine"));
    EXPECT_EQ(trial.getChannel(2)->m_strChannelName, CString("mine"));
}

// At one height and scale 2 the plane is a quarter of the layout: 50 x 25 here.
TEST_F(NamesByPlace, ProjectAPlaneThatIsNotDone)
{
    make({{100, {-100.0, 50.0, -50.0}}, {100, {100.0, 50.0, 50.0}}, {100, {44.0, 50.0, -40.0}}});
    for (int i = 0; i < 3; ++i)
        trial.getChannel(i)->m_strChannelNameRaw = "MEG";
    trial.m_megContour.m_dXmax = 1e6; // taken anew
    EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
    EXPECT_THAT(planeOf(trial.m_megContour), ElementsAre(0.0, 50.0, 0.0, 25.0, 2.0));
    EXPECT_TRUE(trial.isMegSnsr2dPlaneDone());
    EXPECT_EQ(trial.getChannel(0)->m_strChannelName, CString("MRT"));
    EXPECT_EQ(trial.getChannel(1)->m_strChannelName, CString("MLT"));
    EXPECT_EQ(trial.getChannel(2)->m_strChannelName, CString("MLF")); // 11, -10
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST_F(NamesByPlace, AreGivenAlsoWhereTheProjectionWasRefused)
{
    make({{100, {}, false}, {600, {}}});
    trial.getChannel(0)->m_strChannelNameRaw = "MEG";
    host.willAnswerNo("No MEG sensor!?, Continue?");
    EXPECT_EQ(trial.codeSnsLocation2Name(), 1);
    EXPECT_FALSE(trial.isMegSnsr2dPlaneDone());
    EXPECT_EQ(trial.getChannel(0)->m_strChannelName, CString("MZP"));
    CMDTrialzk empty;
    EXPECT_EQ(empty.codeSnsLocation2Name(), 1);
}

TEST_F(NamesByPlace, NumbersOfANeuromagArrayTouchNothing)
{
    make({{100, {}}, {100, {}}});
    trial.getChannel(0)->m_strChannelName = "MEG 0113";
    EXPECT_EQ(trial.neuromagNum2name(), 1);
    EXPECT_EQ(trial.getChannel(0)->m_strChannelName, CString("MEG 0113"));
    EXPECT_EQ(CMDTrialzk().neuromagNum2name(), 1);
    EXPECT_THAT(host.calls(), IsEmpty());
}

TEST(NeuromagSensorNumbers, AreThreeForEachTripletOfALobe)
{
    const std::size_t triplets[] = {21, 25, 16, 11, 24};
    std::set<CString> all;
    for (int lobe = 1; lobe <= neuromagLobes; ++lobe) {
        const std::vector<CString> numbers = neuromagSensorNumbers(lobe);
        EXPECT_EQ(numbers.size(), 3 * triplets[lobe - 1]) << lobe;
        all.insert(numbers.begin(), numbers.end());
    }
    EXPECT_EQ(all.size(), 288U); // the triplet 252 is in two lobes
    for (const CString& number : all)
        EXPECT_EQ(number.GetLength(), 4);
    EXPECT_EQ(neuromagSensorNumbers(1).front(), CString("1120"));
    EXPECT_EQ(neuromagSensorNumbers(1).back(), CString("2642"));
    EXPECT_EQ(neuromagSensorNumbers(2)[1], CString("0311"));
    EXPECT_EQ(neuromagSensorNumbers(3).back(), CString("1032"));
    EXPECT_EQ(neuromagSensorNumbers(4)[2], CString("0422"));
    EXPECT_EQ(neuromagSensorNumbers(5).back(), CString("2522"));
    EXPECT_THAT(neuromagSensorNumbers(0), IsEmpty());
    EXPECT_THAT(neuromagSensorNumbers(6), IsEmpty());
}

TEST(NeuromagSensorNumbers, AreThoseOfTheLobe)
{
    const std::vector<std::string> lobes[] = {
        {"112", "113", "121", "122", "123", "124", "131", "132", "133", "134", "222",
         "241", "242", "243", "244", "252", "253", "261", "262", "263", "264"},
        {"031", "032", "033", "034", "011", "012", "013", "014", "021", "022", "023", "024", "041",
         "044", "151", "152", "153", "154", "161", "162", "163", "164", "171", "172", "181"},
        {"081", "082", "051", "052", "053", "054", "061", "062", "064", "091", "092", "093", "094", "101", "102",
         "103"},
        {"042", "043", "063", "071", "072", "073", "074", "104", "111", "114", "221"},
        {"183", "184", "191", "192", "193", "194", "173", "174", "201", "202", "203", "204",
         "211", "212", "213", "214", "223", "224", "231", "232", "233", "234", "251", "252"}};
    for (int lobe = 1; lobe <= neuromagLobes; ++lobe) {
        std::vector<CString> expected;
        for (const std::string& triplet : lobes[lobe - 1])
            for (const char* sensor : {"0", "1", "2"})
                expected.emplace_back(triplet + sensor);
        EXPECT_EQ(neuromagSensorNumbers(lobe), expected) << lobe;
    }
}

} // namespace
} // namespace megset::CMDTrial8ShowNames_test
