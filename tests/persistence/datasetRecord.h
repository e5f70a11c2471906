#pragma once
// A dataset's file written byte by byte, for every version.

#include "tests/persistence/datasetParts.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include <gtest/gtest.h>

namespace megset::datasetRecord {

inline constexpr std::int32_t newest = 20200729;
/// The version behind whose file another reader runs, which meets its end.
inline constexpr std::int32_t readTwice = 20161123;
/// In the order of their release; the first holds nothing.
inline constexpr std::array<std::int32_t, 23> versions = {20080104, 20080609, 20100428, 20110210, 20120326, 20120419,
                                                          20120501, 20120527, 20120824, 20130404, 20130421, 20130502,
                                                          20130508, 20140516, 20150724, 20150806, 20160222, 20161123,
                                                          20170706, 20171006, 20190609, 20190725, 20200729};

/// Where a version has its trial list, and how.
enum class ListForm
{
    none,
    doubleStore, ///< first, with whole trials
    smallFirst,
    smallLast,
    today ///< first, without trials
};

inline ListForm listForm(std::int32_t version)
{
    if (version == 20080104)
        return ListForm::none;
    if (version <= 20140516)
        return ListForm::doubleStore;
    if (version == 20150724)
        return ListForm::smallFirst;
    return version < newest ? ListForm::smallLast : ListForm::today;
}

inline bool hasOldProcessInfo(std::int32_t version)
{
    return version <= 20110210;
}
inline bool hasFlags(std::int32_t version)
{
    return version >= 20110210;
}
inline bool hasSelectFlags(std::int32_t version)
{
    return version >= 20120824;
}
inline bool hasOldCut(std::int32_t version)
{
    return version >= 20120527 && version <= 20130502;
}
inline bool hasCut(std::int32_t version)
{
    return version >= 20130508;
}

// ---- files

inline ByteBuilder header(std::int32_t version)
{
    return ByteBuilder().wide("MEGDATASETZK").i32(version);
}

inline std::vector<int> managersOf(std::int32_t version)
{
    if (version >= 20170706)
        return {0, 1, 2, 3, 4, 5, 6, 7};
    if (version >= 20140516)
        return {0, 1, 2, 3, 4, 5, 6};
    if (version >= 20130421)
        return {0, 2, 3, 4, 5, 6};
    return {0, 2, 3, 4};
}

inline ByteBuilder tail(std::int32_t version, const Parts& parts)
{
    ByteBuilder bytes;
    if (version >= 20120501)
        bytes.append(parts.tail2);
    if (version >= 20130404)
        bytes.append(parts.tail5);
    if (version >= 20130502)
        bytes.append(parts.tail8);
    if (version >= 20170706)
        bytes.i32(parts.tailE);
    if (version >= 20161123)
        bytes.append(parts.tailFG);
    if (version >= 20171006)
        bytes.append(parts.tailHIJ);
    if (version >= 20190609)
        bytes.i32(parts.tailK);
    if (version >= 20190725)
        bytes.i32(parts.tailL);
    return bytes;
}

inline ByteBuilder filters(std::int32_t version, const Parts& parts)
{
    if (hasOldProcessInfo(version)) {
        ByteBuilder bytes = parts.filter;
        return bytes.i64(parts.filterCount).wide(parts.oldProcessInfo);
    }
    return ByteBuilder().i64(parts.filterCount).i64(parts.filterCount2).append(parts.filter).append(parts.filter2);
}

inline ByteBuilder flagBytes(std::int32_t version, const Parts& parts)
{
    ByteBuilder bytes = ByteBuilder().i32(parts.flagCount).append(parts.good).append(parts.shown);
    return hasSelectFlags(version) ? bytes.append(parts.select) : bytes;
}

/// The file of a version.
inline ByteBuilder record(std::int32_t version, const Parts& parts)
{
    const ListForm list = listForm(version);
    ByteBuilder bytes = header(version);
    if (list == ListForm::none)
        return bytes;
    if (list != ListForm::smallLast)
        bytes.append(list == ListForm::today ? parts.trials.today() : parts.trials.old());
    bytes.append(parts.head);
    for (const int manager : managersOf(version))
        bytes.append(parts.markers[static_cast<std::size_t>(manager)]);
    bytes.append(filters(version, parts)).append(parts.recordInfo).append(parts.show);
    if (version >= 20120419)
        bytes.append(parts.showMore);
    if (version != 20110210)
        bytes.wide(parts.processInfo);
    if (hasFlags(version))
        bytes.append(parts.roi).append(flagBytes(version, parts));
    if (hasOldCut(version))
        bytes.append(parts.oldCut);
    if (hasCut(version))
        bytes.append(parts.cut);
    if (version >= 20160222)
        bytes.append(parts.eeg);
    if (version >= 20190609)
        bytes.append(parts.wave);
    bytes.append(tail(version, parts));
    return list == ListForm::smallLast ? bytes.append(parts.trials.old()) : bytes;
}

/// The state of the cut is the first int of both forms; the rest of the section is what was there before.
inline ByteBuilder cutWithState(const ByteBuilder& state, const ByteBuilder& before)
{
    return ByteBuilder().raw(std::span(state.bytes()).first(4)).raw(std::span(before.bytes()).subspan(4));
}

/// The flags of a file without a selection: with the others, all off.
inline ByteBuilder selectNone(const Parts& file)
{
    const bool both = file.good.size() > 4 && file.shown.size() > 4;
    return both ? flags(std::vector<int>(static_cast<std::size_t>(file.flagCount))) : none(1);
}

/// The sections of a dataset into which a file of that version was read: the file's own, and what was there before.
inline Parts afterReading(std::int32_t version, const Parts& file, const Parts& before)
{
    if (listForm(version) == ListForm::none)
        return before;
    Parts after = before;
    after.trials = file.trials;
    after.head = file.head;
    for (const int manager : managersOf(version))
        after.markers[static_cast<std::size_t>(manager)] = file.markers[static_cast<std::size_t>(manager)];
    const auto take = [&](bool has, auto Parts::*part) {
        if (has)
            after.*part = file.*part;
    };
    take(true, &Parts::filterCount);
    take(true, &Parts::filter);
    take(!hasOldProcessInfo(version), &Parts::filterCount2);
    take(!hasOldProcessInfo(version), &Parts::filter2);
    take(true, &Parts::recordInfo);
    take(true, &Parts::show);
    take(version >= 20120419, &Parts::showMore);
    after.processInfo = version == 20110210 ? file.oldProcessInfo : file.processInfo;
    take(hasFlags(version), &Parts::roi);
    for (const auto part : {&Parts::good, &Parts::shown, &Parts::select})
        take(hasFlags(version), part);
    take(hasFlags(version), &Parts::flagCount);
    if (hasFlags(version) && !hasSelectFlags(version))
        after.select = selectNone(file);
    take(hasCut(version), &Parts::cut);
    if (hasOldCut(version))
        after.cut = cutWithState(file.oldCut, before.cut);
    take(version >= 20160222, &Parts::eeg);
    take(version >= 20190609, &Parts::wave);
    take(version >= 20120501, &Parts::tail2);
    take(version >= 20130404, &Parts::tail5);
    take(version >= 20130502, &Parts::tail8);
    take(version >= 20170706, &Parts::tailE);
    take(version >= 20161123, &Parts::tailFG);
    take(version >= 20171006, &Parts::tailHIJ);
    take(version >= 20190609, &Parts::tailK);
    take(version >= 20190725, &Parts::tailL);
    return after;
}

inline std::vector<std::byte> stored(CMEGDatazk& dataset)
{
    return storedBytes([&](CArchive& ar) { EXPECT_EQ(dataset.serializezk(ar), 1); });
}

inline int load(CMEGDatazk& dataset, std::span<const std::byte> bytes)
{
    LoadingArchive archive(bytes);
    return dataset.serializezk(*archive);
}

inline int load(CMEGDatazk& dataset, const ByteBuilder& bytes)
{
    return load(dataset, std::span(bytes.bytes()));
}

/// The file of a version, read to its end: 1 also where that end is told by an exception, as that version has it.
inline int loadWhole(CMEGDatazk& dataset, std::int32_t version, const ByteBuilder& bytes)
{
    LoadingArchive archive(bytes);
    int done = 0;
    try {
        done = dataset.serializezk(*archive);
        EXPECT_NE(version, readTwice);
    } catch (const CArchiveException& exception) {
        EXPECT_EQ(version, readTwice);
        EXPECT_EQ(exception.m_cause, CArchiveException::endOfFile);
        done = 1;
    }
    EXPECT_EQ(archive->bytesLeft(), 0U);
    return done;
}

} // namespace megset::datasetRecord
