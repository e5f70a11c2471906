#include "megset/records/processing/CMtgUnit4CommonRef.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/recordContract.h"

namespace megset::CMtgUnit4CommonRef_test {
namespace {

struct IdNameCase
{
    using Record = CMtgChnlIdNamezk;
    static constexpr std::string_view tag = "MTGCHNLIDNAMEZK";
    static constexpr std::string_view page = "processing.md";
    static constexpr std::string_view name = "CMtgChnlIdNamezk";
    static Record filled()
    {
        Record channel;
        channel.m_nMtgChnlID = 7;
        channel.m_strMtgChnlName = "Cz";
        channel.m_nMtgChnlWord = 9;
        return channel;
    }
};

struct OperatorCase
{
    using Record = CMtgChnlOperatorzk;
    static constexpr std::string_view tag = "MTGCHNLOPERATORZK";
    static constexpr std::string_view page = "processing.md";
    static constexpr std::string_view name = "CMtgChnlOperatorzk";
    static Record filled()
    {
        Record reference;
        reference.m_strMtgChnlName = "A1";
        reference.m_nMtgChnlID = 3;
        reference.m_dMtgWeight = 0.5;
        return reference;
    }
};

struct CommonCase
{
    using Record = CMtgUnit4CommonRefzk;
    static constexpr std::string_view tag = "MTGUNITCOMMONREFZK";
    static constexpr std::string_view page = "processing.md";
    static constexpr std::string_view name = "CMtgUnit4CommonRefzk";
    static Record filled()
    {
        Record unit;
        unit.m_aMtgChannels.addCopy(IdNameCase::filled());
        unit.m_aMtgChannels.addCopy({});
        unit.m_strMtgName = "ears";
        unit.m_aMtgOperators.addCopy(OperatorCase::filled());
        unit.m_aMtgOperators.Add(nullptr);
        unit.m_dMtgDivisor = 2.0;
        unit.m_bMtgBackupToo = 1;
        return unit;
    }
};

struct IndividualCase
{
    using Record = CMtgUnit4IndividualRefzk;
    static constexpr std::string_view tag = "MTGUNITINDIVIDUALREFZK";
    static constexpr std::string_view page = "processing.md";
    static constexpr std::string_view name = "CMtgUnit4IndividualRefzk";
    static Record filled()
    {
        Record unit;
        unit.m_nMtgTargetID = 5;
        unit.m_strMtgTargetName = "C3";
        unit.m_aMtgRefOperators.Add(nullptr);
        unit.m_aMtgRefOperators.addCopy(OperatorCase::filled());
        unit.m_dMtgRefDivisor = 4.0;
        return unit;
    }
};

using MontageTypes = ::testing::Types<IdNameCase, OperatorCase, CommonCase, IndividualCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Montage, RecordContract, MontageTypes);

ByteBuilder filledOperator()
{
    return ByteBuilder().wide("MTGCHNLOPERATORZK").i32(20261121).wide("A1").i32(3).f64(0.5);
}

TEST(CMtgUnit4CommonRef, OperatorWritesTheseBytes)
{
    EXPECT_TRUE(sameBytes(recordBytes(OperatorCase::filled()), filledOperator()));
}

TEST(CMtgUnit4CommonRef, WritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("MTGUNITCOMMONREFZK").i32(20261121).i32(2);
    bytes.i32(1).wide("MTGCHNLIDNAMEZK").i32(20261121).i32(7).wide("Cz").i64(9);
    bytes.i32(1).wide("MTGCHNLIDNAMEZK").i32(20261121).i32(-1).wide("").i64(0);
    bytes.wide("ears").i32(2).i32(1).append(filledOperator()).i32(0).f64(2.0).i32(1);
    EXPECT_TRUE(sameBytes(recordBytes(CommonCase::filled()), bytes));
}

TEST(CMtgUnit4IndividualRef, WritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("MTGUNITINDIVIDUALREFZK").i32(20261121).i32(5).wide("C3");
    bytes.i32(2).i32(0).i32(1).append(filledOperator()).f64(4.0);
    EXPECT_TRUE(sameBytes(recordBytes(IndividualCase::filled()), bytes));
}

TEST(CMtgUnit4CommonRef, NewUnitNeitherDividesNorTouchesTheBackup)
{
    const CMtgUnit4CommonRefzk unit;
    EXPECT_EQ(unit.m_dMtgDivisor, 0.0);
    EXPECT_EQ(unit.m_bMtgBackupToo, 0);
    EXPECT_EQ(CMtgChnlOperatorzk().m_dMtgWeight, 1.0);
    EXPECT_EQ(CMtgChnlOperatorzk().m_nMtgChnlID, -1);
}

TEST(CMtgUnit4CommonRef, EntryWithoutMemoryEndsLoadingWithZero)
{
    const ScriptedHost host;
    const auto bytes = recordBytes(CommonCase::filled());
    for (int n = 1; n <= 3; ++n) {
        const FailingAllocator failing(n);
        CMtgUnit4CommonRefzk unit;
        EXPECT_EQ(loadRecord(unit, bytes), 0) << "allocation " << n;
    }
}

TEST(CMtgUnit4CommonRef, CountThatTheFileCannotHoldEndsAtItsEnd)
{
    const ScriptedHost host;
    ByteBuilder bytes;
    bytes.wide("MTGUNITINDIVIDUALREFZK").i32(20261121).i32(5).wide("C3").i32(2147483647).zeros(400);
    CMtgUnit4IndividualRefzk unit;
    EXPECT_THROW(loadRecord(unit, bytes.bytes()), CArchiveException);
    EXPECT_EQ(unit.m_aMtgRefOperators.GetSize(), 100);
}

TEST(CMtgUnit4CommonRef, NegativeCountIsAnEmptyList)
{
    ByteBuilder bytes;
    bytes.wide("MTGUNITINDIVIDUALREFZK").i32(20261121).i32(5).wide("C3").i32(-1).f64(4.0);
    CMtgUnit4IndividualRefzk unit = IndividualCase::filled();
    EXPECT_EQ(loadRecord(unit, bytes.bytes()), 1);
    EXPECT_TRUE(unit.m_aMtgRefOperators.IsEmpty());
    EXPECT_EQ(unit.m_dMtgRefDivisor, 4.0);
}

} // namespace
} // namespace megset::CMtgUnit4CommonRef_test
