// Slots of a trial for results of other analyses: made on demand, cleaned, and replaced on the user's word.

#include "megset/core/CMDTrialzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::holders_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* deleteImages = "Would you like to delete the existing one?";
constexpr const char* deleteCoherence = "Would you like to delete the existing coherence data?!";
constexpr const char* initializingError = "Initializing volume source error!";

// How each slot is reached; one without `set` can't be set, one without `clean` lives as long as the trial.

struct VolumeSources
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getVolumeSrcFacezk(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pVolumeSrc; }
    static int clean(CMDTrialzk& trial) { return trial._cleanTriallSourceData(); }
    static int set(CMDTrialzk& trial, CFaceVolumSourceImagezk* made) { return trial.setVolumeSrcFacezk(made); }
    static constexpr const char* question = deleteImages;
    static constexpr const char* failure = initializingError;
};

struct VolumeCoherence
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getFaceVolumSourceCoherenceImagezk(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pVolumeSrcCoh; }
    static int clean(CMDTrialzk& trial) { return trial._cleanTriallSourceCoherencData(); }
    static int set(CMDTrialzk& trial, CFaceVolumSourceCoherenceImagezk* made)
    {
        return trial.setFaceVolumeSourceCoherencImag(made);
    }
    static constexpr const char* question = deleteImages;
    static constexpr const char* failure = initializingError;
};

struct TimeCoherence
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getCoherenceFacezkTime(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pCohFaceTime; }
    static int clean(CMDTrialzk& trial) { return trial._cleanTrialCoherenceFacezkTime(); }
    static int set(CMDTrialzk& trial, CSnsCohFacezk* made) { return trial.setCoherenceFacezkTime(made); }
    static constexpr const char* question = deleteCoherence;
    static constexpr const char* failure = nullptr;
};

struct CrossSpectra
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getTrlSpctmCCDataFace(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pSpctmCCFace; }
    static int clean(CMDTrialzk& trial) { return trial._cleanTrialCoherenceFacezkSpctm(); }
    static int set(CMDTrialzk& trial, CMEGSpctmCCDataFacezk* made) { return trial.setCoherenceFacezkSpctm(made); }
    static constexpr const char* question = deleteCoherence;
    static constexpr const char* failure = nullptr;
};

struct SourceCoherence
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getFaceSrcCoh(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pSrcCohFace; }
    static int clean(CMDTrialzk& trial) { return trial.cleanFaceSrcCoh(); }
    static constexpr const char* failure = nullptr;
};

struct VirtualSpectra
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getFaceVirtChnlSpctmzk(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pVirtSpctm; }
    static int clean(CMDTrialzk& trial) { return trial.cleanFaceVirtSpctm(); }
    static constexpr const char* failure = nullptr;
};

struct Components
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getFaceIca(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pFaceIca; }
    static int clean(CMDTrialzk& trial) { return trial.cleanIcaFace(); }
    static constexpr const char* failure = nullptr;
};

struct GroupCoherence
{
    static auto* get(CMDTrialzk& trial, bool create) { return trial.getGroupCxcData(create); }
    static auto& slot(CMDTrialzk& trial) { return trial.m_pGroupCxc; }
    static constexpr const char* failure = nullptr;
};

// ---- all slots

template <class Slot>
class ResultSlot : public ::testing::Test
{
protected:
    CMDTrialzk trial;
};

using AllSlots = ::testing::Types<VolumeSources, VolumeCoherence, TimeCoherence, CrossSpectra, SourceCoherence,
                                  VirtualSpectra, Components, GroupCoherence>;
TYPED_TEST_SUITE(ResultSlot, AllSlots);

TYPED_TEST(ResultSlot, IsNullUntilAskedFor)
{
    const ScriptedHost host;
    EXPECT_EQ(TypeParam::get(this->trial, false), nullptr);
    auto* made = TypeParam::get(this->trial, true);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(TypeParam::slot(this->trial).get(), made);
    EXPECT_EQ(TypeParam::get(this->trial, true), made);
    EXPECT_EQ(TypeParam::get(this->trial, false), made);
    host.expectNoMessages();
}

TYPED_TEST(ResultSlot, StaysEmptyWithoutMemory)
{
    const ScriptedHost host;
    {
        const FailingAllocator fails(1);
        EXPECT_EQ(TypeParam::get(this->trial, true), nullptr);
    }
    EXPECT_EQ(TypeParam::slot(this->trial), nullptr);
    std::vector<CString> expected;
    if (TypeParam::failure != nullptr)
        expected.push_back(TypeParam::failure);
    EXPECT_EQ(host.messages(), expected);
    EXPECT_NE(TypeParam::get(this->trial, true), nullptr);
}

