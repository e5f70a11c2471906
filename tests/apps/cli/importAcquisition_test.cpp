// `megset import` of an acquisition, and what it says when that can't be done.
#include "apps/phantom/acquisition.h"
#include "tests/apps/cli/SampleDataset.h"
#include "tests/apps/cli/shortPhantom.h"
#include "tests/persistence/acquisitionRecord.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset::cli::importAcquisition_test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace acq = acquisitionRecord;

// A phantom of 3 trials of a tenth of a second in the folder "rec".
class ImportOfAcquisition : public testing::Test
{
protected:
    ImportOfAcquisition()
    {
        folder.makeFolder("rec");
        phantom::writeAcquisition(folder.native("rec\\run.mega"), shortPhantom());
    }

    std::string path(const char* name) const { return folder.native(name).string(); }
    kit::ProgramResult import(std::vector<std::string> options = {}, const char* source = "rec\\run.mega") const
    {
        options.insert(options.begin(), {"import", path(source), path("new.meg")});
        return runMegset(options);
    }
    // A recording of trials of four samples, written byte by byte.
    void writeRecording(const acq::Parts& parts) const
    {
        folder.write("rec\\own.mega", acq::record(acq::newest, parts).bytes());
    }
    acq::Parts recordingOf(int trials) const
    {
        acq::Parts parts;
        parts.trials.total = trials;
        parts.trials.session = "S";
        parts.trials.presence = 1;
        for (int i = 0; i < trials; ++i) {
            parts.trials.paths.push_back(CString::formatted("D:\\away\\t%d.trla", i));
            folder.write(CString::formatted("rec\\t%d.trla", i),
                         acq::trial(acq::namedTrial(CString::formatted("T%d", i), {{1, 2, 3, 4.0 + i}})).bytes());
        }
        return parts;
    }
    // What fails leaves nothing but what was there, and tells on one line or more.
    void expectFailure(const kit::ProgramResult& result, const std::string& text,
                       std::vector<std::string> left = {"rec"}) const
    {
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_THAT(result.errors, HasSubstr(text));
        EXPECT_EQ(folder.names(), left);
    }

    const TemporaryFolder folder;
};

TEST_F(ImportOfAcquisition, MakesADatasetThatIsInOrder)
{
    const auto result = import();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, path("new.meg") + ": 3 trials, 72 channels, 120 samples\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(folder.names(), ElementsAre("new.meg", "rec", "runTrial0.trl", "runTrial1.trl", "runTrial2.trl"));
    EXPECT_EQ(runMegset({"check", path("new.meg")}).output, path("new.meg") + ": 3 of 3 trials read, nothing wrong\n");
}

TEST_F(ImportOfAcquisition, GivesTheSamplesThatTheCtfFormGives)
{
    phantom::writePhantom(folder.native("run.ds"), shortPhantom());
    ASSERT_EQ(import().exitCode, 0);
    ASSERT_EQ(runMegset({"import", path("run.ds"), path("ctf.meg")}).exitCode, 0);
    for (const char* name : {"new", "ctf"})
        ASSERT_EQ(runMegset({"export", path((name + std::string(".meg")).c_str()), "--npy",
                             path((name + std::string(".npy")).c_str()), "--trial", "2", "--kind", "all"})
                      .exitCode,
                  0);
    EXPECT_GT(folder.read("new.npy").size(), 72U * 120U * 4U);
    EXPECT_EQ(folder.read("new.npy"), folder.read("ctf.npy"));
}

TEST_F(ImportOfAcquisition, LeavesTheRecordingAsItIs)
{
    const std::vector<std::byte> dataset = folder.read("rec\\run.mega");
    const std::vector<std::byte> trial = folder.read("rec\\runTrial1.trla");
    import();
    EXPECT_EQ(folder.read("rec\\run.mega"), dataset);
    EXPECT_EQ(folder.read("rec\\runTrial1.trla"), trial);
}

