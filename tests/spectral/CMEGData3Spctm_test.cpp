#include "megset/spectral/CMEGData3Spctm.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/spectral/spectralDataset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData3Spctm_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

constexpr const char* differentDimensions = "Spectrograms have different dimensions!";

// ---- cleaning

TEST(CleaningOfSpectra, OfOneTrialEndsThePlanesOfOneChannelAndClass)
{
    SpectralDataset set({100, 100});
    for (int c = 0; c < 2; ++c)
        for (int nClass = 0; nClass < 2; ++nClass)
            setPlanes(set.channel(c), nClass, 2, 2, {1, 2, 3, 4});
    EXPECT_EQ(set.data._cleanSpctmDataChann(false, 0, 1, 0), 1);
    EXPECT_TRUE(planeOf(set.channel(1), 0, 0).empty());
    EXPECT_EQ(planeOf(set.channel(1), 1, 0).size(), 4U);
    EXPECT_EQ(planeOf(set.channel(0), 0, 0).size(), 4U);
    set.trial().m_nCurrentChannel = 0;
    EXPECT_EQ(set.data._cleanSpctmDataChann(false, -1, -1, 0), 1);
    EXPECT_TRUE(planeOf(set.channel(0), 0, 0).empty());
}

TEST(CleaningOfSpectra, GivesZeroForAnIndexOutOfRangeAndWithoutTrials)
{
    SpectralDataset set({100});
    EXPECT_EQ(set.data._cleanSpctmDataChann(false, 1, 0, 0), 0);
    EXPECT_EQ(set.data._cleanSpctmDataChann(false, -2, 0, 0), 0);
    EXPECT_EQ(set.data._cleanSpctmDataChann(false, 0, 1, 0), 0);
    EXPECT_EQ(set.data._cleanSpctmDatasetData(false, 1), 0);
    CMEGDatazk empty;
    EXPECT_EQ(empty._cleanSpctmDataChann(false, -1, 0, 0), 0);
    EXPECT_EQ(empty._cleanSpctmDataChann(true, -1, 0, 0), 0);
    EXPECT_EQ(empty._cleanSpctmDatasetData(false, -1), 0);
    EXPECT_EQ(empty._cleanSpctmDatasetData(true, 0), 0);
}

TEST(CleaningOfSpectra, OfAllTrialsReachesTheirFiles)
{
    SpectralFiles set(3, 2);
    EXPECT_EQ(set.data._cleanSpctmDataChann(true, 0, 1, 0), 1);
    for (int t = 0; t < 3; ++t) {
        EXPECT_EQ(set.plane(t, 0, 0).size(), 6U);
        EXPECT_TRUE(set.plane(t, 1, 0).empty());
    }
    EXPECT_EQ(set.data._cleanSpctmDatasetData(true, 0), 1);
    for (int t = 0; t < 3; ++t)
        EXPECT_EQ(set.channel(t, 0).hasSpctmData(), 0);
}

TEST(CleaningOfSpectra, OfOneTrialOpensIt)
{
    SpectralFiles set(2, 1);
    EXPECT_EQ(set.data._cleanSpctmDatasetData(false, 1), 1);
    EXPECT_EQ(set.data.m_nCurrentTrial, 1);
    EXPECT_EQ(set.channel(1, 0).hasSpctmData(), 0);
    EXPECT_EQ(set.channel(0, 0).hasSpctmData(), 1);
}

TEST(CleaningOfSpectra, PassesOverATrialThatCannotBeOpened)
{
    SpectralFiles set(3, 1);
    set.lose(1);
    ScriptedHost host;
    host.willAnswerNo();
    EXPECT_EQ(set.data._cleanSpctmDatasetData(true, 0), 1);
    EXPECT_EQ(set.channel(0, 0).hasSpctmData(), 0);
    EXPECT_EQ(set.channel(2, 0).hasSpctmData(), 0);
}

// ---- shape

struct Shape
{
    explicit Shape(CMEGDatazk& data, bool all = false) { result = data.checkSpctmTF(77, times, freqs, all); }
    int result;
    std::int64_t times = -9;
    std::int64_t freqs = -9;
};

