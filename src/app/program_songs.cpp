// What becomes of songs that were handed to encoders, by this run or an earlier one.
#include <string>

#include "app/program_parts.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "platform/system_info.h"

namespace Corvetape {

namespace {

/// Key of the message about a song that an earlier run has left.
const char* KeyOf(LeftSongFate fate) {
    if (fate == LeftSongFate::Transfer) return "840";
    return fate == LeftSongFate::Delete ? "841" : "849";
}

/// One line for a song whose name another one had.
void TellSameName(ProgramParts& parts, const MadeMusic& music, const std::string& expected) {
    const auto tell = [&](const char* key, const std::string& number) {
        parts.Journal.WriteLog({"INFO", parts.Messages.FormatMsg(key, {music.MusicFile, number})});
    };
    if (music.MusicFile != expected) {
        tell("866", "");
    } else if (music.Older == "0") {
        tell("868", "");
    } else if (!music.Older.empty()) {
        tell("867", music.Older);
    }
}

/// Deals with one song of an earlier run. True if an encoder was given it.
bool RecoverSong(ProgramParts& parts, const LeftSong& song) {
    Files& disk = parts.Host.Files;
    const std::string& folder = parts.Memory.Folders.SongTempFolder;
    const LeftSongDecision decision = DecideLeftSong(disk, folder, song);
    if (decision.Fate == LeftSongFate::IsMade) {
        DeleteHalfMade(disk, folder, song.Note);
        parts.Notes.Remove(song.BaseName);
        return false;
    }
    MediaState media = parts.Memory.Media;
    media.SongMedia = song.Note.Media;
    media.SongMedia.TempFileName = song.BaseName;
    const SongNames names =
        NameSong(media, parts.Memory.Options, parts.Memory.Folders, parts.Memory.Pause.EndOfSongDetection);
    parts.Journal.WriteLog({"INFO", parts.Messages.FormatMsg(KeyOf(decision.Fate), {names.FinalName})});
    if (decision.Fate == LeftSongFate::Transfer) parts.Transfer.TransferLeftSong(song, decision.Seconds);
    if (decision.Fate == LeftSongFate::Delete) DeleteLeftSong(disk, folder, song);
    return decision.Fate == LeftSongFate::Transfer;
}

}  // namespace

void ProgramParts::EndJob(const JobResult& result) {
    const auto found = UnfinishedJobs.find(result.Name);
    if (found == UnfinishedJobs.end()) return;
    const TransferredSong& song = found->second;
    if (const std::optional<MadeMusic> music = ReadMadeMusic(Host.Files, song.MadeFile)) {
        Host.Files.Delete(song.MadeFile);
        if (Owner.Events.MusicMade) Owner.Events.MusicMade(result.Name, music->MusicFile);
        TellSameName(*this, *music, song.MusicFile);
    }
    Transfer.NoteEnd(song, result.ExitCode == 0);
    if (result.ExitCode == 0) {
        FinishedSongs.push_back(song.TempFile);
        UnfinishedJobs.erase(found);
    }
}

void ProgramParts::RecoverSongs() {
    // A disk that is slow, or encoders that need the machine, must not disturb the recording.
    constexpr size_t mostEncoders = 4;
    int32_t looks = 40;
    int32_t transfers = 4;
    const auto alive = [this](const std::string& run) { return Host.System.RunIsAlive(run); };
    while (!LeftSongs.empty() && looks-- > 0 && transfers > 0 && Host.Processes.Running() < mostEncoders) {
        const std::string name = LeftSongs.back();
        LeftSongs.pop_back();
        const auto song = ReadLeftSong(Host.Files, Memory.Folders.SongTempFolder, name, alive);
        if (song && RecoverSong(*this, *song)) --transfers;
    }
}

}  // namespace Corvetape
