// Loads what the input says from the rest of the input, and stores it again.
//
// The first byte gives the number of steps, modulo 32; as many bytes follow, one kind of field each; the rest is the
// file. What a step reads must read back equal after it was written; only the exceptions of archives and files may
// leave; and memory must stay in proportion to the input.

#include "fuzz/harness.h"

#include "megset/platform/CMemFile.h"
#include "megset/platform/archiveLists.h"
#include "megset/platform/formatVersion.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <iterator>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace megset {
namespace {

template <class T>
bool sameBits(const T& a, const T& b)
{
    if constexpr (std::is_same_v<T, double>)
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    else if constexpr (std::is_same_v<T, float>)
        return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
    else
        return a == b;
}

// A value of each kind that an archive knows, as a record that reads and writes itself and compares by bits.

enum class Small : std::int8_t
{
};

template <class T>
struct Scalar
{
    T m_value{};

    int serialize(CArchive& ar)
    {
        ar.exchange(m_value);
        return 1;
    }
    bool operator==(const Scalar& other) const { return sameBits(m_value, other.m_value); }
};

struct Bytes
{
    std::array<std::uint8_t, 5000> m_data = {};

    int serialize(CArchive& ar)
    {
        ar.exchangeBlock(m_data.data(), static_cast<unsigned>(m_data.size()));
        return 1;
    }
    bool operator==(const Bytes&) const = default;
};

template <class Array>
struct GuardedBlock
{
    std::int64_t m_nTotal = 0;
    Array m_data;

    int serialize(CArchive& ar)
    {
        ar.exchange(m_nTotal);
        const BlockResult result = exchangeGuardedBlock(ar, m_data, m_nTotal, "data");
        require((result == BlockResult::absent || result == BlockResult::noMemory) == (m_data == nullptr));
        return result == BlockResult::noMemory ? 0 : 1;
    }
    bool operator==(const GuardedBlock& other) const
    {
        if (m_nTotal != other.m_nTotal || (m_data == nullptr) != (other.m_data == nullptr))
            return false;
        for (std::int64_t i = 0; m_data != nullptr && i < m_nTotal; ++i)
            if (!sameBits(m_data[static_cast<std::size_t>(i)], other.m_data[static_cast<std::size_t>(i)]))
                return false;
        return true;
    }
};

struct Lists
{
    std::vector<double> m_numbers;
    std::vector<CString> m_names;

    int serialize(CArchive& ar)
    {
        exchangeList(ar, m_numbers);
        exchangeList(ar, m_names, "names");
        return 1;
    }
    bool operator==(const Lists& other) const
    {
        return m_names == other.m_names && std::equal(m_numbers.begin(), m_numbers.end(), other.m_numbers.begin(),
                                                      other.m_numbers.end(), sameBits<double>);
    }
};

struct Named
{
    CString m_strName;
    double m_dWeight = 0;

    int serialize(CArchive& ar)
    {
        EXCHANGE_FIELDS(ar, m_strName, m_dWeight);
        return 1;
    }
    bool operator==(const Named& other) const
    {
        return m_strName == other.m_strName && sameBits(m_dWeight, other.m_dWeight);
    }
};

struct Pointers
{
    CTypedPtrArray<Named> m_list;

    int serialize(CArchive& ar)
    {
        return exchangePointers<std::int32_t>(ar, m_list, [&ar](Named& named) { return named.serialize(ar); });
    }
    bool operator==(const Pointers&) const = default;
};

// A record with a tag, whose newest version holds, if anything, one of its own kind.
struct Nested
{
    std::int32_t m_nId = 0;
    std::unique_ptr<Nested> m_pInner;

    static inline int s_depth = 0;
    static constexpr int deepest = 100; // as deep as records nest; the input could go on until the stack ends

    int serialize(CArchive& ar)
    {
        static constexpr FormatTexts texts = {"NESTZK", "no nest", "no such nest"};
        static constexpr FormatVersion<Nested> versions[] = {{20190723, &Nested::serialize_20190723},
                                                             {20200801, &Nested::serialize_20200801}};
        return serializeFormat(ar, *this, texts, versions);
    }
    int serialize_20190723(CArchive& ar)
    {
        ar.exchange(m_nId);
        return 1;
    }
    int serialize_20200801(CArchive& ar)
    {
        if (s_depth >= deepest)
            return 0;
        ++s_depth;
        const auto serializeInner = [&ar](Nested& inner) { return inner.serialize(ar); };
        int done = 0;
        try {
            done = serialize_20190723(ar) && exchangeGuarded(ar, m_pInner, serializeInner) ? 1 : 0;
        } catch (...) {
            --s_depth;
            throw;
        }
        --s_depth;
        return done;
    }
    bool operator==(const Nested& other) const
    {
        const bool bothOrNone = (m_pInner == nullptr) == (other.m_pInner == nullptr);
        return m_nId == other.m_nId && bothOrNone && (m_pInner == nullptr || *m_pInner == *other.m_pInner);
    }
};

// Loads one record, and when that goes well, stores it, loads that, and stores it again: records and bytes must agree.
template <class Record>
void step(CArchive& ar)
{
    Record record;
    const std::uint64_t start = ar.position();
    const std::uint64_t left = ar.bytesLeft();
    const int done = record.serialize(ar);
    require(ar.position() - start + ar.bytesLeft() == left);
    if (done == 0)
        return;

    CMemFile first;
    CArchive store(&first, CArchive::store);
    require(record.serialize(store) == 1);
    store.Close();
    CMemFile copy(first.content());
    CArchive load(&copy, CArchive::load);
    Record back;
    require(back.serialize(load) == 1);
    require(load.bytesLeft() == 0);
    require(back == record);

    CMemFile second;
    CArchive storeAgain(&second, CArchive::store);
    require(back.serialize(storeAgain) == 1);
    storeAgain.Close();
    require(
        std::equal(first.content().begin(), first.content().end(), second.content().begin(), second.content().end()));
}

using Step = void (*)(CArchive&);

constexpr Step steps[] = {step<Scalar<std::int8_t>>,
                          step<Scalar<std::uint16_t>>,
                          step<Scalar<std::int32_t>>,
                          step<Scalar<std::uint64_t>>,
                          step<Scalar<float>>,
                          step<Scalar<double>>,
                          step<Scalar<bool>>,
                          step<Scalar<Small>>,
                          step<Scalar<CString>>,
                          step<Bytes>,
                          step<GuardedBlock<std::unique_ptr<double[]>>>,
                          step<GuardedBlock<std::unique_ptr<std::int16_t[]>>>,
                          step<GuardedBlock<SampleArray>>,
                          step<Lists>,
                          step<Pointers>,
                          step<Nested>};

} // namespace

void fuzzInput(std::span<const std::byte> input)
{
    if (input.empty())
        return;
    const std::size_t count = std::min<std::size_t>(std::to_integer<unsigned>(input[0]) % 32U, input.size() - 1);
    const auto kinds = input.subspan(1, count);
    CMemFile file(input.subspan(1 + count));
    limitMemory(input.size());
    CArchive archive(&file, CArchive::load);
    try {
        for (const std::byte kind : kinds)
            steps[std::to_integer<std::size_t>(kind) % std::size(steps)](archive);
    } catch (const CArchiveException&) {
    } catch (const CFileException&) {
    }
    require(archive.position() <= file.GetLength());
}

} // namespace megset
