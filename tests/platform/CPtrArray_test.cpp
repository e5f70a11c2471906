// The arrays: pointers to other people's objects, owned objects, texts.

#include "megset/platform/CPtrArray.h"
#include "megset/platform/CStringArray.h"
#include "megset/platform/CTypedPtrArray.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace megset::CPtrArray_test {

namespace {

// An object that counts how many of its kind live.
struct Counted
{
    explicit Counted(int number = 0) : value(number) { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }
    bool operator==(const Counted& other) const { return value == other.value; }

    int value;
    static inline int alive = 0;
};

using CountedArray = CTypedPtrArray<Counted>;

CountedArray oneNullTwo()
{
    CountedArray list;
    list.addCopy(Counted(1));
    list.Add(nullptr);
    list.addCopy(Counted(2));
    return list;
}

TEST(CPtrArray, StartsEmpty)
{
    const CPtrArray list;
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetSize(), 0);
    EXPECT_EQ(list.GetCount(), 0);
}

TEST(CPtrArray, GivesTheIndexOfWhatWasAdded)
{
    int a = 1;
    CPtrArray list;
    EXPECT_EQ(list.Add(&a), 0);
    EXPECT_EQ(list.Add(nullptr), 1);
    EXPECT_EQ(list.GetSize(), 2);
    EXPECT_EQ(list.GetAt(0), &a);
    EXPECT_EQ(list[1], nullptr);
}

TEST(CPtrArray, ReplacesAndRemoves)
{
    int a = 1;
    int b = 2;
    int c = 3;
    CPtrArray list;
    list.Add(&a);
    list.Add(&b);
    list.SetAt(1, &c);
    EXPECT_EQ(list[1], &c);
    list.RemoveAt(0);
    EXPECT_EQ(list.GetSize(), 1);
    EXPECT_EQ(list[0], &c);
    list.RemoveAll();
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(a + b + c, 6); // the objects are still there
}

TEST(CPtrArray, RaisesForAnIndexOutside)
{
    int a = 1;
    CPtrArray list;
    EXPECT_THROW(list.GetAt(0), CInvalidArgException);
    list.Add(&a);
    EXPECT_THROW(list.GetAt(-1), CInvalidArgException);
    EXPECT_THROW(list[1], CInvalidArgException);
    EXPECT_THROW(list.SetAt(1, &a), CInvalidArgException);
    EXPECT_THROW(list.RemoveAt(1), CInvalidArgException);
    EXPECT_THROW(list.RemoveAt(-1), CInvalidArgException);
    EXPECT_EQ(list.GetSize(), 1);
}

TEST(CPtrArray, CopiesPointersOnly)
{
    int a = 1;
    CPtrArray list;
    list.Add(&a);
    const CPtrArray copy = list;
    EXPECT_EQ(copy, list);
    list.Add(&a);
    EXPECT_NE(copy, list);
    EXPECT_EQ(copy[0], &a);
}

