// The backup of a spectrum: storing to it and reloading from it.
#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/spectral/channelSpectrum.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CSpctmChnlBackup_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace channelSpectrum;

TEST_F(ChannelSpectrum, BackupCopiesThePlanesThatExist)
{
    fillAll();
    ASSERT_EQ(add(2, false, keep, assign, noBackup, second), 1);
    ASSERT_EQ(spectrum.storeData2Backupfile(), 1);
    EXPECT_EQ(backup(spectrum, R), second[0].values());
    EXPECT_EQ(backup(spectrum, I), second[1].values());
    EXPECT_EQ(backup(spectrum, M), first[2].values()); // no current plane: the old one stays
    EXPECT_EQ(backup(spectrum, A), first[3].values());
}

TEST_F(ChannelSpectrum, BackupOfAnotherShapeReplacesAll)
{
    fillAll();
    ASSERT_EQ(spectrum.initSpctmSpace(2, 2, true, 0, 0), 1);
    ASSERT_EQ(spectrum.storeData2Backupfile(), 1);
    EXPECT_EQ(spectrum.m_nBkTimePt, 2);
    EXPECT_EQ(backup(spectrum, R), Values(4, 0.0));
    EXPECT_EQ(spectrum.m_pBkSpctmI, nullptr);
}

TEST_F(ChannelSpectrum, BackupOfOtherTimesOrOtherFrequenciesAloneReplacesAll)
{
    for (const auto& [nTimePt, nFreqPt] : {std::pair{T, F + 5}, {T, F - 1}, {T + 5, F}, {T - 1, F}}) {
        fillAll();
        ASSERT_EQ(spectrum.initSpctmSpace(nTimePt, nFreqPt, true, 0, 0), 1);
        ASSERT_EQ(spectrum.storeData2Backupfile(), 1);
        EXPECT_EQ(spectrum.m_nBkTimePt, nTimePt);
        EXPECT_EQ(spectrum.m_nBkFreqPt, nFreqPt);
        EXPECT_EQ(backup(spectrum, R), Values(static_cast<std::size_t>(nTimePt * nFreqPt), 0.0));
        EXPECT_EQ(spectrum.m_pBkSpctmA, nullptr);
    }
}

TEST_F(ChannelSpectrum, BackupOfNothingClearsTheBackup)
{
    fillAll();
    spectrum._cleanSpctmData();
    EXPECT_EQ(spectrum.storeData2Backupfile(), 0);
    EXPECT_TRUE(hasNoBackup(spectrum));
}

TEST_F(ChannelSpectrum, BackupThatFailsKeepsWhatWasCopied)
{
    ASSERT_EQ(add(3, false, restart, assign, noBackup, first), 1);
    const FailingAllocator failing(2);
    EXPECT_EQ(spectrum.storeData2Backupfile(), 0);
    EXPECT_EQ(backup(spectrum, R), first[0].values());
    EXPECT_EQ(spectrum.m_pBkSpctmI, nullptr);
    host.expectNoMessages();
}

TEST_F(ChannelSpectrum, StoringTheResultKeepsTheRawRealAndImaginaryBackup)
{
    ASSERT_EQ(add(3, false, restart, assign, withBackup, first), 1);
    ASSERT_EQ(add(4, false, keep, assign, noBackup, second), 1);
    ASSERT_EQ(spectrum.storeSpctmResult(), 1);
    EXPECT_EQ(backup(spectrum, R), first[0].values());
    EXPECT_EQ(backup(spectrum, I), first[1].values());
    EXPECT_EQ(backup(spectrum, M), second[2].values());
    EXPECT_EQ(backup(spectrum, A), second[3].values());
}

TEST_F(ChannelSpectrum, StoringTheResultOfAnotherShapeStoresAll)
{
    ASSERT_EQ(add(4, true, restart, assign, noBackup, first), 1);
    ASSERT_EQ(spectrum.storeSpctmResult(), 1);
    EXPECT_EQ(backup(spectrum, R), first[0].values());
    EXPECT_EQ(backup(spectrum, A), first[3].values());
}

TEST_F(ChannelSpectrum, StoringTheResultMayFail)
{
    ASSERT_EQ(add(2, false, restart, assign, withBackup, first), 1);
    ASSERT_EQ(add(4, false, keep, assign, noBackup, second), 1);
    const FailingAllocator failing(1);
    EXPECT_EQ(spectrum.storeSpctmResult(), 0);
}

