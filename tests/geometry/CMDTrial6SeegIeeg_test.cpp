// The list of SEEG probes of a trial.
#include "megset/geometry/CMDTrial6SeegIeeg.h"

#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <memory>
#include <string>

namespace megset::CMDTrial6SeegIeeg_test {
namespace {

class SeegProbes : public ::testing::Test
{
protected:
    // Adds a probe of each letter's name.
    void addProbes(const std::string& names)
    {
        for (const char name : names) {
            auto probe = std::make_unique<CSeegProbezk>();
            probe->m_strProbeName = CString(std::string(1, name));
            trial.addSeegProbe(probe.release());
        }
    }
    // The names in order, '-' for a place without a probe.
    std::string names() const
    {
        std::string all;
        for (int i = 0; i < trial.m_aSeegProbe.GetSize(); ++i)
            all += trial.m_aSeegProbe[i] != nullptr ? trial.m_aSeegProbe[i]->m_strProbeName.toUtf8() : "-";
        return all;
    }
    std::string nameAt(int index) const { return trial.getSeegProbe(index)->m_strProbeName.toUtf8(); }

    CMDTrialzk trial;
};

TEST_F(SeegProbes, AreAppendedAndBecomeCurrent)
{
    auto first = std::make_unique<CSeegProbezk>();
    CSeegProbezk* const added = first.get();
    EXPECT_EQ(trial.addSeegProbe(first.release()), 0);
    EXPECT_EQ(trial.getSeegProbe(-1), added);
    EXPECT_EQ(trial.addSeegProbe(std::make_unique<CSeegProbezk>().release()), 1);
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 1);
    EXPECT_EQ(trial.getSeegProbe(0), added);
}

TEST_F(SeegProbes, NullIsNotAdded)
{
    addProbes("ab");
    EXPECT_EQ(trial.addSeegProbe(nullptr), 0);
    EXPECT_EQ(names(), "ab");
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 1);
}

TEST_F(SeegProbes, DeletingTheOnlyOneLeavesNoCurrentOne)
{
    addProbes("a");
    EXPECT_EQ(trial.deleteSeegProbe(-1), 0);
    EXPECT_EQ(names(), "");
    EXPECT_EQ(trial.m_nCurrentSeegProbe, -1);
    EXPECT_EQ(trial.deleteSeegProbe(-1), 0);
    EXPECT_EQ(trial.deleteSeegProbe(0), 0);
}

TEST_F(SeegProbes, MinusOneDeletesTheCurrentOne)
{
    addProbes("abc");
    trial.m_nCurrentSeegProbe = 1;
    EXPECT_EQ(trial.deleteSeegProbe(-1), 2);
    EXPECT_EQ(names(), "ac");
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 1);
    EXPECT_EQ(trial.deleteSeegProbe(-1), 1);
    EXPECT_EQ(names(), "a");
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 0) << "brought back to the last one";
}

TEST_F(SeegProbes, DeletingLimitsTheIndexToTheList)
{
    addProbes("abcd");
    EXPECT_EQ(trial.deleteSeegProbe(99), 3);
    EXPECT_EQ(names(), "abc");
    EXPECT_EQ(trial.deleteSeegProbe(-2), 2);
    EXPECT_EQ(names(), "bc");
    trial.m_nCurrentSeegProbe = INT_MAX;
    EXPECT_EQ(trial.deleteSeegProbe(-1), 1);
    EXPECT_EQ(names(), "b");
}

TEST_F(SeegProbes, DeletingMendsANegativeCurrentIndex)
{
    addProbes("abc");
    trial.m_nCurrentSeegProbe = INT_MIN;
    EXPECT_EQ(trial.deleteSeegProbe(2), 2);
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 0);
}

TEST_F(SeegProbes, APlaceWithoutAProbeIsNotDeleted)
{
    addProbes("abc");
    trial.m_aSeegProbe.release(1);
    EXPECT_EQ(trial.deleteSeegProbe(1), 3);
    EXPECT_EQ(names(), "a-c");
    EXPECT_EQ(trial.getSeegProbe(1), nullptr);
}

