#pragma once
// A command of the program, run on a sample dataset.

#include "tests/apps/cli/SampleDataset.h"
#include "tests/kit/ByteBuilder.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace megset::cli {

/// For fixtures of one command, whose second word is the path of the sample dataset.
class SampleCommand : public testing::Test
{
protected:
    explicit SampleCommand(std::string command, int trials = 3, std::int64_t samples = 20)
        : sample(trials, samples), m_command(std::move(command))
    {
    }

    kit::ProgramResult run(std::vector<std::string> options) const
    {
        options.insert(options.begin(), {m_command, sample.path()});
        return runMegset(options);
    }
    /// What the command prints; it must succeed.
    std::string done(const std::vector<std::string>& options) const
    {
        const auto result = run(options);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result.output;
    }
    /// What the command says against it; it must fail.
    std::string fault(const std::vector<std::string>& options) const
    {
        const auto result = run(options);
        EXPECT_EQ(result.exitCode, 1) << result.output;
        return result.errors;
    }
    /// The path of a file beside the dataset.
    std::string file(const char* name) const { return sample.folder().native(name).string(); }
    /// Makes such a file.
    std::string write(const char* name, const ByteBuilder& bytes) const
    {
        sample.folder().write(name, bytes.bytes());
        return file(name);
    }

    SampleDataset sample;

private:
    std::string m_command;
};

} // namespace megset::cli
