// Copies of what a channel is, and arithmetic of two channels.

#include "megset/core/CMDChannelzk.h"
#include "megset/records/records.h"
#include "megset/spectral/CSpctmChnlzk.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"

#include <climits>
#include <memory>
#include <random>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMDChannelzk_test {

namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// Every field different from its default.
void fillIdentity(CMDChannelzk& channel)
{
    channel.m_strChannelTypeName = "type name";
    channel.m_nChannelType = 101;
    channel.m_nMegBalMode = 2;
    channel.m_nMegChnlNumBal = 2;
    channel.m_pMegBalInf = std::make_unique<MEG_BalInfo[]>(2);
    channel.m_pMegBalInf[0] = {1.5, 7, "G11"};
    channel.m_pMegBalInf[1] = {-2.5, 8, "G12"};
    channel.m_dChnlParamA = 1.0;
    channel.m_nSnsGainApplied = 2;
    channel.m_nChnlParamH = 3;
    channel.m_nChnlParamI = 4;
    channel.m_dChnlParamJ = 5.0;
    channel.m_strChannelNameRaw = "raw name";
    channel.m_dSns2dX = 6.0;
    channel.m_dSns2dY = 7.0;
    channel.m_dElct2dX = 8.0;
    channel.m_dElct2dY = 9.0;
    channel.m_strChannelName = "working name";
    channel.m_nChnlParamD = 10;
    channel.m_nChnlParamE = 11;
    channel.m_nChnlParamF = 12;
    channel.m_nChnlParamG = std::int64_t{1} << 40;
    channel.m_nMegListID = 14;
    channel.m_nEegListID = 15;
    channel.m_nChnlRangeState = 16;
    channel.m_dDataMin = 17.0;
    channel.m_dDataMean = 18.0;
    channel.m_dDataMax = 19.0;
    channel.m_dDataMaxAbs = 20.0;
    channel.m_dPhysicalMin = 21.0;
    channel.m_dPhysicalMax = 22.0;
    channel.m_strChnlLabelA = "label A";
    channel.m_strChnlLabelB = "label B";
    channel.m_dChnlParamK = 23.0;
    channel.m_dChnlParamL = 24.0;
    channel.m_dChnlParamM = 25.0;
}

void giveSensor(CMDChannelzk& channel)
{
    auto sensor = std::make_unique<CMEGSensorzk>();
    sensor->m_strSensorName = "sensor";
    sensor->setSnsPos(-1, 0, 1.0, 2.0, 3.0);
    channel.m_pGeomHw = std::move(sensor);
    channel.m_nGeomType = 1;
}

TEST(CopyChannelInfo, TakesOverTheIdentity)
{
    CMDChannelzk source;
    fillIdentity(source);
    giveSensor(source);
    CMDChannelzk channel;
    ASSERT_EQ(channel.copyChannelInfo(&source), 1);
    EXPECT_EQ(channel.m_strChannelTypeName, CString("type name"));
    EXPECT_EQ(channel.m_nChannelType, 101);
    EXPECT_EQ(channel.m_nGeomType, 1);
    EXPECT_EQ(channel.m_nMegBalMode, 2);
    EXPECT_EQ(channel.m_nMegChnlNumBal, 2);
    EXPECT_EQ(channel.m_nMegListID, 14);
    EXPECT_EQ(channel.m_nEegListID, 15);
    EXPECT_EQ(channel.m_dChnlParamA, 1.0);
    EXPECT_EQ(channel.m_dSns2dX, 6.0);
    EXPECT_EQ(channel.m_dSns2dY, 7.0);
    EXPECT_EQ(channel.m_nChnlParamE, 11);
    EXPECT_EQ(channel.m_nChnlParamD, 10);
    EXPECT_EQ(channel.m_nChnlParamF, 12);
    EXPECT_EQ(channel.m_nChnlParamG, std::int64_t{1} << 40);
    EXPECT_EQ(channel.m_nChnlParamH, 3);
    EXPECT_EQ(channel.m_nChnlParamI, 4);
    EXPECT_EQ(channel.m_dChnlParamJ, 5.0);
    EXPECT_EQ(channel.m_dChnlParamK, 23.0);
    EXPECT_EQ(channel.m_dChnlParamL, 24.0);
    EXPECT_EQ(channel.m_strChannelNameRaw, CString("raw name"));
    EXPECT_EQ(channel.m_strChannelName, CString("working name"));
}

