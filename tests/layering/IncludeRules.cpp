#include "tests/layering/IncludeRules.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <sstream>

namespace megset::layering {

namespace {

struct Layer
{
    std::string_view name;
    std::string_view folder;
};

using Chain = std::vector<Layer>;

// The chains, bottom up. A layer derives from the one before it; the last one is the class that is made.
const std::array<Chain, 3> chains{
    Chain{
        {"CMDChannel", "core"},
        {"CMDChannel0SensorInfo", "core"},
        {"CMDChannel1Spctm", "spectral"},
        {"CMDChannel2WaveAnalyz", "spectral"},
        {"CMDChannel3Show", "display"},
        {"CMDChannel7ProcessX", "core"},
        {"CMDChannel9File", "persistence"},
        {"CMDChannel9FileRecord", "persistence"},
        {"CMDChannelzk", "core"},
    },
    Chain{
        {"CMDTrial", "core"},
        {"CMDTrial0SensorInfo", "core"},
        {"CMDTrial1Source", "spectral"},
        {"CMDTrial1SourceCoherenc", "spectral"},
        {"CMDTrial2Process", "processing"},
        {"CMDTrial3Montage", "processing"},
        {"CMDTrial4Spctm", "spectral"},
        {"CMDTrial4SpctmProcess", "spectral"},
        {"CMDTrial6Analysis", "spectral"},
        {"CMDTrial6IcaFace", "spectral"},
        {"CMDTrial6SeegIeeg", "geometry"},
        {"CMDTrial6VirtSns", "spectral"},
        {"CMDTrial7Coh01TimeData", "spectral"},
        {"CMDTrial7Coh02SpctmData", "spectral"},
        {"CMDTrial8Show", "geometry"},
        {"CMDTrial9FileA", "persistence"},
        {"CMDTrial9FileB", "persistence"},
        {"CMDTrial9FileBRecord", "persistence"},
        {"CMDTrialzk", "core"},
    },
    Chain{
        {"CMEGData", "core"},
        {"CMEGData0SensorInfo", "core"},
        {"CMEGData1Localization01Meg", "geometry"},
        {"CMEGData1Localization02Eeg", "geometry"},
        {"CMEGData2Process", "processing"},
        {"CMEGData3Spctm", "spectral"},
        {"CMEGData4SpctmProcess", "spectral"},
        {"CMEGData5VirtualSns", "spectral"},
        {"CMEGData6Classify", "events"},
        {"CMEGData7Measure", "events"},
        {"CMEGData8Show", "display"},
        {"CMEGData9FileA00Basic", "persistence"},
        {"CMEGData9FileA00Maker", "import"},
        {"CMEGData9FileA01CtfMISL", "import"},
        {"CMEGData9FileA02Neuromag", "import"},
        {"CMEGData9FileB", "persistence"},
        {"CMEGData9FileC", "persistence"},
        {"CMEGData9FileRecord", "persistence"},
        {"CMEGDatazk", "core"},
    },
};

const std::set<std::string_view> layerFolders{"core",   "persistence", "import",  "processing", "spectral",
                                              "events", "geometry",    "display", "ui"};

const std::set<std::string_view> standardHeaders{"algorithm",
                                                 "any",
                                                 "array",
                                                 "atomic",
                                                 "barrier",
                                                 "bit",
                                                 "bitset",
                                                 "cassert",
                                                 "cctype",
                                                 "cerrno",
                                                 "cfenv",
                                                 "cfloat",
                                                 "charconv",
                                                 "chrono",
                                                 "cinttypes",
                                                 "climits",
                                                 "clocale",
                                                 "cmath",
                                                 "codecvt",
                                                 "compare",
                                                 "complex",
                                                 "concepts",
                                                 "condition_variable",
                                                 "coroutine",
                                                 "csetjmp",
                                                 "csignal",
                                                 "cstdarg",
                                                 "cstddef",
                                                 "cstdint",
                                                 "cstdio",
                                                 "cstdlib",
                                                 "cstring",
                                                 "ctime",
                                                 "cuchar",
                                                 "cwchar",
                                                 "cwctype",
                                                 "deque",
                                                 "exception",
                                                 "execution",
                                                 "filesystem",
                                                 "format",
                                                 "forward_list",
                                                 "fstream",
                                                 "functional",
                                                 "future",
                                                 "initializer_list",
                                                 "iomanip",
                                                 "ios",
                                                 "iosfwd",
                                                 "iostream",
                                                 "istream",
                                                 "iterator",
                                                 "latch",
                                                 "limits",
                                                 "list",
                                                 "locale",
                                                 "map",
                                                 "memory",
                                                 "memory_resource",
                                                 "mutex",
                                                 "new",
                                                 "numbers",
                                                 "numeric",
                                                 "optional",
                                                 "ostream",
                                                 "queue",
                                                 "random",
                                                 "ranges",
                                                 "ratio",
                                                 "regex",
                                                 "scoped_allocator",
                                                 "semaphore",
                                                 "set",
                                                 "shared_mutex",
                                                 "source_location",
                                                 "span",
                                                 "sstream",
                                                 "stack",
                                                 "stdexcept",
                                                 "stop_token",
                                                 "streambuf",
                                                 "string",
                                                 "string_view",
                                                 "syncstream",
                                                 "system_error",
                                                 "thread",
                                                 "tuple",
                                                 "type_traits",
                                                 "typeindex",
                                                 "typeinfo",
                                                 "unordered_map",
                                                 "unordered_set",
                                                 "utility",
                                                 "valarray",
                                                 "variant",
                                                 "vector",
                                                 "version"};

// Headers of POSIX and Linux that a C++ program has no need of: whole folders, and single ones.
const std::set<std::string_view> systemFolders{"sys", "linux", "net", "netinet", "arpa", "asm", "bits"};

const std::set<std::string_view> systemHeaders{
    "aio.h",      "cpio.h",   "dirent.h",  "dlfcn.h",    "fcntl.h",    "fmtmsg.h",    "fnmatch.h", "ftw.h",
    "glob.h",     "grp.h",    "iconv.h",   "ifaddrs.h",  "langinfo.h", "libgen.h",    "mqueue.h",  "netdb.h",
    "nl_types.h", "poll.h",   "pthread.h", "pwd.h",      "sched.h",    "semaphore.h", "signal.h",  "spawn.h",
    "strings.h",  "syslog.h", "termios.h", "ucontext.h", "unistd.h",   "utime.h",     "wordexp.h"};

// A project file's path taken apart: megset/core/CMDChannel.h is of the top "megset", folder "core", stem "CMDChannel".
struct Place
{
    std::string path;
    std::string top;
    std::string folder; // empty for megset/megset.h
    std::string stem;
    bool isHeader = false;
};

Place placeOf(std::string_view path)
{
    Place place;
    place.path = path;
    const std::size_t topEnd = path.find('/');
    const std::size_t folderEnd = topEnd == path.npos ? path.npos : path.find('/', topEnd + 1);
    const std::size_t nameStart = path.rfind('/') + 1;
    const std::size_t dot = std::min(path.find('.', nameStart), path.size());
    place.top = path.substr(0, topEnd);
    if (folderEnd != path.npos) {
        place.folder = path.substr(topEnd + 1, folderEnd - topEnd - 1);
    }
    place.stem = path.substr(nameStart, dot - nameStart);
    place.isHeader = path.ends_with(".h");
    return place;
}

struct Position
{
    const Chain* chain = nullptr;
    std::size_t index = 0;

