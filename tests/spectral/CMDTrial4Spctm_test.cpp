// The spectra of a trial: objects, what there is, and shapes.

#include "megset/records/results/CFreqDataChnl.h"
#include "tests/spectral/planes.h"

namespace megset::CMDTrial4Spctm_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

class TrialSpectra : public SpectralTrial
{
protected:
    TrialSpectra() { makeChannels(6); }

    CFreqDataChnlzk& freqData(int i, int nClass = active)
    {
        return *static_cast<CFreqDataChnlzk*>(trial.getChannel(i)->getFreqChnl(true, nClass));
    }
    void clearPlace(int i) { trial.m_ppChannel.set(i, std::unique_ptr<CMDChannelzk>()); }
};

TEST_F(TrialSpectra, AreMadeWhenAskedFor)
{
    for (const int nClass : {control, result}) {
        EXPECT_EQ(trial.getSpctmTrial(false, nClass), nullptr);
        CSpctmTrialzk* const made = trial.getSpctmTrial(true, nClass);
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(trial.getSpctmTrial(true, nClass), made);
    }
    EXPECT_EQ(trial.getSpctmTrialA(false), trial.m_pSpctmTrialA.get());
    EXPECT_EQ(trial.getSpctmTrialC(false), trial.m_pSpctmTrialC.get());
    EXPECT_EQ(trial.getSpctmTrialR(false), trial.m_pSpctmTrialR.get());
    for (const int nClass : {-1, 3, INT32_MAX, INT32_MIN})
        EXPECT_EQ(trial.getSpctmTrial(true, nClass), nullptr);
    host.expectNoMessages();
}

