// Spectra and frequency data of a channel, by class.

#include "megset/records/results/CFreqDataChnl.h"
#include "tests/spectral/planes.h"

#include <set>

namespace megset::CMDChannel1Spctm_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ChannelClasses : public ::testing::Test
{
protected:
    CSpctmChnlzk& spectrum(int nClass) { return *channel.getSpctmChnl(true, nClass); }
    void fill(int nClass, int type, const Values& values)
    {
        setPlane(spectrum(nClass), type, 1, static_cast<std::int64_t>(values.size()), values);
    }

    ScriptedHost host;
    CMDChannelzk channel;
};

TEST_F(ChannelClasses, AreMadeWhenAskedFor)
{
    std::set<CSpctmChnlzk*> made;
    for (const int nClass : {active, control, result}) {
        EXPECT_EQ(channel.getSpctmChnl(false, nClass), nullptr);
        CSpctmChnlzk* const spectrum = channel.getSpctmChnl(true, nClass);
        ASSERT_NE(spectrum, nullptr);
        EXPECT_EQ(channel.getSpctmChnl(false, nClass), spectrum);
        EXPECT_EQ(channel.getSpctmChnl(true, nClass), spectrum);
        made.insert(spectrum);
    }
    EXPECT_EQ(made.size(), 3U);
    EXPECT_EQ(channel.getSpctmChnlA(false), channel.m_pSpctmChnlA.get());
    EXPECT_EQ(channel.getSpctmChnlC(false), channel.m_pSpctmChnlC.get());
    EXPECT_EQ(channel.getSpctmChnlR(false), channel.m_pSpctmChnlR.get());
}

TEST_F(ChannelClasses, AnotherClassIsNullAndMakesNothing)
{
    for (const int nClass : {3, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(channel.getSpctmChnl(true, nClass), nullptr);
        EXPECT_EQ(channel.getFreqChnl(true, nClass), nullptr);
    }
    EXPECT_EQ(channel.hasSpctmData(), 0);
    EXPECT_EQ(channel.m_pFreqDataA, nullptr);
    EXPECT_EQ(channel.m_pFreqDataC, nullptr);
    EXPECT_EQ(channel.m_pFreqDataX, nullptr);
}

TEST_F(ChannelClasses, FrequencyDataAreMadeWhenAskedFor)
{
    EXPECT_EQ(channel.getFreqChnl(false, active), nullptr);
    for (const int nClass : {active, control, result}) {
        void* const made = channel.getFreqChnl(true, nClass);
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(channel.getFreqChnl(false, nClass), made);
        EXPECT_EQ(channel.getFreqChnl(true, nClass), made);
    }
    EXPECT_EQ(channel.getFreqDataA(0), channel.m_pFreqDataA.get());
    EXPECT_EQ(channel.getFreqDataC(0), channel.m_pFreqDataC.get());
    EXPECT_EQ(channel.getFreqDataX(0), channel.m_pFreqDataX.get());
}

TEST_F(ChannelClasses, WithoutMemoryAreNull)
{
    const FailingAllocator none(1, FailingAllocator::Failing::FromThenOn);
    EXPECT_EQ(channel.getSpctmChnl(true, active), nullptr);
    EXPECT_EQ(channel.getFreqChnl(true, active), nullptr);
    EXPECT_EQ(channel.hasSpctmData(), 0);
    host.expectNoMessages();
}

TEST_F(ChannelClasses, AnObjectWithoutAPlaneCountsAsSpectralData)
{
    EXPECT_EQ(channel.hasSpctmData(), 0);
    spectrum(result);
    EXPECT_EQ(channel.hasSpctmData(), 1);
}

class ChannelAverage : public ChannelClasses
{
protected:
    void fillOperands(int type)
    {
        fill(active, type, {1, 2});
        fill(control, type, {3, 6});
    }
};

TEST_F(ChannelAverage, TakesThePlanesThatBothHave)
{
    for (const int type : {R, I, M})
        fillOperands(type);
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 0), 1);
    for (const int type : {R, I, M})
        EXPECT_THAT(planeValues(spectrum(result), type), ElementsAre(2, 4));
    EXPECT_THAT(planeValues(spectrum(result), A), ElementsAre(0, 0)); // which comes with M
}

TEST_F(ChannelAverage, LeavesOutPlanesThatOneLacks)
{
    fillOperands(R);
    fill(active, I, {7, 7});
    fill(control, M, {7, 7});
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 0), 1);
    EXPECT_THAT(planeValues(spectrum(result), R), ElementsAre(2, 4));
    EXPECT_THAT(planeValues(spectrum(result), I), IsEmpty());
    EXPECT_THAT(planeValues(spectrum(result), M), IsEmpty());
}

TEST_F(ChannelAverage, ClearsTheResultWithInit)
{
    fillOperands(R);
    fill(result, R, {100, 100});
    fill(result, I, {100, 100});
    EXPECT_EQ(channel.spctmAC2X_average(1, 0, 0), 1);
    EXPECT_THAT(planeValues(spectrum(result), R), ElementsAre(2, 4));
    EXPECT_THAT(planeValues(spectrum(result), I), ElementsAre(0, 0));
}

