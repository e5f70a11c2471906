#include "apps/cli/seeg/changeProbes.h"
#include "tests/apps/cli/SampleCommand.h"
#include "tests/persistence/informationFiles.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::seeg_test {

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

// The words of a runtime_error.
template <class Action>
std::string faultOf(Action action)
{
    try {
        action();
    } catch (const std::runtime_error& fault) {
        return fault.what();
    }
    return "";
}

TEST(ProbeNames, AnAssignmentIsProbeContactAndChannel)
{
    const Assignment plain = parseAssignment("A:1=SEEG01");
    EXPECT_EQ(plain.probe, "A");
    EXPECT_EQ(plain.contact, "1");
    EXPECT_EQ(plain.channel, "SEEG01");
    const Assignment odd = parseAssignment("left:A:A'1=POL A=1:2");
    EXPECT_EQ(odd.probe, "left:A");
    EXPECT_EQ(odd.contact, "A'1");
    EXPECT_EQ(odd.channel, "POL A=1:2");
    for (const char* text : {"", "A", "A:1", "A=1", ":1=C", "A:=C", "A:1=", "=A:1", "A1=C:2"})
        EXPECT_EQ(faultOf([&] { parseAssignment(text); }),
                  "\"" + std::string(text) + "\" is not of the form PROBE:CONTACT=CHANNEL");
}

TEST(ProbeNames, APlaceIsThreeFiniteNumbers)
{
    EXPECT_THAT(parsePlace("1,-2.5,3e1"), ElementsAre(1.0, -2.5, 30.0));
    for (const char* text :
         {"", "1", "1,2", "1,2,", "1,2,3,", "1,2,3,4", "1 2 3", "1,,3", "x,2,3", "nan,2,3", "1,2,inf"})
        EXPECT_EQ(faultOf([&] { parsePlace(text); }), "\"" + std::string(text) + "\" is no place X,Y,Z in mm");
}

// A trial of the channels C0 to C3, without electrodes, and of the probe A with its tip at 0 and its base above.
class Probes : public testing::Test
{
protected:
    Probes()
    {
        trial.allocateChannels(4);
        for (int i = 0; i < 4; ++i)
            trial.getChannel(i)->m_strChannelName = CString::formatted("C%d-77", i);
        add("A");
    }
    int add(const char* name, const char* type = "8P")
    {
        return addProbe(trial, {name, {0.0, 0.0, 100.0}, {0.0, 0.0, 0.0}, type, 3, 5.0});
    }
    CSeegContactzk& contact(int probe, int index) { return *trial.getSeegProbe(probe)->getContact(index); }
    void assign(const std::vector<const char*>& texts)
    {
        std::vector<Assignment> assignments;
        for (const char* text : texts)
            assignments.push_back(parseAssignment(text));
        assignContacts(trial, assignments);
    }

    ScriptedHost host;
    CMDTrialzk trial;
};

TEST_F(Probes, OfAModelHaveItsContacts)
{
    EXPECT_EQ(trial.getSeegProbe(0)->m_nProbeMode, 1);
    ASSERT_EQ(trial.getSeegProbe(0)->getTotalContacts(), 8);
    EXPECT_EQ(contact(0, 0).m_strContactName, "A1");
    EXPECT_EQ(contact(0, 0).m_dContactZ, 1.0);
    EXPECT_EQ(contact(0, 7).m_dContactZ, 25.5);
    EXPECT_EQ(trial.getSeegProbe(0)->m_dPointing[2], -10.0);
    EXPECT_EQ(add("B", "16P"), 16);
    EXPECT_EQ(trial.getSeegProbe(1)->m_nProbeMode, 4);
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 1);
}

TEST_F(Probes, OfTheUserHaveThoseThatAreAskedFor)
{
    EXPECT_EQ(add("B", "user"), 3);
    EXPECT_EQ(trial.getSeegProbe(1)->m_nProbeMode, CSeegProbe::userMode);
    EXPECT_EQ(contact(1, 2).m_dContactZ, 10.0);
    EXPECT_EQ(contact(1, 2).m_strContactName, "B3");
}

