// Planes added to a spectrum, space for them, and the buffers that applications hand in.
#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/spectral/channelSpectrum.h"

#include <cstdint>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CSpctmChnl_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace channelSpectrum;

TEST_F(ChannelSpectrum, StartsEmpty)
{
    EXPECT_TRUE(isEmptySpectrum(spectrum));
    EXPECT_TRUE(hasNoBackup(spectrum));
    EXPECT_EQ(spectrum.m_dSpctmMax, 0.0);
    EXPECT_EQ(spectrum.m_dSpctmMin, 0.0);
    EXPECT_EQ(spectrum.m_dSpctmMean, 0.0);
}

TEST_F(ChannelSpectrum, EveryFormAssignsItsPlanesAndDropsTheOthers)
{
    for (const Form form : forms) {
        SCOPED_TRACE(::testing::Message() << form.planes << (form.flat ? " flat" : " rows"));
        fillAll();
        ASSERT_EQ(add(form.planes, form.flat, keep, assign, noBackup, second), 1);
        for (int type = R; type <= A; ++type)
            EXPECT_EQ(planeValues(spectrum, type),
                      type < form.planes ? second[static_cast<std::size_t>(type)].values() : Values());
    }
}

TEST_F(ChannelSpectrum, EveryFormDropsTheOtherPlanesWhenItAdds)
{
    for (const Form form : forms) {
        fillAll();
        ASSERT_EQ(add(form.planes, form.flat, keep, sum, noBackup, second), 1);
        for (int type = R; type <= A; ++type) {
            const auto i = static_cast<std::size_t>(type);
            EXPECT_EQ(planeValues(spectrum, type),
                      type < form.planes ? first[i].values() + second[i].values() : Values());
        }
    }
}

TEST_F(ChannelSpectrum, AddingTwiceFromEmptyGivesTheSum)
{
    for (const Form form : forms) {
        ASSERT_EQ(add(form.planes, form.flat, restart, sum, noBackup, first), 1);
        ASSERT_EQ(add(form.planes, form.flat, keep, sum, noBackup, second), 1);
        for (int type = R; type < form.planes; ++type) {
            const auto i = static_cast<std::size_t>(type);
            EXPECT_EQ(planeValues(spectrum, type), first[i].values() + second[i].values());
        }
    }
}

TEST_F(ChannelSpectrum, RestartEndsASum)
{
    ASSERT_EQ(add(4, true, restart, sum, withBackup, first), 1);
    ASSERT_EQ(add(4, true, restart, sum, noBackup, second), 1);
    EXPECT_EQ(planeValues(spectrum, R), second[0].values());
    EXPECT_TRUE(hasNoBackup(spectrum));
}

TEST_F(ChannelSpectrum, ANewImaginaryPlaneWipesTheSumOfTheRealOnes)
{
    ASSERT_EQ(add(1, false, restart, sum, noBackup, first), 1);
    ASSERT_EQ(add(2, false, keep, sum, noBackup, second), 1);
    EXPECT_EQ(planeValues(spectrum, R), second[0].values());
    EXPECT_EQ(planeValues(spectrum, I), second[1].values());
}

TEST_F(ChannelSpectrum, ANewMagnitudePlaneWipesTheSumOfTheRealOnesAlone)
{
    ASSERT_EQ(add(2, false, restart, sum, noBackup, first), 1);
    ASSERT_EQ(add(3, false, keep, sum, noBackup, second), 1);
    EXPECT_EQ(planeValues(spectrum, R), second[0].values());
    EXPECT_EQ(planeValues(spectrum, I), first[1].values() + second[1].values());
    EXPECT_EQ(planeValues(spectrum, M), second[2].values());
}

TEST_F(ChannelSpectrum, FlatFormsAndTheFormOfFourPlanesKeepTheSumOfTheRealOnes)
{
    for (const Form form : {Form{3, true}, Form{4, true}, Form{4, false}}) {
        ASSERT_EQ(add(1, false, restart, sum, noBackup, first), 1);
        ASSERT_EQ(add(form.planes, form.flat, keep, sum, noBackup, second), 1);
        EXPECT_EQ(planeValues(spectrum, R), first[0].values() + second[0].values());
        EXPECT_EQ(planeValues(spectrum, I), second[1].values());
    }
}

