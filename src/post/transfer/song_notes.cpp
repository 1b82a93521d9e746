#include "post/transfer/song_notes.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "audio/certainty_words.h"
#include "audio/wav_file.h"
#include "core/settings/profile.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr std::string_view NoteExtension = ".note";
constexpr const char* NoteSection = "Song";
constexpr size_t MostValueBytes = 1000;

std::string Value(std::string_view text) {
    std::string value(CutText(text, MostValueBytes));
    std::ranges::replace_if(
        value, [](char each) { return static_cast<unsigned char>(each) < ' '; }, ' ');
    return "\"" + value + "\"";
}

/// Whether the file holds the audio that its header gives. A close leaves a pause after the end.
bool IsWhole(Files& files, const std::string& path) {
    const std::optional<WavInfo> info = ReadWavInfo(files, path);
    return info && info->DataBytes > 0 && info->DataStart + info->DataBytes <= info->FileBytes;
}

}  // namespace

std::optional<SongNote> ReadSongNote(Files& files, const std::string& path) {
    const Profile profile(files, path);
    if (!profile.HasKey(NoteSection, "Run")) return std::nullopt;
    const auto text = [&](const char* key) { return profile.ReadText(NoteSection, key, "", MostValueBytes); };
    SongNote note;
    note.Run = text("Run");
    note.Wanted = profile.ReadInt(NoteSection, "Wanted", 0) != 0;
    note.Media.StationName = text("Station");
    note.Media.Artist = text("Artist");
    note.Media.Song = text("Title");
    note.Media.Album = text("Album");
    note.Media.Cover = text("Cover");
    note.Media.FilePart = profile.ReadInt(NoteSection, "FilePart", 0);
    note.Begin = CertaintyFrom(text("Begin"));
    note.End = CertaintyFrom(text("End"));
    note.HandedOn = profile.ReadInt(NoteSection, "HandedOn", 0);
    note.Closed = note.HandedOn > 0 || profile.ReadInt(NoteSection, "Closed", 0) != 0;
    note.Number = profile.ReadInt(NoteSection, "Number", 0);
    note.Encoder = text("Encoder");
    note.Work = text("Work");
    note.MusicFolder = text("MusicFolder");
    return note;
}

std::string SongNoteText(const SongNote& note) {
    std::string text = std::string("[") + NoteSection + "]\nRun=" + Value(note.Run) +
                       "\nWanted=" + (note.Wanted ? "1" : "0") +
                       "\nFilePart=" + std::to_string(note.Media.FilePart) +
                       "\nStation=" + Value(note.Media.StationName) + "\nArtist=" + Value(note.Media.Artist) +
                       "\nTitle=" + Value(note.Media.Song) + "\nAlbum=" + Value(note.Media.Album) +
                       "\nCover=" + Value(note.Media.Cover) + "\n";
    if (note.Begin != Certainty::None) text += "Begin=" + std::string(WordOf(note.Begin)) + "\n";
    if (note.End != Certainty::None) text += "End=" + std::string(WordOf(note.End)) + "\n";
    if (note.Closed) text += "Closed=1\n";
    if (note.HandedOn == 0) return text;
    return text + "HandedOn=" + std::to_string(note.HandedOn) + "\nNumber=" + std::to_string(note.Number) +
           "\nEncoder=" + Value(note.Encoder) + "\nWork=" + Value(note.Work) +
           "\nMusicFolder=" + Value(note.MusicFolder) + "\n";
}

std::string SongNotes::PathOf(const std::string& baseName) const {
    return Folders.SongTempFolder + "/" + baseName + std::string(NoteExtension);
}

void SongNotes::Write(const std::string& baseName, const SongNote& note) {
    if (baseName.empty()) return;
    std::string text = SongNoteText(note);
    if (baseName == LastName && text == LastText) return;
    const std::string path = PathOf(baseName);
    // A song's first note is a new file: what has its name is none, or a link that would be followed.
    if (baseName != LastName) Disk.Delete(path);
    if (!Disk.ReplaceQuickly(path, text)) return;  // a disk that is full has no room for notes either
    LastName = baseName;
    LastText = std::move(text);
}

SongNotes::Claimed SongNotes::Claim(const std::string& baseName, const SongNote& note) {
    const Opened<File> file = Disk.CreateNew(PathOf(baseName));
    if (!file) return file.Failure.Error == std::errc::file_exists ? Claimed::Taken : Claimed::Failed;
    const std::string text = SongNoteText(note);
    file->Write(std::as_bytes(std::span(text)));  // without room for it, the empty note is a claim too
    return Claimed::Yes;
}

