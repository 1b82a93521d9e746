#include "recording/song_actions.h"

#include <algorithm>
#include <chrono>

#include "core/controls/message_texts.h"
#include "core/opening.h"
#include "core/text/date_format.h"
#include "post/lists/watch_list.h"

namespace Corvetape {

namespace {

constexpr uint64_t LargestLog = 64ULL * 1024 * 1024;

/// Name of a file without folder and extension.
std::string BaseNameOf(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    return name.substr(0, name.rfind('.'));
}

/// The name as a list takes it literally: what begins a pattern is put into brackets.
std::string Literal(const std::string& name) {
    std::string text;
    for (const char letter : name) {
        const bool special = letter == '[' || letter == '#' || letter == '*' || letter == '?';
        text += special ? std::string("[") + letter + "]" : std::string(1, letter);
    }
    return text;
}

DateTime DayBefore(const DateTime& now) {
    using namespace std::chrono;
    const year_month_day today{year(now.Year), month(static_cast<unsigned>(now.Month)),
                               day(static_cast<unsigned>(now.Day))};
    const year_month_day before{sys_days(today) - days(1)};
    DateTime date = now;
    date.Year = static_cast<int>(before.year());
    date.Month = static_cast<int32_t>(static_cast<unsigned>(before.month()));
    date.Day = static_cast<int32_t>(static_cast<unsigned>(before.day()));
    return date;
}

}  // namespace

std::string SongActions::FileToPlay(const RunSong& song) const {
    for (const std::string& path : {song.MusicFile, song.TempFile}) {
        if (!path.empty() && Parts.Files.FileSize(path)) return path;
    }
    return {};
}

void SongActions::Play(const RunSong& song) {
    const std::string file = FileToPlay(song);
    if (!file.empty()) return OpenOutside(file, Parts.Processes, Parts.Say);
    const std::string name = song.Media.Song.empty() ? BaseNameOf(song.TempFile) : song.Media.Song;
    Parts.Say.Box(Parts.Say.Text(Message::SongIsGone.Key, {name}), DialogIcon::Information);
}

void SongActions::OpenFolder(const RunSong& song) {
    const std::string file = FileToPlay(song);
    if (!file.empty()) OpenOutside(file.substr(0, file.rfind('/')), Parts.Processes, Parts.Say);
}

bool SongActions::CanBeKept(const RunSong& song) const {
    const bool left = song.Fate != SongFate::Kept || song.Progress == SongProgress::Failed;
    return left && !song.TempFile.empty() && Parts.Files.FileSize(song.TempFile).has_value();
}

void SongActions::Keep(const RunSong& song) {
    if (!CanBeKept(song)) return;
    LeftSong left{BaseNameOf(song.TempFile), {}};
    left.Note.Media = song.Media;
    Parts.Transfer.TransferLeftSong(left, static_cast<int32_t>(song.Seconds));
}

std::string SongActions::ListName(const RunSong& song) const {
    if (song.Media.Song.empty()) return {};
    return Literal(WatchedName(Parts.Settings.MusicFileTemplate[1], song.Media));
}

void SongActions::PutOnList(const RunSong& song, WatchListKind list) {
    const std::string name = ListName(song);
    if (!name.empty()) Parts.Lists.AddToWatchList(list, name);
}

std::string SongActions::LogLines(const RunSong& song) const {
    const std::string name = song.Media.Song.empty() ? BaseNameOf(song.TempFile) : song.Media.Song;
    if (name.empty()) return {};
    const DateTime now = Parts.Clock.LocalNow();
    // A run may go on past midnight.
    return LinesWith(name, DayBefore(now)) + LinesWith(name, now);
}

std::string SongActions::LinesWith(std::string_view name, const DateTime& day) const {
    const std::string path = Parts.Folders.Paths[2] + "/" + FormatDate("yyyymmdd", day) + ".log";
    const auto log = Parts.Files.ReadAll(path, LargestLog);
    if (!log) return {};
    std::string lines;
    for (std::string_view rest = *log; !rest.empty();) {
        const size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
        const std::string_view line = rest.substr(0, end);
        if (line.find(name) != std::string_view::npos) lines.append(line);
        rest.remove_prefix(end);
    }
    return lines;
}

}  // namespace Corvetape
