#pragma once
// Coefficients that turn a sensor into a synthetic gradiometer: one record per sensor and coefficient type, and the
// collection of them for a recording.

#include "megset/platform/CArchive.h"
#include "megset/platform/CString.h"
#include "megset/platform/CTypedPtrArray.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace megset {

/// The coefficients of one sensor for one type of synthetic gradiometer.
class CCoefficientData
{
public:
    static constexpr int maxReferences = 50;

    /// The four characters of a type code, highest byte first; "NOGRAD" for 0.
    static CString coefficientsType2Name(std::uint32_t type);
    /// The type code of a gradient order: "G1BR", "G2OI" and the like packed into 32 bits, first character in the
    /// highest byte. 0 where there is none: an order outside 0 to 3, and order 0 of all but adaptive and real.
    static std::uint32_t getCoefficientType(int order, bool realIdeal, bool adaptive);

    CString getCoefficientDataSensorName() const { return m_strCoefSensorName; }
    /// The entries in use, whatever number a file told: 0 to maxReferences.
    int usedReferences() const { return std::clamp<int>(m_nCoefCount, 0, maxReferences); }

    bool operator==(const CCoefficientData&) const = default;

    CString m_strCoefSensorName;
    std::uint32_t m_nCoefType = 0;                       ///< see getCoefficientType
    std::int32_t m_nCoefCount = 0;                       ///< entries in use, at most maxReferences
    std::array<CString, maxReferences> m_aCoefRefName;   ///< reference channels
    std::array<double, maxReferences> m_aCoefValue = {}; ///< coefficients, index for index with the names
};

/// A sensor's coefficients with their file record; this is the class that is made.
class CCoefficientDatazk : public CCoefficientData
{
public:
    /// 0 for another tag, 1 in all other cases, an unknown version too; both show "Wrong coefficient file format!!?".
    int serialize(CArchive& ar);
    int serializezk20080104(CArchive& ar);

    bool operator==(const CCoefficientDatazk&) const = default;
};

/// The coefficients of a recording, owned.
class CCoefficientManager
{
public:
    /// Replaces the records by copies of `count` records that stand one behind another. The caller's array stays the
    /// caller's, so that its records are freed in the way they were made. Null, or a count below 1, leaves the
    /// collection empty. Gives 1.
    int addCoefficientsData(int count, const CCoefficientDatazk* records);
    /// Empties the collection. Gives 1.
    int cleanData();
    CTypedPtrArray<CCoefficientDatazk>* getCoefficientsData() { return &m_aCoefRecord; }
    const CTypedPtrArray<CCoefficientDatazk>* getCoefficientsData() const { return &m_aCoefRecord; }
    /// The first record whose sensor name contains `name` (case-sensitive) and whose type is that of
    /// getCoefficientType; null when there is none. A type of 0 is searched for like any other.
    CCoefficientDatazk* getSensorCoefRecord(const CString& name, int order, bool realIdeal, bool adaptive) const;

    bool operator==(const CCoefficientManager&) const = default;

    std::int32_t m_nCoefRecordCount = 0; ///< kept beside the array
    std::int32_t m_nCoefCurrent = 0;     ///< carried through the file
    CTypedPtrArray<CCoefficientDatazk> m_aCoefRecord;
};

/// Copying is not what it is elsewhere, and that is meant: both numbers are copied, but only as many records as the
/// target held before, and they are appended to those. A copy of a filled collection thus has its numbers and no
/// record. Moving moves everything. For a full copy call addCoefficientsData, or copy `m_aCoefRecord`.
class CCoefficientManagerzk : public CCoefficientManager
{
public:
    CCoefficientManagerzk() = default;
    CCoefficientManagerzk(const CCoefficientManagerzk& other);
    CCoefficientManagerzk(CCoefficientManagerzk&&) noexcept = default;
    /// A source that holds fewer records gives those it has, a null entry none; assigning to itself changes nothing.
    CCoefficientManagerzk& operator=(const CCoefficientManagerzk& other);
    CCoefficientManagerzk& operator=(CCoefficientManagerzk&&) noexcept = default;
    ~CCoefficientManagerzk() = default;

    /// 0 for another tag ("The opened file is not Dataset information file or corrupted!"), 1 in all other cases: also
    /// for an unknown version ("Wrong file format!!?") and when a record could not be made ("Is memory enough?!").
    /// Null entries are dropped when reading; what a single record's serialize gives is not looked at.
    int serialize(CArchive& ar);
    int serializezk20080104(CArchive& ar);

    bool operator==(const CCoefficientManagerzk&) const = default;
};

} // namespace megset
