#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/file_result.h"

namespace Corvetape {

class Files;

/// How long a write waits.
enum class WriteCare {
    Disk,     ///< until the disk has it: no power cut takes it back
    Process,  ///< not at all: only the end of the process at any moment is provided for
};

/// A settings file of sections in brackets and `key=value` lines.
///
/// Names of sections and keys are compared with A to Z taken as a to z. Of sections or keys of one name the
/// first counts. A section's name may hold "]"; one that would not read back as it is stands in quotes
/// between its brackets. Blanks and tabs round names and values do not count, and one pair of quotes, single
/// or double, round a value is taken off. A line whose first character is ";" is a comment, a line without
/// "=" is none of a key's. The section with the empty name holds the lines before the first section.
///
/// Every write replaces the file at once and as a whole; there is nothing to flush. All lines but the one
/// concerned stay byte for byte as they are. Reads come from memory, since the program is the only writer; a
/// write looks at the file anew first, so that what somebody edited meanwhile is not undone.
///
/// Byte order marks ahead of a line are passed over, a line is read up to its first NUL byte, and bytes that
/// are not UTF-8 are handed on as they are. A file above `SizeLimit` or one that cannot be read counts as
/// empty for reading, and refuses to be written.
class Profile {
 public:
    static constexpr uint64_t SizeLimit = 64ULL * 1024 * 1024;
    static constexpr size_t NoLimit = std::numeric_limits<size_t>::max();

    /// `files` must outlive it. The file is first read when something is asked.
    Profile(Files& files, std::string path, WriteCare care = WriteCare::Disk);

    const std::string& Path() const { return OwnPath; }

    /// The value, or `fallback` if there is no such key. At most `limit` characters.
    std::string ReadText(std::string_view section, std::string_view key, std::string_view fallback,
                         size_t limit = NoLimit) const;

    /// The whole number that the value begins with, brought into the range of 32 bits; 0 if it begins with
    /// none; `fallback` if the key is missing or its value is empty.
    int32_t ReadInt(std::string_view section, std::string_view key, int32_t fallback) const;

    bool HasKey(std::string_view section, std::string_view key) const;

    /// Names of a section's keys in the order of its lines, a doubled one twice, lines without a name left
    /// out. Names that do not fit into a buffer of `bufferBytes`, each with a closing NUL and one more at the
    /// end, are lost.
    std::vector<std::string> Keys(std::string_view section, size_t bufferBytes = NoLimit) const;

    /// Names of the sections in the order of the file, each once.
    std::vector<std::string> Sections() const;

    /// Writes a key at once. Line ends and NUL bytes in the value become blanks, and a value that would be
    /// read back without its blanks or quotes is put into quotes. A new key goes to the end of its section, a
    /// new section to the end of the file. Fails if the file could not be read or replaced, or if a name
    /// cannot stand in such a file (line ends in it; a key with "=", or beginning with ";" or "[").
    FileResult Write(std::string_view section, std::string_view key, std::string_view value);

    /// Removes a key, all its lines in its section. Goes well also if it was never there.
    FileResult Delete(std::string_view section, std::string_view key);

    /// Removes a section with all its lines, all sections of that name. Overridden keys of it are missing
    /// from then on.
    FileResult DeleteSection(std::string_view section);

    /// Puts these keys with their values, in this order, in the place of all that the section holds. The file
    /// is written once: a process that ends in the middle leaves the old section or the new one. Overridden
    /// keys are changed in memory only, as by DeleteSection and Write.
    FileResult ReplaceSection(std::string_view section,
                              std::span<const std::pair<std::string, std::string>> entries);

    /// For this run only: reads return `value`, and later writes of this key stay in memory too.
    void Override(std::string_view section, std::string_view key, std::string_view value);

    /// Forgets what was read, for a file that something else has replaced. Overrides stay.
    void Reload() { Known = false; }

 private:
    struct Entry {
        std::string Key;
        std::string Value;
    };
    struct Section {
        std::string Name;
        std::vector<Entry> Entries;
    };
    struct Content {
        std::vector<Section> Sections;

        /// Places by the small letters of the names, with and without the blanks round them.
        std::unordered_map<std::string, size_t> Places;

        const Section* Find(std::string_view name) const;
    };

    struct Overridden {
        std::string Section;
        std::string Key;
        std::optional<std::string> Value;  ///< nothing: deleted
    };
    using Name = std::pair<std::string, std::string>;

    static Content Parse(std::string_view text);
    FileOr<std::string> ReadFile() const;
    FileResult Unfit() const;
    const Content& Load() const;
    std::optional<std::string> Find(std::string_view section, std::string_view key) const;
    FileResult Replace(const std::string& before, const std::string& after);
    Overridden* FindOverride(std::string_view section, std::string_view key);

    Files& Disk;
    std::string OwnPath;
    WriteCare Care;
    std::map<Name, Overridden> Overrides;
    mutable Content Cache;
    mutable bool Known = false;
};

}  // namespace Corvetape
