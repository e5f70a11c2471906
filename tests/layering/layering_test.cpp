#include "tests/layering/IncludeRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace megset::layering::layering_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// ---- The rules themselves, fed with lines made for the purpose

bool allows(std::string_view path, std::string_view include)
{
    return violations(path, "#pragma once\n#include " + std::string(include) + "\n").empty();
}

TEST(IncludeRules, FindEveryIncludeLine)
{
    EXPECT_THAT(includesOf("#include <a>\n  # include \"b/c.h\"\n// #include <no>\n#define X\n#include<d.h> // why"),
                ElementsAre("<a>", "\"b/c.h\"", "<d.h>"));
}

TEST(IncludeRules, PlatformAndNumericKnowOnlyThemselves)
{
    EXPECT_TRUE(allows("megset/platform/CFile.h", "\"megset/platform/CString.h\""));
    EXPECT_TRUE(allows("megset/numeric/sums.cpp", "\"megset/numeric/sums.h\""));
    EXPECT_FALSE(allows("megset/platform/CFile.h", "\"megset/records/records.h\""));
    EXPECT_FALSE(allows("megset/numeric/sums.cpp", "\"megset/core/CMDChannelzk.h\""));
    EXPECT_FALSE(allows("megset/platform/CFile.cpp", "\"megset/megset.h\""));
}

TEST(IncludeRules, RecordsKnowPlatformNumericAndRecords)
{
    EXPECT_TRUE(allows("megset/records/magnetic/CMEGSensor.h", "\"megset/platform/CArchive.h\""));
    EXPECT_TRUE(allows("megset/records/magnetic/CMEGSensor.h", "\"megset/records/CMarker.h\""));
    EXPECT_FALSE(allows("megset/records/magnetic/CMEGSensor.cpp", "\"megset/core/catalogues.h\""));
}

TEST(IncludeRules, HeadersIncludeOnlyTheLayerRightBelow)
{
    EXPECT_TRUE(allows("megset/core/CMDChannel0SensorInfo.h", "\"megset/core/CMDChannel.h\""));
    EXPECT_TRUE(allows("megset/core/CMDChannel.h", "\"megset/core/catalogues.h\""));
    EXPECT_THAT(violations("megset/spectral/CMDChannel1Spctm.h", "#include \"megset/core/CMDChannel.h\"\n"
                                                                 "#include \"megset/core/CMDChannel0SensorInfo.h\"\n"),
                ElementsAre(HasSubstr("includes \"megset/core/CMDChannel.h\": a header includes only")));
    EXPECT_FALSE(allows("megset/core/CMDTrial.h", "\"megset/core/CMDChannelzk.h\""));
    EXPECT_FALSE(allows("megset/core/CMDChannel.h", "\"megset/core/CMDChannel0SensorInfo.h\""));
    EXPECT_FALSE(allows("megset/core/catalogues.h", "\"megset/core/CMDChannelzk.h\""));
}

TEST(IncludeRules, SourcesIncludeTheirOwnHeaderAndClosingClasses)
{
    EXPECT_TRUE(allows("megset/display/CMDChannel3Show.cpp", "\"megset/display/CMDChannel3Show.h\""));
    EXPECT_TRUE(allows("megset/display/CMDChannel3Show.cpp", "\"megset/core/CMEGDatazk.h\""));
    EXPECT_TRUE(allows("megset/ui/report.cpp", "\"megset/core/CMDTrialzk.h\""));
    EXPECT_TRUE(allows("megset/display/CMDChannel3ShowText.cpp", "\"megset/display/CMDChannel3Show.h\""));
    EXPECT_FALSE(allows("megset/display/CMDChannel3Show.cpp", "\"megset/core/CMDChannel.h\""));
    EXPECT_FALSE(allows("megset/display/CMDChannel3Show.cpp", "\"megset/core/CMDTrial.h\""));
    EXPECT_FALSE(allows("megset/ui/report.cpp", "\"megset/persistence/CMDTrial9FileB.h\""));
}

TEST(IncludeRules, ChainHeadersBringTheLayerTheyDeriveFrom)
{
    EXPECT_THAT(violations("megset/core/CMDTrial0SensorInfo.h", "#pragma once\n"),
                ElementsAre(HasSubstr("does not include \"megset/core/CMDTrial.h\"")));
    EXPECT_THAT(violations("megset/core/CMDTrial.h", "#pragma once\n"), IsEmpty());
}

TEST(IncludeRules, ChainClassesLieInTheirFolder)
{
    EXPECT_THAT(violations("megset/core/CMEGData7Measure.cpp", ""), ElementsAre(HasSubstr("the folder events")));
    EXPECT_THAT(violations("megset/events/CMEGData7Measure.cpp", ""), IsEmpty());
}

TEST(IncludeRules, TheLibraryStandsOnTheStandardLibrary)
{
    EXPECT_TRUE(allows("megset/core/CMDChannel.h", "<memory>"));
    EXPECT_FALSE(allows("megset/core/CMDChannel.h", "<CLI/CLI.hpp>"));
    EXPECT_FALSE(allows("megset/core/CMDChannel.h", "<stdint.h>"));
    EXPECT_FALSE(allows("megset/numeric/sums.cpp", "<immintrin.h>"));
}