TEST(CopyChannelInfo, LeavesGainCountRangeLabelsPlaceOfElectrodesAndSamples)
{
    CMDChannelzk source;
    fillIdentity(source);
    const double samples[] = {1.0, 2.0, 3.0};
    source.addData(3, samples);
    source.m_pSpctmChnlA = std::make_unique<CSpctmChnlzk>();
    source.m_pFreqDataA = std::make_unique<CFreqDataChnlzk>();
    source.m_pWaveResultA = std::make_unique<CChnlWaveAnalyzedResultzk>();
    source.m_pShowShrink = std::make_unique<SHOW_SHRINK_DATAF>();
    CMDChannelzk channel;
    const double own[] = {9.0};
    channel.addData(1, own);
    ASSERT_EQ(channel.copyChannelInfo(&source), 1);
    EXPECT_EQ(channel.m_nSnsGainApplied, 0);
    EXPECT_EQ(channel.m_nChnlRangeState, -1);
    EXPECT_EQ(channel.m_dDataMin, 0.0);
    EXPECT_EQ(channel.m_dDataMean, 0.0);
    EXPECT_EQ(channel.m_dDataMax, 0.0);
    EXPECT_EQ(channel.m_dDataMaxAbs, 0.0);
    EXPECT_EQ(channel.m_dPhysicalMin, 0.0);
    EXPECT_EQ(channel.m_dPhysicalMax, 0.0);
    EXPECT_TRUE(channel.m_strChnlLabelA.IsEmpty());
    EXPECT_TRUE(channel.m_strChnlLabelB.IsEmpty());
    EXPECT_EQ(channel.m_dChnlParamM, 0.0);
    EXPECT_EQ(channel.m_dElct2dX, 0.0);
    EXPECT_EQ(channel.m_dElct2dY, 0.0);
    EXPECT_EQ(channel.m_nTotalSample, 1);
    EXPECT_EQ(channel.m_nBkDataSample, 1);
    EXPECT_EQ(channel.m_pDataWave[0], 9.0);
    EXPECT_EQ(channel.m_pSpctmChnlA, nullptr);
    EXPECT_EQ(channel.m_pFreqDataA, nullptr);
    EXPECT_EQ(channel.m_pWaveResultA, nullptr);
    EXPECT_EQ(channel.m_pShowShrink, nullptr);
}

TEST(CopyChannelInfo, NullGivesZeroAndChangesNothing)
{
    CMDChannelzk channel;
    fillIdentity(channel);
    giveSensor(channel);
    EXPECT_EQ(channel.copyChannelInfo(nullptr), 0);
    EXPECT_EQ(channel.m_nChannelType, 101);
    EXPECT_NE(channel.m_pGeomHw, nullptr);
    EXPECT_EQ(channel.getMegChnlNumBal(), 2);
}

TEST(CopyChannelInfo, OfItselfKeepsAll)
{
    CMDChannelzk channel;
    fillIdentity(channel);
    giveSensor(channel);
    EXPECT_EQ(channel.copyChannelInfo(&channel), 1);
    EXPECT_EQ(channel.m_nChannelType, 101);
    EXPECT_NE(channel.getMEGSensorzk(), nullptr);
    EXPECT_EQ(channel.m_pMegBalInf[1], (MEG_BalInfo{-2.5, 8, "G12"}));
}

