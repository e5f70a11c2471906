#include "megset/records/recording/CMEGRecordInfo.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/recordContract.h"
#include "tests/records/recording/filledRecordInfo.h"
#include "tests/records/recording/recordInfoBytes.h"

namespace megset::CMEGRecordInfo_test {
namespace {

using ::testing::ElementsAre;

struct BaseInfoCase
{
    using Record = CMEGRecordInfozk;
    static constexpr std::string_view tag = "MEGRECORDINFOBASEZK";
    static constexpr std::string_view page = "recording.md";
    static constexpr std::string_view name = "CMEGRecordInfo09File";
    static CMEGRecordInfozk filled()
    {
        CMEGRecordInfozk info;
        fillRecordInfo(info);
        info.m_nTrigWord = {}; // not part of this record
        return info;
    }
};

using RecordingRecords = ::testing::Types<BaseInfoCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Recording, RecordContract, RecordingRecords);

TEST(RecordInfoBase, StartsWithOneSampleStepAndAnUnknownRate)
{
    const CMEGRecordInfozk info;
    EXPECT_EQ(info.m_nRecTotalSample, 0);
    EXPECT_EQ(info.m_nRawTotalSample, 0);
    EXPECT_EQ(info.m_nRecPreTrigPts, 0);
    EXPECT_EQ(info.m_nRawPreTrigPts, 0);
    EXPECT_EQ(info.m_dRecSampleRate, 1.0);
    EXPECT_EQ(info.m_dRawSampleRate, 1.0);
    EXPECT_EQ(info.m_bResampleAverage, 0);
    EXPECT_EQ(info.m_nResampleFactor, 1);
    EXPECT_EQ(info.m_nAverageCount, 0);
    EXPECT_EQ(info.m_aOnlineFilter.GetSize(), 0);
}

TEST(RecordInfoBase, IsWrittenSectionBySection)
{
    ByteBuilder expected;
    expected.wide("MEGRECORDINFOBASEZK").i32(20261121).append(rawSection()).append(basicWords()).append(basicValues());
    expected.append(acquisitionSection()).append(filterSection()).append(databaseSection()).append(tail());
    expectGolden(BaseInfoCase::filled(), expected);
}

TEST(RecordInfoBase, ClearFilterInfoEmptiesTheListAlone)
{
    CMEGRecordInfozk info = BaseInfoCase::filled();
    EXPECT_EQ(info.clearFilterInfo(), 1);
    EXPECT_EQ(info.m_aOnlineFilter.GetSize(), 0);
    EXPECT_EQ(info.m_aFilterValue, BaseInfoCase::filled().m_aFilterValue);
}

TEST(RecordInfoBase, LoadingLeavesTheTriggerWordsAsTheyWere)
{
    CMEGRecordInfozk info;
    info.m_nTrigWord[3] = 77;
    ASSERT_EQ(loadRecord(info, recordBytes(BaseInfoCase::filled())), 1);
    EXPECT_EQ(info.m_nTrigWord[3], 77);
}

TEST(RecordInfoBase, FilterParameterCountFollowsTheParametersWhenWritten)
{
    CMEGRecordInfozk info;
    auto filter = std::make_unique<COnlineFilter>();
    filter->m_nFilterParamCount = 9;
    filter->m_filterParam = {1.5, 2.5};
    info.m_aOnlineFilter.Add(std::move(filter));
    CMEGRecordInfozk again;
    ASSERT_EQ(loadRecord(again, recordBytes(info)), 1);
    EXPECT_EQ(again.m_aOnlineFilter[0]->m_nFilterParamCount, 2);
    EXPECT_THAT(*again.m_aOnlineFilter[0]->m_filterParam, ElementsAre(1.5, 2.5));
}

TEST(RecordInfoBase, TellsThatAFilterCouldNotBeMade)
{
    const std::vector<std::byte> bytes = recordBytes(BaseInfoCase::filled());
    const std::int64_t tried = forEachAllocationFailure([&] {
        ScriptedHost host;
        CMEGRecordInfozk info;
        if (loadRecord(info, bytes) == 1) {
            EXPECT_EQ(info, BaseInfoCase::filled());
            host.expectNoMessages();
        } else {
            EXPECT_THAT(host.messages(), ElementsAre("Is memory enough?!"));
        }
    });
    EXPECT_EQ(tried, 5); // three filters, two of them with parameters
}

} // namespace
} // namespace megset::CMEGRecordInfo_test
