#include "tests/spectral/planes.h"

namespace megset::CSpctmChnl01Function_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DerivedPlanes : public ::testing::Test
{
protected:
    void fill(int type, const Values& values, std::int64_t nTimePt, std::int64_t nFreqPt)
    {
        setPlane(spectrum, type, nTimePt, nFreqPt, values);
    }

    ScriptedHost host;
    CSpctmChnlzk spectrum;
};

TEST_F(DerivedPlanes, MagnitudeOfThreeAndFourIsTheRootOfHalfTheSum)
{
    fill(R, {3.0}, 1, 1);
    fill(I, {4.0}, 1, 1);
    EXPECT_EQ(spectrum.computeMagnitude(), 2);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(std::sqrt(12.5)));
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(3.0));
    EXPECT_THAT(planeValues(spectrum, I), ElementsAre(4.0));
}

TEST_F(DerivedPlanes, MagnitudeWithoutIIsTheAbsoluteValue)
{
    fill(R, {-3.0, 2.0}, 1, 2);
    EXPECT_EQ(spectrum.computeMagnitude(), 1);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(3.0, 2.0));
}

TEST_F(DerivedPlanes, PhaseWithoutIIsTheArcTangentOfR)
{
    fill(R, {-3.0, 2.0}, 2, 1);
    EXPECT_EQ(spectrum.computePhase(), 1);
    EXPECT_THAT(planeValues(spectrum, A), ElementsAre(std::atan(-3.0), std::atan(2.0)));
}

TEST_F(DerivedPlanes, PhaseWithIKnowsAllFourQuadrants)
{
    fill(R, {1.0, -1.0, -1.0, 1.0}, 2, 2);
    fill(I, {1.0, 1.0, -1.0, -1.0}, 2, 2);
    EXPECT_EQ(spectrum.computePhase(), 2);
    const double quarter = std::atan(1.0);
    EXPECT_THAT(planeValues(spectrum, A), ElementsAre(quarter, 3.0 * quarter, -3.0 * quarter, -quarter));
}

TEST_F(DerivedPlanes, NeedR)
{
    EXPECT_EQ(spectrum.computeMagnitude(), 0);
    EXPECT_EQ(spectrum.computePhase(), 0);
    EXPECT_EQ(spectrum.setPolarity2Magnitude(1), 0);
    fill(I, {4.0}, 1, 1);
    EXPECT_EQ(spectrum.computeMagnitude(), 0);
    EXPECT_EQ(spectrum.computePhase(), 0);
    EXPECT_THAT(planeValues(spectrum, M), IsEmpty());
    EXPECT_THAT(planeValues(spectrum, A), IsEmpty());
}

TEST_F(DerivedPlanes, AnEmptyPlaneOfRIsNoR)
{
    spectrum.m_pSpctmR = tryNewSamples(0, true);
    spectrum.m_nFreqPt = 5;
    EXPECT_EQ(spectrum.computeMagnitude(), 0);
    EXPECT_EQ(spectrum.m_pSpctmM, nullptr);
}

TEST_F(DerivedPlanes, WithoutMemoryNothingIsMade)
{
    fill(R, {3.0}, 1, 1);
    EXPECT_EQ(forEachAllocationFailure([&] { spectrum.computeMagnitude(); }), 1);
    spectrum.m_pSpctmM.reset();
    spectrum.m_pSpctmA.reset();
    {
        const FailingAllocator none(1, FailingAllocator::Failing::FromThenOn);
        EXPECT_EQ(spectrum.computeMagnitude(), 0);
        EXPECT_EQ(spectrum.computePhase(), 0);
        EXPECT_EQ(spectrum.setPolarity2Magnitude(1), 0);
    }
    EXPECT_THAT(planeValues(spectrum, M), IsEmpty());
    EXPECT_THAT(planeValues(spectrum, A), IsEmpty());
    host.expectNoMessages();
}

TEST_F(DerivedPlanes, MagnitudeAndPhaseOfRandomPlanesAreTheFormulas)
{
    for (const Shape shape : shapes) {
        for (unsigned seed = 0; seed < 4; ++seed) {
            const Values r = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            const Values i = anyPlane(shape.nTimePt, shape.nFreqPt, seed + 100);
            CSpctmChnlzk both;
            setPlane(both, R, shape.nTimePt, shape.nFreqPt, r);
            setPlane(both, I, shape.nTimePt, shape.nFreqPt, i);
            ASSERT_EQ(both.computeMagnitude(), 2);
            ASSERT_EQ(both.computePhase(), 2);
            Values magnitude;
            Values phase;
            for (std::size_t k = 0; k < r.size(); ++k) {
                magnitude.push_back(std::sqrt((r[k] * r[k] + i[k] * i[k]) * 0.5));
                phase.push_back(std::atan2(i[k], r[k]));
            }
            EXPECT_TRUE(numeric::sameSamples(planeValues(both, M), magnitude));
            EXPECT_TRUE(numeric::sameSamples(planeValues(both, A), phase));
        }
    }
}