TEST_F(Probes, ThatCannotBeAreNotAdded)
{
    EXPECT_EQ(faultOf([this] { add("A"); }), "there is a probe A already");
    EXPECT_EQ(faultOf([this] { add("0"); }), "there is a probe 0 already") << "it is the index of one";
    EXPECT_EQ(faultOf([this] { add(""); }), "the probe needs a name");
    EXPECT_EQ(faultOf([this] {
                  addProbe(trial, {"B", {1.0, 2.0, 3.0}, {1.0, 2.0, 3.0}});
              }),
              "base and tip of the probe B are in one place");
    EXPECT_EQ(faultOf([this] {
                  addProbe(trial, {"B", {1.0, 2.0, 3.0}, {}, "user", 5000, 1.0});
              }),
              "the contacts of the probe B can't be placed");
    EXPECT_EQ(trial.m_aSeegProbe.GetSize(), 1);
}

TEST_F(Probes, AreFoundByNameAndThenByIndex)
{
    add("B");
    trial.getSeegProbe(0)->m_strProbeName = "1";
    EXPECT_EQ(probeNamed(trial, "1"), 0);
    EXPECT_EQ(probeNamed(trial, "B"), 1);
    EXPECT_EQ(probeNamed(trial, "0"), 0);
    for (const char* name : {"2", "-1", "b", "", "1x"})
        EXPECT_EQ(faultOf([&] { probeNamed(trial, name); }),
                  "there is no probe " + std::string(name) + "; the trial has 1, B");
    trial.cleanSeegProbe();
    EXPECT_EQ(faultOf([this] { probeNamed(trial, "A"); }), "there is no probe A; the trial has no probes");
}

TEST_F(Probes, ContactsAreFoundByNameAndThenByNumber)
{
    CSeegProbezk& probe = *trial.getSeegProbe(0);
    contact(0, 4).m_strContactName = "2";
    EXPECT_EQ(contactNamed(probe, "A1"), 0);
    EXPECT_EQ(contactNamed(probe, "2"), 4);
    EXPECT_EQ(contactNamed(probe, "8"), 7);
    for (const char* name : {"0", "9", "-1", "A9", ""})
        EXPECT_EQ(faultOf([&] { contactNamed(probe, name); }),
                  "the probe A has no contact " + std::string(name) + "; its contacts are 1 to 8");
    probe.m_aContacts.RemoveAll();
    EXPECT_EQ(faultOf([&] { contactNamed(probe, "1"); }), "the probe A has no contacts");
}

TEST_F(Probes, ContactsAreTiedToChannels)
{
    host.willAnswerYes("Make a new electrode?!");
    host.willAnswerYes("Make a new electrode?!");
    assign({"A:1=C2", "A:A3=C0-77"});
    EXPECT_EQ(contact(0, 0).m_nContactChnlID, 2);
    EXPECT_EQ(contact(0, 0).m_strContactChnlName, "C2-77");
    EXPECT_EQ(contact(0, 0).m_strContactName, "A1");
    EXPECT_EQ(contact(0, 2).m_nContactChnlID, 0);
    EXPECT_EQ(trial.getChannel(2)->m_nChannelType, 350);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    trial.getChannel(0)->getEegElectrode(0)->getElectrodePositionD(x, y, z);
    EXPECT_EQ(z, 8.0);
}

TEST_F(Probes, AChannelHasOneContact)
{
    host.willAnswerYes();
    assign({"A:1=C2"});
    assign({"A:2=C2"}); // has an electrode by now
    EXPECT_EQ(contact(0, 0).m_nContactChnlID, -1);
    EXPECT_EQ(contact(0, 0).m_strContactChnlName, "");
    EXPECT_EQ(contact(0, 1).m_nContactChnlID, 2);
    assign({"A:2=C2"});
    EXPECT_EQ(contact(0, 1).m_nContactChnlID, 2) << "again the same";
}

