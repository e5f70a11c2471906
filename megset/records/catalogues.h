#pragma once
// The standard lists: electrode and sensor sets with a position for each name, kinds of signal, acquisition devices.
// Positions are millimetres in the system's head frame. Odd rows are as they are meant to be: "A1" and "A2" are ground
// electrodes, "MLA1" and "MRA2" have a ground's channel type, "T3" and "T5" differ by one millimetre in x alone.

#include "megset/platform/CString.h" // a name converts to and compares with a CString

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace megset {

/// One row of an electrode table.
struct EEG_STD_POS
{
    std::string_view m_strElectrodeName; // upper case, ASCII
    double m_dPosX = 0.0;                // mm
    double m_dPosY = 0.0;
    double m_dPosZ = 0.0;
    int m_nEegTypeRow = 0; // row of the electrode type list: 1 ground, 2 EEG
    int m_nChannelType = 0;
};

/// One row of a MEG sensor table.
struct MEG_STD_POS
{
    std::string_view m_strSensorName; // upper case, ASCII
    double m_dPosX = 0.0;             // mm
    double m_dPosY = 0.0;
    double m_dPosZ = 0.0;
    double m_dDirX = 0.0;
    double m_dDirY = 0.0;
    double m_dDirZ = 0.0;
    int m_nChannelType = 0;
};

// One row per line.
// clang-format off
/// The electrodes of the 10-20 system.
inline constexpr std::array<EEG_STD_POS, 21> g_aEegStd21 = std::to_array<EEG_STD_POS>({
    {"FP1", 30.0, 70.84885, -104.70795, 2, 302},
    {"FP2", -30.0, 71.47003, -105.19913, 2, 302},
    {"F7", 72.69882, 56.2587, -55.7489, 2, 302},
    {"F3", 56.33652, 111.80359, -59.12506, 2, 302},
    {"FZ", 5.10071, 134.61945, -63.15979, 2, 302},
    {"F4", -53.79196, 115.24002, -59.14627, 2, 302},
    {"F8", -70.76645, 58.79044, -58.23456, 2, 302},
    {"C3", 73.39218, 117.82791, 7.74994, 2, 302},
    {"CZ", 7.43439, 151.83792, 14.09561, 2, 302},
    {"C4", -69.77783, 120.59814, 11.16196, 2, 302},
    {"T3", 85.19843, 44.54773, -2.21771, 2, 302},
    {"T4", -83.14825, 44.76944, -2.4704, 2, 302},
    {"T5", 86.19843, 44.54773, -2.21771, 2, 302},
    {"T6", -84.14825, 44.76944, -2.4704, 2, 302},
    {"P3", 58.04962, 90.87418, 70.72357, 2, 302},
    {"PZ", 3.71292, 111.62399, 80.86029, 2, 302},
    {"P4", -52.92053, 91.36627, 72.34375, 2, 302},
    {"O1", 26.81717, 36.34674, 96.58279, 2, 302},
    {"O2", -26.47095, 38.18619, 96.38092, 2, 302},
    {"A1", 90.92224, 0.8736, -33.5347, 1, 301},
    {"A2", -90.92224, 0.8736, -33.5347, 1, 301},
});

/// The electrodes between those of g_aEegStd21, too. It has values of its own: the z of "P3" is greater by 10 mm here.
inline constexpr std::array<EEG_STD_POS, 32> g_aEegStd32 = std::to_array<EEG_STD_POS>({
    {"FP1", 30.0, 70.84885, -104.70795, 2, 302},
    {"FP2", -30.0, 71.47003, -105.19913, 2, 302},
    {"F7", 72.69882, 56.2587, -55.7489, 2, 302},
    {"F3", 56.33652, 111.80359, -59.12506, 2, 302},
    {"FZ", 5.10071, 134.61945, -63.15979, 2, 302},
    {"F4", -53.79196, 115.24002, -59.14627, 2, 302},
    {"F8", -70.76645, 58.79044, -58.23456, 2, 302},
    {"FT7", 72.69882, 56.2587, -35.7489, 2, 302},
    {"FC3", 56.33652, 111.80359, -39.12506, 2, 302},
    {"FCZ", 5.10071, 134.61945, -33.15979, 2, 302},
    {"FC4", -53.79196, 115.24002, -39.14627, 2, 302},
    {"FT8", -70.76645, 58.79044, -38.23456, 2, 302},
    {"T7", 84.14825, 44.76944, -2.4704, 2, 302},
    {"C3", 73.39218, 117.82791, 7.74994, 2, 302},
    {"CZ", 7.43439, 151.83792, 14.09561, 2, 302},
    {"C4", -69.77783, 120.59814, 11.16196, 2, 302},
    {"T8", -84.14825, 44.76944, -2.4704, 2, 302},
    {"TP7", 86.19843, 44.54773, -2.21771, 2, 302},
    {"CP3", 58.04962, 90.87418, 70.72357, 2, 302},
    {"CPZ", 3.71292, 111.62399, 80.86029, 2, 302},
    {"CP4", -52.92053, 91.36627, 72.34375, 2, 302},
    {"TP8", -83.14825, 44.76944, -2.4704, 2, 302},
    {"P7", 86.19843, 44.54773, 60.21771, 2, 302},
    {"P3", 58.04962, 90.87418, 80.72357, 2, 302},
    {"PZ", 3.71292, 111.62399, 82.86029, 2, 302},
    {"P4", -52.92053, 91.36627, 82.34375, 2, 302},
    {"P8", -83.14825, 44.76944, 80.4704, 2, 302},
    {"O1", 26.81717, 36.34674, 96.58279, 2, 302},
    {"OZ", 0.81717, 36.34674, 96.58279, 2, 302},
    {"O2", -26.47095, 38.18619, 96.38092, 2, 302},
    {"A1", 90.92224, 0.8736, -33.5347, 1, 301},
    {"A2", -90.92224, 0.8736, -33.5347, 1, 301},
});

/// The electrode positions with a direction.
inline constexpr std::array<MEG_STD_POS, 21> g_aMegStd21 = std::to_array<MEG_STD_POS>({
    {"MLFP1", 30.0, 70.84885, -104.70795, 0.301, -0.068, -0.948, 100},
    {"MRFP2", -30.0, 71.47003, -105.19913, -0.7185896, -0.135465, -0.682112, 100},
    {"MLF7", 72.69882, 56.2587, -55.7489, -0.558353, 0.046910094084617, 0.828276138304767, 100},
    {"MLF3", 56.33652, 111.80359, -59.12506, 0.49352212301636, -0.063363, -0.867422, 100},
    {"MZF0", 5.10071, 134.61945, -63.15979, 0.0870658425303876, 0.560139486405403, -0.82381022986727, 100},
    {"MRF4", -53.79196, 115.24002, -59.14627, 0.686138327618361, -0.393667598329074, 0.61175159779023, 100},
    {"MRF8", -70.76645, 58.79044, -58.23456, -0.8898, 0.179021257695174, -0.419761608865798, 100},
    {"MLC3", 73.39218, 117.82791, 7.74994, 0.835628484552876, 0.480029873217394, -0.26701377609172, 100},
    {"MZC0", 7.43439, 151.83792, 14.09561, -0.0146875730851347, 0.915750282274253, -0.401479, 100},
    {"MRC4", -69.77783, 120.59814, 11.16196, -0.771968, 0.631155627990509, -0.075548, 100},
    {"MLT3", 85.19843, 44.54773, -2.21771, -0.727165, -0.267886, -0.63203, 100},
    {"MRT4", -83.14825, 44.76944, -2.4704, 0.923205, -0.06497, -0.378774, 100},
    {"MLT5", 86.19843, 44.54773, -2.21771, 0.979413, 0.1216, 0.16112, 100},
    {"MRT6", -84.14825, 44.76944, -2.4704, 0.99291, -0.01193, -0.118267, 100},
    {"MLP3", 58.04962, 90.87418, 70.72357, 0.610764, 0.73475, 0.29514, 100},
    {"MZP0", 3.71292, 111.62399, 80.86029, -0.15904, 0.6623, 0.7321, 100},
    {"MRP4", -52.92053, 91.36627, 72.34375, -0.77855, 0.328219, 0.534907, 100},
    {"MLO1", 26.81717, 36.34674, 96.58279, 0.043583, 0.2174, 0.97509, 100},
    {"MRO2", -26.47095, 38.18619, 96.38092, -0.43961, 0.23958, 0.86564, 100},
    {"MGL0", 90.92224, 0.8736, -33.5347, 1.0, 0.0, 0.0, 10},
    {"MGR0", -90.92224, 0.8736, -33.5347, -1.0, 0.0, 0.0, 10},
});

/// 32 MEG sensors with position and direction.
inline constexpr std::array<MEG_STD_POS, 32> g_aMegStd32 = std::to_array<MEG_STD_POS>({
    {"MLFP1", 30.0, 70.84885, -104.70795, 0.301, -0.068, -0.948, 100},
    {"MRFP2", -30.0, 71.47003, -105.19913, -0.7185896, -0.135465, -0.682112, 100},
    {"MLF7", 72.69882, 56.2587, -55.7489, -0.558353, 0.046910094084617, 0.828276138304767, 100},
    {"MLF3", 56.33652, 111.80359, -59.12506, 0.49352212301636, -0.063363, -0.867422, 100},
    {"MZFZ", 5.10071, 134.61945, -63.15979, 0.0870658425303876, 0.560139486405403, -0.8238, 100},
    {"MRF4", -53.79196, 115.24002, -59.14627, 0.686138327618361, -0.393667598329074, 0.61175159779023, 100},
    {"MRF8", -70.76645, 58.79044, -58.23456, -0.8898, 0.179021257695174, -0.419761608865798, 100},
    {"MLFT7", 72.69882, 56.2587, -35.7489, -0.558353, 0.046910094084617, 0.828276138304767, 100},
    {"MLFC3", 56.33652, 111.80359, -39.12506, 0.49352212301636, -0.063363, -0.867422, 100},
    {"MZFCZ", 5.10071, 134.61945, -33.15979, 0.0870658425303876, 0.560139486405403, -0.82381022986727, 100},
    {"MRFC4", -53.79196, 115.24002, -39.14627, 0.686138327618361, -0.393667598329074, 0.61175159779023, 100},
    {"MRFT8", -70.76645, 58.79044, -38.23456, -0.8898, 0.179021257695174, -0.419761608865798, 100},
    {"MLT7", 84.14825, 44.76944, -2.4704, 0.835628484552876, 0.480029873217394, -0.26701377609172, 100},
    {"MLC3", 73.39218, 117.82791, 7.74994, -0.0146875730851347, 0.915750282274253, -0.401479, 100},
    {"MZCZ", 7.43439, 151.83792, 14.09561, -0.771968, 0.631155627990509, -0.075548, 100},
    {"MRC4", -69.77783, 120.59814, 11.16196, -0.727165, -0.267886, -0.63203, 100},
    {"MRT8", -84.14825, 44.76944, -2.4704, 0.923205, -0.06497, -0.378774, 100},
    {"MLTP7", 86.19843, 44.54773, -2.21771, 0.979413, 0.1216, 0.16112, 100},
    {"MLCP3", 58.04962, 90.87418, 70.72357, 0.99291, -0.01193, -0.118267, 100},
    {"MZCPZ", 3.71292, 111.62399, 80.86029, 0.610764, 0.73475, 0.29514, 100},
    {"MRCP4", -52.92053, 91.36627, 72.34375, -0.15904, 0.6623, 0.7321, 100},
    {"MRTP8", -83.14825, 44.76944, -2.4704, -0.77855, 0.328219, 0.534907, 100},
    {"MLP7", 86.19843, 44.54773, 60.21771, 0.043583, 0.2174, 0.97509, 100},
    {"MLP3", 58.04962, 90.87418, 80.72357, -0.43961, 0.23958, 0.86564, 100},
    {"MZPZ", 3.71292, 111.62399, 82.86029, -0.43961, 0.23958, 0.86564, 100},
    {"MRP4", -52.92053, 91.36627, 82.34375, -0.43961, 0.23958, 0.86564, 100},
    {"MRP8", -83.14825, 44.76944, 80.4704, -0.43961, 0.23958, 0.86564, 100},
    {"MLO1", 26.81717, 36.34674, 96.58279, -0.43961, 0.23958, 0.86564, 100},
    {"MZOZ", 0.81717, 36.34674, 96.58279, -0.43961, 0.23958, 0.86564, 100},
    {"MRO2", -26.47095, 38.18619, 96.38092, -0.43961, 0.23958, 0.86564, 100},
    {"MLA1", 90.92224, 0.8736, -33.5347, 1.0, 0.0, 0.0, 301},
    {"MRA2", -90.92224, 0.8736, -33.5347, -1.0, 0.0, 0.0, 301},
});
// clang-format on

/// The index of this name's row, compared exactly (the tables are in upper case); the table's size if there is none.
constexpr std::size_t findEegStdRow(std::span<const EEG_STD_POS> table, std::u16string_view name)
{
    std::size_t i = 0;
    while (i < table.size() && !std::ranges::equal(table[i].m_strElectrodeName, name))
        ++i;
    return i;
}

/// The row of this name; null if there is none.
constexpr const EEG_STD_POS* findEegStdPos(std::span<const EEG_STD_POS> table, std::u16string_view name)
{
    const std::size_t i = findEegStdRow(table, name);
    return i < table.size() ? &table[i] : nullptr;
}

namespace detail {

// The named rows of g_aEegStd21; a name that isn't there fails the build, since `at` can't raise while compiling.
template <std::size_t N>
consteval std::array<EEG_STD_POS, N> rowsOfEegStd21(const std::u16string_view (&names)[N])
{
    std::array<EEG_STD_POS, N> rows;
    for (std::size_t i = 0; i < N; ++i)
        rows[i] = g_aEegStd21.at(findEegStdRow(g_aEegStd21, names[i]));
    return rows;
}

} // namespace detail

/// Rows of g_aEegStd21 for ten electrodes.
inline constexpr std::array<EEG_STD_POS, 10> g_aEegStd10 =
    detail::rowsOfEegStd21({u"FP1", u"FP2", u"C3", u"C4", u"P3", u"P4", u"O1", u"O2", u"A1", u"A2"});

/// Rows of g_aEegStd21 for 18 electrodes.
inline constexpr std::array<EEG_STD_POS, 18> g_aEegStd18 =
    detail::rowsOfEegStd21({u"FP1", u"FP2", u"F3", u"F4", u"F7", u"F8", u"T3", u"T4", u"T5", u"T6", u"C3", u"C4", u"P3",
                            u"P4", u"O1", u"O2", u"A1", u"A2"});

/// All rows of g_aEegStd21 in another order.
inline constexpr std::array<EEG_STD_POS, 21> g_aEegStd21b =
    detail::rowsOfEegStd21({u"FP1", u"FP2", u"F3", u"F4", u"F7", u"F8", u"T3", u"T4", u"T5", u"T6", u"C3",
                            u"C4",  u"P3",  u"P4", u"O1", u"O2", u"FZ", u"CZ", u"PZ", u"A1", u"A2"});

/// Kinds of signal.
inline constexpr std::array<std::string_view, 7> g_aSignalKind = {"EEG", "EKG", "EMG", "MEG", "MKG", "MMG", "FMEG"};

/// Families of acquisition devices.
inline constexpr std::array<std::string_view, 7> g_aDeviceFamily = {"Virtual MEG/EEG", "OpenBci EEGc",   "OpenBci EEGw",
                                                                    "QuSpin OPMs",     "NI9205cDAQ9171", "Velmar OPMs",
                                                                    "Not Implemented"};

/// Acquisition devices.
inline constexpr std::array<std::string_view, 15> g_aDeviceModel = {"OPM21 vMEG",
                                                                    "Wireless21 vEEG",
                                                                    "OpenBci8c Cyton EEG",
                                                                    "OpenBci16c Daisy EEG",
                                                                    "OpenBci8w Cyton EEG",
                                                                    "OpenBci16w Daisy EEG",
                                                                    "OpenBci4w Ganglion EEG",
                                                                    "QuSpin Magnetometers",
                                                                    "Velmar Magnetometers",
                                                                    "NI9205cDAQ9171 EEG32 Unipolar",
                                                                    "NI9205cDAQ9171 EEG16 Bipolar",
                                                                    "NI9205cDAQ9171 MEG32",
                                                                    "NI9205cDAQ9171 MEG16",
                                                                    "WIFI Data Streamer",
                                                                    "Unimplemented"};

/// Microvolts per count of a 24-bit converter at a gain of 24, about 0.02235. Worked out in double, rounded once.
inline constexpr float g_fScaleAdcMicroVolt = static_cast<float>(4.5 / ((1 << 23) - 1) / 24.0 * 1e6);

/// Acceleration per count, 0.000125.
inline constexpr float g_fScaleAccel = static_cast<float>(0.002 / (1 << 4));

} // namespace megset
