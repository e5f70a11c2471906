#include "megset/records/results/CFaceVirtChnlWave.h"

#include "tests/kit/recordContract.h"

namespace megset::CFaceVirtChnlWave_test {
namespace {

CVirtChnlWavezk filledWave(double first = 1)
{
    CVirtChnlWavezk wave;
    wave.m_strChannelName = "V1";
    wave.m_strChannelNameRaw = "raw";
    wave.m_strWaveUnit = "nAm";
    wave.m_nMegListID = 4;
    wave.m_dSns2dX = 5.5;
    wave.m_dSns2dY = 6.5;
    wave.m_bShow = 0;
    wave.m_dPosition = {1, 2, 3};
    wave.m_dDirection = {0, 1, 0};
    wave.m_aWave = {first, -2.5};
    return wave;
}

CFaceVirtChnlWavezk filledFace()
{
    CFaceVirtChnlWavezk face;
    face.m_strFaceName = "beamformer";
    face.m_nTotalSample = 2;
    face.m_nDataBegin = 10;
    face.m_dSampleRate = 600;
    face.m_nCurrentChannel = 1;
    for (const double first : {1.0, 7.0}) {
        const CVirtChnlWavezk wave = filledWave(first);
        face.addVirtChnlWave(&wave);
    }
    return face;
}

struct WaveCase
{
    using Record = CVirtChnlWavezk;
    static constexpr std::string_view tag = "VIRTCHNLWAVEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CVirtChnlWavezk";
    static Record filled() { return filledWave(); }
};

struct FaceCase
{
    using Record = CFaceVirtChnlWavezk;
    static constexpr std::string_view tag = "FACEVIRTCHNLWAVEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CFaceVirtChnlWavezk";
    static Record filled() { return filledFace(); }
};

struct PackageCase
{
    using Record = CPkgFaceVirtChnlWavezk;
    static constexpr std::string_view tag = "PKGFACEVIRTCHNLWAVEZK";
    static constexpr std::string_view page = "results.md";
    static constexpr std::string_view name = "CPkgFaceVirtChnlWavezk";
    static Record filled()
    {
        CPkgFaceVirtChnlWavezk package;
        package.addFaceVirtChnlWave(std::make_unique<CFaceVirtChnlWavezk>(filledFace()));
        package.addFaceVirtChnlWave(std::make_unique<CFaceVirtChnlWavezk>());
        return package;
    }
};

using VirtWaveRecords = ::testing::Types<WaveCase, FaceCase, PackageCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(VirtWave, RecordContract, VirtWaveRecords);

ByteBuilder waveBytes(double first)
{
    ByteBuilder bytes;
    bytes.wide("VIRTCHNLWAVEZK").i32(20261121).wide("V1").wide("raw").wide("nAm").i32(4).f64(5.5).f64(6.5).i32(0);
    return bytes.doubles({1, 2, 3, 0, 1, 0}).i64(2).doubles({first, -2.5});
}

ByteBuilder faceBytes(const char* name)
{
    ByteBuilder bytes;
    bytes.wide("FACEVIRTCHNLWAVEZK").i32(20261121).wide(name).i64(2).i64(10).f64(600).i32(1).i32(2);
    return bytes.i32(1).append(waveBytes(1)).i32(1).append(waveBytes(7));
}

TEST(VirtChnlWave, IsWrittenFieldByField)
{
    expectGolden(filledWave(9), waveBytes(9));
}

TEST(VirtChnlWave, FaceIsWrittenFieldByField)
{
    expectGolden(filledFace(), faceBytes("beamformer"));
}

TEST(VirtChnlWave, PackageIsWrittenFaceByFace)
{
    CPkgFaceVirtChnlWavezk package;
    ByteBuilder expected;
    expected.wide("PKGFACEVIRTCHNLWAVEZK").i32(20261121).i32(3);
    for (const char* name : {"first", "second", "third"}) {
        CFaceVirtChnlWavezk face = filledFace();
        face.m_strFaceName = name;
        package.addFaceVirtChnlWave(&face);
        expected.i32(1).append(faceBytes(name));
    }
    expectGolden(package, expected);
}

TEST(VirtChnlWave, FaceGivesItsChannelsByNumber)
{
    const CFaceVirtChnlWavezk face = filledFace();
    EXPECT_EQ(face.getTotalSample(), 2);
    EXPECT_EQ(face.getTotalVirtChnl(), 2);
    EXPECT_EQ(*face.getVirtChnlWavezk(0), filledWave(1));
    EXPECT_EQ(face.getVirtChnlWavezk(-1), face.getVirtChnlWavezk(1));
    EXPECT_EQ(face.getVirtChnlWavezk(2), nullptr);
    EXPECT_EQ(face.getVirtChnlWavezk(-2), nullptr);
    EXPECT_EQ(CFaceVirtChnlWavezk().getVirtChnlWavezk(-1), nullptr);
}

TEST(VirtChnlWave, OnlyChannelsOfTheFacesLengthCount)
{
    CFaceVirtChnlWavezk face = filledFace();
    EXPECT_EQ(face.checkVirtChnl(), 2);
    CVirtChnlWavezk longer = filledWave();
    longer.m_aWave.push_back(0);
    EXPECT_EQ(face.addVirtChnlWave(&longer), 2);
    EXPECT_EQ(face.addVirtChnlWave(nullptr), -1);
    face.m_aVirtChnl.InsertAt(0, nullptr);
    EXPECT_EQ(face.checkVirtChnl(), 2);
    face.m_nTotalSample = 3;
    EXPECT_EQ(face.checkVirtChnl(), 1);
    face.m_nTotalSample = 0;
    EXPECT_EQ(face.checkVirtChnl(), 0);
}

TEST(VirtChnlWave, OnlyUsableChannelsAreShown)
{
    CFaceVirtChnlWavezk face = filledFace();
    EXPECT_EQ(face.getNumShowSns(), 0);
    face.getVirtChnlWavezk(1)->m_bShow = 1;
    EXPECT_EQ(face.getNumShowSns(), 1);
    face.getVirtChnlWavezk(1)->m_aWave.clear();
    EXPECT_EQ(face.getNumShowSns(), 0);
}

TEST(PkgFaceVirtChnlWave, GivesItsFacesByNumber)
{
    CPkgFaceVirtChnlWavezk package = PackageCase::filled();
    EXPECT_EQ(package.getTotalFvcw(), 2);
    EXPECT_EQ(*package.getFaceVirtChnlWave(0, 0), filledFace());
    EXPECT_EQ(package.getFaceVirtChnlWave(2, 0), nullptr);
    EXPECT_EQ(package.getFaceVirtChnlWave(-1, 0), nullptr);
    EXPECT_EQ(CPkgFaceVirtChnlWavezk().getFaceVirtChnlWave(0, 0), nullptr);
}

TEST(PkgFaceVirtChnlWave, MakesTheNextFaceWhenAsked)
{
    CPkgFaceVirtChnlWavezk package;
    CFaceVirtChnlWavezk* made = package.getFaceVirtChnlWave(0, 1);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(package.getFaceVirtChnlWave(0, 1), made);
    EXPECT_EQ(package.getFaceVirtChnlWave(5, 1), nullptr);
    EXPECT_EQ(package.getTotalFvcw(), 1);
}

TEST(PkgFaceVirtChnlWave, TakesAFaceOverOrCopiesIt)
{
    CPkgFaceVirtChnlWavezk package;
    auto owned = std::make_unique<CFaceVirtChnlWavezk>(filledFace());
    const CFaceVirtChnlWavezk* address = owned.get();
    EXPECT_EQ(package.addFaceVirtChnlWave(std::move(owned)), 1);
    EXPECT_EQ(package.getFaceVirtChnlWave(0, 0), address);
    EXPECT_EQ(package.addFaceVirtChnlWave(address), 1);
    EXPECT_NE(package.getFaceVirtChnlWave(1, 0), address);
    EXPECT_EQ(*package.getFaceVirtChnlWave(1, 0), *address);
    EXPECT_EQ(package.addFaceVirtChnlWave(std::unique_ptr<CFaceVirtChnlWavezk>()), 0);
    EXPECT_EQ(package.addFaceVirtChnlWave(static_cast<const CFaceVirtChnlWavezk*>(nullptr)), 0);
}

TEST(PkgFaceVirtChnlWave, CleaningEmptiesIt)
{
    CPkgFaceVirtChnlWavezk package = PackageCase::filled();
    EXPECT_EQ(package.cleanFaceVirtSnsWav(), 1);
    EXPECT_EQ(package.getTotalFvcw(), 0);
}

} // namespace
} // namespace megset::CFaceVirtChnlWave_test
