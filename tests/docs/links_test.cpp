// Every page can be reached from the README, and no link leads nowhere.
#include <cctype>
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

std::string textOf(const fs::path& page)
{
    std::ifstream file(page);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A file of the project, and where in it.
struct Link
{
    fs::path file;
    std::string heading; // as links name it; empty for the whole page

    auto operator<=>(const Link&) const = default;
};

// What the page links to, itself included.
std::set<Link> linksOf(const fs::path& page)
{
    const std::string text = textOf(page);
    static const std::regex link(R"(\]\(([^)#:]*)(?:#([^)]*))?\))"); // with a colon it leads into the web
    std::set<Link> links;
    for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found) {
        const std::string file = (*found)[1].str();
        links.insert({file.empty() ? page : (page.parent_path() / file).lexically_normal(), (*found)[2].str()});
    }
    return links;
}

// The headings of a page as links name them: in lower case, with dashes for blanks and without all other signs.
std::set<std::string> headingsOf(const fs::path& page)
{
    const std::string text = textOf(page);
    static const std::regex heading(R"((?:^|\n)#+ ([^\n]*))");
    std::set<std::string> names;
    for (std::sregex_iterator found(text.begin(), text.end(), heading), end; found != end; ++found) {
        std::string name;
        for (const char c : (*found)[1].str())
            if (c == ' ' || c == '-')
                name += '-';
            else if (std::isalnum(static_cast<unsigned char>(c)) || c == '_')
                name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        names.insert(name);
    }
    return names;
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
        for (const Link& link : linksOf(next)) {
            EXPECT_TRUE(fs::exists(link.file)) << next << " links to " << link.file;
            EXPECT_TRUE(link.heading.empty() || headingsOf(link.file).contains(link.heading))
                << next << " links to " << link.file << '#' << link.heading;
            open.insert(link.file);
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
