#include "recording/media_poll.h"

#include <utility>

#include "core/held.h"

namespace Corvetape {

MediaPoll::MediaPoll(MediaPollParts parts, MediaPollActions actions)
    : Parts(parts), Actions(std::move(actions)) {
    Parts.Form.tmrGetMediaData.Timer.Connect([this] { Tick(); });
}

void MediaPoll::Tick() {
    if (Busy || !Actions.Ready()) return;
    const Held busy(Busy);
    const bool running = Parts.Form.tmrGetMediaData.Running();
    Parts.Media.PreviousMedia = Parts.Media.CurrentMedia;
    Actions.GetStationData();
    if (Parts.Media.CurrentMedia.Song.empty()) return;
    Actions.LoadImage(Parts.Media.CurrentMedia.Cover);
    if (!Compare()) return;
    Parts.Signal.History.ReplaceLast(MarkMediaChange);
    Parts.Cut.SongBoundary = true;
    // The settings of another source may have ended the cuts by media data. Nobody would carry this one out
    // before its place in the ring is long gone.
    if (running && !Parts.Form.tmrGetMediaData.Running()) return;
    Parts.Cut.CutIndex = Parts.Ring.AudioWriteIndex;
    Parts.Cut.CutPending = true;
}

bool MediaPoll::Compare() {
    MediaState& media = Parts.Media;
    const STATIONANDSONGDATA& now = media.CurrentMedia;
    const STATIONANDSONGDATA& before = media.PreviousMedia;
    if (now.Artist != before.Artist || now.Song != before.Song) return true;
    // A late album or cover still reaches the song in the file.
    if (now.Album != before.Album) media.SongMedia.Album = now.Album;
    if (now.Cover != before.Cover) media.SongMedia.Cover = now.Cover;
    return false;
}

}  // namespace Corvetape
