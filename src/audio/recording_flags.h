#pragma once

#include <cstdint>

namespace Corvetape {

/// What the user wants done with the songs that pass by.
struct RecordingFlags {
    /// Master switch: no file is made or written without it. Set by the operations below, each for its
    /// reason.
    bool RecordingEnabled = false;

    bool RecordCurrentSong = false;   ///< keep the song now in the file
    bool RecordNextSong = false;      ///< keep songs from the next one on
    bool StopAtEndOfSong = false;     ///< after this song, clear RecordCurrentSong
    bool QuitAtEndOfSong = false;     ///< the program ends with the song
    bool DisableAtEndOfSong = false;  ///< RecordingEnabled ends with the song
    int32_t RecordingSecondsLeft = 0;

    /// Media data were switched on or off, or the program has started with them so. Called by the switch of
    /// the media data and by the start.
    void FollowMediaData(bool mediaData) { RecordingEnabled = mediaData; }

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

    /// The last song was closed that recording was to end with. Called by the song writer.
    void EndWithSong() {
        if (QuitAtEndOfSong || (DisableAtEndOfSong && !RecordCurrentSong)) RecordingEnabled = false;
    }

    /// The song that plays is given up: its file failed, or it was broken off. Called by the song writer.
    void EndAtOnce() { RecordingEnabled = false; }

    /// The program ends, and its last song is closed. Called by the stop.
    void EndWithProgram() { RecordingEnabled = false; }

    /// A song has ended: what was wished for the next one holds for the song that begins.
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
