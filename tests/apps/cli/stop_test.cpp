// Commands that are stopped, killed, or that can't write: no trial is lost, and nothing half-written stays.
#include "tests/apps/cli/SampleDataset.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::stop_test {

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

using Files = std::map<std::string, std::vector<std::byte>>;

Files filesIn(const TemporaryFolder& folder)
{
    Files files;
    for (const std::string& name : folder.names())
        files[name] = folder.read(name);
    return files;
}

std::chrono::microseconds durationOf(const std::vector<std::string>& command)
{
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(runMegset(command).exitCode, 0);
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin);
}

// The files of a folder, to have them again after a change.
class Original
{
public:
    explicit Original(const TemporaryFolder& folder) : m_folder(folder)
    {
        for (const std::string& name : folder.names())
            fs::copy_file(folder.native(name), m_files.native(name));
    }

    void bringBack() const
    {
        for (const std::string& name : m_files.names())
            fs::copy_file(m_files.native(name), m_folder.native(name), fs::copy_options::overwrite_existing);
    }

private:
    const TemporaryFolder& m_folder;
    TemporaryFolder m_files;
};

// Stops the command at moments over all its length. `isDone` tells by the files whether it came to its end; otherwise
// all is as it was. Gives how often it was stopped before its end.
template <class Undo>
int stopAgainAndAgain(const SampleDataset& sample, const std::vector<std::string>& command, int signal, Undo undo)
{
    const Files before = filesIn(sample.folder());
    const std::chrono::microseconds length = durationOf(command);
    const Files after = filesIn(sample.folder());
    undo();
    EXPECT_TRUE(filesIn(sample.folder()) == before);
    constexpr int moments = 12;
    int stopped = 0;
    for (int i = 1; i < moments; ++i) {
        const auto result = kit::runAndKillProgram(MEGSET_PROGRAM, command, length * i / moments, signal);
        const Files left = filesIn(sample.folder());
        EXPECT_TRUE(left == before || left == after) << "moment " << i << ": " << result.errors;
        if (left == after && left != before) {
            undo();
            continue;
        }
        EXPECT_NE(result.exitCode, 0);
        ++stopped;
    }
    return stopped;
}

TEST(Stop, CopyThatIsStoppedGoesWithAllItsFiles)
{
    const SampleDataset sample(8, 20000);
    const std::string copy = sample.folder().native("new.meg").string();
    const auto undo = [&] {
        for (const std::string& name : sample.folder().names())
            if (name.starts_with("new"))
                fs::remove(sample.folder().native(name));
    };
    for (const int signal : {SIGINT, SIGTERM})
        EXPECT_GT(stopAgainAndAgain(sample, {"resample", sample.path(), "--factor", "2", "--out", copy}, signal, undo),
                  0);
}

TEST(Stop, ChangeInPlaceThatIsStoppedLeavesAllAsItWas)
{
    const SampleDataset sample(8, 20000);
    const Original original(sample.folder());
    EXPECT_GT(stopAgainAndAgain(sample, {"resample", sample.path(), "--factor", "2", "--in-place"}, SIGINT,
                                [&] { original.bringBack(); }),
              0);
}

