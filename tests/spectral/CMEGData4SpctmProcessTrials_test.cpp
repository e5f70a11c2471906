// What runs over classes, data types and trials, and the channel selection of the user.

#include "megset/spectral/CMEGData4SpctmProcess.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/spectral/spectralDataset.h"

#include <cmath>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData4SpctmProcessTrials_test {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

constexpr const char* askedWithAllSet =
    "flags Channel Selection [MEG Channel=1, EEG Channel=1, Good Channel=1, Visible=1] -> ";

// ---- all classes and data types

TEST(AllSumPlanes, OfAClassGiveTheLastDataTypeThatThereIs)
{
    SpectralDataset set({100, 300});
    set.spectrum(1);
    setPlanes(set.channel(0), 1, 1, 1, {5.0}, 2);
    EXPECT_EQ(set.data.computTrialSpctmAllDataType(nullptr, true, false, false, false, 1),
              &set.spectrum(1).m_aSumChnlI);
    EXPECT_EQ(set.spectrum(1).m_aSumChnlR.m_dRangeMean, 5.0);
    EXPECT_EQ(set.spectrum(1).m_aSumChnlI.m_dRangeMean, 15.0);
    EXPECT_EQ(set.spectrum(1).m_aSumChnlM.m_nRangeValid, 0);
    EXPECT_EQ(set.data.computTrialSpctmAllDataType(nullptr, false, true, false, false, 1), nullptr);
    EXPECT_EQ(set.data.computTrialSpctmAllDataType(nullptr, false, false, false, false, 0), nullptr);
}

TEST(AllSumPlanes, OfAllClassesGiveTheLastResult)
{
    SpectralDataset set({100});
    for (int nClass = 0; nClass < 3; ++nClass)
        set.spectrum(nClass);
    setPlanes(set.channel(0), 0, 1, 1, {5.0});
    setPlanes(set.channel(0), 1, 1, 1, {6.0}, 1);
    EXPECT_EQ(set.data.computTrialSpctmAllClassDataType(nullptr, true, false, true, true),
              &set.spectrum(1).m_aSumChnlR);
    EXPECT_EQ(set.spectrum(0).m_aSumChnlA.m_dRangeMean, 35.0);
    EXPECT_EQ(set.spectrum(2).m_aSumChnlR.m_nRangeValid, 0);
    EXPECT_EQ(set.data.computTrialSpctmAllClassDataType(nullptr, false, true, true, true), nullptr);
}

// The first channel is good and hidden, the second is bad and shown; of values 1 and 10 the mean tells who took part.
class GoodAndShown : public ::testing::Test
{
protected:
    GoodAndShown() : set({100, 100})
    {
        set.spectrum(1);
        setPlanes(set.channel(0), 1, 1, 1, {1.0}, 1);
        setPlanes(set.channel(1), 1, 1, 1, {10.0}, 1);
        set.data.setShowChnl4Alltrials(0, 0);
        set.data.setGoodChnl4Alltrials(1, 0);
    }
    double mean() { return set.spectrum(1).m_aSumChnlR.m_dRangeMean; }

    SpectralDataset set;
};

TEST_F(GoodAndShown, AreToldApartOverAllDataTypesAndClasses)
{
    EXPECT_NE(set.data.computTrialSpctmAllDataType(nullptr, false, false, true, false, 1), nullptr);
    EXPECT_EQ(mean(), 1.0);
    EXPECT_NE(set.data.computTrialSpctmAllDataType(nullptr, false, false, false, true, 1), nullptr);
    EXPECT_EQ(mean(), 10.0);
    EXPECT_NE(set.data.computTrialSpctmAllClassDataType(nullptr, false, false, true, false), nullptr);
    EXPECT_EQ(mean(), 1.0);
    EXPECT_NE(set.data.computTrialSpctmAllClassDataType(nullptr, false, false, false, true), nullptr);
    EXPECT_EQ(mean(), 10.0);
}

TEST_F(GoodAndShown, AreToldApartByTheUser)
{
    ScriptedHost host;
    host.willChooseFlags({false, false, true, false});
    set.data.computTrialSpctmAllPro(nullptr, false);
    EXPECT_EQ(mean(), 1.0);
    host.willChooseFlags({false, false, false, true});
    set.data.computTrialSpctmAllPro(nullptr, false);
    EXPECT_EQ(mean(), 10.0);
}

