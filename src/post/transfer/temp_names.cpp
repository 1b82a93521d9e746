#include "post/transfer/temp_names.h"

#include <algorithm>
#include <optional>

#include "platform/files.h"
#include "post/transfer/encode_job.h"

namespace Corvetape {

namespace {

/// True for the base name with any one extension. What is called like the base with a dot and more than
/// one extension after it is another song.
bool HasBaseName(const std::string& name, const std::string& base) {
    return name.starts_with(base + ".") && name.find('.', base.size() + 1) == std::string::npos;
}

}  // namespace

std::string TempNames::Take(SongPassage& passage) {
    const std::string& stamp = passage.Song.TempFileName;
    const std::string folder = Place.Folders.SongTempFolder + "/";
    std::string name = Claim(passage);
    passage.Source = name;
    if (name != stamp) {
        DeleteEarlier(name);
        // A failing rename leaves the song under its temporary name; most songs have no cover.
        const bool stays = !Disk.Rename(folder + stamp + ".wav", folder + name + ".wav") &&
                           Disk.FileSize(folder + stamp + ".wav").has_value();
        Disk.Rename(folder + stamp + ".jpg", folder + name + ".jpg");
        Notes.Remove(stays ? name : stamp);
        if (stays) name = stamp;
    }
    return name;
}

/// A name for the temporary files that no other song has: FinalName, or that with a number.
std::string TempNames::Claim(SongPassage& passage) {
    const std::string& stamp = passage.Song.TempFileName;
    constexpr int32_t mostNumbers = 10'000;
    for (int32_t number = 1; number <= mostNumbers; ++number) {
        const std::string suffix = number > 1 ? " (" + std::to_string(number) + ")" : "";
        std::string name = passage.Names.FinalName + suffix;
        if (name == stamp) return name;
        const std::string base = Place.Folders.SongTempFolder + "/" + name;
        if (IsInput(base + ".wav") || IsInput(base + ".jpg")) continue;
        const SongNotes::Claimed claimed = Notes.Claim(name, passage.Note);
        if (claimed == SongNotes::Claimed::Taken) continue;
        if (MakesRoom(base, passage)) return name;
        Notes.Remove(name);
    }
    return stamp;
}

/// Whether a song may take this name from the one that has it. Where songs are not taken to another folder,
/// what is there is music.
bool TempNames::MakesRoom(const std::string& base, SongPassage& passage) {
    const bool isMusic = Place.Options.EncodeOffline || passage.Names.TargetBase == passage.Names.SourceBase;
    const std::string song = base + ".wav";
    const FileOr<uint64_t> older = Disk.FileSize(song);
    const auto rule = static_cast<SameNameRule>(Place.Options.SameName);
    if (!isMusic || !older) return true;
    if (rule == SameNameRule::Replace) {
        passage.OlderSong = OlderIsReplaced;
        return true;
    }
    const std::string stamp = Place.Folders.SongTempFolder + "/" + passage.Song.TempFileName;
    const bool longer = Disk.FileSize(stamp + ".wav").value_or(0) >= *older;
    if (rule == SameNameRule::NumberAll || !longer) return false;
    int32_t number = 2;
    const auto numbered = [&](const char* extension) {
        return base + " (" + std::to_string(number) + ")" + extension;
    };
    while (Disk.FileSize(numbered(".wav")) || Disk.FileSize(numbered(".note"))) ++number;
    Disk.Rename(base + ".jpg", numbered(".jpg"));  // most songs have none
    if (!Disk.Rename(song, numbered(".wav"))) return false;
    passage.OlderSong = number;
    return true;
}

/// What is left of an earlier song of this name, which has its music file.
void TempNames::DeleteEarlier(const std::string& name) {
    const std::string note = name + ".note";
    for (const FileEntry& entry : Disk.List(Place.Folders.SongTempFolder)) {
        if (entry.IsFolder || entry.Name == note || !HasBaseName(entry.Name, name)) continue;
        const std::string path = Place.Folders.SongTempFolder + "/" + entry.Name;
        if (!IsInput(path)) Disk.Delete(path);
    }
}

bool TempNames::IsInput(const std::string& path) const {
    return std::ranges::any_of(Place.InputFiles,
                               [&](const std::string& input) { return Disk.SameFile(input, path); });
}

}  // namespace Corvetape
