#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Corvetape {

class Clock;
class Folders;
class RegistryBranches;
struct MediaState;

/// Expands the placeholders of folders, addresses and start programs: folders of the machine, date and time,
/// then environment variables, then doubled backslashes, which become one except at the beginning.
class Placeholders {
 public:
    /// All of them must outlive it.
    Placeholders(const Clock& clock, Folders& folders, const RegistryBranches& registry);

    /// Ignores the case of names. A value that holds a later placeholder is expanded further. What is not
    /// known stays as it stands. Separators stay as they are given; see NormalizePath.
    std::string ExpandPlaceholders(std::string_view text) const;

 private:
    std::string ExpandFolders(std::string text) const;
    std::string ExpandTimes(std::string text) const;
    std::string ExpandEnvironment(const std::string& text) const;

    const Clock& Time;
    Folders& Places;
    const RegistryBranches& Registry;
};

/// Replaces one placeholder, ignoring case, by a value that a stranger wrote. The value is cut to 4096 bytes
/// and the text to 65536 before and after the step, so that values that hold further placeholders do not
/// make a text grow beyond all bounds.
std::string ReplaceMediaValue(std::string_view text, std::string_view placeholder, std::string_view value);

/// Expands %Artist%, %Title%, %Album%, %Station%, %Genre% and %Source% in this order, ignoring case, from
/// `SongMedia` and `ProviderName`. A value that holds a later placeholder is expanded further. What is not
/// known stays. Values and text are cut as by ReplaceMediaValue.
std::string ExpandMediaData(std::string_view text, const MediaState& media);

/// Replaces %1, %2, ... by the entries, entry after entry, so that an entry may hold the number of a later
/// one. More than nine entries are not meant to be used: "%10" is hit by the first.
std::string FormatWith(std::string_view text, std::span<const std::string> entries);

/// Replaces / : * ? " < > | by "_" and takes blanks off both ends. Backslashes stay.
std::string SanitizeFolderName(std::string_view text);

/// SanitizeFolderName, and each backslash becomes "_".
std::string SanitizeFileName(std::string_view text);

/// What PathPart takes out of a path.
enum class PathPiece : int32_t {
    NameWithoutExtension = 1,
    Extension,
    FileName,
    FolderWithoutDrive,
    LastFolder,
    Folder,
    Drive,
};

/// A piece of a path. Backslash and slash separate alike, and come back as they were given. Empty for a path
/// without a separator and for any other piece.
std::string PathPart(std::string_view path, PathPiece piece);

/// A path as the system writes it: slashes for backslashes, none doubled, none at the end but the root's.
std::string NormalizePath(std::string_view path);

/// Longest name part that leaves room for an extension in the 255 bytes of a file system.
inline constexpr size_t SafePartBytes = 240;

/// One name part out of any text, which can never lead out of its folder: SanitizeFileName, control
/// characters and bytes that are not UTF-8 as "_", "." and ".." as "_", cut between two characters to
/// `limit` bytes. An empty text, also one that only becomes empty, gives "_".
std::string SafePathPart(std::string_view text, size_t limit = SafePartBytes);

/// A folder below another one out of any text: its parts between backslashes and slashes, each by
/// SafePathPart, empty ones left out, with "/" between them ("a/b"). Empty if there is none.
std::string SafeRelativeFolder(std::string_view text);

}  // namespace Corvetape