TEST_F(Probes, ContactsWithoutANameGetOne)
{
    contact(0, 1).m_strContactName.Empty();
    host.willAnswerYes();
    assign({"A:2=C2"});
    EXPECT_EQ(contact(0, 1).m_strContactName, "A2");
}

TEST_F(Probes, NothingIsTiedWhenANameIsUnknown)
{
    EXPECT_EQ(faultOf([this] {
                  assign({"A:1=C2", "A:2=C9"});
              }),
              "there is no channel C9; the nearest names are C0-77, C1-77, C2-77");
    EXPECT_EQ(faultOf([this] { assign({"A:1=C2", "B:2=C1"}); }), "there is no probe B; the trial has A");
    EXPECT_EQ(faultOf([this] { assign({"A:1=C2", "A:2=C2-77"}); }), "the channel C2-77 is assigned twice");
    EXPECT_EQ(faultOf([this] { assign({"A:1=C2", "A:A1=C1"}); }), "the contact A:A1 is assigned twice");
    EXPECT_EQ(contact(0, 0).m_nContactChnlID, -1);
    EXPECT_EQ(trial.getChannel(2)->m_nChannelType, -1);
}

TEST_F(Probes, AChannelThatGetsNoElectrodeEndsIt)
{
    host.willAnswerNo("Make a new electrode?!");
    EXPECT_EQ(faultOf([this] { assign({"A:1=C2"}); }),
              "the channel C2 has no electrode, and gets none (--yes gives it one)");
    EXPECT_EQ(contact(0, 0).m_nContactChnlID, -1);
    EXPECT_EQ(trial.getChannel(2)->m_nChannelType, -1);
}

TEST_F(Probes, AreRemovedByName)
{
    add("B");
    removeProbe(trial, "A");
    ASSERT_EQ(trial.m_aSeegProbe.GetSize(), 1);
    EXPECT_EQ(trial.getSeegProbe(0)->m_strProbeName, "B");
    EXPECT_EQ(faultOf([this] { removeProbe(trial, "A"); }), "there is no probe A; the trial has B");
}

// ---- the command

class Seeg : public SampleCommand
{
protected:
    Seeg() : SampleCommand("seeg") {}

    void add(const std::string& name, std::vector<std::string> options = {}) const
    {
        options.insert(options.begin(), {"--add", name, "--base", "0,0,100", "--tip", "0,0,0", "--in-place"});
        done(options);
    }
    json list() const { return json::parse(done({"--list", "--json"})); }
    // Names of the probes in a trial's file.
    std::vector<std::string> probesOf(int trial) const
    {
        const auto read = trialInFile(sample.path(), trial);
        std::vector<std::string> names;
        for (int i = 0; i < read->m_aSeegProbe.GetSize(); ++i)
            names.push_back(read->m_aSeegProbe.GetAt(i)->m_strProbeName.toUtf8());
        return names;
    }
};

