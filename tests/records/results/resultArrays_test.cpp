#include "megset/records/results/resultArrays.h"

#include "tests/kit/memoryArchive.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::resultArrays_test {
namespace {

TEST(ResultArrays, ElementCountIsTheProductOfTheDimensions)
{
    EXPECT_EQ(elementCount({}), 1);
    EXPECT_EQ(elementCount({3, 4, 5}), 60);
    EXPECT_EQ(elementCount({INT64_MAX, 0, INT64_MAX}), 0);
    EXPECT_EQ(elementCount({std::int64_t{1} << 30, std::int64_t{1} << 30}), std::int64_t{1} << 60);
}

TEST(ResultArrays, ElementCountIsMinusOneForWhatCannotBe)
{
    EXPECT_EQ(elementCount({3, -1}), -1);
    EXPECT_EQ(elementCount({0, -1}), -1);
    EXPECT_EQ(elementCount({std::int64_t{1} << 31, std::int64_t{1} << 30}), -1);
    EXPECT_EQ(elementCount({INT64_MAX, INT64_MAX, INT64_MAX}), -1);
}

TEST(ResultArrays, ResizingTooFarGivesZeroAndAnEmptyArray)
{
    std::vector<double> values{1, 2};
    EXPECT_EQ(resizeToZeros(values, 3), 1);
    EXPECT_THAT(values, ::testing::ElementsAre(0, 0, 0));
    EXPECT_EQ(resizeToZeros(values, -1), 0);
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(resizeToZeros(values, INT64_MAX), 0);
    EXPECT_TRUE(values.empty());
}

TEST(ResultArrays, AccessOutsideGivesNoValueAndStoresNothing)
{
    std::vector<double> values{1, 2};
    EXPECT_EQ(valueAt(values, 1), 2);
    EXPECT_TRUE(std::isnan(valueAt(values, 2)));
    EXPECT_TRUE(std::isnan(valueAt(values, -1)));
    EXPECT_EQ(setValueAt(values, 0, 7), 1);
    EXPECT_EQ(setValueAt(values, 2, 8), 0);
    EXPECT_EQ(setValueAt(values, -1, 8), 0);
    EXPECT_THAT(values, ::testing::ElementsAre(7, 2));
}

TEST(ResultArrays, ShapeIsComparedWithTheProduct)
{
    const std::vector<double> six(6);
    EXPECT_TRUE(hasShape(six, {2, 3}));
    EXPECT_FALSE(hasShape(six, {2, 4}));
    EXPECT_FALSE(hasShape(std::vector<double>(), {-1}));
    EXPECT_TRUE(hasShapeOrIsEmpty(std::vector<double>(), {2, 3}));
    EXPECT_FALSE(hasShapeOrIsEmpty(six, {2, 4}));
}

TEST(ResultArrays, NumbersGoAsACountAndABlock)
{
    std::vector<double> values{1.5, -2};
    std::vector<std::int32_t> indices{7, -1, 3};
    const auto bytes = storedBytes([&](CArchive& ar) {
        exchangeNumbers(ar, values, "values");
        exchangeNumbers(ar, indices, "indices");
    });
    EXPECT_TRUE(sameBytes(bytes, ByteBuilder().i64(2).f64(1.5).f64(-2).i64(3).i32(7).i32(-1).i32(3)));
    LoadingArchive archive(bytes);
    std::vector<double> values2{9};
    std::vector<std::int32_t> indices2;
    exchangeNumbers(*archive, values2, "values");
    exchangeNumbers(*archive, indices2, "indices");
    EXPECT_EQ(values2, values);
    EXPECT_EQ(indices2, indices);
}

TEST(ResultArrays, CountThatTheFileCannotHoldIsTheEndOfFile)
{
    for (const std::int64_t count : {std::int64_t{3}, std::int64_t{-1}, INT64_MAX, INT64_MIN, std::int64_t{1} << 61}) {
        LoadingArchive archive(ByteBuilder().i64(count).f64(1).f64(2));
        std::vector<double> values;
        EXPECT_THROW(exchangeNumbers(*archive, values, "values"), CArchiveException) << count;
        EXPECT_TRUE(values.empty());
    }
}

} // namespace
} // namespace megset::resultArrays_test
