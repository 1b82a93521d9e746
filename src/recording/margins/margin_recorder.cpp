#include "recording/margins/margin_recorder.h"

#include <utility>

namespace Corvetape {

void MarginRecorder::SongClosed(const ClosedSong& song) {
    const std::vector<Frame> before = std::exchange(Before, {});
    Base.clear();
    const bool isPart = song.Continues || song.Media.FilePart > 0;
    if (!Keeps || song.Fate != SongFate::Kept || !song.Trust.IsUnsure() || isPart) return;
    FramesPerSecond = song.FramesPerSecond;
    Base = Store.Keep(song, before);
}

void MarginRecorder::SongFollowedBy(const std::vector<Frame>& after) {
    const std::string base = std::exchange(Base, {});
    if (!base.empty()) Store.AddAfter(base, FramesPerSecond, after);
}

}  // namespace Corvetape
