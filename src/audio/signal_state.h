#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "platform/wave_in.h"

namespace Corvetape {

/// Value of SignalState::PauseRecognition while the recognition runs.
inline constexpr int32_t PauseRecognitionRunning = std::numeric_limits<int32_t>::max();

/// Marks in the level history in place of a level.
inline constexpr int32_t MarkSongEnd = -1;
inline constexpr int32_t MarkMediaChange = -2;

/// The peaks of the last 200 buffers (10 s), oldest first. Entries of 0 or above are levels; -1 marks the
/// end of a song, -2 a change of the media data, other negative ones the level at the start of a song.
class LevelHistory {
 public:
    static constexpr size_t Capacity = 200;

    size_t Size() const { return Count; }
    int32_t operator[](size_t index) const { return Entries[(First + index) % Capacity]; }

    void Append(int32_t level) {
        if (Count == Capacity) {
            First = (First + 1) % Capacity;
            --Count;
        }
        Entries[(First + Count) % Capacity] = level;
        ++Count;
        ++Total;
    }

    /// How many entries have ever been appended, for those who look less often than once an entry.
    uint64_t Appended() const { return Total; }

    /// Replaces the newest entry and asks for a redraw. False, and no change, on an empty history.
    bool ReplaceLast(int32_t value) {
        if (Count == 0) return false;
        Entries[(First + Count - 1) % Capacity] = value;
        HistogramRedraw = true;
        return true;
    }

    bool HistogramRedraw = false;  ///< an entry of the past has changed

 private:
    std::array<int32_t, Capacity> Entries{};
    size_t First = 0;
    size_t Count = 0;
    uint64_t Total = 0;
};

/// What the analysis knows of the signal now. Written once a buffer; read between buffers by everyone.
struct SignalState {
    WaveFormat Format;               ///< of the input that is open, or was opened last
    int16_t ActiveThreshold = 100;   ///< SilenceAmplitude or EndOfSilenceAmplitude, whichever is in force
    int32_t SilentBufferCount = 0;   ///< consecutive buffers at or below it
    int32_t SilenceSeconds = 0;      ///< whole seconds of the present silence
    int32_t SilenceStartSecond = 0;  ///< millisecond clock / 1000 at the last sound
    bool InPause = false;            ///< a pause was recognised and no sound has ended it
    int32_t SkipBuffers = 0;         ///< buffers still to be dropped after a pause
    int32_t PauseRecognition = 0;  ///< above 0 running, 0 to be switched off at the next buffer, below 0 off
    int32_t PeakLeft = 0;          ///< highest magnitude since the meter last read it
    int32_t PeakRight = 0;
    LevelHistory History;
    uint64_t FramesReceived = 0;         ///< frames of this input since it was opened
    uint64_t FramesOfEarlierInputs = 0;  ///< frames of all that were open before it
    uint64_t FramesLost = 0;             ///< frames that the device reported lost since the program started
    uint64_t ClippedSamples = 0;         ///< samples at full scale since the program started
};

}  // namespace Corvetape
