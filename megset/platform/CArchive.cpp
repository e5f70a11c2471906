#include "megset/platform/CArchive.h"

#include "megset/platform/memory.h"
#include "megset/platform/unicode.h"

#include <algorithm>
#include <string>

namespace megset {
namespace {

// The ladder of a string's length: each step's largest value says that the next, wider step follows.
constexpr std::uint8_t longerThanByte = 0xFF;
constexpr std::uint16_t longerThanShort = 0xFFFF;
constexpr std::uint16_t wideMarker = 0xFFFE;
constexpr std::uint16_t wideMarkerSwapped = 0xFEFF; // as other programs may write it; no narrow string is so long
constexpr std::uint32_t longerThanInt = 0xFFFFFFFF;
constexpr std::uint64_t longestString = INT32_MAX;

// What a tracer sees is the field, not the steps of its encoding.
class TracerPause
{
public:
    explicit TracerPause(CArchive& archive) : m_archive(archive), m_pTracer(archive.tracer())
    {
        m_archive.setTracer(nullptr);
    }
    TracerPause(const TracerPause&) = delete;
    TracerPause& operator=(const TracerPause&) = delete;
    ~TracerPause() { m_archive.setTracer(m_pTracer); }

private:
    CArchive& m_archive;
    ArchiveTracer* m_pTracer;
};

} // namespace

CArchive::CArchive(CFile* file, unsigned mode) : m_pFile(file), m_mode(mode == load ? load : store)
{
    if (IsStoring() && m_pFile != nullptr)
        m_storeLimit = m_capacity;
    noteBytesLeft();
}

CArchive::~CArchive()
{
    try {
        Close();
    } catch (...) {
        // A destructor may run while another exception passes; the docstring tells where to look for this one.
        Abort();
    }
}

void CArchive::Flush()
{
    if (m_pFile == nullptr)
        return;
    if (IsStoring()) {
        drain();
        m_pFile->Flush();
    } else if (m_at < m_end) {
        m_pFile->Seek(-static_cast<std::int64_t>(m_end - m_at), CFile::current);
        m_bytesBehindBuffer += m_end - m_at;
        m_bufferOffset += m_at;
        m_at = m_end = m_loadLimit = 0;
    }
}

void CArchive::Close()
{
    Flush();
    Abort();
}

void CArchive::Abort()
{
    m_pFile = nullptr;
    m_bufferOffset += m_at;
    m_bytesBehindBuffer = 0;
    m_at = m_end = m_storeLimit = m_loadLimit = 0;
}

unsigned CArchive::Read(void* data, unsigned count)
{
    requireLoading();
    const std::uint64_t start = position();
    auto* target = static_cast<std::byte*>(data);
    const auto buffered = static_cast<unsigned>(std::min<std::size_t>(count, m_end - m_at));
    if (buffered > 0)
        std::memcpy(target, m_pBuffer + m_at, buffered);
    m_at += buffered;
    unsigned done = buffered;
    widenFor(count - done);
    if (goesPast(count - done)) {
        m_narrowBuffers = 0;
        m_bufferOffset += m_at;
        m_at = m_end = m_loadLimit = 0;
        const unsigned direct = m_pFile->Read(target + done, count - done);
        m_bufferOffset += direct;
        m_bytesBehindBuffer -= std::min<std::uint64_t>(direct, m_bytesBehindBuffer);
        done += direct;
    } else if (done < count) {
        fill(count - done);
        const auto rest = static_cast<unsigned>(std::min<std::size_t>(count - done, m_end - m_at));
        std::memcpy(target + done, m_pBuffer + m_at, rest);
        m_at += rest;
        done += rest;
    }
    if (m_pTracer != nullptr)
        traceBlock(start, {count, done, data, m_blockType});
    return done;
}

void CArchive::Write(const void* data, unsigned count)
{
    requireStoring();
    if (m_pTracer != nullptr)
        traceBlock(position(), {count, count, data, m_blockType});
    if (count == 0)
        return;
    widenFor(count);
    if (goesPast(count)) {
        m_narrowBuffers = 0;
        drain();
        m_pFile->Write(data, count);
        m_bufferOffset += count;
    } else {
        append(static_cast<const std::byte*>(data), count);
    }
}

// A nonzero guard or flag is true, whatever its value.
CArchive& CArchive::operator>>(bool& value)
{
    std::int32_t number = 0;
    loadScalar(number);
    value = number != 0;
    return *this;
}

CArchive& CArchive::operator<<(const CString& text)
{
    const std::uint64_t start = position();
    {
        const TracerPause pause(*this);
        const std::u16string_view units = text.view();
        // A length is an int in this library, so that the bytes of one string fit a block's 32 bits.
        if (units.size() > longestString)
            AfxThrowInvalidArgException();
        *this << longerThanByte << wideMarker;
        writeLength(units.size());
        Write(units.data(), static_cast<unsigned>(units.size() * sizeof(char16_t)));
    }
    if (m_pTracer != nullptr)
        withFieldName([&](std::string_view name) { m_pTracer->text(name, start, text); });
    return *this;
}

CArchive& CArchive::operator>>(CString& text)
{
    const std::uint64_t start = position();
    {
        const TracerPause pause(*this);
        bool wide = false;
        const std::uint64_t length = readLength(wide);
        text = wide ? CString(readUnits<char16_t>(length)) : CString(narrowToUtf16(readUnits<char>(length)));
    }
    if (m_pTracer != nullptr)
        withFieldName([&](std::string_view name) { m_pTracer->text(name, start, text); });
    return *this;
}

std::int32_t CArchive::exchangeInt(std::int32_t value, std::string_view name)
{
    exchangeNamed(name, value);
    return value;
}

std::int64_t CArchive::exchangeInt64(std::int64_t value, std::string_view name)
{
    exchangeNamed(name, value);
    return value;
}

unsigned CArchive::exchangeBlock(void* data, unsigned count, std::string_view name, std::string_view elementType)
{
    const Restored outer(m_names, name);
    const Restored outerType(m_blockType, elementType);
    unsigned done = count;
    if (IsStoring()) {
        Write(data, count);
    } else {
        done = Read(data, count);
        if (done < count)
            std::memset(static_cast<std::byte*>(data) + done, 0, count - done);
    }
    return done;
}

void CArchive::setTracer(ArchiveTracer* tracer)
{
    m_pTracer = tracer;
}

void CArchive::traceReal(double value, std::string_view type)
{
    withFieldName([&](std::string_view name) { m_pTracer->real(name, type, position(), value); });
}

void CArchive::traceInteger(std::int64_t value, std::string_view type)
{
    withFieldName([&](std::string_view name) { m_pTracer->integer(name, type, position(), value); });
}

void CArchive::traceBlock(std::uint64_t start, const TracedBlock& block)
{
    withFieldName([&](std::string_view name) { m_pTracer->block(name, start, block); });
}

// Gives `tell` the name of the field at hand.
template <class Tell>
void CArchive::withFieldName(Tell tell)
{
    const std::string_view name = m_names.substr(0, m_names.find(','));
    if (m_element < 0)
        tell(name);
    else
        tell(std::string(name) + "[" + std::to_string(m_element) + "]");
}

void CArchive::dropName()
{
    const std::size_t comma = m_names.find(',');
    m_names = comma == std::string_view::npos ? std::string_view() : m_names.substr(comma + 1);
    m_names.remove_prefix(std::min(m_names.find_first_not_of(" \n\t"), m_names.size()));
}

void CArchive::prepareStore(std::size_t bytes)
{
    requireStoring();
    if (m_at + bytes > m_capacity) {
        drain();
        widenForFields();
    }
}

void CArchive::prepareLoad(std::size_t bytes)
{
    requireLoading();
    if (!fill(bytes))
        AfxThrowArchiveException(CArchiveException::endOfFile, fileName());
}

void CArchive::requireStoring() const
{
    if (!IsStoring())
        AfxThrowArchiveException(CArchiveException::readOnly, fileName());
    if (m_pFile == nullptr)
        AfxThrowFileException(CFileException::invalidFile);
}

void CArchive::requireLoading() const
{
    if (!IsLoading())
        AfxThrowArchiveException(CArchiveException::writeOnly, fileName());
    if (m_pFile == nullptr)
        AfxThrowFileException(CFileException::invalidFile);
}

// What doesn't fit drains the buffer. The wide one is filled to a whole page of the file first: calls that begin there
// cost less.
void CArchive::append(const std::byte* data, std::size_t count)
{
    if (m_at + count > m_capacity) {
        const std::size_t wholePages = m_wide != nullptr ? m_capacity - m_bufferOffset % bufferSize : 0;
        const std::size_t first = wholePages > m_at ? wholePages - m_at : 0;
        std::copy_n(data, first, m_pBuffer + m_at);
        m_at += first;
        drain();
        data += first;
        count -= first;
    }
    std::copy_n(data, count, m_pBuffer + m_at);
    m_at += count;
}

// Writes out what the buffer holds. It is given up even when that fails: a second try would write it twice.
void CArchive::drain()
{
    const auto count = static_cast<unsigned>(m_at);
    m_bufferOffset += m_at;
    m_at = 0;
    if (count > 0)
        m_pFile->Write(m_pBuffer, count);
}

// Reads on until `bytes` bytes are in the buffer; false when the file has fewer.
bool CArchive::fill(std::size_t bytes)
{
    const std::size_t kept = m_end - m_at;
    std::memmove(m_pBuffer, m_pBuffer + m_at, kept);
    m_bufferOffset += m_at;
    m_at = 0;
    m_end = m_loadLimit = kept;
    widenForFields();
    if (kept < bytes) {
        const std::size_t got = m_pFile->Read(m_pBuffer + kept, static_cast<unsigned>(m_capacity - kept));
        m_end = m_loadLimit = kept + got;
        m_bytesBehindBuffer -= std::min<std::uint64_t>(got, m_bytesBehindBuffer);
    }
    return m_end >= bytes;
}

// Makes the buffer wide for blocks that it is too small for and that are too small to go past it. Without memory for
// it, they go past the buffer that there is.
void CArchive::widenFor(std::size_t blockBytes)
{
    if (m_wide == nullptr && blockBytes >= m_capacity && blockBytes < largeBlock)
        widen();
}

// Many small fields take as many calls as they fill buffers.
void CArchive::widenForFields()
{
    if (m_wide == nullptr && ++m_narrowBuffers >= narrowInTurn)
        widen();
}

void CArchive::widen()
{
    m_wide = tryNewArray<std::byte>(wideBufferSize);
    if (m_wide == nullptr)
        return;
    std::copy_n(m_pBuffer, IsStoring() ? m_at : m_end, m_wide.get());
    m_pBuffer = m_wide.get();
    m_capacity = wideBufferSize;
    if (IsStoring())
        m_storeLimit = m_capacity;
}

void CArchive::noteBytesLeft()
{
    if (m_pFile == nullptr || !IsLoading())
        return;
    const std::uint64_t length = m_pFile->GetLength();
    m_bytesBehindBuffer = length - std::min(length, m_pFile->GetPosition());
}

CString CArchive::fileName() const
{
    return m_pFile != nullptr ? m_pFile->GetFilePath() : CString();
}

void CArchive::writeLength(std::uint64_t length)
{
    if (length < longerThanByte) {
        *this << static_cast<std::uint8_t>(length);
        return;
    }
    *this << longerThanByte;
    // 0xFFFE itself goes to the next step: in this place it would read as the wide marker.
    if (length < wideMarker) {
        *this << static_cast<std::uint16_t>(length);
        return;
    }
    *this << longerThanShort;
    if (length < longerThanInt)
        *this << static_cast<std::uint32_t>(length);
    else
        *this << longerThanInt << length;
}

// The length of a string in characters; `wide` tells which kind. The marker of the wide form starts the ladder anew.
std::uint64_t CArchive::readLength(bool& wide)
{
    std::uint8_t byte = 0;
    std::uint16_t word = 0;
    std::uint32_t number = 0;
    std::uint64_t length = 0;
    loadScalar(byte);
    if (byte < longerThanByte)
        return byte;
    loadScalar(word);
    if ((word == wideMarker || word == wideMarkerSwapped) && !wide) {
        wide = true;
        return readLength(wide);
    }
    if (word < longerThanShort)
        return word;
    loadScalar(number);
    if (number < longerThanInt)
        return number;
    loadScalar(length);
    return length;
}

// A string that the file has not room for is the end of the file, told without its name; nothing is allocated for it.
template <class Unit>
std::basic_string<Unit> CArchive::readUnits(std::uint64_t length)
{
    if (length > bytesLeft() / sizeof(Unit) || length > longestString)
        AfxThrowArchiveException(CArchiveException::endOfFile);
    std::basic_string<Unit> units(length, Unit{});
    const auto bytes = static_cast<unsigned>(length * sizeof(Unit));
    if (Read(units.data(), bytes) != bytes)
        AfxThrowArchiveException(CArchiveException::endOfFile);
    return units;
}

ArchiveSection::ArchiveSection(CArchive& archive, std::string_view name)
    : m_archive(archive), m_pTracer(archive.tracer())
{
    if (m_pTracer != nullptr)
        m_pTracer->enter(name, m_archive.position());
}

ArchiveSection::~ArchiveSection()
{
    if (m_pTracer != nullptr)
        m_pTracer->leave(m_archive.position());
}

} // namespace megset
