#include <algorithm>
#include <array>
#include <sstream>

#include "architecture/rules.h"

namespace Corvetape::Architecture {

namespace {

using Names = std::vector<std::string_view>;

/// What logic may use of the standard library: nothing that opens files, starts threads or reads clocks.
constexpr std::array StandardForLogic = std::to_array<std::string_view>({"algorithm",
                                                                         "any",
                                                                         "array",
                                                                         "bit",
                                                                         "bitset",
                                                                         "cctype",
                                                                         "cerrno",
                                                                         "cfloat",
                                                                         "charconv",
                                                                         "chrono",
                                                                         "climits",
                                                                         "cmath",
                                                                         "compare",
                                                                         "complex",
                                                                         "concepts",
                                                                         "cstdarg",
                                                                         "cstddef",
                                                                         "cstdint",
                                                                         "cstdio",
                                                                         "cstdlib",
                                                                         "cstring",
                                                                         "cwchar",
                                                                         "cwctype",
                                                                         "deque",
                                                                         "exception",
                                                                         "forward_list",
                                                                         "functional",
                                                                         "iomanip",
                                                                         "initializer_list",
                                                                         "iterator",
                                                                         "limits",
                                                                         "list",
                                                                         "map",
                                                                         "memory",
                                                                         "memory_resource",
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
                                                                         "set",
                                                                         "span",
                                                                         "sstream",
                                                                         "stack",
                                                                         "stdexcept",
                                                                         "string",
                                                                         "string_view",
                                                                         "system_error",
                                                                         "tuple",
                                                                         "typeindex",
                                                                         "type_traits",
                                                                         "typeinfo",
                                                                         "variant",
                                                                         "unordered_map",
                                                                         "unordered_set",
                                                                         "utility",
                                                                         "source_location",
                                                                         "valarray",
                                                                         "vector",
                                                                         "version"});

constexpr std::array WordsPastTheMachine =
    std::to_array<std::string_view>({"system_clock",  "steady_clock", "high_resolution_clock",
                                     "clock_gettime", "gettimeofday", "localtime",
                                     "localtime_r",   "gmtime",       "gmtime_r",
                                     "mktime",        "sleep_for",    "sleep_until",
                                     "usleep",        "nanosleep",    "this_thread",
                                     "jthread",       "getenv",       "setenv",
                                     "fopen",         "ifstream",     "ofstream",
                                     "fstream",       "filesystem",   "printf",
                                     "fprintf",       "puts",         "cout",
                                     "cerr",          "system",       "popen",
                                     "fork",          "rand",         "srand",
                                     "random_device"});

struct Include {
    std::string_view Header;
    bool Quoted = false;
};

Include IncludeOf(std::string_view line) {
    const size_t mark = line.find_first_not_of(" \t");
    if (mark == std::string_view::npos || line[mark] != '#') return {};
    const size_t word = line.find_first_not_of(" \t", mark + 1);
    if (word == std::string_view::npos || !line.substr(word).starts_with("include")) return {};
    const size_t open = line.find_first_of("<\"", word);
    if (open == std::string_view::npos) return {};
    const bool quoted = line[open] == '"';
    const size_t close = line.find(quoted ? '"' : '>', open + 1);
    if (close == std::string_view::npos) return {};
    return {line.substr(open + 1, close - open - 1), quoted};
}

bool StartsWithAny(std::string_view text, const Names& prefixes) {
    return std::ranges::any_of(prefixes, [&](std::string_view prefix) { return text.starts_with(prefix); });
}

/// What is wrong with an include, empty if nothing is.
std::string ObjectionTo(const Include& include, const Room& room, std::string_view pathBelowSrc) {
    const std::string header(include.Header);
    if (include.Quoted) {
        const Room* other = RoomOf(include.Header);
        if (other == nullptr) return "\"" + header + "\" is no path below src/";
        const bool allowed = other->Folder == room.Folder || std::ranges::count(room.Uses, other->Folder) > 0;
        if (allowed) return {};
        return std::string(room.Folder) + " may not know " + std::string(other->Folder) + " (" + header + ")";
    }
    if (!room.Logic || StartsWithAny(pathBelowSrc, room.HostFiles)) return {};
    if (std::ranges::count(StandardForLogic, include.Header) > 0) return {};
    if (StartsWithAny(include.Header, room.Libraries)) return {};
    return std::string(room.Folder) + " may not know <" + header + ">";
}

constexpr std::string_view Source = "src/";

}  // namespace

const std::vector<Room>& Rooms() {
    static const Names belowSubjects = {"audio", "forms", "core", "platform"};
    static const Names belowRecording = {"media", "post", "mixer", "audio", "forms", "core", "platform"};
    static const Names belowScreen = {"recording", "media", "post", "mixer",
                                      "audio",     "forms", "core", "platform"};
    static const Names belowPrograms = {"ui",   "assistant", "recording",     "media",
                                        "post", "mixer",     "audio",         "forms",
                                        "core", "platform",  "platform/linux"};
    static const Names belowCommandLine = {
        "app",      "recording",        "media",         "post", "mixer", "audio", "forms", "core",
        "platform", "platform/virtual", "platform/linux"};
    static const Names belowDesktop = {
        "app",  "ui",       "recording",        "media",         "post", "mixer", "audio", "forms",
        "core", "platform", "platform/virtual", "platform/linux"};
    static const std::vector<Room> rooms = {
        {"platform", {}, {}, {}},
        // Work may be posted to the simulated loop from any thread, as to the real one.
        {"platform/virtual", {"platform"}, {"atomic", "mutex"}, {}},
        {"platform/linux", {"platform"}, {}, {}, false},
        {"core", {"platform"}, {"fmt/", "pcre2.h", "utf8proc.h"}, {}},
        {"forms", {"core", "platform"}, {}, {}},
        {"audio", {"forms", "core", "platform"}, {"kiss_fftr.h"}, {}},
        {"media", belowSubjects, {"fmt/"}, {}},
        {"post", belowSubjects, {}, {}},
        {"mixer", belowSubjects, {}, {}},
        {"recording", belowRecording, {"fmt/"}, {}},
        {"assistant", belowScreen, {}, {"assistant/web_view"}},
        {"ui", belowScreen, {}, {}, false},
        {"app", belowPrograms, {}, {"app/main"}},
        {"cli", belowCommandLine, {}, {}, false},
        {"desktop", belowDesktop, {}, {}, false},
        // A process of its own: nobody includes it, and nobody else knows the browser engine.
        {"browser", {"platform", "platform/virtual"}, {}, {}, false},
    };
    return rooms;
}

const Room* RoomOf(std::string_view pathBelowSrc) {
    const Room* best = nullptr;
    for (const Room& room : Rooms()) {
        const bool inside =
            pathBelowSrc.starts_with(room.Folder) && pathBelowSrc.substr(room.Folder.size()).starts_with('/');
        if (inside && (best == nullptr || room.Folder.size() > best->Folder.size())) best = &room;
    }
    return best;
}

std::vector<Finding> WrongIncludes(const SourceFile& file) {
    if (!file.Path.starts_with(Source)) return {};
    const std::string_view below = std::string_view(file.Path).substr(Source.size());
    const Room* room = RoomOf(below);
    if (room == nullptr) return {{file.Path, 1, "is in no room of the table"}};

    std::vector<Finding> findings;
    size_t number = 0;
    for (std::string_view line : LinesOf(file.Text)) {
        ++number;
        const Include include = IncludeOf(line);
        if (include.Header.empty()) continue;
        std::string objection = ObjectionTo(include, *room, below);
        if (!objection.empty()) findings.push_back({file.Path, number, std::move(objection)});
    }
    return findings;
}

std::vector<Finding> WrongArrows(std::string_view text) {
    constexpr std::string_view path = "src/CMakeLists.txt";
    constexpr std::string_view call = "corvetape_room(";
    std::vector<Finding> findings;
    for (size_t at = text.find(call); at != std::string_view::npos; at = text.find(call, at + 1)) {
        const size_t begin = at + call.size();
        std::istringstream words{std::string(text.substr(begin, text.find(')', begin) - begin))};
        std::string word;
        std::string keyword;
        const Room* room = nullptr;
        while (words >> word) {
            if (word == "FOLDER" || word == "USES" || word == "LIBRARIES") {
                keyword = word;
            } else if (keyword == "FOLDER") {
                room = RoomOf(word + "/");
                if (room == nullptr)
                    findings.push_back({std::string(path), LineOf(text, at), "no room " + word});
            } else if (keyword == "USES" && room != nullptr) {
                // Libraries are named after their folders, with an underscore for the slash.
                std::ranges::replace(word, '_', '/');
                if (std::ranges::count(room->Uses, word) > 0) continue;
                findings.push_back({std::string(path), LineOf(text, at),
                                    std::string(room->Folder) + " may not use " + word});
            }
        }
    }
    return findings;
}

std::vector<Finding> ReachesPastTheMachine(const SourceFile& file) {
    if (!file.Path.starts_with(Source)) return {};
    const std::string_view below = std::string_view(file.Path).substr(Source.size());
    const Room* room = RoomOf(below);
    if (room == nullptr || !room->Logic || StartsWithAny(below, room->HostFiles)) return {};
    std::vector<Finding> findings;
    for (std::string_view word : WordsPastTheMachine) {
        for (size_t at : FindWord(file.Code, word)) {
            findings.push_back({file.Path, LineOf(file.Code, at), std::string(word)});
        }
    }
    return findings;
}

}  // namespace Corvetape::Architecture