TEST_F(TrialSpectra, WithoutMemorySaySo)
{
    const FailingAllocator none(1, FailingAllocator::Failing::FromThenOn);
    EXPECT_EQ(trial.getSpctmTrial(true, control), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Initializing trial spectrogram error!")));
}

TEST_F(TrialSpectra, FrequencyDataWithoutMemorySaySo)
{
    const FailingAllocator none(1, FailingAllocator::Failing::FromThenOn);
    EXPECT_EQ(trial.getFreqDataTrial(active, true), nullptr);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Initializing trial frequency data error!")));
}

TEST_F(TrialSpectra, FrequencyDataNeedChannels)
{
    EXPECT_EQ(trial.getFreqDataTrial(active, false), nullptr);
    for (const int nClass : {active, control, result})
        ASSERT_NE(trial.getFreqDataTrial(nClass, true), nullptr);
    EXPECT_EQ(trial.getFreqDataTrial(active, false), trial.m_pFreqDataTrialA.get());
    EXPECT_EQ(trial.getFreqDataTrial(control, false), trial.m_pFreqDataTrialC.get());
    EXPECT_EQ(trial.getFreqDataTrial(result, true), trial.m_pFreqDataTrialX.get());
    EXPECT_EQ(trial.getFreqDataTrial(3, true), nullptr);
    EXPECT_EQ(trial.getFreqDataTrial(-1, true), nullptr);
    CMDTrialzk empty;
    EXPECT_EQ(empty.getFreqDataTrial(active, true), nullptr);
    EXPECT_EQ(empty.m_pFreqDataTrialA, nullptr);
    host.expectNoMessages();
}

TEST_F(TrialSpectra, PointsOfFrequencyDataAreThoseOfTheFirstChannel)
{
    EXPECT_EQ(trial.getSample4FreqData(active), 0);
    freqData(1).setFreqData(R, Values{1, 2, 3});
    EXPECT_EQ(trial.getSample4FreqData(active), 0);
    freqData(0).setFreqData(R, Values{1, 2});
    EXPECT_EQ(trial.getSample4FreqData(active), 2);
    EXPECT_EQ(trial.getSample4FreqData(control), 0);
    EXPECT_EQ(trial.getSample4FreqData(7), 0);
    clearPlace(0);
    EXPECT_EQ(trial.getSample4FreqData(active), 0);
    EXPECT_EQ(CMDTrialzk().getSample4FreqData(active), 0);
}

TEST_F(TrialSpectra, OneChannelIsCleanedOfOneClass)
{
    fill(2, Values(12, 1.0));
    setPlane(channel(2, control), R, T, F, Values(12, 1.0));
    channel(2).storeData2Backupfile();
    EXPECT_EQ(trial._cleanSpctmChnlData(2, active), 1);
    EXPECT_EQ(channel(2).m_pSpctmR, nullptr);
    EXPECT_NE(channel(2).m_pBkSpctmR, nullptr);
    EXPECT_NE(channel(2, control).m_pSpctmR, nullptr);
    trial.setCurrentChannel(2);
    EXPECT_EQ(trial._cleanSpctmChnlData(-1, control), 1);
    EXPECT_EQ(channel(2, control).m_pSpctmR, nullptr);
    EXPECT_EQ(trial._cleanSpctmChnlData(3, active), 1); // without that class
    EXPECT_EQ(trial._cleanSpctmChnlData(3, 9), 1);
    EXPECT_EQ(trial._cleanSpctmChnlData(6, active), 0);
    EXPECT_EQ(trial._cleanSpctmChnlData(-2, active), 0);
    clearPlace(3);
    EXPECT_EQ(trial._cleanSpctmChnlData(3, active), 0);
}

TEST_F(TrialSpectra, AllChannelsAreCleanedOfAllClasses)
{
    channel(1, result);
    fill(2, Values(12, 1.0));
    freqData(4);
    clearPlace(3);
    EXPECT_EQ(trial._cleanSpctmChnlDataAll(), 1);
    EXPECT_EQ(trial.getChannel(1)->hasSpctmData(), 0);
    EXPECT_EQ(trial.getChannel(2)->hasSpctmData(), 0);
    EXPECT_NE(trial.getChannel(4)->m_pFreqDataA, nullptr);
    EXPECT_EQ(trial._cleanFreqDataAllChnl(), 1);
    EXPECT_EQ(trial.getChannel(4)->m_pFreqDataA, nullptr);
    CMDTrialzk empty;
    EXPECT_EQ(empty._cleanSpctmChnlDataAll(), 0);
    EXPECT_EQ(empty._cleanFreqDataAllChnl(), 0);
}

TEST_F(TrialSpectra, TheTrialsOwnObjectsAreCleaned)
{
    trial.getFreqDataTrial(result, true);
    trial.getSpctmTrial(true, result);
    EXPECT_EQ(trial._cleanSpctmTrlData(), 1);
    EXPECT_EQ(trial.m_pSpctmTrialA, nullptr);
    EXPECT_EQ(trial.m_pSpctmTrialR, nullptr);
    EXPECT_NE(trial.m_pFreqDataTrialX, nullptr);
    EXPECT_EQ(trial._cleanFreqDataTrl(), 1);
    EXPECT_EQ(trial.m_pFreqDataTrialX, nullptr);
}

TEST_F(TrialSpectra, AllSpectraAreReloadedWhateverTheySay)
{
    setPlane(channel(1), M, T, F, Values(12, 1.0));
    channel(1).storeData2Backupfile();
    channel(1).scaleSpctm(5.0, M);
    setPlane(channel(4, result), M, T, F, Values(12, 2.0));
    channel(4, result).storeData2Backupfile();
    channel(4, result).scaleSpctm(5.0, M);
    channel(2, control); // without a backup
    clearPlace(3);
    EXPECT_EQ(trial.reloadSpctmDataAll(), 1);
    EXPECT_THAT(planeValues(channel(1), M), Each(1.0));
    EXPECT_THAT(planeValues(channel(4, result), M), Each(2.0));
    EXPECT_THAT(host.messages(), ElementsAre(CString("No backup sepctral data?!")));
    EXPECT_EQ(CMDTrialzk().reloadSpctmDataAll(), 1);
}

// ---- what there is

TEST_F(TrialSpectra, AChannelHasDataWhenItHasTheObject)
{
    EXPECT_FALSE(trial.hasSpctmData4Chnl(active, R, 2));
    channel(2);
    freqData(4, control);
    EXPECT_TRUE(trial.hasSpctmData4Chnl(active, 99, 2));
    EXPECT_FALSE(trial.hasSpctmData4Chnl(control, R, 2));
    EXPECT_FALSE(trial.hasSpctmData4Chnl(active, R, 6));
    EXPECT_FALSE(trial.hasSpctmData4Chnl(9, R, 2));
    EXPECT_TRUE(trial.hasFreqData4Chnl(control, 99, 4));
    EXPECT_FALSE(trial.hasFreqData4Chnl(active, R, 4));
    EXPECT_FALSE(trial.hasFreqData4Chnl(active, R, -2));
}

TEST_F(TrialSpectra, DataToDrawInChannelThreeLeaveTheCurrentChannelFive)
{
    fill(3, Values(12, 1.0));
    trial.setCurrentChannel(5);
    EXPECT_TRUE(trial.hasSpctmData4draw(active, R));
    EXPECT_EQ(trial.m_nCurrentChannel, 5);
}

TEST_F(TrialSpectra, DataToDrawInChannelThreeMoveTheCurrentChannelOne)
{
    channel(0);
    fill(3, Values(12, 1.0));
    fill(4, Values(12, 1.0));
    clearPlace(2);
    trial.setCurrentChannel(1);
    EXPECT_FALSE(trial.hasSpctmData4draw(active, I));
    EXPECT_FALSE(trial.hasSpctmData4draw(active, 4));
    EXPECT_FALSE(trial.hasSpctmData4draw(control, R));
    EXPECT_EQ(trial.m_nCurrentChannel, 1);
    EXPECT_TRUE(trial.hasSpctmData4draw(active, R));
    EXPECT_EQ(trial.m_nCurrentChannel, 3);
}

TEST_F(TrialSpectra, APlaneWithoutElementsIsNotDrawn)
{
    channel(3).m_pSpctmR = tryNewSamples(0, true);
    channel(3).m_nTimePt = 5;
    EXPECT_FALSE(trial.hasSpctmData4draw(active, R));
    channel(3).m_nTimePt = 0;
    channel(3).m_nFreqPt = 5;
    EXPECT_FALSE(trial.hasSpctmData4draw(active, R));
}

TEST_F(TrialSpectra, FrequencyDataToDrawMoveTheCurrentChannelOn)
{
    freqData(1);
    EXPECT_FALSE(trial.hasFreqData4draw(active, 0));
    freqData(3).setFreqData(A, Values{1, 2});
    EXPECT_TRUE(trial.hasFreqData4draw(active, 0));
    EXPECT_EQ(trial.m_nCurrentChannel, 3);
    trial.setCurrentChannel(5);
    EXPECT_TRUE(trial.hasFreqData4draw(active, 99));
    EXPECT_EQ(trial.m_nCurrentChannel, 5);
    EXPECT_FALSE(trial.hasFreqData4draw(control, 0));
}

TEST_F(TrialSpectra, DataToScanNeedTheTrialsSpectrum)
{
    fill(3, Values(12, 1.0));
    setPlane(channel(3, control), R, T, F, Values(12, 1.0));
    EXPECT_EQ(trial.hasSpctmData4SrcScan(control, R), 0);
    EXPECT_NE(trial.hasSpctmData4SrcScan(active, R), 0);
    EXPECT_EQ(trial.m_nCurrentChannel, 3);
    EXPECT_EQ(trial.hasSpctmData4SrcScan(active, M), 0);
}

TEST_F(TrialSpectra, DataToScanAreSeenWithoutChannels)
{
    CMDTrialzk empty;
    EXPECT_EQ(empty.hasSpctmData4SrcScan(active, R), 0);
    empty.getSpctmTrial(true, active);
    EXPECT_NE(empty.hasSpctmData4SrcScan(active, R), 0);
}

TEST_F(TrialSpectra, DataToScanAreSeenWhenTheLastPlaceIsEmptyOrHoldsAnEmptyPlane)
{
    channel(5);
    EXPECT_EQ(trial.hasSpctmData4SrcScan(active, R), 0);
    channel(5).m_pSpctmR = tryNewSamples(0, true);
    EXPECT_NE(trial.hasSpctmData4SrcScan(active, R), 0);
    EXPECT_EQ(trial.hasSpctmData4SrcScan(active, I), 0);
    clearPlace(5);
    EXPECT_NE(trial.hasSpctmData4SrcScan(active, I), 0);
    EXPECT_EQ(trial.m_nCurrentChannel, 0);
}

TEST_F(TrialSpectra, AChannelToShowIsTheCurrentOneWhenItIsMegOrEeg)
{
    fill(1, Values(12, 1.0));
    fill(3, Values(12, 1.0));
    for (const int type : {10, 300}) {
        trial.getChannel(3)->setChannelType(type);
        trial.setCurrentChannel(3);
        EXPECT_TRUE(trial.findSpctmChnl4Show(active, R));
        EXPECT_EQ(trial.m_nCurrentChannel, 3);
    }
}

TEST_F(TrialSpectra, AChannelToShowIsElseTheFirstOfAnyKind)
{
    fill(1, Values(12, 1.0));
    fill(3, Values(12, 1.0));
    trial.getChannel(3)->setChannelType(600);
    trial.setCurrentChannel(3);
    EXPECT_TRUE(trial.findSpctmChnl4Show(active, R));
    EXPECT_EQ(trial.m_nCurrentChannel, 1);
    EXPECT_FALSE(trial.findSpctmChnl4Show(active, M));
    EXPECT_FALSE(trial.findSpctmChnl4Show(control, R));
    EXPECT_EQ(trial.m_nCurrentChannel, 1);
    EXPECT_FALSE(CMDTrialzk().findSpctmChnl4Show(active, R));
}

// ---- shape

TEST_F(TrialSpectra, ChannelNumberAndPointsComeWithTheClampedIndex)
{
    fill(2, Values(12, 1.0));
    int channels = -7;
    std::int64_t times = -7;
    std::int64_t freqs = -7;
    EXPECT_EQ(trial.getChnlnumberSpctmTimeFreqPts(&channels, &times, &freqs, 2, active), 2);
    EXPECT_EQ(channels, 6);
    EXPECT_EQ(times, T);
    EXPECT_EQ(freqs, F);
    EXPECT_EQ(trial.getChnlnumberSpctmTimePt(&channels, &times, 99, active), 5);
    EXPECT_EQ(times, 0);
    EXPECT_EQ(trial.getChnlnumberSpctmFreqPt(&channels, &freqs, -2, active), 0);
    EXPECT_EQ(freqs, 0);
    trial.setCurrentChannel(2);
    EXPECT_EQ(trial.getChnlnumberSpctmFreqPt(nullptr, &freqs, -1, active), 2);
    EXPECT_EQ(freqs, F);
    EXPECT_EQ(trial.getChnlnumberSpctmTimeFreqPts(nullptr, nullptr, nullptr, -1, 9), 2);
    EXPECT_EQ(CMDTrialzk().getChnlnumberSpctmTimeFreqPts(&channels, &times, &freqs, 2, active), -1);
    EXPECT_EQ(channels, 0);
    EXPECT_EQ(times, 0);
}

TEST_F(TrialSpectra, ShapesOfAllPlanesAreScanned)
{
    std::int64_t n = 7;
    std::int64_t tMin = 7;
    std::int64_t tMax = 7;
    std::int64_t fMin = 7;
    std::int64_t fMax = 7;
    EXPECT_EQ(trial.getSpctmChnTimFrq(n, tMin, tMax, fMin, fMax), 1);
    EXPECT_EQ(std::vector({n, tMin, tMax, fMin, fMax}), std::vector<std::int64_t>(5, 0));
    setPlane(channel(1), A, 4, 3, Values(12, 1.0));
    setPlane(channel(1, result), M, 2, 5, Values(10, 1.0));
    setPlane(channel(3, control), R, 6, 1, Values(6, 1.0));
    channel(4).m_nTimePt = 99; // a shape without a plane
    EXPECT_EQ(trial.getSpctmChnTimFrq(n, tMin, tMax, fMin, fMax), 1);
    EXPECT_EQ(std::vector({n, tMin, tMax, fMin, fMax}), (std::vector<std::int64_t>{2, 2, 6, 1, 5}));
    EXPECT_EQ(CMDTrialzk().getSpctmChnTimFrq(n, tMin, tMax, fMin, fMax), 0);
    EXPECT_EQ(n, 0);
}

TEST_F(TrialSpectra, TheLargestFrequencyIndexIsThatOfTheClassOrOfItsLastChannel)
{
    EXPECT_EQ(trial.getSpctmFreqIndexMax(false, active), F - 1);
    EXPECT_EQ(trial.getSpctmFreqIndexMax(true, active), F - 1); // with no channel that has it
    setPlane(channel(1), R, 1, 9, Values(9, 1.0));
    setPlane(channel(4), R, 1, 7, Values(7, 1.0));
    EXPECT_EQ(trial.getSpctmFreqIndexMax(false, active), F - 1);
    EXPECT_EQ(trial.getSpctmFreqIndexMax(true, active), 6);
    EXPECT_EQ(spectrum->m_nFreqPt, 7);
    EXPECT_EQ(trial.getSpctmFreqIndexMax(true, control), -1);
    EXPECT_EQ(trial.getSpctmFreqIndexMax(false, 9), -1);
    CMDTrialzk empty;
    empty.getSpctmTrial(true, active)->m_nFreqPt = 5;
    EXPECT_EQ(empty.getSpctmFreqIndexMax(false, active), -1);
}

TEST_F(TrialSpectra, TheSizeIsThatOfThePlaneOrOfTheSelection)
{
    std::int64_t tBegin = 7;
    std::int64_t tEnd = 7;
    std::int64_t fBegin = 7;
    std::int64_t fEnd = 7;
    EXPECT_EQ(trial.getSpctmSize(true, tBegin, tEnd, fBegin, fEnd, active), 12);
    EXPECT_EQ(std::vector({tBegin, tEnd, fBegin, fEnd}), (std::vector<std::int64_t>{0, 3, 0, 2}));
    spectrum->setTrialSpctmSelectTime(1, 2);
    spectrum->setTrialSpctmSelectFreq(0, 2);
    EXPECT_EQ(trial.getSpctmSize(false, tBegin, tEnd, fBegin, fEnd, active), 6);
    EXPECT_EQ(std::vector({tBegin, tEnd, fBegin, fEnd}), (std::vector<std::int64_t>{1, 2, 0, 2}));
    EXPECT_EQ(trial.getSpctmSize(true, tBegin, tEnd, fBegin, fEnd, control), 0);
    EXPECT_EQ(std::vector({tBegin, tEnd, fBegin, fEnd}), std::vector<std::int64_t>(4, 0));
    makeClass(INT64_MIN, INT64_MAX);
    EXPECT_EQ(trial.getSpctmSize(true, tBegin, tEnd, fBegin, fEnd, active), 0);
}

TEST_F(TrialSpectra, ATimePointStandsForASample)
{
    spectrum->setSpctmTimePtFreqPt(T, F, 10);
    spectrum->m_nEdgePt = 5;
    spectrum->m_nDataBegin = 1000;
    EXPECT_EQ(trial.getSpctmTimePt(2, active, 0), 1025);
    EXPECT_EQ(trial.getSpctmTimePt(-9, active, 0), 1005);
    EXPECT_EQ(trial.getSpctmTimePt(99, active, 0), 1035);
    EXPECT_EQ(trial.getSpctmTimePt(2, control, 0), -1);
    EXPECT_EQ(trial.getSpctmTimePt(2, 9, 0), -1);
    spectrum->m_nTimeStep = INT64_MAX;
    trial.getSpctmTimePt(99, active, 0); // whatever that gives
}

} // namespace
} // namespace megset::CMDTrial4Spctm_test