// ---- slots that are cleaned

template <class Slot>
class CleanedSlot : public ResultSlot<Slot>
{
};

using CleanedSlots = ::testing::Types<VolumeSources, VolumeCoherence, TimeCoherence, CrossSpectra, SourceCoherence,
                                      VirtualSpectra, Components>;
TYPED_TEST_SUITE(CleanedSlot, CleanedSlots);

TYPED_TEST(CleanedSlot, IsEmptyAfterwardsAndGivesOneAlsoWhenItWas)
{
    TypeParam::get(this->trial, true);
    EXPECT_EQ(TypeParam::clean(this->trial), 1);
    EXPECT_EQ(TypeParam::slot(this->trial), nullptr);
    EXPECT_EQ(TypeParam::clean(this->trial), 1);
}

// ---- slots that are set

template <class Slot>
class SettableSlot : public ResultSlot<Slot>
{
protected:
    using Held = std::remove_pointer_t<decltype(Slot::get(std::declval<CMDTrialzk&>(), false))>;

    Held* made = new Held;
    ScriptedHost host;
};

using SettableSlots = ::testing::Types<VolumeSources, VolumeCoherence, TimeCoherence, CrossSpectra>;
TYPED_TEST_SUITE(SettableSlot, SettableSlots);

TYPED_TEST(SettableSlot, TakesAnObjectWithoutAQuestionWhenEmpty)
{
    EXPECT_EQ(TypeParam::set(this->trial, this->made), 1);
    EXPECT_EQ(TypeParam::slot(this->trial).get(), this->made);
    EXPECT_THAT(this->host.calls(), IsEmpty());
}

TYPED_TEST(SettableSlot, IsReplacedWithAYes)
{
    TypeParam::get(this->trial, true);
    this->host.willAnswerYes(TypeParam::question);
    EXPECT_EQ(TypeParam::set(this->trial, this->made), 1);
    EXPECT_EQ(TypeParam::slot(this->trial).get(), this->made);
}

TYPED_TEST(SettableSlot, KeepsTheOldObjectWithANoAndLeavesTheNewOneWithTheCaller)
{
    const auto* old = TypeParam::get(this->trial, true);
    this->host.willAnswerNo(TypeParam::question);
    EXPECT_EQ(TypeParam::set(this->trial, this->made), 0);
    EXPECT_EQ(TypeParam::slot(this->trial).get(), old);
    delete this->made; // it is still ours
}

TYPED_TEST(SettableSlot, DoesNothingForTheObjectThatItHolds)
{
    EXPECT_EQ(TypeParam::set(this->trial, this->made), 1);
    EXPECT_EQ(TypeParam::set(this->trial, this->made), 1);
    EXPECT_EQ(TypeParam::slot(this->trial).get(), this->made);
    EXPECT_THAT(this->host.calls(), IsEmpty());
}

TYPED_TEST(SettableSlot, IsEmptiedByNullAfterAYes)
{
    TypeParam::set(this->trial, this->made);
    this->host.willAnswerNo(TypeParam::question);
    EXPECT_EQ(TypeParam::set(this->trial, nullptr), 0);
    EXPECT_EQ(TypeParam::slot(this->trial).get(), this->made);
    this->host.willAnswerYes(TypeParam::question);
    EXPECT_EQ(TypeParam::set(this->trial, nullptr), 1);
    EXPECT_EQ(TypeParam::slot(this->trial), nullptr);
}

TYPED_TEST(SettableSlot, TakesNullWithoutAQuestionWhenEmpty)
{
    delete this->made;
    EXPECT_EQ(TypeParam::set(this->trial, nullptr), 1);
    EXPECT_EQ(TypeParam::slot(this->trial), nullptr);
    EXPECT_THAT(this->host.calls(), IsEmpty());
}

// ---- images

TEST(AddVolumeSrc, MakesTheFaceAndHandsItTheImage)
{
    CMDTrialzk trial;
    CVolumSourcImagzk image;
    image.m_strImageName = "first";
    EXPECT_EQ(trial.addVolumeSrc(&image, false), 1);
    image.m_strImageName = "second";
    EXPECT_EQ(trial.addVolumeSrc(&image, false), 1);
    ASSERT_EQ(trial.m_pVolumeSrc->getTotalSam3D(), 2);
    EXPECT_EQ(trial.m_pVolumeSrc->getSam3Dzk(-1)->m_strImageName, "first");
    EXPECT_EQ(trial.addVolumeSrc(&image, true), 1);
    EXPECT_EQ(trial.m_pVolumeSrc->m_nCurrentImage, 2);
}

