// The catalogues, compared with a second copy of every name and number, kept as text.

#include "megset/core/catalogues.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <set>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace megset::catalogues_test {

namespace {

// Name, x, y, z, type row, channel type.
const char* const eegStd21Text = R"(
FP1 30.0 70.84885 -104.70795 2 302
FP2 -30.0 71.47003 -105.19913 2 302
F7 72.69882 56.2587 -55.7489 2 302
F3 56.33652 111.80359 -59.12506 2 302
FZ 5.10071 134.61945 -63.15979 2 302
F4 -53.79196 115.24002 -59.14627 2 302
F8 -70.76645 58.79044 -58.23456 2 302
C3 73.39218 117.82791 7.74994 2 302
CZ 7.43439 151.83792 14.09561 2 302
C4 -69.77783 120.59814 11.16196 2 302
T3 85.19843 44.54773 -2.21771 2 302
T4 -83.14825 44.76944 -2.4704 2 302
T5 86.19843 44.54773 -2.21771 2 302
T6 -84.14825 44.76944 -2.4704 2 302
P3 58.04962 90.87418 70.72357 2 302
PZ 3.71292 111.62399 80.86029 2 302
P4 -52.92053 91.36627 72.34375 2 302
O1 26.81717 36.34674 96.58279 2 302
O2 -26.47095 38.18619 96.38092 2 302
A1 90.92224 0.8736 -33.5347 1 301
A2 -90.92224 0.8736 -33.5347 1 301
)";

const char* const eegStd32Text = R"(
FP1 30.0 70.84885 -104.70795 2 302
FP2 -30.0 71.47003 -105.19913 2 302
F7 72.69882 56.2587 -55.7489 2 302
F3 56.33652 111.80359 -59.12506 2 302
FZ 5.10071 134.61945 -63.15979 2 302
F4 -53.79196 115.24002 -59.14627 2 302
F8 -70.76645 58.79044 -58.23456 2 302
FT7 72.69882 56.2587 -35.7489 2 302
FC3 56.33652 111.80359 -39.12506 2 302
FCZ 5.10071 134.61945 -33.15979 2 302
FC4 -53.79196 115.24002 -39.14627 2 302
FT8 -70.76645 58.79044 -38.23456 2 302
T7 84.14825 44.76944 -2.4704 2 302
C3 73.39218 117.82791 7.74994 2 302
CZ 7.43439 151.83792 14.09561 2 302
C4 -69.77783 120.59814 11.16196 2 302
T8 -84.14825 44.76944 -2.4704 2 302
TP7 86.19843 44.54773 -2.21771 2 302
CP3 58.04962 90.87418 70.72357 2 302
CPZ 3.71292 111.62399 80.86029 2 302
CP4 -52.92053 91.36627 72.34375 2 302
TP8 -83.14825 44.76944 -2.4704 2 302
P7 86.19843 44.54773 60.21771 2 302
P3 58.04962 90.87418 80.72357 2 302
PZ 3.71292 111.62399 82.86029 2 302
P4 -52.92053 91.36627 82.34375 2 302
P8 -83.14825 44.76944 80.4704 2 302
O1 26.81717 36.34674 96.58279 2 302
OZ 0.81717 36.34674 96.58279 2 302
O2 -26.47095 38.18619 96.38092 2 302
A1 90.92224 0.8736 -33.5347 1 301
A2 -90.92224 0.8736 -33.5347 1 301
)";