TEST(Stop, ProgramSaysThatItWasStopped)
{
    const TemporaryFolder folder;
    const std::vector<std::string> command = {"phantom", folder.native("x.ds").string(), "--trials", "1000"};
    kit::ProgramResult result;
    // A signal that comes before the program is at work ends it without a word.
    for (auto after = std::chrono::milliseconds(100); result.errors.empty() && after.count() < 10'000; after *= 2)
        result = kit::runAndKillProgram(MEGSET_PROGRAM, command, after, SIGINT);
    EXPECT_EQ(result.exitCode, -1); // the signal ended it, as a shell has to see
    EXPECT_EQ(result.errors, "megset: stopped\n");
    EXPECT_TRUE(folder.names().empty());
}

TEST(Stop, FilesOfAChangeThatIsKilledLieInTheFolderOfTheFormerOnes)
{
    const SampleDataset sample(6, 20000);
    const Files before = filesIn(sample.folder());
    const std::vector<std::string> change = {"resample", sample.path(), "--factor", "2", "--in-place"};
    const std::string former = sample.path() + ".former";
    const Original original(sample.folder());
    const std::chrono::microseconds length = durationOf(change);
    constexpr int most = 200;
    for (int i = 0; !fs::exists(former + "/run.meg"); ++i) {
        ASSERT_LT(i, most) << "no kill hit the change";
        fs::remove_all(former); // of a kill that came too early or too late
        original.bringBack();
        kit::runAndKillProgram(MEGSET_PROGRAM, change, length * (i % 20) / 20);
    }
    const auto check = runMegset({"check", sample.path()});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_THAT(check.output, HasSubstr(former + ": a change of the dataset was cut off"));
    EXPECT_THAT(runMegset(change).errors, HasSubstr(former + ": a change of the dataset was cut off"));
    const std::string back =
        "mv '" + former + "'/* '" + sample.folder().native().string() + "' && rmdir '" + former + "'";
    ASSERT_EQ(kit::runProgram("/bin/sh", {"-c", back}).exitCode, 0); // as the words are that a user follows
    EXPECT_TRUE(filesIn(sample.folder()) == before);
    EXPECT_EQ(runMegset(change).exitCode, 0);
    EXPECT_FALSE(fs::exists(former));
}

// ---- what can't be written

TEST(Stop, FailingTrialLeavesAllTrialsAsTheyWere)
{
    const SampleDataset sample(4);
    fs::resize_file(sample.trialFile(2), fs::file_size(sample.trialFile(2)) / 2);
    const Files before = filesIn(sample.folder());
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"resample", sample.path(), "--factor", "2", "--in-place"},
                                               {"montage", sample.path(), "--reference", "E1", "--in-place"},
                                               {"restore", sample.path(), "--in-place"}}) {
        EXPECT_EQ(runMegset(command).exitCode, 1);
        EXPECT_TRUE(filesIn(sample.folder()) == before) << command.front();
    }
}