TEST_F(ChannelSpectrum, ReloadRefusesABackupThatHoldsR)
{
    fillAll();
    EXPECT_EQ(spectrum.reloadRawSpctmDataRIX(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("No backup sepctral data?!"));
    EXPECT_EQ(planeValues(spectrum, R), first[0].values());
}

TEST_F(ChannelSpectrum, ReloadRefusesAnEmptyBackup)
{
    ASSERT_EQ(add(4, true, restart, assign, noBackup, first), 1);
    EXPECT_EQ(spectrum.reloadRawSpctmDataRIX(), 0);
    spectrum.m_nBkTimePt = T;
    EXPECT_EQ(spectrum.reloadRawSpctmDataRIX(), 0);
    EXPECT_THAT(host.messages(), ElementsAre("No backup sepctral data?!", "No backup sepctral data?!"));
    EXPECT_EQ(planeValues(spectrum, I), first[1].values());
}

TEST_F(ChannelSpectrum, ReloadBringsBackThePlanesOfTheBackupAlone)
{
    fillAll();
    spectrum.m_pBkSpctmR.reset();
    spectrum.m_pBkSpctmA.reset();
    ASSERT_EQ(add(4, true, keep, assign, noBackup, second), 1);
    spectrum.m_pSpctmI.reset();
    ASSERT_EQ(spectrum.reloadRawSpctmDataRIX(), 1);
    EXPECT_EQ(planeValues(spectrum, R), second[0].values());
    EXPECT_EQ(planeValues(spectrum, I), first[1].values());
    EXPECT_EQ(planeValues(spectrum, M), first[2].values());
    EXPECT_EQ(planeValues(spectrum, A), second[3].values());
}

TEST_F(ChannelSpectrum, ReloadOverOtherFrequenciesDropsTheCurrentPlanes)
{
    fillAll();
    spectrum.m_pBkSpctmR.reset();
    ASSERT_EQ(spectrum.initSpctmSpace(T, F + 1, true, 0, 0), 1);
    ASSERT_EQ(spectrum.reloadRawSpctmDataRIX(), 1);
    EXPECT_EQ(spectrum.m_nFreqPt, F);
    EXPECT_THAT(planeValues(spectrum, R), IsEmpty());
    EXPECT_EQ(planeValues(spectrum, A), first[3].values());
}

TEST_F(ChannelSpectrum, ReloadOverFewerOrMoreTimesKeepsEveryPlaneOfOneSize)
{
    for (const std::int64_t otherT : {T - 2, T + 2}) {
        fillAll();
        spectrum.m_pBkSpctmR.reset();
        spectrum.m_pBkSpctmA.reset();
        ASSERT_EQ(spectrum.initSpctmSpace(otherT, F, true, 1, 1), 1);
        std::fill_n(spectrum.m_pSpctmR.get(), otherT * F, 7.0);
        ASSERT_EQ(spectrum.reloadRawSpctmDataRIX(), 1);
        EXPECT_EQ(spectrum.m_nTimePt, T);
        EXPECT_EQ(planeValues(spectrum, I), first[1].values());
        EXPECT_EQ(planeValues(spectrum, M), first[2].values());
        Values kept(static_cast<std::size_t>(std::min(T, otherT) * F), 7.0);
        kept.resize(static_cast<std::size_t>(T * F), 0.0);
        EXPECT_EQ(planeValues(spectrum, R), kept);
        EXPECT_EQ(planeValues(spectrum, A), Values(static_cast<std::size_t>(T * F), 0.0));
    }
}

TEST_F(ChannelSpectrum, ReloadThatFailsLeavesAWholeSpectrum)
{
    for (const std::int64_t currentT : {T, T - 1}) {
        const auto tried = forEachAllocationFailure([&] {
            CSpctmChnlzk source;
            source.m_nBkTimePt = T;
            source.m_nBkFreqPt = F;
            const auto twelve = {1., 2., 3., 4., 5., 6., 7., 8., 9., 10., 11., 12.};
            source.m_pBkSpctmI.reset(new double[12]);
            source.m_pBkSpctmM.reset(new double[12]);
            std::copy(twelve.begin(), twelve.end(), source.m_pBkSpctmI.get());
            std::copy(twelve.begin(), twelve.end(), source.m_pBkSpctmM.get());
            source.m_nTimePt = currentT;
            source.m_nFreqPt = F;
            source.m_pSpctmR.reset(new double[static_cast<std::size_t>(currentT * F)]());
            source.reloadRawSpctmDataRIX();
            const FailingAllocator noFailure(0);
            expectStillWhole(source);
        });
        EXPECT_EQ(tried, currentT == T ? 2 : 3);
    }
}

} // namespace
} // namespace megset::CSpctmChnlBackup_test
