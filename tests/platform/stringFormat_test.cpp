// Formatting: the library's own message formats, printf as the reference for numbers, and independence of the locale.

#include "megset/platform/CString.h"
#include "megset/platform/stringFormat.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace megset::stringFormat_test {

namespace {

using megset::CString;

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

template <class... Arguments>
std::string shown(const CString& format, const Arguments&... arguments)
{
    return CString::formatted(format, arguments...).toUtf8();
}

template <class T>
std::string printed(const std::string& format, T value)
{
    std::vector<char> buffer(8192);
    const int length = std::snprintf(buffer.data(), buffer.size(), format.c_str(), value);
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

// Sets a locale of the system for the life of the object.
class ScopedLocale
{
public:
    explicit ScopedLocale(const char* name) : m_before(std::setlocale(LC_ALL, nullptr))
    {
        m_isSet = std::setlocale(LC_ALL, name) != nullptr;
    }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;
    ~ScopedLocale() { std::setlocale(LC_ALL, m_before.c_str()); }
    bool isSet() const { return m_isSet; }

private:
    std::string m_before;
    bool m_isSet = false;
};

const std::int64_t big = 123456789012345;

void expectTrialNames()
{
    const CString folder("C:\\data\\");
    const CString name("Grün");
    EXPECT_EQ(shown("%d", 7), "7");
    EXPECT_EQ(shown("%s", name), "Grün");
    EXPECT_EQ(shown("%s%s", folder, name), "C:\\data\\Grün");
    EXPECT_EQ(shown("%s%d", name, -1), "Grün-1");
    EXPECT_EQ(shown("%d%s", 12, name), "12Grün");
    EXPECT_EQ(shown("Trial%d", 0), "Trial0");
    EXPECT_EQ(shown("ImportTrial%d", 3), "ImportTrial3");
    EXPECT_EQ(shown("%sTrial%d", name, 3), "GrünTrial3");
    EXPECT_EQ(shown("%s%sTrial%d.trl", folder, name, 12), "C:\\data\\GrünTrial12.trl");
    EXPECT_EQ(shown("%s%sDragDropTrial%d.trl", folder, name, 12), "C:\\data\\GrünDragDropTrial12.trl");
    EXPECT_EQ(shown("VirtualTrial%d%s.trl", 2, "b"), "VirtualTrial2b.trl");
    EXPECT_EQ(shown("%s%s.trl", folder, name), "C:\\data\\Grün.trl");
    EXPECT_EQ(shown("%s%s%s.trl", folder, name, "c"), "C:\\data\\Grünc.trl");
    EXPECT_EQ(shown("%s%s_%s.trl", folder, name, "c"), "C:\\data\\Grün_c.trl");
    EXPECT_EQ(shown("%s%d.trl", name, 4), "Grün4.trl");
    EXPECT_EQ(shown("%s%d%s.trl", folder, 4, name), "C:\\data\\4Grün.trl");
    EXPECT_EQ(shown("%s%d.txt", name, 4), "Grün4.txt");
}

void expectChannelNames()
{
    EXPECT_EQ(shown("Vc2EEG_%s", CString("FP1")), "Vc2EEG_FP1");
    EXPECT_EQ(shown("Vc2iEEG_%s", CString("FP1")), "Vc2iEEG_FP1");
    EXPECT_EQ(shown("ScnTrig%d", 255), "ScnTrig255");
    EXPECT_EQ(shown("Coil %d", 1), "Coil 1");
    EXPECT_EQ(shown("ChnID(0->%d)", 127), "ChnID(0->127)");
    EXPECT_EQ(shown("%d(%d)", 3, 4), "3(4)");
    EXPECT_EQ(shown("%d->%d;", 3, 41), "3->41;");
    EXPECT_EQ(shown("%d->%?", 3), "3->?");
    EXPECT_EQ(shown("%c%c%c%c", 'G', '1', 'O', 'I'), "G1OI");
    EXPECT_EQ(shown("%c%c%c%c", 0x47, 0x33, 0x42, 0xE4), "G3Bä");
    EXPECT_EQ(shown("(%)"), "()");
}

void expectFileMessages()
{
    const CString file("D:\\a b\\trial.trl");
    EXPECT_EQ(shown("Find file:%s error \n", file), "Find file:D:\\a b\\trial.trl error \n");
    EXPECT_EQ(shown("Find trial file%s ?", file), "Find trial fileD:\\a b\\trial.trl ?");
    EXPECT_EQ(shown("Set directory error:%s error \n", file), "Set directory error:D:\\a b\\trial.trl error \n");
    EXPECT_EQ(shown("Would like to find the file%s", file), "Would like to find the fileD:\\a b\\trial.trl");
    EXPECT_EQ(shown("Would like to find the file%s %s", "a", "b"), "Would like to find the filea b");
    EXPECT_EQ(shown("File save error:%s %d, would you like to save as a new file?", file, 9),
              "File save error:D:\\a b\\trial.trl 9, would you like to save as a new file?");
    EXPECT_EQ(shown("%s \n", "x"), "x \n");
    EXPECT_EQ(shown(" %s ", "x"), " x ");
    EXPECT_EQ(shown("%d \n", 17), "17 \n");
    EXPECT_EQ(shown("%d \n", std::uint32_t{4000000000U}), "-294967296 \n");
}

void expectSampleMessages()
{
    EXPECT_EQ(shown("Samples: %I64d ", big), "Samples: 123456789012345 ");
    EXPECT_EQ(shown("Size:%I64d->%I64d", big, std::int64_t{-1}), "Size:123456789012345->-1");
    EXPECT_EQ(shown("SR:%08f->%08f", 1.5, 12000.0), "SR:1.500000->12000.000000");
    EXPECT_EQ(shown("SR:%08f->%08f", 0.25, -0.5), "SR:0.250000->-0.500000");
    EXPECT_EQ(shown("%08f", 0.0), "0.000000");
    EXPECT_EQ(shown("%010f", -0.5), "-00.500000");
    EXPECT_EQ(shown("New SR(<%0.1f", 600.05), "New SR(<600.0");
    EXPECT_EQ(shown("Sample has been changed: %I64d->%I64d, Please re-sample and check the data", 1200, big),
              "Sample has been changed: 1200->123456789012345, Please re-sample and check the data");
    EXPECT_EQ(shown("Resampled data size (%I64d) is too small", std::int64_t{0}),
              "Resampled data size (0) is too small");
    EXPECT_EQ(shown("Re-sampling factor (%I64d) cannot be larger than half of the sampling rate (%I64d)",
                    std::int64_t{601}, std::int64_t{1200}),
              "Re-sampling factor (601) cannot be larger than half of the sampling rate (1200)");
    EXPECT_EQ(shown("Pre-Trigger points (%I64d) should be smaller than sample (%I64d)", big, std::int64_t{5}),
              "Pre-Trigger points (123456789012345) should be smaller than sample (5)");
    EXPECT_EQ(shown("Pre-Trigger points (%I64d) should be larger than 0", std::int64_t{-3}),
              "Pre-Trigger points (-3) should be larger than 0");
    EXPECT_EQ(shown("Data error: sample%I64d channel:%d!", std::int64_t{99}, 4), "Data error: sample99 channel:4!");
    EXPECT_EQ(shown("Channel number does not match: %d->%d ! Continue?", 10, 11),
              "Channel number does not match: 10->11 ! Continue?");
    EXPECT_EQ(shown("Channel ID must be in the range of 0-%d!", 31), "Channel ID must be in the range of 0-31!");
}

void expectSpectrumMessages()
{
    EXPECT_EQ(shown("X->Time %I64d   Y-Frequency %I64d \n", std::int64_t{1}, std::int64_t{2}),
              "X->Time 1   Y-Frequency 2 \n");
    EXPECT_EQ(shown("Spectral time range (%I64d %I64d) frequency range (%I64d %I64d)", std::int64_t{1}, std::int64_t{2},
                    std::int64_t{3}, std::int64_t{4}),
              "Spectral time range (1 2) frequency range (3 4)");
    EXPECT_EQ(shown("  frequency range (%I64d %I64d)", std::int64_t{3}, std::int64_t{4}), "  frequency range (3 4)");
    EXPECT_EQ(shown("Low-frequency is smaller than %0.16f", 0.0000000000000001),
              "Low-frequency is smaller than 0.0000000000000001");
    EXPECT_EQ(shown("Sampling rate is smaller than %0.16f", 0.1), "Sampling rate is smaller than 0.1000000000000000");
    EXPECT_EQ(shown("Frequency power step is smaller than %0.16f", 1.0),
              "Frequency power step is smaller than 1.0000000000000000");
    EXPECT_EQ(shown("Frequency linear step is smaller than %0.16f", 1.0 / 3.0),
              "Frequency linear step is smaller than 0.3333333333333333");
}

void expectValueTexts()
{
    EXPECT_EQ(shown("%0.0ffT", 999.5), "1000fT"); // ties go to the even neighbour
    EXPECT_EQ(shown("%0.0ffT", -12.4), "-12fT");
    EXPECT_EQ(shown("%0.2fpT", 1.005), "1.00pT"); // the double nearest 1.005 lies below it
    EXPECT_EQ(shown("%0.0fuV", 0.5), "0uV");
    EXPECT_EQ(shown("%0.0fuV", -0.25), "-0uV");
    EXPECT_EQ(shown("%0.2fmV", 2.5), "2.50mV");
    EXPECT_EQ(shown("%.4f", 12.34567), "12.3457");
    EXPECT_EQ(shown("%f ", 1e15), "1000000000000000.000000 ");
    EXPECT_EQ(shown("%.32f \n", 0.1), "0.10000000000000000555111512312578 \n");
    EXPECT_EQ(shown("%f      %f      %f    %f ", -1.0, 0.5, 2.25, 1e-7),
              "-1.000000      0.500000      2.250000    0.000000 ");
    EXPECT_EQ(shown(" %s      %d      %I64d      %f      ", "MEG", 1, big, 0.5),
              " MEG      1      123456789012345      0.500000      ");
    EXPECT_EQ(shown(" %s %d %d %I64d %I64d %f %f", "n", 1, 2, big, std::int64_t{4}, 5.0, 6.5),
              " n 1 2 123456789012345 4 5.000000 6.500000");
    EXPECT_EQ(shown(" %f %f %f %f %f %f ", 1.0, 2.0, 3.0, 4.0, 5.0, 6.0),
              " 1.000000 2.000000 3.000000 4.000000 5.000000 6.000000 ");
    EXPECT_EQ(shown("Data points:%I64d (Min %.9f; Mean %.9f;  Max %.9f; MaxAbsValue %.9f \n)", std::int64_t{10}, -1.5,
                    0.123456789123, 2.0, 2.0),
              "Data points:10 (Min -1.500000000; Mean 0.123456789;  Max 2.000000000; MaxAbsValue 2.000000000 \n)");
    EXPECT_EQ(shown("MEG:%d, EEG:%d, Class:%d data:%d channels:%d,time:%I64d, Freq:%I64d, Rang(%0.4f~%0.4f,mean:%0.4f)",
                    1, 0, 2, 3, 151, big, std::int64_t{50}, -0.00004, 1.23456, 0.5),
              "MEG:1, EEG:0, Class:2 data:3 channels:151,time:123456789012345, Freq:50, "
              "Rang(-0.0000~1.2346,mean:0.5000)");
}

void expectSensorMessages()
{
    EXPECT_EQ(shown("Coil_Position: %f %f %f ", 0.0, -1.0, 2.5), "Coil_Position: 0.000000 -1.000000 2.500000 ");
    EXPECT_EQ(shown("Electrode_Position: %f %f %f ", 0.0, -1.0, 2.5),
              "Electrode_Position: 0.000000 -1.000000 2.500000 ");
    EXPECT_EQ(shown("Electrode array size may be out of range in typical EEG %f (1-210 mm)! Continue?", 250.0),
              "Electrode array size may be out of range in typical EEG 250.000000 (1-210 mm)! Continue?");
    EXPECT_EQ(shown("Cannot find standard position for %s ", "X9"), "Cannot find standard position for X9 ");
    EXPECT_EQ(shown("Find standard position for %s error", "X9"), "Find standard position for X9 error");
    EXPECT_EQ(shown("Stim_trig: %s %s \n", "STI", "1"), "Stim_trig: STI 1 \n");
    EXPECT_EQ(shown("DataName:%s Trial: %d SamplingRate: %f \n", "d", 2, 4000.0),
              "DataName:d Trial: 2 SamplingRate: 4000.000000 \n");
    EXPECT_EQ(shown("%s (Trials:%I64d Triggers:%I64d", "d", std::int64_t{3}, std::int64_t{40}),
              "d (Trials:3 Triggers:40");
    EXPECT_EQ(shown("Contact signed to same channel ID %I64d; Unsigned SEEG Contacts %I64d; Overlapped Contacts %I64d",
                    std::int64_t{1}, std::int64_t{0}, std::int64_t{2}),
              "Contact signed to same channel ID 1; Unsigned SEEG Contacts 0; Overlapped Contacts 2");
}

void expectEveryMessage()
{
    expectTrialNames();
    expectChannelNames();
    expectFileMessages();
    expectSampleMessages();
    expectSpectrumMessages();
    expectValueTexts();
    expectSensorMessages();
}

// A random value whose size is random too, so that short and long ones are equally likely.
template <class T, class Random>
T randomInteger(Random& random)
{
    const std::uint64_t bits = random() >> (random() % 64);
    return static_cast<T>(random() % 2 == 0 ? bits : ~bits);
}

template <class Random>
double randomDouble(Random& random)
{
    switch (random() % 4) {
    case 0:
        return std::bit_cast<double>(random()); // any exponent, infinities and NaN
    case 1:
        return static_cast<double>(randomInteger<std::int64_t>(random)) / 1000.0;
    case 2:
        return static_cast<double>(static_cast<std::int64_t>(random() % 2000) - 1000) / 8.0; // many ties
    default:
        return static_cast<double>(random()) * 1e-19 - 0.9;
    }
}

// "%" with random flags out of `flags`, width and precision.
template <class Random>
std::string randomPercent(Random& random, const std::string& flags, unsigned precisions)
{
    std::string format = "%";
    for (const char flag : flags)
        if (random() % 3 == 0)
            format += flag;
    if (random() % 2 == 0)
        format += std::to_string(1 + random() % 40);
    if (random() % 2 == 0)
        format += "." + (random() % 8 == 0 ? std::string() : std::to_string(random() % precisions));
    return format;
}

const int rounds = 4000;

TEST(StringFormat, ShowsEveryMessageOfTheLibrary)
{
    expectEveryMessage();
}

TEST(StringFormat, ShowsTheSameTextsUnderALocaleWithADecimalComma)
{
    const ScopedLocale locale("de_DE.UTF-8");
    ASSERT_TRUE(locale.isSet()) << "the locale de_DE.UTF-8 is missing: make it with localedef and let LOCPATH name it";
    ASSERT_EQ(printed("%.1f", 1.5), "1,5") << "the locale de_DE.UTF-8 has no decimal comma, so this test would be void";
    expectEveryMessage();
    EXPECT_EQ(shown("%e %G", 1234.5, 0.5), "1.234500e+03 0.5");
    EXPECT_EQ(shown("%s", 0.5), "0.5");
}

TEST(StringFormat, ShowsSignedIntegersAsPrintfDoes)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < rounds; ++i) {
        const std::string percent = randomPercent(random, "-+ 0", 40);
        const auto value = randomInteger<std::int32_t>(random);
        const auto wide = randomInteger<std::int64_t>(random);
        EXPECT_EQ(shown(percent + "d", value), printed(percent + "d", value)) << percent << value;
        EXPECT_EQ(shown(percent + "i", value), printed(percent + "i", value)) << percent << value;
        EXPECT_EQ(shown(percent + "I64d", wide), printed(percent + "ld", wide)) << percent << wide;
        EXPECT_EQ(shown(percent + "lld", wide), printed(percent + "ld", wide)) << percent << wide;
    }
}

