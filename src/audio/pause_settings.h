#pragma once

#include <array>
#include <cstdint>

namespace Corvetape {

/// How the end of a song is noticed.
enum class EndOfSong : int16_t { Silence = 0, MediaData = 1, FixedTime = 2, Automatic = 3 };

/// The pause recognition values of the present provider, in the units that the signal path uses.
/// Written by the handlers and the loader of the pause settings only.
struct PauseSettings {
    int32_t LevelMultiplier = 100;        ///< software gain in per cent
    int16_t SilenceAmplitude = 100;       ///< a song is silent at or below this level (0 to 32768)
    int16_t EndOfSilenceAmplitude = 120;  ///< a pause ends above this level
    bool DetectSilenceByPeak = true;      ///< by peak, else by mean
    int16_t PauseBuffers = 1;             ///< length of a pause in buffers
    int32_t IgnorePauseBuffers = 0;       ///< buffers thrown away after a pause was recognised
    bool IgnoreSilence = false;           ///< silence is not taken into the ring
    EndOfSong EndOfSongDetection = EndOfSong::Silence;
    bool DuplicatepartOfSong = false;  ///< the window goes into both songs instead of being searched
    std::array<int32_t, 2> EndOfSongThreshold = {3000, 3000};  ///< ms before and after the change
    int32_t EndOfSongTimer = 300;                              ///< seconds of a piece in fixed-time cutting
    int32_t QuitAfterSilence = 300;                            ///< seconds of silence that end a recording
    int32_t IgnoreShortSongs = 35;           ///< songs of at most so many seconds are discarded
    int32_t PauseDetectionTolerance = 3;     ///< kept as loaded, without effect
    int32_t PauseDetectionToleranceAds = 1;  ///< kept as loaded, without effect
    int32_t AllowedPauseAfterEndOfSong = 0;  ///< kept as loaded, without effect
};

}  // namespace Corvetape
