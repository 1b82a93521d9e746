#include "core/settings/profile.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "core/text/text.h"
#include "platform/files.h"

namespace Corvetape {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trim(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// What a value reads as: trimmed, and one pair of quotes taken off.
std::string_view ReadValue(std::string_view text) {
    const std::string_view trimmed = Trim(text);
    if (trimmed.size() < 2 || trimmed.front() != trimmed.back()) return trimmed;
    if (trimmed.front() != '"' && trimmed.front() != '\'') return trimmed;
    return trimmed.substr(1, trimmed.size() - 2);
}

/// What has to be written so that it reads as `value`.
std::string WrittenValue(std::string_view value) {
    return ReadValue(value) == value ? std::string(value) : "\"" + std::string(value) + "\"";
}

bool IsLineEnd(char character) {
    return character == '\r' || character == '\n' || character == '\0';
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    std::ranges::replace_if(line, IsLineEnd, ' ');
    return line;
}

bool FitsName(std::string_view name) {
    return std::ranges::none_of(name, IsLineEnd) && Trim(name) == name;
}

/// True if only blanks, and perhaps a comment, follow from `position` on.
bool IsRestOver(std::string_view text, size_t position) {
    const size_t next = text.find_first_not_of(" \t", position);
    return next == std::string_view::npos || text[next] == ';';
}

/// True for a name that stands between its brackets as it is.
bool IsPlainSection(std::string_view name) {
    if (Trim(name) != name || name.starts_with('"')) return false;
    for (size_t i = name.find(']'); i != std::string_view::npos; i = name.find(']', i + 1)) {
        const size_t next = name.find_first_not_of(" \t", i + 1);
        if (next != std::string_view::npos && name[next] == ';') return false;
    }
    return true;
}

struct SectionName {
    std::string_view Name;
    std::string_view Raw;  ///< with the blanks between the brackets
};

/// The name in a line that begins with "[". It may hold brackets itself: the one that ends it has nothing but
/// a comment after it.
std::optional<SectionName> ReadSection(std::string_view line) {
    constexpr std::string_view quoted = "[\"";
    constexpr std::string_view quotedEnd = "\"]";
    if (line.starts_with(quoted)) {
        for (size_t i = line.find(quotedEnd, 2); i != std::string_view::npos;
             i = line.find(quotedEnd, i + 1)) {
            const std::string_view name = line.substr(2, i - 2);
            if (IsRestOver(line, i + 2) && !IsPlainSection(name)) return SectionName{name, name};
        }
    }
    const size_t first = line.find(']');
    if (first == std::string_view::npos) return std::nullopt;
    size_t close = first;
    while (close != std::string_view::npos && !IsRestOver(line, close + 1)) close = line.find(']', close + 1);
    const std::string_view raw = line.substr(1, (close == std::string_view::npos ? first : close) - 1);
    return SectionName{Trim(raw), raw};
}

/// What has to be written so that it reads as a section of this name.
std::string WrittenSection(std::string_view name) {
    const std::string quote = IsPlainSection(name) ? "" : "\"";
    return "[" + quote + std::string(name) + quote + "]";
}

bool FitsSection(std::string_view name) {
    if (std::ranges::any_of(name, IsLineEnd)) return false;
    const std::string written = WrittenSection(name);
    const auto read = ReadSection(written);
    return read && read->Name == name;
}

bool FitsKey(std::string_view name) {
    return FitsName(name) && !name.empty() && name.find('=') == std::string_view::npos &&
           name.front() != ';' && name.front() != '[' && !name.starts_with(ByteOrderMark);
}

enum class LineKind { Other, Section, Key };

/// One line of the file. Positions count from the file's beginning.
struct Line {
    LineKind Kind = LineKind::Other;
    size_t Begin = 0;
    size_t ValueBegin = 0;  ///< after "=" and the blanks that follow it
    size_t TextEnd = 0;     ///< before the line end
    size_t End = 0;         ///< after the line end
    std::string_view Name;  ///< of the section or key
    std::string_view Raw;   ///< name of the section with the blanks round it
    std::string_view Value;
    bool Blank = false;
};

void Classify(Line& line, std::string_view file, size_t textBegin) {
    std::string_view text = file.substr(textBegin, line.TextEnd - textBegin);
    text = text.substr(0, text.find('\0'));
    const std::string_view trimmed = Trim(text);
    line.Blank = trimmed.empty();
    if (line.Blank || trimmed.front() == ';') return;
    if (trimmed.front() == '[') {
        const auto name = ReadSection(trimmed);
        if (!name) return;
        line.Kind = LineKind::Section;
        line.Name = name->Name;
        line.Raw = name->Raw;
        return;
    }
    const size_t equals = text.find('=');
    if (equals == std::string_view::npos) return;
    line.Kind = LineKind::Key;
    line.Name = Trim(text.substr(0, equals));
    line.Value = ReadValue(text.substr(equals + 1));
    const size_t value = text.find_first_not_of(" \t", equals + 1);
    line.ValueBegin = textBegin + (value == std::string_view::npos ? equals + 1 : value);
}

std::vector<Line> SplitLines(std::string_view file) {
    std::vector<Line> lines;
    size_t begin = 0;
    while (begin < file.size()) {
        Line line;
        line.Begin = begin;
        const size_t feed = file.find('\n', begin);
        line.End = feed == std::string_view::npos ? file.size() : feed + 1;
        line.TextEnd = feed == std::string_view::npos ? file.size() : feed;
        if (line.TextEnd > begin && file[line.TextEnd - 1] == '\r') --line.TextEnd;
        // Also at later lines, as files that were put together have them: else a line would turn into
        // another key when the one above it is deleted.
        size_t text = begin;
        while (file.substr(text, line.TextEnd - text).starts_with(ByteOrderMark))
            text += ByteOrderMark.size();
        Classify(line, file, text);
        lines.push_back(line);
        begin = line.End;
    }
    return lines;
}

/// The line end that a file uses, by its first line.
std::string_view LineEnd(std::string_view file) {
    const size_t feed = file.find('\n');
    return feed != std::string_view::npos && feed > 0 && file[feed - 1] == '\r' ? "\r\n" : "\n";
}

/// What the last line lacks of its line end.
std::string_view MissingLineEnd(std::string_view file) {
    if (file.empty() || file == ByteOrderMark || file.ends_with('\n')) return {};
    return file.ends_with('\r') ? "\n" : LineEnd(file);
}

/// A name with blanks at its ends finds also a section that somebody wrote by hand with these blanks.
bool IsNamed(const Line& line, std::string_view name) {
    return EqualIgnoringCase(line.Name, name) || EqualIgnoringCase(line.Raw, name);
}

/// The lines of a section: from the first one after the header to the next header.
struct LineRange {
    size_t First = 0;
    size_t Last = 0;  ///< after the last one
};

std::optional<LineRange> FindSection(const std::vector<Line>& lines, std::string_view section) {
    size_t first = 0;
    if (!section.empty()) {
        while (first < lines.size() &&
               !(lines[first].Kind == LineKind::Section && IsNamed(lines[first], section))) {
            ++first;
        }
        if (first == lines.size()) return std::nullopt;
        ++first;
    }
    size_t last = first;
    while (last < lines.size() && lines[last].Kind != LineKind::Section) ++last;
    return LineRange{first, last};
}

const Line* FindKey(const std::vector<Line>& lines, LineRange range, std::string_view key) {
    for (size_t i = range.First; i < range.Last; ++i) {
        if (lines[i].Kind == LineKind::Key && EqualIgnoringCase(lines[i].Name, key)) return &lines[i];
    }
    return nullptr;
}

/// After the last key of a section, or after its header if it has none.
size_t EndOfKeys(std::string_view file, const std::vector<Line>& lines, LineRange range) {
    for (size_t i = range.Last; i > range.First; --i) {
        if (lines[i - 1].Kind == LineKind::Key) return lines[i - 1].End;
    }
    if (range.First > 0) return lines[range.First - 1].End;
    return file.starts_with(ByteOrderMark) ? ByteOrderMark.size() : 0;
}

std::string InsertLine(std::string_view file, size_t position, const std::string& line) {
    const std::string end(LineEnd(file));
    const std::string_view missing = position == file.size() ? MissingLineEnd(file) : std::string_view();
    std::string result(file.substr(0, position));
    if (missing.empty()) return result.append(line).append(end).append(file.substr(position));
    return result.append(missing).append(line);  // the last line goes on without a line end
}

std::string AppendSection(std::string_view file, const std::vector<Line>& lines, std::string_view section,
                          const std::string& line) {
    const std::string end(LineEnd(file));
    std::string result(file);
    if (!lines.empty() && file != ByteOrderMark) {
        result += MissingLineEnd(file);
        if (!lines.back().Blank) result += end;
    }
    return result.append(WrittenSection(section)).append(end).append(line).append(end);
}

std::string WithValue(std::string_view file, std::string_view section, std::string_view key,
                      std::string_view value) {
    const std::vector<Line> lines = SplitLines(file);
    const std::string written = WrittenValue(value);
    const std::string newLine = std::string(key) + "=" + written;
    const std::optional<LineRange> range = FindSection(lines, section);
    if (!range) return AppendSection(file, lines, section, newLine);
    const Line* old = FindKey(lines, *range, key);
    if (old == nullptr) return InsertLine(file, EndOfKeys(file, lines, *range), newLine);
    return std::string(file.substr(0, old->ValueBegin)).append(written).append(file.substr(old->TextEnd));
}

/// A line of the same name after the first one goes too, or it would count from then on.
std::string WithoutKey(std::string_view file, std::string_view section, std::string_view key) {
    const std::vector<Line> lines = SplitLines(file);
    const std::optional<LineRange> range = FindSection(lines, section);
    std::string result;
    for (size_t i = 0; i < lines.size(); ++i) {
        const Line& line = lines[i];
        const bool gone = range && i >= range->First && i < range->Last && line.Kind == LineKind::Key &&
                          EqualIgnoringCase(line.Name, key);
        if (!gone) {
            result.append(file.substr(line.Begin, line.End - line.Begin));
        } else if (line.Begin == 0 && file.starts_with(ByteOrderMark)) {
            result.append(ByteOrderMark);
        }
    }
    return result;
}

std::string WithoutSection(std::string_view file, std::string_view section) {
    std::string result;
    bool inside = section.empty();
    for (const Line& line : SplitLines(file)) {
        if (line.Kind == LineKind::Section) inside = IsNamed(line, section);
        if (!inside) result.append(file.substr(line.Begin, line.End - line.Begin));
    }
    return result;
}

}  // namespace

Profile::Profile(Files& files, std::string path, WriteCare care)
    : Disk(files), OwnPath(std::move(path)), Care(care) {}

const Profile::Section* Profile::Content::Find(std::string_view name) const {
    const auto found = Places.find(LowerCase(name));
    return found == Places.end() ? nullptr : &Sections[found->second];
}

Profile::Content Profile::Parse(std::string_view text) {
    Content content{{Section{}}, {{"", 0}}};
    Section* current = content.Sections.data();
    for (const Line& line : SplitLines(text)) {
        if (line.Kind == LineKind::Section) {
            const size_t place = content.Sections.size();
            const bool byName = content.Places.emplace(LowerCase(line.Name), place).second;
            const bool blanks = line.Raw.size() != line.Name.size();
            const bool byRaw = blanks && content.Places.emplace(LowerCase(line.Raw), place).second;
            current = nullptr;  // one that nobody can ask for
            if (!byName && !byRaw) continue;
            current = &content.Sections.emplace_back(Section{std::string(line.Name), {}});
        } else if (line.Kind == LineKind::Key && current != nullptr && !line.Name.empty()) {
            current->Entries.push_back({std::string(line.Name), std::string(line.Value)});
        }
    }
    return content;
}

/// The file as it is now, empty if there is none. Fails if there is one that cannot be read.
FileOr<std::string> Profile::ReadFile() const {
    FileOr<std::string> text = Disk.ReadAll(OwnPath, SizeLimit);
    if (!text && !Disk.FileSize(OwnPath)) return std::string();
    return text;
}

/// What is answered to a name that cannot stand in such a file.
FileResult Profile::Unfit() const {
    return {"write", OwnPath, std::make_error_code(std::errc::invalid_argument)};
}

const Profile::Content& Profile::Load() const {
    if (Known) return Cache;
    const FileOr<std::string> text = ReadFile();
    Cache = Parse(text.value_or(std::string()));
    Known = text.has_value();  // an unreadable file is tried again the next time
    return Cache;
}

std::optional<std::string> Profile::Find(std::string_view section, std::string_view key) const {
    const auto overridden = Overrides.find({LowerCase(section), LowerCase(key)});
    if (overridden != Overrides.end()) return overridden->second.Value;
    const Section* const found = Load().Find(section);
    if (found == nullptr) return std::nullopt;
    for (const Entry& entry : found->Entries) {
        if (EqualIgnoringCase(entry.Key, key)) return entry.Value;
    }
    return std::nullopt;
}

std::string Profile::ReadText(std::string_view section, std::string_view key, std::string_view fallback,
                              size_t limit) const {
    const std::optional<std::string> value = Find(section, key);
    return std::string(CutCharacters(value ? std::string_view(*value) : fallback, limit));
}

int32_t Profile::ReadInt(std::string_view section, std::string_view key, int32_t fallback) const {
    const std::optional<std::string> value = Find(section, key);
    if (!value || value->empty()) return fallback;
    std::string_view text = Trim(*value);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    int64_t number = 0;
    constexpr int64_t tooLarge = int64_t{1} << 40;
    for (const char digit : text) {
        if (digit < '0' || digit > '9') break;
        number = std::min(tooLarge, number * 10 + (digit - '0'));
    }
    if (negative) number = -number;
    return static_cast<int32_t>(std::clamp<int64_t>(number, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

bool Profile::HasKey(std::string_view section, std::string_view key) const {
    return Find(section, key).has_value();
}

std::vector<std::string> Profile::Keys(std::string_view section, size_t bufferBytes) const {
    std::vector<std::string> names;
    if (const Section* const found = Load().Find(section)) {
        for (const Entry& entry : found->Entries) names.push_back(entry.Key);
    }
    for (const auto& [name, entry] : Overrides) {
        if (!EqualIgnoringCase(entry.Section, section)) continue;
        const auto same = [&key = entry.Key](const std::string& each) {
            return EqualIgnoringCase(each, key);
        };
        if (!entry.Value) {
            std::erase_if(names, same);
        } else if (std::ranges::none_of(names, same)) {
            names.push_back(entry.Key);
        }
    }
    size_t used = 1;
    for (size_t i = 0; i < names.size(); ++i) {
        used += names[i].size() + 1;
        if (used <= bufferBytes) continue;
        names.resize(i);
        break;
    }
    return names;
}

std::vector<std::string> Profile::Sections() const {
    std::vector<std::string> names;
    const Content& content = Load();
    for (const Section& each : content.Sections) {
        // One of the same name may follow with other blanks round it.
        if (!each.Name.empty() && content.Find(each.Name) == &each) names.push_back(each.Name);
    }
    for (const auto& [name, entry] : Overrides) {
        const auto same = [&section = entry.Section](const std::string& each) {
            return EqualIgnoringCase(each, section);
        };
        if (entry.Value && !entry.Section.empty() && std::ranges::none_of(names, same)) {
            names.push_back(entry.Section);
        }
    }
    return names;
}

FileResult Profile::Replace(const std::string& before, const std::string& after) {
    // Loading the settings writes back what it read; a file that would not change is left in peace.
    if (before == after) return {};
    Known = false;
    return Care == WriteCare::Disk ? Disk.ReplaceAtomically(OwnPath, after)
                                   : Disk.ReplaceQuickly(OwnPath, after);
}

Profile::Overridden* Profile::FindOverride(std::string_view section, std::string_view key) {
    const auto found = Overrides.find({LowerCase(section), LowerCase(key)});
    return found == Overrides.end() ? nullptr : &found->second;
}

FileResult Profile::Write(std::string_view section, std::string_view key, std::string_view value) {
    if (!FitsSection(section) || !FitsKey(key)) return Unfit();
    const std::string line = OneLine(value);
    if (Overridden* overridden = FindOverride(section, key)) {
        overridden->Value = line;
        return {};
    }
    const FileOr<std::string> file = ReadFile();
    return file ? Replace(*file, WithValue(*file, section, key, line)) : file.Failure;
}

FileResult Profile::Delete(std::string_view section, std::string_view key) {
    if (Overridden* overridden = FindOverride(section, key)) {
        overridden->Value.reset();
        return {};
    }
    const FileOr<std::string> file = ReadFile();
    return file ? Replace(*file, WithoutKey(*file, section, key)) : file.Failure;
}

FileResult Profile::DeleteSection(std::string_view section) {
    return ReplaceSection(section, {});
}

FileResult Profile::ReplaceSection(std::string_view section,
                                   std::span<const std::pair<std::string, std::string>> entries) {
    if (!entries.empty() && !FitsSection(section)) return Unfit();
    if (!std::ranges::all_of(entries, [](const auto& entry) { return FitsKey(entry.first); })) return Unfit();
    for (auto& [name, entry] : Overrides) {
        if (EqualIgnoringCase(entry.Section, section)) entry.Value.reset();
    }
    const FileOr<std::string> file = ReadFile();
    if (!file) return file.Failure;
    std::string after = WithoutSection(*file, section);
    for (const auto& [key, value] : entries) {
        const std::string line = OneLine(value);
        if (Overridden* overridden = FindOverride(section, key)) {
            overridden->Value = line;
        } else {
            after = WithValue(after, section, key, line);
        }
    }
    return Replace(*file, after);
}

void Profile::Override(std::string_view section, std::string_view key, std::string_view value) {
    Overrides[{LowerCase(section), LowerCase(key)}] = {std::string(section), std::string(key),
                                                       OneLine(value)};
}

}  // namespace Corvetape