TEST_F(ImportOfAcquisition, SessionIsThatOfTheRecordingOrTheOneThatIsGiven)
{
    import();
    EXPECT_EQ(nlohmann::json::parse(runMegset({"info", path("new.meg"), "--json"}).output).at("session"), "run");
    import({"--force", "--session", "Subject 7"});
    EXPECT_EQ(nlohmann::json::parse(runMegset({"info", path("new.meg"), "--json"}).output).at("session"), "Subject 7");
}

TEST_F(ImportOfAcquisition, OfTheOlderVersionIsTheSame)
{
    acq::Parts parts = recordingOf(2);
    folder.write("rec\\old.mega", acq::record(20200727, parts).bytes());
    const auto result = import({}, "rec\\old.mega");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, path("new.meg") + ": 2 trials, 1 channel, 4 samples\n");
}

TEST_F(ImportOfAcquisition, WarnsOfSamplesThatAreNotTheRecordings)
{
    acq::Parts parts = recordingOf(1);
    CMEGRecordInfozk info;
    info.m_nRecTotalSample = 7;
    info.m_nResampleFactor = 3;
    info.m_dRecSampleRate = 100;
    parts.recordInfo = acq::recordBytes(info);
    writeRecording(parts);
    const auto result = import({}, "rec\\own.mega");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("Sample has been changed: 7->4, Please re-sample and check the data"));
}

TEST_F(ImportOfAcquisition, AnIndexOutsideTheTrialsOpensTheFirst)
{
    acq::Parts parts = recordingOf(2);
    parts.trials.current = 9;
    writeRecording(parts);
    EXPECT_EQ(import({}, "rec\\own.mega").exitCode, 0);
    EXPECT_EQ(runMegset({"check", path("new.meg")}).exitCode, 0);
}

// ---- targets that exist

TEST_F(ImportOfAcquisition, ExistingDatasetStaysUnlessForced)
{
    folder.write("new.meg", "mine");
    expectFailure(import(), "new.meg: exists already", {"new.meg", "rec"});
    EXPECT_EQ(import({"--force"}).exitCode, 0);
    EXPECT_EQ(runMegset({"check", path("new.meg")}).exitCode, 0);
}

TEST_F(ImportOfAcquisition, TrialFileOfSomebodyElseStaysUnlessForced)
{
    folder.write("runTrial1.trl", "mine");
    expectFailure(import(), "runTrial1.trl: exists already", {"rec", "runTrial1.trl"});
    EXPECT_EQ(folder.read("runTrial1.trl").size(), 4U);
    EXPECT_EQ(import({"--force"}).exitCode, 0);
    EXPECT_GT(folder.read("runTrial1.trl").size(), 4U);
}

TEST_F(ImportOfAcquisition, ForcedImportThatFailsLeavesTheFormerDataset)
{
    ASSERT_EQ(import().exitCode, 0);
    const std::vector<std::byte> former = folder.read("runTrial0.trl");
    std::filesystem::resize_file(folder.native("rec\\runTrial2.trla"), 5000);
    EXPECT_EQ(import({"--force"}).exitCode, 1);
    EXPECT_EQ(folder.read("runTrial0.trl"), former);
    EXPECT_EQ(runMegset({"check", path("new.meg")}).output, path("new.meg") + ": 3 of 3 trials read, nothing wrong\n");
}

TEST_F(ImportOfAcquisition, NoFileOfTheRecordingIsReplacedEvenWhenForced)
{
    const std::vector<std::byte> dataset = folder.read("rec\\run.mega");
    for (const char* target : {"rec\\run.mega", "rec\\runTrial0.trla"}) {
        const std::vector<std::byte> before = folder.read(target);
        const auto result = runMegset({"import", path("rec\\run.mega"), path(target), "--force"});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.errors, HasSubstr("recording"));
        EXPECT_EQ(folder.read(target), before);
    }
    // A trial's file of the recording may have the name of a dataset's.
    acq::Parts parts = recordingOf(1);
    parts.trials.paths = {"D:\\away\\ST0.trl"};
    std::filesystem::rename(folder.native("rec\\t0.trla"), folder.native("rec\\ST0.trl"));
    writeRecording(parts);
    const std::vector<std::byte> trial = folder.read("rec\\ST0.trl");
    const auto result = runMegset({"import", path("rec\\own.mega"), path("rec\\new.meg"), "--force"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("ST0.trl: this is a file of the recording"));
    EXPECT_EQ(folder.read("rec\\ST0.trl"), trial);
}