TEST(StringFormat, ShowsUnsignedIntegersAsPrintfDoes)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < rounds; ++i) {
        const std::string decimal = randomPercent(random, "-0", 40) + "u";
        const auto value = randomInteger<std::uint32_t>(random);
        EXPECT_EQ(shown(decimal, value), printed(decimal, value)) << decimal << " " << value;
        for (const char letter : {'x', 'X', 'o'}) {
            const std::string percent = randomPercent(random, "-0#", 40);
            const auto wide = randomInteger<std::uint64_t>(random);
            EXPECT_EQ(shown(percent + letter, value), printed(percent + letter, value)) << percent << letter << value;
            EXPECT_EQ(shown(percent + "I64" + letter, wide), printed(percent + "l" + letter, wide)) << percent << wide;
        }
    }
}

TEST(StringFormat, ShowsDoublesAsPrintfDoes)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < rounds; ++i) {
        const double value = randomDouble(random);
        for (const char letter : {'f', 'F', 'e', 'E', 'g', 'G'}) {
            const std::string format = randomPercent(random, "-+ 0", i % 20 == 0 ? 1100 : 40) + letter;
            EXPECT_EQ(shown(format, value), printed(format, value)) << format << " " << value;
        }
    }
}

TEST(StringFormat, ShowsTheLimitsAsPrintfDoes)
{
    const std::vector<double> values = {0.0,
                                        -0.0,
                                        infinite,
                                        -infinite,
                                        notANumber,
                                        -notANumber,
                                        std::numeric_limits<double>::max(),
                                        std::numeric_limits<double>::lowest(),
                                        std::numeric_limits<double>::min(),
                                        std::numeric_limits<double>::denorm_min(),
                                        0.5,
                                        1.5,
                                        2.5,
                                        9.995,
                                        999999.5};
    const std::vector<std::string> formats = {"%f",  "%.0f",   "%.9f",   "%0.16f", "%.32f", "%08f",   "%+f",
                                              "% f", "%-12f|", "%+012f", "%F",     "%e",    "%.0e",   "%g",
                                              "%G",  "%.0g",   "%.17g",  "%20.3E", "%.0F",  "%.1100f"};
    for (const double value : values)
        for (const std::string& format : formats)
            EXPECT_EQ(shown(format, value), printed(format, value)) << format << " " << value;
    for (const std::int64_t value : {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
                                     std::int64_t{0}, std::int64_t{-1}})
        for (const char* format : {"%ld", "%lu", "%lx", "%lo", "%#lo", "%.0ld", "%+.0ld", "%05.0ld", "%#.0lo"})
            EXPECT_EQ(shown(format, value), printed(format, value)) << format << " " << value;
}

