// Whatever the arguments are, nothing outside a plane is read or written, and every operation comes to an end. The
// planes have exactly their elements, so that an address sanitizer sees what leaves them.

#include "tests/spectral/anySpectrum.h"

namespace megset::spectrumProperties_test {
namespace {

void readAtRandom(CSpctmChnlzk& spectrum, AnyArgument& any)
{
    double x[4] = {};
    std::int64_t n = 0;
    const int type = any.small();
    spectrum.getSelectSpctmValue(any.index(), any.index(), any.index(), any.index(), type);
    spectrum.getSelectSpctmValueMMMR(type, any.index(), any.index(), any.index(), any.index(), x[0], x[1], x[2], x[3]);
    spectrum.getSelectSpctmValueX(any.index(), any.index(), any.index(), any.index(), x[0], n, type);
    EXPECT_LT(spectrum.getSelectSpctmValue2Txt(type, any.index(), any.index(), any.index(), any.index()).GetLength(),
              20'000);
    spectrum.getSpctmFreqAbsMax(any.index(), type);
    spectrum.getSpctmFreqAverage(any.index(), any.flag(), type);
    spectrum.getSpctmFreqRootMean(any.index(), type);
    spectrum.getSpctmRange(&x[0], &x[1], &x[2], any.flag(), type);
    spectrum.getSpctmRangeAbs(&x[0], &x[1], &x[2], any.flag(), type);
    // What is asked for may not be longer than what it is written to.
    Values out(static_cast<std::size_t>(std::max<std::int64_t>(spectrum.m_nTimePt, 1)));
    spectrum.getOneFreqBandData(type, out.data(), any.index(), any.index());
    spectrum.getOneFreqBandDataTbe(type, out.data(), any.index(), any.index(), any.index());
    std::int64_t count = any.index();
    std::unique_ptr<double[]>(spectrum.getStdM_T1Fn(count));
}

void changeAtRandom(CSpctmChnlzk& spectrum, AnyArgument& any)
{
    const int type = any.small();
    switch (any.between(0, 13)) {
    case 0:
        spectrum.cutSpctmDataExtrama(any.value(), any.value(), any.value(), type);
        break;
    case 1:
        spectrum.cutSpctmFreqBlock(any.index(), any.index(), any.value(), type);
        break;
    case 2:
        spectrum.cutSpctmTimeBlock(any.index(), any.index(), any.value(), type);
        break;
    case 3:
        spectrum.cutSpctmSelect(any.index(), any.index(), any.index(), any.index(), any.value(), type);
        break;
    case 4:
        spectrum.globaleNormalSpctmFreq(any.index(), any.value(), type);
        break;
    case 5:
        spectrum.normSpctmValue2Shrt(any.value(), any.value(), type);
        break;
    case 6:
        spectrum.normalizeSpctm4FreqX(any.value(), type);
        break;
    case 7:
        spectrum.rootStrip(any.index(), any.index(), any.value(), type);
        break;
    case 8:
        spectrum.scaleSpctm(any.value(), type);
        break;
    case 9:
        spectrum.setSpctmNAN2zero(type);
        break;
    case 10:
        spectrum.transformSpctm2log(type);
        break;
    case 11:
        spectrum.computeMagnitude();
        break;
    case 12:
        spectrum.computePhase();
        break;
    default:
        spectrum.setPolarity2Magnitude(any.small());
        break;
    }
}

TEST(SpectrumProperties, AChannelsSpectrumIsNeverLeft)
{
    const ScriptedHost host;
    for (unsigned seed = 1; seed <= 1500; ++seed) {
        AnyArgument any(seed);
        CSpctmChnlzk spectrum;
        fillAtRandom(spectrum, any);
        readAtRandom(spectrum, any);
        changeAtRandom(spectrum, any);
        readAtRandom(spectrum, any);
        ASSERT_TRUE(everyPlaneFits(spectrum)) << "seed " << seed;
    }
    host.expectNoMessages();
}

TEST(SpectrumProperties, ArithmeticBetweenSpectraOfAnyShapeLeavesWholePlanes)
{
    const ScriptedHost host;
    CSpctmChnlzk spectra[3];
    for (unsigned seed = 1; seed <= 1500; ++seed) {
        AnyArgument any(seed);
        CSpctmChnlzk& spectrum = spectra[any.between(0, 2)];
        CSpctmChnlzk& a = spectra[any.between(0, 2)];
        CSpctmChnlzk& b = spectra[any.between(0, 2)];
        if (any.between(0, 2) == 0)
            fillAtRandom(b, any);
        switch (any.between(0, 2)) {
        case 0:
            spectrum.addSpctmChnlzk(&a, any.flag());
            break;
        case 1:
            spectrum.operateSpctmChnlAB2C(&a, &b, any.flag(), any.small());
            break;
        default:
            spectrum.setParameters(&a);
            break;
        }
        for (CSpctmChnlzk& each : spectra) {
            ASSERT_TRUE(everyPlaneFits(each)) << "seed " << seed;
            each.scaleSpctm(0.5, any.small()); // touches all of a plane
        }
    }
    host.expectNoMessages();
}

TEST(SpectrumProperties, ReadingATrialNeverLeavesItsPlanes)
{
    const ScriptedHost host;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        AnyArgument any(seed);
        CMDTrialzk trial;
        makeAtRandom(trial, any);
        double x[4] = {};
        std::int64_t n[5] = {};
        const int nClass = any.between(0, 9) == 0 ? any.small() : 0;
        const int type = any.between(0, 9) == 0 ? any.small() : static_cast<int>(any.between(0, 3));
        const int source = any.small();
        EXPECT_LT(trial
                      .getSelectSpctmValue2Txt(source, nClass, type, any.small(), any.index(), any.index(), any.index(),
                                               any.index())
                      .GetLength(),
                  20'000);
        trial.getSelectSpctmValueMMMR(source, nClass, type, any.small(), any.index(), any.index(), any.index(),
                                      any.index(), x[0], x[1], x[2], x[3]);
        Values out(static_cast<std::size_t>(any.between(1, 4)));
        trial.getSelectSpctmValueXX(source, nClass, type, any.small(), any.small(), any.index(), any.index(),
                                    any.index(), any.index(), static_cast<std::int64_t>(out.size()), out.data());
        trial.getSelectSpctmValueX_PhyVirt(source, any.small(), any.index(), any.index(), any.index(), any.index(),
                                           x[0], n[0], nClass, type);
        trial.getSpctmRange4OneChnlShow(source, any.small(), &x[0], &x[1], &x[2], any.flag(), nClass, type);
        trial.getSpctmRange4OneChnlShowAbs(source, any.small(), &x[0], &x[1], &x[2], any.flag(), nClass, type);
        trial.getSpctmRangeAllChann(&x[0], &x[1], &x[2], any.small(), nClass, type);
        trial.getSpctmRangeAllChannAbs(&x[0], &x[1], &x[2], any.small(), nClass, type);
        trial.getSpctmRange4OneChnlShow(source, any.small(), &x[0], &x[1], &x[2], any.flag(), nClass, type);
        trial.getSpctmSize(any.flag(), n[0], n[1], n[2], n[3], nClass);
        trial.getSpctmTimePt(any.index(), nClass, 0);
        trial.getSpctmFreqIndexMax(any.flag(), nClass);
        trial.hasSpctmData4SrcScan(nClass, type);
        trial.findSpctmChnl4Show(nClass, type);
        trial.hasSpctmData4Chnl(nClass, 0, any.cut());
        trial._cleanSpctmChnlData(any.cut(), nClass);
    }
}

TEST(SpectrumProperties, ChangingATrialNeverLeavesItsPlanes)
{
    const ScriptedHost host;
    for (unsigned seed = 1; seed <= 1500; ++seed) {
        AnyArgument any(seed);
        CMDTrialzk trial;
        makeAtRandom(trial, any);
        const int type = any.small();
        trial.cutSpctmDataExtrama(any.value(), any.value(), any.value(), 0, type);
        trial.cutSpctmFreqBlock(any.cut(), any.cut(), any.value(), 0, type);
        trial.cutSpctmTimeBlock(any.cut(), any.cut(), any.value(), 0, type);
        trial.cutSpctmSelect(any.cut(), any.cut(), any.cut(), any.cut(), any.value(), any.flag(), 0, type);
        trial.normSpctmGlobEachFreqAllChnAllTim_rms();
        trial.normSpctmGlobEachFreqAllChnAllTim_max();
        trial.normSpctmGlobEachFreqAllChnAllTim_mean(0.0, 0, type);
        trial.normSpctmValue2ShrtAllChnl(any.flag(), 0, type);
        trial.normalizeFreq(any.small(), any.value(), any.flag(), 0, type);
        trial.normalizeFreqAll(any.small(), any.value(), any.flag());
        trial.rootStrip(static_cast<unsigned>(any.cut()), static_cast<unsigned>(any.cut()), any.value(), any.cut(),
                        any.flag(), 0, type);
        trial.scaleSpctmAllDataType4Class(any.cut(), any.value());
        trial.setAllChnlSpctmNAN2zero(0, type);
        trial.transformSpctm2log(any.cut(), any.flag(), 0, type);
        trial.setPeakDistTotal(0, 0, 0.0, any.cut(), type);
        for (int i = 0; i < trial.getTotalChannel(); ++i) {
            CMDChannelzk* const channel = trial.m_ppChannel[i];
            const CSpctmChnlzk* const spectrum = channel != nullptr ? channel->getSpctmChnl(false, 0) : nullptr;
            ASSERT_TRUE(spectrum == nullptr || everyPlaneFits(*spectrum)) << "seed " << seed;
        }
    }
}

} // namespace
} // namespace megset::spectrumProperties_test
