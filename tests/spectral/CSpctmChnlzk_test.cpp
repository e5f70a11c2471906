// Arithmetic between channels' spectra.

#include "tests/spectral/planes.h"

namespace megset::CSpctmChnlzk_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SpectrumArithmetic : public ::testing::Test
{
protected:
    ScriptedHost host;
    CSpctmChnlzk spectrum;
    CSpctmChnlzk other;
    CSpctmChnlzk third;
};

TEST_F(SpectrumArithmetic, ThreeDataAreRIAndM)
{
    EXPECT_EQ(spectrum.has3Data(), 0);
    setPlane(spectrum, R, 1, 2, {1, 2});
    setPlane(spectrum, M, 1, 2, {1, 2});
    setPlane(spectrum, A, 1, 2, {1, 2});
    EXPECT_EQ(spectrum.has3Data(), 0);
    EXPECT_EQ(spectrum.has4Data(), 0);
    setPlane(spectrum, I, 1, 2, {1, 2});
    EXPECT_EQ(spectrum.has3Data(), 1);
    EXPECT_EQ(spectrum.has4Data(), 1);
    setPlane(other, R, 1, 2, {1, 2});
    setPlane(other, I, 1, 2, {1, 2});
    setPlane(other, A, 1, 2, {1, 2});
    EXPECT_EQ(other.has3Data(), 0);
    EXPECT_EQ(other.has4Data(), 0);
    spectrum.m_pSpctmA.reset();
    EXPECT_EQ(spectrum.has3Data(), 1);
    EXPECT_EQ(spectrum.has4Data(), 0);
    spectrum.m_nTimePt = 0;
    EXPECT_EQ(spectrum.has3Data(), 0);
}

TEST_F(SpectrumArithmetic, ParametersAreTheShapeAndNoPlane)
{
    setPlane(other, R, 2, 3, Values(6, 1.0));
    EXPECT_EQ(spectrum.setParameters(&other), 1);
    EXPECT_EQ(spectrum.m_nTimePt, 2);
    EXPECT_EQ(spectrum.m_nFreqPt, 3);
    EXPECT_EQ(spectrum.m_pSpctmR, nullptr);
}

TEST_F(SpectrumArithmetic, ParametersOfNullChangeNothing)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    EXPECT_EQ(spectrum.setParameters(nullptr), 0);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(1, 2));
}

TEST_F(SpectrumArithmetic, ParametersOfTheSameShapeKeepThePlanesAndOfAnotherEndThem)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    setPlane(other, R, 1, 2, {3, 4});
    EXPECT_EQ(spectrum.setParameters(&other), 1);
    EXPECT_EQ(spectrum.setParameters(&spectrum), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(1, 2));
    setPlane(other, R, 2, 2, {3, 4, 5, 6});
    EXPECT_EQ(spectrum.setParameters(&other), 1);
    EXPECT_EQ(spectrum.m_pSpctmR, nullptr); // two values are no plane of 2 x 2
    EXPECT_EQ(spectrum.m_nTimePt, 2);
}

TEST_F(SpectrumArithmetic, PlanesOfTheOtherAreAdded)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    setPlane(spectrum, M, 1, 2, {5, 6});
    setPlane(other, R, 1, 2, {10, 20});
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, false), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(11, 22));
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(5, 6)); // which the other lacks
    EXPECT_THAT(planeValues(other, R), ElementsAre(10, 20));
}

TEST_F(SpectrumArithmetic, ASpectrumAddedToItselfIsDoubled)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    EXPECT_EQ(spectrum.addSpctmChnlzk(&spectrum, false), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(2, 4));
}

TEST_F(SpectrumArithmetic, NothingIsAddedOfNullAndOfAnEmptyOther)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    EXPECT_EQ(spectrum.addSpctmChnlzk(nullptr, true), 0);
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, true), 0);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(1, 2));
}

