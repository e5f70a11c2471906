#include "megset/records/recording/CMEGRecordInfozkPro.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/ScriptedHost.h"
#include "tests/kit/SilentHost.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/layoutPage.h"
#include "tests/kit/memoryArchive.h"
#include "tests/records/recording/filledRecordInfo.h"
#include "tests/records/recording/recordInfoBytes.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGRecordInfozkPro_test {
namespace {

using ::testing::ElementsAre;

constexpr const char* otherRecord = "The opened file is not recording information file or corrupted!";
constexpr const char* wrongVersion = "Wrong recording file format!!?";

void addCoefficients(CMEGRecordInfozkProzk& info)
{
    CCoefficientDatazk record;
    record.m_strCoefSensorName = "MLC11";
    record.m_nCoefType = 0x47314252;
    info.getSensorCoefficientzk()->addCoefficientsData(1, &record);
}

// Without coefficients, whose copies are no equals.
CMEGRecordInfozkProzk filledInfo()
{
    CMEGRecordInfozkProzk info;
    fillRecordInfo(info);
    return info;
}

std::vector<std::byte> stored(CMEGRecordInfozkProzk& info)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(info.serialize(ar), 1); });
}

int loaded(CMEGRecordInfozkProzk& info, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return info.serialize(*archive);
}

ByteBuilder basicSection()
{
    ByteBuilder bytes = basicWords();
    bytes.wide("SENSORCOEFFICIENTZK").i32(20080104).i32(0).i32(0).i32(0);
    return bytes.append(basicValues());
}

ByteBuilder triggerSection()
{
    ByteBuilder bytes;
    for (int word = 35; word <= 46; ++word)
        bytes.i32(word);
    return bytes;
}

ByteBuilder beginning(std::int32_t version)
{
    return ByteBuilder().wide("MEGRECORDINFO").i32(version);
}

void addOldestSections(ByteBuilder& bytes)
{
    bytes.append(basicSection()).append(acquisitionSection()).append(triggerSection());
    bytes.append(filterSection()).append(databaseSection());
}

ByteBuilder wholeFile(std::int32_t version)
{
    ByteBuilder bytes = beginning(version);
    bytes.append(rawSection());
    addOldestSections(bytes);
    return bytes.append(tail());
}

TEST(RecordInfo, WritesTheNewestVersionSectionBySection)
{
    CMEGRecordInfozkProzk info = filledInfo();
    EXPECT_TRUE(sameBytes(stored(info), wholeFile(20160320)));
}

TEST(RecordInfo, TheTwoNewestVersionsReadAlike)
{
    for (const std::int32_t version : {20140513, 20160320}) {
        CMEGRecordInfozkProzk info;
        EXPECT_EQ(loaded(info, wholeFile(version).bytes()), 1);
        EXPECT_EQ(info, filledInfo()) << version;
    }
}

TEST(RecordInfo, Version20120419HasNoTail)
{
    ByteBuilder bytes = beginning(20120419);
    bytes.append(rawSection());
    addOldestSections(bytes);
    CMEGRecordInfozkProzk info;
    info.m_nTailWordRec1 = 5;
    CMEGRecordInfozkProzk expected = filledInfo();
    expected.m_nTailWordRec1 = 5;
    expected.m_nTailWordRec2 = 0;
    expected.m_dTailValueRec = {};
    EXPECT_EQ(loaded(info, bytes.bytes()), 1);
    EXPECT_EQ(info, expected);
}