// Name, x, y, z, dx, dy, dz, channel type.
const char* const megStd21Text = R"(
MLFP1 30.0 70.84885 -104.70795 0.301 -0.068 -0.948 100
MRFP2 -30.0 71.47003 -105.19913 -0.7185896 -0.135465 -0.682112 100
MLF7 72.69882 56.2587 -55.7489 -0.558353 0.046910094084617 0.828276138304767 100
MLF3 56.33652 111.80359 -59.12506 0.49352212301636 -0.063363 -0.867422 100
MZF0 5.10071 134.61945 -63.15979 0.0870658425303876 0.560139486405403 -0.82381022986727 100
MRF4 -53.79196 115.24002 -59.14627 0.686138327618361 -0.393667598329074 0.61175159779023 100
MRF8 -70.76645 58.79044 -58.23456 -0.8898 0.179021257695174 -0.419761608865798 100
MLC3 73.39218 117.82791 7.74994 0.835628484552876 0.480029873217394 -0.26701377609172 100
MZC0 7.43439 151.83792 14.09561 -0.0146875730851347 0.915750282274253 -0.401479 100
MRC4 -69.77783 120.59814 11.16196 -0.771968 0.631155627990509 -0.075548 100
MLT3 85.19843 44.54773 -2.21771 -0.727165 -0.267886 -0.63203 100
MRT4 -83.14825 44.76944 -2.4704 0.923205 -0.06497 -0.378774 100
MLT5 86.19843 44.54773 -2.21771 0.979413 0.1216 0.16112 100
MRT6 -84.14825 44.76944 -2.4704 0.99291 -0.01193 -0.118267 100
MLP3 58.04962 90.87418 70.72357 0.610764 0.73475 0.29514 100
MZP0 3.71292 111.62399 80.86029 -0.15904 0.6623 0.7321 100
MRP4 -52.92053 91.36627 72.34375 -0.77855 0.328219 0.534907 100
MLO1 26.81717 36.34674 96.58279 0.043583 0.2174 0.97509 100
MRO2 -26.47095 38.18619 96.38092 -0.43961 0.23958 0.86564 100
MGL0 90.92224 0.8736 -33.5347 1.0 0.0 0.0 10
MGR0 -90.92224 0.8736 -33.5347 -1.0 0.0 0.0 10
)";

const char* const megStd32Text = R"(
MLFP1 30.0 70.84885 -104.70795 0.301 -0.068 -0.948 100
MRFP2 -30.0 71.47003 -105.19913 -0.7185896 -0.135465 -0.682112 100
MLF7 72.69882 56.2587 -55.7489 -0.558353 0.046910094084617 0.828276138304767 100
MLF3 56.33652 111.80359 -59.12506 0.49352212301636 -0.063363 -0.867422 100
MZFZ 5.10071 134.61945 -63.15979 0.0870658425303876 0.560139486405403 -0.8238 100
MRF4 -53.79196 115.24002 -59.14627 0.686138327618361 -0.393667598329074 0.61175159779023 100
MRF8 -70.76645 58.79044 -58.23456 -0.8898 0.179021257695174 -0.419761608865798 100
MLFT7 72.69882 56.2587 -35.7489 -0.558353 0.046910094084617 0.828276138304767 100
MLFC3 56.33652 111.80359 -39.12506 0.49352212301636 -0.063363 -0.867422 100
MZFCZ 5.10071 134.61945 -33.15979 0.0870658425303876 0.560139486405403 -0.82381022986727 100
MRFC4 -53.79196 115.24002 -39.14627 0.686138327618361 -0.393667598329074 0.61175159779023 100
MRFT8 -70.76645 58.79044 -38.23456 -0.8898 0.179021257695174 -0.419761608865798 100
MLT7 84.14825 44.76944 -2.4704 0.835628484552876 0.480029873217394 -0.26701377609172 100
MLC3 73.39218 117.82791 7.74994 -0.0146875730851347 0.915750282274253 -0.401479 100
MZCZ 7.43439 151.83792 14.09561 -0.771968 0.631155627990509 -0.075548 100
MRC4 -69.77783 120.59814 11.16196 -0.727165 -0.267886 -0.63203 100
MRT8 -84.14825 44.76944 -2.4704 0.923205 -0.06497 -0.378774 100
MLTP7 86.19843 44.54773 -2.21771 0.979413 0.1216 0.16112 100
MLCP3 58.04962 90.87418 70.72357 0.99291 -0.01193 -0.118267 100
MZCPZ 3.71292 111.62399 80.86029 0.610764 0.73475 0.29514 100
MRCP4 -52.92053 91.36627 72.34375 -0.15904 0.6623 0.7321 100
MRTP8 -83.14825 44.76944 -2.4704 -0.77855 0.328219 0.534907 100
MLP7 86.19843 44.54773 60.21771 0.043583 0.2174 0.97509 100
MLP3 58.04962 90.87418 80.72357 -0.43961 0.23958 0.86564 100
MZPZ 3.71292 111.62399 82.86029 -0.43961 0.23958 0.86564 100
MRP4 -52.92053 91.36627 82.34375 -0.43961 0.23958 0.86564 100
MRP8 -83.14825 44.76944 80.4704 -0.43961 0.23958 0.86564 100
MLO1 26.81717 36.34674 96.58279 -0.43961 0.23958 0.86564 100
MZOZ 0.81717 36.34674 96.58279 -0.43961 0.23958 0.86564 100
MRO2 -26.47095 38.18619 96.38092 -0.43961 0.23958 0.86564 100
MLA1 90.92224 0.8736 -33.5347 1.0 0.0 0.0 301
MRA2 -90.92224 0.8736 -33.5347 -1.0 0.0 0.0 301
)";