TEST(CopyChannelInfo, GeometryOfTypesOneToFourIsCopiedAndNotShared)
{
    for (int type = 1; type <= 4; ++type) {
        CMDChannelzk source;
        source._initGeomHw(type);
        source.m_pGeomHw->m_nGeomValue = 1234;
        CMDChannelzk channel;
        ASSERT_EQ(channel.copyChannelInfo(&source), 1);
        EXPECT_EQ(channel.m_nGeomType, type);
        ASSERT_NE(channel.m_pGeomHw, nullptr);
        EXPECT_NE(channel.m_pGeomHw, source.m_pGeomHw);
        const CGeomzk& copy = *channel.m_pGeomHw;
        const CGeomzk& original = *source.m_pGeomHw;
        EXPECT_EQ(typeid(copy), typeid(original));
        EXPECT_EQ(channel.m_pGeomHw->m_nGeomValue, 1234);
    }
}

TEST(CopyChannelInfo, TheWholeSensorComesAlong)
{
    CMDChannelzk source;
    giveSensor(source);
    CMDChannelzk channel;
    ASSERT_EQ(channel.copyChannelInfo(&source), 1);
    ASSERT_NE(channel.getMEGSensorzk(), nullptr);
    EXPECT_EQ(*channel.getMEGSensorzk(), *source.getMEGSensorzk());
}

TEST(CopyChannelInfo, AnAcceleratorIsNotCopiedAndItsTypeIs)
{
    CMDChannelzk source;
    source.m_pGeomHw = std::make_unique<CSensorAcceleratorzk>();
    source.m_nGeomType = 5;
    CMDChannelzk channel;
    channel._initGeomHw(1);
    ASSERT_EQ(channel.copyChannelInfo(&source), 1);
    EXPECT_EQ(channel.m_pGeomHw, nullptr);
    EXPECT_EQ(channel.m_nGeomType, 5);
}

TEST(CopyChannelInfo, WithoutAnObjectTheOldOneGoesAndTheTypeComes)
{
    for (const int type : {0, 1, 2, 3, 4, 5, -7}) {
        CMDChannelzk source;
        source.m_nGeomType = type;
        CMDChannelzk channel;
        channel._initGeomHw(2);
        ASSERT_EQ(channel.copyChannelInfo(&source), 1);
        EXPECT_EQ(channel.m_pGeomHw, nullptr);
        EXPECT_EQ(channel.m_nGeomType, type);
    }
}

TEST(CopyChannelInfo, AnObjectOfAnotherClassThanItsTypeCountsAsNone)
{
    for (const int made : {1, 2, 3, 4}) {
        for (const int told : {1, 2, 3, 4}) {
            CMDChannelzk source;
            source._initGeomHw(made);
            source.setGeomType(told);
            CMDChannelzk channel;
            ASSERT_EQ(channel.copyChannelInfo(&source), 1);
            EXPECT_EQ(channel.m_pGeomHw != nullptr, made == told);
        }
    }
}

TEST(CopyChannelInfo, BalanceIsCopiedDeeply)
{
    CMDChannelzk source;
    fillIdentity(source);
    CMDChannelzk channel;
    ASSERT_EQ(channel.copyChannelInfo(&source), 1);
    source.m_pMegBalInf[0].m_strBalChannelName = "changed";
    ASSERT_NE(channel.m_pMegBalInf, nullptr);
    EXPECT_EQ(channel.m_pMegBalInf[0], (MEG_BalInfo{1.5, 7, "G11"}));
    EXPECT_EQ(channel.m_pMegBalInf[1], (MEG_BalInfo{-2.5, 8, "G12"}));
}

TEST(CopyChannelInfo, ABalanceCountWithoutArrayIsCopiedAsItIs)
{
    for (const int count : {0, 5, -1, INT_MAX}) {
        CMDChannelzk source;
        source.m_nMegChnlNumBal = count;
        CMDChannelzk channel;
        fillIdentity(channel);
        ASSERT_EQ(channel.copyChannelInfo(&source), 1);
        EXPECT_EQ(channel.m_nMegChnlNumBal, count);
        EXPECT_EQ(channel.m_pMegBalInf, nullptr);
    }
}

