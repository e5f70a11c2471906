// docs/decisions.md grows on several branches and is merged line by line: each decision stands once, by itself.
#include <fstream>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace megset::decisions_test {
namespace {

// A decision begins with what was decided, in bold, behind an empty line. Bold words inside one stand behind others.
TEST(Decisions, StandOnceEachInAParagraphOfTheirOwn)
{
    std::ifstream page(MEGSET_SOURCE_DIR "/docs/decisions.md");
    std::set<std::string> found;
    std::string former;
    for (std::string line; std::getline(page, line); former = line) {
        if (!line.starts_with("**") && !line.starts_with("#"))
            continue;
        EXPECT_TRUE(former.empty()) << "no empty line before: " << line;
        EXPECT_TRUE(found.insert(line.substr(0, line.find("**", 2))).second) << "stands twice: " << line;
    }
    EXPECT_GT(found.size(), 100U);
}

} // namespace
} // namespace megset::decisions_test
