// The first files of the corpus of fuzz/archive_fuzz.cpp, one for each kind of field, and what they are made of.
// With MEGSET_WRITE_SEEDS set the test writes them; otherwise it compares them.

#include "tests/kit/ByteBuilder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace megset::archiveSeeds_test {
namespace {

using Length = ByteBuilder::Length;

// The target's steps, in its order.
enum Step : std::uint8_t
{
    stepI8,
    stepU16,
    stepI32,
    stepU64,
    stepFloat,
    stepDouble,
    stepBool,
    stepEnum,
    stepText,
    stepBytes,
    stepDoubles,
    stepShorts,
    stepSamples,
    stepLists,
    stepPointers,
    stepNested
};

// An input: the number of steps, the steps, and the file.
ByteBuilder input(std::initializer_list<Step> steps)
{
    ByteBuilder bytes;
    bytes.u8(static_cast<std::uint8_t>(steps.size()));
    for (const Step step : steps)
        bytes.u8(step);
    return bytes;
}

std::vector<std::pair<std::string, ByteBuilder>> seeds()
{
    const std::string longNarrow(300, 'n');
    return {
        {"scalars", input({stepI8, stepU16, stepI32, stepU64, stepFloat, stepDouble, stepBool, stepEnum})
                        .i8(-1)
                        .u16(2)
                        .i32(-3)
                        .u64(4)
                        .f32(0.5F)
                        .f64(-0.25)
                        .i32(1)
                        .i8(7)},
        {"text_wide", input({stepText, stepText}).wide("A1").wide("")},
        {"text_wide_255", input({stepText}).wide(CString(u'w', 255))},
        {"text_narrow", input({stepText, stepText}).narrow("Gr\xC3\xB6\xDF").narrow(longNarrow)},
        {"text_long_forms", input({stepText, stepText, stepText})
                                .wide("ab", Length::byBits32)
                                .narrow("cd", Length::byBits64)
                                .wide("ef", Length::byBits16)},
        {"text_too_long", input({stepText}).wideMarker().length(std::uint64_t{1} << 63U).zeros(4)},
        {"bytes_short", input({stepI32, stepBytes}).i32(1).raw({1, 2, 3})},
        {"bytes_whole", input({stepBytes, stepI32}).zeros(5000).i32(9)},
        {"block_doubles", input({stepDoubles, stepSamples}).i64(2).i32(1).doubles({1, 2}).i64(1).i32(1).f64(3)},
        {"block_cut", input({stepSamples}).i64(9000).i32(1).doubles({1, 2}).raw({7})},
        {"block_absent", input({stepShorts, stepShorts}).i64(-1).i32(0).i64(3).i32(1).i16(1).i16(2).i16(3)},
        {"block_impossible", input({stepDoubles, stepI32}).i64((std::int64_t{1} << 61) + 1).i32(1).f64(1)},
        {"lists", input({stepLists}).i32(2).doubles({1, 2}).i32(2).wide("a").narrow("b")},
        {"list_too_long", input({stepLists}).i32(0x7FFFFFFF).doubles({1, 2, 3})},
        {"pointers", input({stepPointers}).i32(3).i32(1).wide("x").f64(1).i32(0).i32(1).wide("y").f64(2)},
        {"nested", input({stepNested})
                       .wide("NESTZK")
                       .i32(20200801)
                       .i32(1)
                       .i32(1)
                       .narrow("NESTZK")
                       .i32(20200801)
                       .i32(2)
                       .i32(1)
                       .wide("NESTZK")
                       .i32(20190723)
                       .i32(3)},
        {"nested_unknown", input({stepNested, stepNested}).wide("NESTZK").i32(20200802).wide("nestzk").i32(20200801)},
    };
}

TEST(ArchiveFuzzSeeds, AreWhatTheyAreSaidToBe)
{
    const auto folder = std::filesystem::path(MEGSET_SOURCE_DIR) / "fuzz/corpus/archive_fuzz";
    for (const auto& [name, bytes] : seeds()) {
        if (std::getenv("MEGSET_WRITE_SEEDS") != nullptr)
            std::ofstream(folder / name, std::ios::binary)
                .write(reinterpret_cast<const char*>(bytes.bytes().data()), static_cast<std::streamsize>(bytes.size()));
        std::ifstream file(folder / name, std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(file)), {});
        EXPECT_TRUE(sameBytes(std::as_bytes(std::span(text)), bytes)) << name;
    }
}

} // namespace
} // namespace megset::archiveSeeds_test