TEST(StringFormat, ShowsInfinityAndNanWithoutLeadingZeros)
{
    EXPECT_EQ(shown("%f", infinite), "inf");
    EXPECT_EQ(shown("%08f", -infinite), "    -inf");
    EXPECT_EQ(shown("%08f", notANumber), "     nan");
    EXPECT_EQ(shown("%-8F|", infinite), "INF     |");
    EXPECT_EQ(shown("%.9f", infinite), "inf");
}

TEST(StringFormat, ShowsTextsWithWidthAndPrecisionInCodeUnits)
{
    EXPECT_EQ(shown("%8s|", "abc"), "     abc|");
    EXPECT_EQ(shown("%-8s|", CString("abc")), "abc     |");
    EXPECT_EQ(shown("%.2s|", "abc"), "ab|");
    EXPECT_EQ(shown("%5.1s|", "abc"), "    a|");
    EXPECT_EQ(shown("%.0s|", "abc"), "|");
    EXPECT_EQ(shown("%08s", "abc"), "     abc");
    EXPECT_EQ(shown("%3s", "äöüß"), "äöüß");
    EXPECT_EQ(shown("%5s", "äöü"), "  äöü");
    EXPECT_EQ(shown("%hs %ls %S", "a", u"b", CString("c")), "a b c");
}

