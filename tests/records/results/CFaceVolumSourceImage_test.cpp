#include "megset/records/results/CFaceVolumSourceImage.h"

#include "tests/kit/recordContract.h"

#include <cmath>

namespace megset::CFaceVolumSourceImage_test {
namespace {

CVolumSourcImagzk filledImage(double first = 1)
{
    CVolumSourcImagzk image;
    SourceGrid grid;
    grid.m_nX = 2;
    grid.m_nY = 1;
    grid.m_nZ = 3;
    grid.m_dOrigin = {-1, -2, -3};
    grid.m_dStep = {10, 20, 30};
    image.setSize(grid, 2);
    image.m_strImageName = "dual state";
    image.m_strValueUnit = "pseudo-Z";
    image.m_nDataBegin = 11;
    image.m_nDataEnd = 12;
    image.m_nFrameStep = 13;
    image.m_dFreqLow = 14.5;
    image.m_dFreqHigh = 15.5;
    for (std::size_t i = 0; i < image.m_aValue.size(); ++i)
        image.m_aValue[i] = first + static_cast<double>(i);
    return image;
}

struct ImageCase
{
    using Record = CVolumSourcImagzk;
    static constexpr std::string_view tag = "VOLUMSOURCIMAGZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CVolumSourcImagzk";
    static Record filled() { return filledImage(); }
};

// The contract's name for the face's serializer.
struct Face : CFaceVolumSourceImagezk
{
    int serializezk(CArchive& ar) { return serializeSAMFace(ar); }
    bool operator==(const Face&) const = default;
};

struct FaceCase
{
    using Record = Face;
    static constexpr std::string_view tag = "FACEVOLUMSOURCEIMAGEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFaceVolumSourceImagezk";
    static Record filled()
    {
        Face face;
        const CVolumSourcImagzk image = filledImage();
        face.addSam3Dzk(&image, false);
        face.addSam3Dzk(&image, true);
        return face;
    }
};

using VolumSourceRecords = ::testing::Types<ImageCase, FaceCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(VolumSource, RecordContract, VolumSourceRecords);

ByteBuilder imageBytes(double first)
{
    ByteBuilder bytes;
    bytes.wide("VOLUMSOURCIMAGZK").i32(20261121).wide("dual state").wide("pseudo-Z").i32(2).i32(1).i32(3);
    bytes.doubles({-1, -2, -3, 10, 20, 30}).i64(2).i64(11).i64(12).i64(13).f64(14.5).f64(15.5).i64(12);
    for (int i = 0; i < 12; ++i)
        bytes.f64(first + i);
    return bytes;
}

TEST(VolumSourcImag, IsWrittenFieldByField)
{
    expectGolden(filledImage(50), imageBytes(50));
}

TEST(FaceVolumSourceImage, IsWrittenImageByImage)
{
    Face face;
    for (const double first : {100.0, 200.0, 300.0}) {
        const CVolumSourcImagzk image = filledImage(first);
        face.addSam3Dzk(&image, first == 300);
    }
    ByteBuilder expected;
    expected.wide("FACEVOLUMSOURCEIMAGEZK").i32(20261121).i32(2).i32(3);
    expected.i32(1).append(imageBytes(100)).i32(1).append(imageBytes(200)).i32(1).append(imageBytes(300));
    expectGolden(face, expected);
}

TEST(VolumSourcImag, ValuesThatDoNotFitTheGridAreRefused)
{
    CVolumSourcImagzk image = filledImage();
    image.m_aValue.pop_back();
    CVolumSourcImagzk loaded;
    EXPECT_EQ(loadRecord(loaded, storedBytes([&](CArchive& ar) { image.serializezk(ar); })), 0);
    EXPECT_TRUE(std::isnan(loaded.getValue(0, 0, 0, 0)));
}

TEST(VolumSourcImag, ValuesStandByFrameAndPoint)
{
    CVolumSourcImagzk image = filledImage();
    EXPECT_EQ(image.getValue(0, 0, 0, 0), 1);
    EXPECT_EQ(image.getValue(1, 0, 0, 0), 2);
    EXPECT_EQ(image.getValue(0, 0, 1, 0), 3);
    EXPECT_EQ(image.getValue(1, 0, 2, 1), 12);
    EXPECT_EQ(image.setValue(1, 0, 2, 1, -5), 1);
    EXPECT_EQ(image.getValue(1, 0, 2, 1), -5);
}

TEST(VolumSourcImag, OutsideThereIsNoValue)
{
    CVolumSourcImagzk image = filledImage();
    EXPECT_TRUE(std::isnan(image.getValue(2, 0, 0, 0)));
    EXPECT_TRUE(std::isnan(image.getValue(0, 0, 0, 2)));
    EXPECT_TRUE(std::isnan(image.getValue(0, 0, 0, -1)));
    EXPECT_EQ(image.setValue(0, 1, 0, 0, 1), 0);
    EXPECT_EQ(image, filledImage());
}

TEST(VolumSourcImag, SizeThatCannotBeMakesAnEmptyImage)
{
    CVolumSourcImagzk image = filledImage();
    SourceGrid huge;
    huge.m_nX = huge.m_nY = huge.m_nZ = INT32_MAX;
    EXPECT_EQ(image.setSize(huge, 1), 0);
    EXPECT_EQ(image.m_grid, SourceGrid());
    EXPECT_EQ(image.m_nFrame, 0);
    EXPECT_TRUE(image.m_aValue.empty());
}

TEST(VolumSourcImag, PeakIsTheLargestMagnitude)
{
    CVolumSourcImagzk image = filledImage();
    image.m_aValue = {1, -7, 7, 2, 0, std::nan(""), 0, 0, 0, 0, 0, 0};
    double x = 0;
    double y = 0;
    double z = 0;
    double value = 0;
    ASSERT_EQ(image.getPeak(0, x, y, z, value), 1);
    EXPECT_EQ(value, -7);
    EXPECT_EQ(x, 9);
    EXPECT_EQ(y, -2);
    EXPECT_EQ(z, -3);
    EXPECT_EQ(image.getPeak(2, x, y, z, value), 0);
    image.m_aValue.assign(12, std::nan(""));
    EXPECT_EQ(image.getPeak(0, x, y, z, value), 0);
}

TEST(FaceVolumSourceImage, FirstImageIsCurrent)
{
    CFaceVolumSourceImagezk face;
    EXPECT_EQ(face.getSam3Dzk(-1), nullptr);
    CVolumSourcImagzk image = filledImage();
    EXPECT_EQ(face.addSam3Dzk(&image, false), 1);
    EXPECT_EQ(face.getTotalSam3D(), 1);
    EXPECT_EQ(face.getSam3Dzk(-1), face.getSam3Dzk(0));
    ASSERT_NE(face.getSam3Dzk(0), nullptr);
    EXPECT_NE(face.getSam3Dzk(0), &image);
    EXPECT_EQ(*face.getSam3Dzk(0), image);
}

TEST(FaceVolumSourceImage, FlagMakesTheNewImageCurrent)
{
    CFaceVolumSourceImagezk face;
    const CVolumSourcImagzk image = filledImage();
    face.addSam3Dzk(&image, false);
    face.addSam3Dzk(&image, false);
    EXPECT_EQ(face.m_nCurrentImage, 0);
    face.addSam3Dzk(&image, true);
    EXPECT_EQ(face.m_nCurrentImage, 2);
    EXPECT_EQ(face.getSam3Dzk(3), nullptr);
    EXPECT_EQ(face.getSam3Dzk(-2), nullptr);
}

TEST(FaceVolumSourceImage, NullImageIsNotAdded)
{
    CFaceVolumSourceImagezk face;
    EXPECT_EQ(face.addSam3Dzk(nullptr, true), 0);
    EXPECT_EQ(face, CFaceVolumSourceImagezk());
}

TEST(FaceVolumSourceImage, CleaningEmptiesIt)
{
    Face face = FaceCase::filled();
    EXPECT_EQ(face.cleanSam3D(), 1);
    EXPECT_EQ(face, Face());
}

} // namespace
} // namespace megset::CFaceVolumSourceImage_test
