#include "megset/records/recording/CCoefficientManager.h"

#include "megset/platform/AfxMessageBox.h"
#include "megset/platform/archiveLists.h"

#include <algorithm>

namespace megset {
namespace {

constexpr std::int32_t writtenVersion = 20080104;

// What stands at the beginning of a record.
enum class Header
{
    known,
    otherTag,
    otherVersion
};

Header exchangeHeader(CArchive& ar, const CString& expectedTag)
{
    CString tag = expectedTag;
    ar.exchangeNamed("tag", tag);
    if (tag != expectedTag)
        return Header::otherTag;
    std::int32_t version = writtenVersion;
    ar.exchangeNamed("version", version);
    return version == writtenVersion ? Header::known : Header::otherVersion;
}

constexpr std::uint32_t packed(char first, char second, char third, char fourth)
{
    const auto byte = [](char c) { return static_cast<std::uint32_t>(static_cast<unsigned char>(c)); };
    return byte(first) << 24U | byte(second) << 16U | byte(third) << 8U | byte(fourth);
}

// A broken file can ask for a whole record with every few bytes. Real records take about three times their bytes.
bool inProportion(int records, std::uint64_t bytesRead)
{
    const std::uint64_t taken = static_cast<std::uint64_t>(records + 1) * sizeof(CCoefficientDatazk);
    return taken <= 8 * bytesRead + (std::uint64_t{1} << 20U);
}

} // namespace

CString CCoefficientData::coefficientsType2Name(std::uint32_t type)
{
    if (type == 0)
        return "NOGRAD";
    CString name;
    for (unsigned shift = 32; shift > 0; shift -= 8)
        name += static_cast<char16_t>(type >> (shift - 8U) & 0xFFU);
    return name;
}

std::uint32_t CCoefficientData::getCoefficientType(int order, bool realIdeal, bool adaptive)
{
    if (order < 0 || order > 3 || (order == 0 && !(adaptive && realIdeal)))
        return 0;
    const char kind = adaptive ? 'A' : realIdeal ? 'B' : 'O';
    return packed('G', static_cast<char>('0' + order), kind, realIdeal ? 'R' : 'I');
}

int CCoefficientDatazk::serialize(CArchive& ar)
{
    // The tag is this word, not a name of the record's own.
    const ArchiveSection section(ar, "DATASETINFO");
    const Header header = exchangeHeader(ar, "DATASETINFO");
    if (header == Header::known) {
        serializezk20080104(ar);
        return 1;
    }
    AfxMessageBox("Wrong coefficient file format!!?", MB_OK);
    return header == Header::otherTag ? 0 : 1;
}

int CCoefficientDatazk::serializezk20080104(CArchive& ar)
{
    EXCHANGE_FIELDS(ar, m_strCoefSensorName, m_nCoefType, m_nCoefCount);
    for (std::size_t i = 0; i < m_aCoefRefName.size(); ++i)
        ar.exchangeNamed("m_aCoefRefName, m_aCoefValue", m_aCoefRefName[i], m_aCoefValue[i]);
    return 1;
}

int CCoefficientManager::addCoefficientsData(int count, const CCoefficientDatazk* records)
{
    // The records are copied before the old ones go, of which they may be one.
    CTypedPtrArray<CCoefficientDatazk> copies;
    for (int i = 0; records != nullptr && i < count; ++i)
        copies.addCopy(records[i]);
    cleanData();
    m_aCoefRecord = std::move(copies);
    m_nCoefRecordCount = m_aCoefRecord.GetSize();
    return 1;
}

int CCoefficientManager::cleanData()
{
    m_aCoefRecord.RemoveAll();
    m_nCoefRecordCount = 0;
    m_nCoefCurrent = 0;
    return 1;
}

CCoefficientDatazk* CCoefficientManager::getSensorCoefRecord(const CString& name, int order, bool realIdeal,
                                                             bool adaptive) const
{
    const std::uint32_t type = CCoefficientData::getCoefficientType(order, realIdeal, adaptive);
    for (int i = 0; i < m_aCoefRecord.GetSize(); ++i) {
        CCoefficientDatazk* record = m_aCoefRecord[i];
        if (record != nullptr && record->m_nCoefType == type && record->m_strCoefSensorName.Find(name) >= 0)
            return record;
    }
    return nullptr;
}

// The copy rule is the assignment's; the base starts empty.
// NOLINTNEXTLINE(bugprone-copy-constructor-init)
CCoefficientManagerzk::CCoefficientManagerzk(const CCoefficientManagerzk& other) : CCoefficientManager()
{
    *this = other;
}

CCoefficientManagerzk& CCoefficientManagerzk::operator=(const CCoefficientManagerzk& other)
{
    if (this == &other)
        return *this;
    m_nCoefRecordCount = other.m_nCoefRecordCount;
    m_nCoefCurrent = other.m_nCoefCurrent;
    // The target's size decides, not the source's: as it stands.
    const int copied = std::min(m_aCoefRecord.GetSize(), other.m_aCoefRecord.GetSize());
    for (int i = 0; i < copied; ++i)
        if (other.m_aCoefRecord[i] != nullptr)
            m_aCoefRecord.addCopy(*other.m_aCoefRecord[i]);
    return *this;
}

int CCoefficientManagerzk::serialize(CArchive& ar)
{
    const ArchiveSection section(ar, "SENSORCOEFFICIENTZK");
    switch (exchangeHeader(ar, "SENSORCOEFFICIENTZK")) {
    case Header::known:
        serializezk20080104(ar);
        return 1;
    case Header::otherVersion:
        AfxMessageBox("Wrong file format!!?", MB_OK);
        return 1;
    case Header::otherTag:
        break;
    }
    AfxMessageBox("The opened file is not Dataset information file or corrupted!", MB_OK);
    return 0;
}

int CCoefficientManagerzk::serializezk20080104(CArchive& ar)
{
    if (ar.IsLoading())
        cleanData();
    EXCHANGE_FIELDS(ar, m_nCoefRecordCount, m_nCoefCurrent);
    const std::uint64_t start = ar.position();
    const auto exchangeRecord = [&](CCoefficientDatazk& record) {
        if (ar.IsLoading() && !inProportion(m_aCoefRecord.GetSize(), ar.position() - start))
            return 0;
        record.serialize(ar);
        return 1;
    };
    if (exchangePointers<std::int32_t>(ar, m_aCoefRecord, exchangeRecord))
        return 1;
    AfxMessageBox("Is memory enough?!", MB_OK);
    return 0;
}

} // namespace megset
