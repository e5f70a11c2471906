#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace megset::readme_test {

namespace {

std::string fileText(const std::string& path)
{
    std::ifstream file(MEGSET_SOURCE_DIR "/" + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Readme, ShowsTheProgramThatThePackageTestsBuildAndRun)
{
    const std::string program = fileText("tests/package/consumer/main.cpp");
    ASSERT_FALSE(program.empty());
    EXPECT_NE(fileText("README.md").find("```cpp\n" + program + "```\n"), std::string::npos);
}

} // namespace

} // namespace megset::readme_test