TEST(RecordInfo, Version20090803LeavesTheRawFieldsAsTheyWere)
{
    ByteBuilder bytes = beginning(20090803);
    addOldestSections(bytes);
    CMEGRecordInfozkProzk info;
    info.m_nRawTotalSample = 12;
    info.m_nResampleFactor = 4;
    LoadingArchive archive(bytes);
    EXPECT_EQ(info.serialize(*archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    EXPECT_EQ(info.m_nRawTotalSample, 12);
    EXPECT_EQ(info.m_nRawPreTrigPts, 0);
    EXPECT_EQ(info.m_nResampleFactor, 4);
    EXPECT_EQ(info.m_nRecTotalSample, 1000);
    EXPECT_EQ(info.m_strDbText[40], "t41");
}

TEST(RecordInfo, CoefficientsComeBackWithIt)
{
    CMEGRecordInfozkProzk info = filledInfo();
    addCoefficients(info);
    CMEGRecordInfozkProzk again;
    EXPECT_EQ(loaded(again, stored(info)), 1);
    EXPECT_EQ(again, info);
    EXPECT_EQ(again.getSensorCoefficientzk(), &again.m_coefficients);
    EXPECT_NE(again.getSensorCoefficientzk()->getSensorCoefRecord("MLC11", 1, true, false), nullptr);
}

TEST(RecordInfo, CoefficientsOfAnotherKindEndTheRecord)
{
    ScriptedHost host;
    ByteBuilder bytes = beginning(20090803);
    bytes.zeros(28).wide("SOMETHINGELSE").i32(1).zeros(100);
    CMEGRecordInfozkProzk info;
    EXPECT_EQ(loaded(info, bytes.bytes()), 0);
    EXPECT_THAT(host.messages(), ElementsAre("The opened file is not Dataset information file or corrupted!"));
}

TEST(RecordInfo, AnotherTagIsRefused)
{
    ScriptedHost host;
    CMEGRecordInfozkProzk info;
    EXPECT_EQ(loaded(info, ByteBuilder().wide("megrecordinfo").i32(20160320).bytes()), 0);
    EXPECT_THAT(host.messages(), ElementsAre(otherRecord));
}

TEST(RecordInfo, OtherVersionsAreRefused)
{
    for (const std::int32_t version : {20160321, 20160319, 0}) {
        ScriptedHost host;
        CMEGRecordInfozkProzk info = filledInfo();
        EXPECT_EQ(loaded(info, beginning(version).bytes()), 0);
        EXPECT_THAT(host.messages(), ElementsAre(wrongVersion));
        EXPECT_EQ(info, filledInfo());
    }
}

TEST(RecordInfo, FilterEntryThatIsAbsentLeavesNoGap)
{
    CMEGRecordInfozkProzk empty;
    std::vector<std::byte> bytes = stored(empty);
    // Behind the count of filters stand the texts, words and values of the database section, and the tail.
    const std::size_t behind = 41 * 4 + 9 * 4 + 4 * 8 + 2 + 8 + 32;
    ByteBuilder changed;
    changed.raw(std::span(bytes).first(bytes.size() - behind - 8)).i64(3);
    changed.i32(0).i32(1).i32(5).f64(2).i32(6).i32(0).i32(0).i32(0);
    changed.raw(std::span(bytes).last(behind));
    CMEGRecordInfozkProzk info = filledInfo();
    EXPECT_EQ(loaded(info, changed.bytes()), 1);
    ASSERT_EQ(info.m_aOnlineFilter.GetSize(), 1);
    EXPECT_EQ(info.m_aOnlineFilter[0]->m_nFilterKind, 5);
    EXPECT_FALSE(info.m_aOnlineFilter[0]->m_filterParam.has_value());
}

TEST(RecordInfo, NullFilterIsWrittenAsAbsent)
{
    CMEGRecordInfozkProzk info = filledInfo();
    info.m_aOnlineFilter.InsertAt(1, nullptr);
    CMEGRecordInfozkProzk again;
    EXPECT_EQ(loaded(again, stored(info)), 1);
    EXPECT_EQ(again, filledInfo());
}

// A record up to the filter's parameters, of which `count` are announced and none follow.
ByteBuilder announcing(std::int32_t count)
{
    ByteBuilder bytes = beginning(20090803);
    bytes.append(basicSection()).append(acquisitionSection()).append(triggerSection());
    return bytes.zeros(40).i64(1).i32(1).i32(1).f64(2).i32(3).i32(count).i32(1);
}

TEST(RecordInfo, ParametersThatCannotBeHeldEndTheRecord)
{
    for (const std::int32_t count : {-1, INT32_MAX, INT32_MIN}) {
        ScriptedHost host;
        CMEGRecordInfozkProzk info;
        EXPECT_EQ(loaded(info, announcing(count).bytes()), 0);
        EXPECT_THAT(host.messages(), ElementsAre("Is memory enough?!"));
        EXPECT_EQ(info.m_aOnlineFilter.GetSize(), 0);
    }
}

TEST(RecordInfo, ParameterCountOfZeroReadsNoValues)
{
    ByteBuilder bytes = announcing(0);
    bytes.append(databaseSection());
    CMEGRecordInfozkProzk info;
    EXPECT_EQ(loaded(info, bytes.bytes()), 1);
    ASSERT_TRUE(info.m_aOnlineFilter[0]->m_filterParam.has_value());
    EXPECT_TRUE(info.m_aOnlineFilter[0]->m_filterParam->empty());
}

TEST(RecordInfo, TellsThatAFilterCouldNotBeMade)
{
    const std::vector<std::byte> bytes = wholeFile(20160320).bytes();
    const std::int64_t tried = forEachAllocationFailure([&] {
        ScriptedHost host;
        CMEGRecordInfozkProzk info;
        if (loaded(info, bytes) == 0) {
            EXPECT_THAT(host.messages(), ElementsAre("Is memory enough?!"));
        }
    });
    EXPECT_EQ(tried, 5); // three filters, two of them with parameters
}

TEST(RecordInfo, CopiesAllFieldsAndSharesNothing)
{
    CMEGRecordInfozkProzk source = filledInfo();
    const CMEGRecordInfozkProzk copy(source);
    CMEGRecordInfozkProzk assigned;
    assigned.m_aOnlineFilter.Add(new COnlineFilter);
    assigned = source;
    source.m_aOnlineFilter[0]->m_nFilterKind = 99;
    source.m_strDbText[0] = "changed";
    EXPECT_EQ(copy, filledInfo());
    EXPECT_EQ(assigned, filledInfo());
}

TEST(RecordInfo, CopyHasTheCoefficientsNumbersAndNoRecord)
{
    CMEGRecordInfozkProzk source;
    addCoefficients(source);
    CMEGRecordInfozkProzk target;
    target = source;
    EXPECT_EQ(target.m_coefficients.m_nCoefRecordCount, 1);
    EXPECT_EQ(target.m_coefficients.getCoefficientsData()->GetSize(), 0);
}

TEST(RecordInfo, ReportShowsItsTextsEachBehindALineBreak)
{
    ScriptedHost host;
    CMEGRecordInfozkProzk info = filledInfo();
    info.m_strDbText[1] = "";
    EXPECT_EQ(info.showRecordInfo(), 1);
    CString expected("\nt1\n");
    for (int number = 4; number <= 41; ++number) {
        CString line;
        line.Format("\nt%d", number);
        if (number != 11 && number != 20)
            expected += line;
    }
    ASSERT_EQ(host.reports().size(), 1U);
    EXPECT_EQ(host.reports()[0].title, "MEG Data Information");
    EXPECT_EQ(host.reports()[0].text, expected);
}

// A user who has no window for reports.
class WithoutReports : public SilentHost
{
public:
    int showReport(const CString&, const CString&) override { return 0; }
};

TEST(RecordInfo, ReportGivesWhatTheWindowGives)
{
    WithoutReports none;
    CUserHost* const former = AfxSetHost(&none);
    EXPECT_EQ(CMEGRecordInfozkProzk().showRecordInfo(), 0);
    AfxSetHost(former);
}

TEST(RecordInfo, ReportOfEmptyTextsIsALineForEach)
{
    const ScriptedHost host;
    EXPECT_EQ(CMEGRecordInfozkProzk().showRecordInfo(), 1);
    ASSERT_EQ(host.reports().size(), 1U);
    EXPECT_EQ(host.reports()[0].text, CString(std::string(38, '\n')));
}

TEST(RecordInfo, EveryPrefixRaisesEndOfFile)
{
    forEachPrefix(wholeFile(20160320).bytes(), [](std::span<const std::byte> prefix) {
        CMEGRecordInfozkProzk info;
        EXPECT_THROW(loaded(info, prefix), CArchiveException);
    });
}

TEST(RecordInfo, SingleBitFlipsDoNoHarm)
{
    const ScriptedHost host;
    constexpr std::size_t allBits = 1;
    const auto load = [](std::span<const std::byte> bytes) {
        CMEGRecordInfozkProzk info;
        try {
            const int result = loaded(info, bytes);
            ASSERT_TRUE(result == 0 || result == 1);
        } catch (const CArchiveException& fault) {
            ASSERT_EQ(fault.m_cause, CArchiveException::endOfFile);
        }
        // What came of it can be written.
        ASSERT_FALSE(stored(info).empty());
    };
    forEachBitFlip(wholeFile(20160320).bytes(), load, allBits);
}

TEST(RecordInfo, PageShowsTheFieldsInTheirOrder)
{
    CMEGRecordInfozkProzk info = filledInfo();
    TracingRecorder recorder;
    storedBytes([&](CArchive& ar) {
        ar.setTracer(&recorder);
        info.serialize(ar);
    });
    EXPECT_TRUE(followsLayoutPage(formatPages() / "recording.md", "CMEGRecordInfozkPro09File", recorder.fields()));
}

} // namespace
} // namespace megset::CMEGRecordInfozkPro_test
