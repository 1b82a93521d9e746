#include "recording/margins/margin_store.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string_view>
#include <utility>

#include "audio/wav_file.h"
#include "post/encoders/encoder_table.h"
#include "post/transfer/song_notes.h"

namespace Corvetape {

namespace {

/// All that margins are made of; the note goes last, so that a deletion that was broken off is taken up
/// again.
constexpr std::array<const char*, 5> Endings = {".song.wav", ".before.wav", ".after.wav", ".jpg", ".note"};

/// What a cut that was broken off has left begins so.
constexpr const char* RecutEnding = ".recut-";

constexpr int64_t SecondsPerHour = 3600;
constexpr int64_t NanosecondsBetweenLooks = 30LL * 60 * 1'000'000'000;

std::string BaseNameOf(const std::string& path) {
    const size_t begin = path.rfind('/') + 1;
    return path.substr(begin, path.rfind('.') - begin);
}

bool WriteSound(Files& disk, const std::string& path, uint32_t framesPerSecond,
                std::span<const Frame> frames) {
    const auto file = WavFile::Create(disk, path, MakeWaveFormat(framesPerSecond));
    return file && file->Write(frames) && file->FinishData() && file->FinishRiff() && file->Close();
}

}  // namespace

MarginStore::MarginStore(Files& disk, const Clock& clock, const Settings& settings,
                         const WorkingFolders& folders, std::string runName)
    : Disk(disk), Time(clock), Options(settings), Folders(folders), RunName(std::move(runName)) {}

int64_t MarginStore::Now() const {
    using namespace std::chrono;
    const DateTime now = Time.LocalNow();
    const sys_days day = year_month_day(year(now.Year), month(static_cast<unsigned>(now.Month)),
                                        std::chrono::day(static_cast<unsigned>(now.Day)));
    const int64_t seconds = (int64_t{now.Hour} * 60 + now.Minute) * 60 + now.Second;
    return duration_cast<std::chrono::seconds>(day.time_since_epoch()).count() + seconds;
}

std::string MarginStore::File(const std::string& base, const char* ending) const {
    return MarginFile(Folders, base, ending);
}

std::string MarginStore::Keep(const ClosedSong& song, std::span<const Frame> before) {
    if (Options.KeepMargins <= 0) return {};
    Disk.MakeFolder(MarginFolder(Folders));  // usually there; a missing one is seen by the note
    KeptMargins margins;
    margins.Run = RunName;
    margins.KeptAt = Now();
    margins.TempSong = BaseNameOf(song.TempPath);
    margins.Base = margins.TempSong;
    margins.Media = song.Media;
    margins.Begin = song.Trust.Begin;
    margins.End = song.Trust.End;
    margins.BeginCut = song.Trust.BeginCut;
    margins.EndCut = song.Trust.EndCut;
    std::string base = ClaimName(margins);
    if (base.empty()) return {};
    if (!Disk.Link(song.TempPath, File(base, ".song.wav"))) {
        Drop(base);
        return {};
    }
    const std::string cover = song.TempPath.substr(0, song.TempPath.rfind('.')) + ".jpg";
    if (Disk.FileSize(cover)) Disk.Link(cover, File(base, ".jpg"));  // without it the tags lose a picture
    if (before.empty()) return base;
    const std::string path = File(base, ".before.wav");
    if (!WriteSound(Disk, path, song.FramesPerSecond, before)) Disk.Delete(path);
    return base;
}

/// Takes a name that no margins have by writing the note there. Two runs may have songs of the same name.
std::string MarginStore::ClaimName(KeptMargins& margins) {
    constexpr int32_t mostNumbers = 1000;
    for (int32_t number = 1; number <= mostNumbers; ++number) {
        margins.Base = margins.TempSong + (number > 1 ? "-" + std::to_string(number) : "");
        const auto note = Disk.CreateNew(File(margins.Base, ".note"));
        if (note) break;
        if (note.Failure.Error != std::errc::file_exists) return {};
    }
    if (Write(margins)) return margins.Base;
    Drop(margins.Base);
    return {};
}

void MarginStore::AddAfter(const std::string& base, uint32_t framesPerSecond, std::span<const Frame> after) {
    if (after.empty() || !Disk.FileSize(File(base, ".note"))) return;
    const std::string path = File(base, ".after.wav");
    if (!WriteSound(Disk, path, framesPerSecond, after)) Disk.Delete(path);
}

/// Names may come again; the newest margins are meant.
std::optional<KeptMargins> MarginStore::Newest(std::string KeptMargins::*field,
                                               const std::string& value) const {
    std::vector<KeptMargins> all = List();
    const auto found = std::ranges::find(all.rbegin(), all.rend(), value, field);
    if (value.empty() || found == all.rend()) return std::nullopt;
    return *found;
}

void MarginStore::SongTransferred(const TransferredSong& song) {
    const bool hasTakenName = song.JobName.empty() && song.OlderSong;
    std::optional<KeptMargins> margins = Newest(&KeptMargins::TempSong, song.Media.TempFileName);
    if (hasTakenName) TakeNameFromOthers(margins ? margins->Base : "", {song.TempFile, song.OlderSong});
    if (!margins) return;
    margins->TempSong = BaseNameOf(song.TempFile);
    margins->Media = song.Media;
    margins->Normalize = Options.Normalize;
    margins->MusicKnown = false;
    margins->Job = song.JobName;
    if (song.JobName.empty()) {
        margins->MusicFile = song.TempFile;
        margins->MusicKnown = true;
        margins->Encoder = -1;
    } else {
        const auto row = std::ranges::find(EncoderTable, song.JobLabel, &EncoderRow::JobLabel);
        if (row == EncoderTable.end()) return;
        margins->Encoder = static_cast<int32_t>(row - EncoderTable.begin());
        margins->Quality = row->QualityIndex != nullptr ? Options.*row->QualityIndex : 0;
        margins->MusicFile = song.MusicFile;
        // Nobody may be left to report it, but a name that was free goes to nobody else.
        margins->MusicKnown = !Disk.FileSize(song.MusicFile).has_value();
    }
    Write(*margins);  // without it the song cannot be cut again, as if it had not been kept
}

void MarginStore::MusicMade(const std::string& job, const MadeMusic& music) {
    std::optional<KeptMargins> margins = Newest(&KeptMargins::Job, job);
    TakeNameFromOthers(margins ? margins->Base : "", music);
    if (!margins) return;
    margins->MusicFile = music.MusicFile;
    margins->MusicKnown = true;
    Write(*margins);
}

/// A music file has this name now, and no other song that had it: the older one has got a number, or is gone.
/// `base`: the margins of the song in that file.
void MarginStore::TakeNameFromOthers(const std::string& base, const MadeMusic& music) {
    const bool isNumbered = music.Older && *music.Older != OlderIsReplaced;
    for (KeptMargins& margins : List()) {
        if (margins.Base == base || margins.MusicFile != music.MusicFile || !margins.MusicKnown) continue;
        if (isNumbered && !IsWaiting(margins)) {
            std::string& file = margins.MusicFile;
            file.insert(std::min(file.rfind('.'), file.size()), " (" + std::to_string(*music.Older) + ")");
        } else {
            margins.MusicKnown = false;
        }
        Write(margins);  // a disk that refuses it keeps the old name, which may be another song's then
    }
}

std::vector<KeptMargins> MarginStore::List() const {
    constexpr std::string_view ending = ".note";
    std::vector<KeptMargins> all;
    for (const FileEntry& entry : Disk.List(MarginFolder(Folders))) {
        if (entry.IsFolder || !entry.Name.ends_with(ending)) continue;
        const std::string base = entry.Name.substr(0, entry.Name.size() - ending.size());
        if (auto margins = ReadMarginNote(Disk, Folders, base)) all.push_back(std::move(*margins));
    }
    std::ranges::stable_sort(all, {}, &KeptMargins::KeptAt);
    return all;
}

FileResult MarginStore::Write(const KeptMargins& margins) {
    return Disk.ReplaceQuickly(File(margins.Base, ".note"), MarginNoteText(margins));
}

bool MarginStore::IsWaiting(const KeptMargins& margins) const {
    const std::string path = Folders.SongTempFolder + "/" + margins.TempSong + ".note";
    if (margins.TempSong.empty() || !Disk.FileSize(path)) return false;
    const std::optional<SongNote> note = ReadSongNote(Disk, path);
    return note && note->HandedOn < MostHandOvers;
}

int64_t MarginStore::SecondsLeft(const KeptMargins& margins) const {
    const int64_t kept = SecondsPerHour * std::max(Options.KeepMargins, 0);
    const int64_t age = Now() - margins.KeptAt;
    // A clock that was set back must not make them last for years.
    if (age < -kept) return 0;
    return std::max<int64_t>(kept - age, 0);
}

void MarginStore::DropOld() {
    const int64_t now = Time.MonotonicNanoseconds();
    if (LastLook && now - *LastLook < NanosecondsBetweenLooks) return;
    LastLook = now;
    for (const KeptMargins& margins : List()) {
        if (SecondsLeft(margins) == 0 && !IsWaiting(margins)) Drop(margins.Base);
    }
}

bool MarginStore::DropOldest() {
    // Whoever makes room asks again and again. New margins are younger than those that are listed.
    const bool isFresh = ByAge.empty();
    if (isFresh) {
        for (const KeptMargins& margins : List()) ByAge.push_back(margins.Base);
    }
    while (!ByAge.empty()) {
        const std::string base = std::move(ByAge.front());
        ByAge.pop_front();
        const auto margins = ReadMarginNote(Disk, Folders, base);
        if (!margins || IsWaiting(*margins)) continue;
        Drop(base);
        return !Disk.FileSize(File(base, ".note"));
    }
    return !isFresh && DropOldest();
}

void MarginStore::DropOfThisRun() {
    for (const KeptMargins& margins : List()) {
        if (margins.Run == RunName && !IsWaiting(margins)) Drop(margins.Base);
    }
    Disk.DeleteFolder(MarginFolder(Folders));  // fails while there are others in it
}

void MarginStore::Drop(const std::string& base) {
    for (const FileEntry& entry : Disk.List(MarginFolder(Folders))) {
        if (entry.IsFolder || !entry.Name.starts_with(base + RecutEnding)) continue;
        Disk.Delete(MarginFolder(Folders) + "/" + entry.Name);
    }
    for (const char* ending : Endings) Disk.Delete(File(base, ending));  // some are not there
}

}  // namespace Corvetape
