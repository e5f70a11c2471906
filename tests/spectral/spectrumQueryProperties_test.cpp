// Questions to trials, their classes and datasets with any arguments: none reads outside a plane or fails to end, and
// what is said to be inside is inside.

#include "tests/spectral/anySpectrum.h"

#include "megset/core/CMEGDatazk.h"

namespace megset::spectrumQueryProperties_test {
namespace {

TEST(SpectrumQueryProperties, QuestionsToATrialStayInside)
{
    const ScriptedHost host;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        AnyArgument any(seed);
        CMDTrialzk trial;
        makeAtRandom(trial, any);
        const int nClass = any.between(0, 9) == 0 ? any.small() : 0;
        int channels = 0;
        std::int64_t n[5] = {};
        for (int i = 0; i < 3; ++i) {
            const int index =
                trial.getChnlnumberSpctmTimeFreqPts(any.flag() ? &channels : nullptr, any.flag() ? &n[0] : nullptr,
                                                    any.flag() ? &n[1] : nullptr, any.cut(), nClass);
            ASSERT_TRUE(index >= 0 && index < trial.getTotalChannel()) << "seed " << seed;
            trial.getChnlnumberSpctmFreqPt(&channels, &n[0], any.cut(), nClass);
            trial.getChnlnumberSpctmTimePt(&channels, &n[0], any.cut(), nClass);
            trial.hasFreqData4Chnl(any.cut(), any.cut(), any.cut());
            trial.hasSpctmData4Chnl(any.cut(), any.cut(), any.cut());
        }
        trial.getSpctmChnTimFrq(n[0], n[1], n[2], n[3], n[4]);
        ASSERT_TRUE(n[0] <= trial.getTotalChannel() && n[1] <= n[2] && n[3] <= n[4] && n[2] <= 6 && n[4] <= 6);
        trial.getSample4FreqData(any.cut());
        trial.hasSpctmData4draw(nClass, any.small());
        trial.hasFreqData4draw(any.cut(), any.cut());
    }
}

TEST(SpectrumQueryProperties, QuestionsToAClassStayOnItsAxes)
{
    ScriptedHost host;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        AnyArgument any(seed);
        CMDTrialzk trial;
        trial.allocateChannels(1);
        fillAtRandom(trial, any);
        CSpctmTrialzk& spectrum = *trial.getSpctmTrial(true, 0);
        spectrum.m_dFreqEnd = any.value();
        double hz[2] = {};
        std::int64_t n[2] = {};
        // A frequency never stands above the axis' end; of numbers that are none this can't be asked.
        const double found = spectrum.getSpctmFreq4FreqIndex(any.index());
        if (spectrum.m_nFreqPt >= 1) {
            ASSERT_FALSE(found > spectrum.m_dFreqEnd) << "seed " << seed;
        } else {
            ASSERT_EQ(found, -1.0) << "seed " << seed;
        }
        spectrum.getSpctmFreqIndex4Freq(any.value()); // by the step alone: it may lie behind the axis
        spectrum.getTrialSpctmSelectFreqHz(hz[0], hz[1]);
        spectrum.getTrialSpctmGivenFreqID4Hz(any.index(), any.index(), hz[0], hz[1]);
        spectrum.getSumChnlSpctmData(any.cut());
        spectrum.getTrialSpctmSelectTimeFreqBB(n[0], n[1]);
        spectrum.getTrialSpctmSelectTimeFreqEE(n[0], n[1]);
        spectrum.getTrialSpctmSelectTime(n[0], n[1]);
        ASSERT_TRUE(n[0] >= 0 && n[1] < std::max<std::int64_t>(spectrum.m_nTimePt, 0)) << "seed " << seed;
        spectrum.getTrialSpctmSelectFreq(n[0], n[1]);
        ASSERT_TRUE(n[0] >= 0 && n[1] < std::max<std::int64_t>(spectrum.m_nFreqPt, 0)) << "seed " << seed;
        spectrum.m_nAccumSpctm = 1; // else a span of another size is told
        spectrum.getSelectBE4DrawWave(n[0], n[1]);
    }
    host.expectNoMessages();
}

// A dataset of one trial at an index, with channels that the filters of a sum let through, or not.
struct AnyDataset
{
    explicit AnyDataset(AnyArgument& any)
    {
        EXPECT_EQ(data.initMEGData(1, static_cast<int>(any.between(1, 3)), 10), 1);
        CMDTrialzk& trial = *data.getCurrentTrialPt();
        const int types[] = {100, 11, 302, 600};
        for (int i = 0; i < trial.getTotalChannel(); ++i)
            trial.getChannel(i)->setChannelType(types[any.between(0, 3)]);
        fillAtRandom(trial, any);
        if (any.flag())
            data.checkInitChnlParam(&trial);
        data.m_recordInfo.m_dRecSampleRate = any.value();
        data.m_recordInfo.m_nRecPreTrigPts = any.index();
    }