TEST(StringFormat, TakesTextsOfEveryKind)
{
    const std::string narrow = "ä";
    const std::u16string wide = u"ä";
    EXPECT_EQ(shown("%s%s%s", narrow, std::string_view(narrow), narrow.c_str()), "äää");
    EXPECT_EQ(shown("%s%s%s", wide, std::u16string_view(wide), wide.c_str()), "äää");
    EXPECT_EQ(shown("%s", CString(narrow)), "ä");
    EXPECT_EQ(shown("%s", "\xFF"), "\uFFFD");
}

TEST(StringFormat, TakesANullPointerForAnEmptyText)
{
    const char* narrow = nullptr;
    const char16_t* wide = nullptr;
    EXPECT_EQ(shown("[%s%s]", narrow, wide), "[]");
    EXPECT_EQ(shown("[%2s]", narrow), "[  ]");
}

TEST(StringFormat, ShowsCharactersByTheirCodeUnit)
{
    EXPECT_EQ(shown("%c", 'A'), "A");
    EXPECT_EQ(shown("%c", u'€'), "€");
    EXPECT_EQ(shown("%c", 0x20AC), "€");
    EXPECT_EQ(shown("%c", static_cast<char>(0xE4)), "ä");
    EXPECT_EQ(shown("%3c|%-3c|", 'A', 'B'), "  A|B  |");
    EXPECT_EQ(CString::formatted("%c", 0).GetLength(), 1);
}

