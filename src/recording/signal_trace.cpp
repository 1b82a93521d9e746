#include "recording/signal_trace.h"

#include <algorithm>
#include <cstdlib>

#include "platform/clock.h"

namespace Corvetape {

namespace {

constexpr uint64_t ColumnsPerSecond = 20;

}  // namespace

SignalTrace::SignalTrace(const SignalState& signal, const PauseSettings& pause, const Clock& clock)
    : Signal(signal),
      Pause(pause),
      Time(clock),
      Followed(signal.History.Appended()),
      LastNews(clock.MonotonicNanoseconds()) {}

double SignalTrace::IdleSeconds() const {
    return static_cast<double>(Time.MonotonicNanoseconds() - LastNews) * 1e-9;
}

TraceColumn SignalTrace::Column(int32_t entry) const {
    TraceColumn column;
    column.TitleChange = entry == MarkMediaChange;
    // A mark has taken the place of a level; the picture goes on as it was.
    const bool mark = entry == MarkMediaChange || entry == MarkSongEnd;
    column.Level = mark ? (Past.empty() ? 0 : Past.back().Level) : std::abs(entry);
    column.Silent = column.Level <= Pause.SilenceAmplitude;
    return column;
}

void SignalTrace::Follow() {
    const LevelHistory& history = Signal.History;
    const uint64_t appended = history.Appended();
    if (appended != Followed) LastNews = Time.MonotonicNanoseconds();
    const auto fresh = static_cast<size_t>(std::min<uint64_t>(appended - Followed, history.Size()));
    // The newest entry of the last look may have become a mark since then.
    if (!Past.empty() && history.Size() > fresh) {
        const int32_t entry = history[history.Size() - fresh - 1];
        if (entry == MarkMediaChange) Past.back().TitleChange = true;
    }
    for (size_t i = history.Size() - fresh; i < history.Size(); ++i) Past.push_back(Column(history[i]));
    if (fresh > 0) {
        Past[Past.size() - fresh].Lost = Signal.FramesLost > LostBefore;
        LostBefore = Signal.FramesLost;
    }
    while (Past.size() > Capacity) Past.pop_front();
    Followed = appended;
    while (!Begins.empty() && Begins.front() < FirstNumber()) Begins.pop_front();
    while (!KeptSongs.empty() && KeptSongs.front().End <= FirstNumber()) KeptSongs.pop_front();
}

/// The number of the column that a frame is in; 0 for one that came before all columns.
uint64_t SignalTrace::ColumnOf(uint64_t frame, uint32_t framesPerSecond) const {
    const uint64_t frames = FramesSoFar();
    const uint64_t ago = frames > frame ? frames - frame : 0;
    const uint64_t columnsAgo = ago * ColumnsPerSecond / std::max<uint32_t>(framesPerSecond, 1);
    return Followed - std::min(Followed, columnsAgo);
}

bool SignalTrace::IsOfKeptSong(uint64_t column) const {
    return std::ranges::any_of(
        KeptSongs, [column](const Stretch& song) { return column >= song.Begin && column < song.End; });
}

void SignalTrace::SongClosed(const ClosedSong& song) {
    Follow();
    const uint64_t end = ColumnOf(song.EndFrame, song.FramesPerSecond);
    if (song.Fate == SongFate::Kept) {
        KeptSongs.push_back({ColumnOf(song.BeginFrame, song.FramesPerSecond), end});
    }
    if (end <= FirstNumber()) return;
    if (Begins.empty() || Begins.back() < end) Begins.push_back(end);
}

}  // namespace Corvetape