TEST(CopyChannelInfo, EveryAllocationFailureIsToldAndLeavesAUsableChannel)
{
    for (int type = 1; type <= 4; ++type) {
        CMDChannelzk source;
        source._initGeomHw(type);
        fillIdentity(source);
        const auto failures = forEachAllocationFailure([&] {
            const ScriptedHost host;
            CMDChannelzk channel;
            if (channel.copyChannelInfo(&source) == 0)
                EXPECT_THAT(host.messages(), ElementsAre(CString("Is there enough memory?!")));
            else
                host.expectNoMessages();
            EXPECT_LE(channel.getMegChnlNumBal(), 2);
            const FailingAllocator none(0);
            EXPECT_EQ(channel.copyChannelInfo(&source), 1);
        });
        EXPECT_EQ(failures, 2) << "geometry type " << type; // the object and the balance
    }
}

std::vector<double> randomSamples(std::size_t n, unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> distribution(-1e6, 1e6);
    std::vector<double> samples(n);
    for (double& sample : samples)
        sample = distribution(generator);
    return samples;
}

void fillSamples(CMDChannelzk& channel, const std::vector<double>& samples)
{
    ASSERT_NE(channel.addData(static_cast<std::int64_t>(samples.size()), samples.data()), 0);
}

std::vector<double> workingSamples(const CMDChannelzk& channel)
{
    return {channel.m_pDataWave.get(), channel.m_pDataWave.get() + channel.m_nTotalSample};
}

std::vector<double> backupSamples(const CMDChannelzk& channel)
{
    return {channel.m_pBkData.get(), channel.m_pBkData.get() + channel.m_nBkDataSample};
}

std::vector<double> reference(const std::vector<double>& a, const std::vector<double>& b, int mode)
{
    std::vector<double> result(a.size(), 0.0);
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i)
        result[i] = mode == 0 ? a[i] - b[i] : mode == 1 ? a[i] + b[i] : a[i] * b[i];
    return result;
}

TEST(OperateChannel, BothArraysHoldDifferenceSumOrProduct)
{
    const std::vector<double> a = randomSamples(257, 1);
    const std::vector<double> b = randomSamples(257, 2);
    CMDChannelzk first;
    CMDChannelzk second;
    fillSamples(first, a);
    fillSamples(second, b);
    for (int mode = 0; mode <= 2; ++mode) {
        for (const bool unused : {false, true}) {
            CMDChannelzk result;
            result.m_nCurrentSample = 5;
            ASSERT_EQ(result.operateChnl(&first, &second, unused, mode), 1);
            EXPECT_THAT(workingSamples(result), ElementsAreArray(reference(a, b, mode)));
            EXPECT_THAT(backupSamples(result), ElementsAreArray(reference(a, b, mode)));
            EXPECT_EQ(result.m_nCurrentSample, 0);
        }
    }
    EXPECT_THAT(workingSamples(first), ElementsAreArray(a));
    EXPECT_THAT(workingSamples(second), ElementsAreArray(b));
}

TEST(OperateChannel, WorkingSamplesAreUsedAndNotTheBackup)
{
    CMDChannelzk a;
    fillSamples(a, {1.0, 2.0});
    a.scaleWaveData(10.0, 0);
    CMDChannelzk b;
    fillSamples(b, {3.0, 4.0});
    CMDChannelzk result;
    ASSERT_EQ(result.operateChnl(&a, &b, false, 1), 1);
    EXPECT_THAT(workingSamples(result), ElementsAre(13.0, 24.0));
}

TEST(OperateChannel, CountIsThatOfTheFirst)
{
    const std::vector<double> longer = randomSamples(10, 3);
    const std::vector<double> shorter = randomSamples(4, 4);
    CMDChannelzk a;
    CMDChannelzk b;
    fillSamples(a, longer);
    fillSamples(b, shorter);
    for (int mode = 0; mode <= 2; ++mode) {
        CMDChannelzk result;
        fillSamples(result, randomSamples(10, 5)); // what is left of these must not show
        ASSERT_EQ(result.operateChnl(&a, &b, false, mode), 1);
        EXPECT_THAT(workingSamples(result), ElementsAreArray(reference(longer, shorter, mode)));
        EXPECT_THAT(backupSamples(result), ElementsAreArray(reference(longer, shorter, mode)));
        ASSERT_EQ(result.operateChnl(&b, &a, false, mode), 1);
        EXPECT_THAT(workingSamples(result), ElementsAreArray(reference(shorter, longer, mode)));
    }
}

