#pragma once
// A session on the real recording of a CTF system, through the program.

#include "tests/kit/Program.h"
#include "tests/kit/TemporaryFolder.h"
#include "tests/kit/npy.h"
#include "tests/kit/realData.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace megset {

/// "run.meg" is the imported recording, in a folder of its own. Skips without the recording.
class RealSession : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto data = realDataFolder();
        if (!data)
            GTEST_SKIP() << noRealData;
        m_data = *data / "ctf";
        run({"import", (m_data / "testdata_ctf_short_discontinuous.ds").string(), path("run.meg")});
    }

    std::string path(const char* name) const { return m_folder.native(name).string(); }
    /// What the program prints; it must succeed.
    static std::string run(const std::vector<std::string>& arguments)
    {
        const auto result = kit::runProgram(MEGSET_PROGRAM, arguments);
        EXPECT_EQ(result.exitCode, 0) << arguments.front() << ": " << result.errors;
        return result.output;
    }
    /// Channels x samples, trial behind trial.
    NpyMatrix exported(const char* dataset, const std::vector<std::string>& options = {}) const
    {
        static int count = 0;
        const std::string file = path(("export" + std::to_string(count++) + ".npy").c_str());
        std::vector<std::string> arguments = {"export", path(dataset), "--npy", file};
        arguments.insert(arguments.end(), options.begin(), options.end());
        run(arguments);
        return readNpy(file);
    }
    NpyMatrix expected(const char* name) const { return readNpy(m_data / "expected" / name); }
    nlohmann::json info(const char* dataset) const
    {
        return nlohmann::json::parse(run({"info", path(dataset), "--json"}));
    }

    std::filesystem::path m_data;
    TemporaryFolder m_folder;
};

} // namespace megset