TEST_F(ImportOfAcquisition, TargetWithTheNameOfATrialIsRefused)
{
    const auto result = runMegset({"import", path("rec\\run.mega"), path("runTrial1.trl")});
    expectFailure(result, "runTrial1.trl: a trial has this name; the dataset needs another one");
}

TEST_F(ImportOfAcquisition, TargetThatIsAFolderIsLeftAloneEvenWhenForced)
{
    folder.makeFolder("new.meg");
    expectFailure(import({"--force"}), "new.meg: is a folder; the dataset needs a name in it", {"new.meg", "rec"});
}

TEST_F(ImportOfAcquisition, TargetInAFolderThatIsNotThereIsTold)
{
    const auto result = runMegset({"import", path("rec\\run.mega"), path("no") + "/new.meg"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("there is no such folder"));
}

TEST_F(ImportOfAcquisition, PassingFolderOfAnotherImportIsLeftAlone)
{
    folder.makeFolder("new.meg.import");
    expectFailure(import(), "new.meg.import: exists already", {"new.meg.import", "rec"});
}

// ---- files that are missing

TEST_F(ImportOfAcquisition, MissingTrialsAreNamed)
{
    std::filesystem::remove(folder.native("rec\\runTrial0.trla"));
    std::filesystem::remove(folder.native("rec\\runTrial2.trla"));
    const auto result = import();
    expectFailure(result,
                  "run.mega: 2 of 3 trial files are missing, neither where the recording tells nor beside its "
                  "own file:\n  trial 0: D:\\Phantom\\runTrial0.trla\n  trial 2: D:\\Phantom\\runTrial2.trla\n");
}

TEST_F(ImportOfAcquisition, ManyMissingTrialsAreCounted)
{
    acq::Parts parts = recordingOf(8);
    for (int i = 0; i < 8; ++i)
        std::filesystem::remove(folder.native(CString::formatted("rec\\t%d.trla", i)));
    writeRecording(parts);
    expectFailure(import({}, "rec\\own.mega"), "trial 4: D:\\away\\t4.trla\n  and 3 more\n");
}

TEST_F(ImportOfAcquisition, RecordingThatWasMovedAsAWholeIsFound)
{
    std::filesystem::rename(folder.native("rec"), folder.native("moved"));
    EXPECT_EQ(import({}, "moved\\run.mega").exitCode, 0);
}

TEST_F(ImportOfAcquisition, RecordingThatWasMovedWithoutItsTrialsIsTold)
{
    std::filesystem::rename(folder.native("rec\\run.mega"), folder.native("run.mega"));
    expectFailure(import({}, "run.mega"), "3 of 3 trial files are missing", {"rec", "run.mega"});
}

TEST_F(ImportOfAcquisition, TrialsAtThePathThatTheRecordingTellsAreFound)
{
    acq::Parts parts = recordingOf(1);
    parts.trials.paths = {folder.path("rec\\t0.trla")};
    folder.write("own.mega", acq::record(acq::newest, parts).bytes());
    EXPECT_EQ(import({}, "own.mega").exitCode, 0);
}

TEST_F(ImportOfAcquisition, RecordingWithoutTrialsIsTold)
{
    writeRecording(recordingOf(0));
    expectFailure(import({}, "rec\\own.mega"), "own.mega: the recording has no trials");
}

TEST_F(ImportOfAcquisition, FewerFilesThanTrialsAreTold)
{
    acq::Parts parts = recordingOf(2);
    parts.trials.total = 3;
    writeRecording(parts);
    expectFailure(import({}, "rec\\own.mega"), "own.mega: the recording counts 3 trials and names 2 files");
    parts = recordingOf(2);
    parts.trials.presence = 0;
    writeRecording(parts);
    expectFailure(import({}, "rec\\own.mega"), "own.mega: the recording counts 2 trials and names 0 files");
}

// ---- files that are broken

TEST_F(ImportOfAcquisition, DatasetThatIsCutShortIsTold)
{
    std::filesystem::resize_file(folder.native("rec\\run.mega"), 500);
    expectFailure(import(), "run.mega: the file ends before the recording does");
}

TEST_F(ImportOfAcquisition, DatasetOfAnUnknownVersionIsTold)
{
    folder.write("rec\\run.mega", acq::header(20220419).bytes());
    expectFailure(import(), "run.mega: Wrong MEG acquisition file format!!?");
}

TEST_F(ImportOfAcquisition, FileOfAnotherKindIsTold)
{
    expectFailure(import({}, "rec\\runTrial0.trla"),
                  "runTrial0.trla: a recording's dataset (.mega) is wanted; this is: ");
    folder.write("rec\\note.txt", "none of them");
    expectFailure(import({}, "rec\\note.txt"), "note.txt: is neither the folder of a CTF recording (.ds) nor");
    expectFailure(import({}, "rec\\none.mega"), "none.mega: there is no such file or folder");
}

TEST_F(ImportOfAcquisition, TrialThatIsCutShortIsTold)
{
    std::filesystem::resize_file(folder.native("rec\\runTrial1.trla"), 5000);
    expectFailure(import(), "runTrial1.trla: trial 1: the file ends before the trial does");
}

TEST_F(ImportOfAcquisition, TrialOfAnotherKindIsTold)
{
    folder.write("rec\\runTrial2.trla", ByteBuilder().wide("MEGTRIALZK").i32(20190730).bytes());
    expectFailure(import(), "runTrial2.trla: trial 2: The opened file is not trial or corrupted!");
    folder.write("rec\\runTrial2.trla", acq::trialHeader(20200728).bytes());
    expectFailure(import(), "runTrial2.trla: trial 2: Wrong MeAcqTrial file format!!?");
}

TEST_F(ImportOfAcquisition, TrialWithoutChannelsIsTold)
{
    folder.write("rec\\runTrial1.trla", acq::trial(acq::TrialParts()).bytes());
    expectFailure(import(), "runTrial1.trla: trial 1: the trial has no channels");
}

TEST_F(ImportOfAcquisition, NameThatTheSystemDoesNotTakeIsTold)
{
    acq::Parts parts = recordingOf(1);
    parts.trials.session = CString(u'x', 300);
    writeRecording(parts);
    expectFailure(import({}, "rec\\own.mega"), "own.mega: the recording can't be imported: ");
}

TEST_F(ImportOfAcquisition, TrialsWhereTheRecordingTellsComeBeforeThoseBesideIt)
{
    acq::Parts parts = recordingOf(1);
    const CString elsewhere = folder.makeFolder("rec\\first") + "t0.trla";
    folder.write("rec\\first\\t0.trla", acq::trialHeader(20200728).bytes());
    parts.trials.paths = {elsewhere};
    writeRecording(parts);
    expectFailure(import({}, "rec\\own.mega"), "first/t0.trla: trial 0: Wrong MeAcqTrial file format!!?");
}

TEST_F(ImportOfAcquisition, NamesThatLeaveTheFolderMakeFilesBesideTheDataset)
{
    acq::Parts parts = recordingOf(1);
    parts.trials.session = "..\\..\\out";
    writeRecording(parts);
    EXPECT_EQ(import({}, "rec\\own.mega").exitCode, 0);
    EXPECT_THAT(folder.names(), ElementsAre(".._.._outT0.trl", "new.meg", "rec"));
    EXPECT_EQ(runMegset({"check", path("new.meg")}).exitCode, 0);
}

} // namespace

} // namespace megset::cli::importAcquisition_test