TEST(CTypedPtrArray, OwnsItsObjects)
{
    {
        CountedArray list;
        EXPECT_EQ(list.Add(new Counted(1)), 0);
        EXPECT_EQ(list.Add(std::make_unique<Counted>(2)), 1);
        EXPECT_EQ(list.addCopy(Counted(3)), 2);
        EXPECT_EQ(Counted::alive, 3);
        list.RemoveAt(1);
        EXPECT_EQ(Counted::alive, 2);
        EXPECT_EQ(list[1]->value, 3);
        list.SetAt(0, nullptr);
        EXPECT_EQ(Counted::alive, 1);
        EXPECT_EQ(list[0], nullptr);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(CTypedPtrArray, RemovesEverything)
{
    CountedArray list = oneNullTwo();
    list.RemoveAll();
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetCount(), 0);
    EXPECT_EQ(Counted::alive, 0);
}

TEST(CTypedPtrArray, CopiesDeeplyWithNullEntries)
{
    const CountedArray list = oneNullTwo();
    CountedArray copy = list;
    EXPECT_EQ(Counted::alive, 4);
    EXPECT_EQ(copy, list);
    EXPECT_NE(copy[0], list[0]);
    EXPECT_EQ(copy[1], nullptr);
    copy[0]->value = 9;
    EXPECT_NE(copy, list);
    EXPECT_EQ(list[0]->value, 1);
}

TEST(CTypedPtrArray, AssignsDeeplyAndToItself)
{
    const CountedArray list = oneNullTwo();
    CountedArray copy;
    copy.addCopy(Counted(7));
    copy = list;
    EXPECT_EQ(copy, list);
    const CountedArray& same = copy;
    copy = same;
    EXPECT_EQ(copy, list);
    EXPECT_EQ(Counted::alive, 4);
}

TEST(CTypedPtrArray, MovesItsObjects)
{
    CountedArray list = oneNullTwo();
    const Counted* first = list[0];
    const CountedArray moved = std::move(list);
    EXPECT_EQ(moved[0], first);
    EXPECT_EQ(Counted::alive, 2);
}

TEST(CTypedPtrArray, ComparesByValueEntryByEntry)
{
    const CountedArray list = oneNullTwo();
    CountedArray other = oneNullTwo();
    EXPECT_EQ(list, other);
    other.SetAt(1, std::make_unique<Counted>(0));
    EXPECT_NE(list, other);
    EXPECT_NE(other, list);
    other.SetAt(1, nullptr);
    other.Add(nullptr);
    EXPECT_NE(list, other); // one entry more
}

TEST(CTypedPtrArray, InsertsBeforeAnIndexAndAtTheEnd)
{
    CountedArray list = oneNullTwo();
    list.InsertAt(0, std::make_unique<Counted>(10));
    list.InsertAt(4, std::make_unique<Counted>(11));
    ASSERT_EQ(list.GetSize(), 5);
    EXPECT_EQ(list[0]->value, 10);
    EXPECT_EQ(list[1]->value, 1);
    EXPECT_EQ(list[4]->value, 11);
    EXPECT_THROW(list.InsertAt(6, nullptr), CInvalidArgException);
    EXPECT_THROW(list.InsertAt(-1, nullptr), CInvalidArgException);
}

TEST(CTypedPtrArray, GivesAnObjectAwayAndKeepsItsPlace)
{
    CountedArray list = oneNullTwo();
    const std::unique_ptr<Counted> taken = list.release(2);
    EXPECT_EQ(taken->value, 2);
    EXPECT_EQ(list.GetSize(), 3);
    EXPECT_EQ(list[2], nullptr);
    EXPECT_EQ(list.release(1), nullptr);
}

TEST(CTypedPtrArray, ListsItsPointersWithoutGivingThemAway)
{
    const CountedArray list = oneNullTwo();
    {
        const CPtrArray pointers = list.pointers();
        ASSERT_EQ(pointers.GetSize(), 3);
        EXPECT_EQ(pointers[0], list[0]);
        EXPECT_EQ(pointers[1], nullptr);
    }
    EXPECT_EQ(Counted::alive, 2);
}

TEST(CTypedPtrArray, RaisesForAnIndexOutside)
{
    CountedArray list = oneNullTwo();
    EXPECT_THROW(list.GetAt(3), CInvalidArgException);
    EXPECT_THROW(list[-1], CInvalidArgException);
    EXPECT_THROW(list.SetAt(3, nullptr), CInvalidArgException);
    EXPECT_THROW(list.release(3), CInvalidArgException);
    EXPECT_THROW(list.RemoveAt(3), CInvalidArgException);
    EXPECT_EQ(list, oneNullTwo());
}

TEST(CStringArray, AddsSetsAndRemovesTexts)
{
    CStringArray list;
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.Add("a"), 0);
    EXPECT_EQ(list.Add("b"), 1);
    EXPECT_EQ(list.Add(list[0]), 2); // of the list itself
    list.SetAt(1, "B");
    list[2] += CString("x");
    EXPECT_EQ(list.GetCount(), 3);
    EXPECT_EQ(list.GetAt(1), CString("B"));
    EXPECT_EQ(std::as_const(list)[2], CString("ax"));
    list.RemoveAt(0);
    EXPECT_EQ(list.GetSize(), 2);
    EXPECT_EQ(list.ElementAt(0), CString("B"));
    list.RemoveAll();
    EXPECT_TRUE(list.IsEmpty());
}

TEST(CStringArray, RaisesForAnIndexOutside)
{
    CStringArray list;
    EXPECT_THROW(list.GetAt(0), CInvalidArgException);
    list.Add("a");
    EXPECT_THROW(list[1], CInvalidArgException);
    EXPECT_THROW(list.GetAt(-1), CInvalidArgException);
    EXPECT_THROW(list.ElementAt(1), CInvalidArgException);
    EXPECT_THROW(list.SetAt(1, "b"), CInvalidArgException);
    EXPECT_THROW(list.RemoveAt(1), CInvalidArgException);
    EXPECT_EQ(list.GetSize(), 1);
}

TEST(CStringArray, ComparesAndRunsThroughItsTextsInOrder)
{
    CStringArray list;
    list.Add("a");
    list.Add("b");
    CStringArray other = list;
    EXPECT_EQ(list, other);
    other.Add("c");
    EXPECT_NE(list, other);
    CString joined;
    for (const CString& text : other)
        joined += text;
    EXPECT_EQ(joined, CString("abc"));
}

} // namespace

} // namespace megset::CPtrArray_test
