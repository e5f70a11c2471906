// Every page can be reached from the README, and no link leads nowhere.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::links_test {
namespace {

namespace fs = std::filesystem;

const fs::path root = MEGSET_SOURCE_DIR;

// Files of the project that the page links to.
std::set<fs::path> linksOf(const fs::path& page)
{
    std::ifstream file(page);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    static const std::regex link(R"(\]\(([^)#:]+)(#[^)]*)?\))"); // with a colon it leads into the web
    std::set<fs::path> links;
    for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found)
        links.insert((page.parent_path() / (*found)[1].str()).lexically_normal());
    return links;
}

std::set<fs::path> reachedFrom(const fs::path& page)
{
    std::set<fs::path> reached;
    std::set<fs::path> open = {page};
    while (!open.empty()) {
        const fs::path next = *open.begin();
        open.erase(open.begin());
        if (!reached.insert(next).second || next.extension() != ".md")
            continue;
        for (const fs::path& link : linksOf(next)) {
            EXPECT_TRUE(fs::exists(link)) << next << " links to " << link;
            open.insert(link);
        }
    }
    return reached;
}

TEST(Pages, AreAllReachedFromTheReadme)
{
    const std::set<fs::path> reached = reachedFrom(root / "README.md");
    for (const auto& entry : fs::recursive_directory_iterator(root / "docs"))
        if (entry.path().extension() == ".md") {
            EXPECT_TRUE(reached.contains(entry.path().lexically_normal())) << entry.path();
        }
    EXPECT_GT(reached.size(), 10U);
}

} // namespace
} // namespace megset::links_test
