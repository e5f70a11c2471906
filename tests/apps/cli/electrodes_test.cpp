#include "apps/cli/electrodes/changeElectrodes.h"
#include "apps/cli/electrodes/electrodeList.h"
#include "tests/apps/cli/SampleCommand.h"
#include "tests/persistence/informationFiles.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::electrodes_test {

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

// In all trials E1 is an EEG channel without an electrode, and X1 one with the electrode "Cz" at 1, 2, 3.
class Electrodes : public SampleCommand
{
protected:
    Electrodes() : SampleCommand("electrodes")
    {
        for (int i = 0; i < 3; ++i) {
            CMDChannelzk& channel = *sample.dataset().getTrialzk(i)->getChannel(5);
            channel._initGeomHw(2);
            channel.setChannelType(303);
            CEEGelectrodezk& electrode = *channel.getEegElectrode(0);
            electrode.m_strElectrodeName = "Cz";
            electrode.m_strElectrodeLabel = "label";
            electrode.m_nNameSet = 1;
            electrode.setElectrodePositionD(1.0, 2.0, 3.0);
        }
        sample.dataset().openTrial(0);
        sample.store();
    }

    // What a trial's file has.
    std::vector<ListedElectrode> listed(int trial) const { return listElectrodes(*trialInFile(sample.path(), trial)); }
    std::vector<std::vector<std::byte>> trialBytes() const
    {
        std::vector<std::vector<std::byte>> all;
        for (int i = 0; i < 3; ++i)
            all.push_back(sample.folder().read(fromNative(sample.trialFile(i).filename())));
        return all;
    }
    // A file of `count` channels, all with electrodes.
    static ByteBuilder fileOf(int count)
    {
        std::vector<ByteBuilder> entries;
        for (int i = 0; i < count; ++i)
            entries.push_back(electrodeEntry(302, i));
        return electrodeFile(entries);
    }
};

TEST_F(Electrodes, AreListedWithOrWithoutAPlace)
{
    const std::string text = done({});
    EXPECT_THAT(text, HasSubstr("      3   302                  no electrode  E1\n"));
    EXPECT_THAT(text, HasSubstr("      5   303      1.00      2.00      3.00  X1\n"));
}

TEST_F(Electrodes, AreListedAsJson)
{
    const json list = json::parse(done({"--json"}));
    EXPECT_EQ(list.at("trial"), 0);
    ASSERT_EQ(list.at("electrodes").size(), 2U);
    EXPECT_EQ(list["electrodes"][0], json::parse(R"({"channel": 3, "name": "E1", "type": 302, "electrode": null,
        "label": "", "standard": "", "position_mm": null, "found": false, "impedance_kohm": 0.0})"));
    EXPECT_EQ(list["electrodes"][1], json::parse(R"({"channel": 5, "name": "X1", "type": 303, "electrode": "Cz",
        "label": "label", "standard": "", "position_mm": [1.0, 2.0, 3.0], "found": false, "impedance_kohm": 0.0})"));
}

// ---- files

