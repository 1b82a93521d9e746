#include "post/transfer/transfer_job.h"

#include <optional>
#include <utility>

#include "core/log.h"
#include "platform/files.h"
#include "post/lists/watch_pages.h"
#include "post/transfer/song_counter.h"

namespace Corvetape {

TransferJob::TransferJob(TransferPlace place, const MediaState& media, const PauseSettings& pause,
                         TransferParts parts)
    : Place(std::move(place)),
      Media(media),
      Pause(pause),
      Parts(parts),
      Names(Place, parts.Disk, parts.Notes),
      Encoder(Place, parts.Disk, parts.Programs, parts.Notes, Names) {}

SongNames TransferJob::NamesOf(const STATIONANDSONGDATA& song) const {
    MediaState media = Media;
    media.SongMedia = song;
    return NameSong(media, Place.Options, Place.Folders, Pause.EndOfSongDetection);
}

void TransferJob::TransferSong(const STATIONANDSONGDATA& song) {
    SongPassage passage = Begin(song, NamesOf(song));
    HandOn(passage, Media.StationDataEnabled);
}

void TransferJob::TransferLeftSong(const LeftSong& song, int32_t seconds) {
    DeleteHalfMade(Parts.Disk, Place.Folders.SongTempFolder, song.Note);
    MediaState media = Media;
    media.SongMedia = song.Note.Media;
    media.SongMedia.TempFileName = song.BaseName;
    media.SongMedia.Size = seconds;
    // Its note has a title only if the title was to name it, whatever the present input does.
    if (!media.SongMedia.Song.empty()) media.StationDataEnabled = true;
    SongPassage passage =
        Begin(media.SongMedia, NameSong(media, Place.Options, Place.Folders, EndOfSong::MediaData));
    passage.Note.HandedOn = song.Note.HandedOn;
    passage.Note.Number = song.Note.Number;
    HandOn(passage, media.StationDataEnabled);
}

SongPassage TransferJob::Begin(const STATIONANDSONGDATA& song, SongNames names) const {
    SongPassage passage{song, std::move(names), {}, {}};
    passage.Note.Run = Place.RunName;
    passage.Note.Wanted = true;
    passage.Note.Closed = true;
    if (passage.Names.HasSongData) passage.Note.Media = song;
    passage.Note.Media.FilePart = song.FilePart;
    const std::string stamp = Place.Folders.SongTempFolder + "/" + song.TempFileName;
    if (const auto known = ReadSongNote(Parts.Disk, stamp + ".note")) {
        passage.Note.Begin = known->Begin;
        passage.Note.End = known->End;
    }
    return passage;
}

void TransferJob::HandOn(SongPassage& passage, bool named) {
    MakeSubFolder(passage.Names);
    passage.Source = passage.Song.TempFileName;
    const bool first = passage.Note.HandedOn == 0;
    std::string name = passage.Source;
    if (passage.Names.HasSongData) {
        name = Names.Take(passage);
        if (Place.Options.AutoExclude && first) {
            Parts.Lists.AddToWatchList(WatchListKind::Exclude, passage.Names.WholeName);
        }
    }
    if (first) passage.Note.Number = Parts.Counter.Next();
    ++passage.Note.HandedOn;
    TransferredSong song;
    if (Place.Options.EncodeOffline) {
        song.JobLabel = "TEMP";
        Parts.Notes.Remove(name);  // it stays there on purpose
    } else {
        song = Encoder.Start(passage, name);
    }
    song.TempFile = Place.Folders.SongTempFolder + "/" + name + ".wav";
    song.OlderSong = passage.OlderSong;
    song.Media = passage.Song;
    if (!song.Problem.empty()) {
        const bool stays = Parts.Disk.FileSize(song.TempFile).has_value();
        Parts.Journal.WriteLog(
            {"ERROR", song.Problem + (stays ? " The song stays as " + song.TempFile : "")});
    }
    if (!song.JobLabel.empty()) WriteSongLine(song, named);
    Transferred.Raise(song);
}

void TransferJob::NoteEnd(const TransferredSong& song, bool isMade) {
    if (!isMade && Place.LeavesNotes) return;
    const std::string base = song.TempFile.substr(0, song.TempFile.rfind('.'));
    // The command has deleted the note, and another run may have taken the name since.
    const std::optional<SongNote> note = ReadSongNote(Parts.Disk, base + ".note");
    if (note && note->Run != Place.RunName) return;
    Parts.Notes.Remove(base.substr(base.rfind('/') + 1));
}

void TransferJob::MakeSubFolder(const SongNames& names) {
    if (names.SubFolder.empty()) return;
    // The last level only, and usually it is there already.
    Parts.Disk.MakeFolder(Place.Folders.Paths[1] + names.SubFolder);
}

void TransferJob::WriteSongLine(const TransferredSong& song, bool named) {
    const STATIONANDSONGDATA& media = song.Media;
    const bool byMedia = named && !(media.Artist.empty() && media.Song.empty());
    Parts.Journal.WriteLog({song.JobLabel, byMedia ? media.Artist + " - " + media.Song : media.TempFileName});
}

}  // namespace Corvetape