TEST_F(SpectrumArithmetic, AMissingPlaneIsMadeOnlyOnRequest)
{
    setPlane(other, R, 1, 2, {10, 20});
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, false), 0);
    EXPECT_EQ(spectrum.m_nTimePt, 0);
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, true), 1);
    EXPECT_EQ(spectrum.m_nTimePt, 1);
    EXPECT_EQ(spectrum.m_nFreqPt, 2);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(10, 20));
}

TEST_F(SpectrumArithmetic, AnAdditionMayFailAfterItsFirstPlanes)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    setPlane(other, R, 1, 2, {10, 20});
    setPlane(other, I, 1, 2, {30, 40});
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, false), 0);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(11, 22));
    EXPECT_EQ(spectrum.m_pSpctmI, nullptr);
}

TEST_F(SpectrumArithmetic, AnExistingPlaneOfAnotherShapeIsNotAddedTo)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    setPlane(other, R, 1, 3, {10, 20, 30});
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, true), 0);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(1, 2));
}

TEST_F(SpectrumArithmetic, AMadePlaneOfAnotherShapeEndsThoseBesideIt)
{
    setPlane(spectrum, M, 1, 2, {1, 2});
    setPlane(other, R, 1, 3, {10, 20, 30});
    setPlane(other, M, 1, 3, {1, 1, 1});
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, true), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(10, 20, 30));
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(1, 1, 1));
}

TEST_F(SpectrumArithmetic, AnAdditionLeavesTheBackup)
{
    setPlane(spectrum, R, 1, 2, {1, 2});
    spectrum.storeData2Backupfile();
    setPlane(other, R, 1, 2, {10, 20});
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, true), 1);
    EXPECT_EQ(spectrum.m_pBkSpctmR[0], 1.0);
}

TEST_F(SpectrumArithmetic, AnAdditionWithoutMemoryChangesNothing)
{
    setPlane(spectrum, M, 1, 2, {1, 2});
    setPlane(other, R, 1, 3, {10, 20, 30});
    const FailingAllocator none(1);
    EXPECT_EQ(spectrum.addSpctmChnlzk(&other, true), 0);
    EXPECT_THAT(planeValues(spectrum, M), ElementsAre(1, 2));
    EXPECT_EQ(spectrum.m_pSpctmR, nullptr);
    host.expectNoMessages();
}

class SpectrumCombination : public SpectrumArithmetic
{
protected:
    SpectrumCombination()
    {
        setPlane(other, R, 1, 2, {10, 20});
        setPlane(other, I, 1, 2, {1, 2});
        setPlane(third, R, 1, 2, {3, 4});
        setPlane(third, M, 1, 2, {5, 6});
    }
};

TEST_F(SpectrumCombination, IsDifferenceSumOrProductOfTheSharedPlanes)
{
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, true, 0), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(7, 16));
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, true, 1), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(13, 24));
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, true, 2), 1);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(30, 80));
    EXPECT_EQ(spectrum.m_pSpctmI, nullptr);
    EXPECT_EQ(spectrum.m_pSpctmM, nullptr);
}

TEST_F(SpectrumCombination, AnotherOperationFillsTheSharedPlanesWithZero)
{
    setPlane(spectrum, R, 1, 2, {8, 9});
    setPlane(spectrum, M, 1, 2, {8, 9});
    for (const int operation : {7, 3, -1}) {
        EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, false, operation), 1);
        EXPECT_THAT(planeValues(spectrum, R), Each(0.0));
        EXPECT_THAT(planeValues(spectrum, M), ElementsAre(8, 9)); // which is not shared
    }
}

TEST_F(SpectrumCombination, GoesToTheBackup)
{
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, true, 1), 1);
    EXPECT_EQ(spectrum.m_nBkTimePt, 1);
    EXPECT_EQ(spectrum.m_nBkFreqPt, 2);
    EXPECT_EQ(Values(spectrum.m_pBkSpctmR.get(), spectrum.m_pBkSpctmR.get() + 2), (Values{13, 24}));
}