TEST(AllSumPlanes, AreOfTheTrialThatIsNamed)
{
    CMEGDatazk data;
    ASSERT_EQ(data.initMEGData(2, 1, 4), 1);
    ASSERT_EQ(data.m_nCurrentTrial, 0);
    CMDTrialzk& other = *data.getMDTrial(1);
    CSpctmTrialzk& spectrum = *other.getSpctmTrial(true, 0);
    setPlanes(*other.getChannel(0), 0, 1, 2, {3.0, 5.0}, 1);
    EXPECT_EQ(data.checkChnlSpctmInfo(nullptr, false, false, false, false, 0, 0, nullptr, nullptr), 0);
    EXPECT_EQ(data.checkChnlSpctmInfo(&other, false, false, false, false, 0, 0, nullptr, nullptr), 1);
    EXPECT_EQ(data.computTrialSpctm(nullptr, false, false, false, false, 0, 0), nullptr);
    EXPECT_EQ(data.computTrialSpctm(&other, false, false, false, false, 0, 0), &spectrum.m_aSumChnlR);
    EXPECT_EQ(data.computTrialSpctmAllDataType(&other, false, false, false, false, 0), &spectrum.m_aSumChnlR);
    EXPECT_EQ(data.computTrialSpctmAllClassDataType(&other, false, false, false, false), &spectrum.m_aSumChnlR);
    ScriptedHost host;
    host.willChooseFlags({false, false, false, false});
    spectrum.m_aSumChnlR.clean();
    data.computTrialSpctmAllPro(&other, false);
    EXPECT_EQ(spectrum.m_aSumChnlR.m_dRangeMean, 4.0);
}

// ---- with the user's selection

TEST(SumPlanesByTheUser, AskWithAllFlagsSetAndComputeWithTheirReply)
{
    ScriptedHost host;
    host.willChooseFlags({true, false, true, false});
    SpectralDataset set({100, 300});
    set.spectrum(0);
    setPlanes(set.channel(0), 0, 2, 3, {1, 2, 3, 4, 5, 6}, 1);
    setPlanes(set.channel(1), 0, 2, 3, constant(2, 3, 100.0), 1);
    EXPECT_EQ(set.data.computTrialSpctmAllPro(nullptr, false), 0);
    EXPECT_EQ(set.spectrum(0).m_aSumChnlR.m_dRangeMax, 6.0);
    EXPECT_THAT(host.calls(), ElementsAre(askedWithAllSet + std::string("1 0 1 0")));
}

TEST(SumPlanesByTheUser, ReportEachResult)
{
    ScriptedHost host;
    host.willChooseFlags({false, true, false, false});
    SpectralDataset set({100, 300, 302});
    for (int nClass = 0; nClass < 3; ++nClass)
        set.spectrum(nClass);
    setPlanes(set.channel(1), 0, 1, 2, {-1.25, 3.0}, 2);
    setPlanes(set.channel(1), 2, 3, 1, {1.0, 2.0, 3.0}, 1);
    setPlanes(set.channel(2), 2, 3, 1, {4.0, 5.0, 6.0001}, 1);
    EXPECT_EQ(set.data.computTrialSpctmAllPro(&set.trial(), true), 0);
    EXPECT_THAT(host.messages(), ElementsAre(CString("MEG:0, EEG:1, Class:0 data:0 channels:1,time:1, Freq:2, "
                                                     "Rang(-1.2500~3.0000,mean:0.8750)"),
                                             CString("MEG:0, EEG:1, Class:0 data:1 channels:1,time:1, Freq:2, "
                                                     "Rang(8.7500~13.0000,mean:10.8750)"),
                                             CString("MEG:0, EEG:1, Class:2 data:0 channels:2,time:3, Freq:1, "
                                                     "Rang(1.0000~6.0001,mean:3.5000)")));
}

TEST(SumPlanesByTheUser, AreNotComputedWhenCancelled)
{
    ScriptedHost host;
    host.willCancelFlags();
    SpectralDataset set({100});
    set.spectrum(0);
    setPlanes(set.channel(0), 0, 1, 1, {1.0});
    EXPECT_EQ(set.data.computTrialSpctmAllPro(nullptr, true), 0);
    EXPECT_EQ(set.spectrum(0).m_aSumChnlR.m_nRangeValid, 0);
    EXPECT_THAT(host.calls(), ElementsAre(askedWithAllSet + std::string("cancel")));
}

TEST(SumPlanesByTheUser, ShowNothingOnFailure)
{
    ScriptedHost host;
    host.willChooseFlags({true, true, true, true}); // MEG and EEG: none
    SpectralDataset set({100});
    set.spectrum(0);
    setPlanes(set.channel(0), 0, 1, 1, {1.0});
    EXPECT_EQ(set.data.computTrialSpctmAllPro(nullptr, true), 0);
    host.expectNoMessages();
}

