#include "megset/records/results/CFaceIca.h"

#include "tests/kit/recordContract.h"

#include <cmath>

namespace megset::CFaceIca_test {
namespace {

struct IcaCase
{
    using Record = CFaceIcazk;
    static constexpr std::string_view tag = "FACEICAZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFaceIcazk";
    // Three channels, two components, two samples.
    static Record filled()
    {
        CFaceIcazk ica;
        ica.setSize({5, 6, 7}, 2, 2);
        ica.m_nDataBegin = 9;
        ica.m_nCurrentComponent = 1;
        ica.m_aMean = {100, 200, 300};
        ica.m_aMixing = {1, 2, 3, 4, 5, 6};
        ica.m_aUnmixing = {0.5, 1.5, 2.5, 3.5, 4.5, 5.5};
        ica.m_aWave = {10, 20, -1, -2};
        ica.m_aRejected = {0, 1};
        return ica;
    }
};

using IcaRecords = ::testing::Types<IcaCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(FaceIca, RecordContract, IcaRecords);

TEST(FaceIca, IsWrittenFieldByField)
{
    ByteBuilder expected;
    expected.wide("FACEICAZK").i32(20261121).i64(3).i32(5).i32(6).i32(7).i64(2).i64(2).i64(9).i64(1);
    expected.i64(3).doubles({100, 200, 300}).i64(6).doubles({1, 2, 3, 4, 5, 6});
    expected.i64(6).doubles({0.5, 1.5, 2.5, 3.5, 4.5, 5.5}).i64(4).doubles({10, 20, -1, -2}).i64(2).i32(0).i32(1);
    expectGolden(IcaCase::filled(), expected);
}

TEST(FaceIca, SizedObjectIsZeroAndKeepsEveryComponent)
{
    CFaceIcazk ica = IcaCase::filled();
    EXPECT_EQ(ica.setSize({1, 2}, 1, 3), 1);
    EXPECT_EQ(ica.getTotalChannel(), 2);
    EXPECT_EQ(ica.m_aMixing, (std::vector<double>{0, 0}));
    EXPECT_EQ(ica.m_aWave, (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(ica.m_aRejected, (std::vector<std::int32_t>{0}));
}

TEST(FaceIca, SizeThatCannotBeMakesItEmpty)
{
    for (const std::int64_t components : {std::int64_t{-1}, INT64_MAX}) {
        CFaceIcazk ica = IcaCase::filled();
        EXPECT_EQ(ica.setSize({1}, components, 2), 0);
        EXPECT_EQ(ica, CFaceIcazk());
        EXPECT_EQ(ica.setSize({}, components, 2), 0);
    }
    CFaceIcazk ica;
    EXPECT_EQ(ica.setSize({1}, 1, -1), 0);
    EXPECT_EQ(ica, CFaceIcazk());
}

TEST(FaceIca, GivesTheWaveOfAComponent)
{
    const CFaceIcazk ica = IcaCase::filled();
    ASSERT_NE(ica.getComponentWave(0), nullptr);
    EXPECT_EQ(ica.getComponentWave(0)[1], 20);
    EXPECT_EQ(ica.getComponentWave(-1), ica.m_aWave.data() + 2);
    EXPECT_EQ(ica.getComponentWave(2), nullptr);
    EXPECT_EQ(CFaceIcazk().getComponentWave(-1), nullptr);
}

TEST(FaceIca, CleanedChannelLacksTheRejectedComponents)
{
    CFaceIcazk ica = IcaCase::filled();
    EXPECT_EQ(ica.cleanedValue(0, 0), 110); // 100 + 1 x 10
    EXPECT_EQ(ica.cleanedValue(2, 1), 400); // 300 + 5 x 20
    EXPECT_EQ(ica.setRejected(1, false), 1);
    EXPECT_EQ(ica.cleanedValue(2, 1), 388); // and 6 x -2
    EXPECT_EQ(ica.setRejected(0, true), 1);
    EXPECT_EQ(ica.cleanedValue(2, 1), 288);
    EXPECT_EQ(ica.setRejected(2, true), 0);
    EXPECT_TRUE(std::isnan(ica.cleanedValue(3, 0)));
    EXPECT_TRUE(std::isnan(ica.cleanedValue(0, 2)));
}

TEST(FaceIca, ArraysThatDoNotFitTheSizesAreRefused)
{
    for (const int changed : {0, 1, 2, 3, 4}) {
        CFaceIcazk ica = IcaCase::filled();
        if (changed == 4)
            ica.m_aRejected.pop_back();
        else
            (changed == 0   ? ica.m_aMean
             : changed == 1 ? ica.m_aMixing
             : changed == 2 ? ica.m_aUnmixing
                            : ica.m_aWave)
                .push_back(1);
        CFaceIcazk loaded;
        EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { ica.serialize(ar); })), 0) << changed;
        EXPECT_EQ(loaded.getComponentWave(0), nullptr);
        EXPECT_TRUE(std::isnan(loaded.cleanedValue(0, 0)));
    }
}

} // namespace
} // namespace megset::CFaceIca_test
