#include "megset/platform/version.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace megset::version_test {

namespace {

std::string buildFile()
{
    std::ifstream file(MEGSET_SOURCE_DIR "/CMakeLists.txt");
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Version, IsTheProjectsOwn)
{
    EXPECT_NE(buildFile().find("VERSION " + std::string(version()) + " LANGUAGES"), std::string::npos);
}

TEST(Version, NamesTheCompilerItWasBuiltWith)
{
    const std::string name = compiler();
    EXPECT_EQ(name.substr(0, 4) == "GCC ", std::string(__VERSION__).find("lang") == std::string::npos);
    EXPECT_NE(std::string(__VERSION__).find(name.substr(name.find(' ') + 1)), std::string::npos) << name;
}

} // namespace

} // namespace megset::version_test
