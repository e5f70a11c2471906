#include "megset/numeric/wrapping.h"

#include <gtest/gtest.h>

namespace megset::numeric::wrapping_test {

TEST(NumericWrapping, OrdinaryNumbersAreAddedAndSubtracted)
{
    EXPECT_EQ(wrapAdd(3, -5), -2);
    EXPECT_EQ(wrapSubtract(3, -5), 8);
}

TEST(NumericWrapping, WhatDoesNotFitWrapsAround)
{
    EXPECT_EQ(wrapAdd(INT64_MAX, 1), INT64_MIN);
    EXPECT_EQ(wrapSubtract(INT64_MIN, 1), INT64_MAX);
    EXPECT_EQ(wrapSubtract(0, INT64_MIN), INT64_MIN);
}

} // namespace megset::numeric::wrapping_test
