#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

#include "audio/closed_song.h"
#include "audio/pause_settings.h"
#include "audio/signal_state.h"

namespace Corvetape {

class Clock;

/// One buffer of the signal, 50 ms, as a picture of the past shows it.
struct TraceColumn {
    int32_t Level = 0;         ///< its peak, 0 to 32768
    bool Silent = false;       ///< at or below the level that counts as silence
    bool TitleChange = false;  ///< other media data were read here
    bool Lost = false;         ///< sound was lost just before it

    bool operator==(const TraceColumn&) const = default;
};

/// The signal of the last two minutes, and where songs began in it. The level history holds ten seconds of it
/// only, so somebody has to call Follow more often than that.
class SignalTrace {
 public:
    static constexpr size_t Capacity = 2400;  ///< two minutes of 50 ms

    /// All of them outlive it.
    SignalTrace(const SignalState& signal, const PauseSettings& pause, const Clock& clock);

    /// Takes over what the history has got since the last call, and the marks that were put into it later.
    void Follow();

    /// A song was closed: the next one begins at its end.
    void SongClosed(const ClosedSong& song);

    /// Oldest first, at most Capacity.
    const std::deque<TraceColumn>& Columns() const { return Past; }

    /// Number of the first column among all that there ever were, so that a picture can be moved instead of
    /// made anew.
    uint64_t FirstNumber() const { return Followed - Past.size(); }

    /// Numbers of the columns in which songs began, oldest first. Those that have left the picture go.
    const std::deque<uint64_t>& SongBegins() const { return Begins; }

    /// True for a column of a song that is over and was kept.
    bool IsOfKeptSong(uint64_t column) const;

    /// Seconds of the clock since a call of Follow last found something new.
    double IdleSeconds() const;

 private:
    /// Columns from Begin up to, not including, End.
    struct Stretch {
        uint64_t Begin = 0;
        uint64_t End = 0;
    };

    TraceColumn Column(int32_t entry) const;
    uint64_t ColumnOf(uint64_t frame, uint32_t framesPerSecond) const;
    uint64_t FramesSoFar() const { return Signal.FramesOfEarlierInputs + Signal.FramesReceived; }

    const SignalState& Signal;
    const PauseSettings& Pause;
    const Clock& Time;
    std::deque<TraceColumn> Past;
    std::deque<uint64_t> Begins;
    std::deque<Stretch> KeptSongs;
    uint64_t Followed = 0;
    uint64_t LostBefore = 0;
    int64_t LastNews = 0;  ///< on the monotonic clock
};

}  // namespace Corvetape
