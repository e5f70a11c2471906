#include "apps/cli/array/DatasetArray.h"
#include "megset/platform/CMemFile.h"
#include "tests/apps/cli/SampleDataset.h"
#include "tests/kit/ByteBuilder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::array_test {

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

// Two datasets with trials of the same names, and a folder for the array.
class Array : public testing::Test
{
protected:
    Array()
    {
        first.dataset().setSessionName("first");
        first.store();
        second.dataset().setSessionName("second");
        second.store();
    }

    std::string file(const char* name = "all") const { return folder.native(name).string(); }
    static kit::ProgramResult run(std::vector<std::string> options)
    {
        options.insert(options.begin(), "array");
        return runMegset(options);
    }
    static std::string done(const std::vector<std::string>& options)
    {
        const auto result = run(options);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result.output;
    }
    static std::string fault(const std::vector<std::string>& options)
    {
        const auto result = run(options);
        EXPECT_EQ(result.exitCode, 1) << result.output;
        return result.errors;
    }
    void makeBoth() const { done({file(), "--add", first.path(), second.path()}); }
    static json list(const std::string& path) { return json::parse(done({path, "--list", "--json"})); }
    static std::vector<std::string> sessions(const std::string& path)
    {
        std::vector<std::string> names;
        const json listed = list(path);
        for (const json& dataset : listed.at("datasets"))
            names.push_back(dataset.at("session"));
        return names;
    }

    SampleDataset first{3};
    SampleDataset second{2, 30};
    TemporaryFolder folder;
};

TEST_F(Array, IsMadeOfDatasetsAndListed)
{
    EXPECT_EQ(done({file(), "--add", first.path(), second.path()}), file() + ": 2 datasets\n");
    EXPECT_EQ(list(file()), (json{{"file", file()},
                                  {"current", 0},
                                  {"datasets",
                                   {{{"index", 0},
                                     {"session", "first"},
                                     {"trials", 3},
                                     {"trials_found", 3},
                                     {"samples", 20},
                                     {"rate_hz", 200.0}},
                                    {{"index", 1},
                                     {"session", "second"},
                                     {"trials", 2},
                                     {"trials_found", 2},
                                     {"samples", 30},
                                     {"rate_hz", 200.0}}}}}));
    EXPECT_THAT(done({file(), "--list"}), HasSubstr("    0       3      3       20        200  first (current)\n"
                                                    "    1       2      2       30        200  second\n"));
}

TEST_F(Array, HoldsEachDatasetWhole)
{
    makeBoth();
    const DatasetArray read(file());
    CArrayMEDataSetzk array;
    CDocument document;
    document.SetPathName(folder.path("all"));
    const auto bytes = folder.read("all");
    CMemFile memory(bytes);
    CArchive archive(&memory, CArchive::load);
    ASSERT_EQ(array.serialize(archive, &document), 1);
    ASSERT_EQ(array.getTotalDataset(), 2);
    CMEGDatazk& data = *array.getSessionData(1);
    EXPECT_EQ(data.getTrialzk(1)->getChannel(2)->getDataWave()[29], SampleDataset::sampleAt(1, 2, 29));
    EXPECT_EQ(read.size(), 2);
}

TEST_F(Array, OnlyReadsTheDatasets)
{
    const auto dataset = first.folder().read("run.meg");
    const auto names = first.folder().names();
    const auto trial = first.folder().read(fromNative(first.trialFile(0).filename()));
    makeBoth();
    EXPECT_EQ(first.folder().read("run.meg"), dataset);
    EXPECT_EQ(first.folder().read(fromNative(first.trialFile(0).filename())), trial);
    EXPECT_EQ(first.folder().names(), names);
    EXPECT_THAT(folder.names(), ElementsAre("all"));
}

TEST_F(Array, IsAddedToInPlaceOrInACopy)
{
    done({file(), "--add", first.path()});
    done({file(), "--add", second.path(), "--out", file("more")});
    EXPECT_THAT(sessions(file()), ElementsAre("first"));
    EXPECT_THAT(sessions(file("more")), ElementsAre("first", "second"));
    done({file(), "--add", second.path(), "--in-place"});
    EXPECT_EQ(folder.read("all"), folder.read("more"));
    EXPECT_THAT(fault({file(), "--add", second.path(), "--out", file("more")}), HasSubstr("more: exists already"));
    EXPECT_THAT(fault({file(), "--add", second.path()}), HasSubstr("say where the changed array goes"));
    EXPECT_THAT(sessions(file()), ElementsAre("first", "second"));
}

TEST_F(Array, DatasetsAreRemovedByTheirIndex)
{
    makeBoth();
    EXPECT_EQ(done({file(), "--remove", "0", "--in-place"}), file() + ": 1 dataset\n");
    EXPECT_THAT(sessions(file()), ElementsAre("second"));
    EXPECT_THAT(fault({file(), "--remove", "1", "--in-place"}),
                HasSubstr("there is no dataset 1; the array has 0 to 0"));
    done({file(), "--remove", "0", "--in-place"});
    EXPECT_EQ(list(file()).at("current"), -1);
    EXPECT_TRUE(list(file()).at("datasets").empty());
    EXPECT_THAT(fault({file(), "--remove", "0", "--in-place"}), HasSubstr("there is no dataset 0; the array is empty"));
    EXPECT_EQ(run({file(), "--remove", "-1", "--in-place"}).exitCode, 2);
}