TEST_F(Electrodes, AreSavedAndOpenedInAnotherDataset)
{
    const std::string saved = file("my.epos");
    EXPECT_EQ(done({"--save", file("my")}), saved + ": electrodes of trial 0\n");
    SampleDataset other(2);
    const auto result = runMegset({"electrodes", other.path(), "--open", saved, "--all", "--in-place"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "1 electrodes to all trials\n");
    for (int i = 0; i < 2; ++i) {
        const auto trial = trialInFile(other.path(), i);
        EXPECT_EQ(trial->getChannel(5)->m_nChannelType, 303);
        ASSERT_NE(trial->getChannel(5)->getEegElectrode(0), nullptr);
        EXPECT_EQ(trial->getChannel(5)->getEegElectrode(0)->m_strElectrodeName, "Cz");
    }
}

TEST_F(Electrodes, SavingChangesNoFileThatIsThere)
{
    const auto before = trialBytes();
    const auto dataset = sample.folder().read("run.meg");
    done({"--save", file("my.epos")});
    EXPECT_EQ(trialBytes(), before);
    EXPECT_EQ(sample.folder().read("run.meg"), dataset);
    const auto saved = sample.folder().read("my.epos");
    EXPECT_THAT(fault({"--save", file("my.epos")}), HasSubstr("my.epos: exists already"));
    EXPECT_EQ(sample.folder().read("my.epos"), saved);
}

TEST_F(Electrodes, WithoutAnyNothingIsSaved)
{
    const SampleDataset other;
    const auto result = runMegset({"electrodes", other.path(), "--save", file("none.epos")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("run.meg: no channel of the current trial has an electrode"));
    EXPECT_FALSE(sample.folder().has("none.epos"));
}

TEST_F(Electrodes, AreOpenedInTheCurrentTrialAlone)
{
    const std::string opened = write("a.epos", fileOf(6));
    EXPECT_EQ(done({"--open", opened, "--in-place"}), "6 electrodes to the current trial\n");
    EXPECT_EQ(listed(0).size(), 6U);
    EXPECT_EQ(listed(0)[2].label, "E2");
    EXPECT_EQ(listed(1).size(), 2U);
}

TEST_F(Electrodes, AreOpenedInACopy)
{
    const auto before = trialBytes();
    done({"--open", write("a.epos", fileOf(6)), "--all", "--out", file("new.meg")});
    EXPECT_EQ(trialBytes(), before);
    const auto result = runMegset({"electrodes", file("new.meg"), "--json"});
    const json list = json::parse(result.output);
    EXPECT_EQ(list.at("trial"), 0) << "the current trial stays current";
    EXPECT_EQ(list.at("electrodes").size(), 6U);
}

TEST_F(Electrodes, OfAnotherNumberOfChannelsAreRefusedUnlessToldYes)
{
    const std::string opened = write("many.epos", fileOf(8));
    const auto before = trialBytes();
    const std::string why = fault({"--open", opened, "--all", "--in-place"});
    EXPECT_THAT(why, HasSubstr("Channel number does not match: 6->8 ! Continue?"));
    EXPECT_THAT(why, HasSubstr("many.epos: the electrodes were not taken; it has 8 channels"));
    EXPECT_EQ(trialBytes(), before);
    EXPECT_EQ(done({"--open", opened, "--all", "--in-place", "--yes"}),
              "6 electrodes to all trials; 2 of the file have no channel\n");
    EXPECT_EQ(listed(2).size(), 6U);
}

TEST_F(Electrodes, OfAnotherNumberOfChannelsLeaveNoCopy)
{
    fault({"--open", write("few.epos", fileOf(2)), "--out", file("new.meg")});
    EXPECT_FALSE(sample.folder().has("new.meg"));
    EXPECT_FALSE(sample.folder().has("newTrial0.trl"));
}

TEST_F(Electrodes, OfABrokenFileAreRefusedWithPathAndOffset)
{
    const auto before = trialBytes();
    const std::vector<std::byte> whole = fileOf(6).bytes();
    const std::vector<std::byte> cut(whole.begin(), whole.end() - 3);
    write("cut.epos", ByteBuilder().raw(cut));
    EXPECT_THAT(fault({"--open", file("cut.epos"), "--in-place"}),
                testing::ContainsRegex("cut.epos: offset [0-9]+: the file ends before the record does"));
    const std::string version = fault({"--open", write("v.epos", electrodeHeader(20170727)), "--in-place"});
    EXPECT_THAT(version, HasSubstr("v.epos: offset 40: "));
    EXPECT_THAT(version, HasSubstr("Wrong electrode information file format!!?"));
    EXPECT_THAT(fault({"--open", write("count.epos", electrodeHeader().i32(-1)), "--in-place"}),
                HasSubstr("count.epos: offset 44: the reader refused what it read"));
    EXPECT_THAT(fault({"--open", write("more.epos", fileOf(6).i32(0)), "--in-place"}),
                HasSubstr("4 bytes are left over behind the record"));
    EXPECT_EQ(trialBytes(), before);
}

TEST_F(Electrodes, OfAnotherKindOfFileAreRefused)
{
    EXPECT_THAT(
        fault({"--open", write("p.seeg", seegFile({1})), "--in-place"}),
        HasSubstr("p.seeg: offset 0: this is no file of the kind: electrodes (.epos), but: depth probes (.seeg)"));
    sample.folder().write("t.epos", "text");
    EXPECT_THAT(fault({"--open", file("t.epos"), "--in-place"}),
                HasSubstr("t.epos: offset 0: this is no file of the kind: electrodes (.epos)\n"));
    EXPECT_THAT(fault({"--open", file("gone.epos"), "--in-place"}), HasSubstr("gone.epos"));
}

TEST_F(Electrodes, AMissingTrialIsToldBeforeAnythingChanges)
{
    std::filesystem::remove(sample.trialFile(1));
    const auto before = sample.folder().read(fromNative(sample.trialFile(0).filename()));
    EXPECT_THAT(fault({"--open", write("a.epos", fileOf(6)), "--all", "--in-place", "--no"}),
                HasSubstr(": the trial's file is missing"));
    EXPECT_EQ(sample.folder().read(fromNative(sample.trialFile(0).filename())), before);
}

// ---- standard places

TEST_F(Electrodes, TakeTheStandardPlacesOfTheirNamesWhoseCaseDoesNotCount)
{
    const auto result = run({"--standard", "--in-place"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "1 electrodes at their standard places in the current trial\n");
    EXPECT_EQ(result.errors, "megset: there is no standard place for E1\n");
    const ListedElectrode placed = listed(0)[1];
    EXPECT_EQ(placed.electrode, "Cz") << "the name stays";
    EXPECT_EQ(placed.standard, "CZ");
    EXPECT_TRUE(placed.found);
    EXPECT_EQ(placed.type, 302);
    EXPECT_EQ(placed.position->x, 7.43439);
    EXPECT_EQ(placed.position->y, 151.83792);
    EXPECT_EQ(placed.position->z, 14.09561);
    EXPECT_EQ(listed(1)[1].position->x, 1.0);
}

TEST_F(Electrodes, TheTableIsAskedFirst)
{
    sample.dataset().getTrialzk(0)->getChannel(5)->getEegElectrode(0)->m_strElectrodeName = "P3";
    sample.dataset().getTrialzk(0)->getChannel(3)->m_strChannelName = "Fcz"; // in the larger table alone
    sample.store();
    EXPECT_EQ(done({"--standard", "--in-place"}), "2 electrodes at their standard places in the current trial\n");
    EXPECT_EQ(listed(0)[1].position->z, 70.72357);
    EXPECT_EQ(listed(0)[0].standard, "FCZ");
    EXPECT_EQ(listed(0)[0].electrode, "Fcz");
    done({"--standard", "--table", "std32", "--in-place"});
    EXPECT_EQ(listed(0)[1].position->z, 80.72357);
}

TEST_F(Electrodes, TakeStandardPlacesInAllTrials)
{
    done({"--standard", "--all", "--in-place"});
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(listed(i)[1].standard, "CZ") << i;
}

TEST_F(Electrodes, InsideTheHeadHaveNoStandardPlace)
{
    CMDChannelzk& contact = *sample.dataset().getTrialzk(0)->getChannel(3);
    contact._initGeomHw(2);
    contact.setChannelType(350);
    contact.m_strChannelName = "A1"; // an ear, too
    sample.store();
    EXPECT_EQ(done({"--standard", "--in-place"}), "1 electrodes at their standard places in the current trial\n");
    EXPECT_EQ(listed(0)[0].type, 350);
    EXPECT_EQ(listed(0)[0].position->x, 0.0);
    EXPECT_EQ(listed(0)[0].electrode, "A1");
}

TEST_F(Electrodes, WithoutAStandardNameNothingChanges)
{
    for (int i = 0; i < 3; ++i)
        sample.dataset().getTrialzk(i)->getChannel(5)->getEegElectrode(0)->m_strElectrodeName = "EEG057";
    sample.store();
    EXPECT_THAT(fault({"--standard", "--out", file("new.meg")}),
                HasSubstr("no EEG channel has the name of a standard electrode, such as CZ"));
    EXPECT_FALSE(sample.folder().has("new.meg"));
}

// ---- usage

TEST_F(Electrodes, OneActionIsAskedAndItsOptions)
{
    EXPECT_EQ(run({"--standard", "--save", "x", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--table", "std21"}).exitCode, 2);
    EXPECT_EQ(run({"--standard", "--table", "std22", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({"--all"}).exitCode, 2);
    EXPECT_EQ(run({"--save", "x", "--json"}).exitCode, 2);
    EXPECT_THAT(fault({"--standard"}), HasSubstr("say where the changed dataset goes"));
}

} // namespace

} // namespace megset::cli::electrodes_test
