#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace megset::locale_test {

namespace {

// Other tests count on it, to show that no number depends on the locale.
TEST(TestLocale, GermanWithADecimalCommaIsThere)
{
    ASSERT_NE(std::setlocale(LC_NUMERIC, "de_DE.UTF-8"), nullptr) << "run the suite through ctest";
    const std::string point = std::localeconv()->decimal_point;
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(point, ",");
}

} // namespace

} // namespace megset::locale_test
