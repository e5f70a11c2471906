#pragma once
// What people said of a CTF recording: bad channels, bad segments, classes of trials, markers. All are text files that
// may be missing. A line that makes no sense is passed over, and `warnings` gets a sentence for it.

#include "apps/readers/ctf/Res4.h"

#include <string>
#include <string_view>
#include <vector>

namespace megset::ctf {

/// A stretch of a trial that is not to be used.
struct BadSegment
{
    int trial = 0;      ///< from 0
    double begin = 0.0; ///< s from the trigger
    double end = 0.0;

    bool operator==(const BadSegment&) const = default;
};

/// A class of trials; the one named BAD holds those that are not to be used.
struct TrialClass
{
    std::string name;
    std::vector<int> trials; ///< from 0

    bool operator==(const TrialClass&) const = default;
};

/// A marker with its occurrences.
struct Marker
{
    struct Occurrence
    {
        int trial = 0;     ///< from 0
        double time = 0.0; ///< s from the trigger

        bool operator==(const Occurrence&) const = default;
    };

    std::string name;
    std::string comment;
    std::vector<Occurrence> occurrences;

    bool operator==(const Marker&) const = default;
};

/// BadChannels: a channel name on each line, with or without the "-1234" of the system's number. Gives indices into
/// `channels`, each once, rising.
std::vector<int> parseBadChannels(std::string_view text, const std::vector<Channel>& channels, const std::string& file,
                                  std::vector<std::string>& warnings);

/// bad.segments: on each line a trial, from 1, with begin and end.
std::vector<BadSegment> parseBadSegments(std::string_view text, int trials, const std::string& file,
                                         std::vector<std::string>& warnings);

/// ClassFile.cls and MarkerFile.mrk; trials count from 0 there.
std::vector<TrialClass> parseClasses(std::string_view text, int trials, const std::string& file,
                                     std::vector<std::string>& warnings);
std::vector<Marker> parseMarkers(std::string_view text, int trials, const std::string& file,
                                 std::vector<std::string>& warnings);

} // namespace megset::ctf
