#pragma once

#include <cstdint>

namespace Corvetape {

/// What the user wants done with the songs that pass by.
struct RecordingFlags {
    bool RecordingEnabled = false;    ///< master switch: no file is made or written without it
    bool RecordCurrentSong = false;   ///< keep the song now in the file
    bool RecordNextSong = false;      ///< keep songs from the next one on
    bool StopAtEndOfSong = false;     ///< after this song, clear RecordCurrentSong
    bool QuitAtEndOfSong = false;     ///< the program ends with the song
    bool DisableAtEndOfSong = false;  ///< RecordingEnabled ends with the song
    int32_t RecordingSecondsLeft = 0;

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