// Rows of eegStd21Text.
const char* const eegStd10Names = "FP1 FP2 C3 C4 P3 P4 O1 O2 A1 A2";
const char* const eegStd18Names = "FP1 FP2 F3 F4 F7 F8 T3 T4 T5 T6 C3 C4 P3 P4 O1 O2 A1 A2";
const char* const eegStd21bNames = "FP1 FP2 F3 F4 F7 F8 T3 T4 T5 T6 C3 C4 P3 P4 O1 O2 FZ CZ PZ A1 A2";

using Row = std::vector<std::string>;

std::vector<std::string> words(const std::string& text)
{
    std::istringstream in(text);
    std::vector<std::string> list;
    for (std::string word; in >> word;)
        list.push_back(word);
    return list;
}

std::vector<Row> tableOf(const std::string& text)
{
    std::istringstream in(text);
    std::vector<Row> rows;
    for (std::string line; std::getline(in, line);)
        if (!line.empty())
            rows.push_back(words(line));
    return rows;
}

std::vector<Row> rowsNamed(const std::string& names, const std::vector<Row>& table)
{
    std::vector<Row> rows;
    for (const std::string& name : words(names))
        for (const Row& row : table)
            if (row[0] == name)
                rows.push_back(row);
    return rows;
}

template <class T>
T number(const std::string& text)
{
    T value{};
    const auto end = std::from_chars(text.data(), text.data() + text.size(), value).ptr;
    EXPECT_EQ(end, text.data() + text.size()) << text;
    return value;
}

void expectSameBits(double value, const std::string& text)
{
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(number<double>(text))) << text;
}

void expectEegTable(std::span<const EEG_STD_POS> table, const std::vector<Row>& expected)
{
    ASSERT_EQ(table.size(), expected.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const Row& row = expected[i];
        ASSERT_EQ(row.size(), 6U);
        SCOPED_TRACE(row[0]);
        EXPECT_EQ(table[i].m_strElectrodeName, row[0]);
        expectSameBits(table[i].m_dPosX, row[1]);
        expectSameBits(table[i].m_dPosY, row[2]);
        expectSameBits(table[i].m_dPosZ, row[3]);
        EXPECT_EQ(table[i].m_nEegTypeRow, number<int>(row[4]));
        EXPECT_EQ(table[i].m_nChannelType, number<int>(row[5]));
    }
}

void expectMegTable(std::span<const MEG_STD_POS> table, const std::vector<Row>& expected)
{
    ASSERT_EQ(table.size(), expected.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const Row& row = expected[i];
        ASSERT_EQ(row.size(), 8U);
        SCOPED_TRACE(row[0]);
        EXPECT_EQ(table[i].m_strSensorName, row[0]);
        expectSameBits(table[i].m_dPosX, row[1]);
        expectSameBits(table[i].m_dPosY, row[2]);
        expectSameBits(table[i].m_dPosZ, row[3]);
        expectSameBits(table[i].m_dDirX, row[4]);
        expectSameBits(table[i].m_dDirY, row[5]);
        expectSameBits(table[i].m_dDirZ, row[6]);
        EXPECT_EQ(table[i].m_nChannelType, number<int>(row[7]));
    }
}

std::vector<std::string> listed(std::span<const std::string_view> names)
{
    return std::vector<std::string>(names.begin(), names.end());
}

TEST(Catalogues, HoldTheElectrodesOfTheFullTables)
{
    expectEegTable(g_aEegStd21, tableOf(eegStd21Text));
    expectEegTable(g_aEegStd32, tableOf(eegStd32Text));
    EXPECT_EQ(g_aEegStd21.size(), 21U);
    EXPECT_EQ(g_aEegStd32.size(), 32U);
}