TEST(Stop, FullDiskInTheMiddleLeavesAllTrialsAsTheyWere)
{
    const SampleDataset sample(4, 20000);
    const Files before = filesIn(sample.folder());
    const std::uintmax_t most = fs::file_size(sample.trialFile(0)) / 1024 / 2; // kB, of any file
    const auto result = kit::runProgram(
        "/bin/bash", {"-c", "trap '' XFSZ; ulimit -f " + std::to_string(most) + "; exec " + MEGSET_PROGRAM +
                                " montage " + sample.path() + " --reference X1 --channels E1 --in-place"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("The disk is full"));
    EXPECT_TRUE(filesIn(sample.folder()) == before);
}

TEST(Stop, TrialThatIsALinkStaysOne)
{
    const SampleDataset sample(2);
    const TemporaryFolder other;
    fs::rename(sample.trialFile(1), other.native("far.trl"));
    fs::create_symlink(other.native("far.trl"), sample.trialFile(1));
    const auto before = other.read("far.trl");
    ASSERT_EQ(runMegset({"resample", sample.path(), "--factor", "2", "--in-place"}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(sample.trialFile(1)));
    EXPECT_NE(other.read("far.trl"), before);
    EXPECT_THAT(other.names(), testing::ElementsAre("far.trl"));
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
}

TEST(Stop, ChangedTrialKeepsItsPermissions)
{
    const SampleDataset sample(2);
    fs::permissions(sample.trialFile(1), fs::perms::owner_read | fs::perms::owner_write);
    ASSERT_EQ(runMegset({"resample", sample.path(), "--factor", "2", "--in-place"}).exitCode, 0);
    EXPECT_EQ(fs::status(sample.trialFile(1)).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(Stop, CopyOfProtectedTrialsMayBeChanged)
{
    const SampleDataset sample(2);
    fs::permissions(sample.trialFile(1), fs::perms::owner_read);
    const fs::path copy = sample.folder().native("new.meg");
    ASSERT_EQ(runMegset({"resample", sample.path(), "--factor", "2", "--out", copy.string()}).exitCode, 0);
    EXPECT_NE(fs::status(sample.folder().native("newTrial1.trl")).permissions() & fs::perms::owner_write,
              fs::perms::none);
    EXPECT_EQ(fs::status(sample.trialFile(1)).permissions(), fs::perms::owner_read);
}

TEST(Stop, FolderThatCannotBeMadeIsToldAndNothingChanges)
{
    const SampleDataset sample(2);
    const fs::path former = sample.path() + ".former";
    fs::create_symlink("nowhere", former);
    const Files before = {{"run.meg", sample.folder().read("run.meg")}};
    const auto result = runMegset({"resample", sample.path(), "--factor", "2", "--in-place"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("run.meg.former: can't be made: "));
    EXPECT_EQ(sample.folder().read("run.meg"), before.at("run.meg"));
    EXPECT_TRUE(fs::is_symlink(former));
}

TEST(Stop, FolderOfAChangeThatWasDoneGoesWithTheNextOne)
{
    const SampleDataset sample(2);
    sample.folder().makeFolder("run.meg.former");
    sample.folder().write("run.meg.former\\runTrial0.trl", "old");
    sample.folder().write("run.meg.former\\run.meg.done", "old");
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
    EXPECT_EQ(runMegset({"restore", sample.path(), "--in-place"}).exitCode, 0);
    EXPECT_FALSE(sample.folder().has("run.meg.former"));
}

TEST(Stop, FolderOfSomebodyElseIsInTheWayAndLeftAlone)
{
    const SampleDataset sample(2);
    sample.folder().makeFolder("run.meg.former");
    sample.folder().write("run.meg.former\\runTrial0.trl", "old");
    EXPECT_THAT(runMegset({"restore", sample.path(), "--in-place"}).errors, HasSubstr("run.meg.former: is in the way"));
    EXPECT_EQ(runMegset({"check", sample.path()}).exitCode, 0);
    EXPECT_TRUE(sample.folder().has("run.meg.former\\runTrial0.trl"));
}

// ---- two at a time

TEST(Stop, ChangesOfOneDatasetAtATimeAreAllKeptOrRefused)
{
    const SampleDataset sample(3, 20000);
    int done = 0;
    std::mutex counting;
    std::vector<std::thread> users;
    for (int i = 0; i < 6; ++i)
        users.emplace_back([&, i] {
            const auto result = runMegset(
                {"marks", sample.path(), "--add", "m" + std::to_string(i), "--at", "7", "--trial", "0", "--in-place"});
            const std::lock_guard lock(counting);
            done += result.exitCode == 0 ? 1 : 0;
            EXPECT_TRUE(result.exitCode == 0 || result.errors.find("is using it.") != std::string::npos)
                << result.errors;
        });
    for (std::thread& user : users)
        user.join();
    EXPECT_GE(done, 1);
    EXPECT_THAT(runMegset({"marks", sample.path()}).output,
                HasSubstr('\n' + std::to_string(done) + (done == 1 ? " mark in 1 trial" : " marks in 1 trial")));
}

TEST(Stop, OfTwoCopiesOfOneNameOneIsMade)
{
    const SampleDataset sample(3, 20000);
    const std::string copy = sample.folder().native("new.meg").string();
    for (int i = 0; i < 5; ++i) {
        std::vector<int> codes(2);
        std::vector<std::thread> users;
        for (int& code : codes)
            users.emplace_back([&] { code = runMegset({"restore", sample.path(), "--out", copy}).exitCode; });
        for (std::thread& user : users)
            user.join();
        EXPECT_THAT(codes, testing::UnorderedElementsAre(0, 1));
        EXPECT_EQ(runMegset({"check", copy}).exitCode, 0);
        for (const std::string& name : sample.folder().names())
            if (name.starts_with("new"))
                fs::remove(sample.folder().native(name));
    }
}

} // namespace

} // namespace megset::cli::stop_test
