// A row of a table has as many cells as the table's head: a bar in a cell's text is written "\|", in code, too.
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace megset::tables_test {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> pages()
{
    std::vector<fs::path> found = {fs::path(MEGSET_SOURCE_DIR) / "README.md"};
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(MEGSET_SOURCE_DIR) / "docs"))
        if (entry.path().extension() == ".md")
            found.push_back(entry.path());
    return found;
}

int barsIn(const std::string& line)
{
    int bars = 0;
    for (std::size_t i = 0; i < line.size(); ++i)
        bars += line[i] == '|' && (i == 0 || line[i - 1] != '\\') ? 1 : 0;
    return bars;
}

TEST(Tables, HaveEveryCellUnderItsHead)
{
    int rows = 0;
    for (const fs::path& path : pages()) {
        std::ifstream page(path);
        int bars = 0; // of the table's head; 0 outside a table
        for (std::string line; std::getline(page, line);) {
            if (!line.starts_with('|')) {
                bars = 0;
                continue;
            }
            bars = bars == 0 ? barsIn(line) : bars;
            EXPECT_EQ(barsIn(line), bars) << path << ": " << line;
            ++rows;
        }
    }
    EXPECT_GT(rows, 100);
}

} // namespace
} // namespace megset::tables_test
