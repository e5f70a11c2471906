#pragma once
// The stream of every binary file: fields one after another, little-endian, without padding.

#include "megset/platform/ArchiveTracer.h"
#include "megset/platform/CArchiveException.h"
#include "megset/platform/CFile.h"

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

namespace megset {

static_assert(std::endian::native == std::endian::little, "fields are copied as they stand in memory");
static_assert(sizeof(float) == 4 && sizeof(double) == 8, "IEEE 754 widths");

/// A field of fixed size that goes through the archive's buffer: integers and floating point numbers of 1 to 8 bytes.
template <class T>
concept ArchiveScalar = (std::integral<T> || std::same_as<T, float> || std::same_as<T, double>)&&!std::same_as<T, bool>;

/// How a tracer is told the type of such a field.
template <ArchiveScalar T>
constexpr std::string_view archiveTypeName()
{
    if constexpr (std::floating_point<T>)
        return sizeof(T) == 4 ? "float" : "double";
    else if constexpr (sizeof(T) == 8)
        return std::signed_integral<T> ? "int64" : "uint64";
    else if constexpr (sizeof(T) == 4)
        return std::signed_integral<T> ? "int" : "uint";
    else if constexpr (sizeof(T) == 2)
        return std::signed_integral<T> ? "short" : "ushort";
    else
        return std::signed_integral<T> ? "char" : "byte";
}

/// Reads or writes one file, field by field, through a buffer of 4096 bytes. Blocks of 64 KiB and more go past the
/// buffer in one call. With the first smaller block that would go past it too, the buffer becomes 128 KiB, and such
/// blocks go through it with the fields between them: so many small calls cost more than copying. Fields that fill four
/// buffers in turn get the wide one as well.
///
/// Running out of file raises CArchiveException::endOfFile; a store on a loading archive readOnly, a load on a storing
/// one writeOnly, each with the file's name. An archive and its file are used by one thread at a time.
class CArchive
{
public:
    /// The direction of an archive.
    enum Mode : unsigned
    {
        store = 0,
        load = 1
    };

    /// Goes over an open file from its present position on. The file must outlive the archive.
    CArchive(CFile* file, unsigned mode);
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;
    /// Closes the archive. A fault in writing the rest is lost here: call Close() to be told of it.
    ~CArchive();

    bool IsStoring() const { return m_mode == store; }
    bool IsLoading() const { return m_mode == load; }
    CFile* GetFile() const { return m_pFile; }
    /// Writes out the buffer; when loading, moves the file to the first byte that was not read.
    void Flush();
    /// Flushes and lets the file go, which stays open. Does nothing the second time.
    void Close();
    /// Lets the file go without writing the rest.
    void Abort();

    /// Reads a block, and gives the bytes read, fewer than `count` only when the file ends.
    unsigned Read(void* data, unsigned count);
    void Write(const void* data, unsigned count);

    /// Bytes of the file that a loading archive has not read yet; 0 for a storing one.
    std::uint64_t bytesLeft() const { return IsLoading() ? m_bytesBehindBuffer + (m_end - m_at) : 0; }
    /// Whether an array of that size may be made for what is left of the file: about as large, or small anyway.
    /// A count that a broken file holds is asked here before memory is taken for it.
    bool mayHold(std::uint64_t bytes) const { return bytes <= 2 * bytesLeft() + (std::uint64_t{1} << 20U); }
    /// Bytes from where the archive began to the next field.
    std::uint64_t position() const { return m_bufferOffset + m_at; }

    /// Writes the fields when storing and reads them when loading. The type picks the encoding: integers and floating
    /// point numbers as they are, a bool as an int of 0 or 1, an enumeration as its underlying type, a CString
    /// with its length, a fixed array element by element.
    template <class... Fields>
    void exchange(Fields&... fields)
    {
        (exchangeOne(fields), ...);
    }
    /// The same with the fields' names, separated by commas, for a tracer. Called through EXCHANGE_FIELDS.
    template <class... Fields>
    void exchangeNamed(std::string_view names, Fields&... fields)
    {
        const Restored outer(m_names, names);
        (exchangeNext(fields), ...);
    }

    template <ArchiveScalar T>
    CArchive& operator<<(T value)
    {
        storeScalar(value);
        return *this;
    }
    template <ArchiveScalar T>
    CArchive& operator>>(T& value)
    {
        loadScalar(value);
        return *this;
    }
    /// A bool is written as an int. Only a bool is taken for one: a plain literal goes the way of the strings.
    template <std::same_as<bool> T>
    CArchive& operator<<(T value)
    {
        return *this << static_cast<std::int32_t>(value ? 1 : 0);
    }
    CArchive& operator>>(bool& value);
    /// Strings are always written in the wide form; the narrow form of old files is read as well.
    CArchive& operator<<(const CString& text);
    CArchive& operator>>(CString& text);

    /// The number that is written of `value`, or the number read; for guards and counts, which have no field.
    std::int32_t exchangeInt(std::int32_t value, std::string_view name = {});
    std::int64_t exchangeInt64(std::int64_t value, std::string_view name = {});

    /// A block under a name: writes it, or reads it and gives the bytes read. What was not read is set to zero. The
    /// type of its elements is for a tracer.
    unsigned exchangeBlock(void* data, unsigned count, std::string_view name = {}, std::string_view elementType = {});

    /// From now on every field is told to `tracer`; null ends that.
    void setTracer(ArchiveTracer* tracer);
    ArchiveTracer* tracer() const { return m_pTracer; }

private:
    static constexpr std::size_t bufferSize = 4096;
    static constexpr std::size_t wideBufferSize = std::size_t{128} << 10U;
    static constexpr std::size_t largeBlock = wideBufferSize / 2;
    static constexpr int narrowInTurn = 4;