TEST_F(ChannelAverage, TouchesOnlyTheRPlaneWithoutInit)
{
    for (const int type : {R, I, M}) {
        fillOperands(type);
        fill(result, type, {100, 100});
    }
    EXPECT_EQ(channel.spctmAC2X_average(0, 1, 0), 1);
    EXPECT_THAT(planeValues(spectrum(result), R), ElementsAre(2, 4));
    EXPECT_THAT(planeValues(spectrum(result), I), ElementsAre(100, 100));
    EXPECT_THAT(planeValues(spectrum(result), M), ElementsAre(100, 100));
}

TEST_F(ChannelAverage, AddsWithoutAssign)
{
    fillOperands(R);
    fill(result, R, {100, 100});
    EXPECT_EQ(channel.spctmAC2X_average(0, 0, 0), 1);
    EXPECT_THAT(planeValues(spectrum(result), R), ElementsAre(102, 104));
}

TEST_F(ChannelAverage, OfRandomPlanesIsThePlainLoop)
{
    for (const Shape shape : shapes)
        for (unsigned seed = 0; seed < 6; ++seed) {
            Values operands[2][3];
            for (const int nClass : {active, control})
                for (const int type : {R, I, M}) {
                    Values& x = operands[nClass][type];
                    x = anyPlane(shape.nTimePt, shape.nFreqPt, 10 * seed + static_cast<unsigned>(3 * nClass + type));
                    setPlane(spectrum(nClass), type, shape.nTimePt, shape.nFreqPt, x);
                }
            spectrum(result)._cleanSpctmData();
            ASSERT_EQ(channel.spctmAC2X_average(1, seed % 2 == 0 ? 1 : 0, 0), 1);
            Values expected[3];
            for (const int type : {R, I, M}) {
                for (std::size_t k = 0; k < operands[0][type].size(); ++k) {
                    const double mean = (operands[0][type][k] + operands[1][type][k]) * 0.5;
                    expected[type].push_back(seed % 2 == 0 ? mean : 0.0 + mean);
                }
                EXPECT_TRUE(numeric::sameSamples(planeValues(spectrum(result), type), expected[type]));
            }
            ASSERT_EQ(channel.spctmAC2X_average(0, 0, 0), 1);
            for (std::size_t k = 0; k < expected[R].size(); ++k)
                expected[R][k] += (operands[0][R][k] + operands[1][R][k]) * 0.5;
            for (const int type : {R, I, M})
                EXPECT_TRUE(numeric::sameSamples(planeValues(spectrum(result), type), expected[type]));
        }
}

TEST_F(ChannelAverage, GoesToTheBackupOnRequest)
{
    fillOperands(R);
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 0), 1);
    EXPECT_EQ(spectrum(result).m_pBkSpctmR, nullptr);
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 1), 1);
    ASSERT_NE(spectrum(result).m_pBkSpctmR, nullptr);
    EXPECT_EQ(spectrum(result).m_pBkSpctmR[1], 4.0);
}

TEST_F(ChannelAverage, NeedsBothOfOneShape)
{
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 0), 0);
    fill(active, R, {1, 2});
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 0), 0);
    fill(control, R, {1, 2, 3});
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 0), 0);
    EXPECT_EQ(channel.m_pSpctmChnlR, nullptr);
}

TEST_F(ChannelAverage, NeedsTheResultsShapeWithoutInit)
{
    fillOperands(R);
    EXPECT_EQ(channel.spctmAC2X_average(0, 1, 0), 0);
    EXPECT_EQ(channel.m_pSpctmChnlR, nullptr);
    fill(result, R, {1, 2, 3});
    EXPECT_EQ(channel.spctmAC2X_average(0, 1, 0), 0);
    EXPECT_THAT(planeValues(spectrum(result), R), ElementsAre(1, 2, 3));
}

TEST_F(ChannelAverage, NeedsTheRPlanes)
{
    fill(active, R, {1, 2});
    fill(control, M, {1, 2});
    EXPECT_EQ(channel.spctmAC2X_average(1, 1, 0), 0);
    fill(control, R, {1, 2});
    fill(result, M, {1, 2});
    EXPECT_EQ(channel.spctmAC2X_average(0, 1, 0), 0);
}

TEST_F(ChannelAverage, WithoutMemoryFailsAndLeavesTheOperands)
{
    for (const int type : {R, I, M})
        fillOperands(type);
    EXPECT_EQ(forEachAllocationFailure([&] {
                  channel.m_pSpctmChnlR.reset();
                  channel.spctmAC2X_average(1, 1, 0);
                  EXPECT_THAT(planeValues(spectrum(active), M), ElementsAre(1, 2));
              }),
              5); // the object and its four planes
    host.expectNoMessages();
}

} // namespace
} // namespace megset::CMDChannel1Spctm_test
