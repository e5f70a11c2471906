#pragma once
// Spectra for tests, and what all their records promise.

#include "megset/platform/CArchiveException.h"
#include "megset/platform/memory.h"
#include "megset/spectral/CSpctmChnlzk.h"
#include "megset/spectral/CSpctmTrialzk.h"
#include "megset/spectral/CSumChnlSpctmDatazk.h"

#include "tests/kit/ScriptedHost.h"
#include "tests/kit/TracingRecorder.h"
#include "tests/kit/brokenFiles.h"
#include "tests/kit/layoutPage.h"
#include "tests/kit/memoryArchive.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace megset {

/// The elements of a plane; empty for a null one.
inline std::vector<double> valuesOf(const double* plane, std::int64_t count)
{
    return plane == nullptr ? std::vector<double>() : std::vector<double>(plane, plane + count);
}
inline std::vector<double> valuesOf(const SampleArray& plane, std::int64_t count)
{
    return valuesOf(plane.get(), count);
}

inline SampleArray planeOf(std::initializer_list<double> values)
{
    SampleArray plane = tryNewSamples(static_cast<std::int64_t>(values.size()), false);
    std::copy(values.begin(), values.end(), plane.get());
    return plane;
}

inline int serializeSpectrum(CSpctmChnlzk& spectrum, CArchive& ar)
{
    return spectrum.serializeSpctmCzk(ar);
}
inline int serializeSpectrum(CSpctmTrialzk& spectrum, CArchive& ar)
{
    return spectrum.serializeTrlSpctmZk(ar);
}
inline int serializeSpectrum(CSumChnlSpctmDatazk& sums, CArchive& ar)
{
    return sums.serialSumChnl(ar);
}

template <class Spectrum>
std::vector<std::byte> spectrumBytes(Spectrum& spectrum)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(serializeSpectrum(spectrum, ar), 1); });
}

template <class Spectrum>
int loadSpectrum(Spectrum& spectrum, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return serializeSpectrum(spectrum, *archive);
}
template <class Spectrum>
int loadSpectrum(Spectrum& spectrum, const ByteBuilder& bytes)
{
    return loadSpectrum(spectrum, bytes.bytes());
}

/// 1, 0, or -1 for the end of the file.
template <class Spectrum>
int tryLoadSpectrum(Spectrum& spectrum, std::span<const std::byte> bytes)
{
    try {
        return loadSpectrum(spectrum, bytes);
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
        return -1;
    }
}

/// The record is read, to its end and without a message.
template <class Spectrum>
void expectLoaded(Spectrum& spectrum, const ByteBuilder& bytes)
{
    const ScriptedHost host;
    LoadingArchive archive(bytes);
    EXPECT_EQ(serializeSpectrum(spectrum, *archive), 1);
    EXPECT_EQ(archive->bytesLeft(), 0U);
    host.expectNoMessages();
}

/// The record gives 0, with just these messages.
template <class Spectrum>
void expectRefusedSpectrum(const ByteBuilder& bytes, const std::vector<CString>& messages)
{
    const ScriptedHost host;
    Spectrum spectrum;
    EXPECT_EQ(tryLoadSpectrum(spectrum, bytes.bytes()), 0);
    EXPECT_EQ(host.messages(), messages);
}

/// Whatever a broken file gave can be written, and comes back as the same bytes.
template <class Spectrum>
void expectStillWhole(Spectrum& spectrum)
{
    const std::vector<std::byte> bytes = spectrumBytes(spectrum);
    Spectrum again;
    ASSERT_EQ(loadSpectrum(again, bytes), 1);
    ASSERT_TRUE(sameBytes(spectrumBytes(again), bytes));
}

/// Every prefix fails, except that bytes of a block at the very end may be missing.
template <class Spectrum>
void expectPrefixesHarmless(const std::vector<std::byte>& bytes, std::size_t lastBlockBytes)
{
    const ScriptedHost host;
    forEachPrefix(bytes, [&](std::span<const std::byte> prefix) {
        Spectrum spectrum;
        const bool inLastBlock = lastBlockBytes > 0 && prefix.size() + lastBlockBytes >= bytes.size();
        ASSERT_EQ(tryLoadSpectrum(spectrum, prefix) == 1, inLastBlock);
        expectStillWhole(spectrum);
    });
}

template <class Spectrum>
void expectBitFlipsHarmless(const std::vector<std::byte>& whole)
{
    constexpr std::size_t allBits = 1;
    const ScriptedHost host;
    const auto load = [](std::span<const std::byte> bytes) {
        Spectrum spectrum;
        tryLoadSpectrum(spectrum, bytes);
        expectStillWhole(spectrum);
    };
    forEachBitFlip(whole, load, allBits);
}

/// Another tag, another case of it, and a version that was never released are refused; the narrow form is the same tag.
template <class Spectrum>
void expectTagAndVersionChecked(const std::string& tag, const std::vector<std::byte>& bytes, std::int32_t version,
                                const CString& notThisFile, const CString& wrongVersion)
{
    const auto body = std::span(bytes).subspan(ByteBuilder().wide(tag).i32(version).size());
    const auto with = [&](const CString& otherTag, std::int32_t otherVersion) {
        return ByteBuilder().wide(otherTag).i32(otherVersion).raw(body);
    };
    CString lower(tag);
    lower.MakeLower();
    expectRefusedSpectrum<Spectrum>(with(lower, version), {notThisFile});
    expectRefusedSpectrum<Spectrum>(with(CString(tag) + CString("X"), version), {notThisFile});
    expectRefusedSpectrum<Spectrum>(with(CString(), version), {notThisFile});
    for (const std::int32_t other : {version + 1, version - 1, 0, -1, INT32_MAX})
        expectRefusedSpectrum<Spectrum>(with(tag, other), {wrongVersion});
    Spectrum narrow;
    expectLoaded(narrow, ByteBuilder().narrow(tag).i32(version).raw(body));
    EXPECT_TRUE(sameBytes(spectrumBytes(narrow), bytes));
}

/// The fields with the steps of a routine left out of their sections: a page shows a record's fields in one table.
inline std::vector<TracedField> withoutSteps(std::vector<TracedField> fields)
{
    const auto isStep = [](const std::string& section) {
        return std::any_of(section.begin(), section.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    };
    for (TracedField& field : fields) {
        std::stringstream path(field.section);
        std::string records;
        for (std::string section; std::getline(path, section, '/');)
            if (!isStep(section))
                records += (records.empty() ? "" : "/") + section;
        field.section = records;
    }
    return fields;
}

/// What the archive goes through when the record is written is what the page says.
template <class Spectrum>
void expectPageFollowed(Spectrum& spectrum, std::string_view name)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    TracingRecorder recorder;
    archive.setTracer(&recorder);
    ASSERT_EQ(serializeSpectrum(spectrum, archive), 1);
    EXPECT_TRUE(followsLayoutPage(formatPages() / "spectra.md", name, withoutSteps(recorder.fields())));
}

} // namespace megset