    const Layer& layer() const { return (*chain)[index]; }
    bool isClosing() const { return index + 1 == chain->size(); }
    bool isRightBelow(const Position& upper) const { return chain == upper.chain && index + 1 == upper.index; }
};

std::optional<Position> positionInChain(std::string_view className)
{
    for (const Chain& chain : chains) {
        for (std::size_t i = 0; i < chain.size(); ++i) {
            if (chain[i].name == className) {
                return Position{&chain, i};
            }
        }
    }
    return std::nullopt;
}

// What is wrong when `from` includes the file of the class at `to`; empty when nothing is.
std::string faultOfChainInclude(const Place& from, const Position& to)
{
    const auto own = positionInChain(from.stem);
    if (from.isHeader) {
        return own && to.isRightBelow(*own) ? "" : "a header includes only the layer right below its own";
    }
    // A class may have several sources, each with a word of its own behind the class's name.
    const bool isOwnHeader = from.stem == to.layer().name || (!own && from.stem.starts_with(to.layer().name));
    const bool isBelow = own && to.isRightBelow(*own);
    return isOwnHeader || isBelow || to.isClosing() ? "" : "a source includes of the chains only the closing classes";
}

bool mayUseFolder(const std::string& from, const std::string& to)
{
    if (to == "platform" || to == "numeric") {
        return true;
    }
    if (to == "records") {
        return from == "records" || layerFolders.contains(from);
    }
    return layerFolders.contains(from) && layerFolders.contains(to);
}

std::string faultOfLibraryInclude(const Place& from, const Place& to)
{
    if (to.top != "megset") {
        return "the library includes files of megset/ only, by their path from the project's root";
    }
    if (from.folder.empty()) {
        return "";
    }
    if (!mayUseFolder(from.folder, to.folder)) {
        return "the folder " + from.folder + " does not know " + (to.folder.empty() ? to.path : to.folder);
    }
    const auto position = positionInChain(to.stem);
    return position ? faultOfChainInclude(from, *position) : "";
}

bool mayCallTheSystem(const Place& place)
{
    return place.folder == "platform" && place.stem.starts_with("posix_") && !place.isHeader;
}

// The compiler's own names for the instructions of a processor. All other loops do without them.
bool mayNameInstructions(const Place& place, std::string_view header)
{
    return place.path == "megset/numeric/avx512.h" && header == "immintrin.h";
}

bool isSystemHeader(std::string_view name)
{
    return systemHeaders.contains(name) || systemFolders.contains(name.substr(0, name.find('/')));
}

std::string faultOfSystemInclude(const Place& from, const std::string& name)
{
    if (from.top == "apps") {
        return isSystemHeader(name) ? "system calls are made in megset/platform/posix_*.cpp" : "";
    }
    if (standardHeaders.contains(name) || mayCallTheSystem(from) || mayNameInstructions(from, name)) {
        return "";
    }
    return "the library stands on the standard library; the system is for megset/platform/posix_*.cpp";
}

std::string faultOfInclude(const Place& from, const std::string& include)
{
    const std::string name = include.substr(1, include.size() - 2);
    if (include.front() == '<') {
        return faultOfSystemInclude(from, name);
    }
    const Place to = placeOf(name);
    if (from.top == "megset") {
        return faultOfLibraryInclude(from, to);
    }
    return to.top == "megset" || to.top == "apps" ? "" : "applications include files of megset/ and apps/ only";
}

// A chain's class lies in its folder, and its header brings the layer that it derives from.
std::vector<std::string> faultsOfPosition(const Place& place, const std::vector<std::string>& includes)
{
    const auto position = positionInChain(place.stem);
    if (!position) {
        return {};
    }
    std::vector<std::string> faults;
    if (place.folder != position->layer().folder) {
        faults.push_back(place.path + ": belongs in the folder " + std::string(position->layer().folder));
    }
    if (place.isHeader && position->index > 0) {
        const Layer& below = (*position->chain)[position->index - 1];
        const std::string header = "\"megset/" + std::string(below.folder) + '/' + std::string(below.name) + ".h\"";
        if (std::find(includes.begin(), includes.end(), header) == includes.end()) {
            faults.push_back(place.path + ": does not include " + header + ", the layer right below");
        }
    }
    return faults;
}

// Takes the word from the front of the text, blanks before it too; false when another stands there.
bool takeWord(std::string_view& text, std::string_view word)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    if (!text.starts_with(word)) {
        return false;
    }
    text.remove_prefix(word.size());
    return true;
}

// What an #include line names, with its quotes or brackets; empty for any other line.
std::string includeOfLine(std::string_view line)
{
    if (!takeWord(line, "#") || !takeWord(line, "include") || !takeWord(line, "")) {
        return "";
    }
    const char closing = line.starts_with('<') ? '>' : '"';
    const std::size_t end = line.find(closing, 1);
    return (line.starts_with('<') || line.starts_with('"')) && end != line.npos ? std::string(line.substr(0, end + 1))
                                                                                : "";
}

} // namespace

std::vector<std::string> includesOf(std::string_view source)
{
    std::vector<std::string> includes;
    std::istringstream lines{std::string(source)};
    for (std::string line; std::getline(lines, line);) {
        const std::string include = includeOfLine(line);
        if (!include.empty()) {
            includes.push_back(include);
        }
    }
    return includes;
}

std::vector<std::string> violations(std::string_view path, std::string_view source)
{
    const Place place = placeOf(path);
    if (place.top != "megset" && place.top != "apps") {
        return {};
    }
    const std::vector<std::string> includes = includesOf(source);
    std::vector<std::string> faults;
    if (place.top == "megset") {
        faults = faultsOfPosition(place, includes);
    }
    for (const std::string& include : includes) {
        const std::string fault = faultOfInclude(place, include);
        if (!fault.empty()) {
            faults.push_back(place.path + " includes " + include + ": " + fault);
        }
    }
    return faults;
}

} // namespace megset::layering