TEST_F(Seeg, AddsListsAndRemovesProbes)
{
    const int current = list().at("trial");
    EXPECT_EQ(list().at("current"), -1);
    EXPECT_EQ(done({"--add", "A", "--base", "0,0,100", "--tip", "0,0,0", "--in-place"}), "probe A: 8 contacts\n");
    add("B", {"--type", "user", "--contacts", "2", "--distance", "4"});
    const json listed = list();
    EXPECT_EQ(listed.at("trial"), current);
    EXPECT_EQ(listed.at("current"), 1);
    ASSERT_EQ(listed.at("probes").size(), 2U);
    EXPECT_EQ(listed["probes"][0]["contacts"].size(), 8U);
    EXPECT_EQ(listed["probes"][1], json::parse(R"({"index": 1, "name": "B", "type": "user", "base_mm": [0, 0, 100.0],
        "tip_mm": [0.0, 0.0, 0.0], "pointing_mm": [0.0, 0.0, -10.0], "extension_percent": 10.0, "visible": false,
        "contacts": [{"number": 1, "name": "B1", "position_mm": [0.0, 0.0, 0.0], "size_mm": 0.8, "channel": null,
                      "channel_name": null},
                     {"number": 2, "name": "B2", "position_mm": [0.0, 0.0, 4.0], "size_mm": 0.8, "channel": null,
                      "channel_name": null}]})"));
    const std::string text = done({"--list"});
    EXPECT_THAT(text, HasSubstr("probe 0 A, type 8P\n       1      0.00      0.00      1.00  A1\n"));
    EXPECT_THAT(text, HasSubstr("probe 1 B, type user, current\n"));
    EXPECT_EQ(done({"--remove", "A", "--in-place"}), "probe A removed\n");
    EXPECT_THAT(probesOf(current), ElementsAre("B"));
}

TEST_F(Seeg, ChangesTheCurrentTrialOrAll)
{
    const int current = list().at("trial");
    add("A");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(probesOf(i).size(), i == current ? 1U : 0U) << i;
    add("B", {"--all"});
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(probesOf(i).back(), "B") << i;
    EXPECT_EQ(list().at("trial"), current);
    EXPECT_THAT(fault({"--remove", "A", "--all", "--out", file("new.meg")}), HasSubstr("there is no probe A"));
    EXPECT_FALSE(sample.folder().has("new.meg"));
}

TEST_F(Seeg, TiesContactsToChannels)
{
    add("A");
    EXPECT_THAT(fault({"--assign", "A:1=X1", "--in-place"}), HasSubstr("(--yes gives it one)"));
    EXPECT_EQ(done({"--assign", "A:1=X1,A:2=E1", "--in-place", "--yes"}), "2 contacts assigned\n");
    const json contacts = list()["probes"][0]["contacts"];
    EXPECT_EQ(contacts[0]["channel"], 5);
    EXPECT_EQ(contacts[0]["channel_name"], "X1");
    EXPECT_EQ(contacts[1]["channel"], 3);
    EXPECT_TRUE(contacts[2]["channel"].is_null());
    EXPECT_THAT(done({"--list"}), HasSubstr("A1 = X1\n"));
    const json info = json::parse(runMegset({"info", sample.path(), "--json"}).output);
    EXPECT_EQ(info["channels"][5]["type"], 350);
    EXPECT_EQ(info["channels"][5]["position_mm"], json::parse("[0.0, 0.0, 1.0]"));
}

TEST_F(Seeg, PlacesMayBeginWithAMinus)
{
    done({"--add", "A", "--base", "-60,-40,0", "--tip", "-25,-35,0", "--in-place"});
    EXPECT_EQ(list()["probes"][0]["base_mm"], json::parse("[-60.0, -40.0, 0.0]"));
}

TEST_F(Seeg, TellsUnknownChannelsWithTheNearestNames)
{
    add("A");
    EXPECT_THAT(fault({"--assign", "A:1=M3", "--in-place", "--yes"}),
                HasSubstr("there is no channel M3; the nearest names are M1-77, M2-77, "));
    EXPECT_THAT(fault({"--assign", "A:1", "--in-place"}),
                HasSubstr("\"A:1\" is not of the form PROBE:CONTACT=CHANNEL"));
}

// ---- files