TEST_F(SpectrumCombination, NeedsTwoOperandsOfOneShape)
{
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(nullptr, &third, true, 1), 0);
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, nullptr, true, 1), 0);
    CSpctmChnlzk empty;
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&empty, &empty, true, 1), 0);
    setPlane(empty, R, 2, 1, {1, 2});
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &empty, true, 1), 0);
    EXPECT_EQ(spectrum.m_nTimePt, 0);
}

TEST_F(SpectrumCombination, AnotherShapeEndsWhatIsHeldBackupIncluded)
{
    setPlane(spectrum, A, 3, 1, {1, 2, 3});
    spectrum.storeData2Backupfile();
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, true, 1), 1);
    EXPECT_EQ(spectrum.m_pSpctmA, nullptr);
    EXPECT_EQ(spectrum.m_pBkSpctmA, nullptr);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(13, 24));
}

TEST_F(SpectrumCombination, AnotherShapeEndsTheBackupAlsoWhenNothingIsCombined)
{
    setPlane(spectrum, A, 3, 1, {1, 2, 3});
    spectrum.storeData2Backupfile();
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, false, 1), 0); // R is missing now
    EXPECT_EQ(spectrum.m_pSpctmA, nullptr);
    EXPECT_EQ(spectrum.m_pBkSpctmA, nullptr);
    EXPECT_EQ(spectrum.m_nBkTimePt, 0);
}

TEST_F(SpectrumCombination, AMissingPlaneWithoutLeaveToMakeItCombinesNothing)
{
    setPlane(third, I, 1, 2, {5, 6});
    setPlane(spectrum, R, 1, 2, {8, 9});
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, false, 1), 0);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(8, 9));
    EXPECT_EQ(spectrum.m_pSpctmI, nullptr);
}

TEST_F(SpectrumCombination, AnOperandMayBeTheResult)
{
    EXPECT_EQ(other.operateSpctmChnlAB2C(&other, &third, false, 0), 1);
    EXPECT_THAT(planeValues(other, R), ElementsAre(7, 16));
    EXPECT_EQ(third.operateSpctmChnlAB2C(&other, &third, false, 0), 1);
    EXPECT_THAT(planeValues(third, R), ElementsAre(4, 12));
}

TEST_F(SpectrumCombination, OfPlanesThatAreNotSharedIsEmpty)
{
    other.m_pSpctmR.reset();
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, true, 1), 1);
    for (const int type : {R, I, M, A})
        EXPECT_THAT(planeValues(spectrum, type), IsEmpty());
}

TEST_F(SpectrumCombination, WithoutMemoryPlanesThatWereMadeAreZero)
{
    setPlane(third, I, 1, 2, {5, 6});
    const FailingAllocator second(2);
    EXPECT_EQ(spectrum.operateSpctmChnlAB2C(&other, &third, true, 1), 0);
    EXPECT_THAT(planeValues(spectrum, R), ElementsAre(0, 0));
    EXPECT_EQ(spectrum.m_pSpctmI, nullptr);
    host.expectNoMessages();
}

TEST_F(SpectrumCombination, OfRandomPlanesIsThePlainLoop)
{
    for (const Shape shape : shapes) {
        for (unsigned seed = 0; seed < 2; ++seed) {
            const Values a = anyPlane(shape.nTimePt, shape.nFreqPt, seed);
            const Values b = anyPlane(shape.nTimePt, shape.nFreqPt, seed + 10);
            CSpctmChnlzk x;
            CSpctmChnlzk y;
            for (const int type : {R, I, M, A}) {
                setPlane(x, type, shape.nTimePt, shape.nFreqPt, a);
                setPlane(y, type, shape.nTimePt, shape.nFreqPt, b);
            }
            Values difference = a;
            for (std::size_t k = 0; k < a.size(); ++k)
                difference[k] = a[k] - b[k];
            CSpctmChnlzk z;
            ASSERT_EQ(z.operateSpctmChnlAB2C(&x, &y, true, 0), 1);
            for (const int type : {R, I, M, A})
                EXPECT_TRUE(numeric::sameSamples(planeValues(z, type), difference));
        }
    }
}

} // namespace
} // namespace megset::CSpctmChnlzk_test
