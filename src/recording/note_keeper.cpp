#include "recording/note_keeper.h"

#include <optional>
#include <utility>

namespace Corvetape {

namespace {

/// Whose data the open file holds: while a cut is pending it is the song that has ended.
const STATIONANDSONGDATA& MediaInFile(const MediaState& media, const CutState& cut) {
    if (cut.Ended && !cut.Ended->Media.Song.empty()) return cut.Ended->Media;
    const bool current = !cut.CutPending && !media.CurrentMedia.Song.empty();
    return current ? media.CurrentMedia : media.SongMedia;
}

}  // namespace

NoteKeeper::NoteKeeper(const SongWriter& writer, SongNotes& notes, NotedState state, std::string runName)
    : Writer(writer), Notes(notes), State(state), RunName(std::move(runName)) {}

void NoteKeeper::NoteSong() {
    if (!Writer.HasSongFile()) return;
    if (State.Automatic.Active()) {
        Notes.Write(Writer.SongBaseName(),
                    NoteOf(State.Automatic.Media(), State.Automatic.Wanted(), State.Automatic.Trust()));
        return;
    }
    const std::optional<EndedSong>& ended = State.Cut.Ended;
    const bool wanted = ended ? ended->Wanted : State.Flags.RecordCurrentSong;
    Notes.Write(Writer.SongBaseName(), NoteOf(MediaInFile(State.Media, State.Cut), wanted));
}

void NoteKeeper::SongClosed(const ClosedSong& song) {
    if (song.Fate != SongFate::Kept) return;
    SongNote note = NoteOf(song.Media, true, song.Trust);
    note.Closed = true;
    Notes.Write(song.Media.TempFileName, note);
}

SongNote NoteKeeper::NoteOf(const STATIONANDSONGDATA& media, bool wanted, const SongTrust& trust) const {
    SongNote note;
    note.Run = RunName;
    note.Wanted = wanted;
    note.Begin = trust.Begin;
    note.End = trust.End;
    const bool named =
        State.Media.StationDataEnabled && State.Pause.EndOfSongDetection != EndOfSong::FixedTime;
    if (named) note.Media = media;
    note.Media.FilePart = media.FilePart;
    return note;
}

}  // namespace Corvetape
