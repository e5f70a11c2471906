#include "tests/kit/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace megset::setup_test {

namespace {

using testing::HasSubstr;
using testing::Not;

// scripts/setup on a machine made up of the few commands that it calls, each a small shell script in a folder.
class Setup : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "megset-setup-XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        m_folder = name;
        std::filesystem::create_symlink("/usr/bin/env", m_folder / "env");
        haveInstalled({});
        haveUser(1000);
    }

    void TearDown() override { std::filesystem::remove_all(m_folder); }

    void haveCommand(const std::string& name, const std::string& body)
    {
        const auto path = m_folder / name;
        std::ofstream(path) << "#!/bin/sh\n" << body << '\n';
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }

    void haveUser(int id) { haveCommand("id", "echo " + std::to_string(id)); }

    // dpkg-query that knows these packages and fails over the others, as the real one does.
    void haveInstalled(const std::vector<std::string>& packages)
    {
        std::string body;
        for (const std::string& package : packages) {
            body += "printf 'installed:" + package + " '\n";
        }
        haveCommand("dpkg-query", body + "exit 1");
    }

    void haveAptGet() { haveCommand("apt-get", "echo \"apt-get $* ($DEBIAN_FRONTEND)\""); }
    void haveSudo() { haveCommand("sudo", "echo sudo; exec \"$@\""); }

    kit::ProgramResult setup(const std::vector<std::string>& arguments = {}) const
    {
        std::vector<std::string> words{MEGSET_SOURCE_DIR "/scripts/setup"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return kit::runProgram("/bin/bash", words, {"PATH=" + m_folder.string()});
    }

private:
    std::filesystem::path m_folder;
};

const std::vector<std::string> everythingForTheSuite{
    "g++",          "cmake",        "ninja-build",  "ccache",           "pkg-config",
    "git",          "libgtest-dev", "libgmock-dev", "libbenchmark-dev", "nlohmann-json3-dev",
    "libcli11-dev", "libfftw3-dev", "locales"};

TEST_F(Setup, DoesNothingWhenNothingIsMissing)
{
    haveInstalled(everythingForTheSuite);
    const auto result = setup();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output + result.errors, "");
}

TEST_F(Setup, NamesTheMissingPackagesWithoutRootAndSudo)
{
    auto packages = everythingForTheSuite;
    packages.erase(packages.begin() + 1);
    haveInstalled(packages);
    haveAptGet();
    const auto result = setup();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("root or sudo:\n  cmake\n"));
    EXPECT_THAT(result.errors, Not(HasSubstr("apt-get update")));
}

TEST_F(Setup, NamesAllPackagesOnASystemWithoutDebianPackages)
{
    haveUser(0);
    haveCommand("dpkg-query", "exit 127");
    const auto result = setup();
    EXPECT_EQ(result.exitCode, 1);
    for (const std::string& package : everythingForTheSuite) {
        EXPECT_THAT(result.errors, HasSubstr(' ' + package));
    }
}

TEST_F(Setup, RootInstallsWhatIsMissingAfterAnUpdateAndKeepsStandardOutputClean)
{
    auto packages = everythingForTheSuite;
    packages.pop_back();
    haveInstalled(packages);
    haveAptGet();
    haveUser(0);
    const auto result = setup();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, testing::MatchesRegex(".*apt-get [^\n]*update \\(noninteractive\\)\n"
                                                     "apt-get [^\n]*install --yes --no-install-recommends locales "
                                                     "\\(noninteractive\\)\n"));
    EXPECT_THAT(result.errors, Not(HasSubstr("sudo")));
}

TEST_F(Setup, OthersInstallThroughSudo)
{
    haveAptGet();
    haveSudo();
    const auto result = setup();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, HasSubstr("sudo\napt-get"));
}

TEST_F(Setup, AllAsksForTheCheckersToo)
{
    haveInstalled(everythingForTheSuite);
    const auto result = setup({"--all"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("clang-tidy-14"));
}

TEST_F(Setup, CompareAsksForThePeersToo)
{
    haveInstalled(everythingForTheSuite);
    const auto result = setup({"--compare"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("python3-numpy python3-mne libopenblas0-pthread\n"));
    EXPECT_THAT(result.errors, Not(HasSubstr("clang-tidy-14")));
}

} // namespace

} // namespace megset::setup_test
