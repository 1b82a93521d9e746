#pragma once

#include <string>

#include "audio/closed_song.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/song_writer.h"
#include "core/media_state.h"
#include "post/transfer/song_notes.h"
#include "recording/automatic/automatic_recorder.h"

namespace Corvetape {

/// The state that a note of the present song is made of. All of it outlives the notes.
struct NotedState {
    const MediaState& Media;
    const CutState& Cut;
    const RecordingFlags& Flags;
    const PauseSettings& Pause;
    const AutomaticRecorder& Automatic;
};

/// Keeps the note beside the song that is being written up to date.
class NoteKeeper {
 public:
    /// All of them outlive it. `runName` is that of this process.
    NoteKeeper(const SongWriter& writer, SongNotes& notes, NotedState state, std::string runName);

    /// Brings the note of the song in the file up to date. Called when a file is begun, and every second.
    void NoteSong();

    /// A song was closed; one that is kept has its last note before its transfer.
    void SongClosed(const ClosedSong& song);

 private:
    SongNote NoteOf(const STATIONANDSONGDATA& media, bool wanted, const SongTrust& trust = {}) const;

    const SongWriter& Writer;
    SongNotes& Notes;
    NotedState State;
    std::string RunName;
};

}  // namespace Corvetape