TEST_F(ChannelSpectrum, AnotherShapeBeginsAnewAndDropsTheBackup)
{
    fillAll();
    Input other(2, 5, 9);
    ASSERT_EQ(spectrum.addSpctmDataR(other.rows(), 2, 5, keep, sum, noBackup), 1);
    EXPECT_EQ(spectrum.m_nTimePt, 2);
    EXPECT_EQ(spectrum.m_nFreqPt, 5);
    EXPECT_EQ(planeValues(spectrum, R), other.values());
    EXPECT_TRUE(hasNoBackup(spectrum));
}

TEST_F(ChannelSpectrum, NoShapeClearsAllThatWasHeld)
{
    for (const auto& [nTimePt, nFreqPt] :
         {std::pair<std::int64_t, std::int64_t>{0, F}, {T, 0}, {-1, F}, {T, INT64_MIN}}) {
        fillAll();
        EXPECT_EQ(spectrum.addSpctmDataRIM1d(first[0].flat(), first[1].flat(), first[2].flat(), nTimePt, nFreqPt, keep,
                                             assign, noBackup),
                  0);
        EXPECT_TRUE(isEmptySpectrum(spectrum));
        EXPECT_TRUE(hasNoBackup(spectrum));
    }
    host.expectNoMessages();
}

TEST_F(ChannelSpectrum, ANullArrayIsRefusedAndNothingChanges)
{
    fillAll();
    EXPECT_EQ(spectrum.addSpctmDataR(nullptr, T, F, restart, assign, noBackup), 0);
    EXPECT_EQ(spectrum.addSpctmDataRIMA(first[0].rows(), first[1].rows(), first[2].rows(), nullptr, T, F, restart,
                                        assign, noBackup),
              0);
    EXPECT_EQ(spectrum.addSpctmDataRIM1d(first[0].flat(), nullptr, first[2].flat(), T, F, restart, sum, noBackup), 0);
    EXPECT_EQ(planeValues(spectrum, R), first[0].values());
    EXPECT_EQ(planeValues(spectrum, A), first[3].values());
    EXPECT_EQ(backup(spectrum, A), first[3].values());
}

TEST_F(ChannelSpectrum, SizesThatNothingHoldsFailAsMemoryDoes)
{
    for (const std::int64_t n : {std::int64_t{1} << 33, std::int64_t{1} << 61, INT64_MAX}) {
        fillAll();
        EXPECT_EQ(spectrum.addSpctmDataR(first[0].rows(), n, n, keep, assign, noBackup), 0);
        EXPECT_TRUE(isEmptySpectrum(spectrum));
        EXPECT_EQ(spectrum.initSpctmSpace(n, n, true, 1, 1), 0);
    }
    host.expectNoMessages();
}

TEST_F(ChannelSpectrum, AllocationFailuresLeaveWholeSpectra)
{
    for (const Form form : forms) {
        for (const int mode : {assign, sum}) {
            const auto tried = forEachAllocationFailure([&] {
                spectrum._cleanSpctmData();
                spectrum._cleanBkSpctmData();
                const int done = add(form.planes, form.flat, restart, mode, withBackup, first);
                EXPECT_EQ(done, spectrum.m_nTimePt == T ? 1 : 0);
                if (done == 1) {
                    EXPECT_EQ(planeValues(spectrum, R), first[0].values());
                }
                const FailingAllocator noFailure(0);
                expectStillWhole(spectrum);
            });
            EXPECT_EQ(tried, 2 * form.planes);
        }
    }
    host.expectNoMessages();
}

TEST_F(ChannelSpectrum, PlanesMadeBeforeAFailureAreClearWhenTheShapeIsKnown)
{
    // The shape of a spectrum that came without planes from an old file.
    spectrum.m_nTimePt = T;
    spectrum.m_nFreqPt = F;
    const FailingAllocator failing(2);
    EXPECT_EQ(add(4, false, keep, assign, noBackup, first), 0);
    EXPECT_THAT(planeValues(spectrum, R), ::testing::AllOf(::testing::SizeIs(T * F), Each(0.0)));
    EXPECT_THAT(planeValues(spectrum, I), IsEmpty());
}

TEST_F(ChannelSpectrum, PlanesHeldBeforeAFailureKeepTheirValues)
{
    ASSERT_EQ(add(2, false, restart, assign, noBackup, first), 1);
    const FailingAllocator failing(1);
    EXPECT_EQ(add(4, false, keep, assign, noBackup, second), 0);
    EXPECT_EQ(planeValues(spectrum, R), first[0].values());
    EXPECT_EQ(planeValues(spectrum, I), first[1].values());
}