TEST(AddVolumeSrc, GivesOneAlsoForAnImageThatTheFaceRefuses)
{
    CMDTrialzk trial;
    EXPECT_EQ(trial.addVolumeSrc(nullptr, true), 1);
    EXPECT_EQ(trial.m_pVolumeSrc->getTotalSam3D(), 0);
}

TEST(AddVolumeSrc, GivesZeroWithItsMessageWhenNoFaceCanBeHad)
{
    const ScriptedHost host;
    CMDTrialzk trial;
    CVolumSourcImagzk image;
    const FailingAllocator fails(1);
    EXPECT_EQ(trial.addVolumeSrc(&image, true), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString(initializingError)));
}

TEST(AddVolumeSourceCoherencImag, TakesAnyNumberButZeroAsTrue)
{
    CMDTrialzk trial;
    CVolumSourcCoherencImagzk image;
    EXPECT_EQ(trial.addVolumeSourceCoherencImag(&image, 0), 1);
    EXPECT_EQ(trial.addVolumeSourceCoherencImag(&image, 0), 1);
    EXPECT_EQ(trial.m_pVolumeSrcCoh->m_nCurrentImage, 0);
    EXPECT_EQ(trial.addVolumeSourceCoherencImag(&image, 256), 1);
    EXPECT_EQ(trial.m_pVolumeSrcCoh->m_nCurrentImage, 2);
    EXPECT_EQ(trial.addVolumeSourceCoherencImag(nullptr, 1), 1);
    EXPECT_EQ(trial.m_pVolumeSrcCoh->getTotalSam3D(), 3);
}

TEST(AddVolumeSourceCoherencImag, GivesZeroWithItsMessageWhenNoFaceCanBeHad)
{
    const ScriptedHost host;
    CMDTrialzk trial;
    CVolumSourcCoherencImagzk image;
    const FailingAllocator fails(1);
    EXPECT_EQ(trial.addVolumeSourceCoherencImag(&image, 1), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString(initializingError)));
}

// ---- the package of virtual waves

TEST(VirtualWavePackage, AreReachedThroughThePackage)
{
    CMDTrialzk trial;
    EXPECT_EQ(trial.getTotalFaceVirtSnsWave(), 0);
    EXPECT_EQ(trial.getFaceVirtChnlWave(0, 0), nullptr);
    CFaceVirtChnlWavezk* face = trial.getFaceVirtChnlWave(0, 1);
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(trial.getFaceVirtChnlWave(0, 0), face);
    EXPECT_EQ(trial.getTotalFaceVirtSnsWave(), 1);
    EXPECT_EQ(trial.cleanFaceVirtWave(), 1);
    EXPECT_EQ(trial.getTotalFaceVirtSnsWave(), 0);
    EXPECT_EQ(trial.cleanFaceVirtWave(), 1);
}

TEST(VirtualWavePackage, PackageIndexAboveTheTotalBecomesTheLastAndANegativeOneTheFirst)
{
    CMDTrialzk trial;
    for (int i = 0; i < 3; ++i)
        trial.getFaceVirtChnlWave(i, 1);
    const auto corrected = [&trial](int index) {
        EXPECT_EQ(trial.correctFaceVirtualSnsPkgID(index), 3);
        return index;
    };
    EXPECT_EQ(corrected(5), 2);
    EXPECT_EQ(corrected(4), 2);
    EXPECT_EQ(corrected(2), 2);
    EXPECT_EQ(corrected(0), 0);
    EXPECT_EQ(corrected(-1), 0);
}

TEST(VirtualWavePackage, PackageIndexEqualToTheTotalStays)
{
    CMDTrialzk trial;
    for (int i = 0; i < 3; ++i)
        trial.getFaceVirtChnlWave(i, 1);
    int index = 3;
    EXPECT_EQ(trial.correctFaceVirtualSnsPkgID(index), 3);
    EXPECT_EQ(index, 3);
}

TEST(VirtualWavePackage, PackageIndexOfAnEmptyPackageIsMinusOne)
{
    const CMDTrialzk trial;
    int index = 2;
    EXPECT_EQ(trial.correctFaceVirtualSnsPkgID(index), 0);
    EXPECT_EQ(index, -1);
}

} // namespace
} // namespace megset::holders_test