TEST(StringFormat, ShowsNothingForAMissingArgument)
{
    EXPECT_EQ(shown("%d->%d", 3), "3->");
    EXPECT_EQ(shown("[%s]"), "[]");
    EXPECT_EQ(shown("[%8.3f]"), "[]");
    EXPECT_EQ(shown("%*d|", 5), "|");
    EXPECT_EQ(shown("%*.*f|"), "|");
}

TEST(StringFormat, LeavesOutArgumentsThatTheFormatDoesNotName)
{
    EXPECT_EQ(shown("%d", 1, 2, "three"), "1");
    EXPECT_EQ(shown("plain", 1), "plain");
    EXPECT_EQ(shown("", 1), "");
}

TEST(StringFormat, ShowsAnUnknownConversionWithoutThePercentSign)
{
    EXPECT_EQ(shown("%d->%?", 3), "3->?");
    EXPECT_EQ(shown("%?%d", 3), "?3"); // and leaves the argument to the next conversion
    EXPECT_EQ(shown("%5y|"), "y|");
    EXPECT_EQ(shown("%I5"), "I5");
    EXPECT_EQ(shown("%ä"), "ä");
}

TEST(StringFormat, KeepsAPercentSignWithNothingBehindIt)
{
    EXPECT_EQ(shown("100%"), "100%");
    EXPECT_EQ(shown("%-08.3", 5), "%");
    EXPECT_EQ(shown("%I64", 5), "%");
    EXPECT_EQ(shown("%%"), "%");
    EXPECT_EQ(shown("%d%%", 5), "5%");
    EXPECT_EQ(shown("%%d", 5), "%d");
}