TEST(OperateChannel, AnotherModeGivesZeroAndLeavesZeros)
{
    CMDChannelzk a;
    fillSamples(a, {1.0, 2.0, 3.0});
    for (const int mode : {-1, 3, INT_MAX, INT_MIN}) {
        CMDChannelzk result;
        fillSamples(result, {7.0});
        EXPECT_EQ(result.operateChnl(&a, &a, false, mode), 0);
        EXPECT_EQ(result.m_nTotalSample, 3);
        EXPECT_EQ(result.m_nBkDataSample, 3);
        EXPECT_THAT(workingSamples(result), Each(0.0));
        EXPECT_THAT(backupSamples(result), Each(0.0));
    }
}

TEST(OperateChannel, MissingOperandsGiveZeroAndChangeNothing)
{
    CMDChannelzk a;
    fillSamples(a, {1.0, 2.0});
    CMDChannelzk empty;
    CMDChannelzk countAlone;
    countAlone.m_nTotalSample = 2;
    CMDChannelzk result;
    fillSamples(result, {7.0});
    EXPECT_EQ(result.operateChnl(nullptr, &a, false, 0), 0);
    EXPECT_EQ(result.operateChnl(&a, nullptr, false, 0), 0);
    EXPECT_EQ(result.operateChnl(&empty, &a, false, 0), 0);
    EXPECT_EQ(result.operateChnl(&a, &empty, false, 0), 0);
    EXPECT_EQ(result.operateChnl(&countAlone, &a, false, 0), 0);
    EXPECT_EQ(result.operateChnl(&a, &countAlone, false, 0), 0);
    EXPECT_THAT(workingSamples(result), ElementsAre(7.0));
}

TEST(OperateChannel, AChannelMayBeItsOwnOperand)
{
    const std::vector<double> own = {1.0, 2.0, 3.0};
    const std::vector<double> other = {10.0, 20.0, 30.0, 40.0};
    for (int mode = 0; mode <= 2; ++mode) {
        CMDChannelzk b;
        fillSamples(b, other);
        CMDChannelzk first;
        fillSamples(first, own);
        ASSERT_EQ(first.operateChnl(&first, &b, false, mode), 1);
        EXPECT_THAT(workingSamples(first), ElementsAreArray(reference(own, other, mode)));
        EXPECT_THAT(backupSamples(first), ElementsAreArray(reference(own, other, mode)));
        CMDChannelzk second;
        fillSamples(second, own);
        ASSERT_EQ(second.operateChnl(&b, &second, false, mode), 1);
        EXPECT_THAT(workingSamples(second), ElementsAreArray(reference(other, own, mode)));
        CMDChannelzk both;
        fillSamples(both, own);
        ASSERT_EQ(both.operateChnl(&both, &both, false, mode), 1);
        EXPECT_THAT(workingSamples(both), ElementsAreArray(reference(own, own, mode)));
    }
}

TEST(OperateChannel, EveryAllocationFailureIsToldAndLeavesTheOperands)
{
    const std::vector<double> samples = {1.0, 2.0, 3.0};
    for (const bool ownOperand : {false, true}) {
        const auto failures = forEachAllocationFailure([&] {
            CMDChannelzk a;
            CMDChannelzk result;
            {
                const FailingAllocator none(0);
                fillSamples(a, samples);
                if (ownOperand)
                    fillSamples(result, samples);
            }
            const ScriptedHost host;
            if (result.operateChnl(ownOperand ? &result : &a, &a, false, 1) == 0)
                EXPECT_THAT(host.messages(), ElementsAre(CString("Not enough memory!")));
            else
                host.expectNoMessages();
            EXPECT_THAT(workingSamples(a), ElementsAreArray(samples));
            const FailingAllocator none(0);
            EXPECT_EQ(result.operateChnl(&a, &a, false, 0), 1);
        });
        EXPECT_EQ(failures, 2); // working and backup array
    }
}

} // namespace

} // namespace megset::CMDChannelzk_test
