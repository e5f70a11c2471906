#include "megset/records/electric/CEEGelectrode.h"

#include "megset/records/catalogues.h"

#include <array>

#include <gtest/gtest.h>

namespace megset::CEEGelectrode_test {
namespace {

CEEGelectrodezk named(const char* name)
{
    CEEGelectrodezk electrode;
    electrode.m_strElectrodeName = name;
    return electrode;
}

TEST(Electrode, BeginsAsAnEegElectrodeWithoutPlace)
{
    const CEEGelectrodezk electrode;
    EXPECT_EQ(electrode.m_nChannelType, 302);
    EXPECT_EQ(electrode.m_nElectrodeWord, 2);
    EXPECT_EQ(electrode.m_nElectrodeID, -1);
    EXPECT_EQ(electrode.m_nNameSet, 0);
    EXPECT_EQ(electrode.m_nPosFound, 0);
    EXPECT_EQ(electrode.m_nSeegProbeID, -1);
    EXPECT_EQ(electrode.m_nSeegContactID, -1);
    EXPECT_EQ(electrode.m_dElectrodePos, (std::array<double, 4>{}));
}

TEST(Electrode, PositionIsTheFirstThreeNumbers)
{
    CEEGelectrodezk electrode;
    electrode.m_dElectrodePos[3] = 1.0;
    electrode.setElectrodePositionD(1.5, 2.5, 3.5);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    electrode.getElectrodePositionD(x, y, z);
    EXPECT_EQ(x, 1.5);
    EXPECT_EQ(y, 2.5);
    EXPECT_EQ(z, 3.5);
    EXPECT_EQ(electrode.m_dElectrodePos[3], 1.0);
}

TEST(Electrode, PositionAndDirectionComeFromArrays)
{
    CEEGelectrodezk electrode;
    const double pos[3] = {1, 2, 3};
    const double dir[3] = {4, 5, 6};
    EXPECT_EQ(electrode.setPosDiir(pos, dir), 1);
    EXPECT_EQ(electrode.m_dElectrodePos, (std::array<double, 4>{1, 2, 3, 0}));
    EXPECT_EQ(electrode.m_dElectrodeDir, (std::array<double, 4>{4, 5, 6, 0}));
    EXPECT_EQ(electrode.setPosDiir(nullptr, nullptr), 1);
    EXPECT_EQ(electrode.m_dElectrodePos, (std::array<double, 4>{1, 2, 3, 0}));
    EXPECT_EQ(electrode.m_dElectrodeDir, (std::array<double, 4>{4, 5, 6, 0}));
}

TEST(ElectrodeLookup, AHitFillsPlaceTypeAndStandard)
{
    CEEGelectrodezk electrode = named("A2");
    EXPECT_EQ(electrode.findPosMe(), 20);
    EXPECT_EQ(electrode.m_dElectrodePos, (std::array<double, 4>{-90.92224, 0.8736, -33.5347, 0.0}));
    EXPECT_EQ(electrode.m_nChannelType, 301);
    EXPECT_EQ(electrode.m_nElectrodeWord, 1);
    EXPECT_EQ(electrode.m_nPosFound, 1);
    EXPECT_EQ(electrode.m_strElectrodeStd, CString("A2"));
}

TEST(ElectrodeLookup, EachLookupAsksItsOwnTable)
{
    CEEGelectrodezk electrode = named("P3");
    EXPECT_EQ(electrode.findPosMe(), 14);
    EXPECT_EQ(electrode.m_dElectrodePos[2], 70.72357);
    EXPECT_EQ(electrode.findPosEasyCap74(), 23);
    EXPECT_EQ(electrode.m_dElectrodePos[2], 80.72357);
    EXPECT_EQ(named("T3").findPosEasyCap74(), -1);
    EXPECT_EQ(named("OZ").findPosMe(), -1);
}

TEST(ElectrodeLookup, FindAllAsksTheLargeTableFirst)
{
    CEEGelectrodezk electrode = named("P3");
    EXPECT_EQ(electrode.findAll(), 23);
    EXPECT_EQ(electrode.m_dElectrodePos[2], 80.72357);
    CEEGelectrodezk small = named("T5");
    EXPECT_EQ(small.findAll(), 12);
    EXPECT_EQ(small.m_dElectrodePos[0], 86.19843);
}

TEST(ElectrodeLookup, EveryRowIsFound)
{
    for (const EEG_STD_POS& row : g_aEegStd21) {
        CEEGelectrodezk electrode;
        electrode.m_strElectrodeName = CString(row.m_strElectrodeName);
        EXPECT_EQ(electrode.findPosMe(), &row - g_aEegStd21.data());
        EXPECT_EQ(electrode.m_dElectrodePos, (std::array<double, 4>{row.m_dPosX, row.m_dPosY, row.m_dPosZ, 0.0}));
    }
    for (const EEG_STD_POS& row : g_aEegStd32) {
        CEEGelectrodezk electrode;
        electrode.m_strElectrodeName = CString(row.m_strElectrodeName);
        EXPECT_EQ(electrode.findPosEasyCap74(), &row - g_aEegStd32.data());
        EXPECT_EQ(electrode.findAll(), &row - g_aEegStd32.data());
    }
}

TEST(ElectrodeLookup, AMissChangesNothing)
{
    const CEEGelectrodezk unknown = named("EEG057");
    CEEGelectrodezk electrode = unknown;
    EXPECT_EQ(electrode.findPosMe(), -1);
    EXPECT_EQ(electrode.findPosEasyCap74(), -1);
    EXPECT_EQ(electrode.findAll(), -1);
    EXPECT_TRUE(electrode == unknown);
}

TEST(ElectrodeLookup, AnEmptyNameIsTwoBelowZeroSaveForFindAll)
{
    CEEGelectrodezk electrode;
    EXPECT_EQ(electrode.findPosMe(), -2);
    EXPECT_EQ(electrode.findPosEasyCap74(), -2);
    EXPECT_EQ(electrode.findAll(), -1);
    EXPECT_EQ(electrode.findPosReadPea(nullptr), -2);
    EXPECT_TRUE(electrode == CEEGelectrodezk());
}

TEST(ElectrodeLookup, NamesAreComparedWithTheirCaseAndInFull)
{
    EXPECT_EQ(named("Cz").findPosMe(), -1);
    EXPECT_EQ(named("CZ ").findPosMe(), -1);
    EXPECT_EQ(named("C").findPosMe(), -1);
    EXPECT_EQ(named("Cz").findAll(), -1);
}

TEST(ElectrodeLookup, AListGivesPlaceDirectionAndType)
{
    CEEGelectrodezk other = named("X2");
    CEEGelectrodezk wanted = named("X1");
    wanted.m_dElectrodePos = {1, 2, 3, 1};
    wanted.m_dElectrodeDir = {0, 0, 1, 0};
    wanted.m_nChannelType = 340;
    wanted.m_nElectrodeWord = 7;
    CPtrArray list;
    list.Add(&other);
    list.Add(nullptr);
    list.Add(&wanted);

    CEEGelectrodezk electrode = named("X1");
    EXPECT_EQ(electrode.findPosReadPea(&list), 2);
    EXPECT_EQ(electrode.m_dElectrodePos, wanted.m_dElectrodePos);
    EXPECT_EQ(electrode.m_dElectrodeDir, wanted.m_dElectrodeDir);
    EXPECT_EQ(electrode.m_nChannelType, 340);
    EXPECT_EQ(electrode.m_nElectrodeWord, 7);
    EXPECT_EQ(electrode.m_nPosFound, 1);
    EXPECT_EQ(electrode.m_strElectrodeStd, CString("X1"));
}

TEST(ElectrodeLookup, AListWithoutTheNameOrNoListChangesNothing)
{
    CEEGelectrodezk other = named("x1");
    CPtrArray list;
    list.Add(&other);
    CEEGelectrodezk electrode = named("X1");
    EXPECT_EQ(electrode.findPosReadPea(&list), -1);
    EXPECT_EQ(electrode.findPosReadPea(nullptr), -1);
    EXPECT_TRUE(electrode == named("X1"));
}

} // namespace
} // namespace megset::CEEGelectrode_test