    // Gives a member another value for the length of a scope, which an exception may end.
    template <class Value>
    class Restored
    {
    public:
        Restored(Value& member, Value value) : m_member(member), m_outer(std::exchange(member, value)) {}
        Restored(const Restored&) = delete;
        Restored& operator=(const Restored&) = delete;
        ~Restored() { m_member = m_outer; }

    private:
        Value& m_member;
        Value m_outer;
    };

    template <ArchiveScalar T>
    void storeScalar(T value)
    {
        if (m_at + sizeof(T) > m_storeLimit) [[unlikely]]
            prepareStore(sizeof(T));
        if (m_pTracer != nullptr) [[unlikely]]
            trace(value);
        std::memcpy(m_pBuffer + m_at, &value, sizeof(T));
        m_at += sizeof(T);
    }
    template <ArchiveScalar T>
    void loadScalar(T& value)
    {
        if (m_at + sizeof(T) > m_loadLimit) [[unlikely]]
            prepareLoad(sizeof(T));
        std::memcpy(&value, m_pBuffer + m_at, sizeof(T));
        if (m_pTracer != nullptr) [[unlikely]]
            trace(value);
        m_at += sizeof(T);
    }

    template <class T>
    void exchangeOne(T& field)
    {
        if constexpr (std::is_enum_v<T>) {
            // A file may hold any number; an enumeration without a stated type has no room for each of them.
            static_assert(
                requires { T{std::underlying_type_t<T>{}}; }, "state the enumeration's underlying type");
            auto number = static_cast<std::underlying_type_t<T>>(field);
            exchangeOne(number);
            field = static_cast<T>(number);
        } else if (IsStoring()) {
            *this << field;
        } else {
            *this >> field;
        }
    }
    template <class T, std::size_t n>
    void exchangeOne(T (&fields)[n])
    {
        exchangeElements(fields);
    }
    template <class T, std::size_t n>
    void exchangeOne(std::array<T, n>& fields)
    {
        exchangeElements(fields);
    }
    template <class Array>
    void exchangeElements(Array& fields)
    {
        const Restored outer(m_element, 0);
        for (auto& field : fields) {
            exchangeOne(field);
            ++m_element;
        }
    }
    template <class T>
    void exchangeNext(T& field)
    {
        exchangeOne(field);
        if (m_pTracer != nullptr) [[unlikely]]
            dropName();
    }

    template <ArchiveScalar T>
    void trace(T value)
    {
        if constexpr (std::floating_point<T>)
            traceReal(static_cast<double>(value), archiveTypeName<T>());
        else
            traceInteger(static_cast<std::int64_t>(value), archiveTypeName<T>());
    }
    void traceReal(double value, std::string_view type);
    void traceInteger(std::int64_t value, std::string_view type);
    void traceBlock(std::uint64_t start, const TracedBlock& block);
    template <class Tell>
    void withFieldName(Tell tell);
    void dropName();

    void prepareStore(std::size_t bytes);
    void prepareLoad(std::size_t bytes);
    void requireStoring() const;
    void requireLoading() const;
    void append(const std::byte* data, std::size_t count);
    void drain();
    bool fill(std::size_t bytes);
    void widenFor(std::size_t blockBytes);
    void widenForFields();
    void widen();
    bool goesPast(std::size_t blockBytes) const { return blockBytes >= m_capacity || blockBytes >= largeBlock; }
    void noteBytesLeft();
    CString fileName() const;

    void writeLength(std::uint64_t length);
    std::uint64_t readLength(bool& wide);
    template <class Unit>
    std::basic_string<Unit> readUnits(std::uint64_t length);

    CFile* m_pFile;
    Mode m_mode;
    ArchiveTracer* m_pTracer = nullptr;

    // The buffer holds m_at .. m_end unread bytes when loading, 0 .. m_at unwritten ones when storing. A limit of 0
    // sends every field of the wrong direction, and of an archive without a file, to the slow path that tells so.
    std::size_t m_at = 0;
    std::size_t m_end = 0;
    std::size_t m_storeLimit = 0;
    std::size_t m_loadLimit = 0;
    std::uint64_t m_bufferOffset = 0;      // of the buffer's first byte, from where the archive began
    std::uint64_t m_bytesBehindBuffer = 0; // of the file, when loading

    std::string_view m_names;     // of the fields still to come in this list
    int m_element = -1;           // of the array that is being exchanged
    int m_narrowBuffers = 0;      // filled in turn, with no block gone past them
    std::string_view m_blockType; // of the elements of the block that is being exchanged

    std::array<std::byte, bufferSize> m_narrow;
    std::unique_ptr<std::byte[]> m_wide;
    std::byte* m_pBuffer = m_narrow.data(); // the wide one as soon as it is there
    std::size_t m_capacity = bufferSize;
};

/// Exchanges fields of a record under their own names, so that a tracer can show them.
#define EXCHANGE_FIELDS(archive, ...) (archive).exchangeNamed(#__VA_ARGS__, __VA_ARGS__)

/// Names the section that is being exchanged to the archive's tracer, from here to the end of the scope.
class ArchiveSection
{
public:
    ArchiveSection(CArchive& archive, std::string_view name);
    ArchiveSection(const ArchiveSection&) = delete;
    ArchiveSection& operator=(const ArchiveSection&) = delete;
    ~ArchiveSection();

private:
    CArchive& m_archive;
    ArchiveTracer* m_pTracer;
};

} // namespace megset