// ---- operations on all trials

TEST(SpectraOfAllTrials, GetMagnitudeAndPhase)
{
    SpectralFiles set(2, 2);
    for (int t = 0; t < 2; ++t)
        for (int c = 0; c < 2; ++c)
            setPlanes(set.channel(t, c), 0, 1, 2, {3.0 * (t + 1), -30.0 - c}, 2); // I is 10 more
    EXPECT_EQ(set.data.doSpctmMagnitude(0), 1);
    EXPECT_EQ(set.data.doSpctmPhase(0), 1);
    for (int t = 0; t < 2; ++t)
        for (int c = 0; c < 2; ++c) {
            SCOPED_TRACE(t);
            CSpctmChnlzk expected;
            const double r[] = {3.0 * (t + 1), -30.0 - c};
            ASSERT_EQ(expected.initSpctmSpace(1, 2, true, 1, 0), 1);
            for (int i = 0; i < 2; ++i) {
                expected.m_pSpctmR[static_cast<std::size_t>(i)] = r[i];
                expected.m_pSpctmI[static_cast<std::size_t>(i)] = r[i] + 10.0;
            }
            expected.computeMagnitude();
            expected.computePhase();
            EXPECT_THAT(set.plane(t, c, 2), ElementsAre(expected.m_pSpctmM[0], expected.m_pSpctmM[1]));
            EXPECT_THAT(set.plane(t, c, 3), ElementsAre(expected.m_pSpctmA[0], expected.m_pSpctmA[1]));
        }
}

TEST(SpectraOfAllTrials, GetMagnitudeOnlyOfTheClass)
{
    SpectralFiles set(2, 1);
    EXPECT_EQ(set.data.doSpctmMagnitude(1), 1);
    EXPECT_EQ(set.data.doSpctmPhase(2), 1);
    EXPECT_EQ(set.plane(1, 0, 2), PlaneValues({120, 121, 122, 123, 124, 125}));
    EXPECT_EQ(set.channel(0, 0).m_pSpctmChnlC, nullptr);
}

TEST(SpectraOfAllTrials, GetThePolarityOfTheRealPart)
{
    SpectralFiles set(2, 1);
    for (int t = 0; t < 2; ++t)
        setPlanes(set.channel(t, 0), 0, 1, 2, {5.0, -30.0}, 4);
    CSpctmChnlzk expected;
    expected.initSpctmSpace(1, 2, true, 1, 1);
    for (std::size_t i = 0; i < 2; ++i) {
        const double r = i == 0 ? 5.0 : -30.0;
        expected.m_pSpctmR[i] = r;
        expected.m_pSpctmI[i] = r + 10.0;
        expected.m_pSpctmM[i] = r + 20.0;
    }
    expected.setPolarity2Magnitude(1);
    EXPECT_EQ(set.data.setSpctmPolarity(1, 0), 1);
    for (int t = 0; t < 2; ++t)
        EXPECT_THAT(set.plane(t, 0, 2), ElementsAre(expected.m_pSpctmM[0], expected.m_pSpctmM[1]));
}

TEST(SpectraOfAllTrials, GetThePolarityThatIsAskedFor)
{
    SpectralFiles set(2, 1);
    for (int t = 0; t < 2; ++t)
        setPlanes(set.channel(t, 0), 0, 1, 2, {-5.0, -30.0}, 2); // with imaginary parts of 5 and -20
    EXPECT_EQ(set.data.setSpctmPolarity(2, 0), 1);
    for (int t = 0; t < 2; ++t)
        EXPECT_THAT(set.plane(t, 0, 2), ElementsAre(std::sqrt(25.0), -std::sqrt(650.0)));
}

TEST(SpectraOfAllTrials, LoseValuesThatAreNoFiniteNumbersUnderBothNames)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const bool properName : {true, false}) {
        SpectralFiles set(2, 2);
        for (int t = 0; t < 2; ++t)
            setPlanes(set.channel(t, 1), 0, 2, 2, {std::nan(""), -7.5, infinity, -infinity}, 2);
        EXPECT_EQ(properName ? set.data.setAllTrialSpctmNAN2zero(0, 0) : set.data.normSpctmValue2ShrtAllTrial(0, 0), 1);
        for (int t = 0; t < 2; ++t) {
            EXPECT_EQ(set.plane(t, 1, 0), PlaneValues({0.0, -7.5, 0.0, 0.0}));
            EXPECT_TRUE(std::isnan(set.plane(t, 1, 1)[0])); // another data type
        }
    }
}