TEST(IncludeRules, SystemCallsAreMadeInPosixSourcesOfThePlatform)
{
    EXPECT_TRUE(allows("megset/platform/posix_files.cpp", "<unistd.h>"));
    EXPECT_TRUE(allows("megset/platform/posix_files.cpp", "<sys/stat.h>"));
    EXPECT_FALSE(allows("megset/platform/posix_files.h", "<sys/stat.h>"));
    EXPECT_FALSE(allows("megset/platform/CFile.cpp", "<fcntl.h>"));
    EXPECT_FALSE(allows("megset/core/posix_files.cpp", "<dirent.h>"));
    EXPECT_FALSE(allows("apps/cli/main.cpp", "<unistd.h>"));
    EXPECT_FALSE(allows("apps/cli/main.cpp", "<sys/mman.h>"));
}

TEST(IncludeRules, InstructionsAreNamedInOnePlace)
{
    EXPECT_TRUE(allows("megset/numeric/avx512.h", "<immintrin.h>"));
    EXPECT_FALSE(allows("megset/numeric/logarithm.cpp", "<immintrin.h>"));
    EXPECT_FALSE(allows("megset/core/CMDChannel.cpp", "<immintrin.h>"));
}

TEST(IncludeRules, TheLibraryKnowsNeitherApplicationsNorTests)
{
    EXPECT_FALSE(allows("megset/core/CMDChannel.cpp", "\"apps/cli/commands.h\""));
    EXPECT_FALSE(allows("megset/platform/CFile.cpp", "\"tests/kit/Program.h\""));
    EXPECT_FALSE(allows("megset/core/CMDChannel.cpp", "\"catalogues.h\""));
    EXPECT_FALSE(allows("megset/core/CMDChannel.cpp", "\"../core/catalogues.h\""));
}

TEST(IncludeRules, ApplicationsKnowTheLibraryAndEachOther)
{
    EXPECT_TRUE(allows("apps/cli/main.cpp", "\"megset/core/CMEGDatazk.h\""));
    EXPECT_TRUE(allows("apps/cli/main.cpp", "\"apps/readers/ctf/folder.h\""));
    EXPECT_TRUE(allows("apps/cli/main.cpp", "<CLI/CLI.hpp>"));
    EXPECT_FALSE(allows("apps/cli/main.cpp", "\"tests/kit/Program.h\""));
}

TEST(IncludeRules, TheHeaderOfEverythingMayIncludeEverything)
{
    EXPECT_TRUE(allows("megset/megset.h", "\"megset/core/CMEGDatazk.h\""));
    EXPECT_TRUE(allows("megset/megset.h", "\"megset/persistence/CMDTrial9FileB.h\""));
}

// ---- The tree as it is

std::map<std::string, std::string> sourcesBelow(const std::string& folder)
{
    const std::filesystem::path root = MEGSET_SOURCE_DIR;
    std::map<std::string, std::string> sources;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
        const auto extension = entry.path().extension();
        if (extension == ".h" || extension == ".cpp") {
            std::ifstream file(entry.path());
            sources[entry.path().lexically_relative(root).generic_string()] = {std::istreambuf_iterator<char>(file),
                                                                               {}};
        }
    }
    return sources;
}

void expectNoViolation(const std::string& folder)
{
    const auto sources = sourcesBelow(folder);
    ASSERT_FALSE(sources.empty());
    for (const auto& [path, source] : sources) {
        for (const std::string& fault : violations(path, source)) {
            ADD_FAILURE() << fault;
        }
    }
}

TEST(Layering, TheLibraryKeepsTheRules)
{
    expectNoViolation("megset");
}

TEST(Layering, TheApplicationsKeepTheRules)
{
    expectNoViolation("apps");
}

// What each header includes.
using Includes = std::map<std::string, std::vector<std::string>>;

Includes libraryHeaders()
{
    Includes headers;
    for (const auto& [path, source] : sourcesBelow("megset")) {
        if (path.ends_with(".h")) {
            std::vector<std::string>& included = headers[path];
            for (const std::string& include : includesOf(source)) {
                included.push_back(include.substr(1, include.size() - 2));
            }
        }
    }
    return headers;
}

// Takes away, again and again, the headers that include none of those that are left; a ring is what stays.
Includes rings(Includes headers)
{
    const auto isLeaf = [&](const auto& header) {
        return std::none_of(header.second.begin(), header.second.end(),
                            [&](const std::string& included) { return headers.contains(included); });
    };
    while (std::erase_if(headers, isLeaf) > 0) {
    }
    return headers;
}

TEST(Layering, NoHeaderIncludesItselfThroughOthers)
{
    ASSERT_THAT(rings({{"a", {"b"}}, {"b", {"a"}}, {"c", {}}}), testing::SizeIs(2));

    EXPECT_THAT(rings(libraryHeaders()), IsEmpty());
}

bool isHeaderOfClass(const std::string& path)
{
    const std::string name = std::filesystem::path(path).filename().string();
    return name.size() > 1 && name[0] == 'C' && name[1] >= 'A' && name[1] <= 'Z';
}

TEST(Layering, TheHeaderOfEverythingBringsEveryClass)
{
    Includes headers = libraryHeaders();
    std::vector<std::string> open = {"megset/megset.h"};
    while (!open.empty()) {
        const auto header = headers.extract(open.back());
        open.pop_back();
        if (!header.empty())
            open.insert(open.end(), header.mapped().begin(), header.mapped().end());
    }
    for (const auto& [path, included] : headers) {
        if (isHeaderOfClass(path))
            ADD_FAILURE() << "megset/megset.h does not bring " << path;
    }
}

} // namespace

} // namespace megset::layering::layering_test