TEST_F(SeegProbes, AboveTheCountGiveTheLastOne)
{
    addProbes("abc");
    EXPECT_EQ(nameAt(99), "c");
    EXPECT_EQ(nameAt(-2), "a");
    EXPECT_EQ(nameAt(1), "b");
    trial.m_nCurrentSeegProbe = 0;
    EXPECT_EQ(nameAt(-1), "a");
    trial.m_nCurrentSeegProbe = 99;
    EXPECT_EQ(nameAt(-1), "c");
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 99) << "looking stores nothing";
}

TEST_F(SeegProbes, OfWhichThereAreNoneAreNull)
{
    for (const int index : {-1, 0, 1, INT_MIN, INT_MAX})
        EXPECT_EQ(trial.getSeegProbe(index), nullptr) << index;
}

TEST_F(SeegProbes, TheCurrentIndexIsBroughtIntoTheListAndStored)
{
    addProbes("abc");
    trial.m_nCurrentSeegProbe = 7;
    EXPECT_EQ(trial.getSeegProbeCrntID(), 2);
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 2);
    trial.m_nCurrentSeegProbe = -5;
    EXPECT_EQ(trial.getSeegProbeCrntID(), 0);
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 0);
}

TEST_F(SeegProbes, TheCurrentIndexOfNoneIsZeroAndStoresNothing)
{
    trial.m_nCurrentSeegProbe = 5;
    EXPECT_EQ(trial.getSeegProbeCrntID(), 0);
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 5);
}

TEST_F(SeegProbes, CleaningThreeLeavesTheIndexOfTheLast)
{
    addProbes("abc");
    trial.m_nCurrentSeegProbe = 0;
    EXPECT_EQ(trial.cleanSeegProbe(), 3);
    EXPECT_EQ(names(), "");
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 2);
    EXPECT_EQ(trial.getSeegProbeCrntID(), 0);
    EXPECT_EQ(trial.getSeegProbe(-1), nullptr);
    EXPECT_EQ(trial.cleanSeegProbe(), 0);
    EXPECT_EQ(trial.m_nCurrentSeegProbe, -1);
    addProbes("d");
    EXPECT_EQ(trial.m_nCurrentSeegProbe, 0);
}

TEST(SelectedPoints, AreSharedByAllDatasets)
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    EXPECT_EQ(CMEGDatazk::setMsiSelect3DPts2Me(1.0, 2.0, 3.0), 1);
    EXPECT_EQ(CMEGDatazk::setSeegProbContact2Me(4.0, 5.0, 6.0), 1);
    EXPECT_EQ(CMEGDatazk::getMsiSelect3DPts2Me(x, y, z), 1);
    EXPECT_EQ((std::array{x, y, z}), (std::array{1.0, 2.0, 3.0}));
    EXPECT_EQ(CMEGDatazk::getSeegProbContact2Me(x, y, z), 1);
    EXPECT_EQ((std::array{x, y, z}), (std::array{4.0, 5.0, 6.0}));
    EXPECT_EQ(CMEGDatazk::m_dMsiSelectY, 2.0);
    EXPECT_EQ(CMEGDatazk::m_dSelectSeegProbeContactZ, 6.0);
}

TEST(SelectedPoints, OfTheSourceImagesCanBePointedTo)
{
    double* x = nullptr;
    double* y = nullptr;
    double* z = nullptr;
    EXPECT_EQ(CMEGDatazk::getMsiSelect3DPtrs(x, y, z), 1);
    *x = 7.0;
    *y = 8.0;
    *z = 9.0;
    EXPECT_EQ(CMEGDatazk::m_dMsiSelectX, 7.0);
    EXPECT_EQ(CMEGDatazk::m_dMsiSelectY, 8.0);
    EXPECT_EQ(CMEGDatazk::m_dMsiSelectZ, 9.0);
}

} // namespace
} // namespace megset::CMDTrial6SeegIeeg_test