TEST(Catalogues, HoldTheSmallerElectrodeSetsInTheirOwnOrder)
{
    const std::vector<Row> table = tableOf(eegStd21Text);
    expectEegTable(g_aEegStd10, rowsNamed(eegStd10Names, table));
    expectEegTable(g_aEegStd18, rowsNamed(eegStd18Names, table));
    expectEegTable(g_aEegStd21b, rowsNamed(eegStd21bNames, table));
    EXPECT_EQ(g_aEegStd10.size(), 10U);
    EXPECT_EQ(g_aEegStd18.size(), 18U);
    EXPECT_EQ(g_aEegStd21b.size(), 21U);
}

TEST(Catalogues, HoldTheMegSensors)
{
    expectMegTable(g_aMegStd21, tableOf(megStd21Text));
    expectMegTable(g_aMegStd32, tableOf(megStd32Text));
    EXPECT_EQ(g_aMegStd21.size(), 21U);
    EXPECT_EQ(g_aMegStd32.size(), 32U);
}

TEST(Catalogues, NameNoElectrodeOrSensorTwice)
{
    const auto expectDistinct = [](const auto& table, auto name) {
        std::set<std::string_view> names;
        for (const auto& row : table)
            EXPECT_TRUE(names.insert(row.*name).second) << row.*name;
    };
    expectDistinct(g_aEegStd10, &EEG_STD_POS::m_strElectrodeName);
    expectDistinct(g_aEegStd18, &EEG_STD_POS::m_strElectrodeName);
    expectDistinct(g_aEegStd21, &EEG_STD_POS::m_strElectrodeName);
    expectDistinct(g_aEegStd21b, &EEG_STD_POS::m_strElectrodeName);
    expectDistinct(g_aEegStd32, &EEG_STD_POS::m_strElectrodeName);
    expectDistinct(g_aMegStd21, &MEG_STD_POS::m_strSensorName);
    expectDistinct(g_aMegStd32, &MEG_STD_POS::m_strSensorName);
}

TEST(Catalogues, PutTheMegSensorsWhereTheElectrodesAre)
{
    const auto expectSamePlaces = [](const auto& sensors, const auto& electrodes) {
        for (std::size_t i = 0; i < sensors.size(); ++i) {
            EXPECT_EQ(sensors[i].m_dPosX, electrodes[i].m_dPosX) << i;
            EXPECT_EQ(sensors[i].m_dPosY, electrodes[i].m_dPosY) << i;
            EXPECT_EQ(sensors[i].m_dPosZ, electrodes[i].m_dPosZ) << i;
        }
    };
    expectSamePlaces(g_aMegStd21, g_aEegStd21);
    expectSamePlaces(g_aMegStd32, g_aEegStd32);
}

TEST(Catalogues, HaveTheEarsAsGroundInEveryElectrodeTable)
{
    for (const std::span<const EEG_STD_POS> table :
         {std::span<const EEG_STD_POS>(g_aEegStd10), std::span<const EEG_STD_POS>(g_aEegStd18),
          std::span<const EEG_STD_POS>(g_aEegStd21), std::span<const EEG_STD_POS>(g_aEegStd21b),
          std::span<const EEG_STD_POS>(g_aEegStd32)})
        for (const EEG_STD_POS& row : table) {
            const bool ear = row.m_strElectrodeName == CString("A1") || row.m_strElectrodeName == CString("A2");
            EXPECT_EQ(row.m_nEegTypeRow, ear ? 1 : 2) << row.m_strElectrodeName;
            EXPECT_EQ(row.m_nChannelType, ear ? 301 : 302) << row.m_strElectrodeName;
        }
}

TEST(Catalogues, KeepTheTypesOfTheEarSensorsAsTheyAre)
{
    EXPECT_EQ(g_aMegStd21[19].m_nChannelType, 10); // MEG reference in the one table
    EXPECT_EQ(g_aMegStd21[20].m_nChannelType, 10);
    EXPECT_EQ(g_aMegStd32[30].m_nChannelType, 301); // the electrode's type in the other
    EXPECT_EQ(g_aMegStd32[31].m_nChannelType, 301);
}

