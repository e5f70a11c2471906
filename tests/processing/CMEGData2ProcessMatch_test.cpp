// Two selections made of the same length.
#include "megset/core/CMDTrialzk.h"
#include "megset/core/CMEGDatazk.h"

#include "tests/kit/ScriptedHost.h"

#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace megset::CMEGData2ProcessMatch_test {
namespace {

using ::testing::ElementsAre;

constexpr const char* cantMatch = "Can't match the active and control selections!";
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

struct Matched
{
    explicit Matched(std::int64_t total) { data.m_recordInfo.m_nRecTotalSample = total; }
    int match(std::vector<std::int64_t> r)
    {
        ranges = r;
        return data.matchAtiveControl(ranges[0], ranges[1], ranges[2], ranges[3]);
    }
    int size(std::int64_t begin, std::int64_t end, std::int64_t size)
    {
        ranges = {begin, end};
        return data.matchSelect2Size(ranges[0], ranges[1], size);
    }

    ScriptedHost host;
    CMEGDatazk data;
    std::vector<std::int64_t> ranges;
};

// ---- active and control

TEST(MatchedSelections, OfTheSameLengthStay)
{
    Matched m(100);
    EXPECT_EQ(m.match({20, 30, 50, 60}), 1);
    EXPECT_THAT(m.ranges, ElementsAre(20, 30, 50, 60));
    EXPECT_EQ(m.match({5, 5, 70, 70}), 1) << "of any length";
    EXPECT_EQ(m.match({5, 2, 70, 67}), 1);
    m.host.expectNoMessages();
}

TEST(MatchedSelections, TheShorterGrowsAtBothSidesByTurns)
{
    Matched m(100);
    EXPECT_EQ(m.match({20, 30, 50, 54}), 1);
    EXPECT_THAT(m.ranges, ElementsAre(20, 30, 47, 57)) << "of lengths 10 and 4";
    EXPECT_EQ(m.match({20, 30, 50, 55}), 1);
    EXPECT_THAT(m.ranges, ElementsAre(20, 30, 47, 57)) << "the begin first, and so once more";
    EXPECT_EQ(m.match({50, 54, 20, 30}), 1);
    EXPECT_THAT(m.ranges, ElementsAre(47, 57, 20, 30));
}

TEST(MatchedSelections, AnEndOfTheDataLeavesTheRestToTheOtherSide)
{
    Matched m(100);
    EXPECT_EQ(m.match({20, 40, 1, 5}), 1);
    EXPECT_THAT(m.ranges, ElementsAre(20, 40, 0, 20));
    EXPECT_EQ(m.match({20, 40, 95, 98}), 1);
    EXPECT_THAT(m.ranges, ElementsAre(20, 40, 79, 99));
}

TEST(MatchedSelections, NeedALengthAboveZero)
{
    Matched m(100);
    EXPECT_EQ(m.match({5, 5, 70, 60}), 0);
    EXPECT_THAT(m.ranges, ElementsAre(5, 5, 70, 60));
    EXPECT_THAT(m.host.messages(), ElementsAre("The selected data range is wrong!"));
    EXPECT_EQ(m.match({20, 30, 70, 60}), 1) << "one of them is enough";
    EXPECT_THAT(m.ranges, ElementsAre(20, 30, 60, 70));
}

TEST(MatchedSelections, ThatReachBothEndsOfTheDataAreTold)
{
    Matched m(100);
    EXPECT_EQ(m.match({0, 150, 40, 50}), 0);
    EXPECT_THAT(m.ranges, ElementsAre(0, 150, 0, 99)) << "the whole data";
    EXPECT_THAT(m.host.messages(), ElementsAre(cantMatch));
}

TEST(MatchedSelections, EndAtOnceWhateverTheRangesAre)
{
    Matched m(largest);
    m.match({smallest, largest, 0, 1});
    m.match({0, largest, smallest, smallest});
    m.match({0, largest - 5, 10, 11});
    EXPECT_EQ(m.match({0, 1'000'000'000'000, 5'000'000'000'000, 5'000'000'000'001}), 1);
    EXPECT_THAT(m.ranges, ElementsAre(0, 1'000'000'000'000, 4'500'000'000'000, 5'500'000'000'000));
    Matched none(smallest);
    none.match({0, 10, 20, 25});
    EXPECT_THAT(none.ranges, ElementsAre(0, 10, 15, 25));
}

// ---- one selection and a size

TEST(SelectionOfASize, StaysWhereItHasIt)
{
    Matched m(100);
    EXPECT_EQ(m.size(20, 29, 10), 1);
    EXPECT_THAT(m.ranges, ElementsAre(20, 29));
    EXPECT_EQ(m.size(20, 19, 0), 1);
    m.host.expectNoMessages();
}

TEST(SelectionOfASize, GrowsAndShrinksAtBothSidesByTurns)
{
    Matched m(100);
    EXPECT_EQ(m.size(20, 29, 13), 1);
    EXPECT_THAT(m.ranges, ElementsAre(18, 30));
    EXPECT_EQ(m.size(20, 29, 7), 1);
    EXPECT_THAT(m.ranges, ElementsAre(22, 28));
    EXPECT_EQ(m.size(20, 29, 6), 1);
    EXPECT_THAT(m.ranges, ElementsAre(22, 27));
    EXPECT_EQ(m.size(20, 24, 0), 1);
    EXPECT_THAT(m.ranges, ElementsAre(23, 22));
}

TEST(SelectionOfASize, LeavesTheRestToTheOtherSideAtAnEndOfTheData)
{
    Matched m(100);
    EXPECT_EQ(m.size(98, 99, 10), 1);
    EXPECT_THAT(m.ranges, ElementsAre(90, 99));
    EXPECT_EQ(m.size(0, 1, 10), 1);
    EXPECT_THAT(m.ranges, ElementsAre(0, 9));
    EXPECT_EQ(m.size(99, 150, 10), 1) << "begin stands at the last sample";
    EXPECT_THAT(m.ranges, ElementsAre(99, 108));
}

TEST(SelectionOfASize, NeedsALengthOrASizeAboveZero)
{
    Matched m(100);
    EXPECT_EQ(m.size(20, 19, -5), 0);
    EXPECT_EQ(m.size(20, 10, 0), 0);
    EXPECT_THAT(m.ranges, ElementsAre(20, 10));
    EXPECT_THAT(m.host.messages(),
                ElementsAre("The selected data range or size is wrong!", "The selected data range or size is wrong!"));
    EXPECT_EQ(m.size(20, 10, 3), 1);
    EXPECT_THAT(m.ranges, ElementsAre(14, 16));
}

TEST(SelectionOfASize, ThatCantBeHadIsTold)
{
    Matched m(100);
    EXPECT_EQ(m.size(40, 50, 101), 0);
    EXPECT_THAT(m.ranges, ElementsAre(0, 99)) << "the whole data";
    EXPECT_EQ(m.size(40, 50, -1000), 0);
    EXPECT_THAT(m.ranges, ElementsAre(99, 0)) << "turned round, as far as the data let it";
    EXPECT_THAT(m.host.messages(), ElementsAre(cantMatch, cantMatch));
}

TEST(SelectionOfASize, EndsAtOnceWhateverItIs)
{
    Matched m(largest);
    for (const std::int64_t begin : {smallest, std::int64_t{-1}, std::int64_t{0}, largest})
        for (const std::int64_t end : {smallest, std::int64_t{-1}, std::int64_t{0}, largest})
            for (const std::int64_t size : {smallest, std::int64_t{-1}, std::int64_t{0}, largest})
                m.size(begin, end, size);
}

// ---- the loops as they are told, round by round

int growPlainly(std::int64_t& begin, std::int64_t& end, std::int64_t total, std::int64_t target)
{
    for (;;) {
        int blocked = 0;
        begin > 0 ? static_cast<void>(--begin) : static_cast<void>(++blocked);
        if (end - begin >= target)
            return 1;
        end < total - 1 ? static_cast<void>(++end) : static_cast<void>(++blocked);
        if (end - begin >= target)
            return 1;
        if (blocked == 2)
            return 0;
    }
}

int shrinkPlainly(std::int64_t& begin, std::int64_t& end, std::int64_t total, std::int64_t size)
{
    for (;;) {
        int blocked = 0;
        begin < total - 1 ? static_cast<void>(++begin) : static_cast<void>(++blocked);
        if (end - begin + 1 <= size)
            return 1;
        if (--end < 0) {
            end = 0;
            ++blocked;
        }
        if (end - begin + 1 <= size)
            return 1;
        if (blocked == 2)
            return 0;
    }
}

TEST(MatchedSelections, AgreeWithPlainLoops)
{
    std::mt19937 random(5);
    Matched m(0);
    for (int round = 0; round < 20000; ++round) {
        const auto total = static_cast<std::int64_t>(random() % 30);
        m.data.m_recordInfo.m_nRecTotalSample = total;
        const auto place = [&] { return static_cast<std::int64_t>(random() % 40) - 5; };
        const std::int64_t begin = place(), end = place(), other = place(), otherEnd = place();
        std::int64_t b = begin;
        std::int64_t e = end;
        if (end - begin < otherEnd - other && otherEnd > other) {
            const int done = growPlainly(b, e, total, otherEnd - other);
            ASSERT_EQ(m.match({begin, end, other, otherEnd}), done);
            ASSERT_THAT(m.ranges, ElementsAre(b, e, other, otherEnd));
            ASSERT_EQ(m.match({other, otherEnd, begin, end}), done);
            ASSERT_THAT(m.ranges, ElementsAre(other, otherEnd, b, e));
        }
        const std::int64_t size = place();
        const std::int64_t length = end - begin + 1;
        if (length == size || (length <= 0 && size <= 0))
            continue;
        b = begin;
        e = end;
        const int done = length < size ? growPlainly(b, e, total, size - 1) : shrinkPlainly(b, e, total, size);
        ASSERT_EQ(m.size(begin, end, size), done) << begin << ".." << end << " of " << total << " to " << size;
        ASSERT_THAT(m.ranges, ElementsAre(b, e)) << begin << ".." << end << " of " << total << " to " << size;
    }
}

} // namespace
} // namespace megset::CMEGData2ProcessMatch_test