void SongNotes::Store(const std::string& baseName, const SongNote& note) {
    if (baseName == LastName) LastName.clear();
    Disk.ReplaceQuickly(PathOf(baseName), SongNoteText(note));
}

void SongNotes::Remove(const std::string& baseName) {
    if (baseName.empty()) return;
    if (baseName == LastName) LastName.clear();
    // It is gone already with the other files of a discarded song.
    Disk.Delete(PathOf(baseName));
}

std::vector<std::string> ListNotedSongs(Files& files, const std::string& songTempFolder) {
    std::vector<std::string> names;
    for (const FileEntry& entry : files.List(songTempFolder)) {
        if (entry.IsFolder || !entry.Name.ends_with(NoteExtension)) continue;
        names.push_back(entry.Name.substr(0, entry.Name.size() - NoteExtension.size()));
    }
    return names;
}

std::optional<LeftSong> ReadLeftSong(Files& files, const std::string& songTempFolder,
                                     const std::string& baseName, SystemInfo& runs) {
    const std::string path = songTempFolder + "/" + baseName + std::string(NoteExtension);
    // Dealt with since it was listed, or a claim that is being made at this moment.
    if (files.FileSize(path).value_or(0) == 0) return std::nullopt;
    const std::optional<SongNote> note = ReadSongNote(files, path);
    if (!note) return std::nullopt;
    LeftSong song{baseName, *note};
    const bool alive =
        runs.RunIsAlive(song.Note.Run) || (!song.Note.Encoder.empty() && runs.RunIsAlive(song.Note.Encoder));
    if (alive || song.Note.HandedOn >= MostHandOvers) return std::nullopt;
    return song;
}

std::string MadeFileOf(const std::string& songTempFolder, const std::string& work) {
    return songTempFolder + "/" + work + ".made";
}

void DeleteHalfMade(Files& files, const std::string& songTempFolder, const SongNote& note) {
    constexpr const char* plain = "0123456789abcdefghijklmnopqrstuvwxyz-";
    if (note.Work.empty() || note.Work.find_first_not_of(plain) != std::string::npos) return;
    files.Delete(MadeFileOf(songTempFolder, note.Work));
    const std::string number = std::to_string(static_cast<uint32_t>(note.Number));
    files.Delete(songTempFolder + "/" + number + "." + note.Work + ".part");
    if (note.MusicFolder.empty()) return;
    const std::string part = note.MusicFolder + "/.corvet-" + note.Work + ".part";
    for (const char* end : {"", ".new"}) files.Delete(part + end);
}

LeftSongDecision DecideLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song) {
    LeftSongDecision decision;
    const std::string path = songTempFolder + "/" + song.BaseName + ".wav";
    const bool isClosed = song.Note.Closed;
    if (song.Note.HandedOn > 0 &&
        files.FileSize(MadeFileOf(songTempFolder, song.Note.Work)).value_or(0) > 0) {
        decision.Fate = LeftSongFate::IsMade;
        return decision;
    }
    const FileOr<uint64_t> size = files.FileSize(path);
    if (!size && size.Failure.Error != std::errc::no_such_file_or_directory) {
        decision.Fate = LeftSongFate::Leave;
    } else if (!size && isClosed) {
        decision.Fate = LeftSongFate::IsMade;
    }
    if (!song.Note.Wanted || !size) return decision;
    const bool repaired = (isClosed && IsWhole(files, path)) || RepairWavHeader(files, path);
    const std::optional<WavInfo> info = ReadWavInfo(files, path);
    if (!repaired || !info || info->Format.nAvgBytesPerSec == 0) {
        // Only what is surely no song may go.
        const FileOr<std::string> begin = files.ReadPart(path, 0, WavHeaderBytes + 1);
        const bool isNone = begin && (begin->size() <= WavHeaderBytes || !begin->starts_with("RIFF"));
        if (!isNone) decision.Fate = LeftSongFate::Leave;
        return decision;
    }
    // What its close has kept is long enough. What a crash has broken off is a part of a song that was
    // wanted.
    if (!isClosed && info->DataBytes < info->Format.nAvgBytesPerSec) return decision;
    decision.Seconds = static_cast<int32_t>(info->DataBytes / info->Format.nAvgBytesPerSec);
    decision.Fate = LeftSongFate::Transfer;
    return decision;
}

void DeleteLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song) {
    // By their names: a folder with thousands of songs is not listed for each of them. The note comes last,
    // so that a deletion that was broken off is taken up again.
    for (const std::string_view extension : {".wav", ".jpg", ".png", ".gif"}) {
        files.Delete(songTempFolder + "/" + song.BaseName + std::string(extension));  // some are not there
    }
    files.Delete(songTempFolder + "/" + song.BaseName + std::string(NoteExtension));
}

}  // namespace Corvetape
