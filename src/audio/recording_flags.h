#pragma once

#include <cstdint>

namespace Corvetape {

/// What the user wants done with the songs that pass by.
struct RecordingFlags {
    /// Master switch: no file is made or written without it. Set by the operations below, each for its
    /// reason.
    bool RecordingEnabled = false;

    /// What is wished, never both: set by the operations below, each for its reason.
    bool RecordCurrentSong = false;  ///< keep the song now in the file
    bool RecordNextSong = false;     ///< keep songs from the next one on

    bool StopAtEndOfSong = false;     ///< after this song, clear RecordCurrentSong
    bool QuitAtEndOfSong = false;     ///< the program ends with the song
    bool LastSongClosed = false;      ///< the song is closed that the program ends with
    bool DisableAtEndOfSong = false;  ///< RecordingEnabled ends with the song
    int32_t RecordingSecondsLeft = 0;
    uint32_t Wishes = 0;  ///< how often something else was wished for songs: by the operations below

    /// Recording was switched off while a song may be open: what passes by until it is on again is missing
    /// from that song. The song writer notes it and clears it.
    bool Interrupted = false;

    /// Media data were switched on or off, or the program has started with them so. Called by the switch of
    /// the media data and by the start.
    void FollowMediaData(bool mediaData) {
        RecordingEnabled = mediaData;
        if (!mediaData) Interrupted = true;
    }

    /// A source is looked for or was found. A recording that has ended for good stays off, however often that
    /// happens. Called by the providers.
    void ArmForSource() {
        const bool wanted = RecordCurrentSong || RecordNextSong;
        if (wanted || !DisableAtEndOfSong) RecordingEnabled = true;
    }

    /// A long silence is over. Called by the silence watch.
    void ResumeAfterSilence() { RecordingEnabled = true; }

    /// The user wants to record, and what had ended the recording is out of the way. Called by the
    /// resumption.
    void ResumeForUser() { RecordingEnabled = true; }

    /// A song was closed, maybe the one that recording or the program (`endsProgram`) was to end with. A song
    /// from before the wish to end ends nothing. Called by the song writer.
    void EndWithSong(bool endsProgram) {
        if (endsProgram) LastSongClosed = true;
        const bool last = QuitAtEndOfSong ? endsProgram : DisableAtEndOfSong && !RecordCurrentSong;
        if (last) RecordingEnabled = false;
    }

    /// The song that plays is given up: its file failed, or it was broken off. Called by the song writer.
    void EndAtOnce() { RecordingEnabled = false; }

    /// The program ends, and its last song is closed. Called by the stop.
    void EndWithProgram() { RecordingEnabled = false; }

    /// The user wants the song that plays, or does not want it any more. Called by the session.
    void WishThisSong(bool wanted) {
        if (RecordCurrentSong != wanted) ++Wishes;
        RecordCurrentSong = wanted;
        if (wanted) RecordNextSong = false;
    }

    /// Songs are wanted from the next one on, or not any more: the user has said so, or the song that plays
    /// is on the list of those that are not wanted. Called by the session and by the age of the song.
    void WishNextSong(bool wanted) {
        if (RecordNextSong != wanted) ++Wishes;
        RecordNextSong = wanted;
        if (wanted) RecordCurrentSong = false;
    }

    /// Nothing is kept from now on. Called by the break for a search and by whoever stops a run from outside.
    void WishNothing() {
        ++Wishes;
        RecordCurrentSong = false;
        RecordNextSong = false;
    }

    /// The wish for the next song has waited while a song or piece was closed, and goes on waiting. Called by
    /// the song writer and by the timed pieces.
    void KeepWaiting(bool waited) {
        if (waited) RecordNextSong = true;
    }

    /// A piece of fixed length ends at a click, and is kept or not; so is the one that begins, also after
    /// silence. Both are called by the timed pieces.
    void EndPiece(bool kept) { RecordCurrentSong = kept; }
    void BeginPiece(bool kept) { RecordCurrentSong = kept; }

    /// The title has not changed after all: what was passed on for it is as it was, unless somebody has
    /// wished something else since. Called by the automatic recorder.
    void TakeBack(const RecordingFlags& before, const RecordingFlags& after) {
        if (RecordCurrentSong != after.RecordCurrentSong || RecordNextSong != after.RecordNextSong ||
            StopAtEndOfSong != after.StopAtEndOfSong) {
            return;
        }
        RecordCurrentSong = before.RecordCurrentSong;
        RecordNextSong = before.RecordNextSong;
        StopAtEndOfSong = before.StopAtEndOfSong;
    }

    /// A song has ended: what was wished for the next one holds for the song that begins. Called by the song
    /// writer, and where a title ends the song by the cut by titles and by the automatic recorder.
    void PassOn() {
        if (RecordNextSong) {
            RecordCurrentSong = true;
            RecordNextSong = false;
        }
        if (StopAtEndOfSong) {
            StopAtEndOfSong = false;
            RecordCurrentSong = false;
        }
    }
};

}  // namespace Corvetape
