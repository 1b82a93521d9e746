#include "post/lists/watch_list.h"

#include <algorithm>

#include "core/text/fold.h"
#include "core/text/placeholders.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr uint64_t LargestList = 64ULL * 1024 * 1024;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";  // some editors put it into UTF-8 files
constexpr std::array<std::string_view, 4> MusicExtensions = {".wav", ".wma", ".mp3", ".ogg"};

}  // namespace

bool WatchList::Add(std::string_view entry) {
    std::u32string key = FoldText(entry);
    if (!Keys.insert(key).second) return false;
    OwnEntries.emplace_back(entry);
    LikePattern pattern(entry, LikeCase::Ignored);
    if (pattern.IsPlain()) {
        Plain.insert(std::move(key));
    } else {
        Patterns.push_back({std::move(key), std::move(pattern)});
    }
    return true;
}

size_t WatchList::RemoveAll(std::span<const std::string> entries) {
    std::unordered_set<std::u32string> gone;
    for (const std::string& entry : entries) {
        std::u32string key = FoldText(entry);
        if (Keys.erase(key) > 0) gone.insert(std::move(key));
    }
    if (gone.empty()) return 0;
    for (const std::u32string& key : gone) Plain.erase(key);
    std::erase_if(Patterns, [&](const Pattern& pattern) { return gone.contains(pattern.Key); });
    std::erase_if(OwnEntries, [&](const std::string& each) { return gone.contains(FoldText(each)); });
    return gone.size();
}

bool WatchList::Holds(std::string_view name) const {
    const std::u32string folded = FoldText(name);
    if (Plain.contains(folded)) return true;
    return std::ranges::any_of(
        Patterns, [&](const Pattern& pattern) { return pattern.Compiled.MatchesCharacters(folded); });
}

std::string WatchLists::FileOf(WatchListKind kind) const {
    return Folders.Paths[2] + (kind == WatchListKind::Include ? "/Include.txt" : "/Exclude.txt");
}

bool WatchLists::LoadWatchList(WatchListKind kind) {
    const auto text = Disk.ReadAll(FileOf(kind), LargestList);
    bool& unread = Unread[static_cast<size_t>(kind)];
    unread = !text && Disk.FileSize(FileOf(kind)).has_value();
    if (!text) return false;
    std::string_view content = *text;
    if (content.starts_with(ByteOrderMark)) content.remove_prefix(ByteOrderMark.size());
    WatchList list;
    for (std::string_view line : Split(content, '\n')) {
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (!line.empty()) list.Add(line);
    }
    ListOf(kind) = std::move(list);
    return true;
}

void WatchLists::FollowFolder(const std::string& before) {
    for (const WatchListKind kind : {WatchListKind::Include, WatchListKind::Exclude}) {
        const std::string file = FileOf(kind);
        if (Disk.FileSize(file)) {
            LoadWatchList(kind);  // asked of IsUnread
        } else if (IsUnread(kind)) {
            Disk.Copy(before + file.substr(file.rfind('/')),
                      file);  // a list that was not copied is still there
        } else if (!List(kind).Entries().empty()) {
            SaveWatchList(kind);  // in memory it holds until the program ends
        }
    }
}

bool WatchLists::SaveWatchList(WatchListKind kind) {
    if (IsUnread(kind)) return false;
    std::string text;
    for (const std::string& entry : List(kind).Entries()) text.append(entry).append("\r\n");
    // Reading takes one mark away; what is a part of the first name has to stay.
    if (text.starts_with(ByteOrderMark)) text.insert(0, ByteOrderMark);
    return static_cast<bool>(Disk.ReplaceAtomically(FileOf(kind), text));
}

void WatchLists::MakeFile(WatchListKind kind) {
    if (!Disk.FileSize(FileOf(kind))) SaveWatchList(kind);
}

bool WatchLists::AddToWatchList(WatchListKind kind, std::string_view entry) {
    // A line end would make two entries of one when the file is read again.
    std::string text(entry);
    std::ranges::replace_if(
        text, [](char each) { return each == '\r' || each == '\n'; }, ' ');
    const std::string_view line = TrimBlanks(text);
    if (line.empty() || !ListOf(kind).Add(line)) return false;
    SaveWatchList(kind);  // a list that cannot be written holds in memory until the program ends
    return true;
}

bool WatchLists::IsSongExcluded(std::string_view songName) const {
    return !List(WatchListKind::Include).Holds(songName) && List(WatchListKind::Exclude).Holds(songName);
}

std::string WatchedName(std::string_view musicFileTemplate, const STATIONANDSONGDATA& media) {
    std::string name = ReplaceMediaValue(musicFileTemplate, "%Artist%", media.Artist);
    name = ReplaceMediaValue(name, "%Title%", media.Song);
    name = SanitizeFileName(ReplaceMediaValue(name, "%Album%", media.Album));
    // The music file is called like this too.
    return name.empty() ? name : SafePathPart(name);
}

std::string NameOfDroppedFile(std::string_view path) {
    const size_t folderEnd = path.find_last_of("\\/");
    if (folderEnd == std::string_view::npos || folderEnd == 0) return {};
    const std::string_view file = path.substr(folderEnd + 1);
    if (file.find_first_of("\r\n") != std::string_view::npos) return {};
    for (const std::string_view extension : MusicExtensions) {
        if (file.size() < extension.size()) continue;
        const size_t stem = file.size() - extension.size();
        if (EqualIgnoringCase(file.substr(stem), extension))
            return std::string(TrimBlanks(file.substr(0, stem)));
    }
    return {};
}

}  // namespace Corvetape