TEST(StringFormat, GoesOnBehindAZeroInTheFormat)
{
    const CString format(std::u16string_view(u"a\0%\0%d", 6));
    EXPECT_EQ(CString::formatted(format, 7).view(), std::u16string_view(u"a\0%\0"
                                                                        u"7",
                                                                        5));
}

TEST(StringFormat, ShowsATextForANumberConversion)
{
    EXPECT_EQ(shown("%d", "seven"), "seven");
    EXPECT_EQ(shown("%8.3f|", CString("x")), "       x|");
    EXPECT_EQ(shown("%08d|", "x"), "       x|");
    EXPECT_EQ(shown("%x%u%c%e", "a", "b", "cd", "e"), "abcde");
}

TEST(StringFormat, ConvertsNumbersOfTheOtherKind)
{
    EXPECT_EQ(shown("%f", 3), "3.000000");
    EXPECT_EQ(shown("%.1f", big), "123456789012345.0");
    EXPECT_EQ(shown("%d", 3.99), "3");
    EXPECT_EQ(shown("%d", -3.99), "-3");
    EXPECT_EQ(shown("%I64d", 1e300), "9223372036854775807");
    EXPECT_EQ(shown("%I64d", -1e300), "-9223372036854775808");
    EXPECT_EQ(shown("%d", notANumber), "0");
    EXPECT_EQ(shown("%s", -7), "-7");
    EXPECT_EQ(shown("%s", std::uint32_t{4000000000U}), "4000000000");
    EXPECT_EQ(shown("%s", 0.25), "0.25");
    EXPECT_EQ(shown("%.2f", 0.125F), "0.12");
}