TEST(ShapeOfSpectra, IsThatOfAllPlanesOfTheCurrentTrial)
{
    const ScriptedHost host;
    SpectralDataset set({100, 300, 600});
    setPlanes(set.channel(0), 0, 10, 3, constant(10, 3, 1.0));
    setPlanes(set.channel(1), 2, 10, 3, constant(10, 3, 1.0));
    const Shape shape(set.data);
    EXPECT_EQ(shape.result, 1);
    EXPECT_EQ(shape.times, 10);
    EXPECT_EQ(shape.freqs, 3);
    host.expectNoMessages();
}

TEST(ShapeOfSpectra, ThatDiffersInTimeShowsTheMessageAndGivesTheLargest)
{
    const ScriptedHost host;
    SpectralDataset set({100, 100});
    setPlanes(set.channel(0), 0, 10, 3, constant(10, 3, 1.0));
    setPlanes(set.channel(1), 0, 12, 3, constant(12, 3, 1.0));
    const Shape shape(set.data);
    EXPECT_EQ(shape.result, 0);
    EXPECT_EQ(shape.times, 12);
    EXPECT_EQ(shape.freqs, 3);
    EXPECT_THAT(host.messages(), ElementsAre(CString(differentDimensions)));
}

TEST(ShapeOfSpectra, ThatDiffersInFrequencyShowsTheMessage)
{
    const ScriptedHost host;
    SpectralDataset set({100, 100});
    setPlanes(set.channel(0), 0, 10, 3, constant(10, 3, 1.0));
    setPlanes(set.channel(1), 0, 10, 5, constant(10, 5, 1.0));
    const Shape shape(set.data);
    EXPECT_EQ(shape.result, 0);
    EXPECT_EQ(shape.freqs, 5);
    EXPECT_THAT(host.messages(), ElementsAre(CString(differentDimensions)));
}

TEST(ShapeOfSpectra, OfNoPlanesIsZeroWithoutAMessage)
{
    const ScriptedHost host;
    SpectralDataset set({100});
    for (const bool all : {false, true}) {
        const Shape shape(set.data, all);
        EXPECT_EQ(shape.result, 0);
        EXPECT_EQ(shape.times, 0);
        EXPECT_EQ(shape.freqs, 0);
    }
    CMEGDatazk empty;
    const Shape none(empty);
    EXPECT_EQ(none.result, 0);
    EXPECT_EQ(none.times, 0);
    host.expectNoMessages();
}

TEST(ShapeOfSpectra, OfAllTrialsMustAgreeAcrossThem)
{
    SpectralFiles set(3, 2);
    EXPECT_EQ(Shape(set.data, true).result, 1);
    setPlanes(set.channel(2, 0), 0, 3, 4, constant(3, 4, 1.0));
    setPlanes(set.channel(2, 1), 0, 3, 4, constant(3, 4, 1.0));
    const ScriptedHost host;
    EXPECT_EQ(Shape(set.data).result, 1); // trial 2, which is current
    EXPECT_THAT(host.messages(), ElementsAre());
    const Shape all(set.data, true);
    EXPECT_EQ(all.result, 0);
    EXPECT_EQ(all.times, 3);
    EXPECT_EQ(all.freqs, 4);
    EXPECT_THAT(host.messages(), ElementsAre(CString(differentDimensions)));
}

TEST(ShapeOfSpectra, DoesNotCountTrialsWithoutPlanes)
{
    SpectralFiles set(3, 1);
    set.data._cleanSpctmDatasetData(false, 1);
    const Shape all(set.data, true);
    EXPECT_EQ(all.result, 1);
    EXPECT_EQ(all.times, 3);
}

TEST(ShapeOfSpectra, OfACurrentTrialThatCannotBeOpenedIsZero)
{
    SpectralFiles set(2, 1);
    set.data.saveAllTrials();
    set.lose(0);
    ScriptedHost host;
    host.willAnswerNo();
    const Shape shape(set.data);
    EXPECT_EQ(shape.result, 0);
    EXPECT_EQ(shape.times, 0);
    EXPECT_THAT(host.messages(), Contains(CString("Open trial data failed ")));
}