TEST(Catalogues, KeepTheirOddValues)
{
    const EEG_STD_POS& t3 = *findEegStdPos(g_aEegStd21, u"T3");
    const EEG_STD_POS& t5 = *findEegStdPos(g_aEegStd21, u"T5");
    EXPECT_EQ(t3.m_dPosY, t5.m_dPosY);
    EXPECT_EQ(t3.m_dPosZ, t5.m_dPosZ);
    EXPECT_NEAR(t5.m_dPosX - t3.m_dPosX, 1.0, 1e-12);
    EXPECT_EQ(findEegStdPos(g_aEegStd21, u"P3")->m_dPosZ, 70.72357);
    EXPECT_EQ(findEegStdPos(g_aEegStd32, u"P3")->m_dPosZ, 80.72357);
}

TEST(Catalogues, FindANameExactlyAsItStands)
{
    EXPECT_EQ(findEegStdPos(g_aEegStd21, u"FP1"), &g_aEegStd21[0]);
    EXPECT_EQ(findEegStdPos(g_aEegStd21, CString("CZ").view()), &g_aEegStd21[8]);
    EXPECT_EQ(findEegStdPos(g_aEegStd32, u"A2"), &g_aEegStd32[31]);
    for (const std::u16string_view name : {u"Fp1", u"FP", u"FP11", u" FP1", u"", u"ＦP1", u"OZ"})
        EXPECT_EQ(findEegStdPos(g_aEegStd21, name), nullptr) << CString(name);
    EXPECT_EQ(findEegStdPos({}, u"FP1"), nullptr);
    EXPECT_EQ(findEegStdRow(g_aEegStd21, u"OZ"), g_aEegStd21.size());
    static_assert(findEegStdRow(g_aEegStd21, u"O2") == 18); // works while compiling, too
}

TEST(Catalogues, HaveNamesThatWorkAsStrings)
{
    const CString name = g_aEegStd21[0].m_strElectrodeName;
    EXPECT_EQ(name, CString("FP1"));
    EXPECT_TRUE(g_aEegStd21[0].m_strElectrodeName == CString("FP1"));
    EXPECT_TRUE(CString("MLFP1") == g_aMegStd21[0].m_strSensorName);
    EXPECT_FALSE(g_aEegStd21[0].m_strElectrodeName == CString("fp1"));
    EXPECT_EQ(CString::formatted("%s!", g_aEegStd21[0].m_strElectrodeName), CString("FP1!"));
}

TEST(Catalogues, ListSignalKindsAndDevicesInOrder)
{
    EXPECT_EQ(listed(g_aSignalKind), (std::vector<std::string>{"EEG", "EKG", "EMG", "MEG", "MKG", "MMG", "FMEG"}));
    EXPECT_EQ(listed(g_aDeviceFamily),
              (std::vector<std::string>{"Virtual MEG/EEG", "OpenBci EEGc", "OpenBci EEGw", "QuSpin OPMs",
                                        "NI9205cDAQ9171", "Velmar OPMs", "Not Implemented"}));
    EXPECT_EQ(listed(g_aDeviceModel),
              (std::vector<std::string>{"OPM21 vMEG", "Wireless21 vEEG", "OpenBci8c Cyton EEG", "OpenBci16c Daisy EEG",
                                        "OpenBci8w Cyton EEG", "OpenBci16w Daisy EEG", "OpenBci4w Ganglion EEG",
                                        "QuSpin Magnetometers", "Velmar Magnetometers", "NI9205cDAQ9171 EEG32 Unipolar",
                                        "NI9205cDAQ9171 EEG16 Bipolar", "NI9205cDAQ9171 MEG32", "NI9205cDAQ9171 MEG16",
                                        "WIFI Data Streamer", "Unimplemented"}));
}

TEST(Catalogues, GiveTheScalesAsFloats)
{
    static_assert(std::is_same_v<decltype(g_fScaleAdcMicroVolt), const float>);
    static_assert(std::is_same_v<decltype(g_fScaleAccel), const float>);
    EXPECT_EQ(g_fScaleAdcMicroVolt, static_cast<float>(4.5e6L / (8388607.0L * 24.0L))); // the float nearest the value
    EXPECT_NEAR(g_fScaleAdcMicroVolt, 0.02235, 0.000005);
    EXPECT_EQ(g_fScaleAccel, 0.000125F);
}

} // namespace

} // namespace megset::catalogues_test