TEST(SpectraOfAllTrials, KeepFiniteValuesUnderTheNameOfANormalisation)
{
    SpectralFiles set(2, 1);
    EXPECT_EQ(set.data.normSpctmValue2ShrtAllTrial(0, 0), 1);
    EXPECT_EQ(set.plane(0, 0, 0), SpectralFiles::values(0, 0));
    EXPECT_EQ(set.plane(1, 0, 0), SpectralFiles::values(1, 0));
}

TEST(SpectraOfAllTrials, PassOverATrialThatCannotBeOpened)
{
    SpectralFiles set(3, 1);
    set.lose(1);
    ScriptedHost host;
    host.willAnswerNo(); // whether to look for the file
    EXPECT_EQ(set.data.rootStrip(0, true, 0, 0, 1.0, 0, 0), 1);
    EXPECT_THAT(host.messages(), ElementsAre(CString("Open trial data failed ")));
    EXPECT_NE(set.plane(2, 0, 0), SpectralFiles::values(2, 0));
}

TEST(SpectraOfAllTrials, GiveZeroWithoutTrials)
{
    CMEGDatazk data;
    EXPECT_EQ(data.doSpctmMagnitude(0), 0);
    EXPECT_EQ(data.doSpctmPhase(0), 0);
    EXPECT_EQ(data.setSpctmPolarity(1, 0), 0);
    EXPECT_EQ(data.setAllTrialSpctmNAN2zero(0, 0), 0);
    EXPECT_EQ(data.normSpctmValue2ShrtAllTrial(0, 0), 0);
    EXPECT_EQ(data.rootStrip(-1, false, 0, 1, 1.0, 0, 0), 0);
    EXPECT_EQ(data.rootStrip(-1, true, 0, 1, 1.0, 0, 0), 0);
    EXPECT_EQ(data.transformSpctm2log(-1, 0, false, 0, 1), 0);
}

// ---- baseline and logarithm

// The planes of a trial after `operation`, by the trial's own operation.
template <class Operation>
PlaneValues expectedPlane(int trial, int channel, int nDataType, Operation operation)
{
    CMDTrialzk alone;
    alone.allocateChannels(1);
    setPlanes(*alone.getChannel(0), 0, 3, 2, SpectralFiles::values(trial, channel));
    operation(alone);
    return planeOf(*alone.getChannel(0), 0, nDataType);
}

TEST(RootStrip, OfOneTrialChangesAllItsChannelsAndNoOtherTrial)
{
    SpectralFiles set(3, 2);
    const auto strip = [](CMDTrialzk& trial) { trial.rootStrip(0, 1, 2.0, -1, true, 0, 1); };
    EXPECT_EQ(set.data.rootStrip(2, false, 0, 1, 2.0, 0, 1), 1);
    EXPECT_EQ(set.data.m_nCurrentTrial, 2);
    for (int c = 0; c < 2; ++c) {
        EXPECT_EQ(set.plane(2, c, 1), expectedPlane(2, c, 1, strip));
        EXPECT_NE(set.plane(2, c, 1), set.plane(0, c, 1));
        EXPECT_EQ(set.plane(2, c, 0), SpectralFiles::values(2, c));
    }
    EXPECT_EQ(set.plane(1, 0, 1), PlaneValues({110, 111, 112, 113, 114, 115}));
}

TEST(RootStrip, OfMinusOneIsOfTheCurrentTrial)
{
    SpectralFiles set(2, 1);
    set.data.getTrialzk(1);
    EXPECT_EQ(set.data.rootStrip(-1, false, 0, 1, 2.0, 0, 0), 1);
    EXPECT_EQ(set.plane(0, 0, 0), SpectralFiles::values(0, 0));
    EXPECT_NE(set.plane(1, 0, 0), SpectralFiles::values(1, 0));
}

TEST(RootStrip, OfAllTrialsChangesEach)
{
    SpectralFiles set(3, 1);
    const auto strip = [](CMDTrialzk& trial) { trial.rootStrip(0, 1, 2.0, -1, true, 0, 1); };
    EXPECT_EQ(set.data.rootStrip(99, true, 0, 1, 2.0, 0, 1), 1);
    for (int t = 0; t < 3; ++t)
        EXPECT_EQ(set.plane(t, 0, 1), expectedPlane(t, 0, 1, strip));
}