TEST_F(ChannelSpectrum, AnAdditionIsDoneEvenWhenItsBackupFails)
{
    const FailingAllocator failing(2);
    EXPECT_EQ(add(1, false, restart, assign, withBackup, first), 1);
    EXPECT_EQ(planeValues(spectrum, R), first[0].values());
    EXPECT_EQ(spectrum.m_pBkSpctmR, nullptr);
    EXPECT_EQ(spectrum.m_nBkTimePt, T);
}

TEST_F(ChannelSpectrum, LargePlanesAreSummedElementByElement)
{
    constexpr std::int64_t manyT = 501;
    constexpr std::int64_t manyF = 37;
    Input a(manyT, manyF, 11);
    Input b(manyT, manyF, 12);
    ASSERT_EQ(spectrum.addSpctmDataR(a.rows(), manyT, manyF, restart, sum, noBackup), 1);
    ASSERT_EQ(spectrum.addSpctmDataR(b.rows(), manyT, manyF, keep, sum, noBackup), 1);
    EXPECT_EQ(planeValues(spectrum, R), a.values() + b.values());
}

TEST_F(ChannelSpectrum, RowsMayStandAnywhere)
{
    Values low{1, 2, 3};
    Values high{4, 5, 6};
    double* rows[] = {high.data(), low.data()};
    ASSERT_EQ(spectrum.addSpctmDataR(rows, 2, 3, restart, assign, noBackup), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(4, 5, 6, 1, 2, 3));
}

TEST_F(ChannelSpectrum, DataPointerGivesTheShapeInEveryCase)
{
    ASSERT_EQ(add(1, false, restart, assign, noBackup, first), 1);
    for (const int type : {0, 1, 4, -1, INT32_MAX}) {
        std::int64_t nTimePt = -5;
        std::int64_t nFreqPt = -5;
        EXPECT_EQ(spectrum.getSpctmDataPtr(type, &nTimePt, &nFreqPt), type == R ? spectrum.m_pSpctmR.get() : nullptr);
        EXPECT_EQ(nTimePt, T);
        EXPECT_EQ(nFreqPt, F);
    }
    EXPECT_EQ(spectrum.getSpctmDataPtr(R, nullptr, nullptr), spectrum.m_pSpctmR.get());
}

TEST_F(ChannelSpectrum, CleaningKeepsRangeAndTheOtherSet)
{
    fillAll();
    spectrum.m_dSpctmMax = 3.0;
    EXPECT_EQ(spectrum._cleanSpctmData(), 1);
    EXPECT_TRUE(isEmptySpectrum(spectrum));
    EXPECT_EQ(backup(spectrum, M), first[2].values());
    EXPECT_EQ(spectrum.m_dSpctmMax, 3.0);
    fillAll();
    EXPECT_EQ(spectrum._cleanBkSpctmData(), 1);
    EXPECT_TRUE(hasNoBackup(spectrum));
    EXPECT_EQ(planeValues(spectrum, M), first[2].values());
}

TEST_F(ChannelSpectrum, SpaceIsMadeForThePlanesAskedFor)
{
    EXPECT_EQ(spectrum.initSpctmSpace(T, F, false, 0, 0), 1);
    EXPECT_THAT(planeValues(spectrum, R), ::testing::SizeIs(T * F));
    EXPECT_THAT(planeValues(spectrum, I), IsEmpty());
    EXPECT_EQ(spectrum.initSpctmSpace(T, F, false, 1, 0), 1);
    EXPECT_THAT(planeValues(spectrum, I), ::testing::SizeIs(T * F));
    EXPECT_THAT(planeValues(spectrum, M), IsEmpty());
    EXPECT_EQ(spectrum.initSpctmSpace(T, F, false, 0, 1), 1);
    EXPECT_THAT(planeValues(spectrum, M), ::testing::SizeIs(T * F));
    EXPECT_THAT(planeValues(spectrum, A), ::testing::SizeIs(T * F));
}

TEST_F(ChannelSpectrum, NewSpaceIsClearAlsoWhenNobodyAsked)
{
    ASSERT_EQ(spectrum.initSpctmSpace(T, F, false, 1, 1), 1);
    for (int type = R; type <= A; ++type)
        EXPECT_THAT(planeValues(spectrum, type), Each(0.0));
}

