#include "recording/song_notes.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "audio/wav_file.h"
#include "core/profile.h"
#include "core/text.h"

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

SongNote ReadNote(Files& files, const std::string& path) {
    const Profile profile(files, path);
    const auto text = [&](const char* key) { return profile.ReadText(NoteSection, key, "", MostValueBytes); };
    SongNote note;
    note.Run = text("Run");
    note.Wanted = profile.ReadInt(NoteSection, "Wanted", 0) != 0;
    note.LeastSeconds = profile.ReadInt(NoteSection, "LeastSeconds", 0);
    note.Media.StationName = text("Station");
    note.Media.Artist = text("Artist");
    note.Media.Song = text("Title");
    note.Media.Album = text("Album");
    note.Media.Cover = text("Cover");
    note.Media.FilePart = profile.ReadInt(NoteSection, "FilePart", 0);
    return note;
}

}  // namespace

std::string SongNoteText(const SongNote& note) {
    return std::string("[") + NoteSection + "]\nRun=" + Value(note.Run) +
           "\nWanted=" + (note.Wanted ? "1" : "0") + "\nLeastSeconds=" + std::to_string(note.LeastSeconds) +
           "\nFilePart=" + std::to_string(note.Media.FilePart) +
           "\nStation=" + Value(note.Media.StationName) + "\nArtist=" + Value(note.Media.Artist) +
           "\nTitle=" + Value(note.Media.Song) + "\nAlbum=" + Value(note.Media.Album) +
           "\nCover=" + Value(note.Media.Cover) + "\n";
}

void SongNotes::Write(const std::string& baseName, const SongNote& note) {
    if (baseName.empty()) return;
    std::string text = SongNoteText(note);
    if (baseName == LastName && text == LastText) return;
    const std::string path = Folders.SongTempFolder + "/" + baseName + std::string(NoteExtension);
    if (!Disk.ReplaceQuickly(path, text)) return;  // a disk that is full has no room for notes either
    LastName = baseName;
    LastText = std::move(text);
}

void SongNotes::Remove(const std::string& baseName) {
    if (baseName.empty()) return;
    if (baseName == LastName) LastName.clear();
    // It is gone already with the other files of a discarded song.
    Disk.Delete(Folders.SongTempFolder + "/" + baseName + std::string(NoteExtension));
}

std::vector<LeftSong> FindLeftSongs(Files& files, const std::string& songTempFolder,
                                    const std::function<bool(const std::string& run)>& isAlive) {
    std::vector<LeftSong> songs;
    for (const FileEntry& entry : files.List(songTempFolder)) {
        if (entry.IsFolder || !entry.Name.ends_with(NoteExtension)) continue;
        LeftSong song;
        song.BaseName = entry.Name.substr(0, entry.Name.size() - NoteExtension.size());
        song.Note = ReadNote(files, songTempFolder + "/" + entry.Name);
        if (!isAlive(song.Note.Run)) songs.push_back(std::move(song));
    }
    return songs;
}

LeftSongDecision DecideLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song) {
    LeftSongDecision decision;
    const std::string name = song.BaseName + ".wav";
    const std::string path = songTempFolder + "/" + name;
    const std::vector<FileEntry> entries = files.List(songTempFolder);
    const bool isThere = std::ranges::find(entries, name, &FileEntry::Name) != entries.end();
    if (!song.Note.Wanted || !isThere) return decision;
    const bool repaired = RepairWavHeader(files, path);
    const std::optional<WavInfo> info = ReadWavInfo(files, path);
    if (!repaired || !info || info->Format.nAvgBytesPerSec == 0) {
        // Only what is surely no song may go.
        const std::optional<std::string> begin = files.ReadPart(path, 0, WavHeaderBytes + 1);
        const bool isNone = begin && (begin->size() <= WavHeaderBytes || !begin->starts_with("RIFF"));
        if (!isNone) decision.Fate = LeftSongFate::Leave;
        return decision;
    }
    const uint64_t least = song.Note.LeastSeconds > 0 ? static_cast<uint64_t>(song.Note.LeastSeconds) : 0;
    if (info->DataBytes <= least * info->Format.nAvgBytesPerSec) return decision;
    decision.Seconds = static_cast<int32_t>(info->DataBytes / info->Format.nAvgBytesPerSec);
    decision.Fate = LeftSongFate::Transfer;
    return decision;
}

void DeleteLeftSong(Files& files, const std::string& songTempFolder, const LeftSong& song) {
    const std::string base = song.BaseName + ".";
    for (const FileEntry& entry : files.List(songTempFolder)) {
        // The extension is the last one only: a name that goes on with a point is another song's.
        const bool ours =
            entry.Name.starts_with(base) && entry.Name.find('.', base.size()) == std::string::npos;
        if (ours && !entry.IsFolder) files.Delete(songTempFolder + "/" + entry.Name);
    }
}

}  // namespace Corvetape
