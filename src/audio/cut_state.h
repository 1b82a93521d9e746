#pragma once

#include <cstdint>
#include <optional>

#include "audio/closed_song.h"
#include "core/media_state.h"

namespace Corvetape {

/// The song before a pending cut, as it was when the title of the next one came.
struct EndedSong {
    STATIONANDSONGDATA Media;  ///< what was known of it last; without a title SongMedia holds what is known
    bool Wanted = false;       ///< RecordCurrentSong as it was; the flag means the next song by now
    SongTrust Trust = {};      ///< of a song that was ended by everything that is known
    bool EndsProgram = false;  ///< QuitAtEndOfSong as it was; a wish since then means a later song
};

/// The cut: raised by whoever notices the end of a song, carried out when the ring is drained.
struct CutState {
    uint64_t Boundaries = 0;       ///< between songs or pieces, since the program started
    bool SongBoundary = false;     ///< a song ended or the media data changed; the song's age clears it
    bool CutPending = false;       ///< a cut is due at CutIndex
    int32_t CutIndex = 0;          ///< slot of the ring
    int32_t FixedTimeSeconds = 0;  ///< seconds since the last fixed-time cut

    /// Set while a cut is pending that a change of title has raised during a recording.
    std::optional<EndedSong> Ended;

    /// A song is over: the age of the next one begins. Called by the routing for a pause that ends a song, by
    /// a change of title, by the pieces by time, and by the automatic recorder.
    void NoteBoundary() {
        SongBoundary = true;
        ++Boundaries;
    }

    /// The first title of a source was read: the age of its song begins, which may have begun long before.
    /// Called by the cut by titles.
    void NoteFirstTitle() { SongBoundary = true; }

    /// A piece begins that is none of the music: where the user, or a silence, wants it to. Called by the
    /// pieces by time.
    void NotePiece() { ++Boundaries; }

    /// Another title plays: what was in the ring up to `slot` is the song before. Called by the cut by
    /// titles.
    void RaiseByTitle(int32_t slot) { CutAt(slot); }

    /// The time of a piece is over. Called by the pieces by time, once a second.
    void RaiseByTime(int32_t slot) {
        FixedTimeSeconds = 0;
        NoteBoundary();
        CutAt(slot);
    }

    /// The user wants the piece to end here. Called by the pieces by time.
    void RaiseByClick(int32_t slot) { CutAt(slot); }

    /// A piece ends where its silence began. Called by the pieces by time.
    void RaiseBySilence(int32_t slot) { CutAt(slot); }

    /// The ring has come round to a pending cut that nobody carries out: it stays before all that the ring
    /// holds. Called by the routing.
    void MoveTo(int32_t slot) { CutIndex = slot; }

    /// A song may have ended, for whoever looks: the cut is made elsewhere. Called by the automatic recorder.
    void Announce(bool pending, int32_t slot) {
        CutIndex = slot;
        CutPending = pending;
    }

    /// The cut was carried out, or nobody wants it. Called by the drain, the pieces by time, and the
    /// automatic recorder.
    void Settle() {
        CutPending = false;
        Ended.reset();
    }

 private:
    void CutAt(int32_t slot) {
        CutIndex = slot;
        CutPending = true;
    }
};

}  // namespace Corvetape