TEST_F(Array, PathsOfTrialsAreThoseWhereTheyAreNow)
{
    const TemporaryFolder moved;
    for (const std::string& name : first.folder().names())
        std::filesystem::rename(first.folder().native(CString(name)), moved.native(CString(name)));
    done({file(), "--add", moved.native("run.meg").string()});
    EXPECT_EQ(list(file())["datasets"][0]["trials_found"], 3);
}

TEST_F(Array, ADatasetWithoutATrialsFileIsNotAdded)
{
    const std::string gone = first.trialFile(1).string();
    std::filesystem::remove(gone);
    const std::string why = fault({file(), "--add", second.path(), first.path()});
    EXPECT_THAT(why, HasSubstr(": the trial's file is missing"));
    EXPECT_FALSE(folder.has("all"));
}

TEST_F(Array, TrialsThatAreGoneLaterAreCounted)
{
    makeBoth();
    std::filesystem::remove(first.trialFile(1));
    EXPECT_EQ(list(file())["datasets"][0]["trials_found"], 2);
    done({file(), "--remove", "1", "--in-place"});
    EXPECT_EQ(list(file())["datasets"][0]["trials"], 3);
}

// Both datasets have a trial of that name, and the one beside the array would be taken for the other's.
TEST_F(Array, IsNotPutWhereItWouldTakeOtherFilesForTrials)
{
    const std::string beside = first.folder().native("all").string();
    const std::string why = fault({beside, "--add", first.path(), second.path()});
    EXPECT_THAT(why, HasSubstr("beside the array this file would be taken for " + second.trialFile(0).string()));
    EXPECT_FALSE(first.folder().has("all"));
    done({beside, "--add", first.path()});
    const auto before = first.folder().read("all");
    EXPECT_THAT(fault({beside, "--add", second.path(), "--in-place"}), HasSubstr("this file would be taken for"));
    EXPECT_EQ(first.folder().read("all"), before);
    makeBoth();
    EXPECT_THAT(fault({file(), "--remove", "0", "--out", first.folder().native("moved").string()}),
                HasSubstr("this file would be taken for"));
}

// ---- broken files

TEST_F(Array, ABrokenFileIsRefusedWithPathAndOffset)
{
    makeBoth();
    const auto whole = folder.read("all");
    folder.write("cut", std::span(whole).first(whole.size() - 5));
    EXPECT_THAT(fault({file("cut"), "--list"}),
                testing::ContainsRegex("cut: offset [0-9]+: the file ends before the record does"));
    const auto cut = folder.read("cut");
    EXPECT_EQ(run({file("cut"), "--add", first.path(), "--in-place"}).exitCode, 1);
    EXPECT_EQ(folder.read("cut"), cut);
    folder.write("v", ByteBuilder().wide("ARRAYMEGDATASETZK").i32(20160910).bytes());
    EXPECT_THAT(fault({file("v"), "--list"}),
                testing::AllOf(HasSubstr("v: offset 42: "),
                               HasSubstr("The opened file is not array for MEG dataset file or corrupted!")));
}

// The library's own reader goes on and has an empty dataset then, which must not be written back.
TEST_F(Array, ABrokenDatasetInsideIsRefused)
{
    folder.write("all", ByteBuilder()
                            .wide("ARRAYMEGDATASETZK")
                            .i32(20160909)
                            .i32(0)
                            .i32(1)
                            .i32(1)
                            .wide("MEGDATASETZK")
                            .i32(20200730)
                            .bytes());
    EXPECT_THAT(fault({file(), "--list"}), HasSubstr("Wrong MEG dataset file format!!?"));
    EXPECT_EQ(run({file(), "--add", first.path(), "--in-place"}).exitCode, 1);
}

TEST_F(Array, AnotherKindOfFileIsRefused)
{
    EXPECT_THAT(
        fault({first.path(), "--list"}),
        HasSubstr("run.meg: offset 0: this is no file of the kind: array of datasets, but: dataset file (.meg)"));
    EXPECT_THAT(fault({file("gone"), "--list"}), HasSubstr("gone"));
    makeBoth();
    folder.write("array.meg", folder.read("all"));
    EXPECT_THAT(fault({file(), "--add", file("array.meg"), "--in-place"}),
                HasSubstr("array.meg: a dataset (.meg) is wanted; this is: array of datasets"));
    EXPECT_THAT(fault({file("gone"), "--remove", "0", "--in-place"}), HasSubstr("gone"));
}

TEST_F(Array, OneActionIsAsked)
{
    EXPECT_EQ(run({file()}).exitCode, 2);
    EXPECT_EQ(run({file(), "--list", "--remove", "0"}).exitCode, 2);
    EXPECT_EQ(run({file(), "--remove", "0", "--json", "--in-place"}).exitCode, 2);
    EXPECT_EQ(run({file(), "--remove", "0", "--in-place", "--out", "x"}).exitCode, 2);
}

} // namespace

} // namespace megset::cli::array_test
