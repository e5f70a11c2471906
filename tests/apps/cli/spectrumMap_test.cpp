#include "apps/cli/spectrum/spectrumMap.h"

#include <limits>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::cli::spectrumMap_test {

namespace {

using testing::HasSubstr;
using testing::Not;

std::string picture(const SpectrumMap& map)
{
    std::ostringstream out;
    writeSvg(map, out);
    return out.str();
}

std::size_t count(const std::string& text, const std::string& part)
{
    std::size_t number = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++number;
    return number;
}

TEST(SpectrumMap, SmallestIsDarkAndLargestIsBrightWithLowFrequenciesBelow)
{
    const std::string svg = picture({"M1 < M2", "fT", {-100, 0}, {5, 10}, {1, 2, 3, 5}});
    EXPECT_THAT(svg, HasSubstr("<rect x=\"70\" y=\"220\" width=\"320.05\" height=\"180.05\" fill=\"#440154\"/>"));
    EXPECT_THAT(svg, HasSubstr("<rect x=\"390\" y=\"40\" width=\"320.05\" height=\"180.05\" fill=\"#fde725\"/>"));
    EXPECT_THAT(svg, HasSubstr(">latency, ms</text>"));
    EXPECT_THAT(svg, HasSubstr(">frequency, Hz</text>"));
    EXPECT_THAT(svg, HasSubstr(">-100</text>"));
    EXPECT_THAT(svg, HasSubstr(">M1 &lt; M2</text>"));
    EXPECT_THAT(svg, HasSubstr(">fT</text>"));
}

TEST(SpectrumMap, ValuesThatAreNoNumbersAreGrey)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    const std::string svg = picture({"", "", {0, 1}, {5}, {nan, infinite}});
    EXPECT_EQ(count(svg, "#999999"), 2U);
    EXPECT_THAT(svg, Not(HasSubstr("nan")));
    EXPECT_THAT(svg, Not(HasSubstr("inf")));
}

TEST(SpectrumMap, LargePlaneIsDrawnByMeansOfNeighbours)
{
    SpectrumMap map = {"", "", {}, {}, {}};
    for (int t = 0; t < 2000; ++t)
        map.ms.push_back(t);
    for (int f = 0; f < 3; ++f)
        map.hz.push_back(f + 1);
    map.values.assign(6000, 1.0);
    EXPECT_LE(count(picture(map), "<rect"), 400U * 3 + 70);
}

TEST(SpectrumMap, EmptyPlaneIsAnEmptyPicture)
{
    EXPECT_EQ(count(picture({"", "", {}, {}, {}}), "<rect"), 1U);
}

} // namespace

} // namespace megset::cli::spectrumMap_test