TEST(RootStrip, TakesBeginEndAndScale)
{
    SpectralFiles set(1, 1);
    const auto strip = [](CMDTrialzk& trial) { trial.rootStrip(1, 3, 5.0, -1, true, 0, 2); };
    EXPECT_EQ(set.data.rootStrip(0, false, 1, 3, 5.0, 0, 2), 1);
    EXPECT_EQ(set.plane(0, 0, 2), expectedPlane(0, 0, 2, strip));
    EXPECT_EQ(set.data.rootStrip(0, false, 1, 1, 5.0, 0, 2), 1); // of all channels, whatever they say
}

TEST(RootStrip, OfAnIndexOutOfRangeIsZero)
{
    SpectralFiles set(2, 1);
    EXPECT_EQ(set.data.rootStrip(2, false, 0, 1, 2.0, 0, 0), 0);
    EXPECT_EQ(set.data.rootStrip(-2, false, 0, 1, 2.0, 0, 0), 0);
}

TEST(TransformSpctm2log, TakesChannelAllClassAndDataTypeInItsOwnOrder)
{
    const auto logarithm = [](int nDataType) {
        return [nDataType](CMDTrialzk& trial) { trial.transformSpctm2log(0, true, 0, nDataType); };
    };
    SpectralFiles set(2, 3);
    // iTrial, class, data type, channel, all
    EXPECT_EQ(set.data.transformSpctm2log(1, 0, true, 2, 0), 1);
    EXPECT_EQ(set.plane(1, 2, 1), expectedPlane(1, 2, 1, logarithm(1)));
    EXPECT_EQ(set.plane(1, 2, 0), SpectralFiles::values(1, 2));
    EXPECT_EQ(set.plane(1, 1, 1), PlaneValues({120, 121, 122, 123, 124, 125}));
    EXPECT_EQ(set.data.transformSpctm2log(0, 0, false, 0, 5), 1);
    for (int c = 1; c < 3; ++c)
        EXPECT_EQ(set.plane(0, c, 0), expectedPlane(0, c, 0, logarithm(0)));
}

TEST(TransformSpctm2log, OfMinusOneIsOfTheCurrentTrialAndOutOfRangeZero)
{
    SpectralFiles set(2, 1);
    set.data.getTrialzk(1);
    EXPECT_EQ(set.data.transformSpctm2log(-1, 0, false, 0, 0), 1);
    EXPECT_DOUBLE_EQ(set.plane(1, 0, 0)[0], std::log(100.0));
    EXPECT_EQ(set.data.transformSpctm2log(2, 0, false, 0, 0), 0);
    EXPECT_EQ(set.data.transformSpctm2log(0, 0, false, 1, 0), 0); // channel
}

// ---- peaks

TEST(SpectrumPeaks, AreNotSearchedButTellWhetherThereIsTheClass)
{
    const ScriptedHost host;
    SpectralDataset set({100});
    EXPECT_EQ(set.data.findSpctmPeaks(true, true, true, true, 3, 0.5, 1, 0), 0);
    set.spectrum(1);
    setPlanes(set.channel(0), 1, 1, 2, {1.0, 2.0});
    const PlaneValues before = planeOf(set.channel(0), 1, 0);
    EXPECT_EQ(set.data.findSpctmPeaks(true, true, true, true, 3, 0.5, 1, 0), 1);
    EXPECT_EQ(planeOf(set.channel(0), 1, 0), before);
    EXPECT_EQ(set.spectrum(1).m_aSumChnlR.m_nRangeValid, 0);
    EXPECT_EQ(set.data.findSpctmPeaks(true, true, true, true, 3, 0.5, 3, 0), 0);
    EXPECT_EQ(CMEGDatazk().findSpctmPeaks(true, true, true, true, 3, 0.5, 1, 0), 0);
    EXPECT_THAT(host.calls(), SizeIs(0));
}

TEST(SpectrumPeaks, AskForChannelsFirst)
{
    ScriptedHost host;
    SpectralDataset set({100});
    set.spectrum(1);
    host.willChooseFlags({true, false, false, false});
    EXPECT_EQ(set.data.findSpctmPeaksPro(3, 0.5, 1, 0), 1);
    host.willChooseFlags({true, false, false, false});
    EXPECT_EQ(set.data.findSpctmPeaksPro(3, 0.5, 0, 0), 0);
    host.willCancelFlags();
    EXPECT_EQ(set.data.findSpctmPeaksPro(3, 0.5, 1, 0), 0);
    EXPECT_THAT(host.flagRequests(), SizeIs(3));
}

} // namespace
} // namespace megset::CMEGData4SpctmProcessTrials_test