TEST(StringFormat, FoldsAnUnsignedIntUnlessTheMarkSays64Bits)
{
    EXPECT_EQ(shown("%d", std::uint32_t{4000000000U}), "-294967296");
    EXPECT_EQ(shown("%I32d", std::uint32_t{4000000000U}), "-294967296");
    EXPECT_EQ(shown("%I64d", std::uint32_t{4000000000U}), "4000000000");
    EXPECT_EQ(shown("%lld", std::uint32_t{4000000000U}), "4000000000");
    EXPECT_EQ(shown("%u", -1), "4294967295");
    EXPECT_EQ(shown("%x", std::int64_t{-1}), "ffffffffffffffff");
    EXPECT_EQ(shown("%u", std::int16_t{-1}), "65535");
    EXPECT_EQ(shown("%d", std::uint16_t{65535}), "65535");
}

TEST(StringFormat, ShowsTruthValuesAndEnumerationsAsNumbers)
{
    enum Plain
    {
        five = 5
    };
    enum class Scoped : std::int64_t
    {
        below = -1
    };
    EXPECT_EQ(shown("%d %d %d %I64d", true, false, five, Scoped::below), "1 0 5 -1");
}

TEST(StringFormat, TakesWidthAndPrecisionFromArguments)
{
    EXPECT_EQ(shown("%*d|", 5, 42), "   42|");
    EXPECT_EQ(shown("%*d|", -5, 42), "42   |");
    EXPECT_EQ(shown("%.*f", 2, 1.005), "1.00");
    EXPECT_EQ(shown("%*.*f|", 8, 1, 2.25), "     2.2|");
    EXPECT_EQ(shown("%.*f", -3, 2.0), "2.000000"); // a negative precision counts as none
}

TEST(StringFormat, BoundsWidthsAndPrecisions)
{
    EXPECT_EQ(shown("%5000d", 1).size(), 4096U);
    EXPECT_EQ(shown("%-99999999999999999999s", "a").size(), 4096U);
    EXPECT_EQ(shown("%*d", std::numeric_limits<int>::max(), 1).size(), 4096U);
    EXPECT_EQ(shown("%*d|", std::numeric_limits<int>::min(), 1).size(), 4097U);
    EXPECT_EQ(shown("%.99999999999999999999d", 1).size(), 1100U);
    EXPECT_EQ(shown("%.2000f", 1.0).size(), 2U + 1100U);
    EXPECT_EQ(shown("%.*f", std::numeric_limits<int>::max(), -std::numeric_limits<double>::max()).size(),
              1U + 309U + 1U + 1100U);
    EXPECT_EQ(shown("%.2000e", 1.0).size(), 2U + 1100U + 4U);
    EXPECT_EQ(shown("%s", std::string(5000, 'a')).size(), 5000U); // no bound on the text itself
}

} // namespace

} // namespace megset::stringFormat_test