TEST_F(Seeg, SavesProbesAndOpensThemInAnotherDataset)
{
    add("A");
    const int current = list().at("trial");
    EXPECT_EQ(done({"--save", file("my")}), file("my.seeg") + ": probes of trial " + std::to_string(current) + "\n");
    EXPECT_THAT(fault({"--save", file("my.seeg")}), HasSubstr("my.seeg: exists already"));
    const SampleDataset other(2);
    const auto result = runMegset({"seeg", other.path(), "--open", file("my.seeg"), "--all", "--in-place"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "1 probes to all trials\n");
    for (int i = 0; i < 2; ++i) {
        const auto trial = trialInFile(other.path(), i);
        ASSERT_EQ(trial->m_aSeegProbe.GetSize(), 1);
        EXPECT_EQ(trial->getSeegProbe(0)->getTotalContacts(), 8);
    }
}

TEST_F(Seeg, OpensAFileForThoseThatAreThere)
{
    add("A");
    EXPECT_EQ(done({"--open", write("p.seeg", seegFile({1, -1, 2})), "--in-place"}), "2 probes to the current trial\n");
    EXPECT_THAT(probesOf(list().at("trial")), ElementsAre("probe1", "probe2"));
}

TEST_F(Seeg, SavesNothingWithoutProbes)
{
    EXPECT_THAT(fault({"--save", file("my.seeg")}), HasSubstr("run.meg: the current trial has no probes"));
    EXPECT_FALSE(sample.folder().has("my.seeg"));
}

TEST_F(Seeg, TakesProbesWithoutContactsAndTellsThem)
{
    CSeegProbezk bare = trialRecord::probe(1);
    bare.m_aContacts.RemoveAll();
    const ByteBuilder bytes = seegHeader().i32(1).i64(1).append(trialRecord::guarded(bare));
    done({"--open", write("bare.seeg", bytes), "--in-place"});
    EXPECT_TRUE(list()["probes"][0]["contacts"].empty());
    EXPECT_THAT(fault({"--assign", "probe1:1=X1", "--in-place", "--yes"}),
                HasSubstr("the probe probe1 has no contacts"));
}

TEST_F(Seeg, RefusesBrokenFilesWithPathAndOffset)
{
    add("A");
    const std::vector<std::byte> whole = seegFile({1}).bytes();
    write("cut.seeg", ByteBuilder().raw(std::span(whole).first(whole.size() - 1)));
    EXPECT_THAT(fault({"--open", file("cut.seeg"), "--in-place"}),
                testing::ContainsRegex("cut.seeg: offset [0-9]+: the file ends before the record does"));
    EXPECT_THAT(fault({"--open", write("v.seeg", seegHeader(20171007)), "--in-place"}),
                testing::AllOf(HasSubstr("v.seeg: offset 24: "), HasSubstr("Wrong SEEG information file format!!?")));
    EXPECT_THAT(fault({"--open", write("e.epos", electrodeHeader()), "--in-place"}),
                HasSubstr("this is no file of the kind: depth probes (.seeg), but: electrodes (.epos)"));
    EXPECT_THAT(probesOf(list().at("trial")), ElementsAre("A"));
}

// ---- usage

TEST_F(Seeg, OneActionIsAskedAndItsOptions)
{
    EXPECT_EQ(run({}).exitCode, 2);
    EXPECT_EQ(run({"--list", "--remove", "A"}).exitCode, 2);
    EXPECT_EQ(run({"--list", "--all"}).exitCode, 2);
    EXPECT_EQ(run({"--remove", "A", "--json", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--add", "A", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--add", "", "--base", "0,0,1", "--tip", "0,0,0", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--add", "A", "--base", "0,0,1", "--tip", "0,0,0", "--type", "9P", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--add", "A", "--base", "0,0,1", "--tip", "0,0,0", "--type", "8P", "--contacts", "3", "--in-place"})
                  .exitCode,
              2);
    EXPECT_THAT(fault({"--add", "A", "--base", "0,0,1", "--tip", "0,0"}), HasSubstr("\"0,0\" is no place X,Y,Z in mm"));
    EXPECT_THAT(fault({"--remove", "A"}), HasSubstr("say where the changed dataset goes"));
}

} // namespace

} // namespace megset::cli::seeg_test