TEST_F(DerivedPlanes, PolarityOneTwoAndThreeTakeTheSignOfROfIAndOfTheLarger)
{
    fill(R, {3.0, -3.0, -4.0, 4.0, -2.0}, 1, 5);
    fill(I, {-4.0, 4.0, 3.0, -3.0, 2.0}, 1, 5);
    const double m = std::sqrt(12.5);
    const double tie = 2.0;
    EXPECT_EQ(spectrum.setPolarity2Magnitude(1), 1);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(m, -m, -m, m, -tie));
    EXPECT_EQ(spectrum.setPolarity2Magnitude(2), 1);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(-m, m, m, -m, tie));
    EXPECT_EQ(spectrum.setPolarity2Magnitude(3), 1);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(-m, m, -m, m, -tie));
}

TEST_F(DerivedPlanes, AnotherPolarityComputesMAndGivesZero)
{
    fill(R, {-3.0}, 1, 1);
    fill(M, {77.0}, 1, 1);
    for (const int polarity : {0, 4, -1, 1000}) {
        EXPECT_EQ(spectrum.setPolarity2Magnitude(polarity), 0);
        EXPECT_THAT(planeValues(spectrum, M), ElementsAre(3.0));
    }
}

TEST_F(DerivedPlanes, PolarityOfAnAbsentIComputesMAndGivesZero)
{
    fill(R, {-3.0}, 1, 1);
    EXPECT_EQ(spectrum.setPolarity2Magnitude(2), 0);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(3.0));
    EXPECT_EQ(spectrum.setPolarity2Magnitude(3), 0);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(3.0));
    EXPECT_EQ(spectrum.setPolarity2Magnitude(1), 1);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(-3.0));
}

class SingleFrequencies : public DerivedPlanes
{
protected:
    SingleFrequencies() { fill(R, {0, 1, 2, 10, 11, 12, 20, 21, 22, 30, 31, 32}, 4, 3); }

    Values out = Values(5, -1.0);
};

TEST_F(SingleFrequencies, TheTimeCourseBeginsAtTheFirstTime)
{
    EXPECT_EQ(spectrum.getOneFreqBandData(R, out.data(), 1, 3), 1);
    EXPECT_THAT(out, ElementsAre(1.0, 11.0, 21.0, -1.0, -1.0));
    EXPECT_EQ(spectrum.getOneFreqBandData(R, out.data(), 2, 4), 1);
    EXPECT_THAT(out, ElementsAre(2.0, 12.0, 22.0, 32.0, -1.0));
}

TEST_F(SingleFrequencies, TheTimeCourseRefusesMoreTimesAndOtherFrequencies)
{
    EXPECT_EQ(spectrum.getOneFreqBandData(R, out.data(), 1, 5), 0);
    EXPECT_EQ(spectrum.getOneFreqBandData(R, out.data(), -1, 1), 0);
    EXPECT_EQ(spectrum.getOneFreqBandData(R, out.data(), 3, 1), 0);
    EXPECT_EQ(spectrum.getOneFreqBandData(I, out.data(), 1, 1), 0);
    EXPECT_EQ(spectrum.getOneFreqBandData(4, out.data(), 1, 1), 0);
    EXPECT_EQ(spectrum.getOneFreqBandData(R, nullptr, 1, 1), 0);
    EXPECT_EQ(spectrum.getOneFreqBandData(R, out.data(), 1, 0), 1);
    EXPECT_EQ(spectrum.getOneFreqBandData(R, out.data(), 1, -7), 1);
    EXPECT_THAT(out, Each(-1.0));
}

TEST_F(SingleFrequencies, TheSampleAtTheEndOfATimeRangeIsNotDelivered)
{
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), 1, 1, 3), 1);
    EXPECT_THAT(out, ElementsAre(11.0, 21.0, -1.0, -1.0, -1.0));
}

TEST_F(SingleFrequencies, EqualBoundsOfATimeRangeWriteNothing)
{
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), 1, 2, 2), 1);
    EXPECT_THAT(out, Each(-1.0));
}

