#include "core/text/placeholders.h"

#include <array>
#include <functional>
#include <optional>

#include "core/media_state.h"
#include "core/settings/registry.h"
#include "core/text/date_format.h"
#include "core/text/text.h"
#include "platform/clock.h"
#include "platform/folders.h"

namespace Corvetape {

namespace {

/// The buffer that environment variables are expanded into, with its closing NUL.
constexpr size_t ExpansionBuffer = 32767;

bool IsSeparator(char character) {
    return character == '\\' || character == '/';
}

/// From the second character on, two backslashes become one.
std::string CollapseBackslashes(const std::string& text) {
    if (text.empty()) return text;
    return text.substr(0, 1) + ReplaceAll(std::string_view(text).substr(1), "\\\\", "\\");
}

bool EndsLine(unsigned char code) {
    return code < 0x20 || code == 0x7F;
}

/// Characters that nobody sees, and bytes that are no text, as "_".
std::string PrintableText(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        const auto first = static_cast<unsigned char>(text[0]);
        const bool secondControls =
            length == 2 && first == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0;
        if (length == 0 || EndsLine(first) || secondControls) {
            result += '_';
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::string FolderWithoutDrive(std::string_view path, std::string_view folder) {
    const auto skip = [&](size_t count) {
        folder.remove_prefix(count < folder.size() ? count : folder.size());
    };
    if (path.find(':') != std::string_view::npos) {
        skip(2);
    } else if (path.size() > 1 && IsSeparator(path[0]) && IsSeparator(path[1])) {
        skip(1);
    }
    if (path.size() > 2 && IsSeparator(path[2])) skip(1);
    return std::string(folder);
}

}  // namespace

Placeholders::Placeholders(const Clock& clock, Folders& folders, const RegistryBranches& registry)
    : Time(clock), Places(folders), Registry(registry) {}

std::string Placeholders::ExpandPlaceholders(std::string_view text) const {
    std::string result(TrimBlanks(text));
    result = ExpandFolders(std::move(result));
    result = ExpandTimes(std::move(result));
    const std::string profile = Places.Environment("UserProfile").value_or(std::string());
    result = ReplaceAllIgnoringCase(result, "%UserProfileName%",
                                    PathPart(profile, PathPiece::NameWithoutExtension));
    result = ReplaceAllIgnoringCase(result, "%LF%", "\r\n");
    return CollapseBackslashes(ExpandEnvironment(result));
}

std::string Placeholders::ExpandFolders(std::string text) const {
    // Without such a value the environment step has its turn.
    for (const char* name : {"Temp", "Tmp"}) {
        const RegistryValue value =
            Registry.ReadRegistryValue(RegistryRoot::CurrentUser, "Environment", name);
        if (std::holds_alternative<std::monostate>(value)) continue;
        text = ReplaceAllIgnoringCase(text, std::string("%") + name + "%", TextOf(value));
    }
    struct Row {
        const char* Name;
        ShellFolder Folder;
    };
    constexpr std::array<Row, 5> rows = {{{"%AppData%", ShellFolder::AppData},
                                          {"%MyDocuments%", ShellFolder::MyDocuments},
                                          {"%MyMusic%", ShellFolder::MyMusic},
                                          {"%MyPictures%", ShellFolder::MyPictures},
                                          {"%MyVideo%", ShellFolder::MyVideo}}};
    for (const Row& row : rows) {
        if (FindIgnoringCase(text, row.Name) == std::string::npos) continue;  // asking may create the folder
        const std::string path = Places.ShellFolderPath(row.Folder);
        // A folder that does not exist is a failed step, which leaves the text as it was.
        if (!path.empty()) text = ReplaceAllIgnoringCase(text, row.Name, path);
    }
    return ReplaceAllIgnoringCase(text, "%AppDir%", Places.ProgramFolder());
}

std::string Placeholders::ExpandTimes(std::string text) const {
    struct Row {
        const char* Name;
        const char* Format;
        bool TimeOnly = false;
    };
    constexpr std::array<Row, 10> rows = {{{"%Now%", "ddddd ttttt"},
                                           {"%Date%", "ddddd"},
                                           {"%Day%", "dd"},
                                           {"%Month%", "mm"},
                                           {"%Year%", "yyyy"},
                                           {"%Year2%", "yy"},
                                           {"%Time%", "ttttt"},
                                           {"%Hour%", "hh"},
                                           {"%Min%", "mm", true},
                                           {"%Sec%", "ss"}}};
    const DateTime now = Time.LocalNow();
    for (const Row& row : rows) {
        text = ReplaceAllIgnoringCase(text, row.Name,
                                      FormatDate(row.Format, row.TimeOnly ? TimeAlone(now) : now));
    }
    return text;
}

/// Every %name% of a variable becomes its value; of an unknown one, the second % may begin another name.
std::string Placeholders::ExpandEnvironment(const std::string& whole) const {
    const std::string_view text = std::string_view(whole).substr(0, whole.find('\0'));
    if (text.size() >= ExpansionBuffer) return whole;
    std::string result;
    size_t position = 0;
    while (position < text.size()) {
        const size_t open = text.find('%', position);
        const size_t close = open == std::string_view::npos ? open : text.find('%', open + 1);
        if (close == std::string_view::npos) break;
        result += text.substr(position, open - position);
        const std::string name(text.substr(open + 1, close - open - 1));
        const std::optional<std::string> value = name.empty() ? std::nullopt : Places.Environment(name);
        result += value ? *value : std::string(text.substr(open, close - open));
        position = value ? close + 1 : close;
    }
    result += text.substr(position);
    return std::string(CutText(result, ExpansionBuffer - 1));
}

std::string ReplaceMediaValue(std::string_view text, std::string_view placeholder, std::string_view value) {
    constexpr size_t mostValueBytes = 4096;
    constexpr size_t mostTextBytes = 65'536;
    std::string result =
        ReplaceAllIgnoringCase(CutText(text, mostTextBytes), placeholder, CutText(value, mostValueBytes));
    result.resize(CutText(result, mostTextBytes).size());
    return result;
}

std::string ExpandMediaData(std::string_view text, const MediaState& media) {
    std::string result(text);
    const auto replace = [&](std::string_view placeholder, const std::string& value) {
        result = ReplaceMediaValue(result, placeholder, value);
    };
    const STATIONANDSONGDATA& song = media.SongMedia;
    replace("%Artist%", song.Artist);
    replace("%Title%", song.Song);
    replace("%Album%", song.Album);
    replace("%Station%", song.StationName);
    replace("%Genre%", song.StationName);  // the media player's genre is there
    replace("%Source%", media.ProviderName);
    return result;
}

std::string FormatWith(std::string_view text, std::span<const std::string> entries) {
    std::string result(text);
    for (size_t i = 0; i < entries.size(); ++i) {
        result = ReplaceAll(result, "%" + std::to_string(i + 1), entries[i]);
    }
    return result;
}

std::string SanitizeFolderName(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        if (std::string_view("/:*?\"<>|").find(character) != std::string_view::npos) character = '_';
    }
    return std::string(TrimBlanks(result));
}

std::string SanitizeFileName(std::string_view text) {
    return ReplaceAll(SanitizeFolderName(text), "\\", "_");
}

std::string PathPart(std::string_view path, PathPiece piece) {
    const size_t separator = path.find_last_of("\\/");
    if (separator == std::string_view::npos) return {};
    const std::string_view file = path.substr(separator + 1);
    const std::string_view folder = path.substr(0, separator);
    const size_t dot = file.rfind('.');
    switch (piece) {
        case PathPiece::NameWithoutExtension:
            return std::string(file.substr(0, dot));
        case PathPiece::Extension:
            return dot == std::string_view::npos ? std::string() : std::string(file.substr(dot + 1));
        case PathPiece::FileName:
            return std::string(file);
        case PathPiece::FolderWithoutDrive:
            return FolderWithoutDrive(path, folder);
        case PathPiece::LastFolder: {
            const std::string withoutDrive = FolderWithoutDrive(path, folder);
            const size_t last = withoutDrive.find_last_of("\\/");
            return last == std::string::npos ? withoutDrive : withoutDrive.substr(last + 1);
        }
        case PathPiece::Folder:
            return std::string(folder);
        case PathPiece::Drive:
            return path.find(':') == std::string_view::npos ? std::string() : std::string(path.substr(0, 3));
    }
    return {};
}

std::string NormalizePath(std::string_view path) {
    std::string result;
    for (const char character : path) {
        if (!IsSeparator(character)) {
            result += character;
        } else if (!result.ends_with('/')) {
            result += '/';
        }
    }
    if (result.size() > 1 && result.ends_with('/')) result.pop_back();
    return result;
}

std::string SafePathPart(std::string_view text, size_t limit) {
    const std::string printable = PrintableText(SanitizeFileName(text));
    std::string part(TrimBlanks(CutText(TrimBlanks(printable), limit)));
    if (part.empty() || part == "." || part == "..") return "_";
    return part;
}

std::string SafeRelativeFolder(std::string_view text) {
    std::string result;
    for (const std::string& part : Split(ReplaceAll(text, "\\", "/"), '/')) {
        if (TrimBlanks(part).empty()) continue;
        if (!result.empty()) result += '/';
        result += SafePathPart(part);
    }
    return result;
}

}  // namespace Corvetape