    CMEGDatazk data;
};

void expectWhole(const CSumChnlSpctmDatazk* sum, unsigned seed)
{
    if (sum == nullptr)
        return;
    ASSERT_TRUE(sum->m_pSumMin && sum->m_pSumMean && sum->m_pSumMax && sum->m_pSumPositive && sum->m_pSumNegative &&
                sum->m_pSumRms)
        << "seed " << seed;
    double total = 0.0;
    for (std::int64_t i = 0; i < sum->m_nTimePt * sum->m_nFreqPt; ++i)
        total += sum->m_pSumMean[static_cast<std::size_t>(i)] + sum->m_pSumRms[static_cast<std::size_t>(i)];
    static_cast<void>(total); // all of the planes was touched
}

TEST(SpectrumQueryProperties, QuestionsToADatasetLeaveNoPlane)
{
    ScriptedHost host; // planes of unequal sizes are told
    for (unsigned seed = 1; seed <= 1500; ++seed) {
        AnyArgument any(seed);
        AnyDataset owner(any);
        CMEGDatazk& data = owner.data;
        const int nClass = any.between(0, 9) == 0 ? any.cut() : 0;
        const int type = any.between(0, 9) == 0 ? any.cut() : static_cast<int>(any.between(0, 3));
        std::int64_t n[2] = {};
        double x[3] = {};
        int counts[2] = {};
        data.checkSpctmTF(any.index(), n[0], n[1], any.flag());
        data.getLatencyMs4SpctmTimePt(any.index(), nClass, type);
        data.getTrialSpctmSelectTime2LatencyMsec(x[0], x[1], nClass, type);
        data.getTrialSpctmGivenTime2LatencyMsec(any.index(), any.index(), x[0], x[1], nClass, type);
        data.getSpctmChnlMegEeg(counts[0], counts[1]);
        data.getSpctmRangeDataset(&x[0], &x[1], &x[2], any.small(), nClass, type);
        data.hasSpectmData2Draw(nClass, type);
        data.hasWaveAnalyzDataX4draw(nClass, type);
        data.checkChnlSpctmInfo(nullptr, any.flag(), any.flag(), any.flag(), any.flag(), nClass, type,
                                any.flag() ? &n[0] : nullptr, any.flag() ? &n[1] : nullptr);
        expectWhole(data.computTrialSpctm(nullptr, any.flag(), any.flag(), any.flag(), any.flag(), nClass, type), seed);
        expectWhole(data.computTrialSpctmAllDataType(nullptr, any.flag(), false, false, false, nClass), seed);
        data.findSpctmPeaks(any.flag(), any.flag(), any.flag(), any.flag(), any.cut(), any.value(), any.cut(),
                            any.cut());
        data.getLatencyMs4VirtSpctmTimePt(any.index());
        data.getVirtSpctmSelectTime2LatencyMsec(x[0], x[1]);
        data.transformSpctm2log(any.cut(), any.cut(), any.flag(), any.cut(), any.cut());
        data._cleanSpctmDataChann(false, any.cut(), any.cut(), any.cut());
    }
}

TEST(SpectrumQueryProperties, SumsOfReadPlanesStayInsideTheSumPlane)
{
    ScriptedHost host;
    for (unsigned seed = 1; seed <= 1500; ++seed) {
        AnyArgument any(seed);
        AnyDataset owner(any);
        CMDTrialzk& trial = *owner.data.getCurrentTrialPt();
        const int type = static_cast<int>(any.between(0, 3));
        if (owner.data.computTrialSpctm(nullptr, false, false, false, false, 0, type) == nullptr)
            continue;
        double x[4] = {};
        std::int64_t n = 0;
        for (int source = 0; source <= 7; ++source) {
            trial.getSelectSpctmValueMMMR(source, 0, type, any.small(), any.index(), any.index(), any.index(),
                                          any.index(), x[0], x[1], x[2], x[3]);
            trial.getSelectSpctmValueX_PhyVirt(source, any.small(), any.index(), any.index(), any.index(), any.index(),
                                               x[0], n, 0, type);
            Values out(static_cast<std::size_t>(any.between(1, 4)));
            trial.getSelectSpctmValueXX(source, 0, type, static_cast<int>(any.between(1, 6)), any.small(), any.index(),
                                        any.index(), any.index(), any.index(), static_cast<std::int64_t>(out.size()),
                                        out.data());
            ASSERT_LT(trial
                          .getSelectSpctmValue2Txt(source, 0, type, any.small(), any.index(), any.index(), any.index(),
                                                   any.index())
                          .GetLength(),
                      20'000)
                << "seed " << seed;
        }
    }
}

} // namespace
} // namespace megset::spectrumQueryProperties_test