TEST_F(ChannelSpectrum, SpaceOfTheSameShapeKeepsItsContentUnlessCleared)
{
    fillAll();
    ASSERT_EQ(spectrum.initSpctmSpace(T, F, false, 1, 1), 1);
    EXPECT_EQ(planeValues(spectrum, A), first[3].values());
    ASSERT_EQ(spectrum.initSpctmSpace(T, F, true, 0, 0), 1);
    for (int type = R; type <= A; ++type)
        EXPECT_THAT(planeValues(spectrum, type), ::testing::AllOf(::testing::SizeIs(T * F), Each(0.0)));
    EXPECT_EQ(backup(spectrum, R), first[0].values());
}

TEST_F(ChannelSpectrum, SpaceOfAnotherShapeDropsTheCurrentPlanes)
{
    fillAll();
    ASSERT_EQ(spectrum.initSpctmSpace(T, F + 1, false, 0, 0), 1);
    EXPECT_THAT(planeValues(spectrum, R), ::testing::SizeIs(T * (F + 1)));
    EXPECT_THAT(planeValues(spectrum, I), IsEmpty());
    EXPECT_EQ(backup(spectrum, R), first[0].values());
}

TEST_F(ChannelSpectrum, SpaceWithoutShapeDropsTheCurrentPlanesAlone)
{
    for (const auto& [nTimePt, nFreqPt] : {std::pair<std::int64_t, std::int64_t>{0, F}, {T, -1}}) {
        fillAll();
        EXPECT_EQ(spectrum.initSpctmSpace(nTimePt, nFreqPt, true, 1, 1), 0);
        EXPECT_TRUE(isEmptySpectrum(spectrum));
        EXPECT_EQ(backup(spectrum, R), first[0].values());
    }
}

TEST_F(ChannelSpectrum, SpaceThatFailsKeepsWhatWasMade)
{
    const FailingAllocator failing(3);
    EXPECT_EQ(spectrum.initSpctmSpace(T, F, true, 1, 1), 0);
    EXPECT_THAT(planeValues(spectrum, I), ::testing::SizeIs(T * F));
    EXPECT_THAT(planeValues(spectrum, M), IsEmpty());
    EXPECT_EQ(spectrum.m_nTimePt, T);
    host.expectNoMessages();
}

TEST_F(ChannelSpectrum, BufferHasRowsOfZeros)
{
    double** buffer = CSpctmChnl::newBufferF2d(3, 5, true);
    ASSERT_NE(buffer, nullptr);
    for (int row = 0; row < 3; ++row)
        EXPECT_THAT(valuesOf(buffer[row], 5), Each(0.0));
    buffer[2][4] = 1.0;
    EXPECT_EQ(CSpctmChnl::freeBufferF2d(3, 5, buffer), 1);
    EXPECT_EQ(buffer, nullptr);
}

TEST_F(ChannelSpectrum, BufferWithoutSizeIsNullWithoutAMessage)
{
    EXPECT_EQ(CSpctmChnl::newBufferF2d(0, 5, true), nullptr);
    EXPECT_EQ(CSpctmChnl::newBufferF2d(5, 0, true), nullptr);
    EXPECT_EQ(CSpctmChnl::newBufferF2d(-1, -1, false), nullptr);
    host.expectNoMessages();
}

TEST_F(ChannelSpectrum, BufferThatFailsIsToldAndFreed)
{
    const auto tried = forEachAllocationFailure([&] {
        host.clearRecord();
        double** buffer = CSpctmChnl::newBufferF2d(3, 5, false);
        if (buffer == nullptr) {
            EXPECT_THAT(host.messages(), ElementsAre("Has enough memory?"));
        }
        CSpctmChnl::freeBufferF2d(3, 5, buffer);
    });
    EXPECT_EQ(tried, 4);
    host.clearRecord();
    EXPECT_EQ(CSpctmChnl::newBufferF2d(INT64_MAX, 1, true), nullptr);
    EXPECT_EQ(CSpctmChnl::newBufferF2d(1, INT64_MAX, true), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre("Has enough memory?", "Has enough memory?"));
}

TEST_F(ChannelSpectrum, FreeingNoBufferGivesZeroAndNullRowsAreLeftOut)
{
    double** buffer = nullptr;
    EXPECT_EQ(CSpctmChnl::freeBufferF2d(3, 5, buffer), 0);
    buffer = new double* [2] { nullptr, new double[4] };
    EXPECT_EQ(CSpctmChnl::freeBufferF2d(2, 0, buffer), 1);
    buffer = new double* [1] { nullptr };
    EXPECT_EQ(CSpctmChnl::freeBufferF2d(0, 5, buffer), 1);
    EXPECT_EQ(buffer, nullptr);
}

} // namespace
} // namespace megset::CSpctmChnl_test
