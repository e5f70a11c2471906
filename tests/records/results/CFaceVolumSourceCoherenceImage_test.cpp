#include "megset/records/results/CFaceVolumSourceCoherenceImage.h"

#include "tests/kit/recordContract.h"

#include <cmath>

namespace megset::CFaceVolumSourceCoherenceImage_test {
namespace {

CVolumSourcCoherencImagzk filledImage(double first = 0)
{
    CVolumSourcCoherencImagzk image;
    SourceGrid grid;
    grid.m_nX = 2;
    grid.m_nY = 2;
    grid.m_nZ = 1;
    grid.m_dOrigin = {-1, -2, -3};
    grid.m_dStep = {10, 20, 30};
    image.setSize(grid, {8.5, 12.5});
    image.m_strImageName = "alpha";
    image.m_strReferenceName = "EMG1";
    image.m_dReferencePos = {4, 5, 6};
    image.m_nDataBegin = 11;
    image.m_nDataEnd = 12;
    for (std::size_t i = 0; i < image.m_aValue.size(); ++i)
        image.m_aValue[i] = first + 0.125 * static_cast<double>(i + 1);
    return image;
}

struct ImageCase
{
    using Record = CVolumSourcCoherencImagzk;
    static constexpr std::string_view tag = "VOLUMSOURCCOHERENCIMAGZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CVolumSourcCoherencImagzk";
    static Record filled() { return filledImage(); }
};

// The contract's name for the face's serializer.
struct Face : CFaceVolumSourceCoherenceImagezk
{
    int serializezk(CArchive& ar) { return serializeFaceVlmSrcNtwk(ar); }
    bool operator==(const Face&) const = default;
};

struct FaceCase
{
    using Record = Face;
    static constexpr std::string_view tag = "FACEVOLUMSOURCECOHERENCEIMAGEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFaceVolumSourceCoherenceImagezk";
    static Record filled()
    {
        Face face;
        const CVolumSourcCoherencImagzk image = filledImage();
        face.addSam3Dzk(&image, false);
        face.addSam3Dzk(&image, true);
        return face;
    }
};

using VolumCoherenceRecords = ::testing::Types<ImageCase, FaceCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(VolumCoherence, RecordContract, VolumCoherenceRecords);

ByteBuilder imageBytes(double first)
{
    ByteBuilder bytes;
    bytes.wide("VOLUMSOURCCOHERENCIMAGZK").i32(20261121).wide("alpha").wide("EMG1").doubles({4, 5, 6});
    bytes.i32(2).i32(2).i32(1).doubles({-1, -2, -3, 10, 20, 30}).i64(11).i64(12).i64(2).doubles({8.5, 12.5}).i64(8);
    for (const double value : {0.125, 0.25, 0.375, 0.5, 0.625, 0.75, 0.875, 1.0})
        bytes.f64(first + value);
    return bytes;
}

TEST(VolumSourcCoherencImag, IsWrittenFieldByField)
{
    expectGolden(filledImage(), imageBytes(0));
}

TEST(VolumSourcCoherencImag, NumberOfPointsIsWrittenPerAxis)
{
    CVolumSourcCoherencImagzk image;
    SourceGrid grid;
    grid.m_nX = 1;
    grid.m_nY = 2;
    grid.m_nZ = 3;
    ASSERT_EQ(image.setSize(grid, {8.5}), 1);
    ByteBuilder expected;
    expected.wide("VOLUMSOURCCOHERENCIMAGZK").i32(20261121).wide("").wide("").doubles({0, 0, 0}).i32(1).i32(2).i32(3);
    expected.doubles({grid.m_dOrigin[0], grid.m_dOrigin[1], grid.m_dOrigin[2]});
    expected.doubles({grid.m_dStep[0], grid.m_dStep[1], grid.m_dStep[2]});
    expected.i64(0).i64(0).i64(1).f64(8.5).i64(6).zeros(6 * sizeof(double));
    expectGolden(image, expected);
}

TEST(FaceVolumSourceCoherenceImage, IsWrittenImageByImage)
{
    Face face;
    for (const double first : {10.0, 20.0, 30.0}) {
        const CVolumSourcCoherencImagzk image = filledImage(first);
        face.addSam3Dzk(&image, first == 30);
    }
    ByteBuilder expected;
    expected.wide("FACEVOLUMSOURCECOHERENCEIMAGEZK").i32(20261121).i32(2).i32(3);
    expected.i32(1).append(imageBytes(10)).i32(1).append(imageBytes(20)).i32(1).append(imageBytes(30));
    expectGolden(face, expected);
}

TEST(VolumSourcCoherencImag, ValuesStandByFrequencyAndPoint)
{
    CVolumSourcCoherencImagzk image = filledImage();
    EXPECT_EQ(image.getTotalFreq(), 2);
    EXPECT_EQ(image.getValue(1, 0, 0, 0), 0.25);
    EXPECT_EQ(image.getValue(1, 1, 0, 1), 1.0);
    EXPECT_EQ(image.setValue(0, 1, 0, 1, 0.5), 1);
    EXPECT_EQ(image.getValue(0, 1, 0, 1), 0.5);
    EXPECT_TRUE(std::isnan(image.getValue(0, 0, 0, 2)));
    EXPECT_EQ(image.setValue(0, 0, 1, 0, 0.5), 0);
}

TEST(VolumSourcCoherencImag, SizeThatCannotBeMakesAnEmptyImage)
{
    CVolumSourcCoherencImagzk image = filledImage();
    SourceGrid negative;
    negative.m_nX = -1;
    EXPECT_EQ(image.setSize(negative, {1}), 0);
    EXPECT_EQ(image.getTotalFreq(), 0);
    EXPECT_EQ(image.m_grid, SourceGrid());
}

TEST(VolumSourcCoherencImag, ValuesThatDoNotFitTheFrequenciesAreRefused)
{
    CVolumSourcCoherencImagzk image = filledImage();
    image.m_aFreq.push_back(20);
    CVolumSourcCoherencImagzk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { image.serializezk(ar); })), 0);
    EXPECT_TRUE(std::isnan(loaded.getValue(0, 0, 0, 0)));
}

TEST(FaceVolumSourceCoherenceImage, KeepsACopyOfEachImage)
{
    CFaceVolumSourceCoherenceImagezk face;
    const CVolumSourcCoherencImagzk image = filledImage();
    EXPECT_EQ(face.addSam3Dzk(&image, true), 1);
    EXPECT_EQ(face.addSam3Dzk(nullptr, true), 0);
    EXPECT_EQ(face.getTotalSam3D(), 1);
    EXPECT_EQ(*face.getSam3Dzk(-1), image);
}

} // namespace
} // namespace megset::CFaceVolumSourceCoherenceImage_test
