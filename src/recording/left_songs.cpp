#include "recording/left_songs.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "core/controls/message_texts.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "platform/system_info.h"
#include "post/transfer/encoder_results.h"

namespace Corvetape {

namespace {

/// Key of the message about a song that an earlier run has left.
std::string_view KeyOf(LeftSongFate fate) {
    if (fate == LeftSongFate::Transfer) return Message::LeftSongKept.Key;
    return fate == LeftSongFate::Delete ? Message::LeftSongDeleted.Key : Message::LeftSongStays.Key;
}

}  // namespace

LeftSongs::LeftSongs(const Machine& machine, const WorkingFolders& folders, TransferJob& transfer,
                     SongNotes& notes, Reporter& say)
    : Computer(machine), Folders(folders), Transfer(transfer), Notes(notes), Say(say) {}

void LeftSongs::Find() {
    Names = ListNotedSongs(Computer.Files, Folders.SongTempFolder);
    std::ranges::reverse(Names);
}

void LeftSongs::Recover() {
    if (Names.empty()) {
        const bool first = !std::exchange(Cleared, true);
        if (first) DeleteLeftReports(Computer.Files, Folders.SongTempFolder, Computer.System);
        return;
    }
    // Several runs may have found the same songs; each song goes to one of them. A folder that has no place
    // for the lock must not leave them where they are.
    const std::unique_ptr<FileLock> alone = Computer.Files.Lock(Folders.SongTempFolder + ".lock");
    // A disk that is slow, or encoders that need the machine, must not disturb the recording.
    constexpr size_t mostEncoders = 4;
    int32_t looks = 40;
    int32_t transfers = 4;
    while (!Names.empty() && looks-- > 0 && transfers > 0 && Computer.Processes.Running() < mostEncoders) {
        const std::string name = Names.back();
        Names.pop_back();
        const auto song = ReadLeftSong(Computer.Files, Folders.SongTempFolder, name, Computer.System);
        if (song && Recover(*song)) --transfers;
    }
}

/// Deals with one song. True if an encoder was given it.
bool LeftSongs::Recover(const LeftSong& song) {
    Files& disk = Computer.Files;
    const LeftSongDecision decision = DecideLeftSong(disk, Folders.SongTempFolder, song);
    if (decision.Fate == LeftSongFate::IsMade) {
        DeleteHalfMade(disk, Folders.SongTempFolder, song.Note);
        Notes.Remove(song.BaseName);
        return false;
    }
    STATIONANDSONGDATA media = song.Note.Media;
    media.TempFileName = song.BaseName;
    const std::string report = Say.Text(KeyOf(decision.Fate), {Transfer.NamesOf(media).FinalName});
    Say.Write(ReportKind::Info, report);
    if (decision.Fate != LeftSongFate::Delete) Say.Show(report);
    if (decision.Fate == LeftSongFate::Transfer) Transfer.TransferLeftSong(song, decision.Seconds);
    if (decision.Fate == LeftSongFate::Delete) DeleteLeftSong(disk, Folders.SongTempFolder, song);
    return decision.Fate == LeftSongFate::Transfer;
}

}  // namespace Corvetape