TEST_F(SingleFrequencies, ATimeRangeMustLieInsideAndForward)
{
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), 1, -1, 2), 0);
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), 1, 0, 4), 0);
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), 1, 2, 1), 0);
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), 1, INT64_MIN, INT64_MAX), 0);
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), 3, 1, 2), 0);
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, out.data(), -1, 1, 2), 0);
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(A, out.data(), 1, 1, 2), 0);
    EXPECT_EQ(spectrum.getOneFreqBandDataTbe(R, nullptr, 1, 1, 2), 0);
    EXPECT_THAT(out, Each(-1.0));
}

// The values that came, with the array given back.
Values taken(double* values, std::int64_t count)
{
    const std::unique_ptr<double[]> owner(values);
    return values == nullptr ? Values() : Values(values, values + count);
}

class Deviations : public DerivedPlanes
{
protected:
    Deviations()
    {
        for (const int type : {R, I, M, A})
            fill(type, each({0, 0, 0, 2, 4, 6}, [type](double v) { return v * (type + 1); }), 2, 3);
    }
};

TEST_F(Deviations, MinusOneAsksForAllFrequencies)
{
    std::int64_t count = -1;
    EXPECT_THAT(taken(spectrum.getStdM_T1Fn(count), 3), ElementsAre(3.0, 6.0, 9.0));
    EXPECT_EQ(count, 3);
}

TEST_F(Deviations, AreThoseOfTheirPlane)
{
    std::int64_t count = -1;
    EXPECT_THAT(taken(spectrum.getStdR_T1Fn(count), 3), ElementsAre(1.0, 2.0, 3.0));
    EXPECT_THAT(taken(spectrum.getStdI_T1Fn(count), 3), ElementsAre(2.0, 4.0, 6.0));
    EXPECT_THAT(taken(spectrum.getStdA_T1Fn(count), 3), ElementsAre(4.0, 8.0, 12.0));
}

TEST_F(Deviations, AShorterRequestIsWrittenOverByLaterFrequencies)
{
    std::int64_t count = 2;
    EXPECT_THAT(taken(spectrum.getStdM_T1Fn(count), 2), ElementsAre(9.0, 6.0));
    EXPECT_EQ(count, 2);
}

TEST_F(Deviations, RequestsAreBroughtIntoTheFrequencies)
{
    for (const std::int64_t below : {std::int64_t{0}, std::int64_t{-2}, INT64_MIN}) {
        std::int64_t count = below;
        EXPECT_THAT(taken(spectrum.getStdR_T1Fn(count), 1), ElementsAre(3.0));
        EXPECT_EQ(count, 1);
    }
    std::int64_t count = INT64_MAX;
    EXPECT_THAT(taken(spectrum.getStdR_T1Fn(count), 3), ElementsAre(1.0, 2.0, 3.0));
    EXPECT_EQ(count, 3);
}

TEST_F(Deviations, AnAbsentPlaneGivesNullAndStillAnswersMinusOne)
{
    spectrum.m_pSpctmM.reset();
    std::int64_t count = -1;
    EXPECT_EQ(spectrum.getStdM_T1Fn(count), nullptr);
    EXPECT_EQ(count, 3);
    count = 99;
    EXPECT_EQ(spectrum.getStdM_T1Fn(count), nullptr);
    EXPECT_EQ(count, 99);
}

TEST_F(Deviations, WithoutMemoryGiveNull)
{
    const FailingAllocator none(1);
    std::int64_t count = -1;
    EXPECT_EQ(spectrum.getStdR_T1Fn(count), nullptr);
    host.expectNoMessages();
}

TEST_F(Deviations, OfRandomPlanesAreTheFormula)
{
    for (const Shape shape : shapes) {
        const Values x = randomPlane(shape.nTimePt, shape.nFreqPt, 11);
        CSpctmChnlzk random;
        setPlane(random, R, shape.nTimePt, shape.nFreqPt, x);
        const auto n = static_cast<double>(shape.nTimePt);
        Values expected;
        for (std::int64_t f = 0; f < shape.nFreqPt; ++f) {
            double sum = 0.0;
            for (std::int64_t t = 0; t < shape.nTimePt; ++t)
                sum += x[shape.at(t, f)];
            double squares = 0.0;
            for (std::int64_t t = 0; t < shape.nTimePt; ++t)
                squares += (x[shape.at(t, f)] - sum / n) * (x[shape.at(t, f)] - sum / n);
            expected.push_back(std::sqrt(squares / n));
        }
        std::int64_t count = -1;
        EXPECT_TRUE(numeric::sameSamples(taken(random.getStdR_T1Fn(count), shape.nFreqPt), expected));
    }
}

} // namespace
} // namespace megset::CSpctmChnl01Function_test