// ---- what there is

TEST(FreqDatasetFace, IsReachedThroughTheFieldWhileTheResultIsAlwaysNull)
{
    CMEGDatazk data;
    EXPECT_EQ(data.getFreqDatasetFace(0), nullptr);
    EXPECT_EQ(data.m_pFreqDatasetFace, nullptr);
    {
        const FailingAllocator fails(1);
        EXPECT_EQ(data.getFreqDatasetFace(1), nullptr);
    }
    EXPECT_EQ(data.m_pFreqDatasetFace, nullptr);
    EXPECT_EQ(data.getFreqDatasetFace(1), nullptr);
    const auto* made = data.m_pFreqDatasetFace.get();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(data.getFreqDatasetFace(1), nullptr);
    EXPECT_EQ(data.m_pFreqDatasetFace.get(), made);
}

TEST(ChannelsWithSpectra, AreCountedByTheirTypes)
{
    const std::vector<int> types = {10, 13, 100, 103, 14, 104, 120, 300, 302, 303, 301, 304, 330, 600, 100, 302};
    SpectralDataset set(types);
    for (int i = 0; i < 14; ++i) // the last two have none
        set.channel(i).getSpctmChnl(true, i % 3);
    int meg = -9;
    int eeg = -9;
    EXPECT_EQ(set.data.getSpctmChnlMegEeg(meg, eeg), 7);
    EXPECT_EQ(meg, 4);
    EXPECT_EQ(eeg, 3);
}

TEST(ChannelsWithSpectra, AreNoneWithoutTrialOrChannels)
{
    CMEGDatazk data;
    int meg = -9;
    int eeg = -9;
    EXPECT_EQ(data.getSpctmChnlMegEeg(meg, eeg), 0);
    EXPECT_EQ(meg, 0);
    EXPECT_EQ(eeg, 0);
    SpectralDataset set({100});
    set.trial()._cleanTrialChannels();
    EXPECT_EQ(set.data.getSpctmChnlMegEeg(meg, eeg), 0);
}

TEST(ChannelsWithSpectra, AreThoseOfTheCurrentTrialWhichIsOpened)
{
    SpectralFiles set(2, 2);
    set.data.saveAllTrials();
    int meg = 0;
    int eeg = 0;
    EXPECT_EQ(set.data.getSpctmChnlMegEeg(meg, eeg), 2);
    EXPECT_EQ(set.trialsInMemory(), 1);
}

TEST(DataToDraw, OfSpectraAreThoseOfTheCurrentTrial)
{
    SpectralDataset set({100, 100});
    EXPECT_EQ(set.data.hasSpectmData2Draw(0, 0), 0);
    setPlanes(set.channel(1), 0, 2, 2, {1, 2, 3, 4}, 1);
    EXPECT_EQ(set.data.hasSpectmData2Draw(0, 0), 1);
    EXPECT_EQ(set.trial().m_nCurrentChannel, 1);
    EXPECT_EQ(set.data.hasSpectmData2Draw(0, 1), 0);
    EXPECT_EQ(set.data.hasSpectmData2Draw(1, 0), 0);
    EXPECT_EQ(CMEGDatazk().hasSpectmData2Draw(0, 0), 0);
}

TEST(DataToDraw, OfWaveResultsAreThoseOfTheCurrentTrial)
{
    SpectralDataset set({100, 100});
    EXPECT_EQ(set.data.hasWaveAnalyzDataX4draw(1, 5), 0);
    CWadXzk wave;
    wave.m_nKind = 5;
    set.channel(1).getWaveAnalyzeResultC(1)->addWadX(&wave);
    EXPECT_EQ(set.data.hasWaveAnalyzDataX4draw(1, 5), 1);
    EXPECT_EQ(set.trial().m_nCurrentChannel, 1);
    EXPECT_EQ(set.data.hasWaveAnalyzDataX4draw(0, 5), 0);
    EXPECT_EQ(CMEGDatazk().hasWaveAnalyzDataX4draw(1, 5), 0);
}

} // namespace
} // namespace megset::CMEGData3Spctm_test
